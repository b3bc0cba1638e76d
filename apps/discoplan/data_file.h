// SPDX-License-Identifier: MIT
#pragma once

/// Reads measured wafers from a file.
///
///     DataRequest request;
///     request.path = "lot.csv";
///     request.columns = "X,Y,slot3";
///     for (const Wafer& measured : ReadData(request).wafers) Plot(measured);
///
/// Three kinds of file are told apart by their content, never by their name, in the first 64 KiB:
///
/// - Binary: no header; all X, then all Y, then all values, as little-endian 64-bit floats.
/// - Lot export: a text with a line "WAFER ID,name" above each of its wafers (lot_export.h).
/// - Table: any other text, one site a line (text_table.h).
///
/// Foreign bytes are those that are neither printable, nor a line's end, tab or form feed, nor part
/// of valid UTF-8. More than one foreign byte in ten and a control character among them: binary. At
/// most one in ten and no NUL: text. Anything else is refused, unless `sites` says that it's
/// binary.
///
/// Positions are millimetres from the wafer's centre, Y up; values are plain numbers. All are
/// narrowed to 32-bit floats. Bad data are refused with a `DataError`, never guessed.

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "apps/discoplan/data_error.h"

namespace discoplan::app {

inline constexpr std::int64_t kMostSites = 32767;

/// The thickness as the instrument summed it up, in the unit of the values.
struct ReportedStatistics {
  double mean = 0;
  double min = 0;
  double max = 0;
  double stddev = 0;
  double range = 0;

  bool operator==(const ReportedStatistics&) const = default;
};

/// One wafer; `x`, `y` and `value` are equally long, 1 to 32767 sites.
struct Wafer {
  std::string name;  ///< as a lot export calls it, otherwise the file's name without extension
  std::vector<float> x;
  std::vector<float> y;
  std::vector<float> value;
  std::optional<ReportedStatistics> reported;  ///< only where a lot export gives all five
  std::optional<int> slot;
};

struct DataRequest {
  std::filesystem::path path = {};
  /// "X,Y,VALUE": three columns by their names in the header (case and surrounding blanks don't
  /// matter, quotes hold a comma) or by numbers from 1; what is all digits is a number. Empty:
  /// found by their names, or the first three columns of a table without a header.
  std::string columns = {};
  std::optional<int> wafer = {};  ///< the slot to read of a lot export; all of them if not given
  std::optional<std::int64_t> sites = {};  ///< of a binary file; if not given, its size / 24
  bool skip_invalid = false;               ///< leave out rows that can't be read, and count them
};

enum class SkipReason { TooFewColumns, Empty, Text, NotFinite };

/// What was left out for one reason. `first` is the first such line, or site of a binary file,
/// from 1.
struct SkippedRows {
  SkipReason reason = SkipReason::Empty;
  std::int64_t count = 0;
  std::int64_t first = 0;

  bool operator==(const SkippedRows&) const = default;
};

struct DataResult {
  std::vector<Wafer> wafers;
  std::vector<SkippedRows> skipped;  ///< one entry for each reason met, the earliest first
  bool binary = false;
};

/// Reads `request.path`; at least one wafer. Throws `DataError` for a file that can't be read, for
/// bad data, and for options that don't go with the kind of file. A pipe will do for a file. No
/// more is read than it takes to see that a wafer has too many sites.
DataResult ReadData(const DataRequest& request);

}  // namespace discoplan::app
