// SPDX-License-Identifier: MIT
#include "hosts/activex/class_facts.h"

#include "hosts/activex/control_object.h"
#include "hosts/activex/ids.h"

namespace discoplan::activex {

ClassFacts::ClassFacts(ControlObject& object) : Part(object.whole()), object_(object) {}

STDMETHODIMP ClassFacts::GetClassInfo(ITypeInfo** info) {
  if (info == nullptr) return E_POINTER;
  *info = TypeInfoOf(ToGuid(object_.row().class_id)).Detach();
  return *info != nullptr ? S_OK : E_FAIL;
}

STDMETHODIMP ClassFacts::GetGUID(DWORD kind, GUID* id) {
  if (id == nullptr) return E_POINTER;
  if (kind != GUIDKIND_DEFAULT_SOURCE_DISP_IID) return E_INVALIDARG;
  *id = ToGuid(EventsId(object_.row()));
  return S_OK;
}

STDMETHODIMP ClassFacts::GetInterfaceSafetyOptions(REFIID id, DWORD* known, DWORD* on) {
  if (known == nullptr || on == nullptr) return E_POINTER;
  const bool persists = id == IID_IPersistPropertyBag || id == IID_IPersistStreamInit;
  *known = *on = persists ? INTERFACESAFE_FOR_UNTRUSTED_DATA : 0;
  return object_.Offers(id) ? S_OK : E_NOINTERFACE;
}

STDMETHODIMP ClassFacts::SetInterfaceSafetyOptions(REFIID id, DWORD mask, DWORD on) {
  DWORD known = 0;
  DWORD present = 0;
  const HRESULT asked = GetInterfaceSafetyOptions(id, &known, &present);
  if (FAILED(asked)) return asked;
  return (mask & on & ~known) == 0 ? S_OK : E_FAIL;
}

}  // namespace discoplan::activex
