// SPDX-License-Identifier: MIT
#pragma once

/// One measured wafer as the interface has it: its sites, geometry, statistics, limits and colours,
/// and the operations that compute and draw from them, under the interface's names. What a plot or
/// a figure reads is `Data()`.
///
///     wafer lot_wafer;
///     lot_wafer.WaferDiameter = 200;
///     lot_wafer.TestDiameter = 194;
///     lot_wafer.reset();
///     lot_wafer.SetNop(49);
///     for (const Site& site : measured) lot_wafer.SetGridValue(site.x, site.y, site.z);
///     lot_wafer.MaxMin();
///     float value = lot_wafer.Interpolation(12.5F, -40.0F);
///
/// Lengths are millimetres from the wafer's centre, Y up; values are plain numbers in the host's
/// unit. Sites are numbered from 1, at most 32767. No raster is kept: what needs one asks
/// `Interpolation` at its own pitch. One thread uses a wafer at a time; there are no locks, and no
/// further threads but those of a pool that it was given.

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "discoplan/base/angles.h"
#include "discoplan/base/variant.h"
#include "discoplan/core/interpolation/measured_sites.h"
#include "discoplan/core/interpolation/site_cells.h"
#include "discoplan/export.h"

namespace discoplan {

class Label;
class Marker;
class Surface;
struct BeamView;
struct ContourSettings;
struct CutEnds;
struct HistogramChart;
struct Message;
struct PlotArea;
struct ScanLine;
struct SurfaceView;
struct WaferData;

class DISCOPLAN_EXPORT wafer {
 public:
  /// The only value of pi in use.
  static constexpr float kPi = discoplan::kPi;
  /// `FlatRatio` of a wafer with a flat; 1.0 is a notch, 0 not yet set.
  static constexpr float kFlatRatio = 0.98F;
  /// Ten rows of a legend.
  static constexpr int kLegendRows = 10;
  using LegendLabels = std::span<Label* const, kLegendRows>;

  // Colours 0x00BBGGRR, held as 32-bit floats: exact up to 24 bits.
  std::array<float, 10> IntervalColor;  ///< From the highest class to the lowest.
  std::array<float, 3> AuxColor;        ///< Above, within and below the sigma range.

  bool HasZeroValue = false;      ///< A stored value was zero or clamped to zero.
  bool HasNegativeValue = false;  ///< A stored value was negative.
  bool GridChanged = true;
  std::string SpareText1;

  // Statistics of the data, as `MaxMin` left them.
  double mean = 0;
  double StdDev = 0;  ///< Sample standard deviation.
  float Maximum = 0;
  float Minimum = 0;
  float ValueSum = 0;

  // Limits of the colour scale: those of the data unless a host set others.
  float PlotMaximum = 0;
  float PlotMinimum = 0;
  Variant HiLoPercent;   ///< A 32-bit float, or the 16-bit 0 where the limits' sum is zero.
  float ScaleFloor = 0;  ///< Lower end of value scales, below `PlotMinimum` if the limits coincide.
  float PlotRange = 0;

  float CountBelowLCL = 0;
  float CountAboveUCL = 0;

  float WaferDiameter = 0;
  float WaferRadius() const { return WaferDiameter / 2; }
  float TestDiameter = 0;
  float FlatRatio = 0;

  std::string Units;
  std::string SpecialRemark;
  std::string EquipInfo;
  std::string WaferId;
  std::string OperatorId;
  std::string FabName;
  std::string LotName;
  std::string MeasEquip;

  std::int16_t HistoPeakCount = 0;  ///< Highest bin count of the last histogram.
  float GaussPeak = 0;              ///< Height of its Gauss curve in counts.

  wafer();

  // Site store.

