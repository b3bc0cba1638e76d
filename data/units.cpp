// SPDX-License-Identifier: MIT
#include "data/units.h"

#include <algorithm>
#include <iterator>
#include <numbers>

#include "data/plain_text.h"

namespace discoplan::data {
namespace {

struct Factor {
  std::string_view unit;
  double factor;
};
constexpr double kInch = 25.4;
// The micro sign and the Greek letter are two characters.
constexpr Factor kLengths[] = {{"mm", 1},
                               {"millimeter", 1},
                               {"millimetre", 1},
                               {"millimeters", 1},
                               {"millimetres", 1},
                               {"cm", 10},
                               {"centimeter", 10},
                               {"centimetre", 10},
                               {"um", 1e-3},
                               {"\xC2\xB5m", 1e-3},
                               {"\xCE\xBCm", 1e-3},
                               {"micron", 1e-3},
                               {"microns", 1e-3},
                               {"micrometer", 1e-3},
                               {"micrometre", 1e-3},
                               {"nm", 1e-6},
                               {"m", 1e3},
                               {"in", kInch},
                               {"inch", kInch},
                               {"inches", kInch},
                               {"mil", kInch / 1e3},
                               {"mils", kInch / 1e3}};
constexpr double kDegreesInRadian = 180 / std::numbers::pi;
constexpr Factor kAngles[] = {{"deg", 1},
                              {"degree", 1},
                              {"degrees", 1},
                              {"\xC2\xB0", 1},
                              {"rad", kDegreesInRadian},
                              {"radian", kDegreesInRadian},
                              {"radians", kDegreesInRadian}};
constexpr std::string_view kOtherUnits[] = {
    "A",   "\xC3\x85", "\xE2\x84\xAB", "Ang", "angstrom", "Angstrom", "pm",  "%",   "V",
    "mV",  "mA",       "uA",           "nA",  "Ohm",      "ohm",      "Pa",  "kPa", "MPa",
    "GPa", "K",        "degC",         "eV",  "ppm",      "Hz",       "kHz", "MHz", "GHz"};

template <std::size_t count>
std::optional<double> Find(const Factor (&factors)[count], std::string_view unit) {
  const auto found =
      std::find_if(std::begin(factors), std::end(factors),
                   [&](const Factor& factor) { return SameName(factor.unit, unit); });
  return found == std::end(factors) ? std::nullopt : std::optional(found->factor);
}

constexpr std::string_view kOpen = "([{";
constexpr std::string_view kClose = ")]}";

/// Where the bracket that ends `text` is opened.
std::size_t OpenBracket(std::string_view text) {
  if (text.empty()) return std::string_view::npos;
  const std::size_t kind = kClose.find(text.back());
  return kind == std::string_view::npos ? kind : text.rfind(kOpen[kind]);
}

}  // namespace

Heading SplitHeading(std::string_view text) {
  text = Trimmed(text);
  const std::size_t open = OpenBracket(text);
  if (open != std::string_view::npos && open > 0) {
    const std::string_view unit = Trimmed(text.substr(open + 1, text.size() - open - 2));
    const bool is_number = unit.empty() || (unit.front() >= '0' && unit.front() <= '9');
    if (is_number) return {text, {}};
    return {Trimmed(text.substr(0, open)), unit};
  }
  const std::size_t mark = text.find_last_of("_,");
  if (mark != std::string_view::npos && mark > 0) {
    const std::string_view unit = Trimmed(text.substr(mark + 1));
    if (unit.size() > 1 && IsKnownUnit(unit)) return {Trimmed(text.substr(0, mark)), unit};
  }
  return {text, {}};
}

std::optional<double> MillimetresIn(std::string_view unit) { return Find(kLengths, unit); }

double MillimetresIn(LengthUnit unit) {
  static constexpr double kFactors[] = {1, 10, 1e-3, kInch};
  return kFactors[static_cast<std::size_t>(unit)];
}

std::optional<double> DegreesIn(std::string_view unit) { return Find(kAngles, unit); }

bool IsKnownUnit(std::string_view text) {
  return MillimetresIn(text) || DegreesIn(text) ||
         std::find(std::begin(kOtherUnits), std::end(kOtherUnits), text) != std::end(kOtherUnits);
}

std::string_view WithoutBrackets(std::string_view text) {
  text = Trimmed(text);
  return OpenBracket(text) == 0 ? Trimmed(text.substr(1, text.size() - 2)) : text;
}

}  // namespace discoplan::data
