// SPDX-License-Identifier: MIT
#include "apps/discoplan/lot_page.h"

#include <algorithm>
#include <array>
#include <stdexcept>

#include "apps/discoplan/page_pen.h"
#include "discoplan/render/number_text.h"

namespace discoplan::app {
namespace {

// Twips.
constexpr float kMargin = 560;
constexpr float kHead = 760;
constexpr float kNoteLine = 165;
constexpr float kBarWidth = 1250;    // with its labels
constexpr float kPanelWidth = 5300;  // trend and table
constexpr float kGap = 260;
constexpr float kTextBelow = 400;  // two lines
constexpr float kTrendHeight = 2700;

constexpr Colour kText = 0x202020;
constexpr Colour kFaint = 0xC8C8C8;
constexpr Colour kDim = 0x606060;
constexpr Colour kMark = 0x0000C0;  // red
constexpr Colour kBlue = 0xA05000;

struct Layout {
  SheetBox grid;
  SheetBox bar;
  SheetBox trend;
  SheetBox table;
  float notes = 0;

  Layout(const LotSheet& sheet, float height) {
    notes = height - kMargin - kNoteLine * static_cast<float>(sheet.notes.size());
    const float top = kMargin + kHead;
    const float bottom = notes - kGap / 2;
    const float panel = kSheetWidth - kMargin - kPanelWidth;
    const float bar_left = panel - kGap - kBarWidth;
    grid = {kMargin, top, bar_left - kGap - kMargin, bottom - top};
    bar = {bar_left, top + 200, kBarWidth, std::min(bottom - top - 400, 5200.0F)};
    trend = {panel, top, kPanelWidth, kTrendHeight};
    table = {panel, top + kTrendHeight + kGap, kPanelWidth, bottom - top - kTrendHeight - kGap};
  }
};

/// Draws one page.
class LotPage {
 public:
  LotPage(Surface& surface, const LotSheet& sheet, std::size_t page, const LotPageOptions& options)
      : surface_(surface),
        pen_(surface),
        sheet_(sheet),
        first_(page * LotSheet::kWafersOnPage),
        end_(std::min(first_ + LotSheet::kWafersOnPage, sheet.cells.size())),
        options_(options),
        plot_(*options.plot),
        layout_(sheet, options.height),
        look_(options.look(sheet, sheet.cells[first_])) {}

  void Draw() {
    DrawHead();
    DrawMaps();
    if (plot_.colours == LotColours::Scale && !look_->HideLegend()) DrawBar();
    if (plot_.colours == LotColours::Sigma && !look_->HideLegend()) DrawSigmaKey();
    DrawTrend();
    DrawTable();
    float y = layout_.notes;
    for (const std::string& note : sheet_.notes) {
      pen_.Write(note, {.x = kMargin,
                        .y = y,
                        .size = 6.5F,
                        .colour = kDim,
                        .most_width = kSheetWidth - 2 * kMargin});
      y += kNoteLine;
    }
  }

 private:
  void DrawHead() {
    pen_.Write(sheet_.title, {.x = kMargin,
                              .y = kMargin - 120,
                              .size = 15,
                              .bold = true,
                              .colour = kText,
                              .most_width = kSheetWidth - 3 * kMargin});
    pen_.Write(sheet_.subtitle, {.x = kMargin,
                                 .y = kMargin + 270,
                                 .size = 9,
                                 .colour = kDim,
                                 .most_width = kSheetWidth - 2 * kMargin});
    if (sheet_.Pages() < 2) return;
    pen_.Write("Page " + std::to_string(first_ / LotSheet::kWafersOnPage + 1) + " of " +
                   std::to_string(sheet_.Pages()),
               {.x = kSheetWidth - kMargin,
                .y = kMargin - 60,
                .size = 8,
                .colour = kDim,
                .align = Align::Right});
  }

