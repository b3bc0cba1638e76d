// SPDX-License-Identifier: MIT
#pragma once

/// Writes a wafer's statistics and size under a plot that stands in a picture.
///
///     viewbitmap panel;
///     panel.BitmapObj(&picture);
///     panel.WaferObj(&lot_wafer);
///     panel.DrawWaferData();
///
/// The picture grows downward and keeps what it shows; each call adds again. Lengths are 16-bit
/// twips: a picture higher than 32767 raises `Overflow`. Without picture or wafer `ObjectNotSet`.

#include "discoplan/core/wafer.h"
#include "discoplan/print/information.h"
#include "discoplan/raster/picture.h"

namespace discoplan {

class DISCOPLAN_EXPORT viewbitmap {
 public:
  void BitmapObj(Picture* picture) { picture_ = picture; }
  void WaferObj(const wafer* source) { wafer_ = source; }

  void DrawWaferData();
  /// Twips, and the usual state of drawing; the font stays.
  void Resetbitobj();
  void DrawRemarksPanel(std::int16_t x, std::int16_t y);

 private:
  void DrawSizePanel(std::int16_t x, std::int16_t y);
  void DrawStatisticsPanel(std::int16_t x, std::int16_t y);
  struct Panel {
    const char* title;
    InformationRows rows;
    NumberFormat format;
  };

  void DrawPanel(const Panel& panel, std::int16_t x, std::int16_t y);
  void PutClippedText(std::string text, int x, int y, int width);
  Picture& BitmapOrRaise() const;
  const wafer& WaferOrRaise() const;

  Picture* picture_ = nullptr;
  const wafer* wafer_ = nullptr;
};

}  // namespace discoplan
