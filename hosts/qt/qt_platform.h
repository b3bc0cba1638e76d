// SPDX-License-Identifier: MIT
#pragma once

#include <QPointer>
#include <QWidget>

#include "discoplan/forms/form.h"
#include "discoplan/platform/platform.h"
#include "hosts/qt/qt_text.h"

namespace discoplan::qt {

/// What a control asks of the program around it, answered by Qt. Pictures are in physical pixels.
class DISCOPLAN_EXPORT QtPlatform : public Platform {
 public:
  /// Boxes and dialogs stand over the window of that widget.
  explicit QtPlatform(QWidget* owner = nullptr);

  const Screen& screen() const override { return screen_; }
  std::unique_ptr<Picture> NewPicture(float width, float height) override;
  float LabelWidth(const Font& font, std::string_view text) const override;
  void Show(const Message& message) override;
  void ShowModal(Form& form) override;
  void RunPendingEvents() override;

 protected:
  QPointer<QWidget> owner_;

 private:
  Screen screen_;
  QtText text_;
};

}  // namespace discoplan::qt