  void DrawMaps() {
    const std::size_t on_each = sheet_.Pages() > 1 ? LotSheet::kWafersOnPage : end_ - first_;
    const LotGrid grid = LotGrid::For(on_each, layout_.grid);
    for (std::size_t i = first_; i < end_; ++i) {
      DrawCell(sheet_.cells[i], grid.Square(i - first_, layout_.grid));
    }
  }

  void DrawCell(const LotCell& cell, const SheetBox& square) {
    if (!DrawLotPlot(surface_, plot_, sheet_, cell, square, *options_.look(sheet_, cell))) {
      throw std::runtime_error(cell.name +
                               ": a site lies outside the wafer, or the values are too large to "
                               "be summed up; give a larger --diameter, or scale the values down");
    }
    const bool marked = !cell.flag.empty();
    const float middle = square.left + square.width / 2;
    const float widest = square.width + 180;
    const std::string flagged = cell.name + ": " + cell.flag;
    const bool fits = marked && pen_.WidthOf(flagged, 7.5F, true) <= widest;
    pen_.Write(fits ? flagged : cell.name, {.x = middle,
                                            .y = square.Bottom() + 30,
                                            .size = 7.5F,
                                            .bold = true,
                                            .colour = marked ? kMark : kText,
                                            .align = Align::Middle,
                                            .most_width = widest});
    pen_.Write(cell.statistics, {.x = middle,
                                 .y = square.Bottom() + 195,
                                 .size = 7,
                                 .colour = kDim,
                                 .align = Align::Middle,
                                 .most_width = widest});
    if (!marked) return;
    pen_.Box({square.left - 60, square.top - 60}, {square.Right() + 60, square.Bottom() + 370},
             kMark, 25);
  }

  void DrawBar() {
    const wafer& palette = look_->Wafer();
    constexpr int kClasses = 10;
    constexpr float kChip = 260;
    const SheetBox& bar = layout_.bar;
    const float step = bar.height / kClasses;
    for (int k = 0; k < kClasses; ++k) {
      const float top = bar.top + static_cast<float>(k) * step;
      pen_.Fill({bar.left, top}, {bar.left + kChip, top + step},
                static_cast<Colour>(palette.IntervalColor[static_cast<std::size_t>(k)]));
    }
    pen_.Box({bar.left, bar.top}, {bar.left + kChip, bar.Bottom()}, kDim);
    for (int k = 0; k <= kClasses; ++k) {
      const float y = bar.top + static_cast<float>(k) * step;
      pen_.Line({{bar.left + kChip, y}, {bar.left + kChip + 50, y}, kDim});
      pen_.Write(sheet_.scale_labels[static_cast<std::size_t>(kClasses - k)],
                 {.x = bar.left + kChip + 90,
                  .y = y - 75,
                  .size = 7,
                  .colour = kText,
                  .most_width = bar.width - kChip - 60});
    }
  }

  void DrawSigmaKey() {
    const wafer& palette = look_->Wafer();
    constexpr std::array<const char*, 3> kBands = {"above", "within", "below"};
    constexpr float kChip = 200;
    float y = layout_.bar.top;
    for (std::size_t k = 0; k < kBands.size(); ++k, y += 2 * kChip) {
      pen_.Fill({layout_.bar.left, y}, {layout_.bar.left + kChip, y + kChip},
                static_cast<Colour>(palette.AuxColor[k]));
      pen_.Write(kBands[k],
                 {.x = layout_.bar.left + kChip + 80, .y = y + 20, .size = 7, .colour = kText});
    }
    pen_.Write("mean ± " + PlainNumber(SigmaRangeOf(*look_)) + " σ",
               {.x = layout_.bar.left, .y = y, .size = 7, .colour = kDim});
    pen_.Write("of each wafer", {.x = layout_.bar.left, .y = y + 170, .size = 7, .colour = kDim});
  }

