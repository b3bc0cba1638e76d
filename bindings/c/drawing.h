// SPDX-License-Identifier: MIT
#pragma once

/// Pictures that callers hold, and how they are asked for.

#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "bindings/c/measured.h"
#include "discoplan/controls/control_class.h"
#include "discoplan/raster/canvas.h"
#include "hosts/headless/save_figure.h"

namespace discoplan::c {

/// What was asked of a picture, checked.
struct Drawing {
  const ControlClass* kind = nullptr;
  bool classic = false;
  int flags = 0;
  FigureSize size;
  int width = 0;   ///< Pixels.
  int height = 0;  ///< Pixels.
  bool has_size = false;
  std::string colours;
  std::string title;
  bool has_title = false;
  std::optional<std::pair<float, float>> limits;
  double sigma_range = 0;
  std::optional<figures::Cut> cut;
  std::optional<std::pair<double, double>> control_limits;
  int bins = 0;
  int bands = 0;
  bool idw4 = false;
  std::string font = "Arial";
  std::string font_file;
  std::string bold_font_file;

  bool Has(int flag) const { return (flags & flag) != 0; }
};

/// Raises `Error`.
Drawing DrawingOf(const discoplan_plot_options& options);

/// The text that a drawing is set in, one for each thread.
const FigureText& TextFor(const Drawing& drawing);
std::shared_ptr<FontFinder> FontsFor(const Drawing& drawing);

figures::PlotKind FigureKindOf(const ControlClass* kind);
figures::WaferPlot PlotOf(const MeasuredWafer& wafer, const Drawing& drawing);
figures::Style StyleOf(const MeasuredWafer& wafer, const Drawing& drawing);
figures::Figure MakeFigure(const MeasuredWafer& wafer, const Drawing& drawing);
/// The classic look, as the control of that kind draws it.
Canvas PaintClassic(const MeasuredWafer& wafer, const Drawing& drawing);

/// A picture, kept as it was drawn. Files are made when they are asked for.
class HeldPicture final : public Held {
 public:
  static constexpr Kind kKind = Kind::Picture;
  using Handle = discoplan_picture;

  /// Pages of equal size, which a PDF file has one by one and others below each other. They read
  /// `wafers` until the picture goes.
  HeldPicture(std::vector<figures::Figure> pages, Drawing drawing,
              std::vector<std::shared_ptr<MeasuredWafer>> wafers);
  explicit HeldPicture(Canvas canvas);

  int Width() const { return width_; }
  int Height() const { return height_; }
  /// Rows of 0xAARRGGBB from the top; stays as long as the picture.
  std::span<const Pixel> Pixels();
  const std::vector<std::uint8_t>& File(FigureFormat format);

 private:
  figures::Figure Stacked() const;
  std::vector<std::uint8_t> Encode(FigureFormat format);
  void Paint();

  std::mutex mutex_;
  std::vector<std::shared_ptr<MeasuredWafer>> wafers_;
  std::vector<figures::Figure> pages_;  ///< None in the classic look.
  Drawing drawing_;
  const int width_;
  const int height_;
  bool has_alpha_ = false;
  std::vector<Pixel> pixels_;
  const std::optional<const Canvas> canvas_;  ///< Of the classic look.
  std::map<FigureFormat, std::vector<std::uint8_t>> files_;
};

/// Raises the `Error` of a classic picture that is to be a vector file.
[[noreturn]] void RefuseVectors();
FigureFormat FormatOf(std::int32_t format);
/// Draws one wafer, in either look.
std::shared_ptr<HeldPicture> Draw(const std::shared_ptr<MeasuredWafer>& wafer,
                                  const Drawing& drawing);

}  // namespace discoplan::c
