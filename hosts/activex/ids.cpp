// SPDX-License-Identifier: MIT
#include "hosts/activex/ids.h"

namespace discoplan::activex {
namespace {

/// The id with other low bits in its first eight digits.
std::string Beside(std::string_view class_id, unsigned bits) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string id(class_id);
  id[7] = kDigits[kDigits.find(id[7]) ^ bits];
  return id;
}

}  // namespace

std::string MembersId(const ControlClass& row) { return Beside(row.class_id, 1); }
std::string EventsId(const ControlClass& row) { return Beside(row.class_id, 2); }

}  // namespace discoplan::activex
