// SPDX-License-Identifier: MIT
#pragma once

/// What controls and pages ask of Windows.

#include <functional>
#include <vector>

#include "discoplan/forms/form.h"
#include "hosts/activex/gdi_text.h"

namespace discoplan::activex {

class ComPlatform final : public Platform {
 public:
  /// Who knows the window over which boxes and forms are shown, and who else takes no input
  /// meanwhile.
  struct Owner {
    std::function<HWND()> window;
    std::function<void(bool)> enable;
  };
  explicit ComPlatform(Owner owner);

  const Screen& screen() const override { return screen_; }
  const TextPainter& text() const override { return text_; }
  void Show(const Message& message) override;
  /// Runs a message loop of its own until the form hides itself.
  void ShowModal(const std::shared_ptr<Form>& form, const std::function<void()>& done) override;
  void RunPendingEvents() override;

  /// Takes the resolution of the screen that the window is on; true for another one.
  bool FollowScreen(HWND window);
  /// The user won't answer any more.
  void CancelForms();

 private:
  const Owner owner_;
  Screen screen_;
  GdiText text_;
  std::vector<Form*> open_;
};

}  // namespace discoplan::activex
