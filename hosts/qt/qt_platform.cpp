// SPDX-License-Identifier: MIT
#include "hosts/qt/qt_platform.h"

#include <QApplication>
#include <QCoreApplication>
#include <QDialog>
#include <QFontMetricsF>
#include <QKeyEvent>
#include <QMessageBox>
#include <QPushButton>
#include <utility>

#include "discoplan/raster/picture.h"
#include "hosts/qt/form_view.h"
#include "hosts/qt/qt_paper.h"

namespace discoplan::qt {
namespace {

/// A form as a window: Return presses OK, Escape and closing press Cancel.
class FormDialog final : public QDialog {
 public:
  FormDialog(std::shared_ptr<Form> form, QWidget* parent)
      : QDialog(parent), form_(std::move(form)), view_(form_->root(), this) {
    const Node& root = form_->root();
    setWindowTitle(QString::fromStdString(root.Text()));
    setObjectName(QString::fromStdString(root.name));
    setFixedSize(qRound(root.Box().width / kTwipsPerPixel),
                 qRound(root.Box().height / kTwipsPerPixel));
    view_.resize(size());
    view_.OnAct([this](const std::function<void()>& handler) {
      handler();
      if (!form_->root().Visible()) QDialog::accept();
    });
    if (auto* ok = qobject_cast<QPushButton*>(view_.WidgetOf(form_->accept_button()))) {
      ok->setDefault(true);
    }
  }

  void reject() override {
    form_->Cancel();
    QDialog::reject();
  }

 private:
  const std::shared_ptr<Form> form_;
  FormView view_;
};

}  // namespace

QtPlatform::QtPlatform(QWidget* owner) : owner_(owner) { FollowScreen(); }

bool QtPlatform::FollowScreen() {
  const qreal ratio = owner_ ? owner_->devicePixelRatioF() : qApp->devicePixelRatio();
  const float twips = kTwipsPerPixel / static_cast<float>(ratio);
  if (std::exchange(screen_, Screen{twips, twips}).twips_per_pixel_x == twips) return false;
  return true;
}

float QtPlatform::LabelWidth(const Font& font, std::string_view text) const {
  const QFontMetricsF metrics(FormFont(font));
  const double pixels = metrics.horizontalAdvance(ToQString(text, font)) + 2;
  return static_cast<float>(pixels) * kTwipsPerPixel;
}

void QtPlatform::Show(const Message& message) {
  QMessageBox box(message.critical ? QMessageBox::Critical : QMessageBox::NoIcon,
                  QString::fromStdString(message.title), QString::fromStdString(message.text),
                  QMessageBox::Ok, owner_);
  box.setWindowModality(message.system_modal ? Qt::ApplicationModal : Qt::WindowModal);
  box.exec();
}

void QtPlatform::ShowModal(const std::shared_ptr<Form>& form, const std::function<void()>& done) {
  form->Show();
  QPointer<FormDialog> dialog = new FormDialog(form, owner_);
  dialog->exec();
  if (form->root().Visible()) form->Cancel();
  delete dialog.data();
  if (done) done();
}

void QtPlatform::RunPendingEvents() {
  QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

}  // namespace discoplan::qt
