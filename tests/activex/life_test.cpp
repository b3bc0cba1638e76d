// SPDX-License-Identifier: MIT
// Coming and going: containers that let go in the midst of things, threads, abuse, and containers
// of others' making.

#include <windows.h>
//
#include <psapi.h>

#include <thread>

#include "tests/activex/bitmap.h"
#include "tests/activex/container.h"

namespace discoplan::activex {
namespace {

TEST(Life, OfAControlMayEndInItsOwnEvent) {
  ComPtr<IDispatch> plot = NewPlot(L"Plot2D");
  Form form;
  form.Place(plot, {0, 0, 400, 300});
  EventSink sink;
  Connect(*plot.Get(), sink, IID_IDispatch);
  sink.then = [&] {
    form.Remove();
    plot = nullptr;
  };
  const HWND window = form.PlotWindow();
  SendMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(1, 299));
  EXPECT_EQ(1U, sink.events.size());
  EXPECT_FALSE(IsWindow(window));
  EXPECT_EQ(0U, sink.references);
  EXPECT_EQ(0U, form.references);
}

TEST(Life, OfAControlMayEndInItsOwnPlot) {
  static ComPtr<IDispatch> plot;
  static Form* container = nullptr;
  plot = NewPlot(L"Plot2D");
  Form form;
  container = &form;
  form.Place(plot, {0, 0, 400, 300});
  Load(*plot.Get());
  // Comes to pass when the plot lets events run.
  const UINT_PTR timer = SetTimer(nullptr, 0, 1, [](HWND, UINT, UINT_PTR id, DWORD) {
    KillTimer(nullptr, id);
    container->Remove();
    plot = nullptr;
  });
  Sleep(30);
  IDispatch* raw = plot.Get();
  Invoke(*raw, L"Plot", DISPATCH_METHOD);
  EXPECT_EQ(nullptr, plot.Get());
  EXPECT_EQ(0U, form.references);
  KillTimer(nullptr, timer);
}

std::size_t Memory() {
  PROCESS_MEMORY_COUNTERS counters{};
  GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
  return counters.WorkingSetSize;
}

/// What the process holds of the system's.
struct Held {
  DWORD handles = 0;
  DWORD windows = 0;
  DWORD drawing = 0;
};

Held HeldNow() {
  Held held;
  const HANDLE process = GetCurrentProcess();
  GetProcessHandleCount(process, &held.handles);
  held.windows = GetGuiResources(process, GR_USEROBJECTS);
  held.drawing = GetGuiResources(process, GR_GDIOBJECTS);
  return held;
}

TEST(Life, IsCounted) {
  const ComPtr<IDispatch> plot = NewPlot(L"Plot2D");
  const auto references = [&] { return plot->AddRef(), plot->Release(); };
  EXPECT_EQ(1U, references());
  Get(*plot.Get(), L"WaferDiameter");
  EXPECT_EQ(1U, references());
  Load(*plot.Get());
  Call(*plot.Get(), L"Plot");
  EXPECT_EQ(1U, references());
  As<IOleObject>(plot)->Close(OLECLOSE_NOSAVE);
  EXPECT_EQ(1U, references());
}

TEST(Life, OfTenThousandLeavesNothingBehind) {
  const auto make = [](int count) {
    ComPtr<IClassFactory> factory;
    CoGetClassObject(ClassOf(kPlots[0]), CLSCTX_INPROC_SERVER, nullptr, IID_PPV_ARGS(&factory));
    for (int i = 0; i < count; ++i) {
      ComPtr<IDispatch> plot;
      factory->CreateInstance(nullptr, IID_PPV_ARGS(&plot));
      DISPPARAMS none{};
      OwnedVariant value;
      plot->Invoke(19, IID_NULL, LOCALE_INVARIANT, DISPATCH_PROPERTYGET, &none, &value, nullptr,
                   nullptr);
    }
  };
  const HMODULE module = LoadLibraryW(L"discoplan.ocx");
  ASSERT_NE(nullptr, module);
  const auto may_unload = reinterpret_cast<HRESULT(WINAPI*)()>(
      reinterpret_cast<void*>(GetProcAddress(module, "DllCanUnloadNow")));
  EXPECT_EQ(S_OK, may_unload());
  make(500);
  EXPECT_EQ(S_OK, may_unload());
  const std::size_t before = Memory();
  const Held held = HeldNow();
  ASSERT_GT(before, 1U << 20);
  make(10000);
  EXPECT_LT(Memory(), before + (4U << 20));  // 400 bytes for each would be more
  const Held after = HeldNow();
  EXPECT_LE(after.handles, held.handles + 2);
  EXPECT_LE(after.windows, held.windows + 2);
  EXPECT_LE(after.drawing, held.drawing + 2);
  EXPECT_EQ(S_OK, may_unload());
  const ComPtr<IDispatch> plot = NewPlot(L"Plot2D");
  EXPECT_EQ(S_FALSE, may_unload());
}

TEST(Life, OfWindowsLeavesNothingBehind) {
  const auto make = [](int count) {
    for (int i = 0; i < count; ++i) {
      const ComPtr<IDispatch> plot = NewPlot(kPlots[i % 9]);
      Form form;
      form.Place(plot, {0, 0, 400, 300});
    }
  };
  make(18);
  const Held held = HeldNow();
  make(18);
  const Held after = HeldNow();
  EXPECT_LE(after.handles, held.handles + 2);
  EXPECT_LE(after.windows, held.windows + 2);
  EXPECT_LE(after.drawing, held.drawing + 2);
}

TEST(Threads, HaveControlsOfTheirOwn) {
  const auto work = [](double shift, double* mean) {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    {
      const ComPtr<IDispatch> plot = NewPlot(L"Plot2D");
      for (int i = 0; i < 20; ++i) {
        const auto offset = static_cast<float>(shift);
        Singles x(1, {0, 50, -50, 0}), y(1, {0, 50, 50, -50}),
            z(1, {offset, offset + 1, offset + 2, offset + 3});
        Call(*plot.Get(), L"SetWaferData", {x.ByReference(), y.ByReference(), z.ByReference()});
        Call(*plot.Get(), L"Plot");
      }
      *mean = Get(*plot.Get(), L"mean");
    }
    CoUninitialize();
  };
  double first = 0;
  double second = 0;
  std::thread one(work, 10, &first);
  std::thread two(work, 20, &second);
  one.join();
  two.join();
  EXPECT_EQ(11.5, first);
  EXPECT_EQ(21.5, second);
}

/// One set for all histograms of a thread, and another one for those of the next.
TEST(Threads, HaveControlLimitsOfTheirOwn) {
  const auto histogram = [] {
    ComPtr<IDispatch> plot = NewPlot(L"Histo");
    Put(*plot.Get(), L"PlotType", 3);  // the values at the left, with limits
    Load(*plot.Get());
    return plot;
  };
  const auto picture = [](const ComPtr<IDispatch>& plot) {
    Invoke(*plot.Get(), L"SetPlotNotVaild", DISPATCH_METHOD);
    EXPECT_EQ(0, Call(*plot.Get(), L"Plot"));
    return Drawn(plot, 400, 300);
  };
  const ComPtr<IDispatch> plot = histogram();
  const ComPtr<IDispatch> other = NewPlot(L"Histo");
  const auto without = picture(plot);
  float lower = 12, upper = 17;
  Invoke(*other.Get(), L"ShowControlLimit", DISPATCH_METHOD, {Of(lower), Of(upper)});
  EXPECT_NE(without, picture(plot));
  std::vector<DWORD> elsewhere;
  std::thread next([&] {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    elsewhere = picture(histogram());
    CoUninitialize();
  });
  next.join();
  EXPECT_EQ(without, elsewhere);
  EXPECT_NE(without, picture(plot));
  Invoke(*other.Get(), L"ResetControlLimit", DISPATCH_METHOD);
  EXPECT_EQ(without, picture(plot));
}

TEST(Abuse, IsAnsweredByErrors) {
  for (const wchar_t* name : kPlots) {
    const ComPtr<IDispatch> plot = NewPlot(name);
    EXPECT_EQ(E_POINTER, plot->GetTypeInfoCount(nullptr));
    EXPECT_EQ(E_POINTER, plot->GetIDsOfNames(IID_NULL, nullptr, 1, 0, nullptr));
    EXPECT_EQ(E_POINTER,
              plot->Invoke(30, IID_NULL, 0, DISPATCH_METHOD, nullptr, nullptr, nullptr, nullptr));
    const auto object = As<IOleObject>(plot);
    EXPECT_EQ(E_POINTER, object->SetExtent(DVASPECT_CONTENT, nullptr));
    EXPECT_EQ(E_POINTER, object->GetUserType(0, nullptr));
    EXPECT_EQ(E_POINTER, object->GetClientSite(nullptr));
    EXPECT_TRUE(FAILED(object->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, nullptr, 0, nullptr,
                                      nullptr)));  // there is no container
    SIZEL huge{LONG_MAX, LONG_MAX};
    object->SetExtent(DVASPECT_CONTENT, &huge);
    SIZEL negative{-100, -100};
    object->SetExtent(DVASPECT_CONTENT, &negative);
    EXPECT_EQ(DV_E_DVASPECT, object->SetExtent(DVASPECT_ICON, &huge));
    EXPECT_EQ(S_OK, object->Close(OLECLOSE_NOSAVE));
    EXPECT_EQ(S_OK, object->Close(OLECLOSE_SAVEIFDIRTY));
    EXPECT_EQ(E_POINTER, As<IOleInPlaceObject>(plot)->SetObjectRects(nullptr, nullptr));
    EXPECT_EQ(E_POINTER, As<IOleInPlaceActiveObject>(plot)->TranslateAccelerator(nullptr));
    EXPECT_EQ(E_POINTER, As<IOleControl>(plot)->GetControlInfo(nullptr));
    EXPECT_EQ(E_POINTER, As<IQuickActivate>(plot)->QuickActivate(nullptr, nullptr));
    EXPECT_EQ(E_POINTER, As<IDataObject>(plot)->GetData(nullptr, nullptr));
    EXPECT_EQ(E_POINTER, As<IPersistStreamInit>(plot)->Load(nullptr));
    EXPECT_EQ(E_POINTER, As<IPersistStorage>(plot)->Save(nullptr, TRUE));
    // Arrays of two dimensions, of texts, and none at all.
    SAFEARRAYBOUND bounds[2] = {{2, 0}, {2, 0}};
    VARIANT square{};
    square.vt = VT_ARRAY | VT_R8;
    square.parray = SafeArrayCreate(VT_R8, 2, bounds);
    VARIANT texts{};
    texts.vt = VT_ARRAY | VT_BSTR;
    texts.parray = SafeArrayCreate(VT_BSTR, 1, bounds);
    VARIANT nothing{};
    nothing.vt = VT_ARRAY | VT_R4 | VT_BYREF;
    EXPECT_EQ(
        13, Invoke(*plot.Get(), L"SetWaferData", DISPATCH_METHOD, {square, square, square}).error);
    EXPECT_EQ(13,
              Invoke(*plot.Get(), L"SetWaferData", DISPATCH_METHOD, {texts, texts, texts}).error);
    EXPECT_EQ(
        4,
        Invoke(*plot.Get(), L"SetWaferData", DISPATCH_METHOD, {nothing, nothing, nothing}).number);
    SafeArrayDestroy(square.parray);
    SafeArrayDestroy(texts.parray);
  }
}

