// SPDX-License-Identifier: MIT
#pragma once

/// The programs that stand beside this one, as they need what a map in a PNG file doesn't wait for.

#include <string>
#include <vector>

namespace discoplan::app {

/// Takes the command line that this program was started with.
void KeepArguments(std::vector<std::string> arguments);

inline constexpr const char* kViewProgram = "discoplan-view";
/// A script of the Python package, for pyarrow reads and writes Parquet there.
inline constexpr const char* kArchiveProgram = "discoplan-archive";

/// Goes on as that program with the same arguments. Raises `CommandError` if it isn't installed.
[[noreturn]] void RunBeside(const std::string& program);

}  // namespace discoplan::app
