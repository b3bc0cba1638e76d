// SPDX-License-Identifier: MIT
#pragma once

/// The one description of each control class: constant data, without an instance or a platform.
/// Stores, announcements, pages, widgets, bindings, commands and documents are made from it.
///
///     for (const ControlClass* kind : ControlClasses()) {
///       for (const Member& member : kind->members) Show(member.name, member.id, member.doc);
///     }
///     const ControlClass* map = FindControlClass("Plot2D");
///     std::unique_ptr<PlotControl> plot = map->make(platform, container);
///
/// Ids, class ids, keys and names are promises to hosts and stores that exist: they never change.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "discoplan/export.h"
#include "discoplan/platform/object.h"

namespace discoplan {

class Container;
class Platform;
class PlotControl;

/// One event that a control raises to its container.
struct Event {
  std::string_view name;
  std::int32_t id;
  ParameterList parameters;
  std::string_view doc;
};

/// A setting as a store sees it.
struct StoredProperty {
  std::string key;
  StoredKind kind;
  Variant default_value;  ///< Empty where that is the property's present value.
  const Member* member;
};

/// What a plot looks like at large.
enum class Family : std::uint8_t {
  Map,       ///< The wafer from above, with a legend beside it.
  View,      ///< The wafer in perspective, with a legend beside it.
  Chart,     ///< The distribution of the values, without the wafer.
  LineScan,  ///< The values along a cut.
};

struct ControlClass {
  std::string_view name;        ///< "Plot2D"
  std::string_view kind;        ///< Its short name, as in `discoplan plot --kind 2D`.
  std::string_view title;       ///< A word or two, as on a tab.
  std::string_view summary;     ///< What it shows, in one sentence.
  std::string_view class_id;    ///< "6A2C02D3-6199-47A0-A1F2-E146C92E2394"
  std::string_view program_id;  ///< "Discoplan.Plot2D"
  std::int16_t about_number;    ///< By which the about box knows it.
  Family family;

  /// The least size that the control takes, in twips, with its legend shown.
  struct Size {
    float width;
    float height;
  };
  Size least;
  Size least_printed = {750, 750};  ///< A smaller control prints no plot.
  /// A control that is too small says so before anything else, not only once it has data.
  bool asks_size_first = false;
  std::size_t least_sites;  ///< With less the plot stays empty.
  /// Limits equal to those in force are no change.
  bool ignores_same_limits = false;

  std::span<const std::string_view> pages;  ///< Property pages, that of all controls first.
  MemberTable members;
  std::span<const Event> events;

  /// What comes before the keys of a store.
  struct Prefixes {
    std::string_view first;         ///< Of most.
    std::string_view last;          ///< Of `HideLegend` and those behind it.
    std::string_view colours_read;  ///< Of the interval colours when they are read.
  };
  Prefixes prefixes;
  /// Orders, by name: what a new control sets, what a store is given, what it is asked for. In the
  /// last two, members that aren't kept count for nothing.
  std::span<const std::string_view> initialised;
  std::span<const std::string_view> written;
  std::span<const std::string_view> read;

  std::unique_ptr<PlotControl> (*make)(Platform&, Container*);

  /// The key under which a member is written; empty for one that isn't kept.
  DISCOPLAN_EXPORT std::string KeyOf(const Member& member) const;
  /// The settings in the order of writing, and in that of reading. They differ in a few places, and
  /// stores that exist depend on that.
  DISCOPLAN_EXPORT std::vector<StoredProperty> SettingsWritten() const;
  DISCOPLAN_EXPORT std::vector<StoredProperty> SettingsRead() const;
};

/// All classes, in the order of the interface.
DISCOPLAN_EXPORT std::span<const ControlClass* const> ControlClasses();

/// The class of that name, such as "Plot2D", or of that kind, such as "2D"; nothing for a name that
/// none has.
DISCOPLAN_EXPORT const ControlClass* FindControlClass(std::string_view name);
DISCOPLAN_EXPORT const ControlClass* FindControlKind(std::string_view kind);

/// The enumerations that members have.
DISCOPLAN_EXPORT std::span<const Enumeration> Enumerations();

}  // namespace discoplan
