// SPDX-License-Identifier: MIT
#pragma once

/// Between JSON and the values of the interface.

#include <functional>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>

#include "discoplan/platform/object.h"

namespace discoplan {

/// A request that can't be carried out; what() is the sentence of the reply.
class RequestError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// How objects are named in requests and replies.
struct ObjectNames {
  std::function<ObjectRef(const nlohmann::json& id)> object;
  std::function<nlohmann::json(const Object*)> id;
};

/// A value for a member of that type: numbers, -1 and 0 or true and false, texts, lists and
/// {"lower", "values"}, {"ref": ID}, null. Raises `RequestError` for a form that no value has.
Variant ToVariant(const nlohmann::json& value, Type type, const ObjectNames& names);

nlohmann::json ToJson(const Variant& value, const ObjectNames& names);

/// The field of a request. Raises `RequestError` where it is missing or of another kind.
const nlohmann::json& Field(const nlohmann::json& request, const char* name);
std::string TextField(const nlohmann::json& request, const char* name);
/// The default stands for a field that is left out.
float NumberField(const nlohmann::json& request, const char* name, float otherwise);
float NumberField(const nlohmann::json& request, const char* name);
/// A number, or the text of one that is not finite.
double ToNumber(const nlohmann::json& value, const char* what);

}  // namespace discoplan
