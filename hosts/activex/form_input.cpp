// SPDX-License-Identifier: MIT
// What the user does with a form's window.

#include <windowsx.h>

#include <algorithm>
#include <utility>

#include "hosts/activex/form_window.h"

namespace discoplan::activex {
namespace {

struct MouseButton {
  UINT down;
  UINT up;
  UINT twice;
  WPARAM mask;
  int number;  // as the interface counts
};
constexpr MouseButton kMouseButtons[] = {
    {WM_LBUTTONDOWN, WM_LBUTTONUP, WM_LBUTTONDBLCLK, MK_LBUTTON, 1},
    {WM_RBUTTONDOWN, WM_RBUTTONUP, WM_RBUTTONDBLCLK, MK_RBUTTON, 2},
    {WM_MBUTTONDOWN, WM_MBUTTONUP, WM_MBUTTONDBLCLK, MK_MBUTTON, 4},
};

POINT PointOf(LPARAM l) { return {GET_X_LPARAM(l), GET_Y_LPARAM(l)}; }

int ShiftKeys() {
  const auto down = [](int key, int bit) { return GetKeyState(key) < 0 ? bit : 0; };
  return down(VK_SHIFT, 1) | down(VK_CONTROL, 2) | down(VK_MENU, 4);
}

int ButtonsIn(WPARAM keys) {
  int buttons = 0;
  for (const MouseButton& button : kMouseButtons) {
    if ((keys & button.mask) != 0) buttons |= button.number;
  }
  return buttons;
}

bool Holds(const Node& node, POINT corner, POINT point, const Screen& screen) {
  const double x = (point.x - corner.x) * static_cast<double>(screen.twips_per_pixel_x);
  const double y = (point.y - corner.y) * static_cast<double>(screen.twips_per_pixel_y);
  return x >= 0 && y >= 0 && x < static_cast<double>(node.Box().width) &&
         y < static_cast<double>(node.Box().height);
}

/// A line lets the mouse through to what lies below it.
bool TakesMouse(const Node& node) { return node.kind != NodeKind::Line; }

bool IsPushButton(HWND window) {
  return window != nullptr && (SendMessageW(window, WM_GETDLGCODE, 0, 0) &
                               (DLGC_UNDEFPUSHBUTTON | DLGC_DEFPUSHBUTTON)) != 0;
}

bool IsOption(HWND window) {
  return window != nullptr && (SendMessageW(window, WM_GETDLGCODE, 0, 0) & DLGC_RADIOBUTTON) != 0;
}

std::string TypedIn(HWND window) {
  std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
  text.resize(
      static_cast<std::size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
  return Utf8(text);
}

}  // namespace

LRESULT CALLBACK FormWindow::Procedure(HWND window, UINT message, WPARAM w, LPARAM l) {
  if (message == WM_NCCREATE) {
    auto* self =
        static_cast<FormWindow*>(reinterpret_cast<const CREATESTRUCTW*>(l)->lpCreateParams);
    self->handle_ = window;
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
  }
  auto* form = reinterpret_cast<FormWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (form == nullptr) return DefWindowProcW(window, message, w, l);
  const std::shared_ptr<FormWindow> kept = form->shared_from_this();
  try {
    return kept->Handle(message, w, l);
  } catch (const std::exception&) {
    return 0;  // nobody is there to be told
  }
}

LRESULT FormWindow::Handle(UINT message, WPARAM w, LPARAM l) {
  const HWND window = handle_;
  for (const MouseButton& button : kMouseButtons) {
    if (message == button.down || message == button.twice) {
      return MouseDown(button.number, message == button.twice, PointOf(l)), 0;
    }
    if (message == button.up) return MouseUp(button.number, PointOf(l)), 0;
  }
  switch (message) {
    case WM_ERASEBKGND:
      return 1;
    case WM_PAINT:
      return Paint(), 0;
    case WM_PRINTCLIENT:
      return PaintOn(reinterpret_cast<HDC>(w)), 0;
    case kSync:
      return Sync(), 0;
    case kLeave:
      return Leave(reinterpret_cast<HWND>(l)), 0;
    case WM_COMMAND:
      if (l != 0) Command(HIWORD(w), reinterpret_cast<HWND>(l));
      return 0;
    case WM_NOTIFY:
      return Notify(*reinterpret_cast<const NMHDR*>(l));
    case WM_CTLCOLORSTATIC:
    case WM_CTLCOLORBTN:
      return Background(reinterpret_cast<HDC>(w), reinterpret_cast<HWND>(l));
    case WM_MOUSEMOVE: {
      Node& node = pressed_ != nullptr ? *pressed_ : NodeAt(PointOf(l));
      return TellMouse(MouseEvent::MouseMove, ButtonsIn(w), node, PointOf(l)), 0;
    }
    case WM_CAPTURECHANGED:
      return pressed_ = nullptr, 0;
    case WM_MOUSEACTIVATE:
      owner_->Touched();
      break;
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
      return FocusChanged(message == WM_SETFOCUS, window, reinterpret_cast<HWND>(w)), 0;
    case WM_SETCURSOR:
      if (reinterpret_cast<HWND>(w) != window || LOWORD(l) != HTCLIENT) break;
      return SetCursor(owner_->Cursor()), TRUE;
    case kResolution:
      return owner_->ResolutionChanged(), 0;
    case WM_NCDESTROY:
      Lose();
      break;
    default:
      break;
  }
  return DefWindowProcW(window, message, w, l);
}

/// Somebody else has destroyed the window, and its children with it.
void FormWindow::Lose() {
  SetWindowLongPtrW(handle_, GWLP_USERDATA, 0);
  handle_ = nullptr;
  root_->Watch({});
  Destroy();
  owner_->WindowGone();
}

LRESULT CALLBACK FormWindow::WidgetProcedure(HWND window, UINT message, WPARAM w, LPARAM l,
                                             UINT_PTR id, DWORD_PTR self) {
  auto& form = *reinterpret_cast<FormWindow*>(self);
  const std::shared_ptr<FormWindow> kept = form.weak_from_this().lock();
  if (message == WM_NCDESTROY) RemoveWindowSubclass(window, &WidgetProcedure, id);
  if (!kept || form.handle_ == nullptr) return DefSubclassProc(window, message, w, l);
  const Widget* widget = form.WidgetOf(window);
  const bool is_field = widget != nullptr && widget->node->kind == NodeKind::Text;
  switch (message) {
    case WM_CHAR:  // of keys that mean something to the form; a field would complain
      if (is_field && (w == VK_RETURN || w == VK_TAB || w == VK_ESCAPE)) return 0;
      break;
    case WM_KEYDOWN:
      if (!is_field || !widget->node->on_key || (w != VK_UP && w != VK_DOWN)) break;
      form.Act([node = widget->node, w] { node->Key(static_cast<int>(w)); });
      return 0;
    case WM_SETFOCUS:
      form.FocusChanged(true, window, reinterpret_cast<HWND>(w));
      break;
    case WM_KILLFOCUS:
      // Once the focus is where it goes; a message box would interfere with that.
      if (is_field && widget->node->on_leave) {
        PostMessageW(form.handle_, kLeave, 0, reinterpret_cast<LPARAM>(window));
      }
      form.FocusChanged(false, window, reinterpret_cast<HWND>(w));
      break;
    default:
      break;
  }
  return DefSubclassProc(window, message, w, l);
}

/// Of a window that is there to be read, not seen: its class would paint it, also with a new text.
LRESULT CALLBACK FormWindow::QuietProcedure(HWND window, UINT message, WPARAM w, LPARAM l,
                                            UINT_PTR id, DWORD_PTR) {
  switch (message) {
    case WM_PAINT:
      ValidateRect(window, nullptr);
      return 0;
    case WM_PRINTCLIENT:
      return 0;
    case WM_ERASEBKGND:
      return 1;
    case WM_NCHITTEST:
      return HTTRANSPARENT;
    case WM_SETTEXT:
      return DefWindowProcW(window, message, w, l);
    case WM_NCDESTROY:
      RemoveWindowSubclass(window, &QuietProcedure, id);
      break;
    default:
      break;
  }
  return DefSubclassProc(window, message, w, l);
}

void FormWindow::Act(const std::function<void()>& act) {
  if (syncing_ || handle_ == nullptr || !owner_->Works()) return;
  owner_->Act(act);
  Sync();
}

void FormWindow::FocusChanged(bool has, HWND window, HWND other) {
  const bool within = other != nullptr && (other == handle_ || IsChild(handle_, other));
  if (has) {
    owner_->Entered(window == handle_);
  } else if (!within) {
    owner_->Left();
  }
}

void FormWindow::Leave(HWND field) {
  const Widget* widget = WidgetOf(field);
  if (widget == nullptr) return;
  bool left = true;
  Act([&left, node = widget->node] { left = node->Leave(); });
  if (!left && handle_ != nullptr) SetFocus(field);
}

void FormWindow::Command(int notification, HWND from) {
  std::size_t option = 0;
  const Widget* widget = WidgetOf(from, &option);
  if (widget == nullptr || syncing_) return;
  Node& node = *widget->node;
  if (node.kind == NodeKind::Text) {
    if (notification == EN_CHANGE) Act([&node, text = TypedIn(from)] { node.Type(text); });
    return;
  }
  if (notification != BN_CLICKED) return;
  if (node.kind == NodeKind::Button) {
    Act([&node] { node.Click(); });
  } else if (node.kind == NodeKind::Check) {
    const bool ticked = SendMessageW(from, BM_GETCHECK, 0, 0) == BST_CHECKED;
    Act([&node, ticked] { node.Tick(ticked); });
  } else if (node.kind == NodeKind::Options) {
    Act([&node, option] { node.Choose(static_cast<std::int32_t>(option)); });
  }
}

LRESULT FormWindow::Notify(const NMHDR& header) {
  if (header.code != UDN_DELTAPOS) return 0;
  if (const Widget* widget = WidgetOf(header.hwndFrom)) {
    const int steps = reinterpret_cast<const NMUPDOWN&>(header).iDelta;
    Act([node = widget->node, steps] { node->Spin(steps); });
  }
  return TRUE;  // the node keeps the value
}

// The mouse.

Node& FormWindow::NodeAt(POINT point) const {
  const Screen& screen = owner_->screen();
  Node* node = root_;
  for (bool deeper = true; deeper;) {
    deeper = false;
    const auto& children = node->children();
    for (auto child = children.rbegin(); child != children.rend() && !deeper; ++child) {
      if (!(*child)->Visible() || !TakesMouse(**child)) continue;
      deeper = Holds(**child, CornerOf(**child), point, screen);
      if (deeper) node = child->get();
    }
  }
  return *node;
}

void FormWindow::TellMouse(MouseEvent event, int button, Node& node, POINT point) {
  if (!owner_->Works()) return;
  const POINT corner = CornerOf(node);
  const bool in_pixels = node.kind == NodeKind::Picture || node.kind == NodeKind::Image;
  const Screen& screen = owner_->screen();
  const MouseAction action{
      .event = event,
      .button = static_cast<std::int16_t>(button),
      .shift = static_cast<std::int16_t>(ShiftKeys()),
      .x = static_cast<float>(point.x - corner.x) * (in_pixels ? 1 : screen.twips_per_pixel_x),
      .y = static_cast<float>(point.y - corner.y) * (in_pixels ? 1 : screen.twips_per_pixel_y)};
  Act([this, &node, &action] { owner_->Mouse(node, action); });
}

void FormWindow::MouseDown(int button, bool twice, POINT point) {
  Node& node = pressed_ != nullptr ? *pressed_ : NodeAt(point);
  SetCapture(handle_);
  pressed_ = &node;
  clicked_twice_ = twice;
  owner_->Touched();
  if (handle_ == nullptr) return;
  TellMouse(twice ? MouseEvent::DblClick : MouseEvent::MouseDown, button, node, point);
}

/// A button that goes up where it went down clicks, unless it ends a double click.
void FormWindow::MouseUp(int button, POINT point) {
  Node* pressed = pressed_;
  if (pressed == nullptr) return;
  const bool clicks = !std::exchange(clicked_twice_, false) &&
                      Holds(*pressed, CornerOf(*pressed), point, owner_->screen());
  const bool others =
      GetKeyState(VK_LBUTTON) < 0 || GetKeyState(VK_RBUTTON) < 0 || GetKeyState(VK_MBUTTON) < 0;
  if (!others) ReleaseCapture();
  TellMouse(MouseEvent::MouseUp, button, *pressed, point);
  if (clicks && handle_ != nullptr) TellMouse(MouseEvent::Click, button, *pressed, point);
}

// The keyboard.

std::vector<HWND> FormWindow::TabStops() const {
  std::vector<HWND> stops;
  for (const Widget& widget : widgets_) {
    for (const HWND window : widget.windows) {
      const LONG_PTR style = GetWindowLongPtrW(window, GWL_STYLE);
      if ((style & WS_TABSTOP) != 0 && (style & WS_VISIBLE) != 0) stops.push_back(window);
    }
  }
  return stops;
}

HWND FormWindow::End(bool last) const {
  const std::vector<HWND> stops = TabStops();
  return stops.empty() ? nullptr : last ? stops.back() : stops.front();
}

bool FormWindow::Press(HWND button) {
  if (!IsPushButton(button) || WidgetOf(button) == nullptr) return false;
  Command(BN_CLICKED, button);
  return true;
}

bool FormWindow::Translate(MSG& message) {
  if (handle_ == nullptr || message.message != WM_KEYDOWN) return false;
  const HWND focus = GetFocus();
  if (focus != handle_ && !IsChild(handle_, focus)) return false;
  switch (message.wParam) {
    case VK_TAB: {
      if (GetKeyState(VK_CONTROL) < 0) return false;
      const std::vector<HWND> stops = TabStops();
      const bool back = GetKeyState(VK_SHIFT) < 0;
      const auto at = std::find(stops.begin(), stops.end(), focus);
      if (at == stops.end()) {
        if (stops.empty() || back) return false;
        return SetFocus(stops.front()), true;
      }
      if (back ? at == stops.begin() : at + 1 == stops.end()) return false;
      return SetFocus(back ? *(at - 1) : *(at + 1)), true;
    }
    case VK_RETURN:
      return Press(focus);
    case VK_LEFT:
    case VK_UP:
    case VK_RIGHT:
    case VK_DOWN: {
      if (!IsOption(focus)) return false;
      const bool back = message.wParam == VK_LEFT || message.wParam == VK_UP;
      const HWND next = GetNextDlgGroupItem(handle_, focus, back);
      if (next == nullptr || next == focus) return true;
      SetFocus(next);
      Command(BN_CLICKED, next);
      return true;
    }
    default:
      return false;
  }
}

}  // namespace discoplan::activex
