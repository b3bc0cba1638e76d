// SPDX-License-Identifier: MIT
#include <array>
#include <cmath>
#include <limits>
#include <memory>

#include "discoplan/base/numbers.h"
#include "discoplan/base/wide_loops.h"
#include "discoplan/figures/map_frame.h"

namespace discoplan::figures {
namespace {

constexpr int kShades = 256;  // of a continuous scale

/// What is no number, as in a range too small to be divided by, is the first shade.
DISCOPLAN_WIDE_LOOPS void NumberShades(std::span<const float> values, float low, float factor,
                                       std::int32_t* numbers) {
  for (std::size_t i = 0; i < values.size(); ++i) {
    const float place = (values[i] - low) * factor;
    numbers[i] = static_cast<std::int32_t>(std::min(std::max(0.0F, place), kShades - 1.0F));
  }
}

/// Values at the pixels of a device, in colours.
class ValueImage final : public ImageSource {
 public:
  ValueImage(const Page& page, const MapFrame& frame, const Scale& scale,
             std::shared_ptr<const ValueField> field, std::shared_ptr<const Coverage> coverage)
      : frame_(frame),
        low_(scale.low),
        high_(scale.high),
        banded_(!scale.bands.empty()),
        field_(std::move(field)),
        coverage_(std::move(coverage)),
        nothing_(page.Ink().nothing),
        hatch_(page.Ink().hatch),
        hatch_pitch_(0.75 * page.Em()),
        hatch_width_(1.2 * page.Hair()) {
    const int count = banded_ ? static_cast<int>(scale.bands.size()) : kShades;
    for (int i = 0; i < count; ++i) {
      shades_.push_back(banded_ ? scale.bands[static_cast<std::size_t>(i)]
                                : scale.colours->At(i / (kShades - 1.0)));
    }
  }

  void Render(const PixelGrid& grid, std::span<Rgba> pixels) const override {
    const double step = grid.pitch / frame_.scale;
    const Lattice lattice = {(grid.left + grid.pitch / 2 - frame_.centre.x) / frame_.scale,
                             (frame_.centre.y - grid.top - grid.pitch / 2) / frame_.scale, step,
                             grid.columns, grid.rows};
    // All are set by the field: zeros before would cost as much as the colours afterwards.
    const std::unique_ptr<float[]> room(new float[lattice.Size()]);
    const std::span values(room.get(), lattice.Size());
    field_->Evaluate(lattice, frame_.test_radius + 2 * step, values);
    const auto width = static_cast<std::size_t>(grid.columns);
    std::vector<Coverage::Stretch> far;
    double far_down_to = std::numeric_limits<double>::infinity();
    for (int row = 0; row < grid.rows; ++row) {
      const std::size_t start = static_cast<std::size_t>(row) * width;
      const double y = lattice.Y(row);
      const double reach = frame_.test_radius + 2 * step;
      const double half = reach * reach - y * y;
      if (half < 0) continue;
      const double across = std::sqrt(half);
      const Row columns = {
          grid, lattice, row,
          std::max(0, static_cast<int>(std::ceil((-across - lattice.x0) / step))),
          std::min(grid.columns - 1, static_cast<int>(std::floor((across - lattice.x0) / step)))};
      if (columns.last < columns.first) continue;
      if (banded_) {
        ShadeBands(columns, values, pixels);
      } else {
        const auto count = static_cast<std::size_t>(columns.last - columns.first + 1);
        const std::size_t from = start + static_cast<std::size_t>(columns.first);
        Shade(values.subspan(from, count), pixels.subspan(from, count));
      }
      if (!coverage_->HasFar()) continue;
      if (y < far_down_to) far_down_to = coverage_->FindFar(y, coverage_->Far() - step / 2, far);
      HatchRow(columns, far, pixels.subspan(start, width));
    }
  }

 private:
  /// The columns from `first` to `last` of one row.
  struct Row {
    const PixelGrid& grid;
    const Lattice& lattice;
    int number;
    int first;
    int last;
  };

  void Shade(std::span<const float> values, std::span<Rgba> pixels) const {
    const auto f = static_cast<float>(kShades / (high_ - low_));
    const auto low = static_cast<float>(low_);
    const Rgba* shade = shades_.data();
    // Numbers first, many at once: what looks them up is taken one at a time.
    std::array<std::int32_t, 256> numbers;
    while (!values.empty()) {
      const std::size_t count = std::min(numbers.size(), values.size());
      NumberShades(values.first(count), low, f, numbers.data());
      for (std::size_t i = 0; i < count; ++i) pixels[i] = shade[numbers[i]];
      values = values.subspan(count);
      pixels = pixels.subspan(count);
    }
  }

