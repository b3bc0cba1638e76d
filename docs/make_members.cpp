// SPDX-License-Identifier: MIT
// Writes the page of the nine controls' members from their tables, from new controls, and from what
// their headers say: make_members SOURCE_FOLDER > members.md

#include <algorithm>
#include <array>
#include <cctype>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <regex>
#include <sstream>
#include <stdexcept>

#include "discoplan/controls/control_factory.h"
#include "discoplan/platform/member_list.h"
#include "hosts/recording/recording_host.h"

namespace {

using namespace discoplan;
using Lines = std::vector<std::string>;

constexpr std::string_view kHead =
    R"(# Members of the nine controls

Made by `make docs`: names and types from the controls' member tables, defaults from new controls,
meanings from the headers in `discoplan/controls`.

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

/// Plot2D is in plot2d.h, LineScan in line_scan.h.
std::string HeaderOf(std::string_view class_name) {
  std::string file;
  bool after_small = false;
  for (const char character : class_name) {
    const auto letter = static_cast<unsigned char>(character);
    if (after_small && std::isupper(letter) != 0) file += '_';
    file += static_cast<char>(std::tolower(letter));
    after_small = std::islower(letter) != 0;
  }
  return file + ".h";
}

/// Appends a header of `folder` and behind it those of the bases.
void AppendHeader(const std::string& folder, const std::string& file, Lines& lines) {
  constexpr std::string_view kInclude = "#include \"discoplan/controls/";
  std::ifstream stream(folder + file);
  if (!stream) throw std::runtime_error(folder + file + " can't be read");
  Lines bases;
  for (std::string line; std::getline(stream, line);) {
    if (line.starts_with(kInclude)) {
      bases.push_back(line.substr(kInclude.size(), line.size() - kInclude.size() - 1));
    }
    // A declaration on several lines becomes one.
    const bool goes_on = !lines.empty() && lines.back().ends_with(',') &&
                         lines.back().find("//") == std::string::npos;
    if (goes_on) {
      lines.back() += line.substr(line.find_first_not_of(' ') - 1);
    } else {
      lines.push_back(line);
    }
  }
  for (const std::string& base : bases) AppendHeader(folder, base, lines);
}

/// The text of the comment that ends above a line; empty if there is none.
std::string CommentAbove(const Lines& lines, std::size_t at) {
  const std::regex comment("^ */// (.*)");
  std::string text;
  std::smatch match;
  while (at-- > 0 && std::regex_match(lines[at], match, comment)) {
    text = match[1].str() + (text.empty() ? "" : " ") + text;
  }
  return text;
}

/// What the headers say about a member.
struct Said {
  std::size_t line = 0;  ///< Of its first declaration.
  std::vector<std::string> arguments;
  std::string meaning;
};

std::vector<std::string> ArgumentsIn(const std::string& list) {
  const std::regex argument(" *(const )?[^,]*?(&?) (\\w+)(,|$)");
  std::vector<std::string> arguments;
  for (std::sregex_iterator i(list.begin(), list.end(), argument), end; i != end; ++i) {
    arguments.push_back(((*i)[1].matched ? "" : (*i)[2].str()) + ' ' + (*i)[3].str());
  }
  return arguments;
}

Said WhatIsSaid(const Lines& lines, const std::string& name) {
  // Of a class, not of what is in a function.
  const std::regex declaration("^  (?:\\[\\[nodiscard\\]\\] )?\\w.* " + name + "\\(([^)]*)\\).*");
  Said said;
  std::smatch match;
  for (std::size_t i = 0; i < lines.size() && said.meaning.empty(); ++i) {
    if (!std::regex_match(lines[i], match, declaration)) continue;
    if (said.line == 0) said = {.line = i, .arguments = ArgumentsIn(match[1]), .meaning = {}};
    said.meaning = CommentAbove(lines, i);
  }
  if (said.line != 0) return said;
  // IntervalColor7 is IntervalColor(7).
  const bool numbered = std::isdigit(static_cast<unsigned char>(name.back())) != 0;
  if (!numbered) throw std::runtime_error("no header declares " + name);
  return WhatIsSaid(lines, name.substr(0, name.size() - 1));
}

std::string TypeOf(const Member& member) {
  std::string type = '`' + std::string(member.type) + '`';
  const char* before = ": ";
  for (const Enumerator& choice : member.choices) {
    type += before + std::string(choice.name) + ' ' + std::to_string(choice.value);
    before = ", ";
  }
  return type;
}

std::string DefaultOf(const Member& member, Object& control) {
  if (!member.writable()) return "read only";
  const Variant value = member.get(control);
  if (member.type == "object") return "nothing";
  if (member.type == "string") return '"' + value.AsString() + '"';
  if (member.type == "boolean") return value.AsBoolean() ? "true" : "false";
  if (member.type == "colour") {
    std::ostringstream text;
    text << "0x" << std::uppercase << std::hex << std::setfill('0') << std::setw(6)
         << value.AsColour();
    return text.str();
  }
  const auto choice = std::ranges::find_if(member.choices, [&](const Enumerator& enumerator) {
    return enumerator.value == value.AsInt32();
  });
  if (choice != member.choices.end()) return std::string(choice->name);
  return ToJson(value.AsDouble()).dump();
}

/// A row of the page.
struct Row {
  Member::Kind kind;
  std::size_t line;  ///< Of its declaration; rows stand in that order.
  std::string name;
  std::string type;
  std::string initial;
  std::string meaning;

