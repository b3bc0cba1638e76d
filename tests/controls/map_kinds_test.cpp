// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <numeric>

#include "discoplan/controls/control_factory.h"
#include "hosts/recording/recording_host.h"

namespace discoplan {
namespace {

struct Let {
  const char* kind;
  const char* property;
  double given;
  double read;
};

class MapKinds : public testing::Test {
 protected:
  std::unique_ptr<PlotControl> New(const char* kind) {
    auto control = NewControl(kind, host_, &container_);
    control->root().Move({0, 0, 6000, 4500});
    control->InitProperties();
    control->SetSize(6000, 4500);
    return control;
  }

  RecordingHost host_;
  RecordingContainer container_;
};

TEST_F(MapKinds, MendPropertiesAsTheyAreWritten) {
  for (const Let& row : {
           Let{"Plot2DS", "SigmaRange", -1, 0.5},
           Let{"Plot2DS", "SigmaRange", 3, 3},
           Let{"Plot2DC", "Interval", -3, 1},
           Let{"Plot2DC", "PlotColored", 5, -1},
           Let{"Plot2DC", "markSites", 9, 9},
           Let{"Plot3D", "WaferRotation", 400, 40},
           Let{"Plot3D", "GridRotation", 92, 40},
           Let{"Plot3D", "GridRotation", 91, 91},
           Let{"Plot3D", "GridInclination", -1, 35},
           Let{"Plot3DS", "PlotScale", 0, 40},
           Let{"Plot3D", "XResolution", 0, 5},
           Let{"Plot3D", "YResolution", 60, 48.5},
           Let{"Plot3DB", "WaferRotation", 359, 359},
           Let{"Plot3DB", "WaferRotation", 360, 40},
           Let{"Plot3DB", "BeamWidth", -7, -7},
           Let{"Plot3DB", "BeamHeight", 0, 0},
           Let{"Plot3DB", "BeamScale", 0, 0},
       }) {
    const auto control = New(row.kind);
    const Member& member = control->Members().At(row.property);
    member.Set(*control, Variant(row.given));
    EXPECT_EQ(member.Get(*control).AsDouble(), row.read) << row.kind << ' ' << row.property;
  }
}

struct Redraw {
  const char* kind;
  bool always;  // whatever the picture's state
};

TEST_F(MapKinds, DrawOnPlot) {
  std::vector<float> ramp(9);
  std::iota(ramp.begin(), ramp.end(), 1.0F);
  for (const Redraw& row :
       {Redraw{"Plot2D", false}, Redraw{"Plot2DS", true}, Redraw{"Plot2DC", false},
        Redraw{"Plot2DN", false}, Redraw{"Plot3D", false}, Redraw{"Plot3DS", true},
        Redraw{"Plot3DB", false}}) {
    const auto control = New(row.kind);
    ASSERT_EQ(control->SetWaferData(ramp, ramp, ramp), LoadResult::Loaded);
    auto& surface = dynamic_cast<Traced&>(*control->root().Find("PLOTA")->Picture());
    EXPECT_EQ(control->Plot(), PlotResult::Done);
    EXPECT_GT(surface.TakeTrace().size(), 10U) << row.kind;
    control->Plot();
    EXPECT_EQ(!surface.TakeTrace().empty(), row.always) << row.kind;
  }
}

TEST_F(MapKinds, GiveBarsAFootOnPlot) {
  const auto control = New("Plot3DB");
  const auto read = [&](const char* name) {
    return control->Members().At(name).Get(*control).AsDouble();
  };
  EXPECT_EQ(read("BeamScale"), 1);
  for (const char* side : {"BeamWidth", "BeamHeight"}) {
    EXPECT_EQ(read(side), 5);
    control->Members().At(side).Set(*control, Variant(0.0F));
  }
  const std::vector<float> ramp = {1, 2, 3};
  ASSERT_EQ(control->SetWaferData(ramp, ramp, ramp), LoadResult::Loaded);
  EXPECT_EQ(read("BeamWidth"), 0);
  control->Plot();
  EXPECT_EQ(read("BeamWidth"), 5);
  EXPECT_EQ(read("BeamHeight"), 5);
}

TEST_F(MapKinds, RedrawATurnedWaferOnDemandOnly) {
  const auto control = New("Plot3DB");
  const std::vector<float> ramp = {1, 2, 3};
  ASSERT_EQ(control->SetWaferData(ramp, ramp, ramp), LoadResult::Loaded);
  auto& surface = dynamic_cast<Traced&>(*control->root().Find("PLOTA")->Picture());
  control->Plot();
  surface.TakeTrace();
  control->Members().At("WaferRotation").Set(*control, Variant(77.0F));
  control->Plot();
  EXPECT_TRUE(surface.TakeTrace().empty());
  control->SetPlotNotVaild();
  control->Plot();
  EXPECT_FALSE(surface.TakeTrace().empty());
}

TEST_F(MapKinds, DifferInWhatTheyForward) {
  const auto values = New("Plot2DN");
  values->Mouse(values->root(), {.event = MouseEvent::Click});
  EXPECT_TRUE(container_.TakeRaised().empty());
  values->Mouse(values->root(), {.event = MouseEvent::DblClick});
  EXPECT_EQ(container_.TakeRaised().size(), 1U);
  EXPECT_EQ(values->Focused(), nullptr);
  const auto surface = New("Plot3D");
  surface->Mouse(*surface->root().Find("PLOTA"), {.event = MouseEvent::MouseMove});
  EXPECT_EQ(container_.TakeRaised().size(), 1U);
}

}  // namespace
}  // namespace discoplan
