// SPDX-License-Identifier: MIT
#include <algorithm>
#include <memory>

#include "apps/discoplan/beside.h"
#include "apps/discoplan/lot_figures.h"
#include "apps/discoplan/lot_request.h"
#include "apps/discoplan/output.h"
#include "apps/discoplan/vector_plots.h"
#include "hosts/headless/headless_host.h"
#include "hosts/headless/png_file.h"

namespace discoplan::app {
namespace {

/// The pages one below the other.
Canvas Draw(const LotPages& pages, const PixelSize& size) {
  const float twips = kSheetWidth / static_cast<float>(size.width);
  HeadlessHost host({twips, twips});
  Canvas all(size.width, size.height * static_cast<int>(pages.Count()), PixelOf(kWhite));
  std::vector<std::unique_ptr<Picture>> pictures;
  pages.Draw([&](std::size_t) -> Surface& {
    pictures.push_back(host.NewPicture(kSheetWidth, pages.Height()));
    pictures.back()->Cls();
    return *pictures.back();
  });
  for (std::size_t page = 0; page < pictures.size(); ++page) {
    const Canvas& canvas = pictures[page]->canvas();
    const auto width = static_cast<std::size_t>(std::min(canvas.Width(), size.width));
    for (int y = 0; y < std::min(canvas.Height(), size.height); ++y) {
      const auto from = static_cast<std::size_t>(y) * static_cast<std::size_t>(canvas.Width());
      const auto to = (page * static_cast<std::size_t>(size.height) + static_cast<std::size_t>(y)) *
                      static_cast<std::size_t>(size.width);
      const auto row = canvas.Pixels().subspan(from, width);
      std::copy(row.begin(), row.end(), all.Pixels().subspan(to).begin());
    }
  }
  return all;
}

void Sheet(const LotRequest& request) {
  const LotPages pages(request);
  if (pages.Count() * static_cast<std::size_t>(request.size.height) > 60000) {
    throw CommandError("a picture of " + std::to_string(pages.Count()) +
                       " pages is too high; write a PDF file");
  }
  const Canvas canvas = Draw(pages, request.size);
  constexpr double kInchesPerMetre = 1000 / 25.4;
  const double dots = request.size.width / (kSheetWidth / kTwipsPerInch);
  WriteOutput(request.output,
              EncodePng(PngPicture{.pixels = canvas.Pixels(),
                                   .width = canvas.Width(),
                                   .height = canvas.Height(),
                                   .pixels_per_metre = static_cast<int>(dots * kInchesPerMetre)}));
}

}  // namespace

void SetUpLot(CLI::App& command) {
  auto request = std::make_shared<LotRequest>();
  AddLotOptions(command, *request);
  command
      .add_flag_callback(
          "--parquet", [] { RunBeside(kArchiveProgram); },
          "Make a table of an archive in Parquet instead, by discoplan-archive; with --help it "
          "tells its own options")
      ->trigger_on_parse();
  command.footer(
      "Examples:\n"
      "  discoplan lot lot.csv -o lot.png\n"
      "  discoplan lot lot.csv -o lot.pdf --minus mean --residual plane\n"
      "  discoplan lot lot.csv -o sigma.svg --kind 2DS --figures mean,median,mad");
  command.callback([request] {
    const bool is_png = FormatOf(request->output) == FileFormat::Png;
    if (!request->look.classic) return PlotLotFigures(*request);
    is_png ? Sheet(*request) : PlotLotVectors(*request);
  });
}

}  // namespace discoplan::app
