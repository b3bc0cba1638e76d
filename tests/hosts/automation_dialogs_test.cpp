// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "hosts/automation/session.h"

namespace discoplan {
namespace {

using nlohmann::json;

class AutomationDialogs : public testing::Test {
 protected:
  json AskFor(const json& request) { return json::parse(session_.Answer(request.dump())); }
  json Value(const char* name) {
    return AskFor({{"op", "get"}, {"id", "p"}, {"name", name}}).at("value");
  }
  json Call(const char* id, const char* name, const json& args = json::array()) {
    return AskFor({{"op", "call"}, {"id", id}, {"name", name}, {"args", args}});
  }
  void New(const char* kind) {
    ASSERT_EQ(AskFor({{"op", "new"}, {"class", kind}, {"id", "p"}})["ok"], true);
    ASSERT_EQ(Call("p", "SetWaferData",
                   json::parse("[[0,10,20,-30,5],[0,1,-2,3,40],[1,2,3,4,5]]"))["value"],
              0);
  }
  json Queue(const std::string& actions) {
    return AskFor({{"op", "dialog"}, {"actions", json::parse(actions)}});
  }
  std::size_t Drawn(const char* surface) {
    return AskFor({{"op", "trace"}, {"id", "p"}, {"surface", surface}})["value"].size();
  }

  AutomationSession session_;
};

TEST_F(AutomationDialogs, AFormWithNothingQueuedIsCancelled) {
  New("Plot2D");
  Drawn("PLOTA");
  const json reply = Call("p", "ShowPlotOption");
  ASSERT_EQ(reply["dialogs"].size(), 1U);
  EXPECT_EQ(reply["dialogs"][0], json::parse(R"({"form":"frmPlotOpt2d",
      "caption":"Define Plot Options", "fields":{"optMark":1,"tresx":"5","whiteback":1}})"));
  EXPECT_EQ(Drawn("PLOTA"), 0U);
}

TEST_F(AutomationDialogs, ActionsAreRefusedByChildrenOfAnotherKind) {
  New("LineScan");
  for (const char* action :
       {R"(["type","Plot","hi"])", R"(["key","UpDown1",38])", R"(["spin","AngleValue",1])",
        R"(["click","AngleValue"])", R"(["leave","Plot"])", R"(["select","Plot",0])",
        R"(["check","Plot",true])"}) {
    const json reply = AskFor({{"op", "input"}, {"id", "p"}, {"action", json::parse(action)}});
    EXPECT_EQ(reply["ok"], false) << action;
  }
  EXPECT_EQ(Value("PlotCaption"), "");
}

TEST_F(AutomationDialogs, ConfirmedOptionsAreTakenAndDrawn) {
  New("Plot2D");
  EXPECT_EQ(Queue(R"([["type","tresx","2.5"],["select","optMark",0],["check","whiteback",false],
                      ["click","OKbtn"]])"),
            json::parse(R"({"ok":true})"));
  Drawn("PLOTA");
  const json reply = AskFor({{"op", "input"}, {"id", "p"}, {"action", {"click", "Command1"}}});
  EXPECT_EQ(reply["ok"], true);
  EXPECT_FALSE(reply.contains("announced"));
  EXPECT_EQ(reply["dialogs"][0]["fields"]["tresx"], "2.5");
  EXPECT_EQ(Value("Resolution"), 2.5);
  EXPECT_EQ(Value("ShowSites"), -1);
  EXPECT_EQ(Value("BackColor"), 2147483663);
  EXPECT_GT(Drawn("PLOTA"), 100U);
}

TEST_F(AutomationDialogs, ARefusedInputKeepsTheFormOpenUntilItIsCancelled) {
  New("Plot2D");
  Queue(R"([["type","tresx","0"],["click","OKbtn"]])");
  const json reply = Call("p", "ShowPlotOption");
  EXPECT_EQ(reply["messages"], json::parse(R"([{"text":"Resolution not valid\n",
      "title":"Input Error","critical":0,"system_modal":-1}])"));
  EXPECT_EQ(reply["dialogs"].size(), 1U);
  EXPECT_EQ(Value("Resolution"), 5);
}

struct OptionsRow {
  const char* control;
  const char* form;
  const char* actions;
  std::vector<std::pair<const char*, json>> values;
};

