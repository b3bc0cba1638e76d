// SPDX-License-Identifier: MIT
#include "discoplan/base/numbers.h"

namespace discoplan {
namespace {

const char* Describe(Fault fault) {
  switch (fault) {
    case Fault::InvalidCall:
      return "Invalid procedure call or argument";
    case Fault::Overflow:
      return "Overflow";
    case Fault::Subscript:
      return "Subscript out of range";
    case Fault::DivisionByZero:
      return "Division by zero";
    case Fault::TypeMismatch:
      return "Type mismatch";
    case Fault::FileNotFound:
      return "File not found";
    case Fault::InputPastEnd:
      return "Input past end of file";
    case Fault::ObjectNotSet:
      return "Object variable not set";
    case Fault::MemberNotOffered:
      return "Object doesn't support this property or method";
  }
  return "Run-time error";
}

}  // namespace

RunTimeError::RunTimeError(Fault fault) : std::runtime_error(Describe(fault)), fault_(fault) {}

RunTimeError::RunTimeError(Fault fault, const std::string& what)
    : std::runtime_error(std::string(Describe(fault)) + ": " + what), fault_(fault) {}

void numbers_detail::Raise(Fault fault) { throw RunTimeError(fault); }

}  // namespace discoplan
