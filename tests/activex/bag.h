// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>
#include <vector>

#include "tests/activex/client.h"

namespace discoplan::activex {

/// A container's own bag.
class Bag final : public IPropertyBag {
 public:
  STDMETHODIMP QueryInterface(REFIID id, void** out) override {
    const bool own = id == IID_IUnknown || id == IID_IPropertyBag;
    *out = own ? this : nullptr;
    return own ? S_OK : E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return 2; }
  STDMETHODIMP_(ULONG) Release() override { return 1; }
  STDMETHODIMP Read(LPCOLESTR name, VARIANT* value, IErrorLog*) override {
    const auto entry = entries.find(name);
    return entry == entries.end() ? E_INVALIDARG : VariantCopy(value, &entry->second);
  }
  STDMETHODIMP Write(LPCOLESTR name, VARIANT* value) override {
    order.push_back(name);
    return VariantCopy(&entries[name], value);
  }

  std::map<std::wstring, OwnedVariant> entries;
  std::vector<std::wstring> order;
};

}  // namespace discoplan::activex
