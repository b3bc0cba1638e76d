// SPDX-License-Identifier: MIT
// The picture on others' devices, and what a designer asks.

#include <set>

#include "tests/activex/bitmap.h"
#include "tests/activex/container.h"

namespace discoplan::activex {
namespace {

std::size_t Colours(const std::vector<DWORD>& pixels) {
  return std::set<DWORD>(pixels.begin(), pixels.end()).size();
}

TEST(View, ShowsTheBackgroundAndThePlot) {
  const ComPtr<IDispatch> plot = NewPlot(L"Plot2D");
  SIZEL size{10583, 7938};  // 400 by 300 pixels
  As<IOleObject>(plot)->SetExtent(DVASPECT_CONTENT, &size);
  Put(*plot.Get(), L"BackColor", 0x804020);
  Load(*plot.Get());
  const std::vector<DWORD> before = Drawn(plot, 400, 300);
  EXPECT_EQ(0x204080U, before.back());  // red last in a colour, first in a pixel
  EXPECT_EQ(0, Call(*plot.Get(), L"Plot"));
  const std::vector<DWORD> after = Drawn(plot, 400, 300);
  EXPECT_NE(before, after);
  EXPECT_GE(Colours(after), 12U);
  EXPECT_EQ(E_POINTER, As<IViewObject2>(plot)->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr,
                                                    nullptr, nullptr, nullptr, nullptr, 0));
}

TEST(View, GoesOutAsBitmapAndMetafiles) {
  const ComPtr<IDispatch> plot = NewPlot(L"Plot3DB");
  SIZEL size{10583, 7938};
  As<IOleObject>(plot)->SetExtent(DVASPECT_CONTENT, &size);
  Load(*plot.Get());
  EXPECT_EQ(0, Call(*plot.Get(), L"Plot"));
  const std::vector<DWORD> drawn = Drawn(plot, 400, 300);
  const auto data = As<IDataObject>(plot);

  FORMATETC format{CF_DIB, nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL};
  STGMEDIUM medium{};
  ASSERT_EQ(S_OK, data->GetData(&format, &medium));
  const auto* header = static_cast<const BITMAPINFOHEADER*>(GlobalLock(medium.hGlobal));
  EXPECT_EQ(400, header->biWidth);
  EXPECT_EQ(300, header->biHeight);
  const auto* pixels = reinterpret_cast<const DWORD*>(header + 1);
  for (std::size_t y = 0; y < 300; y += 11) {
    for (std::size_t x = 0; x < 400; x += 7) {
      ASSERT_EQ(drawn[y * 400 + x], pixels[(299 - y) * 400 + x] & 0xFFFFFF);
    }
  }
  GlobalUnlock(medium.hGlobal);
  ReleaseStgMedium(&medium);

  const auto played = [](const auto& play) {
    const Bitmap bitmap(400, 300);
    play(bitmap.device());
    return bitmap.Pixels();
  };
  format = {CF_METAFILEPICT, nullptr, DVASPECT_CONTENT, -1, TYMED_MFPICT};
  ASSERT_EQ(S_OK, data->GetData(&format, &medium));
  const auto* picture = static_cast<const METAFILEPICT*>(GlobalLock(medium.hMetaFilePict));
  EXPECT_EQ(MM_ANISOTROPIC, picture->mm);
  EXPECT_NEAR(10583, picture->xExt, 1);
  EXPECT_NEAR(7938, picture->yExt, 1);
  const std::vector<DWORD> by_metafile = played([&](HDC device) {
    SetMapMode(device, MM_ANISOTROPIC);
    SetViewportExtEx(device, 400, 300, nullptr);
    PlayMetaFile(device, picture->hMF);
  });
  GlobalUnlock(medium.hMetaFilePict);
  ReleaseStgMedium(&medium);
  EXPECT_EQ(drawn, by_metafile);

  format = {CF_ENHMETAFILE, nullptr, DVASPECT_CONTENT, -1, TYMED_ENHMF};
  ASSERT_EQ(S_OK, data->GetData(&format, &medium));
  ENHMETAHEADER about{};
  GetEnhMetaFileHeader(medium.hEnhMetaFile, sizeof about, &about);
  EXPECT_NEAR(10583, about.rclFrame.right - about.rclFrame.left, 30);
  const std::vector<DWORD> by_enhanced = played([&](HDC device) {
    const RECT all{0, 0, 400, 300};
    PlayEnhMetaFile(device, medium.hEnhMetaFile, &all);
  });
  ReleaseStgMedium(&medium);
  EXPECT_GE(Colours(by_enhanced), 8U);

  format.cfFormat = CF_WAVE;
  EXPECT_EQ(DV_E_FORMATETC, data->GetData(&format, &medium));
}

/// Old containers play no blending, no transforms and no comments of newer graphics.
TEST(View, GoesOutInRecordsThatAllContainersPlay) {
  const ComPtr<IDispatch> plot = NewPlot(L"LineScan");
  Load(*plot.Get());
  EXPECT_EQ(0, Call(*plot.Get(), L"Plot"));
  const auto data = As<IDataObject>(plot);
  std::set<DWORD> records;
  FORMATETC format{CF_ENHMETAFILE, nullptr, DVASPECT_CONTENT, -1, TYMED_ENHMF};
  STGMEDIUM medium{};
  ASSERT_EQ(S_OK, data->GetData(&format, &medium));
  EnumEnhMetaFile(
      nullptr, medium.hEnhMetaFile,
      [](HDC, HANDLETABLE*, const ENHMETARECORD* record, int, LPARAM list) {
        reinterpret_cast<std::set<DWORD>*>(list)->insert(record->iType);
        return 1;
      },
      &records, nullptr);
  ReleaseStgMedium(&medium);
  EXPECT_EQ((std::set<DWORD>{EMR_HEADER, EMR_EOF, EMR_SETSTRETCHBLTMODE, EMR_STRETCHDIBITS}),
            records);

  records.clear();
  format = {CF_METAFILEPICT, nullptr, DVASPECT_CONTENT, -1, TYMED_MFPICT};
  ASSERT_EQ(S_OK, data->GetData(&format, &medium));
  const auto* picture = static_cast<const METAFILEPICT*>(GlobalLock(medium.hMetaFilePict));
  const HDC screen = GetDC(nullptr);
  EnumMetaFile(
      screen, picture->hMF,
      [](HDC, HANDLETABLE*, METARECORD* record, int, LPARAM list) {
        reinterpret_cast<std::set<DWORD>*>(list)->insert(record->rdFunction);
        return 1;
      },
      reinterpret_cast<LPARAM>(&records));
  ReleaseDC(nullptr, screen);
  GlobalUnlock(medium.hMetaFilePict);
  ReleaseStgMedium(&medium);
  records.erase(0);  // the end
  EXPECT_EQ((std::set<DWORD>{META_SETMAPMODE, META_SETWINDOWORG, META_SETWINDOWEXT,
                             META_SETSTRETCHBLTMODE, META_STRETCHDIB}),
            records);
}

TEST(View, ListsItsForms) {
  const ComPtr<IDispatch> plot = NewPlot(L"Plot2D");
  const auto data = As<IDataObject>(plot);
  ComPtr<IEnumFORMATETC> list;
  ASSERT_EQ(S_OK, data->EnumFormatEtc(DATADIR_GET, &list));
  FORMATETC forms[4] = {};
  ULONG count = 0;
  EXPECT_EQ(S_FALSE, list->Next(4, forms, &count));
  ASSERT_EQ(3U, count);
  std::set<CLIPFORMAT> seen;
  for (ULONG i = 0; i < count; ++i) {
    seen.insert(forms[i].cfFormat);
    EXPECT_EQ(S_OK, data->QueryGetData(&forms[i]));
    forms[i].tymed = TYMED_FILE;
    EXPECT_EQ(DV_E_TYMED, data->QueryGetData(&forms[i]));
    forms[i].dwAspect = DVASPECT_ICON;
    EXPECT_EQ(DV_E_DVASPECT, data->QueryGetData(&forms[i]));
  }
  EXPECT_EQ((std::set<CLIPFORMAT>{CF_METAFILEPICT, CF_ENHMETAFILE, CF_DIB}), seen);
  EXPECT_EQ(E_NOTIMPL, data->EnumFormatEtc(DATADIR_SET, &list));
  STGMEDIUM medium{};
  EXPECT_EQ(E_NOTIMPL, data->SetData(&forms[0], &medium, FALSE));
}

TEST(Designer, NamesTheValuesOfEnumerations) {
  const ComPtr<IDispatch> plot = NewPlot(L"Plot2D");
  const auto browsing = As<IPerPropertyBrowsing>(plot);
  const DISPID style = IdOf(*plot.Get(), L"WaferStyle");
  CALPOLESTR names{};
  CADWORD cookies{};
  ASSERT_EQ(S_OK, browsing->GetPredefinedStrings(style, &names, &cookies));
  ASSERT_EQ(2U, names.cElems);
  EXPECT_EQ(std::wstring(L"Notch"), names.pElems[0]);
  EXPECT_EQ(std::wstring(L"Flat"), names.pElems[1]);
  OwnedVariant value;
  ASSERT_EQ(S_OK, browsing->GetPredefinedValue(style, cookies.pElems[1], &value));
  EXPECT_EQ(2, value.lVal);
  for (ULONG i = 0; i < names.cElems; ++i) CoTaskMemFree(names.pElems[i]);
  CoTaskMemFree(names.pElems);
  CoTaskMemFree(cookies.pElems);
  Put(*plot.Get(), L"WaferStyle", 2);
  BSTR shown = nullptr;
  ASSERT_EQ(S_OK, browsing->GetDisplayString(style, &shown));
  EXPECT_EQ(std::wstring(L"Flat"), shown);
  SysFreeString(shown);
  EXPECT_EQ(E_NOTIMPL,
            browsing->GetPredefinedStrings(IdOf(*plot.Get(), L"mean"), &names, &cookies));
}

}  // namespace
}  // namespace discoplan::activex
