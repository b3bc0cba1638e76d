// SPDX-License-Identifier: MIT
#include "hosts/activex/events.h"

#include <algorithm>
#include <array>

#include "hosts/activex/ids.h"
#include "hosts/activex/values.h"

namespace discoplan::activex {
namespace {

/// An event's arguments are the caller's own variables; what a listener writes is lost.
struct Arguments {
  explicit Arguments(std::span<const Variant> args) {
    for (std::size_t i = 0; i < args.size(); ++i) {
      VARIANT& value = values[args.size() - 1 - i];
      if (std::holds_alternative<std::int16_t>(args[i].value())) {
        whole[i] = args[i].AsInt16();
        value.vt = VT_I2 | VT_BYREF;
        value.piVal = &whole[i];
      } else {
        number[i] = args[i].AsFloat();
        value.vt = VT_R4 | VT_BYREF;
        value.pfltVal = &number[i];
      }
    }
  }
  Arguments(const Arguments&) = delete;
  Arguments& operator=(const Arguments&) = delete;

  std::array<VARIANT, ParameterList::kMost> values{};  // in reverse
  std::array<SHORT, ParameterList::kMost> whole{};
  std::array<FLOAT, ParameterList::kMost> number{};
};

CONNECTDATA CopyOf(const std::pair<DWORD, ComPtr<IUnknown>>& entry) {
  return {ComPtr<IUnknown>(entry.second).Detach(), entry.first};
}

IConnectionPoint* CopyOf(const ComPtr<IConnectionPoint>& point) {
  return ComPtr<IConnectionPoint>(point).Detach();
}

}  // namespace

STDMETHODIMP Listeners::QueryInterface(REFIID id, void** out) {
  if (out == nullptr) return E_POINTER;
  const bool own = id == IID_IUnknown || id == IID_IConnectionPoint;
  *out = own ? this : nullptr;
  if (!own) return E_NOINTERFACE;
  AddRef();
  return S_OK;
}

STDMETHODIMP Listeners::GetConnectionInterface(IID* id) {
  if (id == nullptr) return E_POINTER;
  *id = id_;
  return S_OK;
}

STDMETHODIMP Listeners::GetConnectionPointContainer(IConnectionPointContainer** container) {
  if (container == nullptr) return E_POINTER;
  owner_.AddRef();
  *container = &owner_;
  return S_OK;
}

STDMETHODIMP Listeners::Advise(IUnknown* sink, DWORD* cookie) try {
  if (sink == nullptr || cookie == nullptr) return E_POINTER;
  *cookie = 0;
  ComPtr<IUnknown> listener;
  // A sink of events may answer to the plain interface alone.
  if (FAILED(sink->QueryInterface(id_, &listener)) &&
      (id_ == IID_IPropertyNotifySink || FAILED(sink->QueryInterface(IID_IDispatch, &listener)))) {
    return CONNECT_E_CANNOTCONNECT;
  }
  entries_.emplace(++last_cookie_, listener);
  *cookie = last_cookie_;
  return S_OK;
} catch (const std::bad_alloc&) {
  return E_OUTOFMEMORY;
}

STDMETHODIMP Listeners::Unadvise(DWORD cookie) {
  const auto entry = entries_.find(cookie);
  if (entry == entries_.end()) return CONNECT_E_NOCONNECTION;
  const ComPtr<IUnknown> leaving = entry->second;  // may call back on its way out
  entries_.erase(entry);
  return S_OK;
}

STDMETHODIMP Listeners::EnumConnections(IEnumConnections** connections) try {
  if (connections == nullptr) return E_POINTER;
  *connections =
      new CopyEnumerator<IEnumConnections, std::pair<DWORD, ComPtr<IUnknown>>, CONNECTDATA>(
          {entries_.begin(), entries_.end()}, &CopyOf);
  return S_OK;
} catch (const std::bad_alloc&) {
  return E_OUTOFMEMORY;
}

Events::Events(IUnknown& whole, const ControlClass& row)
    : Part(whole),
      row_(row),
      events_(*this, ToGuid(EventsId(row))),
      properties_(*this, IID_IPropertyNotifySink) {}

STDMETHODIMP Events::EnumConnectionPoints(IEnumConnectionPoints** points) try {
  if (points == nullptr) return E_POINTER;
  using Point = ComPtr<IConnectionPoint>;
  *points = new CopyEnumerator<IEnumConnectionPoints, Point, IConnectionPoint*>(
      {Point(&events_), Point(&properties_)}, &CopyOf);
  return S_OK;
} catch (const std::bad_alloc&) {
  return E_OUTOFMEMORY;
}

STDMETHODIMP Events::FindConnectionPoint(REFIID id, IConnectionPoint** point) {
  if (point == nullptr) return E_POINTER;
  // Scripting hosts ask for IDispatch and mean the events.
  *point = id == events_.id() || id == IID_IDispatch ? &events_
           : id == properties_.id()                  ? &properties_
                                                     : nullptr;
  if (*point == nullptr) return CONNECT_E_NOCONNECTION;
  (*point)->AddRef();
  return S_OK;
}

void Events::Raise(std::string_view name, std::span<const Variant> args) {
  if (frozen_ > 0) return;
  const auto event = std::find_if(row_.events.begin(), row_.events.end(),
                                  [&](const Event& known) { return known.name == name; });
  if (event == row_.events.end()) return;
  events_.ForEach<IDispatch>([&](IDispatch& listener) {
    Arguments arguments(args);
    DISPPARAMS params{arguments.values.data(), nullptr, static_cast<UINT>(args.size()), 0};
    listener.Invoke(event->id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &params, nullptr,
                    nullptr, nullptr);
  });
}

void Events::Changed(DISPID property) {
  properties_.ForEach<IPropertyNotifySink>(
      [&](IPropertyNotifySink& listener) { listener.OnChanged(property); });
}

bool Events::MayChange(DISPID property) {
  bool may = true;
  properties_.ForEach<IPropertyNotifySink>([&](IPropertyNotifySink& listener) {
    may = may && listener.OnRequestEdit(property) != S_FALSE;
  });
  return may;
}

}  // namespace discoplan::activex
