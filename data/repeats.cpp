// SPDX-License-Identifier: MIT
#include "data/repeats.h"

#include <algorithm>
#include <cstring>
#include <functional>

#include "data/plain_text.h"
#include "discoplan/analysis/site_tree.h"

namespace discoplan::data {
namespace {

constexpr std::size_t kMostBytes = std::size_t{16} << 20;
constexpr std::size_t kMostPairs = 45;

std::uint64_t Mixed(std::uint64_t key) {
  key ^= key >> 31;
  key *= 0x9E3779B97F4A7C15U;
  key ^= key >> 29;
  key *= 0xBF58476D1CE4E5B9U;
  return key ^ key >> 32;
}

std::uint64_t BitsOf(float x, float y) {
  x += 0.0F;  // of a negative zero
  y += 0.0F;
  std::uint32_t bits[2];
  std::memcpy(&bits[0], &x, sizeof x);
  std::memcpy(&bits[1], &y, sizeof y);
  return static_cast<std::uint64_t>(bits[0]) << 32 | bits[1];
}

/// Keys that came before, by open addressing.
template <typename Key>
std::size_t CountRepeats(std::size_t count, const Key& key) {
  std::size_t size = 64;
  while (size < 2 * count) size *= 2;
  std::vector<std::uint64_t> table(size, 0);
  std::size_t repeats = 0;
  bool zero = false;
  for (std::size_t i = 0; i < count; ++i) {
    const std::uint64_t wanted = key(i);
    if (wanted == 0) {
      repeats += zero;
      zero = true;
      continue;
    }
    auto place = static_cast<std::size_t>(Mixed(wanted)) & (size - 1);
    while (table[place] != 0 && table[place] != wanted) place = (place + 1) & (size - 1);
    repeats += table[place] == wanted;
    table[place] = wanted;
  }
  return repeats;
}

/// Whether no key comes twice, as far as 32 bits of their hashes tell; in half of the memory.
template <typename Key>
bool AllDiffer(std::size_t count, const Key& key) {
  std::size_t size = 64;
  while (size < 2 * count) size *= 2;
  std::vector<std::uint32_t> table(size, 0);
  for (std::size_t i = 0; i < count; ++i) {
    const std::uint64_t hash = Mixed(key(i));
    const auto mark = static_cast<std::uint32_t>(hash >> 32) | 1U;
    auto place = static_cast<std::size_t>(hash) & (size - 1);
    for (; table[place] != 0; place = (place + 1) & (size - 1)) {
      if (table[place] == mark) return false;
    }
    table[place] = mark;
  }
  return true;
}

using Column = std::vector<std::uint64_t>;  // hashes of its texts

std::size_t DistinctIn(const Column& column) {
  return column.size() - CountRepeats(column.size(), [&](std::size_t i) { return column[i]; });
}

}  // namespace

std::size_t RepeatedSites(std::span<const float> x, std::span<const float> y) {
  const auto bits = [&](std::size_t i) { return BitsOf(x[i], y[i]); };
  return AllDiffer(x.size(), bits) ? 0 : CountRepeats(x.size(), bits);
}

std::size_t SitesNearOthers(std::span<const float> x, std::span<const float> y) {
  constexpr double kSame = 0.1;
  std::vector<Site> sites;
  for (std::size_t i = 0; i < x.size(); ++i) sites.push_back({x[i], y[i], 0});
  const analysis::SiteTree tree(sites);
  std::size_t near = 0;
  for (std::size_t i = 0; i < sites.size(); ++i) {
    const auto nearest = tree.Nearest(sites[i].x, sites[i].y, 1, i);
    near += !nearest.empty() && nearest.front().distance <= kSame;
  }
  return near;
}

std::string RepeatText(std::size_t repeats, const Wafer& wafer, const std::string& of) {
  return std::to_string(repeats) + " of " + Counted(wafer.x.size(), "site") +
         (of.empty() ? "" : ' ' + of) + (repeats == 1 ? " repeats" : " repeat") + " a position";
}

void KeptRows::Add(std::string_view line) {
  // Memory that nothing is written to costs nothing, and growing costs twice.
  if (ends_.empty()) {
    constexpr std::size_t kUsualBytes = std::size_t{1} << 21;
    text_.reserve(kUsualBytes);
    ends_.reserve(static_cast<std::size_t>(kMostSites));
  }
  full_ = full_ || text_.size() + line.size() > kMostBytes;
  if (full_) return;
  text_ += line;
  ends_.push_back(text_.size());
}

std::vector<std::vector<std::size_t>> KeptRows::Tellers(
    const Wafer& sites, Dialect dialect, const std::vector<std::size_t>& leave_out) const {
  const std::size_t rows = sites.x.size();
  if (full_ || ends_.size() != rows) return {};
  std::vector<Column> columns;
  std::vector<std::string_view> fields;
  for (std::size_t row = 0; row < rows; ++row) {
    const std::size_t begin = row == 0 ? 0 : ends_[row - 1];
    SplitFields(std::string_view(text_).substr(begin, ends_[row] - begin), dialect, fields);
    if (row == 0) columns.assign(fields.size(), Column(rows, 0));
    for (std::size_t i = 0; i < std::min(fields.size(), columns.size()); ++i) {
      columns[i][row] = std::hash<std::string_view>()(fields[i]);
    }
  }
  // A column with about as many texts as there are rows numbers them, or is measured.
  std::vector<std::size_t> few;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (std::find(leave_out.begin(), leave_out.end(), i) != leave_out.end()) continue;
    const std::size_t distinct = DistinctIn(columns[i]);
    if (distinct > 1 && 2 * distinct <= rows) few.push_back(i);
  }
  const auto tells = [&](std::size_t a, std::size_t b) {
    return CountRepeats(rows, [&](std::size_t i) {
             return Mixed(BitsOf(sites.x[i], sites.y[i])) ^ columns[a][i] ^ Mixed(columns[b][i]);
           }) == 0;
  };
  std::vector<std::vector<std::size_t>> tellers;
  for (const std::size_t column : few) {
    if (tells(column, column)) tellers.push_back({column});
  }
  std::size_t pairs = 0;
  for (std::size_t i = 0; tellers.empty() && i < few.size(); ++i) {
    for (std::size_t k = i + 1; k < few.size() && pairs++ < kMostPairs; ++k) {
      if (tells(few[i], few[k])) tellers.push_back({few[i], few[k]});
    }
  }
  return tellers;
}

}  // namespace discoplan::data
