// SPDX-License-Identifier: MIT
// Screens of another resolution. Run where the system has 144 dots to the inch: programs that know
// of it see them, others see 96.

#include "tests/activex/bitmap.h"
#include "tests/activex/container.h"

namespace discoplan::activex {
namespace {

DPI_AWARENESS_CONTEXT Become(DPI_AWARENESS_CONTEXT context) {
  using Function = DPI_AWARENESS_CONTEXT(WINAPI*)(DPI_AWARENESS_CONTEXT);
  return reinterpret_cast<Function>(reinterpret_cast<void*>(
      GetProcAddress(GetModuleHandleW(L"user32"), "SetThreadDpiAwarenessContext")))(context);
}

int Dots(HWND window) {
  using Function = UINT(WINAPI*)(HWND);
  return static_cast<int>(reinterpret_cast<Function>(reinterpret_cast<void*>(
      GetProcAddress(GetModuleHandleW(L"user32"), "GetDpiForWindow")))(window));
}

/// The height of the letters on the control's button, in pixels.
LONG Letters(HWND plot) {
  for (HWND child = nullptr; (child = FindWindowExW(plot, child, L"BUTTON", nullptr)) != nullptr;) {
    if ((GetWindowLongPtrW(child, GWL_STYLE) & WS_TABSTOP) == 0) continue;
    LOGFONTW font{};
    GetObjectW(reinterpret_cast<HFONT>(SendMessageW(child, WM_GETFONT, 0, 0)), sizeof font, &font);
    return -font.lfHeight;
  }
  ADD_FAILURE() << "there is no button";
  return 0;
}

TEST(Resolution, IsThatOfTheContainersWindow) {
  const ComPtr<IDispatch> plot = NewPlot(L"Plot2D");
  SIZEL size{};
  const auto before = Become(DPI_AWARENESS_CONTEXT_UNAWARE);
  {
    Form form;
    ASSERT_EQ(96, Dots(form.window));
    form.Place(plot, {0, 0, 480, 360});
    ASSERT_EQ(S_OK, form.object->GetExtent(DVASPECT_CONTENT, &size));
    EXPECT_EQ(12700, size.cx);                  // 5 inches
    EXPECT_EQ(11, Letters(form.PlotWindow()));  // 8 points
  }
  Become(DPI_AWARENESS_CONTEXT_PER_MONITOR_AWARE);
  {
    Form form;
    if (Dots(form.window) != 144) {
      Become(before);
      GTEST_SKIP() << "the system has " << Dots(form.window) << " dots to the inch";
    }
    form.Place(plot, {0, 0, 480, 360});
    ASSERT_EQ(S_OK, form.object->GetExtent(DVASPECT_CONTENT, &size));
    EXPECT_EQ(8467, size.cx);  // 3 1/3 inches
    EXPECT_EQ(16, Letters(form.PlotWindow()));
    Load(*plot.Get());
    EXPECT_EQ(0, Call(*plot.Get(), L"Plot"));
    // Told of a change that is none.
    constexpr UINT kChanged = 0x02E3;  // WM_DPICHANGED_AFTERPARENT
    SendMessageW(form.PlotWindow(), kChanged, 0, 0);
    EXPECT_EQ(16, Letters(form.PlotWindow()));
  }
  Become(before);
}

/// A window takes the resolution of the one that it is put into, as of a screen that it is dragged
/// to. The container tells of it by a new place alone.
TEST(Resolution, ChangesUnderALivingWindow) {
  const ComPtr<IDispatch> plot = NewPlot(L"Plot2D");
  const auto before = Become(DPI_AWARENESS_CONTEXT_UNAWARE);
  Form form;
  form.Place(plot, {0, 0, 480, 360});
  Load(*plot.Get());
  EXPECT_EQ(0, Call(*plot.Get(), L"Plot"));
  EXPECT_EQ(11, Letters(form.PlotWindow()));
  Become(DPI_AWARENESS_CONTEXT_PER_MONITOR_AWARE);
  const HWND finer = CreateWindowExW(0, L"STATIC", L"", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 800,
                                     600, nullptr, nullptr, nullptr, nullptr);
  SetParent(form.PlotWindow(), finer);
  if (Dots(finer) == 144) {
    ASSERT_EQ(144, Dots(form.PlotWindow()));
    const RECT place{0, 0, 720, 540};
    ASSERT_EQ(S_OK, As<IOleInPlaceObject>(plot)->SetObjectRects(&place, &place));
    EXPECT_EQ(16, Letters(form.PlotWindow()));
    SIZEL size{};
    ASSERT_EQ(S_OK, form.object->GetExtent(DVASPECT_CONTENT, &size));
    EXPECT_EQ(12700, size.cx);
    // The plot is drawn for the finer dots, not stretched.
    const auto followed = Shown(form.PlotWindow(), 720, 540);
    Invoke(*plot.Get(), L"SetPlotNotVaild", DISPATCH_METHOD);
    EXPECT_EQ(0, Call(*plot.Get(), L"Plot"));
    EXPECT_EQ(followed, Shown(form.PlotWindow(), 720, 540));
  }
  form.Remove();
  DestroyWindow(finer);
  Become(before);
}

}  // namespace
}  // namespace discoplan::activex
