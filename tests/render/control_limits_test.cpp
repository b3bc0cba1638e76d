// SPDX-License-Identifier: MIT
#include "discoplan/render/control_limits.h"

#include <gtest/gtest.h>

#include <thread>

namespace discoplan {
namespace {

TEST(ControlLimits, AreHiddenAtFirstAndOnePerThread) {
  ThreadControlLimits() = {.shown = true, .lower = 1, .upper = 2};
  std::thread([] {
    EXPECT_FALSE(ThreadControlLimits().shown);
    ThreadControlLimits() = {.shown = true, .lower = 3, .upper = 4};
  }).join();
  EXPECT_TRUE(ThreadControlLimits().shown);
  EXPECT_EQ(ThreadControlLimits().lower, 1);
  EXPECT_EQ(ThreadControlLimits().upper, 2);
  ThreadControlLimits() = {};
}

}  // namespace
}  // namespace discoplan
