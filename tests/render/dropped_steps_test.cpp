// SPDX-License-Identifier: MIT

/// Maps and surfaces that lose steps on their way: what is computed ahead of its turn against the
/// plain order.

#include <array>
#include <limits>
#include <map>
#include <random>

#include "discoplan/base/numbers.h"
#include "discoplan/core/wafer_data.h"
#include "discoplan/render/plots/bar_plot.h"
#include "discoplan/render/plots/cell_walk.h"
#include "discoplan/render/plots/contour_plot.h"
#include "discoplan/render/plots/histogram_plot.h"
#include "discoplan/render/plots/map_plot.h"
#include "discoplan/render/plots/on_failure.h"
#include "discoplan/render/plots/orientation_mark.h"
#include "discoplan/render/plots/scan_plot.h"
#include "discoplan/render/plots/surface_plot.h"
#include "discoplan/render/plots/value_plot.h"
#include "tests/render/plot_fixture.h"

namespace discoplan {
namespace {

using nlohmann::json;

/// A picture that refuses one of the writes of `DrawStyle`, which each cell begins with once its
/// corners are placed.
class RefusingPicture : public Picture {
 public:
  using Picture::Picture;
  int writes_before_refusal = -1;

 protected:
  void StateWritten(SurfaceState which) override {
    Picture::StateWritten(which);
    if (which != SurfaceState::DrawStyle) return;
    if (writes_before_refusal-- == 0) numbers_detail::Raise(Fault::InvalidCall);
  }
};

class DroppedSteps : public PlotFixture {
 protected:
  static constexpr float kSide = 206;
  /// Of the rectangle after a dropped step: 100 pixels to the right and 200 below, as large.
  static constexpr PlotArea kElsewhere{
      .left = 480, .top = 960, .width = 988.8F, .height = 988.8F, .mode = 0};

  std::unique_ptr<Recording<RefusingPicture>> NewRefusingPicture() {
    return std::make_unique<Recording<RefusingPicture>>(
        Picture::Setting{
            .screen = host_.screen(), .resolution = host_.screen(), .text = host_.text()},
        kSide * 15, kSide * 15);
  }

  /// The corners of each polygon, with the number of its cell.
  static std::vector<std::pair<int, json>> Polygons(const json& trace) {
    std::vector<std::pair<int, json>> polygons;
    int cell = -1;
    for (const json& call : trace) {
      if (call[0] == "DrawStyle") ++cell;
      if (call[0] == "Polygon") polygons.emplace_back(cell, call[1]);
    }
    return polygons;
  }

