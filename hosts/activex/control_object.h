// SPDX-License-Identifier: MIT
#pragma once

/// One of the nine controls as a COM object; the class's rows tell which.
///
/// Calls go straight from an id to a row. An object outlives its own running members, also when an
/// event handler of the container's drops the last reference meanwhile.

#include <cmath>
#include <memory>

#include "discoplan/controls/plot_control.h"
#include "discoplan/raster/canvas.h"
#include "hosts/activex/browsing.h"
#include "hosts/activex/com_platform.h"
#include "hosts/activex/embedding.h"
#include "hosts/activex/events.h"
#include "hosts/activex/in_place.h"
#include "hosts/activex/site.h"
#include "hosts/activex/transfer.h"
#include "hosts/activex/values.h"

namespace discoplan::activex {

inline constexpr double kHimetricPerInch = 2540;

/// Hundredths of a millimetre, in which containers count, and the pixels of a screen.
inline LONG PixelsOf(LONG himetric, float twips_per_pixel) {
  return std::lround(himetric * (kTwipsPerInch / kHimetricPerInch) /
                     static_cast<double>(twips_per_pixel));
}

class ControlObject final : public IDispatch,
                            public IProvideClassInfo2,
                            public IPersistStreamInit,
                            public IPersistPropertyBag,
                            public IPersistStorage,
                            public IViewObjectEx,
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

  // IPersistStorage: the settings as one stream.
  STDMETHODIMP InitNew(IStorage* storage) override;
  STDMETHODIMP Load(IStorage* storage) override;
  STDMETHODIMP Save(IStorage* storage, BOOL same_as_load) override;
  STDMETHODIMP SaveCompleted(IStorage* storage) override;
  STDMETHODIMP HandsOffStorage() override;

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

  // IObjectSafety: settings from anywhere do no harm; a script might read files, so it is no safe
  // caller.
  STDMETHODIMP GetInterfaceSafetyOptions(REFIID id, DWORD* known, DWORD* on) override;
  STDMETHODIMP SetInterfaceSafetyOptions(REFIID id, DWORD mask, DWORD on) override;

  // For the object's parts.

  /// Keeps the object for as long as something of it runs that may call out.
  ComPtr<IUnknown> Keep() { return &self_; }
  IUnknown& whole() const { return *whole_; }
  const ControlClass& row() const { return row_; }
  ComPlatform& platform() { return platform_; }
  Site& site() { return site_; }
  Events& events() { return events_; }
  InPlace& in_place() { return in_place_; }
  Browsing& browsing() { return browsing_; }
  bool is_dirty() const { return is_dirty_; }
  /// The control, with the values of a new one unless a store has given it others.
  PlotControl& Control();
  Canvas Picture();
  SIZE ToPixels(float width, float height) const;
  /// The container gives it that size.
  void SetPixels(SIZE pixels);
  /// The tree is watched by the object itself while there is no window to do it.
  void WatchTree();
  void NoteView() { view_is_stale_ = true; }
  /// Tells who shows the view, if it has become another one since.
  void TellViewChanged();

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
  HRESULT InvokeMember(const Member& member, LCID locale, WORD kind, DISPPARAMS& params,
                       VARIANT* result, UINT* wrong);
  HRESULT CallMember(const Member& member, LCID locale, DISPPARAMS& params, VARIANT* result,
                     UINT* wrong);
  void TakeSettings(const PropertyBag& bag);

  // What the control tells.
  void PropertyChanged(std::string_view property) override;
  void EventRaised(std::string_view event, std::span<const Variant> args) override;
  void ResizeRequested(float width, float height,
                       const std::function<void(float, float)>& take) override;
  void UseTwips() override { site_.UseTwips(); }
  void Repaint() override { NoteView(); }
  void PointerChanged(std::int16_t) override { in_place_.PointerChanged(); }
  std::int32_t DeviceHandle() const override;
  std::int32_t WindowHandle() const override;

  Self self_{*this};
  IUnknown* const whole_;
  const ControlClass& row_;
  Site site_;
  ComPlatform platform_;
  Events events_;
  InPlace in_place_;
  Embedding embedding_;
  Browsing browsing_;
  Transfer transfer_;
  std::shared_ptr<PlotControl> control_;
  const Objects objects_;
  bool is_new_ = true;
  bool is_dirty_ = false;
  bool holds_no_storage_ = false;

  bool view_is_stale_ = false;
  DWORD advise_aspects_ = 0;
  DWORD advise_flags_ = 0;
  ComPtr<IAdviseSink> advised_;
};

}  // namespace discoplan::activex
