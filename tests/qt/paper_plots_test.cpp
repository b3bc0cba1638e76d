// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QBuffer>
#include <QImage>
#include <QPdfWriter>
#include <QProcess>
#include <QTemporaryDir>
#include <array>
#include <cmath>

#include "discoplan/print/bar_print.h"
#include "discoplan/print/contour_print.h"
#include "discoplan/print/print_wafer.h"
#include "discoplan/print/scan_print.h"
#include "discoplan/print/surface_print.h"
#include "hosts/qt/qt_paper.h"
#include "hosts/recording/recording_host.h"

namespace discoplan::qt {
namespace {

constexpr int kDotsPerInch = 96;  // of the screen, and of the page when it is looked at
constexpr float kPageWidth = 9000;
constexpr float kPageHeight = 7500;

wafer Measured() {
  wafer source;
  source.WaferDiameter = 200;
  source.TestDiameter = 194;
  source.FlatRatio = 1;
  source.SetNop(49);
  for (int i = 0; i < 49; ++i) {
    const auto x = static_cast<float>(i % 7 * 26 - 78);
    const auto y = static_cast<float>(i / 7 * 26 - 78);
    source.SetGridValue(x, y, 100 + x / 10 + y * y / 800);
  }
  source.MaxMin();
  return source;
}

struct Row {
  const char* name;
  std::function<void(PrintWafer&, wafer&, PageArea&)> print;
  double alike;  // share of the looked at pixels
};

const std::array kRows = {
    Row{"2D", [](PrintWafer& p, wafer& w, PageArea& a) { p.Print_2DPlot(w, a, {.resolution = 4}); },
        0.9},
    Row{"2DS",
        [](PrintWafer& p, wafer& w, PageArea& a) { p.Print_2DSigmaPlot(w, a, {.resolution = 4}); },
        0.9},
    Row{"2DC",
        [](PrintWafer& p, wafer& w, PageArea& a) {
          p.Print_Contour(w, a, {.settings = {.mark_sites = 3}, .show = [](const Message&) {}});
        },
        0.8},
    Row{"2DN", [](PrintWafer& p, wafer& w, PageArea& a) { p.Print_2DNPlot(w, a, ""); }, 0.8},
    Row{"3D",
        [](PrintWafer& p, wafer& w, PageArea& a) {
          p.Print_3DPlot(w, a, {.view = {.x_resolution = 20, .y_resolution = 20}});
        },
        0.85},
    Row{"3DS",
        [](PrintWafer& p, wafer& w, PageArea& a) {
          p.Print_3DSigmaPlot(w, a, {.view = {.x_resolution = 20, .y_resolution = 20}});
        },
        0.85},
    Row{"3DB", [](PrintWafer& p, wafer& w, PageArea& a) { p.Print_2DBPlot(w, a, {}); }, 0.85},
    Row{"histo", [](PrintWafer& p, wafer& w, PageArea& a) { p.Print_Histo(w, a, {}); }, 0.85},
    Row{"linescan", [](PrintWafer& p, wafer& w, PageArea& a) { p.Print_1DPlot(w, a, {}); }, 0.85},
};

/// The page in a PDF file, as a viewer shows it.
QImage Viewed(const Row& row) {
  const QTemporaryDir folder;
  const QString file = folder.filePath("page.pdf");
  {
    QPdfWriter writer(file);
    writer.setResolution(600);
    writer.setPageSize(QPageSize(QSizeF(kPageWidth / 20, kPageHeight / 20), QPageSize::Point, {},
                                 QPageSize::ExactMatch));
    writer.setPageMargins({});
    QPainter painter(&writer);
    const Screen screen;
    QtPaper paper(painter, screen);
    PrintWafer print;
    print.PrinterObj(&paper);
    wafer source = Measured();
    PageArea area{600, 300, 7800, 6000};
    row.print(print, source, area);
  }
  QProcess viewer;
  viewer.start("pdftoppm", {"-r", QString::number(kDotsPerInch), "-png", "-singlefile", file,
                            folder.filePath("page")});
  viewer.waitForFinished();
  return QImage(folder.filePath("page.png")).convertToFormat(QImage::Format_RGB32);
}

/// The same page on a picture of the screen.
QImage Previewed(const Row& row) {
  RecordingHost host;
  const auto picture = host.NewPicture(kPageWidth, kPageHeight);
  PrintWafer print;
  print.PrinterObj(picture.get());
  wafer source = Measured();
  PageArea area{600, 300, 7800, 6000};
  row.print(print, source, area);
  const Canvas& canvas = picture->canvas();
  return QImage(reinterpret_cast<const uchar*>(canvas.Pixels().data()), canvas.Width(),
                canvas.Height(), QImage::Format_RGB32)
      .copy();
}

bool IsPlain(const QImage& image, int x, int y) {
  for (int dy = -2; dy <= 2; ++dy) {
    for (int dx = -2; dx <= 2; ++dx) {
      if (image.pixel(x + dx, y + dy) != image.pixel(x, y)) return false;
    }
  }
  return true;
}

bool AreAlike(QRgb a, QRgb b) {
  return std::abs(qRed(a) - qRed(b)) < 24 && std::abs(qGreen(a) - qGreen(b)) < 24 &&
         std::abs(qBlue(a) - qBlue(b)) < 24;
}

// Where the preview is plain over some pixels, the page has the same colour.
TEST(PaperPlots, HaveTheScreensColours) {
  for (const Row& row : kRows) {
    const QImage page = Viewed(row);
    const QImage preview = Previewed(row);
    ASSERT_FALSE(page.isNull()) << row.name;
    ASSERT_EQ(page.size(), preview.size()) << row.name;
    int coloured = 0, alike = 0;
    for (int y = 3; y < page.height() - 3; y += 3) {
      for (int x = 3; x < page.width() - 3; x += 3) {
        if (!IsPlain(preview, x, y)) continue;
        const bool is_white = preview.pixel(x, y) == qRgb(255, 255, 255);
        if (is_white) continue;
        ++coloured;
        alike += AreAlike(page.pixel(x, y), preview.pixel(x, y));
      }
    }
    const bool has_areas = std::string(row.name) != "2DC" && std::string(row.name) != "2DN" &&
                           std::string(row.name) != "linescan";
    EXPECT_GE(coloured, has_areas ? 100 : 0) << row.name;
    EXPECT_GE(alike, row.alike * coloured) << row.name << ": of " << coloured;
    EXPECT_TRUE(AreAlike(page.pixel(5, 5), qRgb(255, 255, 255)));
  }
}

}  // namespace
}  // namespace discoplan::qt
