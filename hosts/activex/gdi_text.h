// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <memory>
#include <tuple>

#include "discoplan/raster/text_painter.h"
#include "hosts/activex/com.h"

namespace discoplan::activex {

/// The system's font; the caller deletes it.
HFONT NewFont(const Font& font, double pixels_per_point);

/// What the font shows for the text; sigma for "s" in that of symbols.
std::wstring LettersOf(const Font& font, std::string_view text);

/// Text by the system's own fonts, smooth without colours. Fonts are kept from text to text; one
/// thread uses them.
class GdiText final : public TextPainter {
 public:
  GdiText();
  ~GdiText() override;

  double Width(const Font& font, double pixels_per_point, std::string_view text) const override;
  double Height(const Font& font, double pixels_per_point) const override;
  void Paint(Canvas& canvas, const Font& font, const TextPlacement& placement,
             std::string_view text) const override;

 private:
  class FontDevice;
  using Look = std::tuple<std::string, LONG, bool, bool>;  // name, height, bold, underline
  const FontDevice& DeviceOf(const Font& font, double pixels_per_point) const;

  mutable std::map<Look, std::unique_ptr<FontDevice>> devices_;
};

}  // namespace discoplan::activex
