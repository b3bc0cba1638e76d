// SPDX-License-Identifier: MIT
#pragma once

/// What a pen covers along a path. Joins and caps are those of Anti-Grain Geometry; with the walk
/// along the path here, its headers are all that is needed of it, on any system.

#include "hosts/headless/agg_headers.h"

namespace discoplan {

/// Outlines of a line of that width along each piece of the path: round joins, butt ends. To be
/// filled by the non-zero rule.
agg::path_storage Outlined(agg::path_storage& path, double width);

/// The path cut into dashes with gaps of the same length, each piece beginning with a dash.
agg::path_storage Dashed(agg::path_storage& path, double length);

}  // namespace discoplan
