// SPDX-License-Identifier: MIT
#include "discoplan/controls/control_class.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>

#include "discoplan/base/numbers.h"
#include "discoplan/controls/plot2d.h"
#include "discoplan/controls/plot2dn.h"
#include "discoplan/dialogs/about_box.h"
#include "discoplan/dialogs/property_page.h"
#include "hosts/recording/recording_host.h"

namespace discoplan {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// What hosts have compiled in. A member may be added here, none changed.
const std::map<std::string, std::int32_t> kIds = {
    {"About", -552},
    {"MouseIcon", -522},
    {"MousePointer", -521},
    {"hwnd", -515},
    {"BackColor", -501},
    {"PrinterObj", 1},
    {"hdc", 2},
    {"WaferStyle", 10},
    {"StdDevPercent", 11},
    {"StdDev", 12},
    {"HiLo", 13},
    {"range", 14},
    {"Maximum", 15},
    {"Minimum", 16},
    {"mean", 17},
    {"TestDiameter", 18},
    {"WaferDiameter", 19},
    {"Plot", 30},
    {"ShowPlotOption", 31},
    {"ReleasePlotLimit", 32},
    {"SetPlotLimit", 33},
    {"SetWaferData_Variant", 34},
    {"SetWaferData", 35},
    {"HideLegend", 36},
    {"PlotCaption", 37},
    {"PrintPlot", 40},
    {"PrintLegend", 41},
    {"PrintLegend_No_Frame", 42},
    {"PrintPlot_THN", 43},
    {"PrintWaferStatistic", 44},
    {"PrintWaferSize", 45},
    {"clear", 50},
    {"GetWaferData", 51},
    {"SetDataFile", 52},
    {"Interpolation", 53},
    {"SetPlotNotVaild", 54},
    {"Resolution", 60},
    {"ShowSites", 61},
    {"SigmaRange", 62},
    {"Interval", 63},
    {"markSites", 64},
    {"PlotColored", 65},
    {"XResolution", 66},
    {"YResolution", 67},
    {"PlotScale", 68},
    {"WaferRotation", 69},
    {"GridRotation", 70},
    {"GridInclination", 71},
    {"PlotType", 72},
    {"BeamWidth", 73},
    {"BeamHeight", 74},
    {"BeamScale", 75},
    {"angle", 76},
    {"RotationPointX", 77},
    {"RotationPointY", 78},
    {"LineStartPointX", 79},
    {"LineStartPointY", 80},
    {"LineEndPointX", 81},
    {"LineEndPointY", 82},
    {"IntervalColor0", 100},
    {"IntervalColor1", 101},
    {"IntervalColor2", 102},
    {"IntervalColor3", 103},
    {"IntervalColor4", 104},
    {"IntervalColor5", 105},
    {"IntervalColor6", 106},
    {"IntervalColor7", 107},
    {"IntervalColor8", 108},
    {"IntervalColor9", 109},
    {"MeanCurveColor", 110},
    {"UpperCurveColor", 111},
    {"LowerCurveColor", 112},
    {"BeamColor", 113},
    {"GaussCurveColor", 114},
    {"SetChartDim", 120},
    {"Borderstyle", 121},
    {"ShowControlLimit", 122},
    {"ResetControlLimit", 123},
};
const std::map<std::string, std::string> kClassIds = {
    {"Plot2D", "6A2C02D3-6199-47A0-A1F2-E146C92E2394"},
    {"Plot2DS", "14297D39-6431-43E2-962D-334E212BA0D1"},
    {"Plot2DC", "C0CF5C39-681A-423B-A62A-142DECCD2802"},
    {"Plot2DN", "24ABBBAC-C72F-46B0-9C17-4CDE0F170781"},
    {"Plot3D", "C35A815E-8D93-408D-A618-E12E5A90DEE6"},
    {"Plot3DS", "9C552309-290A-4B34-B7F2-965DD6DEC76F"},
    {"Plot3DB", "E3A8D661-3268-4843-805B-391D7183099F"},
    {"Histo", "4239C2F6-3F4C-435A-99AE-08CC4096724C"},
    {"LineScan", "988099C6-58C9-47F2-9AAB-431F5EAD1C54"},
};

TEST(ControlClassRows, IdsNeverChange) {
  std::map<std::string, std::int32_t> ids;
  std::map<std::string, std::string> class_ids;
  for (const ControlClass* row : ControlClasses()) {
    class_ids[std::string(row->name)] = row->class_id;
    EXPECT_EQ(row->program_id, "Discoplan." + std::string(row->name));
    for (const Member& member : row->members) {
      const auto [known, added] = ids.emplace(member.name, member.id);
      EXPECT_EQ(known->second, member.id) << row->name << ' ' << member.name;
      EXPECT_EQ(row->members.Find(member.id), &member) << "twice: " << member.name;
    }
    std::map<std::string, std::int32_t> events;
    for (const Event& event : row->events) events[std::string(event.name)] = event.id;
    EXPECT_EQ(events, (std::map<std::string, std::int32_t>{{"Click", -600},
                                                           {"DblClick", -601},
                                                           {"MouseDown", -605},
                                                           {"MouseMove", -606},
                                                           {"MouseUp", -607}}));
  }
  EXPECT_EQ(ids, kIds);
  EXPECT_EQ(class_ids, kClassIds);
}

TEST(ControlClassRows, SayWhatEachThingMeans) {
  const auto is_sentence = [](std::string_view doc) {
    return doc.size() > 10 && doc.ends_with('.') && doc.find('|') == std::string_view::npos;
  };
  for (const ControlClass* row : ControlClasses()) {
    for (const Member& member : row->members) {
      EXPECT_TRUE(is_sentence(member.doc)) << row->name << ' ' << member.name;
      for (const Parameter& parameter : member.parameters) {
        EXPECT_FALSE(parameter.name.empty()) << member.name;
        EXPECT_NE(parameter.type, Type::None) << member.name;
      }
    }
    for (const Event& event : row->events) EXPECT_TRUE(is_sentence(event.doc)) << event.name;
    EXPECT_FALSE(row->summary.empty() || row->title.empty() || row->kind.empty());
  }
  for (const Enumeration& enumeration : Enumerations()) {
    for (const Enumerator& value : enumeration.values) {
      EXPECT_TRUE(is_sentence(value.doc)) << enumeration.name << ' ' << value.name;
      EXPECT_EQ(enumeration.Find(value.name), &value);
      EXPECT_EQ(enumeration.Find(std::int32_t{value.value}), &value);
    }
  }
}

class ControlRows : public testing::Test {
 protected:
  std::unique_ptr<PlotControl> New(const ControlClass& row) {
    auto control = row.make(host_, &container_);
    control->InitProperties();
    control->SetSize(6000, 4500);
    container_.TakeAnnounced();
    return control;
  }

