// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <filesystem>

#include "hosts/automation/session.h"
#include "tests/temporary_folder.h"

namespace discoplan {
namespace {

using nlohmann::json;

class Automation : public testing::Test {
 protected:
  json Ask(const std::string& line) { return json::parse(session_.Answer(line)); }
  json AskFor(const json& request) { return Ask(request.dump()); }
  json Value(const char* id, const char* name) {
    return AskFor(json{{"op", "get"}, {"id", id}, {"name", name}}).at("value");
  }
  json Call(const char* id, const char* name, const json& args) {
    return AskFor(json{{"op", "call"}, {"id", id}, {"name", name}, {"args", args}});
  }
  void NewPlot() { ASSERT_EQ(Ask(R"({"op":"new","class":"Plot2D","id":"p"})")["ok"], true); }
  json Load() {
    return Call("p", "SetWaferData", json::parse("[[0,10,20,-30,5],[0,1,-2,3,40],[1,2,3,4,5]]"));
  }

  AutomationSession session_;
};

TEST_F(Automation, TellsWhatANewControlAnnounced) {
  EXPECT_EQ(Ask(R"({"op":"new","class":"Plot2D","id":"p"})"),
            json::parse(R"({"ok":true,"announced":["TestDiameter","WaferDiameter","WaferStyle",
                            "Resolution","ShowSites","HideLegend","PlotCaption"]})"));
}

TEST_F(Automation, AnswersEveryBrokenRequestAndGoesOn) {
  NewPlot();
  const std::string deep(100000, '[');
  for (const std::string& line : {
           std::string(),
           std::string("nonsense"),
           std::string("{"),
           std::string("[1,2]"),
           std::string("17"),
           std::string("null"),
           deep,
           std::string("{\"op\":\"get\",\"id\":\"\xFF\"}"),
           std::string(R"({})"),
           std::string(R"({"op":7})"),
           std::string(R"({"op":"fly"})"),
           std::string(R"({"op":"store","id":"none"})"),
           std::string(R"({"op":"new","class":"Plot2D","id":"x","store":[1]})"),
           std::string(R"({"op":"new","class":"Plot2D","id":"x","store":{"2DFLAT":"flat"}})"),
           std::string(R"({"op":"new","class":"Plot9D","id":"x"})"),
           std::string(R"({"op":"new","class":"Plot2D"})"),
           std::string(R"({"op":"new","class":"Plot2D","id":"p"})"),
           std::string(R"({"op":"new","class":"Plot2D","id":[1]})"),
           std::string(R"({"op":"new","class":"Plot2D","id":"x","width":"wide"})"),
           std::string(R"({"op":"get","id":"q","name":"mean"})"),
           std::string(R"({"op":"get","id":"p"})"),
           std::string(R"({"op":"get","id":"p","name":"Mean"})"),
           std::string(R"({"op":"get","id":"p","name":"Plot"})"),
           std::string(R"({"op":"set","id":"p","name":"mean","value":1})"),
           std::string(R"({"op":"set","id":"p","name":"Resolution"})"),
           std::string(R"({"op":"set","id":"p","name":"Resolution","value":"5"})"),
           std::string(R"({"op":"set","id":"p","name":"Resolution","value":1e300})"),
           std::string(R"({"op":"set","id":"p","name":"MousePointer","value":40000})"),
           std::string(R"({"op":"set","id":"p","name":"PlotCaption","value":5})"),
           std::string(R"({"op":"set","id":"p","name":"PrinterObj","value":{"ref":"none"}})"),
           std::string(R"({"op":"set","id":"p","name":"PrinterObj","value":3})"),
           std::string(R"({"op":"call","id":"p","name":"mean","args":[]})"),
           std::string(R"({"op":"call","id":"p","name":"SetPlotLimit","args":[1]})"),
           std::string(R"({"op":"call","id":"p","name":"SetPlotLimit","args":{"a":1}})"),
           std::string(R"({"op":"call","id":"p","name":"SetWaferData","args":[[1],["x"],[1]]})"),
           std::string(R"({"op":"call","id":"p","name":"SetWaferData_Variant","args":[1,2,3]})"),
           std::string(R"({"op":"size","id":"p","width":5000})"),
           std::string(R"({"op":"trace","id":"p"})"),
           std::string(R"({"op":"trace","id":"p","surface":"Frplot"})"),
           std::string(R"({"op":"save","id":"p","surface":"PLOTA","file":"/no/where.png"})"),
           std::string(R"({"op":"draw","id":"p","calls":[]})"),
           std::string(R"({"op":"mouse","id":"p","event":"Tap"})"),
           std::string(R"({"op":"mouse","id":"p","surface":"none","event":"Click"})"),
           std::string(R"({"op":"input","id":"p","action":["type","none","x"]})"),
           std::string(R"({"op":"screen","twips_per_pixel_x":-1,"twips_per_pixel_y":15})"),
           std::string(R"({"op":"drop","id":"q"})"),
       }) {
    const json reply = Ask(line);
    EXPECT_EQ(reply["ok"], false) << line.substr(0, 80);
    EXPECT_GT(reply["error"].get<std::string>().size(), 10U) << line.substr(0, 80);
    EXPECT_EQ(reply["error"].get<std::string>().find('\n'), std::string::npos);
  }
  EXPECT_EQ(Value("p", "WaferDiameter"), 200);
}

TEST_F(Automation, AnswersALongLine) {
  std::string line = R"({"op":"call","id":"p","name":"SetWaferData","args":[[)";
  for (int i = 0; i < 2000000; ++i) line += "0.5,";
  line += "0],[0],[0]]}";
  NewPlot();
  const json reply = Ask(line);
  EXPECT_EQ(reply["ok"], true);
  EXPECT_EQ(reply["value"], 4);
}

TEST_F(Automation, PassesArraysInEveryForm) {
  NewPlot();
  EXPECT_EQ(Load(), json::parse(R"({"ok":true,"value":0})"));
  const json reply = Call("p", "GetWaferData", json::parse("[null,null,null]"));
  EXPECT_EQ(reply["value"], 5);
  EXPECT_EQ(reply["args"][0], json::parse(R"({"lower":1,"values":[0,10,20,-30,5]})"));
  const json from_zero = json::parse(R"({"lower":0,"values":[1,2,3]})");
  EXPECT_EQ(Call("p", "SetWaferData", {from_zero, from_zero, from_zero})["value"], 0);
  EXPECT_EQ(Call("p", "SetWaferData", json::parse("[null,[1],[1]]"))["value"], 4);
  EXPECT_EQ(Call("p", "SetWaferData", json::parse("[[],[],[]]"))["value"], 4);
  EXPECT_EQ(Call("p", "SetWaferData", json::parse(R"([[0],[0],["NaN"]])"))["value"], 0);
  EXPECT_EQ(Call("p", "GetWaferData", json::parse("[null,null,null]"))["args"][2]["values"][0], 0);
}

TEST_F(Automation, WritesNumbersWithTheFewestDigits) {
  NewPlot();
  const auto text = [&](const std::string& value) {
    Ask(R"({"op":"set","id":"p","name":"TestDiameter","value":)" + value + "}");
    const std::string reply = session_.Answer(R"({"op":"get","id":"p","name":"TestDiameter"})");
    return reply.substr(reply.find("value") + 7);
  };
  EXPECT_EQ(text("0.1"), "0.1}");
  EXPECT_EQ(text("150"), "150}");
  EXPECT_EQ(text("16777217"), "16777216}");
  EXPECT_EQ(text("1.17549435e-38"), "1.1754944e-38}");
  EXPECT_EQ(text("\"Infinity\""), "\"Infinity\"}");
  EXPECT_EQ(text("\"NaN\""), "\"NaN\"}");
}

TEST_F(Automation, ShowsTheTree) {
  NewPlot();
  const json tree = Ask(R"({"op":"tree","id":"p"})")["value"];
  EXPECT_EQ(tree["name"], "Plot2D");
  EXPECT_EQ(tree["kind"], "control");
  EXPECT_EQ(tree["width"], 6000);
  EXPECT_EQ(tree["height"], 4500);
  const json& frame = tree["children"][0];
  EXPECT_EQ(frame["name"], "Frplot");
  EXPECT_EQ(frame["kind"], "frame");
  EXPECT_EQ(frame["caption"], "Wafer");
  EXPECT_EQ(frame["children"][0]["name"], "PLOTA");
  EXPECT_EQ(frame["children"][0]["kind"], "picture");
  EXPECT_EQ(frame["children"][0]["back_color"], 0xFFFFFF);
  EXPECT_EQ(frame["children"][1]["name"], "RePlot");
  EXPECT_EQ(frame["children"][1]["visible"], 0);
  EXPECT_NE(tree.dump().find("\"scalCol(10)\""), std::string::npos);
}

TEST_F(Automation, TracesWhatASurfaceReceived) {
  NewPlot();
  Load();
  Ask(R"({"op":"trace","id":"p","surface":"PLOTA"})");
  EXPECT_EQ(Call("p", "Plot", json::array())["value"], 0);
  const json trace = Ask(R"({"op":"trace","id":"p","surface":"PLOTA"})")["value"];
  EXPECT_EQ(trace[0], json::parse(R"(["Cls"])"));
  EXPECT_EQ(trace.back(), json::parse(R"(["ForeColor", 0])"));
  EXPECT_EQ(Ask(R"({"op":"trace","id":"p","surface":"PLOTA"})")["value"], json::array());
}

TEST_F(Automation, DrawsEveryCallOnASurface) {
  Ask(R"({"op":"new","class":"Picture","id":"s","width":300,"height":300})");
  const json calls = json::parse(R"([
      ["BackColor", 255], ["Cls"], ["ForeColor", 1], ["FillColor", 2147483648], ["FillStyle", 0],
      ["DrawStyle", 5], ["DrawWidth", 2], ["CurrentX", 1.5], ["CurrentY", 2],
      ["FontTransparent", -1], ["ScaleLeft", -10], ["ScaleTop", -10], ["ScaleWidth", 20],
      ["ScaleHeight", 20], ["ScaleMode", 3], ["Font.Name", "Arial"], ["Font.Size", 8],
      ["Font.Bold", -1], ["Font.Underline", 0],
      ["Font", {"Name": "Symbol", "Size": 14, "Bold": 0, "Underline": -1}],
      ["Line", 1, 2, 3, 4.5, null, "line"], ["Line", null, null, 3, 4, 255, "box"],
      ["Line", 0, 0, 5, 5, 65280, "filled"],
      ["Circle", 5, 5, 3, null, null, null, null], ["Circle", 5, 5, 3, 0, 0.5, 1.5, 0.25],
      ["Print", "Mean"], ["Polygon", [[1, 2], [3, 4], [5, -6]]], ["FloodFill", 3, 3, 0],
      ["Picture"], ["Refresh"], ["Width", 600], ["Height", 450]])");
  EXPECT_EQ(AskFor(json{{"op", "draw"}, {"id", "s"}, {"calls", calls}}),
            json::parse(R"({"ok":true})"));
  EXPECT_EQ(Ask(R"({"op":"trace","id":"s"})")["value"], calls);
  for (const char* bad : {R"([["Fly"]])", R"([[]])", R"(["Cls"])", R"([["Line", 1, 2, 3]])",
                          R"([["Line", 1, 2, 3, 4, null, "zigzag"]])", R"([["Polygon", [[1]]]])",
                          R"([["Polygon", [[1, 1e12]]]])", R"([["Print", 5]])", R"(7)"}) {
    EXPECT_EQ(AskFor(json{{"op", "draw"}, {"id", "s"}, {"calls", json::parse(bad)}})["ok"], false)
        << bad;
  }
}

