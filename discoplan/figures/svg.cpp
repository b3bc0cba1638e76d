// SPDX-License-Identifier: MIT
#include "discoplan/figures/svg.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <initializer_list>

namespace discoplan::figures {
namespace {

/// To a hundredth of a point, without trailing zeros.
std::string Number(double value) {
  std::array<char, 40> text;
  std::snprintf(text.data(), text.size(), "%.2f", value);
  std::string shown = text.data();
  while (shown.back() == '0') shown.pop_back();
  if (shown.back() == '.') shown.pop_back();
  return shown == "-0" ? "0" : shown;
}

/// The texts one after the other.
std::string Joined(std::initializer_list<std::string_view> texts) {
  std::string joined;
  for (const std::string_view text : texts) joined += text;
  return joined;
}

std::string Escaped(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    switch (c) {
      case '&':
        escaped += "&amp;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '>':
        escaped += "&gt;";
        break;
      case '"':
        escaped += "&quot;";
        break;
      default:
        // Control characters have no place in XML.
        escaped += static_cast<unsigned char>(c) < 0x20 ? ' ' : c;
    }
  }
  return escaped;
}

/// Spaces that viewers would drop.
bool HasWideGap(std::string_view text) {
  return text.find("  ") != text.npos || text.starts_with(' ') || text.ends_with(' ');
}

std::string Base64(std::span<const std::uint8_t> bytes) {
  static constexpr char kLetters[] =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    const std::size_t count = std::min<std::size_t>(3, bytes.size() - i);
    std::uint32_t word = 0;
    for (std::size_t k = 0; k < 3; ++k) word = word << 8 | (k < count ? bytes[i + k] : 0u);
    for (std::size_t k = 0; k < 4; ++k) {
      text += k <= count ? kLetters[word >> (18 - 6 * k) & 63] : '=';
    }
  }
  return text;
}

/// ` fill="#rrggbb"`, with its opacity.
std::string Paint(std::string_view what, Rgba colour) {
  std::array<char, 16> hex;
  std::snprintf(hex.data(), hex.size(), "#%02x%02x%02x", colour.red, colour.green, colour.blue);
  std::string text = Joined({" ", what, "=\"", hex.data(), "\""});
  if (colour.alpha != 255) {
    text += Joined({" ", what, "-opacity=\"", Number(colour.alpha / 255.0), "\""});
  }
  return text;
}

std::string StrokeText(const Stroke& stroke) {
  if (stroke.width <= 0) return {};
  std::string text =
      Paint("stroke", stroke.colour) + " stroke-width=\"" + Number(stroke.width) + "\"";
  if (stroke.dash > 0) text += Joined({" stroke-dasharray=\"", Number(stroke.dash), "\""});
  return text;
}

class SvgDevice final : public Device {
 public:
  SvgDevice(const Figure& figure, double pixels_per_point, const PngMaker& png)
      : pixels_per_point_(pixels_per_point), png_(png) {
    const std::string width = Number(figure.width);
    const std::string height = Number(figure.height);
    out_ =
        "<svg xmlns=\"http://www.w3.org/2000/svg\" "
        "xmlns:xlink=\"http://www.w3.org/1999/xlink\" width=\"" +
        width + "pt\" height=\"" + height + "pt\" viewBox=\"0 0 " + width + " " + height +
        "\" font-family=\"" + Escaped(figure.font) +
        ", 'Liberation Sans', Helvetica, sans-serif\" stroke-linejoin=\"round\">\n";
    if (!figure.title.empty()) out_ += "<title>" + Escaped(figure.title) + "</title>\n";
    if (figure.background) {
      out_ += "<rect width=\"100%\" height=\"100%\"" + Paint("fill", *figure.background) + "/>\n";
    }
  }

  void Draw(const PathShape& shape) override {
    out_ += "<path d=\"" + PathText(shape.path) + "\"" +
            (shape.fill ? Paint("fill", *shape.fill) : " fill=\"none\"") +
            StrokeText(shape.stroke) + "/>\n";
  }

