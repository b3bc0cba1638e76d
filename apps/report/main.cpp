// SPDX-License-Identifier: MIT
#include "apps/discoplan/run.h"
#include "apps/report/report_commands.h"

int main(int argc, char** argv) {
  using namespace discoplan::app;
  CLI::App program("Wafers on paper", "discoplan");
  AddReportCommand(program);
  return Run(program, argc, argv);
}
