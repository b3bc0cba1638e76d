// SPDX-License-Identifier: MIT
// Writes the type library's source and the manifest for programs that use the controls without
// registration, from the controls' classes: make_idl IDL MANIFEST

#include <fstream>
#include <iostream>
#include <set>

#include "discoplan/controls/control_class.h"
#include "discoplan/dialogs/property_page.h"
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
  for (const std::string_view page : PropertyPageClasses()) {
    ids.insert(std::string(activex::PageId(page)));
  }
  return ids.size() == 1 + 3 * ControlClasses().size() + PropertyPageClasses().size();
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

std::string InBraces(std::string_view id) { return '{' + std::string(id) + '}'; }

void WriteManifest(std::ostream& out) {
  const std::string library = InBraces(activex::kLibraryId);
  const auto one_class = [&](std::string_view id, const std::string& rest) {
    out << "    <comClass clsid=\"" << InBraces(id) << "\" threadingModel=\"Apartment\"" << rest
        << "/>\n";
  };
  out << R"(<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<assembly xmlns="urn:schemas-microsoft-com:asm.v1" manifestVersion="1.0">
  <assemblyIdentity type="win32" name="Discoplan" version=")"
      << activex::kMajorVersion << '.' << activex::kMinorVersion << R"(.0.0"/>
  <file name="discoplan.ocx">
)";
  for (const ControlClass* row : ControlClasses()) {
    one_class(row->class_id, " tlbid=\"" + library + "\" progid=\"" + std::string(row->program_id) +
                                 "\" description=" + Quoted("Discoplan " + std::string(row->name)) +
                                 " miscStatusContent=\"recomposeonresize,cantlinkinside,insideout,"
                                 "activatewhenvisible,setclientsitefirst\"");
  }
  for (const std::string_view page : PropertyPageClasses()) one_class(activex::PageId(page), "");
  out << "    <typelib tlbid=\"" << library << "\" version=\"" << activex::kMajorVersion << '.'
      << activex::kMinorVersion << "\" helpdir=\"\"/>\n  </file>\n</assembly>\n";
}

bool WriteFile(const char* name, void (*write)(std::ostream&)) {
  std::ofstream file(name);
  write(file);
  file.close();
  if (!file) std::cerr << "make_idl: " << name << " can't be written\n";
  return static_cast<bool>(file);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "usage: make_idl IDL MANIFEST\n";
    return 2;
  }
  if (!IdsDiffer()) {
    std::cerr << "make_idl: two parts of the type library would have one id\n";
    return 1;
  }
  return WriteFile(argv[1], WriteLibrary) && WriteFile(argv[2], WriteManifest) ? 0 : 1;
}
