// SPDX-License-Identifier: MIT
// Sessions of a user at the windows: reads requests from sessions.in and writes what came of each
// to sessions.out, for `window_sessions` to compare. Skipped without the file.

#include <deque>
#include <fstream>
#include <map>
#include <sstream>

#include "discoplan/controls/control_factory.h"
#include "discoplan/forms/form.h"
#include "hosts/activex/gdi_text.h"
#include "tests/activex/container.h"

namespace discoplan::activex {
namespace {

using Fields = std::vector<std::string>;

Fields Split(const std::string& text, char at) {
  Fields fields;
  std::istringstream in(text);
  for (std::string field; std::getline(in, field, at);) fields.push_back(field);
  return fields;
}

/// The numbers of the child windows of a control's dialog, by the names of their nodes.
class DialogNames final : public Platform {
 public:
  explicit DialogNames(const std::string& plot) {
    const auto control = NewControl(plot, *this, nullptr);
    control->root().Move({0, 0, 6000, 4500});
    control->InitProperties();
    control->ShowPlotOption();
  }
  std::map<std::string, int> ids;

 private:
  const Screen& screen() const override { return screen_; }
  const TextPainter& text() const override { return text_; }
  void Show(const Message&) override {}
  void ShowModal(const std::shared_ptr<discoplan::Form>& form,
                 const std::function<void()>& done) override {
    int id = 100;
    ForEachNode(form->root(), [&](Node& node) {
      const bool has = node.kind == NodeKind::Button || node.kind == NodeKind::Text ||
                       node.kind == NodeKind::Check || node.kind == NodeKind::Options ||
                       node.kind == NodeKind::Spinner || node.kind == NodeKind::Label ||
                       (node.kind == NodeKind::Frame && node.Bordered());
      if (has) ids[node.name] = id++;
    });
    form->Cancel();
    if (done) done();
  }

  Screen screen_;
  GdiText text_;
};

class Session {
 public:
  std::string Run(const Fields& request) {
    sink_.events.clear();
    std::string answer;
    const std::string& op = request[0];
    if (op == "new") {
      New(request);
    } else if (op == "drop") {
      Drop();
    } else if (op == "set" || op == "get" || op == "call") {
      answer = Member(request);
    } else if (op == "size") {
      const RECT place{0, 0, std::stoi(request[1]), std::stoi(request[2])};
      form_->place = place;
      As<IOleInPlaceObject>(plot_)->SetObjectRects(&place, &place);
    } else if (op == "mouse") {
      Mouse(request);
    } else if (op == "dialog") {
      queued_.push_back({request.begin() + 1, request.end()});
    } else if (op == "windows") {
      answer = Windows();
    } else {
      ADD_FAILURE() << op;
    }
    RunMessages();
    for (const EventSink::Event& event : sink_.events) {
      answer += '|' + std::to_string(event.id);
      for (const double arg : event.args) answer += ',' + Text(arg);
    }
    return answer;
  }
  Session() : timer_(SetTimer(nullptr, 0, 10, &Look)) { user_ = this; }
  ~Session() {
    KillTimer(nullptr, timer_);
    Drop();
  }
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

 private:
  static std::string Text(double number) {
    char text[32];
    std::snprintf(text, sizeof text, "%.9g", number);
    return text;
  }

  void New(const Fields& request) {
    Drop();
    const std::wstring name = Wide(request[1]);
    names_ = std::make_unique<DialogNames>(request[1]);
    plot_ = NewPlot(name.c_str());
    form_ = std::make_unique<Form>();
    form_->Place(plot_, {0, 0, std::stoi(request[2]), std::stoi(request[3])});
    cookie_ = Connect(*plot_.Get(), sink_, IID_IDispatch);
  }
  void Drop() {
    if (!plot_) return;
    Disconnect(*plot_.Get(), cookie_, IID_IDispatch);
    form_ = nullptr;
    plot_ = nullptr;
    queued_.clear();
  }

  std::string Member(const Fields& request) {
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
    return request[0] == "set" ? "" : Text(outcome.number);
  }

