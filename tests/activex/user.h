// SPDX-License-Identifier: MIT
#pragma once

/// A user who acts in a modal window while the test waits in its loop.

#include <functional>
#include <string>

#include "tests/activex/client.h"

namespace discoplan::activex {

/// Does something as soon as a window of that class (and title) stands there.
class User {
 public:
  User(std::wstring window_class, std::wstring title, std::function<void(HWND)> act)
      : window_class_(std::move(window_class)), title_(std::move(title)), act_(std::move(act)) {
    previous_ = std::exchange(next_, this);
    timer_ = SetTimer(nullptr, 0, 15, &Look);
  }
  ~User() {
    KillTimer(nullptr, timer_);
    next_ = previous_;
    EXPECT_TRUE(acted_) << "the window never came";
  }
  User(const User&) = delete;
  User& operator=(const User&) = delete;

  static std::vector<HWND> Children(HWND window, const wchar_t* window_class) {
    struct Wanted {
      const wchar_t* name;
      std::vector<HWND> found;
    } wanted{window_class, {}};
    EnumChildWindows(
        window,
        [](HWND child, LPARAM l) -> BOOL {
          auto& list = *reinterpret_cast<Wanted*>(l);
          wchar_t name[64] = L"";
          GetClassNameW(child, name, 64);
          if (_wcsicmp(name, list.name) == 0 && IsWindowVisible(child)) list.found.push_back(child);
          return TRUE;
        },
        reinterpret_cast<LPARAM>(&wanted));
    return wanted.found;
  }
  static HWND Button(HWND window, const wchar_t* caption) {
    for (const HWND button : Children(window, L"BUTTON")) {
      wchar_t text[64] = L"";
      GetWindowTextW(button, text, 64);
      if (std::wstring(text) == caption) return button;
    }
    ADD_FAILURE() << "there is no such button";
    return nullptr;
  }
  static void Press(HWND window, const wchar_t* caption) {
    PostMessageW(Button(window, caption), BM_CLICK, 0, 0);
  }

 private:
  static void CALLBACK Look(HWND, UINT, UINT_PTR, DWORD) {
    for (User* user = next_; user != nullptr; user = user->previous_) {
      const HWND window = FindWindowW(user->window_class_.c_str(),
                                      user->title_.empty() ? nullptr : user->title_.c_str());
      if (user->acted_ || window == nullptr || !IsWindowVisible(window)) continue;
      user->acted_ = true;
      return user->act_(window);
    }
  }

  inline static User* next_ = nullptr;
  User* previous_ = nullptr;
  const std::wstring window_class_;
  const std::wstring title_;
  const std::function<void(HWND)> act_;
  UINT_PTR timer_ = 0;
  bool acted_ = false;
};

}  // namespace discoplan::activex