TEST_F(Automation, SavesThePixels) {
  const TemporaryFolder folder;
  const auto file = folder.path() / "map.png";
  Ask(R"({"op":"new","class":"Picture","id":"s","width":300,"height":150})");
  const json save = {{"op", "save"}, {"id", "s"}, {"file", file.string()}};
  EXPECT_EQ(AskFor(save), json::parse(R"({"ok":true})"));
  EXPECT_GT(std::filesystem::file_size(file), 50U);
  Ask(R"({"op":"new","class":"Printer","id":"q"})");
  EXPECT_EQ(AskFor(json{{"op", "save"}, {"id", "q"}, {"file", file.string()}})["ok"], false);
}

TEST_F(Automation, MeasuresTextWithoutAFont) {
  Ask(R"({"op":"new","class":"Printer","id":"q","width":2400,"height":4800,"twips_per_pixel_y":2})");
  EXPECT_EQ(Value("q", "TwipsPerPixelX"), 2.4);
  EXPECT_EQ(Value("q", "ScaleWidth"), 2400);
  Ask(R"({"op":"set","id":"q","name":"ScaleMode","value":3})");
  EXPECT_EQ(Value("q", "ScaleWidth"), 999.99994);  // 2.4 isn't quite 2.4 in 32 bits
  EXPECT_EQ(Value("q", "ScaleHeight"), 2400);
}

