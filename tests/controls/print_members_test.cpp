// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <array>

#include "discoplan/controls/control_factory.h"
#include "hosts/recording/recording_host.h"

namespace discoplan {
namespace {

using nlohmann::json;

/// Prints through the member tables, as every host does.
class PrintMembers : public testing::Test {
 protected:
  std::unique_ptr<PlotControl> New(const char* kind, float width = 6000, float height = 4500) {
    auto control = NewControl(kind, host_, nullptr);
    control->InitProperties();
    control->root().Move({0, 0, width, height});
    return control;
  }
  static void Load(PlotControl& control) {
    const std::vector<float> x = {0, 50, 0, -50, 0}, y = {0, 0, 50, 0, -50},
                             z = {10, 12, 14, 16, 18};
    ASSERT_EQ(control.SetWaferData(x, y, z), LoadResult::Loaded);
  }
  double Call(PlotControl& control, const char* member) {
    args_.resize(control.Members().At(member).parameters.size());
    return control.Members().At(member).Call(control, args_).AsDouble();
  }
  bool Prints(const std::string& text) {
    for (const json& call : paper_->TakeTrace()) {
      if (call == json{"Print", text}) return true;
    }
    return false;
  }

  RecordingHost host_;
  std::shared_ptr<Recording<Paper>> paper_ =
      std::make_shared<Recording<Paper>>(host_.screen(), Screen{10, 20}, 12000.0F, 16000.0F);
  std::vector<Variant> args_ = {Variant(1000.0F), Variant(2000.0F), Variant(6000.0F),
                                Variant(4000.0F)};
};

struct PlotRow {
  const char* kind;
  const char* method;
  float least_width, least_height;
  bool size_first;
  bool moves;  // leaves the map's place in the arguments
  const char* type;
};

constexpr PlotRow kPlots[] = {
    {"Plot2D", "PrintPlot", 750, 750, false, false, "int16"},
    {"Plot2DS", "PrintPlot", 750, 750, false, false, "float"},
    {"Plot2DC", "PrintPlot", 750, 750, false, true, "int16"},
    {"Plot2DC", "PrintPlot_THN", 750, 750, false, true, "int16"},
    {"Plot2DN", "PrintPlot", 750, 750, false, false, "int16"},
    {"Plot3D", "PrintPlot", 2500, 1750, false, true, "int16"},
    {"Plot3DS", "PrintPlot", 2500, 1750, false, true, "int16"},
    {"Plot3DB", "PrintPlot", 2500, 1750, false, true, "int16"},
    {"Histo", "PrintPlot", 100, 100, true, false, "int16"},
    {"Histo", "PrintPlot_THN", 100, 100, true, false, "int16"},
    {"LineScan", "PrintPlot", 4000, 2850, false, false, "int16"},
};

TEST_F(PrintMembers, TestDataPrinterAndSize) {
  for (const PlotRow& row : kPlots) {
    SCOPED_TRACE(std::string(row.kind) + ' ' + row.method);
    const auto control = New(row.kind, row.least_width - 1, row.least_height);
    EXPECT_EQ(control->Members().At(row.method).TypeName(), row.type);
    EXPECT_EQ(Call(*control, row.method), row.size_first ? 1 : 2);
    control->PrinterObj(paper_);
    EXPECT_EQ(Call(*control, row.method), row.size_first ? 1 : 2);
    Load(*control);
    EXPECT_EQ(Call(*control, row.method), 1);
    control->root().Move({0, 0, row.least_width, row.least_height - 1});
    EXPECT_EQ(Call(*control, row.method), 1);
    control->PrinterObj(nullptr);
    EXPECT_EQ(Call(*control, row.method), row.size_first ? 1 : 2);
    control->root().Move({0, 0, row.least_width, row.least_height});
    EXPECT_EQ(Call(*control, row.method), 2);
    control->PrinterObj(paper_);
    EXPECT_EQ(paper_->TakeTrace(), json::array());
    EXPECT_EQ(Call(*control, row.method), 0);
    EXPECT_GT(paper_->TakeTrace().size(), 50U);
  }
}

TEST_F(PrintMembers, LeaveTheMapsPlaceInTheArguments) {
  for (const PlotRow& row : kPlots) {
    SCOPED_TRACE(std::string(row.kind) + ' ' + row.method);
    args_ = {Variant(1000.0F), Variant(2000.0F), Variant(6000.0F), Variant(4000.0F)};
    const auto control = New(row.kind);
    Load(*control);
    control->PrinterObj(paper_);
    Call(*control, row.method);
    EXPECT_EQ(args_[0].AsFloat() != 1000, row.moves);
    EXPECT_EQ(args_[1].AsFloat() != 2000, row.moves);
    EXPECT_EQ(args_[3].AsFloat(), 4000);
  }
}

TEST_F(PrintMembers, TakeTheCaptionOfTheFrame) {
  for (const PlotRow& row : kPlots) {
    const auto control = New(row.kind);
    Load(*control);
    control->PlotCaption("Oxide");
    control->PrinterObj(paper_);
    Call(*control, row.method);
    EXPECT_EQ(Prints("Oxide"),
              std::string(row.kind) != "Histo" || std::string(row.method) == "PrintPlot")
        << row.kind << ' ' << row.method;
  }
}

TEST_F(PrintMembers, PrintLegends) {
  const struct {
    const char* kind;
    const char* type;  // of PrintLegend; empty for none
    bool sigma;
  } rows[] = {{"Plot2D", "float", false},  {"Plot2DN", "float", false}, {"Plot3D", "int16", false},
              {"Plot3DB", "int16", false}, {"Plot2DS", "int16", true},  {"Plot3DS", "int16", true},
              {"Plot2DC", "", false},      {"Histo", "", false},        {"LineScan", "", false}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.kind);
    const auto control = New(row.kind);
    const Member* legend = control->Members().Find("PrintLegend");
    ASSERT_EQ(legend != nullptr, *row.type != '\0');
    EXPECT_EQ(control->Members().Find("PrintLegend_No_Frame") != nullptr, row.sigma);
    if (legend == nullptr) continue;
    EXPECT_EQ(legend->TypeName(), row.type);
    EXPECT_EQ(Call(*control, "PrintLegend"), 1);
    Load(*control);
    EXPECT_EQ(Call(*control, "PrintLegend"), 1);
    control->PrinterObj(paper_);
    EXPECT_EQ(Call(*control, "PrintLegend"), 0);
    EXPECT_TRUE(Prints("Legend "));
    if (!row.sigma) continue;
    args_ = {Variant(1000.0F), Variant(2000.0F)};
    EXPECT_EQ(Call(*control, "PrintLegend_No_Frame"), 0);
    EXPECT_EQ(args_[0].AsFloat(), 100);
    EXPECT_EQ(args_[1].AsFloat(), 100);
    EXPECT_FALSE(Prints("Legend "));
  }
}

TEST_F(PrintMembers, PrintBlocks) {
  for (const ControlClass* own_class : ControlClasses()) {
    const std::string_view kind = own_class->name;
    SCOPED_TRACE(kind);
    const auto control = New(std::string(kind).c_str());
    args_ = {Variant(0.0F), Variant(0.0F), Variant(std::string("nm"))};
    EXPECT_EQ(Call(*control, "PrintWaferStatistic"), 1);
    Load(*control);
    control->PrinterObj(paper_);
    EXPECT_EQ(Call(*control, "PrintWaferStatistic"), 0);
    EXPECT_TRUE(Prints("nm"));
    EXPECT_EQ(control->Wafer().Units, "nm");
    args_ = {Variant(0.0F), Variant(0.0F)};
    EXPECT_EQ(Call(*control, "PrintWaferSize"), 0);
    EXPECT_TRUE(Prints("194.00 mm"));
  }
}

TEST_F(PrintMembers, RaiseForAPrinterThatIsNone) {
  const auto control = New("Plot2D");
  Load(*control);
  control->PrinterObj(std::shared_ptr<Object>(New("Plot2D")));
  EXPECT_THROW(Call(*control, "PrintPlot"), RunTimeError);
}

TEST_F(PrintMembers, PreviewOnAPicture) {
  const auto control = New("Plot3D");
  Load(*control);
  auto preview = std::shared_ptr<Picture>(host_.NewPicture(9000, 6000));
  control->PrinterObj(preview);
  EXPECT_EQ(Call(*control, "PrintPlot"), 0);
  const auto pixels = preview->canvas().Pixels();
  EXPECT_GT(std::ranges::count_if(pixels, [&](Pixel p) { return p != 0xFFFFFFFF; }), 5000);
}

}  // namespace
}  // namespace discoplan
