// SPDX-License-Identifier: MIT
#include "apps/discoplan/run.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <new>
#include <sstream>

#include "apps/discoplan/command.h"
#include "apps/discoplan/output.h"
#include "data/plain_text.h"
#include "discoplan/base/algorithms.h"
#include "discoplan/base/memory_reserve.h"

namespace discoplan::app {
namespace {

constexpr int kFailed = 1;
constexpr int kWrongUsage = 2;

constexpr const char* kNoMemory =
    "there is not enough memory for this; ask for less at once, such as a smaller --size or fewer "
    "files";

/// Nothing may be asked of the memory here.
[[noreturn]] void End(const char* text) {
  std::fprintf(stderr, "discoplan: %s\n", text);
  std::_Exit(kFailed);
}

/// Where an error gets out of what can't pass it on.
[[noreturn]] void EndInWords() {
  try {
    if (const std::exception_ptr error = std::current_exception()) std::rethrow_exception(error);
  } catch (const std::bad_alloc&) {
    EndForMemory();
  } catch (...) {
  }
  End("an error that should not be has ended the program; please report it");
}

/// A reader that goes away is an output that can't be written, which is told as such.
void PutEndsIntoWords() {
  std::set_terminate(EndInWords);
#ifdef SIGPIPE
  std::signal(SIGPIPE, SIG_IGN);
#endif
}

int Complain(const std::string& text, int status) {
  Warn(text);
  return status;
}

std::string CommandNames(const CLI::App& program) {
  std::vector<std::string> names;
  for (const CLI::App* command : program.get_subcommands([](const CLI::App*) { return true; })) {
    names.push_back(command->get_name());
  }
  return Listed(names);
}

/// What is wrong with the use. A misspelt option may be why another one is missing.
std::string ComplaintOf(const CLI::App& program, const CLI::Error& error) {
  const std::vector<std::string> strange = program.remaining(true);
  const bool has_command = !program.get_subcommands().empty();
  const std::string help =
      has_command ? program.get_subcommands().front()->get_name() + " --help" : "--help";
  if (!strange.empty()) {
    const auto option =
        FindIf(strange, [](const std::string& argument) { return argument.starts_with('-'); });
    return "there is no place for " + Shown(option != strange.end() ? *option : strange.front()) +
           "; discoplan " + help + " tells what there is";
  }
  if (!has_command) return "give a command: " + CommandNames(program) + "; --help tells more";
  return error.what();
}

void ParseAndRun(CLI::App& program, int argc, const char* const* argv) {
  const auto is_named = [&](const CLI::App* command) { return command->get_name() == argv[1]; };
  if (argc > 1 && argv[1][0] != '-' && program.get_subcommands(is_named).empty()) {
    throw UsageError("there is no command '" + std::string(argv[1]) +
                     "'; discoplan --help lists them");
  }
  try {
    program.parse(argc, argv);
  } catch (const CLI::Success& done) {  // --help and --version
    std::ostringstream text;
    program.exit(done, text, text);
    WriteStandardOutput(text.str());
  } catch (const CLI::Error& error) {
    throw UsageError(ComplaintOf(program, error));
  }
}

}  // namespace

void EndForMemory() { End(kNoMemory); }

int Run(CLI::App& program, int argc, const char* const* argv) {
  PutEndsIntoWords();
  const MemoryReserve reserve;
  program.set_version_flag("--version", "discoplan " DISCOPLAN_VERSION);
  program.require_subcommand(1);
  try {
    ParseAndRun(program, argc, argv);
    return 0;
  } catch (const UsageError& error) {
    return Complain(error.what(), kWrongUsage);
  } catch (const std::bad_alloc&) {
    return Complain(kNoMemory, kFailed);
  } catch (const std::exception& error) {
    return Complain(error.what(), kFailed);
  }
}

}  // namespace discoplan::app
