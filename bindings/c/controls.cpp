// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <deque>
#include <mutex>

#include "bindings/c/describe.h"
#include "bindings/c/drawing.h"
#include "bindings/c/of_thread.h"
#include "bindings/c/values.h"
#include "data/plain_text.h"
#include "discoplan/controls/control_factory.h"
#include "hosts/headless/headless_host.h"

using namespace discoplan;
using namespace discoplan::c;

namespace {

/// A control without a window, with the host that it stands on.
class HeldControl final : public Held, private Container {
 public:
  static constexpr Kind kKind = Kind::Control;
  using Handle = discoplan_control;

  explicit HeldControl(const std::string& class_name) : Held(kKind) {
    control_ = NewControl(class_name, host_, this);
    if (control_ == nullptr) {
      std::string names;
      for (const ControlClass* each : ControlClasses()) {
        names += (names.empty() ? "" : ", ") + std::string(each->name);
      }
      throw Error(DISCOPLAN_NO_MEMBER,
                  "there is no control " + data::Shown(class_name) + ", but " + names);
    }
    control_->InitProperties();
  }

  /// Runs `work` while no other thread uses the control.
  template <class Work>
  void Use(Work&& work) {
    const std::lock_guard lock(mutex_);
    work(*control_);
  }

  void Resize(int width, int height) {
    constexpr int kMost = 10000;
    if (width < 1 || height < 1 || width > kMost || height > kMost) {
      Refuse("a control's size is 1 to 10000 pixels each way");
    }
    const Screen& screen = host_.screen();
    control_->SetSize(static_cast<float>(width) * screen.twips_per_pixel_x,
                      static_cast<float>(height) * screen.twips_per_pixel_y);
  }
  std::shared_ptr<HeldPicture> Picture() const {
    return std::make_shared<HeldPicture>(PaintPicture(*control_, host_));
  }
  /// On a page of that size, or of its own.
  std::shared_ptr<HeldPicture> Print(double width_mm, double height_mm) {
    const Screen& screen = host_.screen();
    const TwipsBox& box = control_->root().Box();
    Drawing drawing;
    drawing.size = {.width = box.width / kTwipsPerPoint,
                    .height = box.height / kTwipsPerPoint,
                    .pixels_per_point = kTwipsPerPoint / screen.twips_per_pixel_x};
    if (width_mm != 0 || height_mm != 0) drawing.size = PageSize(width_mm, height_mm);
    std::vector<figures::Figure> pages = {PrintClassic(*control_, drawing)};
    return std::make_shared<HeldPicture>(std::move(pages), std::move(drawing),
                                         std::vector<std::shared_ptr<MeasuredWafer>>());
  }
  void Listen(discoplan_event_handler handler, void* context) {
    handler_ = handler;
    context_ = context;
  }

 private:
  void EventRaised(std::string_view event, std::span<const Variant> args) override {
    if (handler_ == nullptr) return;
    Kept kept;
    std::vector<discoplan_value> values;
    for (const Variant& arg : args) values.push_back(kept.Keep(arg));
    const std::string name(event);
    handler_(context_, name.c_str(), values.data(), static_cast<std::int64_t>(values.size()));
  }

  std::recursive_mutex mutex_;  // a handler of events may call the control
  HeadlessHost host_;
  std::unique_ptr<PlotControl> control_;
  discoplan_event_handler handler_ = nullptr;
  void* context_ = nullptr;
};

/// Keeps what a thread is given until its next call: those of other threads may come in between.
Kept& Given() {
  struct Last {
    Kept given;
  };
  return OfThread<Last>().given;
}

const Member& MemberOf(const PlotControl& control, const char* name) {
  const std::string wanted = &Needed(name, "name");
  if (const Member* member = control.Members().Find(wanted)) return *member;
  throw Error(DISCOPLAN_NO_MEMBER,
              std::string(control.Class().name) + " has no member " + data::Shown(wanted));
}

/// What goes wrong in a member is told with its name.
template <class Work>
void Named(const Member& member, Work&& work) {
  try {
    work();
  } catch (const RunTimeError& error) {
    RaiseNamed(member.name, error);
  }
}

/// An array that the method may give new bounds is its own.
Variant ArgumentOf(const discoplan_value& given, const Parameter& parameter) {
  Variant value = VariantOf(given);
  if (parameter.direction == Direction::In || given.type != DISCOPLAN_NUMBERS) return value;
  const ArrayView view = value.AsView();
  return Variant(FloatArray{.lower = view.lower,
                            .values = {view.values.begin(), view.values.end()},
                            .dimensioned = !view.values.empty()});
}

void CallMember(PlotControl& control, const Member& member, std::span<discoplan_value> arguments,
                discoplan_value* result, Kept& kept) {
  if (member.kind != Member::Kind::Method) {
    throw RunTimeError(Fault::MemberNotOffered, std::string(member.name) + " is no method");
  }
  if (arguments.size() != member.parameters.size()) {
    Refuse(std::string(member.name) + " takes " + std::to_string(member.parameters.size()) +
           " arguments, not " + std::to_string(arguments.size()));
  }
  std::vector<Variant> values;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    values.push_back(ArgumentOf(arguments[i], member.parameters[i]));
  }
  const Variant given = member.Call(control, values);
  kept.Clear();
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (member.parameters[i].direction == Direction::InOut) arguments[i] = kept.Keep(values[i]);
  }
  if (result != nullptr) *result = kept.Keep(given);
}