  /// Drops all sites; keeps statistics, limits, geometry and colours.
  void reset();
  /// Makes room for `count` sites, rounded; old ones are gone. Above 32767 `Overflow` before
  /// anything is stored; `Subscript` for a count that rounds to 0 or less.
  void SetNop(float count);
  float GetNop() const { return nop_; }
  /// Appends a site; does nothing once all are filled. A value of magnitude below 1e-15 becomes 0.
  void SetGridValue(float x, float y, float z);
  /// Writes the site of that number if it isn't above `GetNop`; below 1 raises `Subscript`.
  void SetGridValueD(std::int16_t number, float x, float y, float z);
  /// Writes the site of that number; `Subscript` outside the store.
  void OverwriteGridValue(std::int16_t number, float x, float y, float z);
  /// The site of that number; `Subscript` outside the store.
  Site GetGridValue(std::int16_t number) const;
  /// All sites in store order, without the tests.
  std::span<const Site> Sites() const { return sites_; }

  // Statistics.

  /// Computes the statistics, resets the limits to the data's extremes and, for ten sites or more,
  /// builds the site cells. `Subscript` for an empty store and for a site beyond the cells (more
  /// than about half a cell outside the wafer's radius in X or Y).
  void MaxMin();
  /// Sets the plot limits, without a test of their order.
  void setMaximalMinial(float upper, float lower);
  /// The limits are not those of the data.
  bool HasPlotLimit() const { return PlotMaximum != Maximum || PlotMinimum != Minimum; }

  /// What plots and figures read. It refers to the sites of this wafer.
  WaferData Data() const;

  // Interpolation.

  /// Inverse-distance-squared mean of the four nearest sites that the search over the site cells
  /// finds; 0 for fewer than four sites. Answers for any point, also off the wafer; never fails.
  float Interpolation(float x, float y) const noexcept;
  /// Lets others share the interpolation of large lattices; none of them if empty, as at first.
  void UseWorkers(std::shared_ptr<WorkerPool> workers) { workers_ = std::move(workers); }
  const std::shared_ptr<WorkerPool>& Workers() const { return workers_; }

  // Further statistics. They read the sites and change none of those that `MaxMin` left.

  /// Normal curve over the data's mean and deviation, without the factor 1 / `StdDev`: about 0.4 at
  /// the mean. `DivisionByZero` for a `StdDev` of 0.
  float Gauss(float x) const;
  static float StandardNormal(float z);
  /// Counts the values strictly beyond the limits in `CountBelowLCL` and `CountAboveUCL`.
  void Points_OutCL(float lower, float upper);
  /// Sum of the squared distances of all values from `m`, accumulated in 32 bits.
  float Globlal_Value_Sub_Mean(float m) const;
  /// Replaces each value by the mean of its ring; the rings are equally wide and as many as half
  /// the square root of the number of sites. Three sites or less stay as they are.
  void radial_zone_average();

  // Transforms of the sites' positions. The site cells become stale: `MaxMin` builds new ones.

  /// True if all sites were moved; false, and none is, if one would leave the test circle.
  bool MoveGrid(float dx, float dy);
  /// Moves the middle of the sites' bounding box to the wafer's centre, as `MoveGrid` does.
  /// `Subscript` for an empty store.
  bool CenterGrid();
  /// Turns all sites clockwise around the wafer's centre, in degrees.
  void rotate(float angle);
  /// About the X axis.
  void mirror_X();
  /// About the Y axis.
  void mirror_Y();

  // Legends. `chips` are the colour swatches, `rows` the texts, from the top.

  /// Text of a legend value.
  static std::string FormatLbl(float value);
  void scale_colored(LegendLabels chips, LegendLabels rows) const;
  void scale_sigma(LegendLabels chips, LegendLabels rows, float sigma_range) const;

  // Plots. A failing step of one is dropped and the plot goes on.

