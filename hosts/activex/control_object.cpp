// SPDX-License-Identifier: MIT
#include "hosts/activex/control_object.h"

#include <algorithm>

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
      platform_({.window =
                     [this] {
                       const HWND own = in_place_.window();
                       const HWND around = own != nullptr ? own : site_.Window();
                       return around != nullptr ? around : GetActiveWindow();
                     },
                 .enable = [this](bool enable) { in_place_.EnableFrame(enable); }}),
      events_(*whole_, row),
      in_place_(*this),
      embedding_(*this),
      browsing_(*this),
      transfer_(*this),
      stores_(*this),
      view_(*this),
      facts_(*this),
      control_(NewControl(row.name, platform_, this)),
      objects_(ObjectsOf(*this, platform_.screen(), control_)) {
  control_->root().Move({0, 0, kFirstWidth, kFirstHeight});
  WatchTree();
  LockModule();
}

ControlObject::~ControlObject() {
  in_place_.InPlaceDeactivate();
  control_->root().Watch({});
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
  // Each part leads to its own interfaces and to those that they are made of.
  const struct {
    const GUID& id;
    const GUID& made_into;
  } simpler[] = {{IID_IProvideClassInfo, IID_IProvideClassInfo2},
                 {IID_IPersist, IID_IPersistStreamInit},
                 {IID_IViewObject, IID_IViewObjectEx},
                 {IID_IViewObject2, IID_IViewObjectEx},
                 {IID_IOleWindow, IID_IOleInPlaceObject}};
  const auto* known = std::find_if(std::begin(simpler), std::end(simpler),
                                   [&](const auto& entry) { return entry.id == id; });
  const GUID& wanted = known != std::end(simpler) ? known->made_into : id;
  for (IUnknown* found : {events_.Find(wanted), in_place_.Find(wanted), embedding_.Find(wanted),
                          browsing_.Find(wanted), transfer_.Find(wanted), stores_.Find(wanted),
                          view_.Find(wanted), facts_.Find(wanted)}) {
    if (found != nullptr) return found;
  }
  return nullptr;
}

PlotControl& ControlObject::Control() {
  if (is_new_) {
    is_new_ = false;
    control_->InitProperties();
    control_->SetSize(control_->root().Box().width, control_->root().Box().height);
    stores_.Dirty(false);
  }
  return *control_;
}

void ControlObject::Renew() {
  is_new_ = true;
  Control();
}

void ControlObject::Restore(const PropertyBag& bag) {
  is_new_ = false;
  control_->ReadProperties(bag);
  control_->SetSize(control_->root().Box().width, control_->root().Box().height);
  in_place_.Sync();
  view_.TellChanged();
}

SIZE ControlObject::ToPixels(float width, float height) const {
  const Screen& screen = platform_.screen();
  return {std::lround(width / screen.twips_per_pixel_x),
          std::lround(height / screen.twips_per_pixel_y)};
}

/// Whole pixels whatever the container counts in, or the same size would be two.
void ControlObject::SetPixels(SIZE pixels) {
  const Screen& screen = platform_.screen();
  const float width = static_cast<float>(std::max(0L, pixels.cx)) * screen.twips_per_pixel_x;
  const float height = static_cast<float>(std::max(0L, pixels.cy)) * screen.twips_per_pixel_y;
  const TwipsBox& box = control_->root().Box();
  if (box.width == width && box.height == height) return;
  if (is_new_) return control_->root().Move({0, 0, width, height});  // before its store is read
  control_->SetSize(width, height);
}

void ControlObject::WatchTree() {
  control_->root().Watch([this](Node&, Aspect) { view_.Note(); });
}

void ControlObject::PropertyChanged(std::string_view property) {
  stores_.Dirty(true);
  for (const Member& member : row_.members) {
    if (member.announced == property) return events_.Changed(member.id);
  }
}

void ControlObject::EventRaised(std::string_view event, std::span<const Variant> args) {
  events_.Raise(event, args);
}

/// In a window the container has the last word, else the control takes what it wants.
void ControlObject::ResizeRequested(float width, float height,
                                    const std::function<void(float, float)>& take) {
  if (!in_place_.RequestSize(ToPixels(width, height))) take(width, height);
}

// Handles have 32 bits that count, also where pointers have 64.
std::int32_t ControlObject::DeviceHandle() const {
  return static_cast<std::int32_t>(reinterpret_cast<INT_PTR>(in_place_.device()));
}
std::int32_t ControlObject::WindowHandle() const {
  return static_cast<std::int32_t>(reinterpret_cast<INT_PTR>(in_place_.window()));
}

}  // namespace discoplan::activex
