// SPDX-License-Identifier: MIT
#pragma once

/// One of the nine controls as a COM object; the class's rows tell which.
///
/// Calls go straight from an id to a row. An object outlives its own running members, also when an
/// event handler of the container's drops the last reference meanwhile.

#include <cmath>
#include <memory>

#include "discoplan/controls/plot_control.h"
#include "hosts/activex/browsing.h"
#include "hosts/activex/class_facts.h"
#include "hosts/activex/com_platform.h"
#include "hosts/activex/embedding.h"
#include "hosts/activex/events.h"
#include "hosts/activex/in_place.h"
#include "hosts/activex/site.h"
#include "hosts/activex/stores.h"
#include "hosts/activex/transfer.h"
#include "hosts/activex/values.h"
#include "hosts/activex/view.h"

namespace discoplan::activex {

inline constexpr double kHimetricPerInch = 2540;

/// Hundredths of a millimetre, in which containers count, and the pixels of a screen.
inline LONG PixelsOf(LONG himetric, float twips_per_pixel) {
  return std::lround(himetric * (kTwipsPerInch / kHimetricPerInch) /
                     static_cast<double>(twips_per_pixel));
}

class ControlObject final : public IDispatch, private Container {
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

  // For the object's parts.

  /// Keeps the object for as long as something of it runs that may call out.
  ComPtr<IUnknown> Keep() { return &self_; }
  IUnknown& whole() const { return *whole_; }
  const ControlClass& row() const { return row_; }
  ComPlatform& platform() { return platform_; }
  Site& site() { return site_; }
  Events& events() { return events_; }
  InPlace& in_place() { return in_place_; }
  Embedding& embedding() { return embedding_; }
  Browsing& browsing() { return browsing_; }
  Transfer& transfer() { return transfer_; }
  Stores& stores() { return stores_; }
  View& view() { return view_; }
  const Objects& objects() const { return objects_; }
  bool Offers(REFIID id) { return Interface(id) != nullptr; }
  /// The control, with the values of a new one unless a store has given it others.
  PlotControl& Control();
  /// As it stands, maybe before it has any values.
  PlotControl& Unset() { return *control_; }
  void Renew();
  /// Reading announces what it sets, so that the control counts as changed afterwards.
  void Restore(const PropertyBag& bag);
  SIZE ToPixels(float width, float height) const;
  /// The container gives it that size.
  void SetPixels(SIZE pixels);
  /// The tree is watched by the object itself while there is no window to do it.
  void WatchTree();

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

  // What the control tells.
  void PropertyChanged(std::string_view property) override;
  void EventRaised(std::string_view event, std::span<const Variant> args) override;
  void ResizeRequested(float width, float height,
                       const std::function<void(float, float)>& take) override;
  void UseTwips() override { site_.UseTwips(); }
  void Repaint() override { view_.Note(); }
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
  Stores stores_;
  View view_;
  ClassFacts facts_;
  std::shared_ptr<PlotControl> control_;
  const Objects objects_;
  bool is_new_ = true;
};

}  // namespace discoplan::activex
