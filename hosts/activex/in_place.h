// SPDX-License-Identifier: MIT
#pragma once

/// The control's window in its container.

#include "hosts/activex/form_window.h"
#include "hosts/activex/part.h"

namespace discoplan::activex {

class ControlObject;

class InPlace final : public Part<IOleInPlaceObject, IOleInPlaceActiveObject>,
                      private FormWindow::Owner {
 public:
  explicit InPlace(ControlObject& object);

  // IOleWindow
  STDMETHODIMP GetWindow(HWND* window) override;
  STDMETHODIMP ContextSensitiveHelp(BOOL) override { return E_NOTIMPL; }

  // IOleInPlaceObject
  STDMETHODIMP InPlaceDeactivate() override;
  STDMETHODIMP UIDeactivate() override;
  STDMETHODIMP SetObjectRects(LPCRECT place, LPCRECT clip) override;
  STDMETHODIMP ReactivateAndUndo() override { return E_NOTIMPL; }

  // IOleInPlaceActiveObject
  STDMETHODIMP TranslateAccelerator(LPMSG message) override;
  STDMETHODIMP OnFrameWindowActivate(BOOL) override { return S_OK; }
  STDMETHODIMP OnDocWindowActivate(BOOL) override { return S_OK; }
  STDMETHODIMP ResizeBorder(LPCRECT, IOleInPlaceUIWindow*, BOOL) override { return S_OK; }
  STDMETHODIMP EnableModeless(BOOL) override { return S_OK; }

  /// Gets a window of the container's, and with `to_user` the focus as well.
  HRESULT Activate(bool to_user);
  bool is_active() const { return view_ != nullptr; }
  HWND window() const { return view_ ? view_->handle() : nullptr; }
  /// Of the control's own surface, while there is a window.
  HDC device() const;
  /// Asks the container for a size in pixels. False where it hasn't given one.
  bool RequestSize(SIZE pixels);
  void Sync();
  void PointerChanged() const;
  /// Whom the container's frame lets take input while a modal window is shown.
  void EnableFrame(bool enable);

 private:
  // FormWindow::Owner
  const Screen& screen() const override;
  const TextPainter& text() const override;
  void Act(const std::function<void()>& act) override;
  void Mouse(Node& node, const MouseAction& action) override;
  HCURSOR Cursor() const override;
  void Touched() override;
  void Entered(bool on_form) override;
  void Left() override;
  bool Works() const override;
  void Noted() override;
  void ResolutionChanged() override;
  void WindowGone() override;

  HRESULT Place(IOleInPlaceSite& site);
  HRESULT TakeFocus(IOleInPlaceSite& site);
  void MoveTo(const RECT& place, const RECT& clip);

  ControlObject& object_;
  std::shared_ptr<FormWindow> view_;
  ComPtr<IOleInPlaceSite> site_;
  ComPtr<IOleInPlaceFrame> frame_;
  ComPtr<IOleInPlaceUIWindow> document_;
  RECT place_{};
  bool has_user_ = false;  // is UI active
  bool has_focus_ = false;
  bool activating_ = false;
};

}  // namespace discoplan::activex
