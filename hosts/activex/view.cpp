// SPDX-License-Identifier: MIT
// The picture on a container's device.

#include <utility>

#include "discoplan/forms/painter.h"
#include "discoplan/raster/picture.h"
#include "hosts/activex/control_object.h"

namespace discoplan::activex {
namespace {

LONG Himetric(float twips) {
  return static_cast<LONG>(std::lround(twips * kHimetricPerInch / kTwipsPerInch));
}

}  // namespace

Canvas ControlObject::Picture() {
  PlotControl& control = Control();
  const Screen& screen = platform_.screen();
  ForEachNode(control.root(), [](Node& node) {
    if (node.Picture()) node.Picture()->MarkShown();  // and tells of what is drawn from here on
  });
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
  BITMAPINFO info = RowsOf(canvas.Width(), canvas.Height());
  // Who plays a metafile may know of no rows from the top.
  info.bmiHeader.biHeight = canvas.Height();
  const std::vector<Pixel> pixels = FromBottom(canvas);
  const int width = bounds->right - bounds->left;
  const int height = bounds->bottom - bounds->top;
  const bool same = width == canvas.Width() && height == canvas.Height();
  const int before = SetStretchBltMode(device, same ? COLORONCOLOR : HALFTONE);
  const int rows =
      StretchDIBits(device, bounds->left, bounds->top, width, height, 0, 0, canvas.Width(),
                    canvas.Height(), pixels.data(), &info, DIB_RGB_COLORS, SRCCOPY);
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
  view_is_stale_ = view_is_stale_ || (sink != nullptr && (flags & ADVF_PRIMEFIRST) != 0);
  TellViewChanged();
  return S_OK;
}

STDMETHODIMP ControlObject::GetAdvise(DWORD* aspects, DWORD* flags, IAdviseSink** sink) {
  if (aspects != nullptr) *aspects = advise_aspects_;
  if (flags != nullptr) *flags = advise_flags_;
  if (sink != nullptr) *sink = ComPtr<IAdviseSink>(advised_).Detach();
  return S_OK;
}

void ControlObject::TellViewChanged() {
  if (!std::exchange(view_is_stale_, false)) return;
  transfer_.Changed();
  const ComPtr<IAdviseSink> sink = advised_;
  if (!sink || (advise_aspects_ & DVASPECT_CONTENT) == 0) return;
  if ((advise_flags_ & ADVF_ONLYONCE) != 0) advised_ = nullptr;
  sink->OnViewChange(DVASPECT_CONTENT, -1);
}

STDMETHODIMP ControlObject::GetRect(DWORD aspect, LPRECTL bounds) {
  if (bounds == nullptr) return E_POINTER;
  if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
  const TwipsBox& box = control_->root().Box();
  *bounds = {0, 0, Himetric(box.width), Himetric(box.height)};
  return S_OK;
}

STDMETHODIMP ControlObject::GetViewStatus(DWORD* status) {
  if (status == nullptr) return E_POINTER;
  *status = VIEWSTATUS_OPAQUE;
  return S_OK;
}

STDMETHODIMP ControlObject::QueryHitPoint(DWORD aspect, LPCRECT bounds, POINT point, LONG,
                                          DWORD* hit) {
  if (bounds == nullptr || hit == nullptr) return E_POINTER;
  if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
  *hit = PtInRect(bounds, point) ? HITRESULT_HIT : HITRESULT_OUTSIDE;
  return S_OK;
}

STDMETHODIMP ControlObject::QueryHitRect(DWORD aspect, LPCRECT bounds, LPCRECT place, LONG,
                                         DWORD* hit) {
  if (bounds == nullptr || place == nullptr || hit == nullptr) return E_POINTER;
  if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
  RECT common{};
  *hit = IntersectRect(&common, bounds, place) ? HITRESULT_HIT : HITRESULT_OUTSIDE;
  return S_OK;
}

}  // namespace discoplan::activex
