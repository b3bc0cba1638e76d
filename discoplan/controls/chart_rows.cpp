// SPDX-License-Identifier: MIT
// The classes that show no wafer from outside: the histogram and the line scan.

#include "discoplan/controls/class_rows.h"
#include "discoplan/controls/histo.h"
#include "discoplan/controls/line_scan.h"

namespace discoplan {
namespace {

using namespace rows;

namespace histo {

using C = Histo;
constexpr std::array<Names, 2> kPages = {"WaferInfoProp", "HistogrammProp"};
constexpr std::array kOptions = {
    Property<C, PlotTyEnum, &C::PlotType, &C::PlotType>(
        {.name = "PlotType",
         .id = 72,
         .doc = "On which side of the chart the value axis lies; what is none of the four becomes "
                "vbbottom.",
         .change = Change::Stale,
         .initial = 1,
         .stored = Kept("StdPlotType", StoredKind::Int16, 1)}),
    Property<C, float, &C::Resolution, &C::Resolution>(
        {.name = "Resolution",
         .id = 60,
         .doc = "Number of classes, rounded to a whole number; 0 becomes 10.",
         .change = Change::Stale,
         .initial = 10,
         .stored = Kept("StdStatResol", StoredKind::Int16, 10)}),
};
constexpr std::array kColours = {
    Property<C, Colour, &C::BeamColor, &C::BeamColor>(
        {.name = "BeamColor",
         .id = 113,
         .doc = "Colour of the bars.",
         .change = Change::Stale,
         .initial = kRangeColours[1],
         .stored = Kept("StdBeamColor", StoredKind::Int32, kRangeColours[1])}),
    Property<C, Colour, &C::GaussCurveColor, &C::GaussCurveColor>(
        {.name = "GaussCurveColor",
         .id = 114,
         .doc = "Colour of the Gauss curve.",
         .change = Change::Stale,
         .initial = kRangeColours[0],
         .stored = Kept("StdGaussCurveColor", StoredKind::Int32, kRangeColours[0])}),
};
constexpr std::array kMethods = {
    Method<&C::SetChartDim>({.name = "SetChartDim",
                             .id = 120,
                             .parameters = {"topC", "heightC"},
                             .doc = "Aligns the chart with a plot beside it: its top and height in "
                                    "twips, unless the top is 0."}),
    Method<&C::Borderstyle>({.name = "Borderstyle",
                             .id = 121,
                             .parameters = {"Bstyle"},
                             .doc = "Gives the frame around the chart a line, or none for 0."}),
    Method<&C::ShowControlLimit>(
        {.name = "ShowControlLimit",
         .id = 122,
         .parameters = {"LCLs", "UCLs"},
         .doc = "Shows the control limits in all histograms of the thread, from their next draw "
                "on, where the value axis stands upright."}),
    Method<&C::ResetControlLimit>(
        {.name = "ResetControlLimit",
         .id = 123,
         .doc =
             "Hides the control limits in all histograms of the thread, from their next draw on."}),
};
constexpr std::array kMembers =
    Joined(kHostMembers, WaferMembers(), kOptions, kPlotMembers, kVariantLoad,
           LoadMembers({.initial = " Wafer ", .stored = {}}), kPrintPlot<&C::PrintPlot>,
           kPrintThin<&C::PrintPlot_THN>, kDataMembers, kColours, kMethods, kStaleMethod);
constexpr std::array kInitialised = InitialOrder("Resolution", "HideLegend", "PlotType");
constexpr std::array kWritten =
    StoreOrder(std::array<Names, 4>{"PlotType", "Resolution", "BeamColor", "GaussCurveColor"});
constexpr std::array kRead =
    StoreOrder(std::array<Names, 4>{"BeamColor", "GaussCurveColor", "Resolution", "PlotType"});

}  // namespace histo

namespace line_scan {

using C = LineScan;
constexpr std::array<Names, 2> kPages = {"WaferInfoProp", "LineScanAngleProp"};
constexpr Stored::Reading kCaptionRead{StoredKind::String, ""};
/// Stores have always been read into the other coordinate.
constexpr Stored::Reading kEndYRead{
    StoredKind::Int16, 0, [](Object& scan, const Variant& value, const Member& member) {
      member_detail::As<C>(scan, member).LineEndPointX(value.AsInt16());
    }};

/// A coordinate of the cut, which is announced under its key.
template <std::int16_t (C::*get)() const, void (C::*set)(std::int16_t)>
constexpr Member Point(Names name, std::int32_t id, Names key, Names doc,
                       const Stored::Reading* reading = nullptr) {
  return Property<C, std::int16_t, get, set>(
      {.name = name,
       .id = id,
       .doc = doc,
       .change = Change::Stale,
       .announced = key,
       .initial = 0,
       .stored = Kept(Prefix::None, key, StoredKind::Int16, 0, reading)});
}

constexpr std::array kCut = {
    Property<C, std::int16_t, &C::angle, &C::angle>(
        {.name = "angle",
         .id = 76,
         .doc =
             "Angle of the cut, 0 to 360 degrees, where 360 counts as 0; another value tells the "
             "user and changes nothing. At 0 the cut runs up the wafer, and it turns "
             "counterclockwise: at 90 it runs from right to left, so that X falls along it.",
         .change = Change::Repainted,
         .announced = "Angle",
         .initial = 0,
         .stored = Kept("RotAngle", StoredKind::Int16, 0)}),
    Property<C, PlotTypeEnumLineScan, &C::PlotType, &C::PlotType>(
        {.name = "PlotType",
         .id = 72,
         .doc = "How the cut through the wafer is given.",
         .change = Change::Stale,
         .announced = "1DPlotType",
         .initial = 1,
         .stored = Kept("1DPlotType", StoredKind::Int16, 1)}),
    Point<&C::RotationPointX, &C::RotationPointX>(
        "RotationPointX", 77, "1DRotationX",
        "X of the point through which a cut at an angle goes, in whole mm."),
    Point<&C::RotationPointY, &C::RotationPointY>(
        "RotationPointY", 78, "1DRotationY",
        "Y of the point through which a cut at an angle goes, in whole mm."),
    Point<&C::LineStartPointX, &C::LineStartPointX>("LineStartPointX", 79, "1DLineStartX",
                                                    "X of the start of a line, in whole mm."),
    Point<&C::LineStartPointY, &C::LineStartPointY>("LineStartPointY", 80, "1DLineStartY",
                                                    "Y of the start of a line, in whole mm."),
    Point<&C::LineEndPointX, &C::LineEndPointX>("LineEndPointX", 81, "1DLineEndX",
                                                "X of the end of a line, in whole mm."),
    Point<&C::LineEndPointY, &C::LineEndPointY>("LineEndPointY", 82, "1DLineEndY",
                                                "Y of the end of a line, in whole mm.", &kEndYRead),
};
constexpr std::array kMembers = Joined(
    kHostMembers, WaferMembers(), kCut, kPlotMembers,
    LoadMembers(
        {.initial = "",
         .stored = Kept(Prefix::Last, "Caption", StoredKind::String, "Wafer", &kCaptionRead)}),
    kPrintPlot<&C::PrintPlot>, kDataMembers, kStaleMethod);
constexpr std::array kInitialised = InitialOrder("HideLegend", "PlotCaption");
constexpr std::array kStored = StoreOrder(
    std::array<Names, 8>{"angle", "PlotType", "RotationPointX", "RotationPointY", "LineStartPointX",
                         "LineStartPointY", "LineEndPointX", "LineEndPointY"});

}  // namespace line_scan

}  // namespace

constinit const ControlClass Histo::kClass = {
    .name = "Histo",
    .kind = "histo",
    .title = "Histogram",
    .summary = "Histogram of a wafer's values",
    .class_id = "4239C2F6-3F4C-435A-99AE-08CC4096724C",
    .program_id = "Discoplan.Histo",
    .about_number = 7,
    .family = Family::Chart,
    .least = {2000, 2000},
    .least_printed = {100, 100},
    .asks_size_first = true,
    .least_sites = 2,
    .pages = histo::kPages,
    .members = MemberTable(histo::kMembers),
    .events = kEvents,
    .prefixes = {"", "", ""},
    .initialised = histo::kInitialised,
    .written = histo::kWritten,
    .read = histo::kRead,
    .make = &Make<Histo>,
};

constinit const ControlClass LineScan::kClass = {
    .name = "LineScan",
    .kind = "linescan",
    .title = "Line scan",
    .summary = "Values along a cut across a wafer",
    .class_id = "988099C6-58C9-47F2-9AAB-431F5EAD1C54",
    .program_id = "Discoplan.LineScan",
    .about_number = 6,
    .family = Family::LineScan,
    .least = {4000, 2850},
    .least_printed = {4000, 2850},
    .least_sites = 4,
    .pages = line_scan::kPages,
    .members = MemberTable(line_scan::kMembers),
    .events = kEvents,
    .prefixes = {"", "1D", ""},
    .initialised = line_scan::kInitialised,
    .written = line_scan::kStored,
    .read = line_scan::kStored,
    .make = &Make<LineScan>,
};

}  // namespace discoplan