  /// Lets each cell in turn lose a step: the cells after it move, and no others.
  template <class Draw>
  void ExpectLaterCellsToMove(int cells, Draw draw) {
    const auto plain = NewRefusingPicture();
    draw(*plain);
    const auto due = Polygons(plain->TakeTrace());
    ASSERT_FALSE(due.empty());
    for (int refused = 0; refused < cells; ++refused) {
      const auto picture = NewRefusingPicture();
      picture->writes_before_refusal = refused;
      draw(*picture);
      auto moved = due;
      for (auto& [cell, corners] : moved) {
        if (cell <= refused) continue;
        for (json& corner : corners) {
          corner[0] = corner[0].get<int>() + 100;
          corner[1] = corner[1].get<int>() + 200;
        }
      }
      ASSERT_EQ(Polygons(picture->TakeTrace()), moved) << refused;
    }
  }
};

TEST_F(DroppedSteps, MoveTheLaterCellsOfAMap) {
  wafer target = LoadedWafer(FiveSites());
  ExpectLaterCellsToMove(
      8 * 8, [&](Surface& surface) { target.D2Plot(surface, 25, 5, 0, false, kElsewhere); });
}

TEST_F(DroppedSteps, MoveTheLaterFacesOfASurface) {
  wafer target = LoadedWafer(FiveSites());
  ExpectLaterCellsToMove(12 * 12, [&](Surface& surface) {
    target.D3Plot(surface, {.x_resolution = 50, .y_resolution = 50}, 1, 0, false, kElsewhere);
  });
}

TEST_F(DroppedSteps, LeaveCornersOfAMapWhereTheLastCellHadThem) {
  // The test circle holds all corners of the lattice of 25 mm. So close to the end of 32 bits the
  // columns from 50 mm on don't fit, also after falling back to the same rectangle.
  wafer target = LoadedWafer(FiveSites(), 200, 300);
  target.FlatRatio = 2;
  constexpr double kLeft = 2147483520;
  const auto picture = NewPicture(kSide, kSide);
  picture->ScaleLeft(static_cast<float>(kLeft));
  PlotArea area = kElsewhere;
  area.left = static_cast<float>(kLeft * 4.8);
  area.top = 0;
  target.D2Plot(*picture, 25, 5, 1, false, area);

  std::array<std::pair<std::int64_t, int>, 4> corners{};
  std::vector<std::pair<int, json>> due;
  for (int cell = 0; cell < 8 * 8; ++cell) {
    const int right = 203 - cell % 8 * 25;
    const int top = 3 + cell / 8 * 25;
    const std::array<int, 4> columns = {right, right - 25, right - 25, right};
    for (std::size_t k = 0; k < corners.size(); ++k) {
      const std::int64_t x = static_cast<std::int64_t>(kLeft) + columns[k];
      if (x <= std::numeric_limits<std::int32_t>::max()) corners[k].first = x;
      corners[k].second = k < 2 ? top : top + 25;
    }
    due.emplace_back(cell, json(corners));
  }
  EXPECT_EQ(Polygons(picture->TakeTrace()), due);
}

TEST_F(DroppedSteps, LeaveHeightsAsThoseOfTheCornerBefore) {
  constexpr int kColumns = 13;
  constexpr int kRows = 40;
  std::mt19937 random(3);
  // Most lines lose no height or one of them, some lose many.
  using Place = std::pair<int, int>;
  std::map<Place, bool> fails;
  for (int j = 0; j <= kRows; ++j) {
    const unsigned one_of = random() % 3 == 0 ? 3 : 40;
    for (int i = 0; i <= kColumns; ++i) fails[{i, j}] = random() % one_of == 0;
  }
  const auto value = [](int i, int j) { return static_cast<float>(100 * j + i + 1); };
  const auto picture = NewPicture(20, 20);
  PlotFrame frame(*picture, {});

  std::map<Place, float> due;
  unsigned dropped = 0;
  const auto evaluate = [&](int i, int j) {
    const float before = i == 0 || j == 0 ? 0 : due.at({i - 1, j});
    due[{i, j}] = fails.at({i, j}) ? before : value(i, j);
    dropped += fails.at({i, j});
  };
  for (int i = 0; i <= kColumns; ++i) evaluate(i, 0);
  int cells = 0;
  WalkCells(
      frame, kColumns, kRows,
      [&](int j, std::span<float> heights) {
        for (int i = 0; i <= kColumns; ++i) {
          const double height = fails.at({i, j}) ? 1e300 : value(i, j);
          heights[static_cast<std::size_t>(i)] = HeightOrFailed(height);
        }
      },
      [&](const LatticeCell& cell) {
        const int i = cell.i;
        const int j = cell.j;
        if (i == 0) evaluate(0, j + 1);
        evaluate(i + 1, j + 1);
        const std::array heights = {due.at({i, j}), due.at({i + 1, j}), due.at({i, j + 1}),
                                    due.at({i + 1, j + 1})};
        EXPECT_EQ(cell.heights, heights) << i << ' ' << j;
        EXPECT_EQ(frame.Dropped(), dropped) << i << ' ' << j;
        EXPECT_EQ(i + j * kColumns, cells++);
      });
  EXPECT_EQ(cells, kColumns * kRows);
  EXPECT_EQ(Calls(picture->TakeTrace(), "Refresh").size(), static_cast<std::size_t>(kRows));
}

/// A picture that refuses one of all the writes and calls of a plot.
class FailingPicture : public Picture {
 public:
  using Picture::Picture;
  int calls_before_failure = -1;

