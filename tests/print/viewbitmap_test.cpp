// SPDX-License-Identifier: MIT
#include "discoplan/print/viewbitmap.h"

#include "discoplan/base/numbers.h"
#include "discoplan/version.h"
#include "tests/print/page_fixture.h"

namespace discoplan {
namespace {

using nlohmann::json;

class ViewBitmap : public PageFixture {
 protected:
  json Draw(float width, float height = 3000) {
    picture_ = NewPicture(width / 15, height / 15);
    panel_.BitmapObj(picture_.get());
    panel_.WaferObj(&source_);
    panel_.DrawWaferData();
    return picture_->TakeTrace();
  }

  wafer source_ = LoadedWafer(FiveSites(), 200, 194);
  std::unique_ptr<Recording<Picture>> picture_;
  viewbitmap panel_;
};

TEST_F(ViewBitmap, StacksThePanelsOnANarrowPicture) {
  const json trace = Draw(4890);
  EXPECT_EQ(Calls(trace, "Height"), json::parse(R"([["Height", 7400]])"));
  const auto texts = Texts(trace);
  EXPECT_EQ(texts[0], json::parse(R"([100, 3000, "Wafer Statistics"])"));
  EXPECT_EQ(texts[1], json::parse(R"([220, 3360, "Mean:"])"));
  EXPECT_EQ(texts[2], json::parse(R"([1400, 3360, "14.00"])"));
  EXPECT_EQ(texts[16], json::parse(R"([100, 5400, "Wafer Size"])"));
  EXPECT_EQ(texts[18], json::parse(R"([1400, 5760, "200.00 mm"])"));
  EXPECT_EQ(texts.back(), (json{100, 7000, "Discoplan.OCX " + LibraryVersion()}));
}

TEST_F(ViewBitmap, PutsThePanelsSideBySideOnAWideOne) {
  const json trace = Draw(4905);
  EXPECT_EQ(Calls(trace, "Height"), json::parse(R"([["Height", 6000]])"));
  const auto texts = Texts(trace);
  EXPECT_EQ(texts[16], json::parse(R"([2352, 3000, "Wafer Size"])"));
  EXPECT_EQ(texts.back()[1], 5600);
}

TEST_F(ViewBitmap, FlipsUnderlineAndBoldAndBack) {
  const json trace = Draw(6000);
  EXPECT_EQ(Calls(trace, "Font.Underline"),
            json::parse(R"([["Font.Underline", -1], ["Font.Underline", 0],
                            ["Font.Underline", -1], ["Font.Underline", 0]])"));
  EXPECT_EQ(Calls(trace, "Font.Bold"), json::parse(R"([["Font.Bold", -1], ["Font.Bold", 0]])"));
  EXPECT_EQ(Calls(trace, "Font.Size"), json::parse(R"([["Font.Size", 12], ["Font.Size", 10]])"));
  EXPECT_TRUE(Calls(trace, "Font.Name").empty());
}

TEST_F(ViewBitmap, GrowsAgainWithEachCall) {
  Draw(6000);
  panel_.DrawWaferData();
  EXPECT_EQ(picture_->Height(), 9000);
  EXPECT_EQ(Texts(picture_->TakeTrace())[0][1], 6000);
}

TEST_F(ViewBitmap, KeepsThePlotAboveThePanels) {
  picture_ = NewPicture(400, 200);
  picture_->Line({.from = SurfacePoint{10, 10},
                  .to = {90, 90},
                  .colour = 0xFF,
                  .shape = LineShape::FilledBox});
  panel_.BitmapObj(picture_.get());
  panel_.WaferObj(&source_);
  panel_.DrawWaferData();
  EXPECT_EQ(picture_->canvas().Height(), 400);
  EXPECT_EQ(PixelAt(*picture_, 50, 50), 0xFFFF0000);
  EXPECT_EQ(PixelAt(*picture_, 200, 150), 0xFFFFFFFF);
}

TEST_F(ViewBitmap, WritesSmallAndMissingNumbers) {
  source_ = LoadedWafer({{0, 0, 0.004F}, {1, 0, -0.004F}});
  const auto texts = Texts(Draw(6000));
  EXPECT_EQ(texts[2][2], "0.00");
  EXPECT_EQ(texts[4][2], "0.004");
  EXPECT_EQ(texts[6][2], "-0.004");
  for (const json& text : texts) EXPECT_NE(text[1], 3000 + 1320) << "no percent of a mean of zero";
}

TEST_F(ViewBitmap, WritesAnEighthRemark) {
  picture_ = NewPicture(400, 400);
  panel_.BitmapObj(picture_.get());
  panel_.WaferObj(&source_);
  source_.SpareText1 = "a file with a long name";
  panel_.DrawRemarksPanel(0, 0);
  const auto texts = Texts(picture_->TakeTrace());
  EXPECT_EQ(texts[0][2], "Wafer Remarks ");
  EXPECT_EQ(texts[15], json::parse(R"([120, 2040, "Filename:"])"));
  EXPECT_EQ(texts[16], json::parse(R"([1300, 2040, "a file with a l"])"));
}

TEST_F(ViewBitmap, RaisesWhatItCannotDo) {
  EXPECT_THROW(Draw(6000, 33000), RunTimeError);
  viewbitmap empty;
  EXPECT_THROW(empty.DrawWaferData(), RunTimeError);
  picture_ = NewPicture(400, 400);
  empty.BitmapObj(picture_.get());
  EXPECT_THROW(empty.DrawWaferData(), RunTimeError);
}

}  // namespace
}  // namespace discoplan
