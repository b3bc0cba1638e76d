// SPDX-License-Identifier: MIT
// The classes that show the wafer in perspective.

#include "discoplan/controls/class_rows.h"
#include "discoplan/controls/plot3d.h"
#include "discoplan/controls/plot3db.h"
#include "discoplan/controls/plot3ds.h"

namespace discoplan {
namespace {

using namespace rows;

constexpr ControlClass::Size kLeast{4500, 3180};

/// Under which keys a class keeps the angles of its view.
struct AngleKeys {
  Names wafer_rotation;
  Names grid_rotation;
  Names grid_inclination;
};

constexpr auto ViewMembers(const AngleKeys& keys) {
  using C = ViewControl;
  return std::array{
      Property<C, std::int16_t, &C::WaferRotation, &C::WaferRotation>(
          {.name = "WaferRotation",
           .id = 69,
           .doc = "Rotation of the wafer in the plot, 0 to 359 degrees; anything else becomes 40. "
                  "A change alone doesn't draw anew.",
           .change = Change::Repainted,
           .initial = 40,
           .stored = Kept(keys.wafer_rotation, StoredKind::Int16, 40)}),
      Property<C, std::int16_t, &C::GridRotation, &C::GridRotation>(
          {.name = "GridRotation",
           .id = 70,
           .doc =
               "Rotation of the grid below the wafer, 0 to 91 degrees; anything else becomes 40.",
           .change = Change::Stale,
           .initial = 40,
           .stored = Kept(keys.grid_rotation, StoredKind::Int16, 40)}),
      Property<C, std::int16_t, &C::GridInclination, &C::GridInclination>(
          {.name = "GridInclination",
           .id = 71,
           .doc = "Tilt of the grid, 0 to 91 degrees, where 90 is seen from straight above; "
                  "anything else becomes 35.",
           .change = Change::Stale,
           .initial = 35,
           .stored = Kept(keys.grid_inclination, StoredKind::Int16, 35)}),
  };
}

/// Under which keys a surface keeps its grid.
struct GridKeys {
  Names x_resolution;
  Names y_resolution;
  Names plot_scale;
};

constexpr auto SurfaceMembers(const GridKeys& keys) {
  using C = SurfaceControl;
  return std::array{
      Property<C, float, &C::XResolution, &C::XResolution>(
          {.name = "XResolution",
           .id = 66,
           .doc = "Grid step along the first axis in mm; 0 or less becomes 5, and a quarter of the "
                  "test diameter is the most.",
           .change = Change::Stale,
           .initial = 5,
           .stored = Kept(keys.x_resolution, StoredKind::Int16, 5)}),
      Property<C, float, &C::YResolution, &C::YResolution>(
          {.name = "YResolution",
           .id = 67,
           .doc = "Grid step along the second axis in mm; 0 or less becomes 5, and a quarter of "
                  "the test diameter is the most.",
           .change = Change::Stale,
           .initial = 5,
           .stored = Kept(keys.y_resolution, StoredKind::Int16, 5)}),
      Property<C, std::int16_t, &C::PlotScale, &C::PlotScale>(
          {.name = "PlotScale",
           .id = 68,
           .doc = "Height of the largest value in mm of the wafer; below 1 becomes 40.",
           .change = Change::Stale,
           .initial = 40,
           .stored = Kept(keys.plot_scale, StoredKind::Int16, 40)}),
  };
}

constexpr std::array<Names, 5> kSurfaceNames = {"XResolution", "YResolution", "GridRotation",
                                                "WaferRotation", "GridInclination"};

namespace plot3d {

using C = Plot3D;
constexpr std::array<Names, 2> kPages = {"WaferInfoProp", "Plot3DProp"};
constexpr std::array kType = {Property<C, PlotTypeEnum, &C::PlotType, &C::PlotType>(
    {.name = "PlotType",
     .id = 72,
     .doc = "How the surface is drawn; stored as given.",
     .change = Change::Stale,
     .initial = 1,
     .stored = Kept("StdD3PlotType", StoredKind::Int32, 1)})};
constexpr std::array kMembers =
    Joined(kHostMembers, WaferMembers(&kAsInt16),
           SurfaceMembers({"StdResx3D", "StdResy3D", "StdD3Scale3D"}),
           ViewMembers({"StdPhi3D", "StdAlp3D", "StdThet3D"}), kType, kPlotMembers, kVariantLoad,
           LoadMembers(), kPrintPlot<&C::PrintPlot>, kPrintLegend<&C::PrintLegend>, kDataMembers,
           kIntervals<C>, kStaleMethod);
constexpr std::array kInitialised =
    JoinedNames(InitialOrder(), kSurfaceNames,
                std::array<Names, 4>{"PlotType", "PlotScale", "HideLegend", "PlotCaption"});
constexpr std::array kStored =
    StoreOrder(kIntervalNames, kSurfaceNames, std::array<Names, 2>{"PlotType", "PlotScale"});

}  // namespace plot3d

namespace plot3ds {

using C = Plot3DS;
constexpr std::array<Names, 2> kPages = {"WaferInfoProp", "Plot3DSProp"};
constexpr std::array kMembers =
    Joined(kHostMembers, WaferMembers(&kAsInt16),
           SurfaceMembers({"StdResx3DS", "StdResy3DS", "StdD3Scale3DS"}),
           ViewMembers({"StdPhi3DS", "StdAlp3DS", "StdThet3DS"}),
           SigmaMembers<SigmaControl<SurfaceControl>>("StdSigRange3DS"), kPlotMembers, kVariantLoad,
           LoadMembers(), kPrintPlot<&C::PrintPlot>, kPrintLegend<&C::PrintLegend>,
           kPrintBareLegend<&C::PrintLegend_No_Frame>, kDataMembers, kRanges<C>, kStaleMethod);
constexpr std::array kInitialised =
    JoinedNames(InitialOrder("SigmaRange"), kSurfaceNames,
                std::array<Names, 3>{"PlotScale", "HideLegend", "PlotCaption"});
constexpr std::array kStored =
    StoreOrder(kRangeNames, kSurfaceNames, std::array<Names, 2>{"SigmaRange", "PlotScale"});

}  // namespace plot3ds

namespace plot3db {

using C = Plot3DB;
constexpr std::array<Names, 2> kPages = {"WaferInfoProp", "Plot3DBProp"};
constexpr std::array kBars = {
    Property<C, float, &C::BeamWidth, &C::BeamWidth>(
        {.name = "BeamWidth",
         .id = 73,
         .doc = "Half a side of a bar's foot along the grid's first axis in mm; stored as given, "
                "and 0 becomes 5 in the next Plot.",
         .change = Change::Stale,
         .initial = 5,
         .stored = Kept("Stdbx2DB", StoredKind::Int16, 5)}),
    Property<C, float, &C::BeamHeight, &C::BeamHeight>(
        {.name = "BeamHeight",
         .id = 74,
         .doc = "Half a side of a bar's foot along the grid's second axis in mm; stored as given, "
                "and 0 becomes 5 in the next Plot.",
         .change = Change::Stale,
         .initial = 5,
         .stored = Kept("Stdby2DB", StoredKind::Int16, 5)}),
    // A stored scale has another default than that of a new control.
    Property<C, float, &C::BeamScale, &C::BeamScale>(
        {.name = "BeamScale",
         .id = 75,
         .doc = "Millimetres of the wafer for a height of one unit of the values; stored as given.",
         .change = Change::Stale,
         .initial = 1,
         .stored = Kept("StdD3Scale2DB", StoredKind::Int16, 10)}),
};
constexpr std::array kMembers =
    Joined(kHostMembers, WaferMembers(&kAsInt16), kBars,
           ViewMembers({"StdPhi2DB", "StdAlp2DB", "StdThet2DB"}), kPlotMembers, kVariantLoad,
           LoadMembers(), kPrintPlot<&C::PrintPlot>, kPrintLegend<&C::PrintLegend>, kDataMembers,
           kIntervals<C>, kStaleMethod);
constexpr std::array<Names, 6> kOwnNames = {"BeamWidth",     "BeamHeight",      "GridRotation",
                                            "WaferRotation", "GridInclination", "BeamScale"};
constexpr std::array kInitialised =
    JoinedNames(InitialOrder(), kOwnNames, std::array<Names, 2>{"HideLegend", "PlotCaption"});
constexpr std::array kStored = StoreOrder(kIntervalNames, kOwnNames);

}  // namespace plot3db

}  // namespace

// The interval colours are read under the keys of the coloured map.

constinit const ControlClass Plot3D::kClass = {
    .name = "Plot3D",
    .kind = "3D",
    .title = "Surface",
    .summary = "Wafer as a surface",
    .class_id = "C35A815E-8D93-408D-A618-E12E5A90DEE6",
    .program_id = "Discoplan.Plot3D",
    .about_number = 2,
    .family = Family::View,
    .least = kLeast,
    .least_printed = {2500, 1750},
    .least_sites = 4,
    .pages = plot3d::kPages,
    .members = MemberTable(plot3d::kMembers),
    .events = kEvents,
    .prefixes = {"3D", "3D", "2D"},
    .initialised = plot3d::kInitialised,
    .written = plot3d::kStored,
    .read = plot3d::kStored,
    .make = &Make<Plot3D>,
};

constinit const ControlClass Plot3DS::kClass = {
    .name = "Plot3DS",
    .kind = "3DS",
    .title = "Sigma surface",
    .summary = "Wafer as a surface by sigma ranges",
    .class_id = "9C552309-290A-4B34-B7F2-965DD6DEC76F",
    .program_id = "Discoplan.Plot3DS",
    .about_number = 4,
    .family = Family::View,
    .least = kLeast,
    .least_printed = {2500, 1750},
    .least_sites = 4,
    .pages = plot3ds::kPages,
    .members = MemberTable(plot3ds::kMembers),
    .events = kEvents,
    .prefixes = {"3DS", "3DS", "3DS"},
    .initialised = plot3ds::kInitialised,
    .written = plot3ds::kStored,
    .read = plot3ds::kStored,
    .make = &Make<Plot3DS>,
};

constinit const ControlClass Plot3DB::kClass = {
    .name = "Plot3DB",
    .kind = "3DB",
    .title = "Bars",
    .summary = "Bars at the sites of a wafer",
    .class_id = "E3A8D661-3268-4843-805B-391D7183099F",
    .program_id = "Discoplan.Plot3DB",
    .about_number = 9,
    .family = Family::View,
    .least = kLeast,
    .least_printed = {2500, 1750},
    .least_sites = 1,
    .pages = plot3db::kPages,
    .members = MemberTable(plot3db::kMembers),
    .events = kEvents,
    .prefixes = {"2DB", "2DB", "2D"},
    .initialised = plot3db::kInitialised,
    .written = plot3db::kStored,
    .read = plot3db::kStored,
    .make = &Make<Plot3DB>,
};

}  // namespace discoplan
