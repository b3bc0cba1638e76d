// SPDX-License-Identifier: MIT
// The mouse, its pointer and the keys, as the system tells of them.

#include <algorithm>

#include "discoplan/controls/control_factory.h"
#include "tests/activex/alone.h"
#include "tests/activex/container.h"
#include "tests/activex/user.h"

namespace discoplan::activex {
namespace {

constexpr float kTwips = 15;  // a pixel

/// Where a node of a control of that size lies, in pixels of the control.
RECT PlaceOf(const char* plot, const char* name, SIZE pixels) {
  Alone platform;
  const auto control = NewControl(plot, platform, nullptr);
  const float width = static_cast<float>(pixels.cx) * kTwips;
  const float height = static_cast<float>(pixels.cy) * kTwips;
  control->root().Move({0, 0, width, height});
  control->InitProperties();
  control->SetSize(width, height);
  const Node* node = control->root().Find(name);
  const TwipsBox size = node->Box();
  float left = 0;
  float top = 0;
  for (; node != &control->root(); node = node->parent()) {
    left += node->Box().left;
    top += node->Box().top;
  }
  return {std::lround(left / kTwips), std::lround(top / kTwips),
          std::lround((left + size.width) / kTwips), std::lround((top + size.height) / kTwips)};
}

TEST(Mouse, CountsPixelsOnThePictureOfASurface) {
  for (const wchar_t* name : {L"Plot3D", L"Plot3DS", L"Plot3DB"}) {
    const ComPtr<IDispatch> plot = NewPlot(name);
    Form form;
    form.Place(plot, {0, 0, 400, 300});
    EventSink sink;
    Connect(*plot.Get(), sink, IID_IDispatch);
    const RECT picture = PlaceOf(Utf8(name).c_str(), "PLOTA", {400, 300});
    const HWND window = form.PlotWindow();
    SendMessageW(window, WM_RBUTTONDOWN, MK_RBUTTON | MK_SHIFT,
                 MAKELPARAM(picture.left + 7, picture.top + 11));
    SendMessageW(window, WM_RBUTTONUP, 0, MAKELPARAM(picture.left + 9, picture.top + 12));
    // A picture doesn't click.
    ASSERT_EQ(2U, sink.events.size());
    EXPECT_EQ((EventSink::Event{-605, {2, 0, 7, 11}}), sink.events[0]) << Utf8(name);
    EXPECT_EQ((EventSink::Event{-607, {2, 0, 9, 12}}), sink.events[1]) << Utf8(name);
  }
}

TEST(Mouse, BelongsToThePictureThatWasPressed) {
  const ComPtr<IDispatch> plot = NewPlot(L"Plot3D");
  Form form;
  form.Place(plot, {0, 0, 400, 300});
  EventSink sink;
  Connect(*plot.Get(), sink, IID_IDispatch);
  const RECT picture = PlaceOf("Plot3D", "PLOTA", {400, 300});
  const HWND window = form.PlotWindow();
  SendMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(picture.left + 5, picture.top + 5));
  EXPECT_EQ(window, GetCapture());
  // To the left of the picture and below the window.
  SendMessageW(window, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(picture.left - 4, 320));
  SendMessageW(window, WM_LBUTTONUP, 0, MAKELPARAM(picture.left - 4, 320));
  EXPECT_EQ(nullptr, GetCapture());
  ASSERT_EQ(3U, sink.events.size());
  const auto below = static_cast<double>(320 - picture.top);
  EXPECT_EQ((EventSink::Event{-606, {1, 0, -4, below}}), sink.events[1]);
  EXPECT_EQ((EventSink::Event{-607, {1, 0, -4, below}}), sink.events[2]);
  SendMessageW(window, WM_MOUSEMOVE, 0, MAKELPARAM(1, 299));
  EXPECT_EQ((EventSink::Event{-606, {0, 0, 15, 299 * 15.0}}), sink.events[3]);
}

TEST(Mouse, GoesFreeWhereSomebodyElseTakesIt) {
  const ComPtr<IDispatch> plot = NewPlot(L"Plot3D");
  Form form;
  form.Place(plot, {0, 0, 400, 300});
  EventSink sink;
  Connect(*plot.Get(), sink, IID_IDispatch);
  const HWND window = form.PlotWindow();
  SendMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(1, 299));
  SetCapture(form.window);
  SendMessageW(window, WM_LBUTTONUP, 0, MAKELPARAM(1, 299));
  EXPECT_EQ(1U, sink.events.size());  // neither up nor a click
  ReleaseCapture();
}

