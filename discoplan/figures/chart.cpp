// SPDX-License-Identifier: MIT
#include <cmath>

#include "discoplan/figures/page.h"

namespace discoplan::figures {
namespace {

double WidestOf(const Page& page, const Ticks& ticks, double size) {
  double widest = 0;
  for (const double tick : ticks.values) {
    widest = std::max(widest, page.Width(ticks.Text(tick), size));
  }
  return widest;
}

Ticks TicksOf(const Axis& axis, int most) {
  Ticks ticks = RoundTicks(axis.low, axis.high, most);
  while (axis.whole && ticks.decimals > 0 && most > 2) {
    ticks = RoundTicks(axis.low, axis.high, --most);
  }
  return ticks;
}

/// Each of so many names has room.
std::size_t NameStep(const Page& page, const Chart& chart) {
  double widest = 0;
  for (const std::string& name : chart.x.names) {
    widest = std::max(widest, page.Width(name, 0.95 * page.Em()));
  }
  const double pitch = chart.area.Width() / (chart.x.high - chart.x.low);
  return static_cast<std::size_t>(std::max(1.0, std::ceil((widest + 0.4 * page.Em()) / pitch)));
}

}  // namespace

Chart AddChart(Page& page, const Axis& x, const Axis& y) {
  const double em = page.Em();
  const double size = 0.95 * em;
  const Box free = page.Free();
  const int most_down = std::clamp(static_cast<int>(free.Height() / (3.2 * em)), 2, 9);
  const Ticks down = TicksOf(y, most_down);
  const double widest = WidestOf(page, down, size);
  const double left = free.left + (y.label.empty() ? 0.4 : 1.5) * em + widest + 0.6 * em;
  const double below = (x.label.empty() ? 1.8 : 3.3) * em;
  Chart chart{.area = {left, free.top + 0.6 * em, free.right - 0.6 * em, free.bottom - below},
              .x = x,
              .y = y};
  const Box& area = chart.area;
  Ticks across;
  for (int most = 10; most >= 2 && x.names.empty(); --most) {
    across = TicksOf(x, most);
    const double room = area.Width() * across.step / (x.high - x.low);
    if (WidestOf(page, across, size) + em < room) break;
  }
  for (const double tick : down.values) {
    const double at = chart.Y(tick);
    page.Line({area.left, at}, {area.right, at}, page.Ink().grid, page.Hair());
    page.Put({.text = down.Text(tick), .size = size, .colour = page.Ink().text},
             {area.left - 0.6 * em, at}, Align::End);
  }
  const auto mark = [&](double value, const std::string& text) {
    const double at = chart.X(value);
    page.Line({at, area.bottom}, {at, area.bottom + 0.3 * em}, page.Ink().rim, page.Hair());
    const double half = page.Width(text, size) / 2;
    page.Put({.text = text, .size = size, .colour = page.Ink().text},
             {std::min(at, free.right - half), area.bottom + em}, Align::Middle);
  };
  for (const double tick : across.values) {
    const double at = chart.X(tick);
    page.Line({at, area.top}, {at, area.bottom}, page.Ink().grid, page.Hair());
    mark(tick, across.Text(tick));
  }
  for (std::size_t i = 0; i < x.names.size(); i += NameStep(page, chart)) {
    mark(static_cast<double>(i) + 1, x.names[i]);
  }
  page.Line({area.left, area.bottom}, {area.right, area.bottom}, page.Ink().rim, 1.3 * page.Hair());
  page.Line({area.left, area.top}, {area.left, area.bottom}, page.Ink().rim, 1.3 * page.Hair());
  page.Put({.text = page.ShortenedQuantity(x.label, area.Width(), em),
            .size = em,
            .colour = page.Ink().soft},
           {area.Centre().x, area.bottom + 2.5 * em}, Align::Middle);
  page.Put({.text = page.ShortenedQuantity(y.label, area.Height(), em),
            .size = em,
            .colour = page.Ink().soft,
            .angle = 90},
           {free.left + 0.7 * em, area.Centre().y}, Align::Middle);
  page.Free() = area;
  return chart;
}

}  // namespace discoplan::figures
