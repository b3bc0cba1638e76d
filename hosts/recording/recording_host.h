// SPDX-License-Identifier: MIT
#pragma once

/// A host without a screen and without fonts, for tests and for automation: pictures are rasters
/// that record, text is measured and not painted, messages are kept and answered OK. One thread
/// uses a host with its controls.
///
///     RecordingHost host;
///     RecordingContainer container;
///     Plot2D plot(host, &container);
///     EXPECT_EQ(container.TakeAnnounced(), ...);

#include <functional>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "discoplan/forms/form.h"
#include "discoplan/platform/platform.h"
#include "discoplan/raster/picture.h"
#include "hosts/recording/trace.h"

namespace discoplan {

/// Every character is 6 pixels wide and a line is 13 pixels high, whatever the font.
class FixedText final : public TextPainter {
 public:
  static constexpr int kCharacterWidth = 6;
  static constexpr int kLineHeight = 13;

  double Width(const Font& font, double pixels_per_point, std::string_view text) const override;
  double Height(const Font&, double) const override { return kLineHeight; }
  void Paint(Canvas&, const Font&, const TextPlacement&, std::string_view) const override {}
};

/// Paper that keeps nothing but its state.
class Paper : public Surface {
 public:
  /// Size in twips; the scale is in twips until it is set to pixels.
  Paper(const Screen& screen, const Screen& resolution, float width, float height);

  Kind kind() const override { return Kind::Printer; }
  void Cls() override;
  void Refresh() override;
  void Circle(const CircleCall&) override {}
  void Print(std::string_view) override {}
  void Polygon(std::span<const PixelPoint>) override {}
  void FloodFill(PixelPoint, Colour) override {}
  float TextWidth(std::string_view text) const override;
  float TextHeight(std::string_view text) const override;
  float TwipsPerPixelX() const override { return resolution_.twips_per_pixel_x; }
  float TwipsPerPixelY() const override { return resolution_.twips_per_pixel_y; }
  float ScreenTwipsPerPixelX() const override { return screen_.twips_per_pixel_x; }
  float ScreenTwipsPerPixelY() const override { return screen_.twips_per_pixel_y; }

 protected:
  void StateWritten(SurfaceState which) override;
  void DrawLine(const LineCall&) override {}

 private:
  void TakeScale();

  const Screen& screen_;
  const Screen resolution_;
};

class RecordingHost final : public Platform {
 public:
  const Screen& screen() const override { return screen_; }
  const TextPainter& text() const override { return text_; }
  std::unique_ptr<Picture> NewPicture(float width, float height) override;
  void Show(const Message& message) override { messages_.push_back(message); }
  /// Lets the user that was set act in the form, and cancels what is still open then.
  void ShowModal(const std::shared_ptr<Form>& form, const std::function<void()>& done) override;

  void SetScreen(const Screen& screen) { screen_ = screen; }
  /// Who acts in the next forms. Nobody, unless set.
  void OnModal(std::function<void(Form&)> user) { user_ = std::move(user); }
  std::vector<Message> TakeMessages() { return std::exchange(messages_, {}); }

 private:
  Screen screen_;
  FixedText text_;
  std::vector<Message> messages_;
  std::function<void(Form&)> user_;
};

/// Keeps what a control tells its container.
class RecordingContainer final : public Container {
 public:
  struct Event {
    std::string name;
    std::vector<Variant> args;
  };

  void PropertyChanged(std::string_view property) override { announced_.emplace_back(property); }
  void EventRaised(std::string_view event, std::span<const Variant> args) override {
    raised_.push_back({std::string(event), {args.begin(), args.end()}});
  }

  std::vector<std::string> TakeAnnounced() { return std::exchange(announced_, {}); }
  std::vector<Event> TakeRaised() { return std::exchange(raised_, {}); }

 private:
  std::vector<std::string> announced_;
  std::vector<Event> raised_;
};

}  // namespace discoplan
