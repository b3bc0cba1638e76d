// SPDX-License-Identifier: MIT
#include "data/stated_unit.h"

#include <algorithm>
#include <iterator>

#include "data/data_error.h"
#include "data/units.h"
#include "data/utf16.h"

namespace discoplan::data {
namespace {

constexpr std::string_view kUnitWords[] = {"unit", "units"};
constexpr std::string_view kPositionWords[] = {
    "x",     "y",      "xy",         "x/y",         "pos",      "position", "positions",
    "coord", "coords", "coordinate", "coordinates", "location", "locations"};
constexpr std::string_view kOtherWords[] = {"of", "all", "the", "in"};

template <std::size_t count>
bool IsAmong(std::string_view word, const std::string_view (&words)[count]) {
  return std::any_of(std::begin(words), std::end(words),
                     [&](std::string_view known) { return SameName(word, known); });
}

std::string_view Unquoted(std::string_view text) {
  text = Trimmed(text);
  if (text.starts_with('"')) text.remove_prefix(1);
  if (text.ends_with('"')) text.remove_suffix(1);
  return Trimmed(text);
}

/// Whether words say that a unit follows, and of what.
bool AnnouncesUnit(std::string_view words, bool& of_positions) {
  bool of_unit = false;
  while (!words.empty()) {
    const std::size_t end = std::min(words.find_first_of(" _"), words.size());
    const std::string_view word = words.substr(0, end);
    const bool is_unit = IsAmong(word, kUnitWords);
    const bool is_position = IsAmong(word, kPositionWords);
    if (!is_unit && !is_position && !word.empty() && !IsAmong(word, kOtherWords)) return false;
    of_unit = of_unit || is_unit;
    of_positions = of_positions || is_position;
    words.remove_prefix(std::min(end + 1, words.size()));
  }
  return of_unit;
}

std::string Says(const StatedUnit& stated) {
  return "line " + std::to_string(stated.line) + " says " + Shown(stated.text);
}

/// What nobody measures values in.
bool IsOfPositionsAlone(std::string_view unit) {
  const auto factor = MillimetresIn(unit);
  return factor && *factor >= MillimetresIn("mil");
}

}  // namespace

std::optional<StatedUnit> StatedUnitIn(std::string_view text, std::int64_t line) {
  constexpr std::string_view kMarks = ":=,;\t";
  std::string_view content = Trimmed(text);
  while (!content.empty() && kMarks.find(content.back()) != std::string_view::npos) {
    content = Trimmed(content.substr(0, content.size() - 1));  // empty fields
  }
  std::size_t mark = content.find_first_of(kMarks);
  if (mark == std::string_view::npos) mark = content.rfind(' ');
  if (mark == std::string_view::npos) return {};
  StatedUnit stated{line, Utf8(content), {}, false};
  if (!AnnouncesUnit(Unquoted(content.substr(0, mark)), stated.of_positions)) return {};
  stated.unit = Utf8(WithoutBrackets(Unquoted(content.substr(mark + 1))));
  return stated;
}

PositionUnit PositionUnitOf(const std::vector<StatedUnit>& stated, bool values_have_units,
                            const std::string& file) {
  PositionUnit found;
  const StatedUnit* first = nullptr;
  for (const StatedUnit& other : stated) {
    const auto factor = MillimetresIn(other.unit);
    if (other.of_positions && !factor) {
      throw DataError({file, other.line},
                      Shown(other.unit) +
                          " is no unit of length that is known; say what the positions are in "
                          "with --unit mm, cm, um or in");
    }
    const bool is_micrometres = factor == MillimetresIn(LengthUnit::Micrometre);
    const bool is_clear = other.of_positions || IsOfPositionsAlone(other.unit) ||
                          (is_micrometres && values_have_units);
    if (!is_clear) {
      const std::string taken = "; positions are taken for mm, give another unit with --unit";
      if (is_micrometres) found.warning = Says(other) + ", of positions or of values" + taken;
      if (!IsKnownUnit(other.unit)) found.warning = Says(other) + ", which isn't known" + taken;
      continue;
    }
    if (first != nullptr && MillimetresIn(first->unit) != factor) {
      throw DataError({file, other.line}, Shown(other.text) + ", and " + Says(*first) +
                                              "; say what the positions are in with --unit");
    }
    first = &other;
  }
  if (first != nullptr) found = {first->unit, {}};
  return found;
}

}  // namespace discoplan::data
