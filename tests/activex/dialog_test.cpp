// SPDX-License-Identifier: MIT
// Option dialogs and property pages.

#include <algorithm>

#include "tests/activex/container.h"
#include "tests/activex/user.h"

namespace discoplan::activex {
namespace {

using Notes = std::vector<std::string>;
constexpr const wchar_t* kDialog = L"Discoplan.Dialog";

TEST(Dialog, ChangesThePlotsOptions) {
  const ComPtr<IDispatch> plot = NewPlot(L"Plot2D");
  Form form;
  form.Place(plot, {0, 0, 400, 300});
  Load(*plot.Get());
  Call(*plot.Get(), L"Plot");
  form.TakeNotes();
  {
    const User user(kDialog, L"Define Plot Options", [&](HWND dialog) {
      EXPECT_FALSE(IsWindowEnabled(form.window));
      EXPECT_EQ(form.window, GetWindow(dialog, GW_OWNER));
      const auto fields = User::Children(dialog, L"EDIT");
      ASSERT_EQ(1U, fields.size());
      EXPECT_EQ(fields[0], GetFocus());
      SetWindowTextW(fields[0], L"2.5");
      User::Press(dialog, L"Hide");
      User::Press(dialog, L"OK");
    });
    Call(*plot.Get(), L"ShowPlotOption");
  }
  EXPECT_EQ(2.5, Get(*plot.Get(), L"Resolution"));
  EXPECT_EQ(0, Get(*plot.Get(), L"ShowSites"));
  EXPECT_TRUE(IsWindowEnabled(form.window));
  EXPECT_EQ((Notes{"modal", "modeless"}), form.TakeNotes());
  EXPECT_EQ(nullptr, FindWindowW(kDialog, nullptr));
}

/// Readers of the screen find labels before their fields, and groups around theirs.
TEST(Dialog, HasItsLabelsAndGroupsAsWindows) {
  const ComPtr<IDispatch> plot = NewPlot(L"Plot3D");
  Form form;
  form.Place(plot, {0, 0, 400, 300});
  Load(*plot.Get());
  const User user(kDialog, L"", [&](HWND dialog) {
    const auto text_of = [](HWND window) {
      wchar_t text[64] = L"";
      GetWindowTextW(window, text, 64);
      return std::wstring(text);
    };
    std::vector<std::wstring> groups;
    for (const HWND button : User::Children(dialog, L"BUTTON")) {
      if ((GetWindowLongPtrW(button, GWL_STYLE) & BS_TYPEMASK) == BS_GROUPBOX) {
        groups.push_back(text_of(button));
      }
    }
    for (const wchar_t* name : {L"3D Plot", L"Grid", L"Wafer", L"Plot Type"}) {
      EXPECT_EQ(1, std::count(groups.begin(), groups.end(), name)) << Utf8(name);
    }
    std::vector<std::wstring> labels;
    for (const HWND field : User::Children(dialog, L"EDIT")) {
      labels.push_back(text_of(GetWindow(field, GW_HWNDPREV)));
    }
    for (const wchar_t* name : {L"Resolution X: ", L"Resolution Y: ", L"Scale: "}) {
      EXPECT_EQ(1, std::count(labels.begin(), labels.end(), name)) << Utf8(name);
    }
    PostMessageW(dialog, WM_CLOSE, 0, 0);
  });
  Call(*plot.Get(), L"ShowPlotOption");
}

TEST(Dialog, ReturnAndEscapePressItsButtons) {
  const ComPtr<IDispatch> plot = NewPlot(L"Histo");
  Form form;
  form.Place(plot, {0, 0, 400, 300});
  Load(*plot.Get());
  for (const WPARAM key : {VK_ESCAPE, VK_RETURN}) {
    const User user(kDialog, L"", [&](HWND dialog) {
      const HWND field = User::Children(dialog, L"EDIT").at(0);
      SetWindowTextW(field, L"33");
      PostMessageW(field, WM_KEYDOWN, key, 0);
    });
    Call(*plot.Get(), L"ShowPlotOption");
    EXPECT_EQ(key == VK_RETURN ? 33 : 10, Get(*plot.Get(), L"Resolution"));
  }
}

TEST(Dialog, TellsWhatIsWrongAndStays) {
  const ComPtr<IDispatch> plot = NewPlot(L"Plot2D");
  Form form;
  form.Place(plot, {0, 0, 400, 300});
  Load(*plot.Get());
  const User complaint(L"#32770", L"Input Error", [&](HWND box) {
    const HWND dialog = FindWindowW(kDialog, nullptr);
    EXPECT_TRUE(IsWindowVisible(dialog));
    PostMessageW(box, WM_COMMAND, IDOK, 0);
    PostMessageW(dialog, WM_CLOSE, 0, 0);
  });
  const User user(kDialog, L"", [&](HWND dialog) {
    SetWindowTextW(User::Children(dialog, L"EDIT").at(0), L"");
    User::Press(dialog, L"OK");
  });
  Call(*plot.Get(), L"ShowPlotOption");
  EXPECT_EQ(5, Get(*plot.Get(), L"Resolution"));
}

TEST(Dialog, EndsWithItsControl) {
  ComPtr<IDispatch> plot = NewPlot(L"Plot3D");
  Form form;
  form.Place(plot, {0, 0, 400, 300});
  Load(*plot.Get());
  const User user(kDialog, L"", [&](HWND) {
    form.Remove();
    plot = nullptr;
  });
  IDispatch* raw = plot.Get();  // the container lets go of it meanwhile
  Invoke(*raw, L"ShowPlotOption", DISPATCH_METHOD);
  EXPECT_EQ(nullptr, FindWindowW(kDialog, nullptr));
  EXPECT_EQ(0U, form.references);
}

TEST(Dialog, EndsWithTheWindowOfItsContainer) {
  const ComPtr<IDispatch> plot = NewPlot(L"Plot3D");
  Form form;
  form.Place(plot, {0, 0, 400, 300});
  Load(*plot.Get());
  const User user(kDialog, L"", [&](HWND) { DestroyWindow(form.window); });
  Call(*plot.Get(), L"ShowPlotOption");
  EXPECT_EQ(nullptr, FindWindowW(kDialog, nullptr));
}

TEST(Dialog, TellsOfThePlotByAVerb) {
  const struct {
    const wchar_t* plot;
    const wchar_t* title;
  } cases[] = {{L"Plot2D", L"Discoplan.OCX Type: 2D Plot"},
               {L"LineScan", L"Discoplan.OCX Type: Line Scan"},
               {L"Plot3DB", L"Discoplan.OCX Type: 3D Bar Plot"}};
  for (const auto& [name, title] : cases) {
    const ComPtr<IDispatch> plot = NewPlot(name);
    Form form;
    form.Place(plot, {0, 0, 400, 300});
    ComPtr<IEnumOLEVERB> verbs;
    ASSERT_EQ(S_OK, form.object->EnumVerbs(&verbs));
    OLEVERB offered[3] = {};
    ULONG count = 0;
    EXPECT_EQ(S_FALSE, verbs->Next(3, offered, &count));
    ASSERT_EQ(2U, count);
    EXPECT_EQ(OLEIVERB_PROPERTIES, offered[0].lVerb);
    EXPECT_EQ(std::wstring(L"&About..."), offered[1].lpszVerbName);
    EXPECT_EQ(static_cast<DWORD>(OLEVERBATTRIB_ONCONTAINERMENU), offered[1].grfAttribs);
    const User user(kDialog, L"Discoplan.OCX ActiveX Control", [&](HWND box) {
      EXPECT_EQ(form.window, GetWindow(box, GW_OWNER));
      const auto lines = User::Children(box, L"STATIC");
      ASSERT_EQ(3U, lines.size());
      wchar_t text[64] = L"";
      GetWindowTextW(lines[0], text, 64);
      EXPECT_EQ(std::wstring(title), text);
      User::Press(box, L"OK");
    });
    EXPECT_EQ(S_OK, form.object->DoVerb(offered[1].lVerb, nullptr, &form, 0, form.window, nullptr));
    for (const OLEVERB& verb : offered) CoTaskMemFree(verb.lpszVerbName);
    EXPECT_EQ(nullptr, FindWindowW(kDialog, nullptr));
    EXPECT_EQ(OLEOBJ_S_INVALIDVERB,
              form.object->DoVerb(7, nullptr, &form, 0, form.window, nullptr));
  }
}

/// The container's side of a property page.
class PageSite final : public IPropertyPageSite {
 public:
  STDMETHODIMP QueryInterface(REFIID id, void** out) override {
    const bool own = id == IID_IUnknown || id == IID_IPropertyPageSite;
    *out = own ? this : nullptr;
    return own ? S_OK : E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return 2; }
  STDMETHODIMP_(ULONG) Release() override { return 1; }
  STDMETHODIMP OnStatusChange(DWORD flags) override { return told.push_back(flags), S_OK; }
  STDMETHODIMP GetLocaleID(LCID* id) override { return *id = LOCALE_INVARIANT, S_OK; }
  STDMETHODIMP GetPageContainer(IUnknown**) override { return E_NOTIMPL; }
  STDMETHODIMP TranslateAccelerator(MSG*) override { return S_FALSE; }

