// SPDX-License-Identifier: MIT
#pragma once

#include <QMainWindow>
#include <memory>
#include <vector>

#include "apps/view/look_menu.h"
#include "apps/view/plot_tabs.h"
#include "apps/view/wafer_list.h"
#include "apps/view/wafer_loader.h"

class QLabel;
class QPainter;
class QPrinter;
class QProgressBar;

namespace discoplan::app {

/// The window that shows what the library can do: a list of wafers, and the chosen one in all nine
/// kinds of plot.
class Workbench final : public QMainWindow {
  Q_OBJECT

 public:
  explicit Workbench(const ReadRequest& reading = {}, QWidget* parent = nullptr);
  ~Workbench() override;

  /// Reads the files in the background and shows the first wafer of each as it comes.
  void Open(const QStringList& files);
  /// "modern" or "classic"; anything else changes nothing.
  void ChooseLook(const QString& name);
  /// What is looked at, in its look: PNG, SVG or PDF by the name. Gives what went wrong, or
  /// nothing.
  QString ExportTo(const QString& file);
  /// One page with the plot that is looked at, in its look.
  void PrintOn(QPrinter& printer);

  PlotTabs& plots() const { return *plots_; }

 protected:
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  void BuildMenus();
  void BuildFileMenu();
  void BuildPlotMenu();
  void BuildLookMenu();
  void Restore();
  void AskForFiles();
  void AskForExport();
  void AskForLimits();
  void Print();
  void Preview();
  void CopyPicture();
  void ShowAbout();
  void SaveControl(const QString& file);
  void PrintControl(QPainter& painter, const QPrinter& printer);
  void PrintFigure(QPainter& painter, const QPrinter& printer);
  void TakeWafers(const QString& file, const LoadedLot& loaded);
  void TellWarnings(const QString& file, const QStringList& warnings);
  void TellFailure(const QString& file, const QString& why, const QStringList& columns);
  void ShowChosen();
  void RememberFile(const QString& file);
  void ListRecent();
  void EnableActions();

  WaferLoader loader_;
  std::size_t wafers_read_ = 0;  // since the last pause
  std::size_t files_read_ = 0;
  PlotTabs* plots_;
  WaferList* list_;
  QLabel* pointed_;
  QProgressBar* busy_;
  QMenu* recent_ = nullptr;
  QMenu* view_ = nullptr;
  LookMenu* look_ = nullptr;
  std::vector<QAction*> needs_wafer_;
  std::vector<QAction*> needs_control_;
};

}  // namespace discoplan::app
