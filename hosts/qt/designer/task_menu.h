// SPDX-License-Identifier: MIT
#pragma once

#include <QAction>
#include <QDesignerTaskMenuExtension>
#include <QExtensionFactory>

#include "hosts/qt/plot_widget.h"

namespace discoplan::qt {

/// "Plot properties..." in the context menu of a plot on a form. What is edited goes through the
/// form, so that it can be undone and is saved.
class PlotTaskMenu final : public QObject, public QDesignerTaskMenuExtension {
  Q_OBJECT
  Q_INTERFACES(QDesignerTaskMenuExtension)

 public:
  PlotTaskMenu(PlotWidget& plot, QObject* parent);

  QAction* preferredEditAction() const override { return edit_; }
  QList<QAction*> taskActions() const override { return {edit_}; }

 private:
  void Edit();

  PlotWidget& plot_;
  QAction* edit_;
};

class TaskMenuFactory final : public QExtensionFactory {
  Q_OBJECT

 public:
  /// Once for a designer, however many widgets ask for it.
  static void Register(QExtensionManager& manager);

 protected:
  QObject* createExtension(QObject* object, const QString& id, QObject* parent) const override;

 private:
  using QExtensionFactory::QExtensionFactory;
};

}  // namespace discoplan::qt