HCURSOR PointerOver(HWND window) {
  SendMessageW(window, WM_SETCURSOR, reinterpret_cast<WPARAM>(window),
               MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
  return GetCursor();
}

TEST(Pointer, IsTheOneOfTheNumber) {
  const ComPtr<IDispatch> plot = NewPlot(L"Plot2D");
  Form form;
  form.Place(plot, {0, 0, 400, 300});
  const HWND window = form.PlotWindow();
  const struct {
    int number;
    LPCWSTR name;
  } cases[] = {{0, IDC_ARROW},  {1, IDC_ARROW},  {2, IDC_CROSS},    {3, IDC_IBEAM},
               {7, IDC_SIZENS}, {9, IDC_SIZEWE}, {10, IDC_UPARROW}, {11, IDC_WAIT},
               {12, IDC_NO},    {14, IDC_HELP},  {15, IDC_SIZEALL}, {40, IDC_ARROW},
               {-1, IDC_ARROW}};
  for (const auto& [number, name] : cases) {
    Put(*plot.Get(), L"MousePointer", number);
    EXPECT_EQ(LoadCursorW(nullptr, name), PointerOver(window)) << number;
  }
}

TEST(Pointer, IsTheCallersPicture) {
  ICONINFO info{};
  info.hbmMask = CreateBitmap(32, 32, 1, 1, nullptr);
  info.hbmColor = CreateBitmap(32, 32, 1, 32, nullptr);
  PICTDESC about{};
  about.cbSizeofstruct = sizeof about;
  about.picType = PICTYPE_ICON;
  about.icon.hicon = CreateIconIndirect(&info);
  ComPtr<IDispatch> picture;
  ASSERT_EQ(S_OK, OleCreatePictureIndirect(&about, IID_IDispatch, TRUE,
                                           reinterpret_cast<void**>(picture.GetAddressOf())));
  const ComPtr<IDispatch> plot = NewPlot(L"Plot2D");
  Form form;
  form.Place(plot, {0, 0, 400, 300});
  const HWND window = form.PlotWindow();
  Put(*plot.Get(), L"MousePointer", 99);
  EXPECT_EQ(LoadCursorW(nullptr, IDC_ARROW), PointerOver(window));
  Invoke(*plot.Get(), L"MouseIcon", DISPATCH_PROPERTYPUTREF, {Of(picture.Get())});
  EXPECT_EQ(reinterpret_cast<HCURSOR>(about.icon.hicon), PointerOver(window));
  Put(*plot.Get(), L"MousePointer", 2);
  EXPECT_EQ(LoadCursorW(nullptr, IDC_CROSS), PointerOver(window));
  SetCursor(LoadCursorW(nullptr, IDC_ARROW));
  DeleteObject(info.hbmMask);
  DeleteObject(info.hbmColor);
}

TEST(Pointer, IsAnHourglassWhileAPlotIsDrawn) {
  const ComPtr<IDispatch> plot = NewPlot(L"Plot2D");
  Form form;
  SetWindowPos(form.window, HWND_TOPMOST, 20, 20, 700, 600, SWP_SHOWWINDOW);
  form.Place(plot, {0, 0, 400, 300});
  Load(*plot.Get());
  POINT middle{200, 150};
  ClientToScreen(form.PlotWindow(), &middle);
  SetCursorPos(middle.x, middle.y);
  RunMessages();
  ASSERT_EQ(form.PlotWindow(), WindowFromPoint(middle));
  static HCURSOR seen = nullptr;
  static HWND asked = nullptr;
  seen = nullptr;
  asked = form.PlotWindow();
  // Comes to pass when the plot lets events run.
  const UINT_PTR timer = SetTimer(nullptr, 0, 1, [](HWND, UINT, UINT_PTR id, DWORD) {
    KillTimer(nullptr, id);
    seen = PointerOver(asked);
  });
  Sleep(30);
  Call(*plot.Get(), L"Plot");
  KillTimer(nullptr, timer);
  EXPECT_EQ(LoadCursorW(nullptr, IDC_WAIT), seen);
  EXPECT_EQ(LoadCursorW(nullptr, IDC_ARROW), PointerOver(form.PlotWindow()));
}

TEST(Keys, WalkThroughTheOptionsOfADialog) {
  const ComPtr<IDispatch> plot = NewPlot(L"Plot2D");
  Form form;
  form.Place(plot, {0, 0, 400, 300});
  Load(*plot.Get());
  Put(*plot.Get(), L"ShowSites", 0);
  const User user(L"Discoplan.Dialog", L"", [&](HWND dialog) {
    const HWND hide = User::Button(dialog, L"Hide");
    EXPECT_EQ(BST_CHECKED, SendMessageW(hide, BM_GETCHECK, 0, 0));
    SetFocus(hide);
    PostMessageW(hide, WM_KEYDOWN, VK_UP, 0);
    PostMessageW(hide, WM_KEYUP, VK_UP, 0);
    User::Press(dialog, L"OK");
  });
  Call(*plot.Get(), L"ShowPlotOption");
  EXPECT_EQ(-1, Get(*plot.Get(), L"ShowSites"));
}

TEST(Keys, WalkThroughTheOptionsOfAPage) {
  const ComPtr<IDispatch> plot = NewPlot(L"Plot2D");
  CAUUID pages{};
  ASSERT_EQ(S_OK, As<ISpecifyPropertyPages>(plot)->GetPages(&pages));
  ComPtr<IPropertyPage> page;
  ASSERT_EQ(S_OK,
            CoCreateInstance(pages.pElems[0], nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&page)));
  CoTaskMemFree(pages.pElems);
  IUnknown* object = plot.Get();
  ASSERT_EQ(S_OK, page->SetObjects(1, &object));
  Form form;
  const RECT place{0, 0, 400, 300};
  ASSERT_EQ(S_OK, page->Activate(form.window, &place, TRUE));
  SetForegroundWindow(form.window);
  const HWND notch = User::Button(form.window, L"Notch");
  const HWND flat = User::Button(form.window, L"Flat!");
  SetFocus(notch);
  MSG down{notch, WM_KEYDOWN, VK_DOWN, 0, 0, {}};
  EXPECT_EQ(S_OK, page->TranslateAccelerator(&down));
  EXPECT_EQ(flat, GetFocus());
  EXPECT_EQ(BST_CHECKED, SendMessageW(flat, BM_GETCHECK, 0, 0));
  EXPECT_EQ(BST_UNCHECKED, SendMessageW(notch, BM_GETCHECK, 0, 0));
  // From the last one round to the first.
  MSG on{flat, WM_KEYDOWN, VK_RIGHT, 0, 0, {}};
  EXPECT_EQ(S_OK, page->TranslateAccelerator(&on));
  EXPECT_EQ(notch, GetFocus());
  MSG back{notch, WM_KEYDOWN, VK_LEFT, 0, 0, {}};
  EXPECT_EQ(S_OK, page->TranslateAccelerator(&back));
  EXPECT_EQ(S_OK, page->Apply());
  EXPECT_EQ(2, Get(*plot.Get(), L"WaferStyle"));
  EXPECT_EQ(S_OK, page->Deactivate());
  EXPECT_EQ(S_OK, page->SetObjects(0, nullptr));
}

}  // namespace
}  // namespace discoplan::activex
