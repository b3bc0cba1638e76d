// SPDX-License-Identifier: MIT
#include <array>
#include <cmath>

#include "discoplan/figures/wafer_view.h"

namespace discoplan::figures {

void DrawBars(Sketch sketch) {
  auto& [page, plot, summary, style, plan] = sketch;
  const Scale scale = MakeScale(plot, summary, style, 7);
  std::vector<std::string> notes;
  if (const std::string beyond = BeyondNote(plot, scale); !beyond.empty()) notes.push_back(beyond);
  AddWords(page, plot, summary, notes);
  const Ticks ticks = RoundTicks(scale.low, scale.high, 5);
  GatherView(page, style, ColourBarRoom(page, scale) + AxisRoom(page, ticks));
  if (style.legend) AddColourBar(page, scale, plot);
  if (!style.small) page.Free().left += AxisRoom(page, ticks);
  const double spacing = std::sqrt(3.14 / static_cast<double>(summary.count));
  const double half = std::min(0.045, 0.2 * spacing);
  std::vector<std::size_t> order(plot.sites.Size());
  for (std::size_t i = 0; i < order.size(); ++i) order[i] = i;
  const auto place = [&plot = plot](std::size_t i) {
    return Point{plot.sites.x[i], plot.sites.y[i]} * (2 / plot.diameter);
  };
  double reach = 1;  // of the bars, whose corners stand out over the rim
  for (const std::size_t i : order) {
    const Point p = place(i);
    reach = std::max(reach, std::hypot(p.x, p.y) + 1.42 * half);
  }
  const View view(page.Free(), scale, style, reach);
  DrawBase(page, view, plot);
  std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
    return view.Depth(place(a)) > view.Depth(place(b));
  });
  for (const std::size_t i : order) {
    const Point p = place(i);
    const double top = view.HeightOf(plot.sites.value[i]);
    const Rgba colour = scale.Colour(plot.sites.value[i]);
    const std::array<Point, 4> foot = {p + Point{-half, -half}, p + Point{half, -half},
                                       p + Point{half, half}, p + Point{-half, half}};
    // Edges of thin bars would hide their colours.
    const bool edged = 2 * half * view.Unit() > 6 * page.Hair();
    const Stroke edge = {edged ? 0.5 * page.Hair() : 0, Mix(colour, Rgb(0x000000), 0.45)};
    // The two sides that face the viewer.
    AddFace(
        page,
        {view.At(foot[0], 0), view.At(foot[1], 0), view.At(foot[1], top), view.At(foot[0], top)},
        Lit(colour, -0.12), edge);
    AddFace(
        page,
        {view.At(foot[0], 0), view.At(foot[3], 0), view.At(foot[3], top), view.At(foot[0], top)},
        Lit(colour, -0.32), edge);
    AddFace(page,
            {view.At(foot[0], top), view.At(foot[1], top), view.At(foot[2], top),
             view.At(foot[3], top)},
            Lit(colour, 0.12), edge);
  }
  if (!style.small) DrawHeightAxis(page, view, scale, ticks, plot);
}

}  // namespace discoplan::figures
