// SPDX-License-Identifier: MIT
#pragma once

#include "discoplan/platform/platform.h"
#include "hosts/activex/gdi_text.h"

namespace discoplan::activex {

/// What the library makes of a control by itself, with the fonts of here.
class Alone : public Platform {
 public:
  const Screen& screen() const override { return screen_; }
  const TextPainter& text() const override { return text_; }
  void Show(const Message&) override {}

 private:
  Screen screen_;
  GdiText text_;
};

}  // namespace discoplan::activex