TEST_F(Automation, NamesObjectsByReference) {
  NewPlot();
  Ask(R"({"op":"new","class":"Printer","id":7})");
  EXPECT_EQ(Value("p", "PrinterObj"), json());
  Ask(R"({"op":"set","id":"p","name":"PrinterObj","value":{"ref":7}})");
  EXPECT_EQ(Value("p", "PrinterObj"), json::parse(R"({"ref":7})"));
  Ask(R"({"op":"set","id":"p","name":"PrinterObj","value":null})");
  EXPECT_EQ(Value("p", "PrinterObj"), json());
  EXPECT_EQ(Ask(R"({"op":"drop","id":7})")["ok"], true);
  EXPECT_EQ(Ask(R"({"op":"trace","id":7})")["ok"], false);
}

TEST_F(Automation, ReportsEventsMessagesAndFocus) {
  NewPlot();
  EXPECT_EQ(Ask(R"({"op":"mouse","id":"p","event":"MouseUp","button":1,"shift":2,"x":3.5,"y":4})"),
            json::parse(R"({"ok":true,"raised":[["MouseUp",1,2,3.5,4]]})"));
  EXPECT_EQ(Ask(R"({"op":"mouse","id":"p","surface":"Frplot","event":"Click"})"),
            json::parse(R"({"ok":true,"raised":[["Click"]]})"));
  EXPECT_EQ(Ask(R"({"op":"mouse","id":"p","surface":"PLOTA","event":"Click"})"),
            json::parse(R"({"ok":true})"));
  EXPECT_EQ(Ask(R"({"op":"focus","id":"p"})"), json::parse(R"({"ok":true,"value":"Command1"})"));
  EXPECT_EQ(Ask(R"({"op":"show","id":"p"})"), json::parse(R"({"ok":true})"));
  Load();
  Ask(R"({"op":"set","id":"p","name":"Resolution","value":40})");
  Ask(R"({"op":"set","id":"p","name":"TestDiameter","value":100})");
  const json reply = Call("p", "Plot", json::array());
  EXPECT_EQ(reply["messages"], json::parse(R"([{"text":"Maximal possible resolution is 25 mm",
                "title":"Standard resolution to high ","critical":-1,"system_modal":-1}])"));
}

