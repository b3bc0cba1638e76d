// SPDX-License-Identifier: MIT
#pragma once

/// The defects of inspected wafers, in KLARF 1.2 (ASCII).
///
///     FileVersion 1 2;
///     SampleSize 1 200;                          round, mm
///     DiePitch 10000 12000;                      micrometres, as all lengths below
///     WaferID "W01"; Slot 1;                     each wafer; others may follow
///     SampleCenterLocation 5000 6000;            from the origin of die 0, 0
///     DefectRecordSpec 7 DEFECTID XREL YREL XINDEX YINDEX DSIZE CLASSNUMBER ;
///     DefectList
///      1 120.5 800 -3 2 0.85 4;
///     EndOfFile;
///
/// A defect is a site at index * pitch + XREL - centre, in mm. Its value is any field of numbers,
/// by name: the size without a request ("DEFECTSIZE" stands for DSIZE), or else DEFECTAREA, or
/// CLASSNUMBER. Other statements are left out.

#include "data/line_reader.h"
#include "data/positions.h"

namespace discoplan::data {

/// Whether the text begins as a KLARF of any version.
bool IsKlarf(LineReader& lines);

/// Reads the wafers that are asked for. Throws `DataError` as `Read` does, and for other versions.
Lot ReadKlarf(const ReadRequest& request, LineReader& lines, PositionScale& scale);

}  // namespace discoplan::data
