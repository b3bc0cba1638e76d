// SPDX-License-Identifier: MIT
#pragma once

/// A file of n X, n Y and n values without a header, 24 n bytes: little-endian IEEE 64-bit floats.

#include "apps/discoplan/data_file.h"
#include "apps/discoplan/line_reader.h"

namespace discoplan::app {

/// Reads the one wafer of a binary file. n is `request.sites`, and then more bytes may follow, or
/// the file's size / 24, which must go without remainder. Throws `DataError` as `ReadData` does.
DataResult ReadBinaryData(const DataRequest& request, FileBytes& bytes);

}  // namespace discoplan::app
