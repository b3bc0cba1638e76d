// SPDX-License-Identifier: MIT
#include "apps/discoplan/beside.h"
#include "apps/discoplan/command.h"
#include "apps/discoplan/run.h"
#include "hosts/port/port.h"

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
  discoplan::port::UseBinaryStreams();
  const std::vector<std::string> arguments = discoplan::port::Arguments(argc, argv);
  KeepArguments(arguments);
  std::vector<const char*> pointers;
  for (const std::string& argument : arguments) pointers.push_back(argument.c_str());
  CLI::App program("Plots of semiconductor wafers", "discoplan");
  program.footer("Example:\n  discoplan plot sites.csv -o map.png");
  AddPlotCommand(program);
  AddStatsCommand(program);
  AddLotCommand(program);
  AddBesideCommands(program);
  AddAutomateCommand(program);
  AddDescribeCommand(program);
  return Run(program, static_cast<int>(pointers.size()), pointers.data());
}
