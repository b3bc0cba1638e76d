// SPDX-License-Identifier: MIT
// Plots that come to a screen of another resolution.
#include <gtest/gtest.h>

#include <utility>

#include "discoplan/controls/control_class.h"
#include "discoplan/controls/control_factory.h"
#include "hosts/recording/recording_host.h"

namespace discoplan {
namespace {

const std::vector<float> kX = {0, 60, 0, -60, 0, 80, -80}, kY = {0, 0, 60, 0, -60, 40, -40},
                         kZ = {10, 12, 14, 16, 18, 11, 17};

std::unique_ptr<PlotControl> Plotted(const ControlClass& own_class, Platform& host) {
  auto control = NewControl(own_class.name, host, nullptr);
  control->InitProperties();
  control->SetSize(6000, 4500);
  EXPECT_EQ(control->SetWaferData(kX, kY, kZ), LoadResult::Loaded);
  control->Plot();
  return control;
}

/// Of all pictures, with their sizes.
std::vector<std::pair<int, std::vector<Pixel>>> Pictures(PlotControl& control) {
  std::vector<std::pair<int, std::vector<Pixel>>> pictures;
  ForEachNode(control.root(), [&](Node& node) {
    if (!node.Picture()) return;
    const Canvas& canvas = std::as_const(*node.Picture()).canvas();
    pictures.emplace_back(canvas.Width(),
                          std::vector<Pixel>(canvas.Pixels().begin(), canvas.Pixels().end()));
  });
  return pictures;
}

TEST(ScreenChanges, DrawEachKindAsIfItHadAlwaysBeenThere) {
  constexpr Screen kSharp{7.5F, 7.5F};
  for (const ControlClass* own_class : ControlClasses()) {
    RecordingHost sharp;
    sharp.SetScreen(kSharp);
    RecordingHost moved;
    const auto expected = Plotted(*own_class, sharp);
    expected->SetPlotNotVaild();
    expected->Plot();  // a second plot begins with the state that the first one left
    const auto control = Plotted(*own_class, moved);
    moved.SetScreen(kSharp);
    control->ScreenChanged();
    EXPECT_EQ(Pictures(*control), Pictures(*expected)) << own_class->name;
  }
}

TEST(ScreenChanges, LeaveAPlotWithoutDataEmpty) {
  for (const ControlClass* own_class : ControlClasses()) {
    RecordingHost host;
    const auto control = NewControl(own_class->name, host, nullptr);
    control->InitProperties();
    control->SetSize(6000, 4500);
    host.SetScreen({7.5F, 7.5F});
    control->ScreenChanged();
    EXPECT_EQ(control->Plot(), PlotResult::NoData);
    ForEachNode(control->root(), [&](Node& node) {
      if (!node.Picture()) return;
      const Canvas& canvas = std::as_const(*node.Picture()).canvas();
      EXPECT_EQ(canvas.Width(), WholePixels(node.Box().width / 7.5)) << node.name;
    });
  }
}

}  // namespace
}  // namespace discoplan
