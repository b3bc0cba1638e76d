// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <vector>

#include "tests/activex/client.h"

namespace discoplan::activex {

/// A device in memory to draw on.
class Bitmap {
 public:
  Bitmap(int width, int height) : size_(static_cast<std::size_t>(width) * height) {
    const BITMAPINFO info = RowsOf(width, height);
    void* bits = nullptr;
    bitmap_ = CreateDIBSection(device_, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    before_ = SelectObject(device_, bitmap_);
    bits_ = static_cast<const DWORD*>(bits);
  }
  ~Bitmap() {
    SelectObject(device_, before_);
    DeleteObject(bitmap_);
    DeleteDC(device_);
  }
  Bitmap(const Bitmap&) = delete;
  Bitmap& operator=(const Bitmap&) = delete;

  HDC device() const { return device_; }
  /// From the top, colours alone.
  std::vector<DWORD> Pixels() const {
    GdiFlush();
    std::vector<DWORD> pixels(bits_, bits_ + size_);
    for (DWORD& pixel : pixels) pixel &= 0xFFFFFF;
    return pixels;
  }

 private:
  const std::size_t size_;
  const HDC device_ = CreateCompatibleDC(nullptr);
  HBITMAP bitmap_ = nullptr;
  HGDIOBJ before_ = nullptr;
  const DWORD* bits_ = nullptr;
};

/// A view drawn at that size.
inline std::vector<DWORD> Drawn(const ComPtr<IDispatch>& plot, int width, int height) {
  const Bitmap bitmap(width, height);
  const RECTL bounds{0, 0, width, height};
  EXPECT_EQ(S_OK, As<IViewObject2>(plot)->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr,
                                               bitmap.device(), &bounds, nullptr, nullptr, 0));
  return bitmap.Pixels();
}

/// What a window paints.
inline std::vector<DWORD> Shown(HWND window, int width, int height) {
  RunMessages();
  const Bitmap bitmap(width, height);
  SendMessageW(window, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(bitmap.device()), PRF_CLIENT);
  return bitmap.Pixels();
}

}  // namespace discoplan::activex
