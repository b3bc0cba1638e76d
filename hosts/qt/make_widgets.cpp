// SPDX-License-Identifier: MIT
// Writes the header of the nine widgets from the controls' classes: make_widgets HEADER

#include <algorithm>
#include <cctype>
#include <fstream>
#include <iostream>
#include <sstream>
#include <vector>

#include "discoplan/controls/control_class.h"

namespace {

using discoplan::ControlClass;
using discoplan::Member;
using discoplan::Type;

struct QtType {
  const char* name;
  const char* parameter;
  const char* from_variant;  // behind a QVariant
};

/// Nothing for a type that no form file and no program sets.
const QtType* TypeOf(Type type) {
  static constexpr QtType kNumber = {"double", "double", ".toDouble()"};
  static constexpr QtType kWhole = {"int", "int", ".toInt()"};
  static constexpr QtType kTruth = {"bool", "bool", ".toBool()"};
  static constexpr QtType kText = {"QString", "const QString&", ".toString()"};
  static constexpr QtType kColour = {"QColor", "const QColor&", ".value<QColor>()"};
  switch (type) {
    case Type::Float:
    case Type::Double:
      return &kNumber;
    case Type::Int16:
    case Type::Int32:
      return &kWhole;
    case Type::Boolean:
      return &kTruth;
    case Type::String:
      return &kText;
    case Type::Rgb:
      return &kColour;
    default:
      return nullptr;
  }
}

struct Property {
  const Member* member;
  std::string type;
  std::string parameter;
  std::string name() const { return std::string(member->name); }
  /// As form files expect it, so that they set the property by a call.
  std::string setter() const {
    std::string capital = name();
    capital.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(capital.front())));
    return "set" + capital;
  }
  bool is_enumeration() const { return member->enumeration != nullptr; }
};

/// Those that a program or a form file sets. A wafer's diameter drops what lies outside it, and so
/// it comes before the rest.
std::vector<Property> PropertiesOf(const discoplan::MemberTable& members) {
  std::vector<Property> properties;
  for (const Member& member : members) {
    if (member.kind != Member::Kind::Property || !member.writable()) continue;
    if (member.enumeration != nullptr) {
      const std::string enumeration(member.enumeration->name);
      properties.push_back({&member, enumeration, enumeration});
    } else if (const QtType* type = TypeOf(member.type)) {
      properties.push_back({&member, type->name, type->parameter});
    }
  }
  std::stable_partition(properties.begin(), properties.end(), [](const Property& property) {
    return property.member->name == "WaferDiameter";
  });
  return properties;
}

void WriteEnumerations(std::ostream& out, const std::vector<Property>& properties) {
  std::vector<std::string> written;
  for (const Property& property : properties) {
    if (!property.is_enumeration() || std::ranges::count(written, property.type) > 0) continue;
    written.push_back(property.type);
    out << "  enum " << property.type << " {";
    for (const auto& choice : property.member->Choices()) {
      out << ' ' << choice.name << " = " << choice.value << ',';
    }
    out << " };\n  Q_ENUM(" << property.type << ")\n";
  }
}

void WriteAccessors(std::ostream& out, const Property& property) {
  const std::string name = property.name();
  out << "  " << property.type << ' ' << name << "() const { return ";
  if (property.is_enumeration()) {
    out << "static_cast<" << property.type << ">(Value(\"" << name << "\").toInt()); }\n";
  } else {
    out << "Value(\"" << name << "\")" << TypeOf(property.member->type)->from_variant << "; }\n";
  }
  out << "  void " << property.setter() << '(' << property.parameter << " value) { SetValue(\""
      << name << "\", " << (property.is_enumeration() ? "static_cast<int>(value)" : "value")
      << "); }\n";
}

void WriteClass(std::ostream& out, const ControlClass& own_class) {
  const std::string_view name = own_class.name;
  const std::vector<Property> properties = PropertiesOf(own_class.members);
  out << "class DISCOPLAN_QT_EXPORT " << name << "Widget final : public PlotWidget {\n  Q_OBJECT\n";
  for (const Property& property : properties) {
    const std::string own = property.name();
    out << "  Q_PROPERTY(" << property.type << ' ' << own << " READ " << own << " WRITE "
        << property.setter() << " NOTIFY " << own << "Changed)\n";
  }
  out << "\n public:\n";
  WriteEnumerations(out, properties);
  out << "\n  explicit " << name << "Widget(QWidget* parent = nullptr) : PlotWidget(\"" << name
      << "\", parent) {}\n\n  " << name << "& control() const { return static_cast<" << name
      << "&>(Control()); }\n\n";
  for (const Property& property : properties) WriteAccessors(out, property);
  out << "\n Q_SIGNALS:\n";
  for (const Property& property : properties) out << "  void " << property.name() << "Changed();\n";
  out << "};\n\n";
}

/// The way from a control's class to its widget.
void WriteFactory(std::ostream& out) {
  out << "/// A widget by its control's class, such as \"Plot2D\"; nothing for a name that none "
         "has.\n"
         "inline PlotWidget* NewPlotWidget(std::string_view control, QWidget* parent = nullptr) "
         "{\n";
  for (const ControlClass* own_class : discoplan::ControlClasses()) {
    const std::string_view name = own_class->name;
    out << "  if (control == \"" << name << "\") return new " << name << "Widget(parent);\n";
  }
  out << "  return nullptr;\n}\n\n";
}

std::string HeaderText() {
  std::ostringstream out;
  out << "// SPDX-License-Identifier: MIT\n"
         "// Made by make_widgets from the controls' classes.\n#pragma once\n\n"
         "/// The nine plots as widgets, with the interface's members as properties.\n\n"
         "#include <QColor>\n#include <QString>\n#include <string_view>\n\n#include "
         "\"hosts/qt/plot_widget.h\"\n\n"
         "namespace discoplan::qt {\n\n";
  for (const ControlClass* own_class : discoplan::ControlClasses()) WriteClass(out, *own_class);
  WriteFactory(out);
  out << "}  // namespace discoplan::qt\n";
  return out.str();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "make_widgets HEADER\n";
    return 2;
  }
  std::ofstream header(argv[1]);
  header << HeaderText();
  return header.flush() ? 0 : 1;
}
