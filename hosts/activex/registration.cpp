// SPDX-License-Identifier: MIT
#include "hosts/activex/registration.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <vector>

#include "discoplan/dialogs/property_page.h"
#include "hosts/activex/embedding.h"
#include "hosts/activex/ids.h"

// The headers leave these out.
extern "C" HRESULT WINAPI RegisterTypeLibForUser(ITypeLib*, OLECHAR*, OLECHAR*);
extern "C" HRESULT WINAPI UnRegisterTypeLibForUser(REFGUID, WORD, WORD, LCID, SYSKIND);

namespace discoplan::activex {
namespace {

constexpr const wchar_t* kProgrammableCategory = L"{40FC6ED5-2438-11CF-A3DB-080036F12502}";
constexpr const wchar_t* kControlCategory = L"{40FC6ED4-2438-11CF-A3DB-080036F12502}";

struct Entry {
  std::wstring key;
  std::wstring text;
  const wchar_t* name = nullptr;  ///< None for the key's own value.
};

const std::wstring kRoot = L"Software\\Classes\\";

HKEY Hive(Registry registry) {
  return registry == Registry::Machine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
}

std::wstring ClassKey(const ControlClass& row) { return L"CLSID\\" + InBraces(row.class_id); }
std::wstring Name(const ControlClass& row) { return Wide(row.program_id); }
std::wstring VersionedName(const ControlClass& row) {
  return Name(row) + L'.' + std::to_wstring(kMajorVersion);
}

std::vector<Entry> EntriesOf(const ControlClass& row) {
  const std::wstring key = ClassKey(row);
  const std::wstring title = L"Discoplan " + Wide(row.name);
  const std::wstring id = InBraces(row.class_id);
  const std::wstring version =
      std::to_wstring(kMajorVersion) + L'.' + std::to_wstring(kMinorVersion);
  return {
      {key, title},
      {key + L"\\InprocServer32", ModuleFile()},
      {key + L"\\InprocServer32", L"Apartment", L"ThreadingModel"},
      {key + L"\\ProgID", VersionedName(row)},
      {key + L"\\VersionIndependentProgID", Name(row)},
      {key + L"\\TypeLib", InBraces(kLibraryId)},
      {key + L"\\Version", version},
      {key + L"\\Programmable", {}},
      {key + L"\\Implemented Categories\\" + kProgrammableCategory, {}},
      {key + L"\\Implemented Categories\\" + kControlCategory, {}},
      {key + L"\\Control", {}},
      {key + L"\\ToolboxBitmap32", ModuleFile() + L", " + std::to_wstring(ToolboxPicture(row))},
      {key + L"\\MiscStatus", L"0"},
      {key + L"\\MiscStatus\\1", std::to_wstring(kMiscStatus)},
      {Name(row), title},
      {Name(row) + L"\\CLSID", id},
      {Name(row) + L"\\CurVer", VersionedName(row)},
      {VersionedName(row), title},
      {VersionedName(row) + L"\\CLSID", id},
  };
}

std::wstring PageKey(std::string_view page) { return L"CLSID\\" + InBraces(PageId(page)); }

std::vector<Entry> EntriesOf(std::string_view page) {
  const std::wstring key = PageKey(page);
  return {{key, L"Discoplan " + Wide(page)},
          {key + L"\\InprocServer32", ModuleFile()},
          {key + L"\\InprocServer32", L"Apartment", L"ThreadingModel"}};
}

LSTATUS Write(Registry registry, const Entry& entry) {
  HKEY key = nullptr;
  const std::wstring path = kRoot + entry.key;
  LSTATUS status = RegCreateKeyExW(Hive(registry), path.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr,
                                   &key, nullptr);
  if (status != ERROR_SUCCESS) return status;
  if (!entry.text.empty()) {
    const auto bytes = static_cast<DWORD>((entry.text.size() + 1) * sizeof(wchar_t));
    status = RegSetValueExW(key, entry.name, 0, REG_SZ,
                            reinterpret_cast<const BYTE*>(entry.text.c_str()), bytes);
  }
  RegCloseKey(key);
  return status;
}

std::vector<Entry> AllEntries() {
  std::vector<Entry> all;
  const auto add = [&](std::vector<Entry> entries) {
    std::move(entries.begin(), entries.end(), std::back_inserter(all));
  };
  for (const ControlClass* row : ControlClasses()) add(EntriesOf(*row));
  for (const std::string_view page : PropertyPageClasses()) add(EntriesOf(page));
  return all;
}

/// The keys that hold all that was written, and nothing else.
std::vector<std::wstring> AllKeys() {
  std::vector<std::wstring> all;
  for (const ControlClass* row : ControlClasses()) {
    all.insert(all.end(), {ClassKey(*row), Name(*row), VersionedName(*row)});
  }
  for (const std::string_view page : PropertyPageClasses()) all.push_back(PageKey(page));
  return all;
}

LSTATUS WriteAll(Registry registry) {
  for (const Entry& entry : AllEntries()) {
    if (const LSTATUS status = Write(registry, entry); status != ERROR_SUCCESS) return status;
  }
  return ERROR_SUCCESS;
}

HRESULT RegisterLibrary(Registry registry) {
  ComPtr<ITypeLib> library;
  std::wstring file = ModuleFile();
  const HRESULT loaded = LoadTypeLibEx(file.c_str(), REGKIND_NONE, &library);
  if (FAILED(loaded)) return loaded;
  return registry == Registry::Machine
             ? RegisterTypeLib(library.Get(), file.data(), nullptr)
             : RegisterTypeLibForUser(library.Get(), file.data(), nullptr);
}

constexpr SYSKIND kSystem = sizeof(void*) == 8 ? SYS_WIN64 : SYS_WIN32;

HRESULT UnregisterLibrary(Registry registry) {
  const auto remove =
      registry == Registry::Machine ? &UnRegisterTypeLib : &UnRegisterTypeLibForUser;
  const HRESULT removed =
      remove(ToGuid(kLibraryId), kMajorVersion, kMinorVersion, LOCALE_NEUTRAL, kSystem);
  // What systems say of a library that isn't there.
  constexpr std::array kAbsent = {TYPE_E_REGISTRYACCESS, TYPE_E_CANTLOADLIBRARY, E_INVALIDARG};
  const bool absent = std::find(kAbsent.begin(), kAbsent.end(), removed) != kAbsent.end();
  return absent ? S_OK : removed;
}

}  // namespace

HRESULT Register(Registry registry) {
  const LSTATUS status = WriteAll(registry);
  const HRESULT result =
      status == ERROR_SUCCESS ? RegisterLibrary(registry) : HRESULT_FROM_WIN32(status);
  if (SUCCEEDED(result)) return S_OK;
  Unregister(registry);
  return SELFREG_E_CLASS;
}

HRESULT Unregister(Registry registry) {
  HRESULT result = UnregisterLibrary(registry);
  for (const std::wstring& key : AllKeys()) {
    const LSTATUS status = RegDeleteTreeW(Hive(registry), (kRoot + key).c_str());
    if (status != ERROR_SUCCESS && status != ERROR_FILE_NOT_FOUND) result = SELFREG_E_CLASS;
  }
  return result;
}

}  // namespace discoplan::activex
