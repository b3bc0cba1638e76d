// SPDX-License-Identifier: MIT
#include <cmath>
#include <filesystem>
#include <sstream>

#include "bindings/c/arguments.h"
#include "bindings/c/measured.h"
#include "data/left_out.h"
#include "data/read.h"
#include "discoplan/base/file_name.h"

using namespace discoplan;
using namespace discoplan::c;

namespace {

class MeasuredLot final : public Held {
 public:
  static constexpr Kind kKind = Kind::Lot;
  using Handle = discoplan_lot;

  MeasuredLot(data::Lot lot, bool size_given) : Held(kKind) {
    notes_ = data::SkipReport(lot);
    for (const std::string& warning : lot.warnings) {
      notes_ += (notes_.empty() ? "" : "\n") + WithFieldNames(warning);
    }
    for (data::Wafer& measured : lot.wafers) {
      const data::Parameter& parameter = lot.parameters[measured.parameter];
      wafers_.push_back(std::make_shared<MeasuredWafer>(
          std::move(measured), MeasuredWafer::Look{.parameter = parameter}, size_given));
    }
  }

  const std::vector<std::shared_ptr<MeasuredWafer>>& Wafers() const { return wafers_; }
  const std::string& Notes() const { return notes_; }

 private:
  std::string notes_;
  std::vector<std::shared_ptr<MeasuredWafer>> wafers_;
};

/// The items of "a, b"; none of null. Quotes hold a comma.
std::vector<std::string> Items(const char* list) {
  std::vector<std::string> items;
  if (list == nullptr || *list == '\0') return items;
  std::string item;
  bool quoted = false;
  for (const char* at = list; *at != '\0'; ++at) {
    if (*at == '"') {
      quoted = !quoted;
    } else if (*at == ',' && !quoted) {
      items.push_back(std::string(data::Trimmed(item)));
      item.clear();
    } else {
      item += *at;
    }
  }
  items.push_back(std::string(data::Trimmed(item)));
  return items;
}

std::optional<data::LengthUnit> UnitOf(const char* name) {
  using enum data::LengthUnit;
  static constexpr std::pair<const char*, data::LengthUnit> kUnits[] = {
      {"mm", Millimetre}, {"cm", Centimetre}, {"um", Micrometre}, {"in", Inch}, {"inch", Inch}};
  const std::string wanted = TextOr(name);
  if (wanted.empty()) return {};
  for (const auto& [known, unit] : kUnits) {
    if (wanted == known) return unit;
  }
  Refuse("unit: " + data::Shown(wanted) + " is none of mm, cm, um, in");
}

std::optional<double> Positive(double given, const char* name) {
  if (given == 0) return {};
  if (!(given > 0) || !std::isfinite(given)) Refuse(std::string(name) + ": takes millimetres");
  return given;
}

std::optional<data::DiePitch> PitchOf(double width, double height) {
  if (width == 0 && height == 0) return {};
  if (!(width > 0) || !std::isfinite(height) || height == 0) {
    Refuse("pitch: takes a width above 0 and a height other than 0 in mm");
  }
  return data::DiePitch{width, height};
}

std::optional<data::OutlierRule> OutlierRuleOf(const char* text) {
  const std::string given = TextOr(text);
  if (given.empty()) return {};
  if (const auto rule = data::ParseOutlierRule(given)) return rule;
  Refuse("drop_outliers: takes a factor and iqr or mad, as in 1.5iqr or 3.5mad, not " +
         data::Shown(given));
}

data::ReadRequest RequestOf(const std::string& path, const discoplan_read_options& given) {
  data::ReadRequest request;
  request.path = PathOf(path);
  request.columns = TextOr(given.columns);
  request.parameters = Items(given.parameters);
  request.by = Items(given.by);
  request.wafers = Items(given.wafers);
  request.where = TextOr(given.where);
  request.unit = UnitOf(given.unit);
  request.origin = given.corner != 0 ? data::Origin::Corner : data::Origin::Centre;
  request.pitch = PitchOf(given.pitch_width, given.pitch_height);
  request.diameter = Positive(given.diameter, "diameter");
  request.test_diameter = Positive(given.test_diameter, "test_diameter");
  if (given.edge_given != 0) {
    if (!(given.edge_exclusion >= 0)) Refuse("edge_exclusion: takes millimetres, 0 or more");
    request.edge_exclusion = given.edge_exclusion;
  }
  request.thin = given.thin != 0;
  request.skip_invalid = given.skip_invalid != 0;
  request.value_unit = TextOr(given.value_unit);
  request.outliers = OutlierRuleOf(given.drop_outliers);
  if (given.sites < 0) Refuse("sites: takes a number of sites, 1 or more");
  if (given.sites > 0) request.sites = given.sites;
  return request;
}

void RequireFile(const std::string& path) {
  std::error_code ignored;
  if (std::filesystem::exists(PathOf(path), ignored)) return;
  throw Error(DISCOPLAN_NOT_FOUND, data::Printable(path) + ": no such file");
}

}  // namespace

discoplan_status discoplan_read(const char* path, const discoplan_read_options* options,
                                discoplan_lot** lot) {
  return HandedOut<MeasuredLot>(lot, [&] {
    const std::string name = &Needed(path, "path");
    const discoplan_read_options taken = Taken(options, "discoplan_read_options");
    RequireFile(name);
    return std::make_shared<MeasuredLot>(data::Read(RequestOf(name, taken)), taken.diameter > 0);
  });
}

discoplan_status discoplan_lot_count(discoplan_lot* lot, int64_t* count) {
  return Guarded([&] {
    const auto held = Get<MeasuredLot>(lot);
    Needed(count, "count") = static_cast<std::int64_t>(held->Wafers().size());
  });
}

discoplan_status discoplan_lot_wafer(discoplan_lot* lot, int64_t number, discoplan_wafer** wafer) {
  return HandedOut<MeasuredWafer>(wafer, [&] {
    const auto held = Get<MeasuredLot>(lot);
    const auto count = static_cast<std::int64_t>(held->Wafers().size());
    if (number < 0 || number >= count) {
      Refuse("the lot has no wafer " + std::to_string(number) + ", but " + std::to_string(count) +
             " from 0");
    }
    return held->Wafers()[static_cast<std::size_t>(number)];
  });
}

discoplan_status discoplan_lot_notes(discoplan_lot* lot, const char** notes) {
  return Guarded([&] {
    const auto held = Get<MeasuredLot>(lot);
    Needed(notes, "notes") = held->Notes().c_str();
  });
}
