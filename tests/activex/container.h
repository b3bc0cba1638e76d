// SPDX-License-Identifier: MIT
#pragma once

/// A container that implements what it must, and notes what it was asked.

#include <functional>
#include <string>
#include <vector>

#include "tests/activex/client.h"

namespace discoplan::activex {

/// Whatever events come.
class EventSink final : public IDispatch {
 public:
  struct Event {
    DISPID id;
    std::vector<double> args;
    bool operator==(const Event&) const = default;
  };

  STDMETHODIMP QueryInterface(REFIID id, void** out) override {
    const bool own = id == IID_IUnknown || id == IID_IDispatch;
    *out = own ? this : nullptr;
    return own ? AddRef(), S_OK : E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return ++references; }
  STDMETHODIMP_(ULONG) Release() override { return --references; }
  STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
  STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* params, VARIANT*, EXCEPINFO*,
                      UINT*) override {
    Event event{id, {}};
    for (UINT i = params->cArgs; i-- > 0;) {
      EXPECT_NE(0, params->rgvarg[i].vt & VT_BYREF);
      OwnedVariant value;
      EXPECT_EQ(S_OK, VariantCopyInd(&value, &params->rgvarg[i]));
      EXPECT_EQ(S_OK, VariantChangeType(&value, &value, 0, VT_R8));
      event.args.push_back(value.dblVal);
    }
    events.push_back(event);
    if (then) then();
    return S_OK;
  }

  std::vector<Event> events;
  std::function<void()> then;
  ULONG references = 0;
};

class PropertySink final : public IPropertyNotifySink {
 public:
  STDMETHODIMP QueryInterface(REFIID id, void** out) override {
    const bool own = id == IID_IUnknown || id == IID_IPropertyNotifySink;
    *out = own ? this : nullptr;
    return own ? AddRef(), S_OK : E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return ++references; }
  STDMETHODIMP_(ULONG) Release() override { return --references; }
  STDMETHODIMP OnChanged(DISPID id) override { return changed.push_back(id), S_OK; }
  STDMETHODIMP OnRequestEdit(DISPID id) override {
    return asked.push_back(id), allows ? S_OK : S_FALSE;
  }

  std::vector<DISPID> changed;
  std::vector<DISPID> asked;
  bool allows = true;
  ULONG references = 0;
};

template <class Sink>
DWORD Connect(IUnknown& object, Sink& sink, const GUID& id) {
  ComPtr<IConnectionPointContainer> points;
  ComPtr<IConnectionPoint> point;
  DWORD cookie = 0;
  EXPECT_EQ(S_OK, object.QueryInterface(IID_PPV_ARGS(&points)));
  EXPECT_EQ(S_OK, points->FindConnectionPoint(id, &point));
  EXPECT_EQ(S_OK, point->Advise(&sink, &cookie));
  return cookie;
}

inline void Disconnect(IUnknown& object, DWORD cookie, const GUID& id) {
  ComPtr<IConnectionPointContainer> points;
  ComPtr<IConnectionPoint> point;
  EXPECT_EQ(S_OK, object.QueryInterface(IID_PPV_ARGS(&points)));
  EXPECT_EQ(S_OK, points->FindConnectionPoint(id, &point));
  EXPECT_EQ(S_OK, point->Unadvise(cookie));
}

