// SPDX-License-Identifier: MIT
#include "discoplan/print/page.h"

#include "discoplan/base/numbers.h"
#include "tests/print/page_fixture.h"

namespace discoplan {
namespace {

using nlohmann::json;

class PageTest : public PageFixture {
 protected:
  Page page_{*paper_};
};

TEST_F(PageTest, ResetsInOrder) {
  page_.ResetPrinterObj();
  EXPECT_EQ(Trace(), ResetCalls());
}

// The caption is 5 x 60 twips wide and 260 high.
TEST_F(PageTest, FramesWithAGapForTheCaption) {
  page_.DrawTitledFrame("Wafer", 1000, 2000, 5000, 3000);
  EXPECT_EQ(Abridged(Trace()), json::parse(R"(["reset", ["ScaleMode", 1], ["DrawWidth", 3],
      ["Line", 1100, 2260, 1000, 2260, 4210752, "line"],
      ["Line", null, null, 1000, 5260, 4210752, "line"],
      ["Line", null, null, 6000, 5260, 4210752, "line"],
      ["Line", null, null, 6000, 2260, 4210752, "line"],
      ["Line", null, null, 1500, 2260, 4210752, "line"],
      ["CurrentX", 1150], ["CurrentY", 2130], ["Print", "Wafer"], "reset"])"));
}

TEST_F(PageTest, LeavesTheGapOfAnEmptyCaption) {
  page_.DrawTitledFrame("", 1000, 2000, 5000, 3000);
  const json trace = Trace();
  EXPECT_EQ(Calls(trace, "Line").back()[3], 1200);
  EXPECT_TRUE(Calls(trace, "Print").empty());
}

TEST_F(PageTest, DrawsThinnerOnAPreview) {
  const auto preview = NewPicture(400, 400);
  Page(*preview).DrawTitledFrame("Wafer", 0, 0, 500, 300);
  EXPECT_EQ(Calls(preview->TakeTrace(), "DrawWidth")[1], (json{"DrawWidth", 2}));
}

TEST_F(PageTest, CutsTextsThatAreTooWide) {
  const struct {
    const char* text;
    double width;
    const char* clipped;
    const char* right;
    const char* centred;
  } rows[] = {{"abcdef", 360, "abcdef", "abcdef", "abcdef"},
              {"abcdef", 359, "abcde", "bcdef", "bcde"},
              {"abcdef", 300, "abcde", "bcdef", "bcde"},
              {"abcdef", 130, "ab", "ef", "cd"},
              {"abcde", 0, "", "", ""},
              {"", 0, "", "", ""},
              {"aµm", 120, "aµ", "µm", "µ"},
              {"µΩ漢字", 130, "µΩ", "漢字", "Ω漢"},
              {"𝜎漢é", 70, "𝜎", "é", "漢"},
              {"漢", 59, "", "", ""}};
  for (const auto& row : rows) {
    std::string text = row.text;
    page_.PrintClippedText(text, {100, 200, row.width, 1});
    EXPECT_EQ(text, row.clipped) << row.width;
    text = row.text;
    page_.PrintRightText(text, {100, 200, row.width, 1});
    EXPECT_EQ(text, row.right) << row.width;
    text = row.text;
    page_.PrintCenteredText(text, {100, 200, row.width, 1});
    EXPECT_EQ(text, row.centred) << row.width;
  }
}

TEST_F(PageTest, PlacesTextsByTheirEnds) {
  std::string text = "abc";
  page_.PrintClippedText(text, {1000, 200, 500, 1});
  EXPECT_EQ(Trace(), json::parse(R"([["ForeColor", 8388608], ["FontTransparent", -1],
      ["DrawStyle", 0], ["CurrentX", 1000], ["CurrentY", 200], ["Print", "abc"]])"));
  page_.PrintRightText(text, {1000, 200, 500, 0});
  page_.PrintCenteredText(text, {1000.4, 200, 500, 0});
  EXPECT_EQ(Texts(Trace()), json::parse(R"([[820, 200, "abc"], [910, 200, "abc"]])"));
}

TEST_F(PageTest, ATextThatFitsNowhereIsAnError) {
  for (const char* given : {"abc", ""}) {
    std::string text = given;
    EXPECT_THROW(page_.PrintClippedText(text, {0, 0, -1, 0}), RunTimeError);
    text = given;
    EXPECT_THROW(page_.PrintRightText(text, {0, 0, -1, 0}), RunTimeError);
    text = given;
    EXPECT_THROW(page_.PrintCenteredText(text, {0, 0, -1, 0}), RunTimeError);
  }
}

TEST_F(PageTest, WritesASigmaAndPutsTheFontBack) {
  paper_->Font({.name = "Arial", .size = 8});
  Trace();
  page_.PrintSigmaGlyph(100, 200, 4);
  EXPECT_EQ(Trace(), json::parse(R"([
      ["Font", {"Name": "Symbol", "Size": 14, "Bold": 0, "Underline": 0}], ["DrawStyle", 0],
      ["ForeColor", 128], ["CurrentX", 100], ["CurrentY", 135], ["Print", "s"],
      ["Font", {"Name": "Arial", "Size": 8, "Bold": 0, "Underline": 0}]])"));
}

// Centre (1488, 2800) twips is (148.8, 140) pixels, the radius 35: 46.67 beyond it.
TEST_F(PageTest, MarksANotch) {
  page_.DrawStyleBlock(1000, 2000, {.flat_ratio = 1});
  const json trace = Trace();
  EXPECT_EQ(Calls(trace, "Print"), json::parse(R"([["Print", "Notch"]])"));
  const json circle = Calls(trace, "Circle")[0];
  EXPECT_NEAR(circle[1].get<double>(), 148.8, 1e-4);
  EXPECT_EQ(json(circle.begin() + 2, circle.end()), json::parse("[140, 35, null, null, null, 1]"));
  // 46.67 sin 10 = 8.10, 46.67 cos 10 = 45.96, tip at 28.
  EXPECT_EQ(Calls(trace, "Polygon"),
            json::parse(R"([["Polygon", [[157, 186], [149, 168], [141, 186], [141, 186],
                                         [157, 186]]]])"));
  const auto lines = Calls(trace, "Line");
  ASSERT_EQ(lines.size(), 7U);
  for (const std::size_t i : {5U, 6U}) {
    EXPECT_NEAR(lines[i][1].get<double>(), 148.8 + (i == 5 ? 6.0777 : -6.0777), 1e-3);
    EXPECT_NEAR(lines[i][2].get<double>(), 140 + 34.4683, 1e-3);
    EXPECT_NEAR(lines[i][4].get<double>(), 168, 1e-3);
    EXPECT_EQ(lines[i][5], 255);
  }
}

