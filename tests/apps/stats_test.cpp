// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>
#include <sstream>

#include "apps/discoplan/figure_text.h"
#include "tests/apps/program_fixture.h"

namespace discoplan {
namespace {

using app::NumberText;

TEST(NumberText, HasNoDigitsThatSayNothing) {
  EXPECT_EQ(NumberText(0.8548012, 5), "0.8548");
  EXPECT_EQ(NumberText(1.470001, 5), "1.47");
  EXPECT_EQ(NumberText(123456.7, 5), "123457");
  EXPECT_EQ(NumberText(-2.5, 1), "-2");
  EXPECT_EQ(NumberText(9.99999, 3), "10");
  EXPECT_EQ(NumberText(0, 5), "0");
  EXPECT_EQ(NumberText(1.25e-9, 5), "1.25e-09");
  EXPECT_EQ(NumberText(3e20, 5), "3e+20");
  EXPECT_EQ(NumberText(0.00025, 2), "0.00025");
  EXPECT_EQ(NumberText(-0.0, 5), "0");
}

TEST(ColumnTexts, HaveTheSameDecimals) {
  const std::vector<std::optional<double>> column = {9.74726, 10.12, {}, 0.0};
  EXPECT_EQ(app::ColumnTexts(column, 5),
            (std::vector<std::string>{"9.7473", "10.1200", "n/a", "0.0000"}));
  const std::vector<std::optional<double>> mixed = {-0.0116460, 0.0027395, 0.0000422, 12345.678};
  EXPECT_EQ(app::ColumnTexts(mixed, 3),
            (std::vector<std::string>{"-0.0116", "0.0027", "4.2e-05", "12345.6780"}));
  const std::vector<std::optional<double>> small = {100.5, 200.25, 1.5e-9, 1e30};
  EXPECT_EQ(app::ColumnTexts(small, 4),
            (std::vector<std::string>{"100.5", "200.2", "1.5e-09", "1e+30"}));
}

TEST(Rounded, ToSignificantDigits) {
  EXPECT_EQ(app::Rounded(0.95490000000000003, 10), 0.9549);
  EXPECT_EQ(app::Rounded(123456, 2), 120000);
}

TEST(FigureOf, IsZeroForRoundingAlone) {
  const auto figure = [](const char* key, std::vector<double> values) {
    return app::FigureOf(*analysis::FindFigure(key), analysis::Sample(std::move(values)));
  };
  EXPECT_EQ(figure("mean", {-100, 1e-7, 100}), 0);
  EXPECT_EQ(figure("median", {-100, -50, 1e-7, 50, 100}), 0);
  // Whatever one of them may be.
  const std::vector<double> stray = {98.5, 99, 100, 101, 1e30};
  EXPECT_EQ(figure("minimum", stray), 98.5);
  EXPECT_EQ(figure("median", stray), 100);
  EXPECT_EQ(figure("quartile_1", stray), 99);
  EXPECT_EQ(figure("iqr", stray), 2);
  EXPECT_EQ(figure("mad", stray), 1);
  EXPECT_EQ(figure("maximum", {-1e30, -100, 3}), 3);
}

class Stats : public ProgramFixture {
 protected:
  nlohmann::json Json(const std::string& arguments) const {
    const Outcome outcome = Run("stats " + arguments + " --json");
    EXPECT_EQ(outcome.status, 0) << outcome.output;
    return nlohmann::json::parse(outcome.output);
  }
};

TEST_F(Stats, PrintFiguresWithoutNoise) {
  const Outcome outcome = Run("stats " + kLot + " --wafer 7");
  EXPECT_EQ(outcome.output,
            "Wafer             Sites         Mean     Std. Dev   Std. Dev %      Minimum      "
            "Maximum        Range  Hi/Lo Var %\n"
            "Slot07               49       9.7473      0.21614       2.2174       9.4911       "
            "10.446       0.9549       4.7896\n");
}

TEST_F(Stats, PrintChosenFiguresWithTheirFormulas) {
  const Outcome outcome =
      Run("stats " + kLot + " --wafer 7 --figures median,mad,three_sigma --digits 5");
  EXPECT_EQ(outcome.output,
            "Wafer             Sites       Median          MAD      3 Sigma\n"
            "Slot07               49       9.6995       0.1282      0.64841\n"
            "\n"
            "Median: z at 1 + (n - 1) / 2 in order\n"
            "MAD: median |z - median|\n"
            "3 Sigma: 3 s\n");
}

// Within 0.04937 and between 0.00639, as squares.
TEST_F(Stats, PrintWhatIsSaidOfTheLotBelowItsWafers) {
  const std::string text = Run("stats " + kLot + " --figures mean").output;
  for (const char* line :
       {"All sites          1225       9.8339\n", "\nSigma within wafers    0.2222 ",
        "\nSigma between wafers   0.07994 ", "\nWorst wafer            Slot25 ",
        "\nOutlying wafers        Slot25 (mean)  |x - median| > 3.5 x 1.4826 MAD"}) {
    EXPECT_NE(text.find(line), std::string::npos) << line << " in\n" << text;
  }
}

TEST_F(Stats, WriteCommaSeparatedText) {
  const Outcome outcome = Run("stats " + kLot + " --wafer 7-8 --figures mean,std_dev --csv");
  EXPECT_EQ(outcome.output.substr(0, outcome.output.find('\n')),
            "wafer,slot,parameter,sites,mean,std_dev");
  EXPECT_NE(outcome.output.find("\nSlot07,7,Value,49,9.747255102,0.2161364915\n"),
            std::string::npos)
      << outcome.output;
  EXPECT_EQ(std::count(outcome.output.begin(), outcome.output.end(), '\n'), 3);
}

TEST_F(Stats, LeaveEmptyWhatHasNoMeaning) {
  Write("one.csv", "X (mm),Y (mm),V\n0,0,5\n");
  Write("zero.csv", "X (mm),Y (mm),V\n0,0,-1\n10,0,1\n0,10,-1\n-10,0,1\n");
  EXPECT_EQ(Run("stats one.csv --figures std_dev,mean --csv").output,
            "wafer,parameter,sites,std_dev,mean\none,V,1,,5\n");
  EXPECT_TRUE(Json("one.csv --figures std_dev").at(0).at("std_dev").is_null());
  const std::string text = Run("stats zero.csv").output;
  EXPECT_NE(text.find(" n/a "), std::string::npos) << text;
}

TEST_F(Stats, SumUpTheLotForOtherPrograms) {
  const auto lot = Json(kLot + " --lot").at(0);
  EXPECT_EQ(lot.at("wafers"), 25);
  EXPECT_EQ(lot.at("sites"), 1225);
  EXPECT_NEAR(lot.at("sigma_within").get<double>(), 0.2222014533788505, 1e-9);
  EXPECT_NEAR(lot.at("sigma_between").get<double>(), 0.07994020901659978, 1e-9);
  EXPECT_EQ(lot.at("worst_wafer"), "Slot25");
  EXPECT_EQ(lot.at("formulas").at("range"), "max - min");
  const Outcome outcome = Run("stats " + kLot + " --figures mean --lot --csv");
  EXPECT_EQ(outcome.output,
            "wafers,parameter,sites,mean,sigma_within,sigma_between,worst_wafer,outlying_wafers\n"
            "25,Value,1225,9.833929633,0.2222014534,0.07994020902,Slot25,Slot25 (mean)\n");
}

TEST_F(Stats, OfADifferenceOfTheSameSites) {
  Write("a.csv", "X (mm),Y (mm),V\n0,0,10.3\n10,0,11\n0,10,12\n-10,0,13\n");
  Write("b.csv", "X (mm),Y (mm),V\n-10,0,1\n0,10,2\n10,0,3\n0,0,0.1\n");
  const auto stats = Json("a.csv --minus b.csv").at(0);
  EXPECT_EQ(stats.at("wafer"), "a, minus b");
  EXPECT_EQ(stats.at("minimum"), 8);
  EXPECT_EQ(stats.at("maximum"), 12);
  EXPECT_EQ(stats.at("mean"), 10.05);
}

TEST_F(Stats, OfADifferenceFromTheWaferAndValueThatAreChosen) {
  Write("a.csv", "X (mm),Y (mm),S,V (nm),W (A)\n0,0,1,10,5\n5,0,1,20,6\n0,0,2,30,7\n5,0,2,50,8\n");
  Write("b.csv", "X (mm),Y (mm),U\n0,0,1\n5,0,2\n");
  Write("c.csv", "X (mm),Y (mm),S,W (A),V (nm)\n0,0,7,1,2\n5,0,7,3,4\n0,0,8,5,6\n5,0,8,7,8\n");
  Write("d.csv", "X (mm),Y (mm),V (A)\n0,0,1\n5,0,2\n");
  const struct {
    const char* arguments;
    int status;
    const char* says;
  } rows[] = {
      // 10 - 2, 20 - 4 and 30 - 2, 50 - 4; by place, V would meet W.
      {"a.csv --by S --parameter V --minus c.csv --minus-wafer 7", 0,
       "\"1, minus c 7\",1,V,nm,2,12\n\"2, minus c 7\",2,V,nm,2,37\n"},
      {"a.csv --by S --wafer 1 --parameter all --minus c.csv --minus-wafer 8", 0,
       "\"1, minus c 8\",1,V,nm,2,8\n\"1, minus c 8\",1,W,A,2,-0.5\n"},
      {"a.csv --by S --wafer 1 --columns X,Y,V --minus c.csv --minus-wafer 8", 0, "V,nm,2,8\n"},
      {"a.csv --by S --parameter V --minus c.csv", 1,
       "c.csv: has no wafer '1' to subtract; it has 7, 8; --minus-wafer chooses one for all"},
      {"a.csv --by S --wafer 1 --parameter V --minus c.csv --minus-wafer 9", 1,
       "c.csv: there is no slot 9; choose from 7, 8"},
      {"a.csv --by S --wafer 1 --columns X,Y,V --minus c.csv --minus-wafer 8 --minus-parameter W",
       1,
       "c.csv: 'W' is in 'A' and 'V' in 'nm'; scale one of them, or give both one --value-unit if "
       "they are the same"},
      {"a.csv --by S --wafer 1 --parameter V --minus d.csv", 1, "d.csv: 'V' is in 'A' and 'V' in"},
      {"a.csv --by S --wafer 1 --columns X,Y,V --minus b.csv --minus-parameter U", 0,
       "\"1, minus b U\",1,V,nm,2,13.5\n"},
      {"b.csv --minus d.csv --minus-parameter V", 0, "\"b, minus d V\",U,2,0\n"},
      {"a.csv --by S --parameter all --minus b.csv --minus-parameter U", 2,
       "--minus-parameter goes with one value of the data; give one --parameter"},
      {"a.csv --by S --parameter V --minus mean --minus-wafer 1", 2,
       "--minus-wafer and --minus-parameter choose from a FILE; give it by --minus"},
      {"a.csv --by S --parameter V --minus-wafer 1", 2, "choose from a FILE; give it by --minus"},
  };
  for (const auto& row : rows) {
    const Outcome outcome = Run(std::string("stats --csv --figures mean ") + row.arguments);
    EXPECT_EQ(outcome.status, row.status) << row.arguments << '\n' << outcome.output;
    EXPECT_NE(outcome.output.find(row.says), std::string::npos) << row.arguments << '\n'
                                                                << outcome.output;
  }
  // The only value of a file is taken whatever its name, but not without a word.
  const Outcome other = Run("stats d.csv --minus b.csv --csv --figures mean");
  EXPECT_NE(other.output.find("discoplan: b.csv: its value 'U' is subtracted from 'V'; "
                              "--minus-parameter chooses another\n"),
            std::string::npos)
      << other.output;
}

TEST_F(Stats, SayThatADifferenceIsInterpolated) {
  Write("a.csv", "X (mm),Y (mm),V\n0,0,10\n10,10,11\n");
  Write("b.csv", "X (mm),Y (mm),V\n10,10,1\n-10,10,2\n-10,-10,3\n10,-10,4\n");
  const Outcome outcome = Run("stats a.csv --minus b.csv --csv --figures mean");
  EXPECT_EQ(outcome.status, 0);
  EXPECT_NE(outcome.output.find("discoplan: a.csv: minus b: 1 of 2 values interpolated between "
                                "other sites, up to 14.1 mm from the nearest\n"),
            std::string::npos)
      << outcome.output;
  EXPECT_NE(outcome.output.find("\"a, minus b (interpolated)\",V,2,8.75\n"), std::string::npos)
      << outcome.output;
}

// The means of the differences from the mean wafer add up to nothing.
TEST_F(Stats, OfADifferenceFromTheMeanWaferOfAllWafers) {
  double sum = 0;
  for (const auto& wafer : Json(kLot + " --minus mean")) sum += wafer.at("mean").get<double>();
  EXPECT_NEAR(sum, 0, 1e-6);
  const auto one = Json(kLot + " --minus mean --wafer 7").at(0);
  EXPECT_EQ(one.at("wafer"), "Slot07, minus mean");
  EXPECT_NEAR(one.at("mean").get<double>(), 9.747255102 - 9.833929633, 1e-6);
}

TEST_F(Stats, OfWhatASurfaceLeaves) {
  Write("plane.csv", "X (mm),Y (mm),V\n0,0,10\n10,0,13\n0,10,14\n10,10,17\n-10,-10,3.5\n");
  const auto flat = Json("plane.csv --residual plane").at(0);
  EXPECT_NEAR(flat.at("mean").get<double>(), 0, 1e-6);
  EXPECT_LT(flat.at("range").get<double>(), 0.6);
  EXPECT_EQ(Run("stats plane.csv --residual plane --figures mean --csv").output,
            "wafer,parameter,sites,mean\n\"plane, residual of plane\",V,5,0\n");
  // The root of the residual squares over n - 1, of 49 sites whose mean square is 0.07718^2.
  const auto zernike = Json(kLot + " --wafer 7 --residual zernike:4").at(0);
  EXPECT_NEAR(zernike.at("std_dev").get<double>(), 0.0771823208126181 * std::sqrt(49.0 / 48), 1e-6);
}

TEST_F(Stats, OfTurnedAndMirroredWafers) {
  Write("a.csv", "X (mm),Y (mm),V\n1,0,1\n0,2,2\n-3,0,3\n0,-4,4\n");
  Write("turned.csv", "X (mm),Y (mm),V\n0,1,1\n-2,0,2\n0,-3,3\n4,0,4\n");
  Write("mirrored.csv", "X (mm),Y (mm),V\n-1,0,1\n0,2,2\n3,0,3\n0,-4,4\n");
  EXPECT_EQ(Json("a.csv --rotate 90 --minus turned.csv").at(0).at("range"), 0);
  EXPECT_EQ(Json("a.csv --mirror x --minus mirrored.csv").at(0).at("range"), 0);
  EXPECT_EQ(Json("a.csv --mirror y --rotate 180 --minus mirrored.csv").at(0).at("range"), 0);
  EXPECT_EQ(Json("a.csv --rotate 90").at(0).at("wafer"), "a, turned by 90°");
}

// Ten at the centre; rings of two, and a quadrant for each of the others.
constexpr const char* kCross = "X (mm),Y (mm),V\n0,0,10\n50,0,1\n0,50,3\n-100,0,5\n0,-100,9\n";

TEST_F(Stats, OfZones) {
  Write("a.csv", kCross);
  const struct {
    const char* zones;
    std::vector<std::string> names;
    std::vector<int> sites;
    std::vector<double> means;
  } rows[] = {
      {"rings:2", {"0 to 50 mm", "50 to 100 mm"}, {3, 2}, {14.0 / 3, 7}},
      {"areas:2", {"0 to 70.71 mm", "70.71 to 100 mm"}, {3, 2}, {14.0 / 3, 7}},
      {"profile:2", {"0 to 33.33 mm", "33.33 to 100 mm"}, {1, 4}, {10, 4.5}},
      {"quadrants",
       {"quadrant 1", "quadrant 2", "quadrant 3", "quadrant 4"},
       {1, 1, 1, 1},
       {1, 3, 5, 9}},
  };
  for (const auto& row : rows) {
    const auto zones = Json(std::string("a.csv --figures mean,std_dev --zones ") + row.zones);
    ASSERT_EQ(zones.size(), row.names.size()) << row.zones;
    for (std::size_t i = 0; i < zones.size(); ++i) {
      EXPECT_EQ(zones[i].at("zone"), row.names[i]);
      EXPECT_EQ(zones[i].at("sites"), row.sites[i]) << row.zones;
      EXPECT_NEAR(zones[i].at("mean").get<double>(), row.means[i], 1e-8) << row.zones;
      EXPECT_EQ(zones[i].at("std_dev").is_null(), row.sites[i] == 1) << row.zones;
      EXPECT_EQ(zones[i].contains("outer_radius"), row.names[0].starts_with('0')) << row.zones;
    }
  }
  EXPECT_EQ(Run("stats a.csv --figures mean --zones rings:2").output,
            "Wafer            Zone          Sites         Mean\n"
            "a                0 to 50 mm        3       4.6667\n"
            "a                50 to 100 mm      2       7.0000\n"
            "\nMean: sum z / n\n");
  EXPECT_EQ(Run("stats a.csv --figures mean --zones rings:3 --csv").output,
            "wafer,parameter,zone,inner_radius,outer_radius,sites,mean\n"
            "a,V,0 to 33.33 mm,0,33.33333333,1,10\n"
            "a,V,33.33 to 66.67 mm,33.33333333,66.66666667,2,2\n"
            "a,V,66.67 to 100 mm,66.66666667,100,2,7\n");
}

// The second wafer's sites lie within the first ring of the first one's.
TEST_F(Stats, OfZonesThatAreTheSameOnAllWafers) {
  Write("lot.csv", "W,X (mm),Y (mm),V\n1,0,0,1\n1,100,0,3\n2,0,0,5\n2,40,0,7\n");
  EXPECT_EQ(Run("stats lot.csv --by W --figures mean --zones rings:2 --csv").output,
            "wafer,slot,parameter,zone,inner_radius,outer_radius,sites,mean\n"
            "1,1,V,0 to 50 mm,0,50,1,1\n1,1,V,50 to 100 mm,50,100,1,3\n"
            "2,2,V,0 to 50 mm,0,50,2,6\n2,2,V,50 to 100 mm,50,100,0,\n");
  const std::string text = Run("stats lot.csv --by W --figures mean --zones rings:2").output;
  EXPECT_NE(text.find("All sites        0 to 50 mm        3       4.3333\n"), std::string::npos)
      << text;
}

TEST_F(Stats, SayWhatMakesNoSense) {
  Write("a.csv", "X (mm),Y (mm),V\n0,0,1\n10,0,2\n0,10,3\n-10,0,4\n");
  Write("line.csv", "X (mm),Y (mm),V\n0,0,1\n10,0,2\n20,0,3\n30,0,5\n");
  Write("two.csv", "X (mm),Y (mm),V\n50,0,1\n60,0,2\n");
  const struct {
    const char* arguments;
    int status;
    const char* says;
  } rows[] = {
      {"a.csv --figures mean,sigma", 2, "--figures: 'sigma' is none of mean, std_dev, "},
      {"a.csv --figures ''", 2, "--figures takes names"},
      {"a.csv --digits 0", 2, "--digits"},
      {"a.csv --json --csv", 2, "--csv"},
      {"a.csv --lot", 2, "--lot goes with --json or --csv"},
      {"a.csv --lot --json --zones quadrants", 2, "--zones tells of wafers"},
      {"a.csv --zones rings:0", 2, "--zones takes rings:N, areas:N, profile:N with N from 1 to"},
      {"a.csv --zones rings:1001", 2, "or quadrants, not 'rings:1001'"},
      {"a.csv --zones quadrants:2", 2, "or quadrants, not 'quadrants:2'"},
      {"a.csv --unit nm", 2,
       "--unit is that of the positions and takes mm, cm, um or in, not 'nm'; --value-unit names "
       "that of the values"},
      {"a.csv --test-diameter 60", 1,
       "--test-diameter: 60 mm is more than the wafer's 50 mm; give less, or a larger --diameter"},
      {"a.csv --residual sphere", 2, "--residual takes plane, radial or zernike:N"},
      {"a.csv --residual zernike:21", 2, "N from 0 to 20, not 'zernike:21'"},
      {"a.csv --residual zernike:2", 1,
       "a.csv: a: 4 sites for the 6 terms of the surface, so "
       "that nothing is left; give a lower order"},
      {"line.csv --residual plane", 0, "tell only 2 of them apart"},
      {"a.csv --rotate round", 2, "--rotate"},
      {"a.csv --mirror z", 2, "--mirror"},
      {"a.csv --minus mean", 1, "a.csv: has one wafer, which is its own mean"},
      {"a.csv --minus two.csv", 1, "a.csv: 'a' has 4 sites that two has not, and too few others"},
      {"a.csv --minus none.csv", 1, "none.csv: "},
  };
  for (const auto& row : rows) {
    const Outcome outcome = Run(std::string("stats ") + row.arguments);
    EXPECT_EQ(outcome.status, row.status) << row.arguments << '\n' << outcome.output;
    EXPECT_NE(outcome.output.find(row.says), std::string::npos) << row.arguments << '\n'
                                                                << outcome.output;
  }
  EXPECT_NE(Run("stats " + kLot + " --minus " + kLot + " --wafer 7").status, 1);
  Write("other.csv",
        "WAFER ID,A\nSLOT,1\nSite #,Value,X,Y\n1,5,0,0\n\nWAFER ID,B\nSLOT,2\n"
        "Site #,Value,X,Y\n1,5,0,0\n\n");
  EXPECT_NE(Run("stats a.csv --minus other.csv")
                .output.find("other.csv: has no wafer 'a' to subtract; it has A, B"),
            std::string::npos);
}

TEST_F(Stats, ListAllFiguresInTheirHelp) {
  const std::string help = Run("stats --help").output;
  for (const auto& figure : analysis::FiguresOfMerit()) {
    EXPECT_NE(help.find(std::string(figure.key) + ": " + std::string(figure.formula)),
              std::string::npos)
        << figure.key;
  }
}

}  // namespace
}  // namespace discoplan
