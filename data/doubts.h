// SPDX-License-Identifier: MIT
#pragma once

/// What looks wrong with the sites of a wafer though all of them can be read.

#include "data/positions.h"

namespace discoplan::data {

/// Adds a sentence to `lot.warnings` for the first wafer of each kind: all sites in one quadrant,
/// positions that are about a tenth or ten times those of a standard wafer and whose unit nobody
/// gave, angles that may be radians, positions that repeat, and a value that counts the sites.
void TellDoubts(const ReadRequest& request, const PositionScale& scale, Lot& lot);

}  // namespace discoplan::data
