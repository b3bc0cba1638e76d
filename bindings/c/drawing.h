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
#include "discoplan/controls/plot_control.h"
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

inline constexpr double kPageDots = 300;  ///< To the inch, of a size in mm.

/// Of 20 to 2000 mm each way. Raises `Error`.
FigureSize PageSize(double width_mm, double height_mm, double dpi = kPageDots);

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
/// The same on paper, as the control prints it.
figures::Figure PrintClassic(const MeasuredWafer& wafer, const Drawing& drawing);
/// A control as it is; its kind, colours and limits are its own.
figures::Figure PrintClassic(PlotControl& control, const Drawing& drawing);

/// A picture, kept as it was drawn. Files are made when they are asked for.
class HeldPicture final : public Held {
 public:
  static constexpr Kind kKind = Kind::Picture;
  using Handle = discoplan_picture;

  /// Pages of equal size, which a PDF file has one by one and others below each other. They read
  /// `wafers` until the picture goes.
  HeldPicture(std::vector<figures::Figure> pages, Drawing drawing,
              std::vector<std::shared_ptr<MeasuredWafer>> wafers);
  /// Pixels, and a page in place of them for vector files.
  HeldPicture(Canvas canvas, Drawing drawing, std::shared_ptr<MeasuredWafer> wafer);
  /// Pixels alone, as of a control.
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
  std::vector<figures::Figure> pages_;  ///< None in the classic look, until they are asked for.
  Drawing drawing_;
  const int width_;
  const int height_;
  bool has_alpha_ = false;
  std::vector<Pixel> pixels_;
  const std::optional<const Canvas> canvas_;  ///< Of the classic look.
  std::map<FigureFormat, std::vector<std::uint8_t>> files_;
};

FigureFormat FormatOf(std::int32_t format);
/// Draws one wafer, in either look.
std::shared_ptr<HeldPicture> Draw(const std::shared_ptr<MeasuredWafer>& wafer,
                                  const Drawing& drawing);

/// The same straight into the bytes of a file.
std::vector<std::uint8_t> DrawnFile(const std::shared_ptr<MeasuredWafer>& wafer,
                                    const Drawing& drawing, FigureFormat format);

}  // namespace discoplan::c
