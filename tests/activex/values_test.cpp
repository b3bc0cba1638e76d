// SPDX-License-Identifier: MIT
// Arguments and results in all the forms that callers have for them, and errors.

#include <algorithm>

#include "discoplan/controls/control_class.h"
#include "tests/activex/container.h"

namespace discoplan::activex {
namespace {

VARIANT ReferenceTo(void* variable, VARTYPE type) {
  VARIANT variant{};
  variant.vt = static_cast<VARTYPE>(type | VT_BYREF);
  variant.byref = variable;
  return variant;
}

TEST(Values, AreTakenByReferenceFromAnyType) {
  const ComPtr<IDispatch> plot = NewPlot(L"Plot2D");
  BYTE ui1 = 101;
  CHAR i1 = 102;
  SHORT i2 = 103;
  USHORT ui2 = 104;
  LONG i4 = 105;
  ULONG ui4 = 106;
  LONGLONG i8 = 107;
  ULONGLONG ui8 = 108;
  INT whole = 109;
  UINT natural = 110;
  FLOAT r4 = 111.5F;
  DOUBLE r8 = 112.25;
  CY currency{};
  currency.int64 = 1135000;
  DATE date = 114;
  DECIMAL decimal{};
  VarDecFromR8(115.75, &decimal);
  BSTR text = SysAllocString(L"116");
  VARIANT inner = Of(117.5);
  VARIANT inner_text{};
  inner_text.vt = VT_BSTR;
  inner_text.bstrVal = text;
  VARIANT inner_reference = Of(r4);
  const struct {
    VARTYPE type;
    void* variable;
    double due;
  } cases[] = {{VT_UI1, &ui1, 101},
               {VT_I1, &i1, 102},
               {VT_I2, &i2, 103},
               {VT_UI2, &ui2, 104},
               {VT_I4, &i4, 105},
               {VT_UI4, &ui4, 106},
               {VT_I8, &i8, 107},
               {VT_UI8, &ui8, 108},
               {VT_INT, &whole, 109},
               {VT_UINT, &natural, 110},
               {VT_R4, &r4, 111.5},
               {VT_R8, &r8, 112.25},
               {VT_CY, &currency, 113.5},
               {VT_DATE, &date, 114},
               {VT_DECIMAL, &decimal, 115.75},
               {VT_BSTR, &text, 116},
               {VT_VARIANT, &inner, 117.5},
               {VT_VARIANT, &inner_text, 116},
               {VT_VARIANT, &inner_reference, 111.5}};
  for (const auto& [type, variable, due] : cases) {
    const Outcome outcome =
        Invoke(*plot.Get(), L"TestDiameter", DISPATCH_PROPERTYPUT, {ReferenceTo(variable, type)});
    EXPECT_EQ(S_OK, outcome.result) << type;
    EXPECT_EQ(due, Get(*plot.Get(), L"TestDiameter")) << type;
  }
  SysFreeString(text);
  VARIANT_BOOL yes = VARIANT_TRUE;
  EXPECT_EQ(S_OK,
            Invoke(*plot.Get(), L"HideLegend", DISPATCH_PROPERTYPUT, {ReferenceTo(&yes, VT_BOOL)})
                .result);
  EXPECT_EQ(-1, Get(*plot.Get(), L"HideLegend"));
}

TEST(Values, AreMissedWhereAReferenceLeadsNowhere) {
  const ComPtr<IDispatch> plot = NewPlot(L"Plot2D");
  VARIANT nothing{};
  nothing.vt = VT_NULL;
  VARIANT left_out{};
  left_out.vt = VT_ERROR;
  left_out.scode = DISP_E_PARAMNOTFOUND;
  VARIANT inner = ReferenceTo(&nothing, VT_VARIANT);
  for (const VARIANT& value : {ReferenceTo(nullptr, VT_R4), ReferenceTo(nullptr, VT_VARIANT),
                               ReferenceTo(nullptr, VT_BSTR), ReferenceTo(&inner, VT_VARIANT),
                               ReferenceTo(&nothing, VT_VARIANT), nothing, left_out}) {
    const Outcome outcome = Invoke(*plot.Get(), L"TestDiameter", DISPATCH_PROPERTYPUT, {value});
    EXPECT_EQ(13, outcome.error) << value.vt;
    EXPECT_EQ(194, Get(*plot.Get(), L"TestDiameter"));
  }
}

TEST(Values, ComeAsTheirMembersType) {
  const ComPtr<IDispatch> plot = NewPlot(L"Plot2D");
  const struct {
    const wchar_t* name;
    WORD kind;
    VARTYPE type;
  } cases[] = {{L"TestDiameter", DISPATCH_PROPERTYGET, VT_R4},
               {L"mean", DISPATCH_PROPERTYGET, VT_R4},
               {L"WaferStyle", DISPATCH_PROPERTYGET, VT_I4},
               {L"BackColor", DISPATCH_PROPERTYGET, VT_I4},
               {L"HideLegend", DISPATCH_PROPERTYGET, VT_BOOL},
               {L"MousePointer", DISPATCH_PROPERTYGET, VT_I2},
               {L"PlotCaption", DISPATCH_PROPERTYGET, VT_BSTR},
               {L"PrinterObj", DISPATCH_PROPERTYGET, VT_DISPATCH},
               {L"ShowPlotOption", DISPATCH_PROPERTYGET, VT_EMPTY},
               {L"Plot", DISPATCH_METHOD | DISPATCH_PROPERTYGET, VT_I2}};
  for (const auto& [name, kind, type] : cases) {
    EXPECT_EQ(type, Invoke(*plot.Get(), name, kind).type) << Utf8(name);
  }
}

TEST(Values, OfArraysComeInTheTypeOfTheCallersVariable) {
  const ComPtr<IDispatch> plot = NewPlot(L"Plot3D");
  Singles x(-3, {0, 10, 20, -30}), y(-3, {0, 5, -20, 30}), z(-3, {1, 2, 3, 4});
  EXPECT_EQ(
      0, Call(*plot.Get(), L"SetWaferData", {x.ByReference(), y.ByReference(), z.ByReference()}));
  EXPECT_EQ(2.5, Get(*plot.Get(), L"mean"));
  Singles gx(0, {}), gy(7, {1, 2}), gz(0, {});
  EXPECT_EQ(4, Call(*plot.Get(), L"GetWaferData",
                    {gx.ByReference(), gy.ByReference(), gz.ByReference()}));
  EXPECT_EQ((std::vector<float>{0, 10, 20, -30}), gx.Values());
  EXPECT_EQ((std::vector<float>{0, 5, -20, 30}), gy.Values());
  EXPECT_EQ(1, gy.Lower());
  EXPECT_EQ(VT_R4, gz.Type());
}

TEST(Values, AreTakenFromArraysOfAnyNumbers) {
  const ComPtr<IDispatch> plot = NewPlot(L"Plot2D");
  for (const VARTYPE type : {VT_I2, VT_I4, VT_R4, VT_R8, VT_VARIANT, VT_UI1}) {
    SAFEARRAYBOUND bound{3, 5};
    VARIANT array{};
    array.vt = static_cast<VARTYPE>(VT_ARRAY | type);
    array.parray = SafeArrayCreate(type, 1, &bound);
    for (LONG i = 5; i < 8; ++i) {
      VARIANT number = Of(static_cast<double>(3 * i));
      ASSERT_EQ(S_OK, VariantChangeType(&number, &number, 0,
                                        static_cast<VARTYPE>(type == VT_VARIANT ? +VT_I4 : +type)));
      void* element = type == VT_VARIANT ? static_cast<void*>(&number) : &number.bVal;
      ASSERT_EQ(S_OK, SafeArrayPutElement(array.parray, &i, element));
    }
    EXPECT_EQ(0, Call(*plot.Get(), L"SetWaferData", {array, array, array})) << type;
    EXPECT_EQ(18, Get(*plot.Get(), L"mean")) << type;
    EXPECT_EQ(0, Call(*plot.Get(), L"SetWaferData_Variant", {array, array, array})) << type;
    EXPECT_EQ(15, Get(*plot.Get(), L"Minimum")) << type;
    SafeArrayDestroy(array.parray);
  }
}

SAFEARRAY* Doubles(LONG lower, const std::vector<double>& values) {
  SAFEARRAYBOUND bound{static_cast<ULONG>(values.size()), lower};
  SAFEARRAY* array = SafeArrayCreate(VT_R8, 1, &bound);
  std::copy(values.begin(), values.end(), static_cast<double*>(array->pvData));
  return array;
}

TEST(Values, OfDoublesAreTakenByReferenceAndNotGivenBack) {
  const ComPtr<IDispatch> plot = NewPlot(L"Plot2D");
  SAFEARRAY* places = Doubles(-5, {0, 40, -40});
  SAFEARRAY* values = Doubles(-5, {1, 2, 6});
  const VARIANT xy = ReferenceTo(&places, VT_ARRAY | VT_R8);
  const VARIANT z = ReferenceTo(&values, VT_ARRAY | VT_R8);
  EXPECT_EQ(0, Call(*plot.Get(), L"SetWaferData", {xy, xy, z}));
  EXPECT_EQ(3, Get(*plot.Get(), L"mean"));
  const Outcome given = Invoke(*plot.Get(), L"GetWaferData", DISPATCH_METHOD, {xy, xy, z});
  EXPECT_EQ(13, given.error);
  EXPECT_NE(std::string::npos, given.words.find("none of singles")) << given.words;
  EXPECT_EQ(40, static_cast<double*>(places->pvData)[1]);
  SafeArrayDestroy(places);
  SafeArrayDestroy(values);
}

TEST(Values, AreNotGivenIntoAnArrayThatIsHeld) {
  const ComPtr<IDispatch> plot = NewPlot(L"Plot2D");
  Load(*plot.Get());
  Singles x(1, {7}), y(1, {7}), z(1, {7});
  SAFEARRAY* held = *x.ByReference().pparray;
  SafeArrayLock(held);
  const Outcome given = Invoke(*plot.Get(), L"GetWaferData", DISPATCH_METHOD,
                               {x.ByReference(), y.ByReference(), z.ByReference()});
  EXPECT_EQ(10, given.error);
  EXPECT_NE(std::string::npos, given.words.find("fixed or locked")) << given.words;
  EXPECT_EQ((std::vector<float>{7}), x.Values());
  SafeArrayUnlock(held);
}

TEST(Values, OfTwoDimensionsAreRefusedWithWords) {
  const ComPtr<IDispatch> plot = NewPlot(L"Plot3DS");
  SAFEARRAYBOUND bounds[2] = {{2, 0}, {2, 0}};
  VARIANT square{};
  square.vt = VT_ARRAY | VT_R4;
  square.parray = SafeArrayCreate(VT_R4, 2, bounds);
  const Outcome taken =
      Invoke(*plot.Get(), L"SetWaferData", DISPATCH_METHOD, {square, square, square});
  EXPECT_EQ(13, taken.error);
  EXPECT_NE(std::string::npos, taken.words.find("one dimension")) << taken.words;
  SafeArrayDestroy(square.parray);
}

TEST(Names, AreKnownInAnyCase) {
  for (const ControlClass* row : ControlClasses()) {
    const ComPtr<IDispatch> plot = NewPlot(Wide(row->name).c_str());
    for (const Member& member : row->members) {
      for (const auto change : {&towlower, &towupper}) {
        std::vector<std::wstring> names = {Wide(member.name)};
        for (const Parameter& parameter : member.parameters) names.push_back(Wide(parameter.name));
        std::vector<LPOLESTR> wanted;
        for (std::wstring& name : names) {
          std::transform(name.begin(), name.end(), name.begin(),
                         [&](wchar_t c) { return static_cast<wchar_t>(change(c)); });
          wanted.push_back(name.data());
        }
        std::vector<DISPID> ids(names.size(), -99);
        EXPECT_EQ(S_OK, plot->GetIDsOfNames(IID_NULL, wanted.data(), static_cast<UINT>(ids.size()),
                                            LOCALE_INVARIANT, ids.data()));
        EXPECT_EQ(member.id, ids[0]) << member.name;
        for (std::size_t i = 1; i < ids.size(); ++i) EXPECT_EQ(static_cast<DISPID>(i) - 1, ids[i]);
      }
    }
  }
}

TEST(Printer, IsNothingAgainInAnyLanguage) {
  const ComPtr<IDispatch> plot = NewPlot(L"Plot2D");
  VARIANT null{};
  null.vt = VT_NULL;
  for (const VARIANT& nothing : {VARIANT{}, null, Of(nullptr)}) {
    ASSERT_EQ(S_OK,
              Invoke(*plot.Get(), L"PrinterObj", DISPATCH_PROPERTYPUTREF, {Of(plot.Get())}).result);
    EXPECT_EQ(S_OK, Invoke(*plot.Get(), L"PrinterObj", DISPATCH_PROPERTYPUT, {nothing}).result);
    DISPPARAMS none{};
    OwnedVariant printer;
    ASSERT_EQ(S_OK, plot->Invoke(1, IID_NULL, LOCALE_INVARIANT, DISPATCH_PROPERTYGET, &none,
                                 &printer, nullptr, nullptr));
    EXPECT_EQ(VT_DISPATCH, printer.vt);
    EXPECT_EQ(nullptr, printer.pdispVal);
  }
}

TEST(Errors, HaveTheirNumbers) {
  const ComPtr<IDispatch> plot = NewPlot(L"Histo");
  VARIANT text{};
  text.vt = VT_BSTR;
  text.bstrVal = SysAllocString(L"wide");
  EXPECT_EQ(13, Invoke(*plot.Get(), L"TestDiameter", DISPATCH_PROPERTYPUT, {text}).error);
  EXPECT_EQ(6, Invoke(*plot.Get(), L"MousePointer", DISPATCH_PROPERTYPUT, {Of(40000.0)}).error);
  SysFreeString(text.bstrVal);
  EXPECT_EQ(DISP_E_BADPARAMCOUNT, Invoke(*plot.Get(), L"Plot", DISPATCH_METHOD, {Of(1.0)}).result);
  EXPECT_EQ(DISP_E_MEMBERNOTFOUND,
            Invoke(*plot.Get(), L"mean", DISPATCH_PROPERTYPUT, {Of(1.0)}).result);
}

TEST(Errors, HaveTheSystemsWordsAndTellWhoRaisedThem) {
  const ComPtr<IDispatch> plot = NewPlot(L"Histo");
  Load(*plot.Get());
  EventSink no_printer;  // which knows no names
  Invoke(*plot.Get(), L"PrinterObj", DISPATCH_PROPERTYPUTREF, {Of(&no_printer)});
  VARIANT text{};
  text.vt = VT_BSTR;
  text.bstrVal = SysAllocString(L"wide");
  const struct {
    Outcome outcome;
    SCODE code;
    const char* words;
  } cases[] = {{Invoke(*plot.Get(), L"TestDiameter", DISPATCH_PROPERTYPUT, {text}),
                static_cast<SCODE>(0x800A000D), "Type mismatch"},
               {Invoke(*plot.Get(), L"MousePointer", DISPATCH_PROPERTYPUT, {Of(40000.0)}),
                static_cast<SCODE>(0x800A0006), "Overflow"},
               {Invoke(*plot.Get(), L"PrintWaferSize", DISPATCH_METHOD, {Of(0.0), Of(0.0)}),
                static_cast<SCODE>(0x800A01B6), "Object doesn't support this property or method"}};
  for (const auto& [outcome, code, words] : cases) {
    EXPECT_EQ(DISP_E_EXCEPTION, outcome.result);
    EXPECT_EQ(code, outcome.code);
    EXPECT_EQ(0U, outcome.words.find(words)) << outcome.words;
    EXPECT_EQ("Discoplan.Histo", outcome.source);
  }
  SysFreeString(text.bstrVal);
  Invoke(*plot.Get(), L"PrinterObj", DISPATCH_PROPERTYPUTREF, {Of(nullptr)});
  EXPECT_EQ(0U, no_printer.references);
}

}  // namespace
}  // namespace discoplan::activex
