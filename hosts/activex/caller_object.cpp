// SPDX-License-Identifier: MIT
#include "hosts/activex/caller_object.h"

#include <algorithm>
#include <array>
#include <vector>

#include "discoplan/base/numbers.h"
#include "hosts/activex/device_drawing.h"
#include "hosts/activex/values.h"

namespace discoplan::activex {
namespace {

constexpr DWORD kFirstFault = 0x800A0000;

/// Objects of scripts answer this one, and not all of them the plain one.
ComPtr<IDispatchEx> Extended(IDispatch& object) {
  ComPtr<IDispatchEx> extended;
  object.QueryInterface(IID_PPV_ARGS(&extended));
  return extended;
}

DISPID IdOf(IDispatch& object, const wchar_t* name) {
  DISPID id = DISPID_UNKNOWN;
  if (const ComPtr<IDispatchEx> extended = Extended(object)) {
    const BSTR text = SysAllocString(name);
    const HRESULT known = extended->GetDispID(text, fdexNameCaseInsensitive, &id);
    SysFreeString(text);
    return SUCCEEDED(known) ? id : DISPID_UNKNOWN;
  }
  auto* wanted = const_cast<LPOLESTR>(name);
  const HRESULT found = object.GetIDsOfNames(IID_NULL, &wanted, 1, LOCALE_USER_DEFAULT, &id);
  return SUCCEEDED(found) ? id : DISPID_UNKNOWN;
}

[[noreturn]] void RaiseFrom(HRESULT result, EXCEPINFO& raised, const wchar_t* name) {
  if (raised.pfnDeferredFillIn != nullptr) raised.pfnDeferredFillIn(&raised);
  std::string what = Utf8(name);
  if (raised.bstrDescription != nullptr) what += ": " + Utf8(raised.bstrDescription);
  int number = raised.wCode;
  if (number == 0 && (static_cast<DWORD>(raised.scode) & 0xFFFF0000) == kFirstFault)
    number = raised.scode & 0xFFFF;
  SysFreeString(raised.bstrSource);
  SysFreeString(raised.bstrDescription);
  SysFreeString(raised.bstrHelpFile);
  if (number != 0) throw RunTimeError(static_cast<Fault>(number), what);
  const bool mismatch = result == DISP_E_TYPEMISMATCH || result == DISP_E_BADPARAMCOUNT ||
                        result == DISP_E_PARAMNOTOPTIONAL || result == DISP_E_OVERFLOW;
  const bool missing = result == DISP_E_MEMBERNOTFOUND || result == DISP_E_UNKNOWNNAME;
  throw RunTimeError(mismatch  ? Fault::TypeMismatch
                     : missing ? Fault::MemberNotOffered
                               : Fault::InvalidCall,
                     what);
}

/// Calls the member with arguments in their order.
void Invoke(IDispatch& object, const wchar_t* name, WORD kind, std::span<const VARIANT> args,
            VARIANT* result) {
  const DISPID id = IdOf(object, name);
  if (id == DISPID_UNKNOWN) {
    throw RunTimeError(Fault::MemberNotOffered, Utf8(name) + " of the printer object");
  }
  std::vector<VARIANT> reversed(args.rbegin(), args.rend());
  DISPID put = DISPID_PROPERTYPUT;
  const bool puts = (kind & DISPATCH_PROPERTYPUT) != 0;
  DISPPARAMS params{reversed.data(), puts ? &put : nullptr, static_cast<UINT>(reversed.size()),
                    puts ? 1U : 0U};
  EXCEPINFO raised{};
  const ComPtr<IDispatchEx> extended = Extended(object);
  const HRESULT called = extended ? extended->InvokeEx(id, LOCALE_USER_DEFAULT, kind, &params,
                                                       result, &raised, nullptr)
                                  : object.Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, kind, &params,
                                                  result, &raised, nullptr);
  if (FAILED(called)) RaiseFrom(called, raised, name);
}

VARIANT Number(float value) {
  VARIANT number{};
  number.vt = VT_R4;
  number.fltVal = value;
  return number;
}

VARIANT Number(std::int32_t value) {
  VARIANT number{};
  number.vt = VT_I4;
  number.lVal = value;
  return number;
}

VARIANT Missing() {
  VARIANT missing{};
  missing.vt = VT_ERROR;
  missing.scode = DISP_E_PARAMNOTFOUND;
  return missing;
}

template <class T>
VARIANT OrMissing(const std::optional<T>& value) {
  if (!value) return Missing();
  if constexpr (std::is_same_v<T, Colour>)
    return Number(static_cast<std::int32_t>(*value));
  else
    return Number(*value);
}

/// A text for the time of a call.
class TextArgument {
 public:
  explicit TextArgument(std::string_view utf8) {
    const std::wstring wide = Wide(utf8);
    text_.bstrVal = SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size()));
    text_.vt = VT_BSTR;
  }
  operator const VARIANT&() const { return text_; }

 private:
  OwnedVariant text_;
};

void Put(IDispatch& object, const wchar_t* name, const VARIANT& value) {
  Invoke(object, name, DISPATCH_PROPERTYPUT, {&value, 1}, nullptr);
}

