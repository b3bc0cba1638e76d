// SPDX-License-Identifier: MIT
#include "hosts/qt/qt_figure.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QImage>
#include <QPdfWriter>
#include <cmath>

#include "discoplan/figures/wafer_figure.h"
#include "hosts/headless/figure_picture.h"

namespace discoplan::qt {
namespace {

using figures::Figure;
using figures::PlotKind;

struct Wafer {
  std::vector<float> x, y, value;
  figures::WaferPlot plot;

  Wafer() {
    for (int i = 0; i < 49; ++i) {
      const double r = 94 * std::sqrt((i + 0.5) / 49);
      const double angle = 2.399963 * i;
      x.push_back(static_cast<float>(r * std::cos(angle)));
      y.push_back(static_cast<float>(r * std::sin(angle)));
      value.push_back(static_cast<float>(100 + r * r / 900 + x.back() / 30));
    }
    plot.sites = {x, y, value};
    plot.diameter = 200;
    plot.title = "Slot 7";
    plot.quantity = "Thickness";
    plot.unit = "nm";
  }
};

// Of 255, 3 on the mean, and one part in 200 by more than half, as for the other devices.
TEST(QtFigure, AgreesWithThePicturesOfTheHeadlessHost) {
  const Wafer wafer;
  const discoplan::FigureText text("Liberation Sans");
  for (int kind = 0; kind < 9; ++kind) {
    const figures::Style style = {.width = 320, .height = 240, .font = "Liberation Sans"};
    const Figure figure = MakeFigure(static_cast<PlotKind>(kind), wafer.plot, style, text);
    const FigurePicture picture = discoplan::PaintFigure(figure, 2, text.Letters());
    QImage image(picture.width, picture.height, QImage::Format_RGB32);
    image.fill(Qt::red);
    {
      QPainter painter(&image);
      PaintFigure(painter, figure, image.rect());
    }
    double sum = 0;
    double far = 0;
    for (int y = 0; y < picture.height; ++y) {
      for (int x = 0; x < picture.width; ++x) {
        const Pixel a = picture.pixels[static_cast<std::size_t>(y * picture.width + x)];
        const QRgb b = image.pixel(x, y);
        for (const int shift : {0, 8, 16}) {
          const int off =
              std::abs(static_cast<int>(a >> shift & 255) - static_cast<int>(b >> shift & 255));
          sum += off;
          far += off > 127;
        }
      }
    }
    const double parts = 3.0 * picture.width * picture.height;
    EXPECT_LT(sum / parts, 3) << kind;
    EXPECT_LT(far / parts, 0.005) << kind;
  }
}

TEST(QtFigure, MeasuresTextAsItIsPainted) {
  const QtFigureText qt_text("Liberation Sans");
  const discoplan::FigureText text("Liberation Sans");
  for (const char* shown : {"Thickness (nm)", "mean 9.747 nm", "\u03C3 0.21"}) {
    EXPECT_NEAR(qt_text.Width(shown, 10, false), text.Width(shown, 10, false), 0.6) << shown;
    EXPECT_NEAR(qt_text.Width(shown, 20, true), 2 * qt_text.Width(shown, 10, true), 1e-6);
  }
}

TEST(QtFigure, FitsIntoItsPlaceAndKeepsThePainter) {
  Figure figure = {.width = 100,
                   .height = 50,
                   .background = figures::Rgb(0x0000FF),
                   .font = "",
                   .title = "",
                   .shapes = {}};
  figure.shapes.push_back(figures::PathShape{.path = figures::Rectangle({0, 0, 50, 50}),
                                             .fill = figures::Rgb(0x00FF00)});
  QImage image(200, 200, QImage::Format_RGB32);
  image.fill(Qt::white);
  QPainter painter(&image);
  const QTransform before = painter.transform();
  PaintFigure(painter, figure, QRectF(0, 0, 200, 200));
  EXPECT_EQ(painter.transform(), before);
  painter.end();
  EXPECT_EQ(image.pixelColor(100, 20), QColor(Qt::white)) << "above it";
  EXPECT_EQ(image.pixelColor(50, 100), QColor(0, 255, 0));
  EXPECT_EQ(image.pixelColor(150, 100), QColor(0, 0, 255));
}

TEST(QtFigure, HasTextsOnPaper) {
  const Wafer wafer;
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  {
    QPdfWriter writer(&buffer);
    QPainter painter(&writer);
    const QtFigureText text("Liberation Sans");
    PaintFigure(painter, MakeFigure(PlotKind::Map, wafer.plot, {.font = "Liberation Sans"}, text),
                painter.viewport());
  }
  EXPECT_TRUE(buffer.data().startsWith("%PDF-"));
  EXPECT_TRUE(buffer.data().contains("/FontFile2"));
}

}  // namespace
}  // namespace discoplan::qt
