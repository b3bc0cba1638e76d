// SPDX-License-Identifier: MIT
#include "discoplan/figures/lot_figure.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <vector>

#include "discoplan/figures/kinds.h"
#include "discoplan/figures/lot_parts.h"

namespace discoplan::figures {
namespace {

/// Over each small plot: its name and a line of figures.
double WordsAbove(const Page& page) { return 2.6 * page.Em(); }

/// Plots in rows and columns, each under words of some height.
struct Gallery {
  Box area;
  std::size_t count = 0;
  double above = 0;
  double shape = 1;
  double gap = 0;

  Box Cell(std::size_t number) const {
    return PlotGrid::For(count, area, above, shape).Cell(number, area, gap);
  }
};

/// In less a plot shows nothing.
bool HasRoom(const Page& page, const Box& cell) {
  return std::min(cell.Width(), cell.Height()) >= 3 * page.Em();
}

/// Says how many plots aren't there, and how much larger a page has room for all: what isn't plots
/// stays as it is on it.
void PutUndrawn(Page& page, const Gallery& gallery, std::size_t undrawn) {
  double times = 1;
  Gallery larger = gallery;
  while (times < 50 && !HasRoom(page, larger.Cell(0))) {
    times += 0.1;
    larger.area.right = gallery.area.right + (times - 1) * page.Look().width;
    larger.area.bottom = gallery.area.bottom + (times - 1) * page.Look().height;
  }
  const std::string text = "no room for " + std::to_string(undrawn) +
                           (undrawn == 1 ? " plot" : " plots") + ": a page " + FixedText(times, 1) +
                           " times as wide and high has it";
  page.Put({.text = page.Shortened(text, gallery.area.Width(), page.Em()),
            .size = page.Em(),
            .colour = page.Ink().accent},
           gallery.area.Centre(), Align::Middle);
}

bool IsSigma(PlotKind kind) { return kind == PlotKind::SigmaMap || kind == PlotKind::SigmaSurface; }

/// Small ones have no axis for them.
bool HasHeights(PlotKind kind) {
  return kind == PlotKind::Surface || kind == PlotKind::SigmaSurface || kind == PlotKind::Bars;
}

/// A colour bar or key of all small plots, from the right of what is free.
void AddCommonKey(Page& page, const LotPlot& lot, PlotKind kind) {
  if (!page.Look().legend || kind == PlotKind::LineScan) return;
  const WaferPlot& one = lot.wafers.front();
  const Summary summary = Summarise(one.sites.value);
  if (IsSigma(kind)) {
    const auto bands = ClassesOf(one, summary, page.Look()).scale.bands;
    AddKey(page, "Of each wafer",
           {{bands[2], "above mean + \u03C3", ""},
            {bands[1], "within", ""},
            {bands[0], "below mean \u2212 \u03C3", ""}});
    return;
  }
  // Whether values lie beyond its ends is told of all wafers.
  std::vector<float> extremes;
  for (const WaferPlot& wafer : lot.wafers) {
    const auto [least, most] =
        std::minmax_element(wafer.sites.value.begin(), wafer.sites.value.end());
    extremes.insert(extremes.end(), {*least, *most});
  }
  WaferPlot scaled = one;
  scaled.sites.value = extremes;
  scaled.low = lot.low;
  scaled.high = lot.high;
  AddColourBar(page, MakeScale(scaled, summary, page.Look(), 9), scaled);
}

/// Title, facts and notes of a lot, and of the gallery below them, if there is one.
void AddHead(Page& page, const LotPlot& lot, const std::optional<GalleryPart>& gallery) {
  page.Title(lot.title);
  std::vector<std::string> facts = lot.facts;
  if (gallery && HasHeights(gallery->kind)) {
    facts.push_back("heights " + NumberText(lot.low, 4) + " to " +
                    WithUnit(NumberText(lot.high, 4), lot.wafers.front()));
  }
  const std::size_t pages = (lot.wafers.size() + kWafersOnPage - 1) / kWafersOnPage;
  if (gallery && pages > 1) {
    facts.push_back("sheet " + std::to_string(gallery->first / kWafersOnPage + 1) + " of " +
                    std::to_string(pages));
  }
  page.Items(facts, 2, true);
  // What has no room for them has still less for so many words.
  const double line = 1.3 * page.Em();
  page.Items(lot.notes, std::clamp(static_cast<int>(0.15 * page.Look().height / line), 1, 5),
             false);
}

std::size_t EndOf(const LotPlot& lot, std::size_t first) {
  return std::min(first + kWafersOnPage, lot.wafers.size());
}

}  // namespace

PlotGrid PlotGrid::For(std::size_t count, const Box& area, double above, double shape) {
  PlotGrid best;
  double largest = -1;
  for (int columns = 1; columns <= static_cast<int>(count); ++columns) {
    const int rows = (static_cast<int>(count) + columns - 1) / columns;
    const double side = std::min(area.Width() / columns / shape, area.Height() / rows - above);
    if (side > largest) {
      largest = side;
      best = {columns, rows};
    }
  }
  return best;
}

Box PlotGrid::Cell(std::size_t number, const Box& area, double gap) const {
  const double width = area.Width() / columns;
  const double height = area.Height() / rows;
  const double left = area.left + width * (static_cast<int>(number) % columns);
  const double top = area.top + height * (static_cast<int>(number) / columns);
  return Box{left, top, left + width, top + height}.Grown(-gap / 2);
}

void PlaceOn(Page& page, Figure figure, const Box& box) {
  if (!page.IsFree(box)) return;
  page.Reserve(box);
  Figure sheet;
  Place(std::move(figure), {box.left, box.top}, sheet);
  for (Shape& shape : sheet.shapes) page.Add(std::move(shape));
}

void DrawGallery(Page& page, const Box& box, const LotPlot& lot, const GalleryPart& part,
                 const TextMeasure& text) {
  const Box free = page.Free();
  page.Free() = box;
  AddCommonKey(page, lot, part.kind);
  const Box area = page.Free();
  page.Free() = free;
  // Pages of one lot have plots of one size.
  const std::size_t count =
      lot.wafers.size() > kWafersOnPage ? kWafersOnPage : part.end - part.first;
  const Gallery gallery{
      .area = area, .count = count, .above = WordsAbove(page), .gap = 0.5 * page.Em()};
  std::vector<std::string> names;
  bool of_one_size = true;
  for (const WaferPlot& wafer : lot.wafers) {
    names.push_back(wafer.title);
    of_one_size = of_one_size && wafer.diameter == lot.wafers.front().diameter;
  }
  const std::size_t common = CommonBeginning(names);
  SitePlan plan;
  for (std::size_t i = part.first; i < part.end; ++i) {
    const Box cell = gallery.Cell(i - part.first);
    if (!HasRoom(page, cell)) {
      PutUndrawn(page, gallery, part.end - i);
      break;
    }
    WaferPlot plot = lot.wafers[i];
    plot.low = lot.low;
    plot.high = lot.high;
    Style style = page.Look();
    style.width = cell.Width();
    style.height = cell.Height();
    style.letters = page.Em();
    style.small = true;
    style.legend = false;
    const double room = cell.Width() - 2 * page.Em() - page.Width(plot.flag, page.Em(), true);
    if (page.Width(plot.title, page.Em(), true) > room) {
      plot.title = WithoutBeginning(plot.title, common);
    }
    if (!of_one_size) {
      plot.left_out = DiameterText(plot) + (plot.left_out.empty() ? "" : ", " + plot.left_out);
    }
    PlaceOn(page, MakeFigure(part.kind, plot, style, text, plan), cell);
    if (plot.flag.empty()) continue;
    page.Add(PathShape{.path = Rectangle(cell), .stroke = {1.4 * page.Hair(), page.Ink().accent}});
  }
}

Figure MakeLotSheet(PlotKind kind, const LotPlot& lot, std::size_t first, const Style& style,
                    const TextMeasure& text) {
  Page page(style, text);
  const GalleryPart part = {kind, first, EndOf(lot, first)};
  AddHead(page, lot, part);
  const Box free = page.Free();
  const double em = page.Em();
  const double middle = free.left + 0.57 * free.Width();
  DrawGallery(page, {free.left, free.top, middle - em, free.bottom}, lot, part, text);
  const Box right = {middle + em, free.top, free.right, free.bottom};
  const double chart = 0.25 * right.Height();
  const double centre = right.Centre().x;
  DrawTrend(page, {right.left, right.top, right.right, right.top + chart}, lot);
  const double second = right.top + chart + 0.6 * em;
  DrawBoxes(page, {right.left, second, centre - 0.5 * em, second + chart}, lot);
  DrawProfiles(page, {centre + 0.5 * em, second, right.right, second + chart}, lot);
  DrawTable(page, {right.left, second + chart + em, right.right, right.bottom}, lot, first,
            part.end);
  return page.Take();
}

Figure MakeLotCover(const LotPlot& lot, const Style& style, const TextMeasure& text) {
  Page page(style, text);
  AddHead(page, lot, {});
  const Box free = page.Free();
  const double em = page.Em();
  const bool wide = free.Width() > free.Height();
  const Box charts = wide ? Box{free.left, free.top, free.Centre().x - em, free.bottom}
                          : Box{free.left, free.top, free.right, free.top + 0.45 * free.Height()};
  const Box table = wide ? Box{free.Centre().x + em, free.top, free.right, free.bottom}
                         : Box{free.left, charts.bottom + 1.5 * em, free.right, free.bottom};
  const Box lower = {charts.left, charts.Centre().y + 0.5 * em, charts.right, charts.bottom};
  DrawTrend(page, {charts.left, charts.top, charts.right, lower.top - em}, lot);
  DrawBoxes(page, {lower.left, lower.top, lower.Centre().x - 0.5 * em, lower.bottom}, lot);
  DrawProfiles(page, {lower.Centre().x + 0.5 * em, lower.top, lower.right, lower.bottom}, lot);
  DrawTable(page, table, lot, 0, lot.wafers.size());
  return page.Take();
}

Figure MakeLotGallery(PlotKind kind, const LotPlot& lot, std::size_t first, const Style& style,
                      const TextMeasure& text) {
  Page page(style, text);
  const GalleryPart part = {kind, first, EndOf(lot, first)};
  AddHead(page, lot, part);
  DrawGallery(page, page.Free(), lot, part, text);
  return page.Take();
}

Figure MakeWaferPage(const PageHead& head, std::span<const PlotKind> kinds, const WaferPlot& plot,
                     const Style& style, const TextMeasure& text) {
  static constexpr std::array kNames = {"Map",    "Sigma ranges", "Contours",
                                        "Values", "Surface",      "Surface of sigma ranges",
                                        "Bars",   "Histogram",    "Line scan"};
  Page page(style, text);
  page.Title(head.title);
  page.Items(head.facts, 3, true);
  page.Items({head.foot}, 1, false);
  const Gallery gallery{.area = page.Free(),
                        .count = kinds.size(),
                        .above = 4 * page.Em(),
                        .shape = 1.25,
                        .gap = kinds.size() > 1 ? 0.8 * page.Em() : 0};
  SitePlan plan;
  for (std::size_t i = 0; i < kinds.size(); ++i) {
    const Box cell = gallery.Cell(i);
    if (!HasRoom(page, cell)) {
      PutUndrawn(page, gallery, kinds.size() - i);
      break;
    }
    WaferPlot each = plot;
    if (kinds.size() > 1) each.title = kNames[static_cast<std::size_t>(kinds[i])];
    Style own = style;
    own.width = cell.Width();
    own.height = cell.Height();
    own.letters = std::min({page.Em(), cell.Width() / 34, cell.Height() / 24});
    PlaceOn(page, MakeFigure(kinds[i], each, own, text, plan), cell);
  }
  return page.Take();
}

}  // namespace discoplan::figures
