// SPDX-License-Identifier: MIT
#include "data/doubts.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <numbers>

#include "data/plain_text.h"
#include "data/repeats.h"
#include "data/units.h"
#include "discoplan/base/algorithms.h"

namespace discoplan::data {
namespace {

/// Sites of the smallest pattern that is measured on purpose: the centre and four around it. By
/// chance, so many lie in one quadrant on 1 of 4^5 wafers, and whole numbers count them on 1 of 5!
/// at most; fewer make no map.
constexpr std::size_t kFewest = 5;

/// The standard wafer that positions would fill in a unit; nothing if they fill none.
std::optional<float> FilledBy(double across, double millimetres) {
  constexpr double kFull = 0.85;
  for (const float diameter : StandardDiameters()) {
    const double share = across * millimetres / static_cast<double>(diameter);
    if (share >= kFull && share <= 1) return diameter;
  }
  return {};
}

bool AreWhole(const std::vector<float>& positions) {
  return std::all_of(positions.begin(), positions.end(),
                     [](float position) { return position == std::floor(position); });
}

std::string DoubtOfQuadrant(const ReadRequest& request, const Wafer& wafer) {
  const auto is_past = [](float position) { return position >= 0; };
  if (!std::all_of(wafer.x.begin(), wafer.x.end(), is_past) ||
      !std::all_of(wafer.y.begin(), wafer.y.end(), is_past)) {
    return {};
  }
  // No wafer reaches into the corner of the square around it.
  for (std::size_t i = 0; i < wafer.x.size(); ++i) {
    if (wafer.x[i] == 0 && wafer.y[i] == 0) return {};
  }
  const auto [left, right] = std::minmax_element(wafer.x.begin(), wafer.x.end());
  const auto [bottom, top] = std::minmax_element(wafer.y.begin(), wafer.y.end());
  if (*left == *right || *bottom == *top) return {};
  std::string doubt =
      "all sites lie in the quadrant right above the centre; if they are counted from a corner, "
      "use --origin corner";
  if (!request.pitch && AreWhole(wafer.x) && AreWhole(wafer.y)) {
    doubt += ", and if they are numbers of dies, --pitch WIDTH HEIGHT with it";
  }
  return doubt;
}

std::string DoubtOfUnit(const Wafer& wafer) {
  struct Trial {
    const char* unit;
    const char* name;
    double millimetres;
  };
  constexpr Trial kTrials[] = {
      {"cm", "centimetres", 10}, {"in", "inches", 25.4}, {"um", "micrometres", 1e-3}};
  const double across = 2 * FarthestSite(wafer.x, wafer.y);
  const float smallest = StandardDiameters().front();
  const float largest = StandardDiameters().back();
  if (across > static_cast<double>(largest) && FilledBy(across, 0.1)) {
    return "the sites lie within " + LengthText(across) +
           " mm, ten times a standard wafer; if a position is a tenth of a millimetre, scale them";
  }
  const bool is_large = across > 1.005 * static_cast<double>(largest);
  if (across >= 0.9 * static_cast<double>(smallest) && !is_large) return {};
  std::string fits;
  for (const Trial& trial : kTrials) {
    const auto diameter = FilledBy(across, trial.millimetres);
    if (!diameter) continue;
    fits += (fits.empty() ? "" : " or ") + std::string("--unit ") + trial.unit + " (" +
            LengthText(static_cast<double>(*diameter)) + " mm, in " + trial.name + ')';
  }
  const std::string found =
      "the sites lie within " + LengthText(across) + " mm, as on no standard wafer; ";
  constexpr std::string_view kPitch = "--pitch WIDTH HEIGHT (if they are numbers of dies)";
  const bool may_count = !is_large && AreWhole(wafer.x) && AreWhole(wafer.y);
  if (may_count) fits += (fits.empty() ? "" : " or ") + std::string(kPitch);
  if (!fits.empty()) return found + "try " + fits + ", or --unit mm if that is right";
  return is_large ? found + "scale them, or give their --diameter if that is right" : std::string();
}

/// Angles in radians, taken for degrees, lie in a narrow sector.
std::string DoubtOfAngle(const Wafer& wafer) {
  constexpr double kFullTurn = 2 * std::numbers::pi;
  double least = kFullTurn;
  double most = -kFullTurn;
  for (std::size_t i = 0; i < wafer.x.size(); ++i) {
    if (wafer.x[i] == 0 && wafer.y[i] == 0) continue;
    const double angle =
        std::atan2(double{wafer.y[i]}, double{wafer.x[i]}) * 180 / std::numbers::pi;
    least = std::min(least, angle);
    most = std::max(most, angle);
  }
  constexpr double kRounding = 1e-3;
  const bool fits = least >= -kFullTurn - kRounding && most <= kFullTurn + kRounding;
  if (!fits || most - least < 1) return {};
  return "all angles lie within " + LengthText(std::round((most - least) * 100) / 100) +
         " degrees; if they are radians, write so in the header, as in theta (rad)";
}

/// Defects may lie on each other, and tables have been looked at.
void TellRepeats(bool several, Lot& lot) {
  if (lot.kind != FileKind::Binary && lot.kind != FileKind::LotExport) return;
  for (const Wafer& wafer : lot.Of(0)) {
    const std::size_t repeats = RepeatedSites(wafer.x, wafer.y);
    if (repeats == 0) continue;
    const std::string of = several ? "of wafer " + Shown(wafer.name) : "";
    lot.warnings.push_back(RepeatText(repeats, wafer, of) +
                           "; each of them is taken for a site of its own");
    return;
  }
}

std::string DoubtOfIndex(const Lot& lot, const Wafer& wafer) {
  if (wafer.value.size() < kFewest) return {};
  for (std::size_t i = 0; i < wafer.value.size(); ++i) {
    if (wafer.value[i] != wafer.value[0] + static_cast<float>(i)) return {};
  }
  if (wafer.value[0] != 0 && wafer.value[0] != 1) return {};
  return "the value " + Shown(lot.parameters[wafer.parameter].name) +
         " only counts the sites; choose another with --parameter";
}

/// What instruments write for a value that they haven't.
constexpr float kHuge = 1e30F;
bool IsFill(float value) {
  constexpr float kFills[] = {0, 999, 9999, 99999, 999999, 9999999};
  const float size = std::abs(value);
  return size >= kHuge || std::find(std::begin(kFills), std::end(kFills), size) != std::end(kFills);
}

/// A value of that kind that lies farther from the others than they do from each other. Zeros must
/// be few among values that differ, as counts and flags aren't.
std::optional<float> StrayFill(const Wafer& wafer) {
  const auto [low, high] = std::minmax_element(wafer.value.begin(), wafer.value.end());
  const float fill = IsFill(*high) ? *high : *low;
  if (!IsFill(fill)) return {};
  double least = HUGE_VAL;
  double most = -HUGE_VAL;
  for (const float value : wafer.value) {
    if (IsFill(value)) continue;
    least = std::min<double>(least, value);
    most = std::max<double>(most, value);
  }
  if (fill == 0) {
    const auto zeros = std::count(wafer.value.begin(), wafer.value.end(), 0.0F);
    if (4 * zeros > std::ssize(wafer.value) || least == most) return {};
  }
  const double gap = std::max(double{fill} - most, least - double{fill});
  return least <= most && gap > most - least ? std::optional(fill) : std::nullopt;
}

/// "--where" with a condition, such as "< 9999", on a column.
std::string WhereOf(const std::string& name, const std::string& condition) {
  const auto is_plain = [](char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0; };
  const bool word = AllOf(name, is_plain) && std::isalpha(static_cast<unsigned char>(name[0])) != 0;
  return word ? "--where \"" + name + ' ' + condition + '"'
              : "--where '`" + Printable(name) + "` " + condition + '\'';
}

std::string DoubtOfFill(const Lot& lot, std::size_t parameter) {
  for (const Wafer& wafer : lot.Of(parameter)) {
    const auto fill = StrayFill(wafer);
    if (!fill) continue;
    const bool huge = std::abs(*fill) >= kHuge;
    const bool highest = *std::max_element(wafer.value.begin(), wafer.value.end()) == *fill;
    const std::string number =
        huge ? (*fill > 0 ? "1e30" : "-1e30") : std::to_string(static_cast<int>(*fill));
    const std::string& name = lot.parameters[parameter].name;
    const bool has_columns = lot.kind == FileKind::Table || lot.kind == FileKind::Defects;
    return "values of " + Shown(name) + " are " + (huge ? "beyond " : "") + number +
           ", far from the others; if that stands for missing ones, use " +
           (has_columns ? WhereOf(name, (highest ? "< " : "> ") + number)
                        : "--drop-outliers 3.5mad");
  }
  return {};
}

void Tell(const Wafer& wafer, const std::string& doubt, bool several, Lot& lot) {
  if (!doubt.empty()) {
    lot.warnings.push_back((several ? "wafer " + Shown(wafer.name) + ": " : "") + doubt);
  }
}

}  // namespace

void TellDoubts(const ReadRequest& request, const PositionScale& scale, Lot& lot) {
  const bool several = lot.wafers.size() > 1;
  TellRepeats(several, lot);
  const auto first = std::find_if(lot.wafers.begin(), lot.wafers.end(),
                                  [](const Wafer& wafer) { return wafer.x.size() >= kFewest; });
  if (first == lot.wafers.end()) return;
  const std::string quadrant =
      request.origin == Origin::Centre ? DoubtOfQuadrant(request, *first) : std::string();
  Tell(*first, quadrant, several, lot);
  const bool has_size = scale.stated || request.diameter;
  if (quadrant.empty() && !has_size) Tell(*first, DoubtOfUnit(*first), several, lot);
  if (scale.polar && !scale.angle_stated) Tell(*first, DoubtOfAngle(*first), several, lot);
  for (std::size_t parameter = 0; parameter < lot.parameters.size(); ++parameter) {
    const auto wafers = lot.Of(parameter);
    if (wafers.empty()) continue;
    const std::string fill = request.outliers ? std::string() : DoubtOfFill(lot, parameter);
    if (!fill.empty()) lot.warnings.push_back(fill);
    if (lot.kind == FileKind::Binary) continue;  // whose values nobody can choose
    Tell(wafers[0], DoubtOfIndex(lot, wafers[0]), several, lot);
  }
}

}  // namespace discoplan::data
