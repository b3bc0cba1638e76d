// SPDX-License-Identifier: MIT
// What is made of wafers, and what is left out of them: alike in all commands, and told by each.

#include <algorithm>

#include "tests/apps/program_fixture.h"

namespace discoplan {
namespace {

/// Without white space, which the text of a page may have in other places.
std::string Squeezed(std::string text) {
  text.erase(std::remove_if(text.begin(), text.end(),
                            [](unsigned char c) { return std::isspace(c) != 0; }),
             text.end());
  return text;
}

const char* const kCommands[] = {"stats",
                                 "plot",
                                 "plot --look classic",
                                 "report",
                                 "report --look classic",
                                 "lot",
                                 "lot --look classic"};

class DerivedPictures : public ProgramFixture {
 protected:
  DerivedPictures() {
    std::string lot = "Wafer,X (mm),Y (mm),Thickness (nm)\n";
    for (int wafer = 1; wafer <= 3; ++wafer) {
      for (int column = -2; column <= 2; ++column) {
        for (int row = -2; row <= 2; ++row) {
          const int value = 500 + 7 * wafer + 3 * column * row + wafer * row * row + 2 * column;
          lot += std::to_string(wafer) + ',' + std::to_string(30 * column) + ',' +
                 std::to_string(30 * row) + ',' + std::to_string(value) + '\n';
        }
      }
    }
    Write("lot.csv", lot);
    Write("other.csv", "X (mm),Y (mm),V\n-60,-60,1\n60,-60,2\n-60,60,3\n60,60,4\n0,0,5\n");
  }

