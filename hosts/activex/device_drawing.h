// SPDX-License-Identifier: MIT
#pragma once

/// The drawing operations of a surface on a device of the system's, by the surface's state.

#include <span>

#include "discoplan/render/surface.h"
#include "hosts/activex/com.h"

namespace discoplan::activex {

/// Device pixels to one unit of the surface.
struct DeviceScale {
  double x = 1;
  double y = 1;
};

void PolygonOn(HDC device, const Surface& state, std::span<const PixelPoint> points);
void FloodFillOn(HDC device, const Surface& state, PixelPoint start, Colour boundary);
/// `call.from` must be given.
void LineOn(HDC device, const Surface& state, DeviceScale scale, const LineCall& call);
void CircleOn(HDC device, const Surface& state, DeviceScale scale, const CircleCall& call);
/// At the current position.
void TextOn(HDC device, const Surface& state, DeviceScale scale, std::string_view text);

}  // namespace discoplan::activex