  /// Answers boxes by OK, fills in dialogs as they come, and closes those that stay open after
  /// that. What was posted comes before the next look.
  static void CALLBACK Look(HWND, UINT, UINT_PTR, DWORD) {
    if (const HWND box = FindWindowW(L"#32770", nullptr); box != nullptr && IsWindowVisible(box)) {
      PostMessageW(box, WM_COMMAND, IDOK, 0);
      return;
    }
    const HWND dialog = FindWindowW(L"Discoplan.Dialog", nullptr);
    if (dialog == nullptr || !IsWindowVisible(dialog)) return void(user_->seen_ = nullptr);
    if (std::exchange(user_->seen_, dialog) == dialog || user_->queued_.empty()) {
      PostMessageW(dialog, WM_CLOSE, 0, 0);
      return;
    }
    const Fields actions = user_->queued_.front();
    user_->queued_.pop_front();
    user_->Act(dialog, actions);
  }

  /// By messages alone.
  void Act(HWND dialog, const Fields& actions) {
    const HWND form = FindWindowExW(dialog, nullptr, L"Discoplan.Form", nullptr);
    for (const std::string& action : actions) {
      const Fields parts = Split(action + '\x02', '\x01');
      const std::string value =
          parts.size() > 2 ? parts[2].substr(0, parts[2].find('\x02')) : std::string();
      const std::string name = parts[1].substr(0, parts[1].find('\x02'));
      const HWND child = GetDlgItem(form, names_->ids.at(name));
      if (parts[0] == "type") {
        SetWindowTextW(child, Wide(value).c_str());
      } else if (parts[0] == "click") {
        PostMessageW(child, BM_CLICK, 0, 0);
        return;
      } else {
        // An option is one of several windows with the number of their group, behind its frame.
        const int index = parts[0] == "select" ? std::stoi(value) + 1 : 0;
        HWND at = child;
        for (int i = 0; i < index; ++i) at = GetWindow(at, GW_HWNDNEXT);
        const bool on = SendMessageW(at, BM_GETCHECK, 0, 0) == BST_CHECKED;
        if (parts[0] == "select" || on != (value == "1")) SendMessageW(at, BM_CLICK, 0, 0);
      }
    }
  }

  void Mouse(const Fields& request) {
    const HWND window = form_->PlotWindow();
    const LPARAM at = MAKELPARAM(std::stoi(request[2]), std::stoi(request[3]));
    if (request[1] == "move") {
      SendMessageW(window, WM_MOUSEMOVE, 0, at);
      return;
    }
    SendMessageW(window, request[1] == "twice" ? WM_LBUTTONDBLCLK : WM_LBUTTONDOWN, MK_LBUTTON, at);
    SendMessageW(window, WM_LBUTTONUP, 0, at);
  }

  /// Of those that are seen, but for group boxes: class, text, place.
  std::string Windows() {
    std::string list;
    const HWND form = form_->PlotWindow();
    for (HWND child = GetWindow(form, GW_CHILD); child != nullptr;
         child = GetWindow(child, GW_HWNDNEXT)) {
      if (!IsWindowVisible(child)) continue;
      wchar_t name[32] = L"";
      GetClassNameW(child, name, 32);
      const bool is_button = std::wstring(name) == L"Button";
      const LONG_PTR kind = GetWindowLongPtrW(child, GWL_STYLE) & BS_TYPEMASK;
      if (is_button && kind == BS_GROUPBOX) continue;
      wchar_t text[128] = L"";
      GetWindowTextW(child, text, 128);
      RECT place{};
      GetWindowRect(child, &place);
      MapWindowPoints(nullptr, form, reinterpret_cast<POINT*>(&place), 2);
      list += Utf8(name) + '\x01' + Utf8(text) + '\x01' + std::to_string(place.left) + ' ' +
              std::to_string(place.top) + ' ' + std::to_string(place.right - place.left) + ' ' +
              std::to_string(place.bottom - place.top) + '\x02';
    }
    return list;
  }

  ComPtr<IDispatch> plot_;
  std::unique_ptr<Form> form_;
  std::unique_ptr<DialogNames> names_;
  EventSink sink_;
  DWORD cookie_ = 0;
  std::deque<Fields> queued_;  // of what is done in dialogs
  HWND seen_ = nullptr;        // the dialog that was filled in
  const UINT_PTR timer_;
  inline static Session* user_ = nullptr;
};

TEST(Sessions, AreAnswered) {
  std::ifstream in("sessions.in", std::ios::binary);
  if (!in) GTEST_SKIP() << "there are none";
  std::ofstream out("sessions.out", std::ios::binary);
  Session session;
  for (std::string line; std::getline(in, line);) out << session.Run(Split(line, '\t')) << '\n';
  EXPECT_TRUE(out.good());
}

}  // namespace
}  // namespace discoplan::activex
