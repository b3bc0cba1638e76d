// SPDX-License-Identifier: MIT
#pragma once

/// A plot as a picture of today in one call; the file's ending tells the format: .png, .pdf, .svg.
///
///     figures::WaferPlot plot;
///     plot.sites = {x, y, thickness};
///     plot.title = "Slot 7";
///     plot.unit = "nm";
///     SaveFigure("map.png", figures::PlotKind::Map, plot);

#include <cstdint>
#include <filesystem>
#include <vector>

#include "discoplan/figures/wafer_figure.h"
#include "hosts/headless/export.h"
#include "hosts/headless/figure_picture.h"
#include "hosts/headless/whole_file.h"

namespace discoplan {

enum class FigureFormat { Png, Pdf, Svg };

/// A page and its pixels.
struct FigureSize {
  double width = 0;   ///< Points.
  double height = 0;  ///< Points.
  double pixels_per_point = 2;

  /// In pixels. Letters grow with the square root of the picture, so that large ones get finer
  /// detail and larger letters at once.
  DISCOPLAN_HEADLESS_EXPORT static FigureSize Pixels(int width, int height);
  DISCOPLAN_HEADLESS_EXPORT static FigureSize Millimetres(double width, double height, double dpi);
};

/// Pixels per point of images in vector files.
inline constexpr double kPagePixels = 300.0 / 72;

/// The bytes of a file. Raises `std::runtime_error`, also on a machine without fonts.
DISCOPLAN_HEADLESS_EXPORT std::vector<std::uint8_t> EncodeFigure(const figures::Figure& figure,
                                                                 FigureFormat format,
                                                                 double pixels_per_point,
                                                                 const FigureText& text);

/// The file appears whole or not at all. Raises `FileError` and what `EncodeFigure` does; an ending
/// that is none of the three is PNG. The style's page size is that of `size`.
DISCOPLAN_HEADLESS_EXPORT void SaveFigure(const std::filesystem::path& path, figures::PlotKind kind,
                                          const figures::WaferPlot& plot, figures::Style style = {},
                                          const FigureSize& size = FigureSize::Pixels(800, 600));

}  // namespace discoplan
