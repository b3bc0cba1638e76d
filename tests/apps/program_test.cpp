// SPDX-License-Identifier: MIT
#include "tests/apps/program_fixture.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <sstream>

namespace discoplan {
namespace {

namespace fs = std::filesystem;

class Program : public ProgramFixture {};

TEST_F(Program, PlotsEachFormOfData) {
  Write("plain.csv", "X (mm),Y (mm),Value\n0,0,1\n10,0,3\n0,10,2\n-10,0,4\n0,-10,5\n");
  for (const std::string& data :
       {kLot + " --wafer 7", kFilm + " --columns X,Y,slot3", std::string("plain.csv")}) {
    fs::remove(folder_ / "map.png");
    const Outcome outcome = Run("plot " + data + " -o map.png");
    EXPECT_EQ(outcome.status, 0) << data;
    EXPECT_EQ(outcome.output, "") << data;
    EXPECT_TRUE(IsPng("map.png")) << data;
  }
}

// The header of a PNG file tells its size at byte 16, big-endian.
TEST_F(Program, ArrangesSeveralKindsInASheet) {
  const auto size = [&] {
    std::ifstream file(folder_ / "sheet.png", std::ios::binary);
    std::string head(24, '\0');
    file.read(head.data(), 24);
    const auto number = [&](std::size_t at) {
      int value = 0;
      for (std::size_t i = at; i < at + 4; ++i)
        value = value * 256 + static_cast<unsigned char>(head[i]);
      return value;
    };
    return std::pair(number(16), number(20));
  };
  const struct {
    const char* kinds;
    std::pair<int, int> size;
  } rows[] = {{"--kind histo", {200, 150}},
              {"--kind 2D --kind 3DB", {400, 150}},
              {"--kind 2D --kind 3DB --kind linescan", {400, 300}},
              {"--kind all", {600, 450}}};
  for (const auto& row : rows) {
    const Outcome outcome =
        Run("plot " + kLot + " --wafer 7 -o sheet.png --size 200x150 " + row.kinds);
    EXPECT_EQ(outcome.status, 0) << outcome.output;
    EXPECT_EQ(size(), row.size) << row.kinds;
  }
}

TEST_F(Program, KeepsSettingsInAFile) {
  const std::string plot = "plot --look classic " + kLot + " --wafer 7 -o map.png ";
  Outcome outcome = Run(plot + "--set Resolution=3.5 --style flat --save-settings a.json");
  ASSERT_EQ(outcome.status, 0) << outcome.output;
  outcome = Run(plot + "--settings a.json --set ShowSites=true --save-settings b.json");
  ASSERT_EQ(outcome.status, 0) << outcome.output;
  std::ifstream file(folder_ / "b.json");
  const auto settings = nlohmann::json::parse(file);
  EXPECT_EQ(settings["StdResx2D"], 3.5);
  EXPECT_EQ(settings["2DFLAT"], 2);
  EXPECT_EQ(settings["2DWAFERDM"], 300);
  EXPECT_EQ(settings["StdMark2D"], -1);

  Write("wrong.json", "{\"StdResx9D\": 3}");
  fs::remove(folder_ / "map.png");
  for (const char* name : {"wrong.json", "none.json"}) {
    outcome = Run(plot + "--settings " + name);
    EXPECT_EQ(outcome.status, 1) << outcome.output;
    EXPECT_NE(outcome.output.find(name), std::string::npos) << outcome.output;
    EXPECT_EQ(std::ranges::count(outcome.output, '\n'), 1) << outcome.output;
  }
  EXPECT_FALSE(fs::exists(folder_ / "map.png"));
  EXPECT_EQ(Run(plot + "--kind all --settings a.json").status, 2);
}

TEST_F(Program, ReadsWhatABinaryFileHolds) {
  const double blocks[3][5] = {{0, 90, 0, -90, 0}, {0, 0, 90, 0, -90}, {1, 2, 3, 4, 5}};
  Write("sites.dat", std::string(reinterpret_cast<const char*>(blocks), sizeof blocks));
  const Outcome outcome = Run("stats sites.dat --json");
  ASSERT_EQ(outcome.status, 0) << outcome.output;
  const auto stats = nlohmann::json::parse(outcome.output).at(0);
  EXPECT_EQ(stats["sites"], 5);
  EXPECT_EQ(stats["mean"], 3);
  EXPECT_EQ(stats["minimum"], 1);
  EXPECT_EQ(stats["maximum"], 5);
  EXPECT_EQ(stats["range"], 4);
}

TEST_F(Program, ListsAllWafersOfALot) {
  const Outcome outcome = Run("stats " + kLot + " --json");
  ASSERT_EQ(outcome.status, 0) << outcome.output;
  const auto stats = nlohmann::json::parse(outcome.output);
  ASSERT_EQ(stats.size(), 25U);
  EXPECT_EQ(stats[24]["slot"], 25);
  EXPECT_NE(Run("stats " + kLot).output.find("Slot25"), std::string::npos);
}

TEST_F(Program, TakesEveryOptionOfAPlot) {
  const Outcome outcome =
      Run("plot --look classic " + kLot +
          " --wafer 7 -o map.png --diameter 300 --test-diameter 290 --style flat --limits 9 11"
          " --size 500x400 --set Resolution=4 --set ShowSites=ShowSite --set IntervalColor3=#FF8000"
          " --caption Oxide --no-legend");
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.output, "");
  EXPECT_TRUE(IsPng("map.png"));
}

TEST_F(Program, DrawsTheSamePictureOnAnyNumberOfThreads) {
  const auto picture = [&](const std::string& threads) {
    const Outcome outcome =
        Run("plot --look classic " + kLot + " --wafer 7 --kind all -o map.png" + threads);
    EXPECT_EQ(outcome.status, 0) << outcome.output;
    std::ifstream file(folder_ / "map.png", std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
  };
  EXPECT_TRUE(picture(" --threads 2") == picture(""));
}

TEST_F(Program, SaysHowManyRowsItLeftOut) {
  Write("holes.csv", "X,Y,V\n0,0,1\n10,0,\n0,10,3\n-10,0,nan\n0,-10,5\n1,1,1\n");
  const Outcome outcome = Run("plot --look classic holes.csv --skip-invalid -o map.png");
  EXPECT_EQ(outcome.status, 0);
  EXPECT_NE(outcome.output.find("holes.csv: left out 2 rows"), std::string::npos) << outcome.output;
  EXPECT_TRUE(IsPng("map.png"));
}

struct Complaint {
  const char* arguments;
  int status;
  const char* says;
};

class ProgramComplains : public Program, public testing::WithParamInterface<Complaint> {};

TEST_P(ProgramComplains, InOneLineAndLeavesNoFile) {
  Write("empty.csv", "");
  Write("short.csv", "X,Y,V\n0,0,1\n1,1\n");
  Write("text.csv", "X,Y,V\n0,0,1\n1,abc,2\n");
  Write("nan.csv", "X,Y,V\n0,0,1\n1,1,inf\n");
  Write("ok.csv", "X (mm),Y (mm),V\n0,0,1\n1,1,2\n2,2,3\n3,1,4\n");
  Write("large.json", "{\"StdResx2D\": 1e400}");
  Write("far.csv", "0 0 1\n1 1 2\n2 2 3\n3 3 4\n4 4 5\n5 5 6\n6 6 7\n7 7 8\n8 8 9\n90 0 9\n");
  fs::create_directory(folder_ / "folder");
  const Complaint& due = GetParam();
  const Outcome outcome = Run(due.arguments);
  EXPECT_EQ(outcome.status, due.status);
  EXPECT_NE(outcome.output.find(due.says), std::string::npos) << outcome.output;
  EXPECT_EQ(std::ranges::count(outcome.output, '\n'), 1) << outcome.output;
  EXPECT_TRUE(outcome.output.starts_with("discoplan: ")) << outcome.output;
  for (const auto& entry : fs::recursive_directory_iterator(folder_)) {
    EXPECT_EQ(entry.path().string().find("map"), std::string::npos) << entry.path();
  }
}

INSTANTIATE_TEST_SUITE_P(
    Bad, ProgramComplains,
    testing::Values(
        Complaint{"", 2, "give a command: plot, stats, lot, report, view, automate"},
        Complaint{"bogus", 2, "no command 'bogus'"}, Complaint{"plot", 2, "required"},
        Complaint{"plot --look classic ok.csv", 2, "--output"},
        Complaint{"plot --look classic ok.csv -o map.png --size 10", 2, "--size"},
        Complaint{"plot --look classic ok.csv -o map.png --size 800x600x2", 2, "--size"},
        Complaint{"plot --look classic ok.csv -o map.png --style round", 2, "round"},
        Complaint{"plot --look classic ok.csv -o map.png --limits 5 5", 2, "LOW below HIGH"},
        Complaint{"plot --look classic ok.csv -o map.png --diameter -3", 2, "--diameter"},
        Complaint{"plot --look classic ok.csv -o map.png --set Colour=1", 2, "'Colour' is none of"},
        Complaint{"plot --look classic ok.csv -o map.png --set Resolution=fine", 2,
                  "'fine' is no value"},
        Complaint{"plot --look classic ok.csv -o map.png --set WaferStyle=Round", 2,
                  "one of Notch, Flat"},
        Complaint{"plot --look classic ok.csv -o map.png --set IntervalColor0=red", 2,
                  "'red' is no value of type colour; it is #RRGGBB, such as #FF0000 for red"},
        Complaint{"plot --look classic ok.csv -o map.png --set HideLegend=maybe", 2,
                  "it is true or false"},
        Complaint{"plot --look classic ok.csv -o map.png --set Resolution", 2, "NAME=VALUE"},
        Complaint{"plot --look classic ok.csv -o map.png --kind 4D", 2, "'4D' is none of"},
        Complaint{"plot --look classic missing.csv -o map.png", 1, "missing.csv: "},
        Complaint{"plot --look classic folder -o map.png", 1, "folder: "},
        Complaint{"plot --look classic empty.csv -o map.png", 1, "empty.csv: "},
        Complaint{"plot --look classic short.csv -o map.png", 1, "short.csv:3: "},
        Complaint{"plot --look classic text.csv -o map.png", 1, "text.csv:3:2: "},
        Complaint{"plot --look classic nan.csv -o map.png", 1, "nan.csv:3:3: "},
        Complaint{"plot --look classic ok.csv --columns X,Y,Z -o map.png", 1, "'Z'"},
        Complaint{"plot --look classic far.csv -o map.png --diameter 50", 1,
                  "give a larger --diameter"},
        Complaint{"plot --look classic ok.csv -o none/map.png", 1, "cannot write 'none/map.png'"},
        Complaint{"plot --look classic ok.csv -o folder", 1, "cannot write 'folder'"},
        Complaint{"plot --look classic --bogus a", 2,
                  "no place for '--bogus'; discoplan plot --help"},
        Complaint{"plot --look classic ok.csv -o map.png --bogus", 2, "no place for '--bogus'"},
        Complaint{"plot --look classic ok.csv ok.csv -o map.png", 2, "no place for 'ok.csv'"},
        Complaint{"--bogus", 2, "no place for '--bogus'; discoplan --help"},
        Complaint{"plot --look classic '' -o map.png", 2, "DATA: takes the name of a file"},
        Complaint{"plot --look classic ok.csv -o map.png --diameter nan", 2,
                  "--diameter: takes a positive number, not 'nan'"},
        Complaint{"plot --look classic ok.csv -o map.png --diameter 1e39", 2, "not '1e39'"},
        Complaint{"plot --look classic ok.csv -o map.png --diameter 0", 2, "not '0'"},
        Complaint{"plot --look classic ok.csv -o map.png --diameter 300mm", 2, "not '300mm'"},
        Complaint{"plot --look classic ok.csv -o map.png --test-diameter inf", 2,
                  "--test-diameter: takes a positive number, not 'inf'"},
        Complaint{"plot --look classic ok.csv -o map.png --test-diameter 51", 1,
                  "51 mm is more than the wafer's 50 mm"},
        Complaint{"plot --look classic ok.csv -o map.png --diameter 40 --test-diameter 41", 1,
                  "41 mm is more than the wafer's 40 mm"},
        Complaint{"plot --look classic ok.csv -o map.png --limits -1e300 1e300", 2,
                  "--limits: takes a number that a 32-bit float holds, not '-1e300'"},
        Complaint{"plot --look classic ok.csv -o map.png --limits -3e38 3e38", 2,
                  "scale the values"},
        Complaint{"plot --look classic ok.csv -o map.png --limits 2e38 3e38", 2,
                  "scale the values"},
        Complaint{"plot --look classic ok.csv -o map.png --limits 0 nan", 2, "not 'nan'"},
        Complaint{"plot --look classic ok.csv -o map.png --kind 3D --set XResolution=0.0499", 2,
                  "can't be below 0.05 mm"},
        Complaint{"plot --look classic ok.csv -o map.png --kind 3DS --set YResolution=0.004", 2,
                  "can't be below 0.05 mm"},
        Complaint{"plot --look classic ok.csv -o map.png --settings folder", 1,
                  "cannot use 'folder'"},
        Complaint{"plot --look classic ok.csv -o map.png --settings large.json", 1,
                  "cannot use 'large.json': a number in it is out of"},
        Complaint{"plot --look classic 'lines\nmore.csv' -o map.png", 1, "lines?more.csv: "},
        Complaint{"stats missing.csv", 1, "missing.csv: "},
        Complaint{"automate missing.jsonl", 1,
                  "missing.jsonl: the file can't be read (No such file or directory)"},
        Complaint{"automate folder", 1, "folder: the file can't be read (Is a directory)"},
        Complaint{"automate empty.csv", 1, "empty.csv: the file is empty"}));

TEST_F(Program, AnswersAutomationRequestsInOrder) {
  Write("requests.jsonl",
        "{\"op\":\"new\",\"class\":\"Plot2D\",\"id\":1}\nnonsense\n{\"op\":\"get\",\"id\":1,"
        "\"name\":\"WaferDiameter\"}");
  for (const char* how :
       {"automate requests.jsonl", "automate < requests.jsonl", "automate - < requests.jsonl"}) {
    const Outcome outcome = Run(how);
    EXPECT_EQ(outcome.status, 0);
    std::istringstream lines(outcome.output);
    std::vector<nlohmann::json> replies;
    for (std::string line; std::getline(lines, line);)
      replies.push_back(nlohmann::json::parse(line));
    ASSERT_EQ(replies.size(), 3U);
    EXPECT_EQ(replies[0]["ok"], true);
    EXPECT_EQ(replies[1]["ok"], false);
    EXPECT_EQ(replies[2]["value"], 200);
  }
}

TEST_F(Program, ShowsHelpWithExamplesOnEveryLevel) {
  for (const char* level : {"--help", "plot --look classic --help", "stats --help", "lot --help",
                            "automate --help", "describe --help"}) {
    const Outcome outcome = Run(level);
    EXPECT_EQ(outcome.status, 0) << level;
    EXPECT_NE(outcome.output.find("discoplan "), std::string::npos) << level;
    EXPECT_NE(outcome.output.find("Example"), std::string::npos) << level;
  }
}

}  // namespace
}  // namespace discoplan
