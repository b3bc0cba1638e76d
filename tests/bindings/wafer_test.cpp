// SPDX-License-Identifier: MIT
// Wafers, their figures, values between their sites, and lots, through the C interface.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include "tests/bindings/handles.h"
#include "tests/places.h"

namespace {

TEST(CWafer, HasTheStatisticsOfItsValues) {
  const std::vector<float> x = {-1, 0, 1, 2}, y = {0, 1, 0, 3}, value = {1, 2, 3, 6};
  const Wafer wafer(SitesOf(x, y, value));
  EXPECT_DOUBLE_EQ(FigureNamed(wafer.Get(), "mean"), 3);
  EXPECT_DOUBLE_EQ(FigureNamed(wafer.Get(), "std_dev"), std::sqrt(14.0 / 3));
  EXPECT_DOUBLE_EQ(FigureNamed(wafer.Get(), "median"), 2.5);
  const Wafer single(SitesOf({0}, {0}, {5}));
  EXPECT_TRUE(std::isnan(FigureNamed(single.Get(), "std_dev")));
}

TEST(CWafer, ReadsStridesAndDoublesInPlace) {
  struct Row {
    char tag;
    double z, x, y;
  };
  const std::vector<Row> rows = {
      {'a', 1, -10, 0}, {'b', 2, 10, 0}, {'c', 4, 0, 10}, {'d', 8, 0, -10}};
  discoplan_sites sites{};
  sites.size = sizeof sites;
  sites.count = 4;
  sites.x = {&rows[0].x, sizeof(Row), DISCOPLAN_FLOAT64, 0};
  sites.y = {&rows[0].y, sizeof(Row), DISCOPLAN_FLOAT64, 0};
  sites.value = {&rows[3].z, -static_cast<int64_t>(sizeof(Row)), DISCOPLAN_FLOAT64, 0};
  const Wafer wafer(sites);
  const float *x = nullptr, *y = nullptr, *value = nullptr;
  ASSERT_EQ(discoplan_wafer_sites(wafer.Get(), &x, &y, &value), DISCOPLAN_OK);
  EXPECT_EQ(std::vector<float>(x, x + 4), (std::vector<float>{-10, 10, 0, 0}));
  EXPECT_EQ(std::vector<float>(value, value + 4), (std::vector<float>{8, 4, 2, 1}));
}

TEST(CWafer, RefusesOrCountsWhatIsNoNumber) {
  std::vector<float> value = {1, 2, 3, 4, 5};
  value[3] = static_cast<float>(kNan);
  const std::vector<float> x = {0, 1, 2, 3, 4}, y = {0, 0, 0, 0, 0};
  const discoplan_sites sites = SitesOf(x, y, value);
  discoplan_wafer* wafer = nullptr;
  EXPECT_EQ(discoplan_wafer_new(&sites, nullptr, &wafer), DISCOPLAN_BAD_DATA);
  EXPECT_EQ(wafer, nullptr);
  EXPECT_STREQ(discoplan_error(),
               "value[3] is no number; mend it, or leave such sites out with skip_invalid");
  discoplan_wafer_options options{};
  options.size = sizeof options;
  options.skip_invalid = 1;
  const Wafer kept(sites, options);
  const discoplan_wafer_info info = kept.Info();
  EXPECT_EQ(info.sites, 4);
  EXPECT_EQ(info.left_out, 1);
  EXPECT_STREQ(info.sites_text, "4 of 5 sites; 1 empty value");
}

TEST(CWafer, RefusesToHaveNoSites) {
  const std::vector<float> numbers = {1, 2};
  discoplan_sites sites = SitesOf(numbers, numbers, numbers);
  for (const int64_t count : {int64_t{0}, int64_t{-1}, std::numeric_limits<int64_t>::min()}) {
    sites.count = count;
    discoplan_wafer* wafer = nullptr;
    EXPECT_EQ(discoplan_wafer_new(&sites, nullptr, &wafer), DISCOPLAN_BAD_DATA);
    EXPECT_STREQ(discoplan_error(), "has no sites");
  }
}

TEST(CWafer, RefusesSitesOffTheWafer) {
  discoplan_wafer_options options{};
  options.size = sizeof options;
  options.diameter = 100;
  options.name = "W1";
  const std::vector<float> x = {0, 60}, y = {0, 0}, value = {1, 2};
  const discoplan_sites sites = SitesOf(x, y, value);
  discoplan_wafer* wafer = nullptr;
  EXPECT_EQ(discoplan_wafer_new(&sites, &options, &wafer), DISCOPLAN_BAD_DATA);
  EXPECT_STREQ(discoplan_error(),
               "wafer 'W1': a site is 60 mm from the centre, outside a wafer of "
               "100 mm across; give a larger diameter");
}

TEST(CWafer, ComputesTheFiguresThatAreAskedFor) {
  const Ramp ramp;
  const Wafer wafer(ramp.Sites());
  int64_t count = 0;
  ASSERT_EQ(discoplan_figure_count(&count), DISCOPLAN_OK);
  std::vector<double> all(static_cast<std::size_t>(count)), some = all, zero = all;
  ASSERT_EQ(discoplan_wafer_statistics(wafer.Get(), all.data(), count), DISCOPLAN_OK);
  ASSERT_EQ(discoplan_wafer_figures(wafer.Get(), 0, zero.data(), count), DISCOPLAN_OK);
  EXPECT_EQ(zero, all);
  const uint64_t mask = MaskOf({"std_dev", "tilt"});
  ASSERT_EQ(discoplan_wafer_figures(wafer.Get(), mask, some.data(), count), DISCOPLAN_OK);
  for (int64_t i = 0; i < count; ++i) {
    const auto at = static_cast<std::size_t>(i);
    if ((mask >> i & 1) != 0) {
      EXPECT_EQ(some[at], all[at]);
    } else {
      EXPECT_TRUE(std::isnan(some[at])) << i;
    }
  }
  EXPECT_EQ(discoplan_wafer_figures(wafer.Get(), uint64_t{1} << count, some.data(), count),
            DISCOPLAN_BAD_ARGUMENT);
  EXPECT_EQ(std::string(discoplan_error()),
            "figures: asks for more than the " + std::to_string(count) + " that there are");
}

/// The four nearest sites by a pass over all, which the search over the cells agrees with here.
float MeanOfFour(const Ramp& ramp, double x, double y) {
  std::vector<std::pair<double, float>> near;
  for (std::size_t i = 0; i < ramp.x.size(); ++i) {
    near.emplace_back(std::hypot(ramp.x[i] - x, ramp.y[i] - y), ramp.value[i]);
  }
  std::sort(near.begin(), near.end());
  double sum = 0, weights = 0;
  for (int i = 0; i < 4; ++i) {
    const double weight =
        1 / (near[static_cast<std::size_t>(i)].first * near[static_cast<std::size_t>(i)].first);
    sum += weight * near[static_cast<std::size_t>(i)].second;
    weights += weight;
  }
  return static_cast<float>(sum / weights);
}

TEST(CWafer, InterpolatesPointsAndLatticesAlike) {
  const Ramp ramp;
  const Wafer wafer(ramp.Sites());
  const int n = 50;
  std::vector<float> lattice(n * n);
  discoplan_lattice grid{};
  grid.size = sizeof grid;
  grid.columns = grid.rows = n;
  ASSERT_EQ(discoplan_wafer_lattice(wafer.Get(), &grid, lattice.data(), n * n), DISCOPLAN_OK);
  const double radius = wafer.Info().test_diameter / 2, step = wafer.Info().diameter / n;
  int inside = 0, agreeing = 0;
  for (int row = 0; row < n; ++row) {
    for (int column = 0; column < n; ++column) {
      const double x = (column + 0.5 - n / 2.0) * step, y = (n / 2.0 - row - 0.5) * step;
      const float fx = static_cast<float>(x), fy = static_cast<float>(y);
      const float value = lattice[static_cast<std::size_t>(row * n + column)];
      float point = 0;
      discoplan_array px = {&fx, 0, DISCOPLAN_FLOAT32, 0}, py = {&fy, 0, DISCOPLAN_FLOAT32, 0};
      ASSERT_EQ(discoplan_wafer_interpolate(wafer.Get(), 1, &px, &py, &point), DISCOPLAN_OK);
      if (std::hypot(x, y) > radius) {
        ASSERT_TRUE(std::isnan(value) && std::isnan(point));
        continue;
      }
      ++inside;
      ASSERT_EQ(std::memcmp(&value, &point, sizeof value), 0);
      agreeing += std::abs(value - MeanOfFour(ramp, fx, fy)) < 1e-4;
    }
  }
  EXPECT_GT(inside, 1700);
  EXPECT_GT(agreeing, 0.9 * inside);  // the search may end before it has met the four nearest
}

TEST(CWafer, SubtractsAndAverages) {
  const Wafer a(SitesOf({0, 10, 20, 30}, {0, 0, 0, 0}, {1, 2, 3, 4}));
  const Wafer b(SitesOf({0, 10, 20, 30}, {0, 0, 0, 0}, {3, 5, 7, 9}));
  discoplan_wafer* made = nullptr;
  int64_t interpolated = -1;
  ASSERT_EQ(discoplan_wafer_minus(b.Get(), a.Get(), &interpolated, &made), DISCOPLAN_OK);
  EXPECT_EQ(interpolated, 0);
  EXPECT_DOUBLE_EQ(FigureNamed(made, "mean"), 3.5);
  discoplan_free(made);
  const std::array<discoplan_wafer*, 2> both = {a.Get(), b.Get()};
  ASSERT_EQ(discoplan_wafers_mean(both.data(), 2, nullptr, &made), DISCOPLAN_OK);
  EXPECT_DOUBLE_EQ(FigureNamed(made, "maximum"), 6.5);
  discoplan_free(made);
}

TEST(CWafer, SaysThatItWasInterpolated) {
  const Ramp ramp;
  Ramp moved;
  moved.x[7] += 1;
  discoplan_wafer_options options{};
  options.size = sizeof options;
  options.name = "A";
  const Wafer a(ramp.Sites(), options), b(moved.Sites(), options);
  for (const auto& [other, name] :
       {std::pair{a.Get(), "A, minus A"}, {b.Get(), "A, minus A (interpolated)"}}) {
    discoplan_wafer* made = nullptr;
    ASSERT_EQ(discoplan_wafer_minus(a.Get(), other, nullptr, &made), DISCOPLAN_OK);
    discoplan_wafer_info info{};
    info.size = sizeof info;
    ASSERT_EQ(discoplan_wafer_describe(made, &info), DISCOPLAN_OK);
    EXPECT_STREQ(info.name, name);
    discoplan_free(made);
  }
}

TEST(CWafer, IsNotMixedWithOthersOfAnotherKind) {
  const Ramp ramp;
  const auto made = [&](const char* quantity, const char* unit) {
    discoplan_wafer_options options{};
    options.size = sizeof options;
    options.quantity = quantity;
    options.unit = unit;
    return Wafer(ramp.Sites(), options);
  };
  const Wafer nm = made("THK", "nm"), angstrom = made("THK", "A"), other = made("n", "nm"),
              unknown = made(nullptr, nullptr);
  const std::string units = "the wafers' values are in 'nm' and 'A'; take wafers of one kind";
  const std::string names = "the wafers' values are 'THK' and 'n'; take wafers of one kind";
  struct Case {
    const Wafer& partner;
    std::string difference, mean;
  };
  for (const Case& test : {Case{angstrom, units, units}, {other, "", names}, {unknown, "", ""}}) {
    const std::array<discoplan_wafer*, 2> both = {nm.Get(), test.partner.Get()};
    discoplan_wafer* wafer = nullptr;
    discoplan_picture* sheet = nullptr;
    const auto expect = [](discoplan_status status, const std::string& text) {
      EXPECT_EQ(status, text.empty() ? DISCOPLAN_OK : DISCOPLAN_BAD_DATA);
      EXPECT_EQ(text.empty() ? "" : discoplan_error(), text);
    };
    expect(discoplan_wafer_minus(both[0], both[1], nullptr, &wafer), test.difference);
    discoplan_free(wafer);
    expect(discoplan_wafers_mean(both.data(), 2, nullptr, &wafer), test.mean);
    discoplan_free(wafer);
    expect(discoplan_sheet(both.data(), 2, nullptr, &sheet), test.mean);
    discoplan_free(sheet);
  }
}

std::vector<uint8_t> Packed(discoplan_wafer* wafer) {
  int64_t count = 0;
  EXPECT_EQ(discoplan_wafer_pack(wafer, nullptr, 0, &count), DISCOPLAN_OK);
  std::vector<uint8_t> bytes(static_cast<std::size_t>(count));
  EXPECT_EQ(discoplan_wafer_pack(wafer, bytes.data(), count - 1, &count), DISCOPLAN_BAD_ARGUMENT);
  EXPECT_EQ(discoplan_wafer_pack(wafer, bytes.data(), count, &count), DISCOPLAN_OK);
  return bytes;
}

std::vector<uint8_t> PngOf(discoplan_wafer* wafer) {
  discoplan_picture* picture = nullptr;
  const uint8_t* bytes = nullptr;
  int64_t count = 0;
  EXPECT_EQ(discoplan_plot(wafer, nullptr, &picture), DISCOPLAN_OK);
  EXPECT_EQ(discoplan_picture_encode(picture, DISCOPLAN_PNG, &bytes, &count), DISCOPLAN_OK);
  std::vector<uint8_t> png(bytes, bytes + count);
  discoplan_free(picture);
  return png;
}

TEST(CWafer, IsTheSameOutOfItsBytes) {
  Ramp ramp;
  ramp.value[3] = static_cast<float>(kNan);
  discoplan_wafer_options options{};
  options.size = sizeof options;
  options.skip_invalid = options.edge_given = 1;
  options.diameter = 300;
  options.edge_exclusion = 20;
  options.name = "L\xC3\xB6t, 3";
  options.quantity = "THK";
  options.unit = "nm";
  options.orientation = DISCOPLAN_FLAT;
  options.notch_side = DISCOPLAN_LEFT;
  const Wafer wafer(ramp.Sites(), options), other(ramp.Sites(), options);
  discoplan_wafer *difference = nullptr, *made = nullptr;
  ASSERT_EQ(discoplan_wafer_minus(wafer.Get(), other.Get(), nullptr, &difference), DISCOPLAN_OK);
  for (discoplan_wafer* each : {wafer.Get(), difference}) {
    const std::vector<uint8_t> bytes = Packed(each);
    ASSERT_EQ(discoplan_wafer_unpack(bytes.data(), static_cast<int64_t>(bytes.size()), &made),
              DISCOPLAN_OK)
        << discoplan_error();
    EXPECT_EQ(Packed(made), bytes);
    EXPECT_EQ(PngOf(made), PngOf(each));  // with its size, mark, unit and what was left out
    discoplan_free(made);
  }
  discoplan_free(difference);
}

TEST(CWafer, ComesOfNoOtherBytes) {
  const Ramp ramp;
  const Wafer wafer(ramp.Sites());
  const std::vector<uint8_t> whole = Packed(wafer.Get());
  const auto status = [](const std::vector<uint8_t>& bytes) {
    discoplan_wafer* made = nullptr;
    const discoplan_status found =
        discoplan_wafer_unpack(bytes.data(), static_cast<int64_t>(bytes.size()), &made);
    discoplan_free(made);
    return found;
  };
  for (std::size_t size = 0; size < whole.size(); ++size) {
    std::vector<uint8_t> part(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
    part.reserve(1);
    ASSERT_EQ(status(part), DISCOPLAN_BAD_DATA) << size;
  }
  std::vector<uint8_t> longer = whole;
  longer.push_back(0);
  EXPECT_EQ(status(longer), DISCOPLAN_BAD_DATA);
  for (std::size_t i = 0; i < whole.size(); ++i) {
    std::vector<uint8_t> damaged = whole;
    damaged[i] = 0xFF;
    const discoplan_status found = status(damaged);  // a value may be another one
    ASSERT_TRUE(found == DISCOPLAN_OK || found == DISCOPLAN_BAD_DATA) << i;
  }
  discoplan_wafer* made = nullptr;
  EXPECT_EQ(discoplan_wafer_unpack(nullptr, 4, &made), DISCOPLAN_BAD_ARGUMENT);
  EXPECT_EQ(discoplan_wafer_unpack(whole.data(), -1, &made), DISCOPLAN_BAD_ARGUMENT);
}

TEST(CWafer, TellsOfSitesThatMayBeThoseOfSeveral) {
  const Wafer few(SitesOf({0, 10, 20, 0}, {0, 0, 0, 0}, {1, 2, 3, 4}));
  EXPECT_EQ(few.Info().repeated, 1);
  EXPECT_EQ(few.Info().may_be_several, 0);
  EXPECT_STREQ(few.Info().sites_text, "4 sites");
  const Wafer half(SitesOf({0, 10, 20, 0, 10, -0.0F}, {0, 0, 0, 0, 0, 0}, {1, 2, 3, 4, 5, 6}));
  EXPECT_EQ(half.Info().repeated, 3);
  EXPECT_EQ(half.Info().may_be_several, 1);
  EXPECT_STREQ(half.Info().sites_text, "6 sites; 3 repeat a position");
  EXPECT_EQ(Wafer(SitesOf({5}, {5}, {1})).Info().repeated, 0);
}

TEST(CWafer, IsDescribedToCallersOfTheFirstVersion) {
  const Wafer wafer(SitesOf({0, 0}, {0, 0}, {1, 2}));
  discoplan_wafer_info info{};
  info.repeated = -7;
  info.size = offsetof(discoplan_wafer_info, repeated);
  ASSERT_EQ(discoplan_wafer_describe(wafer.Get(), &info), DISCOPLAN_OK);
  EXPECT_EQ(info.sites, 2);
  EXPECT_EQ(info.repeated, -7) << "beyond what the caller has";
  --info.size;
  EXPECT_EQ(discoplan_wafer_describe(wafer.Get(), &info), DISCOPLAN_BAD_ARGUMENT);
}

TEST(CLot, HandsOutItsWafers) {
  const std::string path = discoplan::Example("native_oxide_lot.csv");
  discoplan_lot* lot = nullptr;
  ASSERT_EQ(discoplan_read(path.c_str(), nullptr, &lot), DISCOPLAN_OK) << discoplan_error();
  int64_t count = 0;
  ASSERT_EQ(discoplan_lot_count(lot, &count), DISCOPLAN_OK);
  ASSERT_EQ(count, 25);
  discoplan_wafer* wafer = nullptr;
  ASSERT_EQ(discoplan_lot_wafer(lot, 6, &wafer), DISCOPLAN_OK);
  ASSERT_EQ(discoplan_free(lot), DISCOPLAN_OK);
  discoplan_wafer_info info{};
  info.size = sizeof info;
  ASSERT_EQ(discoplan_wafer_describe(wafer, &info), DISCOPLAN_OK);
  EXPECT_STREQ(info.name, "Slot07");
  EXPECT_NEAR(FigureNamed(wafer, "mean"), 9.7473, 5e-5);
  discoplan_free(wafer);
  EXPECT_EQ(discoplan_read("no/such.csv", nullptr, &lot), DISCOPLAN_NOT_FOUND);
  EXPECT_STREQ(discoplan_error(), "no/such.csv: no such file");
}

TEST(CLot, IsReadByCallersOfTheFirstVersion) {
  const std::string path = discoplan::Example("native_oxide_lot.csv");
  const auto status = [&](std::size_t size) {
    discoplan_read_options options{};
    options.size = static_cast<uint32_t>(size);
    options.drop_outliers = "none of them";  // where an earlier struct had ended
    discoplan_lot* lot = nullptr;
    const discoplan_status found = discoplan_read(path.c_str(), &options, &lot);
    discoplan_free(lot);
    return found;
  };
  const std::size_t first = offsetof(discoplan_read_options, value_unit);
  EXPECT_EQ(status(first), DISCOPLAN_OK);
  EXPECT_EQ(status(first - 1), DISCOPLAN_BAD_ARGUMENT);
  EXPECT_EQ(status(sizeof(discoplan_read_options)), DISCOPLAN_BAD_ARGUMENT);
}

}  // namespace
