// SPDX-License-Identifier: MIT
#pragma once

/// A printer's surface of vectors, where texts stay texts and cells become one shape for each
/// colour: `figures::FigurePaper` everywhere, `qt::QtPaper` on Qt's painter.
///
/// Lengths are twips until `ScaleMode` is set to pixels, which are those of the device.

#include "discoplan/base/numbers.h"
#include "discoplan/export.h"
#include "discoplan/render/plot_area.h"
#include "discoplan/render/surface.h"

namespace discoplan {

class DISCOPLAN_EXPORT VectorPaper : public Surface {
 public:
  /// Counts the positions of what follows from there, in twips from the corner of the page, and
  /// draws it in that scale, texts too.
  virtual void Origin(const SurfacePoint& twips, double scale = 1) = 0;
  /// Keeps what follows within a rectangle in twips, until the next call.
  virtual void ClipTo(const PlotArea& twips) = 0;
  virtual void Unclip() = 0;

  Kind kind() const override { return Kind::Printer; }
  /// There is no way to clear paper; raises `RunTimeError`, as do `Refresh` and `FloodFill`.
  void Cls() override { numbers_detail::Raise(Fault::MemberNotOffered); }
  void Refresh() override { numbers_detail::Raise(Fault::MemberNotOffered); }
  void FloodFill(PixelPoint, Colour) override { numbers_detail::Raise(Fault::MemberNotOffered); }
};

}  // namespace discoplan
