// SPDX-License-Identifier: MIT
// Printers of two forms: one with the members as the controls have them, and one as Basic's own
// printer is, whose Line and Circle count their arguments otherwise and whose Print nobody else may
// call. What goes to the latter's device must be what the former is told.

#include <array>
#include <cmath>
#include <map>

#include "tests/activex/container.h"

namespace discoplan::activex {
namespace {

constexpr float kTwipsPerPixel = 2.4F;
using Calls = std::vector<std::string>;

/// A sheet that any caller might have written: values by name, a font, and a text's size.
class Paper : public IDispatch {
 public:
  Paper() {
    FONTDESC about{};
    about.cbSizeofstruct = sizeof about;
    about.lpstrName = const_cast<LPOLESTR>(L"Arial");
    about.cySize.int64 = 80000;
    EXPECT_EQ(S_OK, OleCreateFontIndirect(&about, IID_IDispatch,
                                          reinterpret_cast<void**>(font.GetAddressOf())));
  }
  virtual ~Paper() = default;

  STDMETHODIMP QueryInterface(REFIID id, void** out) override {
    const bool own = id == IID_IUnknown || id == IID_IDispatch;
    *out = own ? this : nullptr;
    return own ? S_OK : E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return 2; }
  STDMETHODIMP_(ULONG) Release() override { return 1; }
  STDMETHODIMP GetTypeInfoCount(UINT* count) override { return *count = 0, S_OK; }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* id) override {
    if (!Offers(names[0])) return *id = DISPID_UNKNOWN, DISP_E_UNKNOWNNAME;
    known_.push_back(names[0]);
    return *id = static_cast<DISPID>(known_.size()), S_OK;
  }
  STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD kind, DISPPARAMS* params, VARIANT* result,
                      EXCEPINFO*, UINT*) override {
    const std::wstring name = known_.at(static_cast<std::size_t>(id - 1));
    const std::vector<VARIANT> args(std::reverse_iterator(params->rgvarg + params->cArgs),
                                    std::reverse_iterator(params->rgvarg));
    if ((kind & DISPATCH_PROPERTYPUT) != 0) return values[name] = NumberIn(args.at(0)), S_OK;
    const double unit = values[L"ScaleMode"] == 1 ? static_cast<double>(kTwipsPerPixel) : 1;
    if (name == L"Font") return *result = Of(ComPtr<IDispatch>(font).Detach()), S_OK;
    if (name == L"TextWidth") {
      return *result = Of(6 * unit * SysStringLen(args.at(0).bstrVal)), S_OK;
    }
    if (name == L"TextHeight") return *result = Of(13 * unit), S_OK;
    if (name.starts_with(L"TwipsPerPixel")) return *result = Of(+kTwipsPerPixel), S_OK;
    if (name == L"hdc") {
      result->vt = VT_I4;
      result->lVal = static_cast<LONG>(reinterpret_cast<INT_PTR>(device));
      return S_OK;
    }
    return Draw(name, args);
  }

  std::map<std::wstring, double> values;
  ComPtr<IDispatch> font;
  HDC device = nullptr;

 protected:
  virtual bool Offers(const std::wstring& name) { return name != L"BackColor"; }
  virtual HRESULT Draw(const std::wstring& name, const std::vector<VARIANT>& args) = 0;

  static double NumberIn(const VARIANT& value) {
    OwnedVariant number;
    EXPECT_EQ(S_OK, VariantChangeType(&number, const_cast<VARIANT*>(&value), 0, VT_R8));
    return number.dblVal;
  }

 private:
  std::vector<std::wstring> known_;
};

std::string Text(std::initializer_list<long> numbers) {
  std::string text;
  for (const long number : numbers) text += ' ' + std::to_string(number);
  return text;
}

/// Notes its calls in pixels.
class Sheet final : public Paper {
 public:
  Calls calls;

 private:
  long Pixel(double place) {
    return std::lrint(values[L"ScaleMode"] == 1 ? place / static_cast<double>(kTwipsPerPixel)
                                                : place);
  }
  long Pixel(const VARIANT& place) { return Pixel(NumberIn(place)); }

