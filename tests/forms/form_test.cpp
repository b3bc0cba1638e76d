// SPDX-License-Identifier: MIT
#include "discoplan/forms/form.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "hosts/recording/recording_host.h"

namespace discoplan {
namespace {

/// A form that counts what closes it.
class Question final : public Form {
 public:
  explicit Question(Platform& platform) : Form(platform, "Question", "Sure?") {
    accept_ = &root_.Add(NodeKind::Button, "yes", {0, 0, 600, 300});
    accept_->on_click = [this] {
      ++accepted;
      Hide();
    };
    cancel_ = &root_.Add(NodeKind::Button, "no", {600, 0, 600, 300});
    cancel_->on_click = [this] {
      ++cancelled;
      Hide();
    };
    picture = &AddPicture(root_, "map", {0, 300, 1200, 900});
  }

  int accepted = 0;
  int cancelled = 0;
  Node* picture;
};

/// A form with no button at all.
class Notice final : public Form {
 public:
  explicit Notice(Platform& platform) : Form(platform, "Notice", "Look") {}
};

/// Knows only what every platform must.
class PlainPlatform final : public Platform {
 public:
  const Screen& screen() const override { return host_.screen(); }
  std::unique_ptr<Picture> NewPicture(float width, float height) override {
    return host_.NewPicture(width, height);
  }
  float LabelWidth(const Font& font, std::string_view text) const override {
    return host_.LabelWidth(font, text);
  }
  void Show(const Message&) override {}

 private:
  RecordingHost host_;
};

TEST(Forms, AreHiddenUntilTheyAreShown) {
  RecordingHost host;
  Question form(host);
  EXPECT_EQ(form.root().kind, NodeKind::Form);
  EXPECT_EQ(form.root().name, "Question");
  EXPECT_EQ(form.root().text, "Sure?");
  EXPECT_FALSE(form.root().visible);
  form.Show();
  EXPECT_TRUE(form.root().visible);
  form.Hide();
  EXPECT_FALSE(form.root().visible);
}

TEST(Forms, KnowTheButtonsOfReturnAndEscape) {
  RecordingHost host;
  Question form(host);
  EXPECT_EQ(form.accept_button()->name, "yes");
  EXPECT_EQ(form.cancel_button()->name, "no");
  Notice notice(host);
  EXPECT_EQ(notice.accept_button(), nullptr);
  EXPECT_EQ(notice.cancel_button(), nullptr);
}

TEST(Forms, ThatAreClosedPressCancel) {
  RecordingHost host;
  Question form(host);
  form.Show();
  form.Cancel();
  EXPECT_EQ(form.cancelled, 1);
  EXPECT_FALSE(form.root().visible);
  Notice notice(host);
  notice.Show();
  notice.Cancel();
  EXPECT_FALSE(notice.root().visible);
}

TEST(Forms, HavePicturesOfTheirPlatform) {
  RecordingHost host;
  const Question form(host);
  ASSERT_NE(form.picture->picture, nullptr);
  EXPECT_EQ(form.picture->picture->ScaleWidth(), 80);  // 1200 twips, 15 to a pixel
  EXPECT_EQ(form.picture->picture->ScaleHeight(), 60);
}

TEST(Forms, AreCancelledWhereNobodyCanAnswer) {
  PlainPlatform platform;
  Question form(platform);
  platform.ShowModal(form);
  EXPECT_EQ(form.cancelled, 1);
  EXPECT_EQ(form.accepted, 0);
  EXPECT_FALSE(form.root().visible);
}

TEST(Forms, AreAnsweredByTheUserOfARecordingHost) {
  RecordingHost host;
  Question form(host);
  host.OnModal([](Form& shown) {
    EXPECT_TRUE(shown.root().visible);
    shown.accept_button()->on_click();
  });
  host.ShowModal(form);
  EXPECT_EQ(form.accepted, 1);
  EXPECT_EQ(form.cancelled, 0);
  EXPECT_FALSE(form.root().visible);
}

TEST(Forms, ThatTheUserLeavesOpenAreCancelled) {
  RecordingHost host;
  Question form(host);
  host.ShowModal(form);
  EXPECT_EQ(form.cancelled, 1);
  host.OnModal([](Form&) { throw std::runtime_error("left the room"); });
  EXPECT_THROW(host.ShowModal(form), std::runtime_error);
  EXPECT_EQ(form.cancelled, 2);
  EXPECT_FALSE(form.root().visible);
}

}  // namespace
}  // namespace discoplan
