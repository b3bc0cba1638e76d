// SPDX-License-Identifier: MIT
#include <nlohmann/json.hpp>

#include "discoplan/controls/control_class.h"
#include "discoplan/version.h"
#include "tests/apps/program_fixture.h"

namespace discoplan {
namespace {

using nlohmann::ordered_json;
using Keys = std::vector<std::string>;

Keys KeysOf(const ordered_json& object) {
  Keys keys;
  for (const auto& [key, value] : object.items()) keys.push_back(key);
  return keys;
}

class Describe : public ProgramFixture {
 protected:
  ordered_json Described(const std::string& arguments) const {
    const Outcome outcome = Run("describe " + arguments);
    EXPECT_EQ(outcome.status, 0) << outcome.output;
    return ordered_json::parse(outcome.output);
  }
};

TEST_F(Describe, GivesAllClassesInOneShape) {
  const ordered_json all = Described("");
  EXPECT_EQ(KeysOf(all), (Keys{"version", "enumerations", "classes"}));
  EXPECT_EQ(all["version"], LibraryVersion());
  ASSERT_EQ(all["enumerations"].size(), Enumerations().size());
  for (const ordered_json& enumeration : all["enumerations"]) {
    EXPECT_EQ(KeysOf(enumeration), (Keys{"name", "values"}));
    for (const ordered_json& value : enumeration["values"]) {
      EXPECT_EQ(KeysOf(value), (Keys{"name", "value", "doc"}));
    }
  }
  ASSERT_EQ(all["classes"].size(), ControlClasses().size());
  for (const ordered_json& kind : all["classes"]) {
    EXPECT_EQ(KeysOf(kind), (Keys{"name", "title", "summary", "class_id", "program_id", "pages",
                                  "members", "events"}));
    for (const ordered_json& member : kind["members"]) {
      EXPECT_EQ(KeysOf(member), (Keys{"name", "id", "kind", "type", "writable", "parameters",
                                      "result", "initial", "stored", "doc"}));
      if (member["stored"].is_object()) {
        EXPECT_EQ(KeysOf(member["stored"]), (Keys{"key", "kind", "default"}));
      }
    }
    for (const ordered_json& event : kind["events"]) {
      EXPECT_EQ(KeysOf(event), (Keys{"name", "id", "parameters", "doc"}));
    }
  }
}

TEST_F(Describe, TellsAMemberWhole) {
  const ordered_json classes = Described("Plot3DB")["classes"];
  ASSERT_EQ(classes.size(), 1U);
  const auto member = [&](const char* name) {
    for (const ordered_json& row : classes[0]["members"]) {
      if (row["name"] == name) return row;
    }
    return ordered_json();
  };
  ordered_json scale = member("BeamScale");
  EXPECT_FALSE(scale["doc"].get<std::string>().empty());
  scale.erase("doc");
  EXPECT_EQ(scale, ordered_json::parse(R"({"name": "BeamScale", "id": 75, "kind": "property",
    "type": "float", "writable": true, "parameters": [], "result": null, "initial": 1,
    "stored": {"key": "StdD3Scale2DB", "kind": "int16", "default": 10}})"));
  EXPECT_EQ(member("IntervalColor3")["stored"],
            ordered_json::parse(R"({"key": "2DBInterCol3", "kind": "int32", "default": 65280})"));
  EXPECT_EQ(member("WaferStyle")["type"], "WaferSt");
  EXPECT_EQ(member("PrintPlot")["parameters"][2],
            ordered_json::parse(R"({"name": "width", "type": "float", "direction": "in-out"})"));
  EXPECT_EQ(member("PrintPlot")["result"], "int16");
  EXPECT_EQ(member("mean")["initial"], nullptr);
  EXPECT_EQ(member("mean")["writable"], false);
  EXPECT_EQ(member("SetWaferData")["parameters"][0],
            ordered_json::parse(R"({"name": "x", "type": "array", "direction": "in"})"));
  EXPECT_EQ(classes[0]["events"][2]["parameters"].size(), 4U);
}

TEST_F(Describe, RefusesAClassThatIsNone) {
  const Outcome outcome = Run("describe Plot9D");
  EXPECT_EQ(outcome.status, 2);
  EXPECT_NE(outcome.output.find("'Plot9D' is no class; there are Plot2D, Plot2DS"),
            std::string::npos)
      << outcome.output;
}

}  // namespace
}  // namespace discoplan
