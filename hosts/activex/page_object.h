// SPDX-License-Identifier: MIT
#pragma once

/// A property page in a frame of the container's or the system's. It sees the control as an object
/// with named members, and shows and writes the first of those that are selected.

#include "discoplan/dialogs/property_page.h"
#include "hosts/activex/com_platform.h"
#include "hosts/activex/form_window.h"
#include "hosts/activex/part.h"

namespace discoplan::activex {

class PageObject final : public Counted<IPropertyPage>, private FormWindow::Owner {
 public:
  /// Nothing for a name that no page has.
  static HRESULT Create(std::string_view page, REFIID id, void** out);

  STDMETHODIMP SetPageSite(IPropertyPageSite* site) override;
  STDMETHODIMP Activate(HWND parent, LPCRECT place, BOOL modal) override;
  STDMETHODIMP Deactivate() override;
  STDMETHODIMP GetPageInfo(PROPPAGEINFO* info) override;
  STDMETHODIMP SetObjects(ULONG count, IUnknown** objects) override;
  STDMETHODIMP Show(UINT show) override;
  STDMETHODIMP Move(LPCRECT place) override;
  STDMETHODIMP IsPageDirty() override { return page_->Changed() ? S_OK : S_FALSE; }
  STDMETHODIMP Apply() override;
  STDMETHODIMP Help(LPCOLESTR) override { return E_NOTIMPL; }
  STDMETHODIMP TranslateAccelerator(MSG* message) override;

 private:
  explicit PageObject(std::string_view page);
  ~PageObject() override;

  const Screen& screen() const override { return platform_.screen(); }
  const TextPainter& text() const override { return platform_.text(); }
  void Act(const std::function<void()>& act) override;
  void WindowGone() override { view_ = nullptr; }
  void TellChanged();

  ComPlatform platform_;
  const std::unique_ptr<PropertyPage> page_;
  std::unique_ptr<Object> selected_;
  std::shared_ptr<FormWindow> view_;
  ComPtr<IPropertyPageSite> site_;
  bool told_changed_ = false;
};

}  // namespace discoplan::activex
