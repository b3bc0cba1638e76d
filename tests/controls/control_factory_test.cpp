// SPDX-License-Identifier: MIT
#include "discoplan/controls/control_factory.h"

#include <gtest/gtest.h>

#include <string_view>

#include "hosts/recording/recording_host.h"

namespace discoplan {
namespace {

TEST(ControlFactory, KnowsItsClasses) {
  RecordingHost host;
  for (const ControlClass* own_class : ControlClasses()) {
    const std::string_view name = own_class->name;
    const auto control = NewControl(name, host, nullptr);
    ASSERT_NE(control, nullptr) << name;
    EXPECT_EQ(control->root().name, name);
  }
  for (const char* name : {"", "plot2d", "Plot2D ", "Plot9D"}) {
    EXPECT_EQ(NewControl(name, host, nullptr), nullptr) << name;
  }
}

}  // namespace
}  // namespace discoplan
