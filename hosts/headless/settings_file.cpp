// SPDX-License-Identifier: MIT
#include "hosts/headless/settings_file.h"

#include <algorithm>
#include <fstream>
#include <nlohmann/json.hpp>
#include <optional>
#include <sstream>
#include <string>

#include "discoplan/base/numbers.h"
#include "hosts/headless/headless_host.h"
#include "hosts/json/json_number.h"
#include "hosts/json/json_text.h"

namespace discoplan {
namespace {

using nlohmann::ordered_json;
namespace fs = std::filesystem;

[[noreturn]] void Refuse(const fs::path& file, const std::string& reason) {
  throw FileError("cannot use '" + file.string() + "': " + reason);
}

ordered_json Parse(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  std::ostringstream content;
  stream.peek();  // a folder opens, but can't be read
  content << stream.rdbuf();
  if (!stream.is_open() || stream.bad()) Refuse(file, "it can't be read; check the path");
  const std::string text = content.str();
  try {
    return ordered_json::parse(text);
  } catch (const ordered_json::parse_error& error) {
    const auto at = std::min(text.size(), error.byte == 0 ? 0 : error.byte - 1);
    const auto line = 1 + std::count(text.begin(), text.begin() + static_cast<long>(at), '\n');
    Refuse(file, "line " + std::to_string(line) + " is no JSON");
  } catch (const ordered_json::exception&) {
    Refuse(file, "a number in it is out of a 64-bit float's range");
  }
}

/// The setting of that key, as it is read or else as it is written.
std::optional<StoredProperty> FindStored(const ControlClass& own_class, const std::string& key) {
  for (const auto& rows : {own_class.SettingsRead(), own_class.SettingsWritten()}) {
    for (const StoredProperty& row : rows) {
      if (row.key == key) return row;
    }
  }
  return {};
}

/// What a value of a kind looks like in the file.
struct ValueForm {
  std::string_view name;
  std::optional<Variant> (*read)(const ordered_json& value);
};

const ValueForm& FormOf(StoredKind kind) {
  using Read = std::optional<Variant>;
  static constexpr ValueForm kNumber = {"a number", [](const ordered_json& value) {
                                          const std::optional<double> number = ToNumber(value);
                                          return number ? Read(*number) : Read();
                                        }};
  static constexpr ValueForm kBoolean = {
      "true or false", [](const ordered_json& value) {
        return value.is_boolean() ? Read(BooleanVariant(value.get<bool>())) : Read();
      }};
  static constexpr ValueForm kText = {"a text", [](const ordered_json& value) {
                                        return value.is_string() ? Read(value.get<std::string>())
                                                                 : Read();
                                      }};
  static constexpr ValueForm kNothing = {"null", [](const ordered_json& value) {
                                           return value.is_null() ? Read(ObjectRef()) : Read();
                                         }};
  switch (kind) {
    case StoredKind::Boolean:
      return kBoolean;
    case StoredKind::String:
      return kText;
    case StoredKind::Object:
      return kNothing;
    default:
      return kNumber;
  }
}

ordered_json ValueOf(const Variant& value, StoredKind kind) {
  if (kind == StoredKind::Boolean) return value.AsBoolean();
  if (kind == StoredKind::String) return value.AsString();
  if (const auto* number = std::get_if<float>(&value.value())) return ToJson(*number);
  return ToJson(value.AsDouble());
}

/// The first setting that can't be read back from the control, such as a colour that its 32-bit
/// float rounds to one bit too many; nothing if all can.
const Member* Unreadable(PlotControl& control) {
  for (const StoredProperty& row : control.Class().SettingsWritten()) {
    if (!Attempt([&] { (void)row.member->Get(control); })) return row.member;
  }
  return nullptr;
}

std::string Complaint(const ControlClass& own_class, const Member& member) {
  return std::string(member.name) + " of the " + std::string(own_class.name) +
         " is a colour that can't be read back; give one of at most 24 bits";
}

/// What is wrong with the settings, found on another control of the class; empty if nothing is.
std::string ComplaintOf(const PlotControl& control, const PropertyBag& bag) {
  std::string complaint;
  HeadlessHost host;
  host.OnMessage([&](const Message& message) { complaint = message.text; });
  const auto trial = control.Class().make(host, nullptr);
  try {
    trial->ReadProperties(bag);
  } catch (const RunTimeError& error) {
    return std::string("a value doesn't fit its setting (") + error.what() + ")";
  }
  const Member* unreadable = Unreadable(*trial);
  return unreadable != nullptr ? Complaint(control.Class(), *unreadable) : complaint;
}

}  // namespace

void ReadSettings(PlotControl& control, const fs::path& file) {
  const ordered_json settings = Parse(file);
  if (!settings.is_object()) Refuse(file, "it holds no object of keys and values");
  MemoryBag bag;
  for (const auto& [key, value] : settings.items()) {
    const std::optional<StoredProperty> row = FindStored(control.Class(), key);
    if (!row) {
      Refuse(file, "'" + key + "' is no setting of a " + control.root().name + "; remove it");
    }
    const ValueForm& form = FormOf(row->kind);
    const std::optional<Variant> variant = form.read(value);
    if (!variant) {
      const std::string shown = value.is_structured() ? "a list or object" : JsonText(value);
      Refuse(file, "'" + key + "' is " + shown + ", not " + std::string(form.name));
    }
    bag.WriteProperty(key, row->kind, *variant, row->default_value);
  }
  if (const std::string complaint = ComplaintOf(control, bag); !complaint.empty()) {
    Refuse(file, complaint);
  }
  control.ReadProperties(bag);
}

void WriteSettings(PlotControl& control, const fs::path& file) {
  if (const Member* member = Unreadable(control)) {
    throw FileError("cannot write '" + file.string() + "': " + Complaint(control.Class(), *member));
  }
  MemoryBag bag;
  control.WriteProperties(bag);
  ordered_json settings;
  for (const MemoryBag::Entry& entry : bag.entries()) {
    if (entry.kind == StoredKind::Object) continue;
    settings[entry.key] = ValueOf(entry.value, entry.kind);
  }
  const std::string text = JsonText(settings, 2) + '\n';
  WriteWholeFile(file, {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
}

}  // namespace discoplan
