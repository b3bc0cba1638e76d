// SPDX-License-Identifier: MIT
// Writes the type library's source from the controls' classes: make_idl FILE

#include <fstream>
#include <iostream>
#include <set>

#include "discoplan/controls/control_class.h"
#include "hosts/activex/ids.h"

namespace {

using namespace discoplan;

/// What the compiler wants to have seen; the library takes them from the system's own.
constexpr std::string_view kSystemTypes = R"(
typedef wchar_t* BSTR;
typedef short VARIANT_BOOL;
typedef struct tagVARIANT VARIANT;
[object, uuid(00000000-0000-0000-C000-000000000046)] interface IUnknown {}
[object, uuid(00020400-0000-0000-C000-000000000046)] interface IDispatch : IUnknown {}
[uuid(7BF80981-BF32-101A-8BBB-00AA00300CAB)] dispinterface IPictureDisp { properties: methods: }
typedef [uuid(66504301-BE0F-101A-8BBB-00AA00300CAB), public] unsigned long OLE_COLOR;
)";

/// A text of the source; the backslash and the quote are the only ones of their kind in it.
std::string Quoted(std::string_view text) {
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') quoted += '\\';
    quoted += c;
  }
  return quoted + '"';
}

std::string TypeText(Type type, const Enumeration* enumeration, Direction direction) {
  const std::string by_reference = direction == Direction::InOut ? "*" : "";
  switch (type) {
    case Type::None:
      return "void";
    case Type::Int16:
      return "short" + by_reference;
    case Type::Int32:
      return "long" + by_reference;
    case Type::Float:
      return "float" + by_reference;
    case Type::Double:
      return "double" + by_reference;
    case Type::Boolean:
      return "VARIANT_BOOL" + by_reference;
    case Type::Rgb:
      return "OLE_COLOR" + by_reference;
    case Type::String:
      return "BSTR" + by_reference;
    case Type::Object:
      return "IDispatch*" + by_reference;
    case Type::Array:
      return "SAFEARRAY(float)*";  // as callers hand over arrays, both ways
    case Type::Variant:
      return "VARIANT" + by_reference;
    case Type::Enumeration:
      return std::string(enumeration->name) + by_reference;
  }
  return {};
}

std::string TypeText(const Member& member) {
  return member.name == "MouseIcon" ? "IPictureDisp*"
                                    : TypeText(member.type, member.enumeration, Direction::In);
}

std::string ParametersText(const ParameterList& parameters) {
  std::string text;
  for (const Parameter& parameter : parameters) {
    if (!text.empty()) text += ", ";
    const bool both = parameter.direction == Direction::InOut || parameter.type == Type::Array;
    text += both ? "[in, out] " : "[in] ";
    text += TypeText(parameter.type, nullptr, parameter.direction) + ' ';
    text += parameter.name;
  }
  return text;
}

void WriteMember(std::ostream& out, const Member& member, const std::string& flags,
                 const std::string& declaration) {
  out << "    [id(" << member.id << ")" << flags << (member.hidden ? ", hidden" : "")
      << ", helpstring(" << Quoted(member.doc) << ")]\n      " << declaration << ";\n";
}

void WriteProperty(std::ostream& out, const Member& member) {
  const std::string name(member.name);
  std::string flags = member.announces() ? ", bindable, requestedit" : "";
  if (member.run_time_only) flags += ", nonbrowsable";
  WriteMember(out, member, ", propget" + flags, TypeText(member) + ' ' + name + "()");
  if (!member.writable()) return;
  const bool object = member.type == Type::Object;
  const std::string put = "void " + name + "([in] " + TypeText(member) + " value)";
  WriteMember(out, member, ", propput" + flags, put);
  if (object) WriteMember(out, member, ", propputref" + flags, put);
}

void WriteMembers(std::ostream& out, const ControlClass& row) {
  out << "  [uuid(" << activex::MembersId(row) << "), hidden, helpstring("
      << Quoted("Members of " + std::string(row.name)) << ")]\n  dispinterface _" << row.name
      << " {\n    properties:\n    methods:\n";
  for (const Member& member : row.members) {
    if (member.kind == Member::Kind::Property) {
      WriteProperty(out, member);
      continue;
    }
    WriteMember(out, member, "",
                TypeText(member.type, member.enumeration, Direction::In) + ' ' +
                    std::string(member.name) + '(' + ParametersText(member.parameters) + ')');
  }
  out << "  }\n";
}

void WriteEvents(std::ostream& out, const ControlClass& row) {
  out << "  [uuid(" << activex::EventsId(row) << "), hidden, helpstring("
      << Quoted("Events of " + std::string(row.name)) << ")]\n  dispinterface _" << row.name
      << "Events {\n    properties:\n    methods:\n";
  for (const Event& event : row.events) {
    out << "    [id(" << event.id << "), helpstring(" << Quoted(event.doc) << ")]\n      void "
        << event.name << '(' << ParametersText(event.parameters) << ");\n";
  }
  out << "  }\n";
}

void WriteEnumeration(std::ostream& out, const Enumeration& enumeration) {
  out << "  typedef enum " << enumeration.name << " {\n";
  for (const Enumerator& value : enumeration.values) {
    out << "    " << value.name << " = " << value.value
        << (&value == &enumeration.values.back() ? "\n" : ",\n");
  }
  out << "  } " << enumeration.name << ";\n";
}

bool IdsDiffer() {
  std::set<std::string> ids = {activex::kLibraryId};
  for (const ControlClass* row : ControlClasses()) {
    ids.insert({std::string(row->class_id), activex::MembersId(*row), activex::EventsId(*row)});
  }
  return ids.size() == 1 + 3 * ControlClasses().size();
}

void WriteLibrary(std::ostream& out) {
  out << kSystemTypes << "[uuid(" << activex::kLibraryId << "), version(" << activex::kMajorVersion
      << '.' << activex::kMinorVersion
      << "), control, helpstring(\"Discoplan wafer plots\")]\nlibrary Discoplan {\n"
         "  importlib(\"stdole2.tlb\");\n";
  for (const Enumeration& enumeration : Enumerations()) WriteEnumeration(out, enumeration);
  for (const ControlClass* row : ControlClasses()) {
    WriteMembers(out, *row);
    WriteEvents(out, *row);
    out << "  [uuid(" << row->class_id << "), control, helpstring(" << Quoted(row->summary)
        << ")]\n  coclass " << row->name << " {\n    [default] dispinterface _" << row->name
        << ";\n    [default, source] dispinterface _" << row->name << "Events;\n  }\n";
  }
  out << "}\n";
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: make_idl FILE\n";
    return 2;
  }
  if (!IdsDiffer()) {
    std::cerr << "make_idl: two parts of the type library would have one id\n";
    return 1;
  }
  std::ofstream file(argv[1]);
  WriteLibrary(file);
  file.close();
  if (file) return 0;
  std::cerr << "make_idl: " << argv[1] << " can't be written\n";
  return 1;
}
