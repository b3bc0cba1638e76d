// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "discoplan/base/numbers.h"
#include "discoplan/dialogs/about_box.h"
#include "discoplan/dialogs/property_page.h"
#include "discoplan/version.h"
#include "hosts/recording/recording_host.h"

namespace discoplan {
namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::ElementsAreArray;

/// An object with properties of any name, that writes down what is asked of it.
class Asked final : public Object {
 public:
  explicit Asked(const std::vector<std::pair<const char*, double>>& values) {
    for (const auto& [name, number] : values) {
      values_[name] = number;
      Member row{.name = name, .kind = Member::Kind::Property, .type = Type::Variant};
      row.get = [](Object& object, const Member& member) {
        Asked& asked = static_cast<Asked&>(object);
        asked.read.emplace_back(member.name);
        return Variant(asked.values_[std::string(member.name)]);
      };
      row.set = [](Object& object, const Variant& value, const Member& member) {
        Asked& asked = static_cast<Asked&>(object);
        asked.written.emplace_back(member.name);
        asked.values_[std::string(member.name)] = value.AsDouble();
      };
      rows_.push_back(row);
    }
    members_ = MemberTable(rows_);
  }

  const MemberTable& Members() const override { return members_; }
  double operator[](const std::string& name) { return values_[name]; }

  std::vector<std::string> read;
  std::vector<std::string> written;

 private:
  std::map<std::string, double> values_;
  std::vector<Member> rows_;
  MemberTable members_;
};

struct PageRow {
  const char* name;
  const char* caption;
  std::vector<const char*> writes;
};

const PageRow kPages[] = {
    {"WaferInfoProp", "Wafer Size", {"WaferDiameter", "TestDiameter", "WaferStyle", "HideLegend"}},
    {"Plot2DProp", "2D Plot Options", {"ShowSites", "Resolution"}},
    {"Plot2DSProp", "Plot2DSProp", {"SigmaRange", "ShowSites", "Resolution"}},
    {"Plot2DCProp", "Plot2DCProp", {"markSites", "Resolution", "PlotColored", "Interval"}},
    {"Plot3DProp",
     "Plot3DProp",
     {"PlotType", "PlotScale", "GridInclination", "GridRotation", "WaferRotation", "YResolution",
      "XResolution"}},
    {"Plot3DSProp",
     "Plot3DSProp",
     {"SigmaRange", "PlotScale", "GridInclination", "GridRotation", "WaferRotation", "YResolution",
      "XResolution"}},
    {"Plot3DBProp",
     "PropertyPage1",
     {"BeamScale", "BeamHeight", "BeamWidth", "GridInclination", "GridRotation"}},
    {"HistogrammProp", "HistogrammProp", {"Resolution", "PlotType"}},
    {"LineScanAngleProp", "Line Scan Options", {"angle"}},
};

class PropertyPages : public testing::Test {
 protected:
  static Asked Control() {
    return Asked({{"WaferDiameter", 300},  {"TestDiameter", 290}, {"WaferStyle", 2},
                  {"HideLegend", -1},      {"ShowSites", -1},     {"Resolution", 2},
                  {"SigmaRange", 1.5},     {"markSites", 3},      {"PlotColored", 0},
                  {"Interval", 4.5},       {"PlotType", 3},       {"PlotScale", 20},
                  {"GridInclination", 60}, {"GridRotation", 70},  {"WaferRotation", 200},
                  {"YResolution", 3},      {"XResolution", 2.5},  {"BeamScale", 0.25},
                  {"BeamHeight", 6},       {"BeamWidth", 7},      {"angle", 123}});
  }
  std::unique_ptr<PropertyPage> Open(const char* name) {
    auto page = NewPropertyPage(name, host_);
    page->Select(&control_);
    return page;
  }
  static Node& Child(PropertyPage& page, const char* name) { return *page.root().Find(name); }

