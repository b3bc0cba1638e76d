// SPDX-License-Identifier: MIT
#include "hosts/activex/com.h"

#include <algorithm>
#include <atomic>
#include <cwctype>

#include "hosts/activex/ids.h"

namespace discoplan::activex {
namespace {

HINSTANCE own_module = nullptr;
std::atomic<long> locks = 0;

}  // namespace

std::wstring Wide(std::string_view utf8) {
  const int bytes = static_cast<int>(utf8.size());
  const int size = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), bytes, nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(size), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, utf8.data(), bytes, wide.data(), size);
  return wide;
}

std::string Utf8(std::wstring_view wide) {
  const int units = static_cast<int>(wide.size());
  const int size =
      WideCharToMultiByte(CP_UTF8, 0, wide.data(), units, nullptr, 0, nullptr, nullptr);
  std::string utf8(static_cast<std::size_t>(size), '\0');
  WideCharToMultiByte(CP_UTF8, 0, wide.data(), units, utf8.data(), size, nullptr, nullptr);
  return utf8;
}

std::wstring InBraces(std::string_view id) { return L'{' + Wide(id) + L'}'; }

GUID ToGuid(std::string_view text) {
  GUID id{};
  CLSIDFromString(InBraces(text).c_str(), &id);
  return id;
}

LPOLESTR TaskText(const std::wstring& text) {
  const std::size_t bytes = (text.size() + 1) * sizeof(wchar_t);
  auto* copy = static_cast<LPOLESTR>(CoTaskMemAlloc(bytes));
  if (copy != nullptr) memcpy(copy, text.c_str(), bytes);
  return copy;
}

HINSTANCE Module() { return own_module; }
void Module(HINSTANCE module) { own_module = module; }

std::wstring ModuleFile() {
  std::wstring file(32768, L'\0');  // the longest path that there is
  file.resize(GetModuleFileNameW(Module(), file.data(), static_cast<DWORD>(file.size())));
  return file;
}

ComPtr<ITypeInfo> TypeInfoOf(const GUID& id) {
  ComPtr<ITypeLib> library;
  ComPtr<ITypeInfo> info;
  if (SUCCEEDED(LoadTypeLibEx(ModuleFile().c_str(), REGKIND_NONE, &library))) {
    library->GetTypeInfoOfGuid(id, &info);
  }
  return info;
}

void LockModule() { ++locks; }
void UnlockModule() { --locks; }
bool ModuleIsFree() { return locks == 0; }

BITMAPINFO RowsOf(int width, int height) {
  BITMAPINFO info{};
  info.bmiHeader.biSize = sizeof info.bmiHeader;
  info.bmiHeader.biWidth = width;
  info.bmiHeader.biHeight = -height;
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  // Optional by the book, but a metafile may count on it.
  info.bmiHeader.biSizeImage = static_cast<DWORD>(4 * width * height);
  return info;
}

bool SameName(std::string_view name, std::wstring_view wide) {
  return std::equal(name.begin(), name.end(), wide.begin(), wide.end(), [](char a, wchar_t b) {
    return std::towlower(static_cast<wchar_t>(a)) == std::towlower(b);
  });
}

}  // namespace discoplan::activex
