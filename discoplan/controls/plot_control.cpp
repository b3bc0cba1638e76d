// SPDX-License-Identifier: MIT
#include "discoplan/controls/plot_control.h"

#include <array>
#include <cmath>

#include "discoplan/base/numbers.h"
#include "discoplan/core/number_checks.h"
#include "discoplan/dialogs/option_dialog.h"
#include "discoplan/forms/form.h"
#include "discoplan/print/print_wafer.h"

namespace discoplan {
namespace {

constexpr float kDefaultWaferDiameter = 200;

/// By `MouseEvent`.
constexpr std::array<unsigned, 5> kForwarded = {kForwardsClick, kForwardsDblClick, kForwardsMouse,
                                                kForwardsMouse, kForwardsMouse};

}  // namespace

PlotControl::PlotControl(Platform& platform, Container* container, const ControlClass& own_class)
    : platform_(platform),
      class_(own_class),
      root_(NodeKind::Control, std::string(own_class.name), {}),
      container_(container != nullptr ? container : &silence_) {
  PrinterObj(platform.DefaultPrinter());
  root_.Forwards(kForwardsAll);
}

PlotControl::~PlotControl() {
  presence_.reset();
  for (const auto& open : dialogs_) {
    if (const auto dialog = open.lock(); dialog && dialog->root().Visible()) dialog->Cancel();
  }
}

void PlotControl::InitProperties() {
  const ObjectRef held = Hold();
  for (const std::string_view name : class_.initialised) {
    const Member& member = Members().At(name);
    member.Set(*this, member.initial.As(member.type));
  }
}

void PlotControl::WriteProperties(PropertyBag& bag) {
  const ObjectRef held = Hold();
  for (const StoredProperty& row : class_.SettingsWritten()) {
    Variant value = row.member->Get(*this);
    if (row.kind == StoredKind::Double) value = Variant(value.AsDouble());
    bag.WriteProperty(row.key, row.kind, value, row.default_value);
  }
}

void PlotControl::ReadProperties(const PropertyBag& bag) {
  const ObjectRef held = Hold();
  for (const StoredProperty& row : class_.SettingsRead()) {
    const Member& member = *row.member;
    const Variant value = bag.ReadProperty(
        row.key, row.default_value.IsEmpty() ? member.Get(*this) : row.default_value);
    const auto* reading = member.stored.reading;
    if (reading != nullptr && reading->take != nullptr) {
      reading->take(*this, value, member);
    } else {
      member.Set(*this, value);
    }
  }
}

void PlotControl::SetSize(float width, float height) {
  const ObjectRef held = Hold();
  root_.Move({root_.Box().left, root_.Box().top, width, height});
  Resize();
}

void PlotControl::RequestSize(const Size& size) {
  if (requesting_size_) return;  // the container gives less than that
  const ObjectRef held = Hold();
  requesting_size_ = true;
  try {
    Attempt([&] {
      container_->ResizeRequested(size.width, size.height,
                                  [this](float w, float h) { SetSize(w, h); });
    });
  } catch (...) {
    requesting_size_ = false;
    throw;
  }
  requesting_size_ = false;
}

bool PlotControl::TakesLeastSize(const Size& least, const Size& wanted) {
  const TwipsBox& box = root_.Box();
  const bool too_narrow = !(box.width >= least.width);
  const bool too_low = !(box.height >= least.height);
  if (!too_narrow && !too_low) return false;
  RequestSize({too_narrow ? wanted.width : box.width, too_low ? wanted.height : box.height});
  return true;
}

void PlotControl::ScreenChanged() {
  const ObjectRef held = Hold();
  ForEachNode(root_, [](Node& node) { node.Move(node.Box()); });
  plot_valid_ = false;
  Resize();
  if (plot_requested_ && !plot_valid_) PresentPlot();
}

void PlotControl::ShowDialog(const std::shared_ptr<OptionDialog>& dialog,
                             const std::function<void()>& take) {
  const ObjectRef held = Hold();
  std::erase_if(dialogs_, [](const auto& open) { return open.expired(); });
  dialogs_.push_back(dialog);
  platform_.ShowModal(dialog, [this, dialog, take, present = std::weak_ptr<void>(presence_)] {
    if (present.expired() || !dialog->Redraw()) return;
    const ObjectRef held_meanwhile = Hold();
    take();
  });
}

Node& PlotControl::AddPicture(Node& parent, std::string name, const TwipsBox& place) {
  return AddPictureNode(platform_, parent, std::move(name), place);
}

Node& PlotControl::AddLabel(Node& parent, std::string name, const TwipsBox& place,
                            const std::string& text) {
  Node& node = parent.Add(NodeKind::Label, std::move(name), place);
  node.Text(text);
  return node;
}

void PlotControl::SizeByText(Node& label) {
  label.SizeByText(
      [this](const Node& node) { return platform_.LabelWidth(node.Font(), node.Text()); });
}

void PlotControl::Mouse(Node& node, const MouseAction& action) {
  const auto index = static_cast<std::size_t>(action.event);
  if ((node.Forwards() & kForwarded[index]) == 0) return;
  const ObjectRef held = Hold();
  const Event& event = class_.events[index];
  const std::array<Variant, 4> args = {Variant(action.button), Variant(action.shift),
                                       Variant(action.x), Variant(action.y)};
  container_->EventRaised(event.name, std::span(args).first(event.parameters.size()));
}

void PlotControl::Changed(std::string_view property) {
  const ObjectRef held = Hold();
  const Member& row = Members().At(property);
  if (row.change >= Change::Stale) plot_valid_ = false;
  if (row.change >= Change::Repainted) container_->Repaint();
  container_->PropertyChanged(row.announced);
}

void PlotControl::MouseIcon(ObjectRef icon) {
  mouse_icon_.Hold(std::move(icon), *this);
  Changed("MouseIcon");
}

void PlotControl::SetPointer(std::int16_t pointer) {
  mouse_pointer_ = pointer;
  container_->PointerChanged(pointer);
}

void PlotControl::MousePointer(std::int16_t pointer) {
  const ObjectRef held = Hold();
  SetPointer(pointer);
  Changed("MousePointer");
}

WaferSt PlotControl::WaferStyle() const {
  return wafer_.FlatRatio == wafer::kFlatRatio ? WaferSt::Flat : WaferSt::Notch;
}

void PlotControl::WaferStyle(WaferSt style) {
  wafer_.FlatRatio = style == WaferSt::Flat ? wafer::kFlatRatio : 1.0F;
  Changed("WaferStyle");
}

void PlotControl::TestDiameter(float diameter) {
  if (diameter < 0) diameter = wafer_.WaferDiameter;
  if (wafer_.TestDiameter > diameter && wafer_.GetNop() > 0) {
    ClipToTestDiameter(wafer_, limit_flag_, diameter);
  }
  wafer_.TestDiameter = diameter;
  Changed("TestDiameter");
}

void PlotControl::WaferDiameter(float diameter) {
  wafer_.reset();
  ClearSurface();
  DropSnapshot();
  plot_requested_ = false;
  if (diameter <= 0) diameter = kDefaultWaferDiameter;
  wafer_.WaferDiameter = diameter;
  Changed("WaferDiameter");
}

float PlotControl::StdDevPercent() const {
  if (!(wafer_.mean > 0)) return 0;
  return ToFloat(std::abs(wafer_.StdDev / wafer_.mean) * 100);
}

float PlotControl::range() const {
  return ToFloat(static_cast<double>(wafer_.Maximum) - wafer_.Minimum);
}

float PlotControl::HiLo() const {
  const double sum = static_cast<double>(wafer_.Minimum) + wafer_.Maximum;
  if (sum == 0) return 0;
  return ToFloat(std::abs((static_cast<double>(wafer_.Maximum) - wafer_.Minimum) / sum) * 100);
}

Colour PlotControl::TableColour(const ColourSlot& slot) const {
  const float held =
      slot.auxiliary ? wafer_.AuxColor.at(slot.index) : wafer_.IntervalColor.at(slot.index);
  return static_cast<Colour>(ToInt32(held));
}

void PlotControl::TableColour(const ColourSlot& slot, Colour colour) {
  float& held =
      slot.auxiliary ? wafer_.AuxColor.at(slot.index) : wafer_.IntervalColor.at(slot.index);
  held = static_cast<float>(static_cast<std::int32_t>(colour));
  Changed(slot.property);
}

PlotControl::ColourSlot PlotControl::IntervalSlot(std::size_t interval, bool auxiliary) const {
  const Member* row = interval < wafer_.IntervalColor.size()
                          ? Members().Find(kFirstIntervalId + static_cast<std::int32_t>(interval))
                          : nullptr;
  if (row == nullptr) numbers_detail::Raise(Fault::Subscript);
  return {row->name, auxiliary, interval};
}

void PlotControl::BackColor(Colour colour) {
  ApplyBackColor(colour);
  Changed("BackColor");
}

void PlotControl::HideLegend(bool hidden) {
  const ObjectRef held = Hold();
  ShowLegendPanel(!hidden);
  legend_shown_ = !hidden;
  container_->Repaint();
  Resize();
  Changed("HideLegend");
}

std::string PlotControl::PlotCaption() const { return TitledFrame().Text(); }

void PlotControl::PlotCaption(const std::string& caption) {
  TitledFrame().Text(caption);
  Changed("PlotCaption");
}

PlotResult PlotControl::Plot() {
  if (wafer_.GetNop() == 0) return PlotResult::NoData;
  const ObjectRef held = Hold();
  plot_requested_ = true;
  if (wafer_.FlatRatio == 0) WaferStyle(WaferSt::Notch);
  if (wafer_.WaferDiameter == 0) WaferDiameter(kDefaultWaferDiameter);
  if (wafer_.TestDiameter == 0 || wafer_.TestDiameter > wafer_.WaferDiameter) {
    TestDiameter(wafer_.WaferDiameter);
  }
  FillDefaults();
  PresentPlot();
  return PlotResult::Done;
}

void PlotControl::Print(const std::function<void(PrintWafer&)>& draw) {
  const ObjectRef held = Hold();
  const ObjectRef held_printer = PrinterObj();
  auto* printer = dynamic_cast<Surface*>(held_printer.get());
  if (printer == nullptr) throw RunTimeError(Fault::MemberNotOffered, "PrinterObj is no printer");
  PrintWafer print;
  print.PrinterObj(printer);
  draw(print);
}

PrintResult PlotControl::PrintPlotAs(bool thin, float& left, float& top, float& width,
                                     float& height) {
  const bool too_small = root_.Box().width < class_.least_printed.width ||
                         root_.Box().height < class_.least_printed.height;
  if (too_small && (class_.asks_size_first || CanPrint())) return PrintResult::Failed;
  if (!CanPrint()) return PrintResult::NothingToPrint;
  PageArea area{left, top, width, height};
  Print([&](PrintWafer& print) { thin ? PrintThinOn(print, area) : PrintOn(print, area); });
  left = area.left;
  top = area.top;
  width = area.width;
  height = area.height;
  return PrintResult::Done;
}

PrintResult PlotControl::PrintBlock(const std::function<void(PrintWafer&)>& draw) {
  if (!CanPrint()) return PrintResult::Failed;
  Print(draw);
  return PrintResult::Done;
}

PrintResult PlotControl::PrintWaferStatistic(float left, float top, const std::string& units) {
  return PrintBlock([&](PrintWafer& print) {
    wafer_.Units = units;
    print.DrawWaferStatistics(wafer_, left, top);
  });
}

PrintResult PlotControl::PrintWaferSize(float left, float top) {
  return PrintBlock([&](PrintWafer& print) { print.DrawWaferSize(wafer_, left, top); });
}

void PlotControl::clear() {
  ClearSurface();
  plot_requested_ = false;
  plot_valid_ = false;
}

void PlotControl::AfterLoad() {
  if (class_.family == Family::View) wafer_.GridChanged = true;
  clear();
  DropSnapshot();
  ShowSurface();
}

LoadResult PlotControl::SetWaferData(const ArrayView& x, const ArrayView& y, const ArrayView& z) {
  LoadResult result = LoadResult::Failed;
  const bool went_through = Attempt([&] {
    result = LoadArrays(wafer_, limit_flag_, x, y, z);
    AfterLoad();
  });
  return went_through ? result : LoadResult::Failed;
}

LoadResult PlotControl::SetWaferData_Variant(const Variant& x, const Variant& y, const Variant& z) {
  return SetWaferData(x.AsView(), y.AsView(), z.AsView());
}

LoadResult PlotControl::SetDataFile(const std::string& datafile, float nops) {
  LoadResult result = LoadResult::Failed;
  const bool went_through = Attempt([&] {
    result = LoadFile(wafer_, limit_flag_, datafile, nops);
    AfterLoad();
  });
  return went_through ? result : LoadResult::Failed;
}

float PlotControl::GetWaferData(FloatArray& x, FloatArray& y, FloatArray& z) {
  const std::span<const Site> sites = wafer_.Sites();
  if (wafer_.GetNop() <= 0) return wafer_.GetNop();
  for (FloatArray* array : {&x, &y, &z}) {
    *array = {.lower = 1, .values = std::vector<float>(sites.size()), .dimensioned = true};
  }
  for (std::size_t i = 0; i < sites.size(); ++i) {
    z.values[i] = sites[i].z;
    y.values[i] = sites[i].y;
    x.values[i] = sites[i].x;
  }
  return wafer_.GetNop();
}

float PlotControl::Interpolation(const Variant& x, const Variant& y) {
  // A text that is a number will do.
  const auto converted = [](const Variant& value) {
    const auto* text = std::get_if<std::string>(&value.value());
    const std::optional<double> number = text == nullptr ? std::nullopt : ParseNumber(*text);
    return number ? ToFloat(*number) : value.AsFloat();
  };
  return wafer_.Interpolation(converted(x), converted(y));
}

void PlotControl::ReplotIfRequested() {
  if (!plot_requested_) return;
  plot_valid_ = false;
  Plot();
}

bool PlotControl::SetPlotLimit(float LPL, float UPL) {
  if (class_.ignores_same_limits && LPL == wafer_.PlotMinimum && UPL == wafer_.PlotMaximum) {
    return false;
  }
  limit_flag_ = ApplyPlotLimit(wafer_, LPL, UPL);
  const bool applied = limit_flag_;
  LimitsChanged();
  ReplotIfRequested();
  return applied;
}

void PlotControl::ReleasePlotLimit() {
  limit_flag_ = false;
  wafer_.setMaximalMinial(wafer_.Maximum, wafer_.Minimum);
  LimitsChanged();
  ReplotIfRequested();
}

}  // namespace discoplan
