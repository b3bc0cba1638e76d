// SPDX-License-Identifier: MIT
#pragma once

/// Figures on Qt's painter: widgets, printers, PDF, pictures.
///
///     void MapView::paintEvent(QPaintEvent*) {
///       QPainter painter(this);
///       qt::PaintFigure(painter, figure_, rect());
///     }
///     const figures::Figure figure = figures::MakeFigure(kind, plot, style,
///     qt::QtFigureText("Arial"));

#include <QPainter>
#include <string>

#include "discoplan/figures/shapes.h"
#include "hosts/qt/export.h"

namespace discoplan::qt {

/// Measures as the painter sets text: letters scale with their size.
class DISCOPLAN_QT_EXPORT QtFigureText final : public figures::TextMeasure {
 public:
  explicit QtFigureText(std::string font) : font_(std::move(font)) {}
  double Width(std::string_view text, double size, bool bold) const override;

 private:
  std::string font_;
};

/// As large as it fits into `place`, which is in the painter's units, and in its middle; the
/// background too. The image of values is as fine as the device. The painter's state is restored.
DISCOPLAN_QT_EXPORT void PaintFigure(QPainter& painter, const figures::Figure& figure,
                                     const QRectF& place);

}  // namespace discoplan::qt
