// SPDX-License-Identifier: MIT
#pragma once

/// Shows a tree of child surfaces on a canvas, for hosts without widgets.

#include "discoplan/forms/node.h"
#include "discoplan/platform/screen.h"
#include "discoplan/raster/canvas.h"
#include "discoplan/raster/text_painter.h"

namespace discoplan {

struct PaintOptions {
  const Screen& resolution;
  const TextPainter& text;
  bool buttons = true;  ///< And spinners: a picture for paper has nothing to press.
  int top = 0;          ///< The row that is the canvas's first, for a picture made in strips.
};

/// Paints the node and all that is visible in it, its upper left corner `top` rows above that of
/// the canvas. Strips together have the pixels of the whole.
DISCOPLAN_EXPORT void PaintTree(const Node& root, Canvas& canvas, const PaintOptions& options);

}  // namespace discoplan
