// SPDX-License-Identifier: MIT
#pragma once

/// What a file of measurements holds: a lot of wafers, and what was left out of them and why.
///
///     const data::Lot lot = data::Read({.path = "lot.csv"});
///     for (const data::Wafer& wafer : lot.Of(0)) Plot(wafer.x, wafer.y, wafer.value);
///
/// Positions are millimetres from the wafer's centre, Y up, and values are numbers in the unit of
/// their parameter; all are finite 32-bit floats, rounded to the nearest.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace discoplan::data {

/// What a plot holds at most of one wafer.
inline constexpr std::int64_t kMostSites = 32767;

/// A quantity that was measured.
struct Parameter {
  std::string name;  ///< as its column is called, without the unit; UTF-8
  std::string unit;  ///< as the file writes it, such as "nm"; empty if it gives none

  /// "Thickness (nm)", or the name alone.
  std::string Caption() const;

  bool operator==(const Parameter&) const = default;
};

enum class Reason {
  TooFewColumns,  ///< in its row
  Empty,          ///< a field where a number is due
  Text,           ///< in place of a number
  NotFinite,      ///< or out of a 32-bit float's range
  NotAskedFor,    ///< by the condition on the rows
  Beyond,         ///< the area that is looked at
  Outlier,        ///< its value is far from the others
  Thinned,        ///< to a regular subset
  Commented,      ///< a row with '#' in front, as comments have; never of a wafer
};

/// Sites of one wafer that were left out for one reason.
struct LeftOut {
  Reason reason = Reason::Empty;
  std::int64_t count = 0;

  bool operator==(const LeftOut&) const = default;
};

/// Rows of the whole file that can't be read. `first` is the first such line, or site of a binary
/// file, from 1.
struct SkippedRows {
  Reason reason = Reason::Empty;
  std::int64_t count = 0;
  std::int64_t first = 0;

  bool operator==(const SkippedRows&) const = default;
};

/// The values as the instrument summed them up, in their unit.
struct ReportedStatistics {
  double mean = 0;
  double min = 0;
  double max = 0;
  double stddev = 0;
  double range = 0;

  bool operator==(const ReportedStatistics&) const = default;
};

/// One wafer as measured in one parameter. `x`, `y` and `value` are equally long, at least 1.
struct Wafer {
  /// As the file calls it: by a lot export's WAFER ID or the texts of the columns that tell wafers
  /// apart ("A12, 3"); otherwise the file's name without extension.
  std::string name;
  std::optional<int> slot;
  std::vector<std::string> keys;  ///< the texts of `Lot::keys` for this wafer
  std::size_t parameter = 0;      ///< of `Lot::parameters`
  /// What was done to the values after they were read, such as "minus mean"; nothing for "".
  std::string derived;
  std::vector<float> x;
  std::vector<float> y;
  std::vector<float> value;
  /// In mm: as asked for or else the smallest standard one that holds all sites of the wafer, those
  /// too that were left out afterwards.
  float diameter = 0;
  /// In mm: of the area that is looked at, as asked for or else 6 less, unless a site lies outside
  /// that.
  float test_diameter = 0;
  std::vector<LeftOut> left_out;  ///< one entry for each reason met, in the order of `Reason`
  /// Only where a lot export gives all five. They are of all sites.
  std::optional<ReportedStatistics> reported;

  /// "Slot07, minus mean", or the name alone.
  std::string Title() const;
  /// Sites that were measured: those that are here and those that were left out.
  std::int64_t Measured() const;
  /// "49 of 52 sites; 2 beyond 147 mm, 1 outlier", for captions and tables; "52 sites" if nothing
  /// was left out.
  std::string SitesText() const;
};

enum class FileKind { Table, LotExport, Defects, Binary };

struct Lot {
  std::string source;  ///< path of the file, as given
  FileKind kind = FileKind::Table;
  std::vector<Parameter> parameters;  ///< at least one
  std::vector<std::string> keys;      ///< names of the columns that tell the wafers apart
  /// At least one. A wafer that was measured in several parameters is here once for each, since
  /// what is left out differs between them: all wafers of the first parameter in the order of the
  /// file, then those of the second.
  std::vector<Wafer> wafers;
  std::vector<SkippedRows> skipped;  ///< one entry for each reason met, the earliest first
  /// What may be wrong with the sites and what to try, a sentence each.
  std::vector<std::string> warnings;

  /// The wafers of one parameter. One whose sites were all left out is missing.
  std::span<const Wafer> Of(std::size_t parameter) const;
};

/// Diameters in mm of the smallest standard wafer that holds all sites, and of the area that a
/// plot covers: 6 mm less, unless a site lies outside that.
struct WaferSize {
  float diameter = 0;
  float test_diameter = 0;
};
WaferSize SizeFor(std::span<const float> x, std::span<const float> y);

/// Of wafers, in mm, from 50 to 450.
std::span<const float> StandardDiameters();

/// Distance in mm of the farthest site from the centre; 0 without sites.
double FarthestSite(std::span<const float> x, std::span<const float> y);

}  // namespace discoplan::data
