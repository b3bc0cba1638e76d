// SPDX-License-Identifier: MIT
// A program draws a plot once, and one for paper not at all.
#include <gtest/gtest.h>

#include "apps/discoplan/plot_request.h"
#include "discoplan/controls/control_class.h"
#include "hosts/recording/recording_host.h"

namespace discoplan::app {
namespace {

std::size_t Drawn(PlotControl& control) {
  auto& surface = dynamic_cast<Recording<Picture>&>(*control.root().Find("PLOTA")->Picture());
  std::size_t drawn = 0;
  for (const auto& call : surface.TakeTrace()) {
    drawn += call[0] == "Polygon" || call[0] == "Line" || call[0] == "Circle" || call[0] == "Print";
  }
  return drawn;
}

TEST(DrawnOnce, ByEachKind) {
  Wafer measured;
  measured.name = "w";
  measured.x = {0, 60, 0, -60, 0, 80, -80};
  measured.y = {0, 0, 60, 0, -60, 40, -40};
  measured.value = {10, 12, 14, 16, 18, 11, 17};
  for (const ControlClass* kind : ControlClasses()) {
    RecordingHost host;
    const auto control = LoadedControl(*kind, {}, {}, measured, {host, 6000, 4500});
    const std::size_t before = Drawn(*control);
    EXPECT_LE(before, 20U) << kind->name
                           << ": no more than the grid of an empty chart, laid out twice";
    control->Plot();
    const std::size_t once = Drawn(*control);
    EXPECT_GT(once, measured.x.size()) << kind->name;
    control->SetPlotNotVaild();
    control->Plot();
    EXPECT_EQ(Drawn(*control), once) << kind->name;
  }
}

}  // namespace
}  // namespace discoplan::app
