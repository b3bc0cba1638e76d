// SPDX-License-Identifier: MIT
// Statistics of batches: whatever way they take, each wafer's are those that it has alone.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "tests/bindings/handles.h"

namespace {

/// Wafers behind each other, some of which have what may be refused or left out.
struct RandomBatch {
  static constexpr int kWafers = 24;

  std::vector<float> x, y, value;
  std::vector<int64_t> offsets = {0};

  explicit RandomBatch(unsigned seed) : draw_(seed) {
    std::vector<float> wafer_x, wafer_y;
    const float step = Chance(0.5) ? 0.01F : 0;
    const float level = Chance(0.5) ? 1000.0F : 0.0F;
    for (int wafer = 0; wafer < kWafers; ++wafer) {
      if (wafer == 0 || Chance(0.4)) Place(wafer_x, wafer_y);
      for (std::size_t i = 0; i < wafer_x.size(); ++i) {
        float z = level + wafer_x[i] / 100 + Within(1);
        if (step > 0) z = std::round(z / step) * step;
        value.push_back(z);
      }
      x.insert(x.end(), wafer_x.begin(), wafer_x.end());
      y.insert(y.end(), wafer_y.begin(), wafer_y.end());
      if (!wafer_x.empty() && Chance(0.4)) Spoil(wafer_x.size());
      offsets.push_back(static_cast<int64_t>(x.size()));
    }
  }

  discoplan_sites Of(int wafer) const {
    const auto first = static_cast<std::size_t>(offsets[static_cast<std::size_t>(wafer)]);
    const int64_t last = offsets[static_cast<std::size_t>(wafer) + 1];
    discoplan_sites sites = SitesOf(x, y, value);
    sites.count = last - static_cast<int64_t>(first);
    sites.x.data = x.data() + first;
    sites.y.data = y.data() + first;
    sites.value.data = value.data() + first;
    return sites;
  }

  bool Chance(double share) { return std::uniform_real_distribution<>(0, 1)(draw_) < share; }
  std::size_t Below(std::size_t count) { return draw_() % count; }

 private:
  float Within(float radius) {
    return std::uniform_real_distribution<float>(-radius, radius)(draw_);
  }
  /// On rings, the last of which may be on the edge of a wafer or of its test area.
  void Place(std::vector<float>& across, std::vector<float>& up) {
    static constexpr std::size_t kCounts[] = {0, 1, 2, 9, 10, 49, 96, 97, 150, 1200};
    static constexpr float kRadii[] = {60,        100, 147,    147.0005F, 147.001F,
                                       147.0015F, 150, 150.5F, 160,       9997};
    const std::size_t count = kCounts[Below(std::size(kCounts))];
    const float radius = kRadii[Below(std::size(kRadii))];
    across.clear();
    up.clear();
    for (std::size_t i = 0; i < count; ++i) {
      const float ring = radius * static_cast<float>(1 + i % 5) / 5;
      across.push_back(ring * std::cos(static_cast<float>(i)));
      up.push_back(count == 9 ? 0 : ring * std::sin(static_cast<float>(i)));
    }
  }

  /// One number of the last wafer.
  void Spoil(std::size_t sites) {
    static constexpr float kNumbers[] = {0,   -0.0F,  1e-16F, -1e-15F, 1e10F,    1.5e16F,   -3e38F,
                                         150, 150.4F, 151,    -147.2F, INFINITY, -INFINITY, NAN};
    std::vector<float>* const columns[] = {&x, &y, &value};
    std::vector<float>& column = *columns[Below(3)];
    column[column.size() - 1 - Below(sites)] = kNumbers[Below(std::size(kNumbers))];
  }

  std::mt19937 draw_;
};

discoplan_wafer_options OptionsOf(RandomBatch& batch) {
  discoplan_wafer_options options{};
  options.size = sizeof options;
  options.skip_invalid = batch.Chance(0.3) ? 1 : 0;
  static constexpr double kDiameters[] = {300, 300, 300, 300, 300, 300, 20000, 1e-50};
  if (batch.Chance(0.8)) options.diameter = kDiameters[batch.Below(std::size(kDiameters))];
  if (batch.Chance(0.2)) options.test_diameter = batch.Chance(0.8) ? 294 : 310;
  if (batch.Chance(0.2)) options.edge_given = 1;
  if (batch.Chance(0.5)) options.edge_exclusion = 3;
  if (batch.Chance(0.05)) options.orientation = 7;
  return options;
}

TEST(CBatch, GivesEachWaferTheStatisticsThatItHasAlone) {
  int64_t figures = 0;
  ASSERT_EQ(discoplan_figure_count(&figures), DISCOPLAN_OK);
  int refused = 0;
  for (unsigned seed = 0; seed < 80; ++seed) {
    RandomBatch wafers(seed);
    discoplan_batch batch{};
    batch.size = sizeof batch;
    const discoplan_sites all = SitesOf(wafers.x, wafers.y, wafers.value);
    batch.wafers = RandomBatch::kWafers;
    batch.count = all.count;
    batch.x = all.x;
    batch.y = all.y;
    batch.value = all.value;
    batch.offsets64 = wafers.offsets.data();
    const discoplan_wafer_options options = OptionsOf(wafers);
    batch.wafer = &options;
    discoplan_result* result = nullptr;
    ASSERT_EQ(discoplan_batch_run(&batch, &result), DISCOPLAN_OK) << discoplan_error();
    discoplan_result_view view{};
    view.size = sizeof view;
    ASSERT_EQ(discoplan_result_get(result, &view), DISCOPLAN_OK);
    for (int i = 0; i < RandomBatch::kWafers; ++i) {
      SCOPED_TRACE("seed " + std::to_string(seed) + ", wafer " + std::to_string(i));
      const discoplan_sites sites = wafers.Of(i);
      discoplan_wafer* wafer = nullptr;
      const discoplan_status status = discoplan_wafer_new(&sites, &options, &wafer);
      ASSERT_EQ(view.statuses[i], status);
      const std::string said(view.messages + view.message_offsets[i],
                             view.messages + view.message_offsets[i + 1]);
      ASSERT_EQ(said, status == DISCOPLAN_OK ? "" : discoplan_error());
      std::vector<double> alone(static_cast<std::size_t>(figures), kNan);
      if (status == DISCOPLAN_OK) {
        ASSERT_EQ(discoplan_wafer_statistics(wafer, alone.data(), figures), DISCOPLAN_OK);
      } else {
        ++refused;
      }
      for (int64_t k = 0; k < figures; ++k) {
        const double together = view.statistics[k * RandomBatch::kWafers + i];
        const double expected = alone[static_cast<std::size_t>(k)];
        if (std::isnan(expected) && std::isnan(together)) continue;
        ASSERT_EQ(std::memcmp(&together, &expected, sizeof expected), 0) << k;
      }
      discoplan_free(wafer);
    }
    discoplan_free(result);
  }
  EXPECT_GT(refused, 100);
}

}  // namespace
