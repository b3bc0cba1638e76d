// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>

#include "discoplan/figures/page.h"

namespace discoplan::figures {
namespace {

/// What a scale of one constant value covers.
void Widen(Scale& scale) {
  if (scale.high > scale.low) return;
  const double by = scale.low != 0 ? 0.01 * std::abs(scale.low) : 1;
  scale.low -= by;
  scale.high += by;
}

/// Edges at round numbers, at most `most` bands.
void RoundOutward(Scale& scale, int most) {
  for (int wanted = most + 1; wanted > 1; --wanted) {
    const double step = RoundTicks(scale.low, scale.high, wanted).step;
    const double low = std::floor(scale.low / step + 1e-9) * step;
    const double high = std::ceil(scale.high / step - 1e-9) * step;
    const int count = static_cast<int>(std::lround((high - low) / step));
    if (count > most && wanted > 2) continue;
    scale.low = low;
    scale.high = high;
    scale.bands.resize(static_cast<std::size_t>(std::clamp(count, 1, most)));
    return;
  }
}

/// Of a colour bar, in letters.
constexpr double kTickSize = 0.95;
constexpr double kBarWidth = 1.1 + 0.5 + 1.4;  ///< Bar, tick marks and quantity.
constexpr double kBarGap = 1.2;                ///< To the plot.

double WidestTick(const Page& page, const Scale& scale) {
  double widest = 0;
  for (const double tick : scale.ticks.values) {
    widest = std::max(widest, page.Width(scale.ticks.Text(tick), kTickSize * page.Em()));
  }
  return widest;
}

}  // namespace

Rgba Scale::Colour(double value) const {
  const double part = Part(value);
  if (bands.empty()) return colours->At(part);
  const auto last = static_cast<double>(bands.size()) - 1;
  return bands[static_cast<std::size_t>(
      std::clamp(std::floor(part * static_cast<double>(bands.size())), 0.0, last))];
}

Scale MakeScale(const WaferPlot& plot, const Summary& summary, const Style& style, int most_ticks) {
  Scale scale{.low = plot.low.value_or(summary.low),
              .high = plot.high.value_or(summary.high),
              .colours = &style.colours};
  if (!(scale.low <= scale.high)) std::swap(scale.low, scale.high);
  Widen(scale);
  const bool pinned = plot.low || plot.high;
  const bool around_zero = scale.low < 0 && scale.high > 0;
  const bool centred = style.colours.IsDiverging() && (around_zero || style.difference) && !pinned;
  if (centred) {
    scale.high = std::max(std::abs(scale.high), std::abs(scale.low));
    scale.low = -scale.high;
  }
  int bands = style.bands;
  if (style.colours.IsStepped()) bands = style.colours.Steps();
  if (bands > 0) {
    if (pinned || style.colours.IsStepped() || centred || bands == 1) {
      scale.bands.resize(static_cast<std::size_t>(bands));
    } else {
      RoundOutward(scale, bands);
    }
    scale.bands = BandColours(style.colours, static_cast<int>(scale.bands.size()));
  }
  scale.ticks = RoundTicks(scale.low, scale.high, most_ticks);
  return scale;
}

double ColourBarRoom(const Page& page, const Scale& scale) {
  return kBarWidth * page.Em() + WidestTick(page, scale) + kBarGap * page.Em();
}

void AddColourBar(Page& page, const Scale& scale, const WaferPlot& plot) {
  Box& free = page.Free();
  const double em = page.Em();
  const double size = kTickSize * em;
  const double widest = WidestTick(page, scale);
  const double bar = 1.1 * em;
  const double whole = kBarWidth * em + widest;
  if (whole > free.Width() * 0.45 || free.Height() < 5 * em) return;
  const Box area = {free.right - whole, free.top + 0.7 * em, free.right - whole + bar,
                    free.bottom - 0.7 * em};
  free.right = area.left - kBarGap * em;
  const auto steps = scale.bands.empty() ? std::size_t{128} : scale.bands.size();
  const double step = area.Height() / static_cast<double>(steps);
  for (std::size_t i = 0; i < steps; ++i) {
    const double part = (static_cast<double>(i) + 0.5) / static_cast<double>(steps);
    const double bottom = area.bottom - static_cast<double>(i) * step;
    // Each reaches under the next one, so that no seam shows.
    const double top = i + 1 < steps ? bottom - 1.5 * step : bottom - step;
    page.Add(PathShape{.path = Rectangle({area.left, top, area.right, bottom}),
                       .fill = scale.Colour(scale.low + part * (scale.high - scale.low))});
  }
  page.Add(PathShape{.path = Rectangle(area), .stroke = {page.Hair(), page.Ink().rim}});
  page.Reserve(area);
  // An arrow where values go beyond the end.
  const auto [least, most] = std::minmax_element(plot.sites.value.begin(), plot.sites.value.end());
  const auto arrow = [&](double end, double tip, Rgba colour) {
    Path path;
    path.Polygon({{area.left, end}, {area.Centre().x, tip}, {area.right, end}});
    page.Add(PathShape{
        .path = std::move(path), .fill = colour, .stroke = {page.Hair(), page.Ink().rim}});
  };
  const double slack = 1e-6 * (scale.high - scale.low);
  if (*most > scale.high + slack) {
    arrow(area.top, area.top - 0.65 * em, scale.Colour(scale.high));
  }
  if (*least < scale.low - slack) {
    arrow(area.bottom, area.bottom + 0.65 * em, scale.Colour(scale.low));
  }
  for (const double tick : scale.ticks.values) {
    const double y = area.bottom - scale.Part(tick) * area.Height();
    page.Line({area.right, y}, {area.right + 0.3 * em, y}, page.Ink().rim, page.Hair());
    page.Put({.text = scale.ticks.Text(tick), .size = size, .colour = page.Ink().text},
             {area.right + 0.5 * em + widest, y}, Align::End);
  }
  const std::string quantity = page.ShortenedQuantity(QuantityText(plot), area.Height(), size);
  page.Put({.text = quantity, .size = size, .colour = page.Ink().soft, .angle = 90},
           {area.right + 0.5 * em + widest + 0.85 * em, area.Centre().y}, Align::Middle);
}

void AddKey(Page& page, const std::string& heading, const std::vector<KeyRow>& rows) {
  Box& free = page.Free();
  const double em = page.Em();
  const double swatch = 1.2 * em;
  double widest = page.Width(heading, em);
  for (const KeyRow& row : rows) {
    widest = std::max({widest, swatch + 0.6 * em + page.Width(row.text, em),
                       swatch + 0.6 * em + page.Width(row.detail, 0.9 * em)});
  }
  widest = std::min(widest + 0.1, 0.42 * free.Width());
  const double left = free.right - widest;
  const double pitch = 3 * em;
  double y =
      std::max(free.top, free.Centre().y - (pitch * static_cast<double>(rows.size()) + em) / 2);
  page.Put({.text = page.Shortened(heading, widest, em), .size = em, .colour = page.Ink().soft},
           {left, y + 0.5 * em}, Align::Start);
  y += 1.8 * em;
  for (const KeyRow& row : rows) {
    if (y + pitch > free.bottom) break;
    page.Add(PathShape{.path = Rectangle({left, y, left + swatch, y + swatch}),
                       .fill = row.colour,
                       .stroke = {page.Hair(), page.Ink().rim}});
    const double start = left + swatch + 0.6 * em;
    const double room = free.right - start;
    page.Put({.text = page.Shortened(row.text, room, em), .size = em, .colour = page.Ink().text},
             {start, y + 0.5 * em}, Align::Start);
    const bool fits = row.brief.empty() || page.Width(row.detail, 0.9 * em) <= room;
    page.Put({.text = page.Shortened(fits ? row.detail : row.brief, room, 0.9 * em),
              .size = 0.9 * em,
              .colour = page.Ink().soft},
             {start, y + 1.6 * em}, Align::Start);
    y += pitch;
  }
  free.right = left - 1.2 * em;
}

}  // namespace discoplan::figures
