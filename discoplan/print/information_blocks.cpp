// SPDX-License-Identifier: MIT
#include <array>

#include "discoplan/base/numbers.h"
#include "discoplan/core/wafer_data.h"
#include "discoplan/print/information.h"
#include "discoplan/print/print_wafer.h"
#include "discoplan/render/plots/legend.h"
#include "discoplan/render/plots/plot_frame.h"

namespace discoplan {
namespace {

// Twips.
constexpr float kBlockWidth = 2775;
constexpr float kLegendHeight = 2895;
constexpr double kLegendLeft = 210;
constexpr double kLegendTop = 500;
constexpr double kPitch = 240;
constexpr double kSwatch = 255;
constexpr double kTextWidth = 2000;
constexpr double kFirstRow = 360;
constexpr double kLabelColumn = 120;
constexpr double kValueColumn = 1080;
constexpr double kColumnWidth = 975;

std::string Millimetres(float value) { return FormatNonZero(value, "00.00"); }

struct Block {
  const char* caption;
  float height;
  InformationRows rows;
  NumberFormat format;
  bool labels_first = false;
};

void DrawBlock(Page page, const Block& block, const wafer& source, float left, float top) {
  page.DrawTitledFrame(block.caption, left, top, kBlockWidth, block.height);
  const InformationRows& rows = block.rows;
  const auto place = [&](std::size_t row, double column) {
    return TextPlace{left + column, top + kFirstRow + static_cast<double>(row) * kPitch,
                     kColumnWidth, 0};
  };
  const auto label = [&](std::size_t i) {
    if (rows[i].label.empty()) return;
    page.PrintClippedText(std::string(rows[i].label), place(i, kLabelColumn));
  };
  const auto value = [&](std::size_t i) {
    if (auto text = rows[i].value(source, block.format)) {
      page.PrintClippedText(*text, place(i, kValueColumn));
    }
  };
  for (std::size_t i = 0; i < rows.size(); ++i) {
    label(i);
    if (!block.labels_first) value(i);
  }
  if (!block.labels_first) return;
  for (std::size_t i = 0; i < rows.size(); ++i) value(i);
}

/// A column of swatches with texts beside it, in pixels. The pitch follows the horizontal
/// resolution and the swatches' width the vertical one, as on all prints so far.
class LegendColumn {
 public:
  /// Turns the caller's place from twips to pixels.
  LegendColumn(Page& page, float& x, float& y, double text_offset)
      : page_(page),
        x_(x = ToFloat(Divide(x, page.TwipsPerPixelX()))),
        y_(y = ToFloat(Divide(y, page.TwipsPerPixelY()))),
        pitch_(ToFloat(Divide(kPitch, page.TwipsPerPixelX()))),
        swatch_(ToFloat(Divide(kSwatch, page.TwipsPerPixelY()))),
        text_offset_(text_offset),
        text_width_(ToFloat(Divide(kTextWidth, page.TwipsPerPixelX()))) {
    page_.printer().ScaleMode(Surface::kPixels);
    page_.printer().FillStyle(0);
  }

  /// The text is cut to fit.
  void Write(std::string& text, double row) {
    page_.PrintClippedText(text,
                           {x_ + text_offset_, RowTop(row) + 2 * pitch_ / 10.0, text_width_, 0});
  }
  void WriteSigmaBehind(const std::string& text, double row) {
    const double behind = x_ + text_offset_ + page_.printer().TextWidth(text) + text_offset_ / 8;
    page_.PrintSigmaGlyph(ToFloat(behind), ToFloat(RowTop(row)), 0);
  }
  void Fill(float colour, double row) {
    const double right = static_cast<double>(x_) + swatch_;
    const auto corner = [&](double x, double at) {
      return PixelPoint{ToInt32(x), ToInt32(RowTop(at))};
    };
    page_.printer().FillColor(ToColour(colour));
    page_.printer().Polygon(std::array<PixelPoint, 4>{corner(x_, row), corner(right, row),
                                                      corner(right, row + 1), corner(x_, row + 1)});
  }

 private:
  double RowTop(double row) const { return y_ + row * pitch_; }

  Page& page_;
  const float x_;
  const float y_;
  const float pitch_;
  const float swatch_;
  const double text_offset_;
  const float text_width_;
};

void DrawColorScale(Page& page, const wafer& source, float x, float y) {
  page.ResetPrinterObj();
  LegendColumn column(page, x, y, ToInt16(ToFloat(Divide(450, page.TwipsPerPixelX()))));
  for (std::size_t i = 0; i < wafer::kLegendRows; ++i) {
    const double row = static_cast<double>(i);
    std::string text = IntervalLegendText(source.Data(), i);
    column.Write(text, row);
    column.Fill(source.IntervalColor[i], row);
  }
  page.ResetPrinterObj();
}

/// Leaves the place in pixels.
void DrawSigmaScale(Page& page, const wafer& source, float& x, float& y, float sigma_range) {
  page.ResetPrinterObj();
  LegendColumn column(page, x, y, ToFloat(Divide(400, page.TwipsPerPixelX())));
  for (std::size_t i = 0; i < kRangePrefixes.size(); ++i) {
    const double row = 2 * static_cast<double>(i);
    std::string text = kRangePrefixes[i] + FormatNonZero(sigma_range, "0.0");
    column.Write(text, row);
    column.WriteSigmaBehind(text, row);
    column.Fill(source.AuxColor[i], row);
  }
  page.ResetPrinterObj();
}

/// The frame of a legend. Gives the place of what stands in it.
SurfacePoint DrawLegendFrame(Page& page, float left, float top) {
  page.DrawTitledFrame("Legend ", left, top, kBlockWidth, kLegendHeight);
  return {ToFloat(left + kLegendLeft), ToFloat(top + kLegendTop)};
}

}  // namespace

void PrintWafer::DrawColoredLegend(const wafer& source, float left, float top) {
  Page page = NewPage();
  const SurfacePoint place = DrawLegendFrame(page, left, top);
  DrawColorScale(page, source, place.x, place.y);
}

void PrintWafer::DrawSigmaLegend(const wafer& source, float left, float top, float sigma_range) {
  Page page = NewPage();
  SurfacePoint place = DrawLegendFrame(page, left, top);
  DrawSigmaScale(page, source, place.x, place.y, sigma_range);
}

void PrintWafer::DrawSigmaLegend_No_Frame(const wafer& source, float& left, float& top,
                                          float sigma_range) {
  Page page = NewPage();
  DrawSigmaScale(page, source, left, top, sigma_range);
}

void PrintWafer::DrawWaferRemarks(const wafer& source, float left, float top) {
  DrawBlock(NewPage(), {"Wafer Remarks ", 1875, RemarkRows(), Millimetres}, source, left, top);
}

void PrintWafer::DrawWaferSize(const wafer& source, float left, float top) {
  DrawBlock(NewPage(), {"Wafer Size ", 1155, SizeRows(), Millimetres}, source, left, top);
}

void PrintWafer::DrawWaferStatistics(const wafer& source, float left, float top) {
  DrawBlock(NewPage(),
            {.caption = "Wafer Statistics ",
             .height = 2115,
             .rows = StatisticsRows(),
             .format = FormatLbl,
             .labels_first = true},
            source, left, top);
}

}  // namespace discoplan
