// SPDX-License-Identifier: MIT
#include <sstream>

#include "tests/hosts/automation_requests_fixture.h"

namespace discoplan {
namespace {

using Requests = AutomationRequests;

TEST_F(Requests, SayHowManyCallsOfATraceWereLeftOut) {
  NewPicture();
  const std::string call = "[[\"Print\",\"" + std::string(std::size_t{1} << 20, 'x') + "\"]]";
  const std::string request = R"({"op":"draw","id":"s","calls":)" + call + "}";
  for (int i = 0; i < 130; ++i) ASSERT_EQ(Ask(request), kDone);
  const json reply = Ask(R"({"op":"trace","id":"s"})");
  EXPECT_EQ(reply["left_out"], 130 - reply["value"].size());
  EXPECT_GT(reply["value"].size(), 100U);
  EXPECT_EQ(Ask(R"({"op":"trace","id":"s"})"), (json{{"ok", true}, {"value", json::array()}}));
}

TEST_F(Requests, RefuseWhatIsNoRequest) {
  NewPlot();
  NewPicture();
  std::string deep = R"({"op":"set","id":"p","name":"PlotCaption","value":)";
  deep += std::string(1000, '[') + std::string(1000, ']') + "}";
  const std::string begun = R"({"op":"set","id":"p",)";
  for (const std::string& line : {
           std::string("{\"op\":\"get\",\"id\":\"p\",\"name\":\"\xC3\x28\"}"),
           std::string("{\"op\":\"get\",\"id\":\"p\",\"name\":\"\xED\xA0\x80\"}"),
           std::string("{\"op\":\"tree\",\"id\":\"p\"}x"),
           std::string("{\"op\":\"tree\",\"id\":\"p\"} {}"),
           std::string("{\"op\":\"tree\",\"id\":\"p\",}"),
           std::string("{'op':'tree'}"),
           std::string(R"({"op":"tree","id":NaN})"),
           std::string("\0", 1),
           std::string(" \t"),
           std::string("\"op\""),
           deep,
           std::string(R"({"op":null})"),
           std::string(R"({"op":"Get","id":"p","name":"mean"})"),
           std::string(R"({"op":"dialog","actions":5})"),
           std::string(R"({"op":"new","id":"x"})"),
           std::string(R"({"op":"new","class":"plot2d","id":"x"})"),
           std::string(R"({"op":"new","class":["Plot2D"],"id":"x"})"),
           std::string(R"({"op":"new","class":"Plot2D","id":1.5})"),
           std::string(R"({"op":"new","class":"Plot2D","id":null})"),
           std::string(R"({"op":"new","class":"Plot2D","id":true})"),
           std::string(R"({"op":"new","class":"Picture","id":"p"})"),
           std::string(R"({"op":"new","class":"Plot2D","id":"x","width":1e39})"),
           std::string(R"({"op":"new","class":"Printer","id":"x","twips_per_pixel_x":null})"),
           std::string(R"({"op":"drop"})"),
           std::string(R"({"op":"drop","id":"P"})"),
           std::string(R"({"op":"get","id":["p"],"name":"mean"})"),
           std::string(R"({"op":"get","id":"p","name":null})"),
           std::string(R"({"op":"get","id":"p","name":"nonesuch"})"),
           begun + R"("name":"nonesuch","value":1})",
           begun + R"("name":"Plot","value":1})",
           begun + R"("name":"hdc","value":1})",
           begun + R"("name":"Resolution","value":null})",
           begun + R"("name":"Resolution","value":[5]})",
           begun + R"("name":"Resolution","value":{}})",
           begun + R"("name":"Resolution","value":{"ref":"s"}})",
           begun + R"("name":"WaferStyle","value":2147483648})",
           begun + R"("name":"WaferStyle","value":"NaN"})",
           begun + R"("name":"ShowSites","value":1e10})",
           begun + R"("name":"IntervalColor1","value":4294967296})",
           begun + R"("name":"IntervalColor1","value":"red"})",
           begun + R"("name":"HideLegend","value":"yes"})",
           begun + R"("name":"PlotCaption","value":null})",
           begun + R"("name":"PrinterObj","value":{"ref":[1]}})",
           begun + R"("name":"PrinterObj","value":"s"})",
           std::string(R"({"op":"call","id":"p"})"),
           std::string(R"({"op":"call","id":"p","name":"nonesuch","args":[]})"),
           std::string(R"({"op":"call","id":"p","name":"Plot","args":[1]})"),
           std::string(R"({"op":"call","id":"p","name":"Plot","args":null})"),
           std::string(R"({"op":"call","id":"p","name":"SetPlotLimit"})"),
           std::string(R"({"op":"call","id":"p","name":"SetPlotLimit","args":["a","b"]})"),
           std::string(R"({"op":"call","id":"p","name":"SetDataFile","args":[5,5]})"),
           std::string(R"({"op":"call","id":"p","name":"Interpolation","args":["a",1]})"),
           std::string(R"({"op":"size","id":"s","width":500,"height":500})"),
           std::string(R"({"op":"size","id":"p","width":true,"height":500})"),
           std::string(R"({"op":"tree","id":"s"})"),
           std::string(R"({"op":"tree"})"),
           std::string(R"({"op":"focus","id":"s"})"),
           std::string(R"({"op":"show","id":"s"})"),
           std::string(R"({"op":"members","id":"q"})"),
           std::string(R"({"op":"trace","id":"p","surface":"RePlot"})"),
           std::string(R"({"op":"trace","id":"p","surface":5})"),
           std::string(R"({"op":"trace","id":"s","surface":"PLOTA"})"),
           std::string(R"({"op":"save","id":"s"})"),
           std::string(R"({"op":"save","id":"s","file":7})"),
           std::string(R"({"op":"save","id":"s","file":""})"),
           std::string(R"({"op":"draw","id":"s"})"),
           std::string(R"({"op":"mouse","id":"p"})"),
           std::string(R"({"op":"mouse","id":"p","event":"Click","button":1e6})"),
           std::string(R"({"op":"mouse","id":"p","event":"click"})"),
           std::string(R"({"op":"input","id":"p"})"),
           std::string(R"({"op":"input","id":"p","action":["click"]})"),
           std::string(R"({"op":"input","id":"p","action":["jump","Command1"]})"),
           std::string(R"({"op":"screen"})"),
           std::string(R"({"op":"screen","twips_per_pixel_x":15,"twips_per_pixel_y":"NaN"})"),
       }) {
    ExpectRefused(Ask(line), line.substr(0, 90));
  }
  EXPECT_EQ(Get("p", "Resolution"), json({{"ok", true}, {"value", 5}}));
}

TEST_F(Requests, GoOnLineByLine) {
  std::istringstream requests(
      "\n{\"op\":\"new\",\"class\":\"Printer\",\"id\":1}\r\nno\n"
      "{\"op\":\"get\",\"id\":1,\"name\":\"ScaleMode\"}");
  std::ostringstream replies;
  EXPECT_TRUE(session_.Run(requests, replies));
  std::istringstream lines(replies.str());
  std::vector<json> answers;
  for (std::string line; std::getline(lines, line);) answers.push_back(json::parse(line));
  ASSERT_EQ(answers.size(), 4U);
  EXPECT_EQ(answers[0]["ok"], false);
  EXPECT_EQ(answers[1], kDone);
  EXPECT_EQ(answers[2]["ok"], false);
  EXPECT_EQ(answers[3], json({{"ok", true}, {"value", 1}}));
}

TEST_F(Requests, EndWhenAReplyIsLost) {
  std::istringstream requests("{}\n{\"op\":\"new\",\"class\":\"Printer\",\"id\":1}");
  std::ostringstream replies;
  replies.setstate(std::ios::badbit);
  EXPECT_FALSE(session_.Run(requests, replies));
  ExpectRefused(Get(1, "ScaleMode"), "never made");
}

TEST_F(Requests, TellANumberOutOfRangeFromDamage) {
  const auto error = [&](const char* line) { return Ask(line)["error"].get<std::string>(); };
  EXPECT_EQ(error(R"({"op":"set","id":1,"name":"Resolution","value":1e400})"),
            "A number of the request is out of a 64-bit float's range.");
  EXPECT_EQ(error(R"({"op":)"), "The request is no well-formed JSON in UTF-8.");
}

TEST_F(Requests, TellAnIdByItsKind) {
  for (const json& id : {json("7"), json(7), json(""), json("ä\n"), json(-3)}) {
    EXPECT_EQ(AskFor({{"op", "new"}, {"class", "Printer"}, {"id", id}}), kDone);
    ExpectRefused(AskFor({{"op", "new"}, {"class", "Printer"}, {"id", id}}), id.dump());
  }
  EXPECT_EQ(AskFor({{"op", "drop"}, {"id", "7"}}), kDone);
  EXPECT_TRUE(Get(7, "ScaleMode")["ok"]);
  ExpectRefused(Get("7", "ScaleMode"), "dropped");
  ExpectRefused(AskFor({{"op", "drop"}, {"id", "7"}}), "dropped twice");
  EXPECT_EQ(AskFor({{"op", "new"}, {"class", "Picture"}, {"id", "7"}}), kDone);  // free again
}

TEST_F(Requests, NameTheTypeOfEachMember) {
  NewPlot();
  const json members = AskFor({{"op", "members"}, {"id", "p"}})["value"];
  EXPECT_EQ(members.size(), 46U);
  for (const char* row : {
           R"({"name":"PrinterObj","kind":"property","type":"object","writable":true})",
           R"({"name":"hdc","kind":"property","type":"int32","writable":false})",
           R"({"name":"MousePointer","kind":"property","type":"int16","writable":true})",
           R"({"name":"About","kind":"method","type":"none","writable":false})",
           R"({"name":"WaferStyle","kind":"property","type":"WaferSt","writable":true})",
           R"({"name":"mean","kind":"property","type":"float","writable":false})",
           R"({"name":"ShowSites","kind":"property","type":"Sites","writable":true})",
           R"({"name":"Plot","kind":"method","type":"int16","writable":false})",
           R"({"name":"BackColor","kind":"property","type":"colour","writable":true})",
           R"({"name":"SetPlotLimit","kind":"method","type":"boolean","writable":false})",
           R"({"name":"HideLegend","kind":"property","type":"boolean","writable":true})",
           R"({"name":"PlotCaption","kind":"property","type":"string","writable":true})",
           R"({"name":"GetWaferData","kind":"method","type":"float","writable":false})",
       }) {
    EXPECT_NE(std::ranges::find(members, json::parse(row)), members.end()) << row;
  }
}

struct PropertyRow {
  const char* name;
  const char* given;
  const char* read;
  bool announced;
};

TEST_F(Requests, ReadBackWhatWasWritten) {
  NewPlot();
  for (const PropertyRow& row : {
           PropertyRow{"TestDiameter", "0.1", "0.1", true},
           PropertyRow{"TestDiameter", "\"-Infinity\"", "200", true},  // the wafer's diameter
           PropertyRow{"TestDiameter", "\"Infinity\"", "\"Infinity\"", true},
           PropertyRow{"TestDiameter", "194", "194", true},
           PropertyRow{"WaferStyle", "2.5", "2", true},
           PropertyRow{"WaferStyle", "3.5", "1", true},
           PropertyRow{"ShowSites", "true", "-1", true},
           PropertyRow{"ShowSites", "false", "0", true},
           PropertyRow{"HideLegend", "true", "-1", true},
           PropertyRow{"HideLegend", "0", "0", true},
           PropertyRow{"BackColor", "16711935", "16711935", true},
           PropertyRow{"BackColor", "-2147483633", "2147483663", true},
           PropertyRow{"IntervalColor9", "255", "255", true},
           PropertyRow{"MousePointer", "-1", "-1", true},
           PropertyRow{"PlotCaption", "\"\\u00b5\\n\\\"\"", "\"\\u00b5\\n\\\"\"", true},
           PropertyRow{"PlotCaption", "\"NaN\"", "\"NaN\"", true},
           PropertyRow{"PrinterObj", "null", "null", false},
       }) {
    json due = kDone;
    if (row.announced) due["announced"] = {row.name};
    EXPECT_EQ(Set("p", row.name, json::parse(row.given)), due) << row.name << row.given;
    EXPECT_EQ(Get("p", row.name), json({{"ok", true}, {"value", json::parse(row.read)}}))
        << row.name << row.given;
  }
}

TEST_F(Requests, ReportWithTheReplyThatCausedIt) {
  NewPlot();
  EXPECT_EQ(Get("p", "mean"), json({{"ok", true}, {"value", 0}}));  // nothing left from the start
  EXPECT_EQ(Call("Plot", "[]"), json({{"ok", true}, {"value", 1}}));
  EXPECT_EQ(Call("About", "[]"), kDone);
  EXPECT_EQ(AskFor({{"op", "call"}, {"id", "p"}, {"name", "clear"}}), kDone);  // no args at all
  EXPECT_EQ(Call("SetPlotLimit", "[1, 2]"), json({{"ok", true}, {"value", -1}}));
  EXPECT_EQ(Call("SetPlotLimit", "[2, 1]"), json({{"ok", true}, {"value", 0}}));
  EXPECT_EQ(Call("SetWaferData", "[[1,2,3],[1,2,3],[4,5,9]]"), json({{"ok", true}, {"value", 0}}));
  // A test diameter beyond the wafer's is mended by `Plot`, which announces that.
  Set("p", "TestDiameter", 500);
  EXPECT_EQ(Call("Plot", "[]"),
            json({{"ok", true}, {"value", 0}, {"announced", {"TestDiameter"}}}));
}

TEST_F(Requests, GiveTheArgumentsBackOnlyIfOneChanged) {
  NewPlot();
  EXPECT_EQ(Call("GetWaferData", "[null, null, null]"), json({{"ok", true}, {"value", 0}}));
  EXPECT_EQ(Call("GetWaferData", "[[8], null, [9]]"), json({{"ok", true}, {"value", 0}}));
  EXPECT_EQ(Call("SetPlotLimit", R"(["NaN", 1])"), json({{"ok", true}, {"value", 0}}));
  EXPECT_EQ(Call("SetWaferData", R"([[1,2],[1,2],["NaN",4]])"), json({{"ok", true}, {"value", 0}}));
  EXPECT_EQ(Call("SetWaferData", R"([null,[1,2],["NaN",4]])"), json({{"ok", true}, {"value", 4}}));
  EXPECT_EQ(Call("GetWaferData", R"([[8],{"lower":5,"values":[]},null])"), json::parse(R"(
      {"ok": true, "value": 2, "args": [{"lower": 1, "values": [1, 2]},
       {"lower": 1, "values": [1, 2]}, {"lower": 1, "values": [0, 4]}]})"));
  EXPECT_EQ(Call("GetWaferData", "[[1, 2], [1, 2], [0, 4]]"), json({{"ok", true}, {"value", 2}}));
}

struct ArrayRow {
  const char* args;
  int result;  // -1 for no such value
};

TEST_F(Requests, TakeArraysInEveryFormThatIsOne) {
  for (
      const ArrayRow& row : {
          ArrayRow{R"([[1,2],[3,4],[5,6]])", 0},
          ArrayRow{
              R"([{"lower":-3,"values":[1,2]},{"lower":-3,"values":[1,2]},{"lower":-3,"values":[1,2]}])",
              0},
          ArrayRow{R"([{"lower":0,"values":[1,2]},[1,2,9],[1,2]])", 1},
          ArrayRow{R"([{"lower":0,"values":[1,2,9]},[1,2],{"lower":0,"values":[1,2,9]}])", 2},
          ArrayRow{R"([[1,2],[1,2],[1]])", 4},
          ArrayRow{R"([null,null,null])", 4},
          ArrayRow{R"([[],[],[]])", 4},
          ArrayRow{
              R"([{"lower":40000,"values":[1]},{"lower":40000,"values":[1]},{"lower":40000,"values":[1]}])",
              4},
          ArrayRow{
              R"([{"lower":2147483647,"values":[1,2]},{"lower":2147483647,"values":[1,2]},[1,2]])",
              4},
          ArrayRow{R"([["Infinity"],[1],[1]])", 0},
          ArrayRow{R"([[1],[1],["Infinity"]])", 4},
          ArrayRow{R"([{"lower":1},[1],[1]])", -1},
          ArrayRow{R"([{"values":[1]},[1],[1]])", -1},
          ArrayRow{R"([{"lower":1.5,"values":[1]},[1],[1]])", -1},
          ArrayRow{R"([{"lower":2147483648,"values":[1]},[1],[1]])", -1},
          ArrayRow{R"([{"lower":-2147483649,"values":[1]},[1],[1]])", -1},
          ArrayRow{R"([{"lower":18446744073709551615,"values":[1]},[1],[1]])", -1},
          ArrayRow{R"([{"lower":1,"values":{}},[1],[1]])", -1},
          ArrayRow{R"([[[1]],[1],[1]])", -1},
          ArrayRow{R"([[null],[1],[1]])", -1},
          ArrayRow{R"([[true],[1],[1]])", -1},
          ArrayRow{R"([[1e39],[1],[1]])", -1},
          ArrayRow{R"([5,[1],[1]])", -1},
          ArrayRow{R"(["x",[1],[1]])", -1},
      }) {
    AutomationSession session;
    session.Answer(R"({"op":"new","class":"Plot2D","id":"p"})");
    const json reply = json::parse(session.Answer(
        std::string(R"({"op":"call","id":"p","name":"SetWaferData","args":)") + row.args + "}"));
    if (row.result < 0) {
      ExpectRefused(reply, row.args);
    } else {
      EXPECT_EQ(reply, json({{"ok", true}, {"value", row.result}})) << row.args;
    }
  }
}

TEST_F(Requests, NameAPrinterByItsId) {
  NewPlot();
  EXPECT_EQ(Get("p", "PrinterObj"), json({{"ok", true}, {"value", nullptr}}));
  for (const json& id : {json(1), json("1")}) {
    AskFor({{"op", "new"}, {"class", "Printer"}, {"id", id}});
    EXPECT_EQ(Set("p", "PrinterObj", {{"ref", id}}), kDone);
    EXPECT_EQ(Get("p", "PrinterObj")["value"], json({{"ref", id}}));
  }
  EXPECT_EQ(AskFor({{"op", "drop"}, {"id", 1}}), kDone);
  EXPECT_EQ(Get("p", "PrinterObj")["value"], json({{"ref", "1"}}));
}

TEST_F(Requests, NameADroppedPrinterNoMore) {
  NewPlot();
  AskFor({{"op", "new"}, {"class", "Printer"}, {"id", 1}});
  Set("p", "PrinterObj", {{"ref", 1}});
  EXPECT_EQ(AskFor({{"op", "drop"}, {"id", 1}}), kDone);
  // The control still holds it, but the id may mean another one from now on.
  EXPECT_EQ(Get("p", "PrinterObj")["value"], json({{"ref", nullptr}}));
}

TEST_F(Requests, TakeCallsOfEveryFormUpToTheFirstBadOne) {
  NewPicture();
  for (const char* good : {
           R"(["FillColor", -1])",
           R"(["FillStyle", 0])",
           R"(["DrawWidth", 3])",
           R"(["Line", 1, 2, 3, 4])",
           R"(["Line", null, null, 3, 4])",
           R"(["Line", 0, 0, 1e30, -1e30])",
           R"(["Line", 1, 2, "NaN", "Infinity"])",
           R"(["Circle", 5, 5, -3])",
           R"(["Circle", 5, 5, 3, null, 1])",
           R"(["Circle", 5, 5, "Infinity", null, 1, 2, 0.5])",
           R"(["Polygon", []])",
           R"(["Polygon", [[1, 2]]])",
           R"(["Polygon", [[-2147483648, 2147483647], [0, 0], [2147483647, 5]]])",
           R"(["FloodFill", 3, 3])",
           R"(["FloodFill", -3, 300, 255])",
           R"(["Print", ""])",
           R"(["Font", {"Name": "", "Size": 0}])",
           R"(["Font.Bold", true])",
           R"(["Width", 0])",
           R"(["ScaleWidth", 0])",
           R"(["Cls", 1])",
           R"(["Refresh"])",
           R"(["ScaleMode", 1])",
           R"(["Picture"])",
       }) {
    EXPECT_EQ(Draw(std::string("[") + good + "]"), kDone) << good;
  }
  for (const char* bad : {
           R"([])",
           R"(null)",
           R"("Cls")",
           R"([5])",
           R"(["cls"])",
           R"(["TwipsPerPixelX", 5])",
           R"(["FillColor"])",
           R"(["FillColor", "red"])",
           R"(["FillColor", 1e10])",
           R"(["FillStyle", 70000])",
           R"(["FillStyle", {"ref": "s"}])",
           R"(["Font.Name", 5])",
           R"(["Font", "Arial"])",
           R"(["Font", {"Name": "Arial"}])",
           R"(["Font", {"Size": 5}])",
           R"(["Line"])",
           R"(["Line", 1, null, 3, 4])",
           R"(["Line", 1, 2, 3, 4, "red"])",
           R"(["Line", 1, 2, 3, 4, 0, 5])",
           R"(["Circle", 1, 2])",
           R"(["Circle", 1, 2, 3, {}])",
           R"(["Print"])",
           R"(["Polygon", 5])",
           R"(["Polygon", [5]])",
           R"(["Polygon", [[1, 2, 3]]])",
           R"(["Polygon", [["a", 1]]])",
           R"(["FloodFill", 1])",
           R"(["FloodFill", 1e10, 1])",
       }) {
    ExpectRefused(Draw(std::string("[") + bad + "]"), bad);
  }
  AskFor({{"op", "trace"}, {"id", "s"}});
  ExpectRefused(Draw(R"([["DrawStyle", 5], ["Fly"], ["DrawStyle", 0]])"), "in the middle");
  EXPECT_EQ(AskFor({{"op", "trace"}, {"id", "s"}})["value"], json::parse(R"([["DrawStyle", 5]])"));
}

TEST_F(Requests, AnswerAtOnceHoweverLargeTheNumbers) {
  NewPicture();
  EXPECT_EQ(Draw(R"([["DrawWidth", 32767], ["FillStyle", 0],
      ["Circle", 10, 10, 1e30, null, null, null, 0.5], ["Circle", 10, 10, 1e9],
      ["Circle", 10, 10, 1e9, 0, 0.1, 6, 0.001], ["Circle", 10, 10, 5], ["Circle", 10, 10, 5000],
      ["Line", -1e9, -1e9, 1e9, 1e9], ["Line", -1e9, 5, 1e9, 6, 0, "box"],
      ["Line", -1e9, 5, 1e9, 6, 0, "filled"],
      ["Polygon", [[-2147483648, -2147483648], [2147483647, 2147483647], [0, 2147483647]]],
      ["Width", 1e30], ["Height", 1e30], ["Cls"], ["Picture"], ["Cls"]])"),
            kDone);
}

}  // namespace
}  // namespace discoplan
