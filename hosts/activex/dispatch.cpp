// SPDX-License-Identifier: MIT
// Members by their names and ids.

#include <array>
#include <new>

#include "discoplan/base/numbers.h"
#include "hosts/activex/control_object.h"
#include "hosts/activex/ids.h"

namespace discoplan::activex {
namespace {

constexpr SCODE kFirstFault = static_cast<SCODE>(0x800A0000);
constexpr int kOutOfMemory = 7;
constexpr auto kSetNotPermitted = static_cast<Fault>(387);

HRESULT Raise(EXCEPINFO* raised, const ControlClass& row, int number, std::string_view what) {
  if (raised == nullptr) return DISP_E_EXCEPTION;
  *raised = {};
  raised->scode = kFirstFault + number;
  raised->bstrSource = SysAllocString(Wide(row.program_id).c_str());
  raised->bstrDescription = SysAllocString(Wide(what).c_str());
  return DISP_E_EXCEPTION;
}

bool IsMissing(const VARIANT& value) {
  return value.vt == VT_ERROR && value.scode == DISP_E_PARAMNOTFOUND;
}

const Member* FindMember(const ControlClass& row, std::wstring_view name) {
  for (const Member& member : row.members) {
    if (SameName(member.name, name) || (!member.alias.empty() && SameName(member.alias, name))) {
      return &member;
    }
  }
  return nullptr;
}

DISPID FindParameter(const Member& member, std::wstring_view name) {
  for (std::size_t i = 0; i < member.parameters.size(); ++i) {
    if (SameName(member.parameters[i].name, name)) return static_cast<DISPID>(i);
  }
  return DISPID_UNKNOWN;
}

using Places = std::array<VARIANT*, ParameterList::kMost>;

/// Which argument belongs to which parameter: named ones first, then the rest in reverse.
HRESULT Sort(const ParameterList& parameters, DISPPARAMS& params, Places& places, UINT* wrong) {
  if (params.cArgs > parameters.size()) return DISP_E_BADPARAMCOUNT;
  for (UINT i = 0; i < params.cArgs; ++i) {
    const bool named = i < params.cNamedArgs;
    const DISPID place =
        named ? params.rgdispidNamedArgs[i] : static_cast<DISPID>(params.cArgs - 1 - i);
    if (wrong != nullptr) *wrong = i;
    if (place < 0 || static_cast<std::size_t>(place) >= parameters.size()) {
      return DISP_E_PARAMNOTFOUND;
    }
    if (places[static_cast<std::size_t>(place)] != nullptr) return DISP_E_PARAMNOTFOUND;
    places[static_cast<std::size_t>(place)] = &params.rgvarg[i];
  }
  for (std::size_t i = 0; i < parameters.size(); ++i) {
    if (places[i] == nullptr || IsMissing(*places[i])) return DISP_E_PARAMNOTOPTIONAL;
  }
  return S_OK;
}

}  // namespace

STDMETHODIMP ControlObject::GetTypeInfoCount(UINT* count) {
  if (count == nullptr) return E_POINTER;
  *count = 1;
  return S_OK;
}

STDMETHODIMP ControlObject::GetTypeInfo(UINT index, LCID, ITypeInfo** info) {
  if (info == nullptr) return E_POINTER;
  *info = nullptr;
  if (index != 0) return DISP_E_BADINDEX;
  *info = TypeInfoOf(ToGuid(MembersId(row_))).Detach();
  return *info != nullptr ? S_OK : E_FAIL;
}

STDMETHODIMP ControlObject::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) {
  if (names == nullptr || ids == nullptr) return E_POINTER;
  if (count == 0) return E_INVALIDARG;
  const Member* member = FindMember(row_, names[0]);
  ids[0] = member != nullptr ? member->id : DISPID_UNKNOWN;
  bool all = member != nullptr;
  for (UINT i = 1; i < count; ++i) {
    ids[i] = member != nullptr ? FindParameter(*member, names[i]) : DISPID_UNKNOWN;
    all = all && ids[i] != DISPID_UNKNOWN;
  }
  return all ? S_OK : DISP_E_UNKNOWNNAME;
}

STDMETHODIMP ControlObject::Invoke(DISPID id, REFIID interface_id, LCID locale, WORD kind,
                                   DISPPARAMS* params, VARIANT* result, EXCEPINFO* raised,
                                   UINT* wrong) {
  if (interface_id != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  if (params == nullptr) return E_POINTER;
  const ComPtr<IUnknown> alive = Keep();
  if (result != nullptr) VariantInit(result);
  try {
    const Member* member = row_.members.Find(id);
    if (member == nullptr) return DISP_E_MEMBERNOTFOUND;
    const HRESULT invoked = InvokeMember(*member, locale, kind, *params, result, wrong);
    in_place_.Sync();
    view_.TellChanged();
    return invoked;
  } catch (const RunTimeError& error) {
    return Raise(raised, row_, static_cast<int>(error.fault()), error.what());
  } catch (const std::bad_alloc&) {
    return Raise(raised, row_, kOutOfMemory, "Out of memory");
  } catch (const std::exception& error) {
    return Raise(raised, row_, static_cast<int>(Fault::InvalidCall), error.what());
  }
}

HRESULT ControlObject::InvokeMember(const Member& member, LCID locale, WORD kind,
                                    DISPPARAMS& params, VARIANT* result, UINT* wrong) {
  if ((kind & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0) {
    if (!member.writable()) return DISP_E_MEMBERNOTFOUND;
    if (params.cArgs != 1) return DISP_E_BADPARAMCOUNT;
    if (member.announces() && !events_.MayChange(member.id)) {
      throw RunTimeError(kSetNotPermitted, "the container keeps the property as it is");
    }
    member.Set(Control(), FromCaller(params.rgvarg[0], member.type, locale, objects_));
    return S_OK;
  }
  if (member.kind == Member::Kind::Method) {
    if ((kind & DISPATCH_METHOD) == 0) return DISP_E_MEMBERNOTFOUND;
    return CallMember(member, locale, params, result, wrong);
  }
  if (params.cArgs != 0) return DISP_E_BADPARAMCOUNT;
  const Variant value = member.Get(Control());
  if (result != nullptr) ToCaller(value, member.type, *result, objects_);
  return S_OK;
}

HRESULT ControlObject::CallMember(const Member& member, LCID locale, DISPPARAMS& params,
                                  VARIANT* result, UINT* wrong) {
  Places places{};
  const HRESULT sorted = Sort(member.parameters, params, places, wrong);
  if (FAILED(sorted)) return sorted;
  std::array<Variant, ParameterList::kMost> args;
  for (std::size_t i = 0; i < member.parameters.size(); ++i) {
    args[i] = FromCaller(*places[i], member.parameters[i].type, locale, objects_);
  }
  const std::array<Variant, ParameterList::kMost> before = args;
  const Variant value = member.Call(Control(), std::span(args).first(member.parameters.size()));
  for (std::size_t i = 0; i < member.parameters.size(); ++i) {
    const Parameter& parameter = member.parameters[i];
    if (parameter.direction == Direction::InOut && args[i] != before[i]) {
      GiveBack(args[i], parameter.type, *places[i], objects_);
    }
  }
  if (result != nullptr) ToCaller(value, member.type, *result, objects_);
  return S_OK;
}

}  // namespace discoplan::activex
