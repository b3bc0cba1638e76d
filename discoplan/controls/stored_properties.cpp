// SPDX-License-Identifier: MIT
#include "discoplan/controls/stored_properties.h"

#include <array>

#include "discoplan/forms/node.h"
#include "discoplan/render/surface.h"

namespace discoplan {
namespace {

constexpr std::array<std::string_view, 10> kIntervalProperties = {
    "IntervalColor0", "IntervalColor1", "IntervalColor2", "IntervalColor3", "IntervalColor4",
    "IntervalColor5", "IntervalColor6", "IntervalColor7", "IntervalColor8", "IntervalColor9",
};
constexpr std::array kIntervalColours = {4, 12, 14, 10, 6, 2, 3, 9, 1, 5};
constexpr std::array kRangeColours = {4, 2, 1};

template <std::size_t N>
std::vector<StoredProperty> WithColours(const std::string& prefix,
                                        const std::array<int, N>& palette,
                                        const std::vector<StoredProperty>& rows) {
  std::vector<StoredProperty> all;
  for (std::size_t i = 0; i < N; ++i) {
    all.push_back(StoredColour(prefix + "InterCol" + std::to_string(i),
                               kPalette[static_cast<std::size_t>(palette[i])],
                               kIntervalProperties[i]));
  }
  all.insert(all.end(), rows.begin(), rows.end());
  return all;
}

std::vector<StoredProperty> All(const OwnStored& own, const std::vector<StoredProperty>& rows,
                                StoredKind style_kind, const std::string& caption) {
  const std::string first(own.prefix);
  const std::string last(own.last_prefix);
  std::vector<StoredProperty> all = {
      StoredColour(first + "BackColor", kButtonFace, "BackColor"),
      StoredInt32(first + "FLAT", 1, "WaferStyle"),
      StoredInt16(first + "TESTDM", 194, "TestDiameter"),
      StoredInt16(first + "WAFERDM", 200, "WaferDiameter"),
  };
  all[1].kind = style_kind;
  all.insert(all.end(), rows.begin(), rows.end());
  all.push_back({last + "Legend", StoredKind::Boolean, BooleanVariant(false), "HideLegend"});
  if (own.has_caption) {
    all.push_back({last + "Caption", StoredKind::String, Variant(caption), "PlotCaption"});
  }
  all.push_back(StoredInt16(last + "MousePointer", 0, "MousePointer"));
  all.push_back({last + "MouseIcon", StoredKind::Object, Variant(ObjectRef()), "MouseIcon"});
  return all;
}

}  // namespace

StoredProperty StoredInt16(std::string key, std::int16_t otherwise, std::string_view property) {
  return {std::move(key), StoredKind::Int16, Variant(otherwise), property};
}

StoredProperty StoredInt32(std::string key, std::int32_t otherwise, std::string_view property) {
  return {std::move(key), StoredKind::Int32, Variant(otherwise), property};
}

StoredProperty StoredDouble(std::string key, double otherwise, std::string_view property) {
  return {std::move(key), StoredKind::Double, Variant(otherwise), property};
}

StoredProperty StoredColour(std::string key, Colour otherwise, std::string_view property) {
  return {std::move(key), StoredKind::Int32, Variant(otherwise), property};
}

std::vector<StoredProperty> WithIntervals(const std::string& prefix,
                                          const std::vector<StoredProperty>& rows) {
  return WithColours(prefix, kIntervalColours, rows);
}

std::vector<StoredProperty> WithRangeColours(const std::string& prefix,
                                             const std::vector<StoredProperty>& rows) {
  return WithColours(prefix, kRangeColours, rows);
}

StoredProperties StoredWith(const OwnStored& own) {
  return {.written = All(own, own.own, StoredKind::Int32, "Wafer"),
          .read = All(own, own.own_read.empty() ? own.own : own.own_read, own.style_read_as,
                      own.caption_read_otherwise)};
}

}  // namespace discoplan
