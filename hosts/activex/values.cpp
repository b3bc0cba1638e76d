// SPDX-License-Identifier: MIT
#include "hosts/activex/values.h"

#include <limits>

#include "discoplan/base/numbers.h"

namespace discoplan::activex {
namespace {

constexpr auto kArrayIsFixed = static_cast<Fault>(10);

[[noreturn]] void RaiseMismatch(const char* what) { throw RunTimeError(Fault::TypeMismatch, what); }

void Check(HRESULT result) {
  if (result == E_OUTOFMEMORY) throw std::bad_alloc();
  if (result == DISP_E_OVERFLOW) throw RunTimeError(Fault::Overflow);
  if (result == DISP_E_ARRAYISLOCKED) throw RunTimeError(kArrayIsFixed, "the array is locked");
  if (FAILED(result)) RaiseMismatch("a value of this type has no place here");
}

double NumberOf(const VARIANT& value, LCID locale) {
  OwnedVariant number;
  Check(VariantChangeTypeEx(&number, const_cast<VARIANT*>(&value), locale, 0, VT_R8));
  return number.dblVal;
}

BSTR NewText(std::string_view utf8) {
  const std::wstring wide = Wide(utf8);
  const BSTR text = SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size()));
  if (text == nullptr) throw std::bad_alloc();
  return text;
}

/// The elements of any one-dimensional array of numbers.
FloatArray ArrayOf(SAFEARRAY* array, LCID locale) {
  FloatArray result;
  if (array == nullptr || SafeArrayGetDim(array) == 0) return result;
  if (SafeArrayGetDim(array) != 1) RaiseMismatch("an array must have one dimension");
  VARTYPE type = VT_EMPTY;
  Check(SafeArrayGetVartype(array, &type));
  LONG lower = 0;
  LONG upper = 0;
  Check(SafeArrayGetLBound(array, 1, &lower));
  Check(SafeArrayGetUBound(array, 1, &upper));
  result.lower = lower;
  result.dimensioned = true;
  const auto size = static_cast<std::size_t>(static_cast<long long>(upper) - lower + 1);
  result.values.resize(size);
  void* data = nullptr;
  Check(SafeArrayAccessData(array, &data));
  struct Access {
    SAFEARRAY* array;
    ~Access() { SafeArrayUnaccessData(array); }
  } const access{array};
  const std::size_t step = SafeArrayGetElemsize(array);
  for (std::size_t i = 0; i < size; ++i) {
    void* element = static_cast<std::byte*>(data) + i * step;
    if (type == VT_R4) {
      result.values[i] = *static_cast<float*>(element);
      continue;
    }
    VARIANT view{};  // looks at the element in its place
    view.vt = static_cast<VARTYPE>(type | VT_BYREF);
    view.byref = element;
    result.values[i] = ToFloat(NumberOf(view, locale));
  }
  return result;
}

SAFEARRAY* NewArray(const FloatArray& array, VARTYPE type) {
  SAFEARRAYBOUND bound{static_cast<ULONG>(array.values.size()), array.lower};
  SAFEARRAY* result = SafeArrayCreate(type, 1, &bound);
  if (result == nullptr) throw std::bad_alloc();
  for (std::size_t i = 0; i < array.values.size(); ++i) {
    const auto index = static_cast<std::size_t>(i);
    if (type == VT_VARIANT) {
      VARIANT& element = static_cast<VARIANT*>(result->pvData)[index];
      element.vt = VT_R4;
      element.fltVal = array.values[i];
    } else {
      static_cast<float*>(result->pvData)[index] = array.values[i];
    }
  }
  return result;
}

bool IsFixed(const SAFEARRAY* array) {
  constexpr USHORT kFixed = FADF_AUTO | FADF_STATIC | FADF_EMBEDDED | FADF_FIXEDSIZE;
  return array != nullptr && ((array->fFeatures & kFixed) != 0 || array->cLocks != 0);
}

