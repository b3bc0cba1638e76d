// SPDX-License-Identifier: MIT
#include "hosts/recording/trace.h"

#include <array>
#include <cmath>
#include <concepts>
#include <new>

#include "hosts/json/json_text.h"

namespace discoplan {
namespace {

using nlohmann::json;

/// Whole numbers up to here are floats too, and written with all their digits.
constexpr float kWholeFloats = 16777216;

/// Appends a value as JSON.
template <std::integral Int>
void Append(std::string& text, Int value) {
  text += std::to_string(value);
}

void Append(std::string& text, float value) {
  const auto whole = std::abs(value) < kWholeFloats ? static_cast<std::int32_t>(value) : 0;
  if (whole != 0 && static_cast<float>(whole) == value) {
    Append(text, whole);
  } else {
    text += JsonText(ToJson(value));
  }
}

void Append(std::string& text, bool value) { text += value ? "-1" : "0"; }

void Append(std::string& text, std::string_view value) { text += JsonText(json(value)); }

template <class T>
void Append(std::string& text, const std::optional<T>& value) {
  if (value) return Append(text, *value);
  text += "null";
}

void Append(std::string& text, const Font& font) {
  text += JsonText(json{{"Name", font.name},
                        {"Size", ToJson(font.size)},
                        {"Bold", font.bold ? -1 : 0},
                        {"Underline", font.underline ? -1 : 0}});
}

void Append(std::string& text, std::span<const PixelPoint> points) {
  text += '[';
  for (const PixelPoint& point : points) {
    if (text.back() != '[') text += ',';
    text += '[';
    Append(text, point.x);
    text += ',';
    Append(text, point.y);
    text += ']';
  }
  text += ']';
}

struct StateRow {
  std::string_view name;
  void (*append)(std::string&, const Surface&);
};

/// By `SurfaceState`.
constexpr std::array<StateRow, 21> kStates = {{
    {"ForeColor", [](auto& t, const Surface& s) { Append(t, s.ForeColor()); }},
    {"BackColor", [](auto& t, const Surface& s) { Append(t, s.BackColor()); }},
    {"FillColor", [](auto& t, const Surface& s) { Append(t, s.FillColor()); }},
    {"FillStyle", [](auto& t, const Surface& s) { Append(t, s.FillStyle()); }},
    {"DrawStyle", [](auto& t, const Surface& s) { Append(t, s.DrawStyle()); }},
    {"DrawWidth", [](auto& t, const Surface& s) { Append(t, s.DrawWidth()); }},
    {"CurrentX", [](auto& t, const Surface& s) { Append(t, s.CurrentX()); }},
    {"CurrentY", [](auto& t, const Surface& s) { Append(t, s.CurrentY()); }},
    {"FontTransparent", [](auto& t, const Surface& s) { Append(t, s.FontTransparent()); }},
    {"ScaleMode", [](auto& t, const Surface& s) { Append(t, s.ScaleMode()); }},
    {"ScaleLeft", [](auto& t, const Surface& s) { Append(t, s.ScaleLeft()); }},
    {"ScaleTop", [](auto& t, const Surface& s) { Append(t, s.ScaleTop()); }},
    {"ScaleWidth", [](auto& t, const Surface& s) { Append(t, s.ScaleWidth()); }},
    {"ScaleHeight", [](auto& t, const Surface& s) { Append(t, s.ScaleHeight()); }},
    {"Width", [](auto& t, const Surface& s) { Append(t, s.Width()); }},
    {"Height", [](auto& t, const Surface& s) { Append(t, s.Height()); }},
    {"Font", [](auto& t, const Surface& s) { Append(t, s.Font()); }},
    {"Font.Name", [](auto& t, const Surface& s) { Append(t, s.Font().name); }},
    {"Font.Size", [](auto& t, const Surface& s) { Append(t, s.Font().size); }},
    {"Font.Bold", [](auto& t, const Surface& s) { Append(t, s.Font().bold); }},
    {"Font.Underline", [](auto& t, const Surface& s) { Append(t, s.Font().underline); }},
}};

/// What a surface's state is now.
struct StateNow {
  const Surface& surface;
  const StateRow& row;
};

void Append(std::string& text, const StateNow& now) { now.row.append(text, now.surface); }

}  // namespace

template <class... Values>
void Trace::Keep(std::string_view name, const Values&... values) {
  constexpr std::size_t kPartBytes = std::size_t{1} << 20;
  try {
    if (parts_.empty() || parts_.back().text.size() >= kPartBytes) parts_.emplace_back();
    Part& part = parts_.back();
    const std::size_t before = part.text.size();
    part.text += before == 0 ? "[" : ",[";
    Append(part.text, name);
    ((part.text += ',', Append(part.text, values)), ...);
    part.text += ']';
    ++part.calls;
    bytes_ += part.text.size() - before;
    while (bytes_ > kMostBytes) LeaveOutOldest();
  } catch (const std::bad_alloc&) {
    // What is drawn doesn't depend on what is kept of it.
    for (const Part& part : parts_) left_out_ += part.calls;
    ++left_out_;
    Clear();
  }
}

void Trace::LeaveOutOldest() {
  bytes_ -= parts_.front().text.size();
  left_out_ += parts_.front().calls;
  parts_.pop_front();
}

void Trace::Clear() {
  parts_.clear();
  bytes_ = 0;
}

void Trace::State(const Surface& surface, SurfaceState which) {
  const StateRow& row = kStates[static_cast<std::size_t>(which)];
  Keep(row.name, StateNow{surface, row});
}

void Trace::Operation(std::string_view name) { Keep(name); }

void Trace::Line(const LineCall& call) {
  constexpr std::array<std::string_view, 3> kShapes = {"line", "box", "filled"};
  std::optional<float> start_x;
  std::optional<float> start_y;
  if (call.from) {
    start_x = call.from->x;
    start_y = call.from->y;
  }
  Keep("Line", start_x, start_y, call.to.x, call.to.y, call.colour,
       kShapes[static_cast<std::size_t>(call.shape)]);
}

void Trace::Circle(const CircleCall& call) {
  Keep("Circle", call.centre.x, call.centre.y, call.radius, call.colour, call.start, call.end,
       call.aspect);
}

void Trace::Print(std::string_view text) { Keep("Print", text); }

void Trace::Polygon(std::span<const PixelPoint> points) { Keep("Polygon", points); }

void Trace::FloodFill(PixelPoint start, Colour boundary) {
  Keep("FloodFill", start.x, start.y, boundary);
}

std::string Trace::TakeText() {
  std::string text = "[";
  text.reserve(bytes_ + parts_.size() + 2);
  for (const Part& part : parts_) {
    if (text.size() > 1) text += ',';
    text += part.text;
  }
  Clear();
  return text += ']';
}

json Trace::Take() { return json::parse(TakeText()); }

}  // namespace discoplan