  void DrawTrend() {
    const LotTrend& trend = sheet_.trend;
    pen_.Write(trend.title, {.x = layout_.trend.left,
                             .y = layout_.trend.top - 60,
                             .size = 9,
                             .bold = true,
                             .colour = kText});
    float labels = 0;
    for (const std::string& label : trend.axis.labels) {
      labels = std::max(labels, pen_.WidthOf(label, 7));
    }
    const SheetBox chart{layout_.trend.left + labels + 120, layout_.trend.top + 250,
                         layout_.trend.width - labels - 120, layout_.trend.height - 700};
    const auto y_of = [&](double value) {
      const double part = (value - trend.axis.low) / (trend.axis.high - trend.axis.low);
      return chart.Bottom() - static_cast<float>(part) * chart.height;
    };
    for (std::size_t i = 0; i < trend.axis.ticks.size(); ++i) {
      const float y = y_of(trend.axis.ticks[i]);
      pen_.Line({{chart.left, y}, {chart.Right(), y}, kFaint});
      pen_.Write(
          trend.axis.labels[i],
          {.x = chart.left - 70, .y = y - 75, .size = 7, .colour = kText, .align = Align::Right});
    }
    pen_.Line({{chart.left, y_of(trend.mean)}, {chart.Right(), y_of(trend.mean)}, kDim, 15});
    pen_.Box({chart.left, chart.top}, {chart.Right(), chart.Bottom()}, kDim);
    DrawPoints(chart, y_of);
  }

  /// Each of so many points has room for its label.
  std::size_t LabelStep(float pitch) {
    float widest = 0;
    for (const std::string& label : sheet_.trend.labels) {
      widest = std::max(widest, pen_.WidthOf(label, 7));
    }
    std::size_t step = 1;
    while (static_cast<float>(step) * pitch < widest + 50) ++step;
    return step;
  }

  template <class Y>
  void DrawPoints(const SheetBox& chart, const Y& y_of) {
    const LotTrend& trend = sheet_.trend;
    const float pitch = chart.width / static_cast<float>(trend.points.size());
    const float cap = std::min(45.0F, pitch / 3);
    const std::size_t step = LabelStep(pitch);
    for (std::size_t i = 0; i < trend.points.size(); ++i) {
      const TrendPoint& point = trend.points[i];
      const Colour colour = point.outlying ? kMark : kBlue;
      const float x = chart.left + (static_cast<float>(i) + 0.5F) * pitch;
      const float low = y_of(point.mean - point.sigma);
      const float high = y_of(point.mean + point.sigma);
      pen_.Line({{x, low}, {x, high}, colour, 12});
      for (const float y : {low, high}) pen_.Line({{x - cap, y}, {x + cap, y}, colour, 12});
      pen_.Dot({x, y_of(point.mean)}, point.outlying ? 55.0F : 40.0F, colour);
      if (i % step != 0) continue;
      pen_.Write(
          trend.labels[i],
          {.x = x, .y = chart.Bottom() + 45, .size = 7, .colour = kText, .align = Align::Middle});
    }
    pen_.Write(trend.label_title + " (line: mean of all sites)", {.x = chart.left + chart.width / 2,
                                                                  .y = chart.Bottom() + 210,
                                                                  .size = 7,
                                                                  .colour = kDim,
                                                                  .align = Align::Middle});
  }