/// A new array in place of the caller's.
void Replace(SAFEARRAY*& place, const FloatArray& array, VARTYPE type) {
  if (IsFixed(place)) throw RunTimeError(kArrayIsFixed, "the array is fixed or locked");
  SAFEARRAY* result = NewArray(array, type);
  if (place != nullptr) SafeArrayDestroy(place);
  place = result;
}

VARTYPE ElementType(SAFEARRAY* array) {
  VARTYPE type = VT_VARIANT;
  if (array != nullptr) SafeArrayGetVartype(array, &type);
  return type == VT_R4 ? VT_R4 : VT_VARIANT;
}

Variant FromObject(IUnknown* object, Type type, LCID locale, const Objects& objects) {
  ComPtr<IDispatch> dispatch;
  if (object != nullptr && FAILED(object->QueryInterface(IID_PPV_ARGS(&dispatch)))) {
    RaiseMismatch("the object has no members to be called by name");
  }
  if (type == Type::Object) return Variant(objects.taken(dispatch.Get()));
  if (!dispatch) RaiseMismatch("there is no object");
  OwnedVariant inner;  // the object's own value, as a text box has one
  DISPPARAMS none{};
  Check(dispatch->Invoke(DISPID_VALUE, IID_NULL, locale, DISPATCH_PROPERTYGET, &none, &inner,
                         nullptr, nullptr));
  if (inner.vt == VT_DISPATCH || inner.vt == VT_UNKNOWN) RaiseMismatch("an object is no value");
  return FromCaller(inner, type, locale, objects);
}

Variant FromText(const VARIANT& value, Type type, LCID locale) {
  if (type == Type::String || type == Type::Variant) {
    return Variant(Utf8({value.bstrVal, SysStringLen(value.bstrVal)}));
  }
  return Variant(NumberOf(value, locale));
}

Variant FromNumber(const VARIANT& value, Type type, LCID locale) {
  if (type == Type::String) {
    OwnedVariant text;
    Check(VariantChangeTypeEx(&text, const_cast<VARIANT*>(&value), locale, VARIANT_ALPHABOOL,
                              VT_BSTR));
    return FromText(text, type, locale);
  }
  switch (value.vt) {
    case VT_I2:
      return Variant(static_cast<std::int16_t>(value.iVal));
    case VT_BOOL:
      return BooleanVariant(value.boolVal != VARIANT_FALSE);
    case VT_I4:
    case VT_INT:
      return Variant(static_cast<std::int32_t>(value.lVal));
    case VT_UI4:
    case VT_UINT:
      if (type == Type::Rgb) return Variant(static_cast<Colour>(value.ulVal));
      return Variant(static_cast<double>(value.ulVal));
    case VT_R4:
      return Variant(value.fltVal);
    default:
      return Variant(NumberOf(value, locale));
  }
}

/// Into a variable of arrays; with `anything` into one that may hold whatever there is.
void GiveArray(const FloatArray& array, VARIANT& place, bool anything) {
  if (!array.dimensioned) return;
  if ((place.vt & (VT_ARRAY | VT_BYREF)) == (VT_ARRAY | VT_BYREF)) {
    const VARTYPE element = place.vt & VT_TYPEMASK;
    if (element != VT_R4 && element != VT_VARIANT) {
      RaiseMismatch("the caller's array is none of singles");
    }
    return Replace(*place.pparray, array, element);
  }
  if ((place.vt & VT_ARRAY) != 0) return Replace(place.parray, array, ElementType(place.parray));
  if (!anything) RaiseMismatch("the caller's variable takes no array");
  SAFEARRAY* result = NewArray(array, VT_VARIANT);
  VariantClear(&place);
  place.vt = VT_ARRAY | VT_VARIANT;
  place.parray = result;
}

