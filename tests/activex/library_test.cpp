// SPDX-License-Identifier: MIT
// The type library against the controls' classes, the registry's entries, and the file's version.

#include <map>
#include <set>

#include "discoplan/controls/control_class.h"
#include "hosts/activex/ids.h"
#include "tests/activex/container.h"

namespace discoplan::activex {
namespace {

ComPtr<ITypeLib> Library() {
  ComPtr<ITypeLib> library;
  EXPECT_EQ(S_OK, LoadTypeLibEx(L"discoplan.ocx", REGKIND_NONE, &library));
  return library;
}

ComPtr<ITypeInfo> TypeOf(const std::string& id) {
  ComPtr<ITypeInfo> type;
  EXPECT_EQ(S_OK, Library()->GetTypeInfoOfGuid(ToGuid(id), &type)) << id;
  return type;
}

std::string Taken(BSTR text) {
  const std::string utf8 = text != nullptr ? Utf8({text, SysStringLen(text)}) : std::string();
  SysFreeString(text);
  return utf8;
}

/// A function as the library describes it.
struct Described {
  WORD flags = 0;
  VARTYPE type = VT_EMPTY;         // of the value or result
  std::vector<std::string> names;  // its own, then those of its parameters
  std::string words;
};

/// By id and kind of call.
std::map<std::pair<DISPID, int>, Described> Functions(ITypeInfo& type) {
  std::map<std::pair<DISPID, int>, Described> functions;
  TYPEATTR* about = nullptr;
  EXPECT_EQ(S_OK, type.GetTypeAttr(&about));
  for (UINT i = 0; i < about->cFuncs; ++i) {
    FUNCDESC* function = nullptr;
    if (FAILED(type.GetFuncDesc(i, &function))) continue;
    Described described;
    described.flags = function->wFuncFlags;
    described.type = function->elemdescFunc.tdesc.vt;
    BSTR names[6] = {};
    UINT count = 0;
    type.GetNames(function->memid, names, 6, &count);
    for (UINT n = 0; n < count; ++n) described.names.push_back(Taken(names[n]));
    BSTR words = nullptr;
    type.GetDocumentation(function->memid, nullptr, &words, nullptr, nullptr);
    described.words = Taken(words);
    // The system's own members of any object stand there as well.
    if (function->memid < 0x60000000) {
      functions[{function->memid, function->invkind}] = described;
    }
    type.ReleaseFuncDesc(function);
  }
  type.ReleaseTypeAttr(about);
  return functions;
}

VARTYPE TypeOf(const Member& member) {
  switch (member.type) {
    case Type::None:
      return VT_VOID;
    case Type::Int16:
      return VT_I2;
    case Type::Int32:
      return VT_I4;
    case Type::Float:
      return VT_R4;
    case Type::Double:
      return VT_R8;
    case Type::Boolean:
      return VT_BOOL;
    case Type::String:
      return VT_BSTR;
    case Type::Variant:
      return VT_VARIANT;
    case Type::Object:
      return member.name == "MouseIcon" ? VT_PTR : VT_DISPATCH;  // a picture, any object
    case Type::Array:
      return VT_ARRAY;
    case Type::Rgb:
    case Type::Enumeration:
      return VT_USERDEFINED;
  }
  return VT_EMPTY;
}

void ExpectDescribed(const Member& member, const Described& described) {
  EXPECT_EQ(member.name, described.names.at(0));
  EXPECT_EQ(member.doc, described.words) << member.name;
  EXPECT_FALSE(member.doc.empty()) << member.name;
  const bool property = member.kind == Member::Kind::Property;
  const bool bound = property && member.announces();
  const struct {
    WORD flag;
    bool due;
  } flags[] = {{FUNCFLAG_FHIDDEN, member.hidden},
               {FUNCFLAG_FNONBROWSABLE, property && member.run_time_only},
               {FUNCFLAG_FBINDABLE, bound},
               {FUNCFLAG_FREQUESTEDIT, bound}};
  for (const auto& [flag, due] : flags) {
    EXPECT_EQ(due, (described.flags & flag) != 0) << member.name << ", flag " << flag;
  }
}

TEST(TypeLibrary, HasTheClassesMembers) {
  for (const ControlClass* row : ControlClasses()) {
    auto functions = Functions(*TypeOf(MembersId(*row)).Get());
    const auto take = [&](const Member& member, int kind) {
      const auto found = functions.find({member.id, kind});
      ASSERT_NE(functions.end(), found) << row->name << '.' << member.name << ", kind " << kind;
      ExpectDescribed(member, found->second);
      if (kind == INVOKE_FUNC) {
        ASSERT_EQ(member.parameters.size() + 1, found->second.names.size()) << member.name;
        for (std::size_t i = 0; i < member.parameters.size(); ++i) {
          EXPECT_EQ(member.parameters[i].name, found->second.names[i + 1]) << member.name;
        }
      }
      if (kind == INVOKE_FUNC || kind == INVOKE_PROPERTYGET) {
        EXPECT_EQ(TypeOf(member), found->second.type) << member.name;
      }
      functions.erase(found);
    };
    for (const Member& member : row->members) {
      if (member.kind == Member::Kind::Method) {
        take(member, INVOKE_FUNC);
        continue;
      }
      take(member, INVOKE_PROPERTYGET);
      if (!member.writable()) continue;
      take(member, INVOKE_PROPERTYPUT);
      if (member.type == Type::Object) take(member, INVOKE_PROPERTYPUTREF);
    }
    EXPECT_TRUE(functions.empty()) << row->name << " has another member";
  }
}

TEST(TypeLibrary, HasTheClassesEvents) {
  for (const ControlClass* row : ControlClasses()) {
    const auto functions = Functions(*TypeOf(EventsId(*row)).Get());
    EXPECT_EQ(row->events.size(), functions.size());
    for (const Event& event : row->events) {
      const Described& described = functions.at({event.id, INVOKE_FUNC});
      EXPECT_EQ(event.name, described.names.at(0));
      EXPECT_EQ(event.doc, described.words);
      EXPECT_EQ(event.parameters.size() + 1, described.names.size());
    }
  }
}

TEST(TypeLibrary, HasTheEnumerations) {
  const ComPtr<ITypeLib> library = Library();
  std::map<std::string, std::map<std::string, LONG>> seen;
  for (UINT i = 0; i < library->GetTypeInfoCount(); ++i) {
    TYPEKIND kind{};
    ComPtr<ITypeInfo> type;
    if (FAILED(library->GetTypeInfoType(i, &kind)) || kind != TKIND_ENUM) continue;
    ASSERT_EQ(S_OK, library->GetTypeInfo(i, &type));
    BSTR name = nullptr;
    type->GetDocumentation(MEMBERID_NIL, &name, nullptr, nullptr, nullptr);
    auto& values = seen[Taken(name)];
    VARDESC* value = nullptr;
    for (UINT v = 0; SUCCEEDED(type->GetVarDesc(v, &value)); ++v) {
      UINT count = 0;
      type->GetNames(value->memid, &name, 1, &count);
      OwnedVariant number;
      EXPECT_EQ(S_OK, VariantChangeType(&number, value->lpvarValue, 0, VT_I4));
      values[Taken(name)] = number.lVal;
      type->ReleaseVarDesc(value);
    }
  }
  EXPECT_EQ(Enumerations().size(), seen.size());
  for (const Enumeration& enumeration : Enumerations()) {
    const auto& values = seen[std::string(enumeration.name)];
    EXPECT_EQ(enumeration.values.size(), values.size()) << enumeration.name;
    for (const Enumerator& value : enumeration.values) {
      ASSERT_EQ(1U, values.count(std::string(value.name))) << value.name;
      EXPECT_EQ(value.value, values.at(std::string(value.name)));
    }
  }
}

/// The value in the machine's classes, or nothing for a key that there isn't.
std::optional<std::wstring> Entry(const std::wstring& key, const wchar_t* name = nullptr) {
  HKEY opened = nullptr;
  const std::wstring path = L"Software\\Classes\\" + key;
  if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, path.c_str(), 0, KEY_READ, &opened) != ERROR_SUCCESS) {
    return std::nullopt;
  }
  wchar_t text[MAX_PATH] = L"";
  DWORD size = sizeof text;
  RegGetValueW(opened, nullptr, name, RRF_RT_REG_SZ, nullptr, text, &size);
  RegCloseKey(opened);
  return text;
}

