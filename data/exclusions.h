// SPDX-License-Identifier: MIT
#pragma once

/// Leaves out sites of a wafer before anything is computed from them, and counts them.

#include "data/read.h"

namespace discoplan::data {

/// Gives the wafer its size: the diameter asked for, the one that it has, or that of the smallest
/// standard wafer that holds all sites; the area asked for, or the one inside the edge exclusion,
/// or else 6 mm less across. Throws `DataError` if the area asked for is larger than the wafer, or
/// nothing.
void GiveSize(const ReadRequest& request, Wafer& wafer);

/// Whether sites may be left out once all of them are read, so that there may be too many at first.
bool LeavesOut(const ReadRequest& request);

/// How far in mm a site may lie beyond the area, as positions are rounded to.
inline constexpr double kAreaTolerance = 1e-3;

/// Leaves out the sites beyond the area, if there is one asked for, by more than the tolerance.
void LeaveOutBeyond(const ReadRequest& request, Wafer& wafer);

/// Leaves out values that lie apart. Quartiles are interpolated between the sorted values (numbers
/// 1 to n, quartiles at 1 + (n - 1) / 4 and 1 + 3 (n - 1) / 4); a standard deviation is 1.4826
/// times the median distance from the median, as for a normal distribution (Iglewicz and Hoaglin,
/// How to Detect and Handle Outliers, 1993). Where that distance is 0, nothing is left out; the
/// result is false if there are other values then.
bool LeaveOutOutliers(const OutlierRule& rule, Wafer& wafer);

/// Leaves out sites until at most `most` are left: of each square of the finest grid that has no
/// more occupied squares than that, the site nearest to its centre stays, the first of several.
void Thin(std::int64_t most, Wafer& wafer);

/// The value below which that share of the values lies, 0 to 1, interpolated between the sorted
/// values. `values` isn't empty.
double Quantile(std::vector<float> values, double share);

}  // namespace discoplan::data
