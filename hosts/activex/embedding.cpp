// SPDX-License-Identifier: MIT
#include "hosts/activex/embedding.h"

#include <iterator>

#include "discoplan/dialogs/about_box.h"
#include "hosts/activex/control_object.h"

namespace discoplan::activex {
namespace {

constexpr LONG kAbout = 1;

struct Verb {
  LONG number;
  const wchar_t* name;
};
constexpr Verb kVerbs[] = {{OLEIVERB_PROPERTIES, L"P&roperties..."}, {kAbout, L"&About..."}};

OLEVERB CopyOf(const Verb& verb) {
  return {verb.number, TaskText(verb.name), MF_STRING, OLEVERBATTRIB_ONCONTAINERMENU};
}

}  // namespace

Embedding::Embedding(ControlObject& object) : Part(object.whole()), object_(object) {}

STDMETHODIMP Embedding::SetClientSite(IOleClientSite* site) {
  const ComPtr<IUnknown> alive = object_.Keep();
  if (site == nullptr) {
    object_.platform().CancelForms();
    object_.in_place().InPlaceDeactivate();
  }
  object_.site().client(site);
  return S_OK;
}

STDMETHODIMP Embedding::GetClientSite(IOleClientSite** site) {
  if (site == nullptr) return E_POINTER;
  *site = ComPtr<IOleClientSite>(object_.site().client()).Detach();
  return S_OK;
}

STDMETHODIMP Embedding::Close(DWORD save) {
  const ComPtr<IUnknown> alive = object_.Keep();
  object_.platform().CancelForms();
  object_.in_place().InPlaceDeactivate();
  const ComPtr<IOleClientSite> site = object_.site().client();
  if (save != OLECLOSE_NOSAVE && object_.stores().IsDirty() == S_OK && site) site->SaveObject();
  if (advised_) advised_->SendOnClose();
  return S_OK;
}

void Embedding::Saved() {
  if (advised_) advised_->SendOnSave();
}

STDMETHODIMP Embedding::GetClipboardData(DWORD, IDataObject** data) {
  return QueryInterface(IID_IDataObject, reinterpret_cast<void**>(data));
}

STDMETHODIMP Embedding::DoVerb(LONG verb, LPMSG, IOleClientSite*, LONG, HWND parent, LPCRECT) {
  const ComPtr<IUnknown> alive = object_.Keep();
  InPlace& in_place = object_.in_place();
  switch (verb) {
    case OLEIVERB_INPLACEACTIVATE:
    case OLEIVERB_SHOW:
      return in_place.Activate(false);
    case OLEIVERB_PRIMARY:
    case OLEIVERB_UIACTIVATE:
      return in_place.Activate(true);
    case OLEIVERB_HIDE:
      return in_place.InPlaceDeactivate();
    case OLEIVERB_DISCARDUNDOSTATE:
      return S_OK;
    case OLEIVERB_PROPERTIES:
      return ShowProperties(parent);
    case kAbout:
      return ShowAbout();
    default:
      return verb > 0 ? OLEOBJ_S_INVALIDVERB : E_NOTIMPL;
  }
}

/// By the container, which knows its own properties of the control as well, or else alone.
HRESULT Embedding::ShowProperties(HWND parent) {
  const auto site = object_.site().As<IOleControlSite>();
  if (site && site->ShowPropertyFrame() == S_OK) return S_OK;
  CAUUID pages{};
  const HRESULT known = object_.browsing().GetPages(&pages);
  if (FAILED(known)) return known;
  IUnknown* object = &object_.whole();
  const HRESULT shown =
      OleCreatePropertyFrame(parent, 0, 0, Wide(object_.row().title).c_str(), 1, &object,
                             pages.cElems, pages.pElems, LOCALE_USER_DEFAULT, 0, nullptr);
  CoTaskMemFree(pages.pElems);
  return shown;
}

HRESULT Embedding::ShowAbout() try {
  const auto box = std::make_shared<frmAbout>(object_.platform());
  box->SetTitle(object_.row().about_number);
  object_.platform().ShowModal(box, {});
  return S_OK;
} catch (const std::bad_alloc&) {
  return E_OUTOFMEMORY;
}

STDMETHODIMP Embedding::EnumVerbs(IEnumOLEVERB** verbs) try {
  if (verbs == nullptr) return E_POINTER;
  *verbs = new CopyEnumerator<IEnumOLEVERB, Verb, OLEVERB>({std::begin(kVerbs), std::end(kVerbs)},
                                                           &CopyOf);
  return S_OK;
} catch (const std::bad_alloc&) {
  return E_OUTOFMEMORY;
}

STDMETHODIMP Embedding::GetUserClassID(CLSID* id) {
  if (id == nullptr) return E_POINTER;
  *id = ToGuid(object_.row().class_id);
  return S_OK;
}

STDMETHODIMP Embedding::GetUserType(DWORD, LPOLESTR* type) {
  if (type == nullptr) return E_POINTER;
  *type = TaskText(L"Discoplan " + Wide(object_.row().name));
  return *type != nullptr ? S_OK : E_OUTOFMEMORY;
}

STDMETHODIMP Embedding::SetExtent(DWORD aspect, SIZEL* himetric) {
  if (himetric == nullptr) return E_POINTER;
  if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
  const ComPtr<IUnknown> alive = object_.Keep();
  const Screen& screen = object_.platform().screen();
  object_.SetPixels({PixelsOf(himetric->cx, screen.twips_per_pixel_x),
                     PixelsOf(himetric->cy, screen.twips_per_pixel_y)});
  if (object_.in_place().is_active()) {
    const TwipsBox& box = object_.Control().root().Box();
    object_.in_place().RequestSize(object_.ToPixels(box.width, box.height));
  }
  return S_OK;
}

STDMETHODIMP Embedding::GetExtent(DWORD aspect, SIZEL* himetric) {
  return object_.view().GetExtent(aspect, -1, nullptr, himetric);
}

IOleAdviseHolder* Embedding::Advised() {
  if (!advised_) CreateOleAdviseHolder(&advised_);
  return advised_.Get();
}

STDMETHODIMP Embedding::Advise(IAdviseSink* sink, DWORD* connection) {
  IOleAdviseHolder* holder = Advised();
  return holder != nullptr ? holder->Advise(sink, connection) : E_OUTOFMEMORY;
}

STDMETHODIMP Embedding::Unadvise(DWORD connection) {
  return advised_ ? advised_->Unadvise(connection) : OLE_E_NOCONNECTION;
}

STDMETHODIMP Embedding::EnumAdvise(IEnumSTATDATA** advises) {
  if (advises == nullptr) return E_POINTER;
  *advises = nullptr;
  return advised_ ? advised_->EnumAdvise(advises) : S_OK;
}

STDMETHODIMP Embedding::GetMiscStatus(DWORD, DWORD* status) {
  if (status == nullptr) return E_POINTER;
  *status = kMiscStatus;
  return S_OK;
}

STDMETHODIMP Embedding::GetControlInfo(CONTROLINFO* info) {
  if (info == nullptr) return E_POINTER;
  if (info->cb != sizeof *info) return E_UNEXPECTED;
  *info = {sizeof *info, nullptr, 0, 0};
  return S_OK;
}

STDMETHODIMP Embedding::FreezeEvents(BOOL freeze) {
  object_.events().Freeze(freeze != FALSE);
  return S_OK;
}

STDMETHODIMP Embedding::QuickActivate(QACONTAINER* container, QACONTROL* control) {
  if (container == nullptr || control == nullptr) return E_POINTER;
  if (container->cbSize < sizeof *container || control->cbSize < sizeof *control) {
    return E_INVALIDARG;
  }
  const ComPtr<IUnknown> alive = object_.Keep();
  *control = {sizeof *control, kMiscStatus, VIEWSTATUS_OPAQUE, 0, 0, 0};
  SetClientSite(container->pClientSite);
  if (container->pAdviseSink != nullptr) {
    object_.view().SetAdvise(DVASPECT_CONTENT, 0, container->pAdviseSink);
  }
  Events& events = object_.events();
  if (container->pUnkEventSink != nullptr) {
    events.events().Advise(container->pUnkEventSink, &control->dwEventCookie);
  }
  if (container->pPropertyNotifySink != nullptr) {
    events.properties().Advise(container->pPropertyNotifySink, &control->dwPropNotifyCookie);
  }
  return S_OK;
}

}  // namespace discoplan::activex
