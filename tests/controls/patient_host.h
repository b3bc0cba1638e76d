// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "discoplan/forms/form.h"
#include "hosts/recording/recording_host.h"

namespace discoplan {

/// A host that can't block, as a page in a browser: forms stay open while the program goes on.
class PatientHost final : public Platform {
 public:
  const Screen& screen() const override { return screen_; }
  const TextPainter& text() const override { return text_; }
  void Show(const Message& message) override { messages.push_back(message); }
  void ShowModal(const std::shared_ptr<Form>& form, const std::function<void()>& done) override {
    form->Show();
    open.push_back({form, done});
    form->root().Watch([this, shown = form.get()](Node& node, Aspect aspect) {
      if (&node == &shown->root() && aspect == Aspect::Visible && !node.Visible()) closed = true;
    });
  }
  /// The event loop: windows that were closed are answered.
  void TurnOnce() {
    for (const auto& window : std::exchange(open, {})) {
      if (window.form->root().Visible()) {
        open.push_back(window);
      } else {
        window.done();
      }
    }
  }

  struct Window {
    std::shared_ptr<Form> form;
    std::function<void()> done;
  };
  std::vector<Window> open;
  std::vector<Message> messages;
  bool closed = false;

 private:
  Screen screen_;
  FixedText text_;
};

}  // namespace discoplan
