// SPDX-License-Identifier: MIT
#include "apps/discoplan/beside.h"
#include "apps/discoplan/command.h"
#include "apps/discoplan/run.h"

#if defined(__GLIBC__)
#include <malloc.h>

/// Large blocks too come from memory that was in use before: fresh pages cost more than the work
/// done in them.
void KeepFreedMemory() {
  mallopt(M_MMAP_THRESHOLD, 32 << 20);
  mallopt(M_TRIM_THRESHOLD, 256 << 20);
}
#else
void KeepFreedMemory() {}
#endif

int main(int argc, char** argv) {
  using namespace discoplan::app;
  KeepFreedMemory();
  KeepArguments(argv);
  CLI::App program("Plots of semiconductor wafers", "discoplan");
  program.footer("Example:\n  discoplan plot sites.csv -o map.png");
  AddPlotCommand(program);
  AddStatsCommand(program);
  AddBesideCommands(program);
  AddAutomateCommand(program);
  AddDescribeCommand(program);
  return Run(program, argc, argv);
}
