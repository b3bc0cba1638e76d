// SPDX-License-Identifier: MIT
#pragma once

/// Values between automation's VARIANT and the library's own.

#include <functional>

#include "discoplan/base/variant.h"
#include "discoplan/platform/object.h"
#include "hosts/activex/com.h"

namespace discoplan::activex {

/// What stands for an object on the other side; an empty one gives an empty one.
struct Objects {
  std::function<ObjectRef(IDispatch*)> taken;
  std::function<ComPtr<IDispatch>(const ObjectRef&)> given;
};

/// The value, also one by reference, on its way to a member of that type. Texts become numbers and
/// numbers texts where the type wants them, by the caller's locale; arrays may have elements of any
/// number type. Raises `RunTimeError`.
Variant FromCaller(const VARIANT& value, Type type, LCID locale, const Objects& objects);

/// The value as a result of that type, into an empty VARIANT.
void ToCaller(const Variant& value, Type type, VARIANT& result, const Objects& objects);

/// Puts a changed argument into the caller's variable, in the type that this has: an array of
/// singles stays one, a script gets an array of variants. By-value arguments stay as they are.
void GiveBack(const Variant& value, Type type, VARIANT& argument, const Objects& objects);

}  // namespace discoplan::activex
