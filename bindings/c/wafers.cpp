// SPDX-License-Identifier: MIT
#include <algorithm>
#include <limits>

#include "bindings/c/arguments.h"
#include "bindings/c/measured.h"
#include "data/plain_text.h"
#include "discoplan/analysis/difference.h"
#include "discoplan/analysis/figures_of_merit.h"

using namespace discoplan;
using namespace discoplan::c;

namespace {

void RequireRoom(std::int64_t capacity, std::int64_t needed) {
  if (capacity < needed) {
    Refuse("there is room for " + std::to_string(capacity) + " numbers, and there are " +
           std::to_string(needed));
  }
}

/// So many points at a time stay in the processor's cache.
constexpr std::int64_t kBlock = 4096;

void InterpolatePoints(const MeasuredWafer& wafer, std::int64_t count, const Numbers& x,
                       const Numbers& y, float* values) {
  std::vector<Site> points(static_cast<std::size_t>(std::min(count, kBlock)));
  for (std::int64_t done = 0; done < count; done += kBlock) {
    const std::int64_t size = std::min(count - done, kBlock);
    points.resize(static_cast<std::size_t>(size));
    for (std::int64_t i = 0; i < size; ++i) {
      points[static_cast<std::size_t>(i)] = {static_cast<float>(x[done + i]),
                                             static_cast<float>(y[done + i]), 0};
    }
    wafer.Interpolate(points, 0);
    for (const Site& point : points) *values++ = point.z;
  }
}

struct Grid {
  figures::Lattice points;
  bool smooth = false;
};

Grid GridOf(const discoplan_lattice& given, const MeasuredWafer& wafer) {
  constexpr int kMost = 20000;
  if (given.columns < 1 || given.rows < 1 || given.columns > kMost || given.rows > kMost) {
    Refuse("lattice: takes 1 to 20000 columns and rows, not " + std::to_string(given.columns) +
           " x " + std::to_string(given.rows));
  }
  if (given.method != DISCOPLAN_IDW4 && given.method != DISCOPLAN_SMOOTH) {
    Refuse("lattice: its method is neither DISCOPLAN_IDW4 nor DISCOPLAN_SMOOTH");
  }
  if (!(given.step >= 0)) Refuse("lattice: its step is in mm, 0 or more");
  const double diameter = wafer.Measured().diameter;
  Grid grid{.points = {given.x0, given.y0, given.step, given.columns, given.rows},
            .smooth = given.method == DISCOPLAN_SMOOTH};
  if (given.step == 0) {
    if (given.columns != given.rows)
      Refuse("lattice: without a step it has as many rows as columns");
    const double step = diameter / given.columns;
    grid.points = {(step - diameter) / 2, (diameter - step) / 2, step, given.columns, given.rows};
  }
  return grid;
}

void InterpolateRows(const MeasuredWafer& wafer, const figures::Lattice& lattice, float* values) {
  constexpr int kRows = 16;  // of a block
  const auto columns = static_cast<std::size_t>(lattice.columns);
  std::vector<Site> points;
  for (int top = 0; top < lattice.rows; top += kRows) {
    const int bottom = std::min(top + kRows, lattice.rows);
    points.clear();
    for (int row = top; row < bottom; ++row) {
      const auto y = static_cast<float>(lattice.Y(row));
      for (int column = 0; column < lattice.columns; ++column) {
        points.push_back({static_cast<float>(lattice.X(column)), y, 0});
      }
    }
    wafer.Interpolate(points, columns);
    for (const Site& point : points) *values++ = point.z;
  }
}

void SmoothRows(const MeasuredWafer& wafer, const figures::Lattice& lattice,
                std::span<float> values) {
  const double radius = static_cast<double>(wafer.Measured().test_diameter) / 2;
  wafer.Field(figures::Interpolation::Smooth)->Evaluate(lattice, radius, values);
  for (int row = 0; row < lattice.rows; ++row) {
    for (int column = 0; column < lattice.columns; ++column) {
      float& value =
          values[static_cast<std::size_t>(row) * static_cast<std::size_t>(lattice.columns) +
                 static_cast<std::size_t>(column)];
      const bool inside =
          wafer.IsInside(static_cast<float>(lattice.X(column)), static_cast<float>(lattice.Y(row)));
      if (!inside) value = std::numeric_limits<float>::quiet_NaN();
    }
  }
}

/// Wafers whose handles may be freed meanwhile.
using Wafers = std::vector<std::shared_ptr<MeasuredWafer>>;

Wafers AllOf(discoplan_wafer* const* handles, std::int64_t count) {
  if (count < 1) Refuse("there are no wafers");
  Needed(handles, "wafers");
  Wafers wafers;
  for (std::int64_t i = 0; i < count; ++i) wafers.push_back(Get<MeasuredWafer>(handles[i]));
  return wafers;
}

std::shared_ptr<MeasuredWafer> Derived(const MeasuredWafer& like, const analysis::Derived& derived,
                                       std::string name, bool is_difference,
                                       std::int64_t* interpolated) {
  if (derived.sites.empty() || derived.missing > 0) {
    throw Error(DISCOPLAN_BAD_DATA, name + ": " + data::Counted(derived.missing, "site") +
                                        " have no partner, and too few others to interpolate from");
  }
  if (derived.interpolated > 0) name += " (interpolated)";
  if (interpolated != nullptr) *interpolated = static_cast<std::int64_t>(derived.interpolated);
  MeasuredWafer::Look look = like.Looks();
  look.is_difference = look.is_difference || is_difference;
  return WithSites(like, derived.sites, name, look);
}

}  // namespace

