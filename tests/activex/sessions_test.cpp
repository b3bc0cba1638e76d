// SPDX-License-Identifier: MIT
// Sessions of a user at the windows: reads requests from sessions.in and writes what came of each
// to sessions.out, for `window_sessions` to compare. Skipped without the file.

#include <deque>
#include <fstream>
#include <map>
#include <sstream>

#include "hosts/activex/ids.h"
#include "tests/activex/bag.h"
#include "tests/activex/container.h"
#include "tests/activex/node_ids.h"

namespace discoplan::activex {
namespace {

// Between the parts of an item, and at its end.
constexpr char kPart = '\x01';
constexpr char kEnd = '\x02';

using Fields = std::vector<std::string>;

Fields Split(const std::string& text, char at) {
  Fields fields;
  std::istringstream in(text);
  for (std::string field; std::getline(in, field, at);) fields.push_back(field);
  return fields;
}

std::string Text(double number) {
  char text[32];
  std::snprintf(text, sizeof text, "%.9g", number);
  return text;
}

std::string Text(const VARIANT& value) {
  if (value.vt == VT_DISPATCH) return value.pdispVal == nullptr ? "" : "object";
  if (value.vt == VT_BSTR) return Utf8({value.bstrVal, SysStringLen(value.bstrVal)});
  OwnedVariant number;
  EXPECT_EQ(S_OK, VariantChangeType(&number, const_cast<VARIANT*>(&value), 0, VT_R8));
  return Text(number.dblVal);
}

std::string TextOf(HWND window) {
  wchar_t text[512] = L"";
  GetWindowTextW(window, text, 512);
  return Utf8(text);
}

/// Of those that are seen, but for group boxes: class, text, place.
std::string WindowsIn(HWND form) {
  std::string list;
  for (HWND child = GetWindow(form, GW_CHILD); child != nullptr;
       child = GetWindow(child, GW_HWNDNEXT)) {
    if (!IsWindowVisible(child)) continue;
    wchar_t name[32] = L"";
    GetClassNameW(child, name, 32);
    const LONG_PTR kind = GetWindowLongPtrW(child, GWL_STYLE) & BS_TYPEMASK;
    if (std::wstring(name) == L"Button" && kind == BS_GROUPBOX) continue;
    RECT place{};
    GetWindowRect(child, &place);
    MapWindowPoints(nullptr, form, reinterpret_cast<POINT*>(&place), 2);
    list += Utf8(name) + kPart + TextOf(child) + kPart;
    for (const LONG number : {place.left, place.top, place.right - place.left}) {
      list += std::to_string(number) + ' ';
    }
    list += std::to_string(place.bottom - place.top) + kEnd;
  }
  return list;
}

/// What the user does with a child of a form, by messages alone: type, key, select, check, click.
void Act(HWND form, const NodeIds& ids, const Fields& action) {
  const HWND child = GetDlgItem(form, ids[action[1]]);
  ASSERT_NE(nullptr, child) << action[1];
  const std::string value = action.size() > 2 ? action[2] : std::string();
  if (action[0] == "type") {
    SetWindowTextW(child, Wide(value).c_str());
  } else if (action[0] == "click") {
    PostMessageW(child, BM_CLICK, 0, 0);
  } else if (action[0] == "key") {
    SendMessageW(child, WM_KEYDOWN, static_cast<WPARAM>(std::stoi(value)), 0);
  } else if (action[0] == "spin") {
    NMUPDOWN turned{{child, static_cast<UINT_PTR>(ids[action[1]]), UDN_DELTAPOS}, 0, 0};
    turned.iDelta = std::stoi(value);
    SendMessageW(form, WM_NOTIFY, turned.hdr.idFrom, reinterpret_cast<LPARAM>(&turned));
  } else {
    // An option is one of several windows with the number of their group, behind its frame.
    const int index = action[0] == "select" ? std::stoi(value) + 1 : 0;
    HWND at = child;
    for (int i = 0; i < index; ++i) at = GetWindow(at, GW_HWNDNEXT);
    const bool on = SendMessageW(at, BM_GETCHECK, 0, 0) == BST_CHECKED;
    if (action[0] == "select" || on != (value == "1")) SendMessageW(at, BM_CLICK, 0, 0);
  }
}

/// A property page in a window of its own.
class Page {
 public:
  Page(const std::string& name, IUnknown* plot) : ids_(Numbering::OfPage(name)) {
    EXPECT_EQ(S_OK, CoCreateInstance(ToGuid(PageId(name)), nullptr, CLSCTX_INPROC_SERVER,
                                     IID_PPV_ARGS(&page_)));
    EXPECT_EQ(S_OK, page_->SetObjects(1, &plot));
    const RECT place{0, 0, 500, 400};
    EXPECT_EQ(S_OK, page_->Activate(frame_.window, &place, FALSE));
  }
  ~Page() {
    page_->Deactivate();
    page_->SetObjects(0, nullptr);
  }
  Page(const Page&) = delete;
  Page& operator=(const Page&) = delete;