  void Circle(const CircleCall& call) override {
    Count();
    Picture::Circle(call);
  }
  void Polygon(std::span<const PixelPoint> points) override {
    Count();
    Picture::Polygon(points);
  }

 protected:
  void StateWritten(SurfaceState which) override {
    Picture::StateWritten(which);
    Count();
  }
  void DrawLine(const LineCall& call) override {
    Count();
    Picture::DrawLine(call);
  }

 private:
  void Count() {
    if (calls_before_failure-- == 0) numbers_detail::Raise(Fault::InvalidCall);
  }
};

struct RuledPlot {
  std::string_view name;
  void (*draw)(wafer& target, Surface& surface);
};

constexpr PlotArea kRuledArea{.left = 480, .top = 960, .width = 900, .height = 900, .mode = 0};

const std::array kRuledPlots = {
    RuledPlot{"DrawMap",
              [](wafer& target, Surface& surface) {
                DrawMap(target.Data(), surface, {.resolution = 25, .show_sites = true}, kRuledArea);
              }},
    RuledPlot{
        "DrawValues",
        [](wafer& target, Surface& surface) { DrawValues(target.Data(), surface, kRuledArea); }},
    RuledPlot{"DrawSurface",
              [](wafer& target, Surface& surface) {
                DrawSurface(target.Data(), surface, {}, kRuledArea);
              }},
    RuledPlot{
        "DrawBars",
        [](wafer& target, Surface& surface) { DrawBars(target.Data(), surface, {}, kRuledArea); }},
    RuledPlot{"DrawHistogram",
              [](wafer& target, Surface& surface) {
                DrawHistogram(target.Data(), HistogramSide::Bottom, surface, surface,
                              {.width = 100, .height = 100});
              }},
    RuledPlot{"DrawContours",
              [](wafer& target, Surface& surface) {
                static_cast<void>(
                    DrawContours(target.Data(), surface, {.radius = 90, .interval = 5}, {}));
              }},
    RuledPlot{"DrawScan",
              [](wafer& target, Surface& surface) { DrawScan(target.Data(), surface, {}, {}); }},
    RuledPlot{"DrawScanGrid",
              [](wafer&, Surface& surface) { DrawScanGrid(surface, 0, 0, 100, 100); }},
    RuledPlot{"DrawOrientationMark",
              [](wafer&, Surface& surface) { DrawOrientationMark(true, nullptr, surface, {}); }},
    RuledPlot{"DrawOpenOrientationMark",
              [](wafer&, Surface& surface) {
                DrawOpenOrientationMark(false, nullptr, surface, {50, 50}, 40, {});
              }},
};

TEST_F(DroppedSteps, FollowTheTable) {
  ASSERT_EQ(kRuledPlots.size(), kFailureRules.size());
  for (std::size_t row = 0; row < kRuledPlots.size(); ++row) {
    const auto& [name, rule] = kFailureRules[row];
    ASSERT_EQ(kRuledPlots[row].name, name);
    wafer target = LoadedWafer(FiveSites());
    const auto draw = [&](int calls_before_failure, json& trace) {
      Recording<FailingPicture> picture(
          Picture::Setting{
              .screen = host_.screen(), .resolution = host_.screen(), .text = host_.text()},
          kSide * 15, kSide * 15);
      picture.TakeTrace();
      picture.calls_before_failure = calls_before_failure;
      const bool went_on = Attempt([&] { kRuledPlots[row].draw(target, picture); });
      trace = picture.TakeTrace();
      return went_on;
    };
    json plain;
    ASSERT_TRUE(draw(-1, plain)) << name;
    json failed;
    EXPECT_EQ(draw(0, failed), rule != OnFailure::End) << name;
    if (rule == OnFailure::End) continue;
    // What was drawn after the failure: the same in the same order, or elsewhere.
    std::size_t found = 0;
    for (std::size_t at = 0; at < plain.size() && found < failed.size(); ++at) {
      found += plain[at] == failed[found];
    }
    EXPECT_EQ(found == failed.size(), rule == OnFailure::Drop) << name;
  }
}

}  // namespace
}  // namespace discoplan
