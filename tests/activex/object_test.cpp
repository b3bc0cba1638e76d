// SPDX-License-Identifier: MIT
// What needs no window: identity, members, stores.

#include <algorithm>
#include <functional>

#include "tests/activex/bag.h"
#include "tests/activex/container.h"

namespace discoplan::activex {
namespace {

TEST(Object, IsOneWhateverInterfaceIsAsked) {
  const GUID ids[] = {IID_IDispatch,
                      IID_IProvideClassInfo2,
                      IID_IPersistStreamInit,
                      IID_IPersistPropertyBag,
                      IID_IPersistStorage,
                      IID_IViewObjectEx,
                      IID_IObjectSafety,
                      IID_IOleObject,
                      IID_IOleControl,
                      IID_IQuickActivate,
                      IID_IRunnableObject,
                      IID_IOleInPlaceObject,
                      IID_IOleInPlaceActiveObject,
                      IID_IConnectionPointContainer,
                      IID_ISpecifyPropertyPages,
                      IID_IPerPropertyBrowsing,
                      IID_IDataObject};
  for (const wchar_t* name : kPlots) {
    const ComPtr<IDispatch> plot = NewPlot(name);
    const auto whole = As<IUnknown>(plot);
    for (const GUID& id : ids) {
      ComPtr<IUnknown> offered;
      ASSERT_EQ(S_OK, plot->QueryInterface(id, reinterpret_cast<void**>(offered.GetAddressOf())));
      EXPECT_EQ(whole.Get(), As<IUnknown>(offered).Get());
    }
    ComPtr<IMalloc> none;
    EXPECT_EQ(E_NOINTERFACE, plot->QueryInterface(IID_PPV_ARGS(&none)));
    EXPECT_EQ(E_POINTER, plot->QueryInterface(IID_IUnknown, nullptr));
  }
}

TEST(Object, TellsItsClassAndItsEvents) {
  const ComPtr<IDispatch> plot = NewPlot(L"Plot2D");
  const auto info = As<IProvideClassInfo2>(plot);
  GUID events{};
  EXPECT_EQ(S_OK, info->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &events));
  ComPtr<ITypeInfo> type;
  ASSERT_EQ(S_OK, info->GetClassInfo(&type));
  TYPEATTR* attributes = nullptr;
  ASSERT_EQ(S_OK, type->GetTypeAttr(&attributes));
  EXPECT_TRUE(attributes->guid == ClassOf(L"Plot2D"));
  EXPECT_EQ(TKIND_COCLASS, attributes->typekind);
  EXPECT_EQ(2, attributes->cImplTypes);
  type->ReleaseTypeAttr(attributes);
  EXPECT_EQ(E_INVALIDARG, info->GetGUID(2, &events));
  EXPECT_EQ(E_POINTER, info->GetGUID(1, nullptr));
}

TEST(Object, AlwaysRuns) {
  const ComPtr<IDispatch> plot = NewPlot(L"Histo");
  const auto running = As<IRunnableObject>(plot);
  EXPECT_EQ(S_OK, running->Run(nullptr));
  EXPECT_TRUE(running->IsRunning());
  EXPECT_EQ(S_OK, running->LockRunning(TRUE, FALSE));
  CLSID id{};
  EXPECT_EQ(S_OK, running->GetRunningClass(&id));
  EXPECT_TRUE(id == ClassOf(L"Histo"));
  EXPECT_EQ(E_POINTER, running->GetRunningClass(nullptr));
}

/// Another object may take it in, and lend it its identity.
TEST(Object, MayBePartOfAnother) {
  class Outer final : public IUnknown {
   public:
    STDMETHODIMP QueryInterface(REFIID id, void** out) override {
      if (id != IID_IUnknown) return inner->QueryInterface(id, out);
      *out = this;
      return AddRef(), S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return ++references; }
    STDMETHODIMP_(ULONG) Release() override { return --references; }
    ComPtr<IUnknown> inner;
    ULONG references = 1;
  } outer;
  ComPtr<IDispatch> refused;
  EXPECT_EQ(CLASS_E_NOAGGREGATION, CoCreateInstance(ClassOf(L"Plot2D"), &outer,
                                                    CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&refused)));
  ASSERT_EQ(S_OK, CoCreateInstance(ClassOf(L"Plot2D"), &outer, CLSCTX_INPROC_SERVER,
                                   IID_PPV_ARGS(&outer.inner)));
  EXPECT_EQ(1U, outer.references);
  {
    ComPtr<IDispatch> plot;
    ASSERT_EQ(S_OK, outer.QueryInterface(IID_PPV_ARGS(&plot)));
    EXPECT_EQ(2U, outer.references);
    EXPECT_EQ(static_cast<IUnknown*>(&outer), As<IUnknown>(plot).Get());
    EXPECT_EQ(static_cast<IUnknown*>(&outer), As<IUnknown>(As<IViewObject2>(plot)).Get());
    Load(*plot.Get());
    EXPECT_EQ(0, Call(*plot.Get(), L"Plot"));
  }
  EXPECT_EQ(1U, outer.references);
}

