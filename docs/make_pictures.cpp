// SPDX-License-Identifier: MIT
// Takes the pictures of widgets and dialogs: make_pictures DATA FOLDER

#include <QApplication>
#include <QDialog>
#include <QGridLayout>
#include <QTabWidget>
#include <QTimer>

#include "apps/discoplan/plot_request.h"
#include "hosts/headless/classic_look.h"
#include "hosts/qt/plot_widgets.h"
#include "hosts/qt/property_dialog.h"

namespace {

using namespace discoplan;

data::Wafer Read(const char* file) {
  data::ReadRequest request;
  request.path = file;
  request.wafers = {"7"};
  return data::Read(request).wafers.front();
}

void Show(qt::PlotWidget& plot, const data::Wafer& measured) {
  app::FitSize(plot.Control(), measured);
  FitLook(plot.Control(), measured.value);
  if (plot.SetWaferData(measured.x, measured.y, measured.value) == LoadResult::Loaded) plot.Plot();
}

void SaveNine(const data::Wafer& measured, const QString& file) {
  QWidget sheet;
  auto* grid = new QGridLayout(&sheet);
  int number = 0;
  for (const ControlClass* kind : ControlClasses()) {
    qt::PlotWidget* plot = qt::NewPlotWidget(kind->name, &sheet);
    plot->setMinimumSize(440, 310);
    grid->addWidget(plot, number / 3, number % 3);
    ++number;
  }
  sheet.show();
  QApplication::processEvents();
  for (auto* plot : sheet.findChildren<qt::PlotWidget*>()) Show(*plot, measured);
  QApplication::processEvents();
  sheet.grab().save(file);
}

/// The dialog stands in a loop of its own until it is closed.
void SaveOptions(qt::PlotWidget& plot, const QString& file) {
  QTimer::singleShot(200, &plot, [file] {
    auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    dialog->grab().save(file);
    dialog->reject();
  });
  plot.Control().ShowPlotOption();
}

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  const data::Wafer measured = Read(argv[1]);
  const QString folder = QString::fromLocal8Bit(argv[2]) + QLatin1Char('/');
  SaveNine(measured, folder + "widgets.png");
  qt::Plot3DWidget surface;
  surface.show();
  Show(surface, measured);
  SaveOptions(surface, folder + "dialog_surface.png");
  qt::LineScanWidget scan;
  scan.show();
  Show(scan, measured);
  SaveOptions(scan, folder + "dialog_line_scan.png");
  qt::PropertyDialog pages(surface);
  pages.show();
  pages.findChild<QTabWidget*>()->setCurrentIndex(1);
  QApplication::processEvents();
  pages.grab().save(folder + "property_pages.png");
}
