// SPDX-License-Identifier: MIT
#include <unistd.h>

#include "hosts/port/port.h"

#ifdef __EMSCRIPTEN__
#include <emscripten.h>
#endif

namespace discoplan::port {

namespace fs = std::filesystem;

std::FILE* Open(const fs::path& path, const char* mode) { return std::fopen(path.c_str(), mode); }

std::FILE* OpenNew(const fs::path& path) { return std::fopen(path.c_str(), "wbx"); }

std::vector<std::string> Arguments(int argc, char** argv) { return {argv, argv + argc}; }

void UseBinaryStreams() {}

bool IsTerminal(std::FILE* stream) {
#ifdef __EMSCRIPTEN__
  // Whose own isatty takes every stream for a terminal.
  return EM_ASM_INT({ return require('tty').isatty($0); }, fileno(stream)) != 0;
#else
  return isatty(fileno(stream)) != 0;
#endif
}

void Become(const std::string& program, const std::vector<std::string>& arguments) {
  std::vector<std::string> kept = arguments;
  std::vector<char*> pointers;
  for (std::string& argument : kept) pointers.push_back(argument.data());
  pointers.push_back(nullptr);
  std::error_code ignored;
  const fs::path self = fs::read_symlink("/proc/self/exe", ignored);
  execv((self.parent_path() / program).c_str(), pointers.data());
  execvp(program.c_str(), pointers.data());
}

}  // namespace discoplan::port
