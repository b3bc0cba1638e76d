// SPDX-License-Identifier: MIT
#pragma once

/// How a class puts its own rows among those that all share. For the tables of the classes alone.

#include <array>
#include <memory>
#include <utility>

#include "discoplan/controls/shared_rows.h"
#include "discoplan/core/default_colours.h"

namespace discoplan::rows {

// Colours.

inline constexpr std::array<Names, 10> kIntervalNames = {
    "IntervalColor0", "IntervalColor1", "IntervalColor2", "IntervalColor3", "IntervalColor4",
    "IntervalColor5", "IntervalColor6", "IntervalColor7", "IntervalColor8", "IntervalColor9",
};
inline constexpr std::array<Names, 10> kIntervalKeys = {
    "InterCol0", "InterCol1", "InterCol2", "InterCol3", "InterCol4",
    "InterCol5", "InterCol6", "InterCol7", "InterCol8", "InterCol9",
};
inline constexpr std::array<Names, 10> kIntervalDocs = {
    "Colour of the highest of the ten intervals of values.",
    "Colour of the second interval from the highest.",
    "Colour of the third interval from the highest.",
    "Colour of the fourth interval from the highest.",
    "Colour of the fifth interval from the highest.",
    "Colour of the fifth interval from the lowest.",
    "Colour of the fourth interval from the lowest.",
    "Colour of the third interval from the lowest.",
    "Colour of the second interval from the lowest.",
    "Colour of the lowest of the ten intervals of values.",
};
inline constexpr std::array<Names, 3> kRangeDocs = {
    "Colour of the values above the band around the mean.",
    "Colour of the values within the band around the mean.",
    "Colour of the values below the band around the mean.",
};

/// `IntervalColor` of one interval.
template <class Control, std::size_t interval>
constexpr Member IntervalRow(Names doc, Colour initial) {
  Member row{.name = kIntervalNames[interval],
             .kind = Member::Kind::Property,
             .type = Type::Rgb,
             .id = kFirstIntervalId + static_cast<std::int32_t>(interval),
             .doc = doc,
             .change = Change::Stale,
             .announced = kIntervalNames[interval],
             .initial = initial,
             .stored = Kept(Prefix::Colours, kIntervalKeys[interval], StoredKind::Int32, initial)};
  row.get = [](Object& object, const Member& member) {
    return Variant(member_detail::As<Control>(object, member).IntervalColor(interval));
  };
  row.set = [](Object& object, const Variant& value, const Member& member) {
    member_detail::As<Control>(object, member).IntervalColor(interval, value.AsColour());
  };
  return row;
}

/// In the order of the interface, which ends with interval 0.
template <class Control>
inline constexpr std::array kIntervals = []<std::size_t... I>(std::index_sequence<I...>) {
  return std::array{IntervalRow<Control, (I + 1) % 10>(kIntervalDocs[(I + 1) % 10],
                                                       kIntervalColours[(I + 1) % 10])...};
}
(std::make_index_sequence<10>());

template <class Control>
inline constexpr std::array kRanges = []<std::size_t... I>(std::index_sequence<I...>) {
  return std::array{IntervalRow<Control, I>(kRangeDocs[I], kRangeColours[I])...};
}
(std::make_index_sequence<3>());

// Orders.

template <std::size_t... N>
constexpr auto JoinedNames(const std::array<Names, N>&... lists) {
  std::array<Names, (N + ...)> all{};
  std::size_t size = 0;
  const auto add = [&](const auto& list) {
    for (const Names& name : list) all[size++] = name;
  };
  (add(lists), ...);
  return all;
}

/// The order of a store around a class's own settings.
template <std::size_t... N>
constexpr auto StoreOrder(const std::array<Names, N>&... own) {
  return JoinedNames(
      std::array<Names, 4>{"BackColor", "WaferStyle", "TestDiameter", "WaferDiameter"}, own...,
      std::array<Names, 4>{"HideLegend", "PlotCaption", "MousePointer", "MouseIcon"});
}

/// The order in which a new control sets what it starts with.
template <class... Own>
constexpr auto InitialOrder(const Own&... own) {
  return std::array<Names, 3 + sizeof...(Own)>{"TestDiameter", "WaferDiameter", "WaferStyle",
                                               own...};
}

inline constexpr std::array<Names, 3> kRangeNames = {kIntervalNames[0], kIntervalNames[1],
                                                     kIntervalNames[2]};

// Events.

inline constexpr ParameterList kMouse = [] {
  ParameterList list;
  list.Add({"Button", Type::Int16, Direction::InOut});
  list.Add({"Shift", Type::Int16, Direction::InOut});
  list.Add({"x", Type::Float, Direction::InOut});
  list.Add({"y", Type::Float, Direction::InOut});
  return list;
}();

/// By `MouseEvent`.
inline constexpr std::array<Event, 5> kEvents = {{
    {"Click", -600, {}, "The user clicked beside the plot."},
    {"DblClick", -601, {}, "The user clicked twice beside the plot."},
    {"MouseDown", -605, kMouse,
     "A mouse button went down: 1 left, 2 right, 4 middle; Shift adds 1 for the shift key, 2 for "
     "control and 4 for alt. The position is in the units of the child surface under the mouse."},
    {"MouseMove", -606, kMouse,
     "The mouse moved; Button adds up the buttons that are down. The rest is as for MouseDown."},
    {"MouseUp", -607, kMouse, "A mouse button went up; arguments as for MouseDown."},
}};

// What else a class is made of.

template <class Control>
constexpr auto SigmaMembers(Names key) {
  return std::array{Property<Control, float, &Control::SigmaRange, &Control::SigmaRange>(
      {.name = "SigmaRange",
       .id = 62,
       .doc = "Half width of the band around the mean, in standard deviations; 0 or less becomes "
              "0.5.",
       .change = Change::Stale,
       .initial = 0.5,
       .stored = Kept(key, StoredKind::Double, 0.5)})};
}

template <class Control>
std::unique_ptr<PlotControl> Make(Platform& platform, Container* container) {
  return std::make_unique<Control>(platform, container);
}

}  // namespace discoplan::rows
