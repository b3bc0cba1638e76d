// SPDX-License-Identifier: MIT
#pragma once

/// Building stones of COM objects.

#include <vector>

#include "hosts/activex/com.h"

namespace discoplan::activex {

/// Some of an object's interfaces. They count the references of the whole and lead to all of it.
template <class... Interfaces>
class Part : public Interfaces... {
 public:
  explicit Part(IUnknown& whole) : whole_(whole) {}
  Part(const Part&) = delete;
  Part& operator=(const Part&) = delete;

  STDMETHODIMP QueryInterface(REFIID id, void** out) override {
    return whole_.QueryInterface(id, out);
  }
  STDMETHODIMP_(ULONG) AddRef() override { return whole_.AddRef(); }
  STDMETHODIMP_(ULONG) Release() override { return whole_.Release(); }

  /// The interface of that id, or nothing.
  IUnknown* Find(REFIID id) {
    IUnknown* found = nullptr;
    ((id == __uuidof(Interfaces) ? void(found = static_cast<Interfaces*>(this)) : void()), ...);
    return found;
  }

 protected:
  ~Part() = default;

 private:
  IUnknown& whole_;
};

/// An object of one interface that lives by its own references.
template <class Interface>
class Counted : public Interface {
 public:
  Counted() { LockModule(); }
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;

  STDMETHODIMP QueryInterface(REFIID id, void** out) override {
    if (out == nullptr) return E_POINTER;
    const bool own = id == IID_IUnknown || id == __uuidof(Interface);
    *out = own ? static_cast<Interface*>(this) : nullptr;
    if (!own) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() override {
    return static_cast<ULONG>(InterlockedIncrement(&references_));
  }
  STDMETHODIMP_(ULONG) Release() override {
    const LONG left = InterlockedDecrement(&references_);
    if (left == 0) delete this;
    return static_cast<ULONG>(left);
  }

 protected:
  virtual ~Counted() { UnlockModule(); }

 private:
  LONG references_ = 1;
};

/// Gives copies of items; `copy` makes one for the caller, who frees it.
template <class Interface, class Item, class Given>
class CopyEnumerator final : public Counted<Interface> {
 public:
  using Copy = Given (*)(const Item&);
  CopyEnumerator(std::vector<Item> items, Copy copy, std::size_t next = 0)
      : items_(std::move(items)), copy_(copy), next_(next) {}

  STDMETHODIMP Next(ULONG count, Given* out, ULONG* given) override {
    if (out == nullptr || (given == nullptr && count != 1)) return E_POINTER;
    ULONG done = 0;
    for (; done < count && next_ < items_.size(); ++done) out[done] = copy_(items_[next_++]);
    if (given != nullptr) *given = done;
    return done == count ? S_OK : S_FALSE;
  }
  STDMETHODIMP Skip(ULONG count) override {
    const std::size_t left = items_.size() - next_;
    next_ += count < left ? count : left;
    return count <= left ? S_OK : S_FALSE;
  }
  STDMETHODIMP Reset() override {
    next_ = 0;
    return S_OK;
  }
  STDMETHODIMP Clone(Interface** out) override {
    if (out == nullptr) return E_POINTER;
    *out = new (std::nothrow) CopyEnumerator(items_, copy_, next_);
    return *out != nullptr ? S_OK : E_OUTOFMEMORY;
  }

 private:
  std::vector<Item> items_;
  Copy copy_;
  std::size_t next_;
};

}  // namespace discoplan::activex
