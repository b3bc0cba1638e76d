// SPDX-License-Identifier: MIT
#include "hosts/recording/recording_host.h"

#include <gtest/gtest.h>

#include "discoplan/base/numbers.h"

namespace discoplan {
namespace {

using nlohmann::json;

class RecordingTest : public testing::Test {
 protected:
  Picture::Setting Setting() {
    return {.screen = host_.screen(), .resolution = host_.screen(), .text = host_.text()};
  }

  RecordingHost host_;
};

TEST_F(RecordingTest, MeasuresEveryCharacterAlike) {
  const FixedText text;
  EXPECT_EQ(text.Width({}, 1, ""), 0);
  EXPECT_EQ(text.Width({}, 1, "0"), 6);
  EXPECT_EQ(text.Width({.size = 40, .bold = true}, 5, "µm²"), 18);  // characters, not bytes
  EXPECT_EQ(text.Height({.size = 40}, 5), 13);
  EXPECT_EQ(host_.LabelWidth({}, "12"), 180);
  host_.SetScreen({10, 20});
  EXPECT_EQ(host_.LabelWidth({}, "12"), 120);
}

TEST_F(RecordingTest, StartsWithTheStateOfANewSurface) {
  const Recording<Picture> picture(Setting(), 300.0F, 150.0F);
  EXPECT_EQ(picture.ForeColor(), 0U);
  EXPECT_EQ(picture.BackColor(), 0xFFFFFFU);
  EXPECT_EQ(picture.FillColor(), 0U);
  EXPECT_EQ(picture.FillStyle(), 1);
  EXPECT_EQ(picture.DrawStyle(), 0);
  EXPECT_EQ(picture.DrawWidth(), 1);
  EXPECT_EQ(picture.ScaleMode(), 3);
  EXPECT_EQ(picture.ScaleLeft(), 0);
  EXPECT_EQ(picture.ScaleTop(), 0);
  EXPECT_EQ(picture.ScaleWidth(), 20);
  EXPECT_EQ(picture.ScaleHeight(), 10);
  EXPECT_TRUE(picture.IsPicture());
  const Paper paper(host_.screen(), {2, 4}, 300, 150);
  EXPECT_EQ(paper.ScaleMode(), 1);
  EXPECT_EQ(paper.ScaleWidth(), 300);
  EXPECT_TRUE(paper.IsPrinter());
}

TEST_F(RecordingTest, KeepsTheLatestCallsAndCountsTheOthers) {
  Recording<Paper> paper(host_.screen(), host_.screen(), 300.0F, 300.0F);
  const std::string long_text(std::size_t{1} << 20, 'x');
  constexpr std::uint64_t kCalls = 150;
  for (std::uint64_t i = 0; i < kCalls; ++i) paper.Print(long_text);
  paper.ForeColor(0x80FF00);
  const json trace = paper.TakeTrace();
  EXPECT_GT(trace.size(), 100U);
  EXPECT_LT((trace.size() - 1) * long_text.size(), Trace::kMostBytes);
  EXPECT_EQ(trace.back(), json({"ForeColor", 0x80FF00}));
  EXPECT_EQ(trace.front(), json({"Print", long_text}));
  EXPECT_EQ(paper.TakeLeftOut(), kCalls + 1 - trace.size());
  EXPECT_EQ(paper.TakeLeftOut(), 0U);
  paper.CurrentX(0.1F);
  EXPECT_EQ(paper.TakeTrace().dump(), R"([["CurrentX",0.1]])");
}

TEST_F(RecordingTest, TakesLittleMemoryForAMap) {
  Recording<Paper> paper(host_.screen(), host_.screen(), 300.0F, 300.0F);
  const std::array<PixelPoint, 4> cell = {{{100, 200}, {103, 200}, {103, 203}, {100, 203}}};
  constexpr int kCells = 500000;  // of the finest map, three times as many as there can be
  for (int i = 0; i < kCells; ++i) {
    paper.FillColor(0x80FF00);
    paper.Polygon(cell);
  }
  EXPECT_EQ(paper.TakeLeftOut(), 0U);
  EXPECT_EQ(paper.TakeTrace().size(), 2U * kCells);
}

TEST_F(RecordingTest, KeepsEveryWriteAlsoWhereNothingChanges) {
  Recording<Picture> picture(Setting(), 300.0F, 150.0F);
  picture.ForeColor(0);
  picture.ForeColor(0);
  picture.FontName("Arial");
  picture.FontTransparent(false);
  picture.Font({.name = "Symbol", .size = 7.5F, .bold = true});
  EXPECT_EQ(picture.TakeTrace(), json::parse(R"([
      ["ForeColor", 0], ["ForeColor", 0], ["Font.Name", "Arial"], ["FontTransparent", 0],
      ["Font", {"Name": "Symbol", "Size": 7.5, "Bold": -1, "Underline": 0}]])"));
  EXPECT_EQ(picture.TakeTrace(), json::array());  // taken
}

TEST_F(RecordingTest, DoesNotKeepReads) {
  Recording<Picture> picture(Setting(), 300.0F, 150.0F);
  (void)picture.TextWidth("0");
  (void)picture.BackColor();
  EXPECT_EQ(picture.TakeTrace(), json::array());
}

TEST_F(RecordingTest, TellsALeftOutArgumentByNull) {
  Recording<Picture> picture(Setting(), 300.0F, 150.0F);
  picture.Line({.to = {3, 4.5F}});
  picture.Line({.from = SurfacePoint{1, 2}, .to = {3, 4}, .colour = 9, .shape = LineShape::Box});
  picture.Circle({.centre = {1, 2}, .radius = 3});
  picture.Circle({.centre = {1, 2}, .radius = 3, .colour = 4, .start = 5, .end = 6, .aspect = 0});
  EXPECT_EQ(picture.TakeTrace(), json::parse(R"([
      ["Line", null, null, 3, 4.5, null, "line"], ["Line", 1, 2, 3, 4, 9, "box"],
      ["Circle", 1, 2, 3, null, null, null, null], ["Circle", 1, 2, 3, 4, 5, 6, 0]])"));
}

TEST_F(RecordingTest, RecordsACallBeforeItFails) {
  Recording<Paper> paper(host_.screen(), Screen{2, 4}, 300.0F, 150.0F);
  EXPECT_THROW(paper.Cls(), RunTimeError);
  EXPECT_THROW(paper.Refresh(), RunTimeError);
  EXPECT_THROW(paper.KeepImageAsPicture(), RunTimeError);
  EXPECT_EQ(paper.TakeTrace(), json::parse(R"([["Cls"], ["Refresh"], ["Picture"]])"));
}

TEST_F(RecordingTest, CountsPaperInTwipsOrPixels) {
  Recording<Paper> paper(host_.screen(), Screen{2, 4}, 300.0F, 160.0F);
  EXPECT_EQ(paper.TextWidth("00"), 24);
  EXPECT_EQ(paper.TextHeight("0"), 52);
  paper.ScaleMode(3);
  EXPECT_EQ(paper.ScaleWidth(), 150);
  EXPECT_EQ(paper.ScaleHeight(), 40);
  EXPECT_EQ(paper.TextWidth("00"), 12);
  EXPECT_EQ(paper.TextHeight("0"), 13);
  paper.Width(400);
  EXPECT_EQ(paper.ScaleWidth(), 200);
  EXPECT_EQ(paper.TwipsPerPixelX(), 2);
  EXPECT_EQ(paper.TwipsPerPixelY(), 4);
  EXPECT_EQ(paper.ScreenTwipsPerPixelX(), 15);
  host_.SetScreen({12, 10});
  EXPECT_EQ(paper.ScreenTwipsPerPixelY(), 10);
}

TEST_F(RecordingTest, OffersNoResolutionOnAPicture) {
  const Recording<Picture> picture(Setting(), 300.0F, 150.0F);
  EXPECT_THROW(picture.TwipsPerPixelX(), RunTimeError);
  EXPECT_THROW(picture.TwipsPerPixelY(), RunTimeError);
}

TEST_F(RecordingTest, KeepsMessagesAndAnnouncementsUntilTaken) {
  host_.Show({.text = "a", .title = "b"});
  host_.Show({.text = "c", .title = "d"});
  EXPECT_EQ(host_.TakeMessages().size(), 2U);
  EXPECT_TRUE(host_.TakeMessages().empty());
  RecordingContainer container;
  container.PropertyChanged("x");
  container.EventRaised("Click", {});
  EXPECT_EQ(container.TakeAnnounced(), std::vector<std::string>{"x"});
  EXPECT_EQ(container.TakeRaised().size(), 1U);
  EXPECT_TRUE(container.TakeAnnounced().empty());
  EXPECT_TRUE(container.TakeRaised().empty());
}

}  // namespace
}  // namespace discoplan
