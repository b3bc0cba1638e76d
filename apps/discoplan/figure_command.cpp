// SPDX-License-Identifier: MIT
#include "apps/discoplan/figure_command.h"

#include "apps/discoplan/figure_plots.h"
#include "apps/discoplan/measured_wafer.h"
#include "apps/discoplan/output.h"

namespace discoplan::app {
namespace {

using figures::Figure;
using figures::Style;
using figures::WaferPlot;

WaferPlot PlotOf(const PictureRequest& request, const Lot& lot, const Wafer& measured) {
  WaferPlot plot = WaferPlotOf({request.data, lot.parameters[measured.parameter], measured},
                               request.look, request.plot.style);
  if (request.plot.caption) plot.title = *request.plot.caption;
  const bool tells_both = !plot.title.empty() && !measured.derived.empty();
  plot.title += (tells_both ? ", " : "") + measured.derived;
  const std::string source = SourceOf(request.data.path.string(), measured);
  if (const auto limits = LimitsFor(request.plot, source, measured)) {
    plot.low = limits->first;
    plot.high = limits->second;
  }
  return plot;
}

FigureSize SizeOf(const PictureRequest& request) {
  const PixelSize& size = request.size;
  if (size.width_mm > 0) {
    return FigureSize::Millimetres(size.width_mm, size.height_mm, request.dpi.value_or(300));
  }
  if (!request.dpi) return FigureSize::Pixels(size.width, size.height);
  return FigureSize::Millimetres(size.width * 25.4 / *request.dpi,
                                 size.height * 25.4 / *request.dpi, *request.dpi);
}

Figure SheetOf(std::vector<Figure> figures, const FigureSize& size) {
  if (figures.size() == 1) return std::move(figures.front());
  const SheetGrid grid = SheetGrid::For(figures.size());
  Figure sheet = {.width = grid.columns * size.width,
                  .height = grid.rows * size.height,
                  .background = figures.front().background,
                  .font = figures.front().font,
                  .title = figures.front().title,
                  .shapes = {}};
  for (std::size_t i = 0; i < figures.size(); ++i) {
    Place(std::move(figures[i]), {grid.ColumnOf(i) * size.width, grid.RowOf(i) * size.height},
          sheet);
  }
  return sheet;
}

}  // namespace

void PlotFigures(const PictureRequest& request) {
  const FigureFormat format = FigureFormatOf(request.output);
  RefuseClassicOptions(request.plot);
  const PlotKinds kinds = KindsOf(request.plot);
  RefuseOverwriting(request.plot, request.output,
                    {request.data.path.string(), request.derive.File()});
  const Lot lot = ReadDerived(request.data, request.derive);
  const Wafer& measured = OnlyWafer(lot, request.data);
  const WaferPlot plot = PlotOf(request, lot, measured);
  const FigureSize size = SizeOf(request);
  Style style = StyleOf(request.look, request.derive, size);
  style.legend = !request.plot.no_legend;
  const FigureText text(style.font);
  std::vector<Figure> figures;
  for (const ControlClass* kind : kinds) {
    figures.push_back(MakeFigure(FigureKindOf(kind), plot, style, text));
  }
  const Figure sheet = SheetOf(std::move(figures), size);
  WriteOutput(request.output, EncodeFigure(sheet, format, size.pixels_per_point, text));
}

}  // namespace discoplan::app
