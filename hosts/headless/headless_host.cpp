// SPDX-License-Identifier: MIT
#include "hosts/headless/headless_host.h"

#include <algorithm>

#include "discoplan/forms/painter.h"
#include "hosts/headless/png_file.h"

namespace discoplan {
namespace {

/// Few enough to stay in the processor's cache.
constexpr int kStripRows = 64;

struct PixelSize {
  int width, height;
};

PixelSize PixelsOf(const PlotControl& control, const HeadlessHost& host) {
  const TwipsBox& box = control.root().Box();
  const Screen& screen = host.screen();
  return {WholePixels(box.width / screen.twips_per_pixel_x),
          WholePixels(box.height / screen.twips_per_pixel_y)};
}

/// What `use` makes of the picture in strips.
template <class Use>
auto InStrips(const PlotControl& control, const HeadlessHost& host, Use&& use) {
  const PixelSize size = PixelsOf(control, host);
  Canvas strip(size.width, std::min(size.height, kStripRows), PixelOf(kWhite));
  const auto rows_from = [&](int top) {
    strip.Resize(size.width, std::min(kStripRows, size.height - top), PixelOf(kWhite));
    strip.Clear(PixelOf(kWhite));
    PaintTree(control.root(), strip,
              {.resolution = host.screen(), .text = host.text(), .buttons = false, .top = top});
    return std::span<const Pixel>(strip.Pixels());
  };
  return use(PngStrips{.width = size.width, .height = size.height, .rows_from = rows_from});
}

}  // namespace

void HeadlessHost::Show(const Message& message) {
  if (show_) show_(message);
}

Canvas PaintPicture(const PlotControl& control, const HeadlessHost& host) {
  const PixelSize size = PixelsOf(control, host);
  Canvas canvas(size.width, size.height, PixelOf(kWhite));
  PaintTree(control.root(), canvas,
            {.resolution = host.screen(), .text = host.text(), .buttons = false});
  return canvas;
}

std::vector<std::uint8_t> EncodePicture(const PlotControl& control, const HeadlessHost& host) {
  return InStrips(control, host, [](const PngStrips& strips) { return EncodePng(strips); });
}

void SavePicture(const PlotControl& control, const HeadlessHost& host,
                 const std::filesystem::path& file) {
  InStrips(control, host, [&](const PngStrips& strips) { WritePng(file, strips); });
}

}  // namespace discoplan
