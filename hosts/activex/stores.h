// SPDX-License-Identifier: MIT
#pragma once

/// The settings in the container's stores: a stream, a bag of named values, or a storage that holds
/// one stream.

#include "hosts/activex/part.h"

namespace discoplan::activex {

class ControlObject;

class Stores final : public Part<IPersistStreamInit, IPersistPropertyBag, IPersistStorage> {
 public:
  explicit Stores(ControlObject& object);

  STDMETHODIMP GetClassID(CLSID* id) override;
  STDMETHODIMP IsDirty() override { return is_dirty_ ? S_OK : S_FALSE; }
  STDMETHODIMP InitNew() override;

  // IPersistStreamInit
  STDMETHODIMP Load(IStream* stream) override;
  STDMETHODIMP Save(IStream* stream, BOOL clear_dirty) override;
  STDMETHODIMP GetSizeMax(ULARGE_INTEGER*) override { return E_NOTIMPL; }

  // IPersistPropertyBag
  STDMETHODIMP Load(IPropertyBag* bag, IErrorLog* log) override;
  STDMETHODIMP Save(IPropertyBag* bag, BOOL clear_dirty, BOOL save_all) override;

  // IPersistStorage
  STDMETHODIMP InitNew(IStorage* storage) override;
  STDMETHODIMP Load(IStorage* storage) override;
  STDMETHODIMP Save(IStorage* storage, BOOL same_as_load) override;
  STDMETHODIMP SaveCompleted(IStorage* storage) override;
  STDMETHODIMP HandsOffStorage() override;

  void Dirty(bool dirty) { is_dirty_ = dirty; }

 private:
  ControlObject& object_;
  bool is_dirty_ = false;
  bool holds_no_storage_ = false;
};

}  // namespace discoplan::activex
