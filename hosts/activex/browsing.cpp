// SPDX-License-Identifier: MIT
#include "hosts/activex/browsing.h"

#include <algorithm>

#include "hosts/activex/control_object.h"
#include "hosts/activex/ids.h"

namespace discoplan::activex {
namespace {

/// A counted array for the caller to free; nothing without the memory.
template <class Element>
Element* NewElements(std::size_t count) {
  return static_cast<Element*>(CoTaskMemAlloc(std::max<std::size_t>(1, count) * sizeof(Element)));
}

}  // namespace

Browsing::Browsing(ControlObject& object) : Part(object.whole()), object_(object) {}

STDMETHODIMP Browsing::GetPages(CAUUID* pages) {
  if (pages == nullptr) return E_POINTER;
  const auto& names = object_.row().pages;
  *pages = {static_cast<ULONG>(names.size()), NewElements<GUID>(names.size())};
  if (pages->pElems == nullptr) return E_OUTOFMEMORY;
  std::transform(names.begin(), names.end(), pages->pElems,
                 [](std::string_view name) { return ToGuid(PageId(name)); });
  return S_OK;
}

STDMETHODIMP Browsing::GetDisplayString(DISPID property, BSTR* text) {
  if (text == nullptr) return E_POINTER;
  *text = nullptr;
  const ComPtr<IUnknown> alive = object_.Keep();
  const Member* member = object_.row().members.Find(property);
  if (member == nullptr || member->enumeration == nullptr) return S_FALSE;
  const Enumerator* value = member->enumeration->Find(member->Get(object_.Control()).AsInt32());
  if (value == nullptr) return S_FALSE;
  *text = SysAllocString(Wide(value->name).c_str());
  return *text != nullptr ? S_OK : E_OUTOFMEMORY;
}

STDMETHODIMP Browsing::MapPropertyToPage(DISPID, CLSID* page) {
  if (page == nullptr) return E_POINTER;
  *page = CLSID_NULL;
  return PERPROP_E_NOPAGEAVAILABLE;
}

STDMETHODIMP Browsing::GetPredefinedStrings(DISPID property, CALPOLESTR* texts, CADWORD* cookies) {
  if (texts == nullptr || cookies == nullptr) return E_POINTER;
  *texts = {};
  *cookies = {};
  const Member* member = object_.row().members.Find(property);
  if (member == nullptr || member->enumeration == nullptr) return E_NOTIMPL;
  const auto choices = member->Choices();
  texts->pElems = NewElements<LPOLESTR>(choices.size());
  cookies->pElems = NewElements<DWORD>(choices.size());
  if (texts->pElems == nullptr || cookies->pElems == nullptr) {
    CoTaskMemFree(texts->pElems);
    CoTaskMemFree(cookies->pElems);
    *texts = {};
    *cookies = {};
    return E_OUTOFMEMORY;
  }
  for (std::size_t i = 0; i < choices.size(); ++i) {
    const std::wstring name = Wide(choices[i].name);
    texts->pElems[i] = NewElements<wchar_t>(name.size() + 1);
    if (texts->pElems[i] != nullptr) {
      std::copy(name.c_str(), name.c_str() + name.size() + 1, texts->pElems[i]);
    }
    cookies->pElems[i] = static_cast<DWORD>(static_cast<std::int32_t>(choices[i].value));
  }
  texts->cElems = cookies->cElems = static_cast<ULONG>(choices.size());
  return S_OK;
}

STDMETHODIMP Browsing::GetPredefinedValue(DISPID property, DWORD cookie, VARIANT* value) {
  if (value == nullptr) return E_POINTER;
  VariantInit(value);
  const Member* member = object_.row().members.Find(property);
  if (member == nullptr || member->enumeration == nullptr) return E_NOTIMPL;
  const auto number = static_cast<std::int32_t>(cookie);
  if (member->enumeration->Find(number) == nullptr) return E_INVALIDARG;
  value->vt = VT_I4;
  value->lVal = number;
  return S_OK;
}

}  // namespace discoplan::activex
