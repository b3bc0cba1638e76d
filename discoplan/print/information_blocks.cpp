// SPDX-License-Identifier: MIT
#include <array>

#include "discoplan/core/numbers.h"
#include "discoplan/print/information.h"
#include "discoplan/print/print_wafer.h"
#include "discoplan/render/legend_text.h"
#include "discoplan/render/plot_frame.h"

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

struct Block {
  const char* caption;
  float height;
  bool labels_first = false;
};

constexpr Block kRemarks{"Wafer Remarks ", 1875};
constexpr Block kSize{"Wafer Size ", 1155};
constexpr Block kStatistics{"Wafer Statistics ", 2115, true};

void DrawBlock(Page page, const Block& block, const std::vector<InformationRow>& rows, float left,
               float top) {
  page.DrawTitledFrame(block.caption, left, top, kBlockWidth, block.height);
  const auto place = [&](std::size_t row, double column) {
    return TextPlace{left + column, top + kFirstRow + static_cast<double>(row) * kPitch,
                     kColumnWidth, 0};
  };
  const auto label = [&](std::size_t i) {
    if (rows[i].label.empty()) return;
    page.PrintClippedText(std::string(rows[i].label), place(i, kLabelColumn));
  };
  const auto value = [&](std::size_t i) {
    if (!rows[i].value) return;
    page.PrintClippedText(std::string(*rows[i].value), place(i, kValueColumn));
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
  LegendColumn(Page& page, double x, double y, double text_offset)
      : page_(page),
        x_(ToFloat(Divide(x, page.TwipsPerPixelX()))),
        y_(ToFloat(Divide(y, page.TwipsPerPixelY()))),
        pitch_(ToFloat(Divide(kPitch, page.TwipsPerPixelX()))),
        swatch_(ToFloat(Divide(kSwatch, page.TwipsPerPixelY()))),
        text_offset_(text_offset),
        text_width_(ToFloat(Divide(kTextWidth, page.TwipsPerPixelX()))) {
    page_.printer().ScaleMode(3);
    page_.printer().FillStyle(0);
  }

  float x() const { return x_; }
  float y() const { return y_; }

  void Write(std::string&& text, double row) {
    page_.PrintClippedText(std::move(text),
                           {x_ + text_offset_, RowTop(row) + 2 * pitch_ / 10.0, text_width_, 0});
  }
  void WriteSigmaBehind(const std::string& text, double row) {
    const double behind = x_ + text_offset_ + page_.printer().TextWidth(text) + text_offset_ / 8;
    page_.PrintSigmaGlyph(behind, RowTop(row), 0);
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

void DrawColorScale(Page& page, const wafer& source, double x, double y) {
  page.ResetPrinterObj();
  LegendColumn column(page, x, y, ToInt16(Divide(450, page.TwipsPerPixelX())));
  for (std::size_t i = 0; i < wafer::kLegendRows; ++i) {
    const double row = static_cast<double>(i);
    column.Write(IntervalLegendText(source, i), row);
    column.Fill(source.IntervalColor[i], row);
  }
  page.ResetPrinterObj();
}

/// Gives the place in pixels.
SurfacePoint DrawSigmaScale(Page& page, const wafer& source, double x, double y,
                            float sigma_range) {
  page.ResetPrinterObj();
  LegendColumn column(page, x, y, ToFloat(Divide(400, page.TwipsPerPixelX())));
  for (std::size_t i = 0; i < kRangePrefixes.size(); ++i) {
    const double row = 2 * static_cast<double>(i);
    const std::string text = kRangePrefixes[i] + FormatNonZero(sigma_range, "0.0");
    std::string fitting = text;
    column.Write(std::move(fitting), row);
    column.WriteSigmaBehind(text, row);
    column.Fill(source.AuxColor[i], row);
  }
  page.ResetPrinterObj();
  return {column.x(), column.y()};
}

}  // namespace

void PrintWafer::DrawColoredLegend(const wafer& source, float left, float top) {
  Page page = NewPage();
  page.DrawTitledFrame("Legend ", left, top, kBlockWidth, kLegendHeight);
  DrawColorScale(page, source, left + kLegendLeft, top + kLegendTop);
}

void PrintWafer::DrawSigmaLegend(const wafer& source, float left, float top, float sigma_range) {
  Page page = NewPage();
  page.DrawTitledFrame("Legend ", left, top, kBlockWidth, kLegendHeight);
  DrawSigmaScale(page, source, left + kLegendLeft, top + kLegendTop, sigma_range);
}

void PrintWafer::DrawSigmaLegend_No_Frame(const wafer& source, float& left, float& top,
                                          float sigma_range) {
  Page page = NewPage();
  const SurfacePoint place = DrawSigmaScale(page, source, left, top, sigma_range);
  left = place.x;
  top = place.y;
}

void PrintWafer::DrawWaferRemarks(const wafer& source, float left, float top) {
  DrawBlock(NewPage(), kRemarks, RemarkRows(source), left, top);
}

void PrintWafer::DrawWaferSize(const wafer& source, float left, float top) {
  const auto format = [](float value) { return FormatNonZero(value, "00.00"); };
  DrawBlock(NewPage(), kSize, SizeRows(source, format), left, top);
}

void PrintWafer::DrawWaferStatistics(const wafer& source, float left, float top) {
  DrawBlock(NewPage(), kStatistics, StatisticsRows(source, &PrintWafer::FormatLbl), left, top);
}

}  // namespace discoplan