class Form final : public IOleClientSite,
                   public IOleInPlaceSite,
                   public IOleInPlaceFrame,
                   public IOleControlSite,
                   public IDispatch {
 public:
  Form() {
    window = CreateWindowExW(0, L"STATIC", L"form", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, 20, 20,
                             700, 600, nullptr, nullptr, nullptr, nullptr);
    EXPECT_NE(nullptr, window);
    ShowWindow(window, SW_SHOW);
  }
  ~Form() {
    if (object) Remove();
    EXPECT_EQ(0U, references);
    DestroyWindow(window);
  }

  /// Places the control and shows its window.
  void Place(const ComPtr<IDispatch>& plot, const RECT& at) {
    place = at;
    object = As<IOleObject>(plot);
    EXPECT_EQ(S_OK, object->SetClientSite(this));
    EXPECT_EQ(S_OK, As<IPersistStreamInit>(plot)->InitNew());
    EXPECT_EQ(S_OK, object->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, this, 0, window, &place));
    RunMessages();
  }
  void Remove() {
    const ComPtr<IOleObject> leaving = std::exchange(object, nullptr);
    EXPECT_EQ(S_OK, leaving->Close(OLECLOSE_NOSAVE));
    EXPECT_EQ(S_OK, leaving->SetClientSite(nullptr));
  }
  HWND PlotWindow() const {
    HWND own = nullptr;
    if (object) As<IOleInPlaceObject>(object)->GetWindow(&own);
    return own;
  }

  STDMETHODIMP QueryInterface(REFIID id, void** out) override {
    const struct {
      const GUID& id;
      IUnknown* found;
    } offered[] = {{IID_IUnknown, static_cast<IOleClientSite*>(this)},
                   {IID_IOleClientSite, static_cast<IOleClientSite*>(this)},
                   {IID_IOleInPlaceSite, static_cast<IOleInPlaceSite*>(this)},
                   {IID_IOleInPlaceFrame, static_cast<IOleInPlaceFrame*>(this)},
                   {IID_IOleControlSite, static_cast<IOleControlSite*>(this)},
                   {IID_IDispatch, static_cast<IDispatch*>(this)}};
    *out = nullptr;
    for (const auto& entry : offered) {
      if (entry.id != id) continue;
      AddRef();
      *out = entry.found;
      return S_OK;
    }
    return E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return ++references; }
  STDMETHODIMP_(ULONG) Release() override { return --references; }

  // IOleClientSite
  STDMETHODIMP SaveObject() override { return ++saves, S_OK; }
  STDMETHODIMP GetMoniker(DWORD, DWORD, IMoniker**) override { return E_NOTIMPL; }
  STDMETHODIMP GetContainer(IOleContainer**) override { return E_NOTIMPL; }
  STDMETHODIMP ShowObject() override { return S_OK; }
  STDMETHODIMP OnShowWindow(BOOL) override { return S_OK; }
  STDMETHODIMP RequestNewObjectLayout() override { return E_NOTIMPL; }

  // IOleInPlaceSite, IOleInPlaceFrame
  STDMETHODIMP GetWindow(HWND* out) override { return *out = window, S_OK; }
  STDMETHODIMP ContextSensitiveHelp(BOOL) override { return E_NOTIMPL; }
  STDMETHODIMP CanInPlaceActivate() override { return S_OK; }
  STDMETHODIMP OnInPlaceActivate() override { return Note("in place"); }
  STDMETHODIMP OnUIActivate() override { return Note("user"); }
  STDMETHODIMP GetWindowContext(IOleInPlaceFrame** frame, IOleInPlaceUIWindow** document, LPRECT at,
                                LPRECT clip, LPOLEINPLACEFRAMEINFO) override {
    AddRef();
    *frame = this;
    *document = nullptr;
    *at = *clip = place;
    return S_OK;
  }
  STDMETHODIMP Scroll(SIZE) override { return E_NOTIMPL; }
  STDMETHODIMP OnUIDeactivate(BOOL) override { return Note("no user"); }
  STDMETHODIMP OnInPlaceDeactivate() override { return Note("gone"); }
  STDMETHODIMP DiscardUndoState() override { return E_NOTIMPL; }
  STDMETHODIMP DeactivateAndUndo() override { return E_NOTIMPL; }
  STDMETHODIMP OnPosRectChange(LPCRECT wanted) override {
    Note("wants " + std::to_string(wanted->right - wanted->left) + " by " +
         std::to_string(wanted->bottom - wanted->top));
    if (!gives_way) return S_OK;
    place = *wanted;
    return As<IOleInPlaceObject>(object)->SetObjectRects(&place, &place);
  }
  STDMETHODIMP GetBorder(LPRECT) override { return E_NOTIMPL; }
  STDMETHODIMP RequestBorderSpace(LPCBORDERWIDTHS) override { return E_NOTIMPL; }
  STDMETHODIMP SetBorderSpace(LPCBORDERWIDTHS) override { return S_OK; }
  STDMETHODIMP SetActiveObject(IOleInPlaceActiveObject* now, LPCOLESTR) override {
    return active = now, S_OK;
  }
  STDMETHODIMP InsertMenus(HMENU, LPOLEMENUGROUPWIDTHS) override { return E_NOTIMPL; }
  STDMETHODIMP SetMenu(HMENU, HOLEMENU, HWND) override { return E_NOTIMPL; }
  STDMETHODIMP RemoveMenus(HMENU) override { return E_NOTIMPL; }
  STDMETHODIMP SetStatusText(LPCOLESTR) override { return E_NOTIMPL; }
  STDMETHODIMP EnableModeless(BOOL enable) override { return Note(enable ? "modeless" : "modal"); }
  STDMETHODIMP TranslateAccelerator(LPMSG, WORD) override { return S_FALSE; }

  // IOleControlSite
  STDMETHODIMP OnControlInfoChanged() override { return S_OK; }
  STDMETHODIMP LockInPlaceActive(BOOL) override { return E_NOTIMPL; }
  STDMETHODIMP GetExtendedControl(IDispatch** out) override {
    return *out = extended.Get(), extended ? extended->AddRef(), S_OK : E_NOTIMPL;
  }
  STDMETHODIMP TransformCoords(POINTL*, POINTF*, DWORD) override { return E_NOTIMPL; }
  STDMETHODIMP TranslateAccelerator(MSG*, DWORD keys) override {
    Note("key passed on, " + std::to_string(keys));
    return S_FALSE;
  }
  STDMETHODIMP OnFocus(BOOL has) override { return Note(has ? "focus" : "no focus"); }
  STDMETHODIMP ShowPropertyFrame() override { return E_NOTIMPL; }

  // IDispatch: ambient properties
  STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return DISP_E_UNKNOWNNAME;
  }
  STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* value, EXCEPINFO*,
                      UINT*) override {
    if (id != DISPID_AMBIENT_USERMODE) return DISP_E_MEMBERNOTFOUND;
    value->vt = VT_BOOL;
    value->boolVal = runs ? VARIANT_TRUE : VARIANT_FALSE;
    return S_OK;
  }

  HRESULT Note(const std::string& what) { return notes.push_back(what), S_OK; }
  std::vector<std::string> TakeNotes() { return std::exchange(notes, {}); }

  HWND window = nullptr;
  RECT place{};
  ComPtr<IOleObject> object;
  IOleInPlaceActiveObject* active = nullptr;
  ComPtr<IDispatch> extended;
  std::vector<std::string> notes;
  int saves = 0;
  bool gives_way = true;
  bool runs = true;
  ULONG references = 0;
};

}  // namespace discoplan::activex
