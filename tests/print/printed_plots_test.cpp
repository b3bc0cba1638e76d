// SPDX-License-Identifier: MIT
#include "discoplan/base/numbers.h"
#include "discoplan/print/bar_print.h"
#include "discoplan/print/contour_print.h"
#include "discoplan/print/scan_print.h"
#include "discoplan/print/surface_print.h"
#include "tests/print/page_fixture.h"

namespace discoplan {
namespace {

using nlohmann::json;

/// Printed into 6000 by 4000 twips at (1000, 2000): the strip of 1250 leaves 4750 by 4000, so that
/// the map's side is 3600. Its left is 1000 + (4750 - 3600) / 2, its top 2260 + 200.
class PrintedPlots : public PageFixture {
 protected:
  static constexpr float kMapLeft = 1575;
  static constexpr float kMapTop = 2460;
  static constexpr float kSide = 3600;

  /// What the renderer draws into that square on the same printer.
  json Rendered(const std::function<void(wafer&, Surface&, const PlotArea&)>& draw) {
    const auto paper = NewPaper(10, 20);
    wafer source = source_;
    Page(*paper).ResetPrinterObj();
    paper->ScaleMode(3);
    draw(source, *paper, {kMapLeft, kMapTop, kSide, kSide, 1});
    return paper->TakeTrace();
  }

  /// `part` without its opening calls stands in `whole`, behind its first `ScaleMode` 3 at least.
  static bool Holds(const json& whole, const json& part, std::size_t opening = 10) {
    const std::size_t count = part.size() - opening;
    for (std::size_t i = 0; i + count <= whole.size(); ++i) {
      std::size_t k = 0;
      while (k < count && whole[i + k] == part[opening + k]) ++k;
      if (k == count) return true;
    }
    return false;
  }

