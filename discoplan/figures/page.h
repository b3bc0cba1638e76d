// SPDX-License-Identifier: MIT
#pragma once

/// The page that all kinds of figure are laid out on: its colours, its title, its lines of words,
/// its axes, and the one place where text is put, which sees that no two texts meet.

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "discoplan/figures/ticks.h"
#include "discoplan/figures/wafer_figure.h"

namespace discoplan::figures {

/// Colours of everything that isn't data.
struct Inks {
  Rgba paper, text, soft, grid, rim, nothing, hatch, accent;
};
const Inks& InksFor(bool dark);

/// Lightness as the eye weighs it, 0 to 1.
inline double Luminance(Rgba colour) {
  return (0.299 * colour.red + 0.587 * colour.green + 0.114 * colour.blue) / 255;
}

/// Boxes, for whether a new one is free.
class BoxField {
 public:
  explicit BoxField(double cell) : cell_(cell) {}
  bool IsFree(const Box& box) const;
  void Take(const Box& box);

 private:
  template <class Visit>
  bool Cells(const Box& box, Visit visit) const;

  double cell_;
  std::vector<Box> boxes_;
  std::unordered_map<long long, std::vector<std::size_t>> in_cell_;
};

/// Where a text stands against its point.
enum class Align { Start, Middle, End };

struct Words {
  std::string_view text = {};
  double size = 8;
  bool bold = false;
  Rgba colour = {};
  double angle = 0;  ///< Degrees, counter-clockwise.
  double halo = 0;
  Rgba halo_colour = {};
};

class Page {
 public:
  Page(const Style& style, const TextMeasure& text);

  double Em() const { return em_; }
  double Hair() const { return em_ / 14; }  ///< Width of thin lines.
  const Inks& Ink() const { return inks_; }
  const Style& Look() const { return style_; }
  /// A colour of lines, with as much of the letters' own as makes it stand off the ground.
  Rgba Readable(Rgba ink) const;
  /// What is still free for the plot.
  Box& Free() { return free_; }
  /// Keeps no more of it than that, in its middle.
  void Narrow(double width, double height);

  double Width(std::string_view text, double size, bool bold = false) const;
  /// `text`, or as much of its beginning as fits with an ellipsis; empty if that is nothing.
  std::string Shortened(std::string_view text, double width, double size, bool bold = false) const;

  /// A quantity with its unit in brackets, which is what stays longest.
  std::string ShortenedQuantity(const std::string& label, double width, double size) const;

  /// Box of a text around `at`, its middle in height.
  Box BoxOf(const Words& words, Point at, Align align) const;
  /// Puts it there if its box lies on the page and is free.
  bool Put(const Words& words, Point at, Align align);
  /// What was put so far, for another try.
  struct State {
    BoxField taken;
    std::size_t shapes;
  };
  State Keep() const { return {taken_, figure_.shapes.size()}; }
  void Restore(const State& state);
  /// Keeps texts away.
  void Reserve(const Box& box) { taken_.Take(box); }
  bool IsFree(const Box& box) const;

  void Add(Shape shape);
  void Line(Point a, Point b, Rgba colour, double width, double dash = 0);

  /// Takes the title from the top of what is free.
  void Title(std::string_view title, std::string_view flag = {});
  /// Lines of items, the first ones most important: those that don't fit into `most` lines are left
  /// out from the end. From the top or from the bottom of what is free.
  void Items(const std::vector<std::string>& items, int most, bool at_top);

  void ShowsWafer(const WaferPlace& place) { figure_.wafer = place; }
  Figure Take() { return std::move(figure_); }

 private:
  const Style& style_;
  const TextMeasure& text_;
  const Inks& inks_;
  double em_;
  Box free_;
  Box inside_;
  BoxField taken_;
  Figure figure_;
};

/// A colour scale from `low` to `high`.
struct Scale {
  double low = 0;
  double high = 1;
  std::vector<Rgba> bands = {};  ///< Empty for a continuous one.
  const ColourMap* colours = nullptr;
  Ticks ticks = {};

  double Part(double value) const { return high > low ? (value - low) / (high - low) : 0.5; }
  Rgba Colour(double value) const;
};

/// From the plot's limits or, where it has none, the data's; about 0 for diverging colours.
Scale MakeScale(const WaferPlot& plot, const Summary& summary, const Style& style, int most_ticks);

/// What a colour bar takes from the width, its distance from the plot included.
double ColourBarRoom(const Page& page, const Scale& scale);
/// Takes a colour bar with ticks and quantity from the right of what is free.
void AddColourBar(Page& page, const Scale& scale, const WaferPlot& plot);

/// A row of a key: a colour and what it stands for.
struct KeyRow {
  Rgba colour;
  std::string text;
  std::string detail;      ///< Smaller, below.
  std::string brief = {};  ///< In its place where there is no room for it.
};
/// Takes it from the right of what is free; narrow pages get none.
void AddKey(Page& page, const std::string& heading, const std::vector<KeyRow>& rows);

/// Title, line of figures and notes of every kind.
void AddWords(Page& page, const WaferPlot& plot, const Summary& summary,
              const std::vector<std::string>& notes);

/// "Thickness (nm)"
std::string QuantityText(const WaferPlot& plot);
/// "300 mm"
std::string DiameterText(const WaferPlot& plot);
/// With the unit behind.
std::string WithUnit(const std::string& number, const WaferPlot& plot);

/// Two axes around a chart, with round ticks.
struct Axis {
  double low = 0;
  double high = 1;
  std::string label = {};
  bool whole = false;                   ///< Counts: no ticks between whole numbers.
  std::vector<std::string> names = {};  ///< Of the places 1, 2, ... in place of numbers.
};
struct Chart {
  Box area;  ///< Between the axes.
  Axis x;
  Axis y;

  double X(double value) const {
    return area.left + (value - x.low) / (x.high - x.low) * area.Width();
  }
  double Y(double value) const {
    return area.bottom - (value - y.low) / (y.high - y.low) * area.Height();
  }
};
/// Lays the axes out in what is free and draws grid, ticks and labels.
Chart AddChart(Page& page, const Axis& x, const Axis& y);

}  // namespace discoplan::figures
