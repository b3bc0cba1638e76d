// SPDX-License-Identifier: MIT
#include "discoplan/forms/painter.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>
#include <vector>

#include "discoplan/base/numbers.h"

namespace discoplan {
namespace {

constexpr Colour kEdge = 0xA8A8A8;
constexpr Colour kButtonFill = 0xF4F4F4;
constexpr double kTitleIndent = 120;  // twips from a frame's corner to its title
// Twips of boxes to tick, and of options in a group.
constexpr float kTickSide = 180;
constexpr double kTickDrop = 15;
constexpr double kTickIndent = 260;
constexpr double kFirstOption = 240;
constexpr double kOptionPitch = 270;
constexpr double kTitleGap = 30;  // twips that the line keeps from the title

/// To a whole pixel; what lies too far away, or nowhere, is as good as that far away.
int Whole(double pixels) {
  constexpr double kFarthest = 1 << 29;  // so that the difference of two is an integer too
  return static_cast<int>(RoundHalfEven(std::fmin(std::fmax(pixels, -kFarthest), kFarthest)));
}

/// Both corners belong to it.
struct Box {
  int left, top, right, bottom;

  int Width() const { return right - left + 1; }
  int Height() const { return bottom - top + 1; }
};

class TreePainter {
 public:
  TreePainter(Canvas& canvas, const PaintOptions& options) : canvas_(canvas), options_(options) {}

  void Paint(const Node& node, double left, double top) {
    if (!node.Visible()) return;
    const Box box = Pixels(left, top, node.Box());
    switch (node.kind) {
      case NodeKind::Control:
      case NodeKind::Form:
      case NodeKind::Panel:
        Fill(box, node.BackColor());
        break;
      case NodeKind::Frame:
        PaintFrame(node, box);
        break;
      case NodeKind::Label:
        PaintLabel(node, box);
        break;
      case NodeKind::Picture:
        Copy(std::as_const(*node.Picture()).canvas(), box);  // which isn't drawing on it
        break;
      case NodeKind::Image:
        if (node.Image()) Stretch(*node.Image(), PicturePixels(left, top, node.Box()));
        break;
      case NodeKind::Button:
        if (options_.buttons) PaintButton(node, box);
        break;
      case NodeKind::Text:
        PaintField(node, box);
        break;
      case NodeKind::Check:
        PaintTick(left, top, node.Value() != 0);
        Write(node, box.left + PixelsAcross(kTickIndent), box.top);
        break;
      case NodeKind::Options:
        PaintOptionsOf(node, left, top);
        break;
      case NodeKind::Spinner:
        if (options_.buttons) PaintSpinner(box);
        break;
      case NodeKind::Line:
        PaintLine(node, left, top);
        break;
    }
    for (const auto& child : node.children()) {
      Paint(*child, left + child->Box().left, top + child->Box().top);
    }
  }

 private:
  double PixelsAcross(double twips) const { return twips / options_.resolution.twips_per_pixel_x; }
  double PixelsDown(double twips) const { return twips / options_.resolution.twips_per_pixel_y; }
  double PixelsPerPoint() const { return PixelsDown(kTwipsPerPoint); }
  int LineWidth() const { return std::max(1, Whole(std::floor(PixelsPerPoint() / 2))); }

  Box Pixels(double left, double top, const TwipsBox& size) const {
    return {Whole(PixelsAcross(left)), Whole(PixelsDown(top)),
            Whole(PixelsAcross(left + size.width)) - 1, Whole(PixelsDown(top + size.height)) - 1};
  }

  /// As many pixels as a picture of that size has: a snapshot that wasn't stretched is the picture.
  Box PicturePixels(double left, double top, const TwipsBox& size) const {
    const int x = Whole(PixelsAcross(left));
    const int y = Whole(PixelsDown(top));
    return {x, y, x + WholePixels(PixelsAcross(size.width)) - 1,
            y + WholePixels(PixelsDown(size.height)) - 1};
  }

  /// In the canvas's own rows.
  Box OnCanvas(const Box& box) const {
    return {box.left, box.top - options_.top, box.right, box.bottom - options_.top};
  }

