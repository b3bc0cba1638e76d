// SPDX-License-Identifier: MIT
#include <immintrin.h>

#include "discoplan/core/interpolation/lattice/kernel.h"

namespace discoplan::lattice {
namespace {

struct Avx2 {
  static constexpr std::int32_t kLanes = 8;
  using Float = __m256;
  using Double = __m256d;

  static Float Load(const float* from) { return _mm256_loadu_ps(from); }
  static void Store(float* to, Float a) { _mm256_storeu_ps(to, a); }
  static Float Spread(float a) { return _mm256_set1_ps(a); }
  static Double Spread(double a) { return _mm256_set1_pd(a); }
  static Float Min(Float a, Float b) { return _mm256_min_ps(a, b); }
  static Float Max(Float a, Float b) { return _mm256_max_ps(a, b); }
  static Double Sqrt(Double a) { return _mm256_sqrt_pd(a); }
  static std::int32_t Number(Float squares, Float limits, std::int32_t first,
                             std::uint32_t* numbers) {
    return NumberOneByOne<Avx2>(squares, limits, first, numbers);
  }
  static Float Tag(Float a, std::uint32_t number) {
    const __m256i mask = _mm256_set1_epi32(kNumberMask);
    return _mm256_or_ps(_mm256_andnot_ps(_mm256_castsi256_ps(mask), a),
                        _mm256_castsi256_ps(_mm256_set1_epi32(static_cast<int>(number))));
  }
  static Float Gather(const float* table, Float tagged) {
    const __m256i numbers =
        _mm256_and_si256(_mm256_castps_si256(tagged), _mm256_set1_epi32(kNumberMask));
    return _mm256_i32gather_ps(table, numbers, sizeof *table);
  }
  static Double Low(Float a) { return _mm256_cvtps_pd(_mm256_castps256_ps128(a)); }
  static Double High(Float a) { return _mm256_cvtps_pd(_mm256_extractf128_ps(a, 1)); }
  static Float Narrow(Double low, Double high) {
    return _mm256_insertf128_ps(_mm256_castps128_ps256(_mm256_cvtpd_ps(low)), _mm256_cvtpd_ps(high),
                                1);
  }
  static Double RoundToFloat(Double a) { return _mm256_cvtps_pd(_mm256_cvtpd_ps(a)); }
  static std::uint32_t Below(Float a, Float b) {
    return static_cast<std::uint32_t>(_mm256_movemask_ps(_mm256_cmp_ps(a, b, _CMP_LT_OQ)));
  }
  static std::uint32_t Below(Double a, Double b) {
    return static_cast<std::uint32_t>(_mm256_movemask_pd(_mm256_cmp_pd(a, b, _CMP_LT_OQ)));
  }
};

}  // namespace

std::uint32_t InterpolateAvx2(const Surroundings& around, const SureDistances& sure, Tile& tile) {
  return TileInterpolation<Avx2>(sure, tile).Interpolate(around);
}

}  // namespace discoplan::lattice
