// SPDX-License-Identifier: MIT
#include "hosts/recording/trace.h"

#include <array>
#include <new>
#include <utility>

#include "hosts/json/json_text.h"

namespace discoplan {
namespace {

using nlohmann::json;

// A list in MessagePack: its sort, then the number of its elements in four bytes.
constexpr std::uint8_t kArrayOf32Bits = 0xDD;
constexpr std::size_t kArrayHead = 5;

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

template <class MakeCall>
void Trace::Keep(MakeCall&& make_call) {
  try {
    Append(make_call());
  } catch (const std::bad_alloc&) {
    // What is drawn doesn't depend on what is kept of it.
    ++left_out_;
    while (!parts_.empty()) LeaveOutOldest();
  }
}

void Trace::Append(const json& call) {
  constexpr std::size_t kPartBytes = std::size_t{1} << 20;
  if (parts_.empty() || parts_.back().bytes.size() >= kPartBytes) {
    parts_.emplace_back().bytes.resize(kArrayHead);
    bytes_ += kArrayHead;
  }
  Part& part = parts_.back();
  const std::size_t before = part.bytes.size();
  json::to_msgpack(call, part.bytes);
  ++part.calls;
  bytes_ += part.bytes.size() - before;
  while (bytes_ > kMostBytes) LeaveOutOldest();
}

void Trace::LeaveOutOldest() {
  bytes_ -= parts_.front().bytes.size();
  left_out_ += parts_.front().calls;
  parts_.pop_front();
}

void Trace::State(const Surface& surface, SurfaceState which) {
  const StateRow& row = kStates[static_cast<std::size_t>(which)];
  Keep([&] { return json{row.name, row.value(surface)}; });
}

void Trace::Operation(std::string_view name) {
  Keep([&] { return json::array({name}); });
}

void Trace::Line(const LineCall& call) {
  constexpr std::array<const char*, 3> kShapes = {"line", "box", "filled"};
  Keep([&] {
    json start_x = nullptr;
    json start_y = nullptr;
    if (call.from) {
      start_x = ToJson(call.from->x);
      start_y = ToJson(call.from->y);
    }
    return json{"Line",
                start_x,
                start_y,
                ToJson(call.to.x),
                ToJson(call.to.y),
                OrNull(call.colour),
                kShapes[static_cast<std::size_t>(call.shape)]};
  });
}

void Trace::Circle(const CircleCall& call) {
  Keep([&] {
    return json{"Circle",
                ToJson(call.centre.x),
                ToJson(call.centre.y),
                ToJson(call.radius),
                OrNull(call.colour),
                OrNull(call.start),
                OrNull(call.end),
                OrNull(call.aspect)};
  });
}

void Trace::Print(std::string_view text) {
  Keep([&] { return json::array({"Print", text}); });
}

void Trace::Polygon(std::span<const PixelPoint> points) {
  Keep([&] {
    json list = json::array();
    for (const PixelPoint& point : points) list.push_back({point.x, point.y});
    return json::array({"Polygon", std::move(list)});
  });
}

void Trace::FloodFill(PixelPoint start, Colour boundary) {
  Keep([&] { return json{"FloodFill", start.x, start.y, boundary}; });
}

template <class Use>
void Trace::TakeEach(Use&& use) {
  for (Part& part : parts_) {
    part.bytes[0] = kArrayOf32Bits;
    for (std::size_t i = 1; i < kArrayHead; ++i) {
      part.bytes[i] = static_cast<std::uint8_t>(part.calls >> (8 * (kArrayHead - 1 - i)));
    }
    for (json& call : json::from_msgpack(part.bytes)) use(call);
  }
  parts_.clear();
  bytes_ = 0;
}

json Trace::Take() {
  json calls = json::array();
  TakeEach([&](json& call) { calls.push_back(std::move(call)); });
  return calls;
}

std::string Trace::TakeText() {
  std::string text = "[";
  TakeEach([&](const json& call) {
    if (text.size() > 1) text += ',';
    text += JsonText(call);
  });
  return text + ']';
}

}  // namespace discoplan
