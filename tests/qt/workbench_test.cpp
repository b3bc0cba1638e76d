// SPDX-License-Identifier: MIT
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QDropEvent>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QMimeData>
#include <QPrinter>
#include <QPushButton>
#include <QSettings>
#include <QStatusBar>
#include <QTest>
#include <algorithm>
#include <fstream>
#include <set>

#include "hosts/qt/plot_widgets.h"
#include "tests/qt/workbench_fixture.h"

namespace discoplan::app {
namespace {

const QString kLot = QString::fromStdString(Example("native_oxide_lot.csv"));

TEST_F(WorkbenchTest, ListsTheWafersOfALotAndShowsTheFirst) {
  OpenLot();
  EXPECT_EQ(List().currentItem()->text(), "Slot01");
  EXPECT_EQ(workbench_->windowTitle(), "Slot01");
  EXPECT_EQ(Current().Control().Wafer().GetNop(), 49);
  List().setCurrentRow(6);
  EXPECT_EQ(workbench_->windowTitle(), "Slot07");
  EXPECT_EQ(Current().Control().PlotCaption(), "Slot07");
}

TEST_F(WorkbenchTest, DrawsATabWhenItIsTurnedTo) {
  OpenLot();
  PlotTabs& plots = workbench_->plots();
  ASSERT_EQ(plots.count(), 9);
  EXPECT_EQ(plots.At(4).Control().Wafer().GetNop(), 0);
  for (int tab = 0; tab < 9; ++tab) {
    plots.setCurrentIndex(tab);
    EXPECT_EQ(plots.At(tab).Control().Wafer().GetNop(), 49) << tab;
  }
  List().setCurrentRow(3);
  EXPECT_EQ(plots.At(8).Control().PlotCaption(), "Slot04");
}

TEST_F(WorkbenchTest, DrawsAgainWhenASettingChanges) {
  OpenLot();
  auto& map = static_cast<qt::Plot2DWidget&>(Current());
  map.setWaferDiameter(450);
  EXPECT_EQ(map.control().Wafer().GetNop(), 0) << "a new diameter drops the sites";
  ASSERT_TRUE(QTest::qWaitFor([&] { return map.control().Wafer().GetNop() == 49; }));
}

TEST_F(WorkbenchTest, PinsTheScaleOfAllKinds) {
  OpenLot();
  PlotTabs& plots = workbench_->plots();
  plots.SetLimits(Limits{9, 11});
  EXPECT_EQ(Current().Control().Wafer().PlotMaximum, 11);
  plots.setCurrentIndex(4);
  EXPECT_EQ(Current().Control().Wafer().PlotMaximum, 11);
  EXPECT_EQ(plots.LimitsOrData().low, 9);
  plots.SetLimits({});
  EXPECT_FALSE(Current().Control().Wafer().HasPlotLimit());
  EXPECT_NEAR(plots.LimitsOrData().high, 10.6835, 1e-3);
}

TEST_F(WorkbenchTest, AsksForLimitsInOrder) {
  LimitsDialog dialog({9, 11}, nullptr);
  auto* low = dialog.findChild<QLineEdit*>("low");
  const auto* ok = dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok);
  EXPECT_TRUE(ok->isEnabled());
  low->setText("12");
  EXPECT_FALSE(ok->isEnabled());
  low->setText("10.5");
  EXPECT_TRUE(ok->isEnabled());
  ASSERT_TRUE(dialog.Result().has_value());
  EXPECT_EQ(dialog.Result()->low, 10.5);
  dialog.findChild<QPushButton*>("release")->click();
  EXPECT_FALSE(dialog.Result().has_value());
}

TEST_F(WorkbenchTest, ExportsPicturesAndVectors) {
  OpenLot();
  const std::pair<const char*, QByteArray> formats[] = {
      {"a.png", "\x89PNG"}, {"a.svg", "<svg"}, {"a.pdf", "%PDF"}};
  for (const auto& [name, begins] : formats) {
    EXPECT_EQ(workbench_->ExportTo(PathOf(name)), "");
    QFile file(PathOf(name));
    ASSERT_TRUE(file.open(QFile::ReadOnly)) << name;
    EXPECT_TRUE(file.readAll().startsWith(begins)) << name;
  }
  EXPECT_TRUE(workbench_->ExportTo(PathOf("none/a.png")).contains("none/a.png"));
  EXPECT_TRUE(workbench_->ExportTo(PathOf("none/a.pdf")).contains("none/a.pdf"));
}

TEST_F(WorkbenchTest, PrintsAPage) {
  OpenLot();
  QPrinter printer;
  printer.setOutputFormat(QPrinter::PdfFormat);
  printer.setOutputFileName(PathOf("page.pdf"));
  workbench_->PrintOn(printer);
  QFile file(PathOf("page.pdf"));
  ASSERT_TRUE(file.open(QFile::ReadOnly));
  EXPECT_GT(file.size(), 10000);
  EXPECT_EQ(Current().Control().PrinterObj(), nullptr);
}

class PrintQueue : public WorkbenchTest {};

TEST_F(PrintQueue, TakesAPage) {
  const QString queue = qEnvironmentVariable("DISCOPLAN_PRINT_QUEUE");
  if (queue.isEmpty()) GTEST_SKIP() << "no print queue to try";
  OpenLot();
  QPrinter printer(QPrinter::HighResolution);
  printer.setPrinterName(queue);
  ASSERT_TRUE(printer.isValid()) << "the print service doesn't know the queue";
  workbench_->PrintOn(printer);
  EXPECT_NE(printer.printerState(), QPrinter::Error);
}

TEST_F(WorkbenchTest, TellsWhyAFileIsntOpened) {
  std::ofstream(folder_.path() / "bad.csv") << "1,2\n";
  workbench_->Open({PathOf("bad.csv"), kLot});
  QMessageBox* box = nullptr;
  ASSERT_TRUE(QTest::qWaitFor([&] {
    box = workbench_->findChild<QMessageBox*>();
    return box != nullptr;
  }));
  EXPECT_TRUE(box->text().contains("bad.csv"));
  box->close();
  ASSERT_TRUE(QTest::qWaitFor([&] { return List().count() == 25; })) << "the next is opened";
}

TEST_F(WorkbenchTest, LeavesButtonsOutOfAPicture) {
  OpenLot();
  ASSERT_EQ(workbench_->ExportTo(PathOf("map.png")), "");
  const QImage picture(PathOf("map.png"));
  EXPECT_EQ(picture.size(), Current().size() * Current().devicePixelRatio());
  const auto* button = Current().findChild<QPushButton*>("Command1");
  const QRect place(button->mapTo(&Current(), QPoint(0, 0)), button->size());
  for (int y = place.top(); y <= place.bottom(); ++y) {
    for (int x = place.left(); x <= place.right(); ++x) {
      ASSERT_EQ(picture.pixelColor(x, y), QColor(Qt::white)) << x << ' ' << y;
    }
  }
}

TEST_F(WorkbenchTest, TellsApartWhatSeveralLotsCallTheSame) {
  OpenLot();
  QFile::copy(kLot, PathOf("again.csv"));
  workbench_->Open({PathOf("again.csv")});
  ASSERT_TRUE(QTest::qWaitFor([&] { return List().count() == 50; }));
  EXPECT_EQ(List().item(0)->text(), "Slot01 - native_oxide_lot.csv");
  EXPECT_EQ(List().item(25)->text(), "Slot01 - again.csv");
  EXPECT_EQ(workbench_->windowTitle(), "Slot01 - again.csv");
  QDir().mkdir(PathOf("deep"));
  QFile::copy(kLot, PathOf("deep/again.csv"));
  workbench_->Open({PathOf("deep/again.csv")});
  ASSERT_TRUE(QTest::qWaitFor([&] { return List().count() == 75; }));
  EXPECT_EQ(List().item(50)->text(), "Slot01 - " + PathOf("deep/again.csv"));
}

TEST_F(WorkbenchTest, CountsTheWafersOfAllFilesThatWereOpenedTogether) {
  QFile::copy(kLot, PathOf("again.csv"));
  workbench_->Open({kLot, PathOf("again.csv")});
  ASSERT_TRUE(QTest::qWaitFor([&] { return List().count() == 50; }));
  EXPECT_EQ(workbench_->statusBar()->currentMessage(), "50 wafers read from 2 files");
  std::ofstream(folder_.path() / "one.csv") << "x,y,thickness\n0,0,1\n9,0,2\n0,9,3\n9,9,4\n";
  workbench_->Open({PathOf("one.csv")});
  ASSERT_TRUE(QTest::qWaitFor([&] { return List().count() == 51; }));
  EXPECT_EQ(workbench_->statusBar()->currentMessage(), "1 wafer read");
}

TEST_F(WorkbenchTest, SaysSoWhenAFileCantBeRead) {
  std::ofstream(folder_.path() / "bad.csv") << "1,2\n";
  workbench_->Open({PathOf("bad.csv")});
  ASSERT_TRUE(QTest::qWaitFor([&] { return workbench_->findChild<QMessageBox*>() != nullptr; }));
  EXPECT_EQ(workbench_->statusBar()->currentMessage(), PathOf("bad.csv") + " can't be read");
  workbench_->findChild<QMessageBox*>()->close();
}

TEST_F(WorkbenchTest, OffersTheValuesOfATableWithSeveral) {
  std::ofstream(folder_.path() / "two.csv") << "X;Y;thickness (nm);value\n0;0;1;11\n9;0;2;12\n"
                                               "0;9;3;13\n9;9;4;14\n";
  workbench_->Open({PathOf("two.csv")});
  ASSERT_TRUE(QTest::qWaitFor([&] { return List().count() == 2; }));
  auto* parameters = workbench_->findChild<QComboBox*>();
  EXPECT_TRUE(parameters->isVisible());
  EXPECT_EQ(parameters->currentText(), "thickness (nm)");
  EXPECT_TRUE(List().item(1)->isHidden());
  EXPECT_EQ(Current().Control().Maximum(), 4);
  parameters->setCurrentText("value");
  EXPECT_EQ(Current().Control().Maximum(), 14);
  EXPECT_TRUE(List().item(0)->isHidden());
  workbench_->Open({kLot});  // with one value, which stays in sight
  ASSERT_TRUE(QTest::qWaitFor([&] { return List().count() == 27; }));
  EXPECT_EQ(Current().Control().Wafer().GetNop(), 49);
  parameters->setCurrentText("thickness (nm)");
  EXPECT_FALSE(List().item(26)->isHidden());
}

TEST_F(WorkbenchTest, TellsWhatLooksWrongAndWhatWasLeftOut) {
  std::ofstream(folder_.path() / "cm.csv") << "X,Y,V\n-14.7,0,9\n14.7,0,2\n0,14.7,3\n"
                                              "0,-14.7,4\n5,5,7\n";
  workbench_ = std::make_unique<Workbench>(ReadRequest{.edge_exclusion = 5});
  workbench_->show();
  workbench_->Open({PathOf("cm.csv")});
  ASSERT_TRUE(QTest::qWaitFor([&] { return List().count() == 1; }));
  auto* box = workbench_->findChild<QMessageBox*>("Warnings");
  ASSERT_NE(box, nullptr);
  EXPECT_TRUE(box->text().contains("try --unit cm (300 mm, in centimetres)"))
      << box->text().toStdString();
  box->close();
  workbench_->Open({kLot});
  ASSERT_TRUE(QTest::qWaitFor([&] { return List().count() == 26; }));
  EXPECT_EQ(List().item(1)->toolTip(), kLot + ", 25 of 49 sites; 24 beyond 145 mm");
  EXPECT_EQ(Current().Control().PlotCaption(), "Slot01: 25 of 49 sites; 24 beyond 145 mm");
  List().setCurrentRow(2);
  EXPECT_EQ(Current().Control().PlotCaption(), "Slot02: 25 of 49 sites; 24 beyond 145 mm");
}

TEST_F(WorkbenchTest, AsksForTheColumnsOfATableWhosePositionsHaveOtherNames) {
  std::ofstream(folder_.path() / "two.csv")
      << "Recipe 7\n# free text\nXm;Ym;thickness;value\n0;0;1;11\n9;0;2;12\n0;9;3;13\n9;9;4;14\n";
  workbench_->Open({PathOf("two.csv")});
  QMessageBox* box = nullptr;
  ASSERT_TRUE(
      QTest::qWaitFor([&] { return (box = workbench_->findChild<QMessageBox*>()) != nullptr; }));
  QAbstractButton* choose = nullptr;
  for (QAbstractButton* button : box->buttons()) {
    if (box->buttonRole(button) == QMessageBox::ActionRole) choose = button;
  }
  ASSERT_NE(choose, nullptr);
  choose->click();
  auto* dialog = workbench_->findChild<QDialog*>("ColumnDialog");
  ASSERT_NE(dialog, nullptr);
  EXPECT_EQ(dialog->findChild<QComboBox*>("x")->currentText(), "Xm");
  EXPECT_EQ(dialog->findChild<QComboBox*>("y")->currentText(), "Ym");
  auto* value = dialog->findChild<QComboBox*>("value");
  EXPECT_EQ(value->currentText(), "thickness");
  value->setCurrentText("value");
  dialog->accept();
  ASSERT_TRUE(QTest::qWaitFor([&] { return List().count() == 1; }));
  EXPECT_EQ(Current().Control().Maximum(), 14);
}

TEST_F(WorkbenchTest, TakesFilesThatAreDropped) {
  QMimeData data;
  data.setUrls({QUrl::fromLocalFile(kLot)});
  QDragEnterEvent enter(QPoint(10, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(workbench_.get(), &enter);
  EXPECT_TRUE(enter.isAccepted());
  QDropEvent drop(QPointF(10, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(workbench_.get(), &drop);
  EXPECT_TRUE(QTest::qWaitFor([&] { return List().count() == 25; }));
}

TEST_F(WorkbenchTest, KeepsItsStateBetweenStarts) {
  OpenLot();
  auto& map = static_cast<qt::Plot2DWidget&>(Current());
  map.setHideLegend(true);
  workbench_->plots().setCurrentIndex(2);
  workbench_->resize(1100, 700);
  workbench_->close();
  workbench_ = std::make_unique<Workbench>();
  EXPECT_EQ(workbench_->plots().currentIndex(), 2);
  EXPECT_EQ(workbench_->size(), QSize(1100, 700));
  EXPECT_TRUE(static_cast<qt::Plot2DWidget&>(workbench_->plots().At(0)).HideLegend());
  QStringList actions;
  for (const QAction* action : workbench_->findChildren<QAction*>()) actions += action->text();
  EXPECT_TRUE(actions.contains(kLot)) << "among the recent files";
}

TEST_F(WorkbenchTest, StartsWithDamagedSettings) {
  QSettings kept;
  kept.setValue("plots/Plot2D/2DTESTDM", "wide");
  kept.setValue("plots/Plot2D/2DFLAT", 1e99);
  kept.setValue("geometry", 7);
  kept.setValue("tab", "last");
  kept.sync();
  workbench_ = std::make_unique<Workbench>();
  const auto& map = static_cast<qt::Plot2DWidget&>(workbench_->plots().At(0));
  EXPECT_EQ(map.TestDiameter(), 194);
  EXPECT_EQ(map.WaferStyle(), qt::Plot2DWidget::Notch);
  EXPECT_EQ(workbench_->plots().currentIndex(), 0);
}

TEST_F(WorkbenchTest, ClosesAWafer) {
  OpenLot();
  for (QAction* action : workbench_->findChildren<QAction*>()) {
    if (action->text() == "&Close wafer") action->trigger();
  }
  EXPECT_EQ(List().count(), 24);
  EXPECT_EQ(workbench_->windowTitle(), List().currentItem()->text());
}

TEST_F(WorkbenchTest, TellsWhatLiesUnderTheMouse) {
  OpenLot();
  QWidget* map = nullptr;
  for (const char* name : {"PLOTA", "RePlot"}) {
    auto* candidate = Current().findChild<QWidget*>(QLatin1String(name));
    if (candidate->isVisible()) map = candidate;
  }
  ASSERT_NE(map, nullptr);
  const QPoint middle(map->width() / 2, map->height() / 2);
  QMouseEvent move(QEvent::MouseMove, middle, map->mapToGlobal(middle), Qt::NoButton, Qt::NoButton,
                   Qt::NoModifier);
  QApplication::sendEvent(map, &move);
  QString shown;
  for (const auto* label : workbench_->findChildren<QLabel*>()) {
    if (label->text().startsWith("X ")) shown = label->text();
  }
  EXPECT_TRUE(shown.startsWith("X 0.0 mm   Y 0.0 mm")) << qPrintable(shown);
  EXPECT_TRUE(shown.contains("(site 1)")) << qPrintable(shown);
}

}  // namespace
}  // namespace discoplan::app
