// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QtDesigner/qdesigner_components.h>
#include <QAction>
#include <QApplication>
#include <QDesignerFormEditorInterface>
#include <QDesignerFormWindowInterface>
#include <QDesignerFormWindowManagerInterface>
#include <QDesignerIntegration>
#include <QDesignerTaskMenuExtension>
#include <QDialog>
#include <QExtensionManager>
#include <QFile>
#include <QFileInfo>
#include <QIcon>
#include <QLineEdit>
#include <QPluginLoader>
#include <QTimer>
#include <QUiLoader>
#include <QUndoStack>
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>
#include <set>

#include "hosts/qt/plot_widgets.h"
#include "tests/places.h"

namespace discoplan::qt {
namespace {

class DesignerPlugin : public testing::Test {
 protected:
  DesignerPlugin() : loader_(DISCOPLAN_DESIGNER_PLUGIN) {
    collection_ = qobject_cast<QDesignerCustomWidgetCollectionInterface*>(loader_.instance());
  }

  void SetUp() override { ASSERT_NE(collection_, nullptr) << qPrintable(loader_.errorString()); }

  QPluginLoader loader_;
  QDesignerCustomWidgetCollectionInterface* collection_;
};

TEST_F(DesignerPlugin, OffersTheNineInAGroup) {
  const auto widgets = collection_->customWidgets();
  ASSERT_EQ(widgets.size(), 9);
  std::set<std::size_t> icons;
  for (const auto* widget : widgets) {
    EXPECT_EQ(widget->group(), "Discoplan");
    EXPECT_TRUE(widget->domXml().contains(widget->name()));
    const QImage icon = widget->icon().pixmap(64).toImage();
    ASSERT_FALSE(icon.isNull()) << qPrintable(widget->name());
    std::set<QRgb> colours;
    for (int y = 0; y < icon.height(); ++y) {
      for (int x = 0; x < icon.width(); ++x) colours.insert(icon.pixel(x, y));
    }
    EXPECT_GT(colours.size(), 4U) << qPrintable(widget->name());
    icons.insert(qHashBits(icon.constBits(), static_cast<std::size_t>(icon.sizeInBytes())));
  }
  EXPECT_EQ(icons.size(), 9U) << "each has a picture of its own";
}

TEST_F(DesignerPlugin, MakesEmptyPlotsOutsideTheDesigner) {
  for (auto* maker : collection_->customWidgets()) {
    const std::unique_ptr<QWidget> widget(maker->createWidget(nullptr));
    EXPECT_EQ(QString::fromLatin1(widget->metaObject()->className()), maker->name());
    auto* plot = qobject_cast<PlotWidget*>(widget.get());
    ASSERT_NE(plot, nullptr);
    EXPECT_EQ(plot->Plot(), PlotResult::NoData);
  }
}

TEST_F(DesignerPlugin, FormsKeepTheSettings) {
  QUiLoader forms;
  forms.addPluginPath(QFileInfo(DISCOPLAN_DESIGNER_PLUGIN).path());
  QFile file(QString::fromStdString(TestData("qt/plot.ui")));
  ASSERT_TRUE(file.open(QFile::ReadOnly));
  const std::unique_ptr<QWidget> form(forms.load(&file));
  ASSERT_NE(form, nullptr) << qPrintable(forms.errorString());
  const auto* map = form->findChild<Plot2DWidget*>("map");
  ASSERT_NE(map, nullptr);
  EXPECT_EQ(map->WaferDiameter(), 300);
  EXPECT_EQ(map->TestDiameter(), 294);
  EXPECT_EQ(map->WaferStyle(), Plot2DWidget::WaferSt::Flat);
  EXPECT_EQ(map->Resolution(), 2.5);
  EXPECT_EQ(map->PlotCaption(), "Oxide");
  EXPECT_EQ(map->IntervalColor0(), QColor(1, 2, 3));
  const auto* scan = form->findChild<LineScanWidget*>("scan");
  ASSERT_NE(scan, nullptr);
  EXPECT_EQ(scan->angle(), 45);
}

// In a designer of its own, with a form.
TEST_F(DesignerPlugin, EditsAPlotInAWayThatCanBeUndone) {
  const std::unique_ptr<QDesignerFormEditorInterface> designer(
      QDesignerComponents::createFormEditor(nullptr));
  const QDesignerIntegration integration(designer.get());
  auto* form = designer->formWindowManager()->createFormWindow();
  form->setMainContainer(new QWidget);
  PlotWidget* plot = nullptr;
  for (auto* maker : collection_->customWidgets()) {
    maker->initialize(designer.get());
    if (!maker->name().endsWith("::Plot2DWidget")) continue;
    plot = qobject_cast<PlotWidget*>(maker->createWidget(form->mainContainer()));
  }
  ASSERT_NE(plot, nullptr);
  form->manageWidget(plot);
  QApplication::processEvents();
  EXPECT_EQ(plot->Control().Wafer().GetNop(), 49) << "a designer sees a sample";
  auto* menu = qt_extension<QDesignerTaskMenuExtension*>(designer->extensionManager(), plot);
  ASSERT_NE(menu, nullptr);
  ASSERT_FALSE(menu->taskActions().isEmpty());
  EXPECT_EQ(menu->taskActions()[0]->text(), "Plot properties...");
  for (const bool confirmed : {false, true}) {
    QTimer::singleShot(0, qApp, [confirmed] {
      auto* pages = qobject_cast<QDialog*>(QApplication::activeModalWidget());
      ASSERT_NE(pages, nullptr);
      auto* pitch = pages->findChild<QLineEdit*>("txtResolution");
      pitch->setText("2.5");
      Q_EMIT pitch->textEdited("2.5");
      confirmed ? pages->accept() : pages->reject();
    });
    menu->preferredEditAction()->trigger();
    EXPECT_EQ(plot->property("Resolution"), confirmed ? 2.5 : 5.0);
  }
  EXPECT_TRUE(form->isDirty());
  form->commandHistory()->undo();
  EXPECT_EQ(plot->property("Resolution"), 5.0);
  delete form;
}

}  // namespace
}  // namespace discoplan::qt
