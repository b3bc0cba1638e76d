// SPDX-License-Identifier: MIT
#include "discoplan/platform/object.h"

#include <algorithm>

#include "discoplan/base/numbers.h"

namespace discoplan {

Object::~Object() = default;

const Member* MemberTable::Find(std::string_view name) const {
  const auto found = std::ranges::find(members_, name, &Member::name);
  return found == members_.end() ? nullptr : &*found;
}

const Member& MemberTable::At(std::string_view name) const {
  if (const Member* member = Find(name)) return *member;
  throw RunTimeError(Fault::MemberNotOffered, std::string(name));
}

}  // namespace discoplan
