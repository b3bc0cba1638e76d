// SPDX-License-Identifier: MIT
#include <algorithm>
#include <set>
#include <utility>

#include "discoplan/controls/control_factory.h"
#include "discoplan/forms/painter.h"
#include "discoplan/raster/picture.h"
#include "tests/activex/alone.h"
#include "tests/activex/bitmap.h"
#include "tests/activex/container.h"

namespace discoplan::activex {
namespace {

using Notes = std::vector<std::string>;

TEST(Window, HasTheLibrarysPixels) {
  for (const wchar_t* name : {L"Plot2D", L"Plot3DB", L"LineScan"}) {
    const ComPtr<IDispatch> plot = NewPlot(name);
    Form form;
    form.Place(plot, {5, 5, 505, 405});
    Load(*plot.Get());
    EXPECT_EQ(0, Call(*plot.Get(), L"Plot"));
    const std::vector<DWORD> seen = Shown(form.PlotWindow(), 500, 400);

    Alone platform;
    const auto control = NewControl(Utf8(name), platform, nullptr);
    control->root().Move({0, 0, 7500, 6000});
    control->InitProperties();
    control->SetSize(7500, 6000);
    FloatArray x, y, z;
    for (FloatArray* array : {&x, &y, &z}) *array = {.lower = 0, .values = {}, .dimensioned = true};
    for (int i = 0; i < 13; ++i) {
      x.values.push_back(static_cast<float>(i % 5 * 35 - 70));
      y.values.push_back(static_cast<float>(i / 5 * 60 - 60));
      z.values.push_back(10 + static_cast<float>(i) * 0.75F);
    }
    ASSERT_EQ(LoadResult::Loaded, control->SetWaferData(x, y, z));
    control->Plot();
    Canvas alone(500, 400, 0);
    PaintTree(control->root(), alone,
              {.resolution = platform.screen(), .text = platform.text(), .buttons = false});
    std::size_t wrong = 0;
    for (std::size_t i = 0; i < seen.size(); ++i) {
      wrong += (seen[i] ^ std::as_const(alone).Pixels()[i]) & 0xFFFFFF ? 1 : 0;
    }
    EXPECT_EQ(0U, wrong) << Utf8(name);
  }
}

/// Labels and group boxes are there and aren't seen, on the screen itself.
TEST(Window, ShowsThePlotUnderItsGroupBoxes) {
  const ComPtr<IDispatch> plot = NewPlot(L"Plot2D");
  Form form;
  SetWindowPos(form.window, HWND_TOPMOST, 20, 20, 700, 600, SWP_SHOWWINDOW);
  form.Place(plot, {0, 0, 500, 400});
  Load(*plot.Get());
  Call(*plot.Get(), L"Plot");
  const HWND window = form.PlotWindow();
  const std::vector<DWORD> due = Shown(window, 500, 400);
  UpdateWindow(window);
  std::vector<HWND> boxes;
  for (HWND child = nullptr;
       (child = FindWindowExW(window, child, L"BUTTON", nullptr)) != nullptr;) {
    if ((GetWindowLongPtrW(child, GWL_STYLE) & BS_TYPEMASK) == BS_GROUPBOX) boxes.push_back(child);
  }
  ASSERT_LE(3U, boxes.size());
  std::size_t looked_at = 0;
  std::size_t wrong = 0;
  const HDC screen = GetDC(nullptr);
  for (const HWND box : boxes) {
    RECT place{};
    GetWindowRect(box, &place);
    MapWindowPoints(nullptr, window, reinterpret_cast<POINT*>(&place), 2);
    for (LONG y = std::max(0L, place.top); y < std::min(400L, place.bottom); y += 7) {
      for (LONG x = std::max(0L, place.left); x < std::min(500L, place.right); x += 5) {
        POINT at{x, y};
        if (ChildWindowFromPointEx(window, at, CWP_SKIPTRANSPARENT | CWP_SKIPINVISIBLE) != window) {
          continue;
        }
        ClientToScreen(window, &at);
        EXPECT_EQ(window, WindowFromPoint(at));
        const DWORD pixel = due[static_cast<std::size_t>(y * 500 + x)];
        const COLORREF colour = RGB((pixel >> 16) & 0xFF, (pixel >> 8) & 0xFF, pixel & 0xFF);
        ++looked_at;
        wrong += GetPixel(screen, at.x, at.y) == colour ? 0 : 1;
      }
    }
  }
  ReleaseDC(nullptr, screen);
  EXPECT_GT(looked_at, 1000U);
  EXPECT_EQ(0U, wrong);
}

TEST(Window, GetsTheLeastSizeThatItAsksFor) {
  const ComPtr<IDispatch> plot = NewPlot(L"Plot2D");
  Form form;
  form.Place(plot, {10, 10, 110, 110});
  const Notes notes = form.TakeNotes();
  ASSERT_EQ(2U, notes.size());
  EXPECT_EQ("in place", notes[0]);
  EXPECT_EQ("wants 300 by 212", notes[1]);  // 4500 by 3180 twips
  RECT area{};
  GetClientRect(form.PlotWindow(), &area);
  EXPECT_EQ(300, area.right);
  EXPECT_EQ(212, area.bottom);
}

TEST(Window, StaysSmallWhereItsContainerSaysSo) {
  const ComPtr<IDispatch> plot = NewPlot(L"Plot2D");
  Form form;
  form.gives_way = false;
  form.Place(plot, {10, 10, 110, 110});
  EXPECT_EQ((Notes{"in place", "wants 300 by 212"}), form.TakeNotes());
  RECT area{};
  GetClientRect(form.PlotWindow(), &area);
  EXPECT_EQ(100, area.right);
  Load(*plot.Get());
  EXPECT_EQ(0, Call(*plot.Get(), L"Plot"));
}

TEST(Window, StretchesTheSnapshotOfAPlot) {
  const ComPtr<IDispatch> plot = NewPlot(L"Plot2D");
  Form form;
  form.Place(plot, {0, 0, 400, 300});
  Load(*plot.Get());
  Call(*plot.Get(), L"Plot");
  const std::vector<DWORD> before = Shown(form.PlotWindow(), 400, 300);
  const RECT larger{0, 0, 600, 500};
  EXPECT_EQ(S_OK, As<IOleInPlaceObject>(plot)->SetObjectRects(&larger, &larger));
  const std::vector<DWORD> stretched = Shown(form.PlotWindow(), 600, 500);
  Invoke(*plot.Get(), L"SetPlotNotVaild", DISPATCH_METHOD);
  Call(*plot.Get(), L"Plot");
  const std::vector<DWORD> anew = Shown(form.PlotWindow(), 600, 500);
  EXPECT_NE(stretched, anew);
  const auto colours = [](const std::vector<DWORD>& pixels) {
    return std::set<DWORD>(pixels.begin(), pixels.end()).size();
  };
  EXPECT_LE(colours(stretched), colours(before) + 20);
}

TEST(Window, IsCutToWhatItsContainerShows) {
  const ComPtr<IDispatch> plot = NewPlot(L"Plot2D");
  Form form;
  form.Place(plot, {0, 0, 400, 300});
  const RECT place{50, 40, 450, 340};
  const RECT clip{60, 0, 300, 200};
  const auto object = As<IOleInPlaceObject>(plot);
  ASSERT_EQ(S_OK, object->SetObjectRects(&place, &clip));
  RECT shown{};
  EXPECT_EQ(SIMPLEREGION, GetWindowRgnBox(form.PlotWindow(), &shown));
  const RECT due{10, 0, 250, 160};  // in the window's own pixels
  EXPECT_TRUE(EqualRect(&due, &shown));
  // Out of sight, and all in sight again.
  const RECT elsewhere{500, 500, 600, 600};
  ASSERT_EQ(S_OK, object->SetObjectRects(&place, &elsewhere));
  EXPECT_EQ(NULLREGION, GetWindowRgnBox(form.PlotWindow(), &shown));
  ASSERT_EQ(S_OK, object->SetObjectRects(&place, nullptr));
  EXPECT_EQ(ERROR, GetWindowRgnBox(form.PlotWindow(), &shown));
}

TEST(Window, HasHandles) {
  const ComPtr<IDispatch> plot = NewPlot(L"Plot3D");
  EXPECT_EQ(0, Get(*plot.Get(), L"hwnd"));
  Form form;
  form.Place(plot, {0, 0, 400, 300});
  const auto window =
      reinterpret_cast<HWND>(static_cast<INT_PTR>(static_cast<INT>(Get(*plot.Get(), L"hwnd"))));
  EXPECT_EQ(form.PlotWindow(), window);
  const auto device =
      reinterpret_cast<HDC>(static_cast<INT_PTR>(static_cast<INT>(Get(*plot.Get(), L"hdc"))));
  EXPECT_EQ(window, WindowFromDC(device));
  form.Remove();
  EXPECT_EQ(0, Get(*plot.Get(), L"hwnd"));
  EXPECT_FALSE(IsWindow(window));
}

TEST(Window, GivesTheFocusToItsButtonAndTabsOn) {
  const ComPtr<IDispatch> plot = NewPlot(L"Plot2D");
  Form form;
  form.Place(plot, {0, 0, 400, 300});
  form.TakeNotes();
  SetForegroundWindow(form.window);
  EXPECT_EQ(S_OK,
            form.object->DoVerb(OLEIVERB_UIACTIVATE, nullptr, &form, 0, form.window, &form.place));
  wchar_t name[64] = L"";
  GetWindowTextW(GetFocus(), name, 64);
  EXPECT_EQ(std::wstring(L"Plot- Options"), name);
  EXPECT_EQ((Notes{"user", "focus"}), form.TakeNotes());
  ASSERT_NE(nullptr, form.active);
  MSG tab{GetFocus(), WM_KEYDOWN, VK_TAB, 0, 0, {}};
  EXPECT_EQ(S_FALSE, form.active->TranslateAccelerator(&tab));
  EXPECT_EQ((Notes{"key passed on, 0"}), form.TakeNotes());
  EXPECT_EQ(S_OK, As<IOleInPlaceObject>(plot)->UIDeactivate());
  EXPECT_EQ(nullptr, form.active);
}

TEST(Window, WalksThroughItsFields) {
  const ComPtr<IDispatch> plot = NewPlot(L"LineScan");
  Form form;
  form.Place(plot, {0, 0, 500, 400});
  form.object->DoVerb(OLEIVERB_UIACTIVATE, nullptr, &form, 0, form.window, &form.place);
  std::vector<HWND> fields;
  for (HWND child = nullptr;
       (child = FindWindowExW(form.PlotWindow(), child, L"EDIT", nullptr)) != nullptr;) {
    if (IsWindowVisible(child)) fields.push_back(child);
  }
  ASSERT_FALSE(fields.empty());
  SetFocus(fields[0]);
  SetWindowTextW(fields[0], L"75");
  EXPECT_EQ(75, Get(*plot.Get(), L"angle"));
  SendMessageW(fields[0], WM_KEYDOWN, VK_UP, 0);
  EXPECT_EQ(76, Get(*plot.Get(), L"angle"));
  wchar_t text[16] = L"";
  GetWindowTextW(fields[0], text, 16);
  EXPECT_EQ(std::wstring(L"76"), text);
}

TEST(Window, LeavesADesignersMouseAlone) {
  const ComPtr<IDispatch> plot = NewPlot(L"Plot2D");
  Form form;
  form.runs = false;
  form.Place(plot, {0, 0, 400, 300});
  EventSink sink;
  Connect(*plot.Get(), sink, IID_IDispatch);
  SendMessageW(form.PlotWindow(), WM_MOUSEMOVE, 0, MAKELPARAM(1, 1));
  EXPECT_TRUE(sink.events.empty());
}

TEST(Window, SurvivesThatOfItsContainer) {
  const ComPtr<IDispatch> plot = NewPlot(L"Plot2D");
  Form form;
  form.Place(plot, {0, 0, 400, 300});
  DestroyWindow(form.window);
  EXPECT_EQ(nullptr, form.PlotWindow());
  EXPECT_EQ("gone", form.TakeNotes().back());
  Load(*plot.Get());
  EXPECT_EQ(0, Call(*plot.Get(), L"Plot"));
}

TEST(Window, SetsTheScaleOfItsForm) {
  /// The control as its form extends it, and the form.
  class Extended final : public IDispatch {
   public:
    STDMETHODIMP QueryInterface(REFIID, void** out) override { return *out = this, S_OK; }
    STDMETHODIMP_(ULONG) AddRef() override { return 2; }
    STDMETHODIMP_(ULONG) Release() override { return 1; }
    STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* id) override {
      *id = std::wstring(names[0]) == L"Parent" ? 1 : 2;
      return S_OK;
    }
    STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* params, VARIANT* value,
                        EXCEPINFO*, UINT*) override {
      if (id == 2) return scale = params->rgvarg[0].iVal, S_OK;
      return *value = Of(this), S_OK;
    }
    int scale = 3;
  };
  Extended extended;
  const ComPtr<IDispatch> plot = NewPlot(L"Plot2D");
  Form form;
  form.extended = &extended;
  form.Place(plot, {0, 0, 400, 300});
  EXPECT_EQ(1, extended.scale);
}

}  // namespace
}  // namespace discoplan::activex
