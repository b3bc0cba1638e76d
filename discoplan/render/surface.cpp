// SPDX-License-Identifier: MIT
#include "discoplan/render/surface.h"

#include "discoplan/base/numbers.h"
#include "discoplan/platform/member_list.h"

namespace discoplan {
namespace {

using S = Surface;

template <class T, T (S::*get)() const, void (S::*set)(member_detail::Given<T>)>
constexpr Member State(std::string_view name) {
  return Property<S, T, get, set>({.name = name});
}

constexpr std::array kMembers = {
    State<Colour, &S::ForeColor, &S::ForeColor>("ForeColor"),
    State<Colour, &S::BackColor, &S::BackColor>("BackColor"),
    State<Colour, &S::FillColor, &S::FillColor>("FillColor"),
    State<std::int16_t, &S::FillStyle, &S::FillStyle>("FillStyle"),
    State<std::int16_t, &S::DrawStyle, &S::DrawStyle>("DrawStyle"),
    State<std::int16_t, &S::DrawWidth, &S::DrawWidth>("DrawWidth"),
    State<float, &S::CurrentX, &S::CurrentX>("CurrentX"),
    State<float, &S::CurrentY, &S::CurrentY>("CurrentY"),
    State<bool, &S::FontTransparent, &S::FontTransparent>("FontTransparent"),
    State<std::int16_t, &S::ScaleMode, &S::ScaleMode>("ScaleMode"),
    State<float, &S::ScaleLeft, &S::ScaleLeft>("ScaleLeft"),
    State<float, &S::ScaleTop, &S::ScaleTop>("ScaleTop"),
    State<float, &S::ScaleWidth, &S::ScaleWidth>("ScaleWidth"),
    State<float, &S::ScaleHeight, &S::ScaleHeight>("ScaleHeight"),
    State<float, &S::Width, &S::Width>("Width"),
    State<float, &S::Height, &S::Height>("Height"),
    State<const std::string&, &S::FontName, &S::FontName>("Font.Name"),
    State<float, &S::FontSize, &S::FontSize>("Font.Size"),
    State<bool, &S::FontBold, &S::FontBold>("Font.Bold"),
    State<bool, &S::FontUnderline, &S::FontUnderline>("Font.Underline"),
    ReadOnly<S, float, &S::TwipsPerPixelX>({.name = "TwipsPerPixelX"}),
    ReadOnly<S, float, &S::TwipsPerPixelY>({.name = "TwipsPerPixelY"}),
};
constexpr MemberTable kTable(kMembers);

}  // namespace

void Surface::Line(const LineCall& call) {
  DrawLine(call);
  state_.current = call.to;
}

void Surface::KeepImageAsPicture() { numbers_detail::Raise(Fault::MemberNotOffered); }

float Surface::TwipsPerPixelX() const { numbers_detail::Raise(Fault::MemberNotOffered); }

float Surface::TwipsPerPixelY() const { numbers_detail::Raise(Fault::MemberNotOffered); }

const MemberTable& Surface::Members() const { return kTable; }

}  // namespace discoplan
