// SPDX-License-Identifier: MIT
#include "apps/discoplan/run.h"

#include <exception>
#include <iostream>

#include "apps/discoplan/command.h"

namespace discoplan::app {
namespace {

constexpr int kFailed = 1;
constexpr int kWrongUsage = 2;

int Complain(const std::exception& error, int status) {
  std::cerr << "discoplan: " << error.what() << '\n';
  return status;
}

}  // namespace

int Run(CLI::App& program, int argc, char** argv) {
  program.set_version_flag("--version", "discoplan " DISCOPLAN_VERSION);
  program.require_subcommand(1);
  try {
    const auto is_named = [&](const CLI::App* command) { return command->get_name() == argv[1]; };
    if (argc > 1 && argv[1][0] != '-' && program.get_subcommands(is_named).empty()) {
      throw UsageError("there is no command '" + std::string(argv[1]) +
                       "'; discoplan --help lists them");
    }
    program.parse(argc, argv);
    return 0;
  } catch (const CLI::Success& done) {  // --help and --version
    return program.exit(done);
  } catch (const CLI::Error& error) {
    return Complain(error, kWrongUsage);
  } catch (const UsageError& error) {
    return Complain(error, kWrongUsage);
  } catch (const std::exception& error) {
    return Complain(error, kFailed);
  }
}

}  // namespace discoplan::app
