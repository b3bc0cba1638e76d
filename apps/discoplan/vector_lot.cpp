// SPDX-License-Identifier: MIT
#include <memory>

#include "apps/discoplan/lot_request.h"
#include "apps/discoplan/output.h"
#include "apps/discoplan/vector_file.h"
#include "apps/discoplan/vector_plots.h"

namespace discoplan::app {

/// Pages of a PDF file; in an SVG file, which has one, below each other.
void PlotLotVectors(const LotRequest& request) {
  const LotPages pages(request);
  const bool one_page = FormatOf(request.output) == FileFormat::Svg;
  const auto stacked = static_cast<float>(one_page ? pages.Count() : 1);
  VectorFile file(request.output, {kSheetWidth, stacked * pages.Height()}, pages.Title());
  pages.Draw([&](std::size_t page) -> Surface& {
    if (page > 0 && !one_page) file.NewPage();
    if (one_page) file.paper()->Origin({0, static_cast<float>(page) * pages.Height()});
    return *file.paper();
  });
  file.Save();
}

}  // namespace discoplan::app
