// SPDX-License-Identifier: MIT
// What the server has in the registry and in its file, and what it tells of itself.

#include <set>

#include "discoplan/controls/control_factory.h"
#include "hosts/activex/values.h"
#include "tests/activex/alone.h"
#include "tests/activex/bag.h"
#include "tests/activex/container.h"

namespace discoplan::activex {
namespace {

HMODULE Server() {
  static const HMODULE server = LoadLibraryW(L"discoplan.ocx");
  EXPECT_NE(nullptr, server);
  return server;
}

HRESULT Install(BOOL install) {
  using Function = HRESULT(WINAPI*)(BOOL, LPCWSTR);
  return reinterpret_cast<Function>(
      reinterpret_cast<void*>(GetProcAddress(Server(), "DllInstall")))(install, L"user");
}

std::wstring KeyOf(const CLSID& id) {
  wchar_t text[40] = L"";
  StringFromGUID2(id, text, 40);
  return std::wstring(L"Software\\Classes\\CLSID\\") + text;
}

bool Exists(const std::wstring& key) {
  HKEY opened = nullptr;
  const LSTATUS status = RegOpenKeyExW(HKEY_CURRENT_USER, key.c_str(), 0, KEY_READ, &opened);
  if (status == ERROR_SUCCESS) RegCloseKey(opened);
  return status == ERROR_SUCCESS;
}

TEST(Server, HasAPictureOfEachControlForToolboxes) {
  std::set<std::vector<BYTE>> pictures;
  for (const wchar_t* name : kPlots) {
    wchar_t value[MAX_PATH] = L"";
    DWORD size = sizeof value;
    ASSERT_EQ(ERROR_SUCCESS, RegGetValueW(HKEY_LOCAL_MACHINE,
                                          (KeyOf(ClassOf(name)) + L"\\ToolboxBitmap32").c_str(),
                                          nullptr, RRF_RT_REG_SZ, nullptr, value, &size));
    const std::wstring text = value;
    const std::size_t comma = text.rfind(L", ");
    ASSERT_NE(std::wstring::npos, comma);
    const HMODULE file = LoadLibraryW(text.substr(0, comma).c_str());
    ASSERT_EQ(Server(), file);
    const auto bitmap = static_cast<HBITMAP>(LoadImageW(
        file, MAKEINTRESOURCEW(std::stoi(text.substr(comma + 2))), IMAGE_BITMAP, 0, 0, 0));
    FreeLibrary(file);
    ASSERT_NE(nullptr, bitmap) << Utf8(name);
    BITMAP about{};
    GetObjectW(bitmap, sizeof about, &about);
    EXPECT_EQ(16, about.bmWidth);
    EXPECT_EQ(16, about.bmHeight);
    std::vector<BYTE> pixels(16 * 16 * 4);
    BITMAPINFO info = RowsOf(16, 16);
    const HDC screen = GetDC(nullptr);
    EXPECT_EQ(16, GetDIBits(screen, bitmap, 0, 16, pixels.data(), &info, DIB_RGB_COLORS));
    ReleaseDC(nullptr, screen);
    DeleteObject(bitmap);
    EXPECT_EQ(0xC0, pixels[0]);  // the corner is the toolbox's grey
    pictures.insert(pixels);
  }
  EXPECT_EQ(9U, pictures.size());
}

/// A key that lasts until the system goes down takes none below it that lasts longer.
TEST(Server, LeavesNothingOfAHalfRegistration) {
  const std::wstring last = KeyOf(ClassOf(kPlots[8]));
  const std::wstring first = KeyOf(ClassOf(kPlots[0]));
  ASSERT_FALSE(Exists(first));
  HKEY key = nullptr;
  ASSERT_EQ(ERROR_SUCCESS, RegCreateKeyW(HKEY_CURRENT_USER, L"Software\\Classes\\CLSID", &key));
  RegCloseKey(key);
  ASSERT_EQ(ERROR_SUCCESS, RegCreateKeyExW(HKEY_CURRENT_USER, last.c_str(), 0, nullptr,
                                           REG_OPTION_VOLATILE, KEY_WRITE, nullptr, &key, nullptr));
  RegCloseKey(key);
  EXPECT_EQ(SELFREG_E_CLASS, Install(TRUE));
  EXPECT_FALSE(Exists(first));
  EXPECT_FALSE(Exists(last));
  EXPECT_FALSE(Exists(L"Software\\Classes\\Discoplan.Plot2D"));
  EXPECT_EQ(S_OK, Install(TRUE));
  EXPECT_TRUE(Exists(first));
  EXPECT_EQ(S_OK, Install(FALSE));
  EXPECT_FALSE(Exists(first));
  EXPECT_EQ(S_OK, Install(FALSE));
}

TEST(Server, TellsHonestlyHowSafeItIs) {
  const ComPtr<IDispatch> plot = NewPlot(L"Plot2D");
  ComPtr<IObjectSafety> safety;
  ASSERT_EQ(S_OK, plot->QueryInterface(IID_IObjectSafety,
                                       reinterpret_cast<void**>(safety.GetAddressOf())));
  DWORD known = 7;
  DWORD on = 7;
  EXPECT_EQ(S_OK, safety->GetInterfaceSafetyOptions(IID_IDispatch, &known, &on));
  EXPECT_EQ(0U, known);
  EXPECT_EQ(0U, on);
  EXPECT_EQ(E_FAIL,
            safety->SetInterfaceSafetyOptions(IID_IDispatch, INTERFACESAFE_FOR_UNTRUSTED_CALLER,
                                              INTERFACESAFE_FOR_UNTRUSTED_CALLER));
  for (const GUID& id : {IID_IPersistPropertyBag, IID_IPersistStreamInit}) {
    EXPECT_EQ(S_OK, safety->GetInterfaceSafetyOptions(id, &known, &on));
    EXPECT_EQ(static_cast<DWORD>(INTERFACESAFE_FOR_UNTRUSTED_DATA), known);
    EXPECT_EQ(S_OK, safety->SetInterfaceSafetyOptions(id, INTERFACESAFE_FOR_UNTRUSTED_DATA,
                                                      INTERFACESAFE_FOR_UNTRUSTED_DATA));
  }
  EXPECT_EQ(E_NOINTERFACE, safety->GetInterfaceSafetyOptions(IID_IMalloc, &known, &on));
  EXPECT_EQ(E_POINTER, safety->GetInterfaceSafetyOptions(IID_IDispatch, nullptr, &on));
}

/// Who shows the picture elsewhere.
class Watcher final : public IAdviseSink {
 public:
  STDMETHODIMP QueryInterface(REFIID id, void** out) override {
    const bool own = id == IID_IUnknown || id == IID_IAdviseSink;
    *out = own ? this : nullptr;
    return own ? AddRef(), S_OK : E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return ++references; }
  STDMETHODIMP_(ULONG) Release() override { return --references; }
  STDMETHODIMP_(void) OnDataChange(FORMATETC* format, STGMEDIUM* medium) override {
    ++data;
    last = format->cfFormat;
    medium_kind = medium->tymed;
  }
  STDMETHODIMP_(void) OnViewChange(DWORD, LONG) override { ++views; }
  STDMETHODIMP_(void) OnRename(IMoniker*) override {}
  STDMETHODIMP_(void) OnSave() override {}
  STDMETHODIMP_(void) OnClose() override { ++closes; }