  std::vector<DWORD> told;
};

TEST(Page, WritesTheFirstOfTheSelectedControls) {
  const ComPtr<IDispatch> plot = NewPlot(L"Plot2D");
  const ComPtr<IDispatch> other = NewPlot(L"Plot2D");
  Put(*plot.Get(), L"TestDiameter", 140);
  CAUUID pages{};
  ASSERT_EQ(S_OK, As<ISpecifyPropertyPages>(plot)->GetPages(&pages));
  ASSERT_EQ(2U, pages.cElems);
  ComPtr<IPropertyPage> page;
  ASSERT_EQ(S_OK,
            CoCreateInstance(pages.pElems[0], nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&page)));
  CoTaskMemFree(pages.pElems);
  PROPPAGEINFO info{};
  info.cb = sizeof info;
  ASSERT_EQ(S_OK, page->GetPageInfo(&info));
  EXPECT_EQ(std::wstring(L"Wafer Size"), info.pszTitle);
  EXPECT_GT(info.size.cx, 100);
  CoTaskMemFree(info.pszTitle);
  PageSite site;
  EXPECT_EQ(S_OK, page->SetPageSite(&site));
  IUnknown* objects[] = {plot.Get(), other.Get()};
  ASSERT_EQ(S_OK, page->SetObjects(2, objects));
  Form form;
  const RECT place{0, 0, 400, 300};
  ASSERT_EQ(S_OK, page->Activate(form.window, &place, TRUE));
  EXPECT_EQ(S_FALSE, page->IsPageDirty());
  const auto fields = User::Children(form.window, L"EDIT");
  ASSERT_EQ(2U, fields.size());
  wchar_t text[32] = L"";
  GetWindowTextW(fields[1], text, 32);
  EXPECT_EQ(std::wstring(L"140"), text);
  SetWindowTextW(fields[1], L"120");
  SendMessageW(User::Button(form.window, L"Flat!"), BM_CLICK, 0, 0);
  EXPECT_EQ(S_OK, page->IsPageDirty());
  EXPECT_EQ((std::vector<DWORD>{PROPPAGESTATUS_DIRTY}), site.told);
  EXPECT_EQ(140, Get(*plot.Get(), L"TestDiameter"));
  ASSERT_EQ(S_OK, page->Apply());
  EXPECT_EQ(S_FALSE, page->IsPageDirty());
  EXPECT_EQ(120, Get(*plot.Get(), L"TestDiameter"));
  EXPECT_EQ(2, Get(*plot.Get(), L"WaferStyle"));
  EXPECT_EQ(194, Get(*other.Get(), L"TestDiameter"));
  EXPECT_EQ(S_OK, page->Deactivate());
  EXPECT_EQ(S_OK, page->SetObjects(0, nullptr));
  EXPECT_EQ(E_UNEXPECTED, page->Apply());
  EXPECT_EQ(S_OK, page->SetPageSite(nullptr));
  PageSite no_control;
  IUnknown* wrong = &no_control;
  EXPECT_EQ(E_NOINTERFACE, page->SetObjects(1, &wrong));
}

// The system's frame here applies nothing, so that it can only be cancelled.
TEST(Page, StandsInTheSystemsFrame) {
  for (const wchar_t* name : kPlots) {
    const ComPtr<IDispatch> plot = NewPlot(name);
    CAUUID pages{};
    ASSERT_EQ(S_OK, As<ISpecifyPropertyPages>(plot)->GetPages(&pages));
    IUnknown* object = plot.Get();
    Put(*plot.Get(), L"TestDiameter", 150);
    const User user(L"#32770", L"", [&](HWND frame) {
      const auto fields = User::Children(frame, L"EDIT");
      EXPECT_EQ(2U, fields.size()) << Utf8(name);
      wchar_t text[32] = L"";
      GetWindowTextW(fields.at(1), text, 32);
      EXPECT_EQ(std::wstring(L"150"), text) << Utf8(name);
      SetWindowTextW(fields[1], L"120");
      PostMessageW(frame, WM_COMMAND, IDCANCEL, 0);
    });
    EXPECT_EQ(S_OK, OleCreatePropertyFrame(nullptr, 0, 0, L"Plot", 1, &object, pages.cElems,
                                           pages.pElems, LOCALE_INVARIANT, 0, nullptr));
    CoTaskMemFree(pages.pElems);
    EXPECT_EQ(150, Get(*plot.Get(), L"TestDiameter")) << Utf8(name);
  }
}

}  // namespace
}  // namespace discoplan::activex
