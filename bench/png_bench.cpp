// SPDX-License-Identifier: MIT
#include <benchmark/benchmark.h>
#include <png.h>

#include "bench/painted_scene.h"
#include "discoplan/raster/picture.h"
#include "hosts/headless/png_file.h"

namespace discoplan::bench {
namespace {

Canvas MapPicture() {
  Canvas canvas(kSide, kSide, 0xFFFFFFFF);
  for (const PaintedCell& cell : MapCells()) {
    canvas.Polygon(cell.corners, {.visible = false}, {.pixel = PixelOf(cell.colour)});
  }
  return canvas;
}

void EncodeMap(benchmark::State& state) {
  const Canvas canvas = MapPicture();
  std::size_t bytes = 0;
  for (auto _ : state) {
    bytes = EncodePng({.pixels = canvas.Pixels(), .width = kSide, .height = kSide}).size();
  }
  state.counters["bytes"] = static_cast<double>(bytes);
}

void Append(png_structp png, png_bytep data, std::size_t size) {
  auto* bytes = static_cast<std::vector<png_byte>*>(png_get_io_ptr(png));
  bytes->insert(bytes->end(), data, data + size);
}

std::vector<png_byte> EncodeByDefaults(const std::vector<png_byte>& rgb) {
  std::vector<png_byte> bytes;
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png_create_info_struct(png);
  png_set_write_fn(png, &bytes, Append, [](png_structp) {});
  png_set_IHDR(png, info, kSide, kSide, 8, PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE,
               PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
  png_write_info(png, info);
  for (std::size_t y = 0; y < kSide; ++y) png_write_row(png, rgb.data() + 3 * kSide * y);
  png_write_end(png, nullptr);
  png_destroy_write_struct(&png, &info);
  return bytes;
}

/// libpng as it comes: level 6, filters by its own choice, true colour.
void EncodeMapByLibpngDefaults(benchmark::State& state) {
  const Canvas canvas = MapPicture();
  std::vector<png_byte> rgb;
  for (const Pixel pixel : canvas.Pixels()) {
    for (const int shift : {16, 8, 0}) rgb.push_back(static_cast<png_byte>(pixel >> shift));
  }
  std::size_t bytes = 0;
  for (auto _ : state) bytes = EncodeByDefaults(rgb).size();
  state.counters["bytes"] = static_cast<double>(bytes);
}

BENCHMARK(EncodeMap)->Unit(benchmark::kMicrosecond);
BENCHMARK(EncodeMapByLibpngDefaults)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace discoplan::bench
