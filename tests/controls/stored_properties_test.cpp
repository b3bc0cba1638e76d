// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

#include "discoplan/controls/control_factory.h"
#include "hosts/recording/recording_host.h"

namespace discoplan {
namespace {

using testing::ElementsAreArray;

struct Row {
  std::string key;
  StoredKind kind;
  Variant default_value;
};

constexpr Colour kIntervals[] = {0x000080, 0x0000FF, 0x00FFFF, 0x00FF00, 0x008080,
                                 0x008000, 0x808000, 0xFF0000, 0x800000, 0x800080};

Row Int16(const std::string& key, int default_value) {
  return {key, StoredKind::Int16, Variant(static_cast<std::int16_t>(default_value))};
}
Row Int32(const std::string& key, int default_value) {
  return {key, StoredKind::Int32, Variant(std::int32_t{default_value})};
}
Row ColourRow(const std::string& key, Colour default_value) {
  return {key, StoredKind::Int32, Variant(default_value)};
}

/// The expected list of a control, from what its keys begin with and from its own rows.
std::vector<Row> Expected(const std::string& first, const std::string& last, bool captioned,
                          const std::vector<Row>& own, StoredKind style = StoredKind::Int32,
                          const std::string& caption = "Wafer") {
  std::vector<Row> rows = {ColourRow(first + "BackColor", 0x8000000F),
                           {first + "FLAT", style, Variant(std::int32_t{1})},
                           Int16(first + "TESTDM", 194),
                           Int16(first + "WAFERDM", 200)};
  rows.insert(rows.end(), own.begin(), own.end());
  rows.push_back({last + "Legend", StoredKind::Boolean, BooleanVariant(false)});
  if (captioned) rows.push_back({last + "Caption", StoredKind::String, Variant(caption)});
  rows.push_back(Int16(last + "MousePointer", 0));
  rows.push_back({last + "MouseIcon", StoredKind::Object, Variant(ObjectRef())});
  return rows;
}

std::vector<Row> Intervals(const std::string& prefix, std::vector<Row> rest = {}) {
  std::vector<Row> rows;
  for (int i = 0; i < 10; ++i) {
    rows.push_back(ColourRow(prefix + "InterCol" + std::to_string(i), kIntervals[i]));
  }
  rows.insert(rows.end(), rest.begin(), rest.end());
  return rows;
}

std::vector<Row> Ranges(const std::string& prefix, std::vector<Row> rest) {
  rest.insert(rest.begin(),
              {ColourRow(prefix + "InterCol0", 0x80), ColourRow(prefix + "InterCol1", 0x8000),
               ColourRow(prefix + "InterCol2", 0x800000)});
  return rest;
}

Row HalfSigma(const std::string& key) { return {key, StoredKind::Double, Variant(0.5)}; }

const std::vector<Row> kSurface = {Int16("StdResx3D", 5),    Int16("StdResy3D", 5),
                                   Int16("StdAlp3D", 40),    Int16("StdPhi3D", 40),
                                   Int16("StdThet3D", 35),   Int32("StdD3PlotType", 1),
                                   Int16("StdD3Scale3D", 40)};
const std::vector<Row> kBars = {Int16("Stdbx2DB", 5),    Int16("Stdby2DB", 5),
                                Int16("StdAlp2DB", 40),  Int16("StdPhi2DB", 40),
                                Int16("StdThet2DB", 35), Int16("StdD3Scale2DB", 10)};
const std::vector<Row> kLine = {Int16("RotAngle", 0),     Int16("1DPlotType", 1),
                                Int16("1DRotationX", 0),  Int16("1DRotationY", 0),
                                Int16("1DLineStartX", 0), Int16("1DLineStartY", 0),
                                Int16("1DLineEndX", 0),   Int16("1DLineEndY", 0)};
const Row kBeam = ColourRow("StdBeamColor", 0x8000);
const Row kCurve = ColourRow("StdGaussCurveColor", 0x80);
const Row kClasses = Int16("StdStatResol", 10);
const Row kType = Int16("StdPlotType", 1);

const struct {
  const char* control;
  std::vector<Row> written;
  std::vector<Row> read;  // the same if empty
} kLists[] = {
    {"Plot2D",
     Expected("2D", "2D", true, Intervals("2D", {Int16("StdResx2D", 5), Int32("StdMark2D", 0)})),
     {}},
    {"Plot2DS",
     Expected("2DS", "2DS", true,
              Ranges("2DS", {Int16("StdResx2DS", 5), Int32("StdMark2DS", 0),
                             HalfSigma("StdSigRange2DS")})),
     {}},
    {"Plot2DC",
     Expected("2DC", "2DC", true,
              {ColourRow("2DCMeanCurveCol", 0x8000), ColourRow("2DCUpperCurveCol", 0x80),
               ColourRow("2DCLowerCurveCol", 0x800000), Int16("StdReso", 0), Int16("StdExCon", 1),
               Int16("StdDist", 1), Int16("StdColor", -1)}),
     {}},
    {"Plot2DN", Expected("2DN", "2DN", true, Intervals("2DN")), {}},
    {"Plot3D", Expected("3D", "3D", true, Intervals("3D", kSurface)),
     Expected("3D", "3D", true, Intervals("2D", kSurface), StoredKind::Int16)},
    {"Plot3DS",
     Expected("3DS", "3DS", true,
              Ranges("3DS", {Int16("StdResx3DS", 5), Int16("StdResy3DS", 5), Int16("StdAlp3DS", 40),
                             Int16("StdPhi3DS", 40), Int16("StdThet3DS", 35),
                             HalfSigma("StdSigRange3DS"), Int16("StdD3Scale3DS", 40)})),
     Expected("3DS", "3DS", true,
              Ranges("3DS", {Int16("StdResx3DS", 5), Int16("StdResy3DS", 5), Int16("StdAlp3DS", 40),
                             Int16("StdPhi3DS", 40), Int16("StdThet3DS", 35),
                             HalfSigma("StdSigRange3DS"), Int16("StdD3Scale3DS", 40)}),
              StoredKind::Int16)},
    {"Plot3DB", Expected("2DB", "2DB", true, Intervals("2DB", kBars)),
     Expected("2DB", "2DB", true, Intervals("2D", kBars), StoredKind::Int16)},
    {"Histo", Expected("", "", false, {kType, kClasses, kBeam, kCurve}),
     Expected("", "", false, {kBeam, kCurve, kClasses, kType})},
    {"LineScan", Expected("", "1D", true, kLine),
     Expected("", "1D", true, kLine, StoredKind::Int32, "")},
};

/// Writes down what is asked of it.
class AskedBag final : public PropertyBag {
 public:
  void WriteProperty(std::string_view key, StoredKind kind, const Variant&,
                     const Variant& default_value) override {
    written.push_back({std::string(key), kind, default_value});
  }
  Variant ReadProperty(std::string_view key, const Variant& default_value) const override {
    read.push_back({std::string(key), StoredKind::Int32, default_value});
    return default_value;
  }

