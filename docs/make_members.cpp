// SPDX-License-Identifier: MIT
// Writes the page of the nine controls' members from their classes: make_members > members.md

#include <algorithm>
#include <iomanip>
#include <iostream>
#include <sstream>
#include <vector>

#include "discoplan/controls/control_class.h"
#include "discoplan/render/number_text.h"

namespace {

using namespace discoplan;

constexpr std::string_view kHead =
    R"(# Members of the nine controls

Made by `make docs` from the controls' classes; `discoplan describe` prints the same as JSON.

A property has one name everywhere:

| Where | Write | Read |
|---|---|---|
| C++ | `plot.TestDiameter(150)` | `plot.TestDiameter()` |
| Qt | `plot->setTestDiameter(150)` | `plot->TestDiameter()` |
| Command line | `--set TestDiameter=150` | |
| [JSON](automation.md) | `{"op":"set","id":"p","name":"TestDiameter","value":150}` | `{"op":"get","id":"p","name":"TestDiameter"}` |

A type with values behind it is an enumeration. A `colour` is 0xBBGGRR, or a system colour with the
highest of its 32 bits set. An `array` is one of 32-bit floats. What is marked `&` may come back
changed.

Methods give their results as numbers: `Plot` 0, or 1 without data. `PrintPlot` and `PrintPlot_THN`
0, 1 if the control is too small, 2 without data or printer. The other prints 0, or 1 without data
or printer. `SetWaferData` and `SetDataFile` give a [result code](data-files.md#result-codes).
)";

std::string Code(std::string_view text) { return '`' + std::string(text) + '`'; }

std::string TypeText(const Member& member) {
  std::string text = Code(member.TypeName());
  const char* before = ": ";
  for (const Enumerator& choice : member.Choices()) {
    text += before + std::string(choice.name) + ' ' + std::to_string(choice.value);
    before = ", ";
  }
  return text;
}

std::string InitialText(const Member& member) {
  if (!member.writable()) return "read only";
  const Variant value = member.initial.As(member.type);
  switch (member.type) {
    case Type::Object:
      return "nothing";
    case Type::String:
      return '"' + value.AsString() + '"';
    case Type::Boolean:
      return value.AsBoolean() ? "true" : "false";
    case Type::Rgb: {
      std::ostringstream text;
      text << "0x" << std::uppercase << std::hex << std::setfill('0') << std::setw(6)
           << value.AsColour();
      return text.str();
    }
    case Type::Enumeration:
      return std::string(member.enumeration->Find(value.AsInt32())->name);
    default:
      return PlainNumber(value.AsFloat());
  }
}

std::string ArgumentText(const ParameterList& parameters) {
  std::string text = "(";
  for (const Parameter& parameter : parameters) {
    text += (text.size() == 1 ? "" : ", ") + std::string(NameOf(parameter.type)) +
            (parameter.direction == Direction::InOut ? "& " : " ") + std::string(parameter.name);
  }
  return text + ')';
}

/// A row of the page, of a property or a method.
std::string RowText(const Member& member) {
  const std::string doc(member.doc);
  if (member.kind == Member::Kind::Property) {
    return "| " + Code(member.name) + " | " + TypeText(member) + " | " + InitialText(member) +
           " | " + doc + " |\n";
  }
  const std::string result = member.type == Type::None ? "" : TypeText(member);
  return "| " + Code(std::string(member.name) + ArgumentText(member.parameters)) + " | " + result +
         " | " + doc + " |\n";
}

void WriteTable(const std::vector<Member>& members, Member::Kind kind, std::string_view head) {
  const auto is_of_kind = [&](const Member& member) {
    return member.kind == kind && !member.hidden;
  };
  if (std::none_of(members.begin(), members.end(), is_of_kind)) return;
  std::cout << '\n' << head;
  for (const Member& member : members) {
    if (is_of_kind(member)) std::cout << RowText(member);
  }
}

void WritePart(std::string_view name, std::string_view meaning,
               const std::vector<Member>& members) {
  std::cout << "\n## " << name << '\n';
  if (!meaning.empty()) std::cout << '\n' << meaning << ".\n";
  WriteTable(members, Member::Kind::Property,
             "| Property | Type | Default | Meaning |\n|---|---|---|---|\n");
  WriteTable(members, Member::Kind::Method, "| Method | Result | Meaning |\n|---|---|---|\n");
}

void WriteEvents(std::span<const Event> events) {
  std::cout << "\n| Event | Meaning |\n|---|---|\n";
  for (const Event& event : events) {
    std::cout << "| " << Code(std::string(event.name) + ArgumentText(event.parameters)) << " | "
              << event.doc << " |\n";
  }
}

void WriteEnumerations() {
  std::cout << "\n## Enumerations\n\n| Name | Value | Meaning |\n|---|---|---|\n";
  for (const Enumeration& enumeration : Enumerations()) {
    for (const Enumerator& row : enumeration.values) {
      std::cout << "| " << Code(std::string(enumeration.name) + '.' + std::string(row.name))
                << " | " << row.value << " | " << row.doc << " |\n";
    }
  }
}

/// Whether all classes have the member, the same in each.
bool IsCommon(const Member& member) {
  return std::all_of(ControlClasses().begin(), ControlClasses().end(), [&](const auto* other) {
    const Member* found = other->members.Find(member.name);
    return found != nullptr && RowText(*found) == RowText(member);
  });
}

std::vector<Member> MembersOf(const ControlClass& own_class, bool common) {
  std::vector<Member> members;
  for (const Member& member : own_class.members) {
    if (IsCommon(member) == common) members.push_back(member);
  }
  return members;
}

}  // namespace

int main() {
  std::cout << kHead;
  const ControlClass& any = *ControlClasses().front();
  WritePart("All nine", "", MembersOf(any, true));
  WriteEvents(any.events);
  for (const ControlClass* own_class : ControlClasses()) {
    WritePart(own_class->name, own_class->summary, MembersOf(*own_class, false));
  }
  WriteEnumerations();
  return std::cout.flush() ? 0 : 1;
}
