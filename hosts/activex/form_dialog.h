// SPDX-License-Identifier: MIT
#pragma once

/// A form as a modal window of another one's: Return presses OK, Escape and closing press Cancel.

#include "discoplan/forms/form.h"
#include "hosts/activex/form_window.h"

namespace discoplan::activex {

class FormDialog final : private FormWindow::Owner {
 public:
  /// All outlive the dialog.
  FormDialog(Form& form, const Screen& screen, const TextPainter& text);
  FormDialog(const FormDialog&) = delete;
  FormDialog& operator=(const FormDialog&) = delete;
  ~FormDialog();

  /// Returns once the form has hidden itself, or the window is gone. The owner, which may be none,
  /// takes no input meanwhile. False where there can be no window.
  bool Run(HWND owner);

  static void Unregister();

 private:
  const Screen& screen() const override { return screen_; }
  const TextPainter& text() const override { return text_; }
  void Noted() override;

  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM w, LPARAM l);
  LRESULT Handle(UINT message, WPARAM w, LPARAM l);
  bool Create(HWND owner);
  void Loop();

  Form& form_;
  const Screen& screen_;
  const TextPainter& text_;
  HWND window_ = nullptr;
  std::shared_ptr<FormWindow> view_;
};

}  // namespace discoplan::activex
