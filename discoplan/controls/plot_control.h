// SPDX-License-Identifier: MIT
#pragma once

/// The shape that all nine plot controls share: one wafer, data in and out, limits, statistics,
/// state flags and events.
///
///     Plot2D plot(host);
///     plot.WaferDiameter(300);
///     plot.TestDiameter(294);
///     if (plot.SetWaferData(x, y, z) == LoadResult::Loaded) plot.Plot();
///
/// Properties never draw: they mark the picture as stale and wait for `Plot` or a new size.
/// `WaferDiameter` drops all data, so it comes first. Failures are result codes; `RunTimeError`
/// leaves a control only where a value doesn't fit its type, and from the print methods, which let
/// out what the printer object raises. One thread uses a control, with its platform, container and
/// dialogs; other threads may use other controls.
///
/// The container and the platform outlive the control, unless the container calls `Detach`.

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "discoplan/controls/control_class.h"
#include "discoplan/core/enumerations.h"
#include "discoplan/core/loading.h"
#include "discoplan/core/wafer.h"
#include "discoplan/forms/node.h"
#include "discoplan/platform/member_list.h"
#include "discoplan/platform/object.h"
#include "discoplan/platform/platform.h"
#include "discoplan/platform/property_bag.h"

namespace discoplan {

class OptionDialog;
class PrintWafer;
struct PageArea;

enum class PlotResult : std::int16_t { Done = 0, NoData = 1 };
enum class PrintResult : std::int16_t {
  Done = 0,
  Failed = 1,         ///< Of a plot: the control is too small. Of a block: no data or no printer.
  NothingToPrint = 2  ///< Of a plot: no data or no printer.
};

/// Id of `IntervalColor0`; those of the other intervals follow it.
inline constexpr std::int32_t kFirstIntervalId = 100;

enum class MouseEvent { Click, DblClick, MouseDown, MouseMove, MouseUp };

struct MouseAction {
  MouseEvent event = MouseEvent::Click;
  std::int16_t button = 0;
  std::int16_t shift = 0;
  float x = 0;  ///< In the units of the child surface.
  float y = 0;
};

class DISCOPLAN_EXPORT PlotControl : public Object {
 public:
  /// Cancels the dialogs that are still open.
  ~PlotControl() override;

  /// Of which class this control is.
  const ControlClass& Class() const { return class_; }
  const MemberTable& Members() const final { return class_.members; }

  /// Gives the properties the values of a new control.
  void InitProperties();
  /// Hands the settings to the container's store, or takes them from there through the public
  /// properties. Data aren't stored.
  void WriteProperties(PropertyBag& bag);
  void ReadProperties(const PropertyBag& bag);
  /// The container has placed the control or given it a new size.
  void SetSize(float width, float height);
  /// The control has got the focus; gives the child that it moved on to, or nothing.
  virtual const Node* Focused() { return nullptr; }
  /// The control has become visible.
  virtual void Shown() {}
  /// The platform's screen has another resolution: all pictures take it, and what was drawn is
  /// drawn anew.
  virtual void ScreenChanged();
  /// The container goes before the control: nothing more is told.
  void Detach() { container_ = &silence_; }
  /// The user acts with the mouse on a child or on the control itself.
  virtual void Mouse(Node& node, const MouseAction& action);

  Node& root() { return root_; }
  const Node& root() const { return root_; }
  const wafer& Wafer() const { return wafer_; }
  /// Threads that share the interpolation of large lattices; none if empty, as at first.
  void UseWorkers(std::shared_ptr<WorkerPool> workers) { wafer_.UseWorkers(std::move(workers)); }

