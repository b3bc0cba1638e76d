// SPDX-License-Identifier: MIT
#include "discoplan/base/angles.h"

#include <gtest/gtest.h>

namespace discoplan {
namespace {

// Known to the last bit: sin(1), cos(1), and the angle whose tangent is 1.
TEST(Angles, AreTheNearestDoubles) {
  EXPECT_EQ(Sine(1), 0x1.aed548f090ceep-1);
  EXPECT_EQ(Cosine(1), 0x1.14a280fb5068cp-1);
  EXPECT_EQ(ArcTangent(1), 0x1.921fb54442d18p-1);
  EXPECT_EQ(Sine(-1), -Sine(1));
  EXPECT_EQ(Cosine(0), 1);
}

}  // namespace
}  // namespace discoplan
