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
    const float unasked = std::numeric_limits<float>::quiet_NaN();
    std::vector<Site> points(values.size());
    std::size_t at = 0;
    for (int row = 0; row < lattice.rows; ++row) {
      const double y = lattice.Y(row);
      const double reach = radius * radius - y * y;
      for (int column = 0; column < lattice.columns; ++column) {
        const double x = lattice.X(column);
        points[at].x = x * x <= reach ? static_cast<float>(x) : unasked;
        points[at++].y = static_cast<float>(y);
      }
    }
    SiteInterpolator(wafer_.Data()).Evaluate(points, static_cast<std::size_t>(lattice.columns));
    for (std::size_t i = 0; i < points.size(); ++i) values[i] = points[i].z;
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
