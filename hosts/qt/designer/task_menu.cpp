// SPDX-License-Identifier: MIT
#include "hosts/qt/designer/task_menu.h"

#include <QDesignerFormWindowCursorInterface>
#include <QDesignerFormWindowInterface>
#include <QExtensionManager>
#include <QMetaProperty>
#include <memory>

#include "hosts/qt/plot_widgets.h"
#include "hosts/qt/property_dialog.h"

namespace discoplan::qt {
namespace {

/// Calls `visit` with each property of the interface that both have.
template <class Visit>
void ForEachProperty(const PlotWidget& plot, Visit&& visit) {
  const QMetaObject& meta = *plot.metaObject();
  for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i) visit(meta.property(i));
}

}  // namespace

PlotTaskMenu::PlotTaskMenu(PlotWidget& plot, QObject* parent)
    : QObject(parent), plot_(plot), edit_(new QAction(tr("Plot properties..."), this)) {
  connect(edit_, &QAction::triggered, this, &PlotTaskMenu::Edit);
}

/// The pages edit a twin of the plot; the form then hears what is different about it.
void PlotTaskMenu::Edit() {
  auto* form = QDesignerFormWindowInterface::findFormWindow(&plot_);
  if (form == nullptr) return;
  const std::unique_ptr<PlotWidget> twin(NewPlotWidget(plot_.Control().root().name));
  ForEachProperty(plot_, [&](const QMetaProperty& property) {
    property.write(twin.get(), property.read(&plot_));
  });
  PropertyDialog pages(*twin);
  if (pages.exec() != QDialog::Accepted) return;
  ForEachProperty(plot_, [&](const QMetaProperty& property) {
    const QVariant edited = property.read(twin.get());
    if (edited == property.read(&plot_)) return;
    form->cursor()->setWidgetProperty(&plot_, QString::fromLatin1(property.name()), edited);
  });
}

void TaskMenuFactory::Register(QExtensionManager& manager) {
  static const QString kId = QLatin1String(qobject_interface_iid<QDesignerTaskMenuExtension*>());
  const QString mark = QStringLiteral("discoplan-task-menu");
  if (manager.findChild<TaskMenuFactory*>(mark) != nullptr) return;
  auto* factory = new TaskMenuFactory(&manager);
  factory->setObjectName(mark);
  manager.registerExtensions(factory, kId);
}

QObject* TaskMenuFactory::createExtension(QObject* object, const QString& id,
                                          QObject* parent) const {
  auto* plot = qobject_cast<PlotWidget*>(object);
  if (plot == nullptr || id != QLatin1String(qobject_interface_iid<QDesignerTaskMenuExtension*>()))
    return nullptr;
  return new PlotTaskMenu(*plot, parent);
}

}  // namespace discoplan::qt
