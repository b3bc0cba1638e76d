// SPDX-License-Identifier: MIT
#include "discoplan/core/loading.h"

#include <algorithm>
#include <bit>
#include <fstream>
#include <vector>

#include "discoplan/base/numbers.h"

namespace discoplan {
namespace {

static_assert(std::endian::native == std::endian::little, "data files are little-endian");

/// The limits in force before a load, to be put back after it.
class KeptLimits {
 public:
  KeptLimits(const wafer& source, bool kept)
      : kept_(kept), upper_(source.PlotMaximum), lower_(source.PlotMinimum) {}

  void Restore(wafer& target) const {
    if (kept_) target.setMaximalMinial(upper_, lower_);
  }

 private:
  bool kept_;
  float upper_;
  float lower_;
};

std::int64_t UpperBound(const ArrayView& array) {
  if (array.values.empty()) throw RunTimeError(Fault::Subscript, "an array without elements");
  return array.lower + static_cast<std::int64_t>(array.values.size()) - 1;
}

float At(const ArrayView& array, std::int64_t index) {
  const std::int64_t offset = index - array.lower;
  if (offset < 0 || offset >= static_cast<std::int64_t>(array.values.size())) {
    throw RunTimeError(Fault::Subscript, "array index " + std::to_string(index));
  }
  return array.values[static_cast<std::size_t>(offset)];
}

std::vector<double> ReadBlock(std::ifstream& file, std::size_t count) {
  std::vector<double> block(count);
  file.read(reinterpret_cast<char*>(block.data()),
            static_cast<std::streamsize>(count * sizeof(double)));
  if (!file) throw RunTimeError(Fault::InputPastEnd);
  return block;
}

void LoadBlocks(wafer& target, const std::string& path, std::size_t count) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw RunTimeError(Fault::FileNotFound, path);
  const std::vector<double> x = ReadBlock(file, count);
  const std::vector<double> y = ReadBlock(file, count);
  const std::vector<double> z = ReadBlock(file, count);
  for (std::size_t i = 0; i < count; ++i) {
    target.SetGridValue(ToFloat(x[i]), ToFloat(y[i]), ToFloat(z[i]));
  }
}

}  // namespace

LoadResult LoadArrays(wafer& target, bool limit_flag, const ArrayView& x, const ArrayView& y,
                      const ArrayView& z) {
  const std::int64_t upper_x = UpperBound(x);
  const std::int64_t upper_y = UpperBound(y);
  const std::int64_t upper_z = UpperBound(z);
  // One array that disagrees passes on purpose; it comes up as an index error below.
  if (upper_x != upper_y && upper_z != upper_y) return LoadResult::UpperBoundsDiffer;
  if (x.lower != y.lower && z.lower != y.lower) return LoadResult::LowerBoundsDiffer;
  const std::int16_t upper = ToInt16(static_cast<double>(upper_x));
  const std::int16_t lower = ToInt16(x.lower);

  const KeptLimits limits(target, limit_flag);
  target.reset();
  target.SetNop(ToInt16(upper - lower + 1));
  for (std::int32_t i = lower; i <= upper; ++i) target.SetGridValue(At(x, i), At(y, i), At(z, i));
  target.MaxMin();
  limits.Restore(target);
  return LoadResult::Loaded;
}

LoadResult LoadFile(wafer& target, bool limit_flag, const std::string& path, float count) {
  const bool loaded = Attempt([&] {
    const KeptLimits limits(target, limit_flag);
    target.reset();
    target.SetNop(count);
    LoadBlocks(target, path, target.Sites().size());
    target.MaxMin();
    limits.Restore(target);
  });
  return loaded ? LoadResult::Loaded : LoadResult::Failed;
}

void ClipToTestDiameter(wafer& target, bool limit_flag, float test_diameter) {
  const double radius = test_diameter / 2.0;
  const double limit = radius * radius * 1.01;
  std::vector<Site> kept(target.Sites().begin(), target.Sites().end());
  const auto outside = [&](const Site& site) {
    const double x = site.x;
    const double y = site.y;
    return x * x + y * y > limit;
  };
  if (std::erase_if(kept, outside) == 0) return;
  const KeptLimits limits(target, limit_flag);
  target.reset();
  if (kept.empty()) return;
  target.SetNop(static_cast<float>(kept.size()));
  for (const Site& site : kept) target.SetGridValue(site.x, site.y, site.z);
  target.TestDiameter = test_diameter;
  target.MaxMin();
  limits.Restore(target);
}

bool ApplyPlotLimit(wafer& target, float lower, float upper) {
  if (!(lower < upper)) return false;
  target.setMaximalMinial(upper, lower);
  return true;
}

}  // namespace discoplan