  std::vector<Row> written;
  mutable std::vector<Row> read;
};

std::string Text(const Row& row, bool with_kind) {
  std::string text = row.key;
  if (with_kind) text += ' ' + std::string(NameOf(row.kind));
  const Variant& value = row.default_value;
  if (row.kind == StoredKind::Object || value == Variant(ObjectRef())) return text + " nothing";
  if (std::holds_alternative<std::string>(value.value()))
    return text + " '" + value.AsString() + "'";
  if (std::holds_alternative<Colour>(value.value())) {
    return text + ' ' + std::to_string(value.AsColour());
  }
  return text + ' ' + std::to_string(value.AsDouble());
}

std::vector<std::string> Texts(const std::vector<Row>& rows, bool with_kind) {
  std::vector<std::string> texts;
  for (const Row& row : rows) texts.push_back(Text(row, with_kind));
  return texts;
}

class Stored : public testing::Test {
 protected:
  std::unique_ptr<PlotControl> New(std::string_view kind) {
    auto control = NewControl(kind, host_, &container_);
    control->InitProperties();
    container_.TakeAnnounced();
    return control;
  }
  static double Read(PlotControl& control, std::string_view property) {
    const Variant value = control.Members().At(property).Get(control);
    return std::holds_alternative<Colour>(value.value()) ? value.AsColour() : value.AsDouble();
  }
  static void Set(PlotControl& control, std::string_view property, double value) {
    control.Members().At(property).Set(control, Variant(value));
  }
  /// Another control of the class with what the first one wrote.
  std::unique_ptr<PlotControl> RoundTrip(PlotControl& control) {
    MemoryBag bag;
    control.WriteProperties(bag);
    auto other = NewControl(control.root().name, host_, &container_);
    other->ReadProperties(bag);
    return other;
  }

