// SPDX-License-Identifier: MIT
#include "apps/discoplan/beside.h"

#include <unistd.h>

#include <filesystem>
#include <iostream>
#include <system_error>

#include "apps/discoplan/command.h"

namespace discoplan::app {
namespace {

char** kept_arguments = nullptr;

}  // namespace

void KeepArguments(char** arguments) { kept_arguments = arguments; }

void RunBeside(const std::string& program) {
  std::cout.flush();
  std::error_code ignored;
  const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe", ignored);
  const std::string beside = (self.parent_path() / program).string();
  execv(beside.c_str(), kept_arguments);
  execvp(program.c_str(), kept_arguments);
  throw CommandError(program + " is missing; install the part of Discoplan that needs Qt");
}

}  // namespace discoplan::app