discoplan_status discoplan_wafer_new(const discoplan_sites* sites,
                                     const discoplan_wafer_options* options,
                                     discoplan_wafer** wafer) {
  return HandedOut<MeasuredWafer>(wafer, [&] {
    const discoplan_sites taken = Taken(&Needed(sites, "sites"), "discoplan_sites");
    return NewWafer(taken, 0, taken.count, Taken(options, "discoplan_wafer_options"));
  });
}

discoplan_status discoplan_wafer_describe(discoplan_wafer* wafer, discoplan_wafer_info* info) {
  return Guarded([&] {
    const auto held = Get<MeasuredWafer>(wafer);
    const data::Wafer& measured = held->Measured();
    const data::Parameter& parameter = held->Looks().parameter;
    Give(info, "discoplan_wafer_info",
         {.size = 0,
          .may_be_several = held->MayBeSeveral() ? 1 : 0,
          .sites = static_cast<std::int64_t>(measured.x.size()),
          .left_out = held->LeftOut(),
          .diameter = measured.diameter,
          .test_diameter = measured.test_diameter,
          .name = measured.name.c_str(),
          .quantity = parameter.name.c_str(),
          .unit = parameter.unit.c_str(),
          .sites_text = held->SitesText().c_str(),
          .repeated = held->Repeated()});
  });
}

discoplan_status discoplan_wafer_sites(discoplan_wafer* wafer, const float** x, const float** y,
                                       const float** value) {
  return Guarded([&] {
    const data::Wafer& measured = Get<MeasuredWafer>(wafer)->Measured();
    Needed(x, "x");
    Needed(y, "y");
    Needed(value, "value") = measured.value.data();
    *x = measured.x.data();
    *y = measured.y.data();
  });
}

discoplan_status discoplan_figure_count(int64_t* count) {
  return Guarded([&] {
    Needed(count, "count") = static_cast<std::int64_t>(analysis::FiguresOfMerit().size());
  });
}

discoplan_status discoplan_figure_describe(int64_t number, discoplan_figure* figure) {
  return Guarded([&] {
    const auto rows = analysis::FiguresOfMerit();
    if (number < 0 || number >= static_cast<std::int64_t>(rows.size())) {
      Refuse("there is no figure " + std::to_string(number));
    }
    const analysis::FigureOfMerit& row = rows[static_cast<std::size_t>(number)];
    // Texts of the rows are literals, which end in a zero.
    Give(figure, "discoplan_figure",
         {.size = 0,
          .unit = static_cast<std::int32_t>(row.unit),
          .key = row.key.data(),
          .title = row.title.data(),
          .formula = row.formula.data(),
          .source = row.source.data()});
  });
}

discoplan_status discoplan_wafer_statistics(discoplan_wafer* wafer, double* values,
                                            int64_t capacity) {
  return discoplan_wafer_figures(wafer, 0, values, capacity);
}

discoplan_status discoplan_wafer_figures(discoplan_wafer* wafer, uint64_t figures, double* values,
                                         int64_t capacity) {
  return Guarded([&] {
    const auto held = Get<MeasuredWafer>(wafer);
    Needed(values, "values");
    RequireRoom(capacity, static_cast<std::int64_t>(analysis::FiguresOfMerit().size()));
    for (const double value : held->Statistics(FiguresOf(figures))) *values++ = value;
  });
}

discoplan_status discoplan_wafer_interpolate(discoplan_wafer* wafer, int64_t count,
                                             const discoplan_array* x, const discoplan_array* y,
                                             float* values) {
  return Guarded([&] {
    const auto held = Get<MeasuredWafer>(wafer);
    if (count < 0) Refuse("count: there can't be fewer than no points");
    if (count == 0) return;
    const Numbers across(Needed(x, "x"), "x");
    const Numbers up(Needed(y, "y"), "y");
    Needed(values, "values");
    if (count == 1) {
      *values = held->At(static_cast<float>(across[0]), static_cast<float>(up[0]));
    } else {
      InterpolatePoints(*held, count, across, up, values);
    }
  });
}

discoplan_status discoplan_wafer_lattice(discoplan_wafer* wafer, const discoplan_lattice* lattice,
                                         float* values, int64_t capacity) {
  return Guarded([&] {
    const auto held = Get<MeasuredWafer>(wafer);
    const Grid grid = GridOf(Taken(&Needed(lattice, "lattice"), "discoplan_lattice"), *held);
    Needed(values, "values");
    RequireRoom(capacity, static_cast<std::int64_t>(grid.points.Size()));
    grid.smooth ? SmoothRows(*held, grid.points, {values, grid.points.Size()})
                : InterpolateRows(*held, grid.points, values);
  });
}

discoplan_status discoplan_wafer_minus(discoplan_wafer* wafer, discoplan_wafer* other,
                                       int64_t* interpolated, discoplan_wafer** difference) {
  return HandedOut<MeasuredWafer>(difference, [&] {
    const auto from = Get<MeasuredWafer>(wafer);
    const auto taken = Get<MeasuredWafer>(other);
    RequireOneUnit(*from, *taken);
    return Derived(*from, analysis::DifferenceOf(from->Sites(), taken->Sites()),
                   from->Measured().name + ", minus " + taken->Measured().name, true, interpolated);
  });
}

discoplan_status discoplan_wafers_mean(discoplan_wafer* const* wafers, int64_t count,
                                       int64_t* interpolated, discoplan_wafer** mean) {
  return HandedOut<MeasuredWafer>(mean, [&] {
    const Wafers all = AllOf(wafers, count);
    std::vector<std::span<const Site>> sites;
    for (const auto& each : all) {
      RequireOneQuantity(*all.front(), *each);
      sites.push_back(each->Sites());
    }
    return Derived(*all.front(), analysis::MeanWafer(sites), "mean", false, interpolated);
  });
}
