// SPDX-License-Identifier: MIT
#include "discoplan/forms/node.h"

#include <gtest/gtest.h>

#include <functional>
#include <utility>
#include <vector>

#include "hosts/recording/recording_host.h"

namespace discoplan {
namespace {

class NodeTest : public testing::Test {
 protected:
  NodeTest() {
    root_.Watch([this](Node& node, Aspect aspect) { notes_.emplace_back(&node, aspect); });
  }
  using Notes = std::vector<std::pair<Node*, Aspect>>;
  Notes TakeNotes() { return std::exchange(notes_, {}); }
  Node& AddPicture(const char* name) {
    Node& node = root_.Add(NodeKind::Picture, name, {0, 0, 300, 150});
    node.Picture(host_.NewPicture(300, 150));
    return node;
  }

  RecordingHost host_;
  Notes notes_;
  Node root_{NodeKind::Control, "root", {0, 0, 6000, 4500}};
};

TEST_F(NodeTest, TellsWhatBecameAnotherValueAndOnlyThat) {
  Node& child = root_.Add(NodeKind::Frame, "frame", {0, 0, 30, 30});
  EXPECT_EQ(TakeNotes(), (Notes{{&root_, Aspect::Children}}));
  Node& node = child.Add(NodeKind::Options, "inner", {});
  TakeNotes();
  const auto image = std::make_shared<const Canvas>(1, 1, 0);
  const std::vector<std::pair<Aspect, std::function<void()>>> changes = {
      {Aspect::Place,
       [&] {
         node.Move({1, 2, 3, 4});
       }},
      {Aspect::Place, [&] { node.Width(5); }},
      {Aspect::Visible, [&] { node.Visible(false); }},
      {Aspect::Text, [&] { node.Text("text"); }},
      {Aspect::Text, [&] { node.caption("caption"); }},
      {Aspect::Value, [&] { node.Value(1); }},
      {Aspect::Look,
       [&] {
         node.Options({"one", "two", "three"});
       }},
      {Aspect::Look, [&] { node.BackColor(1); }},
      {Aspect::Look, [&] { node.ForeColor(1); }},
      {Aspect::Look, [&] { node.Font({.name = "Symbol"}); }},
      {Aspect::Look, [&] { node.Alignment(Alignment::Right); }},
      {Aspect::Look, [&] { node.BreakBefore("x"); }},
      {Aspect::Look, [&] { node.Bordered(true); }},
      {Aspect::Look, [&] { node.Forwards(kForwardsAll); }},
      {Aspect::Image, [&] { node.Image(image); }},
  };
  for (std::size_t i = 0; i < changes.size(); ++i) {
    changes[i].second();
    EXPECT_EQ(TakeNotes(), (Notes{{&node, changes[i].first}})) << i;
    changes[i].second();
    EXPECT_EQ(TakeNotes(), Notes{}) << i << ": the same again";
  }
  root_.Watch({});
  node.Visible(true);
  EXPECT_EQ(TakeNotes(), Notes{});
}

TEST_F(NodeTest, TellsOfItsPicture) {
  Node& node = AddPicture("map");
  TakeNotes();
  node.Picture()->Cls();
  node.Picture()->Cls();
  EXPECT_EQ(TakeNotes(), (Notes{{&node, Aspect::Pixels}}));
  node.Picture()->MarkShown();
  node.Picture()->Cls();
  node.Picture()->Refresh();
  EXPECT_EQ(TakeNotes(), (Notes{{&node, Aspect::Pixels}, {&node, Aspect::Refresh}}));
}

TEST_F(NodeTest, LeavesItsPictureToWhoeverStillHoldsIt) {
  std::shared_ptr<Picture> kept;
  {
    Node root(NodeKind::Control, "short", {});
    Node& node = root.Add(NodeKind::Picture, "map", {0, 0, 300, 150});
    node.Picture(host_.NewPicture(300, 150));
    kept = node.Picture();
  }
  kept->Cls();
  kept->Refresh();
  EXPECT_EQ(kept->canvas().Width(), 20);
}

TEST_F(NodeTest, PassesOnWhatTheUserDoes) {
  Node& group = root_.Add(NodeKind::Options, "group", {});
  group.Options({"one", "two"});
  int changes = 0, clicks = 0, steps = 0, keys = 0;
  group.on_change = [&] { ++changes; };
  group.on_click = [&] { ++clicks; };
  group.on_spin = [&](int by) { steps += by; };
  group.on_key = [&](int code) { keys += code; };
  group.Choose(0);
  group.Choose(2);
  group.Choose(-1);
  EXPECT_EQ(changes, 0) << "it is chosen already, or isn't there";
  group.Choose(1);
  EXPECT_EQ(group.Value(), 1);
  group.Tick(true);
  EXPECT_EQ(changes, 1);
  group.Tick(false);
  EXPECT_EQ(group.Value(), 0);
  group.Type("");
  EXPECT_EQ(changes, 2);
  group.Type("text");
  EXPECT_EQ(changes, 3);
  group.Click();
  group.Spin(-4);
  group.Key(38);
  EXPECT_EQ(clicks, 1);
  EXPECT_EQ(steps, -4);
  EXPECT_EQ(keys, 38);
  EXPECT_TRUE(group.Leave()) << "nobody objects";
  group.on_leave = [] { return false; };
  EXPECT_FALSE(group.Leave());
}

TEST_F(NodeTest, RunsAHandlerToItsEndThoughItIsReplaced) {
  Node& button = root_.Add(NodeKind::Button, "button", {});
  const auto mark = std::make_shared<int>(0);
  button.on_click = [&button, mark] {
    button.on_click = {};
    EXPECT_GT(mark.use_count(), 1);
    ++*mark;
  };
  button.Click();
  button.Click();
  EXPECT_EQ(*mark, 1);
}

TEST_F(NodeTest, IsAsWideAsItsTextIsMeasured) {
  Node& label = root_.Add(NodeKind::Label, "label", {0, 0, 9, 9});
  label.Text("abc");
  EXPECT_EQ(label.Box().width, 9);
  label.SizeByText([](const Node& node) { return static_cast<float>(node.Text().size()) * 10; });
  label.Text("abcd");
  EXPECT_EQ(label.Box(), (TwipsBox{0, 0, 40, 9}));
}

}  // namespace
}  // namespace discoplan
