// SPDX-License-Identifier: MIT
#include "hosts/qt/property_dialog.h"

#include <gtest/gtest.h>

#include <QDialogButtonBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QTest>

#include "discoplan/controls/control_factory.h"
#include "hosts/qt/plot_widgets.h"

namespace discoplan::qt {
namespace {

QPushButton& ApplyButton(PropertyDialog& dialog) {
  return *dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Apply);
}

TEST(PropertyDialog, HasThePagesOfItsPlot) {
  for (const ControlClass* own_class : ControlClasses()) {
    const std::string_view control = own_class->name;
    const std::unique_ptr<PlotWidget> plot(NewPlotWidget(control));
    const PropertyDialog dialog(*plot);
    const auto* tabs = dialog.findChild<QTabWidget*>();
    // Values have no options of their own.
    ASSERT_EQ(tabs->count(), control == "Plot2DN" ? 1 : 2) << control;
    EXPECT_EQ(tabs->tabText(0), "Wafer Size");
  }
}

TEST(PropertyDialog, WritesWhatWasEdited) {
  Plot2DWidget plot;
  PropertyDialog dialog(plot);
  dialog.show();
  EXPECT_FALSE(ApplyButton(dialog).isEnabled());
  auto* field = dialog.findChild<QLineEdit*>("txtResolution");
  EXPECT_EQ(field->text(), "5");
  dialog.findChild<QTabWidget*>()->setCurrentIndex(1);
  field->selectAll();
  QTest::keyClicks(field, "2.5");
  EXPECT_EQ(plot.Resolution(), 5) << "not before it is applied";
  ASSERT_TRUE(ApplyButton(dialog).isEnabled());
  QTest::mouseClick(&ApplyButton(dialog), Qt::LeftButton);
  EXPECT_EQ(plot.Resolution(), 2.5);
  EXPECT_FALSE(ApplyButton(dialog).isEnabled());
}

TEST(PropertyDialog, ShowsHowAValueWasTaken) {
  Plot2DWidget plot;
  PropertyDialog dialog(plot);
  auto* field = dialog.findChild<QLineEdit*>("txtResolution");
  field->selectAll();
  QTest::keyClicks(field, "90");
  dialog.Apply();
  EXPECT_EQ(field->text(), "48.5") << "a quarter of the test diameter";
}

TEST(PropertyDialog, LeavesEverythingWhenCancelled) {
  Plot2DWidget plot;
  auto* dialog = new PropertyDialog(plot);
  auto* field = dialog->findChild<QLineEdit*>("txtWaferDiameter");
  field->selectAll();
  QTest::keyClicks(field, "300");
  dialog->reject();
  EXPECT_EQ(plot.WaferDiameter(), 200);
}

TEST(PropertyDialog, GoesWithItsPlot) {
  auto plot = std::make_unique<LineScanWidget>();
  const QPointer<PropertyDialog> dialog = new PropertyDialog(*plot);
  dialog->show();
  plot.reset();
  EXPECT_TRUE(dialog.isNull());
}

}  // namespace
}  // namespace discoplan::qt
