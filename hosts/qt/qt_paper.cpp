// SPDX-License-Identifier: MIT
#include "hosts/qt/qt_paper.h"

#include <QFontMetricsF>
#include <QPaintDevice>
#include <QPainterPath>
#include <algorithm>
#include <cmath>
#include <numbers>

#include "discoplan/base/numbers.h"
#include "discoplan/raster/picture.h"
#include "discoplan/raster/symbol_letters.h"

namespace discoplan::qt {
namespace {

constexpr std::int16_t kNoOutline = 5;

Screen ResolutionOf(const QPaintDevice& device) {
  return {static_cast<float>(kTwipsPerInch / device.logicalDpiX()),
          static_cast<float>(kTwipsPerInch / device.logicalDpiY())};
}

QPolygonF PolygonOf(std::span<const PixelPoint> points) {
  QPolygonF polygon;
  for (const PixelPoint& point : points) polygon.append(QPointF(point.x, point.y));
  return polygon;
}

}  // namespace

QColor ColourOf(Colour colour) { return QColor::fromRgb(PixelOf(colour)); }

QFont ToQFont(const discoplan::Font& font) {
  const bool is_symbol = font.name == kSymbolFont;
  QFont result;
  result.setFamilies({is_symbol ? QStringLiteral("Arial") : QString::fromStdString(font.name),
                      QStringLiteral("Liberation Sans"), QStringLiteral("Arial"),
                      QStringLiteral("Helvetica")});
  result.setStyleHint(QFont::SansSerif);
  result.setPointSizeF(std::max(1.0, static_cast<double>(font.size)));
  result.setBold(font.bold);
  result.setUnderline(font.underline);
  return result;
}

QString ToQString(std::string_view text, const discoplan::Font& font) {
  const QString plain = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
  if (font.name != kSymbolFont) return plain;
  QString greek;
  for (const char32_t character : plain.toStdU32String()) {
    const char32_t letter = SymbolLetter(character);
    greek += QString::fromUcs4(&letter, 1);
  }
  return greek;
}

QtPaper::QtPaper(QPainter& painter, const Screen& screen)
    : painter_(painter), screen_(screen), resolution_(ResolutionOf(*painter.device())) {
  painter_.setRenderHint(QPainter::Antialiasing);
  state_.scale_mode = kTwips;
  state_.width = static_cast<float>(painter.device()->width()) * resolution_.twips_per_pixel_x;
  state_.height = static_cast<float>(painter.device()->height()) * resolution_.twips_per_pixel_y;
  TakeScale();
}

void QtPaper::TakeScale() {
  state_.scale_width = state_.width / (InTwips() ? 1 : TwipsPerPixelX());
  state_.scale_height = state_.height / (InTwips() ? 1 : TwipsPerPixelY());
}

void QtPaper::StateWritten(SurfaceState which) {
  if (which == SurfaceState::ScaleMode) TakeScale();
}

QPointF QtPaper::Pixel(const SurfacePoint& point) const {
  return {point.x * PixelsPerUnitX(), point.y * PixelsPerUnitY()};
}

QPen QtPaper::PenOf(std::optional<Colour> colour) const {
  if (state_.draw_style == kNoOutline) return Qt::NoPen;
  const int width = std::max<int>(1, state_.draw_width);
  return {ColourOf(colour.value_or(state_.fore_color)), static_cast<double>(width), Qt::SolidLine,
          Qt::RoundCap, Qt::RoundJoin};
}

QBrush QtPaper::BrushOf() const {
  return state_.fill_style == 0 ? QBrush(ColourOf(state_.fill_color)) : QBrush(Qt::NoBrush);
}

QFont QtPaper::FontOf() const { return ToQFont(state_.font); }

QString QtPaper::TextOf(std::string_view text) const { return ToQString(text, state_.font); }

void QtPaper::Finish() {
  if (cells_.empty()) return;
  const std::vector<ColourCell> cells = std::exchange(cells_, {});
  for (const ColourRegion& region : MergeCells(cells)) {
    QPainterPath path;
    path.setFillRule(Qt::OddEvenFill);
    for (const auto& outline : region.outlines) {
      path.addPolygon(PolygonOf(outline));
      path.closeSubpath();
    }
    painter_.fillPath(path, ColourOf(region.colour));
  }
}

void QtPaper::Origin(const SurfacePoint& twips, double scale) {
  Painter().setTransform(QTransform::fromTranslate(twips.x / resolution_.twips_per_pixel_x,
                                                   twips.y / resolution_.twips_per_pixel_y)
                             .scale(scale, scale));
}

void QtPaper::ClipTo(const PlotArea& twips) {
  const float across = resolution_.twips_per_pixel_x;
  const float down = resolution_.twips_per_pixel_y;
  Painter().setClipRect(
      QRectF(twips.left / across, twips.top / down, twips.width / across, twips.height / down));
}

void QtPaper::Unclip() { Painter().setClipping(false); }

QPainter& QtPaper::Painter() {
  Finish();
  return painter_;
}

/// A filled rectangle without outline waits for its neighbours.
bool QtPaper::TakeCell(std::span<const PixelPoint> points) {
  const std::optional<ColourCell> cell = CellOf(points, *this);
  if (!cell) return false;
  if (!cell->IsEmpty()) cells_.push_back(*cell);
  return true;
}

void QtPaper::Polygon(std::span<const PixelPoint> points) {
  if (TakeCell(points)) return;
  QPainter& painter = Painter();
  painter.setPen(PenOf({}));
  painter.setBrush(BrushOf());
  painter.drawPolygon(PolygonOf(points), Qt::OddEvenFill);
}

void QtPaper::DrawLine(const LineCall& call) {
  QPainter& painter = Painter();
  const QPointF from = Pixel(call.from.value_or(state_.current));
  const QPointF to = Pixel(call.to);
  const QPen pen = PenOf(call.colour);
  if (call.shape == LineShape::Line) {
    painter.setPen(pen);
    painter.drawLine(from, to);
    return;
  }
  const QRectF box = QRectF(from, to).normalized();
  if (call.shape == LineShape::FilledBox) {
    // Both corners belong to it: without extent it is a line one pixel wide.
    painter.fillRect(box.adjusted(0, 0, 1, 1), ColourOf(call.colour.value_or(state_.fore_color)));
    return;
  }
  painter.setPen(pen);
  painter.setBrush(Qt::NoBrush);
  painter.drawRect(box);
}

void QtPaper::Circle(const CircleCall& call) {
  const double across = call.radius * PixelsPerUnitX();
  const double down = across * call.aspect.value_or(1.0F);
  if (!(across >= 0) || !(down >= 0)) return;
  QPainter& painter = Painter();
  const QPointF centre = Pixel(call.centre);
  painter.setPen(PenOf(call.colour));
  if (!call.start || !call.end) {
    painter.setBrush(BrushOf());
    painter.drawEllipse(centre, across, down);
    return;
  }
  const auto degrees = [](double radians) { return radians * 180 / std::numbers::pi; };
  double sweep = std::fmod(degrees(*call.end) - degrees(*call.start), 360);
  if (sweep <= 0) sweep += 360;
  const QRectF box(centre.x() - across, centre.y() - down, 2 * across, 2 * down);
  QPainterPath path;
  path.arcMoveTo(box, degrees(*call.start));
  path.arcTo(box, degrees(*call.start), sweep);
  painter.setBrush(Qt::NoBrush);
  painter.drawPath(path);
}

void QtPaper::Print(std::string_view text) {
  QPainter& painter = Painter();
  const QFont font = FontOf();
  painter.setFont(font);
  painter.setPen(ColourOf(state_.fore_color));
  const QPointF corner = Pixel(state_.current);
  const double ascent = QFontMetricsF(font, painter.device()).ascent();
  painter.drawText(QPointF(corner.x(), corner.y() + ascent), TextOf(text));
}

float QtPaper::TextWidth(std::string_view text) const {
  const QFontMetricsF metrics(FontOf(), painter_.device());
  return static_cast<float>(metrics.horizontalAdvance(TextOf(text)) / PixelsPerUnitX());
}

float QtPaper::TextHeight(std::string_view) const {
  const QFontMetricsF metrics(FontOf(), painter_.device());
  return static_cast<float>((metrics.ascent() + metrics.descent()) / PixelsPerUnitY());
}

}  // namespace discoplan::qt
