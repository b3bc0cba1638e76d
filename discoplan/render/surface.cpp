// SPDX-License-Identifier: MIT
#include "discoplan/render/surface.h"

#include "discoplan/base/numbers.h"
#include "discoplan/platform/member_list.h"

namespace discoplan {
namespace {

template <class T, class Given = T>
Member StateRow(std::string_view name, T (Surface::*get)() const, void (Surface::*set)(Given)) {
  return Property<Surface, T, Given>(name, get, set);
}

}  // namespace

void Surface::Line(const LineCall& call) {
  DrawLine(call);
  state_.current = call.to;
}

void Surface::KeepImageAsPicture() { numbers_detail::Raise(Fault::MemberNotOffered); }

float Surface::TwipsPerPixelX() const { numbers_detail::Raise(Fault::MemberNotOffered); }

float Surface::TwipsPerPixelY() const { numbers_detail::Raise(Fault::MemberNotOffered); }

const MemberTable& Surface::Members() const {
  static const MemberTable table(std::vector<Member>{
      StateRow<Colour>("ForeColor", &Surface::ForeColor, &Surface::ForeColor),
      StateRow<Colour>("BackColor", &Surface::BackColor, &Surface::BackColor),
      StateRow<Colour>("FillColor", &Surface::FillColor, &Surface::FillColor),
      StateRow<std::int16_t>("FillStyle", &Surface::FillStyle, &Surface::FillStyle),
      StateRow<std::int16_t>("DrawStyle", &Surface::DrawStyle, &Surface::DrawStyle),
      StateRow<std::int16_t>("DrawWidth", &Surface::DrawWidth, &Surface::DrawWidth),
      StateRow<float>("CurrentX", &Surface::CurrentX, &Surface::CurrentX),
      StateRow<float>("CurrentY", &Surface::CurrentY, &Surface::CurrentY),
      StateRow<bool>("FontTransparent", &Surface::FontTransparent, &Surface::FontTransparent),
      StateRow<std::int16_t>("ScaleMode", &Surface::ScaleMode, &Surface::ScaleMode),
      StateRow<float>("ScaleLeft", &Surface::ScaleLeft, &Surface::ScaleLeft),
      StateRow<float>("ScaleTop", &Surface::ScaleTop, &Surface::ScaleTop),
      StateRow<float>("ScaleWidth", &Surface::ScaleWidth, &Surface::ScaleWidth),
      StateRow<float>("ScaleHeight", &Surface::ScaleHeight, &Surface::ScaleHeight),
      StateRow<float>("Width", &Surface::Width, &Surface::Width),
      StateRow<float>("Height", &Surface::Height, &Surface::Height),
      StateRow<const std::string&>("Font.Name", &Surface::FontName, &Surface::FontName),
      StateRow<float>("Font.Size", &Surface::FontSize, &Surface::FontSize),
      StateRow<bool>("Font.Bold", &Surface::FontBold, &Surface::FontBold),
      StateRow<bool>("Font.Underline", &Surface::FontUnderline, &Surface::FontUnderline),
      Property<Surface, float>("TwipsPerPixelX", &Surface::TwipsPerPixelX),
      Property<Surface, float>("TwipsPerPixelY", &Surface::TwipsPerPixelY),
  });
  return table;
}

}  // namespace discoplan
