// SPDX-License-Identifier: MIT
#include "hosts/qt/qt_platform.h"

#include <QApplication>
#include <QCoreApplication>
#include <QDialog>
#include <QFontMetricsF>
#include <QKeyEvent>
#include <QMessageBox>
#include <QPushButton>

#include "discoplan/raster/picture.h"
#include "hosts/qt/form_view.h"
#include "hosts/qt/qt_paper.h"

namespace discoplan::qt {
namespace {

/// A form as a window: Return presses OK, Escape and closing press Cancel.
class FormDialog final : public QDialog {
 public:
  FormDialog(Form& form, QWidget* parent) : QDialog(parent), form_(form), view_(form.root(), this) {
    setWindowTitle(QString::fromStdString(form.root().text));
    setObjectName(QString::fromStdString(form.root().name));
    setFixedSize(qRound(form.root().box.width / kTwipsPerPixel),
                 qRound(form.root().box.height / kTwipsPerPixel));
    view_.resize(size());
    view_.OnAct([this](const std::function<void()>& handler) {
      handler();
      if (!form_.root().visible) QDialog::accept();
    });
    if (auto* ok = qobject_cast<QPushButton*>(view_.WidgetOf(form.accept_button()))) {
      ok->setDefault(true);
    }
  }

  void reject() override {
    form_.Cancel();
    QDialog::reject();
  }

 private:
  Form& form_;
  FormView view_;
};

}  // namespace

QtPlatform::QtPlatform(QWidget* owner) : owner_(owner) {
  const qreal ratio = owner != nullptr ? owner->devicePixelRatioF() : qApp->devicePixelRatio();
  const float twips = kTwipsPerPixel / static_cast<float>(ratio);
  screen_ = {twips, twips};
}

std::unique_ptr<Picture> QtPlatform::NewPicture(float width, float height) {
  return std::make_unique<Picture>(
      Picture::Setting{.screen = screen_, .resolution = screen_, .text = text_}, width, height);
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

void QtPlatform::ShowModal(Form& form) {
  form.Show();
  QPointer<FormDialog> dialog = new FormDialog(form, owner_);
  dialog->exec();
  if (form.root().visible) form.Cancel();
  delete dialog.data();
}

void QtPlatform::RunPendingEvents() {
  QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

}  // namespace discoplan::qt
