// SPDX-License-Identifier: MIT
#include "hosts/activex/in_place.h"

#include <array>
#include <utility>

#include "hosts/activex/caller_object.h"
#include "hosts/activex/control_object.h"

namespace discoplan::activex {
namespace {

constexpr std::int16_t kOwnPicture = 99;

/// The system's pointer of a number of the interface's; the arrow for one that it hasn't.
LPCWSTR PointerOf(std::int16_t number) {
  static const std::array kPointers = {IDC_ARROW,    IDC_ARROW,       IDC_CROSS,    IDC_IBEAM,
                                       IDC_ARROW,    IDC_SIZEALL,     IDC_SIZENESW, IDC_SIZENS,
                                       IDC_SIZENWSE, IDC_SIZEWE,      IDC_UPARROW,  IDC_WAIT,
                                       IDC_NO,       IDC_APPSTARTING, IDC_HELP,     IDC_SIZEALL};
  const auto index = static_cast<std::size_t>(number);
  return number >= 0 && index < kPointers.size() ? kPointers[index] : IDC_ARROW;
}

/// The picture as a pointer, if it is an icon or a pointer.
HCURSOR PointerIn(const ObjectRef& icon) {
  const auto* object = dynamic_cast<const CallerObject*>(icon.get());
  ComPtr<IPicture> picture;
  if (object == nullptr || FAILED(object->object()->QueryInterface(IID_PPV_ARGS(&picture)))) {
    return nullptr;
  }
  SHORT type = PICTYPE_NONE;
  OLE_HANDLE handle = 0;
  if (FAILED(picture->get_Type(&type)) || type != PICTYPE_ICON) return nullptr;
  if (FAILED(picture->get_Handle(&handle))) return nullptr;
  return reinterpret_cast<HCURSOR>(static_cast<INT_PTR>(static_cast<INT>(handle)));
}

}  // namespace

InPlace::InPlace(ControlObject& object) : Part(object.whole()), object_(object) {}

const Screen& InPlace::screen() const { return object_.platform().screen(); }
const TextPainter& InPlace::text() const { return object_.platform().text(); }

HRESULT InPlace::Activate(bool to_user) {
  const ComPtr<IUnknown> alive = object_.Keep();
  if (activating_) return S_OK;
  if (!view_) {
    const ComPtr<IOleInPlaceSite> site = object_.site().As<IOleInPlaceSite>();
    if (!site) return E_FAIL;
    activating_ = true;
    const HRESULT placed = Place(*site.Get());
    activating_ = false;
    if (FAILED(placed)) return placed;
  }
  if (!to_user || has_user_ || !site_) return S_OK;
  const ComPtr<IOleInPlaceSite> site = site_;
  return TakeFocus(*site.Get());
}

HRESULT InPlace::Place(IOleInPlaceSite& site) {
  if (site.CanInPlaceActivate() != S_OK) return E_FAIL;
  HWND parent = nullptr;
  const HRESULT found = site.GetWindow(&parent);
  if (FAILED(found) || parent == nullptr) return FAILED(found) ? found : E_FAIL;
  const HRESULT agreed = site.OnInPlaceActivate();
  if (FAILED(agreed)) return agreed;
  RECT clip{};
  OLEINPLACEFRAMEINFO info{};
  info.cb = sizeof info;
  frame_ = nullptr;
  document_ = nullptr;
  site.GetWindowContext(&frame_, &document_, &place_, &clip, &info);
  if (object_.platform().FollowScreen(parent)) object_.Control().ScreenChanged();
  const auto view = std::make_shared<FormWindow>(object_.Control().root(),
                                                 static_cast<FormWindow::Owner&>(*this));
  if (!view->Create(parent, place_)) {
    site.OnInPlaceDeactivate();
    return E_FAIL;
  }
  view_ = view;
  site_ = &site;
  MoveTo(place_, clip);
  if (!view_) return E_FAIL;  // the container has changed its mind
  ShowWindow(view_->handle(), SW_SHOW);
  if (object_.site().client() != nullptr) object_.site().client()->ShowObject();
  if (view_) Act([this] { object_.Control().Shown(); });
  Sync();
  return S_OK;
}

HRESULT InPlace::TakeFocus(IOleInPlaceSite& site) {
  has_user_ = true;
  const HRESULT agreed = site.OnUIActivate();
  if (FAILED(agreed)) {
    has_user_ = false;
    return agreed;
  }
  if (frame_) frame_->SetActiveObject(this, nullptr);
  if (document_) document_->SetActiveObject(this, nullptr);
  if (frame_) frame_->SetBorderSpace(nullptr);
  if (document_) document_->SetBorderSpace(nullptr);
  const HWND own = window();
  if (own != nullptr && GetFocus() != own && !IsChild(own, GetFocus())) SetFocus(own);
  return S_OK;
}

STDMETHODIMP InPlace::GetWindow(HWND* window) {
  if (window == nullptr) return E_POINTER;
  *window = this->window();
  return *window != nullptr ? S_OK : E_FAIL;
}

STDMETHODIMP InPlace::UIDeactivate() {
  const ComPtr<IUnknown> alive = object_.Keep();
  if (!std::exchange(has_user_, false)) return S_OK;
  if (frame_) frame_->SetActiveObject(nullptr, nullptr);
  if (document_) document_->SetActiveObject(nullptr, nullptr);
  if (const ComPtr<IOleInPlaceSite> site = site_) site->OnUIDeactivate(FALSE);
  return S_OK;
}

STDMETHODIMP InPlace::InPlaceDeactivate() {
  const ComPtr<IUnknown> alive = object_.Keep();
  UIDeactivate();
  const auto view = std::exchange(view_, nullptr);
  if (view) view->Destroy();
  has_focus_ = false;
  object_.WatchTree();
  frame_ = nullptr;
  document_ = nullptr;
  if (const ComPtr<IOleInPlaceSite> site = std::exchange(site_, nullptr)) {
    site->OnInPlaceDeactivate();
  }
  return S_OK;
}

void InPlace::WindowGone() {
  const ComPtr<IUnknown> alive = object_.Keep();
  InPlaceDeactivate();
}

STDMETHODIMP InPlace::SetObjectRects(LPCRECT place, LPCRECT clip) {
  if (place == nullptr) return E_POINTER;
  const ComPtr<IUnknown> alive = object_.Keep();
  // A container that follows the screen itself may give a place and tell nothing else.
  ResolutionChanged();
  MoveTo(*place, clip != nullptr ? *clip : *place);
  return S_OK;
}

void InPlace::MoveTo(const RECT& place, const RECT& clip) {
  place_ = place;
  const SIZE pixels{place.right - place.left, place.bottom - place.top};
  const HWND own = window();
  if (own != nullptr) {
    RECT shown{};
    const bool whole =
        (IntersectRect(&shown, &place, &clip) && EqualRect(&shown, &place)) || IsRectEmpty(&clip);
    OffsetRect(&shown, -place.left, -place.top);
    SetWindowRgn(own, whole ? nullptr : CreateRectRgnIndirect(&shown), TRUE);
    SetWindowPos(own, nullptr, place.left, place.top, pixels.cx, pixels.cy,
                 SWP_NOZORDER | SWP_NOACTIVATE);
  }
  Act([&] { object_.SetPixels(pixels); });
  Sync();
}

bool InPlace::RequestSize(SIZE pixels) {
  const ComPtr<IOleInPlaceSite> site = site_;
  if (!site) return false;
  const RECT wanted{place_.left, place_.top, place_.left + pixels.cx, place_.top + pixels.cy};
  // The container answers by `SetObjectRects`, or not at all.
  site->OnPosRectChange(&wanted);
  return true;
}

STDMETHODIMP InPlace::TranslateAccelerator(LPMSG message) {
  if (message == nullptr) return E_POINTER;
  const ComPtr<IUnknown> alive = object_.Keep();
  const auto view = view_;
  if (view && Works() && view->Translate(*message)) return S_OK;
  const auto site = object_.site().As<IOleControlSite>();
  if (!site) return S_FALSE;
  constexpr std::array<std::pair<int, DWORD>, 3> kKeys = {
      {{VK_SHIFT, 1}, {VK_CONTROL, 2}, {VK_MENU, 4}}};
  DWORD keys = 0;
  for (const auto& [key, bit] : kKeys) keys |= GetKeyState(key) < 0 ? bit : 0;
  const HRESULT taken = site->TranslateAccelerator(message, keys);
  return taken == S_OK ? S_OK : S_FALSE;
}

HDC InPlace::device() const {
  const HWND own = window();
  return own != nullptr ? GetDC(own) : nullptr;  // the window's own, which isn't given back
}

void InPlace::Sync() {
  if (const auto view = view_) view->Sync();
}

void InPlace::EnableFrame(bool enable) {
  if (const ComPtr<IOleInPlaceFrame> frame = frame_) frame->EnableModeless(enable);
}

void InPlace::PointerChanged() const {
  POINT at{};
  if (window() != nullptr && GetCursorPos(&at) && WindowFromPoint(at) == window()) {
    SetCursor(Cursor());
  }
}

void InPlace::Act(const std::function<void()>& act) {
  const ComPtr<IUnknown> alive = object_.Keep();
  act();
  object_.view().TellChanged();
}

void InPlace::Mouse(Node& node, const MouseAction& action) {
  object_.Control().Mouse(node, action);
}

HCURSOR InPlace::Cursor() const {
  const PlotControl& control = object_.Control();
  if (control.MousePointer() == kOwnPicture) {
    if (const HCURSOR own = PointerIn(control.MouseIcon())) return own;
  }
  return LoadCursorW(nullptr, PointerOf(control.MousePointer()));
}

void InPlace::Touched() {
  if (!has_user_) Activate(true);
}

void InPlace::Entered(bool on_form) {
  const ComPtr<IUnknown> alive = object_.Keep();
  if (!std::exchange(has_focus_, true)) {
    Touched();
    if (const auto site = object_.site().As<IOleControlSite>()) site->OnFocus(TRUE);
  }
  const auto view = view_;
  if (!on_form || !view || GetFocus() != view->handle()) return;
  if (const HWND child = view->WindowOf(object_.Control().Focused())) SetFocus(child);
}

void InPlace::Left() {
  const ComPtr<IUnknown> alive = object_.Keep();
  if (!std::exchange(has_focus_, false)) return;
  if (const auto site = object_.site().As<IOleControlSite>()) site->OnFocus(FALSE);
}

bool InPlace::Works() const { return object_.site().UserMode(); }

void InPlace::Noted() { object_.view().Note(); }

void InPlace::ResolutionChanged() {
  if (window() == nullptr || !object_.platform().FollowScreen(window())) return;
  Act([this] { object_.Control().ScreenChanged(); });
  if (const auto view = view_) view->Refresh();
}

}  // namespace discoplan::activex
