// SPDX-License-Identifier: MIT
#include "apps/discoplan/beside.h"

#include <iostream>
#include <utility>

#include "apps/discoplan/command.h"
#include "hosts/port/port.h"

namespace discoplan::app {
namespace {

std::vector<std::string> kept_arguments;

}  // namespace

void KeepArguments(std::vector<std::string> arguments) { kept_arguments = std::move(arguments); }

void RunBeside(const std::string& program) {
  std::cout.flush();
  port::Become(program, kept_arguments);
  throw CommandError(program + " is missing; " +
                     (program == kArchiveProgram
                          ? "install the Python package with what archives need, discoplan[arrow]"
                          : "install the part of Discoplan that needs Qt"));
}

void SetUpView(CLI::App& command) {
  command.set_help_flag();
  command.prefix_command();
  command.callback([] { RunBeside(kViewProgram); });
}

}  // namespace discoplan::app
