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

/// What stands between a name and its unit.
constexpr std::string_view kMarks = "_,/ ";

std::string_view WithoutMarks(std::string_view name) {
  const std::size_t last = name.find_last_not_of(kMarks);
  name = name.substr(0, last == std::string_view::npos ? 0 : last + 1);
  return name.ends_with(" in") ? WithoutMarks(name.substr(0, name.size() - 3)) : name;
}

std::string_view LastWord(std::string_view text) {
  return text.substr(text.find_last_of(" (_") + 1);  // or all of it
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
  const std::size_t mark = text.find_last_of(kMarks);
  if (mark != std::string_view::npos && mark > 0) {
    const std::string_view name = WithoutMarks(text.substr(0, mark));
    const std::string_view unit = text.substr(mark + 1);
    const bool is_word = text[mark] == ' ' && SameName(unit, "in");
    const bool is_quotient = text[mark] == '/' && IsKnownUnit(LastWord(name));
    const bool is_unit = unit.size() > 1 && IsKnownUnit(unit) && !is_word && !is_quotient;
    if (is_unit && !name.empty()) return {name, unit};
  }
  for (const std::string_view unit : {"mm", "cm", "um"}) {  // "Xmm"
    if (SameName(text, "x" + std::string(unit)) || SameName(text, "y" + std::string(unit))) {
      return {text.substr(0, 1), text.substr(1)};
    }
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
