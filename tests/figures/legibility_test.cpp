// SPDX-License-Identifier: MIT
// What a reader could take for something else, or not see at all.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "discoplan/figures/page.h"
#include "discoplan/figures/wafer_figure.h"
#include "tests/figures/made_figure.h"

namespace discoplan::figures {
namespace {

Box Around(const std::vector<Point>& points) {
  Box box = {points[0].x, points[0].y, points[0].x, points[0].y};
  for (const Point p : points) {
    box = {std::min(box.left, p.x), std::min(box.top, p.y), std::max(box.right, p.x),
           std::max(box.bottom, p.y)};
  }
  return box;
}

struct Wafer {
  std::vector<float> x, y, value;

  void Add(double at_x, double at_y, double at_value) {
    x.push_back(static_cast<float>(at_x));
    y.push_back(static_cast<float>(at_y));
    value.push_back(static_cast<float>(at_value));
  }
  WaferPlot Plot() const {
    WaferPlot plot;
    plot.sites = {x, y, value};
    plot.title = "Wafer";
    plot.quantity = "Thickness";
    plot.unit = "nm";
    return plot;
  }
};

/// A bowl on rings of 8, 16, ... sites around one in the middle; up to the rim by `rim` mm.
Wafer Rings(int rings, double rim = 147) {
  Wafer wafer;
  wafer.Add(0, 0, 1000);
  for (int ring = 1; ring <= rings; ++ring) {
    for (int i = 0; i < 8 * ring; ++i) {
      const double angle = 6.283185307179586 * i / (8 * ring);
      const double radius = rim * ring / rings;
      const double value = 1000 + 20 * radius * radius / rim / rim + 0.1 * (i % 7);
      wafer.Add(radius * std::cos(angle), radius * std::sin(angle), value);
    }
  }
  return wafer;
}

/// Sites 14 mm apart, those for which `takes` says so.
template <class Takes>
Wafer Grid(Takes takes) {
  Wafer wafer;
  for (int i = -10; i <= 10; ++i) {
    for (int j = -10; j <= 10; ++j) {
      const double x = 14.0 * i;
      const double y = 14.0 * j;
      if (std::hypot(x, y) <= 147 && takes(x, y)) wafer.Add(x, y, 50 + 0.01 * x - 0.02 * y);
    }
  }
  return wafer;
}

/// The first text that begins so, or nothing.
std::string TextOf(const Figure& figure, const std::string& start) {
  for (const TextShape& text : Of<TextShape>(figure)) {
    if (text.text.starts_with(start)) return text.text;
  }
  return {};
}

std::vector<TextShape> WrittenValues(const Figure& figure) {
  std::vector<TextShape> written = Of<TextShape>(figure);
  std::erase_if(written, [](const TextShape& text) { return text.halo == 0; });
  return written;
}

Figure Make(PlotKind kind, const WaferPlot& plot, double width, double height, int letters = 8) {
  Style style;
  style.width = width;
  style.height = height;
  style.letters = letters;
  return MakeFigure(kind, plot, style, EvenMeasure());
}

TEST(Legibility, DrawsOneDotForSitesAtOnePlace) {
  Wafer wafer = Rings(3);
  const std::size_t places = wafer.x.size();
  for (std::size_t i = 0; i < places; i += 2) wafer.Add(wafer.x[i], wafer.y[i], 1005);
  const auto dots = Of<DotsShape>(Make(PlotKind::Map, wafer.Plot(), 400, 300));
  ASSERT_EQ(dots.size(), 1u);
  EXPECT_EQ(dots[0].centres.size(), places);
}

TEST(Legibility, CountsEachValueThatIsNotWritten) {
  for (const int rings : {3, 4, 5, 6}) {
    const Wafer wafer = Rings(rings);
    for (const double side : {170.0, 225.0, 300.0, 450.0}) {
      const Figure figure = Make(PlotKind::Values, wafer.Plot(), side, side);
      std::size_t told = 0;
      for (const TextShape& text : Of<TextShape>(figure)) {
        if (text.text.find(" not written") != std::string::npos) told = std::stoul(text.text);
      }
      EXPECT_EQ(WrittenValues(figure).size() + told, wafer.x.size()) << rings << " at " << side;
    }
  }
}

double Distance(Point p, Point a, Point b) {
  const Point along = b - a;
  const Point off = p - a;
  const double part = std::clamp(
      (along.x * off.x + along.y * off.y) / (along.x * along.x + along.y * along.y), 0.0, 1.0);
  const Point away = off - along * part;
  return std::hypot(away.x, away.y);
}

TEST(Legibility, LeadsNoLineAcrossAnotherSite) {
  std::size_t leaders = 0;
  for (const unsigned seed : {1U, 2U, 3U, 4U}) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> place(-60, 60);
    Wafer wafer;
    while (wafer.x.size() < 50) {
      const double x = place(random);
      const double y = place(random);
      bool apart = true;
      for (std::size_t i = 0; i < wafer.x.size(); ++i) {
        apart = apart && std::hypot(wafer.x[i] - x, wafer.y[i] - y) > 7;
      }
      if (apart) wafer.Add(x, y, 100 + x);
    }
    WaferPlot plot = wafer.Plot();
    plot.diameter = 200;
    const Figure figure = Make(PlotKind::Values, plot, 260, 220);
    for (const PathShape& shape : Of<PathShape>(figure)) {
      if (shape.path.pieces.size() != 1 || shape.path.pieces[0].points.size() != 2) continue;
      const Point a = shape.path.pieces[0].points[0];
      const Point b = shape.path.pieces[0].points[1];
      if (std::hypot(b.x - a.x, b.y - a.y) < 8) continue;  // ticks
      ++leaders;
      int met = 0;
      for (const DotsShape& dots : Of<DotsShape>(figure)) {
        for (const Point centre : dots.centres) met += Distance(centre, a, b) < dots.radius + 0.1;
      }
      EXPECT_EQ(met, 1) << "only the one that it leads to";
    }
  }
  EXPECT_GT(leaders, 3u);
}

TEST(Legibility, WritesValuesOffTheRimWhereThereIsRoom) {
  const Wafer wafer = Rings(3);
  const Figure figure = Make(PlotKind::Values, wafer.Plot(), 450, 450);
  const Point centre = figure.wafer.value().centre;
  const double rim = 150 * figure.wafer.value().scale;
  EXPECT_EQ(WrittenValues(figure).size(), 49u);
  for (const TextShape& text : WrittenValues(figure)) {
    double farthest = 0;
    for (const double x : {text.box.left, text.box.right}) {
      for (const double y : {text.box.top, text.box.bottom}) {
        farthest = std::max(farthest, std::hypot(x - centre.x, y - centre.y));
      }
    }
    EXPECT_LT(farthest, rim) << text.text;
  }
}

std::size_t Faces(const Figure& figure) {
  const std::vector<PathShape> paths = Of<PathShape>(figure);
  return static_cast<std::size_t>(std::count_if(
      paths.begin(), paths.end(), [](const PathShape& path) { return path.fill.has_value(); }));
}

// A height where nothing was measured would be taken for one.
TEST(Legibility, RaisesNoSurfaceFarFromTheSites) {
  const Wafer whole = Grid([](double, double) { return true; });
  const Wafer quarter = Grid([](double x, double y) { return x > 0 && y > 0; });
  for (const PlotKind kind : {PlotKind::Surface, PlotKind::SigmaSurface}) {
    const Figure all = Make(kind, whole.Plot(), 300, 300);
    const Figure some = Make(kind, quarter.Plot(), 300, 300);
    EXPECT_LT(static_cast<double>(Faces(some)), 0.45 * static_cast<double>(Faces(all)));
    EXPECT_EQ(TextOf(all, "hatched"), "");
    EXPECT_EQ(TextOf(some, "hatched"), "hatched: more than 23 mm from every site");
  }
}

TEST(Legibility, KeepsBarsOffTheNumbersBesideThem) {
  const Wafer wafer = Rings(3, 149);
  for (const double rotation : {0.0, 20.0, 45.0, 130.0}) {
    Style style;
    style.width = style.height = 450;
    style.rotation = rotation;
    const Figure figure = MakeFigure(PlotKind::Bars, wafer.Plot(), style, EvenMeasure());
    std::vector<Box> bars;
    for (const PathShape& shape : Of<PathShape>(figure)) {
      if (shape.fill && shape.path.pieces[0].points.size() == 4 && shape.stroke.width > 0) {
        bars.push_back(Around(shape.path.pieces[0].points));
      }
    }
    EXPECT_EQ(bars.size(), 3 * wafer.x.size());
    for (const TextShape& text : Of<TextShape>(figure)) {
      EXPECT_TRUE(std::none_of(bars.begin(), bars.end(), [&](const Box& bar) {
        return bar.Meets(text.box);
      })) << text.text;
    }
  }
}

TEST(Legibility, TellsTheLimitsOfSigmaRangesApart) {
  Wafer wafer;
  for (int i = 0; i < 9; ++i) wafer.Add(40 * (i % 3) - 40, 40 * (i / 3) - 40, 1e5 + i / 128.0);
  const Figure near = Make(PlotKind::SigmaMap, wafer.Plot(), 360, 270);
  EXPECT_NE(TextOf(near, "> ").substr(2, 10), TextOf(near, "< ").substr(2, 10));

  for (float& value : wafer.value) value = 7.25F;
  const Figure same = Make(PlotKind::SigmaMap, wafer.Plot(), 360, 270);
  EXPECT_EQ(TextOf(same, "> "), "> 7.250 nm; 0 sites");

  WaferPlot plot = wafer.Plot();
  plot.unit = "Angstrom per monolayer equivalent";
  EXPECT_EQ(TextOf(Make(PlotKind::SigmaMap, plot, 225, 225), "> "), "> 7.250; 0 sites");
}

TEST(Legibility, NamesACurveOnlyWhereThereIsOne) {
  Wafer wafer = Rings(2);
  EXPECT_NE(TextOf(Make(PlotKind::Histogram, wafer.Plot(), 360, 270), "curve"), "");
  for (float& value : wafer.value) value = 7.25F;
  EXPECT_EQ(TextOf(Make(PlotKind::Histogram, wafer.Plot(), 360, 270), "curve"), "");
}

TEST(Legibility, SaysHowLargeTheWaferIs) {
  const Wafer wafer = Rings(2);
  WaferPlot plot = wafer.Plot();
  EXPECT_EQ(TextOf(Make(PlotKind::Map, plot, 360, 270), "300 mm"), "300 mm wafer");
  plot.diameter = 76.2;
  EXPECT_EQ(TextOf(Make(PlotKind::Map, plot, 360, 270), "76.2"), "76.2 mm wafer");
}

TEST(Legibility, SaysWhatADashedScanIs) {
  const Wafer whole = Grid([](double, double) { return true; });
  const Wafer half = Grid([](double x, double) { return x > 0; });
  EXPECT_EQ(TextOf(Make(PlotKind::LineScan, whole.Plot(), 360, 270), "dashed"), "");
  EXPECT_EQ(TextOf(Make(PlotKind::LineScan, half.Plot(), 360, 270), "dashed"),
            "dashed: more than 21 mm from every site");
}

TEST(Legibility, ShowsTheNotchUnderASite) {
  const Wafer wafer = Rings(3);  // one of whose sites lies on it
  for (const PlotKind kind :
       {PlotKind::Map, PlotKind::SigmaMap, PlotKind::Contours, PlotKind::Values}) {
    std::size_t dots = 0;
    std::size_t rim = 0;
    const Figure figure = Make(kind, wafer.Plot(), 225, 225);
    for (std::size_t i = 0; i < figure.shapes.size(); ++i) {
      if (std::holds_alternative<DotsShape>(figure.shapes[i])) dots = i;
      const auto* path = std::get_if<PathShape>(&figure.shapes[i]);
      const bool is_ring = path != nullptr && path->path.pieces.size() == 1 &&
                           path->path.pieces[0].closed && path->path.pieces[0].points.size() > 40;
      if (is_ring && path->stroke.dash == 0) rim = i;
    }
    EXPECT_GT(dots, 0u);
    EXPECT_GT(rim, dots);
  }
}

TEST(Legibility, DrawsScansInInkThatStandsOffTheGround) {
  const Wafer wafer = Rings(3);
  for (const char* name : {"viridis", "viridis_r", "cividis", "magma_r", "grey", "grey_r", "vik"}) {
    for (const bool dark : {false, true}) {
      Style style;
      style.dark = dark;
      style.colours = *FindColourMap(name);
      const Figure figure = MakeFigure(PlotKind::LineScan, wafer.Plot(), style, EvenMeasure());
      bool found = false;
      for (const PathShape& shape : Of<PathShape>(figure)) {
        if (shape.fill || shape.path.pieces.size() != 1) continue;
        if (shape.path.pieces[0].points.size() < 100) continue;
        if (shape.path.pieces[0].closed) continue;
        found = true;
        EXPECT_GT(std::abs(Luminance(shape.stroke.colour) - Luminance(*figure.background)), 0.4)
            << name << (dark ? " dark" : "");
      }
      EXPECT_TRUE(found);
    }
  }
}

TEST(Legibility, KeepsTheColourBarAsHighAsTheWafer) {
  const Wafer wafer = Rings(3);
  for (const PlotKind kind : {PlotKind::Map, PlotKind::Contours, PlotKind::Values}) {
    const Figure figure = Make(kind, wafer.Plot(), 200, 400);
    const double wafer_height = 300 * figure.wafer.value().scale;
    double bar = 0;
    for (const PathShape& shape : Of<PathShape>(figure)) {
      if (!shape.fill && shape.path.pieces.size() == 1 && shape.path.pieces[0].closed &&
          shape.path.pieces[0].points.size() == 4) {
        bar = Around(shape.path.pieces[0].points).Height();
      }
    }
    EXPECT_GT(wafer_height, 110);
    EXPECT_NEAR(bar, wafer_height, 0.1 * wafer_height);
  }
}

}  // namespace
}  // namespace discoplan::figures