  HRESULT Draw(const std::wstring& name, const std::vector<VARIANT>& args) override {
    if (name == L"Line") {
      const std::wstring shape = args.at(5).bstrVal;
      const std::array at = {Pixel(args[0]), Pixel(args[1]), Pixel(args[2]), Pixel(args[3])};
      if (shape == L"line") {
        calls.push_back("line" + Text({at[0], at[1], at[2], at[3]}));
      } else {
        calls.push_back("box" + Text({std::min(at[0], at[2]), std::min(at[1], at[3]),
                                      std::max(at[0], at[2]), std::max(at[1], at[3])}));
      }
    } else if (name == L"Circle") {
      EXPECT_EQ(7U, args.size());
      const double aspect = args[6].vt == VT_ERROR ? 1 : NumberIn(args[6]);
      const long across = Pixel(args[2]);
      const long down = Pixel(NumberIn(args[2]) * aspect);
      const long x = Pixel(args[0]);
      const long y = Pixel(args[1]);
      calls.push_back((args[4].vt == VT_ERROR ? "circle" : "arc") +
                      Text({x - across, y - down, x + across, y + down}));
    } else if (name == L"Print") {
      if (std::wstring(args.at(0).bstrVal).empty()) return S_OK;
      CY size{};
      As<IFont>(font)->get_Size(&size);
      const bool symbol = size.int64 == 140000;
      const std::wstring text = symbol ? L"\u03C3" : args[0].bstrVal;
      calls.push_back("text" + Text({Pixel(values[L"CurrentX"]), Pixel(values[L"CurrentY"])}) +
                      ' ' + Utf8(text));
    } else if (name == L"Polygon") {
      SAFEARRAY* corners = args.at(0).parray;
      std::string call = "polygon";
      for (ULONG i = 0; i < corners->rgsabound[0].cElements; ++i) {
        call += Text({static_cast<long>(NumberIn(static_cast<VARIANT*>(corners->pvData)[i]))});
      }
      calls.push_back(call);
    }
    return S_OK;
  }
};

/// As Basic's own printer: what isn't of the declared types is a mismatch.
class BasicPrinter final : public Paper {
 public:
  BasicPrinter() {
    device = CreateEnhMetaFileW(nullptr, nullptr, nullptr, nullptr);
    EXPECT_NE(nullptr, device);
  }
  /// What its device was told.
  Calls Told() {
    const HENHMETAFILE file = CloseEnhMetaFile(std::exchange(device, nullptr));
    Calls told;
    EnumEnhMetaFile(nullptr, file, &Record, &told, nullptr);
    DeleteEnhMetaFile(file);
    return told;
  }

 private:
  bool Offers(const std::wstring& name) override {
    return name != L"Print" && name != L"Polygon" && name != L"FloodFill" && Paper::Offers(name);
  }
  HRESULT Draw(const std::wstring& name, const std::vector<VARIANT>& args) override {
    const std::vector<VARTYPE> declared =
        name == L"Line"
            ? std::vector<VARTYPE>{VT_I2, VT_R4, VT_R4, VT_R4, VT_R4, VT_I4}
            : std::vector<VARTYPE>{VT_I2, VT_R4, VT_R4, VT_R4, VT_I4, VT_R4, VT_R4, VT_R4};
    if (args.size() != declared.size()) return DISP_E_BADPARAMCOUNT;
    for (std::size_t i = 0; i < args.size(); ++i) {
      OwnedVariant taken;
      const HRESULT fits =
          VariantChangeType(&taken, const_cast<VARIANT*>(&args[i]), 0, declared[i]);
      if (FAILED(fits)) return fits;
    }
    ADD_FAILURE() << "what the numbers mean to it nobody knows";
    return S_OK;
  }

