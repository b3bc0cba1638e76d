// SPDX-License-Identifier: MIT
#include "hosts/activex/site.h"

namespace discoplan::activex {
namespace {

constexpr SHORT kTwips = 1;

HRESULT Named(IDispatch& object, const wchar_t* name, WORD kind, DISPPARAMS& params,
              VARIANT* result) {
  DISPID id = DISPID_UNKNOWN;
  auto* wanted = const_cast<LPOLESTR>(name);
  const HRESULT found = object.GetIDsOfNames(IID_NULL, &wanted, 1, LOCALE_USER_DEFAULT, &id);
  if (FAILED(found)) return found;
  return object.Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, kind, &params, result, nullptr, nullptr);
}

}  // namespace

bool Site::UserMode() const {
  const ComPtr<IDispatch> ambients = As<IDispatch>();
  OwnedVariant value;
  DISPPARAMS none{};
  if (!ambients ||
      FAILED(ambients->Invoke(DISPID_AMBIENT_USERMODE, IID_NULL, LOCALE_USER_DEFAULT,
                              DISPATCH_PROPERTYGET, &none, &value, nullptr, nullptr))) {
    return true;
  }
  return FAILED(VariantChangeType(&value, &value, 0, VT_BOOL)) || value.boolVal != VARIANT_FALSE;
}

void Site::UseTwips() const {
  const ComPtr<IOleControlSite> site = As<IOleControlSite>();
  ComPtr<IDispatch> extended;
  if (!site || FAILED(site->GetExtendedControl(&extended)) || !extended) return;
  OwnedVariant parent;
  DISPPARAMS none{};
  if (FAILED(Named(*extended.Get(), L"Parent", DISPATCH_PROPERTYGET, none, &parent)) ||
      parent.vt != VT_DISPATCH || parent.pdispVal == nullptr) {
    return;
  }
  VARIANT twips{};
  twips.vt = VT_I2;
  twips.iVal = kTwips;
  DISPID put = DISPID_PROPERTYPUT;
  DISPPARAMS params{&twips, &put, 1, 1};
  Named(*parent.pdispVal, L"ScaleMode", DISPATCH_PROPERTYPUT, params, nullptr);
}

HWND Site::Window() const {
  HWND window = nullptr;
  if (const ComPtr<IOleWindow> offered = As<IOleWindow>()) offered->GetWindow(&window);
  if (window != nullptr) return window;
  if (const ComPtr<IOleInPlaceSite> offered = As<IOleInPlaceSite>()) offered->GetWindow(&window);
  return window;
}

}  // namespace discoplan::activex