/// Run where nothing is registered, beside the manifest.
TEST(Manifest, StandsInForTheRegistry) {
  CLSID id{};
  if (SUCCEEDED(CLSIDFromProgID(L"Discoplan.Plot2D", &id))) GTEST_SKIP() << "it is registered";
  ACTCTXW context{};
  context.cbSize = sizeof context;
  context.lpSource = L"Discoplan.manifest";
  const HANDLE made = CreateActCtxW(&context);
  ASSERT_NE(INVALID_HANDLE_VALUE, made);
  ULONG_PTR cookie = 0;
  ASSERT_TRUE(ActivateActCtx(made, &cookie));
  for (const wchar_t* name : kPlots) {
    const ComPtr<IDispatch> plot = NewPlot(name);
    ASSERT_NE(nullptr, plot.Get());
    Load(*plot.Get());
    EXPECT_EQ(0, Call(*plot.Get(), L"Plot"));
    CAUUID pages{};
    ASSERT_EQ(S_OK, As<ISpecifyPropertyPages>(plot)->GetPages(&pages));
    for (ULONG i = 0; i < pages.cElems; ++i) {
      ComPtr<IPropertyPage> page;
      EXPECT_EQ(S_OK, CoCreateInstance(pages.pElems[i], nullptr, CLSCTX_INPROC_SERVER,
                                       IID_PPV_ARGS(&page)));
    }
    CoTaskMemFree(pages.pElems);
  }
  DeactivateActCtx(0, cookie);
  ReleaseActCtx(made);
}

