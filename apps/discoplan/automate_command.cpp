// SPDX-License-Identifier: MIT
#include <fstream>
#include <iostream>
#include <memory>

#include "apps/discoplan/command.h"
#include "hosts/automation/session.h"

namespace discoplan::app {
namespace {

void Automate(const std::string& file) {
  AutomationSession session;
  if (file.empty()) return session.Run(std::cin, std::cout);
  std::ifstream requests(file);
  if (!requests || requests.peek() == std::ifstream::traits_type::eof()) {
    throw CommandError(file + ": can't be read or is empty");
  }
  session.Run(requests, std::cout);
}

}  // namespace

void AddAutomateCommand(CLI::App& program) {
  CLI::App* command = program.add_subcommand(
      "automate", "Drive plots by requests in JSON, one a line, from a file or standard input");
  auto file = std::make_shared<std::string>();
  command->add_option("FILE", *file, "Requests; standard input if not given");
  command->footer(
      "Example:\n"
      "  echo '{\"op\":\"new\",\"class\":\"Plot2D\",\"id\":\"p\"}' | discoplan automate");
  command->callback([file] { Automate(*file); });
}

}  // namespace discoplan::app
