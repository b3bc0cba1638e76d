// SPDX-License-Identifier: MIT
#include "hosts/activex/control_object.h"

#include "discoplan/controls/control_factory.h"
#include "hosts/activex/caller_object.h"
#include "hosts/activex/ids.h"

namespace discoplan::activex {
namespace {

// Twips, until a container places the control.
constexpr float kFirstWidth = 6000;
constexpr float kFirstHeight = 4500;

bool AreOne(IUnknown* a, IUnknown* b) {
  ComPtr<IUnknown> first;
  ComPtr<IUnknown> second;
  a->QueryInterface(IID_PPV_ARGS(&first));
  b->QueryInterface(IID_PPV_ARGS(&second));
  return first.Get() == second.Get();
}

/// A control that is its own printer would keep itself alive by a wrapped reference.
Objects ObjectsOf(IDispatch& own, const Screen& screen,
                  const std::shared_ptr<PlotControl>& control) {
  return {.taken = [&own, &screen, &control](IDispatch* object) -> ObjectRef {
            if (object == nullptr) return nullptr;
            if (AreOne(object, &own)) return control;
            return std::make_shared<CallerObject>(*object, screen);
          },
          .given = [&own, &control](const ObjectRef& object) -> ComPtr<IDispatch> {
            if (!object) return nullptr;
            if (object == control) return &own;
            const auto* callers = dynamic_cast<const CallerObject*>(object.get());
            return callers != nullptr ? callers->object() : nullptr;
          }};
}

}  // namespace

ComPlatform::ComPlatform() {
  const HDC screen = GetDC(nullptr);
  const int across = GetDeviceCaps(screen, LOGPIXELSX);
  const int down = GetDeviceCaps(screen, LOGPIXELSY);
  ReleaseDC(nullptr, screen);
  if (across > 0 && down > 0) {
    screen_ = {static_cast<float>(kTwipsPerInch / across),
               static_cast<float>(kTwipsPerInch / down)};
  }
}

void ComPlatform::Show(const Message& message) {
  const UINT look =
      (message.critical ? MB_ICONERROR : 0U) | (message.system_modal ? MB_SYSTEMMODAL : 0U);
  MessageBoxW(GetActiveWindow(), Wide(message.text).c_str(), Wide(message.title).c_str(), look);
}

HRESULT ControlObject::Create(const ControlClass& row, IUnknown* outer, REFIID id, void** out) try {
  auto* object = new ControlObject(row, outer);
  const HRESULT result = object->self_.QueryInterface(id, out);
  object->self_.Release();
  return result;
} catch (const std::bad_alloc&) {
  return E_OUTOFMEMORY;
}

ControlObject::ControlObject(const ControlClass& row, IUnknown* outer)
    : whole_(outer != nullptr ? outer : &self_),
      row_(row),
      control_(NewControl(row.name, platform_, this)),
      objects_(ObjectsOf(*this, platform_.screen(), control_)) {
  control_->root().Move({0, 0, kFirstWidth, kFirstHeight});
  LockModule();
}

ControlObject::~ControlObject() {
  control_->Detach();
  UnlockModule();
}

STDMETHODIMP ControlObject::Self::QueryInterface(REFIID id, void** out) {
  if (out == nullptr) return E_POINTER;
  IUnknown* found = id == IID_IUnknown ? this : owner_.Interface(id);
  *out = found;
  if (found == nullptr) return E_NOINTERFACE;
  found->AddRef();
  return S_OK;
}

STDMETHODIMP_(ULONG) ControlObject::Self::Release() {
  if (--references_ != 0) return references_;
  references_ = 1;  // what is released on the way out comes back here
  delete &owner_;
  return 0;
}

IUnknown* ControlObject::Interface(REFIID id) {
  if (id == IID_IDispatch || id == ToGuid(MembersId(row_))) return static_cast<IDispatch*>(this);
  if (id == IID_IProvideClassInfo || id == IID_IProvideClassInfo2) {
    return static_cast<IProvideClassInfo2*>(this);
  }
  if (id == IID_IPersist || id == IID_IPersistStreamInit) {
    return static_cast<IPersistStreamInit*>(this);
  }
  if (id == IID_IPersistPropertyBag) return static_cast<IPersistPropertyBag*>(this);
  if (id == IID_IViewObject || id == IID_IViewObject2) return static_cast<IViewObject2*>(this);
  if (id == IID_IObjectSafety) return static_cast<IObjectSafety*>(this);
  return nullptr;
}

PlotControl& ControlObject::Control() {
  if (is_new_) {
    is_new_ = false;
    control_->InitProperties();
    control_->SetSize(control_->root().Box().width, control_->root().Box().height);
    is_dirty_ = false;
  }
  return *control_;
}

STDMETHODIMP ControlObject::GetClassInfo(ITypeInfo** info) {
  if (info == nullptr) return E_POINTER;
  *info = TypeInfoOf(ToGuid(row_.class_id)).Detach();
  return *info != nullptr ? S_OK : E_FAIL;
}

STDMETHODIMP ControlObject::GetGUID(DWORD kind, GUID* id) {
  if (id == nullptr) return E_POINTER;
  if (kind != GUIDKIND_DEFAULT_SOURCE_DISP_IID) return E_INVALIDARG;
  *id = ToGuid(EventsId(row_));
  return S_OK;
}

STDMETHODIMP ControlObject::GetInterfaceSafetyOptions(REFIID id, DWORD* known, DWORD* on) {
  if (known == nullptr || on == nullptr) return E_POINTER;
  const bool persists = id == IID_IPersistPropertyBag || id == IID_IPersistStreamInit;
  *known = *on = persists ? INTERFACESAFE_FOR_UNTRUSTED_DATA : 0;
  return Interface(id) != nullptr ? S_OK : E_NOINTERFACE;
}

STDMETHODIMP ControlObject::SetInterfaceSafetyOptions(REFIID id, DWORD mask, DWORD on) {
  DWORD known = 0;
  DWORD present = 0;
  const HRESULT asked = GetInterfaceSafetyOptions(id, &known, &present);
  if (FAILED(asked)) return asked;
  return (mask & on & ~known) == 0 ? S_OK : E_FAIL;
}

void ControlObject::PropertyChanged(std::string_view) { is_dirty_ = true; }

}  // namespace discoplan::activex
