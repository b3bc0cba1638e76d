// SPDX-License-Identifier: MIT
#include "hosts/headless/headless_host.h"

#include <cmath>

#include "discoplan/forms/painter.h"
#include "hosts/headless/png_file.h"

namespace discoplan {
namespace {

constexpr double kTwipsPerPoint = 20;

}  // namespace

std::unique_ptr<Picture> HeadlessHost::NewPicture(float width, float height) {
  return std::make_unique<Picture>(
      Picture::Setting{.screen = screen_, .resolution = screen_, .text = text_}, width, height);
}

float HeadlessHost::LabelWidth(const Font& font, std::string_view text) const {
  const double pixels = text_.Width(font, kTwipsPerPoint / screen_.twips_per_pixel_y, text);
  return static_cast<float>(pixels * screen_.twips_per_pixel_x);
}

void HeadlessHost::Show(const Message& message) {
  if (show_) show_(message);
}

Canvas PaintPicture(const PlotControl& control, const HeadlessHost& host) {
  const TwipsBox& box = control.root().box;
  const Screen& screen = host.screen();
  Canvas canvas(static_cast<int>(std::lround(box.width / screen.twips_per_pixel_x)),
                static_cast<int>(std::lround(box.height / screen.twips_per_pixel_y)),
                PixelOf(kWhite));
  PaintTree(control.root(), canvas, {.resolution = screen, .text = host.text(), .buttons = false});
  return canvas;
}

void SavePicture(const PlotControl& control, const HeadlessHost& host,
                 const std::filesystem::path& file) {
  const Canvas canvas = PaintPicture(control, host);
  WritePng(file, canvas.Pixels(), canvas.Width(), canvas.Height());
}

}  // namespace discoplan
