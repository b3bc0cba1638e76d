// SPDX-License-Identifier: MIT
#include "tests/apps/program_fixture.h"

namespace discoplan {
namespace {

class MeasuredWafer : public ProgramFixture {
 protected:
  MeasuredWafer() {
    Write("five.csv", "0,0,1\n10,0,2\n0,10,3\n-10,0,4\n0,-10,5\n");
    Write("three.csv", "0,0,1\n10,0,2\n0,10,3\n");
    Write("one.csv", "0,0,1\n");
    Write("far.csv", "0,0,1\n10,0,2\n0,10,3\n-10,0,4\n0,-90,5\n");
    Write("huge.csv", "0,0,1\n10,0,1e30\n0,10,3\n-10,0,4\n0,-10,5\n");
    Write("tiny.csv", "0,0,1e-14\n10,0,-2e-16\n0,10,0\n-10,0,1e-15\n0,-10,9e-16\n");
    Write("micro.csv", "0,0,1\n90000,0,2\n0,90000,3\n-90000,0,4\n0,-90000,5\n");
  }

  void ExpectLine(const std::string& arguments, int status, const std::string& line) const {
    const Outcome outcome = Run(arguments);
    EXPECT_EQ(outcome.status, status) << arguments;
    EXPECT_EQ(outcome.output, line.empty() ? "" : "discoplan: " + line + '\n') << arguments;
  }
};

TEST_F(MeasuredWafer, HasANamePaddedByCharacters) {
  Write("Größe.csv", "0,0,1\n10,0,2\n");
  Write("Groesse.csv", "0,0,1\n10,0,2\n");
  const auto row = [&](const std::string& name) {
    const std::string table = Run("stats " + name + ".csv").output;
    return table.substr(table.find('\n') + 1 + name.size());
  };
  EXPECT_EQ(row("Größe"), "  " + row("Groesse"));
}

TEST_F(MeasuredWafer, WithValuesTakenForZeroIsDrawnWithAWarning) {
  const std::string line =
      "tiny.csv: 2 values too small to be told from 0 (first -2E-16), plotted as 0; "
      "scale the values up";
  ExpectLine("plot tiny.csv -o a.png --kind all", 0, line);
  ExpectLine("report tiny.csv -o a.pdf", 0, line);
}

TEST_F(MeasuredWafer, ComesFromStandardInputByAHyphen) {
  const std::string table = Run("stats five.csv").output;
  EXPECT_EQ(Shell("cat five.csv | " DISCOPLAN_PROGRAM " stats -").output.substr(16),
            table.substr(16).replace(table.find("five") - 16, 5, "stdin"));
  ExpectLine("plot - -o a.png < five.csv", 0, "");
  EXPECT_TRUE(IsPng("a.png"));
  EXPECT_EQ(Shell("cat five.csv | " DISCOPLAN_PROGRAM " plot - -o a.pdf").status, 0);
  EXPECT_TRUE(Read("a.pdf").starts_with("%PDF"));
}

TEST_F(MeasuredWafer, ThatIsTooLargeHasNoStatistics) {
  ExpectLine("stats huge.csv", 1,
             "huge.csv: the values are too large, so that sums of them don't fit 32-bit floats; "
             "scale the values down");
}

}  // namespace
}  // namespace discoplan