TEST_F(AutomationDialogs, EachControlOpensItsOwn) {
  const OptionsRow rows[] = {
      {"Plot2DS",
       "frmPlotOpt2ds",
       R"([["type","SSigma","2"],["click","OKbtn"]])",
       {{"SigmaRange", 2}}},
      {"Plot2DC",
       "frmPlotOpt2DC",
       R"([["type","tdist","3"],["select","OptQuali",0],["select","OptExcon",2],
           ["select","Optcol",1],["click","OKbtn"]])",
       {{"Interval", 3}, {"Resolution", 1}, {"markSites", 3}, {"PlotColored", 0}}},
      {"Plot3D",
       "frmPlotOpt3d",
       R"([["type","tresx","4"],["type","tresy","6"],["type","tscale","33"],["type","talph","11"],
           ["type","tthet","22"],["type","tphi","333"],["select","optPlot",1],["click","OKbtn"]])",
       {{"XResolution", 4},
        {"YResolution", 6},
        {"PlotScale", 33},
        {"GridRotation", 11},
        {"GridInclination", 22},
        {"WaferRotation", 333},
        {"PlotType", 2}}},
      {"Plot3DS",
       "frmPlotOpt3ds",
       R"([["type","SSigma","1.5"],["type","tphi","10"],["click","OKbtn"]])",
       {{"SigmaRange", 1.5}, {"WaferRotation", 10}}},
      {"Plot3DB",
       "frmPlotOpt3DB",
       R"([["type","tresx","3"],["type","tresy","2"],["type","tscale","7"],["click","OKbtn"]])",
       {{"BeamWidth", 3}, {"BeamHeight", 2}, {"BeamScale", 7}}},
      {"Histo",
       "frmPlotHist",
       R"([["type","tresx","20"],["click","OKbtn"]])",
       {{"Resolution", 20}}},
      {"LineScan",
       "frmPlotOpt1D",
       R"j([["type","AngleValue","45"],["type","resx(2)","7"],["leave","resx(2)"],
           ["click","OKbtn"]])j",
       {{"angle", 45}, {"RotationPointX", 7}, {"PlotType", 1}}},
  };
  for (const OptionsRow& row : rows) {
    SCOPED_TRACE(row.control);
    New(row.control);
    Queue(row.actions);
    const json reply = Call("p", "ShowPlotOption");
    ASSERT_EQ(reply["ok"], true) << reply;
    EXPECT_EQ(reply["dialogs"][0]["form"], row.form);
    EXPECT_FALSE(reply.contains("messages")) << reply;
    for (const auto& [name, value] : row.values) EXPECT_EQ(Value(name), value) << name;
    AskFor({{"op", "drop"}, {"id", "p"}});
  }
}

TEST_F(AutomationDialogs, ALineScanTakesTwoPoints) {
  New("LineScan");
  Queue(R"j([["select","optline",1],["type","resx(0)","-5"],["leave","resx(0)"],
            ["type","resy(1)","9"],["leave","resy(1)"],["click","OKbtn"]])j");
  const json reply = Call("p", "ShowPlotOption");
  ASSERT_EQ(reply["ok"], true) << reply;
  EXPECT_EQ(Value("PlotType"), 2);
  EXPECT_EQ(Value("LineStartPointX"), -5);
  EXPECT_EQ(Value("LineEndPointY"), 9);
}

TEST_F(AutomationDialogs, ValuesHaveNoOptions) {
  New("Plot2DN");
  const json reply = Call("p", "ShowPlotOption");
  EXPECT_EQ(reply, json::parse(R"({"ok":true})"));
}

TEST_F(AutomationDialogs, ATooCoarseMapAsksOnItsWayToTheScreen) {
  New("Plot2D");
  AskFor({{"op", "set"}, {"id", "p"}, {"name", "Resolution"}, {"value", 40}});
  AskFor({{"op", "set"}, {"id", "p"}, {"name", "TestDiameter"}, {"value", 100}});
  Queue(R"([["type","tresx","10"],["click","OKbtn"]])");
  const json reply = Call("p", "Plot");
  EXPECT_EQ(reply["value"], 0);
  ASSERT_EQ(reply["messages"].size(), 1U);
  EXPECT_EQ(reply["messages"][0]["text"], "Maximal possible resolution is 25 mm");
  EXPECT_EQ(reply["dialogs"][0]["fields"]["tresx"], "10");
  EXPECT_EQ(Value("Resolution"), 10);
}

TEST_F(AutomationDialogs, BrokenActionsAreToldAndCancelTheForm) {
  New("Plot2D");
  for (const char* actions :
       {R"([["type","nothing","1"]])", R"([["select","optMark",2]])",
        R"([["check","whiteback","yes"]])", R"([["fly","tresx"]])", R"([5])"}) {
    Queue(actions);
    const json reply = Call("p", "ShowPlotOption");
    EXPECT_EQ(reply["ok"], false) << actions;
    ASSERT_EQ(reply["dialogs"].size(), 1U) << actions;
    EXPECT_EQ(reply["dialogs"][0]["fields"]["tresx"], "5") << actions;
    EXPECT_EQ(Call("p", "ShowPlotOption")["ok"], true);
  }
}

