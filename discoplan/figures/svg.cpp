// SPDX-License-Identifier: MIT
#include "discoplan/figures/svg.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <initializer_list>

#include "discoplan/figures/image_rows.h"

namespace discoplan::figures {
namespace {

/// To a hundredth of a point, without trailing zeros.
std::string Number(double value) {
  constexpr double kMost = 1e9;  // beyond any page
  std::array<char, 16> text;
  char* first = text.data() + text.size();
  const auto put = [&first](char c) { *--first = c; };
  auto number = std::llround(std::abs(value) < kMost ? std::abs(value) * 100 : kMost * 100);
  const bool is_negative = value < 0 && number > 0;
  bool is_whole = true;
  for (int k = 0; k < 2; ++k, number /= 10) {
    is_whole = is_whole && number % 10 == 0;
    if (!is_whole) put(static_cast<char>('0' + number % 10));
  }
  if (!is_whole) put('.');
  do put(static_cast<char>('0' + number % 10));
  while ((number /= 10) > 0);
  if (is_negative) put('-');
  return {first, text.data() + text.size()};
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

void AppendBase64(std::span<const std::uint8_t> bytes, std::string& text) {
  static constexpr char kLetters[] =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  const std::size_t start = text.size();
  text.resize(start + (bytes.size() + 2) / 3 * 4, '=');
  char* next = text.data() + start;
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    const std::size_t count = std::min<std::size_t>(3, bytes.size() - i);
    std::uint32_t word = 0;
    for (std::size_t k = 0; k < 3; ++k) word = word << 8 | (k < count ? bytes[i + k] : 0u);
    for (std::size_t k = 0; k <= count; ++k) next[k] = kLetters[word >> (18 - 6 * k) & 63];
    next += 4;
  }
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
    ImageRows rows(*shape.source, GridOver(shape, pixels_per_point_));
    const PixelGrid& grid = rows.Grid();
    std::vector<std::uint32_t> packed(static_cast<std::size_t>(grid.columns));
    // What isn't there is outside the outline and never seen: its pixels are as their neighbours,
    // so that there are no more colours than the image has.
    Rgba seen = {};
    const auto row_at = [&](int row) {
      const std::span<const Rgba> pixels = rows.At(row);
      if (row == 0) {
        const auto first = std::find_if(pixels.begin(), pixels.end(),
                                        [](const Rgba& pixel) { return pixel.alpha != 0; });
        if (first != pixels.end()) seen = *first;
      }
      for (std::size_t i = 0; i < pixels.size(); ++i) {
        if (pixels[i].alpha != 0) seen = pixels[i];
        packed[i] =
            0xFF000000 | static_cast<std::uint32_t>(seen.red << 16 | seen.green << 8) | seen.blue;
      }
      return std::span<const std::uint32_t>(packed);
    };
    const std::string name = "outline" + std::to_string(++images_);
    out_ += "<clipPath id=\"" + name + "\"><path d=\"" + PathText(shape.outline) +
            "\"/></clipPath>\n<image clip-path=\"url(#" + name + ")\" x=\"" + Number(area.left) +
            "\" y=\"" + Number(area.top) + "\" width=\"" + Number(grid.columns * grid.pitch) +
            "\" height=\"" + Number(grid.rows * grid.pitch) +
            "\" preserveAspectRatio=\"none\" xlink:href=\"data:image/png;base64,";
    AppendBase64(png_({grid.columns, grid.rows, row_at}), out_);
    out_ += "\"/>\n";
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