  HWND window() const { return FindWindowExW(frame_.window, nullptr, L"Discoplan.Form", nullptr); }
  const NodeIds& ids() const { return ids_; }
  IPropertyPage& page() const { return *page_.Get(); }

 private:
  Form frame_;
  const NodeIds ids_;
  ComPtr<IPropertyPage> page_;
};

class Session {
 public:
  Session() : timer_(SetTimer(nullptr, 0, 10, &Look)) { user_ = this; }
  ~Session() {
    KillTimer(nullptr, timer_);
    Drop({});
  }
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  /// The value, then events, announcements and messages.
  std::string Run(const Fields& request) {
    using Operation = std::string (Session::*)(const Fields&);
    static const std::map<std::string, Operation> kOperations = {
        {"new", &Session::New},         {"drop", &Session::Drop},   {"set", &Session::Use},
        {"get", &Session::Use},         {"call", &Session::Use},    {"size", &Session::Size},
        {"mouse", &Session::Mouse},     {"store", &Session::Store}, {"dialog", &Session::Dialog},
        {"windows", &Session::Windows}, {"focus", &Session::Focus}, {"show", &Session::Show},
        {"input", &Session::Input},     {"page", &Session::Open},   {"apply", &Session::Apply},
        {"changed", &Session::Changed}, {"close", &Session::Close}, {"sites", &Session::Sites}};
    sink_.events.clear();
    changes_.changed.clear();
    messages_.clear();
    std::string answer = (this->*kOperations.at(request[0]))(request);
    RunMessages();
    for (const EventSink::Event& event : sink_.events) {
      answer += "|e" + std::to_string(event.id);
      for (const double arg : event.args) answer += ',' + Text(arg);
    }
    for (const DISPID id : changes_.changed) answer += "|a" + Announced(id);
    for (const std::string& message : messages_) answer += "|m" + message;
    return answer;
  }

 private:
  /// The name that the library announces where a container is told the id.
  std::string Announced(DISPID id) const {
    const Member* member = FindControlClass(kind_)->members.Find(id);
    return member != nullptr ? std::string(member->announced) : "?";
  }

  std::string New(const Fields& request) {
    Drop({});
    kind_ = request[1];
    ids_ = Numbering::OfControl(request[1]);
    dialog_ids_ = Numbering::OfDialog(request[1]);
    plot_ = NewPlot(Wide(request[1]).c_str());
    form_ = std::make_unique<Form>();
    form_->Place(plot_, {0, 0, std::stoi(request[2]), std::stoi(request[3])});
    cookie_ = Connect(*plot_.Get(), sink_, IID_IDispatch);
    changes_cookie_ = Connect(*plot_.Get(), changes_, IID_IPropertyNotifySink);
    return {};
  }
  std::string Drop(const Fields&) {
    if (!plot_) return {};
    page_ = nullptr;
    Disconnect(*plot_.Get(), cookie_, IID_IDispatch);
    Disconnect(*plot_.Get(), changes_cookie_, IID_IPropertyNotifySink);
    form_ = nullptr;
    plot_ = nullptr;
    queued_.clear();
    return {};
  }

