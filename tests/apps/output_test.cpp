// SPDX-License-Identifier: MIT
#include <algorithm>
#include <nlohmann/json.hpp>

#include "tests/apps/program_fixture.h"

namespace discoplan {
namespace {

namespace fs = std::filesystem;

const std::string kFive = "X (mm),Y (mm),Value\n0,0,1\n10,0,3\n0,10,2\n-10,0,4\n0,-10,5\n";

class Output : public ProgramFixture {
 protected:
  Output() { Write("five.csv", kFive); }

  void ExpectComplaint(const std::string& arguments, int status, const std::string& says) const {
    const Outcome outcome = Run(arguments);
    EXPECT_EQ(outcome.status, status) << arguments << '\n' << outcome.output;
    EXPECT_NE(outcome.output.find(says), std::string::npos) << arguments << '\n' << outcome.output;
    EXPECT_TRUE(outcome.output.starts_with("discoplan: ")) << outcome.output;
    EXPECT_EQ(std::ranges::count(outcome.output, '\n'), 1) << outcome.output;
  }
};

TEST_F(Output, ThatIsLostIsAnError) {
  Write("requests.jsonl", "{\"op\":\"new\",\"class\":\"Plot2D\",\"id\":1}\n");
  for (const char* command : {"stats five.csv", "stats five.csv --json", "--help", "--version",
                              "plot --look classic --help", "automate requests.jsonl",
                              "automate - < requests.jsonl", "plot --look classic five.csv -o -"}) {
    const std::string text = command;
    ExpectComplaint(text + " > /dev/full", 1, "cannot write standard output: No space left");
    ExpectComplaint(text + " >&-", 1, "cannot write standard output: Bad file descriptor");
  }
}

TEST_F(Output, OfAutomationEndsItWhenLost) {
  Write("requests.jsonl",
        "{\"op\":\"new\",\"class\":\"Picture\",\"id\":1}\n"
        "{\"op\":\"save\",\"id\":1,\"file\":\"second.png\"}\n");
  EXPECT_EQ(Run("automate requests.jsonl > /dev/full").status, 1);
  EXPECT_FALSE(Exists("second.png"));
  EXPECT_EQ(Run("automate requests.jsonl").status, 0);
  EXPECT_TRUE(Exists("second.png"));
}

TEST_F(Output, OverwritesNeitherDataNorOtherOutput) {
  Write("keep.json", "{\"StdResx2D\": 3}");
  fs::create_directory(folder_ / "folder");
  fs::create_symlink("five.csv", folder_ / "link.png");
  fs::create_symlink("five.csv", folder_ / "link.pdf");
  fs::create_hard_link(folder_ / "five.csv", folder_ / "hard.png");
  const struct {
    const char* arguments;
    const char* says;
  } rows[] = {
      {"plot --look classic link.png -o link.png", "--output and DATA are the same file"},
      {"plot --look classic five.csv -o link.png", "--output and DATA are the same file"},
      {"plot --look classic five.csv -o hard.png", "--output and DATA are the same file"},
      {"plot --look classic five.csv -o link.pdf", "--output and DATA are the same file"},
      {"plot --look classic - -o link.png < five.csv", "--output and DATA are the same file"},
      {"plot --look classic folder/../five.csv -o a.png --save-settings five.csv",
       "--save-settings and DATA are the same file"},
      {"plot --look classic five.csv -o a.png --save-settings a.png",
       "--output and --save-settings are the same file"},
      {"plot --look classic five.csv -o a.png --save-settings folder/../a.png",
       "--output and --save-settings are the same file"},
      {"plot --look classic five.csv -o a.svg --save-settings a.svg",
       "--output and --save-settings are the same file"},
      {"plot --look classic five.csv -o keep.json --settings keep.json", "the ending is none of"},
      {"report link.png link.pdf -o link.pdf", "--output and DATA are the same file"},
      {"report five.csv -o a.pdf --save-settings a.pdf",
       "--output and --save-settings are the same file"},
      {"report five.csv -o a.pdf --save-settings five.csv",
       "--save-settings and DATA are the same file"},
  };
  for (const auto& row : rows) ExpectComplaint(row.arguments, 2, row.says);
  EXPECT_EQ(Read("five.csv"), kFive);
  EXPECT_EQ(Read("keep.json"), "{\"StdResx2D\": 3}");
  for (const char* name : {"a.png", "a.svg", "a.pdf"}) EXPECT_FALSE(Exists(name)) << name;
  // Settings may go back to where they came from.
  const Outcome back =
      Run("plot --look classic five.csv -o a.png --diameter 50 --settings keep.json "
          "--save-settings keep.json");
  EXPECT_EQ(back.status, 0) << back.output;
  EXPECT_NE(Read("keep.json").find("\"StdResx2D\": 3"), std::string::npos);
  EXPECT_EQ(Run("plot --look classic five.csv -o /dev/null --save-settings /dev/null").status, 0);
}

TEST_F(Output, HasTheFormatThatItsEndingNames) {
  const struct {
    const char* name;
    const char* start;
  } rows[] = {{"a.png", "\x89PNG"}, {"a.PNG", "\x89PNG"}, {"plain", "\x89PNG"}, {"a.pdf", "%PDF"},
              {"a.Pdf", "%PDF"},    {"a.svg", "<svg"},    {"a.Svg", "<svg"},    {"a.SVG", "<svg"}};
  for (const auto& row : rows) {
    const Outcome outcome = Run(std::string("plot --look classic five.csv -o ") + row.name);
    EXPECT_EQ(outcome.status, 0) << outcome.output;
    EXPECT_TRUE(Read(row.name).starts_with(row.start)) << row.name;
  }
  ExpectComplaint("plot --look classic five.csv -o b.jpg", 2, "none of .png, .pdf, .svg");
  ExpectComplaint("plot --look classic five.csv -o ''", 2, "--output: takes the name of a file");
  for (const char* name : {"b.svg", "b.png", "b"}) {
    ExpectComplaint(std::string("report five.csv -o ") + name, 2, "end it in .pdf");
    EXPECT_FALSE(Exists(name));
  }
  EXPECT_EQ(Run("report five.csv -o b.PDF").status, 0);
  EXPECT_TRUE(Read("b.PDF").starts_with("%PDF"));
}

TEST_F(Output, GoesToStandardOutputByAHyphen) {
  ASSERT_EQ(Run("plot --look classic five.csv -o a.png").status, 0);
  EXPECT_EQ(Run("plot --look classic five.csv -o - > b.png").status, 0);
  EXPECT_EQ(Read("b.png"), Read("a.png"));
  EXPECT_EQ(Run("report five.csv -o - > b.pdf").status, 0);
  EXPECT_TRUE(Read("b.pdf").starts_with("%PDF"));
  EXPECT_FALSE(Exists("-"));
}

TEST_F(Output, OfSettingsWaitsForThePicture) {
  Write("keep.json", "old");
  const struct {
    const char* arguments;
    int status;
  } rows[] = {{"plot --look classic five.csv -o a.png --limits 6 5", 2},
              {"plot --look classic five.csv -o a.png --diameter 5", 1},
              {"plot --look classic five.csv -o none/a.png", 1},
              {"plot --look classic five.csv -o none/a.pdf", 1},
              {"report --look classic five.csv -o none/a.pdf", 1},
              {"report --look classic five.csv none.csv -o a.pdf", 1}};
  for (const auto& row : rows) {
    EXPECT_EQ(Run(row.arguments + std::string(" --save-settings keep.json")).status, row.status);
    EXPECT_EQ(Read("keep.json"), "old") << row.arguments;
  }
  for (const char* command :
       {"plot --look classic five.csv -o a.png", "plot --look classic five.csv -o a.pdf",
        "report --look classic five.csv -o a.pdf"}) {
    Write("keep.json", "old");
    EXPECT_EQ(Run(command + std::string(" --save-settings keep.json --style flat")).status, 0);
    EXPECT_EQ(nlohmann::json::parse(Read("keep.json"))["2DFLAT"], 2) << command;
  }
}

}  // namespace
}  // namespace discoplan
