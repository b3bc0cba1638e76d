// SPDX-License-Identifier: MIT
#pragma once

/// A session of the automation host that is asked line by line.

#include <gtest/gtest.h>

#include "hosts/automation/session.h"

namespace discoplan {

using nlohmann::json;

class AutomationRequests : public testing::Test {
 protected:
  json Ask(const std::string& line) { return json::parse(session_.Answer(line)); }
  json AskFor(const json& request) { return Ask(request.dump()); }
  json Get(const json& id, const char* name) {
    return AskFor({{"op", "get"}, {"id", id}, {"name", name}});
  }
  json Set(const json& id, const char* name, const json& value) {
    return AskFor({{"op", "set"}, {"id", id}, {"name", name}, {"value", value}});
  }
  json Call(const char* name, const std::string& args) {
    return AskFor({{"op", "call"}, {"id", "p"}, {"name", name}, {"args", json::parse(args)}});
  }
  json Draw(const std::string& calls) {
    return AskFor({{"op", "draw"}, {"id", "s"}, {"calls", json::parse(calls)}});
  }
  void NewPlot() { ASSERT_TRUE(AskFor({{"op", "new"}, {"class", "Plot2D"}, {"id", "p"}})["ok"]); }
  void NewPicture(float twips = 300) {
    ASSERT_TRUE(AskFor({{"op", "new"},
                        {"class", "Picture"},
                        {"id", "s"},
                        {"width", twips},
                        {"height", twips}})["ok"]);
  }

  AutomationSession session_;
};

inline const json kDone = {{"ok", true}};

/// A failure is one sentence, and there is nothing else in the reply.
inline void ExpectRefused(const json& reply, const std::string& request) {
  EXPECT_EQ(reply["ok"], false) << request;
  ASSERT_EQ(reply.size(), 2U) << request << reply;
  const std::string error = reply["error"];
  EXPECT_GT(error.size(), 10U) << request;
  EXPECT_EQ(error.back(), '.') << request << " -> " << error;
}

}  // namespace discoplan
