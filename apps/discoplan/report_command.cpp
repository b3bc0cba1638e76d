// SPDX-License-Identifier: MIT
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "apps/discoplan/checks.h"
#include "apps/discoplan/command.h"
#include "apps/discoplan/data_options.h"
#include "apps/discoplan/derive.h"
#include "apps/discoplan/figure_report.h"
#include "apps/discoplan/output.h"
#include "apps/discoplan/plot_request.h"
#include "apps/discoplan/progress.h"
#include "apps/discoplan/report_page.h"
#include "apps/discoplan/vector_file.h"

namespace discoplan::app {
namespace {

// Twips.
constexpr PageSize kA4{11906, 16838};
constexpr PageSize kLetter{12240, 15840};
constexpr float kControlWidth = 6000;
constexpr float kControlHeight = 4500;

struct ReportRequest {
  ReadRequest reading;  // how to read, for all files alike
  DeriveRequest derive;
  std::vector<std::string> files;
  PlotRequest plot;
  bool all = false;
  std::string output;
  std::string paper = "A4";
  bool landscape = false;
  std::string title = "Wafer report";
  std::string lot;
  std::string wafer;
  LookRequest look;
  bool summary = false;
  bool no_wafers = false;
};

struct MeasuredPage {
  std::string file;
  ReadRequest reading;
  data::Parameter parameter;
  bool named = false;  // its parameter, where that isn't plain
  Wafer measured;
};

/// All wafers of all files, before anything is drawn.
std::vector<MeasuredPage> ReadAll(const ReportRequest& request) {
  std::vector<MeasuredPage> pages;
  for (const std::string& file : request.files) {
    ReadRequest reading = request.reading;
    reading.path = file;
    Lot data = ReadDerived(WithSizes(request.plot, KindsOf(request.plot), reading), request.derive);
    for (Wafer& measured : data.wafers) {
      const data::Parameter& parameter = data.parameters[measured.parameter];
      pages.push_back({file, reading, parameter,
                       data.parameters.size() > 1 || !parameter.unit.empty(), std::move(measured)});
    }
  }
  return pages;
}

class ReportPrinter {
 public:
  ReportPrinter(const ReportRequest& request, const PageSize& size)
      : request_(request), size_(size), kinds_(KindsOf(request.plot)) {}

  void Print(const std::shared_ptr<VectorPaper>& paper, const MeasuredPage& page) {
    WarnByMessages(host_, page.reading);
    WarnOfEmptyPlots(kinds_, page.reading, page.measured);
    controls_.clear();
    std::vector<PlotControl*> plots;
    for (const ControlClass* kind : kinds_) {
      controls_.push_back(LoadedControl(*kind, request_.plot, page.reading, page.measured,
                                        {host_, kControlWidth, kControlHeight}));
      plots.push_back(controls_.back().get());
      if (!request_.plot.caption) plots.back()->PlotCaption(std::string(kind->title));
    }
    std::string line = request_.lot.empty() ? "" : "Lot " + request_.lot + "    ";
    line += "Wafer " + (request_.wafer.empty() ? page.measured.name : request_.wafer);
    if (!page.measured.derived.empty()) line += ", " + page.measured.derived;
    line += "    " + std::filesystem::path(page.file).filename().string();
    if (page.named) line += "    " + page.parameter.Caption();
    if (!page.measured.left_out.empty()) line += "    " + page.measured.SitesText();
    PrintReportPage(paper, size_, {request_.title, line, page.parameter.unit}, plots);
  }

  PlotControl& LastPlot() { return *controls_.back(); }

 private:
  const ReportRequest& request_;
  const PageSize size_;
  const PlotKinds kinds_;
  HeadlessHost host_;
  std::vector<std::unique_ptr<PlotControl>> controls_;  // of the last page
};

void Report(const ReportRequest& request) {
  if (request.output != "-" && FormatOf(request.output) != FileFormat::Pdf) {
    throw UsageError("cannot write '" + request.output +
                     "': a report is a PDF file; end it in .pdf");
  }
  PageSize size = request.paper == "A4" ? kA4 : kLetter;
  if (request.landscape) std::swap(size.width, size.height);
  std::vector<std::string> read = request.files;
  read.push_back(request.derive.File());
  RefuseOverwriting(request.plot, request.output, read);
  if (!request.look.classic) {
    return WriteFigureReport({.reading = request.reading,
                              .derive = request.derive,
                              .files = request.files,
                              .plot = request.plot,
                              .look = request.look,
                              .output = request.output,
                              .width = size.width / 20.0,
                              .height = size.height / 20.0,
                              .title = request.title,
                              .lot = request.lot,
                              .wafer = request.wafer,
                              .summary = request.summary || request.no_wafers,
                              .no_wafers = request.no_wafers});
  }
  ReportPrinter printer(request, size);
  const std::vector<MeasuredPage> pages = ReadAll(request);
  if (!request.wafer.empty() && pages.size() > 1) {
    throw UsageError("--wafer-id names one wafer, and the data have " +
                     std::to_string(pages.size()));
  }
  VectorFile file(request.output, size, request.title);
  {
    const Progress progress(pages.size());
    for (std::size_t i = 0; i < pages.size(); ++i) {
      progress.Show(i, pages[i].measured.name);
      if (i > 0) file.NewPage();
      printer.Print(file.paper(), pages[i]);
    }
  }
  file.Save();
  SaveSettings(request.plot, printer.LastPlot(), pages.back().measured);
}

}  // namespace

void SetUpReport(CLI::App& command) {
  auto request = std::make_shared<ReportRequest>();
  command.add_option("DATA", request->files, "Measured sites: tables, lot exports or binary files")
      ->required()
      ->transform(InputFile());
  AddReadingOptions(command, request->reading);
  AddDeriveOptions(command, request->derive);
  command.add_option("-o,--output", request->output, "PDF file to write")
      ->required()
      ->check(FileName());
  command.add_flag("--all", request->all, "All kinds of plot, as --kind all");
  AddPlotOptions(command, request->plot);
  command.add_option("--paper", request->paper, "Size of the pages")
      ->check(CLI::IsMember({"A4", "Letter"}))
      ->capture_default_str();
  command.add_flag("--landscape", request->landscape, "Pages wider than high");
  command.add_option("--title", request->title, "Head of each page")->capture_default_str();
  command.add_option("--lot", request->lot, "Identification of the lot");
  command.add_option("--wafer-id", request->wafer,
                     "Identification of the wafer; its name in the data otherwise");
  AddLookOptions(command, request->look);
  command.add_flag(
      "--summary", request->summary,
      "A cover with table and charts, and all wafers side by side, before their pages");
  command.add_flag("--summary-only", request->no_wafers, "The cover and all wafers side by side");
  command.footer(
      "Examples:\n"
      "  discoplan report sites.csv -o report.pdf --value-unit nm\n"
      "  discoplan report lot.csv -o lot.pdf --kind 2D --kind histo --lot A1234 --summary\n"
      "  discoplan report a.csv b.csv -o both.pdf --all --paper Letter --landscape");
  command.callback([request] {
    if (request->all) request->plot.kinds = {"all"};
    Report(*request);
  });
}

}  // namespace discoplan::app
