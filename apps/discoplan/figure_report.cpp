// SPDX-License-Identifier: MIT
#include "apps/discoplan/figure_report.h"

#include "apps/discoplan/measured_wafer.h"
#include "apps/discoplan/output.h"
#include "apps/discoplan/progress.h"
#include "hosts/headless/figure_pdf.h"

namespace discoplan::app {
namespace {

using figures::Figure;
using figures::PlotKind;
using figures::Style;
using figures::WaferPlot;

std::vector<PlotKind> FigureKindsOf(const PlotRequest& plot) {
  std::vector<PlotKind> kinds;
  for (const ControlClass* kind : KindsOf(plot)) kinds.push_back(FigureKindOf(kind));
  return kinds;
}

/// One file of the report.
struct Source {
  ReadRequest reading;
  Lot lot;
};

class Pages {
 public:
  Pages(const FigureReport& report, const Style& style, const FigureText& text)
      : report_(report), style_(style), text_(text), kinds_(FigureKindsOf(report.plot)) {}

  void AddLot(const Source& source) {
    LotSheetOptions sheet;
    sheet.limits = report_.plot.limits;
    for (figures::LotPlot& lot :
         LotPlotsOf(source.lot,
                    {source.reading, report_.look, report_.plot.style, sheet, IsCentred(style_)})) {
      lot.facts.insert(lot.facts.begin(), lot.title);
      if (!report_.lot.empty()) lot.facts.insert(lot.facts.begin(), "Lot " + report_.lot);
      lot.title = report_.title;
      pages_.push_back(MakeLotCover(lot, style_, text_));
      for (std::size_t first = 0; first < lot.wafers.size(); first += figures::kWafersOnPage) {
        pages_.push_back(MakeLotGallery(kinds_.front(), lot, first, style_, text_));
      }
    }
  }

  void AddWafer(const Source& source, const Wafer& measured) {
    const data::Parameter& parameter = source.lot.parameters[measured.parameter];
    WaferPlot plot =
        WaferPlotOf({source.reading, parameter, measured}, report_.look, report_.plot.style);
    const std::string file = source.reading.path.string();
    if (const auto limits = LimitsFor(report_.plot, SourceOf(file, measured), measured)) {
      plot.low = limits->first;
      plot.high = limits->second;
    }
    const std::string name = report_.wafer.empty() ? measured.name : report_.wafer;
    figures::PageHead head{.title = report_.title, .facts = {}, .foot = ""};
    if (!report_.lot.empty()) head.facts.push_back("Lot " + report_.lot);
    head.facts.push_back("Wafer " + name);
    head.facts.push_back(std::filesystem::path(file).filename().string());
    if (const std::string caption = parameter.Caption(); !caption.empty()) {
      head.facts.push_back(caption);
    }
    if (!measured.derived.empty()) head.facts.push_back(measured.derived);
    plot.title = report_.plot.caption.value_or(name);
    pages_.push_back(MakeWaferPage(head, kinds_, plot, style_, text_));
  }

  const std::vector<Figure>& All() const { return pages_; }

 private:
  const FigureReport& report_;
  const Style& style_;
  const FigureText& text_;
  const std::vector<PlotKind> kinds_;
  std::vector<Figure> pages_;
};

}  // namespace

void WriteFigureReport(const FigureReport& report) {
  RefuseClassicOptions(report.plot);
  // All is read before anything is drawn.
  std::vector<Source> sources;
  std::size_t wafers = 0;
  for (const std::string& file : report.files) {
    ReadRequest reading = report.reading;
    reading.path = file;
    sources.push_back({reading, ReadDerived(reading, report.derive)});
    wafers += sources.back().lot.wafers.size();
  }
  if (!report.wafer.empty() && wafers > 1) {
    throw UsageError("--wafer-id names one wafer, and the data have " + std::to_string(wafers));
  }
  Style style = StyleOf(report.look, report.derive, {report.width, report.height, kPagePixels});
  style.legend = !report.plot.no_legend;
  const FigureText text(style.font);
  Pages pages(report, style, text);
  const Progress progress(wafers);
  std::size_t done = 0;
  for (const Source& source : sources) {
    if (report.summary) pages.AddLot(source);
    if (report.no_wafers) continue;
    for (const Wafer& measured : source.lot.wafers) {
      progress.Show(done++, measured.name);
      pages.AddWafer(source, measured);
    }
  }
  WriteOutput(report.output, ToPdf(pages.All(), kPagePixels, text.Letters()));
}

}  // namespace discoplan::app
