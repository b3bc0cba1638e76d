// SPDX-License-Identifier: MIT
#include "discoplan/analysis/figures_of_merit.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "discoplan/analysis/interpolation_error.h"

namespace discoplan::analysis {
namespace {

using Figure = std::optional<double>;

constexpr double kMostPercent = 1000;

Figure Percent(const Sample& sample, double part, double whole) {
  if (whole == 0) return {};
  const double percent = 100 * part / std::abs(whole);
  const bool both_signs = sample.Minimum() < 0 && sample.Maximum() > 0;
  if (both_signs && percent > kMostPercent) return {};
  return percent;
}

Figure Times(double factor, const Figure& value) {
  if (!value) return {};
  return factor * *value;
}

Figure SigmaPercent(const Sample& s) {
  if (!s.sigma) return {};
  return Percent(s, *s.sigma, s.mean);
}

Figure Tilt(const Sample& s) {
  const PlaneFit& plane = s.Plane();
  if (!plane.IsUnique()) return {};
  return plane.Tilt();
}

Figure TiltDirection(const Sample& s) {
  const PlaneFit& plane = s.Plane();
  if (!plane.IsUnique()) return {};
  // What rises across the largest of wafers by less than values are rounded to has no direction.
  constexpr double kAcross = 450;  // mm
  constexpr double kRounding = 1e-7;
  const double largest = std::max(std::abs(s.Minimum()), std::abs(s.Maximum()));
  const bool is_level = plane.Tilt() * kAcross <= kRounding * largest;
  return is_level ? Figure() : plane.Direction();
}

Figure PredictionError(const Sample& s) {
  const auto error = LeaveOneOut(s.sites);
  if (!error) return {};
  return error->rms;
}

// Sources that several rows name.
constexpr std::string_view kHandbook = "NIST/SEMATECH e-Handbook of Statistical Methods, 1.3.5";
constexpr std::string_view kPractice = "usual in process control of wafers";
constexpr std::string_view kQuantiles = "Hyndman and Fan (1996), definition 7";

constexpr std::array kFigures = {
    FigureOfMerit{"mean", "Mean", "sum z / n", kHandbook, UnitKind::Value,
                  [](const Sample& s) -> Figure { return s.mean; }},
    FigureOfMerit{"std_dev", "Std. Dev", "s = sqrt(sum (z - mean)^2 / (n - 1))", kHandbook,
                  UnitKind::Value, [](const Sample& s) -> Figure { return s.sigma; }},
    FigureOfMerit{"std_dev_percent", "Std. Dev %", "100 s / |mean|", kHandbook, UnitKind::Percent,
                  SigmaPercent},
    FigureOfMerit{"minimum", "Minimum", "min", kHandbook, UnitKind::Value,
                  [](const Sample& s) -> Figure { return s.Minimum(); }},
    FigureOfMerit{"maximum", "Maximum", "max", kHandbook, UnitKind::Value,
                  [](const Sample& s) -> Figure { return s.Maximum(); }},
    FigureOfMerit{"range", "Range", "max - min", kHandbook, UnitKind::Value,
                  [](const Sample& s) -> Figure { return s.Range(); }},
    FigureOfMerit{"hi_lo_percent", "Hi/Lo Var %", "100 (max - min) / |max + min|", kPractice,
                  UnitKind::Percent,
                  [](const Sample& s) { return Percent(s, s.Range(), s.Maximum() + s.Minimum()); }},
    FigureOfMerit{"range_percent", "Range %", "100 (max - min) / |mean|", kPractice,
                  UnitKind::Percent, [](const Sample& s) { return Percent(s, s.Range(), s.mean); }},
    FigureOfMerit{"half_range_percent", "Half Range %", "100 (max - min) / (2 |mean|)", kPractice,
                  UnitKind::Percent,
                  [](const Sample& s) { return Percent(s, s.Range() / 2, s.mean); }},
    FigureOfMerit{"three_sigma", "3 Sigma", "3 s", kPractice, UnitKind::Value,
                  [](const Sample& s) { return Times(3, s.sigma); }},
    FigureOfMerit{"median", "Median", "z at 1 + (n - 1) / 2 in order", kQuantiles, UnitKind::Value,
                  [](const Sample& s) -> Figure { return s.Quantile(0.5); }},
    FigureOfMerit{"quartile_1", "Quartile 1", "Q1 = z at 1 + (n - 1) / 4 in order", kQuantiles,
                  UnitKind::Value, [](const Sample& s) -> Figure { return s.Quantile(0.25); }},
    FigureOfMerit{"quartile_3", "Quartile 3", "Q3 = z at 1 + 3 (n - 1) / 4 in order", kQuantiles,
                  UnitKind::Value, [](const Sample& s) -> Figure { return s.Quantile(0.75); }},
    FigureOfMerit{"iqr", "IQR", "Q3 - Q1", kQuantiles, UnitKind::Value,
                  [](const Sample& s) -> Figure { return s.Quantile(0.75) - s.Quantile(0.25); }},
    FigureOfMerit{"mad", "MAD", "median |z - median|", "Hampel (1974)", UnitKind::Value,
                  [](const Sample& s) -> Figure { return s.MedianDeviation(); }},
    FigureOfMerit{
        "robust_sigma", "Robust Sigma", "1.4826 MAD", "Rousseeuw and Croux (1993)", UnitKind::Value,
        [](const Sample& s) -> Figure { return kSigmaOfMedianDeviation * s.MedianDeviation(); }},
    FigureOfMerit{"tilt", "Tilt", "sqrt(b^2 + c^2) of the best plane a + b x + c y",
                  "least squares, Golub and Van Loan, 5.3", UnitKind::Slope, Tilt},
    FigureOfMerit{"tilt_direction", "Tilt Direction", "atan2(c, b) of the best plane a + b x + c y",
                  "least squares, Golub and Van Loan, 5.3", UnitKind::Degrees, TiltDirection},
    FigureOfMerit{"interpolation_error", "Interp. Error",
                  "sqrt(mean (z - z from the four nearest other sites)^2)",
                  "leave-one-out, Stone (1974)", UnitKind::Value, PredictionError},
};

}  // namespace

std::span<const FigureOfMerit> FiguresOfMerit() { return kFigures; }

const FigureOfMerit* FindFigure(std::string_view key) {
  const auto* found = std::find_if(kFigures.begin(), kFigures.end(),
                                   [&](const FigureOfMerit& figure) { return figure.key == key; });
  return found == kFigures.end() ? nullptr : found;
}

}  // namespace discoplan::analysis
