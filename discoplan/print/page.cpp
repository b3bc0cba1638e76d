// SPDX-License-Identifier: MIT
#include "discoplan/print/page.h"

#include <array>

#include "discoplan/base/angles.h"
#include "discoplan/base/numbers.h"
#include "discoplan/core/wafer.h"
#include "discoplan/raster/symbol_letters.h"
#include "discoplan/render/number_text.h"

namespace discoplan {
namespace {

constexpr Colour kFrameColour = 0x404040;

bool ContinuesCharacter(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

void DropFirst(std::string& text) {
  std::size_t end = 1;
  while (end < text.size() && ContinuesCharacter(text[end])) ++end;
  text.erase(0, end);
}

void DropLast(std::string& text) {
  while (text.size() > 1 && ContinuesCharacter(text.back())) text.pop_back();
  text.pop_back();
}

/// Shortens the text until its measure is no more than the width.
template <class Measure, class Shorten>
double Fit(std::string& text, double width, Measure measure, Shorten shorten) {
  for (;;) {
    const double needed = measure(text);
    if (!(needed > width)) return needed;
    if (text.empty()) throw RunTimeError(Fault::InvalidCall, "a text doesn't fit at all");
    shorten(text);
  }
}

/// The outline in pixels; angle 0 points down the page.
struct Glyph {
  double x;
  double y;
  double radius;
  double flattening;

  SurfacePoint At(double degrees, double distance) const {
    return {ToFloat(x + distance * Sine(Radians(degrees))),
            ToFloat(y + distance * flattening * Cosine(Radians(degrees)))};
  }
};

PixelPoint Rounded(const SurfacePoint& point) { return {ToInt32(point.x), ToInt32(point.y)}; }

void RubOut(Surface& printer, std::span<const PixelPoint> corners) {
  printer.ForeColor(kWhite);
  printer.FillColor(kWhite);
  printer.FillStyle(0);
  printer.Polygon(corners);
}

void MarkNotch(Surface& printer, const Glyph& glyph, double rotation) {
  const double beyond = glyph.radius + glyph.radius / 3;
  const PixelPoint right = Rounded(glyph.At(rotation + 10, beyond));
  const PixelPoint left = Rounded(glyph.At(rotation - 10, beyond));
  const SurfacePoint tip = glyph.At(rotation, 0.8 * glyph.radius);
  RubOut(printer, std::array<PixelPoint, 5>{right, Rounded(tip), left, left, {right.x, left.y}});
  for (const double side : {10.0, -10.0}) {
    printer.Line({.from = glyph.At(rotation + side, glyph.radius), .to = tip, .colour = kLightRed});
  }
}

void MarkFlat(Surface& printer, const Glyph& glyph, double rotation) {
  const double beyond = glyph.radius + glyph.radius / 4;
  const SurfacePoint right = glyph.At(rotation + 35, glyph.radius);
  const SurfacePoint left = glyph.At(rotation - 35, glyph.radius);
  RubOut(printer, std::array<PixelPoint, 4>{Rounded(right), Rounded(left),
                                            Rounded(glyph.At(rotation - 35, beyond)),
                                            Rounded(glyph.At(rotation + 35, beyond))});
  printer.Line({.from = right, .to = left, .colour = kLightRed});
}

}  // namespace

TextPlace::TextPlace(double x_in, double y_in, double width_in, int colour_in)
    : x(ToFloat(x_in)), y(ToFloat(y_in)), width(ToFloat(width_in)), colour(colour_in) {}

std::string FormatNonZero(double value, const std::string& picture) {
  return FormatTrimmed(ToFloat(value), picture);
}

std::int16_t Page::LineWidth(int on_printer, int otherwise) const {
  return static_cast<std::int16_t>(printer_.IsPrinter() ? on_printer : otherwise);
}

float Page::TwipsPerPixelX() const {
  return printer_.IsPrinter() ? printer_.TwipsPerPixelX() : printer_.ScreenTwipsPerPixelX();
}

float Page::TwipsPerPixelY() const {
  return printer_.IsPrinter() ? printer_.TwipsPerPixelY() : printer_.ScreenTwipsPerPixelY();
}

void Page::ResetPrinterObj() {
  printer_.FontName("Arial");
  printer_.FontSize(8);
  printer_.FontTransparent(true);
  printer_.ScaleMode(Surface::kTwips);
  printer_.DrawWidth(1);
  printer_.DrawStyle(0);
  printer_.FillStyle(0);
  printer_.FillColor(kWhite);
  printer_.ForeColor(kBlack);
}

void Page::Print(const std::string& text, double x, double y) {
  printer_.CurrentX(ToFloat(x));
  printer_.CurrentY(ToFloat(y));
  printer_.Print(text);
}

void Page::DrawTitledFrame(const std::string& caption, float left, float top, float width,
                           float height) {
  ResetPrinterObj();
  printer_.ScaleMode(Surface::kTwips);
  const double text_width = printer_.TextWidth(caption);
  const double text_height = printer_.TextHeight(caption);
  printer_.DrawWidth(LineWidth(3, 2));
  const float edge = ToFloat(top + text_height);
  const float bottom = ToFloat(static_cast<double>(top) + height + text_height);
  const float right = ToFloat(static_cast<double>(left) + width);
  const SurfacePoint begin = {ToFloat(left + 100.0), edge};
  printer_.Line({.from = begin, .to = {left, edge}, .colour = kFrameColour});
  for (const SurfacePoint& corner :
       {SurfacePoint{left, bottom}, SurfacePoint{right, bottom}, SurfacePoint{right, edge},
        SurfacePoint{ToFloat(left + text_width + 200), edge}}) {
    printer_.Line({.from = {}, .to = corner, .colour = kFrameColour});
  }
  printer_.CurrentX(ToFloat(left + 150.0));
  printer_.CurrentY(ToFloat(top + text_height / 2));
  if (!caption.empty()) printer_.Print(caption);
  ResetPrinterObj();
}

void Page::PrintClippedText(std::string& text, const TextPlace& place) {
  const auto measure = [&](const std::string& part) { return printer_.TextWidth(part); };
  Fit(text, place.width, measure, DropLast);
  printer_.ForeColor(kPalette[place.colour]);
  printer_.FontTransparent(true);
  printer_.DrawStyle(0);
  Print(text, place.x, place.y);
}

void Page::PrintRightText(std::string& text, const TextPlace& place) {
  const auto measure = [&](const std::string& part) { return printer_.TextWidth(part); };
  const double width = Fit(text, place.width, measure, DropFirst);
  printer_.ForeColor(kPalette[place.colour]);
  printer_.FontTransparent(true);
  Print(text, place.x - width, place.y);
}

void Page::PrintCenteredText(std::string& text, const TextPlace& place) {
  const auto measure = [&](const std::string& part) { return ToInt16(printer_.TextWidth(part)); };
  const double width = Fit(text, ToInt16(place.width), measure, [](std::string& part) {
    DropFirst(part);
    if (!part.empty()) DropLast(part);
  });
  printer_.ForeColor(kPalette[place.colour]);
  printer_.FontTransparent(true);
  Print(text, ToInt16(place.x - width / 2), place.y);
}

void Page::PrintSigmaGlyph(float x, float y, int colour) {
  const Font kept = printer_.Font();
  printer_.Font({.name = kSymbolFont, .size = 14});
  printer_.DrawStyle(0);
  printer_.ForeColor(kPalette[colour]);
  Print("s", x, y - printer_.TextHeight("s") / 4.0);
  printer_.Font(kept);
}

void Page::DrawStyleBlock(float x, float y, const GlyphView& view) {
  DrawTitledFrame(view.flat_ratio == 1.0F ? "Notch" : "Flat", x, y, 975, 1095);
  DrawFlatNotchGlyph(ToFloat(x + 488.0), ToFloat(y + 800.0), 350, view);
}

void Page::DrawFlatNotchGlyph(float x, float y, float radius, const GlyphView& view) {
  ResetPrinterObj();
  printer_.ScaleMode(Surface::kPixels);
  printer_.DrawWidth(LineWidth(2, 1));
  const Glyph glyph = {.x = ToFloat(Divide(x, TwipsPerPixelX())),
                       .y = ToFloat(Divide(y, TwipsPerPixelY())),
                       .radius = ToFloat(Divide(radius, TwipsPerPixelX())),
                       .flattening = Sine(Radians(view.inclination))};
  printer_.ForeColor(kBlack);
  printer_.FillColor(kWhite);
  printer_.Circle({.centre = {ToFloat(glyph.x), ToFloat(glyph.y)},
                   .radius = ToFloat(glyph.radius),
                   .aspect = ToFloat(glyph.flattening)});
  (view.flat_ratio == 1.0F ? MarkNotch : MarkFlat)(printer_, glyph, view.rotation);
  ResetPrinterObj();
}

}  // namespace discoplan