  void DrawTable() {
    const SheetBox& area = layout_.table;
    const std::size_t lines = (end_ - first_) + 2 + sheet_.lot.size();
    line_ = std::min(215.0F, area.height / static_cast<float>(lines + 1));
    size_ = std::min(7.5F, line_ / 20 * 0.72F);
    PlaceColumns();
    float y = area.top;
    WriteRow(sheet_.table_titles, y, true, kText);
    y += line_ + 20;
    pen_.Line({{area.left, y - 15}, {area.Right(), y - 15}, kDim});
    for (std::size_t i = first_; i < end_; ++i, y += line_) {
      WriteRow(sheet_.table[i].texts, y, false, sheet_.table[i].outlying ? kMark : kText);
    }
    pen_.Line({{area.left, y}, {area.Right(), y}, kDim});
    WriteRow(sheet_.all_sites.texts, y + 20, true, kText);
    y += line_ + 60;
    for (const auto& [name, value] : sheet_.lot) {
      pen_.Write(name, {.x = area.left, .y = y, .size = size_, .colour = kText});
      pen_.Write(value, {.x = area.Right(),
                         .y = y,
                         .size = size_,
                         .colour = kText,
                         .align = Align::Right,
                         .most_width = area.width / 2});
      y += line_;
    }
  }

  /// Room for the names, what the longest of them needs but no more than there is.
  void PlaceColumns() {
    float names = 0;
    for (std::size_t i = first_; i < end_; ++i) {
      names = std::max(names, pen_.WidthOf(sheet_.table[i].texts.front(), size_, true));
    }
    names = std::clamp(names, 700.0F, layout_.table.width / 3);
    const auto others = static_cast<float>(sheet_.table_titles.size() - 1);
    // The number of sites needs about half of what a figure does.
    const float pitch = (layout_.table.width - names) / (others - 0.45F);
    column_ends_ = {layout_.table.left + names, layout_.table.left + names + 0.55F * pitch};
    while (column_ends_.size() < sheet_.table_titles.size()) {
      column_ends_.push_back(column_ends_.back() + pitch);
    }
    pitch_ = pitch;
  }

  void WriteRow(const std::vector<std::string>& texts, float y, bool bold, Colour colour) {
    for (std::size_t c = 0; c < texts.size(); ++c) {
      const bool is_name = c == 0;
      pen_.Write(texts[c], {.x = is_name ? layout_.table.left : column_ends_[c],
                            .y = y,
                            .size = size_,
                            .bold = bold,
                            .colour = colour,
                            .align = is_name ? Align::Left : Align::Right,
                            .most_width = is_name ? column_ends_[0] - layout_.table.left
                                                  : (c == 1 ? 0.55F * pitch_ : pitch_) - 50});
    }
  }

  Surface& surface_;
  PagePen pen_;
  const LotSheet& sheet_;
  const std::size_t first_;
  const std::size_t end_;
  const LotPageOptions& options_;
  const LotPlot& plot_;
  const Layout layout_;
  const std::unique_ptr<PlotControl> look_;  // of the first cell; colours are those of all
  float line_ = 0;                           // of the table, with its letters
  float size_ = 0;
  float pitch_ = 0;
  std::vector<float> column_ends_;
};

}  // namespace

LotGrid LotGrid::For(std::size_t count, const SheetBox& area) {
  LotGrid best;
  const int plots = static_cast<int>(std::max<std::size_t>(count, 1));
  for (int columns = 1; columns <= plots; ++columns) {
    const int rows = (plots + columns - 1) / columns;
    const float side =
        std::min((area.width - kGap * static_cast<float>(columns)) / static_cast<float>(columns),
                 area.height / static_cast<float>(rows) - kTextBelow - kGap / 2);
    if (side > best.side) best = {columns, rows, side};
  }
  return best;
}

SheetBox LotGrid::Square(std::size_t number, const SheetBox& area) const {
  const float width = area.width / static_cast<float>(columns);
  const float height = std::min(area.height / static_cast<float>(rows), side * 1.1F + kTextBelow);
  const auto column = static_cast<float>(static_cast<int>(number) % columns);
  const auto row = static_cast<float>(static_cast<int>(number) / columns);
  return {area.left + column * width + (width - side) / 2, area.top + row * height, side, side};
}

void DrawLotPage(Surface& surface, const LotSheet& sheet, std::size_t page,
                 const LotPageOptions& options) {
  LotPage(surface, sheet, page, options).Draw();
}

}  // namespace discoplan::app
