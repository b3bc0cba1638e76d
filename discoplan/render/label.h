// SPDX-License-Identifier: MIT
#pragma once

/// What plots write to beside a surface: children of a control that show a text, a colour or a
/// place.

#include <string>

#include "discoplan/base/variant.h"
#include "discoplan/export.h"
#include "discoplan/render/surface.h"

namespace discoplan {

class DISCOPLAN_EXPORT Label {
 public:
  virtual ~Label() = default;

  virtual void caption(const std::string& text) = 0;
  virtual void Visible(bool visible) = 0;
  virtual void BackColor(Colour colour) = 0;
};

/// Shows a cut on the picture of a wafer.
class DISCOPLAN_EXPORT Marker {
 public:
  virtual ~Marker() = default;

  /// In the picture's units. The marker's middle comes to lie on the end of the cut.
  virtual void Move(const SurfacePoint& begin, const SurfacePoint& end) = 0;
  virtual void Visible(bool visible) = 0;
};

}  // namespace discoplan
