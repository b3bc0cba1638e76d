// SPDX-License-Identifier: MIT
#include "hosts/activex/transfer.h"

#include <algorithm>
#include <array>

#include "hosts/activex/control_object.h"

namespace discoplan::activex {
namespace {

FORMATETC Format(CLIPFORMAT format, DWORD medium) {
  return {format, nullptr, DVASPECT_CONTENT, -1, medium};
}

const std::array<FORMATETC, 3>& Formats() {
  static const std::array kFormats = {Format(CF_METAFILEPICT, TYMED_MFPICT),
                                      Format(CF_ENHMETAFILE, TYMED_ENHMF),
                                      Format(CF_DIB, TYMED_HGLOBAL)};
  return kFormats;
}

HGLOBAL Bitmap(const Canvas& canvas) {
  BITMAPINFO info = RowsOf(canvas.Width(), canvas.Height());
  info.bmiHeader.biHeight = canvas.Height();
  const std::vector<Pixel> pixels = FromBottom(canvas);
  const std::size_t size = pixels.size() * sizeof(Pixel);
  const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, sizeof info.bmiHeader + size);
  if (memory == nullptr) return nullptr;
  auto* to = static_cast<std::byte*>(GlobalLock(memory));
  memcpy(to, &info.bmiHeader, sizeof info.bmiHeader);
  memcpy(to + sizeof info.bmiHeader, pixels.data(), size);
  GlobalUnlock(memory);
  return memory;
}

void Draw(ControlObject& object, HDC device, const RECTL& bounds) {
  object.view().Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, device, &bounds, nullptr,
                     nullptr, 0);
}

/// Nothing without the memory, as everywhere here.
HENHMETAFILE EnhancedMetafile(ControlObject& object) {
  SIZEL himetric{};
  object.view().GetExtent(DVASPECT_CONTENT, -1, nullptr, &himetric);
  const RECT frame{0, 0, himetric.cx, himetric.cy};
  const HDC device = CreateEnhMetaFileW(nullptr, nullptr, &frame, L"Discoplan\0\0");
  if (device == nullptr) return nullptr;
  const TwipsBox& box = object.Control().root().Box();
  const SIZE pixels = object.ToPixels(box.width, box.height);
  const RECTL bounds{0, 0, pixels.cx, pixels.cy};
  Draw(object, device, bounds);
  return CloseEnhMetaFile(device);
}

HGLOBAL Metafile(ControlObject& object) {
  SIZEL himetric{};
  object.view().GetExtent(DVASPECT_CONTENT, -1, nullptr, &himetric);
  const HDC device = CreateMetaFileW(nullptr);
  if (device == nullptr) return nullptr;
  SetMapMode(device, MM_ANISOTROPIC);
  SetWindowOrgEx(device, 0, 0, nullptr);
  SetWindowExtEx(device, himetric.cx, himetric.cy, nullptr);
  const RECTL bounds{0, 0, himetric.cx, himetric.cy};
  Draw(object, device, bounds);
  const HMETAFILE file = CloseMetaFile(device);
  const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, sizeof(METAFILEPICT));
  if (file == nullptr || memory == nullptr) {
    DeleteMetaFile(file);
    GlobalFree(memory);
    return nullptr;
  }
  *static_cast<METAFILEPICT*>(GlobalLock(memory)) = {MM_ANISOTROPIC, himetric.cx, himetric.cy,
                                                     file};
  GlobalUnlock(memory);
  return memory;
}

}  // namespace

std::vector<Pixel> FromBottom(const Canvas& canvas) {
  const auto pixels = canvas.Pixels();
  std::vector<Pixel> rows;
  rows.reserve(pixels.size());
  const auto width = static_cast<std::size_t>(canvas.Width());
  for (auto y = static_cast<std::size_t>(canvas.Height()); y-- > 0;) {
    rows.insert(rows.end(), pixels.begin() + static_cast<std::ptrdiff_t>(y * width),
                pixels.begin() + static_cast<std::ptrdiff_t>((y + 1) * width));
  }
  return rows;
}

Transfer::Transfer(ControlObject& object) : Part(object.whole()), object_(object) {}

STDMETHODIMP Transfer::QueryGetData(FORMATETC* wanted) {
  if (wanted == nullptr) return E_POINTER;
  if (wanted->dwAspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
  const auto known = std::find_if(Formats().begin(), Formats().end(), [&](const FORMATETC& format) {
    return format.cfFormat == wanted->cfFormat;
  });
  if (known == Formats().end()) return DV_E_FORMATETC;
  return (wanted->tymed & known->tymed) != 0 ? S_OK : DV_E_TYMED;
}

STDMETHODIMP Transfer::GetData(FORMATETC* wanted, STGMEDIUM* medium) try {
  if (medium == nullptr) return E_POINTER;
  const HRESULT known = QueryGetData(wanted);
  if (FAILED(known)) return known;
  const ComPtr<IUnknown> alive = object_.Keep();
  *medium = {};
  switch (wanted->cfFormat) {
    case CF_DIB:
      medium->tymed = TYMED_HGLOBAL;
      medium->hGlobal = Bitmap(object_.view().Picture());
      break;
    case CF_ENHMETAFILE:
      medium->tymed = TYMED_ENHMF;
      medium->hEnhMetaFile = EnhancedMetafile(object_);
      break;
    default:
      medium->tymed = TYMED_MFPICT;
      medium->hMetaFilePict = Metafile(object_);
      break;
  }
  if (medium->hGlobal != nullptr) return S_OK;  // one place for handles of all kinds
  *medium = {};
  return E_OUTOFMEMORY;
} catch (const std::bad_alloc&) {
  *medium = {};
  return E_OUTOFMEMORY;
}

STDMETHODIMP Transfer::GetCanonicalFormatEtc(FORMATETC* wanted, FORMATETC* canonical) {
  if (wanted == nullptr || canonical == nullptr) return E_POINTER;
  *canonical = *wanted;
  canonical->ptd = nullptr;
  return DATA_S_SAMEFORMATETC;
}

STDMETHODIMP Transfer::EnumFormatEtc(DWORD direction, IEnumFORMATETC** formats) try {
  if (formats == nullptr) return E_POINTER;
  *formats = nullptr;
  if (direction != DATADIR_GET) return E_NOTIMPL;
  *formats = new CopyEnumerator<IEnumFORMATETC, FORMATETC, FORMATETC>(
      {Formats().begin(), Formats().end()}, [](const FORMATETC& format) { return format; });
  return S_OK;
} catch (const std::bad_alloc&) {
  return E_OUTOFMEMORY;
}

STDMETHODIMP Transfer::DAdvise(FORMATETC* wanted, DWORD flags, IAdviseSink* sink,
                               DWORD* connection) {
  if (wanted == nullptr) return E_POINTER;
  if (!advised_) CreateDataAdviseHolder(&advised_);
  return advised_ ? advised_->Advise(this, wanted, flags, sink, connection) : E_OUTOFMEMORY;
}

STDMETHODIMP Transfer::DUnadvise(DWORD connection) {
  return advised_ ? advised_->Unadvise(connection) : OLE_E_NOCONNECTION;
}

STDMETHODIMP Transfer::EnumDAdvise(IEnumSTATDATA** advises) {
  if (advises == nullptr) return E_POINTER;
  *advises = nullptr;
  return advised_ ? advised_->EnumAdvise(advises) : S_OK;
}

void Transfer::Changed() {
  if (const ComPtr<IDataAdviseHolder> holder = advised_) holder->SendOnDataChange(this, 0, 0);
}

}  // namespace discoplan::activex
