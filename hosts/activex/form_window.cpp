// SPDX-License-Identifier: MIT
#include "hosts/activex/form_window.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "discoplan/base/numbers.h"
#include "discoplan/forms/painter.h"
#include "hosts/activex/gdi_text.h"

namespace discoplan::activex {
namespace {

constexpr const wchar_t* kClassName = L"Discoplan.Form";
constexpr ULONGLONG kFrame = 40;  // milliseconds between two looks at a growing plot
constexpr int kFirstId = 100;
// Twips of a group's options, as the painter has them.
constexpr float kFirstOption = 240;
constexpr float kOptionPitch = 270;
constexpr float kOptionIndent = 120;

struct WidgetKind {
  NodeKind kind;
  const wchar_t* window_class;
  DWORD style;
  bool quiet = false;
};
constexpr WidgetKind kGroupBox = {NodeKind::Frame, L"BUTTON", BS_GROUPBOX, true};
constexpr WidgetKind kWidgetKinds[] = {
    {NodeKind::Button, L"BUTTON", WS_TABSTOP | BS_PUSHBUTTON | BS_NOTIFY},
    {NodeKind::Text, L"EDIT", WS_TABSTOP | WS_BORDER | ES_AUTOHSCROLL},
    {NodeKind::Check, L"BUTTON", WS_TABSTOP | BS_AUTOCHECKBOX | BS_NOTIFY},
    {NodeKind::Options, L"BUTTON", BS_AUTORADIOBUTTON | BS_NOTIFY},
    {NodeKind::Spinner, UPDOWN_CLASSW, 0},
    {NodeKind::Label, L"STATIC", SS_NOPREFIX, true},
    kGroupBox,
};

const WidgetKind* KindOf(const Node& node) {
  if (node.kind == NodeKind::Frame && !node.Bordered()) return nullptr;
  for (const WidgetKind& kind : kWidgetKinds) {
    if (kind.kind == node.kind) return &kind;
  }
  return nullptr;
}

/// An ampersand in a caption would underline what follows it.
std::wstring Caption(std::string_view text) {
  std::wstring caption;
  for (const wchar_t c : Wide(text)) {
    caption += c;
    if (c == L'&') caption += c;
  }
  return caption;
}

std::wstring TextOf(HWND window) {
  std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
  text.resize(
      static_cast<std::size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
  return text;
}

int Whole(double pixels) {
  return static_cast<int>(RoundHalfEven(std::clamp(pixels, -30000.0, 30000.0)));
}

}  // namespace

bool FormWindow::Create(HWND parent, const RECT& place) {
  const INITCOMMONCONTROLSEX spinners{sizeof spinners, ICC_UPDOWN_CLASS};
  InitCommonControlsEx(&spinners);
  WNDCLASSEXW own{};
  own.cbSize = sizeof own;
  own.style = CS_DBLCLKS | CS_OWNDC;
  own.lpfnWndProc = &Procedure;
  own.hInstance = Module();
  own.lpszClassName = kClassName;
  RegisterClassExW(&own);  // fails for all but the first
  CreateWindowExW(WS_EX_CONTROLPARENT, kClassName, L"",
                  WS_CHILD | WS_CLIPCHILDREN | WS_CLIPSIBLINGS, place.left, place.top,
                  place.right - place.left, place.bottom - place.top, parent, nullptr, Module(),
                  this);
  if (handle_ == nullptr) return false;
  root_->Watch([this](Node& node, Aspect aspect) { Note(node, aspect); });
  ForEachNode(*root_, [this](Node& node) { Build(node); });
  Sync();
  return true;
}

void FormWindow::Unregister() { UnregisterClassW(kClassName, Module()); }

void FormWindow::Destroy() {
  if (const HWND window = std::exchange(handle_, nullptr)) {
    root_->Watch({});
    SetWindowLongPtrW(window, GWLP_USERDATA, 0);
    DestroyWindow(window);
  }
  widgets_.clear();
  for (const auto& [look, font] : fonts_) DeleteObject(font);
  fonts_.clear();
  for (const auto& [pixel, brush] : brushes_) DeleteObject(brush);
  brushes_.clear();
}

HWND FormWindow::NewWidget(const wchar_t* window_class, DWORD style, int id, bool quiet) {
  const HWND window = CreateWindowExW(
      quiet ? WS_EX_TRANSPARENT : 0, window_class, L"", WS_CHILD | WS_CLIPSIBLINGS | style, 0, 0, 0,
      0, handle_, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), Module(), nullptr);
  SetWindowSubclass(window, quiet ? &QuietProcedure : &WidgetProcedure, 1,
                    reinterpret_cast<DWORD_PTR>(this));
  return window;
}

void FormWindow::Build(Node& node) {
  const WidgetKind* kind = KindOf(node);
  const auto known = [&](const Widget& widget) { return widget.node == &node; };
  if (kind == nullptr || std::any_of(widgets_.begin(), widgets_.end(), known)) return;
  Widget widget{.node = &node, .windows = {}};
  const int id = kFirstId + static_cast<int>(widgets_.size());
  if (node.kind == NodeKind::Options) {
    widget.group = NewWidget(kGroupBox.window_class, kGroupBox.style | WS_GROUP, id, true);
  }
  const std::size_t count = node.kind == NodeKind::Options ? node.Options().size() : 1;
  for (std::size_t i = 0; i < count; ++i) {
    // A group begins with its first option, and ends with whatever comes next.
    const DWORD first = i == 0 ? static_cast<DWORD>(WS_GROUP) : 0;
    widget.windows.push_back(NewWidget(kind->window_class, kind->style | first, id, kind->quiet));
  }
  widgets_.push_back(std::move(widget));
}

void FormWindow::Note(Node& node, Aspect aspect) {
  if (handle_ == nullptr) return;
  const std::shared_ptr<FormWindow> self = shared_from_this();
  picture_ = nullptr;
  if (aspect == Aspect::Refresh) {
    const ULONGLONG now = GetTickCount64();
    if (now - std::exchange(last_growth_, now) < kFrame) return;
    RedrawWindow(handle_, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_NOCHILDREN);
    return;
  }
  for (Widget& widget : widgets_) {
    if (widget.node == &node) widget.stale |= MaskOf(aspect);
  }
  placed_ = placed_ && (MaskOf(aspect) & (MaskOf(Aspect::Place) | MaskOf(Aspect::Visible) |
                                          MaskOf(Aspect::Children))) == 0;
  if (!std::exchange(is_due_, true)) PostMessageW(handle_, kSync, 0, 0);
  owner_->Noted();
}

void FormWindow::Sync() {
  if (handle_ == nullptr || syncing_) return;
  is_due_ = false;
  syncing_ = true;
  const bool place = !std::exchange(placed_, true);
  if (place) ForEachNode(*root_, [this](Node& node) { Build(node); });
  for (Widget& widget : widgets_) {
    if (place) SyncPlace(widget);
    if (widget.stale != 0) SyncWidget(widget);
  }
  syncing_ = false;
  if (picture_ == nullptr) InvalidateRect(handle_, nullptr, FALSE);
}

void FormWindow::Refresh() {
  for (Widget& widget : widgets_) widget.stale = ~0U;
  placed_ = false;
  picture_ = nullptr;
  Sync();
}

POINT FormWindow::CornerOf(const Node& node) const {
  double left = 0;
  double top = 0;
  for (const Node* at = &node; at != root_; at = at->parent()) {
    left += static_cast<double>(at->Box().left);
    top += static_cast<double>(at->Box().top);
  }
  const Screen& screen = owner_->screen();
  return {Whole(left / screen.twips_per_pixel_x), Whole(top / screen.twips_per_pixel_y)};
}

void FormWindow::SyncPlace(Widget& widget) {
  const Node& node = *widget.node;
  const Screen& screen = owner_->screen();
  const POINT corner = CornerOf(node);
  const auto across = [&](float twips) { return Whole(twips / screen.twips_per_pixel_x); };
  const auto down = [&](float twips) { return Whole(twips / screen.twips_per_pixel_y); };
  RECT place{corner.x, corner.y, corner.x + across(node.Box().width),
             corner.y + down(node.Box().height)};
  const bool options = node.kind == NodeKind::Options;
  const auto put = [&](HWND window) {
    SetWindowPos(window, nullptr, place.left, place.top, place.right - place.left,
                 place.bottom - place.top,
                 SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOCOPYBITS |
                     static_cast<UINT>(node.IsShown() ? SWP_SHOWWINDOW : SWP_HIDEWINDOW));
  };
  if (widget.group != nullptr) put(widget.group);
  for (std::size_t i = 0; i < widget.windows.size(); ++i) {
    if (options) {
      place.top = corner.y + down(kFirstOption + static_cast<float>(i) * kOptionPitch);
      place.bottom = place.top + down(kOptionPitch);
      place.left = corner.x + across(kOptionIndent);
      place.right = corner.x + across(node.Box().width - kOptionIndent / 2);
    }
    put(widget.windows[i]);
  }
}

void FormWindow::SyncWidget(Widget& widget) {
  const unsigned stale = std::exchange(widget.stale, 0);
  const Node& node = *widget.node;
  if ((stale & MaskOf(Aspect::Look)) != 0) {
    for (const HWND window : widget.windows) {
      SendMessageW(window, WM_SETFONT, reinterpret_cast<WPARAM>(FontOf(node)), TRUE);
    }
  }
  if ((stale & (MaskOf(Aspect::Text) | MaskOf(Aspect::Look))) != 0) SyncText(widget);
  if ((stale & MaskOf(Aspect::Value)) == 0 || node.kind == NodeKind::Spinner) return;
  if (node.kind == NodeKind::Check) {
    SendMessageW(widget.windows[0], BM_SETCHECK, node.Value() != 0 ? BST_CHECKED : BST_UNCHECKED,
                 0);
  } else if (node.kind == NodeKind::Options) {
    for (std::size_t i = 0; i < widget.windows.size(); ++i) {
      const bool chosen = node.Value() == static_cast<std::int32_t>(i);
      SendMessageW(widget.windows[i], BM_SETCHECK, chosen ? BST_CHECKED : BST_UNCHECKED, 0);
      // The keyboard comes to the chosen one; to the first where none is.
      const bool none =
          node.Value() < 0 || static_cast<std::size_t>(node.Value()) >= widget.windows.size();
      const LONG_PTR style = GetWindowLongPtrW(widget.windows[i], GWL_STYLE) & ~WS_TABSTOP;
      SetWindowLongPtrW(widget.windows[i], GWL_STYLE,
                        style | (chosen || (none && i == 0) ? WS_TABSTOP : 0));
    }
  }
}

void FormWindow::SyncText(const Widget& widget) {
  const Node& node = *widget.node;
  if (widget.group != nullptr) SetWindowTextW(widget.group, Caption(node.Text()).c_str());
  if (node.kind == NodeKind::Options) {
    for (std::size_t i = 0; i < widget.windows.size() && i < node.Options().size(); ++i) {
      SetWindowTextW(widget.windows[i], Caption(node.Options()[i]).c_str());
    }
  } else if (node.kind == NodeKind::Text) {
    const std::wstring text = Wide(node.Text());
    if (TextOf(widget.windows[0]) != text) SetWindowTextW(widget.windows[0], text.c_str());
  } else if (node.kind == NodeKind::Label) {
    SetWindowTextW(widget.windows[0], LettersOf(node.Font(), node.Text()).c_str());
  } else {
    SetWindowTextW(widget.windows[0], Caption(node.Text()).c_str());
  }
}

HFONT FormWindow::FontOf(const Node& node) {
  const Font& font = node.Font();
  const double pixels_per_point = kTwipsPerPoint / owner_->screen().twips_per_pixel_y;
  const int look = Whole(font.size * pixels_per_point * 16) * 4 + font.bold * 2 + font.underline;
  HFONT& known = fonts_[{font.name, look}];
  if (known == nullptr) known = NewFont(font, pixels_per_point);
  return known;
}

const FormWindow::Widget* FormWindow::WidgetOf(HWND window, std::size_t* option) const {
  for (const Widget& widget : widgets_) {
    const auto found = std::find(widget.windows.begin(), widget.windows.end(), window);
    if (found == widget.windows.end()) continue;
    if (option != nullptr) *option = static_cast<std::size_t>(found - widget.windows.begin());
    return &widget;
  }
  return nullptr;
}

HWND FormWindow::WindowOf(const Node* node) const {
  for (const Widget& widget : widgets_) {
    if (widget.node != node || widget.windows.empty()) continue;
    const auto chosen = static_cast<std::size_t>(node->Value());
    return widget
        .windows[node->kind == NodeKind::Options && chosen < widget.windows.size() ? chosen : 0];
  }
  return nullptr;
}

void FormWindow::PaintOn(HDC device) {
  RECT area{};
  GetClientRect(handle_, &area);
  if (picture_ == nullptr || picture_->Width() != area.right || picture_->Height() != area.bottom) {
    const auto picture =
        std::make_shared<Canvas>(area.right, area.bottom, PixelOf(root_->BackColor()));
    // Told of drawing from here on, as the picture has what was drawn so far.
    ForEachNode(*root_, [](Node& node) {
      if (node.Picture()) node.Picture()->MarkShown();
    });
    PaintTree(*root_, *picture,
              {.resolution = owner_->screen(), .text = owner_->text(), .buttons = false});
    picture_ = picture;
  }
  if (picture_->Pixels().empty()) return;
  const BITMAPINFO info = RowsOf(picture_->Width(), picture_->Height());
  SetDIBitsToDevice(device, 0, 0, static_cast<DWORD>(picture_->Width()),
                    static_cast<DWORD>(picture_->Height()), 0, 0, 0,
                    static_cast<UINT>(picture_->Height()), picture_->Pixels().data(), &info,
                    DIB_RGB_COLORS);
}

void FormWindow::Paint() {
  PAINTSTRUCT paint{};
  const HDC device = BeginPaint(handle_, &paint);
  const HWND window = handle_;
  try {
    PaintOn(device);
  } catch (const std::bad_alloc&) {
    FillRect(device, &paint.rcPaint, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
  }
  EndPaint(window, &paint);
}

LRESULT FormWindow::Background(HDC device, HWND window) {
  const Widget* widget = WidgetOf(window);
  const Node* behind = widget != nullptr ? widget->node : root_;
  while (behind->kind != NodeKind::Frame && behind->kind != NodeKind::Panel && behind != root_) {
    behind = behind->parent();
  }
  const Pixel pixel = PixelOf(behind->BackColor());
  const COLORREF colour = RGB((pixel >> 16) & 0xFF, (pixel >> 8) & 0xFF, pixel & 0xFF);
  SetBkColor(device, colour);
  HBRUSH& brush = brushes_[pixel];
  if (brush == nullptr) brush = CreateSolidBrush(colour);
  return reinterpret_cast<LRESULT>(brush);
}

}  // namespace discoplan::activex
