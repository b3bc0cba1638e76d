// SPDX-License-Identifier: MIT
#pragma once

#include "discoplan/raster/text_painter.h"
#include "hosts/qt/export.h"

namespace discoplan::qt {

/// Text on pictures by Qt's fonts. It has no state: any thread may use it, where Qt's fonts may be.
class DISCOPLAN_QT_EXPORT QtText final : public TextPainter {
 public:
  double Width(const Font& font, double pixels_per_point, std::string_view text) const override;
  double Height(const Font& font, double pixels_per_point) const override;
  void Paint(Canvas& canvas, const Font& font, const TextPlacement& placement,
             std::string_view text) const override;
};

}  // namespace discoplan::qt