  int data = 0;
  int views = 0;
  int closes = 0;
  CLIPFORMAT last = 0;
  DWORD medium_kind = 0;
  ULONG references = 0;
};

TEST(Server, TellsWhenThePictureIsAnotherOne) {
  const ComPtr<IDispatch> plot = NewPlot(L"Plot2D");
  Load(*plot.Get());
  Watcher watcher;
  const auto data = As<IDataObject>(plot);
  FORMATETC format{CF_DIB, nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL};
  DWORD connection = 0;
  ASSERT_EQ(S_OK, data->DAdvise(&format, 0, &watcher, &connection));
  const auto view = As<IViewObject2>(plot);
  ASSERT_EQ(S_OK, view->SetAdvise(DVASPECT_CONTENT, 0, &watcher));
  DWORD object_connection = 0;
  ASSERT_EQ(S_OK, As<IOleObject>(plot)->Advise(&watcher, &object_connection));
  EXPECT_EQ(0, watcher.data + watcher.views);
  Call(*plot.Get(), L"Plot");
  EXPECT_EQ(1, watcher.data);
  EXPECT_EQ(1, watcher.views);
  EXPECT_EQ(CF_DIB, watcher.last);
  EXPECT_EQ(static_cast<DWORD>(TYMED_HGLOBAL), watcher.medium_kind);
  Get(*plot.Get(), L"mean");  // looks at nothing else
  EXPECT_EQ(1, watcher.data);
  Put(*plot.Get(), L"BackColor", 255);
  EXPECT_EQ(2, watcher.data);
  EXPECT_EQ(2, watcher.views);
  ASSERT_EQ(S_OK, data->DUnadvise(connection));
  ASSERT_EQ(S_OK, view->SetAdvise(DVASPECT_CONTENT, ADVF_ONLYONCE | ADVF_PRIMEFIRST, &watcher));
  EXPECT_EQ(3, watcher.views);
  Put(*plot.Get(), L"BackColor", 0);
  EXPECT_EQ(2, watcher.data);
  EXPECT_EQ(3, watcher.views);
  As<IOleObject>(plot)->Close(OLECLOSE_NOSAVE);
  EXPECT_EQ(1, watcher.closes);
  EXPECT_EQ(S_OK, As<IOleObject>(plot)->Unadvise(object_connection));
  EXPECT_EQ(OLE_E_NOCONNECTION, data->DUnadvise(77));
  EXPECT_EQ(0U, watcher.references);
}

/// What the library writes by itself: keys, order, kinds and values.
TEST(Stores, HaveTheLibrarysOwnEntriesInABag) {
  Alone platform;
  for (const ControlClass* row : ControlClasses()) {
    const ComPtr<IDispatch> plot = NewPlot(Wide(row->name).c_str());
    const auto control = row->make(platform, nullptr);
    control->InitProperties();
    Put(*plot.Get(), L"TestDiameter", 150.5);
    Put(*plot.Get(), L"BackColor", 0x123456);
    Put(*plot.Get(), L"MousePointer", 2);
    control->TestDiameter(150.5F);
    control->BackColor(0x123456);
    control->MousePointer(2);
    MemoryBag due;
    control->WriteProperties(due);
    Bag bag;
    ASSERT_EQ(S_OK, As<IPersistPropertyBag>(plot)->Save(&bag, TRUE, TRUE));
    ASSERT_EQ(due.entries().size(), bag.order.size()) << row->name;
    for (std::size_t i = 0; i < bag.order.size(); ++i) {
      const MemoryBag::Entry& entry = due.entries()[i];
      EXPECT_EQ(entry.key, Utf8(bag.order[i]));
      const VARIANT& kept = bag.entries[bag.order[i]];
      switch (entry.kind) {
        case StoredKind::Boolean:
          EXPECT_EQ(VT_BOOL, kept.vt) << entry.key;
          break;
        case StoredKind::String:
          EXPECT_EQ(VT_BSTR, kept.vt) << entry.key;
          EXPECT_EQ(entry.value.AsString(), Utf8({kept.bstrVal, SysStringLen(kept.bstrVal)}));
          continue;
        case StoredKind::Object:
          EXPECT_EQ(VT_DISPATCH, kept.vt) << entry.key;
          continue;
        case StoredKind::Int32:
          EXPECT_EQ(VT_I4, kept.vt) << entry.key;
          break;
        default:
          break;
      }
      const Variant value = FromCaller(kept, Type::Double, LOCALE_INVARIANT, {});
      EXPECT_EQ(entry.value.AsDouble(), value.AsDouble()) << row->name << ' ' << entry.key;
    }
  }
}

}  // namespace
}  // namespace discoplan::activex
