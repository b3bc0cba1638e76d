// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <limits>

#include "discoplan/analysis/interpolation_error.h"
#include "discoplan/core/interpolation/site_interpolator.h"
#include "discoplan/core/wafer.h"
#include "discoplan/core/wafer_data.h"
#include "discoplan/figures/field_kinds.h"

namespace discoplan::figures {
namespace {

/// The classic rule, by the classic look's own kernels.
class Idw4Field final : public ValueField {
 public:
  Idw4Field(const SiteView& sites, double radius) {
    // The sites' cells reach a little beyond the wafer.
    double farthest = radius;
    for (std::size_t i = 0; i < sites.Size(); ++i) {
      farthest = std::max<double>(farthest, std::hypot(sites.x[i], sites.y[i]));
    }
    wafer_.WaferDiameter = static_cast<float>(2 * farthest);
    wafer_.TestDiameter = wafer_.WaferDiameter;
    wafer_.reset();
    wafer_.SetNop(static_cast<float>(sites.Size()));
    for (std::size_t i = 0; i < sites.Size(); ++i) {
      wafer_.SetGridValue(sites.x[i], sites.y[i], sites.value[i]);
    }
    wafer_.MaxMin();
  }

  void Evaluate(const Lattice& lattice, double radius, std::span<float> values) const override {
    constexpr int kRows = 16;  // at once: whole tiles of the kernels, in little memory
    const auto width = static_cast<std::size_t>(lattice.columns);
    std::vector<double> x(width);
    for (int column = 0; column < lattice.columns; ++column) {
      x[static_cast<std::size_t>(column)] = lattice.X(column);
    }
    const SiteInterpolator interpolator(wafer_.Data());
    std::vector<Site> points;
    for (int top = 0; top < lattice.rows; top += kRows) {
      points.clear();
      for (int row = top; row < std::min(top + kRows, lattice.rows); ++row) {
        AppendRow(x, lattice.Y(row), radius, points);
      }
      interpolator.Evaluate(points, width);
      float* value = values.data() + static_cast<std::size_t>(top) * width;
      for (const Site& point : points) *value++ = point.z;
    }
  }
  std::string Method() const override { return "mean of the four nearest sites (idw4)"; }

  void MeasureError(const std::vector<Sample>& samples) {
    std::vector<Site> sites(samples.size());
    for (std::size_t i = 0; i < samples.size(); ++i) {
      sites[i].x = static_cast<float>(samples[i].x);
      sites[i].y = static_cast<float>(samples[i].y);
      sites[i].z = static_cast<float>(samples[i].value);
    }
    if (const auto error = analysis::LeaveOneOut(sites)) error_ = error->rms;
  }

 private:
  /// Those beyond the radius aren't asked for.
  static void AppendRow(std::span<const double> x, double y, double radius,
                        std::vector<Site>& points) {
    constexpr float kUnasked = std::numeric_limits<float>::quiet_NaN();
    const double reach = radius * radius - y * y;
    for (const double place : x) {
      Site point;
      point.x = place * place <= reach ? static_cast<float>(place) : kUnasked;
      point.y = static_cast<float>(y);
      points.push_back(point);
    }
  }

  wafer wafer_;
};

}  // namespace

std::shared_ptr<const ValueField> MakeIdw4Field(const SiteView& sites,
                                                const std::vector<Sample>& samples, double radius) {
  auto field = std::make_shared<Idw4Field>(sites, radius);
  field->MeasureError(samples);
  return field;
}

}  // namespace discoplan::figures
