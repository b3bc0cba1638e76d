// SPDX-License-Identifier: MIT
#include "hosts/activex/view.h"

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

View::View(ControlObject& object) : Part(object.whole()), object_(object) {}

Canvas View::Picture() {
  PlotControl& control = object_.Control();
  const Screen& screen = object_.platform().screen();
  ForEachNode(control.root(), [](Node& node) {
    if (node.Picture()) node.Picture()->MarkShown();  // and tells of what is drawn from here on
  });
  Canvas canvas(WholePixels(control.root().Box().width / screen.twips_per_pixel_x),
                WholePixels(control.root().Box().height / screen.twips_per_pixel_y),
                PixelOf(control.root().BackColor()));
  PaintTree(control.root(), canvas, {.resolution = screen, .text = object_.platform().text()});
  return canvas;
}

STDMETHODIMP View::Draw(DWORD aspect, LONG, void*, DVTARGETDEVICE*, HDC, HDC device,
                        LPCRECTL bounds, LPCRECTL, BOOL(CALLBACK*)(ULONG_PTR), ULONG_PTR) try {
  if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
  if (bounds == nullptr || device == nullptr) return E_POINTER;
  const ComPtr<IUnknown> alive = object_.Keep();
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

STDMETHODIMP View::GetExtent(DWORD aspect, LONG, DVTARGETDEVICE*, LPSIZEL size) {
  if (size == nullptr) return E_POINTER;
  if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
  const TwipsBox& box = object_.Unset().root().Box();
  *size = {Himetric(box.width), Himetric(box.height)};
  return S_OK;
}

STDMETHODIMP View::SetAdvise(DWORD aspects, DWORD flags, IAdviseSink* sink) {
  aspects_ = aspects;
  flags_ = flags;
  advised_ = sink;
  is_stale_ = is_stale_ || (sink != nullptr && (flags & ADVF_PRIMEFIRST) != 0);
  TellChanged();
  return S_OK;
}

STDMETHODIMP View::GetAdvise(DWORD* aspects, DWORD* flags, IAdviseSink** sink) {
  if (aspects != nullptr) *aspects = aspects_;
  if (flags != nullptr) *flags = flags_;
  if (sink != nullptr) *sink = ComPtr<IAdviseSink>(advised_).Detach();
  return S_OK;
}

void View::TellChanged() {
  if (!std::exchange(is_stale_, false)) return;
  object_.transfer().Changed();
  const ComPtr<IAdviseSink> sink = advised_;
  if (!sink || (aspects_ & DVASPECT_CONTENT) == 0) return;
  if ((flags_ & ADVF_ONLYONCE) != 0) advised_ = nullptr;
  sink->OnViewChange(DVASPECT_CONTENT, -1);
}

STDMETHODIMP View::GetRect(DWORD aspect, LPRECTL bounds) {
  if (bounds == nullptr) return E_POINTER;
  if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
  const TwipsBox& box = object_.Unset().root().Box();
  *bounds = {0, 0, Himetric(box.width), Himetric(box.height)};
  return S_OK;
}

STDMETHODIMP View::GetViewStatus(DWORD* status) {
  if (status == nullptr) return E_POINTER;
  *status = VIEWSTATUS_OPAQUE;
  return S_OK;
}

STDMETHODIMP View::QueryHitPoint(DWORD aspect, LPCRECT bounds, POINT point, LONG, DWORD* hit) {
  if (bounds == nullptr || hit == nullptr) return E_POINTER;
  if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
  *hit = PtInRect(bounds, point) ? HITRESULT_HIT : HITRESULT_OUTSIDE;
  return S_OK;
}

STDMETHODIMP View::QueryHitRect(DWORD aspect, LPCRECT bounds, LPCRECT place, LONG, DWORD* hit) {
  if (bounds == nullptr || place == nullptr || hit == nullptr) return E_POINTER;
  if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
  RECT common{};
  *hit = IntersectRect(&common, bounds, place) ? HITRESULT_HIT : HITRESULT_OUTSIDE;
  return S_OK;
}

}  // namespace discoplan::activex
