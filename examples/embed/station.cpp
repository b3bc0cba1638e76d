// SPDX-License-Identifier: MIT
#include <QApplication>
#include <QMainWindow>
#include <QSplitter>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>
#include <cmath>
#include <initializer_list>

#include "hosts/qt/plot_widgets.h"

using discoplan::LoadResult;
using discoplan::qt::HistoWidget;
using discoplan::qt::Plot2DWidget;
using discoplan::qt::PlotWidget;

/// What a gauge would deliver: a film on 13 x 13 dies, thicker at the edge.
struct Measurement {
  QList<float> x, y, thickness;

  explicit Measurement(int run) {
    for (int column = -6; column <= 6; ++column) {
      for (int row = -6; row <= 6; ++row) {
        const float radius = 22.0F * std::hypot(float(column), float(row));
        if (radius > 147) continue;
        x.append(22.0F * float(column));
        y.append(22.0F * float(row));
        thickness.append(1000 + radius * radius / 900 + 3 * std::sin(float(column * run + row)));
      }
    }
  }
};

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QMainWindow window;
  auto* plots = new QSplitter(&window);
  window.setCentralWidget(plots);
  window.resize(1000, 480);

  auto* map = new Plot2DWidget(plots);
  map->setWaferDiameter(300);
  map->setTestDiameter(294);
  map->setResolution(2);
  map->setPlotCaption("Thickness (nm)");
  auto* histogram = new HistoWidget(plots);
  histogram->setWaferDiameter(300);
  histogram->setTestDiameter(294);
  const auto measure = [&, run = 0]() mutable {
    const Measurement measured(++run);
    for (PlotWidget* plot : std::initializer_list<PlotWidget*>{map, histogram}) {
      if (plot->SetWaferData(measured.x, measured.y, measured.thickness) != LoadResult::Loaded) {
        return window.statusBar()->showMessage("These sites can't be plotted");
      }
      plot->Plot();
    }
    window.statusBar()->showMessage(QString("Mean %1 nm").arg(map->control().mean()));
  };
  window.addToolBar("Station")->addAction("Measure", &window, measure);
  window.show();
  QTimer::singleShot(0, &window, measure);
  if (argc > 1) QTimer::singleShot(500, &window, [&] { qApp->exit(!window.grab().save(argv[1])); });
  return application.exec();
}