  // Members of the interface, common to all nine.
  ObjectRef PrinterObj() const { return printer_.Get(); }
  void PrinterObj(ObjectRef printer) { printer_.Hold(std::move(printer), *this); }
  std::int32_t hdc() const { return container_->DeviceHandle(); }
  std::int32_t hwnd() const { return container_->WindowHandle(); }
  ObjectRef MouseIcon() const { return mouse_icon_.Get(); }
  void MouseIcon(ObjectRef icon);
  std::int16_t MousePointer() const { return mouse_pointer_; }
  void MousePointer(std::int16_t pointer);
  /// The same without telling the container.
  void SetPointer(std::int16_t pointer);
  void About() {}

  WaferSt WaferStyle() const;
  void WaferStyle(WaferSt style);
  /// Diameter of the measured area in mm. Negative stands for the wafer's diameter; a smaller one
  /// than before drops the sites outside for good.
  float TestDiameter() const { return wafer_.TestDiameter; }
  void TestDiameter(float diameter);
  /// In mm; 0 or less becomes 200. Drops all data.
  float WaferDiameter() const { return wafer_.WaferDiameter; }
  void WaferDiameter(float diameter);

  float mean() const { return ToFloat(wafer_.mean); }
  float StdDev() const { return ToFloat(wafer_.StdDev); }
  /// Of the mean; 0 unless the mean is positive.
  float StdDevPercent() const;
  float Maximum() const { return wafer_.Maximum; }
  float Minimum() const { return wafer_.Minimum; }
  float range() const;
  /// Half the spread over the middle, in percent.
  float HiLo() const;

  Colour BackColor() const { return root_.BackColor(); }
  void BackColor(Colour colour);
  bool HideLegend() const { return !legend_shown_; }
  void HideLegend(bool hidden);
  std::string PlotCaption() const;
  void PlotCaption(const std::string& caption);

  PlotResult Plot();
  /// Lets the user edit the plot's options in a dialog, and draws anew if that is confirmed.
  virtual void ShowPlotOption() = 0;

  // Prints, in twips from the corner of the page that `PrinterObj` is at. Beginning and ending it
  // is the host's business.

  /// Some controls leave the place of the map in the caller's variables.
  PrintResult PrintPlot(float& left, float& top, float& width, float& height) {
    return PrintPlotAs(false, left, top, width, height);
  }
  /// The unit stays with the wafer.
  PrintResult PrintWaferStatistic(float left, float top, const std::string& units);
  PrintResult PrintWaferSize(float left, float top);

  void clear();
  virtual void SetPlotNotVaild() { plot_valid_ = false; }

  /// Sites in mm from the centre with their values; arrays of any lower bound.
  [[nodiscard]] LoadResult SetWaferData(const ArrayView& x, const ArrayView& y, const ArrayView& z);
  /// The same from variants that hold arrays; raises `TypeMismatch` for others.
  [[nodiscard]] LoadResult SetWaferData_Variant(const Variant& x, const Variant& y,
                                                const Variant& z);
  /// A headerless file of `nops` X, Y and values, 64-bit floats.
  [[nodiscard]] LoadResult SetDataFile(const std::string& datafile, float nops);
  /// Gives the arrays the bounds 1 to n and the sites in store order; without data leaves them.
  /// The result is n.
  float GetWaferData(FloatArray& x, FloatArray& y, FloatArray& z);
  /// Value at a point in mm. Needs no earlier `Plot`.
  float Interpolation(const Variant& x, const Variant& y);

  /// Pins the colour scale; false for a pair out of order, which ends a limit in force.
  bool SetPlotLimit(float LPL, float UPL);
  void ReleasePlotLimit();

 protected:
  PlotControl(Platform& platform, Container* container, const ControlClass& own_class);

