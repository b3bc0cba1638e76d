// SPDX-License-Identifier: MIT
#include "data/binary_data.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "data/exclusions.h"
#include "data/left_out.h"
#include "data/site_rows.h"
#include "discoplan/base/bits.h"
#include "discoplan/base/numbers.h"

namespace discoplan::data {
namespace {

constexpr std::size_t kNumberSize = 8;
constexpr std::size_t kSiteSize = 3 * kNumberSize;

double NumberAt(std::string_view data, std::size_t offset) {
  std::uint64_t bits = 0;
  for (std::size_t i = kNumberSize; i-- > 0;) {
    bits = bits << 8 | static_cast<unsigned char>(data[offset + i]);
  }
  return BitCast<double>(bits);
}

/// Too small for the usual form of a float, as measured numbers are when their bytes are in another
/// order.
bool IsStrange(double number) {
  return number != 0 && std::abs(number) < std::numeric_limits<double>::min();
}

/// At least `size` bytes, if the file has them.
std::string FirstBytes(FileBytes& bytes, std::size_t size) {
  std::string data;
  while (data.size() < size && !bytes.block().empty()) {
    data += bytes.block();
    bytes.NextBlock();
  }
  return data;
}

/// Sites that are read at most, of which some may be left out then.
std::int64_t MostSites(const ReadRequest& request) {
  constexpr std::int64_t kAll = std::int64_t{1} << 40;
  return LeavesOut(request) ? kAll : request.most_sites;
}

std::size_t CountSites(const ReadRequest& request, const std::string& file, std::size_t size) {
  const auto fitting = static_cast<std::int64_t>(size / kSiteSize);
  const std::int64_t sites = request.sites.value_or(fitting);
  const std::int64_t most = MostSites(request);
  if (sites > most) {
    throw DataError({file}, "a wafer holds at most " + std::to_string(most) +
                                " sites; check that this is a data file, and --sites, or use "
                                "--thin for a regular subset of them");
  }
  if (!request.sites && size % kSiteSize != 0) {
    throw DataError({file}, "the size of " + Counted(size, "byte") +
                                " is no multiple of 24; check that this is a data file, "
                                "or give the number of sites with --sites");
  }
  if (sites < 1) throw DataError({file}, "--sites is out of range; give 1 or more");
  if (sites > fitting) {
    throw DataError({file}, Counted(size, "byte") + " where " + std::to_string(sites) +
                                " sites take " + std::to_string(24 * sites) +
                                "; complete the file or give fewer --sites");
  }
  return static_cast<std::size_t>(sites);
}

}  // namespace

Lot ReadBinaryData(const ReadRequest& request, const PositionScale& scale, FileBytes& bytes) {
  const std::int64_t wanted =
      std::min(request.sites.value_or(MostSites(request)), MostSites(request));
  const auto most_bytes = kSiteSize * static_cast<std::size_t>(std::max<std::int64_t>(wanted, 0));
  const std::string data = FirstBytes(bytes, most_bytes + kSiteSize);
  const std::size_t sites = CountSites(request, bytes.file(), data.size());

  Lot result;
  result.kind = FileKind::Binary;
  result.parameters = {{"Value", ""}};
  Narrowing narrowing;
  const std::array<double, 2> scales = {scale.x, scale.y};
  Wafer wafer;
  wafer.name = request.path.stem().string();
  for (std::size_t site = 0; site < sites; ++site) {
    std::array<float, 3> numbers{};
    std::size_t block = 0;
    double last = 0;
    while (block < numbers.size() && Attempt([&] {
             const double number = NumberAt(data, (block * sites + site) * kNumberSize);
             last = number;
             if (IsStrange(number)) throw RunTimeError(Fault::Overflow);
             numbers[block] = ToFloat(block == 2 ? number : number * scales[block]);
           })) {
      ++block;
    }
    if (block == numbers.size()) {
      wafer.x.push_back(numbers[0]);
      wafer.y.push_back(numbers[1]);
      wafer.value.push_back(numbers[2]);
      narrowing.Take(last, numbers[2]);
    } else if (request.skip_invalid) {
      CountSkipped(Reason::NotFinite, static_cast<std::int64_t>(site) + 1, result.skipped);
      Count(Reason::NotFinite, wafer.left_out);
    } else {
      constexpr std::string_view kNames[] = {"X", "Y", "the value"};
      throw DataError({bytes.file()}, std::string(kNames[block]) + " of site " +
                                          std::to_string(site + 1) +
                                          " is not finite or out of a 32-bit float's range; "
                                          "check --sites and the order of bytes, or use "
                                          "--skip-invalid");
    }
  }
  if (wafer.x.empty()) {
    throw DataError({bytes.file()}, "no valid site is left; check the file and --sites");
  }
  result.wafers.push_back(std::move(wafer));
  narrowing.Tell(0, result);
  return result;
}

}  // namespace discoplan::data
