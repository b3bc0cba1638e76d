// SPDX-License-Identifier: MIT
#include "apps/discoplan/beside.h"
#include "apps/discoplan/command.h"

namespace discoplan::app {
namespace {

void AddBeside(CLI::App& program, const char* name, const char* what, const char* beside) {
  CLI::App* command = program.add_subcommand(name, what);
  command->set_help_flag();
  command->prefix_command();
  command->callback([beside] { RunBeside(beside); });
}

}  // namespace

void AddBesideCommands(CLI::App& program) {
  AddBeside(program, "report", "Put wafers on paper: a page each, in PDF", kReportProgram);
  AddBeside(program, "view", "Look at wafers in a window", kViewProgram);
}

}  // namespace discoplan::app
