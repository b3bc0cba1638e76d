// SPDX-License-Identifier: MIT
#pragma once

/// Anti-Grain Geometry, which isn't as strict about conversions as we are.

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wconversion"
#pragma GCC diagnostic ignored "-Wshadow"
#pragma GCC diagnostic ignored "-Wextra"
#include <agg2/agg_math_stroke.h>
#include <agg2/agg_rasterizer_sl_clip.h>
#include <agg2/agg_vertex_sequence.h>
#pragma GCC diagnostic pop