TEST(Object, TakesNamedArguments) {
  const ComPtr<IDispatch> plot = NewPlot(L"Plot2D");
  Load(*plot.Get());
  LPOLESTR names[] = {const_cast<LPOLESTR>(L"setplotlimit"), const_cast<LPOLESTR>(L"upl"),
                      const_cast<LPOLESTR>(L"LPL")};
  DISPID ids[3];
  ASSERT_EQ(S_OK, plot->GetIDsOfNames(IID_NULL, names, 3, LOCALE_INVARIANT, ids));
  VARIANT limits[] = {Of(20.0), Of(5.0)};
  DISPPARAMS params{limits, &ids[1], 2, 2};
  OwnedVariant result;
  ASSERT_EQ(S_OK, plot->Invoke(ids[0], IID_NULL, LOCALE_INVARIANT, DISPATCH_METHOD, &params,
                               &result, nullptr, nullptr));
  EXPECT_EQ(VT_BOOL, result.vt);
  EXPECT_EQ(VARIANT_TRUE, result.boolVal);  // 5 below 20; in their order it would be false
  DISPPARAMS one{limits, &ids[1], 1, 1};
  EXPECT_EQ(DISP_E_PARAMNOTOPTIONAL,
            plot->Invoke(ids[0], IID_NULL, LOCALE_INVARIANT, DISPATCH_METHOD, &one, nullptr,
                         nullptr, nullptr));
}

TEST(Stores, KeepSettingsInABag) {
  const ComPtr<IDispatch> plot = NewPlot(L"Plot2D");
  Put(*plot.Get(), L"WaferDiameter", 300);
  Put(*plot.Get(), L"TestDiameter", 294);
  Put(*plot.Get(), L"Resolution", 2.5);
  Put(*plot.Get(), L"IntervalColor3", 0x123456);
  const auto from = As<IPersistPropertyBag>(plot);
  EXPECT_EQ(S_OK, As<IPersistStreamInit>(plot)->IsDirty());
  Bag bag;
  ASSERT_EQ(S_OK, from->Save(&bag, TRUE, TRUE));
  EXPECT_EQ(S_FALSE, As<IPersistStreamInit>(plot)->IsDirty());
  EXPECT_EQ(VT_R4, bag.entries[L"2DTESTDM"].vt);  // the property's own type
  EXPECT_EQ(294, bag.entries[L"2DTESTDM"].fltVal);
  EXPECT_EQ(VT_I4, bag.entries[L"2DFLAT"].vt);
  ASSERT_GE(bag.order.size(), 4U);
  EXPECT_EQ(L"2DBackColor", bag.order[0]);
  EXPECT_EQ(L"2DWAFERDM", bag.order[3]);

  const ComPtr<IDispatch> other = NewPlot(L"Plot2D");
  ASSERT_EQ(S_OK, As<IPersistPropertyBag>(other)->Load(&bag, nullptr));
  EXPECT_EQ(300, Get(*other.Get(), L"WaferDiameter"));
  EXPECT_EQ(294, Get(*other.Get(), L"TestDiameter"));
  EXPECT_EQ(2.5, Get(*other.Get(), L"Resolution"));
  EXPECT_EQ(0x123456, Get(*other.Get(), L"IntervalColor3"));
}

TEST(Stores, KeepSettingsAndSizeInAStream) {
  for (const wchar_t* name : kPlots) {
    const ComPtr<IDispatch> plot = NewPlot(name);
    Put(*plot.Get(), L"TestDiameter", 150);
    SIZEL size{12700, 10160};  // 5 by 4 inches
    ASSERT_EQ(S_OK, As<IOleObject>(plot)->SetExtent(DVASPECT_CONTENT, &size));
    ComPtr<IStream> stream;
    ASSERT_EQ(S_OK, CreateStreamOnHGlobal(nullptr, TRUE, &stream));
    ASSERT_EQ(S_OK, As<IPersistStreamInit>(plot)->Save(stream.Get(), TRUE));
    stream->Seek({}, STREAM_SEEK_SET, nullptr);
    const ComPtr<IDispatch> other = NewPlot(name);
    ASSERT_EQ(S_OK, As<IPersistStreamInit>(other)->Load(stream.Get()));
    EXPECT_EQ(150, Get(*other.Get(), L"TestDiameter"));
    SIZEL restored{};
    ASSERT_EQ(S_OK, As<IOleObject>(other)->GetExtent(DVASPECT_CONTENT, &restored));
    EXPECT_EQ(12700, restored.cx);
    EXPECT_EQ(10160, restored.cy);
  }
}

