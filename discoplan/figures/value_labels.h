// SPDX-License-Identifier: MIT
#pragma once

/// The values of sites written on a map.

#include "discoplan/figures/kinds.h"

namespace discoplan::figures {

/// Values around their dots, which have that radius, all of the largest size in which they find
/// room, off the wafer's lines where they can; in the smallest one some stand farther off with a
/// line to their dot. None where only a few of many would be written: which those would be is
/// chance. The number of those that found no room.
std::size_t PutValues(Sketch sketch, const MapFrame& frame, double dot);

}  // namespace discoplan::figures
