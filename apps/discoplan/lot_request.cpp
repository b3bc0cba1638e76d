// SPDX-License-Identifier: MIT
#include "apps/discoplan/lot_request.h"

#include "apps/discoplan/checks.h"
#include "apps/discoplan/data_options.h"
#include "apps/discoplan/output.h"
#include "apps/discoplan/progress.h"
#include "hosts/headless/classic_look.h"

namespace discoplan::app {
namespace {

PixelSize ParsePageSize(const std::string& text) {
  const PixelSize size = ParseSize(text);
  if (size.width_mm > 0) throw UsageError("--size: a sheet is given in pixels");
  if (size.width < size.height || size.width > 2 * size.height) {
    throw UsageError("--size: a sheet is up to twice as wide as high, not '" + text + "'");
  }
  return size;
}

const LotPlot& PlotOf(const std::string& kind) {
  const LotPlot* plot = FindLotPlot(kind);
  if (plot == nullptr) {
    throw UsageError("--kind: '" + kind + "' is none of " + PlotKindNames());
  }
  return *plot;
}

/// Says how many wafers have too few sites for the kind of plot.
void WarnOfEmptyPlots(const std::string& file, const LotPlot& plot, const LotSheet& sheet) {
  std::size_t empty = 0;
  for (const LotCell& cell : sheet.cells) empty += cell.sites.size() < plot.least_sites;
  if (empty == 0) return;
  Warn(file + ": " + Counted(empty, "wafer") + " with less than " +
       std::to_string(plot.least_sites) + " sites, for which a plot of kind " +
       std::string(plot.kind) + " stays empty; --kind 2DN or 3DB shows the values");
}

}  // namespace

void RefuseOverwriting(const LotRequest& request) {
  const std::vector<NamedFile> read = {{"DATA", request.data.path.string()},
                                       {"--minus", request.derive.File()},
                                       {"--settings", request.plot.settings}};
  RefuseOverwriting({"--output", request.output}, read);
}

void AddLotOptions(CLI::App& command, LotRequest& request) {
  AddDataOptions(command, request.data);
  AddDeriveOptions(command, request.derive);
  command
      .add_option("-o,--output", request.output,
                  "File to write; its ending tells the format: .png, .pdf or .svg")
      ->required()
      ->check(FileName());
  command.add_option("--kind", request.kind, "Kind of the small plots: " + PlotKindNames())
      ->type_name("KIND")
      ->capture_default_str();
  AddSettingsOptions(command, request.plot);
  AddLimitsOption(command, request.sheet.limits,
                  "Ends of the colour scale of all maps, as values or as percentages of them (1% "
                  "99%); Tukey's fences of all sites otherwise");
  command.add_option("--caption", request.sheet.caption,
                     "Title of the sheet; the file's name "
                     "otherwise");
  command
      .add_option_function<std::string>(
          "--figures",
          [&request](const std::string& keys) {
            constexpr std::size_t kMost = 6;
            request.sheet.figures = FiguresNamed(keys);
            if (request.sheet.figures.size() > kMost) {
              throw UsageError("--figures: a sheet has room for 6 figures; give less");
            }
          },
          "Figures of the table, up to 6 with commas between them; discoplan stats --help lists "
          "them")
      ->type_name("NAMES")
      ->default_str("mean,std_dev,std_dev_percent,range");
  command.add_option("--digits", request.sheet.digits, "Significant digits")
      ->check(CLI::Range(1, 7))
      ->capture_default_str();
  command
      .add_option_function<std::string>(
          "--size", [&request](const std::string& text) { request.size = ParsePageSize(text); },
          "Size of a page in pixels; on paper its sides are those of A4, in this proportion")
      ->default_str("1684x1191");
  AddLookOptions(command, request.look);
}

LotPages::LotPages(const LotRequest& request)
    : options_{.plot = &PlotOf(request.kind),
               .look =
                   [this, &request](const LotSheet& sheet, const LotCell& cell) {
                     auto look = LotLook(host_, request.plot, *options_.plot, sheet, cell);
                     TakeColours(*look, request.look.colours);
                     return look;
                   },
               .height = kSheetWidth * static_cast<float>(request.size.height) /
                         static_cast<float>(request.size.width)} {
  RefuseOverwriting(request);
  const ReadRequest reading = WithSizes(request.plot, PlotKindsOf({request.kind}), request.data);
  LotSheetOptions sheet = request.sheet;
  sheet.by_scale = options_.plot->colours == LotColours::Scale;
  sheets_ = SheetsOf(ReadDerived(reading, request.derive), sheet);
  for (const LotSheet& each : sheets_) {
    WarnOfEmptyPlots(request.data.path.string(), *options_.plot, each);
  }
}

std::size_t LotPages::Count() const {
  std::size_t count = 0;
  for (const LotSheet& sheet : sheets_) count += sheet.Pages();
  return count;
}

void LotPages::Draw(const std::function<Surface&(std::size_t page)>& page_at) const {
  const Progress progress(Count());
  std::size_t number = 0;
  for (const LotSheet& sheet : sheets_) {
    for (std::size_t page = 0; page < sheet.Pages(); ++page, ++number) {
      progress.Show(number, sheet.title);
      DrawLotPage(page_at(number), sheet, page, options_);
    }
  }
}

}  // namespace discoplan::app