/// Into a variable that keeps its own type.
void GiveAs(VARTYPE type, VARIANT& result, VARIANT& place) {
  Check(VariantChangeType(&result, &result, 0, type));
  switch (type) {
    case VT_I2:
    case VT_BOOL:
      *place.piVal = result.iVal;
      return;
    case VT_I4:
      *place.plVal = result.lVal;
      return;
    case VT_R4:
      *place.pfltVal = result.fltVal;
      return;
    case VT_R8:
      *place.pdblVal = result.dblVal;
      return;
    case VT_BSTR:
      std::swap(*place.pbstrVal, result.bstrVal);
      return;
    default:
      RaiseMismatch("the caller's variable takes no such value");
  }
}

}  // namespace

Variant FromCaller(const VARIANT& value, Type type, LCID locale, const Objects& objects) {
  if (value.vt == (VT_BYREF | VT_VARIANT)) {
    if (value.pvarVal == nullptr || value.pvarVal->vt == (VT_BYREF | VT_VARIANT)) {
      RaiseMismatch("a reference leads to nothing");
    }
    return FromCaller(*value.pvarVal, type, locale, objects);
  }
  if ((value.vt & VT_ARRAY) != 0) {
    if (type == Type::String || type == Type::Object) RaiseMismatch("an array has no place here");
    SAFEARRAY* array = (value.vt & VT_BYREF) == 0 ? value.parray
                       : value.pparray != nullptr ? *value.pparray
                                                  : nullptr;
    return Variant(ArrayOf(array, locale));
  }
  if ((value.vt & VT_BYREF) != 0) {
    OwnedVariant copy;
    if (value.byref == nullptr) RaiseMismatch("a reference leads to nothing");
    Check(VariantCopyInd(&copy, const_cast<VARIANT*>(&value)));
    return FromCaller(copy, type, locale, objects);
  }
  switch (value.vt) {
    case VT_EMPTY:
      return {};
    case VT_NULL:
      if (type == Type::Object) return {};  // how some languages say that there is none
      [[fallthrough]];
    case VT_ERROR:
      RaiseMismatch("there is no value");
    case VT_DISPATCH:
    case VT_UNKNOWN:
      return FromObject(value.punkVal, type, locale, objects);
    case VT_BSTR:
      return FromText(value, type, locale);
    default:
      return FromNumber(value, type, locale);
  }
}

void ToCaller(const Variant& value, Type type, VARIANT& result, const Objects& objects) {
  switch (type) {
    case Type::None:
      return;
    case Type::Int16:
      result.iVal = value.AsInt16();
      result.vt = VT_I2;
      return;
    case Type::Int32:
    case Type::Rgb:
    case Type::Enumeration:
      result.lVal = value.AsInt32();
      result.vt = VT_I4;
      return;
    case Type::Float:
      result.fltVal = value.AsFloat();
      result.vt = VT_R4;
      return;
    case Type::Double:
    case Type::Variant:
      result.dblVal = value.AsDouble();
      result.vt = VT_R8;
      return;
    case Type::Boolean:
      result.boolVal = value.AsBoolean() ? VARIANT_TRUE : VARIANT_FALSE;
      result.vt = VT_BOOL;
      return;
    case Type::String:
      result.bstrVal = NewText(value.AsString());
      result.vt = VT_BSTR;
      return;
    case Type::Object:
      result.pdispVal = objects.given(value.AsObject()).Detach();
      result.vt = VT_DISPATCH;
      return;
    case Type::Array:
      result.parray = NewArray(value.AsArray(), VT_VARIANT);
      result.vt = VT_ARRAY | VT_VARIANT;
      return;
  }
}

void GiveBack(const Variant& value, Type type, VARIANT& argument, const Objects& objects) {
  if ((argument.vt & VT_BYREF) == 0) return;
  VARIANT& place = argument.vt == (VT_BYREF | VT_VARIANT) ? *argument.pvarVal : argument;
  if (type == Type::Array) return GiveArray(value.AsArray(), place, &place != &argument);
  OwnedVariant result;
  ToCaller(value, type, result, objects);
  if (&place != &argument && (place.vt & VT_BYREF) == 0) return Check(VariantCopy(&place, &result));
  GiveAs(place.vt & VT_TYPEMASK, result, place);
}

}  // namespace discoplan::activex
