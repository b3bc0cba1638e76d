// SPDX-License-Identifier: MIT
// What Windows calls: classes by their ids, and the entries in the registry.

#include "hosts/activex/com.h"
#include "hosts/activex/control_object.h"
#include "hosts/activex/form_dialog.h"
#include "hosts/activex/ids.h"
#include "hosts/activex/page_object.h"
#include "hosts/activex/registration.h"

namespace discoplan::activex {
namespace {

/// Makes controls of one class, or property pages of one kind.
class ClassFactory final : public Counted<IClassFactory> {
 public:
  explicit ClassFactory(const ControlClass& row) : row_(&row) {}
  explicit ClassFactory(std::string_view page) : page_(page) {}

  STDMETHODIMP CreateInstance(IUnknown* outer, REFIID id, void** out) override {
    if (out == nullptr) return E_POINTER;
    *out = nullptr;
    if (outer != nullptr && (row_ == nullptr || id != IID_IUnknown)) return CLASS_E_NOAGGREGATION;
    return row_ != nullptr ? ControlObject::Create(*row_, outer, id, out)
                           : PageObject::Create(page_, id, out);
  }
  STDMETHODIMP LockServer(BOOL lock) override {
    lock ? LockModule() : UnlockModule();
    return S_OK;
  }

 private:
  const ControlClass* row_ = nullptr;
  std::string_view page_;
};

/// Nothing for a class that isn't of this library, or without the memory.
ComPtr<ClassFactory> FactoryOf(REFCLSID class_id, HRESULT& result) {
  ComPtr<ClassFactory> factory;
  result = CLASS_E_CLASSNOTAVAILABLE;
  const auto make = [&](std::string_view id, const auto& what) {
    if (factory || ToGuid(id) != class_id) return;
    *factory.GetAddressOf() = new (std::nothrow) ClassFactory(what);  // which counts itself
    result = factory ? S_OK : E_OUTOFMEMORY;
  };
  for (const ControlClass* row : ControlClasses()) make(row->class_id, *row);
  for (const std::string_view page : PropertyPageClasses()) make(PageId(page), page);
  return factory;
}

}  // namespace
}  // namespace discoplan::activex

using namespace discoplan;
using namespace discoplan::activex;

extern "C" {

BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, void*) {
  if (reason == DLL_PROCESS_ATTACH) Module(module);
  if (reason == DLL_PROCESS_DETACH) {
    FormWindow::Unregister();
    FormDialog::Unregister();
  }
  return TRUE;
}

STDAPI DllGetClassObject(REFCLSID class_id, REFIID id, void** out) {
  if (out == nullptr) return E_POINTER;
  *out = nullptr;
  HRESULT result = S_OK;
  const ComPtr<ClassFactory> factory = FactoryOf(class_id, result);
  return factory ? factory->QueryInterface(id, out) : result;
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
