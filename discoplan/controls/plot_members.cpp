// SPDX-License-Identifier: MIT
#include <algorithm>

#include "discoplan/controls/plot_control.h"

namespace discoplan {
namespace {

template <class T, class Given = T>
Member Row(std::string_view name, T (PlotControl::*get)() const,
           void (PlotControl::*set)(Given) = nullptr) {
  return Property<PlotControl, T, Given>(name, get, set);
}

}  // namespace

const std::array<PlotControl::ColourSlot, 10> PlotControl::kIntervalSlots = {{
    {"IntervalColor1", false, 1},
    {"IntervalColor2", false, 2},
    {"IntervalColor3", false, 3},
    {"IntervalColor4", false, 4},
    {"IntervalColor5", false, 5},
    {"IntervalColor6", false, 6},
    {"IntervalColor7", false, 7},
    {"IntervalColor8", false, 8},
    {"IntervalColor9", false, 9},
    {"IntervalColor0", false, 0},
}};

const PlotControl::ColourSlot& PlotControl::IntervalSlot(std::size_t interval) {
  const auto found = std::ranges::find(kIntervalSlots, interval, &ColourSlot::index);
  if (found == kIntervalSlots.end()) numbers_detail::Raise(Fault::Subscript);
  return *found;
}

std::vector<Member> PlotControl::ColourMembers(std::span<const ColourSlot> slots) {
  std::vector<Member> members;
  for (const ColourSlot& slot : slots) {
    members.push_back({.name = slot.property,
                       .kind = Member::Kind::Property,
                       .type = TypeName<Colour>(),
                       .get =
                           [slot](Object& object) {
                             return Variant(static_cast<PlotControl&>(object).TableColour(slot));
                           },
                       .set =
                           [slot](Object& object, const Variant& value) {
                             static_cast<PlotControl&>(object).TableColour(slot, value.AsColour());
                           },
                       .parameters = {},
                       .call = {}});
  }
  return members;
}

std::vector<Member> PlotControl::HostMembers() {
  using C = PlotControl;
  return {
      Row<ObjectRef>("PrinterObj", &C::PrinterObj, &C::PrinterObj),
      Row<std::int32_t>("hdc", &C::hdc),
      Row<std::int32_t>("hwnd", &C::hwnd),
      Row<ObjectRef>("MouseIcon", &C::MouseIcon, &C::MouseIcon),
      Row<std::int16_t>("MousePointer", &C::MousePointer, &C::MousePointer),
      Method("About", &C::About),
      Row<WaferSt>("WaferStyle", &C::WaferStyle, &C::WaferStyle),
  };
}

std::vector<Member> PlotControl::StatisticsMembers() {
  using C = PlotControl;
  return {
      Row<float>("StdDevPercent", &C::StdDevPercent),
      Row<float>("StdDev", &C::StdDev),
      Row<float>("HiLo", &C::HiLo),
      Row<float>("range", &C::range),
      Row<float>("Maximum", &C::Maximum),
      Row<float>("Minimum", &C::Minimum),
      Row<float>("mean", &C::mean),
  };
}

std::vector<Member> PlotControl::SizeMembers() {
  using C = PlotControl;
  return {
      Row<float>("TestDiameter", &C::TestDiameter, &C::TestDiameter),
      Row<float>("WaferDiameter", &C::WaferDiameter, &C::WaferDiameter),
  };
}

std::vector<Member> PlotControl::LimitMembers() {
  using C = PlotControl;
  return {
      Method("Plot", &C::Plot),
      Row<Colour>("BackColor", &C::BackColor, &C::BackColor),
      Method("ReleasePlotLimit", &C::ReleasePlotLimit),
      Method("SetPlotLimit", &C::SetPlotLimit),
  };
}

std::vector<Member> PlotControl::VariantLoadMembers() {
  return {Method("SetWaferData_Variant", &PlotControl::SetWaferData_Variant)};
}

std::vector<Member> PlotControl::LoadMembers() {
  return {Method("SetWaferData", &PlotControl::SetWaferData)};
}

std::vector<Member> PlotControl::LegendMembers() {
  using C = PlotControl;
  return {
      Row<bool>("HideLegend", &C::HideLegend, &C::HideLegend),
      Row<std::string, const std::string&>("PlotCaption", &C::PlotCaption, &C::PlotCaption),
  };
}

std::vector<Member> PlotControl::ReadBackMembers() {
  using C = PlotControl;
  return {
      Method("clear", &C::clear),
      Method("GetWaferData", &C::GetWaferData),
      Method("SetDataFile", &C::SetDataFile),
      Method("Interpolation", &C::Interpolation),
  };
}

std::vector<Member> PlotControl::StaleMembers() {
  return {Method("SetPlotNotVaild", &PlotControl::SetPlotNotVaild)};
}

}  // namespace discoplan
