// SPDX-License-Identifier: MIT
#pragma once

/// What a control tells those who listen: its events, and changes of its properties.

#include <map>
#include <span>

#include "discoplan/controls/control_class.h"
#include "hosts/activex/part.h"

namespace discoplan::activex {

/// One interface's listeners. A listener may leave, and others come, while it is told something.
class Listeners final : public IConnectionPoint {
 public:
  Listeners(IConnectionPointContainer& owner, const GUID& id) : owner_(owner), id_(id) {}

  STDMETHODIMP QueryInterface(REFIID id, void** out) override;
  STDMETHODIMP_(ULONG) AddRef() override { return owner_.AddRef(); }
  STDMETHODIMP_(ULONG) Release() override { return owner_.Release(); }

  STDMETHODIMP GetConnectionInterface(IID* id) override;
  STDMETHODIMP GetConnectionPointContainer(IConnectionPointContainer** container) override;
  STDMETHODIMP Advise(IUnknown* sink, DWORD* cookie) override;
  STDMETHODIMP Unadvise(DWORD cookie) override;
  STDMETHODIMP EnumConnections(IEnumConnections** connections) override;

  const GUID& id() const { return id_; }
  /// Those who listen now and still do when their turn comes, as the interface that they listen by.
  template <class Interface, class Tell>
  void ForEach(const Tell& tell) const {
    const DWORD last = last_cookie_;
    auto entry = entries_.begin();
    while (entry != entries_.end() && entry->first <= last) {
      const auto [cookie, kept] = *entry;
      tell(*static_cast<Interface*>(kept.Get()));
      entry = entries_.upper_bound(cookie);
    }
  }

 private:
  IConnectionPointContainer& owner_;
  const GUID id_;
  std::map<DWORD, ComPtr<IUnknown>> entries_;  // by cookie
  DWORD last_cookie_ = 0;
};

class Events final : public Part<IConnectionPointContainer> {
 public:
  Events(IUnknown& whole, const ControlClass& row);

  STDMETHODIMP EnumConnectionPoints(IEnumConnectionPoints** points) override;
  STDMETHODIMP FindConnectionPoint(REFIID id, IConnectionPoint** point) override;

  void Raise(std::string_view event, std::span<const Variant> args);
  void Changed(DISPID property);
  /// Whether all who listen let the property be changed.
  bool MayChange(DISPID property);
  /// As often frozen as thawed; meanwhile events are lost.
  void Freeze(bool freeze) { frozen_ += freeze ? 1 : frozen_ > 0 ? -1 : 0; }

  Listeners& events() { return events_; }
  Listeners& properties() { return properties_; }

 private:
  const ControlClass& row_;
  Listeners events_;
  Listeners properties_;
  int frozen_ = 0;
};

}  // namespace discoplan::activex
