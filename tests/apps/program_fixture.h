// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "tests/places.h"
#include "tests/temporary_folder.h"

namespace discoplan {

struct Outcome {
  int status = 0;
  std::string output;  // standard output and standard error together
};

inline const std::string kLot = Example("native_oxide_lot.csv");
inline const std::string kFilm = Example("thick_film_lot.csv");

/// Runs the program in a folder of its own.
class ProgramFixture : public testing::Test {
 protected:
  Outcome Shell(const std::string& command) const {
    const std::string line = "exec 2>&1; cd " + folder_.string() + " && " + command;
    Outcome outcome;
    FILE* pipe = popen(line.c_str(), "r");
    char buffer[4096];
    for (std::size_t got = 0; (got = fread(buffer, 1, sizeof buffer, pipe)) > 0;) {
      outcome.output.append(buffer, got);
    }
    outcome.status = WEXITSTATUS(pclose(pipe));
    return outcome;
  }
  Outcome Run(const std::string& arguments) const { return Shell(Program() + " " + arguments); }

  void Write(const std::string& name, const std::string& text) const {
    std::ofstream(folder_ / name, std::ios::binary) << text;
  }
  std::string Read(const std::string& name) const {
    std::ifstream file(folder_ / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  bool Exists(const std::string& name) const { return std::filesystem::exists(folder_ / name); }
  bool IsPng(const std::string& name) const { return Read(name).starts_with("\x89PNG"); }

  const TemporaryFolder temporary_;
  const std::filesystem::path folder_ = temporary_.path();
};

}  // namespace discoplan
