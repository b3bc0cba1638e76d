// SPDX-License-Identifier: MIT
#pragma once

/// A host that needs no display: pictures with the machine's own fonts, and PNG files. One thread
/// uses a host with its plots; each thread may have its own.
///
///     HeadlessHost host;
///     Plot2D plot(host);
///     plot.SetSize(6000, 4500);
///     if (plot.SetWaferData(x, y, z) == LoadResult::Loaded) plot.Plot();
///     SavePicture(plot, host, "map.png");

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "discoplan/controls/plot_control.h"
#include "discoplan/platform/platform.h"
#include "discoplan/raster/picture.h"
#include "hosts/headless/export.h"
#include "hosts/headless/freetype_text.h"

namespace discoplan {

class DISCOPLAN_HEADLESS_EXPORT HeadlessHost final : public Platform {
 public:
  HeadlessHost() = default;
  /// Text grows with the resolution: half the twips per pixel are letters of twice the pixels.
  explicit HeadlessHost(const Screen& screen) : screen_(screen) {}
  HeadlessHost(const Screen& screen, std::shared_ptr<FontFinder> fonts)
      : screen_(screen), text_(std::move(fonts)) {}

  const Screen& screen() const override { return screen_; }
  const TextPainter& text() const override { return text_; }
  void Show(const Message& message) override;

  /// Where messages for the user go; they are lost without one.
  void OnMessage(std::function<void(const Message&)> show) { show_ = std::move(show); }

 private:
  Screen screen_;
  FreeTypeText text_;
  std::function<void(const Message&)> show_;
};

/// The control as its user sees it, without its buttons, in pixels of the host's screen.
DISCOPLAN_HEADLESS_EXPORT Canvas PaintPicture(const PlotControl& control, const HeadlessHost& host);

/// The same as the bytes of a PNG file. Raises `std::runtime_error` for a control without pixels.
DISCOPLAN_HEADLESS_EXPORT std::vector<std::uint8_t> EncodePicture(const PlotControl& control,
                                                                  const HeadlessHost& host);

/// The same in a PNG file. Raises `FileError` if it can't be written, and leaves no file then.
DISCOPLAN_HEADLESS_EXPORT void SavePicture(const PlotControl& control, const HeadlessHost& host,
                                           const std::filesystem::path& file);

}  // namespace discoplan
