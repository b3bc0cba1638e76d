// SPDX-License-Identifier: MIT
// Reading tables of sites: one that fills a wafer, and a lot too large to be held.

#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "data/read.h"

namespace discoplan::bench {
namespace {

namespace fs = std::filesystem;

/// "-123.456" and a mark behind it: cheaper than the general way, for files of 10 million rows.
void AppendThousandths(std::int64_t number, char mark, std::string& text) {
  std::array<char, 24> digits{};
  auto place = digits.size();
  digits[--place] = mark;
  std::int64_t rest = number < 0 ? -number : number;
  for (int i = 0; i < 4 || rest > 0; ++i, rest /= 10) {
    if (i == 3) digits[--place] = '.';
    digits[--place] = static_cast<char>('0' + rest % 10);
  }
  if (number < 0) digits[--place] = '-';
  text.append(digits.data() + place, digits.size() - place);
}

/// The file of that name in the build's folder, made anew unless it is there: positions and values
/// with three decimals, at random inside of 300 mm.
fs::path TableOf(const std::string& name, int wafers, int sites_of_each) {
  const fs::path path = fs::path(DISCOPLAN_BENCH_FOLDER) / name;
  if (fs::exists(path)) return path;
  const fs::path unfinished = path.string() + ".part";
  std::ofstream file(unfinished, std::ios::binary);
  file << (wafers > 1 ? "Wafer," : "") << "X (mm),Y (mm),Thickness (nm)\n";
  std::mt19937 random(20260101);
  const auto up_to = [&](std::int64_t most) { return static_cast<std::int64_t>(random()) % most; };
  std::string rows;
  for (int wafer = 1; wafer <= wafers; ++wafer) {
    rows.clear();
    for (int site = 0; site < sites_of_each;) {
      const std::int64_t x = up_to(300000) - 150000;
      const std::int64_t y = up_to(300000) - 150000;
      if (x * x + y * y > std::int64_t{147000} * 147000) continue;
      ++site;
      if (wafers > 1) rows += std::to_string(wafer) + ',';
      AppendThousandths(x, ',', rows);
      AppendThousandths(y, ',', rows);
      AppendThousandths(100000 + x / 100 + up_to(1000), '\n', rows);
    }
    file << rows;
  }
  file.close();
  fs::rename(unfinished, path);
  return path;
}

void CountBytes(benchmark::State& state, const fs::path& path) {
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(fs::file_size(path)));
}

void ReadTable(benchmark::State& state) {
  const auto sites = static_cast<int>(state.range(0));
  const fs::path path = TableOf("sites_" + std::to_string(sites) + ".csv", 1, sites);
  for (auto _ : state) benchmark::DoNotOptimize(data::Read({.path = path}));
  CountBytes(state, path);
}
BENCHMARK(ReadTable)->Arg(49)->Arg(1000)->Arg(32767)->Unit(benchmark::kMillisecond);

/// Wafers of 400,000 sites; `peak_mb` is the most memory that the program had at any time.
void StreamLot(benchmark::State& state, const std::vector<std::string>& wafers) {
  const fs::path path = TableOf("lot_25_x_400000.csv", 25, 400000);
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        data::Read({.path = path, .by = {"Wafer"}, .wafers = wafers, .thin = true}));
  }
  CountBytes(state, path);
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  state.counters["peak_mb"] = static_cast<double>(usage.ru_maxrss) / 1024;
}
BENCHMARK_CAPTURE(StreamLot, one_wafer, {"7"})->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(StreamLot, all_wafers, {})->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace discoplan::bench
