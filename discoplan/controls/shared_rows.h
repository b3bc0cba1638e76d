// SPDX-License-Identifier: MIT
#pragma once

/// The rows that the classes share. For the tables of the classes alone.

#include <array>
#include <string_view>

#include "discoplan/controls/control_class.h"
#include "discoplan/controls/plot_control.h"
#include "discoplan/platform/member_list.h"
#include "discoplan/render/surface.h"

namespace discoplan::rows {

using Names = std::string_view;
using Prefix = Stored::Prefix;

constexpr Stored Kept(Prefix prefix, Names key, StoredKind kind, Constant default_value = {},
                      const Stored::Reading* reading = nullptr) {
  return {.key = key,
          .kind = kind,
          .default_value = default_value,
          .prefix = prefix,
          .reading = reading};
}
constexpr Stored Kept(Names key, StoredKind kind, Constant default_value) {
  return Kept(Prefix::None, key, kind, default_value);
}

/// The title of the frame around the plot.
struct Caption {
  const char* initial = "Wafer";
  Stored stored = Kept(Prefix::Last, "Caption", StoredKind::String, "Wafer");
};

inline constexpr Stored::Reading kAsInt16{StoredKind::Int16, 1};
inline constexpr Stored::Reading kPresentColour{StoredKind::Int32, {}};
/// Nothing that a store would have to be told.
inline constexpr Stored::Reading kPointerAlone{
    StoredKind::Int16, 0, [](Object& control, const Variant& value, const Member& member) {
      member_detail::As<PlotControl>(control, member).SetPointer(value.AsInt16());
    }};

using C = PlotControl;

inline constexpr std::array kHostMembers = {
    Property<C, ObjectRef, &C::PrinterObj, &C::PrinterObj>(
        {.name = "PrinterObj",
         .id = 1,
         .doc =
             "The printer object that all print methods draw on; without one they print nothing.",
         .run_time_only = true}),
    ReadOnly<C, std::int32_t, &C::hdc>({.name = "hdc",
                                        .id = 2,
                                        .doc = "Device handle of the control's own surface; 0 in a "
                                               "host without such handles.",
                                        .run_time_only = true}),
    ReadOnly<C, std::int32_t, &C::hwnd>(
        {.name = "hwnd",
         .id = -515,
         .doc = "Window handle of the control; 0 in a host without such handles.",
         .run_time_only = true}),
    Property<C, ObjectRef, &C::MouseIcon, &C::MouseIcon>(
        {.name = "MouseIcon",
         .id = -522,
         .doc = "Picture that the host shows as the mouse pointer.",
         .change = Change::Announced,
         .stored = Kept(Prefix::Last, "MouseIcon", StoredKind::Object)}),
    Property<C, std::int16_t, &C::MousePointer, &C::MousePointer>(
        {.name = "MousePointer",
         .id = -521,
         .doc = "Number of the mouse pointer: 0 the host's own, 11 the hourglass. A redraw leaves "
                "0 behind.",
         .change = Change::Announced,
         .initial = 0,
         .stored = Kept(Prefix::Last, "MousePointer", StoredKind::Int16, 0, &kPointerAlone)}),
    Method<&C::About>({.name = "About", .id = -552, .doc = "Does nothing.", .hidden = true}),
};

constexpr auto WaferMembers(const Stored::Reading* style_read = nullptr) {
  return std::array{
      Property<C, WaferSt, &C::WaferStyle, &C::WaferStyle>(
          {.name = "WaferStyle",
           .id = 10,
           .doc = "What marks the wafer's orientation; what is no flat is a notch.",
           .change = Change::Stale,
           .initial = 1,
           .stored = Kept(Prefix::First, "FLAT", StoredKind::Int32, 1, style_read)}),
      ReadOnly<C, float, &C::StdDevPercent>(
          {.name = "StdDevPercent",
           .id = 11,
           .doc = "Standard deviation in percent of the mean; 0 unless the mean is positive.",
           .run_time_only = true}),
      ReadOnly<C, float, &C::StdDev>({.name = "StdDev",
                                      .id = 12,
                                      .doc = "Standard deviation of the values, in their unit.",
                                      .run_time_only = true}),
      ReadOnly<C, float, &C::HiLo>({.name = "HiLo",
                                    .id = 13,
                                    .doc = "Half the spread over the middle of the extremes, in "
                                           "percent; 0 if the extremes cancel out.",
                                    .run_time_only = true}),
      ReadOnly<C, float, &C::range>({.name = "range",
                                     .id = 14,
                                     .alias = "ValueRange",
                                     .doc = "Maximum less minimum, in the unit of the values.",
                                     .run_time_only = true}),
      ReadOnly<C, float, &C::Maximum>({.name = "Maximum",
                                       .id = 15,
                                       .doc = "Largest value, in the unit of the values.",
                                       .run_time_only = true}),
      ReadOnly<C, float, &C::Minimum>({.name = "Minimum",
                                       .id = 16,
                                       .doc = "Smallest value, in the unit of the values.",
                                       .run_time_only = true}),
      ReadOnly<C, float, &C::mean>({.name = "mean",
                                    .id = 17,
                                    .doc = "Mean of the values, in their unit.",
                                    .run_time_only = true}),
      Property<C, float, &C::TestDiameter, &C::TestDiameter>(
          {.name = "TestDiameter",
           .id = 18,
           .doc = "Diameter of the measured area in mm; negative stands for the wafer's. A smaller "
                  "one than before drops the sites outside for good.",
           .change = Change::Stale,
           .initial = 194,
           .stored = Kept(Prefix::First, "TESTDM", StoredKind::Int16, 194)}),
      Property<C, float, &C::WaferDiameter, &C::WaferDiameter>(
          {.name = "WaferDiameter",
           .id = 19,
           .doc = "Diameter of the wafer in mm; 0 or less becomes 200. Drops all data, so set it "
                  "first.",
           .change = Change::Repainted,
           .initial = 200,
           .stored = Kept(Prefix::First, "WAFERDM", StoredKind::Int16, 200)}),
  };
}

inline constexpr std::array kPlotMembers = {
    Method<&C::Plot>({.name = "Plot",
                      .id = 30,
                      .doc = "Draws what is out of date. Gives 0, or 1 without data."}),
    Property<C, Colour, &C::BackColor, &C::BackColor>(
        {.name = "BackColor",
         .id = -501,
         .doc = "Colour around the plot, 0x00BBGGRR or a system colour with the highest bit set.",
         .change = Change::Announced,
         .initial = kButtonFace,
         .stored =
             Kept(Prefix::First, "BackColor", StoredKind::Int32, kButtonFace, &kPresentColour)}),
    Method<&C::ShowPlotOption>(
        {.name = "ShowPlotOption",
         .id = 31,
         .doc = "Lets the user edit the plot's options in a dialog, and draws anew if that is "
                "confirmed. Plot2DN has no options and does nothing."}),
    Method<&C::ReleasePlotLimit>(
        {.name = "ReleasePlotLimit",
         .id = 32,
         .doc = "Ends the plot limits, and draws anew if the plot was asked for before."}),
    Method<&C::SetPlotLimit>(
        {.name = "SetPlotLimit",
         .id = 33,
         .parameters = {"LPL", "UPL"},
         .doc =
             "Pins the scale of the values from LPL to UPL, and draws anew if the plot was asked "
             "for before. False for a pair out of order, which ends limits in force."}),
};

inline constexpr std::array kVariantLoad = {
    Method<&C::SetWaferData_Variant>(
        {.name = "SetWaferData_Variant",
         .id = 34,
         .parameters = {"x", "y", "Z"},
         .doc = "SetWaferData from variants that hold arrays of 32-bit floats."}),
};

constexpr auto LoadMembers(const Caption& caption = {}) {
  return std::array{
      Method<&C::SetWaferData>(
          {.name = "SetWaferData",
           .id = 35,
           .parameters = {"x", "y", "Z"},
           .doc = "Takes sites in mm from the wafer's centre, Y up, with their values; at most "
                  "32767. Gives 0, 1 or 2 for upper or lower bounds that differ, or 4 for what "
                  "else doesn't fit."}),
      Property<C, bool, &C::HideLegend, &C::HideLegend>(
          {.name = "HideLegend",
           .id = 36,
           .doc = "Whether the plot takes the place of the legend and its panel.",
           .change = Change::Announced,
           .initial = 0,
           .stored = Kept(Prefix::Last, "Legend", StoredKind::Boolean, 0)}),
      Property<C, std::string, &C::PlotCaption, &C::PlotCaption>(
          {.name = "PlotCaption",
           .id = 37,
           .doc = "Title of the frame around the plot, on the screen and on paper.",
           .change = Change::Repainted,
           .initial = caption.initial,
           .stored = caption.stored}),
  };
}

/// The places that `PrintPlot` leaves in the caller's variables are those of the map, on some.
template <auto method, class... Result>
inline constexpr std::array kPrintPlot = {Method<method, Result...>(
    {.name = "PrintPlot",
     .id = 40,
     .parameters = {"left", "top", "width", "height"},
     .doc = "Prints the plot in its frame, in twips from the corner of the page; the arguments may "
            "come back as the place of the map. Gives 0, 1 if the control is too small, 2 without "
            "data or printer."})};

template <auto method, class... Result>
inline constexpr std::array kPrintLegend = {Method<method, Result...>(
    {.name = "PrintLegend",
     .id = 41,
     .parameters = {"left", "top"},
     .doc = "Prints the legend in a frame, in twips from the corner of the page. Gives 0, or 1 "
            "without data or printer."})};

template <auto method>
inline constexpr std::array kPrintBareLegend = {Method<method>(
    {.name = "PrintLegend_No_Frame",
     .id = 42,
     .parameters = {"left", "top"},
     .doc =
         "Prints the legend alone, in twips from the corner of the page; the arguments come back "
         "in the printer's pixels. Gives 0, or 1 without data or printer."})};

template <auto method>
inline constexpr std::array kPrintThin = {Method<method>(
    {.name = "PrintPlot_THN",
     .id = 43,
     .parameters = {"left", "top", "width", "height"},
     .doc = "Prints the plot alone, for a small place on a page, in twips. Gives 0, 1 if the "
            "control is too small, 2 without data or printer."})};

inline constexpr std::array kDataMembers = {
    Method<&C::PrintWaferStatistic>(
        {.name = "PrintWaferStatistic",
         .id = 44,
         .parameters = {"left", "top", "units"},
         .doc = "Prints the statistics of the values, in twips from the corner of the page; the "
                "text of their unit stays with the wafer. Gives 0, or 1 without data or printer."}),
    Method<&C::PrintWaferSize>({.name = "PrintWaferSize",
                                .id = 45,
                                .parameters = {"left", "top"},
                                .doc =
                                    "Prints the diameters of the wafer, in twips from the corner "
                                    "of the page. Gives 0, or 1 without data or printer."}),
    Method<&C::clear>({.name = "clear",
                       .id = 50,
                       .doc = "Empties the drawing; the data stay for the next Plot."}),
    Method<&C::GetWaferData>(
        {.name = "GetWaferData",
         .id = 51,
         .parameters = {"x", "y", "Z"},
         .doc = "Gives the arrays the bounds 1 to n and the sites in the order in which they came; "
                "without data it leaves them. Gives n."}),
    Method<&C::SetDataFile>(
        {.name = "SetDataFile",
         .id = 52,
         .parameters = {"datafile", "nops"},
         .doc = "Takes the sites from a headerless file: nops X, nops Y and nops values, as "
                "little-endian 64-bit floats. Gives 0, or 4 for any failure."}),
    Method<&C::Interpolation>({.name = "Interpolation",
                               .id = 53,
                               .parameters = {"x", "y"},
                               .doc =
                                   "Value at a point in mm from the wafer's centre, from the four "
                                   "nearest sites. Needs no Plot before."}),
};

inline constexpr std::array kStaleMethod = {
    Method<&C::SetPlotNotVaild>({.name = "SetPlotNotVaild",
                                 .id = 54,
                                 .doc =
                                     "Marks the picture as out of date, so that the next Plot or "
                                     "change of size draws anew. Histo ignores it, and LineScan "
                                     "empties its drawing."}),
};

}  // namespace discoplan::rows
