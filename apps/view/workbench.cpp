// SPDX-License-Identifier: MIT
#include "apps/view/workbench.h"

#include <QApplication>
#include <QBuffer>
#include <QClipboard>
#include <QCloseEvent>
#include <QDockWidget>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QPainter>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QProgressBar>
#include <QPushButton>
#include <QSettings>
#include <QStatusBar>
#include <QToolBar>
#include <algorithm>

#include "apps/discoplan/output.h"
#include "apps/discoplan/report_page.h"
#include "apps/discoplan/vector_file.h"
#include "apps/view/column_dialog.h"
#include "discoplan/dialogs/about_box.h"
#include "hosts/headless/classic_page.h"
#include "hosts/headless/whole_file.h"
#include "hosts/qt/form_view.h"
#include "hosts/qt/property_dialog.h"
#include "hosts/qt/qt_figure.h"
#include "hosts/qt/qt_paper.h"
#include "hosts/qt/qt_platform.h"

namespace discoplan::app {
namespace {

constexpr int kMostRecent = 10;
constexpr int kListWidth = 160;
constexpr QSize kFirstSize(1020, 680);

QStringList FilesOf(const QMimeData& data) {
  QStringList files;
  for (const QUrl& url : data.urls()) {
    if (url.isLocalFile()) files.append(url.toLocalFile());
  }
  return files;
}

}  // namespace

Workbench::Workbench(const ReadRequest& reading, QWidget* parent)
    : QMainWindow(parent),
      loader_(reading),
      plots_(new PlotTabs(this)),
      list_(new WaferList(this)),
      pointed_(new QLabel(this)),
      busy_(new QProgressBar(this)) {
  setObjectName(QStringLiteral("Workbench"));
  setCentralWidget(plots_);
  setAcceptDrops(true);
  auto* dock = new QDockWidget(tr("Wafers"), this);
  dock->setObjectName(QStringLiteral("wafers"));
  dock->setWidget(list_);
  addDockWidget(Qt::LeftDockWidgetArea, dock);
  resizeDocks({dock}, {kListWidth}, Qt::Horizontal);
  busy_->setRange(0, 0);
  busy_->setMaximumWidth(160);
  busy_->hide();
  statusBar()->addPermanentWidget(pointed_);
  statusBar()->addPermanentWidget(busy_);
  BuildMenus();
  view_->addAction(dock->toggleViewAction());
  connect(list_, &WaferList::ChosenChanged, this, &Workbench::ShowChosen);
  connect(plots_, &PlotTabs::Pointed, pointed_, &QLabel::setText);
  connect(plots_, &PlotTabs::Refused, this,
          [this](const QString& why) { statusBar()->showMessage(why); });
  connect(&loader_, &WaferLoader::Began, this, [this](const QString& file) {
    if (busy_->isHidden()) wafers_read_ = files_read_ = 0;
    busy_->show();
    statusBar()->showMessage(tr("Reading %1").arg(file));
  });
  connect(&loader_, &WaferLoader::Loaded, this, &Workbench::TakeWafers);
  connect(&loader_, &WaferLoader::Failed, this, &Workbench::TellFailure);
  connect(&loader_, &WaferLoader::Finished, busy_, &QProgressBar::hide);
  Restore();
  ShowChosen();
}

Workbench::~Workbench() = default;

void Workbench::BuildMenus() {
  BuildFileMenu();
  BuildPlotMenu();
  BuildLookMenu();
  view_ = menuBar()->addMenu(tr("&View"));
  QMenu* help = menuBar()->addMenu(tr("&Help"));
  help->addAction(tr("&About..."), this, &Workbench::ShowAbout);
}

void Workbench::BuildFileMenu() {
  QMenu* file = menuBar()->addMenu(tr("&File"));
  QToolBar* bar = addToolBar(tr("Tools"));
  bar->setObjectName(QStringLiteral("tools"));
  QAction* open =
      file->addAction(tr("&Open..."), QKeySequence::Open, this, &Workbench::AskForFiles);
  recent_ = file->addMenu(tr("Open &recent"));
  needs_wafer_.push_back(file->addAction(tr("&Close wafer"), QKeySequence::Close, this,
                                         [this] { list_->RemoveChosen(); }));
  file->addSeparator();
  QAction* save =
      file->addAction(tr("&Export..."), QKeySequence::SaveAs, this, &Workbench::AskForExport);
  QAction* copy =
      file->addAction(tr("&Copy picture"), QKeySequence::Copy, this, &Workbench::CopyPicture);
  file->addSeparator();
  QAction* preview = file->addAction(tr("Print pre&view..."), this, &Workbench::Preview);
  QAction* print = file->addAction(tr("&Print..."), QKeySequence::Print, this, &Workbench::Print);
  file->addSeparator();
  file->addAction(tr("&Quit"), QKeySequence::Quit, this, &QWidget::close);
  needs_wafer_.insert(needs_wafer_.end(), {save, copy, preview, print});
  bar->addActions({open, save, copy, print});
}

void Workbench::BuildPlotMenu() {
  QMenu* plot = menuBar()->addMenu(tr("&Plot"));
  QAction* options = plot->addAction(tr("&Options..."), QKeySequence(Qt::CTRL | Qt::Key_T), this,
                                     [this] { plots_->Current().Control().ShowPlotOption(); });
  QAction* properties = plot->addAction(tr("Plot p&roperties..."), this, [this] {
    auto* pages = new qt::PropertyDialog(plots_->Current());
    pages->setAttribute(Qt::WA_DeleteOnClose);
    pages->open();
  });
  QAction* limits = plot->addAction(tr("&Limits..."), QKeySequence(Qt::CTRL | Qt::Key_L), this,
                                    &Workbench::AskForLimits);
  needs_wafer_.push_back(limits);
  needs_control_ = {options, properties};
  findChild<QToolBar*>(QStringLiteral("tools"))->addActions({options, properties, limits});
}

void Workbench::BuildLookMenu() {
  look_ = new LookMenu(this);
  menuBar()->addMenu(look_);
  auto* bar = findChild<QToolBar*>(QStringLiteral("tools"));
  bar->addSeparator();
  bar->addActions(look_->Looks());
  connect(look_, &LookMenu::Changed, this, [this] {
    plots_->SetLook(look_->Look());
    EnableActions();
  });
}

void Workbench::ChooseLook(const QString& name) {
  for (QAction* look : look_->Looks()) {
    if (look->data() == name) look->trigger();
  }
}

void Workbench::Restore() {
  const QSettings kept;
  look_->Restore(kept);
  plots_->SetLook(look_->Look());
  if (!restoreGeometry(kept.value(QStringLiteral("geometry")).toByteArray())) resize(kFirstSize);
  restoreState(kept.value(QStringLiteral("windows")).toByteArray());
  plots_->setCurrentIndex(kept.value(QStringLiteral("tab")).toInt());
  ListRecent();
}

void Workbench::closeEvent(QCloseEvent* event) {
  QSettings kept;
  kept.setValue(QStringLiteral("geometry"), saveGeometry());
  kept.setValue(QStringLiteral("windows"), saveState());
  kept.setValue(QStringLiteral("tab"), plots_->currentIndex());
  look_->Save(kept);
  plots_->SaveSettings();
  QMainWindow::closeEvent(event);
}

void Workbench::Open(const QStringList& files) {
  if (!files.isEmpty()) loader_.Load(files);
}

void Workbench::TakeWafers(const QString& file, const LoadedLot& loaded) {
  list_->Add(file, loaded);
  RememberFile(file);
  const std::size_t parameter = loaded.wafers.front()->parameter;
  wafers_read_ += static_cast<std::size_t>(
      std::ranges::count_if(loaded.wafers, [parameter](const std::shared_ptr<const Wafer>& wafer) {
        return wafer->parameter == parameter;
      }));
  ++files_read_;
  QString read = tr("%1 read").arg(QString::fromStdString(Counted(wafers_read_, "wafer")));
  if (files_read_ > 1) {
    read += tr(" from %1").arg(QString::fromStdString(Counted(files_read_, "file")));
  }
  const QString& skipped = loaded.skipped;
  statusBar()->showMessage(skipped.isEmpty() ? read : read + QStringLiteral("; ") + skipped);
  TellWarnings(file, loaded.warnings);
}

void Workbench::TellWarnings(const QString& file, const QStringList& warnings) {
  if (warnings.isEmpty()) return;
  auto* box =
      new QMessageBox(QMessageBox::Warning, tr("Looks wrong"),
                      file + QStringLiteral(":\n\n") + warnings.join(QStringLiteral("\n\n")),
                      QMessageBox::Ok, this);
  box->setObjectName(QStringLiteral("Warnings"));
  box->setAttribute(Qt::WA_DeleteOnClose);
  box->open();
}

void Workbench::TellFailure(const QString& file, const QString& why, const QStringList& columns) {
  statusBar()->showMessage(tr("%1 can't be read").arg(file));
  auto* box = new QMessageBox(QMessageBox::Warning, tr("Can't open"), why, QMessageBox::Ok, this);
  box->setAttribute(Qt::WA_DeleteOnClose);
  if (!columns.isEmpty()) {
    const QPushButton* choose = box->addButton(tr("Choose &columns..."), QMessageBox::ActionRole);
    connect(choose, &QPushButton::clicked, this, [this, file, columns] {
      auto* dialog = new ColumnDialog(columns, this);
      dialog->setAttribute(Qt::WA_DeleteOnClose);
      connect(dialog, &QDialog::accepted, this,
              [this, file, dialog] { loader_.Load({file}, dialog->Columns()); });
      dialog->open();
    });
  }
  box->open();
}

void Workbench::ShowChosen() {
  const ShownWafer chosen = list_->Chosen();
  setWindowTitle(chosen.measured ? list_->ChosenName() : tr("No wafer"));
  setWindowFilePath(chosen.file);
  EnableActions();
  plots_->Show(chosen);
}

void Workbench::EnableActions() {
  const bool has_wafer = list_->Chosen().measured != nullptr;
  for (QAction* action : needs_wafer_) action->setEnabled(has_wafer);
  for (QAction* action : needs_control_) {
    action->setEnabled(plots_->IsClassic());
    action->setToolTip(plots_->IsClassic() ? QString() : tr("Of the classic look"));
  }
}

void Workbench::RememberFile(const QString& file) {
  QSettings kept;
  const QString path = QFileInfo(file).absoluteFilePath();
  QStringList recent = kept.value(QStringLiteral("recent")).toStringList();
  recent.removeAll(path);
  recent.prepend(path);
  kept.setValue(QStringLiteral("recent"), recent.mid(0, kMostRecent));
  ListRecent();
}

void Workbench::ListRecent() {
  recent_->clear();
  const QStringList recent = QSettings().value(QStringLiteral("recent")).toStringList();
  for (const QString& file : recent) {
    recent_->addAction(file, this, [this, file] { Open({file}); });
  }
  recent_->setEnabled(!recent.isEmpty());
}

void Workbench::AskForFiles() {
  Open(QFileDialog::getOpenFileNames(this, tr("Open measured wafers")));
}

void Workbench::AskForExport() {
  const QString file = QFileDialog::getSaveFileName(
      this, tr("Export the plot"), windowTitle() + QStringLiteral(".png"),
      tr("Picture (*.png);;Vectors (*.svg);;Page (*.pdf)"));
  if (file.isEmpty()) return;
  const QString fault = ExportTo(file);
  if (fault.isEmpty()) return statusBar()->showMessage(tr("%1 written").arg(file));
  QMessageBox::warning(this, tr("Can't export"), fault);
}

QString Workbench::ExportTo(const QString& file) {
  try {
    if (plots_->Figures() == nullptr) {
      SaveControl(file);
    } else {
      WriteWholeFile(file.toStdString(), plots_->CurrentFigure().Encode(file.toStdString()));
    }
    return {};
  } catch (const std::exception& error) {
    return QString::fromUtf8(error.what());
  }
}

void Workbench::SaveControl(const QString& file) {
  qt::PlotWidget& plot = plots_->Current();
  if (FormatOf(file.toStdString()) != FileFormat::Png) {
    const PageSize page = {static_cast<float>(plot.width()) * kTwipsPerPixel,
                           static_cast<float>(plot.height()) * kTwipsPerPixel};
    VectorFile vectors(file.toStdString(), page, windowTitle().toStdString());
    PrintWithLegend(plot.Control(), vectors.paper(), {0, 0, page.width, page.height});
    return vectors.Save();
  }
  QByteArray bytes;
  QBuffer buffer(&bytes);
  plot.Image().save(&buffer, "PNG");
  const auto* raw = reinterpret_cast<const std::uint8_t*>(bytes.constData());
  WriteWholeFile(file.toStdString(), {raw, static_cast<std::size_t>(bytes.size())});
}

void Workbench::CopyPicture() {
  QApplication::clipboard()->setImage(plots_->Figures() != nullptr ? plots_->CurrentFigure().Image()
                                                                   : plots_->Current().Image());
}

void Workbench::PrintOn(QPrinter& printer) {
  printer.setFullPage(true);
  QPainter painter;
  if (!painter.begin(&printer)) {
    statusBar()->showMessage(tr("The printer can't be reached"));
    return;
  }
  plots_->Figures() != nullptr ? PrintFigure(painter, printer) : PrintControl(painter, printer);
}

void Workbench::PrintControl(QPainter& painter, const QPrinter& printer) {
  qt::PlotWidget& plot = plots_->Current();
  const Screen screen{kTwipsPerPixel, kTwipsPerPixel};
  const auto paper = std::make_shared<qt::QtPaper>(painter, screen);
  const QRectF page = printer.paperRect(QPrinter::Inch);
  const PageSize size = {static_cast<float>(page.width() * kTwipsPerInch),
                         static_cast<float>(page.height() * kTwipsPerInch)};
  const std::string title = plot.Control().PlotCaption();
  PrintReportPage(paper, size, {title, windowFilePath().toStdString(), {}}, {&plot.Control()});
  paper->Finish();
}

void Workbench::PrintFigure(QPainter& painter, const QPrinter& printer) {
  const QRectF page = printer.paperRect(QPrinter::Point);
  figures::Style style = plots_->Figures()->StyleFor(page.width(), page.height());
  style.dark = false;  // paper is white
  const qt::QtFigureText text(style.font);
  qt::PaintFigure(painter, plots_->Figures()->MakePage(plots_->CurrentFigure().Kind(), style, text),
                  printer.paperRect(QPrinter::DevicePixel));
}

void Workbench::Print() {
  QPrinter printer(QPrinter::HighResolution);
  QPrintDialog dialog(&printer, this);
  if (dialog.exec() == QDialog::Accepted) PrintOn(printer);
}

void Workbench::Preview() {
  QPrinter printer(QPrinter::HighResolution);
  QPrintPreviewDialog dialog(&printer, this);
  connect(&dialog, &QPrintPreviewDialog::paintRequested, this,
          [this](QPrinter* on) { PrintOn(*on); });
  dialog.exec();
}

void Workbench::AskForLimits() {
  LimitsDialog dialog(plots_->LimitsOrData(), this);
  if (dialog.exec() == QDialog::Accepted) plots_->SetLimits(dialog.Result());
}

void Workbench::ShowAbout() {
  // As the about box counts the kinds.
  constexpr std::array<std::int16_t, 9> kNumbers = {1, 3, 5, 8, 2, 4, 9, 7, 6};
  qt::QtPlatform platform(this);
  const auto about = std::make_shared<frmAbout>(platform);
  about->SetTitle(kNumbers.at(static_cast<std::size_t>(plots_->currentIndex())));
  platform.ShowModal(about, {});
}

void Workbench::dragEnterEvent(QDragEnterEvent* event) {
  if (!FilesOf(*event->mimeData()).isEmpty()) event->acceptProposedAction();
}

void Workbench::dropEvent(QDropEvent* event) {
  Open(FilesOf(*event->mimeData()));
  event->acceptProposedAction();
}

}  // namespace discoplan::app
