// SPDX-License-Identifier: MIT
#include "discoplan/figures/page.h"

#include <cmath>

#include "discoplan/analysis/figures_of_merit.h"

namespace discoplan::figures {
namespace {

constexpr Inks kLight = {.paper = Rgb(0xFFFFFF),
                         .text = Rgb(0x1F2430),
                         .soft = Rgb(0x5B6472),
                         .grid = Rgb(0xE4E7EB),
                         .rim = Rgb(0x454D59),
                         .nothing = Rgb(0xECEEF1),
                         .hatch = Rgb(0xB4BAC4),
                         .accent = Rgb(0xC2410C)};
constexpr Inks kDark = {.paper = Rgb(0x14171C),
                        .text = Rgb(0xE9ECF0),
                        .soft = Rgb(0xA3ADBA),
                        .grid = Rgb(0x2D333B),
                        .rim = Rgb(0xB9C1CC),
                        .nothing = Rgb(0x23282F),
                        .hatch = Rgb(0x4A525E),
                        .accent = Rgb(0xFB923C)};

constexpr double kPi = 3.14159265358979;

/// Bytes of the character that starts with `lead`.
std::size_t CharacterLength(char lead) {
  const auto byte = static_cast<unsigned char>(lead);
  return byte < 0x80 ? 1 : byte < 0xE0 ? 2 : byte < 0xF0 ? 3 : 4;
}

/// Empty where it has no meaning, as for values on both sides of 0.
std::string UniformityText(const WaferPlot& plot, const Summary& summary, const std::string& key) {
  if (summary.low <= 0 && summary.high >= 0) return {};
  if (key == Style().uniformity) {
    return "\u03C3/mean " + NumberText(100 * summary.sigma / std::abs(summary.mean), 3) + " %";
  }
  const analysis::FigureOfMerit* figure = analysis::FindFigure(key);
  if (figure == nullptr) return {};
  const analysis::Sample sample(
      std::vector<double>(plot.sites.value.begin(), plot.sites.value.end()));
  const std::optional<double> value = figure->compute(sample);
  return value ? std::string(figure->title) + " " + NumberText(*value, 3) + " %" : std::string();
}

}  // namespace

const Inks& InksFor(bool dark) { return dark ? kDark : kLight; }

template <class Visit>
bool BoxField::Cells(const Box& box, Visit visit) const {
  const auto slot = [this](double place) {
    return static_cast<long long>(std::floor(place / cell_));
  };
  for (long long row = slot(box.top); row <= slot(box.bottom); ++row) {
    for (long long column = slot(box.left); column <= slot(box.right); ++column) {
      if (!visit(row * 1000003 + column)) return false;
    }
  }
  return true;
}

bool BoxField::IsFree(const Box& box) const {
  return Cells(box, [&](long long cell) {
    const auto found = in_cell_.find(cell);
    if (found == in_cell_.end()) return true;
    return std::none_of(found->second.begin(), found->second.end(),
                        [&](std::size_t i) { return boxes_[i].Meets(box); });
  });
}

void BoxField::Take(const Box& box) {
  boxes_.push_back(box);
  Cells(box, [&](long long cell) {
    in_cell_[cell].push_back(boxes_.size() - 1);
    return true;
  });
}

Page::Page(const Style& style, const TextMeasure& text)
    : style_(style),
      text_(text),
      inks_(InksFor(style.dark)),
      em_(std::min({style.letters, style.width / (style.small ? 11 : 16), style.height / 13})),
      taken_(4 * em_) {
  const double margin = 0.8 * em_;
  inside_ = {margin, margin, style.width - margin, style.height - margin};
  free_ = inside_;
  figure_.width = style.width;
  figure_.height = style.height;
  figure_.font = style.font;
  if (!style.transparent) figure_.background = inks_.paper;
}

void Page::Narrow(double width, double height) {
  const double aside = std::max(0.0, (free_.Width() - width) / 2);
  const double above = std::max(0.0, (free_.Height() - height) / 2);
  free_ = {free_.left + aside, free_.top + above, free_.right - aside, free_.bottom - above};
}

double Page::Width(std::string_view text, double size, bool bold) const {
  return text_.Width(text, size, bold);
}

Rgba Page::Readable(Rgba ink) const {
  constexpr double kLeast = 0.45;
  double part = 0;
  const auto off = [&] {
    return std::abs(Luminance(Mix(ink, inks_.text, part)) - Luminance(inks_.paper));
  };
  while (part < 0.95 && off() < kLeast) part += 0.1;
  return Mix(ink, inks_.text, part);
}

std::string Page::Shortened(std::string_view text, double width, double size, bool bold) const {
  if (Width(text, size, bold) <= width) return std::string(text);
  static constexpr std::string_view kEllipsis = "\u2026";
  double room = width - Width(kEllipsis, size, bold);
  std::size_t end = 0;
  while (end < text.size()) {
    const std::size_t length = CharacterLength(text[end]);
    room -= Width(text.substr(end, length), size, bold);
    if (room < 0) break;
    end += length;
  }
  while (end > 0 && text[end - 1] == ' ') --end;
  // Kerned pairs can be wider than their letters.
  while (end > 0) {
    std::string shorter = std::string(text.substr(0, end)) + std::string(kEllipsis);
    if (Width(shorter, size, bold) <= width) return shorter;
    do --end;
    while (end > 0 && (text[end] & 0xC0) == 0x80);
  }
  return {};
}

std::string Page::ShortenedQuantity(const std::string& label, double width, double size) const {
  const std::size_t unit = label.rfind(" (");
  if (unit == std::string::npos || label.back() != ')') return Shortened(label, width, size);
  const std::string behind = label.substr(unit);
  const double room = width - Width(behind, size);
  if (room < 0.4 * width) return Shortened(label, width, size);
  return Shortened(label.substr(0, unit), room, size) + behind;
}

Box Page::BoxOf(const Words& words, Point at, Align align) const {
  const double width = Width(words.text, words.size, words.bold);
  const double shift = align == Align::Start ? 0 : align == Align::Middle ? width / 2 : width;
  const double half = (kAscent + kDescent) * words.size / 2;
  const Box flat = {-shift, -half, width - shift, half};
  const double c = std::cos(words.angle * kPi / 180);
  const double s = -std::sin(words.angle * kPi / 180);
  Box box = {1e9, 1e9, -1e9, -1e9};
  for (const Point corner : {Point{flat.left, flat.top}, Point{flat.right, flat.top},
                             Point{flat.left, flat.bottom}, Point{flat.right, flat.bottom}}) {
    const Point turned = {at.x + c * corner.x - s * corner.y, at.y + s * corner.x + c * corner.y};
    box = {std::min(box.left, turned.x), std::min(box.top, turned.y), std::max(box.right, turned.x),
           std::max(box.bottom, turned.y)};
  }
  return box.Grown(words.halo);
}

bool Page::IsFree(const Box& box) const {
  const Box page = {em_ / 4, em_ / 4, figure_.width - em_ / 4, figure_.height - em_ / 4};
  return page.Holds(box) && taken_.IsFree(box);
}

bool Page::Put(const Words& words, Point at, Align align) {
  if (words.text.empty()) return false;
  const Box box = BoxOf(words, at, align);
  if (!IsFree(box)) return false;
  taken_.Take(box);
  const double width = Width(words.text, words.size, words.bold);
  const double shift = align == Align::Start ? 0 : align == Align::Middle ? width / 2 : width;
  const double down = (kAscent - kDescent) * words.size / 2;
  const double c = std::cos(words.angle * kPi / 180);
  const double s = -std::sin(words.angle * kPi / 180);
  Add(TextShape{.text = std::string(words.text),
                .start = {at.x - c * shift - s * down, at.y - s * shift + c * down},
                .size = words.size,
                .bold = words.bold,
                .colour = words.colour,
                .angle = words.angle,
                .halo = words.halo,
                .halo_colour = words.halo_colour,
                .box = box,
                .width = width});
  return true;
}

void Page::Restore(const State& state) {
  taken_ = state.taken;
  figure_.shapes.resize(state.shapes);
}

void Page::Add(Shape shape) { figure_.shapes.push_back(std::move(shape)); }

void Page::Line(Point a, Point b, Rgba colour, double width, double dash) {
  Path path;
  path.Line({a, b});
  Add(PathShape{.path = std::move(path), .stroke = {width, colour, dash}});
}

void Page::Title(std::string_view title, std::string_view flag) {
  const double size = (style_.small ? 1 : 1.35) * em_;
  // A flag is worth more than the end of a name.
  const double flag_room = flag.empty() ? 0 : Width(flag, size, true) + 0.6 * size;
  const double room = std::max(free_.Width() - flag_room, 0.5 * free_.Width());
  const std::string shown = Shortened(title, room, size, true);
  if (shown.empty()) return;
  const double height = (kAscent + kDescent) * size;
  const double y = free_.top + height / 2;
  Put({.text = shown, .size = size, .bold = true, .colour = inks_.text}, {free_.left, y},
      Align::Start);
  const double start = free_.left + Width(shown, size, true) + 0.6 * size;
  const std::string flagged = Shortened(flag, free_.right - start, size, true);
  if (!flagged.empty()) {
    Put({.text = flagged, .size = size, .bold = true, .colour = inks_.accent}, {start, y},
        Align::Start);
  }
  free_.top += height + (style_.small ? 0.1 : 0.35) * em_;
  figure_.title = title;
}

void Page::Items(const std::vector<std::string>& items, int most, bool at_top) {
  const double size = 0.92 * em_;
  const double gap = 1.1 * em_;
  std::vector<std::vector<std::pair<std::string, double>>> lines;  // texts and their starts
  double x = 0;
  for (const std::string& item : items) {
    const std::string shown = Shortened(item, free_.Width(), size);
    const double width = Width(shown, size);
    if (shown.empty()) continue;
    if (lines.empty() || x + width > free_.Width()) {
      if (static_cast<int>(lines.size()) == most) break;
      lines.emplace_back();
      x = 0;
    }
    lines.back().emplace_back(shown, x);
    x += width + gap;
  }
  const double pitch = 1.3 * em_;
  if (!at_top) free_.bottom -= pitch * static_cast<double>(lines.size());
  double y = at_top ? free_.top : free_.bottom;
  for (const auto& line : lines) {
    for (const auto& [shown, start] : line) {
      Put({.text = shown, .size = size, .colour = inks_.soft}, {free_.left + start, y + pitch / 2},
          Align::Start);
    }
    y += pitch;
  }
  if (at_top) free_.top = y;
  if (!lines.empty()) (at_top ? free_.top : free_.bottom) += at_top ? 0.5 * em_ : -0.3 * em_;
}

std::string QuantityText(const WaferPlot& plot) {
  const std::string& name = plot.quantity.empty() ? std::string("Value") : plot.quantity;
  return plot.unit.empty() ? name : name + " (" + plot.unit + ")";
}

std::string WithUnit(const std::string& number, const WaferPlot& plot) {
  if (plot.unit.empty()) return number;
  return plot.unit == "%" || plot.unit == "\u00B0" ? number + plot.unit : number + " " + plot.unit;
}

std::string DiameterText(const WaferPlot& plot) {
  return FixedText(plot.diameter, plot.diameter == std::round(plot.diameter) ? 0 : 1) + " mm";
}

void AddWords(Page& page, const WaferPlot& plot, const Summary& summary,
              const std::vector<std::string>& notes) {
  page.Title(plot.title, plot.flag);
  std::vector<std::string> items;
  // As many digits as tell the values apart, those of all wafers where this is one of many.
  const bool of_many = page.Look().small && plot.low && plot.high;
  const double range = of_many ? *plot.high - *plot.low : summary.high - summary.low;
  const int digits =
      range > 0 ? std::clamp(3 - static_cast<int>(std::floor(std::log10(range))), 0, 9) : 3;
  const bool plain = std::abs(summary.mean) < 1e7 && (range == 0 || range > 1e-4);
  const auto number = [&](double value, int more) {
    return plain ? FixedText(value, std::max(0, digits - 1 + more)) : NumberText(value, 5);
  };
  if (page.Look().small) {
    const std::string sigma = summary.count > 1 ? " \u00B1 " + number(summary.sigma, 1) : "";
    page.Items({number(summary.mean, 1) + sigma, plot.left_out}, 1, true);
    return;
  }
  items.push_back("mean " + WithUnit(number(summary.mean, 0), plot));
  items.push_back("\u03C3 " + WithUnit(number(summary.sigma, 1), plot));
  if (const std::string text = UniformityText(plot, summary, page.Look().uniformity);
      !text.empty()) {
    items.push_back(text);
  }
  items.push_back("range " + number(range, 0) + " (" + number(summary.low, 0) + " to " +
                  WithUnit(number(summary.high, 0), plot) + ")");
  items.push_back("n " + std::to_string(summary.count));
  if (!plot.left_out.empty()) items.push_back(plot.left_out);
  items.push_back(DiameterText(plot) + " wafer");
  page.Items(items, 3, true);
  page.Items(notes, 3, false);
}

}  // namespace discoplan::figures
