// SPDX-License-Identifier: MIT
#include "bindings/c/measured.h"

#include <cmath>
#include <limits>

#include "bindings/c/arguments.h"
#include "bindings/c/of_thread.h"
#include "data/exclusions.h"
#include "data/left_out.h"
#include "data/repeats.h"
#include "discoplan/analysis/figures_of_merit.h"
#include "discoplan/base/numbers.h"
#include "discoplan/core/interpolation/site_interpolator.h"
#include "discoplan/figures/kinds.h"
#include "discoplan/render/number_text.h"

namespace discoplan::c {
namespace {

constexpr float kNone = std::numeric_limits<float>::quiet_NaN();

[[noreturn]] void RefuseData(const std::string& text) { throw Error(DISCOPLAN_BAD_DATA, text); }

std::string Millimetres(double length) { return PlainNumber(static_cast<float>(length)) + " mm"; }

/// "wafer 'Slot07': " or nothing.
std::string Prefix(const std::string& name) {
  return name.empty() ? "" : "wafer " + data::Shown(name) + ": ";
}

void RefuseFarSites(const data::Wafer& measured, bool size_given) {
  constexpr double kTolerance = 1.005;  // of a site on the edge
  constexpr double kFarthest = 1000;
  const double farthest = data::FarthestSite(measured.x, measured.y);
  const auto refuse = [&](const std::string& why) {
    RefuseData(Prefix(measured.name) + "a site is " + Millimetres(farthest) + " from the centre" +
               why);
  };
  if (farthest > kTolerance * measured.diameter / 2) {
    refuse(", outside a wafer of " + Millimetres(measured.diameter) +
           " across; give a larger diameter");
  }
  if (farthest > kFarthest && !size_given) {
    refuse("; positions are millimetres, scale them, or give a diameter if they are");
  }
}

/// The number as it is stored, or why it can't be.
struct Checked {
  float number = 0;
  bool is_missing = false;
  bool is_good = true;
};

Checked Check(double given) {
  Checked checked;
  checked.is_missing = std::isnan(given);
  checked.is_good = Narrow(given, checked.number);
  return checked;
}

/// Whether all of them are numbers that a site may have, which are kept then.
bool TakeAll(const Numbers& numbers, std::int64_t first, std::int64_t last,
             std::vector<float>& store) {
  store.resize(static_cast<std::size_t>(last - first));
  bool all_finite = true;
  for (std::int64_t i = first; i < last; ++i) {
    const auto number = static_cast<float>(numbers[i]);
    all_finite = all_finite && std::isfinite(number);
    store[static_cast<std::size_t>(i - first)] = number;
  }
  return all_finite;
}

void TakeSites(const discoplan_sites& sites, std::int64_t first, std::int64_t last,
               bool skip_invalid, data::Wafer& measured) {
  const Numbers numbers[] = {{sites.x, "x"}, {sites.y, "y"}, {sites.value, "value"}};
  static constexpr const char* kNames[] = {"x", "y", "value"};
  std::vector<float>* const stores[] = {&measured.x, &measured.y, &measured.value};
  bool all_good = true;
  for (int k = 0; k < 3; ++k) all_good = TakeAll(numbers[k], first, last, *stores[k]) && all_good;
  if (all_good) return;
  for (auto* store : stores) store->clear();
  for (std::int64_t i = first; i < last; ++i) {
    Checked site[3];
    int bad = -1;
    for (int k = 2; k >= 0; --k) {
      site[k] = Check(numbers[k][i]);
      if (!site[k].is_good) bad = k;
    }
    if (bad < 0) {
      for (int k = 0; k < 3; ++k) stores[k]->push_back(site[k].number);
    } else if (skip_invalid) {
      data::Count(site[bad].is_missing ? data::Reason::Empty : data::Reason::NotFinite,
                  measured.left_out);
    } else {
      RefuseData(Prefix(measured.name) + kNames[bad] + "[" + std::to_string(i - first) + "] is " +
                 (site[bad].is_missing ? "no number" : "no finite 32-bit float") +
                 "; mend it, or leave such sites out with skip_invalid");
    }
  }
}

void RequireCount(const data::Wafer& measured, std::int64_t asked) {
  if (asked > data::kMostSites) {
    RefuseData(Prefix(measured.name) + std::to_string(asked) + " sites are more than the " +
               std::to_string(data::kMostSites) + " that a wafer holds; leave some out");
  }
  if (asked < 1) RefuseData(Prefix(measured.name) + "has no sites");
}

template <class E>
E Choice(std::int32_t given, std::int32_t most, const char* name) {
  if (given < 0 || given > most) {
    Refuse(std::string(name) + ": " + std::to_string(given) + " is none of 0 to " +
           std::to_string(most));
  }
  return static_cast<E>(given);
}

figures::Orientation OrientationOf(std::int32_t given) {
  using enum figures::Orientation;
  static constexpr figures::Orientation kMarks[] = {Notch, Flat, None};
  return kMarks[Choice<int>(given, 2, "orientation")];
}

double Length(double given, const char* name) {
  if (!(given >= 0) || !std::isfinite(given)) {
    Refuse(std::string(name) + ": takes millimetres, 0 or more");
  }
  return given;
}

data::ReadRequest SizeRequest(const discoplan_wafer_options& options, const std::string& name) {
  data::ReadRequest request;
  request.path = name.empty() ? "wafer" : name;
  if (Length(options.diameter, "diameter") > 0) request.diameter = options.diameter;
  if (Length(options.test_diameter, "test_diameter") > 0) {
    request.test_diameter = options.test_diameter;
  }
  if (options.edge_given != 0) {
    request.edge_exclusion = Length(options.edge_exclusion, "edge_exclusion");
  }
  return request;
}

/// Nobody need say what is measured; what is said must be the same.
void RequireSame(const std::string& one, const std::string& other, const char* verb) {
  if (one.empty() || other.empty() || one == other) return;
  RefuseData(std::string("the wafers' values are ") + verb + data::Shown(one) + " and " +
             data::Shown(other) + "; take wafers of one kind");
}

}  // namespace

FigureMask FiguresOf(std::uint64_t given) {
  const std::size_t count = analysis::FiguresOfMerit().size();
  if (given >> count != 0) {
    Refuse("figures: asks for more than the " + std::to_string(count) + " that there are");
  }
  return given != 0 ? given : (FigureMask{1} << count) - 1;
}

void ComputeFigures(const analysis::Sample& sample, FigureMask wanted, double* values,
                    std::size_t stride) {
  for (const analysis::FigureOfMerit& row : analysis::FiguresOfMerit()) {
    if ((wanted & 1) != 0) {
      *values = row.compute(sample).value_or(std::numeric_limits<double>::quiet_NaN());
    }
    wanted >>= 1;
    values += stride;
  }
}

MeasuredWafer::MeasuredWafer(data::Wafer measured, Look look, bool size_given)
    : Held(kKind),
      measured_(std::move(measured)),
      look_(std::move(look)),
      repeated_(static_cast<std::int64_t>(data::RepeatedSites(measured_.x, measured_.y))),
      sites_text_(measured_.SitesText()) {
  if (MayBeSeveral()) {
    sites_text_ += "; " + std::to_string(repeated_) + (repeated_ == 1 ? " repeats" : " repeat") +
                   " a position";
  }
  RefuseFarSites(measured_, size_given);
  sites_.WaferDiameter = measured_.diameter;
  sites_.TestDiameter = measured_.test_diameter;
  const bool fits = Attempt([&] {
    sites_.reset();
    sites_.SetNop(static_cast<float>(measured_.x.size()));
    for (std::size_t i = 0; i < measured_.x.size(); ++i) {
      sites_.SetGridValue(measured_.x[i], measured_.y[i], measured_.value[i]);
    }
    sites_.MaxMin();
  });
  if (!fits) {
    RefuseData(Prefix(measured_.name) +
               "the values are too large, so that sums of them don't fit 32-bit floats; scale the "
               "values down");
  }
}

std::int64_t MeasuredWafer::LeftOut() const {
  return measured_.Measured() - static_cast<std::int64_t>(measured_.x.size());
}

bool MeasuredWafer::MayBeSeveral() const {
  return repeated_ > 0 && 2 * repeated_ >= static_cast<std::int64_t>(measured_.x.size());
}

std::string MeasuredWafer::Remark() const {
  if (!MayBeSeveral()) return "";
  const auto repeats = static_cast<std::size_t>(repeated_);
  return Prefix(measured_.name) + data::RepeatText(repeats, measured_, "") +
         ", as those of several wafers do";
}

bool MeasuredWafer::IsInside(float x, float y) const {
  const double radius = static_cast<double>(measured_.test_diameter) / 2;
  return static_cast<double>(x) * x + static_cast<double>(y) * y <= radius * radius;
}

float MeasuredWafer::At(float x, float y) const {
  const WaferData data = Data();
  return data.HasInterpolation() && IsInside(x, y) ? SiteInterpolator(data).At(x, y) : kNone;
}

void MeasuredWafer::Interpolate(std::span<Site> points, std::size_t columns) const {
  for (Site& point : points) {
    point.z = kNone;
    if (!IsInside(point.x, point.y)) point.x = kNone;  // isn't asked for
  }
  const WaferData data = Data();
  if (data.HasInterpolation()) SiteInterpolator(data).Evaluate(points, columns);
}

std::shared_ptr<const figures::ValueField> MeasuredWafer::Field(
    figures::Interpolation interpolation) const {
  constexpr std::size_t kMostKept = 1000;  // sites; a field holds some hundred bytes for each
  const std::lock_guard lock(mutex_);
  auto& kept = fields_[interpolation == figures::Interpolation::Smooth ? 0 : 1];
  if (kept != nullptr) return kept;
  // Wafers that come one after the other are mostly measured at the same places.
  auto made = MakeField({measured_.x, measured_.y, measured_.value},
                        static_cast<double>(measured_.diameter) / 2, interpolation,
                        OfThread<figures::SitePlan>().Places());
  if (measured_.value.size() <= kMostKept) kept = made;
  return made;
}

std::vector<double> MeasuredWafer::Statistics(FigureMask wanted) const {
  std::vector<double> values(analysis::FiguresOfMerit().size(),
                             std::numeric_limits<double>::quiet_NaN());
  ComputeFigures(analysis::Sample(Sites()), wanted, values.data(), 1);
  return values;
}

std::shared_ptr<MeasuredWafer> NewWafer(const discoplan_sites& sites, std::int64_t first,
                                        std::int64_t last, const discoplan_wafer_options& options) {
  data::Wafer measured;
  measured.name = TextOr(options.name);
  RequireCount(measured, last - first);
  TakeSites(sites, first, last, options.skip_invalid != 0, measured);
  if (measured.x.empty()) RefuseData(Prefix(measured.name) + "has no site without a bad number");
  const data::ReadRequest size = SizeRequest(options, measured.name);
  data::GiveSize(size, measured);
  if (measured.test_diameter > measured.diameter) {
    RefuseData(Prefix(measured.name) + "test_diameter: " + Millimetres(measured.test_diameter) +
               " is more than the wafer's " + Millimetres(measured.diameter) +
               "; give less, or a larger diameter");
  }
  data::LeaveOutBeyond(size, measured);
  if (measured.x.empty()) RefuseData(Prefix(measured.name) + "has no site inside its test area");
  return std::make_shared<MeasuredWafer>(
      std::move(measured),
      MeasuredWafer::Look{
          .parameter = {.name = TextOr(options.quantity), .unit = TextOr(options.unit)},
          .orientation = OrientationOf(options.orientation),
          .notch = Choice<figures::Side>(options.notch_side, 3, "notch_side")},
      options.diameter > 0);
}

void RequireOneUnit(const MeasuredWafer& wafer, const MeasuredWafer& other) {
  RequireSame(wafer.Looks().parameter.unit, other.Looks().parameter.unit, "in ");
}

void RequireOneQuantity(const MeasuredWafer& wafer, const MeasuredWafer& other) {
  RequireOneUnit(wafer, other);
  RequireSame(wafer.Looks().parameter.name, other.Looks().parameter.name, "");
}

std::shared_ptr<MeasuredWafer> WithSites(const MeasuredWafer& like, std::span<const Site> sites,
                                         const std::string& name, MeasuredWafer::Look look) {
  data::Wafer measured = like.Measured();
  measured.name = name;
  measured.x.clear();
  measured.y.clear();
  measured.value.clear();
  measured.reported.reset();
  for (const Site& site : sites) {
    if (!std::isfinite(site.z)) {
      RefuseData(Prefix(name) + "a value doesn't fit a 32-bit float; scale the values down");
    }
    measured.x.push_back(site.x);
    measured.y.push_back(site.y);
    measured.value.push_back(site.z);
  }
  if (sites.empty()) RefuseData(Prefix(name) + "no site is left");
  return std::make_shared<MeasuredWafer>(std::move(measured), std::move(look), true);
}

}  // namespace discoplan::c
