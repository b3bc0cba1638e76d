// SPDX-License-Identifier: MIT
#include "hosts/recording/trace.h"

#include <array>

namespace discoplan {
namespace {

using nlohmann::json;

json Flag(bool value) { return value ? -1 : 0; }

json Whole(const Font& font) {
  return {{"Name", font.name},
          {"Size", ToJson(font.size)},
          {"Bold", Flag(font.bold)},
          {"Underline", Flag(font.underline)}};
}

template <class T>
json OrNull(const std::optional<T>& value) {
  if (!value) return nullptr;
  if constexpr (std::is_same_v<T, float>) return ToJson(*value);
  return *value;
}

struct StateRow {
  const char* name;
  json (*value)(const Surface&);
};

/// By `SurfaceState`.
constexpr std::array<StateRow, 21> kStates = {{
    {"ForeColor", [](const Surface& s) { return json(s.ForeColor()); }},
    {"BackColor", [](const Surface& s) { return json(s.BackColor()); }},
    {"FillColor", [](const Surface& s) { return json(s.FillColor()); }},
    {"FillStyle", [](const Surface& s) { return json(s.FillStyle()); }},
    {"DrawStyle", [](const Surface& s) { return json(s.DrawStyle()); }},
    {"DrawWidth", [](const Surface& s) { return json(s.DrawWidth()); }},
    {"CurrentX", [](const Surface& s) { return ToJson(s.CurrentX()); }},
    {"CurrentY", [](const Surface& s) { return ToJson(s.CurrentY()); }},
    {"FontTransparent", [](const Surface& s) { return Flag(s.FontTransparent()); }},
    {"ScaleMode", [](const Surface& s) { return json(s.ScaleMode()); }},
    {"ScaleLeft", [](const Surface& s) { return ToJson(s.ScaleLeft()); }},
    {"ScaleTop", [](const Surface& s) { return ToJson(s.ScaleTop()); }},
    {"ScaleWidth", [](const Surface& s) { return ToJson(s.ScaleWidth()); }},
    {"ScaleHeight", [](const Surface& s) { return ToJson(s.ScaleHeight()); }},
    {"Width", [](const Surface& s) { return ToJson(s.Width()); }},
    {"Height", [](const Surface& s) { return ToJson(s.Height()); }},
    {"Font", [](const Surface& s) { return Whole(s.Font()); }},
    {"Font.Name", [](const Surface& s) { return json(s.Font().name); }},
    {"Font.Size", [](const Surface& s) { return ToJson(s.Font().size); }},
    {"Font.Bold", [](const Surface& s) { return Flag(s.Font().bold); }},
    {"Font.Underline", [](const Surface& s) { return Flag(s.Font().underline); }},
}};

}  // namespace

void Trace::State(const Surface& surface, SurfaceState which) {
  const StateRow& row = kStates[static_cast<std::size_t>(which)];
  calls_.push_back({row.name, row.value(surface)});
}

void Trace::Operation(std::string_view name) { calls_.push_back(json::array({name})); }

void Trace::Line(const LineCall& call) {
  constexpr std::array<const char*, 3> kShapes = {"line", "box", "filled"};
  json start_x = nullptr;
  json start_y = nullptr;
  if (call.from) {
    start_x = ToJson(call.from->x);
    start_y = ToJson(call.from->y);
  }
  calls_.push_back({"Line", start_x, start_y, ToJson(call.to.x), ToJson(call.to.y),
                    OrNull(call.colour), kShapes[static_cast<std::size_t>(call.shape)]});
}

void Trace::Circle(const CircleCall& call) {
  calls_.push_back({"Circle", ToJson(call.centre.x), ToJson(call.centre.y), ToJson(call.radius),
                    OrNull(call.colour), OrNull(call.start), OrNull(call.end),
                    OrNull(call.aspect)});
}

void Trace::Print(std::string_view text) { calls_.push_back(json::array({"Print", text})); }

void Trace::Polygon(std::span<const PixelPoint> points) {
  json list = json::array();
  for (const PixelPoint& point : points) list.push_back({point.x, point.y});
  calls_.push_back(json::array({"Polygon", std::move(list)}));
}

void Trace::FloodFill(PixelPoint start, Colour boundary) {
  calls_.push_back({"FloodFill", start.x, start.y, boundary});
}

json Trace::Take() { return std::exchange(calls_, json::array()); }

}  // namespace discoplan