  // What each control says about itself.
  virtual void FillDefaults() {}
  /// What `Plot` ends in.
  virtual void PresentPlot() { Resize(); }
  virtual void Resize() = 0;
  /// Empties the drawing, as `clear` does.
  virtual void ClearSurface() = 0;
  /// Drops what shows the drawing in place of the surface itself, and brings the surface back.
  virtual void DropSnapshot() {}
  virtual void ShowSurface() {}
  virtual void ShowLegendPanel(bool shown) = 0;
  virtual void ApplyBackColor(Colour colour) = 0;
  virtual Node& TitledFrame() const = 0;
  /// Prints the plot in its full or its thin form.
  virtual void PrintOn(PrintWafer& print, PageArea& area) = 0;
  virtual void PrintThinOn(PrintWafer& print, PageArea& area) { PrintOn(print, area); }
  /// New plot limits are in force.
  virtual void LimitsChanged() {}

  /// The last steps of every property let, as its row tells.
  void Changed(std::string_view property);
  PrintResult PrintPlotAs(bool thin, float& left, float& top, float& width, float& height);
  /// Runs `draw` with a print engine of its own, if there are data and a printer.
  PrintResult PrintBlock(const std::function<void(PrintWafer&)>& draw);
  /// A size in twips.
  struct Size {
    float width;
    float height;
  };
  /// True for a control that is too small, in one direction or both. It has asked for the `wanted`
  /// size there, and the resize that came of it has done the work.
  bool TakesLeastSize(const Size& least, const Size& wanted);
  bool TakesLeastSize(const Size& least) { return TakesLeastSize(least, least); }
  /// Shows the dialog, which has its values. `take` runs if the user confirms them, before or after
  /// this returns, and not once the control is gone.
  void ShowDialog(const std::shared_ptr<OptionDialog>& dialog, const std::function<void()>& take);
  /// Adds a picture surface to the tree.
  Node& AddPicture(Node& parent, std::string name, const TwipsBox& place);
  static Node& AddLabel(Node& parent, std::string name, const TwipsBox& place,
                        const std::string& text = {});
  /// The label becomes as wide as each text that it is given.
  void SizeByText(Node& label);

  /// A colour property on a slot of the wafer's colour table.
  struct ColourSlot {
    std::string_view property;
    bool auxiliary;  ///< `AuxColor` instead of `IntervalColor`.
    std::size_t index;
  };
  Colour TableColour(const ColourSlot& slot) const;
  void TableColour(const ColourSlot& slot, Colour colour);
  /// Of the interval of that number; raises `Subscript` for one that the class doesn't have.
  ColourSlot IntervalSlot(std::size_t interval, bool auxiliary = false) const;

  Container& container() const { return *container_; }
  /// Keeps the control for the rest of a member that calls out.
  ObjectRef Hold() { return weak_from_this().lock(); }

  Platform& platform_;
  const ControlClass& class_;
  Node root_;
  wafer wafer_;
  bool limit_flag_ = false;
  bool plot_requested_ = false;
  bool plot_valid_ = false;
  bool legend_shown_ = true;

 private:
  /// An object that the host set. A control doesn't keep itself alive by it.
  class Held {
   public:
    ObjectRef Get() const { return object_ ? object_ : owner_.lock(); }
    void Hold(ObjectRef object, const Object& owner) {
      const bool own = object.get() == &owner;
      owner_ = own ? object : nullptr;
      object_ = own ? nullptr : std::move(object);
    }

   private:
    ObjectRef object_;
    std::weak_ptr<Object> owner_;
  };

  bool CanPrint() const { return wafer_.GetNop() != 0 && PrinterObj() != nullptr; }
  void Print(const std::function<void(PrintWafer&)>& draw);
  void AfterLoad();
  void ReplotIfRequested();
  /// Asks the container for a size in twips, which it may refuse. What it gives isn't asked about
  /// again.
  void RequestSize(const Size& size);

  Container silence_;  // listens in place of a container that isn't there

  Container* container_;
  std::vector<std::weak_ptr<OptionDialog>> dialogs_;
  std::shared_ptr<void> presence_ = std::make_shared<char>();  // as long as the control
  Held printer_;
  Held mouse_icon_;
  std::int16_t mouse_pointer_ = 0;
  bool requesting_size_ = false;
};

}  // namespace discoplan
