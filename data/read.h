// SPDX-License-Identifier: MIT
#pragma once

/// Reads measured wafers from a file.
///
///     data::ReadRequest request;
///     request.path = "lot.csv";
///     request.columns = "X,Y,slot3";
///     request.edge_exclusion = 3;
///     for (const data::Wafer& wafer : data::Read(request).wafers) Plot(wafer);
///
/// Kinds of file are told apart by their content, never by their name:
///
/// - Binary: no header; all X, then all Y, then all values, as little-endian 64-bit floats.
/// - Lot export: a text with a line "WAFER ID,name" above each of its wafers (lot_export.h).
/// - Defects: KLARF 1.2 (klarf.h).
/// - Table: any other text, one site a line (text_table.h).
///
/// Bad data are refused with a `DataError`, never guessed. Functions of this room may run on
/// several threads at a time.

#include <cstdint>
#include <filesystem>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "data/data_error.h"
#include "data/lot.h"

namespace discoplan::data {

enum class LengthUnit { Millimetre, Centimetre, Micrometre, Inch };

enum class Origin {
  Centre,
  Corner,  ///< lower left of the square around the wafer, or of its dies
};

/// Of dies in mm; positions are whole numbers of dies then. A negative height counts rows
/// downwards.
struct DiePitch {
  double width = 0;
  double height = 0;
};

/// Values farther than `factor` interquartile ranges from the quartiles, or than `factor` standard
/// deviations, as the median absolute deviation tells them, from the median.
struct OutlierRule {
  enum class Spread { Iqr, Mad };
  double factor = 0;
  Spread spread = Spread::Iqr;
};
/// Of a factor and a spread, as "1.5iqr" or "3.5mad"; nothing for other texts.
std::optional<OutlierRule> ParseOutlierRule(std::string_view text);

struct ReadRequest {
  std::filesystem::path path = {};
  /// "X,Y", "X,Y,VALUE" or more values: columns by their names in the header (case and surrounding
  /// blanks don't matter, quotes hold a comma) or by numbers from 1; what is all digits is a
  /// number. Empty: found by their names, or the first three columns of a table without a header.
  std::string columns = {};
  /// The values to read, by name or number; "all" for every column of numbers. Empty: the one of
  /// `columns`, or the only one there is.
  std::vector<std::string> parameters = {};
  /// Columns that tell the wafers of a table apart, by name or number.
  std::vector<std::string> by = {};
  /// Wafers to read, by name, slot or range of slots as "3-7"; all of them if empty.
  std::vector<std::string> wafers = {};
  /// A condition that the rows of a table must meet, such as "MSE < 12 and Slot != 3"
  /// (condition.h).
  std::string where = {};
  std::optional<LengthUnit> unit = {};  ///< of positions, where the header gives none
  std::string value_unit = {};          ///< of the values, in place of the file's
  Origin origin = Origin::Centre;
  std::optional<DiePitch> pitch = {};
  std::optional<double> diameter = {};        ///< of the wafers, mm
  std::optional<double> test_diameter = {};   ///< sites outside are left out, mm
  std::optional<double> edge_exclusion = {};  ///< sites that near to the edge are left out, mm
  std::optional<OutlierRule> outliers = {};   ///< are left out
  /// Leave out sites, rather than refuse them, until no more than `most_sites` are left.
  bool thin = false;
  std::int64_t most_sites = kMostSites;    ///< of one wafer
  std::optional<std::int64_t> sites = {};  ///< of a binary file; if not given, its size / 24
  bool skip_invalid = false;               ///< leave out rows that can't be read, and count them
};

/// Reads `request.path`; at least one wafer. Throws `DataError` for a file that can't be read, for
/// bad data, and for options that don't go with the kind of file. A pipe will do for a file. No
/// more is read than it takes to see that a wafer has too many sites.
Lot Read(const ReadRequest& request);
/// The same of a stream; the path only names it.
Lot Read(const ReadRequest& request, std::istream& stream);

}  // namespace discoplan::data
