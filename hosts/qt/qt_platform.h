// SPDX-License-Identifier: MIT
#pragma once

#include <QPointer>
#include <QWidget>

#include "discoplan/forms/form.h"
#include "discoplan/platform/platform.h"
#include "hosts/qt/export.h"
#include "hosts/qt/qt_text.h"

namespace discoplan::qt {

/// What a control asks of the program around it, answered by Qt, on the thread of the user
/// interface. Pictures are in physical pixels.
class DISCOPLAN_QT_EXPORT QtPlatform : public Platform {
 public:
  /// Boxes and dialogs stand over the window of that widget.
  explicit QtPlatform(QWidget* owner = nullptr);

  const Screen& screen() const override { return screen_; }
  const TextPainter& text() const override { return text_; }
  float LabelWidth(const Font& font, std::string_view text) const override;
  void Show(const Message& message) override;
  void ShowModal(const std::shared_ptr<Form>& form, const std::function<void()>& done) override;
  void RunPendingEvents() override;

 protected:
  /// Takes the resolution of the screen that the widget is on; true if it is another one.
  bool FollowScreen();

  QPointer<QWidget> owner_;

 private:
  Screen screen_;
  QtText text_;
};

}  // namespace discoplan::qt