  void Fill(const Box& place, Colour colour) {
    if (place.Width() <= 0 || place.Height() <= 0) return;
    const Box box = OnCanvas(place);
    canvas_.FillBox({box.left, box.top, box.right, box.bottom}, PixelOf(colour));
  }

  void Outline(const Box& box, Colour colour) {
    const int w = LineWidth() - 1;
    Fill({box.left, box.top, box.right, box.top + w}, colour);
    Fill({box.left, box.bottom - w, box.right, box.bottom}, colour);
    Fill({box.left, box.top, box.left + w, box.bottom}, colour);
    Fill({box.right - w, box.top, box.right, box.bottom}, colour);
  }

  double TextHeight(const Node& node) const {
    return options_.text.Height(node.Font(), PixelsPerPoint());
  }
  double TextWidth(const Node& node, std::string_view text) const {
    return options_.text.Width(node.Font(), PixelsPerPoint(), text);
  }
  double TextWidth(const Node& node) const { return TextWidth(node, node.Text()); }
  void Write(const Node& node, double x, double y) { Write(node, node.Text(), x, y); }
  void Write(const Node& node, std::string_view text, double x, double y) {
    options_.text.Paint(canvas_, node.Font(),
                        {.x = x,
                         .y = y,
                         .pixels_per_point = PixelsPerPoint(),
                         .colour = node.ForeColor(),
                         .canvas_top = options_.top},
                        text);
  }

  void PaintFrame(const Node& node, const Box& box) {
    Fill(box, node.BackColor());
    if (!node.Bordered()) return;
    const double height = TextHeight(node);
    Box line = box;
    line.top += Whole(std::floor(height / 2));
    Outline(line, kEdge);
    if (node.Text().empty()) return;
    const double x = box.left + PixelsAcross(kTitleIndent);
    const double gap = PixelsAcross(kTitleGap);
    Fill({Whole(x - gap), box.top, Whole(x + TextWidth(node) + gap), line.top + LineWidth()},
         node.BackColor());
    Write(node, x, box.top);
  }

  /// A label without a text is a colour chip.
  void PaintLabel(const Node& node, const Box& box) {
    if (node.Text().empty()) return Fill(box, node.BackColor());
    const std::string_view text = node.Text();
    const std::size_t end = node.BreakBefore().empty()
                                ? text.size()
                                : std::min(text.find(node.BreakBefore()), text.size());
    const double height = TextHeight(node);
    const double lines = end < text.size() ? 2 : 1;
    const double y = box.top + (box.Height() - lines * height) / 2;
    WriteAligned(node, text.substr(0, end), box, y);
    WriteAligned(node, text.substr(end), box, y + height);
  }

  void WriteAligned(const Node& node, std::string_view text, const Box& box, double y) {
    constexpr std::array kShares = {0.0, 0.5, 1.0};
    const double share = kShares[static_cast<std::size_t>(node.Alignment())];
    Write(node, text, box.left + share * (box.Width() - TextWidth(node, text)), y);
  }

  void PaintButton(const Node& node, const Box& box) {
    Fill(box, kButtonFill);
    Outline(box, kEdge);
    Write(node, box.left + (box.Width() - TextWidth(node)) / 2,
          box.top + (box.Height() - TextHeight(node)) / 2);
  }

  /// A small box, filled if it is ticked.
  void PaintTick(double left, double top, bool ticked) {
    const Box box = Pixels(left, top + kTickDrop, {0, 0, kTickSide, kTickSide});
    Fill(box, kWhite);
    Outline(box, kEdge);
    const int margin = std::max(2, box.Width() / 4);
    if (!ticked) return;
    Fill({box.left + margin, box.top + margin, box.right - margin, box.bottom - margin}, kBlack);
  }

