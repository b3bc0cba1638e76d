// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "tests/temporary_folder.h"

namespace {

namespace fs = std::filesystem;

const std::string kLot = DISCOPLAN_EXAMPLES "/native_oxide_lot.csv";
const std::string kFilm = DISCOPLAN_EXAMPLES "/thick_film_lot.csv";

struct Outcome {
  int status = 0;
  std::string output;
};

class Report : public testing::Test {
 protected:
  Outcome Shell(const std::string& command) const {
    const std::string line = "cd " + folder_.path().string() + " && " + command + " 2>&1";
    Outcome outcome;
    FILE* pipe = popen(line.c_str(), "r");
    char buffer[4096];
    for (std::size_t got = 0; (got = fread(buffer, 1, sizeof buffer, pipe)) > 0;) {
      outcome.output.append(buffer, got);
    }
    outcome.status = WEXITSTATUS(pclose(pipe));
    return outcome;
  }
  Outcome Run(const std::string& arguments) const {
    return Shell(DISCOPLAN_PROGRAM " " + arguments);
  }
  std::string TextOf(const std::string& file) const {
    return Shell("pdftotext -layout " + file + " -").output;
  }
  bool Exists(const std::string& name) const { return fs::exists(folder_.path() / name); }
  std::size_t Files() const {
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator(folder_.path()), fs::directory_iterator()));
  }

  const discoplan::TemporaryFolder folder_;
};

TEST_F(Report, HoldsTextsThatCanBeFound) {
  const Outcome outcome = Run("report " + kLot +
                              " --wafer 7 -o a.pdf --lot A1234 --wafer-id W7 --units angstrom"
                              " --title \"Oxide monitor\"");
  ASSERT_EQ(outcome.status, 0) << outcome.output;
  EXPECT_EQ(outcome.output, "");
  const std::string text = TextOf("a.pdf");
  for (const char* part : {"Oxide monitor",
                           "Lot A1234",
                           "Wafer W7",
                           "native_oxide_lot.csv",
                           "Wafer Statistics",
                           "Mean:",
                           "9.7473",
                           "Maximum:",
                           "10.446",
                           "Std. Dev:",
                           "0.2161365",
                           "2.22 %",
                           "Unit:",
                           "angstrom",
                           "Wafer Size",
                           "300.00 mm",
                           "294.00 mm",
                           "49",
                           "Notch",
                           "Legend",
                           "10.3505 - 10.446"}) {
    EXPECT_NE(text.find(part), std::string::npos) << part;
  }
}

TEST_F(Report, GivesEachWaferAPage) {
  ASSERT_EQ(Run("report " + kLot + " -o lot.pdf --kind 2D --kind histo").status, 0);
  EXPECT_NE(Shell("pdfinfo lot.pdf").output.find("Pages:           25"), std::string::npos);
  const std::string text = TextOf("lot.pdf");
  for (const char* name : {"Slot01", "Slot13", "Slot25"}) {
    EXPECT_NE(text.find(name), std::string::npos) << name;
  }
}

TEST_F(Report, TakesPapersAndSeveralFiles) {
  folder_.Write("plain.csv", "0,0,1\n10,0,2\n0,10,3\n-10,0,4\n0,-10,5\n");
  const struct {
    const char* options;
    const char* size;
  } rows[] = {{"", "595 x 842"},
              {"--landscape", "842 x 595"},
              {"--paper Letter", "612 x 792"},
              {"--paper Letter --landscape", "792 x 612"}};
  for (const auto& row : rows) {
    ASSERT_EQ(Run(std::string("report plain.csv plain.csv -o a.pdf --all ") + row.options).status,
              0);
    const std::string info = Shell("pdfinfo a.pdf").output;
    EXPECT_NE(info.find("Pages:           2"), std::string::npos) << info;
    EXPECT_NE(info.find(row.size), std::string::npos) << row.size << '\n' << info;
  }
}

TEST_F(Report, LeavesNoFileBehindWhatFails) {
  folder_.Write("bad.csv", "0,0,1\n10,0,x\n");
  folder_.Write("good.csv", "0,0,1\n10,0,2\n0,10,3\n");
  const struct {
    std::string arguments;
    int status;
  } rows[] = {{"report good.csv bad.csv -o a.pdf", 1},
              {"report none.csv -o a.pdf", 1},
              {"report good.csv -o nowhere/a.pdf", 1},
              {"report good.csv -o a.pdf --kind 4D", 2},
              {"report good.csv -o a.pdf --paper A7", 2},
              {"report good.csv", 2},
              {"report good.csv good.csv -o a.pdf --wafer-id W", 2},
              {"plot bad.csv -o a.pdf", 1},
              {"plot good.csv -o a.svg --kind 4D", 2}};
  for (const auto& row : rows) {
    const Outcome outcome = Run(row.arguments);
    EXPECT_EQ(outcome.status, row.status) << row.arguments << '\n' << outcome.output;
    EXPECT_EQ(std::ranges::count(outcome.output, '\n'), 1) << outcome.output;
    EXPECT_EQ(Files(), 2U) << row.arguments;
  }
}

TEST_F(Report, PlotsIntoVectorFiles) {
  ASSERT_EQ(Run("plot " + kLot + " --wafer 7 -o a.pdf --kind 2D --size 900x600").status, 0);
  EXPECT_NE(Shell("pdfinfo a.pdf").output.find("675 x 450"), std::string::npos);
  EXPECT_NE(TextOf("a.pdf").find("10.3505 - 10.446"), std::string::npos);
  EXPECT_NE(Shell("pdfimages -list a.pdf").output.find("----\n"), std::string::npos);
  EXPECT_EQ(Shell("pdfimages -list a.pdf | wc -l").output, "2\n") << "no picture in it";
  ASSERT_EQ(Run("plot " + kLot + " --wafer 7 -o a.svg --kind linescan").status, 0);
  const std::string svg = Shell("cat a.svg").output;
  EXPECT_NE(svg.find("<svg"), std::string::npos);
  EXPECT_NE(svg.find("X=0.00"), std::string::npos);
  EXPECT_EQ(svg.find("<image"), std::string::npos);
  EXPECT_EQ(Run("plot " + kLot + " --wafer 7 -o all.pdf --kind all --set PlotCaption=x").status, 0);
}

TEST_F(Report, ExplainsItself) {
  const Outcome help = Run("report --help");
  EXPECT_EQ(help.status, 0);
  EXPECT_NE(help.output.find("--landscape"), std::string::npos);
  EXPECT_NE(Run("--help").output.find("report"), std::string::npos);
}

}  // namespace
