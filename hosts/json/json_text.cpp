// SPDX-License-Identifier: MIT
#include "hosts/json/json_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <string_view>

#include "discoplan/base/charconv.h"

namespace discoplan {
namespace {

/// Plain notation up to this number of digits before the point, and few zeros behind it.
constexpr int kMostWhole = 15;
constexpr int kMostZeros = 3;

std::string NumberText(double value) {
  if (!std::isfinite(value)) return "null";
  std::array<char, 32> buffer;
  const char* const end =
      ToShortest(buffer.data(), buffer.data() + buffer.size(), std::abs(value)).ptr;
  const std::string text(buffer.data(), static_cast<std::size_t>(end - buffer.data()));
  const std::string sign = std::signbit(value) ? "-" : "";
  const std::size_t e = text.find('e');
  const int whole = std::atoi(text.c_str() + e + 1) + 1;  // digits before the point
  if (whole > kMostWhole || whole < -kMostZeros) return sign + text;
  std::string digits = text.substr(0, e);
  std::erase(digits, '.');
  if (whole <= 0) return sign + "0." + std::string(static_cast<std::size_t>(-whole), '0') + digits;
  const auto before = static_cast<std::size_t>(whole);
  if (digits.size() <= before)
    return sign + digits + std::string(before - digits.size(), '0') + ".0";
  return sign + digits.insert(before, 1, '.');
}

bool IsPlain(char c) { return c >= ' ' && c < 0x7F && c != '"' && c != '\\'; }

template <class Json>
class Writer {
 public:
  explicit Writer(int indent) : indent_(indent) {}

  void Write(const Json& value, int level = 0) {
    if (value.is_array() || value.is_object()) {
      List(value, level);
    } else if (value.is_number_float()) {
      text_ += NumberText(value.template get<double>());
    } else if (value.is_string()) {
      Text(value.template get_ref<const std::string&>());
    } else {
      text_ += value.dump();
    }
  }
  std::string Take() { return std::move(text_); }

 private:
  void List(const Json& value, int level) {
    const bool object = value.is_object();
    text_ += object ? '{' : '[';
    bool first = true;
    for (auto it = value.begin(); it != value.end(); ++it) {
      if (!first) text_ += ',';
      first = false;
      NewLine(level + 1);
      if (object) {
        Text(it.key());
        text_ += indent_ < 0 ? ":" : ": ";
      }
      Write(*it, level + 1);
    }
    if (!first) NewLine(level);
    text_ += object ? '}' : ']';
  }

  void Text(const std::string& text) {
    if (!std::all_of(text.begin(), text.end(), IsPlain)) {
      text_ += Json(text).dump(-1, ' ', false, Json::error_handler_t::replace);
      return;
    }
    text_ += '"';
    text_ += text;
    text_ += '"';
  }

  void NewLine(int level) {
    if (indent_ < 0) return;
    text_ += '\n';
    text_.append(static_cast<std::size_t>(indent_ * level), ' ');
  }

  const int indent_;
  std::string text_;
};

template <class Json>
std::string TextOf(const Json& value, int indent) {
  Writer<Json> writer(indent);
  writer.Write(value);
  return writer.Take();
}

}  // namespace

std::string JsonText(const nlohmann::json& value, int indent) { return TextOf(value, indent); }

std::string JsonText(const nlohmann::ordered_json& value, int indent) {
  return TextOf(value, indent);
}

}  // namespace discoplan
