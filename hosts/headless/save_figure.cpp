// SPDX-License-Identifier: MIT
#include "hosts/headless/save_figure.h"

#include <algorithm>
#include <cmath>

#include "discoplan/figures/svg.h"
#include "hosts/headless/figure_pdf.h"
#include "hosts/headless/png_file.h"

namespace discoplan {
namespace {

std::vector<std::uint8_t> EncodeSvg(const figures::Figure& figure) {
  const std::string text = ToSvg(figure, kPagePixels, [](const figures::OpaqueRows& rows) {
    return EncodePng(
        PngStrips{.width = rows.width, .height = rows.height, .rows_from = rows.row_at});
  });
  return {text.begin(), text.end()};
}

}  // namespace

FigureSize FigureSize::Pixels(int width, int height) {
  constexpr double kPlainSide = 300;
  const double side = std::max(1.0, std::min(width, height) / kPlainSide);
  const double scale = 1.25 * std::sqrt(side);
  return {width / scale, height / scale, scale};
}

FigureSize FigureSize::Millimetres(double width, double height, double dpi) {
  constexpr double kPoints = 72 / 25.4;
  return {width * kPoints, height * kPoints, dpi / 72};
}

std::vector<std::uint8_t> EncodeFigure(const figures::Figure& figure, FigureFormat format,
                                       double pixels_per_point, const FigureText& text) {
  switch (format) {
    case FigureFormat::Pdf:
      return ToPdf({&figure, 1}, kPagePixels, text.Letters());
    case FigureFormat::Svg:
      return EncodeSvg(figure);
    case FigureFormat::Png:
      break;
  }
  return EncodeFigurePicture(figure, pixels_per_point, text.Letters());
}

void SaveFigure(const std::filesystem::path& path, figures::PlotKind kind,
                const figures::WaferPlot& plot, figures::Style style, const FigureSize& size) {
  style.width = size.width;
  style.height = size.height;
  const FigureText text(style.font);
  const std::string ending = path.extension().string();
  const FigureFormat format = ending == ".pdf"   ? FigureFormat::Pdf
                              : ending == ".svg" ? FigureFormat::Svg
                                                 : FigureFormat::Png;
  const figures::Figure figure = MakeFigure(kind, plot, style, text);
  WriteWholeFile(path, EncodeFigure(figure, format, size.pixels_per_point, text));
}

}  // namespace discoplan
