// SPDX-License-Identifier: MIT
#pragma once

/// A measured wafer that callers hold. It never changes once it is made.

#include <array>
#include <cstdint>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <vector>

#include "bindings/c/handles.h"
#include "data/lot.h"
#include "discoplan/analysis/sample.h"
#include "discoplan/core/wafer.h"
#include "discoplan/core/wafer_data.h"
#include "discoplan/figures/wafer_figure.h"

namespace discoplan::c {

/// Bit i is figure i of `analysis::FiguresOfMerit()`.
using FigureMask = std::uint64_t;
/// The figures that a caller asked for, 0 being all. Raises `Error` for one that there isn't.
FigureMask FiguresOf(std::uint64_t given);
/// Sets values 0, `stride`, ... to the figures, not a number for one that has no meaning; leaves
/// those that aren't wanted.
void ComputeFigures(const analysis::Sample& sample, FigureMask wanted, double* values,
                    std::size_t stride);

class MeasuredWafer final : public Held {
 public:
  static constexpr Kind kKind = Kind::Wafer;
  using Handle = discoplan_wafer;

  /// How a wafer lies, and what its values are.
  struct Look {
    data::Parameter parameter;
    figures::Orientation orientation = figures::Orientation::Notch;
    figures::Side notch = figures::Side::Bottom;
    bool is_difference = false;  ///< Whose values are about 0.
  };

  /// The wafer has its size. Raises `Error` for sites off the wafer and for values whose sums are
  /// too large.
  MeasuredWafer(data::Wafer measured, Look look, bool size_given);

  const data::Wafer& Measured() const { return measured_; }
  const Look& Looks() const { return look_; }
  const std::string& SitesText() const { return sites_text_; }
  std::span<const Site> Sites() const { return sites_.Sites(); }
  /// For interpolation and for the classic plots.
  WaferData Data() const { return sites_.Data(); }
  std::int64_t LeftOut() const;
  /// Sites whose position came before.
  std::int64_t Repeated() const { return repeated_; }
  /// Whether half of the sites or more repeat a position, as those of several wafers do.
  bool MayBeSeveral() const;
  /// What should be told of it: that it may be several; "" mostly.
  std::string Remark() const;
  /// Whether a picture without its `SitesText` would mislead.
  bool IsRemarkable() const { return LeftOut() > 0 || MayBeSeveral(); }

  /// Values at points whose z is set; not a number outside the test area.
  void Interpolate(std::span<Site> points, std::size_t columns) const;
  /// The values between the sites, as maps have them: found once for a wafer that isn't large.
  std::shared_ptr<const figures::ValueField> Field(figures::Interpolation interpolation) const;
  float At(float x, float y) const;
  bool IsInside(float x, float y) const;
  /// All figures; those that `wanted` hasn't aren't computed, and not a number.
  std::vector<double> Statistics(FigureMask wanted) const;

 private:
  data::Wafer measured_;
  Look look_;
  std::int64_t repeated_;
  std::string sites_text_;
  wafer sites_;
  mutable std::mutex mutex_;  // of the fields
  mutable std::array<std::shared_ptr<const figures::ValueField>, 2> fields_;
};

/// From a caller's arrays, sites `first` to below `last`. Raises `Error` and `data::DataError`.
std::shared_ptr<MeasuredWafer> NewWafer(const discoplan_sites& sites, std::int64_t first,
                                        std::int64_t last, const discoplan_wafer_options& options);

/// Raises `Error` for wafers whose values are known to be in different units.
void RequireOneUnit(const MeasuredWafer& wafer, const MeasuredWafer& other);
/// The same, and for values that are called by different names.
void RequireOneQuantity(const MeasuredWafer& wafer, const MeasuredWafer& other);

/// The same wafer with other sites and looks. Raises `Error`.
std::shared_ptr<MeasuredWafer> WithSites(const MeasuredWafer& like, std::span<const Site> sites,
                                         const std::string& name, MeasuredWafer::Look look);

}  // namespace discoplan::c
