// SPDX-License-Identifier: MIT
#include <algorithm>

#include "tests/apps/program_fixture.h"

namespace discoplan {
namespace {

const std::string kFive = "0,0,1\n10,0,2\n0,10,3\n-10,0,4\n0,-10,5\n";

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
  for (const char* command :
       {"stats five.csv", "stats five.csv --json", "--help", "--version", "plot --help",
        "automate requests.jsonl", "automate - < requests.jsonl"}) {
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

}  // namespace
}  // namespace discoplan
