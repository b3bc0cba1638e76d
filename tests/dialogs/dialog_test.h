// SPDX-License-Identifier: MIT
#pragma once

/// Dialogs of a wafer of 200 mm, opened on a host that records.

#include <gtest/gtest.h>

#include <string>

#include "discoplan/dialogs/option_dialog.h"
#include "hosts/recording/recording_host.h"

namespace discoplan {

inline wafer Source(float test_diameter = 194) {
  wafer source;
  source.WaferDiameter = 200;
  source.TestDiameter = test_diameter;
  source.FlatRatio = 1;
  return source;
}

class DialogTest : public testing::Test {
 protected:
  static Node& Child(OptionDialog& dialog, const std::string& name) {
    return *dialog.root().Find(name);
  }
  /// What the box says after OK; "" if there was none.
  std::string Ok(OptionDialog& dialog) {
    dialog.accept_button()->on_click();
    const auto messages = host_.TakeMessages();
    if (messages.empty()) return "";
    EXPECT_EQ(messages.size(), 1U);
    EXPECT_EQ(messages[0].title, "Input Error");
    EXPECT_TRUE(messages[0].system_modal);
    return messages[0].text;
  }

  RecordingHost host_;
  wafer source_ = Source();
};

}  // namespace discoplan
