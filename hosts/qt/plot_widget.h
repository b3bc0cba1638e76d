// SPDX-License-Identifier: MIT
#pragma once

/// What the nine widgets of plot_widgets.h share.
///
///     auto* plot = new discoplan::qt::Plot2DWidget;
///     plot->setWaferDiameter(300);
///     if (plot->SetWaferData(x, y, thickness) == LoadResult::Loaded) plot->Plot();
///
/// Each hosts one control and shows its tree with real child widgets. The interface's properties
/// are properties of the widget under the same names, its methods are calls on `control()`. A
/// widget may be destroyed at any time, also while it plots or shows a dialog.
///
/// As any widget it belongs to the thread of the user interface: a worker that has read sites hands
/// them over by a queued signal. Threads of `Control().UseWorkers` are no exception; they only
/// share the interpolation within one call.
///
/// Positions of the mouse count from the upper left corner of the child that raises the event: in
/// physical pixels on the plot's picture of the 3D kinds, in twips (1440 to the inch, 15 to a
/// logical pixel) on the frames and on the widget itself.

#include <QImage>
#include <QVariant>
#include <QWidget>
#include <memory>
#include <span>

#include "discoplan/controls/histo.h"
#include "discoplan/controls/line_scan.h"
#include "discoplan/controls/plot2d.h"
#include "discoplan/controls/plot2dc.h"
#include "discoplan/controls/plot2dn.h"
#include "discoplan/controls/plot2ds.h"
#include "discoplan/controls/plot3d.h"
#include "discoplan/controls/plot3db.h"
#include "discoplan/controls/plot3ds.h"
#include "hosts/qt/export.h"

namespace discoplan::qt {

class FormView;
class PlotHost;

class DISCOPLAN_QT_EXPORT PlotWidget : public QWidget {
  Q_OBJECT

 public:
  ~PlotWidget() override;

  PlotControl& Control() const;

  /// Sites in mm and their values; taken over at once.
  [[nodiscard]] LoadResult SetWaferData(std::span<const float> x, std::span<const float> y,
                                        std::span<const float> values);
  PlotResult Plot();
  /// The plot as its user sees it, without its buttons, in the screen's pixels: to be saved
  /// (`plot->Image().save("map.png")`) or copied. Paper wants vectors; print on a `QtPaper`.
  QImage Image() const;
  /// Brings the child widgets up to date at once; the event loop does so by itself.
  void Sync();

  QSize sizeHint() const override { return {400, 300}; }
  QSize minimumSizeHint() const override;

 Q_SIGNALS:
  void Click();
  void DblClick();
  void MouseDown(int button, int shift, float x, float y);
  void MouseMove(int button, int shift, float x, float y);
  void MouseUp(int button, int shift, float x, float y);
  /// A property that wants to be stored has changed.
  void PropertyChanged(const QString& name);

 protected:
  explicit PlotWidget(const char* class_name, QWidget* parent);

  /// Of a property of the interface. A value that the control mends reads back as it was mended;
  /// one that doesn't fit its type changes nothing.
  QVariant Value(const char* property) const;
  void SetValue(const char* property, const QVariant& value);

  bool event(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;

 private:
  friend class PlotHost;

  void ShowCaption();

  std::shared_ptr<PlotHost> host_;
  FormView* view_ = nullptr;
};

}  // namespace discoplan::qt