void Call(IDispatch& object, const wchar_t* name, std::span<const VARIANT> args) {
  OwnedVariant unused;
  Invoke(object, name, DISPATCH_METHOD, args, &unused);
}

float NumberFrom(IDispatch& object, const wchar_t* name, std::span<const VARIANT> args) {
  OwnedVariant result;
  Invoke(object, name, DISPATCH_METHOD | DISPATCH_PROPERTYGET, args, &result);
  return FromCaller(result, Type::Float, LOCALE_USER_DEFAULT, {}).AsFloat();
}

ComPtr<IDispatch> FontOf(IDispatch& object) {
  OwnedVariant font;
  Invoke(object, L"Font", DISPATCH_PROPERTYGET, {}, &font);
  ComPtr<IDispatch> dispatch;
  if ((font.vt != VT_DISPATCH && font.vt != VT_UNKNOWN) || font.punkVal == nullptr ||
      FAILED(font.punkVal->QueryInterface(IID_PPV_ARGS(&dispatch)))) {
    throw RunTimeError(Fault::ObjectNotSet, "Font of the printer object");
  }
  return dispatch;
}

/// What an object says that knows no such member, or one with other arguments.
bool IsOtherForm(Fault fault) {
  constexpr auto kArgumentNotOptional = static_cast<Fault>(449);
  constexpr auto kWrongNumberOfArguments = static_cast<Fault>(450);
  constexpr std::array kFaults = {Fault::TypeMismatch, Fault::Overflow, Fault::MemberNotOffered,
                                  kArgumentNotOptional, kWrongNumberOfArguments};
  return std::find(kFaults.begin(), kFaults.end(), fault) != kFaults.end();
}

}  // namespace

bool CallerObject::Offers(const wchar_t* name) const {
  return IdOf(*object_.Get(), name) != DISPID_UNKNOWN;
}

HDC CallerObject::Device() const {
  OwnedVariant handle;
  Invoke(*object_.Get(), L"hdc", DISPATCH_PROPERTYGET, {}, &handle);
  OwnedVariant number;
  if (FAILED(VariantChangeType(&number, &handle, 0, VT_I8))) {
    throw RunTimeError(Fault::TypeMismatch, "hdc of the printer object");
  }
  return reinterpret_cast<HDC>(static_cast<INT_PTR>(number.llVal));
}

HDC CallerObject::DeviceOrNone() const try { return Device(); } catch (const RunTimeError&) {
  return nullptr;
}

void CallerObject::Cls() { Call(*object_.Get(), L"Cls", {}); }

void CallerObject::Refresh() { Call(*object_.Get(), L"Refresh", {}); }

/// Calls the member in the form of here. Objects of Basic, such as its printers, count the
/// arguments of `Line` and `Circle` otherwise, and let nobody else call `Print`; they are drawn on
/// by their device. What has taken one call raises its own errors from there on.
template <class Draw>
void CallerObject::CallOrDraw(Operation which, const wchar_t* name, std::span<const VARIANT> args,
                              const Draw& draw) {
  Manner& manner = manners_[static_cast<std::size_t>(which)];
  if (manner != Manner::Device) {
    try {
      Call(*object_.Get(), name, args);
      manner = Manner::Own;
      return;
    } catch (const RunTimeError& error) {
      if (manner == Manner::Own || !IsOtherForm(error.fault()) || DeviceOrNone() == nullptr) throw;
      manner = Manner::Device;
    }
  }
  const bool twips = ScaleMode() == kTwips;
  const bool printer = twips && IsPrinter();
  draw(Device(), twips ? DeviceScale{1 / static_cast<double>(printer ? TwipsPerPixelX()
                                                                     : screen_.twips_per_pixel_x),
                                     1 / static_cast<double>(printer ? TwipsPerPixelY()
                                                                     : screen_.twips_per_pixel_y)}
                       : DeviceScale{});
}

void CallerObject::DrawLine(const LineCall& call) {
  constexpr std::array kShapes = {"line", "box", "filled"};
  LineCall whole = call;
  whole.from = call.from.value_or(state_.current);
  const TextArgument shape(kShapes[static_cast<std::size_t>(call.shape)]);
  CallOrDraw(Operation::Line, L"Line",
             std::array<VARIANT, 6>{Number(whole.from->x), Number(whole.from->y), Number(call.to.x),
                                    Number(call.to.y), OrMissing(call.colour), shape},
             [&](HDC device, DeviceScale scale) { LineOn(device, *this, scale, whole); });
}

void CallerObject::Circle(const CircleCall& call) {
  CallOrDraw(
      Operation::Circle, L"Circle",
      std::array<VARIANT, 7>{Number(call.centre.x), Number(call.centre.y), Number(call.radius),
                             OrMissing(call.colour), OrMissing(call.start), OrMissing(call.end),
                             OrMissing(call.aspect)},
      [&](HDC device, DeviceScale scale) { CircleOn(device, *this, scale, call); });
}

