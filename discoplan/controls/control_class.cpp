// SPDX-License-Identifier: MIT
#include "discoplan/controls/control_class.h"

#include <algorithm>
#include <array>

#include "discoplan/controls/histo.h"
#include "discoplan/controls/line_scan.h"
#include "discoplan/controls/plot2d.h"
#include "discoplan/controls/plot2dc.h"
#include "discoplan/controls/plot2dn.h"
#include "discoplan/controls/plot2ds.h"
#include "discoplan/controls/plot3d.h"
#include "discoplan/controls/plot3db.h"
#include "discoplan/controls/plot3ds.h"
#include "discoplan/core/enumerations.h"

namespace discoplan {
namespace {

constexpr std::array<const ControlClass*, 9> kClasses = {
    &Plot2D::kClass,  &Plot2DS::kClass, &Plot2DC::kClass, &Plot2DN::kClass,  &Plot3D::kClass,
    &Plot3DS::kClass, &Plot3DB::kClass, &Histo::kClass,   &LineScan::kClass,
};

const ControlClass* FindBy(std::string_view ControlClass::*name, std::string_view wanted) {
  const auto found = std::find_if(kClasses.begin(), kClasses.end(),
                                  [&](const ControlClass* row) { return row->*name == wanted; });
  return found == kClasses.end() ? nullptr : *found;
}

std::string Key(const ControlClass::Prefixes& prefixes, const Stored& stored,
                std::string_view colours) {
  const std::string key(stored.key);
  switch (stored.prefix) {
    case Stored::Prefix::First:
      return std::string(prefixes.first) + key;
    case Stored::Prefix::Last:
      return std::string(prefixes.last) + key;
    case Stored::Prefix::Colours:
      return std::string(colours) + key;
    default:
      return key;
  }
}

}  // namespace

std::string ControlClass::KeyOf(const Member& member) const {
  return member.kept() ? Key(prefixes, member.stored, prefixes.first) : std::string();
}

std::vector<StoredProperty> ControlClass::SettingsWritten() const {
  std::vector<StoredProperty> rows;
  for (const std::string_view row : written) {
    const Member& member = members.At(row);
    if (!member.kept()) continue;
    const StoredKind stored_as = member.stored.kind;
    rows.push_back({KeyOf(member), stored_as,
                    member.stored.default_value.As(stored_as, member.type), &member});
  }
  return rows;
}

std::vector<StoredProperty> ControlClass::SettingsRead() const {
  std::vector<StoredProperty> rows;
  for (const std::string_view row : read) {
    const Member& member = members.At(row);
    if (!member.kept()) continue;
    const Stored& stored = member.stored;
    const Stored::Reading own = {.kind = stored.kind, .default_value = stored.default_value};
    const Stored::Reading& reading = stored.reading != nullptr ? *stored.reading : own;
    const bool present = stored.reading != nullptr && reading.default_value.IsNothing();
    rows.push_back({Key(prefixes, stored, prefixes.colours_read), reading.kind,
                    present ? Variant() : reading.default_value.As(reading.kind, member.type),
                    &member});
  }
  return rows;
}

std::span<const ControlClass* const> ControlClasses() { return kClasses; }

const ControlClass* FindControlClass(std::string_view name) {
  return FindBy(&ControlClass::name, name);
}

const ControlClass* FindControlKind(std::string_view kind) {
  return FindBy(&ControlClass::kind, kind);
}

std::span<const Enumeration> Enumerations() { return kEnumerations; }

}  // namespace discoplan
