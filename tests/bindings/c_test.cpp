// SPDX-License-Identifier: MIT
// The C interface as its callers use it, well and badly. Nothing of the C++ library is linked.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <cstring>

#include <limits>
#include <string>
#include <thread>
#include <vector>

#include "bindings/c/discoplan.h"
#include "tests/bindings/handles.h"
#include "tests/places.h"

namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

/// Rings of sites on a 300 mm wafer whose value grows along X.
struct Ramp {
  std::vector<float> x = {0};
  std::vector<float> y = {0};
  std::vector<float> value = {100};

  Ramp() {
    for (int ring = 1; ring <= 4; ++ring) {
      for (int i = 0; i < 8 * ring; ++i) {
        const double angle = 2 * 3.14159265358979 * i / (8 * ring) + 0.3 * ring;
        x.push_back(static_cast<float>(35 * ring * std::cos(angle)));
        y.push_back(static_cast<float>(35 * ring * std::sin(angle)));
        value.push_back(100 + x.back() / 10);
      }
    }
  }
  discoplan_sites Sites() const { return SitesOf(x, y, value); }
};

double FigureNamed(discoplan_wafer* wafer, const std::string& key) {
  int64_t count = 0;
  EXPECT_EQ(discoplan_figure_count(&count), DISCOPLAN_OK);
  std::vector<double> values(static_cast<std::size_t>(count));
  EXPECT_EQ(discoplan_wafer_statistics(wafer, values.data(), count), DISCOPLAN_OK);
  for (int64_t i = 0; i < count; ++i) {
    discoplan_figure figure{};
    figure.size = sizeof figure;
    EXPECT_EQ(discoplan_figure_describe(i, &figure), DISCOPLAN_OK);
    if (key == figure.key) return values[static_cast<std::size_t>(i)];
  }
  ADD_FAILURE() << "no figure " << key;
  return 0;
}

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

TEST(CPicture, IsPixelsAndFiles) {
  const Wafer wafer(Ramp().Sites());
  discoplan_plot_options options{};
  options.size = sizeof options;
  options.width = 320;
  options.height = 240;
  for (const char* kind : {"2D", "2DS", "2DC", "2DN", "3D", "3DS", "3DB", "histo", "linescan"}) {
    options.kind = kind;
    for (const int32_t look : {DISCOPLAN_MODERN, DISCOPLAN_CLASSIC}) {
      options.look = look;
      discoplan_picture* picture = nullptr;
      ASSERT_EQ(discoplan_plot(wafer.Get(), &options, &picture), DISCOPLAN_OK) << discoplan_error();
      int32_t width = 0, height = 0;
      ASSERT_EQ(discoplan_picture_size(picture, &width, &height), DISCOPLAN_OK);
      EXPECT_EQ(width, 320);
      EXPECT_EQ(height, 240);
      std::vector<uint8_t> rgba(320 * 240 * 4);
      ASSERT_EQ(discoplan_picture_rgba(picture, rgba.data(), 320 * 240 * 4, 0), DISCOPLAN_OK);
      EXPECT_EQ(rgba[3], 255);
      EXPECT_EQ(rgba[0], 255);  // white paper
      const uint8_t* bytes = nullptr;
      int64_t count = 0;
      ASSERT_EQ(discoplan_picture_encode(picture, DISCOPLAN_PNG, &bytes, &count), DISCOPLAN_OK);
      EXPECT_EQ(std::memcmp(bytes, "\x89PNG", 4), 0);
      const bool is_modern = look == DISCOPLAN_MODERN;
      EXPECT_EQ(discoplan_picture_encode(picture, DISCOPLAN_PDF, &bytes, &count),
                is_modern ? DISCOPLAN_OK : DISCOPLAN_BAD_ARGUMENT);
      EXPECT_EQ(is_modern ? std::string(bytes, bytes + 5) : "%PDF-", "%PDF-");
      discoplan_free(picture);
    }
  }
}

