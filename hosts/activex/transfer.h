// SPDX-License-Identifier: MIT
#pragma once

/// The picture for the clipboard and for containers that keep one beside the settings: as a bitmap,
/// and as a metafile with its size in hundredths of a millimetre.

#include "discoplan/raster/canvas.h"
#include "hosts/activex/part.h"

namespace discoplan::activex {

class ControlObject;

/// The pixels with the lowest row first, as bitmaps in files, memory and metafiles have them.
std::vector<Pixel> FromBottom(const Canvas& canvas);

class Transfer final : public Part<IDataObject> {
 public:
  explicit Transfer(ControlObject& object);

  STDMETHODIMP GetData(FORMATETC* wanted, STGMEDIUM* medium) override;
  STDMETHODIMP GetDataHere(FORMATETC*, STGMEDIUM*) override { return E_NOTIMPL; }
  STDMETHODIMP QueryGetData(FORMATETC* wanted) override;
  STDMETHODIMP GetCanonicalFormatEtc(FORMATETC* wanted, FORMATETC* canonical) override;
  STDMETHODIMP SetData(FORMATETC*, STGMEDIUM*, BOOL) override { return E_NOTIMPL; }
  STDMETHODIMP EnumFormatEtc(DWORD direction, IEnumFORMATETC** formats) override;
  STDMETHODIMP DAdvise(FORMATETC* wanted, DWORD flags, IAdviseSink* sink,
                       DWORD* connection) override;
  STDMETHODIMP DUnadvise(DWORD connection) override;
  STDMETHODIMP EnumDAdvise(IEnumSTATDATA** advises) override;

  /// The picture is another one.
  void Changed();

 private:
  ControlObject& object_;
  ComPtr<IDataAdviseHolder> advised_;
};

}  // namespace discoplan::activex