TEST_F(AutomationDialogs, PagesEditTheSelectedControl) {
  New("Plot2D");
  ASSERT_EQ(AskFor({{"op", "new"}, {"class", "Plot2DProp"}, {"id", "g"}, {"control", "p"}})["ok"],
            true);
  const auto changed = [&] {
    return AskFor({{"op", "get"}, {"id", "g"}, {"name", "Changed"}})["value"];
  };
  EXPECT_EQ(changed(), 0);
  AskFor({{"op", "input"}, {"id", "g"}, {"action", {"type", "txtResolution", "3"}}});
  AskFor({{"op", "input"}, {"id", "g"}, {"action", {"check", "chkShowSites", true}}});
  EXPECT_EQ(changed(), -1);
  EXPECT_EQ(Value("Resolution"), 5);
  const json reply = Call("g", "ApplyChanges");
  EXPECT_EQ(reply["announced"], json::parse(R"(["ShowSites","Resolution"])"));
  EXPECT_EQ(changed(), 0);
  EXPECT_EQ(Value("Resolution"), 3);
  EXPECT_EQ(Value("ShowSites"), -1);
  AskFor({{"op", "set"}, {"id", "p"}, {"name", "Resolution"}, {"value", 8}});
  Call("g", "SelectionChanged");
  const json tree = AskFor({{"op", "tree"}, {"id", "g"}})["value"];
  EXPECT_EQ(tree["kind"], "form");
  EXPECT_EQ(tree["caption"], "2D Plot Options");
  bool found = false;
  for (const json& child : tree["children"]) {
    if (child["name"] == "txtResolution") found = child["text"] == "8";
  }
  EXPECT_TRUE(found);
}

TEST_F(AutomationDialogs, BoxesAreTickedInEveryFormOfABoolean) {
  New("Plot2D");
  const std::pair<const char*, int> rows[] = {{"true", 1}, {"false", 0}, {"-1", 1}, {"0", 0}};
  for (const auto& [state, value] : rows) {
    Queue(std::string(R"([["check","whiteback",)") + state + "]]");
    EXPECT_EQ(Call("p", "ShowPlotOption")["dialogs"][0]["fields"]["whiteback"], value) << state;
  }
}

TEST_F(AutomationDialogs, DialogsTakeTheirActionsInTheOrderOfTheQueue) {
  New("Plot2D");
  Queue(R"([["type","tresx","2"],["click","OKbtn"]])");
  Queue(R"([["type","tresx","3"],["click","cancel"],["type","tresx","4"]])");
  Call("p", "ShowPlotOption");
  EXPECT_EQ(Value("Resolution"), 2);
  // A closed form takes no input.
  EXPECT_EQ(Call("p", "ShowPlotOption")["dialogs"][0]["fields"]["tresx"], "3");
  EXPECT_EQ(Value("Resolution"), 2);
}

TEST_F(AutomationDialogs, APageOutlivesItsControl) {
  New("Plot2D");
  AskFor({{"op", "new"}, {"class", "Plot2DProp"}, {"id", "g"}, {"control", "p"}});
  ASSERT_EQ(AskFor({{"op", "drop"}, {"id", "p"}})["ok"], true);
  EXPECT_EQ(Call("g", "ApplyChanges")["ok"], false);
  EXPECT_EQ(Call("g", "SelectionChanged")["ok"], false);
  EXPECT_EQ(
      AskFor({{"op", "input"}, {"id", "g"}, {"action", {"type", "txtResolution", "3"}}})["ok"],
      true);
  EXPECT_EQ(AskFor({{"op", "drop"}, {"id", "g"}})["ok"], true);
}

TEST_F(AutomationDialogs, ShowTheAboutBox) {
  ASSERT_EQ(AskFor({{"op", "new"}, {"class", "frmAbout"}, {"id", "a"}})["ok"], true);
  EXPECT_EQ(Call("a", "SetTitle", {5})["ok"], true);
  json tree = AskFor({{"op", "tree"}, {"id", "a"}})["value"];
  EXPECT_EQ(tree["visible"], -1);
  EXPECT_NE(tree.dump().find("Discoplan.OCX Type: 2D Contour Plot "), std::string::npos);
  AskFor({{"op", "input"}, {"id", "a"}, {"action", {"click", "cmdOK"}}});
  EXPECT_EQ(AskFor({{"op", "tree"}, {"id", "a"}})["value"]["visible"], 0);
}

}  // namespace
}  // namespace discoplan
