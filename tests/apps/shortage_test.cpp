// SPDX-License-Identifier: MIT
#include <algorithm>
#include <nlohmann/json.hpp>

#include "tests/apps/program_fixture.h"

namespace discoplan {
namespace {

/// Programs that get less than they need.
class Shortage : public ProgramFixture {
 protected:
  Shortage() {
    // Where memory is watched, the watching alone takes more than is given here.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    watched_ = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
    watched_ = true;
#endif
#endif
  }

  /// With so many KiB of addresses; 127 is the loader's own word that not even it has room.
  Outcome RunWithin(int kib, const std::string& arguments) const {
    return Shell("ulimit -v " + std::to_string(kib) + "; " + Program() + " " + arguments);
  }

  bool watched_ = false;
};

TEST_F(Shortage, OfAReaderIsToldInOneLine) {
  Write("five.csv", "X (mm),Y (mm),V\n0,0,1\n10,0,3\n0,10,2\n-10,0,4\n0,-10,5\n");
  Write("requests.jsonl", "{\"op\":\"new\",\"class\":\"Plot2D\",\"id\":1}\n");
  for (const char* arguments :
       {"stats five.csv", "plot five.csv -o -", "plot five.csv -o - --kind linescan",
        "report five.csv -o -", "automate requests.jsonl", "--help"}) {
    // The reader is gone before anything is written.
    Shell("{ sleep 0.2; " + Program() + " " + arguments + " 2> said; echo $? > status; } | true");
    EXPECT_EQ(Read("status"), "1\n") << arguments;
    EXPECT_EQ(Read("said"), "discoplan: cannot write standard output: Broken pipe\n") << arguments;
  }
}

TEST_F(Shortage, OfMemoryIsToldInOneLine) {
  if (watched_) GTEST_SKIP();
  const std::string commands[] = {
      "plot " + kLot + " --wafer 7 -o map.png --size 10000x10000",
      "plot " + kLot + " --wafer 7 -o map.png --kind 2D --kind 3D --size 9000x9000",
      "plot " + kLot + " --wafer 7 -o map.pdf --kind 3D",
      "report " + kLot + " -o map.pdf --all",
      "stats " + kLot,
  };
  int told = 0;
  for (const std::string& command : commands) {
    for (int kib = 20000; kib < 500000; kib += kib / 3) {
      std::filesystem::remove(folder_ / "map.png");
      std::filesystem::remove(folder_ / "map.pdf");
      const Outcome outcome = RunWithin(kib, command);
      if (outcome.status == 0 || outcome.status == 127) continue;
      ++told;
      EXPECT_EQ(outcome.status, 1) << kib << ' ' << command << '\n' << outcome.output;
      EXPECT_TRUE(outcome.output.starts_with("discoplan: ")) << kib << ' ' << command << '\n'
                                                             << outcome.output;
      EXPECT_EQ(std::ranges::count(outcome.output, '\n'), 1) << kib << ' ' << command << '\n'
                                                             << outcome.output;
      EXPECT_FALSE(Exists("map.png") || Exists("map.pdf")) << kib << ' ' << command;
    }
  }
  EXPECT_GT(told, 4);
}

TEST_F(Shortage, OfThreadsNamesTheOption) {
  if (watched_) GTEST_SKIP();
  const Outcome outcome = RunWithin(200000, "plot " + kLot + " --wafer 7 -o map.png --threads 64");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_TRUE(outcome.output.starts_with("discoplan: --threads: there is no room for 64 threads"))
      << outcome.output;
}

TEST_F(Shortage, OfMemoryIsAnAnswerOfAutomation) {
  if (watched_) GTEST_SKIP();
  std::string requests =
      "{\"op\":\"new\",\"class\":\"Plot2D\",\"id\":1,\"width\":15000,\"height\":15000}\n"
      "{\"op\":\"call\",\"id\":1,\"name\":\"SetWaferData\",\"args\":[[0,98,0,-98,0],[0,0,98,0,-98],"
      "[101.5,99.75,100.25,98.5,102]]}\n";
  constexpr int kTimes = 3;
  for (int i = 0; i < kTimes; ++i) {
    requests +=
        "{\"op\":\"set\",\"id\":1,\"name\":\"Resolution\",\"value\":0.7}\n"
        "{\"op\":\"call\",\"id\":1,\"name\":\"Plot\"}\n"
        "{\"op\":\"new\",\"class\":\"Picture\",\"id\":" +
        std::to_string(10 + i) +
        ",\"width\":100000,\"height\":100000}\n"
        "{\"op\":\"trace\",\"id\":1,\"surface\":\"PLOTA\"}\n"
        "{\"op\":\"drop\",\"id\":" +
        std::to_string(10 + i) + "}\n";
  }
  Write("requests.jsonl", requests);
  const auto due = std::ranges::count(requests, '\n');
  bool short_of_it = false;
  for (int kib = 80000; kib < 400000; kib += kib / 3) {
    const Outcome outcome = RunWithin(kib, "automate requests.jsonl");
    EXPECT_EQ(outcome.status, 0) << kib << outcome.output.substr(0, 300);
    EXPECT_EQ(std::ranges::count(outcome.output, '\n'), due) << kib;
    short_of_it =
        short_of_it || outcome.output.find("more memory than there is") != std::string::npos;
  }
  EXPECT_TRUE(short_of_it);
}

}  // namespace
}  // namespace discoplan
