// SPDX-License-Identifier: MIT
#pragma once

/// Classic plots as PDF and SVG files.

#include "apps/discoplan/lot_request.h"
#include "apps/discoplan/picture_request.h"

namespace discoplan::app {

/// The kinds asked for beside each other on one page.
void PlotVectors(const PictureRequest& request);

/// The sheet of a lot: pages of a PDF file; in an SVG file, which has one, below each other.
void PlotLotVectors(const LotRequest& request);

}  // namespace discoplan::app
