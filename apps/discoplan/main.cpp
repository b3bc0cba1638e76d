// SPDX-License-Identifier: MIT
#include "apps/discoplan/beside.h"
#include "apps/discoplan/command.h"
#include "apps/discoplan/run.h"

int main(int argc, char** argv) {
  using namespace discoplan::app;
  KeepArguments(argv);
  CLI::App program("Plots of semiconductor wafers", "discoplan");
  program.footer("Example:\n  discoplan plot sites.csv -o map.png");
  AddPlotCommand(program);
  AddStatsCommand(program);
  AddBesideCommands(program);
  AddAutomateCommand(program);
  return Run(program, argc, argv);
}
