// SPDX-License-Identifier: MIT
#pragma once

/// A file of n X, n Y and n values without a header, 24 n bytes: little-endian IEEE 64-bit floats.

#include "data/line_reader.h"
#include "data/positions.h"
#include "data/read.h"

namespace discoplan::data {

/// Reads the one wafer of a binary file. n is `request.sites`, and then more bytes may follow, or
/// the file's size / 24, which must go without remainder. Throws `DataError` as `Read` does.
Lot ReadBinaryData(const ReadRequest& request, const PositionScale& scale, FileBytes& bytes);

}  // namespace discoplan::data