  static int CALLBACK Record(HDC, HANDLETABLE*, const ENHMETARECORD* record, int, LPARAM l) {
    Calls& told = *reinterpret_cast<Calls*>(l);
    static POINTL from{};
    const auto box = [&](const RECTL& at) { return Text({at.left, at.top, at.right, at.bottom}); };
    switch (record->iType) {
      case EMR_MOVETOEX:
        from = reinterpret_cast<const EMRMOVETOEX*>(record)->ptl;
        break;
      case EMR_LINETO: {
        const POINTL to = reinterpret_cast<const EMRLINETO*>(record)->ptl;
        told.push_back("line" + Text({from.x, from.y, to.x, to.y}));
        break;
      }
      case EMR_RECTANGLE:
        told.push_back("box" + box(reinterpret_cast<const EMRRECTANGLE*>(record)->rclBox));
        break;
      case EMR_ELLIPSE:
        told.push_back("circle" + box(reinterpret_cast<const EMRELLIPSE*>(record)->rclBox));
        break;
      case EMR_ARC:
        told.push_back("arc" + box(reinterpret_cast<const EMRARC*>(record)->rclBox));
        break;
      case EMR_POLYGON16: {
        const auto& polygon = *reinterpret_cast<const EMRPOLYGON16*>(record);
        std::string call = "polygon";
        for (DWORD i = 0; i < polygon.cpts; ++i) {
          call += Text({polygon.apts[i].x, polygon.apts[i].y});
        }
        told.push_back(call);
        break;
      }
      case EMR_EXTTEXTOUTW: {
        const auto& text = *reinterpret_cast<const EMREXTTEXTOUTW*>(record);
        const auto* letters = reinterpret_cast<const wchar_t*>(
            reinterpret_cast<const char*>(record) + text.emrtext.offString);
        told.push_back("text" + Text({text.emrtext.ptlReference.x, text.emrtext.ptlReference.y}) +
                       ' ' + Utf8({letters, text.emrtext.nChars}));
        break;
      }
      default:
        break;
    }
    return 1;
  }
};

void PrintAll(IDispatch& plot, Paper& paper) {
  EXPECT_EQ(S_OK, Invoke(plot, L"PrinterObj", DISPATCH_PROPERTYPUTREF, {Of(&paper)}).result);
  EXPECT_EQ(0, Call(plot, L"PrintPlot", {Of(720.0), Of(900.0), Of(7000.0), Of(5000.0)}));
  VARIANT units{};
  units.vt = VT_BSTR;
  units.bstrVal = SysAllocString(L"nm");
  Call(plot, L"PrintWaferStatistic", {Of(6000.0), Of(12000.0), units});
  SysFreeString(units.bstrVal);
  Call(plot, L"PrintWaferSize", {Of(1440.0), Of(12000.0)});
  EXPECT_EQ(S_OK, Invoke(plot, L"PrinterObj", DISPATCH_PROPERTYPUTREF, {Of(nullptr)}).result);
}

TEST(Printer, OfBasicIsDrawnOnByItsDevice) {
  for (const wchar_t* name : {L"Plot2D", L"Plot2DN", L"Plot3DB", L"LineScan"}) {
    const ComPtr<IDispatch> plot = NewPlot(name);
    if (name == std::wstring(L"Plot2D")) {
      Put(*plot.Get(), L"Resolution", 40);
      Put(*plot.Get(), L"ShowSites", -1);
    }
    Load(*plot.Get());
    Sheet sheet;
    PrintAll(*plot.Get(), sheet);
    BasicPrinter printer;
    PrintAll(*plot.Get(), printer);
    const Calls told = printer.Told();
    EXPECT_GT(sheet.calls.size(), 20U);
    ASSERT_EQ(sheet.calls.size(), told.size()) << Utf8(name);
    for (std::size_t i = 0; i < told.size(); ++i) {
      ASSERT_EQ(sheet.calls[i], told[i]) << Utf8(name) << ", call " << i;
    }
  }
}

/// One that fails on its own account isn't drawn on behind its back.
TEST(Printer, RaisesItsOwnErrors) {
  class Jammed final : public Paper {
   public:
    int lines = 0;

   private:
    HRESULT Draw(const std::wstring& name, const std::vector<VARIANT>&) override {
      return name == L"Line" && ++lines > 3 ? DISP_E_TYPEMISMATCH : S_OK;
    }
  };
  Jammed printer;
  printer.device = CreateCompatibleDC(nullptr);
  const ComPtr<IDispatch> plot = NewPlot(L"Plot2D");
  Load(*plot.Get());
  Invoke(*plot.Get(), L"PrinterObj", DISPATCH_PROPERTYPUTREF, {Of(&printer)});
  EXPECT_EQ(13, Invoke(*plot.Get(), L"PrintWaferSize", DISPATCH_METHOD, {Of(0.0), Of(0.0)}).error);
  EXPECT_EQ(4, printer.lines);
  Invoke(*plot.Get(), L"PrinterObj", DISPATCH_PROPERTYPUTREF, {Of(nullptr)});
  DeleteDC(printer.device);
}

}  // namespace
}  // namespace discoplan::activex
