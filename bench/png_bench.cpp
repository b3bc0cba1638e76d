// SPDX-License-Identifier: MIT
#include <benchmark/benchmark.h>
#include <png.h>
#include <zlib.h>

#include <cmath>

#include "bench/painted_scene.h"
#include "discoplan/figures/colour_map.h"
#include "discoplan/raster/picture.h"
#include "hosts/headless/pixel_deflater.h"
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

constexpr std::uint8_t kUp = 2;  // the filter's number

/// A smooth map in many shades below a row of zeros.
std::vector<std::uint32_t> MapBelowZeros() {
  const auto side = static_cast<std::size_t>(kSide);
  const figures::ColourMap colours = *figures::FindColourMap(figures::kDefaultColours);
  std::vector<std::uint32_t> rows(side);
  for (std::size_t y = 0; y < side; ++y) {
    for (std::size_t x = 0; x < side; ++x) {
      const double u = static_cast<double>(x) / kSide - 0.5;
      const double v = static_cast<double>(y) / kSide - 0.5;
      const bool is_map = u * u + v * v < 0.2;
      const double part = 0.5 + 0.3 * std::sin(7 * u) * std::cos(5 * v) + u * v;
      const figures::Rgba shade = is_map ? colours.At(part) : figures::Rgb(0xFFFFFF);
      rows.push_back(static_cast<std::uint32_t>(shade.red << 16 | shade.green << 8 | shade.blue));
    }
  }
  return rows;
}

void DeflateRows(benchmark::State& state) {
  const std::vector<std::uint32_t> rows = MapBelowZeros();
  std::size_t bytes = 0;
  for (auto _ : state) {
    PixelDeflater deflater(3);
    for (std::size_t start = kSide; start < rows.size(); start += kSide) {
      deflater.Add(kUp, std::span(rows).subspan(start, kSide),
                   std::span(rows).subspan(start - kSide, kSide));
    }
    bytes = deflater.Take().size();
  }
  state.counters["bytes"] = static_cast<double>(bytes);
}

void DeflateRowsByZlib(benchmark::State& state) {
  const std::vector<std::uint32_t> map = MapBelowZeros();
  std::vector<std::uint8_t> rows;  // each less the one above it
  for (std::size_t i = kSide; i < map.size(); ++i) {
    if (i % kSide == 0) rows.push_back(kUp);
    for (const int shift : {16, 8, 0}) {
      rows.push_back(static_cast<std::uint8_t>((map[i] >> shift) - (map[i - kSide] >> shift)));
    }
  }
  std::vector<std::uint8_t> out(compressBound(static_cast<uLong>(rows.size())));
  std::size_t bytes = 0;
  for (auto _ : state) {
    z_stream stream = {};
    deflateInit2(&stream, 6, Z_DEFLATED, 15, 9, Z_RLE);
    stream.next_in = const_cast<Bytef*>(rows.data());
    stream.avail_in = static_cast<uInt>(rows.size());
    stream.next_out = out.data();
    stream.avail_out = static_cast<uInt>(out.size());
    deflate(&stream, Z_FINISH);
    bytes = stream.total_out;
    deflateEnd(&stream);
  }
  state.counters["bytes"] = static_cast<double>(bytes);
}

BENCHMARK(DeflateRows)->Unit(benchmark::kMicrosecond);
BENCHMARK(DeflateRowsByZlib)->Unit(benchmark::kMicrosecond);
BENCHMARK(EncodeMap)->Unit(benchmark::kMicrosecond);
BENCHMARK(EncodeMapByLibpngDefaults)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace discoplan::bench
