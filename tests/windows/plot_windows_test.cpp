// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QDialog>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QSpinBox>
#include <QStyle>
#include <QStyleOptionSpinBox>

#include "hosts/qt/plot_widgets.h"
#include "hosts/qt/property_dialog.h"
#include "tests/windows/user.h"

namespace discoplan::qt {
namespace {

const std::vector<float> kX = {0, 50, 0, -50, 0, 60, -60};
const std::vector<float> kY = {0, 0, 50, 0, -50, 60, -60};
const std::vector<float> kZ = {10, 12, 14, 16, 18, 11, 17};

template <class Widget>
std::unique_ptr<Widget> ShownPlot() {
  auto plot = std::make_unique<Widget>();
  plot->resize(520, 360);
  plot->move(20, 20);
  plot->show();
  EXPECT_TRUE(QTest::qWaitForWindowExposed(plot.get()));
  EXPECT_EQ(plot->SetWaferData(kX, kY, kZ), LoadResult::Loaded);
  EXPECT_EQ(plot->Plot(), PlotResult::Done);
  return plot;
}

class PlotWindows : public testing::Test {
 protected:
  // The click of a test is no second one to that of the test before.
  PlotWindows() { QTest::qWait(QApplication::doubleClickInterval()); }

  User user_;
};

TEST_F(PlotWindows, TakeOptionsTypedIntoTheirDialog) {
  const auto plot = ShownPlot<Plot2DWidget>();
  bool acted = false;
  WhenShown<QDialog>([&](QDialog& dialog) {
    acted = true;
    user_.Focus(dialog);
    auto* field = dialog.findChild<QLineEdit*>("tresx");
    user_.Click(*field);
    user_.Press("ctrl+a");
    user_.Type("2.5");
    EXPECT_EQ(field->text(), "2.5");
    user_.Press("Return");
  });
  user_.Click(*plot->findChild<QPushButton*>("Command1"));
  ASSERT_TRUE(QTest::qWaitFor([&] { return acted && plot->Resolution() == 2.5; }));
}

TEST_F(PlotWindows, FilterWhatIsTypedAtOnce) {
  const auto plot = ShownPlot<Plot2DWidget>();
  WhenShown<QDialog>([&](QDialog& dialog) {
    user_.Focus(dialog);
    auto* field = dialog.findChild<QLineEdit*>("tresx");
    user_.Click(*field);
    user_.Press("ctrl+a");
    user_.Type("3x");
    EXPECT_EQ(field->text(), "5") << "a letter brings the default back";
    user_.Press("Escape");
  });
  plot->control().ShowPlotOption();
  EXPECT_EQ(plot->Resolution(), 5);
}

TEST_F(PlotWindows, LeaveADialogByEscapeWithoutAChange) {
  const auto plot = ShownPlot<Plot2DWidget>();
  WhenShown<QDialog>([&](QDialog& dialog) {
    user_.Focus(dialog);
    user_.Click(*dialog.findChild<QLineEdit*>("tresx"));
    user_.Press("ctrl+a");
    user_.Type("3");
    user_.Press("Escape");
  });
  plot->control().ShowPlotOption();
  EXPECT_EQ(plot->Resolution(), 5);
}

TEST_F(PlotWindows, MoveTheFocusInReadingOrder) {
  const auto plot = ShownPlot<Plot3DWidget>();
  WhenShown<QDialog>([&](QDialog& dialog) {
    user_.Focus(dialog);
    user_.Click(*dialog.findChild<QLineEdit*>("tresx"));
    for (const char* next : {"tresy", "tscale"}) {
      user_.Press("Tab");
      EXPECT_EQ(dialog.focusWidget()->objectName(), next);
    }
    user_.Press("shift+Tab");
    EXPECT_EQ(dialog.focusWidget()->objectName(), "tresy");
    user_.Press("Escape");
  });
  plot->control().ShowPlotOption();
}

TEST_F(PlotWindows, StretchTheirPictureWhenResized) {
  const auto plot = ShownPlot<Plot2DWidget>();
  user_.Resize(*plot, {700, 500});
  ASSERT_TRUE(QTest::qWaitFor([&] { return plot->size() == QSize(700, 500); }));
  EXPECT_EQ(plot->control().root().Box().width, 700 * 15);
  EXPECT_TRUE(plot->findChild<QWidget*>("RePlot")->isVisible());
  EXPECT_FALSE(plot->findChild<QWidget*>("PLOTA")->isVisible());
  user_.Resize(*plot, {60, 40});
  ASSERT_TRUE(QTest::qWaitFor([&] { return plot->width() >= 300 && plot->height() >= 200; }));
}

TEST_F(PlotWindows, TurnALineScanByItsSpinner) {
  const auto plot = ShownPlot<LineScanWidget>();
  auto* spinner = plot->findChild<QSpinBox*>();
  ASSERT_NE(spinner, nullptr);
  QStyleOptionSpinBox option;
  option.initFrom(spinner);
  option.subControls = QStyle::SC_All;
  const auto arrow = [&](QStyle::SubControl which) {
    return spinner->style()->subControlRect(QStyle::CC_SpinBox, &option, which, spinner).center();
  };
  user_.Click(*spinner, arrow(QStyle::SC_SpinBoxUp));
  user_.Click(*spinner, arrow(QStyle::SC_SpinBoxUp));
  EXPECT_EQ(plot->angle(), 2);
  for (int i = 0; i < 3; ++i) user_.Click(*spinner, arrow(QStyle::SC_SpinBoxDown));
  EXPECT_EQ(plot->angle(), 359);
  EXPECT_EQ(plot->findChild<QLineEdit*>("AngleValue")->text(), "359");
}

TEST_F(PlotWindows, TurnALineScanByTyping) {
  const auto plot = ShownPlot<LineScanWidget>();
  user_.Focus(*plot);
  auto* field = plot->findChild<QLineEdit*>("AngleValue");
  user_.Click(*field);
  user_.Press("ctrl+a");
  user_.Type("45");
  EXPECT_EQ(plot->angle(), 45);
  user_.Press("Up");
  EXPECT_EQ(plot->angle(), 46);
}

TEST_F(PlotWindows, TellTheirProgramOfTheMouse) {
  const auto plot = ShownPlot<Plot2DWidget>();
  const QSignalSpy down(plot.get(), &PlotWidget::MouseDown), up(plot.get(), &PlotWidget::MouseUp),
      moved(plot.get(), &PlotWidget::MouseMove), click(plot.get(), &PlotWidget::Click),
      twice(plot.get(), &PlotWidget::DblClick);
  const auto* map = plot->findChild<QWidget*>("Frplot");
  // On the frame beside the picture, which keeps the mouse to itself in a map.
  const QPoint frame{2, map->height() / 2};
  user_.Click(*map, frame);
  user_.DoubleClick(*map, frame);
  EXPECT_EQ(down.size(), 2) << "the second press of a double click is none";
  EXPECT_EQ(up.size(), 3);
  EXPECT_EQ(click.size(), 2);
  EXPECT_EQ(twice.size(), 1);
  user_.MoveTo(*map, {3, 50});
  user_.MoveTo(*map, {3, 70});
  EXPECT_GE(moved.size(), 2) << "no button is needed";
}

TEST_F(PlotWindows, MayBeDestroyedByAHandlerOfTheirOwnEvent) {
  QPointer<Plot3DWidget> plot = ShownPlot<Plot3DWidget>().release();
  const auto destroy = [&] { delete plot.data(); };
  QObject::connect(plot, &PlotWidget::MouseDown, plot, destroy);
  QObject::connect(plot, &PlotWidget::Click, plot, destroy);
  for (const char* name : {"PLOTA", "RePlot"}) {
    if (!plot) break;
    const auto* map = plot->findChild<QWidget*>(QLatin1String(name));
    if (map->isVisible()) user_.Click(*map);
  }
  EXPECT_TRUE(plot.isNull());
}

TEST_F(PlotWindows, MayBeDestroyedInTheMiddleOfTheirDialog) {
  QPointer<Plot2DWidget> plot = ShownPlot<Plot2DWidget>().release();
  WhenShown<QDialog>([&](QDialog&) { delete plot.data(); });
  user_.Click(*plot->findChild<QPushButton*>("Command1"));
  ASSERT_TRUE(QTest::qWaitFor([&] { return plot.isNull(); }));
}

TEST_F(PlotWindows, EditTheirPropertiesOnPages) {
  const auto plot = ShownPlot<Plot2DWidget>();
  const QPointer<PropertyDialog> pages = new PropertyDialog(*plot);
  pages->setAttribute(Qt::WA_DeleteOnClose);
  pages->open();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(pages));
  user_.Focus(*pages);
  user_.Click(*pages->findChild<QLineEdit*>("txtTestDiameter"));
  user_.Press("ctrl+a");
  user_.Type("150");
  user_.Click(*pages->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Apply));
  EXPECT_EQ(plot->TestDiameter(), 150);
  // More than the wafer: a box says so, and a fixed pair is taken.
  user_.Click(*pages->findChild<QLineEdit*>("txtTestDiameter"));
  user_.Press("ctrl+a");
  user_.Type("400");
  WhenShown<QMessageBox>([&](QMessageBox& box) {
    EXPECT_EQ(box.text(), "Wafer diamter can not be less than test diameter");
    user_.Focus(box);
    user_.Press("Return");
  });
  user_.Click(*pages->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok));
  ASSERT_TRUE(QTest::qWaitFor([&] { return pages.isNull(); }));
  EXPECT_EQ(plot->TestDiameter(), 195);
}

}  // namespace
}  // namespace discoplan::qt
