// SPDX-License-Identifier: MIT
#pragma once

/// What hosts and programs ask of the operating system where the standard library leaves it open.
/// One source file for each kind of system; the rest of the tree asks for no system.

#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

namespace discoplan::port {

/// As `std::fopen`, whatever characters the name has; null for an error, see errno.
std::FILE* Open(const std::filesystem::path& path, const char* mode);
/// A new file for writing bytes; null where there is one of that name or for another error, see
/// errno.
std::FILE* OpenNew(const std::filesystem::path& path);

/// The command line in UTF-8, the program's name first.
std::vector<std::string> Arguments(int argc, char** argv);
/// Standard input and output give and take bytes as they are, line ends too.
void UseBinaryStreams();
bool IsTerminal(std::FILE* stream);

/// Runs a program in place of this one, from this one's folder or else from where programs are
/// searched for. Returns only where there is none.
void Become(const std::string& program, const std::vector<std::string>& arguments);

}  // namespace discoplan::port