TEST(CPicture, ShowsLotsInOneScale) {
  std::vector<discoplan_wafer*> wafers;
  const Ramp ramp;
  for (int i = 0; i < 5; ++i) {
    const discoplan_sites sites = ramp.Sites();
    discoplan_wafer* wafer = nullptr;
    ASSERT_EQ(discoplan_wafer_new(&sites, nullptr, &wafer), DISCOPLAN_OK);
    wafers.push_back(wafer);
  }
  discoplan_picture* sheet = nullptr;
  ASSERT_EQ(discoplan_sheet(wafers.data(), 5, nullptr, &sheet), DISCOPLAN_OK) << discoplan_error();
  int32_t width = 0, height = 0;
  ASSERT_EQ(discoplan_picture_size(sheet, &width, &height), DISCOPLAN_OK);
  EXPECT_EQ(width, 1684);
  EXPECT_EQ(height, 1190);
  for (discoplan_wafer* wafer : wafers) discoplan_free(wafer);
  const uint8_t* bytes = nullptr;
  int64_t count = 0;  // the picture keeps its wafers
  EXPECT_EQ(discoplan_picture_encode(sheet, DISCOPLAN_SVG, &bytes, &count), DISCOPLAN_OK);
  discoplan_free(sheet);
}

TEST(CBatch, GivesEachWaferItsOwnStatus) {
  const Ramp ramp;
  std::vector<float> x, y, value;
  std::vector<int32_t> offsets = {0};
  for (int wafer = 0; wafer < 4; ++wafer) {
    const std::size_t sites = wafer == 2 ? 0 : ramp.x.size();
    x.insert(x.end(), ramp.x.begin(), ramp.x.begin() + static_cast<std::ptrdiff_t>(sites));
    y.insert(y.end(), ramp.y.begin(), ramp.y.begin() + static_cast<std::ptrdiff_t>(sites));
    value.insert(value.end(), ramp.value.begin(),
                 ramp.value.begin() + static_cast<std::ptrdiff_t>(sites));
    offsets.push_back(static_cast<int32_t>(x.size()));
  }
  value[ramp.x.size() + 2] = static_cast<float>(kNan);  // of the second wafer
  discoplan_plot_options plot{};
  plot.size = sizeof plot;
  discoplan_batch batch{};
  batch.size = sizeof batch;
  batch.wafers = 4;
  batch.offsets32 = offsets.data();
  const discoplan_sites sites = SitesOf(x, y, value);
  batch.count = sites.count;
  batch.x = sites.x;
  batch.y = sites.y;
  batch.value = sites.value;
  const std::vector<int32_t> name_offsets = {0, 2, 4, 6, 8};
  batch.names = "W1W2W3W4";
  batch.name_offsets32 = name_offsets.data();
  batch.plot = &plot;
  discoplan_result* result = nullptr;
  ASSERT_EQ(discoplan_batch_run(&batch, &result), DISCOPLAN_OK) << discoplan_error();
  discoplan_result_view view{};
  view.size = sizeof view;
  ASSERT_EQ(discoplan_result_get(result, &view), DISCOPLAN_OK);
  EXPECT_EQ(
      std::vector<int32_t>(view.statuses, view.statuses + 4),
      (std::vector<int32_t>{DISCOPLAN_OK, DISCOPLAN_BAD_DATA, DISCOPLAN_BAD_DATA, DISCOPLAN_OK}));
  EXPECT_EQ(
      std::string(view.messages + view.message_offsets[1], view.messages + view.message_offsets[3]),
      "wafer 'W2': value[2] is no number; mend it, or leave such sites out with skip_invalid"
      "wafer 'W3': has no sites");
  // A wafer's numbers and picture are those that it has alone.
  discoplan_wafer_options options{};
  options.size = sizeof options;
  options.name = "W4";
  const Wafer alone(ramp.Sites(), options);
  EXPECT_EQ(view.statistics[3], FigureNamed(alone.Get(), "mean"));
  EXPECT_TRUE(std::isnan(view.statistics[1]));
  discoplan_picture* picture = nullptr;
  ASSERT_EQ(discoplan_plot(alone.Get(), &plot, &picture), DISCOPLAN_OK);
  const uint8_t* bytes = nullptr;
  int64_t count = 0;
  ASSERT_EQ(discoplan_picture_encode(picture, DISCOPLAN_PNG, &bytes, &count), DISCOPLAN_OK);
  EXPECT_EQ(std::vector<uint8_t>(bytes, bytes + count),
            std::vector<uint8_t>(view.pictures + view.picture_offsets[3],
                                 view.pictures + view.picture_offsets[4]));
  EXPECT_EQ(view.picture_offsets[1], view.picture_offsets[3]);
  discoplan_free(picture);
  discoplan_free(result);
}

