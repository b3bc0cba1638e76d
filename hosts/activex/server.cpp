// SPDX-License-Identifier: MIT
// What Windows calls: classes by their ids, and the entries in the registry.

#include "hosts/activex/com.h"
#include "hosts/activex/control_object.h"
#include "hosts/activex/registration.h"

namespace discoplan::activex {
namespace {

class ClassFactory final : public IClassFactory {
 public:
  explicit ClassFactory(const ControlClass& row) : row_(row) { LockModule(); }
  virtual ~ClassFactory() { UnlockModule(); }

  STDMETHODIMP QueryInterface(REFIID id, void** out) override {
    if (out == nullptr) return E_POINTER;
    const bool own = id == IID_IUnknown || id == IID_IClassFactory;
    *out = own ? static_cast<IClassFactory*>(this) : nullptr;
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
  STDMETHODIMP CreateInstance(IUnknown* outer, REFIID id, void** out) override {
    if (out == nullptr) return E_POINTER;
    *out = nullptr;
    if (outer != nullptr && id != IID_IUnknown) return CLASS_E_NOAGGREGATION;
    return ControlObject::Create(row_, outer, id, out);
  }
  STDMETHODIMP LockServer(BOOL lock) override {
    lock ? LockModule() : UnlockModule();
    return S_OK;
  }

 private:
  const ControlClass& row_;
  LONG references_ = 1;
};

}  // namespace
}  // namespace discoplan::activex

using namespace discoplan;
using namespace discoplan::activex;

extern "C" {

BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, void*) {
  if (reason == DLL_PROCESS_ATTACH) Module(module);
  return TRUE;
}

STDAPI DllGetClassObject(REFCLSID class_id, REFIID id, void** out) {
  if (out == nullptr) return E_POINTER;
  *out = nullptr;
  for (const ControlClass* row : ControlClasses()) {
    if (ToGuid(row->class_id) != class_id) continue;
    auto* factory = new (std::nothrow) ClassFactory(*row);
    if (factory == nullptr) return E_OUTOFMEMORY;
    const HRESULT result = factory->QueryInterface(id, out);
    factory->Release();
    return result;
  }
  return CLASS_E_CLASSNOTAVAILABLE;
}

STDAPI DllCanUnloadNow() { return ModuleIsFree() ? S_OK : S_FALSE; }

STDAPI DllRegisterServer() { return Register(Registry::Machine); }

STDAPI DllUnregisterServer() { return Unregister(Registry::Machine); }

/// With "user" for one without rights, as `regsvr32 /n /i:user discoplan.ocx`.
STDAPI DllInstall(BOOL install, LPCWSTR command) {
  const bool user = command != nullptr && SameName("user", command);
  if (!user && command != nullptr && *command != L'\0') return E_INVALIDARG;
  const Registry registry = user ? Registry::User : Registry::Machine;
  return install ? Register(registry) : Unregister(registry);
}
}
