// SPDX-License-Identifier: MIT
#include "hosts/qt/qt_text.h"

#include <QFontMetricsF>
#include <QImage>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "discoplan/raster/canvas.h"
#include "hosts/qt/qt_paper.h"

namespace discoplan::qt {
namespace {

constexpr double kPointsPerMetre = 72 / 0.0254;
constexpr double kFarthest = 1e6;  // pixels from the canvas's corner

void SetResolution(QImage& image, double pixels_per_point) {
  const int dots = std::max(1, qRound(pixels_per_point * kPointsPerMetre));
  image.setDotsPerMeterX(dots);
  image.setDotsPerMeterY(dots);
}

QFontMetricsF MetricsOf(const Font& font, double pixels_per_point) {
  QImage device(1, 1, QImage::Format_RGB32);
  SetResolution(device, pixels_per_point);
  return QFontMetricsF(ToQFont(font), &device);
}

}  // namespace

double QtText::Width(const Font& font, double pixels_per_point, std::string_view text) const {
  return MetricsOf(font, pixels_per_point).horizontalAdvance(ToQString(text, font));
}

double QtText::Height(const Font& font, double pixels_per_point) const {
  const QFontMetricsF metrics = MetricsOf(font, pixels_per_point);
  return metrics.ascent() + metrics.descent();
}

void QtText::Paint(Canvas& canvas, const Font& font, const TextPlacement& placement,
                   std::string_view text) const {
  if (!(std::abs(placement.x) < kFarthest) || !(std::abs(placement.y) < kFarthest)) return;
  if (canvas.Pixels().empty() || text.empty()) return;
  QImage image(reinterpret_cast<uchar*>(canvas.Pixels().data()), canvas.Width(), canvas.Height(),
               QImage::Format_RGB32);
  SetResolution(image, placement.pixels_per_point);
  QPainter painter(&image);
  painter.setFont(ToQFont(font));
  painter.setPen(ColourOf(placement.colour));
  const double ascent = QFontMetricsF(painter.font(), &image).ascent();
  painter.drawText(QPointF(placement.x, placement.y + ascent - placement.canvas_top),
                   ToQString(text, font));
}

}  // namespace discoplan::qt
