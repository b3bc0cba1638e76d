// SPDX-License-Identifier: MIT
#pragma once

/// What a control asks of the program around it. A host fills in `Platform` once, and a `Container`
/// for each control that it wants to hear from.
///
///     class Station final : public Platform {
///      public:
///       const Screen& screen() const override { return screen_; }
///       const TextPainter& text() const override { return fonts_; }
///       void Show(const Message& message) override { Log(message.text); }
///       ...
///     };
///
/// All texts are UTF-8, and so are file names, on every system. A platform is called by the threads
/// that use its controls; one for each thread needs no locks. It outlives its controls, forms and
/// pictures, which refer to its screen and its text painter.

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "discoplan/base/variant.h"
#include "discoplan/export.h"
#include "discoplan/platform/screen.h"

namespace discoplan {

class Form;
class Picture;
class TextPainter;
struct Font;

/// A modal box with an OK button.
struct Message {
  std::string text;
  std::string title;
  bool critical = false;
  bool system_modal = false;
};

class DISCOPLAN_EXPORT Platform {
 public:
  virtual ~Platform() = default;

  /// Its resolution may change; the controls then want `PlotControl::ScreenChanged`.
  virtual const Screen& screen() const = 0;
  /// Writes on pictures.
  virtual const TextPainter& text() const = 0;
  /// An empty picture surface of that size in twips, with a scale in pixels; a raster in front of
  /// the screen, unless the platform has a better one.
  virtual std::unique_ptr<Picture> NewPicture(float width, float height);
  /// Width in twips of a text on a label; as `text` measures it, unless labels are written
  /// otherwise.
  virtual float LabelWidth(const Font& font, std::string_view text) const;
  /// Shows the box. Nothing waits for its answer, so it need not block.
  virtual void Show(const Message& message) = 0;
  /// Shows the form, and calls `done` once it has hidden itself. A platform that can't block
  /// returns at once and keeps both until then; one that can may call `done` before it returns. The
  /// user's closing of the window is `Form::Cancel`. A platform without users cancels the form.
  virtual void ShowModal(const std::shared_ptr<Form>& form, const std::function<void()>& done);
  /// Lets the user interface catch up.
  virtual void RunPendingEvents() {}
  /// What a new control prints on; may be nothing.
  virtual ObjectRef DefaultPrinter() { return {}; }
};

class DISCOPLAN_EXPORT Container {
 public:
  virtual ~Container() = default;

  /// The property has changed and wants to be stored.
  virtual void PropertyChanged(std::string_view) {}
  virtual void EventRaised(std::string_view, std::span<const Variant>) {}
  /// The control asks for a size in twips. Calls `take` with the size that it gives, or not at all.
  virtual void ResizeRequested(float width, float height,
                               const std::function<void(float, float)>& take) {
    take(width, height);
  }
  /// The form around the control is to count in twips.
  virtual void UseTwips() {}
  virtual void Repaint() {}
  /// 11 is the hourglass, 0 the default.
  virtual void PointerChanged(std::int16_t) {}
  virtual std::int32_t DeviceHandle() const { return 0; }
  virtual std::int32_t WindowHandle() const { return 0; }
};

}  // namespace discoplan