  void PaintOptionsOf(const Node& node, double left, double top) {
    PaintFrame(node, Pixels(left, top, node.Box()));
    if (!node.Text().empty()) Write(node, PixelsAcross(left), PixelsDown(top));
    for (std::size_t i = 0; i < node.Options().size(); ++i) {
      const double row = top + kFirstOption + static_cast<double>(i) * kOptionPitch;
      PaintTick(left + kTitleIndent, row, static_cast<std::size_t>(node.Value()) == i);
      Write(node, node.Options()[i], PixelsAcross(left + kTitleIndent + kTickIndent),
            PixelsDown(row));
    }
  }

  void PaintSpinner(const Box& box) {
    Fill(box, kButtonFill);
    Outline(box, kEdge);
    const int middle = (box.top + box.bottom) / 2;
    Fill({box.left, middle, box.right, middle}, kEdge);
    const int centre = (box.left + box.right) / 2;
    const int side = std::max(2, std::min(box.Width(), box.Height() / 2) / 3);
    for (int i = 0; i < side; ++i) {
      Fill({centre - i, middle - side - 1 + i, centre + i, middle - side - 1 + i}, kBlack);
      Fill({centre - i, middle + side + 1 - i, centre + i, middle + side + 1 - i}, kBlack);
    }
  }

  void PaintField(const Node& node, const Box& box) {
    Fill(box, kWhite);
    Outline(box, kEdge);
    Write(node, box.left + PixelsAcross(60), box.top + (box.Height() - TextHeight(node)) / 2);
  }

  /// From the node's corner; its width and height may be negative.
  void PaintLine(const Node& node, double left, double top) {
    const auto pixel = [&](double x, double y) {
      return PixelPoint{Whole(PixelsAcross(x)), Whole(PixelsDown(y)) - options_.top};
    };
    canvas_.Line(pixel(left, top), pixel(left + node.Box().width, top + node.Box().height),
                 {.pixel = PixelOf(node.ForeColor()), .width = LineWidth()});
  }

  /// The pixels of a box that lie on the canvas.
  struct Visible {
    int left, top, right, bottom;
  };
  Visible VisibleOf(const Box& box) const {
    return {std::max(box.left, 0), std::max(box.top, 0), std::min(box.right + 1, canvas_.Width()),
            std::min(box.bottom + 1, canvas_.Height())};
  }

  void Copy(const Canvas& source, const Box& place) {
    const Box box = OnCanvas(place);
    const Visible seen = VisibleOf(box);
    const int width = std::min(seen.right, box.left + source.Width()) - seen.left;
    const int bottom = std::min(seen.bottom, box.top + source.Height());
    if (width <= 0) return;
    const Pixel* from = source.Pixels().data();
    Pixel* to = canvas_.Pixels().data();
    for (std::ptrdiff_t y = seen.top; y < bottom; ++y) {
      std::copy_n(from + (y - box.top) * source.Width() + seen.left - box.left, width,
                  to + y * canvas_.Width() + seen.left);
    }
  }

  void Stretch(const Canvas& source, const Box& place) {
    if (source.Width() == place.Width() && source.Height() == place.Height()) {
      return Copy(source, place);
    }
    if (source.Pixels().empty()) return;
    const Box box = OnCanvas(place);
    const Visible seen = VisibleOf(box);
    const auto scaled = [](int at, int from, int to) {
      return static_cast<std::ptrdiff_t>((at + 0.5) * from / to);
    };
    std::vector<std::ptrdiff_t> columns;
    for (int x = seen.left; x < seen.right; ++x) {
      columns.push_back(scaled(x - box.left, source.Width(), box.Width()));
    }
    const Pixel* from = source.Pixels().data();
    for (int y = seen.top; y < seen.bottom; ++y) {
      const Pixel* row = from + scaled(y - box.top, source.Height(), box.Height()) * source.Width();
      Pixel* to =
          canvas_.Pixels().data() + static_cast<std::ptrdiff_t>(y) * canvas_.Width() + seen.left;
      for (const std::ptrdiff_t column : columns) *to++ = row[column];
    }
  }

  Canvas& canvas_;
  const PaintOptions options_;
};

}  // namespace

void PaintTree(const Node& root, Canvas& canvas, const PaintOptions& options) {
  TreePainter(canvas, options).Paint(root, 0, 0);
}

}  // namespace discoplan
