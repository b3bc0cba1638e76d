// SPDX-License-Identifier: MIT
#pragma once

/// The modern look of the plots on the command line.

#include "apps/discoplan/picture_request.h"

namespace discoplan::app {

/// Draws one kind, or a sheet of several, into a PNG, PDF or SVG file. Raises `UsageError` for what
/// belongs to the classic look alone.
void PlotFigures(const PictureRequest& request);

}  // namespace discoplan::app
