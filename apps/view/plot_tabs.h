// SPDX-License-Identifier: MIT
#pragma once

#include <QTabWidget>
#include <memory>
#include <optional>
#include <vector>

#include "apps/view/figure_view.h"
#include "hosts/qt/plot_widget.h"

class QStackedWidget;

namespace discoplan::app {

/// One wafer in all nine kinds of plot, each a live control or a figure, by the look. Only the tab
/// that is looked at is drawn; the others follow when they are turned to.
class PlotTabs final : public QTabWidget {
  Q_OBJECT

 public:
  explicit PlotTabs(QWidget* parent = nullptr);
  ~PlotTabs() override;

  /// Nothing empties the plots.
  void Show(ShownWafer wafer);
  const Wafer* Shown() const { return wafer_.measured.get(); }
  void SetLook(const ViewLook& look);
  bool IsClassic() const { return look_.look.classic; }
  /// The control of the tab that is looked at, which has its data in the classic look only.
  qt::PlotWidget& Current() const;
  qt::PlotWidget& At(int tab) const;
  /// Its figure, which has its data in the modern look only.
  FigureView& CurrentFigure() const;
  /// Null without a wafer, and in the classic look.
  const WaferFigures* Figures() const { return figures_.get(); }

  /// Pins the scale of all plots, or lets it follow the data.
  void SetLimits(std::optional<Limits> limits);
  /// The pinned scale, or the data's own.
  Limits LimitsOrData() const;

  /// Keeps the settings of all kinds, as they were when the tabs were made.
  void SaveSettings() const;

 Q_SIGNALS:
  /// What lies under the mouse; empty for nothing.
  void Pointed(const QString& text);
  /// A wafer doesn't fit the size that a plot was given.
  void Refused(const QString& why);

 protected:
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  struct Tab {
    qt::PlotWidget* plot;
    FigureView* figure;
    QStackedWidget* pages;
    bool fitted;         ///< It has a look, from the last start or from a wafer.
    bool drawn = false;  ///< It shows the wafer.
  };

  void DrawSoon(Tab& tab);
  void Draw(Tab& tab);
  void DrawControl(Tab& tab);
  void FitControls();
  void MakeFigures();
  void DrawAll();
  void Track(qt::PlotWidget& plot);

  ShownWafer wafer_;
  ViewLook look_;
  std::shared_ptr<const WaferFigures> figures_;
  std::optional<data::WaferSize> size_;  // of the wafer before
  std::optional<Limits> limits_;
  std::vector<std::unique_ptr<Tab>> tabs_;
  bool drawing_ = false;
};

}  // namespace discoplan::app