  std::string Use(const Fields& request) {
    std::deque<OwnedVariant> kept;
    std::deque<Singles> arrays;
    std::vector<VARIANT> args;
    for (std::size_t i = 2; i < request.size(); ++i) {
      const char kind = request[i][0];
      const std::string text = request[i].substr(1);
      if (kind == 'a') {
        std::vector<float> values;
        const Fields parts = Split(text, ',');
        for (std::size_t k = 1; k < parts.size(); ++k) values.push_back(std::stof(parts[k]));
        arrays.emplace_back(std::stoi(parts[0]), values);
        args.push_back(arrays.back().ByReference());
      } else if (kind == 's') {
        kept.emplace_back().bstrVal = SysAllocString(Wide(text).c_str());
        kept.back().vt = VT_BSTR;
        args.push_back(kept.back());
      } else {
        args.push_back(Of(std::stod(text)));
      }
    }
    const WORD kind = request[0] == "set"   ? DISPATCH_PROPERTYPUT
                      : request[0] == "get" ? DISPATCH_PROPERTYGET
                                            : DISPATCH_METHOD;
    const Outcome outcome = Invoke(*plot_.Get(), Wide(request[1]).c_str(), kind, args);
    if (FAILED(outcome.result)) return '!' + std::to_string(outcome.error);
    if (request[0] == "set") return {};
    return outcome.text.value_or(Text(outcome.number));
  }
  /// The sites, into arrays that have never been dimensioned.
  std::string Sites(const Fields&) {
    SAFEARRAY* arrays[3] = {};
    std::vector<VARIANT> args(3);
    for (std::size_t i = 0; i < 3; ++i) {
      args[i].vt = VT_ARRAY | VT_R4 | VT_BYREF;
      args[i].pparray = &arrays[i];
    }
    std::string answer = Text(Invoke(*plot_.Get(), L"GetWaferData", DISPATCH_METHOD, args).number);
    for (SAFEARRAY* array : arrays) {
      answer += kEnd;
      if (array == nullptr) continue;
      answer += std::to_string(array->rgsabound[0].lLbound);
      for (ULONG i = 0; i < array->rgsabound[0].cElements; ++i) {
        answer += kPart + Text(static_cast<double>(static_cast<const float*>(array->pvData)[i]));
      }
      SafeArrayDestroy(array);
    }
    return answer;
  }

  std::string Size(const Fields& request) {
    const RECT place{0, 0, std::stoi(request[1]), std::stoi(request[2])};
    form_->place = place;
    As<IOleInPlaceObject>(plot_)->SetObjectRects(&place, &place);
    return {};
  }
  std::string Windows(const Fields&) {
    return WindowsIn(page_ ? page_->window() : form_->PlotWindow());
  }
  std::string Store(const Fields&) {
    Bag bag;
    EXPECT_EQ(S_OK, As<IPersistPropertyBag>(plot_)->Save(&bag, FALSE, TRUE));
    std::string answer;
    for (const std::wstring& key : bag.order) {
      const VARIANT& value = bag.entries[key];
      answer += Utf8(key) + kPart + std::to_string(value.vt) + kPart + Text(value) + kEnd;
    }
    return answer;
  }

  /// From elsewhere; the answer is the name of the child that has it then.
  std::string Focus(const Fields&) {
    As<IOleInPlaceObject>(plot_)->UIDeactivate();
    SetFocus(form_->window);
    EXPECT_EQ(S_OK, form_->object->DoVerb(OLEIVERB_UIACTIVATE, nullptr, form_.get(), 0,
                                          form_->window, &form_->place));
    const HWND focus = GetFocus();
    EXPECT_TRUE(focus == form_->PlotWindow() || IsChild(form_->PlotWindow(), focus));
    return focus == form_->PlotWindow() ? "" : ids_.NameOf(GetDlgCtrlID(focus));
  }
  std::string Show(const Fields&) {
    EXPECT_EQ(S_OK, As<IOleInPlaceObject>(plot_)->InPlaceDeactivate());
    EXPECT_EQ(S_OK, form_->object->DoVerb(OLEIVERB_SHOW, nullptr, form_.get(), 0, form_->window,
                                          &form_->place));
    return {};
  }
  std::string Mouse(const Fields& request) {
    const HWND window = form_->PlotWindow();
    const LPARAM at = MAKELPARAM(std::stoi(request[2]), std::stoi(request[3]));
    if (request[1] == "move") {
      SendMessageW(window, WM_MOUSEMOVE, 0, at);
      return {};
    }
    SendMessageW(window, request[1] == "twice" ? WM_LBUTTONDBLCLK : WM_LBUTTONDOWN, MK_LBUTTON, at);
    SendMessageW(window, WM_LBUTTONUP, 0, at);
    return {};
  }
  std::string Input(const Fields& request) {
    const Fields action(request.begin() + 1, request.end());
    const HWND form = page_ ? page_->window() : form_->PlotWindow();
    const NodeIds& ids = page_ ? page_->ids() : ids_;
    if (!IsWindowVisible(GetDlgItem(form, ids[action.at(1)]))) return "!";  // nobody can
    Act(form, ids, action);
    return {};
  }