TEST_F(Automation, TurnsALineScanAsItsUserDoes) {
  ASSERT_EQ(Ask(R"({"op":"new","class":"LineScan","id":"p"})")["ok"], true);
  const auto act = [&](const json& action) {
    return AskFor(json{{"op", "input"}, {"id", "p"}, {"action", action}});
  };
  const struct {
    json action;
    int angle;
  } rows[] = {{{"type", "AngleValue", "45"}, 45}, {{"key", "AngleValue", 38}, 46},
              {{"key", "AngleValue", 40}, 45},    {{"spin", "UpDown1", -50}, 355},
              {{"spin", "UpDown1", 10}, 5},       {{"type", "AngleValue", "abc"}, 0}};
  for (const auto& row : rows) {
    EXPECT_EQ(act(row.action)["ok"], true) << row.action;
    EXPECT_EQ(Value("p", "angle"), row.angle) << row.action;
  }
  EXPECT_EQ(act({"type", "AngleValue", 5})["ok"], false);
  EXPECT_EQ(act({"spin", "UpDown1", "up"})["ok"], false);
}

TEST_F(Automation, ReadsAndWritesPropertyStores) {
  EXPECT_EQ(Ask(R"({"op":"new","class":"Plot2DS","id":"p","store":
                   {"2DSTESTDM":150.5,"StdSigRange2DS":0.1,"2DSLegend":true,"other":[]}})")["ok"],
            true);
  EXPECT_EQ(Value("p", "TestDiameter"), 150.5);
  EXPECT_EQ(Value("p", "WaferDiameter"), 200);
  EXPECT_EQ(Value("p", "HideLegend"), -1);
  const json store = AskFor({{"op", "store"}, {"id", "p"}})["value"];
  ASSERT_EQ(store.size(), 14U);
  EXPECT_EQ(store[0], json::parse(R"({"key":"2DSBackColor","kind":"int32","value":2147483663,
                                      "default":2147483663})"));
  EXPECT_EQ(store[2], json::parse(R"({"key":"2DSTESTDM","kind":"int16","value":150.5,
                                      "default":194})"));
  EXPECT_EQ(store[9]["key"], "StdSigRange2DS");
  EXPECT_EQ(store[9]["kind"], "double");
  EXPECT_EQ(store[10], json::parse(R"({"key":"2DSLegend","kind":"boolean","value":-1,
                                       "default":0})"));
  EXPECT_EQ(store[13], json::parse(R"({"key":"2DSMouseIcon","kind":"object","value":null,
                                       "default":null})"));
}

