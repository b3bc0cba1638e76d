// SPDX-License-Identifier: MIT
#include "tests/apps/program_fixture.h"

namespace discoplan {
namespace {

class MeasuredWafer : public ProgramFixture {
 protected:
  MeasuredWafer() {
    Write("five.csv", "X (mm),Y (mm),Value\n0,0,1\n10,0,3\n0,10,2\n-10,0,4\n0,-10,5\n");
    Write("three.csv", "X (mm),Y (mm),Value\n0,0,1\n10,0,2\n0,10,3\n");
    Write("one.csv", "0,0,1\n");
    Write("far.csv", "X (mm),Y (mm),Value\n0,0,1\n10,0,3\n0,10,2\n-10,0,4\n0,-90,5\n");
    Write("huge.csv",
          "X (mm),Y (mm),Value\n0,0,1e30\n10,0,2e30\n0,10,3e30\n-10,0,4e30\n0,-10,5e30\n");
    Write("tiny.csv",
          "X (mm),Y (mm),Value\n0,0,1e-14\n10,0,-2e-16\n0,10,0\n-10,0,1e-15\n0,-10,9e-16\n");
    Write("micro.csv",
          "X (mm),Y (mm),Value\n0,0,1\n90000,0,3\n0,90000,2\n-90000,0,4\n0,-90000,5\n");
  }

  void ExpectLine(const std::string& arguments, int status, const std::string& line) const {
    const Outcome outcome = Run(arguments);
    EXPECT_EQ(outcome.status, status) << arguments;
    EXPECT_EQ(outcome.output, line.empty() ? "" : "discoplan: " + line + '\n') << arguments;
  }
  std::string Picture(const std::string& options) const {
    const Outcome outcome = Run("plot --look classic five.csv -o a.png " + options);
    EXPECT_EQ(outcome.status, 0) << outcome.output;
    return Read("a.png");
  }
};

TEST_F(MeasuredWafer, WithTooFewSitesForAPlotIsDrawnWithAWarning) {
  const std::string three =
      "three.csv: 3 sites, and a plot of kind 2D stays empty below 4; "
      "--kind 2DN or 3DB shows the values";
  ExpectLine("plot --look classic three.csv -o a.png", 0, three);
  ExpectLine("plot --look classic three.csv -o a.png --kind all", 0, three);
  ExpectLine("plot --look classic three.csv -o a.pdf", 0, three);
  ExpectLine("report --look classic three.csv -o a.pdf", 0, three);
  ExpectLine("plot --look classic three.csv -o a.png --kind 2DN --kind 3DB --kind histo", 0, "");
  ExpectLine("plot --look classic one.csv -o a.png --kind 2DN --kind histo", 0,
             "one.csv: 1 site, and a plot of kind histo stays empty below 2; "
             "--kind 2DN or 3DB shows the values");
  ExpectLine("plot --look classic five.csv -o a.png --kind all", 0, "");
}

TEST_F(MeasuredWafer, ThatDoesNotFitSaysWhy) {
  const struct {
    const char* arguments;
    const char* line;
  } rows[] = {
      {"plot --look classic far.csv -o a.png --diameter 100",
       "far.csv: a site is 90 mm from the centre, outside a wafer of 100 mm across; "
       "give a larger --diameter"},
      {"report far.csv -o a.pdf --diameter 179",
       "far.csv: a site is 90 mm from the centre, outside a wafer of 179 mm across; "
       "give a larger --diameter"},
      {"plot --look classic huge.csv -o a.png",
       "huge.csv: the values are too large, so that sums of them don't fit 32-bit floats; "
       "scale the values down"},
      {"plot --look classic micro.csv -o a.png",
       "micro.csv: a site is 90000 mm from the centre; positions are millimetres, scale them, or "
       "give --diameter if they are"},
  };
  for (const auto& row : rows) {
    ExpectLine(row.arguments, 1, row.line);
    EXPECT_FALSE(Exists("a.png"));
    EXPECT_FALSE(Exists("a.pdf"));
  }
  ExpectLine("plot --look classic micro.csv -o a.png --diameter 200000 --kind all --size 100x100",
             0, "");
  ExpectLine("plot --look classic far.csv -o a.png --diameter 180", 0, "");
  ExpectLine("plot --look classic far.csv -o a.png --diameter 179.5", 0,
             "");  // beyond the edge by rounding
  ExpectLine("plot --look classic far.csv -o a.png --test-diameter 50", 0, "");
}

TEST_F(MeasuredWafer, WithValuesTakenForZeroIsDrawnWithAWarning) {
  const std::string line =
      "tiny.csv: 2 values too small to be told from 0 (first -2E-16), plotted as 0; "
      "scale the values up";
  ExpectLine("plot --look classic tiny.csv -o a.png --kind all", 0, line);
  ExpectLine("report tiny.csv -o a.pdf", 0, line);
}

TEST_F(MeasuredWafer, HasALookThatFitsTheDiameterAskedFor) {
  // 294 mm in 200 cells, and a bar over the whole range of 4 of a fifth of 300 mm.
  EXPECT_EQ(Picture("--diameter 300"), Picture("--diameter 300 --set Resolution=1.47"));
  EXPECT_EQ(Picture("--diameter 300 --test-diameter 100"),
            Picture("--diameter 300 --test-diameter 100 --set Resolution=0.5"));
  EXPECT_EQ(Picture("--kind 3DB --diameter 300"),
            Picture("--kind 3DB --diameter 300 --set BeamScale=15"));
}

TEST_F(MeasuredWafer, HasANamePaddedByCharacters) {
  Write("Größe.csv", "0,0,1\n10,0,2\n");
  Write("Groesse.csv", "0,0,1\n10,0,2\n");
  const auto row = [&](const std::string& name) {
    const std::string table = Run("stats " + name + ".csv").output;
    return table.substr(table.find('\n') + 1 + name.size());
  };
  EXPECT_EQ(row("Größe"), "  " + row("Groesse"));
}

TEST_F(MeasuredWafer, ComesFromStandardInputByAHyphen) {
  const std::string table = Run("stats five.csv").output;
  EXPECT_EQ(Shell("cat five.csv | " + Program() + " stats -").output.substr(16),
            table.substr(16).replace(table.find("five") - 16, 5, "stdin"));
  ExpectLine("plot --look classic - -o a.png < five.csv", 0, "");
  EXPECT_TRUE(IsPng("a.png"));
  EXPECT_EQ(Shell("cat five.csv | " + Program() + " plot - -o a.pdf").status, 0);
  EXPECT_TRUE(Read("a.pdf").starts_with("%PDF"));
  EXPECT_EQ(Shell("cat five.csv | " + Program() + " report - five.csv -o b.pdf").status, 0);
}

}  // namespace
}  // namespace discoplan