TEST(Containers, OfTheSystemsHost) {
  const HMODULE atl = LoadLibraryW(L"atl.dll");
  ASSERT_NE(nullptr, atl);
  const auto function = [&](const char* name) {
    return reinterpret_cast<void*>(GetProcAddress(atl, name));
  };
  reinterpret_cast<BOOL(WINAPI*)()>(function("AtlAxWinInit"))();
  const HWND frame = CreateWindowExW(0, L"STATIC", L"", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 600,
                                     500, nullptr, nullptr, nullptr, nullptr);
  for (const wchar_t* name : kPlots) {
    const HWND host =
        CreateWindowExW(0, L"AtlAxWin", (std::wstring(L"Discoplan.") + name).c_str(),
                        WS_CHILD | WS_VISIBLE, 0, 0, 500, 400, frame, nullptr, nullptr, nullptr);
    ASSERT_NE(nullptr, host);
    ComPtr<IUnknown> hosted;
    ASSERT_EQ(S_OK, reinterpret_cast<HRESULT(WINAPI*)(HWND, IUnknown**)>(
                        function("AtlAxGetControl"))(host, hosted.GetAddressOf()));
    const ComPtr<IDispatch> plot = As<IDispatch>(hosted);
    RunMessages();
    Load(*plot.Get());
    EXPECT_EQ(0, Call(*plot.Get(), L"Plot"));
    HWND own = nullptr;
    As<IOleInPlaceObject>(plot)->GetWindow(&own);
    ASSERT_NE(nullptr, own) << Utf8(name);
    RECT area{};
    GetClientRect(own, &area);
    EXPECT_EQ(500, area.right);
    EXPECT_EQ(400, area.bottom);
    DestroyWindow(host);
    As<IOleInPlaceObject>(plot)->GetWindow(&own);
    EXPECT_EQ(nullptr, own);
  }
  DestroyWindow(frame);
}

}  // namespace
}  // namespace discoplan::activex
