// SPDX-License-Identifier: MIT
#pragma once

#include "discoplan/base/numbers.h"
#include "discoplan/render/surface.h"

namespace discoplan {

// Twips as pixels of a surface: a printer has a resolution of its own, any other the screen's.
// A surface that doesn't tell it raises, as does a resolution of 0.

inline double PixelsAcross(const Surface& surface, double twips) {
  return Divide(twips,
                surface.IsPrinter() ? surface.TwipsPerPixelX() : surface.ScreenTwipsPerPixelX());
}

inline double PixelsDown(const Surface& surface, double twips) {
  return Divide(twips,
                surface.IsPrinter() ? surface.TwipsPerPixelY() : surface.ScreenTwipsPerPixelY());
}

}  // namespace discoplan
