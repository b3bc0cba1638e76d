// SPDX-License-Identifier: MIT
#include "hosts/activex/gdi_text.h"

#include <algorithm>
#include <cmath>

#include "discoplan/raster/canvas.h"
#include "discoplan/raster/picture.h"
#include "discoplan/raster/symbol_letters.h"

namespace discoplan::activex {
namespace {

constexpr double kFarthest = 1e6;  // pixels from the canvas's corner
constexpr int kLargest = 8192;     // pixels of a text's box
constexpr std::size_t kMostFonts = 32;

/// How much of each pixel a text covers, 0 to 255 in the lowest byte.
class Coverage {
 public:
  Coverage(HDC device, const std::wstring& text, SIZE size) : size_(size) {
    const BITMAPINFO info = RowsOf(size.cx, size.cy);
    void* pixels = nullptr;
    bitmap_ = CreateDIBSection(device, &info, DIB_RGB_COLORS, &pixels, nullptr, 0);
    if (bitmap_ == nullptr) return;
    const HGDIOBJ before = SelectObject(device, bitmap_);
    SetTextColor(device, RGB(255, 255, 255));
    SetBkColor(device, RGB(0, 0, 0));
    SetBkMode(device, OPAQUE);
    ExtTextOutW(device, 0, 0, 0, nullptr, text.c_str(), static_cast<UINT>(text.size()), nullptr);
    GdiFlush();
    SelectObject(device, before);
    pixels_ = static_cast<const std::uint32_t*>(pixels);
  }
  ~Coverage() { DeleteObject(bitmap_); }
  Coverage(const Coverage&) = delete;
  Coverage& operator=(const Coverage&) = delete;

  std::uint32_t At(int x, int y) const {
    return pixels_ == nullptr ? 0 : (pixels_[y * size_.cx + x] >> 8) & 0xFF;
  }

 private:
  SIZE size_;
  HBITMAP bitmap_ = nullptr;
  const std::uint32_t* pixels_ = nullptr;
};

LONG PixelHeight(const Font& font, double pixels_per_point) {
  return std::lround(std::clamp(static_cast<double>(font.size) * pixels_per_point, 1.0, 4096.0));
}

Pixel Blend(Pixel below, Pixel above, std::uint32_t share) {
  Pixel mixed = 0xFF000000;
  for (const int shift : {0, 8, 16}) {
    const std::uint32_t from = (below >> shift) & 0xFF;
    const std::uint32_t to = (above >> shift) & 0xFF;
    mixed |= ((from * (255 - share) + to * share + 127) / 255) << shift;
  }
  return mixed;
}

}  // namespace

std::wstring LettersOf(const Font& font, std::string_view text) {
  std::wstring wide = Wide(text);
  if (font.name == kSymbolFont) {
    for (wchar_t& c : wide) c = static_cast<wchar_t>(SymbolLetter(c));
  }
  return wide;
}

HFONT NewFont(const Font& font, double pixels_per_point) {
  LOGFONTW wanted{};
  wanted.lfHeight = -PixelHeight(font, pixels_per_point);
  wanted.lfWeight = font.bold ? FW_BOLD : FW_NORMAL;
  wanted.lfUnderline = font.underline;
  wanted.lfCharSet = DEFAULT_CHARSET;
  wanted.lfQuality = ANTIALIASED_QUALITY;
  const std::wstring name = font.name == kSymbolFont ? L"Arial" : Wide(font.name);
  name.copy(wanted.lfFaceName, LF_FACESIZE - 1);
  return CreateFontIndirectW(&wanted);
}

/// A device in memory with the font in it.
class GdiText::FontDevice {
 public:
  FontDevice(const Font& font, double pixels_per_point)
      : device_(CreateCompatibleDC(nullptr)),
        font_(NewFont(font, pixels_per_point)),
        before_(SelectObject(device_, font_)) {}
  ~FontDevice() {
    SelectObject(device_, before_);
    DeleteObject(font_);
    DeleteDC(device_);
  }
  FontDevice(const FontDevice&) = delete;
  FontDevice& operator=(const FontDevice&) = delete;

  HDC get() const { return device_; }
  SIZE Extent(const std::wstring& text) const {
    SIZE size{};
    GetTextExtentPoint32W(device_, text.c_str(), static_cast<int>(text.size()), &size);
    return size;
  }

 private:
  HDC device_;
  HFONT font_;
  HGDIOBJ before_;
};

GdiText::GdiText() = default;
GdiText::~GdiText() = default;

const GdiText::FontDevice& GdiText::DeviceOf(const Font& font, double pixels_per_point) const {
  const Look look{font.name, PixelHeight(font, pixels_per_point), font.bold, font.underline};
  if (devices_.size() > kMostFonts) devices_.clear();
  std::unique_ptr<FontDevice>& device = devices_[look];
  if (!device) device = std::make_unique<FontDevice>(font, pixels_per_point);
  return *device;
}

double GdiText::Width(const Font& font, double pixels_per_point, std::string_view text) const {
  return DeviceOf(font, pixels_per_point).Extent(LettersOf(font, text)).cx;
}

double GdiText::Height(const Font& font, double pixels_per_point) const {
  TEXTMETRICW metrics{};
  GetTextMetricsW(DeviceOf(font, pixels_per_point).get(), &metrics);
  return metrics.tmHeight;
}

void GdiText::Paint(Canvas& canvas, const Font& font, const TextPlacement& placement,
                    std::string_view text) const {
  if (!(std::abs(placement.x) < kFarthest) || !(std::abs(placement.y) < kFarthest)) return;
  const FontDevice& device = DeviceOf(font, placement.pixels_per_point);
  const std::wstring wide = LettersOf(font, text);
  SIZE size = device.Extent(wide);
  size.cx = std::min<LONG>(size.cx, kLargest);
  size.cy = std::min<LONG>(size.cy, kLargest);
  if (size.cx <= 0 || size.cy <= 0) return;
  const Coverage coverage(device.get(), wide, size);
  const int left = static_cast<int>(std::lround(placement.x));
  const int top = static_cast<int>(std::lround(placement.y)) - placement.canvas_top;
  const std::span<Pixel> pixels = canvas.Pixels();
  const Pixel colour = PixelOf(placement.colour);
  for (int y = std::max(0, -top); y < size.cy && top + y < canvas.Height(); ++y) {
    for (int x = std::max(0, -left); x < size.cx && left + x < canvas.Width(); ++x) {
      const std::uint32_t share = coverage.At(x, y);
      if (share == 0) continue;
      Pixel& pixel = pixels[static_cast<std::size_t>((top + y) * canvas.Width() + left + x)];
      pixel = Blend(pixel, colour, share);
    }
  }
}

}  // namespace discoplan::activex