// At 35 degrees: 35 sin 35 = 20.08, 35 cos 35 = 28.67; a quarter farther out 25.09 and 35.84.
TEST_F(PageTest, MarksAFlat) {
  page_.DrawFlatNotchGlyph(1488, 2800, 350, {.flat_ratio = 0.98F});
  const json trace = Trace();
  EXPECT_EQ(Abridged(trace)[1], (json{"ScaleMode", 3}));
  EXPECT_EQ(Abridged(trace)[2], (json{"DrawWidth", 2}));
  EXPECT_EQ(Calls(trace, "Polygon"),
            json::parse(R"([["Polygon", [[169, 169], [129, 169], [124, 176], [174, 176]]]])"));
  EXPECT_EQ(Calls(trace, "Line").size(), 1U);
}

// Paper is white whatever the glyph is filled with.
TEST_F(PageTest, RubsTheOutlineOutInWhite) {
  for (const float ratio : {1.0F, 0.98F}) {
    page_.DrawFlatNotchGlyph(1488, 2800, 350, {.flat_ratio = ratio});
    const json trace = Trace();
    const auto polygon =
        std::ranges::find_if(trace, [](const json& call) { return call[0] == "Polygon"; });
    ASSERT_NE(polygon, trace.end());
    EXPECT_EQ(
        json(polygon - 3, polygon),
        json::parse(R"([["ForeColor", 16777215], ["FillColor", 16777215], ["FillStyle", 0]])"));
  }
}

TEST_F(PageTest, TurnsAndTiltsTheGlyph) {
  page_.DrawFlatNotchGlyph(1000, 2000, 350, {.flat_ratio = 1, .rotation = 90, .inclination = 30});
  const json trace = Trace();
  EXPECT_NEAR(Calls(trace, "Circle")[0][7].get<double>(), 0.5, 1e-6);
  EXPECT_NEAR(Calls(trace, "Line")[0][3].get<double>(), 128, 1e-3);  // the tip, at the right
  EXPECT_NEAR(Calls(trace, "Line")[0][4].get<double>(), 100, 1e-3);
}

TEST_F(PageTest, MeasuresAPreviewByTheScreen) {
  const auto preview = NewPicture(400, 400);
  Page(*preview).DrawFlatNotchGlyph(1500, 3000, 300, {});
  const json circle = Calls(preview->TakeTrace(), "Circle")[0];
  EXPECT_EQ(json(circle.begin() + 1, circle.begin() + 4), json::parse("[100, 200, 20]"));
}

TEST_F(PageTest, FormatsNumbersApartFromZero) {
  const struct {
    double value;
    const char* picture;
    const char* text;
  } rows[] = {{0, "00.00", "00.00"},      {0, "0.0", "0.0"},          {12.5, "00.00", "12.50"},
              {0.001, "0.00", "0.001"},   {0.0004, "0.00", "0.0004"}, {5, "00.00", "05.00"},
              {-0.004, "0.00", "-0.004"}, {200, "00.00", "200.00"}};
  for (const auto& row : rows) EXPECT_EQ(FormatNonZero(row.value, row.picture), row.text);
}

}  // namespace
}  // namespace discoplan
