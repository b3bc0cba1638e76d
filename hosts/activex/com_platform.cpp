// SPDX-License-Identifier: MIT
#include "hosts/activex/com_platform.h"

#include <utility>

#include "hosts/activex/form_dialog.h"

namespace discoplan::activex {
namespace {

/// Dots per inch; of the window's screen where the system tells them apart.
SIZE ResolutionOf(HWND window) {
  using Ask = UINT(WINAPI*)(HWND);
  static const auto ask = reinterpret_cast<Ask>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"user32"), "GetDpiForWindow")));
  if (ask != nullptr && window != nullptr) {
    if (const LONG dots = static_cast<LONG>(ask(window)); dots > 0) return {dots, dots};
  }
  const HDC screen = GetDC(nullptr);
  const SIZE dots{GetDeviceCaps(screen, LOGPIXELSX), GetDeviceCaps(screen, LOGPIXELSY)};
  ReleaseDC(nullptr, screen);
  return dots;
}

}  // namespace

ComPlatform::ComPlatform(Owner owner) : owner_(std::move(owner)) { FollowScreen(nullptr); }

bool ComPlatform::FollowScreen(HWND window) {
  const SIZE dots = ResolutionOf(window);
  if (dots.cx <= 0 || dots.cy <= 0) return false;
  const Screen now{static_cast<float>(kTwipsPerInch / static_cast<double>(dots.cx)),
                   static_cast<float>(kTwipsPerInch / static_cast<double>(dots.cy))};
  const Screen before = std::exchange(screen_, now);
  return before.twips_per_pixel_x != now.twips_per_pixel_x ||
         before.twips_per_pixel_y != now.twips_per_pixel_y;
}

void ComPlatform::Show(const Message& message) {
  const UINT look =
      (message.critical ? MB_ICONERROR : 0U) | (message.system_modal ? MB_SYSTEMMODAL : 0U);
  owner_.enable(false);
  MessageBoxW(owner_.window(), Wide(message.text).c_str(), Wide(message.title).c_str(), look);
  owner_.enable(true);
}

void ComPlatform::ShowModal(const std::shared_ptr<Form>& form, const std::function<void()>& done) {
  form->Show();
  owner_.enable(false);
  open_.push_back(form.get());
  try {
    FormDialog(*form, screen_, text_).Run(owner_.window());
  } catch (...) {
    open_.pop_back();
    owner_.enable(true);
    form->Cancel();
    throw;
  }
  open_.pop_back();
  owner_.enable(true);
  if (form->root().Visible()) form->Cancel();
  if (done) done();
}

void ComPlatform::CancelForms() {
  for (const auto forms = open_; Form * form : forms) form->Cancel();
}

void ComPlatform::RunPendingEvents() {
  constexpr int kMost = 1000;  // who posts a message for each that it gets must not keep us
  MSG message{};
  for (int i = 0; i < kMost && PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE); ++i) {
    if (message.message == WM_QUIT) return PostQuitMessage(static_cast<int>(message.wParam));
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

}  // namespace discoplan::activex
