// SPDX-License-Identifier: MIT
#include "hosts/activex/page_object.h"

#include <vector>

#include "discoplan/base/numbers.h"
#include "hosts/activex/ids.h"
#include "hosts/activex/values.h"

namespace discoplan::activex {
namespace {

/// A control elsewhere, by its members' ids. Its rows are those of its class, read and written from
/// outside.
class NamedControl final : public Object {
 public:
  NamedControl(const ControlClass& row, const ComPtr<IDispatch>& control)
      : rows_(row.members.begin(), row.members.end()), table_(rows_), control_(control) {
    for (Member& member : rows_) {
      if (member.get != nullptr) member.get = &Read;
      if (member.set != nullptr) member.set = &Write;
    }
  }
  const MemberTable& Members() const override { return table_; }

 private:
  static void Check(HRESULT result, EXCEPINFO& raised) {
    const int number = static_cast<DWORD>(raised.scode) >> 16 == 0x800A ? raised.scode & 0xFFFF : 0;
    const std::string what = raised.bstrDescription != nullptr ? Utf8(raised.bstrDescription) : "";
    SysFreeString(raised.bstrSource);
    SysFreeString(raised.bstrDescription);
    SysFreeString(raised.bstrHelpFile);
    if (FAILED(result)) {
      throw RunTimeError(number != 0 ? static_cast<Fault>(number) : Fault::InvalidCall, what);
    }
  }
  static Variant Read(Object& object, const Member& member) {
    DISPPARAMS none{};
    OwnedVariant value;
    EXCEPINFO raised{};
    Check(static_cast<NamedControl&>(object).control_->Invoke(member.id, IID_NULL, LOCALE_INVARIANT,
                                                              DISPATCH_PROPERTYGET, &none, &value,
                                                              &raised, nullptr),
          raised);
    return FromCaller(value, member.type, LOCALE_INVARIANT, {});
  }
  static void Write(Object& object, const Variant& value, const Member& member) {
    OwnedVariant argument;
    ToCaller(value, member.type, argument, {});
    DISPID put = DISPID_PROPERTYPUT;
    DISPPARAMS params{&argument, &put, 1, 1};
    EXCEPINFO raised{};
    Check(static_cast<NamedControl&>(object).control_->Invoke(member.id, IID_NULL, LOCALE_INVARIANT,
                                                              DISPATCH_PROPERTYPUT, &params,
                                                              nullptr, &raised, nullptr),
          raised);
  }

  std::vector<Member> rows_;
  const MemberTable table_;
  const ComPtr<IDispatch> control_;
};

/// Nothing for an object that is none of the controls.
std::unique_ptr<Object> ControlIn(IUnknown* object) {
  for (const ControlClass* row : ControlClasses()) {
    ComPtr<IDispatch> control;
    if (SUCCEEDED(object->QueryInterface(ToGuid(MembersId(*row)), &control))) {
      return std::make_unique<NamedControl>(*row, control);
    }
  }
  return nullptr;
}

}  // namespace

HRESULT PageObject::Create(std::string_view page, REFIID id, void** out) try {
  auto* object = new PageObject(page);
  const HRESULT result = object->QueryInterface(id, out);
  object->Release();
  return result;
} catch (const std::bad_alloc&) {
  return E_OUTOFMEMORY;
}

PageObject::PageObject(std::string_view page)
    : platform_({.window = [this] { return view_ ? view_->handle() : GetActiveWindow(); },
                 .enable = [](bool) {}}),
      page_(NewPropertyPage(page, platform_)) {}

PageObject::~PageObject() { Deactivate(); }

STDMETHODIMP PageObject::SetPageSite(IPropertyPageSite* site) {
  site_ = site;
  return S_OK;
}

STDMETHODIMP PageObject::Activate(HWND parent, LPCRECT place, BOOL) try {
  if (place == nullptr) return E_POINTER;
  if (view_) return E_UNEXPECTED;
  platform_.FollowScreen(parent);
  const auto view =
      std::make_shared<FormWindow>(page_->root(), static_cast<FormWindow::Owner&>(*this));
  if (!view->Create(parent, *place)) return E_FAIL;
  view_ = view;
  ShowWindow(view_->handle(), SW_SHOW);
  return S_OK;
} catch (const std::bad_alloc&) {
  return E_OUTOFMEMORY;
}

STDMETHODIMP PageObject::Deactivate() {
  if (!view_) return S_FALSE;
  view_->Destroy();
  view_ = nullptr;
  return S_OK;
}

STDMETHODIMP PageObject::GetPageInfo(PROPPAGEINFO* info) {
  if (info == nullptr) return E_POINTER;
  const Node& root = page_->root();
  const Screen& screen = platform_.screen();
  *info = {};
  info->cb = sizeof *info;
  info->size = {std::lround(root.Box().width / screen.twips_per_pixel_x),
                std::lround(root.Box().height / screen.twips_per_pixel_y)};
  info->pszTitle = TaskText(Wide(root.Text()));
  return info->pszTitle != nullptr ? S_OK : E_OUTOFMEMORY;
}

STDMETHODIMP PageObject::SetObjects(ULONG count, IUnknown** objects) try {
  if (count > 0 && objects == nullptr) return E_POINTER;
  page_->Select(nullptr);
  selected_ = nullptr;
  if (count == 0) return S_OK;
  if (objects[0] == nullptr) return E_POINTER;
  selected_ = ControlIn(objects[0]);
  if (!selected_) return E_NOINTERFACE;
  page_->Select(selected_.get());
  if (view_) view_->Sync();
  told_changed_ = false;
  return S_OK;
} catch (const RunTimeError&) {
  return E_FAIL;
} catch (const std::bad_alloc&) {
  return E_OUTOFMEMORY;
}

STDMETHODIMP PageObject::Show(UINT show) {
  if (!view_) return E_UNEXPECTED;
  ShowWindow(view_->handle(), static_cast<int>(show));
  return S_OK;
}

STDMETHODIMP PageObject::Move(LPCRECT place) {
  if (place == nullptr) return E_POINTER;
  if (!view_) return E_UNEXPECTED;
  MoveWindow(view_->handle(), place->left, place->top, place->right - place->left,
             place->bottom - place->top, TRUE);
  return S_OK;
}

STDMETHODIMP PageObject::Apply() try {
  const ComPtr<IUnknown> alive = this;
  if (!selected_) return E_UNEXPECTED;
  page_->ApplyChanges();
  // What the control mended shows as it was mended.
  page_->SelectionChanged();
  if (view_) view_->Sync();
  told_changed_ = false;
  return S_OK;
} catch (const RunTimeError&) {
  return E_FAIL;  // the value stays in its field
} catch (const std::bad_alloc&) {
  return E_OUTOFMEMORY;
}

STDMETHODIMP PageObject::TranslateAccelerator(MSG* message) {
  if (message == nullptr) return E_POINTER;
  const ComPtr<IUnknown> alive = this;
  const auto view = view_;
  if (view && view->Translate(*message)) return S_OK;
  return site_ ? site_->TranslateAccelerator(message) : S_FALSE;
}

void PageObject::Act(const std::function<void()>& act) {
  const ComPtr<IUnknown> alive = this;
  act();
  TellChanged();
}

void PageObject::TellChanged() {
  if (!page_->Changed() || std::exchange(told_changed_, true)) return;
  if (const ComPtr<IPropertyPageSite> site = site_) site->OnStatusChange(PROPPAGESTATUS_DIRTY);
}

}  // namespace discoplan::activex
