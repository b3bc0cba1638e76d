// SPDX-License-Identifier: MIT
#include "hosts/automation/session.h"

#include <array>
#include <istream>
#include <ostream>

#include "discoplan/base/memory_reserve.h"
#include "discoplan/base/numbers.h"
#include "discoplan/controls/control_factory.h"
#include "discoplan/dialogs/about_box.h"
#include "discoplan/dialogs/property_page.h"
#include "hosts/automation/draw_calls.h"
#include "hosts/automation/store_text.h"
#include "hosts/automation/tree_text.h"
#include "hosts/automation/user_input.h"
#include "hosts/headless/png_file.h"
#include "hosts/json/json_text.h"

namespace discoplan {
namespace {

using nlohmann::json;

constexpr int kDeepestRequest = 64;
constexpr float kControlWidth = 6000;
constexpr float kControlHeight = 4500;
constexpr float kPrinterTwipsPerPixel = 2.4F;
constexpr float kPictureTwipsPerPixel = 15;

json Parse(std::string_view line) {
  const auto check_depth = [](int depth, json::parse_event_t, json&) {
    if (depth > kDeepestRequest) throw RequestError("The request is nested too deeply.");
    return true;
  };
  try {
    return json::parse(line, check_depth);
  } catch (const json::out_of_range&) {
    throw RequestError("A number of the request is out of a 64-bit float's range.");
  } catch (const json::exception&) {
    throw RequestError("The request is no well-formed JSON in UTF-8.");
  }
}

std::string Key(const json& id) {
  if (!id.is_string() && !id.is_number_integer()) {
    throw RequestError("An id must be a text or a whole number.");
  }
  return id.dump();
}

/// A picture of a resolution that is not the screen's.
struct OwnPicture {
  OwnPicture(const RecordingHost& host, const Screen& own, float width, float height)
      : resolution(own),
        picture(
            Picture::Setting{
                .screen = host.screen(), .resolution = resolution, .text = host.text()},
            width, height) {}

