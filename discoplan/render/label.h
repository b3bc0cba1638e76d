// SPDX-License-Identifier: MIT
#pragma once

/// What the legends write to: a child of a control that shows a text or a colour.

#include <string>

#include "discoplan/export.h"
#include "discoplan/platform/variant.h"

namespace discoplan {

class DISCOPLAN_EXPORT Label {
 public:
  virtual ~Label() = default;

  virtual void caption(const std::string& text) = 0;
  virtual void Visible(bool visible) = 0;
  virtual void BackColor(Colour colour) = 0;
};

}  // namespace discoplan