TEST(Registry, TellsContainersWhatTheyAsk) {
  std::set<std::wstring> ids;
  for (const wchar_t* plot : kPlots) {
    const std::wstring name = std::wstring(L"Discoplan.") + plot;
    const std::wstring id = Entry(name + L"\\CLSID").value_or(L"");
    const std::wstring key = L"CLSID\\" + id;
    ids.insert(id);
    EXPECT_EQ(name + L".1", Entry(name + L"\\CurVer"));
    EXPECT_EQ(id, Entry(name + L".1\\CLSID"));
    EXPECT_EQ(name + L".1", Entry(key + L"\\ProgID"));
    EXPECT_EQ(name, Entry(key + L"\\VersionIndependentProgID"));
    EXPECT_EQ(L"Apartment", Entry(key + L"\\InprocServer32", L"ThreadingModel"));
    EXPECT_EQ(InBraces(kLibraryId), Entry(key + L"\\TypeLib"));
    EXPECT_EQ(L"1.0", Entry(key + L"\\Version"));
    EXPECT_EQ(L"0", Entry(key + L"\\MiscStatus"));
    DWORD status = 0;
    const ComPtr<IDispatch> made = NewPlot(plot);
    EXPECT_EQ(S_OK, As<IOleObject>(made)->GetMiscStatus(DVASPECT_CONTENT, &status));
    EXPECT_EQ(std::to_wstring(status), Entry(key + L"\\MiscStatus\\1"));
    // A control that isn't for documents, nor said to be safe.
    EXPECT_TRUE(Entry(key + L"\\Control"));
    EXPECT_FALSE(Entry(key + L"\\Insertable"));
    const std::wstring category = key + L"\\Implemented Categories\\";
    EXPECT_TRUE(Entry(category + L"{40FC6ED4-2438-11CF-A3DB-080036F12502}"));
    EXPECT_FALSE(Entry(category + L"{40FC6ED3-2438-11CF-A3DB-080036F12502}"));
    EXPECT_FALSE(Entry(category + L"{7DD95801-9882-11CF-9FA9-00AA006C42C4}"));
    EXPECT_FALSE(Entry(category + L"{7DD95802-9882-11CF-9FA9-00AA006C42C4}"));
  }
  EXPECT_EQ(9U, ids.size());
  EXPECT_EQ(1U, ids.count(L"{6A2C02D3-6199-47A0-A1F2-E146C92E2394}"));  // of Plot2D, for ever
}

TEST(File, TellsItsVersionAndThatItRegistersItself) {
  DWORD unused = 0;
  const DWORD size = GetFileVersionInfoSizeW(L"discoplan.ocx", &unused);
  ASSERT_NE(0U, size);
  std::vector<BYTE> block(size);
  ASSERT_TRUE(GetFileVersionInfoW(L"discoplan.ocx", 0, size, block.data()));
  for (const wchar_t* name : {L"ProductName", L"FileVersion", L"OLESelfRegister"}) {
    void* text = nullptr;
    UINT length = 0;
    const std::wstring path = std::wstring(L"\\StringFileInfo\\040904B0\\") + name;
    EXPECT_TRUE(VerQueryValueW(block.data(), path.c_str(), &text, &length)) << Utf8(name);
    if (std::wstring(name) == L"ProductName") {
      EXPECT_EQ(std::wstring(L"Discoplan"), static_cast<const wchar_t*>(text));
    }
  }
}

}  // namespace
}  // namespace discoplan::activex