  const Screen resolution;
  Recording<Picture> picture;
};

MouseEvent ToMouseEvent(const std::string& name) {
  constexpr std::array<std::string_view, 5> kNames = {"Click", "DblClick", "MouseDown", "MouseMove",
                                                      "MouseUp"};
  for (std::size_t i = 0; i < kNames.size(); ++i) {
    if (name == kNames[i]) return static_cast<MouseEvent>(i);
  }
  throw RequestError("There is no event \"" + name + "\".");
}

}  // namespace

AutomationSession::AutomationSession() {
  names_.object = [this](const json& id) {
    const auto entry = entries_.find(Key(id));
    if (entry == entries_.end()) throw RequestError("There is no object " + JsonText(id) + ".");
    return entry->second.object;
  };
  names_.id = [this](const Object* object) {
    return ids_.contains(object) ? ids_[object] : json();
  };
  host_.OnModal([this](Form& form) { ActInDialog(form); });
}

const std::map<std::string, AutomationSession::Operation, std::less<>>&
AutomationSession::Operations() {
  using S = AutomationSession;
  static const std::map<std::string, Operation, std::less<>> operations = {
      {"new", &S::New},     {"drop", &S::Drop},       {"get", &S::Get},
      {"set", &S::Set},     {"call", &S::Call},       {"size", &S::Size},
      {"tree", &S::Tree},   {"trace", &S::TakeTrace}, {"draw", &S::Draw},
      {"save", &S::Save},   {"members", &S::Members}, {"mouse", &S::Mouse},
      {"focus", &S::Focus}, {"show", &S::Show},       {"screen", &S::SetScreen},
      {"input", &S::Input}, {"store", &S::Store},     {"dialog", &S::Dialog},
  };
  return operations;
}

std::string AutomationSession::Answer(std::string_view line) {
  const MemoryReserve reserve;
  try {
    trace_.clear();
    std::string reply = JsonText(ReplyTo(line));
    if (trace_.empty()) return reply;
    reply.pop_back();
    return reply + ",\"value\":" + trace_ + '}';
  } catch (const std::bad_alloc&) {
    return R"({"error":"The reply needs more memory than there is.","ok":false})";
  }
}

AutomationSession::json AutomationSession::ReplyTo(std::string_view line) {
  json reply = {{"ok", true}};
  const auto fail = [&](const std::string& sentence) {
    reply = {{"ok", false}, {"error", sentence}};
  };
  try {
    Perform(Parse(line), reply);
  } catch (const RunTimeError& error) {
    fail(std::string(error.what()) + " (run-time error " +
         std::to_string(static_cast<int>(error.fault())) + ").");
  } catch (const FileError& error) {
    fail(std::string(error.what()) + ".");
  } catch (const std::bad_alloc&) {
    fail("The request needs more memory than there is.");
  } catch (const std::exception& error) {
    fail(error.what());
  }
  Report(reply);
  return reply;
}

bool AutomationSession::Run(std::istream& requests, std::ostream& replies) {
  std::string line;
  while (replies && std::getline(requests, line)) replies << Answer(line) << std::endl;
  return !replies.fail();
}

void AutomationSession::Perform(const json& request, json& reply) {
  if (!request.is_object()) throw RequestError("A request is a JSON object.");
  const std::string name = TextField(request, "op");
  const auto operation = Operations().find(name);
  if (operation == Operations().end()) {
    throw RequestError("There is no operation \"" + name + "\".");
  }
  (this->*operation->second)(request, reply);
}

/// What controls told their containers and the user in the meantime.
void AutomationSession::Report(json& reply) {
  for (auto& [key, entry] : entries_) {
    if (!entry.container) continue;
    for (const std::string& name : entry.container->TakeAnnounced()) {
      reply["announced"].push_back(name);
    }
    for (const auto& [name, args] : entry.container->TakeRaised()) {
      json event = json::array({name});
      for (const Variant& arg : args) event.push_back(ToJson(arg, names_));
      reply["raised"].push_back(std::move(event));
    }
  }
  if (!shown_.empty()) reply["dialogs"] = std::exchange(shown_, json::array());
  for (const Message& message : host_.TakeMessages()) {
    reply["messages"].push_back({{"text", message.text},
                                 {"title", message.title},
                                 {"critical", message.critical ? -1 : 0},
                                 {"system_modal", message.system_modal ? -1 : 0}});
  }
}

Object& AutomationSession::ObjectOf(const json& request) {
  return *names_.object(Field(request, "id"));
}

PlotControl& AutomationSession::ControlOf(const json& request) {
  if (auto* control = dynamic_cast<PlotControl*>(&ObjectOf(request))) return *control;
  throw RequestError("The object " + JsonText(Field(request, "id")) + " is no control.");
}

Node& AutomationSession::RootOf(const json& request) {
  if (auto* form = dynamic_cast<Form*>(&ObjectOf(request))) return form->root();
  return ControlOf(request).root();
}

Surface& AutomationSession::SurfaceOf(const json& request) {
  if (!request.contains("surface")) {
    if (auto* surface = dynamic_cast<Surface*>(&ObjectOf(request))) return *surface;
    throw RequestError("A control needs a field \"surface\" here.");
  }
  const std::string name = TextField(request, "surface");
  const Node* node = RootOf(request).Find(name);
  if (node == nullptr || !node->Picture()) {
    throw RequestError("There is no picture surface \"" + name + "\".");
  }
  return *node->Picture();
}

void AutomationSession::New(const json& request, json&) {
  const json& id = Field(request, "id");
  const std::string key = Key(id);
  if (entries_.contains(key)) throw RequestError("The id " + id.dump() + " is in use.");
  Entry entry = NewEntry(request, TextField(request, "class"));
  ids_[entry.object.get()] = id;
  entries_.emplace(key, std::move(entry));
}

AutomationSession::Entry AutomationSession::NewEntry(const json& request,
                                                     const std::string& class_name) {
  if (class_name == "Printer" || class_name == "Picture") {
    return {.container = nullptr, .object = NewSurface(request, class_name == "Printer")};
  }
  if (const ObjectRef form = NewForm(request, class_name)) {
    return {.container = nullptr, .object = form};
  }
  return NewControlEntry(request, class_name);
}

/// A property page or the about box; nothing for another class.
ObjectRef AutomationSession::NewForm(const json& request, const std::string& class_name) {
  if (class_name == "frmAbout") {
    auto about = std::make_shared<frmAbout>(host_);
    about->Show();
    return about;
  }
  std::shared_ptr<PropertyPage> page = NewPropertyPage(class_name, host_);
  if (page && request.contains("control")) {
    page->Select(names_.object(request["control"]).get());
  }
  return page;
}

AutomationSession::Entry AutomationSession::NewControlEntry(const json& request,
                                                            const std::string& class_name) {
  const float width = NumberField(request, "width", kControlWidth);
  const float height = NumberField(request, "height", kControlHeight);
  auto container = std::make_shared<RecordingContainer>();
  std::shared_ptr<PlotControl> control = NewControl(class_name, host_, container.get());
  if (!control) throw RequestError("There is no class \"" + class_name + "\".");
  control->root().Move({0, 0, width, height});
  if (request.contains("store")) {
    control->ReadProperties(StoreFromJson(request["store"], *control, names_));
  } else {
    control->InitProperties();
  }
  control->SetSize(width, height);
  return {.container = std::move(container), .object = std::move(control)};
}

ObjectRef AutomationSession::NewSurface(const json& request, bool printer) {
  const float otherwise = printer ? kPrinterTwipsPerPixel : kPictureTwipsPerPixel;
  const Screen resolution{NumberField(request, "twips_per_pixel_x", otherwise),
                          NumberField(request, "twips_per_pixel_y", otherwise)};
  const float width = NumberField(request, "width", kControlWidth);
  const float height = NumberField(request, "height", kControlHeight);
  if (printer) {
    return std::make_shared<Recording<Paper>>(host_.screen(), resolution, width, height);
  }
  const auto own = std::make_shared<OwnPicture>(host_, resolution, width, height);
  return ObjectRef(own, &own->picture);
}

void AutomationSession::Drop(const json& request, json&) {
  const json& id = Field(request, "id");
  const Object& dropped = *names_.object(id);
  for (auto& [key, entry] : entries_) {
    if (auto* page = dynamic_cast<PropertyPage*>(entry.object.get())) page->Forget(dropped);
  }
  ids_.erase(&dropped);
  entries_.erase(Key(id));
}

void AutomationSession::Get(const json& request, json& reply) {
  Object& object = ObjectOf(request);
  const std::string name = TextField(request, "name");
  const Member& member = object.Members().At(name);
  if (member.get == nullptr) throw RequestError("\"" + name + "\" is a method; call it.");
  reply["value"] = ToJson(member.Get(object), names_);
}

void AutomationSession::Set(const json& request, json&) {
  Object& object = ObjectOf(request);
  const std::string name = TextField(request, "name");
  const Member& member = object.Members().At(name);
  if (!member.writable()) throw RequestError("\"" + name + "\" can't be written.");
  member.Set(object, ToVariant(Field(request, "value"), member.type, names_));
}

void AutomationSession::Call(const json& request, json& reply) {
  Object& object = ObjectOf(request);
  const std::string name = TextField(request, "name");
  const Member& member = object.Members().At(name);
  if (member.call == nullptr) throw RequestError("\"" + name + "\" is a property; get or set it.");
  const json args = request.value("args", json::array());
  if (!args.is_array() || args.size() != member.parameters.size()) {
    throw RequestError("\"" + name + "\" takes a list of " +
                       std::to_string(member.parameters.size()) + " arguments.");
  }
  std::vector<Variant> values;
  for (std::size_t i = 0; i < args.size(); ++i) {
    values.push_back(ToVariant(args[i], member.parameters[i].type, names_));
  }
  const auto in_json = [&] {
    json list = json::array();
    for (const Variant& value : values) list.push_back(ToJson(value, names_));
    return list;
  };
  // Compared as they are written: no number equals itself, and what is empty stays null.
  const json before = in_json();
  const Variant result = member.Call(object, values);
  if (member.type != Type::None) reply["value"] = ToJson(result, names_);
  if (json after = in_json(); after != before) reply["args"] = std::move(after);
}

void AutomationSession::Size(const json& request, json&) {
  ControlOf(request).SetSize(NumberField(request, "width"), NumberField(request, "height"));
}

void AutomationSession::Tree(const json& request, json& reply) {
  reply["value"] = TreeToJson(RootOf(request));
}

void AutomationSession::TakeTrace(const json& request, json& reply) {
  auto& traced = dynamic_cast<Traced&>(SurfaceOf(request));
  trace_ = traced.TakeTraceText();
  if (const std::uint64_t count = traced.TakeLeftOut()) reply["left_out"] = count;
}

void AutomationSession::Draw(const json& request, json&) {
  DrawCalls(SurfaceOf(request), Field(request, "calls"));
}

void AutomationSession::Save(const json& request, json&) {
  const auto* picture = dynamic_cast<const Picture*>(&SurfaceOf(request));
  if (picture == nullptr) throw RequestError("A printer has no pixels to save.");
  const Canvas& canvas = picture->canvas();
  WritePng(TextField(request, "file"), canvas.Pixels(), canvas.Width(), canvas.Height());
}

void AutomationSession::Members(const json& request, json& reply) {
  reply["value"] = json::array();
  for (const Member& member : ObjectOf(request).Members()) {
    const bool property = member.kind == Member::Kind::Property;
    reply["value"].push_back({{"name", member.name},
                              {"kind", property ? "property" : "method"},
                              {"type", member.TypeName()},
                              {"writable", member.writable()}});
  }
}

void AutomationSession::Store(const json& request, json& reply) {
  reply["value"] = StoreToJson(ControlOf(request), names_);
}

void AutomationSession::Mouse(const json& request, json&) {
  PlotControl& control = ControlOf(request);
  Node* node = &control.root();
  if (request.contains("surface")) {
    const std::string name = TextField(request, "surface");
    node = control.root().Find(name);
    if (node == nullptr) throw RequestError("There is no child surface \"" + name + "\".");
  }
  control.Mouse(*node, {.event = ToMouseEvent(TextField(request, "event")),
                        .button = ToInt16(NumberField(request, "button", 0)),
                        .shift = ToInt16(NumberField(request, "shift", 0)),
                        .x = NumberField(request, "x", 0),
                        .y = NumberField(request, "y", 0)});
}

void AutomationSession::Focus(const json& request, json& reply) {
  const Node* focused = ControlOf(request).Focused();
  reply["value"] = focused != nullptr ? json(focused->name) : json();
}

void AutomationSession::Show(const json& request, json&) { ControlOf(request).Shown(); }

void AutomationSession::Input(const json& request, json&) {
  ActOn(RootOf(request), Field(request, "action"));
}

void AutomationSession::Dialog(const json& request, json&) {
  const json& actions = Field(request, "actions");
  if (!actions.is_array()) throw RequestError("What the user will do is a list of actions.");
  queued_.push_back(actions);
}

void AutomationSession::ActInDialog(Form& form) {
  const json actions = queued_.empty() ? json::array() : queued_.front();
  if (!queued_.empty()) queued_.pop_front();
  const auto keep = [&] {
    shown_.push_back({{"form", form.root().name},
                      {"caption", form.root().Text()},
                      {"fields", FieldsToJson(form.root())}});
  };
  try {
    for (const json& action : actions) {
      if (form.root().Visible()) ActOn(form.root(), action);
    }
  } catch (...) {
    keep();
    throw;
  }
  keep();
}

void AutomationSession::SetScreen(const json& request, json&) {
  const Screen screen{NumberField(request, "twips_per_pixel_x"),
                      NumberField(request, "twips_per_pixel_y")};
  if (!(screen.twips_per_pixel_x >= 0) || !(screen.twips_per_pixel_y >= 0)) {
    throw RequestError("Twips per pixel can't be negative.");
  }
  host_.SetScreen(screen);
}

}  // namespace discoplan
