// SPDX-License-Identifier: MIT
#include "hosts/qt/qt_paper.h"
#include "discoplan/render/plot_area.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QFileInfo>
#include <QFontMetricsF>
#include <QImage>
#include <QPdfWriter>
#include <QPicture>
#include <QPrinter>
#include <QSvgGenerator>
#include <QTemporaryDir>

#include "discoplan/base/numbers.h"
#include "discoplan/core/wafer.h"

namespace discoplan::qt {
namespace {

/// An image of 600 by 400 pixels at 144 dots to the inch: 10 twips a pixel.
class PaperTest : public testing::Test {
 protected:
  PaperTest() : image_(600, 400, QImage::Format_RGB32) {
    image_.setDotsPerMeterX(qRound(144 / 0.0254));
    image_.setDotsPerMeterY(qRound(144 / 0.0254));
    image_.fill(Qt::white);
    painter_.begin(&image_);
  }

  Colour At(int x, int y) const {
    const QRgb rgb = image_.pixel(x, y);
    return static_cast<Colour>(qRed(rgb) | qGreen(rgb) << 8 | qBlue(rgb) << 16);
  }

  QImage image_;
  QPainter painter_;
  Screen screen_;
};

TEST_F(PaperTest, CountsInTwipsUntilItsScaleIsInPixels) {
  QtPaper paper(painter_, screen_);
  EXPECT_TRUE(paper.IsPrinter());
  EXPECT_EQ(paper.TwipsPerPixelX(), 10);
  EXPECT_EQ(paper.ScreenTwipsPerPixelY(), 15);
  EXPECT_EQ(paper.ScaleMode(), 1);
  EXPECT_EQ(paper.ScaleWidth(), 6000);
  EXPECT_EQ(paper.ScaleHeight(), 4000);
  const float twips = paper.TextWidth("Wafer");
  paper.ScaleMode(3);
  EXPECT_EQ(paper.ScaleWidth(), 600);
  EXPECT_NEAR(paper.TextWidth("Wafer"), twips / 10, 1e-3);
  // 12 points are 240 twips: a line of text is about as high.
  paper.ScaleMode(1);
  paper.FontSize(12);
  EXPECT_NEAR(paper.TextHeight("0"), 270, 30);
}

TEST_F(PaperTest, DrawsWhereItIsTold) {
  QtPaper paper(painter_, screen_);
  paper.Line({.from = SurfacePoint{1000, 1000},
              .to = {2000, 2000},
              .colour = 0xFF,
              .shape = LineShape::FilledBox});
  paper.FillStyle(0);
  paper.FillColor(0x00FF00);
  paper.Circle({.centre = {4000, 2000}, .radius = 1000, .aspect = 0.5F});
  paper.ScaleMode(3);
  paper.FillColor(0xFF0000);
  const PixelPoint corners[] = {{500, 300}, {550, 300}, {525, 350}};
  paper.Polygon(corners);
  paper.Finish();
  EXPECT_EQ(At(150, 150), 0xFFU);
  EXPECT_EQ(At(99, 99), 0xFFFFFFU);
  EXPECT_EQ(At(400, 200), 0x00FF00U);
  EXPECT_EQ(At(490, 200), 0x00FF00U);
  EXPECT_EQ(At(400, 255), 0xFFFFFFU) << "the ellipse is half as high";
  EXPECT_EQ(At(525, 320), 0xFF0000U);
}

TEST_F(PaperTest, DrawsAnArcCounterClockwise) {
  QtPaper paper(painter_, screen_);
  paper.ScaleMode(3);
  paper.DrawWidth(5);
  paper.Circle(
      {.centre = {300, 200}, .radius = 100, .colour = 0xFF, .start = 0, .end = 1.5707964F});
  EXPECT_NE(At(370, 129), 0xFFFFFFU) << "upper right";
  EXPECT_EQ(At(229, 129), 0xFFFFFFU);
  EXPECT_EQ(At(370, 271), 0xFFFFFFU);
}

TEST_F(PaperTest, KeepsTheOrderOfCellsAndOtherThings) {
  QtPaper paper(painter_, screen_);
  paper.ScaleMode(3);
  paper.FillStyle(0);
  const auto cell = [&](int left, int right, Colour colour) {
    paper.DrawStyle(5);
    paper.FillColor(colour);
    const PixelPoint corners[] = {{left, 10}, {right, 10}, {right, 50}, {left, 50}};
    paper.Polygon(corners);
  };
  cell(10, 50, 0x0000FF);
  paper.DrawStyle(0);
  paper.Line({.from = SurfacePoint{0, 30}, .to = {100, 30}, .colour = 0});
  cell(50, 90, 0x00FF00);
  paper.Finish();
  EXPECT_EQ(At(20, 20), 0x0000FFU);
  EXPECT_NE(At(20, 30), 0x0000FFU) << "the line lies over the first cell";
  EXPECT_EQ(At(70, 30), 0x00FF00U) << "and under the second one";
}

TEST_F(PaperTest, RefusesWhatPaperCannotDo) {
  QtPaper paper(painter_, screen_);
  EXPECT_THROW(paper.Cls(), RunTimeError);
  EXPECT_THROW(paper.Refresh(), RunTimeError);
  EXPECT_THROW(paper.FloodFill({1, 1}, 0), RunTimeError);
}

TEST_F(PaperTest, WritesGreekInTheSymbolFont) {
  EXPECT_EQ(ToQString("s", {.name = "Symbol"}), QStringLiteral("\u03C3"));
  EXPECT_EQ(ToQString("s", {.name = "Arial"}), QStringLiteral("s"));
  QtPaper paper(painter_, screen_);
  paper.Font({.name = "Symbol", .size = 24});
  EXPECT_GT(paper.TextWidth("s"), 100);
  paper.CurrentX(1000);
  paper.CurrentY(1000);
  paper.Print("s");
  bool painted = false;
  for (int y = 100; y < 160; ++y) {
    for (int x = 100; x < 140; ++x) painted |= At(x, y) != 0xFFFFFF;
  }
  EXPECT_TRUE(painted);
}

wafer SlopingWafer() {
  wafer source;
  source.WaferDiameter = 200;
  source.TestDiameter = 194;
  source.FlatRatio = 1;
  source.SetNop(100);
  for (int i = 0; i < 100; ++i) {
    const auto x = static_cast<float>(i % 10 * 12 - 54);
    const auto y = static_cast<float>(i / 10 * 12 - 54);
    source.SetGridValue(x, y, x + 0.5F * y);
  }
  source.MaxMin();
  return source;
}

TEST_F(PaperTest, MapsHaveNoBackgroundBetweenTheirCells) {
  QtPaper paper(painter_, screen_);
  // A little turn and shift, so that no edge falls between pixels.
  painter_.translate(0.37, 0.61);
  painter_.scale(0.913, 0.913);
  wafer source = SlopingWafer();
  paper.ScaleMode(3);
  source.D2Plot(paper, 2, 5, 0, false,
                {.left = 500, .top = 500, .width = 3000, .height = 3000, .mode = 1});
  paper.Finish();
  painter_.resetTransform();
  const double radius = 0.913 * 144 * 0.97;
  for (int y = 0; y < 400; ++y) {
    for (int x = 0; x < 600; ++x) {
      const double dx = x - (0.37 + 200 * 0.913), dy = y - (0.61 + 200 * 0.913);
      if (std::hypot(dx, dy) > radius - 6) continue;
      const Colour colour = At(x, y);
      EXPECT_LT((colour & 0xFF) + (colour >> 8 & 0xFF) + (colour >> 16), 2U * 0xFF + 8)
          << x << ' ' << y;
    }
  }
}

TEST(PaperFiles, PdfHoldsTextAsTextAndMapsAsFewShapes) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  {
    QPdfWriter writer(&buffer);
    writer.setResolution(600);
    QPainter painter(&writer);
    const Screen screen;
    QtPaper paper(painter, screen);
    EXPECT_FLOAT_EQ(paper.TwipsPerPixelX(), 2.4F);
    wafer source = SlopingWafer();
    paper.ScaleMode(3);
    source.D2Plot(paper, 1, 5, 0, false,
                  {.left = 1000, .top = 1000, .width = 8000, .height = 8000});
  }
  EXPECT_TRUE(bytes.startsWith("%PDF"));
  EXPECT_LT(bytes.size(), 60000) << "40000 cells alone would take more";
}

TEST(PaperFiles, PrintersAndPreviewsAreServedToo) {
  const QTemporaryDir folder;
  QPrinter printer(QPrinter::HighResolution);
  printer.setOutputFormat(QPrinter::PdfFormat);
  printer.setOutputFileName(folder.filePath("page.pdf"));
  {
    QPainter painter(&printer);
    const Screen screen;
    QtPaper paper(painter, screen);
    EXPECT_FLOAT_EQ(paper.TwipsPerPixelX(), 1440.0F / static_cast<float>(printer.resolution()));
    wafer source = SlopingWafer();
    paper.ScaleMode(3);
    source.D2Plot(paper, 4, 5, 0, true, {.left = 1000, .top = 1000, .width = 8000, .height = 8000});
  }
  EXPECT_GT(QFileInfo(folder.filePath("page.pdf")).size(), 1000);

  QPicture preview;
  QPainter painter(&preview);
  const Screen screen;
  QtPaper paper(painter, screen);
  paper.CurrentX(100);
  paper.Print("Thickness");
  paper.Finish();
  painter.end();
  EXPECT_GT(preview.size(), 0U);
}

TEST(PaperFiles, SvgIsVectors) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  {
    QSvgGenerator generator;
    generator.setOutputDevice(&buffer);
    generator.setResolution(600);
    generator.setSize({2000, 2000});
    generator.setViewBox(QRect(0, 0, 2000, 2000));
    QPainter painter(&generator);
    const Screen screen;
    QtPaper paper(painter, screen);
    paper.CurrentX(100);
    paper.Print("Thickness");
  }
  EXPECT_TRUE(bytes.contains("Thickness"));
  EXPECT_FALSE(bytes.contains("<image"));
}

}  // namespace
}  // namespace discoplan::qt
