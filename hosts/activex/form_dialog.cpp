// SPDX-License-Identifier: MIT
#include "hosts/activex/form_dialog.h"

#include <algorithm>
#include <cmath>

namespace discoplan::activex {
namespace {

constexpr const wchar_t* kClassName = L"Discoplan.Dialog";
constexpr DWORD kStyle = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN;
constexpr DWORD kExtendedStyle = WS_EX_DLGMODALFRAME | WS_EX_CONTROLPARENT;

/// In the middle of the owner or the screen, and on a screen as a whole.
POINT PlaceOver(HWND owner, SIZE size) {
  RECT around{};
  const HMONITOR monitor = MonitorFromWindow(owner, MONITOR_DEFAULTTOPRIMARY);
  MONITORINFO info{};
  info.cbSize = sizeof info;
  GetMonitorInfoW(monitor, &info);
  if (owner == nullptr || !GetWindowRect(owner, &around)) around = info.rcWork;
  const LONG left = (around.left + around.right - size.cx) / 2;
  const LONG top = (around.top + around.bottom - size.cy) / 2;
  return {std::max(info.rcWork.left, std::min(left, info.rcWork.right - size.cx)),
          std::max(info.rcWork.top, std::min(top, info.rcWork.bottom - size.cy))};
}

}  // namespace

FormDialog::FormDialog(Form& form, const Screen& screen, const TextPainter& text)
    : form_(form), screen_(screen), text_(text) {}

FormDialog::~FormDialog() {
  if (view_) view_->Destroy();
  if (window_ == nullptr) return;
  SetWindowLongPtrW(window_, GWLP_USERDATA, 0);
  DestroyWindow(window_);
}

void FormDialog::Unregister() { UnregisterClassW(kClassName, Module()); }

bool FormDialog::Create(HWND owner) {
  WNDCLASSEXW own{};
  own.cbSize = sizeof own;
  own.lpfnWndProc = &Procedure;
  own.hInstance = Module();
  own.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  own.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
  own.lpszClassName = kClassName;
  RegisterClassExW(&own);  // fails for all but the first
  const TwipsBox& box = form_.root().Box();
  const RECT inside{0, 0, std::lround(box.width / screen_.twips_per_pixel_x),
                    std::lround(box.height / screen_.twips_per_pixel_y)};
  RECT outside = inside;
  AdjustWindowRectEx(&outside, kStyle, FALSE, kExtendedStyle);
  const SIZE size{outside.right - outside.left, outside.bottom - outside.top};
  const POINT place = PlaceOver(owner, size);
  CreateWindowExW(kExtendedStyle, kClassName, Wide(form_.root().Text()).c_str(), kStyle, place.x,
                  place.y, size.cx, size.cy, owner, nullptr, Module(), this);
  if (window_ == nullptr) return false;
  view_ = std::make_shared<FormWindow>(form_.root(), static_cast<FormWindow::Owner&>(*this));
  return view_->Create(window_, inside);
}

bool FormDialog::Run(HWND owner) {
  // Whoever owns it is a window of its own, not a part of one.
  if (owner != nullptr) owner = GetAncestor(owner, GA_ROOT);
  if (!Create(owner)) return false;
  const bool was_disabled = owner == nullptr || EnableWindow(owner, FALSE) != 0;
  ShowWindow(view_->handle(), SW_SHOW);
  ShowWindow(window_, SW_SHOW);
  if (const HWND first = view_->End(false)) SetFocus(first);
  Loop();
  // Before the dialog goes, or another program's window would come to the front.
  if (!was_disabled && IsWindow(owner)) EnableWindow(owner, TRUE);
  return true;
}

void FormDialog::Loop() {
  MSG message{};
  while (window_ != nullptr && form_.root().Visible()) {
    const BOOL got = GetMessageW(&message, nullptr, 0, 0);
    if (got == 0) PostQuitMessage(static_cast<int>(message.wParam));  // for the loop around this
    if (got <= 0) return;
    if (window_ != nullptr && IsDialogMessageW(window_, &message)) continue;
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

/// A form that hid itself while the loop waits must be seen by it.
void FormDialog::Noted() {
  if (!form_.root().Visible()) PostThreadMessageW(GetCurrentThreadId(), WM_NULL, 0, 0);
}

LRESULT CALLBACK FormDialog::Procedure(HWND window, UINT message, WPARAM w, LPARAM l) {
  if (message == WM_NCCREATE) {
    auto* self =
        static_cast<FormDialog*>(reinterpret_cast<const CREATESTRUCTW*>(l)->lpCreateParams);
    self->window_ = window;
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
  }
  auto* dialog = reinterpret_cast<FormDialog*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  return dialog != nullptr ? dialog->Handle(message, w, l) : DefWindowProcW(window, message, w, l);
}

LRESULT FormDialog::Handle(UINT message, WPARAM w, LPARAM l) {
  switch (message) {
    case DM_GETDEFID:
      return MAKELRESULT(IDOK, DC_HASDEFID);
    case WM_COMMAND: {
      // Return presses the button that has the focus, if one has it.
      const Node* button = LOWORD(w) == IDCANCEL ? form_.cancel_button() : form_.accept_button();
      if (LOWORD(w) == IDOK && view_->Press(GetFocus())) return 0;
      if (const HWND pressed = button != nullptr ? view_->WindowOf(button) : nullptr) {
        view_->Press(pressed);
      } else if (LOWORD(w) == IDCANCEL) {
        form_.Cancel();
      }
      return 0;
    }
    case WM_CLOSE:
      form_.Cancel();
      return 0;
    case WM_ACTIVATE:
      if (LOWORD(w) == WA_INACTIVE) break;
      if (view_ && view_->handle() != nullptr && !IsChild(window_, GetFocus())) {
        if (const HWND first = view_->End(false)) SetFocus(first);
        return 0;
      }
      break;
    case WM_NCDESTROY: {
      const HWND window = window_;
      window_ = nullptr;
      SetWindowLongPtrW(window, GWLP_USERDATA, 0);
      PostThreadMessageW(GetCurrentThreadId(), WM_NULL, 0, 0);
      return DefWindowProcW(window, message, w, l);
    }
    default:
      break;
  }
  return DefWindowProcW(window_, message, w, l);
}

}  // namespace discoplan::activex