  std::string Open(const Fields& request) {
    page_ = std::make_unique<Page>(request[1], plot_.Get());
    return {};
  }
  std::string Apply(const Fields&) { return FAILED(page_->page().Apply()) ? "!" : ""; }
  std::string Changed(const Fields&) { return page_->page().IsPageDirty() == S_OK ? "-1" : "0"; }
  std::string Close(const Fields&) { return page_ = nullptr, ""; }

  std::string Dialog(const Fields& request) {
    queued_.push_back({request.begin() + 1, request.end()});
    return {};
  }

  /// Answers boxes by OK, fills in dialogs as they come, and closes those that stay open after
  /// that. What was posted comes before the next look.
  static void CALLBACK Look(HWND, UINT, UINT_PTR, DWORD) {
    if (const HWND box = FindWindowW(L"#32770", nullptr); box != nullptr && IsWindowVisible(box)) {
      constexpr int kText = 0xFFFF;
      if (std::exchange(user_->box_, box) != box) {
        user_->messages_.push_back(TextOf(box) + kPart + TextOf(GetDlgItem(box, kText)));
      }
      PostMessageW(box, WM_COMMAND, IDOK, 0);
      return;
    }
    user_->box_ = nullptr;
    const HWND dialog = FindWindowW(L"Discoplan.Dialog", nullptr);
    if (dialog == nullptr || !IsWindowVisible(dialog)) return void(user_->seen_ = nullptr);
    if (std::exchange(user_->seen_, dialog) == dialog || user_->queued_.empty()) {
      PostMessageW(dialog, WM_CLOSE, 0, 0);
      return;
    }
    const Fields actions = user_->queued_.front();
    user_->queued_.pop_front();
    const HWND form = FindWindowExW(dialog, nullptr, L"Discoplan.Form", nullptr);
    for (const std::string& action : actions)
      activex::Act(form, user_->dialog_ids_, Split(action, kPart));
  }

  std::string kind_;
  ComPtr<IDispatch> plot_;
  std::unique_ptr<Form> form_;
  std::unique_ptr<Page> page_;  // the open one
  NodeIds ids_, dialog_ids_;
  EventSink sink_;
  PropertySink changes_;
  DWORD cookie_ = 0;
  DWORD changes_cookie_ = 0;
  std::deque<Fields> queued_;  // of what is done in dialogs
  HWND seen_ = nullptr;        // the dialog that was filled in
  HWND box_ = nullptr;         // the box that was answered
  Fields messages_;
  const UINT_PTR timer_;
  inline static Session* user_ = nullptr;
};

TEST(Sessions, AreAnswered) {
  std::ifstream in("sessions.in", std::ios::binary);
  if (!in) GTEST_SKIP() << "there are none";
  std::ofstream out("sessions.out", std::ios::binary);
  Session session;
  for (std::string line; std::getline(in, line);) {
    std::string answer = session.Run(Split(line, '\t'));
    std::replace(answer.begin(), answer.end(), '\n', ' ');
    out << answer << '\n';
  }
  EXPECT_TRUE(out.good());
}

}  // namespace
}  // namespace discoplan::activex