int64_t NumberOf(const std::string& key) {
  discoplan_figure figure{};
  figure.size = sizeof figure;
  for (int64_t i = 0; discoplan_figure_describe(i, &figure) == DISCOPLAN_OK; ++i) {
    if (key == figure.key) return i;
  }
  ADD_FAILURE() << "no figure " << key;
  return 0;
}

uint64_t MaskOf(const std::vector<std::string>& keys) {
  uint64_t mask = 0;
  for (const std::string& key : keys) mask |= uint64_t{1} << NumberOf(key);
  return mask;
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

TEST(CBatch, ComputesTheFiguresThatAreAskedFor) {
  const Ramp ramp;
  const discoplan_sites sites = ramp.Sites();
  const std::vector<int64_t> offsets = {0, sites.count};
  discoplan_batch batch{};
  batch.size = sizeof batch;
  batch.wafers = 1;
  batch.offsets64 = offsets.data();
  batch.count = sites.count;
  batch.x = sites.x;
  batch.y = sites.y;
  batch.value = sites.value;
  batch.figures = MaskOf({"mean"});
  const auto figures = [&] {
    discoplan_result* result = nullptr;
    EXPECT_EQ(discoplan_batch_run(&batch, &result), DISCOPLAN_OK) << discoplan_error();
    discoplan_result_view view{};
    view.size = sizeof view;
    EXPECT_EQ(discoplan_result_get(result, &view), DISCOPLAN_OK);
    std::vector<double> found(view.statistics, view.statistics + view.figures);
    discoplan_free(result);
    return found;
  };
  const auto mean = static_cast<std::size_t>(NumberOf("mean"));
  const auto range = static_cast<std::size_t>(NumberOf("range"));
  const Wafer wafer(sites);
  EXPECT_EQ(figures()[mean], FigureNamed(wafer.Get(), "mean"));
  EXPECT_TRUE(std::isnan(figures()[range]));
  // A caller that was built before there was the field gets all, whatever lies behind its struct.
  batch.size = offsetof(discoplan_batch, figures);
  EXPECT_EQ(figures()[range], FigureNamed(wafer.Get(), "range"));
  batch.size -= 1;
  discoplan_result* result = nullptr;
  EXPECT_EQ(discoplan_batch_run(&batch, &result), DISCOPLAN_BAD_ARGUMENT);
  batch.size = sizeof batch;
  batch.figures = ~uint64_t{0};
  EXPECT_EQ(discoplan_batch_run(&batch, &result), DISCOPLAN_BAD_ARGUMENT);
}

struct Heard {
  std::vector<std::string> events;
  discoplan_control* control = nullptr;
};

extern "C" void Hear(void* context, const char* event, const discoplan_value* args, int64_t count) {
  auto& heard = *static_cast<Heard*>(context);
  std::string text = event;
  for (int64_t i = 0; i < count; ++i)
    text += ' ' + std::to_string(static_cast<int>(args[i].number));
  heard.events.push_back(text);
  if (heard.control != nullptr) discoplan_free(heard.control);  // in the midst of its own event
}

discoplan_value NumberValue(double number) {
  discoplan_value value{};
  value.type = DISCOPLAN_DOUBLE;
  value.number = number;
  return value;
}

TEST(CControl, HasItsMembersByName) {
  discoplan_control* plot = nullptr;
  ASSERT_EQ(discoplan_control_new("Plot2D", 400, 300, &plot), DISCOPLAN_OK) << discoplan_error();
  discoplan_value value = NumberValue(300);
  ASSERT_EQ(discoplan_control_set(plot, "WaferDiameter", &value), DISCOPLAN_OK);
  const Ramp ramp;
  std::array<discoplan_value, 3> args{};
  const std::array<const std::vector<float>*, 3> arrays = {&ramp.x, &ramp.y, &ramp.value};
  for (std::size_t i = 0; i < 3; ++i) {
    args[i].type = DISCOPLAN_NUMBERS;
    args[i].lower = 1;
    args[i].numbers = arrays[i]->data();
    args[i].count = static_cast<int64_t>(arrays[i]->size());
  }
  ASSERT_EQ(discoplan_control_call(plot, "SetWaferData", args.data(), 3, &value), DISCOPLAN_OK)
      << discoplan_error();
  EXPECT_EQ(value.number, 0);
  ASSERT_EQ(discoplan_control_call(plot, "Plot", nullptr, 0, nullptr), DISCOPLAN_OK);
  ASSERT_EQ(discoplan_control_get(plot, "Maximum", &value), DISCOPLAN_OK);
  EXPECT_EQ(static_cast<float>(value.number),
            *std::max_element(ramp.value.begin(), ramp.value.end()));
  ASSERT_EQ(discoplan_control_get(plot, "PlotCaption", &value), DISCOPLAN_OK);
  EXPECT_EQ(value.type, DISCOPLAN_TEXT);
  ASSERT_EQ(discoplan_control_call(plot, "GetWaferData", args.data(), 3, &value), DISCOPLAN_OK)
      << discoplan_error();
  EXPECT_EQ(args[2].count, static_cast<int64_t>(ramp.value.size()));
  EXPECT_EQ(args[2].numbers[5], ramp.value[5]);

  EXPECT_EQ(discoplan_control_get(plot, "Nothing", &value), DISCOPLAN_NO_MEMBER);
  value.type = DISCOPLAN_TEXT;
  value.text = "wide";
  EXPECT_EQ(discoplan_control_set(plot, "TestDiameter", &value), DISCOPLAN_BAD_TYPE);
  EXPECT_STREQ(discoplan_error(), "TestDiameter: Type mismatch");
  EXPECT_EQ(discoplan_control_call(plot, "Plot", args.data(), 1, nullptr), DISCOPLAN_BAD_ARGUMENT);
  discoplan_free(plot);
}

TEST(CControl, TellsItsEvents) {
  discoplan_control* plot = nullptr;
  ASSERT_EQ(discoplan_control_new("Plot2D", 400, 300, &plot), DISCOPLAN_OK);
  Heard heard;
  ASSERT_EQ(discoplan_control_listen(plot, Hear, &heard), DISCOPLAN_OK);
  ASSERT_EQ(discoplan_control_mouse(plot, nullptr, "MouseDown", 1, 0, 20, 30), DISCOPLAN_OK);
  ASSERT_EQ(discoplan_control_mouse(plot, nullptr, "Click", 0, 0, 0, 0), DISCOPLAN_OK);
  EXPECT_EQ(heard.events, (std::vector<std::string>{"MouseDown 1 0 20 30", "Click"}));
  EXPECT_EQ(discoplan_control_mouse(plot, nullptr, "KeyDown", 0, 0, 0, 0), DISCOPLAN_NO_MEMBER);
  EXPECT_EQ(discoplan_control_mouse(plot, "nobody", "Click", 0, 0, 0, 0), DISCOPLAN_NO_MEMBER);
  heard.control = plot;
  EXPECT_EQ(discoplan_control_mouse(plot, nullptr, "Click", 0, 0, 0, 0), DISCOPLAN_OK);
  EXPECT_EQ(discoplan_control_resize(plot, 100, 100), DISCOPLAN_BAD_HANDLE);
}

TEST(CMisuse, OfHandlesIsRefused) {
  const Wafer wafer(Ramp().Sites());
  int64_t count = 0;
  double numbers[4];
  EXPECT_EQ(discoplan_wafer_statistics(nullptr, numbers, 4), DISCOPLAN_BAD_HANDLE);
  EXPECT_STREQ(discoplan_error(), "the wafer's handle is null");
  EXPECT_EQ(discoplan_lot_count(reinterpret_cast<discoplan_lot*>(wafer.Get()), &count),
            DISCOPLAN_BAD_HANDLE);
  EXPECT_STREQ(discoplan_error(), "the handle is a wafer's, not a lot's");
  int on_stack = 0;
  EXPECT_EQ(discoplan_free(&on_stack), DISCOPLAN_BAD_HANDLE);
  discoplan_wafer* freed = Wafer(Ramp().Sites()).Get();  // freed by now
  EXPECT_EQ(discoplan_wafer_statistics(freed, numbers, 4), DISCOPLAN_BAD_HANDLE);
  EXPECT_EQ(discoplan_free(freed), DISCOPLAN_BAD_HANDLE);
  EXPECT_EQ(discoplan_free(nullptr), DISCOPLAN_OK);
}

TEST(CMisuse, OfStructsAndPointersIsRefused) {
  const Ramp ramp;
  discoplan_sites sites = ramp.Sites();
  discoplan_wafer* wafer = nullptr;
  EXPECT_EQ(discoplan_wafer_new(nullptr, nullptr, &wafer), DISCOPLAN_BAD_ARGUMENT);
  EXPECT_EQ(discoplan_wafer_new(&sites, nullptr, nullptr), DISCOPLAN_BAD_ARGUMENT);
  sites.size = 8;
  EXPECT_EQ(discoplan_wafer_new(&sites, nullptr, &wafer), DISCOPLAN_BAD_ARGUMENT);
  sites = ramp.Sites();
  sites.x.data = nullptr;
  EXPECT_EQ(discoplan_wafer_new(&sites, nullptr, &wafer), DISCOPLAN_BAD_ARGUMENT);
  sites = ramp.Sites();
  sites.y.type = 7;
  EXPECT_EQ(discoplan_wafer_new(&sites, nullptr, &wafer), DISCOPLAN_BAD_ARGUMENT);
  sites = ramp.Sites();
  sites.count = -1;
  EXPECT_NE(discoplan_wafer_new(&sites, nullptr, &wafer), DISCOPLAN_OK);
  sites.count = 40000;
  EXPECT_EQ(discoplan_wafer_new(&sites, nullptr, &wafer), DISCOPLAN_BAD_DATA);
  const Wafer good(ramp.Sites());
  double number = 0;
  EXPECT_EQ(discoplan_wafer_statistics(good.Get(), &number, 1), DISCOPLAN_BAD_ARGUMENT);
  EXPECT_EQ(number, 0);
  discoplan_picture* picture = nullptr;
  discoplan_plot_options options{};
  options.size = sizeof options;
  options.kind = "4D";
  EXPECT_EQ(discoplan_plot(good.Get(), &options, &picture), DISCOPLAN_BAD_ARGUMENT);
  EXPECT_STREQ(discoplan_error(),
               "kind: '4D' is none of 2D, 2DS, 2DC, 2DN, 3D, 3DS, 3DB, histo, linescan");
}

TEST(CMisuse, StructsOfLaterVersionsWillDoIfTheyAskForNothingNew) {
  struct Later {
    discoplan_plot_options known;
    double news;
  } later{};
  later.known.size = sizeof later;
  const Wafer wafer(Ramp().Sites());
  discoplan_picture* picture = nullptr;
  EXPECT_EQ(discoplan_plot(wafer.Get(), &later.known, &picture), DISCOPLAN_OK);
  discoplan_free(picture);
  later.news = 1;
  EXPECT_EQ(discoplan_plot(wafer.Get(), &later.known, &picture), DISCOPLAN_BAD_ARGUMENT);
  EXPECT_EQ(picture, nullptr);
}

TEST(CThreads, KeepWhatTheyAreGivenByAControl) {
  discoplan_control* control = nullptr;
  ASSERT_EQ(discoplan_control_new("Plot2D", 400, 300, &control), DISCOPLAN_OK);
  const std::string first(100, 'a'), second(100, 'b');
  const auto captioned = [&](const std::string& text) {
    discoplan_value value{};
    value.type = DISCOPLAN_TEXT;
    value.text = text.c_str();
    EXPECT_EQ(discoplan_control_set(control, "PlotCaption", &value), DISCOPLAN_OK);
    EXPECT_EQ(discoplan_control_get(control, "PlotCaption", &value), DISCOPLAN_OK);
    return value.text;
  };
  const char* const given = captioned(first);
  std::thread([&] { EXPECT_EQ(captioned(second), second); }).join();
  EXPECT_EQ(given, first);
  discoplan_free(control);
}

TEST(CThreads, ShareWafersAndFreeThemAtAnyTime) {
  const Ramp ramp;
  std::vector<std::thread> threads;
  std::atomic<int> drawn = 0;
  const discoplan_sites sites = ramp.Sites();
  discoplan_wafer* shared = nullptr;
  ASSERT_EQ(discoplan_wafer_new(&sites, nullptr, &shared), DISCOPLAN_OK);
  for (int i = 0; i < 8; ++i) {
    threads.emplace_back([&, i] {
      for (int k = 0; k < 5; ++k) {
        discoplan_picture* picture = nullptr;
        const discoplan_status status = discoplan_plot(shared, nullptr, &picture);
        const uint8_t* bytes = nullptr;
        int64_t count = 0;
        if (status == DISCOPLAN_OK &&
            discoplan_picture_encode(picture, DISCOPLAN_PNG, &bytes, &count) == DISCOPLAN_OK) {
          ++drawn;
        } else {
          EXPECT_EQ(status, DISCOPLAN_BAD_HANDLE);
        }
        discoplan_free(picture);
        if (i == 3 && k == 3) discoplan_free(shared);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_GE(drawn, 4);
}

}  // namespace
