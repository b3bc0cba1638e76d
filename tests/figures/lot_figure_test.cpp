// SPDX-License-Identifier: MIT
#include "discoplan/figures/lot_figure.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/figures/made_figure.h"

namespace discoplan::figures {
namespace {

std::size_t Shapes(const std::vector<float>& first, const std::vector<float>& second) {
  static const std::vector<float> x = {0, 80, 0, -80, 0};
  static const std::vector<float> y = {0, 0, 80, 0, -80};
  LotPlot lot;
  lot.wafers.resize(2);
  lot.wafers[0].sites = {x, y, first};
  lot.wafers[1].sites = {x, y, second};
  lot.low = 1;
  lot.high = 5;
  Style style;
  style.width = 400;
  style.height = 300;
  return MakeLotGallery(PlotKind::Bars, lot, 0, style, EvenMeasure()).shapes.size();
}

// An arrow at an end of the colour bar says that values lie beyond it, whichever wafer has them.
TEST(LotFigure, TellsThatValuesOfAnyWaferLieBeyondTheColours) {
  const std::vector<float> within = {1, 2, 3, 4, 5};
  const std::vector<float> above = {1, 2, 3, 4, 6};
  const std::vector<float> below = {0, 2, 3, 4, 5};
  const std::size_t neither = Shapes(within, within);
  EXPECT_EQ(Shapes(above, within), neither + 1);
  EXPECT_EQ(Shapes(within, above), neither + 1);
  EXPECT_EQ(Shapes(within, below), neither + 1);
  EXPECT_EQ(Shapes(below, above), neither + 2);
}

LotPlot LotOf(const std::vector<std::string>& names) {
  static const std::vector<float> x = {0, 80, 0, -80, 0};
  static const std::vector<float> y = {0, 0, 80, 0, -80};
  static const std::vector<float> value = {1, 2, 3, 4, 5};
  LotPlot lot;
  lot.title = "Lot";
  lot.low = 1;
  lot.high = 5;
  lot.table.titles = {"Wafer", "Sites", "Mean", "Std. Dev", "Range"};
  for (const std::string& name : names) {
    WaferPlot& wafer = lot.wafers.emplace_back();
    wafer.sites = {x, y, value};
    wafer.title = name;
    lot.labels.push_back(std::to_string(lot.wafers.size()));
    lot.table.rows.push_back({.texts = {name, "5", "3.000", "1.581", "4.000"}});
  }
  lot.table.rows.push_back({.texts = {"Worst wafer", "", "", names.back()}, .total = true});
  return lot;
}

std::vector<std::string> Names(std::size_t count, const std::string& beginning) {
  std::vector<std::string> names;
  for (std::size_t i = 0; i < count; ++i) names.push_back(beginning + std::to_string(500 + i));
  return names;
}

std::size_t Count(const Figure& figure, const std::string& part) {
  std::size_t count = 0;
  for (const TextShape& text : Of<TextShape>(figure))
    count += text.text.find(part) != std::string::npos;
  return count;
}

TEST(LotFigure, TellsWafersWithLongNamesApartAndKeepsTheirFlags) {
  LotPlot lot = LotOf(Names(9, "LOT-2026-SITE-NORTH-LINE-7-CASSETTE-A-"));
  lot.wafers[4].flag = "sigma";
  Style style;
  style.width = 420;
  style.height = 300;
  const Figure gallery = MakeLotGallery(PlotKind::Map, lot, 0, style, EvenMeasure());
  const Figure sheet = MakeLotSheet(PlotKind::Map, lot, 0, style, EvenMeasure());
  for (int wafer = 500; wafer < 509; ++wafer) {
    EXPECT_EQ(Count(gallery, std::to_string(wafer)), 1u) << wafer;
    // The worst one once more.
    EXPECT_EQ(Count(sheet, std::to_string(wafer)), wafer == 508 ? 3u : 2u) << wafer;
  }
  EXPECT_EQ(Count(gallery, "sigma"), 1u);
}

TEST(LotFigure, LetsANameAmongTheTotalsWidenNoColumn) {
  Style style;
  style.width = 800;
  style.height = 600;
  const auto distance = [&](const std::string& beginning) {
    double mean = 0;
    double sigma = 0;
    LotPlot lot = LotOf(Names(3, "W"));
    lot.table.rows.back().texts[3] = beginning + "502";
    for (const TextShape& text : Of<TextShape>(MakeLotCover(lot, style, EvenMeasure()))) {
      if (text.text == "Mean") mean = text.box.right;
      if (text.text == "Std. Dev") sigma = text.box.right;
    }
    return sigma - mean;
  };
  EXPECT_GT(distance("W"), 0);
  EXPECT_EQ(distance("LOT-2026-CASSETTE-A-"), distance("W"));
}

TEST(LotFigure, SaysDiametersThatDiffer) {
  LotPlot lot = LotOf(Names(4, "W"));
  Style style;
  style.width = 600;
  style.height = 400;
  EXPECT_EQ(Count(MakeLotGallery(PlotKind::Map, lot, 0, style, EvenMeasure()), " mm"), 0u);
  lot.wafers[1].diameter = 200;
  lot.wafers[2].diameter = 76.2;
  const Figure mixed = MakeLotGallery(PlotKind::Map, lot, 0, style, EvenMeasure());
  EXPECT_EQ(Count(mixed, "300 mm"), 2u);
  EXPECT_EQ(Count(mixed, "200 mm"), 1u);
  EXPECT_EQ(Count(mixed, "76.2 mm"), 1u);
}

/// The highest point of all filled areas, in parts of the page.
double Top(const Figure& figure) {
  double top = figure.height;
  for (const Shape& shape : figure.shapes) {
    const auto* path = std::get_if<PathShape>(&shape);
    if (path == nullptr || !path->fill) continue;
    for (const Point p : path->path.pieces[0].points) top = std::min(top, p.y);
  }
  return top;
}

TEST(LotFigure, ComparesHeightsInOneScaleThatIsSaid) {
  LotPlot lot = LotOf(Names(1, "W"));
  Style style;
  style.width = 300;
  style.height = 300;
  style.legend = false;
  for (const PlotKind kind : {PlotKind::Surface, PlotKind::SigmaSurface, PlotKind::Bars}) {
    lot.high = 5;
    const Figure own = MakeLotGallery(kind, lot, 0, style, EvenMeasure());
    lot.high = 9;
    const Figure wide = MakeLotGallery(kind, lot, 0, style, EvenMeasure());
    EXPECT_GT(Top(wide), Top(own) + 2) << "values that are low among those of the lot";
    EXPECT_EQ(Count(wide, "heights 1.000 to 9.000"), 1u);
    EXPECT_EQ(Count(wide, "5.000"), 0u) << "no axis of its own";
  }
  EXPECT_EQ(Count(MakeLotGallery(PlotKind::Map, lot, 0, style, EvenMeasure()), "heights"), 0u);
}

TEST(LotFigure, SaysOnceWhatSmallChartsShow) {
  LotPlot lot = LotOf(Names(25, "W"));
  Style style;
  style.width = 500;
  style.height = 500;
  const Figure bins = MakeLotGallery(PlotKind::Histogram, lot, 0, style, EvenMeasure());
  EXPECT_EQ(Count(bins, "mean"), 0u);
  EXPECT_EQ(Count(bins, "Sites"), 0u);
  const Figure scans = MakeLotGallery(PlotKind::LineScan, lot, 0, style, EvenMeasure());
  EXPECT_EQ(Count(scans, "\u2026"), 0u);
  EXPECT_EQ(Count(scans, "mm"), 25u);
}

TEST(LotFigure, KeepsTheTableOfManyWafersReadable) {
  const LotPlot lot = LotOf(Names(100, "W"));
  for (const bool wide : {false, true}) {
    Style style;
    style.width = wide ? 842 : 595;
    style.height = wide ? 595 : 842;
    const Figure cover = MakeLotCover(lot, style, EvenMeasure());
    std::size_t rows = 0;
    for (const TextShape& text : Of<TextShape>(cover)) {
      if (text.text.size() != 4 || !text.text.starts_with("W")) continue;
      ++rows;
      EXPECT_GT(text.size, 5.5) << text.text;
    }
    EXPECT_EQ(rows, 101u);
    EXPECT_EQ(Count(cover, "sheet "), 0u) << "all wafers are on it";
  }
}

}  // namespace
}  // namespace discoplan::figures
