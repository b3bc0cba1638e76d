// SPDX-License-Identifier: MIT
#include <cerrno>
#include <fstream>
#include <iostream>
#include <memory>
#include <system_error>

#include "apps/discoplan/checks.h"
#include "apps/discoplan/command.h"
#include "apps/discoplan/output.h"
#include "discoplan/base/file_name.h"
#include "hosts/automation/session.h"

namespace discoplan::app {
namespace {

void Answer(std::istream& requests) {
  AutomationSession session;
  if (!session.Run(requests, std::cout)) FailStandardOutput();
  if (requests.bad()) throw CommandError("the requests can't be read to their end");
}

void Automate(const std::string& file) {
  if (file == "-") return Answer(std::cin);
  errno = 0;
  std::ifstream requests(PathOf(file));
  requests.peek();  // a folder opens, but can't be read
  if (!requests.is_open() || requests.bad()) {
    throw CommandError(file + ": the file can't be read (" +
                       std::generic_category().message(errno) +
                       "); check the path and its permissions");
  }
  if (requests.eof()) throw CommandError(file + ": the file is empty; choose another one");
  Answer(requests);
}

}  // namespace

void SetUpAutomate(CLI::App& command) {
  auto file = std::make_shared<std::string>("-");
  command.add_option("FILE", *file, "Requests; standard input if not given")->check(FileName());
  command.footer(
      "Example:\n"
      "  echo '{\"op\":\"new\",\"class\":\"Plot2D\",\"id\":\"p\"}' | discoplan automate");
  command.callback([file] { Automate(*file); });
}

}  // namespace discoplan::app
