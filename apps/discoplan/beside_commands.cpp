// SPDX-License-Identifier: MIT
#include "apps/discoplan/beside.h"
#include "apps/discoplan/command.h"

namespace discoplan::app {

void AddReportCommand(CLI::App& program) {
  CLI::App* command = program.add_subcommand("report", "Put wafers on paper: a page each, in PDF");
  command->set_help_flag();
  command->prefix_command();
  command->callback([] { RunBeside(); });
}

}  // namespace discoplan::app
