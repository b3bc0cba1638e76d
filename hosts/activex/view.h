// SPDX-License-Identifier: MIT
#pragma once

/// The picture on a container's device.

#include "discoplan/raster/canvas.h"
#include "hosts/activex/part.h"

namespace discoplan::activex {

class ControlObject;

class View final : public Part<IViewObjectEx> {
 public:
  explicit View(ControlObject& object);

  // IViewObjectEx
  STDMETHODIMP Draw(DWORD aspect, LONG, void*, DVTARGETDEVICE*, HDC, HDC device, LPCRECTL bounds,
                    LPCRECTL, BOOL(CALLBACK*)(ULONG_PTR), ULONG_PTR) override;
  STDMETHODIMP GetColorSet(DWORD, LONG, void*, DVTARGETDEVICE*, HDC, LOGPALETTE**) override {
    return S_FALSE;
  }
  STDMETHODIMP Freeze(DWORD, LONG, void*, DWORD*) override { return E_NOTIMPL; }
  STDMETHODIMP Unfreeze(DWORD) override { return E_NOTIMPL; }
  STDMETHODIMP SetAdvise(DWORD aspects, DWORD flags, IAdviseSink* sink) override;
  STDMETHODIMP GetAdvise(DWORD* aspects, DWORD* flags, IAdviseSink** sink) override;
  STDMETHODIMP GetExtent(DWORD aspect, LONG, DVTARGETDEVICE*, LPSIZEL size) override;

  STDMETHODIMP GetRect(DWORD aspect, LPRECTL bounds) override;
  STDMETHODIMP GetViewStatus(DWORD* status) override;
  STDMETHODIMP QueryHitPoint(DWORD aspect, LPCRECT bounds, POINT point, LONG, DWORD* hit) override;
  STDMETHODIMP QueryHitRect(DWORD aspect, LPCRECT bounds, LPCRECT place, LONG, DWORD* hit) override;
  STDMETHODIMP GetNaturalExtent(DWORD, LONG, DVTARGETDEVICE*, HDC, DVEXTENTINFO*,
                                LPSIZEL) override {
    return E_NOTIMPL;  // any size is as good as another
  }

  Canvas Picture();
  void Note() { is_stale_ = true; }
  /// Tells who shows the view, if it has become another one since.
  void TellChanged();

 private:
  ControlObject& object_;
  bool is_stale_ = false;
  DWORD aspects_ = 0;
  DWORD flags_ = 0;
  ComPtr<IAdviseSink> advised_;
};

}  // namespace discoplan::activex