  RecordingHost host_;
  Asked control_ = Control();
};

TEST_F(PropertyPages, AreNine) {
  std::vector<std::string_view> names;
  for (const PageRow& row : kPages) names.push_back(row.name);
  EXPECT_THAT(PropertyPageClasses(), ElementsAreArray(names));
  EXPECT_EQ(NewPropertyPage("Plot9DProp", host_), nullptr);
}

TEST_F(PropertyPages, WriteInOrderAndReadInTheReverseOrder) {
  for (const PageRow& row : kPages) {
    SCOPED_TRACE(row.name);
    control_.read.clear();
    control_.written.clear();
    const auto page = Open(row.name);
    EXPECT_EQ(page->root().Text(), row.caption);
    std::vector<std::string> read = control_.read;
    std::erase(read, "WaferStyle");  // which previews ask for as well
    std::vector<std::string> expected(row.writes.rbegin(), row.writes.rend());
    std::erase(expected, "WaferStyle");
    EXPECT_THAT(read, ElementsAreArray(expected));
    page->ApplyChanges();
    EXPECT_THAT(control_.written, ElementsAreArray(row.writes));
  }
}

TEST_F(PropertyPages, LeaveWhatWasntEdited) {
  Asked before = Control();
  for (const PageRow& row : kPages) {
    Open(row.name)->ApplyChanges();
    for (const char* property : row.writes) {
      EXPECT_EQ(control_[property], before[property]) << row.name << ' ' << property;
    }
  }
}

TEST_F(PropertyPages, TellThatSomethingChanged) {
  for (const PageRow& row : kPages) {
    const auto page = Open(row.name);
    EXPECT_FALSE(page->Changed()) << row.name;
    std::vector<Node*> nodes = {&page->root()};
    for (std::size_t i = 0; i < nodes.size(); ++i) {
      for (const auto& child : nodes[i]->children()) nodes.push_back(child.get());
    }
    for (Node* node : nodes) {
      if (node->kind == NodeKind::Text) node->Type("8");
      if ((node->kind == NodeKind::Options || node->kind == NodeKind::Check) && node->on_change) {
        node->on_change();
      }
      if (node->kind != NodeKind::Text && node->kind != NodeKind::Options) continue;
      EXPECT_TRUE(page->Changed()) << row.name << ' ' << node->name;
      page->SelectionChanged();
      EXPECT_FALSE(page->Changed());
    }
    page->ApplyChanges();
    EXPECT_FALSE(page->Changed());
  }
}

TEST_F(PropertyPages, PutADefaultInPlaceOfABadText) {
  const struct {
    const char* page;
    const char* field;
    const char* fallback;
  } rows[] = {
      {"WaferInfoProp", "txtWaferDiameter", "200"}, {"WaferInfoProp", "txtTestDiameter", "195"},
      {"Plot2DProp", "txtResolution", "5"},         {"Plot2DSProp", "txtResolution", "5"},
      {"Plot2DSProp", "txtSigmaRange", "0.5"},      {"Plot2DCProp", "txtInterval", "1"},
      {"Plot3DProp", "txtPlotScale", "40"},         {"Plot3DProp", "txtXResolution", "5"},
      {"Plot3DProp", "txtYResolution", "5"},        {"Plot3DSProp", "txtSigmaRange", "0.5"},
      {"HistogrammProp", "txtResolution", "0.01"}};
  for (const auto& row : rows) {
    const auto page = Open(row.page);
    Child(*page, row.field).Type("x");
    EXPECT_EQ(Child(*page, row.field).Text(), row.fallback) << row.page;
    EXPECT_TRUE(page->Changed());
    Child(*page, row.field).Type("");
    EXPECT_EQ(Child(*page, row.field).Text(), "");
  }
}

TEST_F(PropertyPages, TakeAnglesAsDialogsDo) {
  const struct {
    const char* page;
    const char* field;
    const char* typed;
    const char* stands;
  } rows[] = {{"Plot3DProp", "txtGridInclination", "91", "90"},
              {"Plot3DProp", "txtGridRotation", "361", "70"},
              {"Plot3DSProp", "txtWaferRotation", "360", "0"},
              {"Plot3DBProp", "txtGridRotation", "45", "45"},
              {"LineScanAngleProp", "txtAngle", "359", "359"},
              {"LineScanAngleProp", "txtAngle", "360", "123"},
              {"LineScanAngleProp", "txtAngle", "x", "123"}};
  for (const auto& row : rows) {
    const auto page = Open(row.page);
    Child(*page, row.field).Type(row.typed);
    EXPECT_EQ(Child(*page, row.field).Text(), row.stands) << row.page << ' ' << row.typed;
  }
}

TEST_F(PropertyPages, TurnOptionsIntoValues) {
  const struct {
    const char* page;
    const char* group;
    const char* property;
    std::vector<double> values;
  } rows[] = {{"WaferInfoProp", "nfbox", "WaferStyle", {1, 2}},
              {"Plot2DCProp", "OptExcon", "markSites", {3, 1, 2}},
              {"Plot2DCProp", "Optcol", "PlotColored", {0, -1}},
              {"Plot2DCProp", "OptQuali", "Resolution", {1, 2, 0}},
              {"Plot3DProp", "optPlot", "PlotType", {1, 2, 3}},
              {"HistogrammProp", "optPlot", "PlotType", {4, 3, 2, 1}}};
  for (const auto& row : rows) {
    for (std::size_t i = 0; i < row.values.size(); ++i) {
      const auto page = Open(row.page);
      Child(*page, row.group).Value(static_cast<int>(i));
      page->ApplyChanges();
      EXPECT_EQ(control_[row.property], row.values[i]) << row.page << ' ' << i;
      EXPECT_EQ(Child(*Open(row.page), row.group).Value(), static_cast<int>(i)) << row.page;
    }
  }
}

TEST_F(PropertyPages, RefuseATestDiameterBeyondTheWafers) {
  auto page = Open("WaferInfoProp");
  Child(*page, "txtWaferDiameter").Type("200");
  Child(*page, "txtTestDiameter").Type("200");
  page->ApplyChanges();
  EXPECT_TRUE(host_.TakeMessages().empty());
  EXPECT_EQ(control_["TestDiameter"], 200);
  Child(*page, "txtTestDiameter").Type("210");
  page->ApplyChanges();
  const auto messages = host_.TakeMessages();
  ASSERT_EQ(messages.size(), 1U);
  EXPECT_EQ(messages[0].text, "Wafer diamter can not be less than test diameter");
  EXPECT_EQ(messages[0].title, "Input Error");
  EXPECT_TRUE(messages[0].critical && messages[0].system_modal);
  EXPECT_EQ(control_["WaferDiameter"], 200);
  EXPECT_EQ(control_["TestDiameter"], 195);
}

TEST_F(PropertyPages, WriteAFixedPairInPlaceOfABadOne) {
  const auto page = Open("WaferInfoProp");
  Child(*page, "txtTestDiameter").Type("300.5");  // on a wafer of 300
  control_.written.clear();
  page->ApplyChanges();
  EXPECT_THAT(control_.written,
              ElementsAre("WaferDiameter", "TestDiameter", "WaferStyle", "HideLegend"));
  EXPECT_EQ(control_["WaferDiameter"], 200);
  EXPECT_EQ(control_["TestDiameter"], 195);
}

TEST_F(PropertyPages, ForgetAControlThatGoes) {
  const auto page = Open("Plot2DProp");
  Asked other({});
  page->Forget(other);
  EXPECT_NO_THROW(page->ApplyChanges());
  page->Forget(control_);
  EXPECT_THROW(page->ApplyChanges(), RunTimeError);
  EXPECT_EQ(Child(*page, "txtResolution").Text(), "2");
}

TEST_F(PropertyPages, ShowWhatLiesInsideThem) {
  for (const PageRow& row : kPages) {
    const auto page = Open(row.name);
    std::vector<Node*> nodes = {&page->root()};
    for (std::size_t i = 0; i < nodes.size(); ++i) {
      for (const auto& child : nodes[i]->children()) {
        nodes.push_back(child.get());
        EXPECT_GE(child->Box().left, 0) << row.name << ' ' << child->name;
        EXPECT_LE(child->Right(), nodes[i]->Box().width) << row.name << ' ' << child->name;
        EXPECT_LE(child->Box().top + child->Box().height, nodes[i]->Box().height)
            << row.name << ' ' << child->name;
      }
    }
  }
}

TEST_F(PropertyPages, TakeAnyTextForABarsSize) {
  const auto page = Open("Plot3DBProp");
  for (const char* name : {"txtBeamWidth", "txtBeamHeight", "txtBeamScale"}) {
    Child(*page, name).Type("1e");
    EXPECT_EQ(Child(*page, name).Text(), "1e") << name;
    EXPECT_TRUE(page->Changed());
  }
}

TEST_F(PropertyPages, PreviewTheView) {
  for (const char* name : {"Plot3DProp", "Plot3DSProp", "Plot3DBProp"}) {
    const auto page = Open(name);
    const auto polygons = [&](const char* picture) {
      const json trace =
          dynamic_cast<Recording<Picture>&>(*Child(*page, picture).Picture()).TakeTrace();
      return std::ranges::count_if(trace, [](const json& call) { return call[0] == "Polygon"; });
    };
    polygons("Plot");
    for (const char* field : {"txtGridRotation", "txtGridInclination"}) {
      Child(*page, field).Type("25");
      EXPECT_EQ(polygons("Plot"), 100) << name << ' ' << field;
    }
    if (page->root().Find("txtWaferRotation") == nullptr) continue;
    polygons("FNPlot");
    Child(*page, "txtWaferRotation").Type("130");
    EXPECT_EQ(polygons("FNPlot"), 1) << name;
    EXPECT_EQ(polygons("Plot"), 0) << name;
  }
}

TEST_F(PropertyPages, KeepTheScansAngleInAFrameWithItsCross) {
  const auto page = Open("LineScanAngleProp");
  const Node& frame = *page->root().children().front();
  EXPECT_EQ(frame.kind, NodeKind::Frame);
  EXPECT_EQ(frame.Text(), "1D Plot Option");
  for (const char* name : {"txtAngle", "FNPic", "picplus"}) {
    EXPECT_EQ(Child(*page, name).parent(), &frame) << name;
  }
  for (const char* name : {"Line1", "Line2", "Line3"}) {
    EXPECT_EQ(Child(*page, name).parent(), &Child(*page, "picplus")) << name;
  }
}

TEST_F(PropertyPages, ShowTheWafersStyle) {
  const auto page = Open("WaferInfoProp");
  EXPECT_EQ(Child(*page, "FNLabel").kind, NodeKind::Label);
  EXPECT_EQ(Child(*page, "FNLabel").Text(), "Flat");
  Child(*page, "nfbox").Value(0);
  Child(*page, "nfbox").on_change();
  EXPECT_EQ(Child(*page, "FNLabel").Text(), "Notch");
  EXPECT_TRUE(page->Changed());
}

TEST_F(PropertyPages, WithoutAControlAreErrors) {
  const auto page = NewPropertyPage("Plot2DProp", host_);
  EXPECT_NO_THROW(page->Select(nullptr));
  EXPECT_THROW(page->ApplyChanges(), RunTimeError);
  Asked other({{"nothing", 1}});
  EXPECT_THROW(page->Select(&other), RunTimeError);
}

TEST(AboutBox, NamesThePlotOfItsNumber) {
  RecordingHost host;
  frmAbout about(host);
  EXPECT_EQ(about.root().Text(), "Discoplan.OCX ActiveX Control");
  EXPECT_EQ(about.root().Find("lblVersion")->Text(), "Version " + LibraryVersion());
  const std::pair<std::int16_t, const char*> rows[] = {{0, ""},
                                                       {1, "2D Plot"},
                                                       {2, "3D Plot"},
                                                       {3, "2D Sigma Range Plot"},
                                                       {4, "3D Sigma Range Plot"},
                                                       {5, "2D Contour Plot "},
                                                       {6, "Line Scan"},
                                                       {7, "Histogram"},
                                                       {8, "2D Value Plot"},
                                                       {9, "3D Bar Plot"},
                                                       {10, ""},
                                                       {-1, ""}};
  for (const auto& [number, name] : rows) {
    about.SetTitle(number);
    EXPECT_EQ(about.root().Find("lblTitle")->Text(), std::string("Discoplan.OCX Type: ") + name);
  }
  about.Show();
  about.accept_button()->on_click();
  EXPECT_FALSE(about.root().Visible());
}

}  // namespace
}  // namespace discoplan
