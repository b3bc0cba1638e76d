// SPDX-License-Identifier: MIT
#include "apps/discoplan/lot_sheet.h"

#include <gtest/gtest.h>

#include <cmath>

#include "apps/discoplan/lot_page.h"
#include "tests/apps/program_fixture.h"

namespace discoplan {
namespace {

using namespace app;

data::Wafer WaferOf(const std::string& name, std::vector<float> values) {
  data::Wafer wafer;
  wafer.name = name;
  wafer.diameter = 200;
  wafer.test_diameter = 194;
  for (std::size_t i = 0; i < values.size(); ++i) {
    wafer.x.push_back(20 * static_cast<float>(i));
    wafer.y.push_back(i % 2 == 0 ? 10 : -10);
  }
  wafer.value = std::move(values);
  return wafer;
}

data::Lot LotOf(std::vector<data::Wafer> wafers) {
  data::Lot lot;
  lot.source = "some/run4.csv";
  lot.parameters = {{"Thickness", "nm"}};
  lot.wafers = std::move(wafers);
  return lot;
}

TEST(AxisOver, HasRoundTicksThatSpanTheValues) {
  const Axis axis = AxisOver(9.43, 10.52, 6);
  EXPECT_EQ(axis.labels,
            (std::vector<std::string>{"9.4", "9.6", "9.8", "10.0", "10.2", "10.4", "10.6"}));
  EXPECT_LE(axis.low, 9.43);
  EXPECT_GE(axis.high, 10.52);
  const Axis constant = AxisOver(5, 5, 6);
  EXPECT_LT(constant.low, 5);
  EXPECT_GT(constant.high, 5);
  EXPECT_EQ(AxisOver(-1e-5, 1e-5, 2).labels.front(), "-1e-05");
}

TEST(LotSheet, SaysWhatAPageShows) {
  data::Lot lot = LotOf({WaferOf("A", {1, 2, 3}), WaferOf("B", {3, 4, 8})});
  for (data::Wafer& wafer : lot.wafers) wafer.derived = "minus mean";
  const std::vector<LotSheet> sheets = SheetsOf(lot, {});
  ASSERT_EQ(sheets.size(), 1U);
  const LotSheet& sheet = sheets[0];
  EXPECT_EQ(sheet.title, "run4");
  EXPECT_EQ(sheet.subtitle, "Thickness (nm), 2 wafers, 6 sites, minus mean");
  EXPECT_EQ(sheet.Pages(), 1U);
  EXPECT_EQ(sheet.cells[0].statistics, "2 ± 1.000");
  // Quartiles 2.25 and 3.75 of 1 2 3 3 4 8.
  EXPECT_EQ(sheet.scale.low, 1);
  EXPECT_EQ(sheet.scale.high, 6);
  EXPECT_EQ(sheet.scale_labels.front(), "1.0");
  EXPECT_EQ(sheet.scale_labels.back(), "6.0");
  EXPECT_EQ(
      sheet.notes[0],
      "Colours: Tukey's fences of all sites; 1 of 6 values beyond take the colours of the ends");
  EXPECT_EQ(sheet.table_titles, (std::vector<std::string>{"Wafer", "Sites", "Mean", "Std. Dev",
                                                          "Std. Dev %", "Range"}));
  EXPECT_EQ(sheet.table[0].texts,
            (std::vector<std::string>{"A", "3", "2.0", "1.000", "50.00", "2"}));
  EXPECT_EQ(sheet.trend.labels, (std::vector<std::string>{"1", "2"}));
  EXPECT_EQ(sheet.trend.label_title, "Wafer");
  EXPECT_EQ(sheet.trend.points[1].mean, 5);
}

TEST(LotSheet, TakesTheScaleThatIsGiven) {
  LotSheetOptions options;
  options.limits = ColourLimits{0, 10};
  options.caption = "Run 4, nitride";
  const LotSheet sheet = SheetsOf(LotOf({WaferOf("A", {1, 2, 3})}), options).at(0);
  EXPECT_EQ(sheet.title, "Run 4, nitride");
  EXPECT_EQ(sheet.scale_labels.back(), "10");
  EXPECT_EQ(sheet.notes, std::vector<std::string>{"Colours: as given"});
  // Of 1 2 3 4 5 the values at 1 + 4 p.
  options.limits = ColourLimits{12.5, 75, true};
  const LotSheet part =
      SheetsOf(LotOf({WaferOf("A", {5, 2, 3}), WaferOf("B", {4, 1})}), options).at(0);
  EXPECT_EQ(part.scale.low, 1.5);
  EXPECT_EQ(part.scale.high, 4);
  EXPECT_EQ(part.notes.at(0),
            "Colours: 12.5% to 75% of all sites; 2 of 5 values beyond take the colours of the "
            "ends");
}

TEST(LotSheet, SaysWhatWasLeftOut) {
  data::Wafer wafer = WaferOf("A", {1, 2, 3});
  wafer.left_out = {{data::Reason::Outlier, 2}};
  const LotSheet sheet = SheetsOf(LotOf({wafer, WaferOf("B", {1, 2, 3})}), {}).at(0);
  EXPECT_EQ(sheet.subtitle, "Thickness (nm), 2 wafers, 6 of 8 sites");
  EXPECT_EQ(sheet.notes.at(1), "Left out: A with 3 of 5 sites; 2 outliers");
}

TEST(LotSheet, HasPagesOfACassetteEach) {
  std::vector<data::Wafer> wafers;
  for (int i = 0; i < 51; ++i) wafers.push_back(WaferOf("W", {1, 2, 3}));
  EXPECT_EQ(SheetsOf(LotOf(wafers), {}).at(0).Pages(), 3U);
}

TEST(LotGrid, LeavesRoomForAllWithoutOverlap) {
  const SheetBox area{500, 1000, 8900, 9800};
  for (std::size_t count = 1; count <= 25; ++count) {
    const LotGrid grid = LotGrid::For(count, area);
    EXPECT_GE(static_cast<std::size_t>(grid.columns * grid.rows), count);
    EXPECT_GT(grid.side, 1300) << count;
    for (std::size_t i = 0; i < count; ++i) {
      const SheetBox square = grid.Square(i, area);
      EXPECT_GE(square.left, area.left) << count;
      EXPECT_LE(square.Right(), area.Right() + 0.1F) << count;
      EXPECT_LE(square.Bottom() + 370, area.Bottom() + 0.1F) << count;
      for (std::size_t j = 0; j < i; ++j) {
        const SheetBox other = grid.Square(j, area);
        EXPECT_TRUE(other.Right() <= square.left || square.Right() <= other.left ||
                    other.Bottom() + 370 <= square.top)
            << count << ' ' << i << ' ' << j;
      }
    }
  }
}

class LotCommand : public ProgramFixture {};

TEST_F(LotCommand, WritesEachFormat) {
  EXPECT_EQ(Run("lot " + kLot + " -o lot.png").output, "");
  EXPECT_TRUE(IsPng("lot.png"));
  EXPECT_EQ(Run("lot " + kLot + " -o lot.pdf").output, "");
  EXPECT_TRUE(Read("lot.pdf").starts_with("%PDF-"));
  EXPECT_EQ(Run("lot " + kLot + " -o lot.svg --wafer 1-3").output, "");
  EXPECT_NE(Read("lot.svg").find("</svg>"), std::string::npos);
  EXPECT_NE(Read("lot.svg").find("Slot03"), std::string::npos);
}

TEST_F(LotCommand, DrawsEveryKindOfPlotDifferently) {
  std::vector<std::string> pictures;
  for (const char* kind : {"2D", "2DS", "2DC", "2DN", "3D", "3DS", "3DB", "histo", "linescan"}) {
    const Outcome outcome =
        Run("lot " + kLot + " --wafer 1-4 --size 600x425 -o lot.png --kind " + kind);
    EXPECT_EQ(outcome.output, "") << kind;
    for (const std::string& other : pictures) EXPECT_TRUE(other != Read("lot.png")) << kind;
    pictures.push_back(Read("lot.png"));
  }
}

TEST_F(LotCommand, HasTheClassicLookToo) {
  for (const char* file : {"lot.png", "lot.pdf", "lot.svg"}) {
    EXPECT_EQ(Run("lot " + kLot + " --wafer 1-3 --look classic -o " + file).output, "") << file;
    const std::string classic = Read(file);
    EXPECT_EQ(Run("lot " + kLot + " --wafer 1-3 -o " + file).output, "") << file;
    EXPECT_TRUE(Read(file) != classic) << file;
  }
}

TEST_F(LotCommand, SetsMembersOfTheSmallPlotsInTheClassicLook) {
  const std::string lot = "lot " + kLot + " --wafer 1-2 --size 600x425 --look classic ";
  const struct {
    const char* kind;
    const char* assignment;
  } rows[] = {
      {"2D", "Resolution=20"},    {"2D", "ShowSites=1"},         {"2D", "IntervalColor3=#123456"},
      {"2D", "WaferStyle=2"},     {"2D", "BackColor=#eeeeee"},   {"2D", "HideLegend=true"},
      {"2D", "TestDiameter=200"}, {"2DS", "SigmaRange=2"},       {"2DC", "Interval=3"},
      {"2DC", "markSites=1"},     {"2DC", "MeanCurveColor=255"}, {"2DN", "IntervalColor9=0"},
      {"3D", "GridRotation=10"},  {"3D", "XResolution=40"},      {"3D", "PlotScale=5"},
      {"3DS", "SigmaRange=2"},    {"3DB", "BeamScale=9"},        {"3DB", "BeamWidth=1"},
      {"histo", "Resolution=5"},  {"histo", "BeamColor=255"},    {"linescan", "angle=20"}};
  for (const auto& [kind, assignment] : rows) {
    Run(lot + "-o plain.png --kind " + kind);
    const Outcome outcome = Run(lot + "-o set.png --kind " + kind + " --set '" + assignment + "'");
    EXPECT_EQ(outcome.output, "") << assignment;
    EXPECT_TRUE(Read("set.png") != Read("plain.png")) << kind << ' ' << assignment;
  }
}

TEST_F(LotCommand, TakesTheSettingsOfAPlotInTheClassicLook) {
  const std::string lot = "lot " + kLot + " --wafer 1-2 --look classic ";
  // A small map has 80 cells across; here that is 294 mm.
  Write("fine.json", R"({"StdResx2D": 3.675, "2DBackColor": 16777215, "2DWAFERDM": 300,
                         "2DTESTDM": 294, "2DCaption": "of a plot"})");
  Run(lot + "-o plain.svg --diameter 300 --test-diameter 294");
  EXPECT_EQ(Run(lot + "-o set.svg --settings fine.json").output, "");
  EXPECT_EQ(Read("set.svg"), Read("plain.svg"));
  EXPECT_EQ(Run(lot + "-o set.svg --settings fine.json --set TestDiameter=200").output, "");
  EXPECT_NE(Read("set.svg").find("beyond 100 mm"), std::string::npos);
}

TEST_F(LotCommand, TellsOfColoursWhereTheyStandForValues) {
  for (const std::string look : {"modern", "classic"}) {
    for (const auto& [kind, tells] :
         {std::pair{"2D", true}, {"3DB", true}, {"2DS", false}, {"3DS", false}, {"histo", false}}) {
      Run("lot " + kLot + " --wafer 1-4 -o lot.svg --look " + look + " --kind " + kind);
      EXPECT_EQ(Read("lot.svg").find("Colours: ") != std::string::npos, tells) << look << kind;
    }
  }
}

TEST_F(LotCommand, SaysWhichWafersHaveTooFewSitesForAMap) {
  Write("few.csv", "X,Y,V\n0,0,1\n10,0,2\n0,10,3\n");
  ASSERT_EQ(Run("lot few.csv -o few.svg").status, 0);
  EXPECT_NE(Read("few.svg").find("1 wafer with less than 4 sites"), std::string::npos);
}

TEST_F(LotCommand, ShowsWhatIsMadeOfTheWafers) {
  Run("lot " + kLot + " -o plain.png");
  for (const char* how : {"--minus mean", "--residual radial", "--rotate 90", "--mirror x"}) {
    const Outcome outcome = Run("lot " + kLot + " -o lot.png " + how);
    EXPECT_EQ(outcome.output, "") << how;
    EXPECT_TRUE(Read("lot.png") != Read("plain.png")) << how;
  }
  EXPECT_EQ(Run("report " + kLot + " --wafer 7 --minus mean --residual plane -o page.pdf").output,
            "");
  EXPECT_EQ(Run("plot " + kLot + " --wafer 7 --minus mean -o map.pdf").output, "");
  EXPECT_EQ(Run("plot " + kLot + " --wafer 7 --minus mean -o map.png").output, "");
}

TEST_F(LotCommand, SaysWhatMakesNoSense) {
  Write("few.csv", "X,Y,V\n0,0,1\n10,0,2\n0,10,3\n");
  Write("flat.csv", "X,Y,V\n0,0,5\n10,0,5\n0,10,5\n-10,0,5\n");
  const struct {
    const char* arguments;
    int status;
    const char* says;
  } rows[] = {
      {"few.csv -o lot.png --kind 4D", 2, "--kind: '4D' is none of 2D, 2DS"},
      {"few.csv -o lot.png --limits 3 1", 2, "--limits takes LOW HIGH"},
      {"few.csv -o lot.png --limits 1% 3", 2, "two numbers or two percentages"},
      {"flat.csv -o lot.png --limits 1% 2%", 1, "all values between these --limits are 5;"},
      {"few.csv -o lot.png --size 400x800", 2, "up to twice as wide as high"},
      {"few.csv -o lot.png --figures all", 2, "room for 6 figures"},
      {"few.csv -o lot.txt", 2, "the ending is none of"},
      {"few.csv -o few.csv", 2, ""},
      {"few.csv -o lot.png --look classic", 0, "1 wafer with less than 4 sites"},
      {"few.csv -o lot.png --set Resolution=1", 2,
       "--set belongs to the classic look; give --look classic with it"},
      {"few.csv -o lot.png --look classic --dark", 2,
       "--dark belongs to the modern look; leave it away, or --look classic"},
      {"few.csv -o lot.png --look classic --font Arial", 2, "--font belongs to the modern look"},
      {"few.csv -o lot.png --kind 3D --view 20 85", 2, "an elevation of 10 to 80 degrees"},
      {"few.csv -o lot.png --kind histo --control-limits 3 1", 2, "with LOW below HIGH"},
      {"few.csv -o lot.png --look classic --set Foo=1", 2, "--set: 'Foo' is none of MousePointer"},
      {"few.csv -o lot.png --look classic --set PlotCaption=a", 2,
       "--set PlotCaption: the title of a sheet is given by --caption"},
      {"few.csv -o lot.png --look classic --kind histo --set PlotType=2", 2,
       "--set PlotType: the small histograms of a sheet stand upright and have no curve"},
      {"few.csv -o lot.png --look classic --kind 3D --set XResolution=0.001", 2,
       "XResolution and YResolution of a surface can't be below"},
      {"few.csv -o lot.png --look classic --settings none.json", 1,
       "cannot use 'none.json': it can't be read; check the path"},
      {"few.csv -o none/lot.png", 1, "cannot write 'none/lot.png'"},
  };
  for (const auto& row : rows) {
    const Outcome outcome = Run(std::string("lot ") + row.arguments);
    EXPECT_EQ(outcome.status, row.status) << row.arguments << '\n' << outcome.output;
    EXPECT_NE(outcome.output.find(row.says), std::string::npos) << row.arguments << '\n'
                                                                << outcome.output;
  }
  EXPECT_TRUE(Read("few.csv").starts_with("X,Y,V"));
  EXPECT_EQ(Run("lot few.csv -o ref.png --minus ref.png").status, 2);
}

}  // namespace
}  // namespace discoplan