  wafer source_ = LoadedWafer(FiveSites(), 200, 194);
  PageArea area_{1000, 2000, 6000, 4000};
};

struct MapRow {
  const char* name;
  std::function<void(PrintWafer&, wafer&, PageArea&)> print;
  std::function<void(wafer&, Surface&, const PlotArea&)> draw;
  bool frame_first;
  PageArea left_behind;
  double aspect;  // of the glyph
};

const SurfaceView kView = {.grid_rotation = 20, .wafer_rotation = 70, .grid_inclination = 30};
const BeamView kBars = {.grid_rotation = 20, .wafer_rotation = 70, .grid_inclination = 30};
constexpr PageArea kWhole{1000, 2000, 6000, 4000};
constexpr PageArea kNarrower{1000, 2000, 4750, 4000};
constexpr PageArea kMap{1575, 2460, 4750, 4000};

const MapRow kMaps[] = {
    {"Print_2DPlot",
     [](PrintWafer& p, wafer& w, PageArea& a) {
       p.Print_2DPlot(w, a, {.resolution = 20, .caption = "Cap", .show_sites = true});
     },
     [](wafer& w, Surface& s, const PlotArea& a) { w.D2Plot(s, 20, 5, 0, true, a); }, false, kWhole,
     1},
    {"Print_2DNPlot", [](PrintWafer& p, wafer& w, PageArea& a) { p.Print_2DNPlot(w, a, "Cap"); },
     [](wafer& w, Surface& s, const PlotArea& a) { w.D2Number(s, a); }, false, kWhole, 1},
    {"Print_2DSigmaPlot",
     [](PrintWafer& p, wafer& w, PageArea& a) {
       p.Print_2DSigmaPlot(w, a, {.resolution = 20, .sigma_range = 1.5F, .caption = "Cap"});
     },
     [](wafer& w, Surface& s, const PlotArea& a) { w.D2Plot(s, 20, 4, 1.5F, false, a); }, true,
     kNarrower, 1},
    {"Print_3DPlot",
     [](PrintWafer& p, wafer& w, PageArea& a) {
       p.Print_3DPlot(w, a, {.plot_type = 2, .view = kView, .caption = "Cap"});
     },
     [](wafer& w, Surface& s, const PlotArea& a) { w.D3Plot(s, kView, 2, 0, true, a); }, true, kMap,
     0.5},
    {"Print_3DSigmaPlot",
     [](PrintWafer& p, wafer& w, PageArea& a) {
       p.Print_3DSigmaPlot(w, a, {.view = kView, .sigma_range = 1.5F, .caption = "Cap"});
     },
     [](wafer& w, Surface& s, const PlotArea& a) { w.D3Plot(s, kView, 4, 1.5F, true, a); }, true,
     kMap, 0.5},
    {"Print_2DBPlot",
     [](PrintWafer& p, wafer& w, PageArea& a) {
       p.Print_2DBPlot(w, a, {.view = kBars, .caption = "Cap"});
     },
     [](wafer& w, Surface& s, const PlotArea& a) { w.D2BeamPlot(s, kBars, true, a); }, true, kMap,
     0.5},
};

TEST_F(PrintedPlots, MapsShareOneLayout) {
  for (const MapRow& row : kMaps) {
    SCOPED_TRACE(row.name);
    area_ = kWhole;
    wafer source = source_;
    row.print(print_, source, area_);
    const json trace = Trace();
    EXPECT_TRUE(Holds(trace, Rendered(row.draw)));
    EXPECT_EQ(area_.left, row.left_behind.left);
    EXPECT_EQ(area_.top, row.left_behind.top);
    EXPECT_EQ(area_.width, row.left_behind.width);
    EXPECT_EQ(area_.height, 4000);
    // The glyph's centre: (7000 - 1215 + 488, 6000 - 1355 + 800) twips.
    const json circle = Calls(trace, "Circle")[0];
    EXPECT_NEAR(circle[1].get<double>(), 627.3, 1e-3);
    EXPECT_NEAR(circle[2].get<double>(), 272.25, 1e-3);
    EXPECT_NEAR(circle[7].get<double>(), row.aspect, 1e-6);
    const auto prints = Calls(trace, "Print");
    const bool first = prints.front()[1] == "Cap";
    EXPECT_EQ(first, row.frame_first);
    EXPECT_EQ(prints[row.frame_first ? 1 : 0][1], "Notch");
    // The frame spans the whole area either way.
    const auto lines = Calls(trace, "Line");
    EXPECT_TRUE(std::ranges::count(
                    lines, json{"Line", nullptr, nullptr, 7000, 6260, 4210752, "line"}) == 1);
    EXPECT_EQ(Abridged(trace).back(), "reset");
  }
}

TEST_F(PrintedPlots, ANarrowAreaLeavesTheRendererANegativeSide) {
  area_.width = 1000;
  print_.Print_2DSigmaPlot(source_, area_, {.resolution = 20});
  EXPECT_EQ(area_.width, -250);
}

TEST_F(PrintedPlots, FramesDrawnLastGetTheStripBackIn32Bits) {
  area_.width = 100.01F;
  print_.Print_2DPlot(source_, area_, {.resolution = 20});
  EXPECT_EQ(area_.width, 100.010009765625F);
}

TEST_F(PrintedPlots, ThinMapsFillTheirArea) {
  std::string second = "below the map";
  print_.Print_2DPlot_THN(source_, area_, {.resolution = 20, .caption = "Cap"}, second);
  json trace = Trace();
  // Side 3600 in the middle of 6000, a line and a half below the top.
  const auto texts = Texts(trace);
  ASSERT_EQ(texts.size(), 2U);
  EXPECT_EQ(texts[0], json::parse(R"([2200, 6120, "below the map"])"));
  EXPECT_EQ(texts[1][2], "Cap");
  EXPECT_EQ(area_.left, 1000);
  EXPECT_EQ(second, "below the map");

  print_.Print_2DSigmaPlot_THN(source_, area_, {.resolution = 20, .caption = "Cap"});
  trace = Trace();
  EXPECT_EQ(Texts(trace).size(), 1U);
  EXPECT_EQ(area_.left, 2200);
  EXPECT_EQ(area_.top, 2460);
  EXPECT_EQ(area_.width, 6000);
}

TEST_F(PrintedPlots, CutTheSecondCaptionForTheCaller) {
  std::string second(100, 'x');
  print_.Print_2DPlot_THN(source_, area_, {.resolution = 20}, second);
  EXPECT_EQ(second, std::string(60, 'x'));
}

TEST_F(PrintedPlots, ContoursTellTheirInterval) {
  const ContourPrint print = {.settings = {.interval = 2.5F, .mark_sites = 3},
                              .caption = "Cap",
                              .show = [](const Message&) {}};
  print_.Print_Contour(source_, area_, print);
  const json trace = Trace();
  const auto texts = Texts(trace);
  // 7000 - 1215, and 6000 - 1455 - 100.
  EXPECT_EQ(texts[2], json::parse(R"([5785, 4445, "Interval: 2.5%"])"));
  EXPECT_EQ(texts[1], json::parse(R"([5935, 4935, "Notch"])"));
  // The strip of 1215 leaves 4785: the side is 3600 again, 592.5 from the left.
  EXPECT_EQ(area_.left, 1592.5F);
  EXPECT_EQ(area_.top, 2460);
  EXPECT_EQ(area_.width, 6000);
  // Entered in twips.
  EXPECT_TRUE(std::ranges::count(Calls(trace, "ScaleMode"), json{"ScaleMode", 3}) == 1);

  area_ = kWhole;
  print_.Print_Contour_THN(source_, area_, print);
  EXPECT_EQ(Texts(Trace()).size(), 1U);
  EXPECT_EQ(area_.left, 2200);
}

TEST_F(PrintedPlots, ContoursPassTheirMessageOn) {
  int shown = 0;
  source_ = LoadedWafer({{0, 0, 1000}, {50, 0, 1}, {0, 50, 1}, {-50, 0, 1}, {0, -50, 1}}, 200, 194);
  print_.Print_Contour(source_, area_,
                       {.settings = {.interval = 1e-7F}, .show = [&](const Message&) { ++shown; }});
  EXPECT_EQ(shown, 1);
}

// The margin is 480 on both sides; 600 above and 720 below the box.
TEST_F(PrintedPlots, ContoursNeedNobodyForTheirMessage) {
  source_ = LoadedWafer({{0, 0, 1000}, {50, 0, 1}, {0, 50, 1}, {-50, 0, 1}, {0, -50, 1}}, 200, 194);
  EXPECT_NO_THROW(print_.Print_Contour(source_, area_, {.settings = {.interval = 1e-7F}}));
}

TEST_F(PrintedPlots, HistogramsStandInABox) {
  print_.Print_Histo(source_, area_, {.caption = "Cap"});
  json trace = Trace();
  EXPECT_EQ(Texts(trace)[0][2], "Cap");
  const json box = {"Line", 1480, 2600, 6520, 5280, 8388608, "box"};
  EXPECT_EQ(std::ranges::count(Calls(trace, "Line"), box), 1);
  EXPECT_EQ(Calls(trace, "FillColor")[3], (json{"FillColor", 0x008000}));

  print_.Print_Histo_THN(source_, area_, {.caption = "Cap"});
  trace = Trace();
  const json thin = {"Line", 1480, 2000, 6520, 6000, 8388608, "box"};
  EXPECT_EQ(std::ranges::count(Calls(trace, "Line"), thin), 1);
  for (const json& text : Texts(trace)) EXPECT_NE(text[2], "Cap");
}

TEST_F(PrintedPlots, HistogramsGoOnAfterAnError) {
  area_.width = 1e7F;  // the margin needs more than 16 bits
  EXPECT_NO_THROW(print_.Print_Histo(source_, area_, {}));
  EXPECT_EQ(Abridged(Trace()).back(), "reset");
}

TEST_F(PrintedPlots, AScanHasItsAxesPositionsAndGlyph) {
  source_.TestDiameter = 100;
  print_.Print_1DPlot(source_, area_,
                      {.cut = {.at_angle = true, .x1 = 30, .angle = 0}, .caption = "Cap"});
  const json trace = Trace();
  const auto texts = Texts(trace);
  EXPECT_EQ(texts[2], json::parse(R"([5785, 4445, "Angle: 0 °"])"));
  // "18.0" is 240 wide: the chart begins at 1360, is 4125 wide and 2985 high, from 2500 down.
  EXPECT_EQ(texts[3][2], "18.0");
  EXPECT_NEAR(texts[3][0].get<double>(), 1000 + 2410.0 / 60, 1e-3);
  EXPECT_EQ(texts[3][1], 2410);
  EXPECT_EQ(texts[7][2], "10.0");
  EXPECT_EQ(texts[7][1], 2410 + 2985);
  // Centred on the chart's ends: "X=30.00" is 420 wide, "Y=-40.00" 480.
  EXPECT_EQ(texts[8], json::parse(R"([1150, 5585, "X=30.00"])"));
  EXPECT_EQ(texts[9], json::parse(R"([1120, 5845, "Y=-40.00"])"));
  EXPECT_EQ(texts[17], json::parse(R"([5275, 5845, "Y=40.00"])"));
  const auto lines = Calls(trace, "Line");
  // On the glyph: 100 mm are 2 * 25 * 27 / 28 / 54 of 700 twips, (625) around (6273, 5605).
  const auto green = std::ranges::find_if(lines, [](const json& l) { return l[5] == 0x008000; });
  ASSERT_NE(green, lines.end());
  EXPECT_EQ(*green, json::parse(R"(["Line", 6460, 5855, 6460, 5355, 32768, "line"])"));
  const json level = {"Line", 1315, 2355, 1405, 2355, 8388608, "line"};
  EXPECT_EQ(std::ranges::count(lines, level), 1);
  EXPECT_EQ(std::ranges::count_if(lines, [](const json& l) { return l[5] == 0x80; }), 88);
  const auto widths = Calls(trace, "DrawWidth");
  EXPECT_EQ(widths[widths.size() - 2], (json{"DrawWidth", 4}));
}

TEST_F(PrintedPlots, AScanBetweenPointsHasNoAngle) {
  print_.Print_1DPlot(source_, area_, {.cut = {.at_angle = false, .x2 = 1}});
  for (const json& text : Texts(Trace())) {
    EXPECT_EQ(text[2].get<std::string>().find("Angle"), std::string::npos);
  }
}

TEST_F(PrintedPlots, AScanBesideTheWaferEndsThere) {
  EXPECT_THROW(print_.Print_1DPlot(source_, area_, {.cut = {.x1 = 99}}), RunTimeError);
  EXPECT_FALSE(Calls(Trace(), "Print").empty()) << "the frame is on the page";
}

}  // namespace
}  // namespace discoplan
