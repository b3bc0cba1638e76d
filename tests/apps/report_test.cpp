// SPDX-License-Identifier: MIT
#include "tests/apps/program_fixture.h"

#include <algorithm>

namespace discoplan {
namespace {

namespace fs = std::filesystem;

class Report : public ProgramFixture {
 protected:
  std::string TextOf(const std::string& file) const {
    return Shell("pdftotext -layout " + file + " - 2>/dev/null").output;
  }
  std::size_t Files() const {
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator(folder_), fs::directory_iterator()));
  }
};

TEST_F(Report, HoldsTextsThatCanBeFound) {
  const Outcome outcome = Run("report --look classic " + kLot +
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
  ASSERT_EQ(Run("report --look classic " + kLot + " -o lot.pdf --kind 2D --kind histo").status, 0);
  EXPECT_NE(Shell("pdfinfo lot.pdf").output.find("Pages:           25"), std::string::npos);
  const std::string text = TextOf("lot.pdf");
  for (const char* name : {"Slot01", "Slot13", "Slot25"}) {
    EXPECT_NE(text.find(name), std::string::npos) << name;
  }
}

TEST_F(Report, TakesPapersAndSeveralFiles) {
  Write("plain.csv", "X (mm),Y (mm),Value\n0,0,1\n10,0,3\n0,10,2\n-10,0,4\n0,-10,5\n");
  const struct {
    const char* options;
    const char* size;
  } rows[] = {{"", "595.3 x 841.9"},
              {"--landscape", "841.9 x 595.3"},
              {"--paper Letter", "612 x 792"},
              {"--paper Letter --landscape", "792 x 612"}};
  for (const auto& row : rows) {
    ASSERT_EQ(
        Run(std::string("report --look classic plain.csv plain.csv -o a.pdf --all ") + row.options)
            .status,
        0);
    const std::string info = Shell("pdfinfo a.pdf").output;
    EXPECT_NE(info.find("Pages:           2"), std::string::npos) << info;
    EXPECT_NE(info.find(row.size), std::string::npos) << row.size << '\n' << info;
  }
}

TEST_F(Report, OfFiguresHasACoverAGalleryAndAPageForEachWafer) {
  const struct {
    const char* options;
    int pages;
  } rows[] = {{"", 25}, {"--summary", 27}, {"--summary-only --landscape", 2}};
  for (const auto& row : rows) {
    const Outcome outcome = Run("report " + kLot +
                                " -o a.pdf --lot A1234 --title \"Oxide monitor\" --kind 2D --kind"
                                " histo " +
                                row.options);
    ASSERT_EQ(outcome.status, 0) << outcome.output;
    const std::string pages = "Pages:           " + std::to_string(row.pages) + "\n";
    EXPECT_NE(Shell("pdfinfo a.pdf").output.find(pages), std::string::npos) << row.options;
    const std::string text = TextOf("a.pdf");
    for (const char* part : {"Oxide monitor", "Lot A1234", "Slot01", "Slot13", "Slot25"}) {
      EXPECT_NE(text.find(part), std::string::npos) << part << row.options;
    }
  }
  const std::string text = TextOf("a.pdf");
  for (const char* part : {"Sigma between wafers", "Radial profiles", "9.7473 ± 0.2161"}) {
    EXPECT_NE(text.find(part), std::string::npos) << part;
  }
}

/// A word on a page, in points from its upper left corner.
struct Word {
  double left, top, right, bottom;
};

TEST_F(Report, KeepsTextsInTheirFramesAndApart) {
  for (const char* options : {"", "--landscape", "--paper Letter", "--paper Letter --landscape"}) {
    ASSERT_EQ(Run("report --look classic " + kLot + " --wafer 7 -o a.pdf --all " + options).status,
              0);
    const std::string words = Shell("pdftotext -bbox a.pdf -").output;
    const auto word = [&](const std::string& text) {
      const std::size_t end = words.find(">" + text + "</word>");
      EXPECT_NE(end, std::string::npos) << text;
      Word found{};
      if (end == std::string::npos) return found;
      EXPECT_EQ(std::sscanf(words.c_str() + words.rfind("<word", end),
                            "<word xMin=\"%lf\" yMin=\"%lf\" xMax=\"%lf\" yMax=\"%lf\"",
                            &found.left, &found.top, &found.right, &found.bottom),
                4);
      return found;
    };
    EXPECT_GT(word("Interval:").top, word("Contours").top) << options;
    EXPECT_GT(word("Angle:").top, word("scan").top) << options;
    const char* const along[] = {"Y=-147.00", "Y=-73.50", "Y=0.00", "Y=73.50", "Y=147.00"};
    for (int i = 0; i + 1 < 5; ++i) {
      EXPECT_LT(word(along[i]).right, word(along[i + 1]).left) << options << along[i];
    }
    const auto height = [&](const Word& of) { return of.bottom - of.top; };
    EXPECT_GE(height(word("Contours")), 0.5 * height(word("Statistics"))) << options;
  }
}

TEST_F(Report, LeavesNoFileBehindWhatFails) {
  Write("bad.csv", "0,0,1\n10,0,x\n");
  Write("good.csv", "X (mm),Y (mm),Value\n0,0,1\n10,0,2\n0,10,3\n-10,0,4\n");
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
              {"plot --look classic bad.csv -o a.pdf", 1},
              {"plot --look classic good.csv -o a.svg --kind 4D", 2}};
  for (const auto& row : rows) {
    const Outcome outcome = Run(row.arguments);
    EXPECT_EQ(outcome.status, row.status) << row.arguments << '\n' << outcome.output;
    EXPECT_EQ(std::ranges::count(outcome.output, '\n'), 1) << outcome.output;
    EXPECT_EQ(Files(), 2U) << row.arguments;
  }
}

