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
  const TextPainter& text() const override { return host_.text(); }
  void Show(const Message&) override {}

 private:
  RecordingHost host_;
};

TEST(Forms, AreHiddenUntilTheyAreShown) {
  RecordingHost host;
  Question form(host);
  EXPECT_EQ(form.root().kind, NodeKind::Form);
  EXPECT_EQ(form.root().name, "Question");
  EXPECT_EQ(form.root().Text(), "Sure?");
  EXPECT_FALSE(form.root().Visible());
  form.Show();
  EXPECT_TRUE(form.root().Visible());
  form.Hide();
  EXPECT_FALSE(form.root().Visible());
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
  EXPECT_FALSE(form.root().Visible());
  Notice notice(host);
  notice.Show();
  notice.Cancel();
  EXPECT_FALSE(notice.root().Visible());
}

TEST(Forms, HavePicturesOfTheirPlatform) {
  RecordingHost host;
  const Question form(host);
  ASSERT_NE(form.picture->Picture(), nullptr);
  EXPECT_EQ(form.picture->Picture()->ScaleWidth(), 80);  // 1200 twips, 15 to a pixel
  EXPECT_EQ(form.picture->Picture()->ScaleHeight(), 60);
}

TEST(Forms, AreCancelledWhereNobodyCanAnswer) {
  PlainPlatform platform;
  const auto form = std::make_shared<Question>(platform);
  int done = 0;
  platform.ShowModal(form, [&] { ++done; });
  EXPECT_EQ(form->cancelled, 1);
  EXPECT_EQ(form->accepted, 0);
  EXPECT_EQ(done, 1);
  EXPECT_FALSE(form->root().Visible());
}

TEST(Forms, AreAnsweredByTheUserOfARecordingHost) {
  RecordingHost host;
  const auto form = std::make_shared<Question>(host);
  host.OnModal([](Form& shown) {
    EXPECT_TRUE(shown.root().Visible());
    shown.accept_button()->Click();
  });
  bool was_open = true;
  host.ShowModal(form, [&] { was_open = form->root().Visible(); });
  EXPECT_FALSE(was_open) << "when it is done";
  EXPECT_EQ(form->accepted, 1);
  EXPECT_EQ(form->cancelled, 0);
}

TEST(Forms, ThatTheUserLeavesOpenAreCancelled) {
  RecordingHost host;
  const auto form = std::make_shared<Question>(host);
  int done = 0;
  host.ShowModal(form, [&] { ++done; });
  EXPECT_EQ(form->cancelled, 1);
  EXPECT_EQ(done, 1);
  host.OnModal([](Form&) { throw std::runtime_error("left the room"); });
  EXPECT_THROW(host.ShowModal(form, [&] { ++done; }), std::runtime_error);
  EXPECT_EQ(form->cancelled, 2);
  EXPECT_EQ(done, 1) << "who left gave no answer";
  EXPECT_FALSE(form->root().Visible());
}

TEST(Platforms, GiveRastersAndMeasureLabelsUnlessTheyKnowBetter) {
  const PlainPlatform plain;
  EXPECT_EQ(plain.LabelWidth({}, "abc"), 3 * FixedText::kCharacterWidth * kTwipsPerPixel);
  PlainPlatform platform;
  const auto picture = platform.NewPicture(300, 150);
  EXPECT_EQ(picture->canvas().Width(), 20);
  EXPECT_EQ(picture->canvas().Height(), 10);
}

}  // namespace
}  // namespace discoplan
