// SPDX-License-Identifier: MIT
#include "discoplan/dialogs/scan_dialog.h"

#include <utility>
#include <vector>

#include "tests/dialogs/dialog_test.h"

namespace discoplan {
namespace {

class ScanDialog : public DialogTest {
 protected:
  ScanDialog() { dialog_.SetValues(source_, settings_); }

  Node& At(const std::string& name) { return Child(dialog_, name); }
  /// What is said when the focus leaves the field.
  std::string Leave(const std::string& field, const char* text) {
    At(field).Text(text);
    const bool left = At(field).on_leave();
    const auto messages = host_.TakeMessages();
    EXPECT_EQ(left, messages.empty());
    if (messages.empty()) return "";
    EXPECT_EQ(messages[0].title, "Input Error");
    return messages[0].text;
  }

  const ScanSettings settings_ = {.type = 1, .angle = 30, .x = {-10, 20, 5}, .y = {1, 2, 6}};
  frmPlotOpt1D dialog_{host_};
};

TEST_F(ScanDialog, ShowsTheFieldsOfItsMode) {
  const auto shown = [&] {
    return std::vector<bool>{At("AngleValue").Visible(), At("resx(2)").Visible(),
                             At("picgrid(2)").Visible(), At("lblLine(5)").Visible(),
                             At("resx(0)").Visible(),    At("resy(1)").Visible(),
                             At("lblLine(0)").Visible()};
  };
  EXPECT_EQ(shown(), (std::vector<bool>{true, true, true, true, false, false, false}));
  At("optline").Value(1);
  At("optline").on_change();
  EXPECT_EQ(shown(), (std::vector<bool>{false, false, false, false, true, true, true}));
}

TEST_F(ScanDialog, GivesBackWhatItShows) {
  ScanSettings result = dialog_.GetResult();
  EXPECT_EQ(result.type, 1);
  EXPECT_EQ(result.angle, 30);
  EXPECT_EQ(result.x, settings_.x);
  EXPECT_EQ(result.y, settings_.y);
  At("optline").Value(1);
  At("AngleValue").Type("359");
  EXPECT_EQ(Leave("resx(1)", "-12.5"), "");
  result = dialog_.GetResult();
  EXPECT_EQ(result.type, 2);
  EXPECT_EQ(result.angle, 359);
  EXPECT_EQ(result.x[1], -12.5F);
}

TEST_F(ScanDialog, RefusesToLeaveABadPoint) {
  EXPECT_EQ(Leave("resx(0)", "abc"), "Enter a numeric experssion");
  EXPECT_EQ(At("resx(0)").Text(), "0");
  EXPECT_EQ(Leave("resy(0)", "1e1"), "Enter a numeric experssion");
  // The test circle's radius is 97: a point on it is refused.
  At("resy(2)").Text("0");
  EXPECT_EQ(Leave("resx(2)", "97"), "Testdiameter exeded");
  EXPECT_EQ(At("resx(2)").Text(), "0");
  EXPECT_EQ(Leave("resx(2)", "96.99"), "");
  EXPECT_EQ(Leave("resy(2)", "5"), "Testdiameter exeded");
  EXPECT_EQ(At("resy(2)").Text(), "0");
  EXPECT_EQ(Leave("resy(2)", ""), "");
}

TEST_F(ScanDialog, TestsTheAngleWhileItIsTyped) {
  for (const auto& [typed, stands] :
       {std::pair{"45", "45"}, {"360", "30"}, {"-1", "30"}, {"x", "30"}, {"359", "359"}}) {
    At("AngleValue").Type(typed);
    EXPECT_EQ(At("AngleValue").Text(), stands) << typed;
  }
}

TEST_F(ScanDialog, PlacesMarkersByTheGridOfTheWafer) {
  // Cells of 194 / 50 = 4 mm, 194 / 2 / 4 = 24 of them on each side of the centre: the picture's
  // 1980 twips are 192 mm, a mm is 10.3125 twips. The centre lies at 210 + 990, 270 + 990.
  const TwipsBox& box = At("picgrid(2)").Box();  // of the point at 5, 6
  EXPECT_NEAR(box.left + box.width / 2, 1200 + 5 * 10.3125, 0.01);
  EXPECT_NEAR(box.top + box.height / 2, 1260 - 6 * 10.3125, 0.01);
}

TEST_F(ScanDialog, LetsTheFocusGoWhenItIsCancelled) {
  dialog_.cancel_button()->on_click();
  EXPECT_EQ(Leave("resx(2)", "abc"), "");
  EXPECT_EQ(Leave("resx(2)", "500"), "");
}

TEST_F(ScanDialog, OpensForTwoPoints) {
  dialog_.SetValues(source_, {.type = 2, .angle = 0, .x = {-90, 90, 0}, .y = {0, 0, 0}});
  EXPECT_EQ(At("optline").Value(), 1);
  EXPECT_TRUE(At("resx(0)").Visible());
  EXPECT_FALSE(At("AngleValue").Visible());
  EXPECT_EQ(dialog_.GetResult().type, 2);
}

TEST_F(ScanDialog, MovesMarkersAndLine) {
  const TwipsBox before = At("picgrid(2)").Box();
  EXPECT_EQ(Leave("resx(2)", "50"), "");
  EXPECT_GT(At("picgrid(2)").Box().left, before.left);
  EXPECT_EQ(At("picgrid(2)").Box().top, before.top);
  EXPECT_TRUE(At("line1").Visible());
  // A quarter of a turn: the cut runs from right to left through the rotation point's height.
  At("AngleValue").Type("90");
  EXPECT_LT(At("line1").Box().width, -1000);
  EXPECT_NEAR(At("line1").Box().height, 0, 1);
}

}  // namespace
}  // namespace discoplan