TEST_F(Report, PlotsIntoVectorFiles) {
  ASSERT_EQ(
      Run("plot --look classic " + kLot + " --wafer 7 -o a.pdf --kind 2D --size 900x600").status,
      0);
  EXPECT_NE(Shell("pdfinfo a.pdf").output.find("675 x 450"), std::string::npos);
  EXPECT_NE(TextOf("a.pdf").find("10.3505 - 10.446"), std::string::npos);
  EXPECT_NE(Shell("pdfimages -list a.pdf").output.find("----\n"), std::string::npos);
  EXPECT_EQ(Shell("pdfimages -list a.pdf 2>/dev/null | wc -l").output, "2\n") << "no picture in it";
  ASSERT_EQ(Run("plot --look classic " + kLot + " --wafer 7 -o a.svg --kind linescan").status, 0);
  const std::string svg = Shell("cat a.svg").output;
  EXPECT_NE(svg.find("<svg"), std::string::npos);
  EXPECT_NE(svg.find("X=0.00"), std::string::npos);
  EXPECT_EQ(svg.find("<image"), std::string::npos);
  EXPECT_EQ(
      Run("plot --look classic " + kLot + " --wafer 7 -o all.pdf --kind all --set PlotCaption=x")
          .status,
      0);
}

TEST_F(Report, GivesEachPlotTheSizeAskedFor) {
  const struct {
    const char* kinds;
    const char* points;
  } rows[] = {{"--kind 2D", "300 x 150"},
              {"--kind 2D --kind histo", "600 x 150"},
              {"--kind all", "900 x 450"}};
  for (const auto& row : rows) {
    ASSERT_EQ(Run("plot --look classic " + kLot + " --wafer 7 -o a.pdf --size 400x200 " + row.kinds)
                  .status,
              0);
    const std::string info = Shell("pdfinfo a.pdf").output;
    EXPECT_NE(info.find(row.points), std::string::npos) << row.kinds << '\n' << info;
  }
}

TEST_F(Report, RefusesAPlotLargerThanPositionsOnPaper) {
  const Outcome outcome =
      Run("plot --look classic " + kLot + " --wafer 7 -o a.pdf --size 3000x3000 --kind linescan");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_NE(outcome.output.find("discoplan: --size: "), std::string::npos) << outcome.output;
  EXPECT_FALSE(Exists("a.pdf"));
}

TEST_F(Report, SaysNothingWhereAllIsWell) {
  fs::create_directory(folder_ / "run");
  fs::permissions(folder_ / "run", fs::perms::owner_all);
  for (const char* environment : {"env -u XDG_RUNTIME_DIR ", "env XDG_RUNTIME_DIR=$PWD/run "}) {
    for (const char* command : {"report ", "plot --look classic --wafer 7 "}) {
      const Outcome outcome = Shell(environment + Program() + " " + command + kLot + " -o a.pdf");
      EXPECT_EQ(outcome.status, 0);
      EXPECT_EQ(outcome.output, "") << environment << command;
    }
  }
}

TEST_F(Report, TakesACaptionWhereOneIsGiven) {
  const std::string report = "report --look classic " + kLot + " --wafer 7 -o a.pdf --kind 2D";
  ASSERT_EQ(Run(report).status, 0);
  EXPECT_NE(TextOf("a.pdf").find("Map"), std::string::npos);
  ASSERT_EQ(Run(report + " --caption Oxide").status, 0);
  EXPECT_NE(TextOf("a.pdf").find("Oxide"), std::string::npos);
  EXPECT_EQ(TextOf("a.pdf").find("Map"), std::string::npos);
}

TEST_F(Report, OfAWindowNeedsADisplay) {
  const Outcome outcome =
      Shell("env -u DISPLAY -u WAYLAND_DISPLAY -u QT_QPA_PLATFORM " + Program() + " view");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.output,
            "discoplan: there is no display for a window (DISPLAY and WAYLAND_DISPLAY aren't set); "
            "discoplan plot draws into a file\n");
}

TEST_F(Report, ExplainsItself) {
  const Outcome help = Run("report --help");
  EXPECT_EQ(help.status, 0);
  EXPECT_NE(help.output.find("--landscape"), std::string::npos);
  EXPECT_NE(Run("--help").output.find("report"), std::string::npos);
}

}  // namespace
}  // namespace discoplan