  /// The edge between two bands is as soft as a pixel is wide: how much of a pixel each has follows
  /// from the value and its slope.
  void ShadeBands(const Row& row, std::span<const float> values, std::span<Rgba> pixels) const {
    const Lattice& lattice = row.lattice;
    const auto width = static_cast<std::size_t>(lattice.columns);
    const auto count = static_cast<double>(shades_.size());
    const auto place = [&](std::size_t at) { return (values[at] - low_) / (high_ - low_) * count; };
    // No slope is more than what it is along both sides.
    const auto rise = [&](std::size_t from, std::size_t to) {
      return std::abs(static_cast<double>(values[to]) - values[from]);
    };
    const double half_steepest = count / (high_ - low_) / 4 * (1 + 1e-9);
    const bool has_rows = row.number > 0 && row.number + 1 < lattice.rows;
    const std::size_t start = static_cast<std::size_t>(row.number) * width;
    for (int i = row.first; i <= row.last; ++i) {
      const std::size_t at = start + static_cast<std::size_t>(i);
      const double here = place(at);
      pixels[at] = shades_[static_cast<std::size_t>(std::clamp(here, 0.0, count - 1))];
      const auto upper = static_cast<std::size_t>(std::clamp(here + 0.5, 0.0, count));
      if (upper == 0 || upper == shades_.size()) continue;
      const auto edge = static_cast<double>(upper);
      const bool has_columns = i > row.first && i < row.last;
      const double rises =
          (has_columns ? rise(at - 1, at + 1) : 0) + (has_rows ? rise(at - width, at + width) : 0);
      if (std::abs(here - edge) >= half_steepest * rises) continue;
      const double dx = has_columns ? (place(at + 1) - place(at - 1)) / 2 : 0;
      const double dy = has_rows ? (place(at + width) - place(at - width)) / 2 : 0;
      const double above = (here - edge) / std::hypot(dx, dy) + 0.5;
      if (above <= 0 || above >= 1) continue;
      pixels[at] = Mix(shades_[upper - 1], shades_[upper], above);
    }
  }

  void HatchRow(const Row& row, std::span<const Coverage::Stretch> far,
                std::span<Rgba> pixels) const {
    const Lattice& lattice = row.lattice;
    const Coverage::Row known = coverage_->RowAt(lattice.Y(row.number));
    const double begins = coverage_->Far() - lattice.step / 2;
    int next = row.first;
    for (const Coverage::Stretch& stretch : far) {
      const auto column_at = [&](double x) {
        return std::clamp((x - lattice.x0) / lattice.step, row.first - 1.0, row.last + 1.0);
      };
      const int end = std::min(row.last, static_cast<int>(std::ceil(column_at(stretch.right))));
      next = std::max(next, static_cast<int>(std::floor(column_at(stretch.left))));
      for (; next <= end; ++next) {
        const double beyond = coverage_->DistanceAt(known, lattice.X(next)) - begins;
        if (beyond <= 0) continue;
        Rgba& pixel = pixels[static_cast<std::size_t>(next)];
        pixel = Hatched(pixel, std::min(beyond / lattice.step, 1.0), row, next);
      }
    }
  }

  Rgba Hatched(Rgba pixel, double part, const Row& row, int column) const {
    const PixelGrid& grid = row.grid;
    // Distance to the next of the slanted lines.
    const double x = grid.left + (column + 0.5) * grid.pitch;
    const double y = grid.top + (row.number + 0.5) * grid.pitch;
    const double along = (x + y) * 0.7071;
    const double off =
        std::abs(along - RoundHalfEven(along / hatch_pitch_) * hatch_pitch_) - hatch_width_ / 2;
    const double between = std::clamp(off / grid.pitch + 0.5, 0.0, 1.0);
    const Rgba mark = between >= 1 ? nothing_ : Mix(hatch_, nothing_, between);
    return part >= 1 ? mark : Mix(pixel, mark, part);
  }

  MapFrame frame_;
  double low_;
  double high_;
  bool banded_;
  std::shared_ptr<const ValueField> field_;
  std::shared_ptr<const Coverage> coverage_;
  std::vector<Rgba> shades_;
  Rgba nothing_;
  Rgba hatch_;
  double hatch_pitch_;
  double hatch_width_;
};

}  // namespace

void AddValueImage(Page& page, const MapFrame& frame, const WaferPlot& plot, const Scale& scale,
                   std::shared_ptr<const ValueField> field,
                   std::shared_ptr<const Coverage> coverage) {
  auto source =
      std::make_shared<ValueImage>(page, frame, scale, std::move(field), std::move(coverage));
  std::vector<Point> outline = TestAreaPoints(plot, frame.Length(frame.radius));
  for (Point& point : outline) point = frame.At(point.x, point.y);
  const double side = frame.Length(frame.test_radius);
  ImageShape image{.area = {frame.centre.x - side, frame.centre.y - side, frame.centre.x + side,
                            frame.centre.y + side},
                   .source = std::move(source)};
  image.outline.Polygon(std::move(outline));
  page.Add(std::move(image));
}

}  // namespace discoplan::figures