  /// The texts of what a command gives, which must say nothing else but `warning`.
  std::string TextsOf(const std::string& command, const std::string& options,
                      const std::string& warning = {}) const {
    const std::string output = command == "stats"              ? " > out.txt"
                               : command.starts_with("report") ? " -o out.pdf"
                                                               : " -o out.svg";
    const Outcome outcome = Run(command + " lot.csv --by Wafer " + options + output);
    EXPECT_EQ(outcome.status, 0) << command << ' ' << options << '\n' << outcome.output;
    EXPECT_EQ(outcome.output.find(warning) != std::string::npos, true) << outcome.output;
    if (warning.empty()) {
      EXPECT_EQ(outcome.output, "") << command << ' ' << options;
    }
    if (command == "stats") return Squeezed(Read("out.txt"));
    if (command.starts_with("report")) return Squeezed(Shell("pdftotext -layout out.pdf -").output);
    return Squeezed(Read("out.svg"));
  }
};

TEST_F(DerivedPictures, TellInEachCommandWhatWasDone) {
  const struct {
    const char* options;
    const char* words;
  } rows[] = {
      {"--minus mean", "minus mean"},
      {"--minus lot2.csv", "minus lot2"},
      {"--residual plane", "residual of plane"},
      {"--residual radial", "residual of ring means"},
      {"--residual zernike:2", "residual of Zernike order 2"},
      {"--rotate 90", "turned by 90°"},
      {"--rotate 12.5", "turned by 12.5°"},
      {"--mirror y", "mirrored in y"},
      {"--mirror x --rotate 90 --minus mean --residual plane",
       "mirrored in x, turned by 90°, minus mean, residual of plane"},
  };
  Write("lot2.csv", "");
  ASSERT_EQ(Shell("grep -E '^(Wafer|2),' lot.csv | cut -d, -f2- > lot2.csv").status, 0);
  for (const std::string command : kCommands) {
    const std::string one = command.starts_with("lot") ? " " : " --wafer 1 ";
    for (const auto& row : rows) {
      const std::string texts = TextsOf(command, one + row.options);
      EXPECT_NE(texts.find(Squeezed(row.words)), std::string::npos) << command << row.options;
    }
    const std::string texts =
        TextsOf(command, one + "--minus other.csv", "values interpolated between other sites");
    EXPECT_NE(texts.find(Squeezed("minus other (interpolated)")), std::string::npos) << command;
  }
}

TEST_F(DerivedPictures, TellInEachCommandWhatWasLeftOut) {
  const std::string words = Squeezed("21 of 25 sites; 4 beyond 80 mm");
  for (const std::string command : kCommands) {
    const std::string one = command.starts_with("lot") ? " " : " --wafer 1 ";
    const std::string texts = TextsOf(command, one + "--test-diameter 160");
    EXPECT_NE(texts.find(words), std::string::npos) << command;
  }
}

// Whoever gives a title of his own must not get a picture without these words.
TEST_F(DerivedPictures, TellItUnderAnyCaption) {
  const std::string how = "--wafer 1 --minus mean --test-diameter 160 ";
  for (const std::string command : {"plot", "plot --look classic"}) {
    for (const std::string caption : {"--caption Oxide", "--caption ''"}) {
      const std::string texts = TextsOf(command, how + caption);
      EXPECT_NE(texts.find("minusmean"), std::string::npos) << command << caption;
      EXPECT_NE(texts.find("21of25sites"), std::string::npos) << command << caption;
    }
  }
  const std::string set = TextsOf("plot --look classic", how + "--set PlotCaption=Oxide");
  EXPECT_NE(set.find(Squeezed("Oxide, minus mean: 21 of 25 sites")), std::string::npos);
}

TEST_F(DerivedPictures, TellItWithSettingsToo) {
  const std::string classic = "plot --look classic";
  TextsOf(classic, "--wafer 1 --caption Oxide --test-diameter 160 --save-settings a.json");
  EXPECT_NE(Read("a.json").find("\"Oxide\""), std::string::npos) << Read("a.json");
  const std::string texts = TextsOf(classic, "--wafer 2 --minus mean --settings a.json");
  EXPECT_NE(texts.find(Squeezed("Oxide, minus mean: 21 of 25 sites; 4 beyond 80 mm")),
            std::string::npos);
  const std::string whole =
      TextsOf(classic, "--wafer 2 --settings a.json --test-diameter 170 --diameter 200");
  EXPECT_EQ(whole.find("beyond"), std::string::npos);
}

// The four corners lie 84.9 mm out.
TEST_F(DerivedPictures, LeaveOutTheSitesBeyondTheAreaOfTheSettings) {
  TextsOf("plot --look classic", "--wafer 1 --test-diameter 160 --save-settings a.json");
  for (const std::string how : {"--settings a.json", "--set TestDiameter=160"}) {
    const std::string plot = TextsOf("plot --look classic", "--wafer 2 " + how);
    EXPECT_NE(plot.find(Squeezed("21 of 25 sites; 4 beyond 80 mm")), std::string::npos) << how;
    const std::string page = TextsOf("report --look classic", "--wafer 2 " + how);
    EXPECT_NE(page.find(Squeezed("21 of 25 sites; 4 beyond 80 mm")), std::string::npos) << how;
  }
  const std::string wider = TextsOf("plot --look classic", "--wafer 2 --set TestDiameter=172");
  EXPECT_EQ(wider.find("beyond"), std::string::npos);
}

TEST_F(DerivedPictures, TakeTheUnitOfTheValues) {
  for (const std::string command :
       {"stats", "plot", "report", "report --look classic", "lot", "lot --look classic"}) {
    const std::string one = command.starts_with("lot") ? " " : " --wafer 1 ";
    EXPECT_NE(TextsOf(command, one + "--value-unit kayser").find("kayser"), std::string::npos)
        << command;
    EXPECT_NE(TextsOf(command, one).find("nm"), std::string::npos) << command;
  }
}

TEST_F(DerivedPictures, OfALotHaveACaptionAndLimitsInPercent) {
  const std::string texts = TextsOf("lot", "--caption 'Run 4' --limits 5% 95%");
  EXPECT_NE(texts.find("Run4"), std::string::npos);
  EXPECT_NE(texts.find(Squeezed("Colours: 5% to 95% of all sites")), std::string::npos);
}

}  // namespace
}  // namespace discoplan
