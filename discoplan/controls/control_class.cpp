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

std::string ControlClass::KeyWritten(const Member& member) const {
  return member.kept() ? Key(prefixes, member.stored, prefixes.first) : std::string();
}

std::string ControlClass::KeyRead(const Member& member) const {
  return member.kept() ? Key(prefixes, member.stored, prefixes.colours_read) : std::string();
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
