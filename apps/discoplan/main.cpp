// SPDX-License-Identifier: MIT
#include <algorithm>

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

namespace {

using namespace discoplan::app;

struct Command {
  const char* name;
  const char* what;
  void (*set_up)(CLI::App&);
};

constexpr Command kCommands[] = {
    {"plot", "Draw a wafer into a PNG, PDF or SVG file", SetUpPlot},
    {"stats", "Print the statistics of wafers", SetUpStats},
    {"lot", "Draw all wafers of a lot side by side, with their trend", SetUpLot},
    {"report", "Put wafers on paper: a page each, in PDF", SetUpReport},
    {"view", "Look at wafers in a window", SetUpView},
    {"automate", "Drive plots by requests in JSON, one a line, from a file or standard input",
     SetUpAutomate},
    {"describe", "Print the members, events and enumerations of the plots as JSON", SetUpDescribe}};

/// Only a command that is named gets its options, which take longer to make than to read a table.
void AddCommands(CLI::App& program, const std::vector<std::string>& arguments) {
  for (const Command& command : kCommands) {
    CLI::App* added = program.add_subcommand(command.name, command.what);
    const bool is_named =
        std::find(arguments.begin(), arguments.end(), command.name) != arguments.end();
    if (is_named) command.set_up(*added);
  }
}

}  // namespace

int main(int argc, char** argv) {
  KeepFreedMemory();
  discoplan::port::UseBinaryStreams();
  const std::vector<std::string> arguments = discoplan::port::Arguments(argc, argv);
  KeepArguments(arguments);
  std::vector<const char*> pointers;
  for (const std::string& argument : arguments) pointers.push_back(argument.c_str());
  CLI::App program("Plots of semiconductor wafers", "discoplan");
  program.footer("Example:\n  discoplan plot sites.csv -o map.png");
  AddCommands(program, arguments);
  return Run(program, static_cast<int>(pointers.size()), pointers.data());
}
