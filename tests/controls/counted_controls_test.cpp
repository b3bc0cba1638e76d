// SPDX-License-Identifier: MIT
// Controls on a host that counts references and drops the last one in the midst of a call.
#include <gtest/gtest.h>

#include <utility>

#include "discoplan/controls/control_class.h"
#include "discoplan/controls/control_factory.h"
#include "discoplan/controls/plot2d.h"
#include "discoplan/controls/plot3d.h"
#include "hosts/recording/recording_host.h"

namespace discoplan {
namespace {

const std::vector<float> kX = {0, 50, 0, -50, 0}, kY = {0, 0, 50, 0, -50},
                         kZ = {10, 12, 14, 16, 18};

/// Drops the control at the first call of one kind, with itself.
struct Dropping final : Container {
  enum class At { Never, Repaint, Changed, Raised, Pointer, Asked, Twips };

  void Drop(At now) {
    if (now != at || !control) return;
    const std::weak_ptr<PlotControl> watched = control;
    control->Detach();
    control.reset();
    EXPECT_FALSE(watched.expired()) << "it is in the midst of its work";
    ++dropped;
  }
  void Repaint() override { Drop(At::Repaint); }
  void PropertyChanged(std::string_view) override { Drop(At::Changed); }
  void EventRaised(std::string_view, std::span<const Variant>) override { Drop(At::Raised); }
  void PointerChanged(std::int16_t) override { Drop(At::Pointer); }
  void UseTwips() override { Drop(At::Twips); }
  void ResizeRequested(float width, float height,
                       const std::function<void(float, float)>& take) override {
    Drop(At::Asked);
    take(width, height);
  }

  At at = At::Never;
  std::shared_ptr<PlotControl> control;
  int dropped = 0;
};

using At = Dropping::At;

TEST(CountedControls, FinishWhatTheyAreInTheMidstOf) {
  struct Row {
    const char* what;
    void (*act)(PlotControl& control);
    std::vector<At> at;
  };
  const std::vector<Row> rows = {
      {"let", [](PlotControl& c) { c.TestDiameter(150); }, {At::Repaint, At::Changed}},
      {"pointer", [](PlotControl& c) { c.MousePointer(2); }, {At::Pointer, At::Changed}},
      {"icon", [](PlotControl& c) { c.MouseIcon({}); }, {At::Changed}},
      {"colour", [](PlotControl& c) { c.BackColor(kWhite); }, {At::Changed}},
      {"legend", [](PlotControl& c) { c.HideLegend(true); }, {At::Repaint, At::Changed}},
      {"size", [](PlotControl& c) { c.SetSize(100, 100); }, {At::Asked}},
      {"plot", [](PlotControl& c) { c.SetPlotNotVaild(), c.Plot(); }, {At::Pointer, At::Repaint}},
      {"limits", [](PlotControl& c) { c.SetPlotLimit(1, 2); }, {At::Pointer}},
      {"release", [](PlotControl& c) { c.ReleasePlotLimit(); }, {At::Pointer}},
      {"start", [](PlotControl& c) { c.InitProperties(); }, {At::Repaint, At::Changed}},
      {"screen", [](PlotControl& c) { c.ScreenChanged(); }, {At::Pointer}},
      {"mouse",
       [](PlotControl& c) { c.Mouse(c.root(), {.event = MouseEvent::MouseDown}); },
       {At::Raised}},
  };
  for (const ControlClass* own_class : ControlClasses()) {
    const std::string name(own_class->name);
    for (const Row& row : rows) {
      for (const At at : row.at) {
        RecordingHost host;
        Dropping container;
        container.control = NewControl(name, host, &container);
        container.control->InitProperties();
        container.control->SetSize(6000, 4500);
        ASSERT_EQ(container.control->SetWaferData(kX, kY, kZ), LoadResult::Loaded);
        container.control->Plot();
        const std::weak_ptr<PlotControl> watched = container.control;
        container.at = at;
        row.act(*container.control);
        const bool was_due = container.dropped == 1;
        EXPECT_EQ(watched.expired(), was_due) << name << ' ' << row.what;
        container.control.reset();
        EXPECT_TRUE(watched.expired());
      }
    }
  }
}

TEST(CountedControls, OutliveTheirOwnDialog) {
  RecordingHost host;
  auto plot = std::make_shared<Plot2D>(host);
  plot->InitProperties();
  ASSERT_EQ(plot->SetWaferData(kX, kY, kZ), LoadResult::Loaded);
  const std::weak_ptr<Plot2D> watched = plot;
  host.OnModal([&](Form& form) {
    form.root().Find("tresx")->Type("2.5");
    plot.reset();
    EXPECT_FALSE(watched.expired());
    form.accept_button()->Click();
  });
  plot->root().Find("Command1")->Click();
  EXPECT_TRUE(watched.expired());
}

/// Lets the program run in the midst of a redraw.
class Interrupted final : public Platform {
 public:
  const Screen& screen() const override { return host_.screen(); }
  const TextPainter& text() const override { return host_.text(); }
  void Show(const Message&) override { Drop(); }
  void RunPendingEvents() override { Drop(); }
  void Drop() {
    if (drop) std::exchange(drop, {})();
  }

  std::function<void()> drop;

 private:
  RecordingHost host_;
};

TEST(CountedControls, OutliveEventsThatPassInARedraw) {
  for (const bool too_coarse : {false, true}) {
    Interrupted host;
    auto plot = std::make_shared<Plot2D>(host);
    plot->InitProperties();
    plot->SetSize(6000, 4500);
    if (too_coarse) plot->Resolution(40);
    ASSERT_EQ(plot->SetWaferData(kX, kY, kZ), LoadResult::Loaded);
    if (too_coarse) plot->TestDiameter(120);
    const std::weak_ptr<Plot2D> watched = plot;
    host.drop = [&] { plot.reset(); };
    plot->Plot();
    EXPECT_TRUE(watched.expired()) << too_coarse;
  }
}

}  // namespace
}  // namespace discoplan
