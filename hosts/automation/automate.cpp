// SPDX-License-Identifier: MIT
// Drives plots by the requests of a file, where the command line program isn't built: automate FILE

#include <fstream>
#include <iostream>

#include "discoplan/base/file_name.h"
#include "hosts/automation/session.h"
#include "hosts/port/port.h"

int main(int argc, char** argv) {
  using namespace discoplan;
  port::UseBinaryStreams();
  const std::vector<std::string> arguments = port::Arguments(argc, argv);
  std::ifstream requests(PathOf(arguments.size() == 2 ? arguments[1] : ""), std::ios::binary);
  if (!requests) {
    std::cerr << "give one file of requests that can be read\n";
    return 2;
  }
  AutomationSession session;
  return session.Run(requests, std::cout) ? 0 : 1;
}
