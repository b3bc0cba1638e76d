// SPDX-License-Identifier: MIT
#include "bindings/python/src/arrow_values.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <optional>
#include <utility>
#include <vector>

#include "bindings/python/src/python.h"

namespace discoplan::python {
namespace {

constexpr double kMissing = std::numeric_limits<double>::quiet_NaN();

bool IsSet(const void* bits, int64_t i) {
  return (static_cast<const std::uint8_t*>(bits)[i / 8] >> (i % 8) & 1) != 0;
}

bool IsNull(const ArrowSchema& schema, const ArrowArray& array, int64_t i) {
  if (std::string_view(schema.format) == "n") return true;
  return array.n_buffers > 0 && array.buffers[0] != nullptr && array.null_count != 0 &&
         !IsSet(array.buffers[0], array.offset + i);
}

template <class T>
T At(const ArrowArray& array, int64_t i) {
  T value;
  std::memcpy(&value,
              static_cast<const char*>(array.buffers[1]) +
                  (array.offset + i) * static_cast<int64_t>(sizeof(T)),
              sizeof value);
  return value;
}

template <class T>
std::optional<double> As(const ArrowArray& array, int64_t i) {
  return static_cast<double>(At<T>(array, i));
}

/// A number of 16 bits: a sign, 5 bits of an exponent, 10 of a fraction.
std::optional<double> Half(const ArrowArray& array, int64_t i) {
  const auto bits = At<std::uint16_t>(array, i);
  const int exponent = bits >> 10 & 0x1F;
  const int fraction = bits & 0x3FF;
  double size = std::ldexp(fraction + (exponent > 0 ? 1024 : 0), std::max(exponent, 1) - 25);
  if (exponent == 0x1F) size = fraction == 0 ? std::numeric_limits<double>::infinity() : kMissing;
  return (bits & 0x8000) != 0 ? -size : size;
}

/// A whole number of that many 32-bit limbs, the lowest first, as it is written.
std::string Digits(std::vector<std::uint32_t> limbs) {
  const bool negative = limbs.back() >> 31 != 0;
  for (std::size_t i = 0, carry = 1; negative && i < limbs.size(); ++i) {
    limbs[i] = ~limbs[i] + static_cast<std::uint32_t>(carry);
    carry = carry != 0 && limbs[i] == 0 ? 1 : 0;
  }
  std::string digits;
  do {
    std::uint64_t rest = 0;
    for (auto limb = limbs.rbegin(); limb != limbs.rend(); ++limb) {
      rest = rest << 32 | *limb;
      *limb = static_cast<std::uint32_t>(rest / 10);
      rest %= 10;
    }
    digits += static_cast<char>('0' + rest);
  } while (std::any_of(limbs.begin(), limbs.end(), [](std::uint32_t limb) { return limb != 0; }));
  if (negative) digits += '-';
  std::reverse(digits.begin(), digits.end());
  return digits;
}

/// Of "d:19,10" or "d:19,10,256": digits, digits behind the point, bits.
std::optional<double> Decimal(std::string_view format, const ArrowArray& array, int64_t i) {
  int parts[3] = {0, 0, 128};
  const char* at = format.data() + 1;
  for (int& part : parts) {
    if (at == format.data() + format.size()) break;
    at = std::from_chars(at + 1, format.data() + format.size(), part).ptr;
  }
  std::vector<std::uint32_t> limbs(static_cast<std::size_t>(parts[2] / 32));
  const auto bytes = static_cast<int64_t>(limbs.size() * sizeof(std::uint32_t));
  std::memcpy(limbs.data(), static_cast<const char*>(array.buffers[1]) + (array.offset + i) * bytes,
              static_cast<std::size_t>(bytes));
  const std::string text = Digits(std::move(limbs)) + "e" + std::to_string(-parts[1]);
  double number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

/// Nothing for a type that has no numbers.
std::optional<double> PlainNumberAt(std::string_view format, const ArrowArray& array, int64_t i) {
  if (format.substr(0, 2) == "d:") return Decimal(format, array, i);
  constexpr std::pair<std::string_view, std::optional<double> (*)(const ArrowArray&, int64_t)>
      kReaders[] = {{"g", As<double>},
                    {"f", As<float>},
                    {"l", As<std::int64_t>},
                    {"i", As<std::int32_t>},
                    {"s", As<std::int16_t>},
                    {"c", As<std::int8_t>},
                    {"L", As<std::uint64_t>},
                    {"I", As<std::uint32_t>},
                    {"S", As<std::uint16_t>},
                    {"C", As<std::uint8_t>},
                    {"e", Half}};
  for (const auto& [known, read] : kReaders) {
    if (format == known) return read(array, i);
  }
  return {};
}

template <class Offset>
std::string_view TextBetween(const ArrowArray& array, int64_t i) {
  const Offset first = At<Offset>(array, i);
  return {static_cast<const char*>(array.buffers[2]) + first,
          static_cast<std::size_t>(At<Offset>(array, i + 1) - first)};
}

/// Of the type that has short texts within 16 bytes and long ones in further buffers.
std::string_view TextViewed(const ArrowArray& array, int64_t i) {
  constexpr std::int32_t kInline = 12;
  const char* const view = static_cast<const char*>(array.buffers[1]) + (array.offset + i) * 16;
  std::int32_t parts[4];  // size, start of the text, buffer, offset
  std::memcpy(parts, view, sizeof parts);
  const auto size = static_cast<std::size_t>(parts[0]);
  if (parts[0] <= kInline) return {view + 4, size};
  return {static_cast<const char*>(array.buffers[2 + parts[2]]) + parts[3], size};
}

/// What a type holds, in words; the first that its format begins with.
std::string_view ContentOf(std::string_view format) {
  constexpr std::pair<std::string_view, std::string_view> kContents[] = {
      {"u", "texts"},    {"U", "texts"},         {"vu", "texts"},  {"b", "true and false"},
      {"td", "dates"},   {"tt", "times of day"}, {"ts", "times"},  {"t", "spans of time"},
      {"+s", "structs"}, {"+r", "runs"},         {"+u", "unions"}, {"+", "lists"},
      {"z", "bytes"},    {"Z", "bytes"},         {"vz", "bytes"},  {"w", "bytes"}};
  for (const auto& [start, content] : kContents) {
    if (format.substr(0, start.size()) == start) return content;
  }
  return "what is no number";
}

[[noreturn]] void RefuseType(const std::string& name, const char* format, const char* wanted) {
  Raise(PyExc_TypeError, "column '" + name + "' holds " + std::string(ContentOf(format)) +
                             " (Arrow type '" + format + "'); cast it to " + wanted);
}

template <class T>
std::string Written(T number) {
  char text[32];
  return {text, std::to_chars(text, text + sizeof text, number).ptr};
}

/// The place in the dictionary.
int64_t EntryAt(const ArrowSchema& schema, const ArrowArray& array, int64_t i) {
  return static_cast<int64_t>(PlainNumberAt(schema.format, array, i).value_or(0));
}

}  // namespace

double NumberAt(const ArrowSchema& schema, const ArrowArray& array, int64_t i,
                const std::string& name) {
  if (IsNull(schema, array, i)) return kMissing;
  if (schema.dictionary != nullptr) {
    return NumberAt(*schema.dictionary, *array.dictionary, EntryAt(schema, array, i), name);
  }
  const std::optional<double> number = PlainNumberAt(schema.format, array, i);
  if (!number) RefuseType(name, schema.format, "numbers");
  return *number;
}

std::string TextAt(const ArrowSchema& schema, const ArrowArray& array, int64_t i,
                   const std::string& name) {
  if (IsNull(schema, array, i)) return "";
  if (schema.dictionary != nullptr) {
    return TextAt(*schema.dictionary, *array.dictionary, EntryAt(schema, array, i), name);
  }
  const std::string_view format = schema.format;
  if (format == "u" || format == "z") return std::string(TextBetween<std::int32_t>(array, i));
  if (format == "U" || format == "Z") return std::string(TextBetween<std::int64_t>(array, i));
  if (format == "vu") return std::string(TextViewed(array, i));
  if (format == "b") return IsSet(array.buffers[1], array.offset + i) ? "true" : "false";
  if (format == "l") return Written(At<std::int64_t>(array, i));  // a double merges large ones
  if (format == "L") return Written(At<std::uint64_t>(array, i));
  const std::optional<double> number = PlainNumberAt(format, array, i);
  if (!number) RefuseType(name, schema.format, "texts or numbers");
  if (std::isnan(*number)) return "";
  return format == "f" ? Written(static_cast<float>(*number)) : Written(*number);
}

}  // namespace discoplan::python
