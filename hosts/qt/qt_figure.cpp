// SPDX-License-Identifier: MIT
#include "hosts/qt/qt_figure.h"

#include <QFontMetricsF>
#include <QImage>
#include <QPainterPath>
#include <algorithm>
#include <cmath>

#include "discoplan/figures/image_rows.h"

namespace discoplan::qt {
namespace {

using figures::DotsShape;
using figures::ImageShape;
using figures::PathShape;
using figures::PixelGrid;
using figures::Point;
using figures::Rgba;
using figures::Stroke;
using figures::TextShape;

/// Letters are set this large and scaled down, so that no hinting moves them.
constexpr int kLetterPixels = 200;

QColor ColourOf(Rgba colour) { return {colour.red, colour.green, colour.blue, colour.alpha}; }

QFont FontOf(const std::string& name, bool bold) {
  QFont font(QString::fromStdString(name));
  font.setPixelSize(kLetterPixels);
  font.setBold(bold);
  font.setHintingPreference(QFont::PreferNoHinting);
  return font;
}

QString TextOf(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QPainterPath PathOf(const figures::Path& path) {
  QPainterPath made;
  made.setFillRule(Qt::WindingFill);
  for (const auto& piece : path.pieces) {
    for (std::size_t i = 0; i < piece.points.size(); ++i) {
      const QPointF at(piece.points[i].x, piece.points[i].y);
      i == 0 ? made.moveTo(at) : made.lineTo(at);
    }
    if (piece.closed) made.closeSubpath();
  }
  return made;
}

QPen PenOf(const Stroke& stroke) {
  if (stroke.width <= 0) return {Qt::NoPen};
  QPen pen(ColourOf(stroke.colour), stroke.width, Qt::SolidLine, Qt::FlatCap, Qt::RoundJoin);
  // Dashes count in widths of the line.
  if (stroke.dash > 0) {
    pen.setDashPattern({stroke.dash / stroke.width, stroke.dash / stroke.width});
  }
  return pen;
}

class PainterDevice final : public figures::Device {
 public:
  PainterDevice(QPainter& painter, const figures::Figure& figure, double pixels_per_point)
      : painter_(painter), font_(figure.font), pixels_per_point_(pixels_per_point) {}

  void Draw(const PathShape& shape) override {
    painter_.setPen(PenOf(shape.stroke));
    painter_.setBrush(shape.fill ? QBrush(ColourOf(*shape.fill)) : QBrush(Qt::NoBrush));
    painter_.drawPath(PathOf(shape.path));
  }

  void Draw(const DotsShape& shape) override {
    const auto discs = [&](double radius, Rgba colour) {
      painter_.setPen(Qt::NoPen);
      painter_.setBrush(ColourOf(colour));
      for (const Point p : shape.centres) painter_.drawEllipse(QPointF(p.x, p.y), radius, radius);
    };
    if (shape.stroke.width > 0) discs(shape.radius + shape.stroke.width / 2, shape.stroke.colour);
    discs(shape.radius, shape.fill);
  }

  void Draw(const TextShape& shape) override {
    const double scale = shape.size / kLetterPixels;
    const QFont font = FontOf(font_, shape.bold);
    painter_.save();
    painter_.translate(shape.start.x, shape.start.y);
    painter_.rotate(-shape.angle);
    painter_.scale(scale, scale);
    if (shape.halo > 0) {
      QPainterPath letters;
      letters.addText(0, 0, font, TextOf(shape.text));
      painter_.setBrush(Qt::NoBrush);
      painter_.setPen(QPen(ColourOf(shape.halo_colour), 2 * shape.halo / scale, Qt::SolidLine,
                           Qt::FlatCap, Qt::RoundJoin));
      painter_.drawPath(letters);
    }
    painter_.setPen(ColourOf(shape.colour));
    painter_.setFont(font);
    painter_.drawText(QPointF(0, 0), TextOf(shape.text));
    painter_.restore();
  }

  void Draw(const ImageShape& shape) override {
    figures::ImageRows rows(*shape.source, GridOver(shape, pixels_per_point_));
    const PixelGrid& grid = rows.Grid();
    QImage image(grid.columns, grid.rows, QImage::Format_ARGB32);
    for (int row = 0; row < grid.rows; ++row) {
      auto* line = reinterpret_cast<QRgb*>(image.scanLine(row));
      for (const Rgba p : rows.At(row)) *line++ = qRgba(p.red, p.green, p.blue, p.alpha);
    }
    // A brush has the soft edge that a clip doesn't.
    QBrush brush(image);
    brush.setTransform(QTransform(grid.pitch, 0, 0, grid.pitch, grid.left, grid.top));
    painter_.setPen(Qt::NoPen);
    painter_.setBrush(brush);
    painter_.drawPath(PathOf(shape.outline));
  }

 private:
  QPainter& painter_;
  const std::string& font_;
  double pixels_per_point_;
};

}  // namespace

double QtFigureText::Width(std::string_view text, double size, bool bold) const {
  return QFontMetricsF(FontOf(font_, bold)).horizontalAdvance(TextOf(text)) * size / kLetterPixels;
}

void PaintFigure(QPainter& painter, const figures::Figure& figure, const QRectF& place) {
  if (figure.width <= 0 || figure.height <= 0) return;
  const double scale = std::min(place.width() / figure.width, place.height() / figure.height);
  if (!(scale > 0)) return;
  painter.save();
  painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing |
                         QPainter::SmoothPixmapTransform);
  painter.translate(place.center() - QPointF(figure.width, figure.height) * (scale / 2));
  painter.scale(scale, scale);
  if (figure.background) {
    painter.fillRect(QRectF(0, 0, figure.width, figure.height), ColourOf(*figure.background));
  }
  // Pixels of the device, whatever stands between it and the figure; paper has more than are seen.
  const QTransform to_device = painter.deviceTransform();
  const double pixels = std::min(std::hypot(to_device.m11(), to_device.m12()), 300.0 / 72);
  PainterDevice device(painter, figure, pixels);
  figures::Draw(figure, device);
  painter.restore();
}

}  // namespace discoplan::qt
