// SPDX-License-Identifier: MIT
#pragma once

/// The nine plots as widgets.
///
///     auto* plot = new discoplan::qt::Plot2DWidget;
///     plot->control().WaferDiameter(300);
///     plot->SetWaferData(x, y, thickness);
///     plot->Plot();
///
/// Each hosts one control and shows its tree with real child widgets. The interface's members are
/// C++ calls on `control()` and properties of the widget under the same names. A widget may be
/// destroyed at any time, also while it plots or shows a dialog.

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

namespace discoplan::qt {

class FormView;
class PlotHost;

class DISCOPLAN_EXPORT PlotWidget : public QWidget {
  Q_OBJECT

 public:
  ~PlotWidget() override;

  PlotControl& Control() const;

  /// Sites in mm and their values; taken over at once.
  LoadResult SetWaferData(std::span<const float> x, std::span<const float> y,
                          std::span<const float> values);
  PlotResult Plot();
  /// Brings the child widgets up to date; calls on the control that announce nothing need it.
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

  bool event(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;

 private:
  friend class PlotHost;

  void PublishProperties();
  void TakeProperty(const QByteArray& name);

  std::shared_ptr<PlotHost> host_;
  FormView* view_ = nullptr;
  bool publishing_ = false;
};

class DISCOPLAN_EXPORT Plot2DWidget final : public PlotWidget {
  Q_OBJECT

 public:
  explicit Plot2DWidget(QWidget* parent = nullptr) : PlotWidget("Plot2D", parent) {}
  Plot2D& control() const { return static_cast<Plot2D&>(Control()); }
};

class DISCOPLAN_EXPORT Plot2DSWidget final : public PlotWidget {
  Q_OBJECT

 public:
  explicit Plot2DSWidget(QWidget* parent = nullptr) : PlotWidget("Plot2DS", parent) {}
  Plot2DS& control() const { return static_cast<Plot2DS&>(Control()); }
};

class DISCOPLAN_EXPORT Plot2DCWidget final : public PlotWidget {
  Q_OBJECT

 public:
  explicit Plot2DCWidget(QWidget* parent = nullptr) : PlotWidget("Plot2DC", parent) {}
  Plot2DC& control() const { return static_cast<Plot2DC&>(Control()); }
};

class DISCOPLAN_EXPORT Plot2DNWidget final : public PlotWidget {
  Q_OBJECT

 public:
  explicit Plot2DNWidget(QWidget* parent = nullptr) : PlotWidget("Plot2DN", parent) {}
  Plot2DN& control() const { return static_cast<Plot2DN&>(Control()); }
};

class DISCOPLAN_EXPORT Plot3DWidget final : public PlotWidget {
  Q_OBJECT

 public:
  explicit Plot3DWidget(QWidget* parent = nullptr) : PlotWidget("Plot3D", parent) {}
  Plot3D& control() const { return static_cast<Plot3D&>(Control()); }
};

class DISCOPLAN_EXPORT Plot3DSWidget final : public PlotWidget {
  Q_OBJECT

 public:
  explicit Plot3DSWidget(QWidget* parent = nullptr) : PlotWidget("Plot3DS", parent) {}
  Plot3DS& control() const { return static_cast<Plot3DS&>(Control()); }
};

class DISCOPLAN_EXPORT Plot3DBWidget final : public PlotWidget {
  Q_OBJECT

 public:
  explicit Plot3DBWidget(QWidget* parent = nullptr) : PlotWidget("Plot3DB", parent) {}
  Plot3DB& control() const { return static_cast<Plot3DB&>(Control()); }
};

class DISCOPLAN_EXPORT HistoWidget final : public PlotWidget {
  Q_OBJECT

 public:
  explicit HistoWidget(QWidget* parent = nullptr) : PlotWidget("Histo", parent) {}
  Histo& control() const { return static_cast<Histo&>(Control()); }
};

class DISCOPLAN_EXPORT LineScanWidget final : public PlotWidget {
  Q_OBJECT

 public:
  explicit LineScanWidget(QWidget* parent = nullptr) : PlotWidget("LineScan", parent) {}
  LineScan& control() const { return static_cast<LineScan&>(Control()); }
};

}  // namespace discoplan::qt
