// SPDX-License-Identifier: MIT
#include <emmintrin.h>

#include "discoplan/core/interpolation/lattice/kernel.h"

namespace discoplan::lattice {
namespace {

struct Sse2 {
  static constexpr std::int32_t kLanes = 4;
  using Float = __m128;
  using Double = __m128d;

  static Float Load(const float* from) { return _mm_loadu_ps(from); }
  static void Store(float* to, Float a) { _mm_storeu_ps(to, a); }
  static Float Spread(float a) { return _mm_set1_ps(a); }
  static Double Spread(double a) { return _mm_set1_pd(a); }
  static Float Min(Float a, Float b) { return _mm_min_ps(a, b); }
  static Float Max(Float a, Float b) { return _mm_max_ps(a, b); }
  static Double Sqrt(Double a) { return _mm_sqrt_pd(a); }
  static std::int32_t Number(Float squares, Float limits, std::int32_t first,
                             std::uint32_t* numbers) {
    return NumberOneByOne<Sse2>(squares, limits, first, numbers);
  }
  static Float Tag(Float a, std::uint32_t number) {
    const __m128i mask = _mm_set1_epi32(kNumberMask);
    return _mm_or_ps(_mm_andnot_ps(_mm_castsi128_ps(mask), a),
                     _mm_castsi128_ps(_mm_set1_epi32(static_cast<int>(number))));
  }
  static Float Gather(const float* table, Float tagged) {
    alignas(16) std::uint32_t numbers[kLanes];
    _mm_store_ps(reinterpret_cast<float*>(numbers),
                 _mm_and_ps(tagged, _mm_castsi128_ps(_mm_set1_epi32(kNumberMask))));
    return _mm_setr_ps(table[numbers[0]], table[numbers[1]], table[numbers[2]], table[numbers[3]]);
  }
  static Double Low(Float a) { return _mm_cvtps_pd(a); }
  static Double High(Float a) { return _mm_cvtps_pd(_mm_movehl_ps(a, a)); }
  static Float Narrow(Double low, Double high) {
    return _mm_movelh_ps(_mm_cvtpd_ps(low), _mm_cvtpd_ps(high));
  }
  static Double RoundToFloat(Double a) { return _mm_cvtps_pd(_mm_cvtpd_ps(a)); }
  static std::uint32_t Below(Float a, Float b) {
    return static_cast<std::uint32_t>(_mm_movemask_ps(_mm_cmplt_ps(a, b)));
  }
  static std::uint32_t Below(Double a, Double b) {
    return static_cast<std::uint32_t>(_mm_movemask_pd(_mm_cmplt_pd(a, b)));
  }
};

}  // namespace

std::uint32_t InterpolateSse2(const Surroundings& around, const SureDistances& sure, Tile& tile) {
  return TileInterpolation<Sse2>(sure, tile).Interpolate(around);
}

}  // namespace discoplan::lattice
