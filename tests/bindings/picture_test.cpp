// SPDX-License-Identifier: MIT
// Pictures and batches through the C interface.
#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstring>
#include <string>
#include <vector>

#include "tests/bindings/handles.h"

namespace {

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
      ASSERT_EQ(discoplan_picture_encode(picture, DISCOPLAN_PDF, &bytes, &count), DISCOPLAN_OK);
      EXPECT_EQ(std::string(bytes, bytes + 5), "%PDF-");
      ASSERT_EQ(discoplan_picture_encode(picture, DISCOPLAN_SVG, &bytes, &count), DISCOPLAN_OK);
      EXPECT_EQ(std::string(bytes, bytes + 4), "<svg");
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

TEST(CPicture, OfTheClassicLookIsAPageOfTheSizeAskedFor) {
  discoplan_wafer_options named{};
  named.size = sizeof named;
  named.name = "Slot 7";
  const Wafer wafer(Ramp().Sites(), named);
  discoplan_plot_options options{};
  options.size = sizeof options;
  options.look = DISCOPLAN_CLASSIC;
  options.width_mm = 127;  // 360 points
  options.height_mm = 101.6;
  discoplan_picture* picture = nullptr;
  ASSERT_EQ(discoplan_plot(wafer.Get(), &options, &picture), DISCOPLAN_OK);
  const uint8_t* bytes = nullptr;
  int64_t count = 0;
  ASSERT_EQ(discoplan_picture_encode(picture, DISCOPLAN_SVG, &bytes, &count), DISCOPLAN_OK);
  const std::string svg(bytes, bytes + count);
  EXPECT_NE(svg.find("width=\"360pt\" height=\"288pt\""), svg.npos);
  EXPECT_NE(svg.find("<title>Slot 7</title>"), svg.npos);
  EXPECT_NE(svg.find(">Slot 7</text>"), svg.npos);
  EXPECT_NE(svg.find("Legend"), svg.npos);
  discoplan_free(picture);
  options.flags = DISCOPLAN_NO_LEGEND;
  ASSERT_EQ(discoplan_plot(wafer.Get(), &options, &picture), DISCOPLAN_OK);
  ASSERT_EQ(discoplan_picture_encode(picture, DISCOPLAN_SVG, &bytes, &count), DISCOPLAN_OK);
  EXPECT_EQ(std::string(bytes, bytes + count).find("Legend"), std::string::npos);
  discoplan_free(picture);
}

/// Of the wafers' sites behind each other; where each begins is still to be said.
discoplan_batch BatchOf(const discoplan_sites& sites, int64_t wafers) {
  discoplan_batch batch{};
  batch.size = sizeof batch;
  batch.wafers = wafers;
  batch.count = sites.count;
  batch.x = sites.x;
  batch.y = sites.y;
  batch.value = sites.value;
  return batch;
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
  discoplan_batch batch = BatchOf(SitesOf(x, y, value), 4);
  batch.offsets32 = offsets.data();
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

TEST(CBatch, PrintsTheClassicLook) {
  const Ramp ramp;
  const discoplan_sites sites = ramp.Sites();
  const std::vector<int64_t> offsets = {0, sites.count};
  discoplan_plot_options plot{};
  plot.size = sizeof plot;
  plot.look = DISCOPLAN_CLASSIC;
  plot.kind = "3DB";
  discoplan_batch batch = BatchOf(sites, 1);
  batch.offsets64 = offsets.data();
  batch.plot = &plot;
  batch.format = DISCOPLAN_SVG;
  discoplan_result* result = nullptr;
  ASSERT_EQ(discoplan_batch_run(&batch, &result), DISCOPLAN_OK) << discoplan_error();
  discoplan_result_view view{};
  view.size = sizeof view;
  ASSERT_EQ(discoplan_result_get(result, &view), DISCOPLAN_OK);
  const Wafer alone(sites);
  discoplan_picture* picture = nullptr;
  ASSERT_EQ(discoplan_plot(alone.Get(), &plot, &picture), DISCOPLAN_OK);
  const uint8_t* bytes = nullptr;
  int64_t count = 0;
  ASSERT_EQ(discoplan_picture_encode(picture, DISCOPLAN_SVG, &bytes, &count), DISCOPLAN_OK);
  EXPECT_EQ(std::string(bytes, bytes + count),
            std::string(view.pictures, view.pictures + view.picture_offsets[1]));
  discoplan_free(picture);
  discoplan_free(result);
}

TEST(CBatch, ComputesTheFiguresThatAreAskedFor) {
  const Ramp ramp;
  const discoplan_sites sites = ramp.Sites();
  const std::vector<int64_t> offsets = {0, sites.count};
  discoplan_batch batch = BatchOf(sites, 1);
  batch.offsets64 = offsets.data();
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

}  // namespace
