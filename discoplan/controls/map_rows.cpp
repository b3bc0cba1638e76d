// SPDX-License-Identifier: MIT
// The classes that show the wafer from above.

#include "discoplan/controls/class_rows.h"
#include "discoplan/controls/plot2d.h"
#include "discoplan/controls/plot2dc.h"
#include "discoplan/controls/plot2dn.h"
#include "discoplan/controls/plot2ds.h"

namespace discoplan {
namespace {

using namespace rows;

constexpr ControlClass::Size kLeast{4500, 3180};

constexpr auto LatticeMembers(Names resolution_key, Names sites_key) {
  using C = LatticeControl;
  return std::array{
      Property<C, float, &C::Resolution, &C::Resolution>(
          {.name = "Resolution",
           .id = 60,
           .doc = "Cell side in mm; 0 or less becomes 5, and a quarter of the test diameter is the "
                  "most.",
           .change = Change::Stale,
           .initial = 5,
           .stored = Kept(resolution_key, StoredKind::Int16, 5)}),
      Property<C, Sites, &C::ShowSites, &C::ShowSites>(
          {.name = "ShowSites",
           .id = 61,
           .doc = "Whether the measured sites are marked on the plot.",
           .change = Change::Stale,
           .initial = 0,
           .stored = Kept(sites_key, StoredKind::Int32, 0)}),
  };
}

namespace plot2d {

constexpr std::array<Names, 2> kPages = {"WaferInfoProp", "Plot2DProp"};
constexpr std::array kMembers = Joined(
    kHostMembers, WaferMembers(), LatticeMembers("StdResx2D", "StdMark2D"), kPlotMembers,
    kVariantLoad, LoadMembers(), kPrintPlot<&Plot2D::PrintPlot>,
    kPrintLegend<&Plot2D::PrintLegend, float>, kDataMembers, kIntervals<Plot2D>, kStaleMethod);
constexpr std::array kInitialised =
    InitialOrder("Resolution", "ShowSites", "HideLegend", "PlotCaption");
constexpr std::array kStored =
    StoreOrder(kIntervalNames, std::array<Names, 2>{"Resolution", "ShowSites"});

}  // namespace plot2d

namespace plot2ds {

using C = Plot2DS;
constexpr std::array<Names, 2> kPages = {"WaferInfoProp", "Plot2DSProp"};
constexpr std::array kMembers =
    Joined(kHostMembers, WaferMembers(), LatticeMembers("StdResx2DS", "StdMark2DS"),
           SigmaMembers<SigmaControl<LatticeControl>>("StdSigRange2DS"), kPlotMembers, kVariantLoad,
           LoadMembers(), kPrintPlot<&C::PrintPlot>, kPrintLegend<&C::PrintLegend>,
           kPrintBareLegend<&C::PrintLegend_No_Frame>, kDataMembers, kRanges<C>, kStaleMethod);
constexpr std::array kInitialised =
    InitialOrder("Resolution", "SigmaRange", "ShowSites", "HideLegend", "PlotCaption");
constexpr std::array kStored =
    StoreOrder(kRangeNames, std::array<Names, 3>{"Resolution", "ShowSites", "SigmaRange"});

}  // namespace plot2ds

namespace plot2dc {

using C = Plot2DC;
constexpr std::array<Names, 2> kPages = {"WaferInfoProp", "Plot2DCProp"};
constexpr std::array kLines = {
    Property<C, float, &C::Interval, &C::Interval>(
        {.name = "Interval",
         .id = 63,
         .doc = "Distance of the lines in percent of the mean; 0 or less becomes 1.",
         .change = Change::Stale,
         .initial = 1,
         .stored = Kept("StdDist", StoredKind::Int16, 1)}),
    Property<C, ExconEnum, &C::markSites, &C::markSites>(
        {.name = "markSites",
         .id = 64,
         .doc = "Which points are marked on the plot; another value than the three marks none.",
         .change = Change::Stale,
         .announced = "MarkSites",
         .initial = 1,
         .stored = Kept("StdExCon", StoredKind::Int16, 1)}),
    Property<C, ResoEnum, &C::Resolution, &C::Resolution>(
        {.name = "Resolution",
         .id = 60,
         .doc = "Number of points that the lines are found from.",
         .change = Change::Stale,
         .initial = 0,
         .stored = Kept("StdReso", StoredKind::Int16, 0)}),
    Property<C, DrawColEnum, &C::PlotColored, &C::PlotColored>(
        {.name = "PlotColored",
         .id = 65,
         .doc = "Whether the lines are coloured; any value but 0 becomes -1.",
         .change = Change::Stale,
         .initial = -1,
         .stored = Kept("StdColor", StoredKind::Int16, -1)}),
};
constexpr std::array kColours = {
    Property<C, Colour, &C::MeanCurveColor, &C::MeanCurveColor>(
        {.name = "MeanCurveColor",
         .id = 110,
         .doc = "Colour of the line at the mean.",
         .change = Change::Stale,
         .initial = kRangeColours[1],
         .stored = Kept(Prefix::First, "MeanCurveCol", StoredKind::Int32, kRangeColours[1])}),
    Property<C, Colour, &C::UpperCurveColor, &C::UpperCurveColor>(
        {.name = "UpperCurveColor",
         .id = 111,
         .doc = "Colour of the lines above the mean.",
         .change = Change::Stale,
         .initial = kRangeColours[0],
         .stored = Kept(Prefix::First, "UpperCurveCol", StoredKind::Int32, kRangeColours[0])}),
    Property<C, Colour, &C::LowerCurveColor, &C::LowerCurveColor>(
        {.name = "LowerCurveColor",
         .id = 112,
         .doc = "Colour of the lines below the mean.",
         .change = Change::Stale,
         .initial = kRangeColours[2],
         .stored = Kept(Prefix::First, "LowerCurveCol", StoredKind::Int32, kRangeColours[2])}),
};
constexpr std::array kMembers = Joined(
    kHostMembers, WaferMembers(), kLines, kPlotMembers, kVariantLoad, LoadMembers(),
    kPrintPlot<&C::PrintPlot>, kPrintThin<&C::PrintPlot_THN>, kDataMembers, kColours, kStaleMethod);
constexpr std::array kInitialised =
    InitialOrder("Resolution", "markSites", "Interval", "PlotColored", "HideLegend", "PlotCaption");
constexpr std::array kStored =
    StoreOrder(std::array<Names, 7>{"MeanCurveColor", "UpperCurveColor", "LowerCurveColor",
                                    "Resolution", "markSites", "Interval", "PlotColored"});

}  // namespace plot2dc

namespace plot2dn {

constexpr std::array<Names, 1> kPages = {"WaferInfoProp"};
constexpr std::array kMembers =
    Joined(kHostMembers, WaferMembers(), kPlotMembers, kVariantLoad, LoadMembers(),
           kPrintPlot<&Plot2DN::PrintPlot>, kPrintLegend<&Plot2DN::PrintLegend, float>,
           kDataMembers, kIntervals<Plot2DN>, kStaleMethod);
constexpr std::array kInitialised = InitialOrder("HideLegend", "PlotCaption");
constexpr std::array kStored = StoreOrder(kIntervalNames);

}  // namespace plot2dn

}  // namespace

constinit const ControlClass Plot2D::kClass = {
    .name = "Plot2D",
    .kind = "2D",
    .title = "Map",
    .summary = "Coloured map of a wafer",
    .class_id = "6A2C02D3-6199-47A0-A1F2-E146C92E2394",
    .program_id = "Discoplan.Plot2D",
    .about_number = 1,
    .family = Family::Map,
    .least = kLeast,
    .least_sites = 4,
    .ignores_same_limits = true,
    .pages = plot2d::kPages,
    .members = MemberTable(plot2d::kMembers),
    .events = kEvents,
    .prefixes = {"2D", "2D", "2D"},
    .initialised = plot2d::kInitialised,
    .written = plot2d::kStored,
    .read = plot2d::kStored,
    .make = &Make<Plot2D>,
};

constinit const ControlClass Plot2DS::kClass = {
    .name = "Plot2DS",
    .kind = "2DS",
    .title = "Sigma ranges",
    .summary = "Map of a wafer by sigma ranges",
    .class_id = "14297D39-6431-43E2-962D-334E212BA0D1",
    .program_id = "Discoplan.Plot2DS",
    .about_number = 3,
    .family = Family::Map,
    .least = kLeast,
    .least_sites = 4,
    .pages = plot2ds::kPages,
    .members = MemberTable(plot2ds::kMembers),
    .events = kEvents,
    .prefixes = {"2DS", "2DS", "2DS"},
    .initialised = plot2ds::kInitialised,
    .written = plot2ds::kStored,
    .read = plot2ds::kStored,
    .make = &Make<Plot2DS>,
};

constinit const ControlClass Plot2DC::kClass = {
    .name = "Plot2DC",
    .kind = "2DC",
    .title = "Contours",
    .summary = "Contour map of a wafer",
    .class_id = "C0CF5C39-681A-423B-A62A-142DECCD2802",
    .program_id = "Discoplan.Plot2DC",
    .about_number = 5,
    .family = Family::Map,
    .least = kLeast,
    .least_sites = 4,
    .pages = plot2dc::kPages,
    .members = MemberTable(plot2dc::kMembers),
    .events = kEvents,
    .prefixes = {"2DC", "2DC", "2DC"},
    .initialised = plot2dc::kInitialised,
    .written = plot2dc::kStored,
    .read = plot2dc::kStored,
    .make = &Make<Plot2DC>,
};

constinit const ControlClass Plot2DN::kClass = {
    .name = "Plot2DN",
    .kind = "2DN",
    .title = "Values",
    .summary = "Values at the sites of a wafer",
    .class_id = "24ABBBAC-C72F-46B0-9C17-4CDE0F170781",
    .program_id = "Discoplan.Plot2DN",
    .about_number = 8,
    .family = Family::Map,
    .least = kLeast,
    .least_sites = 1,
    .ignores_same_limits = true,
    .pages = plot2dn::kPages,
    .members = MemberTable(plot2dn::kMembers),
    .events = kEvents,
    .prefixes = {"2DN", "2DN", "2DN"},
    .initialised = plot2dn::kInitialised,
    .written = plot2dn::kStored,
    .read = plot2dn::kStored,
    .make = &Make<Plot2DN>,
};

}  // namespace discoplan
