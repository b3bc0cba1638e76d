// SPDX-License-Identifier: MIT
#pragma once

/// One of the nine controls as a COM object; the class's rows tell which.
///
/// Calls go straight from an id to a row. An object outlives its own running members, also when an
/// event handler of the container's drops the last reference meanwhile.

#include <map>
#include <memory>

#include "discoplan/controls/plot_control.h"
#include "discoplan/platform/platform.h"
#include "discoplan/raster/canvas.h"
#include "hosts/activex/com.h"
#include "hosts/activex/gdi_text.h"
#include "hosts/activex/values.h"

namespace discoplan::activex {

/// What a control asks of Windows. Without windows of its own it cancels forms.
class ComPlatform final : public Platform {
 public:
  ComPlatform();
  const Screen& screen() const override { return screen_; }
  const TextPainter& text() const override { return text_; }
  void Show(const Message& message) override;

 private:
  Screen screen_;
  GdiText text_;
};

class ControlObject final : public IDispatch,
                            public IProvideClassInfo2,
                            public IPersistStreamInit,
                            public IPersistPropertyBag,
                            public IViewObject2,
                            public IObjectSafety,
                            private Container {
 public:
  /// With an outer object, that one's references count and `id` is IUnknown.
  static HRESULT Create(const ControlClass& row, IUnknown* outer, REFIID id, void** out);

  STDMETHODIMP QueryInterface(REFIID id, void** out) override {
    return whole_->QueryInterface(id, out);
  }
  STDMETHODIMP_(ULONG) AddRef() override { return whole_->AddRef(); }
  STDMETHODIMP_(ULONG) Release() override { return whole_->Release(); }

  // IDispatch
  STDMETHODIMP GetTypeInfoCount(UINT* count) override;
  STDMETHODIMP GetTypeInfo(UINT index, LCID, ITypeInfo** info) override;
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override;
  STDMETHODIMP Invoke(DISPID id, REFIID, LCID locale, WORD kind, DISPPARAMS* params,
                      VARIANT* result, EXCEPINFO* raised, UINT* wrong) override;

  // IProvideClassInfo2
  STDMETHODIMP GetClassInfo(ITypeInfo** info) override;
  STDMETHODIMP GetGUID(DWORD kind, GUID* id) override;

  // IPersistStreamInit
  STDMETHODIMP GetClassID(CLSID* id) override;
  STDMETHODIMP IsDirty() override { return is_dirty_ ? S_OK : S_FALSE; }
  STDMETHODIMP Load(IStream* stream) override;
  STDMETHODIMP Save(IStream* stream, BOOL clear_dirty) override;
  STDMETHODIMP GetSizeMax(ULARGE_INTEGER*) override { return E_NOTIMPL; }
  STDMETHODIMP InitNew() override;

  // IPersistPropertyBag
  STDMETHODIMP Load(IPropertyBag* bag, IErrorLog* log) override;
  STDMETHODIMP Save(IPropertyBag* bag, BOOL clear_dirty, BOOL save_all) override;

  // IViewObject2
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

  // IObjectSafety: settings from anywhere do no harm; a script might read files, so it is no safe
  // caller.
  STDMETHODIMP GetInterfaceSafetyOptions(REFIID id, DWORD* known, DWORD* on) override;
  STDMETHODIMP SetInterfaceSafetyOptions(REFIID id, DWORD mask, DWORD on) override;

 private:
  /// The references and interfaces of the object by itself.
  class Self final : public IUnknown {
   public:
    explicit Self(ControlObject& owner) : owner_(owner) {}
    STDMETHODIMP QueryInterface(REFIID id, void** out) override;
    STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
    STDMETHODIMP_(ULONG) Release() override;

   private:
    ControlObject& owner_;
    ULONG references_ = 1;
  };

  ControlObject(const ControlClass& row, IUnknown* outer);
  ~ControlObject();

  IUnknown* Interface(REFIID id);
  /// The control, with the values of a new one unless a store has given it others.
  PlotControl& Control();
  HRESULT InvokeMember(const Member& member, LCID locale, WORD kind, DISPPARAMS& params,
                       VARIANT* result, UINT* wrong);
  HRESULT CallMember(const Member& member, LCID locale, DISPPARAMS& params, VARIANT* result,
                     UINT* wrong);
  void TakeSettings(const PropertyBag& bag);
  Canvas Picture();
  void ViewChanged();

  // What the control tells.
  void PropertyChanged(std::string_view property) override;
  void Repaint() override { ViewChanged(); }

  Self self_{*this};
  IUnknown* const whole_;
  const ControlClass& row_;
  ComPlatform platform_;
  std::shared_ptr<PlotControl> control_;
  const Objects objects_;
  bool is_new_ = true;
  bool is_dirty_ = false;

  DWORD advise_aspects_ = 0;
  DWORD advise_flags_ = 0;
  ComPtr<IAdviseSink> advised_;
};

}  // namespace discoplan::activex