void CallerObject::Print(std::string_view text) {
  const TextArgument argument(text);
  CallOrDraw(Operation::Print, L"Print", std::array<VARIANT, 1>{argument},
             [&](HDC device, DeviceScale scale) { TextOn(device, *this, scale, text); });
}

void CallerObject::Polygon(std::span<const PixelPoint> points) {
  if (const HDC device = Device()) return PolygonOn(device, *this, points);
  std::vector<VARIANT> corners;
  for (const PixelPoint& point : points) {
    corners.push_back(Number(point.x));
    corners.push_back(Number(point.y));
  }
  SAFEARRAYBOUND bound{static_cast<ULONG>(corners.size()), 0};
  OwnedVariant list;
  list.parray = SafeArrayCreate(VT_VARIANT, 1, &bound);
  if (list.parray == nullptr) throw std::bad_alloc();
  list.vt = VT_ARRAY | VT_VARIANT;
  std::copy(corners.begin(), corners.end(), static_cast<VARIANT*>(list.parray->pvData));
  const VARIANT& argument = list;
  Call(*object_.Get(), L"Polygon", {&argument, 1});
}

void CallerObject::FloodFill(PixelPoint start, Colour boundary) {
  if (const HDC device = Device()) return FloodFillOn(device, *this, start, boundary);
  Call(*object_.Get(), L"FloodFill",
       std::array<VARIANT, 3>{Number(start.x), Number(start.y),
                              Number(static_cast<std::int32_t>(boundary))});
}

float CallerObject::TextWidth(std::string_view text) const {
  const TextArgument argument(text);
  return NumberFrom(*object_.Get(), L"TextWidth", std::array<VARIANT, 1>{argument});
}

float CallerObject::TextHeight(std::string_view text) const {
  const TextArgument argument(text);
  return NumberFrom(*object_.Get(), L"TextHeight", std::array<VARIANT, 1>{argument});
}

float CallerObject::TwipsPerPixelX() const {
  return NumberFrom(*object_.Get(), L"TwipsPerPixelX", {});
}

float CallerObject::TwipsPerPixelY() const {
  return NumberFrom(*object_.Get(), L"TwipsPerPixelY", {});
}

void CallerObject::StateWritten(SurfaceState which) {
  IDispatch& object = *object_.Get();
  const auto colour = [](Colour value) { return Number(static_cast<std::int32_t>(value)); };
  const auto whole = [](std::int32_t value) { return Number(value); };
  switch (which) {
    case SurfaceState::ForeColor:
      return Put(object, L"ForeColor", colour(state_.fore_color));
    case SurfaceState::BackColor:
      return Put(object, L"BackColor", colour(state_.back_color));
    case SurfaceState::FillColor:
      return Put(object, L"FillColor", colour(state_.fill_color));
    case SurfaceState::FillStyle:
      return Put(object, L"FillStyle", whole(state_.fill_style));
    case SurfaceState::DrawStyle:
      return Put(object, L"DrawStyle", whole(state_.draw_style));
    case SurfaceState::DrawWidth:
      return Put(object, L"DrawWidth", whole(state_.draw_width));
    case SurfaceState::CurrentX:
      return Put(object, L"CurrentX", Number(state_.current.x));
    case SurfaceState::CurrentY:
      return Put(object, L"CurrentY", Number(state_.current.y));
    case SurfaceState::FontTransparent:
      return Put(object, L"FontTransparent", whole(state_.font_transparent ? -1 : 0));
    case SurfaceState::ScaleMode:
      return Put(object, L"ScaleMode", whole(state_.scale_mode));
    case SurfaceState::ScaleLeft:
      return Put(object, L"ScaleLeft", Number(state_.scale_left));
    case SurfaceState::ScaleTop:
      return Put(object, L"ScaleTop", Number(state_.scale_top));
    case SurfaceState::ScaleWidth:
      return Put(object, L"ScaleWidth", Number(state_.scale_width));
    case SurfaceState::ScaleHeight:
      return Put(object, L"ScaleHeight", Number(state_.scale_height));
    case SurfaceState::Width:
      return Put(object, L"Width", Number(state_.width));
    case SurfaceState::Height:
      return Put(object, L"Height", Number(state_.height));
    case SurfaceState::FontName:
      return Put(*FontOf(object).Get(), L"Name", TextArgument(state_.font.name));
    case SurfaceState::FontSize:
      return Put(*FontOf(object).Get(), L"Size", Number(state_.font.size));
    case SurfaceState::FontBold:
      return Put(*FontOf(object).Get(), L"Bold", whole(state_.font.bold ? -1 : 0));
    case SurfaceState::FontUnderline:
      return Put(*FontOf(object).Get(), L"Underline", whole(state_.font.underline ? -1 : 0));
    case SurfaceState::Font: {
      const ComPtr<IDispatch> font = FontOf(object);
      Put(*font.Get(), L"Name", TextArgument(state_.font.name));
      Put(*font.Get(), L"Size", Number(state_.font.size));
      Put(*font.Get(), L"Bold", whole(state_.font.bold ? -1 : 0));
      return Put(*font.Get(), L"Underline", whole(state_.font.underline ? -1 : 0));
    }
  }
}

}  // namespace discoplan::activex
