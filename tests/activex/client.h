// SPDX-License-Identifier: MIT
#pragma once

/// A program that uses the controls as any other of Windows' does: by COM alone.

#include <gtest/gtest.h>

#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

#include "hosts/activex/com.h"

namespace discoplan::activex {

/// The controls' ids, as the registry tells them.
inline CLSID ClassOf(const wchar_t* name) {
  CLSID id{};
  EXPECT_EQ(S_OK, CLSIDFromProgID((std::wstring(L"Discoplan.") + name).c_str(), &id));
  return id;
}

inline ComPtr<IDispatch> NewPlot(const wchar_t* name) {
  ComPtr<IDispatch> plot;
  EXPECT_EQ(S_OK,
            CoCreateInstance(ClassOf(name), nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&plot)));
  return plot;
}

template <class Interface, class Object>
ComPtr<Interface> As(const ComPtr<Object>& object) {
  ComPtr<Interface> offered;
  EXPECT_EQ(S_OK, object->QueryInterface(IID_PPV_ARGS(&offered)));
  return offered;
}

inline VARIANT Of(double value) {
  VARIANT variant{};
  variant.vt = VT_R8;
  variant.dblVal = value;
  return variant;
}
inline VARIANT Of(float& variable) {
  VARIANT variant{};
  variant.vt = VT_R4 | VT_BYREF;
  variant.pfltVal = &variable;
  return variant;
}
inline VARIANT Of(IDispatch* object) {
  VARIANT variant{};
  variant.vt = VT_DISPATCH;
  variant.pdispVal = object;
  return variant;
}

/// Singles as VB6 hands them over: by reference, with any lower bound.
class Singles {
 public:
  Singles(LONG lower, const std::vector<float>& values) {
    SAFEARRAYBOUND bound{static_cast<ULONG>(values.size()), lower};
    array_ = SafeArrayCreate(VT_R4, 1, &bound);
    std::copy(values.begin(), values.end(), static_cast<float*>(array_->pvData));
  }
  ~Singles() { SafeArrayDestroy(array_); }
  Singles(const Singles&) = delete;
  Singles& operator=(const Singles&) = delete;

  VARIANT ByReference() {
    VARIANT variant{};
    variant.vt = VT_ARRAY | VT_R4 | VT_BYREF;
    variant.pparray = &array_;
    return variant;
  }
  LONG Lower() const {
    LONG lower = 0;
    SafeArrayGetLBound(array_, 1, &lower);
    return lower;
  }
  std::vector<float> Values() const {
    const auto* first = static_cast<const float*>(array_->pvData);
    return {first, first + array_->rgsabound[0].cElements};
  }
  VARTYPE Type() const {
    VARTYPE type = VT_EMPTY;
    SafeArrayGetVartype(array_, &type);
    return type;
  }

 private:
  SAFEARRAY* array_;
};

inline DISPID IdOf(IDispatch& object, const wchar_t* name) {
  DISPID id = DISPID_UNKNOWN;
  auto* wanted = const_cast<LPOLESTR>(name);
  EXPECT_EQ(S_OK, object.GetIDsOfNames(IID_NULL, &wanted, 1, LOCALE_INVARIANT, &id)) << name;
  return id;
}

/// What a call came to. The error is the interface's own number, or 0.
struct Outcome {
  HRESULT result = S_OK;
  int error = 0;
  SCODE code = 0;             // of the error, as a whole
  std::string words, source;  // of the error
  double number = 0;
  std::optional<std::string> text = {};  // where it is one
  VARTYPE type = VT_EMPTY;               // of the result
};

inline Outcome Invoke(IDispatch& object, const wchar_t* name, WORD kind,
                      std::vector<VARIANT> args = {}) {
  std::vector<VARIANT> reversed(args.rbegin(), args.rend());
  DISPID put = DISPID_PROPERTYPUT;
  const bool puts = (kind & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
  DISPPARAMS params{reversed.data(), puts ? &put : nullptr, static_cast<UINT>(reversed.size()),
                    puts ? 1U : 0U};
  OwnedVariant result;
  EXCEPINFO raised{};
  Outcome outcome;
  outcome.result = object.Invoke(IdOf(object, name), IID_NULL, LOCALE_INVARIANT, kind, &params,
                                 puts ? nullptr : &result, &raised, nullptr);
  outcome.error = outcome.result == DISP_E_EXCEPTION ? raised.scode & 0xFFFF : 0;
  outcome.code = raised.scode;
  if (raised.bstrDescription != nullptr) outcome.words = Utf8(raised.bstrDescription);
  if (raised.bstrSource != nullptr) outcome.source = Utf8(raised.bstrSource);
  SysFreeString(raised.bstrSource);
  SysFreeString(raised.bstrDescription);
  SysFreeString(raised.bstrHelpFile);
  outcome.type = result.vt;
  if (result.vt == VT_BSTR) outcome.text = Utf8({result.bstrVal, SysStringLen(result.bstrVal)});
  if (SUCCEEDED(outcome.result) && SUCCEEDED(VariantChangeType(&result, &result, 0, VT_R8))) {
    outcome.number = result.dblVal;
  }
  return outcome;
}

inline double Get(IDispatch& object, const wchar_t* name) {
  const Outcome outcome = Invoke(object, name, DISPATCH_PROPERTYGET);
  EXPECT_EQ(S_OK, outcome.result) << name;
  return outcome.number;
}

inline void Put(IDispatch& object, const wchar_t* name, double value) {
  EXPECT_EQ(S_OK, Invoke(object, name, DISPATCH_PROPERTYPUT, {Of(value)}).result) << name;
}

inline double Call(IDispatch& object, const wchar_t* name, std::vector<VARIANT> args = {}) {
  const Outcome outcome = Invoke(object, name, DISPATCH_METHOD, std::move(args));
  EXPECT_EQ(S_OK, outcome.result) << name;
  return outcome.number;
}

/// Thirteen sites in rows.
inline void Load(IDispatch& plot) {
  std::vector<float> x, y, z;
  for (int i = 0; i < 13; ++i) {
    x.push_back(static_cast<float>(i % 5 * 35 - 70));
    y.push_back(static_cast<float>(i / 5 * 60 - 60));
    z.push_back(10 + static_cast<float>(i) * 0.75F);
  }
  Singles xs(0, x), ys(0, y), zs(0, z);
  EXPECT_EQ(0, Call(plot, L"SetWaferData", {xs.ByReference(), ys.ByReference(), zs.ByReference()}));
}

inline constexpr const wchar_t* kPlots[] = {L"Plot2D",  L"Plot2DS", L"Plot2DC",
                                            L"Plot2DN", L"Plot3D",  L"Plot3DS",
                                            L"Plot3DB", L"Histo",   L"LineScan"};

/// What is due, until nothing is.
inline void RunMessages() {
  MSG message{};
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

}  // namespace discoplan::activex