  RecordingHost host_;
  RecordingContainer container_;
};

TEST_F(Stored, KeysKindsDefaultsAndOrdersOfWritingAndReading) {
  for (const auto& list : kLists) {
    const auto control = New(list.control);
    AskedBag bag;
    control->WriteProperties(bag);
    control->ReadProperties(bag);
    EXPECT_THAT(Texts(bag.written, true), ElementsAreArray(Texts(list.written, true)))
        << list.control;
    const std::vector<Row>& read = list.read.empty() ? list.written : list.read;
    EXPECT_THAT(Texts(bag.read, false), ElementsAreArray(Texts(read, false))) << list.control;
    std::vector<StoredKind> kinds, expected;
    for (const StoredProperty& row : control->Class().SettingsRead()) kinds.push_back(row.kind);
    for (const Row& row : read) expected.push_back(row.kind);
    EXPECT_EQ(kinds, expected) << list.control;
  }
}

TEST_F(Stored, NewControlsComeBackAsTheyWere) {
  for (const auto& list : kLists) {
    const auto control = New(list.control);
    const auto other = RoundTrip(*control);
    for (const StoredProperty& row : control->Class().SettingsWritten()) {
      if (row.kind == StoredKind::String || row.kind == StoredKind::Object) continue;
      EXPECT_EQ(Read(*other, row.member->name), Read(*control, row.member->name))
          << list.control << ' ' << row.member->name;
    }
  }
}

TEST_F(Stored, EmptyStoresGiveTheDefaults) {
  const MemoryBag nothing;
  auto bars = New("Plot3DB");
  EXPECT_EQ(Read(*bars, "BeamScale"), 1);
  bars->ReadProperties(nothing);
  EXPECT_EQ(Read(*bars, "BeamScale"), 10);
  auto scan = New("LineScan");
  scan->PlotCaption("Scan");
  scan->ReadProperties(nothing);
  EXPECT_EQ(scan->PlotCaption(), "");
  auto map = New("Plot2D");
  map->BackColor(0x123456);
  map->ReadProperties(nothing);
  EXPECT_EQ(map->BackColor(), 0x123456U) << "the colour that is there is the default";
}

TEST_F(Stored, EverySettingThatCanComesBack) {
  const struct {
    const char* control;
    const char* property;
    double value;
  } rows[] = {{"Plot2D", "BackColor", 0x00FFFF}, {"Plot2D", "WaferStyle", 2},
              {"Plot2D", "TestDiameter", 150.5}, {"Plot2D", "WaferDiameter", 300},
              {"Plot2D", "IntervalColor3", 77},  {"Plot2D", "Resolution", 2.25},
              {"Plot2D", "ShowSites", -1},       {"Plot2D", "HideLegend", -1},
              {"Plot2D", "MousePointer", 2},     {"Plot2DS", "IntervalColor2", 9},
              {"Plot2DS", "SigmaRange", 1.75},   {"Plot2DC", "MeanCurveColor", 5},
              {"Plot2DC", "markSites", 3},       {"Plot2DC", "Interval", 2.5},
              {"Plot2DC", "PlotColored", 0},     {"Plot2DC", "Resolution", 2},
              {"Plot2DN", "IntervalColor9", 8},  {"Plot3D", "PlotType", 2},
              {"Plot3D", "GridRotation", 90},    {"Plot3D", "PlotScale", 12},
              {"Plot3DS", "WaferRotation", 359}, {"Plot3DS", "YResolution", 3},
              {"Plot3DB", "BeamWidth", 2.5},     {"Plot3DB", "BeamScale", 0.125},
              {"Histo", "PlotType", 4},          {"Histo", "Resolution", 25},
              {"Histo", "BeamColor", 3},         {"LineScan", "angle", 123},
              {"LineScan", "PlotType", 2},       {"LineScan", "RotationPointY", -5},
              {"LineScan", "LineStartPointX", 7}};
  for (const auto& row : rows) {
    const auto control = New(row.control);
    Set(*control, row.property, row.value);
    EXPECT_EQ(Read(*RoundTrip(*control), row.property), row.value)
        << row.control << ' ' << row.property;
  }
}

TEST_F(Stored, ColoursOfSurfacesAndBarsDontComeBack) {
  for (const char* kind : {"Plot3D", "Plot3DB"}) {
    const auto control = New(kind);
    Set(*control, "IntervalColor3", 0x112233);
    EXPECT_EQ(Read(*RoundTrip(*control), "IntervalColor3"), 0x00FF00) << kind;
    MemoryBag bag;
    bag.WriteProperty("2DInterCol3", StoredKind::Int32, Variant(static_cast<double>(0x445566)),
                      Variant());
    control->ReadProperties(bag);
    EXPECT_EQ(Read(*control, "IntervalColor3"), 0x445566) << kind;
  }
}

TEST_F(Stored, TheEndOfALineComesBackTwisted) {
  const auto scan = New("LineScan");
  const std::pair<const char*, double> points[] = {
      {"PlotType", 2},        {"RotationPointX", 1}, {"RotationPointY", 2}, {"LineStartPointX", 3},
      {"LineStartPointY", 4}, {"LineEndPointX", 5},  {"LineEndPointY", 6}};
  for (const auto& [property, value] : points) Set(*scan, property, value);
  const auto other = RoundTrip(*scan);
  for (const auto& [property, value] : points) {
    const std::string name = property;
    const double read = name == "LineEndPointX" ? 6 : name == "LineEndPointY" ? 0 : value;
    EXPECT_EQ(Read(*other, property), read) << property;
  }
}

TEST_F(Stored, ValuesPassThroughTheProperties) {
  auto map = New("Plot2D");
  MemoryBag bag;
  bag.WriteProperty("2DTESTDM", StoredKind::Int16, Variant(300.0), Variant());
  bag.WriteProperty("StdResx2D", StoredKind::Int16, Variant(90.0), Variant());
  map->ReadProperties(bag);
  EXPECT_EQ(map->TestDiameter(), 300) << "larger than the wafer until it is plotted";
  EXPECT_EQ(Read(*map, "Resolution"), 75);
  EXPECT_EQ(map->Plot(), PlotResult::NoData);
  const std::vector<float> x = {0, 5, 9}, z = {1, 2, 3};
  ASSERT_EQ(map->SetWaferData(x, x, z), LoadResult::Loaded);
  EXPECT_EQ(map->Plot(), PlotResult::Done);
  EXPECT_EQ(map->TestDiameter(), 200);

  MemoryBag fine;
  fine.WriteProperty("StdResx2D", StoredKind::Int16, Variant(60.0), Variant());
  map->ReadProperties(fine);
  EXPECT_EQ(Read(*map, "Resolution"), 48.5);
}

TEST_F(Stored, ReadingAnnouncesAllButThePointer) {
  const auto map = New("Plot2DN");
  map->ReadProperties(MemoryBag());
  const std::vector<std::string> announced = container_.TakeAnnounced();
  EXPECT_EQ(announced.size(), map->Class().SettingsRead().size() - 1);
  EXPECT_EQ(announced.front(), "BackColor");
  EXPECT_EQ(announced.back(), "MouseIcon");
  EXPECT_EQ(std::ranges::count(announced, "MousePointer"), 0);
}

TEST_F(Stored, ValuesOfTheWrongKindAreErrors) {
  const auto map = New("Plot2D");
  MemoryBag bag;
  bag.WriteProperty("2DFLAT", StoredKind::Int32, Variant(std::string("flat")), Variant());
  EXPECT_THROW(map->ReadProperties(bag), RunTimeError);
}

TEST(MemoryBagTest, KeepsTheLastValueOfAKey) {
  MemoryBag bag;
  bag.WriteProperty("a", StoredKind::Int16, Variant(1.0), Variant(0.0));
  bag.WriteProperty("b", StoredKind::String, Variant(std::string("x")), Variant());
  bag.WriteProperty("a", StoredKind::Int16, Variant(2.0), Variant(0.0));
  EXPECT_EQ(bag.entries().size(), 2U);
  EXPECT_EQ(bag.ReadProperty("a", Variant()).AsDouble(), 2);
  EXPECT_EQ(bag.ReadProperty("A", Variant(7.0)).AsDouble(), 7);
}

}  // namespace
}  // namespace discoplan
