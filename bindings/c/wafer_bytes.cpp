// SPDX-License-Identifier: MIT
// A wafer as bytes, for another process or for later.
#include <cmath>
#include <cstring>
#include <limits>
#include <optional>

#include "bindings/c/arguments.h"
#include "bindings/c/measured.h"
#include "data/utf16.h"

using namespace discoplan;
using namespace discoplan::c;

namespace {

/// Another number for another order of what follows.
constexpr std::uint32_t kMark = 0x31575044;  // "DPW1"
constexpr std::int32_t kNoSlot = -1;

std::uint32_t BitsOf(float number) {
  std::uint32_t bits = 0;
  std::memcpy(&bits, &number, sizeof bits);
  return bits;
}

/// Whole numbers have four bytes, the lowest one first; floats are their bits; texts and columns
/// have their length in front.
class Packer {
 public:
  void Whole(std::uint32_t number) {
    for (int shift = 0; shift < 32; shift += 8) {
      bytes_.push_back(static_cast<char>(number >> shift & 0xFF));
    }
  }
  void Long(std::int64_t number) {
    const auto bits = static_cast<std::uint64_t>(number);
    Whole(static_cast<std::uint32_t>(bits));
    Whole(static_cast<std::uint32_t>(bits >> 32));
  }
  void Float(float number) { Whole(BitsOf(number)); }
  void Text(const std::string& text) {
    Whole(static_cast<std::uint32_t>(text.size()));
    bytes_ += text;
  }
  void Column(const std::vector<float>& numbers) {
    Whole(static_cast<std::uint32_t>(numbers.size()));
    for (const float number : numbers) Float(number);
  }
  const std::string& Bytes() const { return bytes_; }

 private:
  std::string bytes_;
};

[[noreturn]] void RefuseBytes() {
  throw Error(DISCOPLAN_BAD_DATA,
              "these bytes are no wafer that this version of the library packed");
}

/// Reads what `Packer` wrote, and refuses all else.
class Unpacker {
 public:
  Unpacker(const std::uint8_t* bytes, std::int64_t count)
      : rest_(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(count)) {}

  std::uint32_t Whole() {
    std::uint32_t number = 0;
    int shift = 0;
    for (const char byte : Next(4)) {
      number |= std::uint32_t{static_cast<unsigned char>(byte)} << shift;
      shift += 8;
    }
    return number;
  }
  std::uint32_t Below(std::uint32_t limit) {
    const std::uint32_t number = Whole();
    if (number >= limit) RefuseBytes();
    return number;
  }
  std::int64_t Count() {
    const std::uint64_t low = Whole();
    const std::uint64_t bits = low | std::uint64_t{Whole()} << 32;
    if (bits > std::uint64_t{1} << 40) RefuseBytes();  // more than are ever measured
    return static_cast<std::int64_t>(bits);
  }
  float Float() {
    const std::uint32_t bits = Whole();
    float number = 0;
    std::memcpy(&number, &bits, sizeof number);
    if (!std::isfinite(number)) RefuseBytes();
    return number;
  }
  float Length() {
    const float length = Float();
    if (!(length > 0)) RefuseBytes();
    return length;
  }
  std::string Text() {
    const std::string_view text = Next(Whole());
    if (text.find('\0') != std::string_view::npos) RefuseBytes();
    return data::Utf8(text);
  }
  std::vector<float> Column() {
    const std::uint32_t count = Below(data::kMostSites + 1);
    if (count == 0 || rest_.size() < std::size_t{4} * count) RefuseBytes();
    std::vector<float> numbers(count);
    for (float& number : numbers) number = Float();
    return numbers;
  }
  void RequireEnd() const {
    if (!rest_.empty()) RefuseBytes();
  }

 private:
  std::string_view Next(std::size_t count) {
    if (rest_.size() < count) RefuseBytes();
    const std::string_view next = rest_.substr(0, count);
    rest_.remove_prefix(count);
    return next;
  }

  std::string_view rest_;
};

std::string Packed(const data::Wafer& wafer, const MeasuredWafer::Look& look) {
  Packer packer;
  packer.Whole(kMark);
  packer.Text(wafer.name);
  packer.Text(look.parameter.name);
  packer.Text(look.parameter.unit);
  packer.Whole(static_cast<std::uint32_t>(wafer.slot.value_or(kNoSlot)));
  packer.Whole(static_cast<std::uint32_t>(look.orientation));
  packer.Whole(static_cast<std::uint32_t>(look.notch));
  packer.Whole(look.is_difference ? 1 : 0);
  packer.Float(wafer.diameter);
  packer.Float(wafer.test_diameter);
  packer.Whole(static_cast<std::uint32_t>(wafer.left_out.size()));
  for (const data::LeftOut& part : wafer.left_out) {
    packer.Whole(static_cast<std::uint32_t>(part.reason));
    packer.Long(part.count);
  }
  for (const auto* column : {&wafer.x, &wafer.y, &wafer.value}) packer.Column(*column);
  return packer.Bytes();
}

std::shared_ptr<MeasuredWafer> Unpacked(Unpacker unpacker) {
  constexpr auto kReasons = static_cast<std::uint32_t>(data::Reason::Thinned) + 1;
  if (unpacker.Whole() != kMark) RefuseBytes();
  data::Wafer wafer;
  MeasuredWafer::Look look;
  wafer.name = unpacker.Text();
  look.parameter.name = unpacker.Text();
  look.parameter.unit = unpacker.Text();
  const auto slot = static_cast<std::int32_t>(unpacker.Whole());
  if (slot != kNoSlot) wafer.slot = slot;
  look.orientation = static_cast<figures::Orientation>(unpacker.Below(3));
  look.notch = static_cast<figures::Side>(unpacker.Below(4));
  look.is_difference = unpacker.Below(2) == 1;
  wafer.diameter = unpacker.Length();
  wafer.test_diameter = unpacker.Length();
  if (wafer.test_diameter > wafer.diameter) RefuseBytes();
  for (std::uint32_t left = unpacker.Below(kReasons + 1); left > 0; --left) {
    const auto reason = static_cast<data::Reason>(unpacker.Below(kReasons));
    wafer.left_out.push_back({reason, unpacker.Count()});
  }
  for (auto* column : {&wafer.x, &wafer.y, &wafer.value}) *column = unpacker.Column();
  unpacker.RequireEnd();
  if (wafer.x.size() != wafer.y.size() || wafer.x.size() != wafer.value.size()) RefuseBytes();
  return std::make_shared<MeasuredWafer>(std::move(wafer), std::move(look), true);
}

}  // namespace

discoplan_status discoplan_wafer_pack(discoplan_wafer* wafer, uint8_t* bytes, int64_t capacity,
                                      int64_t* count) {
  return Guarded([&] {
    const auto held = Get<MeasuredWafer>(wafer);
    const std::string packed = Packed(held->Measured(), held->Looks());
    const auto size = static_cast<std::int64_t>(packed.size());
    std::int64_t& needed = Needed(count, "count");
    if (bytes != nullptr && capacity < size) {
      Refuse("there is room for " + std::to_string(capacity) + " bytes, and there are " +
             std::to_string(size));
    }
    if (bytes != nullptr) std::memcpy(bytes, packed.data(), packed.size());
    needed = size;
  });
}

discoplan_status discoplan_wafer_unpack(const uint8_t* bytes, int64_t count,
                                        discoplan_wafer** wafer) {
  return HandedOut<MeasuredWafer>(wafer, [&] {
    Needed(bytes, "bytes");
    if (count < 0) Refuse("count: there can't be fewer than no bytes");
    return Unpacked({bytes, count});
  });
}