MouseEvent EventNamed(const PlotControl& control, const std::string& name) {
  const auto events = control.Class().events;
  const auto found =
      std::find_if(events.begin(), events.end(), [&](const Event& e) { return e.name == name; });
  if (found != events.end()) return static_cast<MouseEvent>(found - events.begin());
  throw Error(DISCOPLAN_NO_MEMBER,
              std::string(control.Class().name) + " has no event " + data::Shown(name));
}

std::int16_t Narrowed(std::int32_t number, const char* name) {
  if (number < INT16_MIN || number > INT16_MAX) Refuse(std::string(name) + " needs over 16 bits");
  return static_cast<std::int16_t>(number);
}

}  // namespace

discoplan_status discoplan_describe(const char** json) {
  return Guarded([&] {
    static const auto& text = *new std::string(DescribedClasses());
    Needed(json, "json") = text.c_str();
  });
}

discoplan_status discoplan_control_new(const char* class_name, int32_t width, int32_t height,
                                       discoplan_control** control) {
  return HandedOut<HeldControl>(control, [&] {
    auto held = std::make_shared<HeldControl>(&Needed(class_name, "class_name"));
    held->Resize(width, height);
    return held;
  });
}

discoplan_status discoplan_control_resize(discoplan_control* control, int32_t width,
                                          int32_t height) {
  return Guarded([&] {
    const auto held = Get<HeldControl>(control);
    held->Use([&](PlotControl&) { held->Resize(width, height); });
  });
}

discoplan_status discoplan_control_get(discoplan_control* control, const char* name,
                                       discoplan_value* value) {
  return Guarded([&] {
    const auto held = Get<HeldControl>(control);
    Needed(value, "value");
    held->Use([&](PlotControl& plot) {
      const Member& member = MemberOf(plot, name);
      Kept& kept = Given();
      kept.Clear();
      Named(member, [&] { *value = kept.Keep(member.Get(plot)); });
    });
  });
}

discoplan_status discoplan_control_set(discoplan_control* control, const char* name,
                                       const discoplan_value* value) {
  return Guarded([&] {
    const auto held = Get<HeldControl>(control);
    const Variant given = VariantOf(Needed(value, "value"));
    held->Use([&](PlotControl& plot) {
      const Member& member = MemberOf(plot, name);
      Named(member, [&] { member.Set(plot, given); });
    });
  });
}

discoplan_status discoplan_control_call(discoplan_control* control, const char* name,
                                        discoplan_value* arguments, int64_t count,
                                        discoplan_value* result) {
  return Guarded([&] {
    const auto held = Get<HeldControl>(control);
    if (count < 0) Refuse("count: there can't be fewer than no arguments");
    if (count > 0) Needed(arguments, "arguments");
    held->Use([&](PlotControl& plot) {
      const Member& member = MemberOf(plot, name);
      const std::span given(arguments, static_cast<std::size_t>(count));
      Named(member, [&] { CallMember(plot, member, given, result, Given()); });
    });
  });
}

discoplan_status discoplan_control_listen(discoplan_control* control,
                                          discoplan_event_handler handler, void* context) {
  return Guarded([&] {
    const auto held = Get<HeldControl>(control);
    held->Use([&](PlotControl&) { held->Listen(handler, context); });
  });
}

discoplan_status discoplan_control_mouse(discoplan_control* control, const char* child,
                                         const char* event, int32_t button, int32_t shift, float x,
                                         float y) {
  return Guarded([&] {
    const auto held = Get<HeldControl>(control);
    const std::string name = &Needed(event, "event");
    held->Use([&](PlotControl& plot) {
      Node* node = child != nullptr ? plot.root().Find(child) : &plot.root();
      if (node == nullptr) {
        throw Error(DISCOPLAN_NO_MEMBER,
                    std::string(plot.Class().name) + " has no child " + data::Shown(child));
      }
      plot.Mouse(*node, {.event = EventNamed(plot, name),
                         .button = Narrowed(button, "button"),
                         .shift = Narrowed(shift, "shift"),
                         .x = x,
                         .y = y});
    });
  });
}

discoplan_status discoplan_control_picture(discoplan_control* control,
                                           discoplan_picture** picture) {
  return HandedOut<HeldPicture>(picture, [&] {
    const auto held = Get<HeldControl>(control);
    std::shared_ptr<HeldPicture> taken;
    held->Use([&](PlotControl&) { taken = held->Picture(); });
    return taken;
  });
}

discoplan_status discoplan_control_print(discoplan_control* control, double width_mm,
                                         double height_mm, discoplan_picture** picture) {
  return HandedOut<HeldPicture>(picture, [&] {
    const auto held = Get<HeldControl>(control);
    std::shared_ptr<HeldPicture> page;
    held->Use([&](PlotControl&) { page = held->Print(width_mm, height_mm); });
    return page;
  });
}