  std::string Text() const {
    const bool property = kind == Member::Kind::Property;
    return "| " + name + " | " + type + (property ? " | " + initial : "") + " | " + meaning +
           " |\n";
  }
};

std::string CallOf(const Member& member, const Said& said) {
  std::string call = std::string(member.name) + '(';
  for (std::size_t i = 0; i < member.parameters.size(); ++i) {
    call += (i == 0 ? "" : ", ") + std::string(member.parameters[i]) + said.arguments.at(i);
  }
  return call + ')';
}

/// Properties that one function of the header stands for share a row.
void AddRow(const Member& member, Object& control, const Lines& lines, std::vector<Row>& rows) {
  const Said said = WhatIsSaid(lines, std::string(member.name));
  if (member.kind == Member::Kind::Method) {
    rows.push_back({member.kind, said.line, '`' + CallOf(member, said) + '`',
                    member.type == "none" ? "" : TypeOf(member), "", said.meaning});
    return;
  }
  const std::string name = '`' + std::string(member.name) + '`';
  const std::string initial = DefaultOf(member, control);
  if (!rows.empty() && rows.back().line == said.line) {
    rows.back().name += ", " + name;
    rows.back().initial += ", " + initial;
  } else {
    rows.push_back({member.kind, said.line, name, TypeOf(member), initial, said.meaning});
  }
}

/// One control's part of the page.
struct Part {
  std::string name;
  std::string meaning;
  std::vector<Row> rows;
  std::string events;
};

/// What the control tells its container when the user acts with the mouse.
std::string EventsOf(PlotControl& control, RecordingContainer& container) {
  for (const MouseEvent event : {MouseEvent::Click, MouseEvent::DblClick, MouseEvent::MouseDown,
                                 MouseEvent::MouseMove, MouseEvent::MouseUp}) {
    control.Mouse(control.root(), {.event = event});
  }
  constexpr std::array kArguments = {" button", " shift", " x", " y"};
  std::string events;
  for (const auto& [name, args] : container.TakeRaised()) {
    events += (events.empty() ? "`" : ", `") + name + '(';
    for (std::size_t i = 0; i < args.size(); ++i) {
      const bool whole = std::holds_alternative<std::int16_t>(args[i].value());
      events += (i == 0 ? "" : ", ") + std::string(whole ? "int16" : "float") + kArguments.at(i);
    }
    events += ")`";
  }
  return events;
}

/// The comment above the class or else the first line of the header's own.
std::string MeaningOf(const std::string& class_name, const Lines& lines) {
  const auto index_of = [&](const std::string& begin) {
    const auto begins = [&](const std::string& line) { return line.starts_with(begin); };
    return static_cast<std::size_t>(std::ranges::find_if(lines, begins) - lines.begin());
  };
  const std::string own = CommentAbove(lines, index_of("class DISCOPLAN_EXPORT " + class_name));
  return own.empty() ? CommentAbove(lines, index_of("/// ") + 1) : own;
}

Part PartOf(std::string_view class_name, const std::string& folder) {
  RecordingHost host;
  RecordingContainer container;
  const auto control = NewControl(class_name, host, &container);
  control->InitProperties();
  Lines lines;
  AppendHeader(folder, HeaderOf(class_name), lines);
  Part part{.name = std::string(class_name), .meaning = {}, .rows = {}, .events = {}};
  part.meaning = MeaningOf(part.name, lines);
  for (const Member& member : control->Members()) {
    AddRow(member, *control, lines, part.rows);
  }
  part.events = EventsOf(*control, container);
  return part;
}

void WriteTable(const std::vector<Row>& rows, Member::Kind kind, std::string_view head) {
  if (std::ranges::none_of(rows, [&](const Row& row) { return row.kind == kind; })) return;
  std::cout << '\n' << head;
  for (const Row& row : rows) {
    if (row.kind == kind) std::cout << row.Text();
  }
}

void WritePart(Part part) {
  std::ranges::stable_sort(part.rows, {}, &Row::line);
  std::cout << "\n## " << part.name << '\n';
  if (!part.meaning.empty()) std::cout << '\n' << part.meaning << '\n';
  WriteTable(part.rows, Member::Kind::Property,
             "| Property | Type | Default | Meaning |\n|---|---|---|---|\n");
  WriteTable(part.rows, Member::Kind::Method, "| Method | Result | Meaning |\n|---|---|---|\n");
  if (!part.events.empty()) std::cout << "\nEvents: " << part.events << ".\n";
}

/// Takes what all parts have in common out of them.
Part TakeCommon(std::vector<Part>& parts) {
  Part common{.name = "All nine", .meaning = {}, .rows = {}, .events = parts.front().events};
  for (const Row& row : parts.front().rows) {
    const auto has = [&](const Part& part) {
      return std::ranges::count(part.rows, row.Text(), &Row::Text) > 0;
    };
    if (std::ranges::all_of(parts, has)) common.rows.push_back(row);
  }
  for (Part& part : parts) {
    std::erase_if(part.rows, [&](const Row& row) {
      return std::ranges::count(common.rows, row.Text(), &Row::Text) > 0;
    });
    if (part.events == common.events) part.events.clear();
  }
  return common;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "make_members SOURCE_FOLDER\n";
    return 2;
  }
  try {
    std::vector<Part> parts;
    for (const std::string_view name : ControlClasses()) {
      parts.push_back(PartOf(name, std::string(argv[1]) + "/discoplan/controls/"));
    }
    std::cout << kHead;
    WritePart(TakeCommon(parts));
    for (const Part& part : parts) WritePart(part);
  } catch (const std::exception& error) {
    std::cerr << "make_members: " << error.what() << '\n';
    return 1;
  }
  return std::cout.flush() ? 0 : 1;
}
