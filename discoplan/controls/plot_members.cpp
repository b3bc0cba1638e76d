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

using C = PlotControl;

std::vector<Member> HostMembers() {
  return {
      Row<ObjectRef>("PrinterObj", &C::PrinterObj, &C::PrinterObj),
      Row<std::int32_t>("hdc", &C::hdc),
      Row<std::int32_t>("hwnd", &C::hwnd),
      Row<ObjectRef>("MouseIcon", &C::MouseIcon, &C::MouseIcon),
      Row<std::int16_t>("MousePointer", &C::MousePointer, &C::MousePointer),
      Method("About", &C::About),
  };
}

std::vector<Member> WaferMembers() {
  return {
      Row<WaferSt>("WaferStyle", &C::WaferStyle, &C::WaferStyle),
      Row<float>("StdDevPercent", &C::StdDevPercent),
      Row<float>("StdDev", &C::StdDev),
      Row<float>("HiLo", &C::HiLo),
      Row<float>("range", &C::range),
      Row<float>("Maximum", &C::Maximum),
      Row<float>("Minimum", &C::Minimum),
      Row<float>("mean", &C::mean),
      Row<float>("TestDiameter", &C::TestDiameter, &C::TestDiameter),
      Row<float>("WaferDiameter", &C::WaferDiameter, &C::WaferDiameter),
  };
}

std::vector<Member> PlotMembers() {
  return {
      Method("Plot", &C::Plot),
      Row<Colour>("BackColor", &C::BackColor, &C::BackColor),
      Method("ShowPlotOption", &C::ShowPlotOption),
      Method("ReleasePlotLimit", &C::ReleasePlotLimit),
      Method("SetPlotLimit", &C::SetPlotLimit),
  };
}

std::vector<Member> LoadMembers() {
  return {
      Method("SetWaferData", &C::SetWaferData),
      Row<bool>("HideLegend", &C::HideLegend, &C::HideLegend),
      Row<std::string, const std::string&>("PlotCaption", &C::PlotCaption, &C::PlotCaption),
  };
}

std::vector<Member> DataMembers() {
  return {
      Method("PrintWaferStatistic", &C::PrintWaferStatistic),
      Method("PrintWaferSize", &C::PrintWaferSize),
      Method("clear", &C::clear),
      Method("GetWaferData", &C::GetWaferData),
      Method("SetDataFile", &C::SetDataFile),
      Method("Interpolation", &C::Interpolation),
  };
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

MemberTable PlotControl::MembersWith(const OwnMembers& own) {
  std::vector<Member> members;
  const auto add = [&](const std::vector<Member>& block) {
    members.insert(members.end(), block.begin(), block.end());
  };
  add(HostMembers());
  add(WaferMembers());
  for (const std::vector<Member>& block : own.properties) add(block);
  add(PlotMembers());
  if (own.loads_variants) add({Method("SetWaferData_Variant", &C::SetWaferData_Variant)});
  add(LoadMembers());
  add(own.prints);
  add(DataMembers());
  for (const ColourSlot& slot : own.colours) {
    add({{.name = slot.property,
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
          .call = {}}});
  }
  add(own.methods);
  add({Method("SetPlotNotVaild", &C::SetPlotNotVaild)});
  return MemberTable(std::move(members));
}

}  // namespace discoplan
