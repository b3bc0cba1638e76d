// SPDX-License-Identifier: MIT
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QMouseEvent>
#include <QPrinter>
#include <algorithm>

#include "tests/qt/workbench_fixture.h"

namespace discoplan::app {
namespace {

class ModernWorkbench : public WorkbenchTest {
 protected:
  ModernWorkbench() : WorkbenchTest("none such") {}

  FigureView& View() { return workbench_->plots().CurrentFigure(); }
  /// Different colours in the picture of what is looked at.
  std::size_t Colours() {
    std::set<QRgb> colours;
    const QImage image = View().Image();
    for (int y = 0; y < image.height(); ++y) {
      for (int x = 0; x < image.width(); ++x) colours.insert(image.pixel(x, y));
    }
    return colours.size();
  }
};

TEST_F(ModernWorkbench, ShowsAFigureOfEachKind) {
  EXPECT_EQ(Colours(), 1U) << "without a wafer";
  OpenLot();
  PlotTabs& plots = workbench_->plots();
  for (int tab = 0; tab < 9; ++tab) {
    plots.setCurrentIndex(tab);
    EXPECT_TRUE(View().isVisible()) << tab;
    EXPECT_FALSE(Current().isVisible()) << tab;
    EXPECT_GT(Colours(), 50U) << tab;
    EXPECT_EQ(View().Image().size(), View().size() * View().devicePixelRatio());
  }
  EXPECT_EQ(plots.At(0).Control().Wafer().GetNop(), 0) << "no control is loaded unseen";
}

TEST_F(ModernWorkbench, TurnsToTheLiveControlsAndBack) {
  OpenLot();
  const auto is_enabled = [&](const char* title) {
    const auto actions = workbench_->findChildren<QAction*>();
    const auto found = std::ranges::find_if(
        actions, [&](const QAction* action) { return action->text() == QLatin1String(title); });
    return (*found)->isEnabled();
  };
  EXPECT_FALSE(is_enabled("&Options..."));
  workbench_->ChooseLook("classic");
  EXPECT_TRUE(is_enabled("&Options..."));
  EXPECT_TRUE(Current().isVisible());
  EXPECT_FALSE(View().isVisible());
  EXPECT_EQ(Current().Control().Wafer().GetNop(), 49);
  List().setCurrentRow(6);
  EXPECT_EQ(Current().Control().PlotCaption(), "Slot07");
  Trigger("&Modern");
  EXPECT_TRUE(View().isVisible());
  EXPECT_GT(Colours(), 50U);
}

TEST_F(ModernWorkbench, KeepsItsLookBetweenStarts) {
  OpenLot();
  const QImage light = View().Image();
  Trigger("&Dark");
  EXPECT_LT(qGray(View().Image().pixel(2, 2)), 60);
  Trigger("grey");
  Trigger("At the &left");
  const QImage chosen = View().Image();
  workbench_->close();
  workbench_ = std::make_unique<Workbench>();
  workbench_->show();
  OpenLot();
  EXPECT_EQ(View().Image(), chosen);
  EXPECT_NE(View().Image(), light);
  Trigger("Cla&ssic");
  workbench_->close();
  workbench_ = std::make_unique<Workbench>();
  EXPECT_TRUE(workbench_->plots().IsClassic());
}

TEST_F(ModernWorkbench, ExportsAndPrintsWhatItShows) {
  OpenLot();
  for (const char* name : {"a.png", "a.svg", "a.pdf"}) {
    EXPECT_EQ(workbench_->ExportTo(PathOf(name)), "");
  }
  const QImage picture(PathOf("a.png"));
  EXPECT_EQ(picture.size(), View().size() * View().devicePixelRatio());
  QFile vectors(PathOf("a.svg"));
  ASSERT_TRUE(vectors.open(QFile::ReadOnly));
  EXPECT_TRUE(vectors.readAll().contains("leave-one-out")) << "as figures alone say";
  EXPECT_TRUE(workbench_->ExportTo(PathOf("none/a.png")).contains("none/a.png"));
  Trigger("&Copy picture");
  QPrinter printer;
  printer.setOutputFormat(QPrinter::PdfFormat);
  printer.setOutputFileName(PathOf("page.pdf"));
  workbench_->PrintOn(printer);
  EXPECT_GT(QFileInfo(PathOf("page.pdf")).size(), 10000);
}

TEST_F(ModernWorkbench, PinsItsScale) {
  OpenLot();
  const Limits data = workbench_->plots().LimitsOrData();
  EXPECT_NEAR(data.high, 10.6835, 1e-3);
  const QImage before = View().Image();
  workbench_->plots().SetLimits(Limits{9, 12});
  EXPECT_NE(View().Image(), before);
  workbench_->plots().SetLimits({});
  EXPECT_EQ(View().Image(), before);
}

TEST_F(ModernWorkbench, TellsWhatLiesUnderTheMouse) {
  OpenLot();
  View().Image();
  QString shown;
  QObject::connect(&View(), &FigureView::Pointed, [&shown](const QString& text) { shown = text; });
  const auto point = [&](QPointF at) {
    QMouseEvent move(QEvent::MouseMove, at, View().mapToGlobal(at), Qt::NoButton, Qt::NoButton,
                     Qt::NoModifier);
    QApplication::sendEvent(&View(), &move);
  };
  // The centre of the map is where the first site lies; it is looked for along the middle row.
  bool found = false;
  for (int x = 0; x < View().width() && !found; ++x) {
    point({static_cast<double>(x), 0.53 * View().height()});
    found = shown.contains("(between sites)");
  }
  EXPECT_TRUE(found) << qPrintable(shown);
  EXPECT_TRUE(shown.startsWith("X -")) << qPrintable(shown);
  point({1, 1});
  EXPECT_EQ(shown, "");
}

}  // namespace
}  // namespace discoplan::app