TEST(Stores, RefuseADamagedStreamAndKeepTheSettings) {
  const ComPtr<IDispatch> plot = NewPlot(L"Plot2D");
  Put(*plot.Get(), L"TestDiameter", 150);
  ComPtr<IStream> stream;
  ASSERT_EQ(S_OK, CreateStreamOnHGlobal(nullptr, TRUE, &stream));
  ASSERT_EQ(S_OK, As<IPersistStreamInit>(plot)->Save(stream.Get(), TRUE));
  STATSTG about{};
  stream->Stat(&about, STATFLAG_NONAME);
  Put(*plot.Get(), L"TestDiameter", 120);
  for (ULONGLONG cut = 0; cut < about.cbSize.QuadPart; cut += 7) {
    ULARGE_INTEGER shorter;
    shorter.QuadPart = cut;
    ComPtr<IStream> damaged;
    stream->Clone(&damaged);
    ComPtr<IStream> part;
    ASSERT_EQ(S_OK, CreateStreamOnHGlobal(nullptr, TRUE, &part));
    damaged->Seek({}, STREAM_SEEK_SET, nullptr);
    damaged->CopyTo(part.Get(), shorter, nullptr, nullptr);
    part->Seek({}, STREAM_SEEK_SET, nullptr);
    EXPECT_TRUE(FAILED(As<IPersistStreamInit>(plot)->Load(part.Get()))) << cut;
    ASSERT_EQ(120, Get(*plot.Get(), L"TestDiameter"));
  }
}

TEST(Stores, KeepSettingsInAStorage) {
  ComPtr<ILockBytes> bytes;
  ComPtr<IStorage> storage;
  ASSERT_EQ(S_OK, CreateILockBytesOnHGlobal(nullptr, TRUE, &bytes));
  ASSERT_EQ(S_OK,
            StgCreateDocfileOnILockBytes(
                bytes.Get(), STGM_CREATE | STGM_READWRITE | STGM_SHARE_EXCLUSIVE, 0, &storage));
  const ComPtr<IDispatch> plot = NewPlot(L"LineScan");
  const auto keeper = As<IPersistStorage>(plot);
  ASSERT_EQ(S_OK, keeper->InitNew(storage.Get()));
  Put(*plot.Get(), L"angle", 45);
  EXPECT_EQ(S_OK, keeper->IsDirty());
  ASSERT_EQ(S_OK, OleSave(keeper.Get(), storage.Get(), TRUE));
  EXPECT_EQ(S_OK, keeper->SaveCompleted(nullptr));
  EXPECT_EQ(S_FALSE, keeper->IsDirty());
  ComPtr<IDispatch> other;
  ASSERT_EQ(S_OK, OleLoad(storage.Get(), IID_IDispatch, nullptr,
                          reinterpret_cast<void**>(other.GetAddressOf())));
  EXPECT_EQ(45, Get(*other.Get(), L"angle"));
}

TEST(Stores, KeepThePointersPicture) {
  ICONINFO info{};
  info.hbmMask = CreateBitmap(16, 16, 1, 1, nullptr);
  info.hbmColor = CreateBitmap(16, 16, 1, 32, nullptr);
  PICTDESC about{};
  about.cbSizeofstruct = sizeof about;
  about.picType = PICTYPE_ICON;
  about.icon.hicon = CreateIconIndirect(&info);
  ComPtr<IDispatch> picture;
  ASSERT_EQ(S_OK, OleCreatePictureIndirect(&about, IID_IDispatch, TRUE,
                                           reinterpret_cast<void**>(picture.GetAddressOf())));
  const ComPtr<IDispatch> plot = NewPlot(L"Plot2D");
  EXPECT_EQ(S_OK,
            Invoke(*plot.Get(), L"MouseIcon", DISPATCH_PROPERTYPUTREF, {Of(picture.Get())}).result);
  Bag bag;
  ASSERT_EQ(S_OK, As<IPersistPropertyBag>(plot)->Save(&bag, TRUE, TRUE));
  ASSERT_EQ(VT_DISPATCH, bag.entries[L"2DMouseIcon"].vt);
  EXPECT_EQ(picture.Get(), bag.entries[L"2DMouseIcon"].pdispVal);
  DeleteObject(info.hbmMask);
  DeleteObject(info.hbmColor);
}

}  // namespace
}  // namespace discoplan::activex
