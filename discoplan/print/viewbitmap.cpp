// SPDX-License-Identifier: MIT
#include "discoplan/print/viewbitmap.h"

#include "discoplan/base/numbers.h"
#include "discoplan/print/page.h"
#include "discoplan/render/number_text.h"
#include "discoplan/version.h"

namespace discoplan {
namespace {

// Twips.
constexpr int kSideBySideFrom = 4900;
constexpr int kStackedHeight = 4400;
constexpr int kSideBySideHeight = 3000;
constexpr int kSecondPanel = 2400;
constexpr int kMargin = 100;
constexpr int kTitleWidth = 2775;
constexpr int kFirstRow = 360;
constexpr int kPitch = 240;
constexpr int kLabelColumn = 120;
constexpr int kValueColumn = 1300;
constexpr int kColumnWidth = 1200;

std::string NonZero(float value) { return FormatNonZero(value, "0.00"); }

std::string Millimetres(float value) { return FormatPicture(value, "00.00"); }

}  // namespace

Picture& viewbitmap::BitmapOrRaise() const {
  if (picture_ == nullptr) throw RunTimeError(Fault::ObjectNotSet, "there is no picture");
  return *picture_;
}

const wafer& viewbitmap::WaferOrRaise() const {
  if (wafer_ == nullptr) throw RunTimeError(Fault::ObjectNotSet, "there is no wafer");
  return *wafer_;
}

void viewbitmap::Resetbitobj() {
  Picture& picture = BitmapOrRaise();
  picture.FontTransparent(true);
  picture.ScaleMode(Surface::kTwips);
  picture.DrawWidth(1);
  picture.DrawStyle(0);
  picture.FillStyle(0);
  picture.FillColor(kWhite);
  picture.ForeColor(kBlack);
}

void viewbitmap::DrawWaferData() {
  Resetbitobj();
  Picture& picture = BitmapOrRaise();
  const std::int16_t height = ToInt16(picture.Height());
  const std::int16_t width = ToInt16(picture.Width());
  const bool side_by_side = width >= kSideBySideFrom;
  picture.Height(picture.Height() +
                 static_cast<float>(side_by_side ? kSideBySideHeight : kStackedHeight));
  DrawStatisticsPanel(kMargin, height);
  if (side_by_side) {
    DrawSizePanel(ToInt16((width - 2 * kMargin) * 0.5), height);
  } else {
    DrawSizePanel(kMargin, ToInt16(height + kSecondPanel));
  }
  picture.FontBold(!picture.FontBold());
  picture.FontSize(12);
  PutClippedText("Discoplan.OCX " + LibraryVersion(), kMargin, ToInt16(picture.Height() - 400.0),
                 width - 2 * kMargin);
  picture.FontBold(!picture.FontBold());
  picture.FontSize(10);
}

void viewbitmap::DrawStatisticsPanel(std::int16_t x, std::int16_t y) {
  DrawPanel({"Wafer Statistics", StatisticsRows(), NonZero}, x, y);
}

void viewbitmap::DrawSizePanel(std::int16_t x, std::int16_t y) {
  DrawPanel({"Wafer Size", SizeRows(), Millimetres}, x, y);
}

void viewbitmap::DrawRemarksPanel(std::int16_t x, std::int16_t y) {
  DrawPanel({"Wafer Remarks ", RemarkRowsWithFile(), NonZero}, x, y);
}

void viewbitmap::DrawPanel(const Panel& panel, std::int16_t x, std::int16_t y) {
  Picture& picture = BitmapOrRaise();
  const wafer& source = WaferOrRaise();
  picture.FontUnderline(!picture.FontUnderline());
  PutClippedText(panel.title, x, y, kTitleWidth);
  picture.FontUnderline(!picture.FontUnderline());
  int row_y = y + kFirstRow;
  for (const InformationRow& row : panel.rows) {
    if (!row.label.empty()) {
      PutClippedText(std::string(row.label), x + kLabelColumn, row_y, kColumnWidth);
    }
    if (const auto text = row.value(source, panel.format)) {
      PutClippedText(*text, x + kValueColumn, row_y, kColumnWidth);
    }
    row_y += kPitch;
  }
}

void viewbitmap::PutClippedText(std::string text, int x, int y, int width) {
  Page(BitmapOrRaise())
      .PrintClippedText(text, {static_cast<double>(ToInt16(x)), static_cast<double>(ToInt16(y)),
                               static_cast<double>(ToInt16(width)), 0});
}

}  // namespace discoplan