  void Draw(const DotsShape& shape) override {
    // Dots of round lines without length: a few bytes each.
    const auto dots = [&](double radius, Rgba colour) {
      out_ += "<path d=\"";
      for (const Point p : shape.centres)
        out_ += Joined({"M", Number(p.x), " ", Number(p.y), "h0"});
      out_ += "\" fill=\"none\" stroke-linecap=\"round\" stroke-width=\"" + Number(2 * radius) +
              "\"" + Paint("stroke", colour) + "/>\n";
    };
    if (shape.stroke.width > 0) dots(shape.radius + shape.stroke.width / 2, shape.stroke.colour);
    dots(shape.radius, shape.fill);
  }

  void Draw(const TextShape& shape) override {
    const auto write = [&](const std::string& look) {
      out_ += Joined({"<text x=\"", Number(shape.start.x), "\" y=\"", Number(shape.start.y),
                      "\" font-size=\"", Number(shape.size), "\"",
                      shape.bold ? " font-weight=\"bold\"" : "",
                      HasWideGap(shape.text) ? " xml:space=\"preserve\"" : "", look});
      if (shape.width > 0) {
        out_ +=
            Joined({" textLength=\"", Number(shape.width), "\" lengthAdjust=\"spacingAndGlyphs\""});
      }
      if (shape.angle != 0) {
        out_ += Joined({" transform=\"rotate(", Number(-shape.angle), " ", Number(shape.start.x),
                        " ", Number(shape.start.y), ")\""});
      }
      out_ += Joined({">", Escaped(shape.text), "</text>\n"});
    };
    if (shape.halo > 0) {
      write(" aria-hidden=\"true\" fill=\"none\"" +
            StrokeText({2 * shape.halo, shape.halo_colour, 0}));
    }
    write(Paint("fill", shape.colour));
  }

  void Draw(const ImageShape& shape) override {
    const Box& area = shape.area;
    const double pitch = 1 / pixels_per_point_;
    const PixelGrid grid{area.left, area.top, pitch,
                         std::max(1, static_cast<int>(std::ceil(area.Width() / pitch))),
                         std::max(1, static_cast<int>(std::ceil(area.Height() / pitch)))};
    std::vector<Rgba> pixels(static_cast<std::size_t>(grid.columns) *
                             static_cast<std::size_t>(grid.rows));
    shape.source->Render(grid, pixels);
    std::vector<std::uint32_t> packed;
    for (const Rgba p : pixels) {
      packed.push_back(static_cast<std::uint32_t>(p.alpha) << 24 |
                       static_cast<std::uint32_t>(p.red) << 16 |
                       static_cast<std::uint32_t>(p.green) << 8 | p.blue);
    }
    const std::string name = "outline" + std::to_string(++images_);
    out_ += "<clipPath id=\"" + name + "\"><path d=\"" + PathText(shape.outline) +
            "\"/></clipPath>\n<image clip-path=\"url(#" + name + ")\" x=\"" + Number(area.left) +
            "\" y=\"" + Number(area.top) + "\" width=\"" + Number(grid.columns * pitch) +
            "\" height=\"" + Number(grid.rows * pitch) +
            "\" preserveAspectRatio=\"none\" xlink:href=\"data:image/png;base64," +
            Base64(png_(packed, grid.columns)) + "\"/>\n";
  }

  std::string Take() { return std::move(out_) + "</svg>\n"; }

 private:
  static std::string PathText(const Path& path) {
    std::string text;
    for (const Path::Piece& piece : path.pieces) {
      for (std::size_t i = 0; i < piece.points.size(); ++i) {
        text += Joined({i == 0   ? "M"
                        : i == 1 ? "L"
                                 : " ",
                        Number(piece.points[i].x), " ", Number(piece.points[i].y)});
      }
      if (piece.closed) text += "Z";
    }
    return text;
  }

  double pixels_per_point_;
  const PngMaker& png_;
  int images_ = 0;
  std::string out_;
};

}  // namespace

std::string ToSvg(const Figure& figure, double pixels_per_point, const PngMaker& png) {
  SvgDevice device(figure, pixels_per_point, png);
  Draw(figure, device);
  return device.Take();
}

}  // namespace discoplan::figures