  /// Coloured map of cells `resolution` mm wide. Kind 5 takes the interval colours, any other the
  /// three colours of the band of `sigma_range` standard deviations around the mean.
  void D2Plot(Surface& surface, double resolution, std::int16_t kind, float sigma_range,
              bool show_sites, const PlotArea& area);
  /// Side in mm of the square of cells that such a map of the test area fits into its surface,
  /// with a margin of 3 pixels around it.
  double D2PlotSide(double resolution) const;
  /// Each value written at its site, in the interval colour of its class, within the outline of
  /// the test area. A value that equals `ScaleFloor` is written in white.
  void D2Number(Surface& surface, const PlotArea& area);
  /// Contour curves through the mean and at equal distances above and below it. Levels too close
  /// to each other leave the outline alone, and `show` gets the box that says so. Unlike the other
  /// plots this one ends at its first failing step, with `RunTimeError`.
  void D2Contour(Surface& surface, const ContourSettings& settings, const PlotArea& area,
                 const std::function<void(const Message&)>& show);
  /// Surface over the wafer, on a plate that carries it. Kind 1 fills the faces with the interval
  /// colours, 2 not at all and 3 with white; 4 takes the three colours of the band of `sigma_range`
  /// standard deviations around the mean. Seen from straight above the plate is grey, unless
  /// `printed`.
  void D3Plot(Surface& surface, const SurfaceView& view, std::int16_t plot_kind, float sigma_range,
              bool printed, const PlotArea& area);
  /// Each site as a bar that stands on the tilted wafer, the hidden ones behind the others. The
  /// class colours go by the values, whatever the height. The flag has no effect.
  void D2BeamPlot(Surface& surface, const BeamView& view, bool printed, const PlotArea& area);
  /// Values along a cut as a curve of `steps` pieces over the whole surface or, in mode 1, over the
  /// rectangle in the surface's units. Nothing for three sites or less. `InvalidCall` for a cut
  /// beside the test circle, here and in the next three.
  void D1Plot(Surface& surface, std::int16_t steps, const ScanLine& cut, Colour colour,
              const PlotArea& area);
  CutEnds EndsOf(const ScanLine& cut) const;
  /// Five values from `ScaleFloor` to `PlotMaximum` and five positions along the cut.
  void D1Plot_Show_lblXY(std::span<Label* const> x, std::span<Label* const> y,
                         const ScanLine& cut) const;
  /// Gives the picture of a wafer a scale in mm around the wafer's centre, Y downward, and shows
  /// the cut with the marker, from edge to edge and a little beyond.
  void draw_indicator(Surface& picture, Marker& marker, const ScanLine& cut);
  /// Grid of four by four fields over the rectangle, kept as the background of a picture.
  static void D1Plot_AdjustLines(Surface& surface, float left, float top, float width,
                                 float height);
  /// Histogram of the values between the plot limits, with a Gauss curve, onto the surface `bars`,
  /// with ticks and labels on the surface `axes` around it. The value axis is at the bottom (1), at
  /// the top (2), on the left (3) or on the right (4). Rewrites `HistoPeakCount` and `GaussPeak`.
  void Statistic(std::int16_t plot_type, Surface& bars, Surface& axes, const HistogramChart& chart);
  /// The same with an upright value axis, on the left or on the right, and the thread's control
  /// limits.
  void Statistic_Quer(bool right, Surface& bars, Surface& axes, const HistogramChart& chart);
  /// Small outline of the wafer with its notch or flat. Angles in degrees: `rotation` 0 is at the
  /// bottom and grows to the right, `inclination` 90 is seen from straight above. The label may be
  /// missing.
  void FlatNotchShow(Label* label, Surface& surface, float& centre_x, float& centre_y, float radius,
                     float rotation, float inclination) const;
  /// The same with an open outline at the centre and radius given, filled with the surface's
  /// current fill; it leaves no trace on a coloured background.
  void FlatNotchShow1(Label* label, Surface& surface, float centre_x, float centre_y, float radius,
                      float rotation, float inclination) const;

 private:
  void Store(std::int16_t number, float x, float y, float z);
  void SumUp();
  /// The sites, to be written.
  std::vector<Site>& ChangeSites();
  MeasuredSites Measured() const;
  void LeavePlot(float scale_floor);

  float nop_ = 0;
  float write_index_ = 1;
  std::vector<Site> sites_;
  SiteCells cells_;
  std::shared_ptr<WorkerPool> workers_;
};

}  // namespace discoplan
