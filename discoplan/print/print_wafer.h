// SPDX-License-Identifier: MIT
#pragma once

/// Puts plots and information blocks on a printer.
///
///     PrintWafer print;
///     print.PrinterObj(&printer);
///     PageArea area{1440, 1440, 7200, 5400};
///     print.Print_2DPlot(lot_wafer, area, {.resolution = 1, .caption = " Slot 7 "});
///     print.DrawWaferStatistics(lot_wafer, 1440, 8000);
///
/// What the other kinds of plot take stands in a header of each: `surface_print.h` and so on.
///
/// Lengths are twips from the page's upper left corner. The printer is any surface, most often
/// paper; a picture serves as a preview. Pages are begun and ended by whoever owns the printer.
/// Without a printer each operation raises `ObjectNotSet`; a failing member of the printer ends
/// the operation with its `RunTimeError`, save for the histograms, which leave that step out. One
/// thread uses it, that of the printer and the wafer.

#include <string>

#include "discoplan/core/wafer.h"
#include "discoplan/export.h"
#include "discoplan/print/page.h"

namespace discoplan {

struct BarPrint;
struct ContourPrint;
struct ScanPrint;
struct SurfacePrint;

/// A rectangle of a page, in twips. Some plots leave the place of the map in it.
struct PageArea {
  float left = 0;
  float top = 0;
  float width = 0;
  float height = 0;
};

struct MapPrint {
  float resolution = 5;  ///< Cell side in mm.
  float sigma_range = 0.5F;
  std::string caption = {};
  bool show_sites = false;
};

struct HistogramPrint {
  std::int16_t plot_type = 1;
  float bins = 10;
  std::string caption = {};
};

class DISCOPLAN_EXPORT PrintWafer {
 public:
  /// 4 times the arctangent of 1.
  static constexpr float Pi = wafer::kPi;

  void PrinterObj(Surface* printer) { printer_ = printer; }
  void ResetPrinterObj() { NewPage().ResetPrinterObj(); }
  static std::string FormatLbl(float value) { return wafer::FormatLbl(value); }

  // Blocks, 2775 twips wide.

  void DrawColoredLegend(const wafer& source, float left, float top);
  void DrawSigmaLegend(const wafer& source, float left, float top, float sigma_range);
  /// Leaves the place in pixels in the caller's variables.
  void DrawSigmaLegend_No_Frame(const wafer& source, float& left, float& top, float sigma_range);
  void DrawWaferRemarks(const wafer& source, float left, float top);
  void DrawWaferSize(const wafer& source, float left, float top);
  void DrawWaferStatistics(const wafer& source, float left, float top);

  // Plots with a frame and, save for the thin forms, with a block that shows the wafer's mark.

  void Print_2DPlot(wafer& source, PageArea& area, const MapPrint& print);
  /// Thin, with a second caption below the map, which is cut to fit.
  void Print_2DPlot_THN(wafer& source, PageArea& area, const MapPrint& print,
                        std::string& second_caption);
  void Print_2DNPlot(wafer& source, PageArea& area, const std::string& caption);
  void Print_2DSigmaPlot(wafer& source, PageArea& area, const MapPrint& print);
  void Print_2DSigmaPlot_THN(wafer& source, PageArea& area, const MapPrint& print);
  void Print_3DPlot(wafer& source, PageArea& area, const SurfacePrint& print);
  void Print_3DSigmaPlot(wafer& source, PageArea& area, const SurfacePrint& print);
  void Print_2DBPlot(wafer& source, PageArea& area, const BarPrint& print);
  void Print_Contour(wafer& source, PageArea& area, const ContourPrint& print);
  void Print_Contour_THN(wafer& source, PageArea& area, const ContourPrint& print);
  void Print_Histo(wafer& source, const PageArea& area, const HistogramPrint& print);
  /// The chart and its box alone, over the whole area.
  void Print_Histo_THN(wafer& source, const PageArea& area, const HistogramPrint& print);
  void Print_1DPlot(wafer& source, const PageArea& area, const ScanPrint& print);

 private:
  Page NewPage() const;

  Surface* printer_ = nullptr;
};

}  // namespace discoplan
