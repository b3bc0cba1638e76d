// SPDX-License-Identifier: MIT
#pragma once

/// The lot export of a film thickness instrument: all wafers of a cassette in one text.
///
///     WAFER ID,Slot01,,,
///     SLOT,1,,,
///     MEAN,9.7878,0.9913,,         MIN, MAX, STDDEV and RANGE likewise
///     Site #,Value,Value, X , Y    the head of the sites, one below it on each line
///     1,9.5113,0.9916,0,0
///     ,,,,                         a blank line or the next WAFER ID ends them
///
/// Fields may be separated by semicolons or tabs instead. The first value column is the thickness;
/// `ReadRequest::columns` chooses another one, and the statistics are taken from the same column.
/// Lines with other words in front are left out.

#include "data/line_reader.h"
#include "data/positions.h"

namespace discoplan::data {

/// The separator of a lot export; nothing if none of the first 100 lines begins a wafer.
std::optional<char> LotSeparator(LineReader& lines);

/// Reads the wafers of a lot export that are asked for, and how positions were written; the rows of
/// the others are not looked at. Throws `DataError` as `Read` does.
Lot ReadLotExport(const ReadRequest& request, char separator, LineReader& lines,
                  PositionScale& scale);

}  // namespace discoplan::data
