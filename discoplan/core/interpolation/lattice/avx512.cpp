// SPDX-License-Identifier: MIT
#include <immintrin.h>

#include "discoplan/core/interpolation/lattice/kernel.h"

#if !defined(__clang__)
// The compiler's own header reads a register that it leaves undefined on purpose.
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#pragma GCC diagnostic ignored "-Wuninitialized"
#endif

namespace discoplan::lattice {
namespace {

struct Avx512 {
  static constexpr std::int32_t kLanes = 16;
  using Float = __m512;
  using Double = __m512d;

  static Float Load(const float* from) { return _mm512_loadu_ps(from); }
  static void Store(float* to, Float a) { _mm512_storeu_ps(to, a); }
  static Float Spread(float a) { return _mm512_set1_ps(a); }
  static Double Spread(double a) { return _mm512_set1_pd(a); }
  static Float Min(Float a, Float b) { return _mm512_min_ps(a, b); }
  static Float Max(Float a, Float b) { return _mm512_max_ps(a, b); }
  static Double Sqrt(Double a) { return _mm512_sqrt_pd(a); }
  static std::int32_t Number(Float squares, Float limits, std::int32_t first,
                             std::uint32_t* numbers) {
    const __m512i lanes = _mm512_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15);
    const __mmask16 near = _mm512_cmp_ps_mask(squares, limits, _CMP_LE_OQ);
    _mm512_storeu_si512(numbers, _mm512_maskz_compress_epi32(
                                     near, _mm512_add_epi32(lanes, _mm512_set1_epi32(first))));
    return __builtin_popcount(near);
  }
  static Float Tag(Float a, std::uint32_t number) {
    constexpr int kSecondWhereMaskElseFirst = 0xCA;
    return _mm512_castsi512_ps(_mm512_ternarylogic_epi32(
        _mm512_set1_epi32(kNumberMask), _mm512_set1_epi32(static_cast<int>(number)),
        _mm512_castps_si512(a), kSecondWhereMaskElseFirst));
  }
  static Float Gather(const float* table, Float tagged) {
    const __m512i numbers =
        _mm512_and_si512(_mm512_castps_si512(tagged), _mm512_set1_epi32(kNumberMask));
    return _mm512_i32gather_ps(numbers, table, sizeof *table);
  }
  static Double Low(Float a) { return _mm512_cvtps_pd(_mm512_castps512_ps256(a)); }
  static Double High(Float a) {
    return _mm512_cvtps_pd(_mm256_castpd_ps(_mm512_extractf64x4_pd(_mm512_castps_pd(a), 1)));
  }
  static Float Narrow(Double low, Double high) {
    const __m256d upper = _mm256_castps_pd(_mm512_cvtpd_ps(high));
    const __m512d lower = _mm512_castps_pd(_mm512_castps256_ps512(_mm512_cvtpd_ps(low)));
    return _mm512_castpd_ps(_mm512_insertf64x4(lower, upper, 1));
  }
  static Double RoundToFloat(Double a) { return _mm512_cvtps_pd(_mm512_cvtpd_ps(a)); }
  static std::uint32_t Below(Float a, Float b) { return _mm512_cmp_ps_mask(a, b, _CMP_LT_OQ); }
  static std::uint32_t Below(Double a, Double b) { return _mm512_cmp_pd_mask(a, b, _CMP_LT_OQ); }
};

}  // namespace

std::uint32_t InterpolateAvx512(const Surroundings& around, const SureDistances& sure, Tile& tile) {
  return TileInterpolation<Avx512>(sure, tile).Interpolate(around);
}

}  // namespace discoplan::lattice
