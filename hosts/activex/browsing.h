// SPDX-License-Identifier: MIT
#pragma once

/// What a designer's property window asks.

#include "hosts/activex/part.h"

namespace discoplan::activex {

class ControlObject;

class Browsing final : public Part<ISpecifyPropertyPages, IPerPropertyBrowsing> {
 public:
  explicit Browsing(ControlObject& object);

  // ISpecifyPropertyPages
  STDMETHODIMP GetPages(CAUUID* pages) override;

  // IPerPropertyBrowsing: the names of an enumeration's values. The cookies are the values.
  STDMETHODIMP GetDisplayString(DISPID property, BSTR* text) override;
  STDMETHODIMP MapPropertyToPage(DISPID property, CLSID* page) override;
  STDMETHODIMP GetPredefinedStrings(DISPID property, CALPOLESTR* texts, CADWORD* cookies) override;
  STDMETHODIMP GetPredefinedValue(DISPID property, DWORD cookie, VARIANT* value) override;

 private:
  ControlObject& object_;
};

}  // namespace discoplan::activex
