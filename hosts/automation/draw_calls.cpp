// SPDX-License-Identifier: MIT
#include "hosts/automation/draw_calls.h"

#include <map>
#include <string>
#include <vector>

#include "discoplan/base/numbers.h"
#include "hosts/automation/values.h"

namespace discoplan {
namespace {

using nlohmann::json;

/// The arguments of one call; those left out at the end count as null.
class Arguments {
 public:
  explicit Arguments(const json& call) : call_(call) {}

  const json& operator[](std::size_t i) const {
    static const json null;
    return i + 1 < call_.size() ? call_[i + 1] : null;
  }
  float Number(std::size_t i) const {
    return static_cast<float>(ToNumber((*this)[i], "An argument of a call"));
  }
  std::int32_t Whole(std::size_t i) const { return ToInt32(ToNumber((*this)[i], "A pixel")); }
  std::optional<float> OptionalNumber(std::size_t i) const {
    if ((*this)[i].is_null()) return {};
    return Number(i);
  }
  std::optional<Colour> OptionalColour(std::size_t i) const {
    if ((*this)[i].is_null()) return {};
    return Variant(ToNumber((*this)[i], "A colour")).AsColour();
  }
  std::string Text(std::size_t i) const {
    if (!(*this)[i].is_string()) throw RequestError("An argument of a call must be a text.");
    return (*this)[i].get<std::string>();
  }

 private:
  const json& call_;
};

LineShape ToShape(const std::string& name) {
  if (name == "line") return LineShape::Line;
  if (name == "box") return LineShape::Box;
  if (name == "filled") return LineShape::FilledBox;
  throw RequestError("The shape of a line is \"line\", \"box\" or \"filled\".");
}

void Line(Surface& surface, const Arguments& args) {
  LineCall call{.from = {}, .to = {args.Number(2), args.Number(3)}};
  if (!args[0].is_null()) call.from = {args.Number(0), args.Number(1)};
  call.colour = args.OptionalColour(4);
  if (!args[5].is_null()) call.shape = ToShape(args.Text(5));
  surface.Line(call);
}

void Circle(Surface& surface, const Arguments& args) {
  surface.Circle({.centre = {args.Number(0), args.Number(1)},
                  .radius = args.Number(2),
                  .colour = args.OptionalColour(3),
                  .start = args.OptionalNumber(4),
                  .end = args.OptionalNumber(5),
                  .aspect = args.OptionalNumber(6)});
}

void Polygon(Surface& surface, const Arguments& args) {
  if (!args[0].is_array()) throw RequestError("A polygon takes a list of points.");
  std::vector<PixelPoint> points;
  for (const json& point : args[0]) {
    if (!point.is_array() || point.size() != 2) throw RequestError("A point is a list [X, Y].");
    points.push_back(
        {ToInt32(ToNumber(point[0], "A pixel")), ToInt32(ToNumber(point[1], "A pixel"))});
  }
  surface.Polygon(points);
}

void SetFont(Surface& surface, const Arguments& args) {
  const json& given = args[0];
  if (!given.is_object()) throw RequestError("A font is an object with \"Name\" and \"Size\".");
  Font font;
  font.name = TextField(given, "Name");
  font.size = NumberField(given, "Size");
  font.bold = NumberField(given, "Bold", 0) != 0;
  font.underline = NumberField(given, "Underline", 0) != 0;
  surface.Font(font);
}

using Drawing = void (*)(Surface&, const Arguments&);

const std::map<std::string, Drawing, std::less<>>& Drawings() {
  static const std::map<std::string, Drawing, std::less<>> drawings = {
      {"Cls", [](Surface& s, const Arguments&) { s.Cls(); }},
      {"Refresh", [](Surface& s, const Arguments&) { s.Refresh(); }},
      {"Picture", [](Surface& s, const Arguments&) { s.KeepImageAsPicture(); }},
      {"Print", [](Surface& s, const Arguments& args) { s.Print(args.Text(0)); }},
      {"FloodFill",
       [](Surface& s, const Arguments& args) {
         s.FloodFill({args.Whole(0), args.Whole(1)},
                     args.OptionalColour(2).value_or(s.ForeColor()));
       }},
      {"Line", Line},
      {"Circle", Circle},
      {"Polygon", Polygon},
      {"Font", SetFont},
  };
  return drawings;
}

void DrawCall(Surface& surface, const json& call) {
  if (!call.is_array() || call.empty() || !call[0].is_string()) {
    throw RequestError("A call is a list that begins with its name.");
  }
  const Arguments args(call);
  const std::string name = call[0].get<std::string>();
  if (const auto drawing = Drawings().find(name); drawing != Drawings().end()) {
    return drawing->second(surface, args);
  }
  const Member* state = surface.Members().Find(name);
  if (state == nullptr || !state->writable())
    throw RequestError("There is no call \"" + name + "\".");
  state->Set(surface, ToVariant(args[0], state->type, {}));
}

}  // namespace

void DrawCalls(Surface& surface, const json& calls) {
  if (!calls.is_array()) throw RequestError("The field \"calls\" must be a list of calls.");
  for (const json& call : calls) DrawCall(surface, call);
}

}  // namespace discoplan