TEST_F(Automation, PrintsOnWhatIsSetAsThePrinter) {
  NewPlot();
  Load();
  EXPECT_EQ(Value("p", "PrinterObj"), json());
  const json area = {1000, 2000, 6000, 4000};
  EXPECT_EQ(Call("p", "PrintPlot", area)["value"], 2);
  ASSERT_EQ(Ask(R"({"op":"new","class":"Printer","id":"q","width":12000,"height":16000})")["ok"],
            true);
  EXPECT_EQ(AskFor({{"op", "set"}, {"id", "p"}, {"name", "PrinterObj"}, {"value", {{"ref", "q"}}}}),
            json::parse(R"({"ok":true})"));
  EXPECT_EQ(Value("p", "PrinterObj"), (json{{"ref", "q"}}));
  json reply = Call("p", "PrintPlot", area);
  EXPECT_EQ(reply, json::parse(R"({"ok":true,"value":0})"));
  EXPECT_GT(AskFor({{"op", "trace"}, {"id", "q"}})["value"].size(), 100U);

  AskFor({{"op", "drop"}, {"id", "p"}});
  ASSERT_EQ(Ask(R"({"op":"new","class":"Plot3D","id":"p"})")["ok"], true);
  Load();
  AskFor({{"op", "set"}, {"id", "p"}, {"name", "PrinterObj"}, {"value", {{"ref", "q"}}}});
  reply = Call("p", "PrintPlot", area);
  ASSERT_EQ(reply["args"].size(), 4U);
  EXPECT_EQ(reply["args"][0], 1575);
  EXPECT_EQ(reply["args"][2], 4750);
  EXPECT_EQ(reply["args"][3], 4000);
}

TEST_F(Automation, OffersAllNineControls) {
  const std::pair<const char*, const char*> rows[] = {
      {"Plot2D", "PLOTA"},  {"Plot2DS", "PLOTA"}, {"Plot2DC", "PLOTA"},
      {"Plot2DN", "PLOTA"}, {"Plot3D", "PLOTA"},  {"Plot3DS", "PLOTA"},
      {"Plot3DB", "PLOTA"}, {"Histo", "histPic"}, {"LineScan", "PLOTA"}};
  for (const auto& [kind, surface] : rows) {
    ASSERT_EQ(AskFor({{"op", "new"}, {"class", kind}, {"id", "p"}})["ok"], true) << kind;
    EXPECT_EQ(AskFor({{"op", "tree"}, {"id", "p"}})["value"]["name"], kind);
    EXPECT_EQ(Load()["value"], 0) << kind;
    AskFor({{"op", "trace"}, {"id", "p"}, {"surface", surface}});
    EXPECT_EQ(Call("p", "Plot", json::array())["value"], 0) << kind;
    EXPECT_GT(AskFor({{"op", "trace"}, {"id", "p"}, {"surface", surface}})["value"].size(), 5U)
        << kind;
    AskFor({{"op", "drop"}, {"id", "p"}});
  }
}

TEST_F(Automation, MeasuresByTheScreenThatIsSet) {
  NewPlot();
  EXPECT_EQ(Ask(R"({"op":"screen","twips_per_pixel_x":10,"twips_per_pixel_y":10})")["ok"], true);
  Load();
  Call("p", "Plot", json::array());
  EXPECT_EQ(Ask(R"({"op":"screen","twips_per_pixel_x":0,"twips_per_pixel_y":0})")["ok"], true);
  EXPECT_EQ(Ask(R"({"op":"size","id":"p","width":1e9,"height":1e9})")["ok"], true);
}

}  // namespace
}  // namespace discoplan
