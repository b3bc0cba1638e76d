// SPDX-License-Identifier: MIT
#pragma once

/// The nine plots in Qt Designer, in a group of their own.

#include <QObject>
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>
#include <memory>
#include <vector>

namespace discoplan::qt {

class PlotWidgetPlugin final : public QDesignerCustomWidgetInterface {
 public:
  /// Of a control's class, such as "Plot2D".
  explicit PlotWidgetPlugin(std::string control) : control_(std::move(control)) {}

  QString name() const override;
  QString group() const override { return QStringLiteral("Discoplan"); }
  QString toolTip() const override;
  QString whatsThis() const override { return toolTip(); }
  QString includeFile() const override { return QStringLiteral("hosts/qt/plot_widgets.h"); }
  QString domXml() const override;
  QIcon icon() const override;
  bool isContainer() const override { return false; }
  /// In the designer the widget shows a sample wafer.
  QWidget* createWidget(QWidget* parent) override;
  bool isInitialized() const override { return in_designer_; }
  void initialize(QDesignerFormEditorInterface* designer) override;

 private:
  const std::string control_;
  bool in_designer_ = false;
};

class PlotWidgetCollection final : public QObject, public QDesignerCustomWidgetCollectionInterface {
  Q_OBJECT
  Q_PLUGIN_METADATA(IID "org.qt-project.Qt.QDesignerCustomWidgetCollectionInterface")
  Q_INTERFACES(QDesignerCustomWidgetCollectionInterface)

 public:
  explicit PlotWidgetCollection(QObject* parent = nullptr);
  QList<QDesignerCustomWidgetInterface*> customWidgets() const override;

 private:
  std::vector<std::unique_ptr<PlotWidgetPlugin>> plugins_;
};

}  // namespace discoplan::qt