  RecordingHost host_;
  RecordingContainer container_;
};

TEST_F(ControlRows, StateTheValuesOfANewControl) {
  for (const ControlClass* row : ControlClasses()) {
    const auto control = New(*row);
    EXPECT_EQ(&control->Class(), row);
    EXPECT_EQ(control->root().name, row->name);
    for (const Member& member : row->members) {
      if (!member.writable() || member.type == Type::Object) continue;
      const Variant value = member.Get(*control);
      const Variant stated = member.initial.As(member.type);
      if (member.type == Type::String) {
        EXPECT_EQ(value.AsString(), stated.AsString()) << row->name << ' ' << member.name;
      } else {
        EXPECT_EQ(value.AsDouble(), stated.AsDouble()) << row->name << ' ' << member.name;
      }
    }
  }
}

TEST_F(ControlRows, OrdersHoldEachSettingOnce) {
  for (const ControlClass* row : ControlClasses()) {
    std::multiset<std::string_view> kept;
    for (const Member& member : row->members) {
      if (member.kept()) kept.insert(member.name);
    }
    for (const auto& settings : {row->SettingsWritten(), row->SettingsRead()}) {
      std::multiset<std::string_view> names;
      std::set<std::string> keys;
      for (const StoredProperty& setting : settings) {
        names.insert(setting.member->name);
        EXPECT_TRUE(keys.insert(setting.key).second) << setting.key;
      }
      EXPECT_EQ(names, kept) << row->name;
    }
  }
}

TEST_F(ControlRows, PagesAndTheAboutBoxKnowThem) {
  frmAbout about(host_);
  std::set<std::string> titles;
  for (const ControlClass* row : ControlClasses()) {
    EXPECT_EQ(row->pages.front(), "WaferInfoProp");
    for (const std::string_view page : row->pages) {
      const auto control = New(*row);
      const auto made = NewPropertyPage(page, host_);
      ASSERT_NE(made, nullptr) << page;
      EXPECT_NO_THROW(made->Select(control.get())) << row->name << ' ' << page;
      EXPECT_NO_THROW(made->ApplyChanges()) << row->name << ' ' << page;
    }
    about.SetTitle(row->about_number);
    titles.insert(about.root().Find("lblTitle")->Text());
  }
  EXPECT_EQ(titles.size(), ControlClasses().size());
}

/// A value that the property doesn't have and takes.
Variant OtherValue(const Member& member, Object& control) {
  if (member.type == Type::String) return Variant(std::string("x"));
  if (member.type == Type::Object) return Variant();
  const double now = member.Get(control).AsDouble();
  if (member.enumeration != nullptr) {
    for (const Enumerator& choice : member.Choices()) {
      if (choice.value != now) return Variant(choice.value);
    }
  }
  if (member.type == Type::Boolean) return BooleanVariant(now == 0);
  if (member.name == "TestDiameter") return Variant(150.0);  // with all sites inside
  return Variant(now == 7 ? 8.0 : 7.0);
}

TEST_F(ControlRows, TellWhatEachPropertyIsAnnouncedAs) {
  for (const ControlClass* row : ControlClasses()) {
    const auto control = New(*row);
    for (const Member& member : row->members) {
      if (!member.writable()) continue;
      member.Set(*control, OtherValue(member, *control));
      if (member.announces()) {
        EXPECT_THAT(container_.TakeAnnounced(), ElementsAre(member.announced))
            << row->name << ' ' << member.name;
      } else {
        EXPECT_THAT(container_.TakeAnnounced(), IsEmpty()) << row->name << ' ' << member.name;
      }
    }
  }
}

/// Whether a trace holds more than new sizes.
bool Draws(const nlohmann::json& trace) {
  return std::any_of(trace.begin(), trace.end(), [](const nlohmann::json& call) {
    return call[0] == "Line" || call[0] == "Circle" || call[0] == "Polygon" || call[0] == "Print";
  });
}

TEST_F(ControlRows, TellWhatDrawsAnew) {
  const std::vector<float> x = {0, 50, -50, 0, 0, 30}, y = {0, 0, 0, 50, -50, 30},
                           z = {1, 2, 3, 4, 5, 6};
  for (const ControlClass* row : ControlClasses()) {
    if (row->family == Family::Chart || row->family == Family::LineScan) continue;
    if (row->members.Find("SigmaRange") != nullptr) continue;  // these draw at each Plot
    for (const Member& member : row->members) {
      if (!member.writable() || member.name == "WaferDiameter") continue;  // drops the data
      const auto control = New(*row);
      ASSERT_EQ(control->SetWaferData(x, y, z), LoadResult::Loaded);
      control->Plot();
      auto& surface = dynamic_cast<Traced&>(*control->root().Find("PLOTA")->Picture());
      const Variant value = OtherValue(member, *control);
      surface.TakeTrace();
      member.Set(*control, value);
      control->Plot();
      EXPECT_EQ(Draws(surface.TakeTrace()), member.change == Change::Stale)
          << row->name << ' ' << member.name;
    }
  }
}

TEST_F(ControlRows, RefuseObjectsOfAnotherClass) {
  Plot2DN other(host_);
  frmAbout about(host_);
  const auto fault_of = [](const auto& step) {
    try {
      step();
    } catch (const RunTimeError& error) {
      return error.fault();
    }
    return Fault{};
  };
  const MemberTable& members = Plot2D::kClass.members;
  std::array<Variant, 4> four = {Variant(0.0), Variant(0.0), Variant(0.0), Variant(0.0)};
  for (Object* object : {static_cast<Object*>(&other), static_cast<Object*>(&about)}) {
    const Member& resolution = members.At("Resolution");
    EXPECT_EQ(fault_of([&] { (void)resolution.Get(*object); }), Fault::MemberNotOffered);
    EXPECT_EQ(fault_of([&] { resolution.Set(*object, Variant(3.0)); }), Fault::MemberNotOffered);
    EXPECT_EQ(fault_of([&] { (void)members.At("IntervalColor3").Get(about); }),
              Fault::MemberNotOffered);
  }
  const Member& print = members.At("PrintPlot");
  EXPECT_EQ(fault_of([&] { (void)print.Call(about, four); }), Fault::MemberNotOffered);
  EXPECT_EQ(fault_of([&] { (void)print.Call(other, std::span(four).first(3)); }),
            Fault::InvalidCall);
  EXPECT_EQ(fault_of([&] { (void)print.Get(other); }), Fault::MemberNotOffered);
  EXPECT_EQ(fault_of([&] { members.At("mean").Set(other, Variant(1.0)); }),
            Fault::MemberNotOffered);
  EXPECT_EQ(fault_of([&] { (void)members.At("mean").Call(other, {}); }), Fault::MemberNotOffered);
}

TEST_F(ControlRows, TakeBorrowedArrays) {
  const auto control = New(Plot2D::kClass);
  const std::vector<float> x = {0, 50, -50}, y = {0, 1, 2}, z = {4, 5, 6};
  for (const char* load : {"SetWaferData", "SetWaferData_Variant"}) {
    std::array<Variant, 3> arrays = {Variant(ArrayView(x, 5)), Variant(ArrayView(y, 5)),
                                     Variant(ArrayView(z, 5))};
    EXPECT_EQ(control->Members().At(load).Call(*control, arrays).AsInt16(), 0) << load;
    EXPECT_EQ(std::get<ArrayView>(arrays[0].value()).values.data(), x.data()) << "no copy";
    EXPECT_EQ(control->Maximum(), 6);
    control->WaferDiameter(200);
  }
}

TEST_F(ControlRows, ReservedNamesHaveOthers) {
  EXPECT_EQ(Plot2D::kClass.members.Find("ValueRange"), Plot2D::kClass.members.Find("range"));
  for (const Enumeration& enumeration : Enumerations()) {
    if (const Enumerator* none = enumeration.Find("None")) {
      EXPECT_EQ(enumeration.Find("NoMarks"), none);
    }
  }
}

/// A store written in the natural way.
class NumberBag final : public PropertyBag {
 public:
  void WriteProperty(std::string_view key, StoredKind kind, const Variant& value,
                     const Variant&) override {
    if (kind == StoredKind::Int32) numbers_[std::string(key)] = value.AsInt32();
  }
  Variant ReadProperty(std::string_view key, const Variant& otherwise) const override {
    const auto found = numbers_.find(std::string(key));
    return found == numbers_.end() ? otherwise : Variant(found->second);
  }

 private:
  std::map<std::string, std::int32_t> numbers_;
};

TEST_F(ControlRows, ColoursAreNumbersOf32BitsInAStore) {
  const auto control = New(Plot2D::kClass);
  control->BackColor(0x80000005);
  NumberBag bag;
  ASSERT_NO_THROW(control->WriteProperties(bag));
  const auto other = New(Plot2D::kClass);
  other->ReadProperties(bag);
  EXPECT_EQ(other->BackColor(), 0x80000005U);
}

TEST_F(ControlRows, AControlDoesNotKeepItselfAlive) {
  for (const char* name : {"MouseIcon", "PrinterObj"}) {
    std::shared_ptr<PlotControl> control = New(Plot2D::kClass);
    const std::weak_ptr<PlotControl> watch = control;
    const Member& member = control->Members().At(name);
    member.Set(*control, Variant(ObjectRef(control)));
    EXPECT_EQ(member.Get(*control).AsObject(), control) << name;
    control.reset();
    EXPECT_TRUE(watch.expired()) << name;
  }
}

}  // namespace
}  // namespace discoplan
