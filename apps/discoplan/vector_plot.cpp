// SPDX-License-Identifier: MIT
#include <memory>

#include "apps/discoplan/picture_request.h"
#include "apps/discoplan/vector_file.h"
#include "apps/discoplan/vector_plots.h"
#include "discoplan/base/numbers.h"
#include "hosts/headless/classic_look.h"
#include "hosts/headless/classic_page.h"

namespace discoplan::app {
namespace {

// Twips.
constexpr float kControlWidth = 6000;
constexpr float kControlHeight = 4500;

/// From an origin of its own, since positions on a page are limited.
void Print(PlotControl& control, const std::shared_ptr<VectorPaper>& paper, const PageArea& place,
           const ControlClass& kind) {
  paper->Origin({place.left, place.top});
  const bool fits = Attempt([&] {
    PrintWithLegend(control, paper, {0, 0, place.width, place.height});
  });
  if (fits) return;
  throw CommandError("--size: a plot of kind " + std::string(kind.kind) +
                     " can't be drawn that large in a PDF or SVG file; give less");
}

}  // namespace

void PlotVectors(const PictureRequest& request) {
  const PlotKinds kinds = KindsOf(request.plot);
  RefuseOverwriting(request.plot, request.output,
                    {request.data.path.string(), request.derive.File()});
  const ReadRequest reading = WithSizes(request.plot, kinds, request.data);
  const Lot data = ReadDerived(reading, request.derive);
  const Wafer& measured = OnlyWafer(data, request.data);
  WarnOfEmptyPlots(kinds, request.data, measured);
  const auto width = static_cast<float>(request.size.width) * kTwipsPerPixel;
  const auto height = static_cast<float>(request.size.height) * kTwipsPerPixel;
  const SheetGrid grid = SheetGrid::For(kinds.size());
  VectorFile file(
      request.output,
      {static_cast<float>(grid.columns) * width, static_cast<float>(grid.rows) * height},
      measured.Title());
  HeadlessHost host;
  WarnByMessages(host, request.data);
  std::unique_ptr<PlotControl> control;
  for (std::size_t i = 0; i < kinds.size(); ++i) {
    control = LoadedControl(*kinds[i], request.plot, request.data, measured,
                            {host, kControlWidth, kControlHeight});
    TakeColours(*control, request.look.colours);
    Print(*control, file.paper(),
          {static_cast<float>(grid.ColumnOf(i)) * width, static_cast<float>(grid.RowOf(i)) * height,
           width, height},
          *kinds[i]);
  }
  file.Save();
  SaveSettings(request.plot, *control, measured);
}

}  // namespace discoplan::app
