// SPDX-License-Identifier: MIT
// Option dialogs on a host that can't block.
#include <gtest/gtest.h>

#include "discoplan/controls/control_class.h"
#include "discoplan/controls/control_factory.h"
#include "discoplan/controls/line_scan.h"
#include "discoplan/controls/plot2d.h"
#include "discoplan/dialogs/option_dialog.h"
#include "tests/controls/patient_host.h"

namespace discoplan {
namespace {

const std::vector<float> kX = {0, 50, 0, -50, 0}, kY = {0, 0, 50, 0, -50},
                         kZ = {10, 12, 14, 16, 18};

class OpenDialogs : public testing::Test {
 protected:
  Node& InDialog(const char* name) { return *host_.open.back().form->root().Find(name); }

  PatientHost host_;
};

TEST_F(OpenDialogs, LeaveTheProgramFreeUntilTheyAreConfirmed) {
  Plot2D plot(host_);
  plot.InitProperties();
  plot.SetSize(6000, 4500);
  ASSERT_EQ(plot.SetWaferData(kX, kY, kZ), LoadResult::Loaded);
  plot.Plot();
  plot.root().Find("Command1")->Click();
  ASSERT_EQ(host_.open.size(), 1U);
  EXPECT_TRUE(host_.open[0].form->root().Visible());
  EXPECT_EQ(InDialog("tresx").Text(), "5");
  plot.PlotCaption("meanwhile");
  InDialog("tresx").Type("2.5");
  EXPECT_EQ(plot.Resolution(), 5) << "not yet";
  InDialog("OKbtn").Click();
  EXPECT_TRUE(host_.closed) << "which the host is told of";
  host_.TurnOnce();
  EXPECT_EQ(plot.Resolution(), 2.5F);
  EXPECT_TRUE(host_.open.empty());
}

TEST_F(OpenDialogs, ChangeNothingWhenTheyAreCancelled) {
  Plot2D plot(host_);
  plot.InitProperties();
  plot.ShowPlotOption();
  InDialog("tresx").Type("2.5");
  host_.open[0].form->Cancel();
  host_.TurnOnce();
  EXPECT_EQ(plot.Resolution(), 5);
}

TEST_F(OpenDialogs, OfAllKindsAreClosedWithTheirControl) {
  for (const ControlClass* own_class : ControlClasses()) {
    const std::string name(own_class->name);
    auto control = NewControl(name, host_, nullptr);
    control->InitProperties();
    ASSERT_EQ(control->SetWaferData(kX, kY, kZ), LoadResult::Loaded) << name;
    control->ShowPlotOption();
    if (name == "Plot2DN") {
      EXPECT_TRUE(host_.open.empty()) << "it has no options";
      continue;
    }
    ASSERT_EQ(host_.open.size(), 1U) << name;
    control.reset();
    EXPECT_FALSE(host_.open[0].form->root().Visible()) << name;
    host_.TurnOnce();
    EXPECT_TRUE(host_.open.empty()) << name;
  }
}

TEST_F(OpenDialogs, AnswerNobodyAfterTheirControl) {
  auto plot = std::make_unique<Plot2D>(host_);
  plot->InitProperties();
  plot->ShowPlotOption();
  InDialog("OKbtn").Click();
  plot.reset();
  host_.TurnOnce();
  EXPECT_TRUE(host_.open.empty());
}

TEST_F(OpenDialogs, OfALineScanTurnTheCut) {
  LineScan scan(host_);
  scan.InitProperties();
  ASSERT_EQ(scan.SetWaferData(kX, kY, kZ), LoadResult::Loaded);
  scan.ShowPlotOption();
  InDialog("AngleValue").Type("90");
  InDialog("OKbtn").Click();
  host_.TurnOnce();
  EXPECT_EQ(scan.angle(), 90);
  EXPECT_EQ(scan.root().Find("AngleValue")->Text(), "90");
}

TEST_F(OpenDialogs, FollowThePlotWhoseResolutionHasBecomeImpossible) {
  Plot2D plot(host_);
  plot.InitProperties();
  plot.SetSize(6000, 4500);
  plot.Resolution(40);
  ASSERT_EQ(plot.SetWaferData(kX, kY, kZ), LoadResult::Loaded);
  plot.TestDiameter(120);
  plot.Plot();
  ASSERT_EQ(host_.messages.size(), 1U);
  ASSERT_EQ(host_.open.size(), 1U);
  EXPECT_EQ(InDialog("tresx").Text(), "30");
  EXPECT_TRUE(plot.root().Find("RePlot")->Image() != nullptr) << "drawn with 30 mm meanwhile";
  InDialog("tresx").Type("4");
  InDialog("OKbtn").Click();
  host_.TurnOnce();
  EXPECT_EQ(plot.Resolution(), 4);
}

}  // namespace
}  // namespace discoplan
