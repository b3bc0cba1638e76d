// SPDX-License-Identifier: MIT
#include "hosts/qt/designer/plugin.h"

#include <QDesignerFormEditorInterface>
#include <QExtensionManager>
#include <QIcon>
#include <QMetaObject>
#include <QTimer>

#include "discoplan/controls/control_class.h"
#include "hosts/qt/designer/sample_wafer.h"
#include "hosts/qt/designer/task_menu.h"
#include "hosts/qt/plot_widgets.h"

namespace discoplan::qt {
namespace {

// So small that a line is thick in the icon, and so few faces that they are told apart.
constexpr QSize kPlotForIcon(300, 212);
constexpr double kFaceForIcon = 14;
constexpr int kIconSide = 64;

/// The largest picture of a plot, from its middle.
QPixmap PictureOf(PlotWidget& plot) {
  const auto* surface = plot.findChild<QWidget*>(QStringLiteral("PLOTA"));
  if (surface == nullptr) return plot.grab();
  const QPixmap whole = plot.grab();
  const QRect place(surface->mapTo(&plot, QPoint(0, 0)), surface->size());
  return whole.copy(place);
}

}  // namespace

QString PlotWidgetPlugin::name() const {
  return QStringLiteral("discoplan::qt::%1Widget").arg(QString::fromStdString(control_));
}

QString PlotWidgetPlugin::toolTip() const {
  const std::string_view summary = FindControlClass(control_)->summary;
  return QString::fromUtf8(summary.data(), static_cast<qsizetype>(summary.size()));
}

QString PlotWidgetPlugin::domXml() const {
  const QString object = QString::fromStdString(control_).toLower();
  return QStringLiteral(R"(<ui language="c++" displayname="%1"><widget class="%2" name="%3">)"
                        R"(<property name="geometry"><rect><x>0</x><y>0</y><width>400</width>)"
                        R"(<height>300</height></rect></property></widget></ui>)")
      .arg(QString::fromStdString(control_), name(), object);
}

QIcon PlotWidgetPlugin::icon() const {
  const std::unique_ptr<PlotWidget> plot(NewPlotWidget(control_));
  plot->resize(kPlotForIcon);
  for (const char* side : {"XResolution", "YResolution"}) {
    if (plot->metaObject()->indexOfProperty(side) >= 0) plot->setProperty(side, kFaceForIcon);
  }
  PlotSample(*plot);
  return PictureOf(*plot).scaled(kIconSide, kIconSide, Qt::KeepAspectRatio,
                                 Qt::SmoothTransformation);
}

QWidget* PlotWidgetPlugin::createWidget(QWidget* parent) {
  PlotWidget* plot = NewPlotWidget(control_, parent);
  if (!in_designer_) return plot;
  // A new diameter drops the sites, and other settings wait for the next plot.
  auto* draw = new QTimer(plot);
  draw->setSingleShot(true);
  QObject::connect(draw, &QTimer::timeout, plot, [plot] { PlotSample(*plot); });
  QObject::connect(plot, &PlotWidget::PropertyChanged, draw, [draw] { draw->start(0); });
  draw->start(0);
  return plot;
}

void PlotWidgetPlugin::initialize(QDesignerFormEditorInterface* designer) {
  if (in_designer_ || designer == nullptr) return;
  in_designer_ = true;
  TaskMenuFactory::Register(*designer->extensionManager());
}

PlotWidgetCollection::PlotWidgetCollection(QObject* parent) : QObject(parent) {
  for (const ControlClass* control : ControlClasses()) {
    plugins_.push_back(std::make_unique<PlotWidgetPlugin>(std::string(control->name)));
  }
}

QList<QDesignerCustomWidgetInterface*> PlotWidgetCollection::customWidgets() const {
  QList<QDesignerCustomWidgetInterface*> widgets;
  for (const auto& plugin : plugins_) widgets.append(plugin.get());
  return widgets;
}

}  // namespace discoplan::qt
