// SPDX-License-Identifier: MIT
#pragma once

/// The automation host: one JSON request a line in, one JSON reply a line out.
///
///     AutomationSession session;
///     std::cout << session.Answer(R"({"op":"new","class":"Plot2D","id":"p"})") << '\n';
///
/// Whatever a request holds, it gets a reply, and the next one is answered as well. One thread uses
/// a session.

#include <deque>
#include <iosfwd>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "discoplan/controls/plot_control.h"
#include "hosts/automation/values.h"
#include "hosts/recording/recording_host.h"

namespace discoplan {

class AutomationSession {
 public:
  AutomationSession();

  /// The reply to one request, without the end of line.
  std::string Answer(std::string_view line);
  /// Answers line by line until the input ends; false if a reply can't be written, and then no
  /// further request is carried out.
  [[nodiscard]] bool Run(std::istream& requests, std::ostream& replies);

 private:
  using json = nlohmann::json;
  using Operation = void (AutomationSession::*)(const json& request, json& reply);

  /// A control with what it tells its container, or a surface.
  struct Entry {
    std::shared_ptr<RecordingContainer> container;
    ObjectRef object;
  };

  static const std::map<std::string, Operation, std::less<>>& Operations();

  void New(const json& request, json& reply);
  void Drop(const json& request, json& reply);
  void Get(const json& request, json& reply);
  void Set(const json& request, json& reply);
  void Call(const json& request, json& reply);
  void Size(const json& request, json& reply);
  void Tree(const json& request, json& reply);
  void TakeTrace(const json& request, json& reply);
  void Draw(const json& request, json& reply);
  void Save(const json& request, json& reply);
  void Members(const json& request, json& reply);
  void Store(const json& request, json& reply);
  void Mouse(const json& request, json& reply);
  void Focus(const json& request, json& reply);
  void Show(const json& request, json& reply);
  void Input(const json& request, json& reply);
  void SetScreen(const json& request, json& reply);
  void Dialog(const json& request, json& reply);

  Entry NewEntry(const json& request, const std::string& class_name);
  Entry NewControlEntry(const json& request, const std::string& class_name);
  ObjectRef NewForm(const json& request, const std::string& class_name);
  void ActInDialog(Form& form);
  Node& RootOf(const json& request);
  ObjectRef NewSurface(const json& request, bool printer);
  json ReplyTo(std::string_view line);
  void Perform(const json& request, json& reply);
  void Report(json& reply);
  Object& ObjectOf(const json& request);
  PlotControl& ControlOf(const json& request);
  /// The picture surface that the request names, or the object itself where it names none.
  Surface& SurfaceOf(const json& request);

  RecordingHost host_;
  std::map<std::string, Entry> entries_;  // by the id's JSON text
  std::map<const Object*, json> ids_;
  ObjectNames names_;
  std::deque<json> queued_;  // what the user will do in the next dialogs
  json shown_ = json::array();
  std::string trace_;  // the value of the reply, where it is one; the last of its keys
};

}  // namespace discoplan
