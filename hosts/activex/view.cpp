// SPDX-License-Identifier: MIT
// The picture on a container's device.

#include "discoplan/forms/painter.h"
#include "discoplan/raster/picture.h"
#include "hosts/activex/control_object.h"

namespace discoplan::activex {
namespace {

constexpr double kHimetricPerInch = 2540;

LONG Himetric(float twips) {
  return static_cast<LONG>(std::lround(twips * kHimetricPerInch / kTwipsPerInch));
}

}  // namespace

Canvas ControlObject::Picture() {
  const PlotControl& control = Control();
  const Screen& screen = platform_.screen();
  Canvas canvas(WholePixels(control.root().Box().width / screen.twips_per_pixel_x),
                WholePixels(control.root().Box().height / screen.twips_per_pixel_y),
                PixelOf(control.root().BackColor()));
  PaintTree(control.root(), canvas, {.resolution = screen, .text = platform_.text()});
  return canvas;
}

STDMETHODIMP ControlObject::Draw(DWORD aspect, LONG, void*, DVTARGETDEVICE*, HDC, HDC device,
                                 LPCRECTL bounds, LPCRECTL, BOOL(CALLBACK*)(ULONG_PTR),
                                 ULONG_PTR) try {
  if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
  if (bounds == nullptr || device == nullptr) return E_POINTER;
  const ComPtr<IUnknown> alive = &self_;
  const Canvas canvas = Picture();
  if (canvas.Pixels().empty()) return S_OK;
  const BITMAPINFO info = RowsOf(canvas.Width(), canvas.Height());
  const int width = bounds->right - bounds->left;
  const int height = bounds->bottom - bounds->top;
  const bool same = width == canvas.Width() && height == canvas.Height();
  const int before = SetStretchBltMode(device, same ? COLORONCOLOR : HALFTONE);
  const int rows =
      StretchDIBits(device, bounds->left, bounds->top, width, height, 0, 0, canvas.Width(),
                    canvas.Height(), canvas.Pixels().data(), &info, DIB_RGB_COLORS, SRCCOPY);
  SetStretchBltMode(device, before);
  return rows != 0 ? S_OK : E_FAIL;
} catch (const std::bad_alloc&) {
  return E_OUTOFMEMORY;
}

STDMETHODIMP ControlObject::GetExtent(DWORD aspect, LONG, DVTARGETDEVICE*, LPSIZEL size) {
  if (size == nullptr) return E_POINTER;
  if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
  const TwipsBox& box = control_->root().Box();
  *size = {Himetric(box.width), Himetric(box.height)};
  return S_OK;
}

STDMETHODIMP ControlObject::SetAdvise(DWORD aspects, DWORD flags, IAdviseSink* sink) {
  advise_aspects_ = aspects;
  advise_flags_ = flags;
  advised_ = sink;
  if (sink != nullptr && (flags & ADVF_PRIMEFIRST) != 0) ViewChanged();
  return S_OK;
}

STDMETHODIMP ControlObject::GetAdvise(DWORD* aspects, DWORD* flags, IAdviseSink** sink) {
  if (aspects != nullptr) *aspects = advise_aspects_;
  if (flags != nullptr) *flags = advise_flags_;
  if (sink != nullptr) *sink = ComPtr<IAdviseSink>(advised_).Detach();
  return S_OK;
}

void ControlObject::ViewChanged() {
  const ComPtr<IAdviseSink> sink = advised_;
  if (!sink || (advise_aspects_ & DVASPECT_CONTENT) == 0) return;
  if ((advise_flags_ & ADVF_ONLYONCE) != 0) advised_ = nullptr;
  sink->OnViewChange(DVASPECT_CONTENT, -1);
}

}  // namespace discoplan::activex
