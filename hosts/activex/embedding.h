// SPDX-License-Identifier: MIT
#pragma once

/// The control as an object in a container's document.

#include "hosts/activex/part.h"

namespace discoplan::activex {

class ControlObject;

/// What containers may count on, as the registry tells them.
inline constexpr DWORD kMiscStatus = OLEMISC_RECOMPOSEONRESIZE | OLEMISC_CANTLINKINSIDE |
                                     OLEMISC_INSIDEOUT | OLEMISC_ACTIVATEWHENVISIBLE |
                                     OLEMISC_SETCLIENTSITEFIRST;

class Embedding final : public Part<IOleObject, IOleControl, IQuickActivate, IRunnableObject> {
 public:
  explicit Embedding(ControlObject& object);

  // IOleObject
  STDMETHODIMP SetClientSite(IOleClientSite* site) override;
  STDMETHODIMP GetClientSite(IOleClientSite** site) override;
  STDMETHODIMP SetHostNames(LPCOLESTR, LPCOLESTR) override { return S_OK; }
  STDMETHODIMP Close(DWORD save) override;
  STDMETHODIMP SetMoniker(DWORD, IMoniker*) override { return E_NOTIMPL; }
  STDMETHODIMP GetMoniker(DWORD, DWORD, IMoniker**) override { return E_NOTIMPL; }
  STDMETHODIMP InitFromData(IDataObject*, BOOL, DWORD) override { return E_NOTIMPL; }
  STDMETHODIMP GetClipboardData(DWORD, IDataObject** data) override;
  STDMETHODIMP DoVerb(LONG verb, LPMSG, IOleClientSite*, LONG, HWND parent, LPCRECT) override;
  STDMETHODIMP EnumVerbs(IEnumOLEVERB** verbs) override;
  STDMETHODIMP Update() override { return S_OK; }
  STDMETHODIMP IsUpToDate() override { return S_OK; }
  STDMETHODIMP GetUserClassID(CLSID* id) override;
  STDMETHODIMP GetUserType(DWORD form, LPOLESTR* type) override;
  STDMETHODIMP SetExtent(DWORD aspect, SIZEL* himetric) override;
  STDMETHODIMP GetExtent(DWORD aspect, SIZEL* himetric) override;
  STDMETHODIMP Advise(IAdviseSink* sink, DWORD* connection) override;
  STDMETHODIMP Unadvise(DWORD connection) override;
  STDMETHODIMP EnumAdvise(IEnumSTATDATA** advises) override;
  STDMETHODIMP GetMiscStatus(DWORD aspect, DWORD* status) override;
  STDMETHODIMP SetColorScheme(LOGPALETTE*) override { return E_NOTIMPL; }

  // IOleControl
  STDMETHODIMP GetControlInfo(CONTROLINFO* info) override;
  STDMETHODIMP OnMnemonic(MSG*) override { return S_OK; }
  STDMETHODIMP OnAmbientPropertyChange(DISPID) override { return S_OK; }
  STDMETHODIMP FreezeEvents(BOOL freeze) override;

  // IQuickActivate
  STDMETHODIMP QuickActivate(QACONTAINER* container, QACONTROL* control) override;
  STDMETHODIMP SetContentExtent(LPSIZEL size) override { return SetExtent(DVASPECT_CONTENT, size); }
  STDMETHODIMP GetContentExtent(LPSIZEL size) override { return GetExtent(DVASPECT_CONTENT, size); }

  // IRunnableObject: it always runs.
  STDMETHODIMP GetRunningClass(LPCLSID id) override { return GetUserClassID(id); }
  STDMETHODIMP Run(LPBINDCTX) override { return S_OK; }
  STDMETHODIMP_(WINBOOL) IsRunning() override { return TRUE; }
  STDMETHODIMP LockRunning(BOOL, BOOL) override { return S_OK; }
  STDMETHODIMP SetContainedObject(BOOL) override { return S_OK; }

  /// The store has the settings.
  void Saved();

 private:
  HRESULT ShowProperties(HWND parent);
  HRESULT ShowAbout();
  IOleAdviseHolder* Advised();

  ControlObject& object_;
  ComPtr<IOleAdviseHolder> advised_;
};

}  // namespace discoplan::activex
