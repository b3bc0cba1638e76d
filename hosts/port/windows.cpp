// SPDX-License-Identifier: MIT
#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <windows.h>
// The rest leans on it.
#include <fcntl.h>
#include <io.h>
#include <process.h>
#include <share.h>
#include <shellapi.h>
#include <sys/stat.h>

#include <cstdlib>
#include <utility>

#include "hosts/port/port.h"

namespace discoplan::port {
namespace {

namespace fs = std::filesystem;

std::string Utf8(const wchar_t* text) {
  const int size = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
  std::string utf8(static_cast<std::size_t>(size), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text, -1, utf8.data(), size, nullptr, nullptr);
  utf8.resize(utf8.find('\0'));
  return utf8;
}

std::wstring Wide(const std::string& text) {
  const int size = MultiByteToWideChar(CP_UTF8, 0, text.c_str(), -1, nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(size), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, text.c_str(), -1, wide.data(), size);
  wide.resize(wide.find(L'\0'));
  return wide;
}

/// As the other side takes a command line apart: quoted, with the backslashes before a quote
/// doubled.
std::wstring Quoted(const std::string& argument) {
  std::wstring quoted = L"\"";
  std::size_t backslashes = 0;
  for (const wchar_t c : Wide(argument)) {
    if (c == L'"') quoted.append(backslashes + 1, L'\\');
    backslashes = c == L'\\' ? backslashes + 1 : 0;
    quoted += c;
  }
  return quoted.append(backslashes, L'\\') + L'"';
}

}  // namespace

std::FILE* Open(const fs::path& path, const char* mode) {
  return _wfopen(path.c_str(), Wide(mode).c_str());
}

std::FILE* OpenNew(const fs::path& path) {
  const int file = _wsopen(path.c_str(), _O_WRONLY | _O_CREAT | _O_EXCL | _O_BINARY, _SH_DENYNO,
                           _S_IREAD | _S_IWRITE);
  return file < 0 ? nullptr : _fdopen(file, "wb");
}

std::vector<std::string> Arguments(int, char**) {
  int count = 0;
  wchar_t** const wide = CommandLineToArgvW(GetCommandLineW(), &count);
  std::vector<std::string> arguments;
  for (int i = 0; wide != nullptr && i < count; ++i) arguments.push_back(Utf8(wide[i]));
  LocalFree(wide);
  return arguments;
}

void UseBinaryStreams() {
  _setmode(_fileno(stdin), _O_BINARY);
  _setmode(_fileno(stdout), _O_BINARY);
}

bool IsTerminal(std::FILE* stream) { return _isatty(_fileno(stream)) != 0; }

void Become(const std::string& program, const std::vector<std::string>& arguments) {
  std::vector<std::wstring> quoted;
  for (const std::string& argument : arguments) quoted.push_back(Quoted(argument));
  std::vector<const wchar_t*> pointers;
  for (const std::wstring& argument : quoted) pointers.push_back(argument.c_str());
  pointers.push_back(nullptr);
  std::wstring self(32768, L'\0');
  self.resize(GetModuleFileNameW(nullptr, self.data(), static_cast<DWORD>(self.size())));
  const fs::path beside = fs::path(self).parent_path() / (program + ".exe");
  // The shell waits for this program, and so this one waits for the other.
  for (const auto& [spawn, name] :
       {std::pair(&_wspawnv, beside), std::pair(&_wspawnvp, fs::path(Wide(program + ".exe")))}) {
    const std::intptr_t status = spawn(_P_WAIT, name.c_str(), pointers.data());
    if (status != -1) std::exit(static_cast<int>(status));
  }
}

}  // namespace discoplan::port
