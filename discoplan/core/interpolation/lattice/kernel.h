// SPDX-License-Identifier: MIT
#pragma once

/// The interpolation of a tile, once for all instruction sets. `V` wraps the registers of one:
///
///     kLanes             points per register
///     Float, Double      registers of kLanes floats and of half as many doubles, with operators
///     Load, Store        from and to memory, unaligned
///     Spread             one number to all lanes
///     Min, Max, Sqrt     lane by lane; Min and Max for numbers above zero only
///     Number             writes the numbers of the lanes that aren't above a limit, given that of
///                        the first lane; tells how many, and may write as many as lanes
///     Tag                a float above zero with its last bits replaced by those of a number
///     Gather             table entries by the numbers that tags are
///     Low, High, Narrow  halves as doubles, and back
///     Below              bit i is set if lane i of the first is below that of the second
///
/// The nearest sites are found by 32-bit keys: the squared distance, with the site's number in the
/// last bits. Where keys are too close to tell, the point is reported as not certain. The weights
/// are computed in the steps and the precision of the plain way, so that the values have its bits.

#include "discoplan/core/interpolation/lattice/tile.h"

namespace discoplan::lattice {
namespace {

/// Squared distance of nothing, well within the range of a float.
constexpr float kNowhere = 1e30F;
constexpr float kFarAway = 1e15F;

/// `Number` for instruction sets without one of their own.
template <class V>
std::int32_t NumberOneByOne(typename V::Float squares, typename V::Float limits, std::int32_t first,
                            std::uint32_t* numbers) {
  const std::uint32_t beyond = V::Below(limits, squares);
  std::int32_t count = 0;
  for (std::int32_t i = 0; i < V::kLanes; ++i) {
    numbers[count] = static_cast<std::uint32_t>(first + i);
    count += static_cast<std::int32_t>(~beyond >> i & 1);
  }
  return count;
}

/// Finds and weighs the neighbours of all points of a tile.
template <class V>
class TileInterpolation {
 public:
  using Float = typename V::Float;
  using Double = typename V::Double;

  TileInterpolation(const SureDistances& sure, Tile& tile)
      : sure_(sure), tile_(tile), sites_(tile.sites) {}

  std::uint32_t Interpolate(const Surroundings& around) {
    Collect(around);
    sites_.near_count = 0;
    if (sites_.count < 4) return 0;
    Cull();
    if (tile_.count == 1 || sites_.near_count < 4) return 0;
    std::uint32_t certain = 0;
    for (std::int32_t at = 0; at < tile_.count; at += V::kLanes) {
      certain |= InterpolateAt(at) << at;
    }
    return certain;
  }

 private:
  /// Four neighbours by growing distance, and the key of the fifth.
  struct Nearest {
    Float key[5];
  };

  void Collect(const Surroundings& around) {
    std::int32_t count = 0;
    for (std::int32_t r = 0; r < around.run_count; ++r) {
      const auto [begin, end] = around.runs[r];
      for (std::int32_t i = begin; i < end; i += V::kLanes) {
        const std::int32_t to = count + i - begin;
        V::Store(sites_.x + to, V::Load(around.x + i));
        V::Store(sites_.y + to, V::Load(around.y + i));
        V::Store(sites_.z + to, V::Load(around.z + i));
      }
      count += end - begin;
    }
    V::Store(sites_.x + count, V::Spread(kFarAway));
    V::Store(sites_.y + count, V::Spread(kFarAway));
    sites_.count = count;
  }

  /// Keeps the sites that can be among the four nearest of some point. Four of them, each nearest
  /// to the tile's centre in its quarter of the lanes, bound the fourth neighbour of the centre, a
  /// point's fourth is at most its way to the centre farther, and its sites that way once more.
  void Cull() {
    const float centre_x = Middle(tile_.x, tile_.count);
    const float centre_y = Middle(tile_.y, tile_.count);
    alignas(64) float square[kMostSites + kPadding];
    alignas(64) float nearest[V::kLanes];
    Float least = V::Spread(kNowhere);
    for (std::int32_t i = 0; i < sites_.count; i += V::kLanes) {
      const Float to_centre = Square(V::Load(sites_.x + i) - V::Spread(centre_x),
                                     V::Load(sites_.y + i) - V::Spread(centre_y));
      V::Store(square + i, to_centre);
      least = V::Min(least, to_centre);
    }
    V::Store(nearest, least);
    const float limit = SquaredReach(FourthAtMost(nearest), FarthestSquare(centre_x, centre_y));
    for (std::int32_t i = 0; i < sites_.count; i += V::kLanes) {
      sites_.near_count +=
          V::Number(V::Load(square + i), V::Spread(limit), i, sites_.near + sites_.near_count);
    }
  }

  static float SquaredReach(float fourth_square, float way_square) {
    constexpr float kRounded = 1.0001F;
    if (way_square == 0) return fourth_square * kRounded;
    const float reach = __builtin_sqrtf(fourth_square) + 2 * __builtin_sqrtf(way_square);
    return reach * reach * kRounded;
  }

  static Float Square(Float dx, Float dy) { return dx * dx + dy * dy; }

  static float Middle(const float* positions, std::int32_t count) {
    float low = positions[0];
    float high = positions[0];
    for (std::int32_t i = 1; i < count; ++i) {
      low = positions[i] < low ? positions[i] : low;
      high = positions[i] > high ? positions[i] : high;
    }
    return low + (high - low) / 2;
  }

  float FarthestSquare(float centre_x, float centre_y) const {
    float farthest = 0;
    for (std::int32_t i = 0; i < tile_.count; ++i) {
      const float dx = tile_.x[i] - centre_x;
      const float dy = tile_.y[i] - centre_y;
      const float square = dx * dx + dy * dy;
      farthest = square > farthest ? square : farthest;
    }
    return farthest;
  }

  static float FourthAtMost(const float* lanes) {
    float fourth = 0;
    for (std::int32_t quarter = 0; quarter < 4; ++quarter) {
      float least = lanes[quarter];
      for (std::int32_t i = quarter + 4; i < V::kLanes; i += 4) {
        least = lanes[i] < least ? lanes[i] : least;
      }
      fourth = least > fourth ? least : fourth;
    }
    return fourth;
  }

  std::uint32_t InterpolateAt(std::int32_t at) {
    const Float x = V::Load(tile_.x + at);
    const Float y = V::Load(tile_.y + at);
    const Nearest nearest = Search(x, y);
    for (std::int32_t slot = 0; slot < 5; ++slot) {
      V::Store(tile_.keys[slot] + at, nearest.key[slot]);
    }
    return Weigh(x, y, nearest, at);
  }

  Nearest Search(Float x, Float y) const {
    const Float nothing = V::Spread(kNowhere);
    Nearest nearest{{nothing, nothing, nothing, nothing, nothing}};
    for (std::int32_t i = 0; i < sites_.near_count; ++i) {
      const std::uint32_t site = sites_.near[i];
      Float key =
          V::Tag(Square(V::Spread(sites_.x[site]) - x, V::Spread(sites_.y[site]) - y), site);
      for (std::int32_t slot = 0; slot < 4; ++slot) {
        const Float farther = V::Max(nearest.key[slot], key);
        nearest.key[slot] = V::Min(nearest.key[slot], key);
        key = farther;
      }
      nearest.key[4] = V::Min(nearest.key[4], key);
    }
    return nearest;
  }

  std::uint32_t Weigh(Float x, Float y, const Nearest& nearest, std::int32_t at) {
    Float site_x[4];
    Float site_y[4];
    Float site_z[4];
    for (std::int32_t slot = 0; slot < 4; ++slot) {
      site_x[slot] = V::Gather(sites_.x, nearest.key[slot]);
      site_y[slot] = V::Gather(sites_.y, nearest.key[slot]);
      site_z[slot] = V::Gather(sites_.z, nearest.key[slot]);
    }
    WeightedMean<Lower> low(sure_, x, y, site_x, site_y, site_z);
    WeightedMean<Upper> high(sure_, x, y, site_x, site_y, site_z);
    float* const values = tile_.value + at;
    V::Store(values, V::Narrow(low.value, high.value));
    const auto both = [](std::uint32_t lower, std::uint32_t upper) {
      return lower | upper << (V::kLanes / 2);
    };
    const std::uint32_t on_site = both(low.on_site, high.on_site);
    const Float limit = nearest.key[3] * V::Spread(kClearlyFarther);
    alignas(64) float first[V::kLanes];
    V::Store(first, site_z[0]);
    for (std::int32_t i = 0; i < V::kLanes; ++i) {
      // What overflows on the way is 0.
      if (!(values[i] >= -kLargest && values[i] <= kLargest)) values[i] = 0;
      if ((on_site >> i & 1) != 0) values[i] = first[i];
    }
    return on_site | (both(low.certain, high.certain) & V::Below(limit, nearest.key[4]));
  }

  static constexpr float kLargest = 3.40282347e38F;

  struct Lower {
    static Double Of(Float a) { return V::Low(a); }
  };
  struct Upper {
    static Double Of(Float a) { return V::High(a); }
  };

  /// The mean for half a register, with the roundings of the plain way. `certain` if the order of
  /// the four is, and their set by the search over the cells.
  template <class Half>
  struct WeightedMean {
    WeightedMean(const SureDistances& sure, Float x, Float y, const Float* site_x,
                 const Float* site_y, const Float* site_z) {
      const Double one = V::Spread(1.0);
      Double distance[4];
      Double numerator = V::Spread(0.0);
      Double denominator = numerator;
      for (std::int32_t slot = 0; slot < 4; ++slot) {
        const Double dx = Half::Of(x) - Half::Of(site_x[slot]);
        const Double dy = Half::Of(y) - Half::Of(site_y[slot]);
        distance[slot] = V::Sqrt(dx * dx + dy * dy);
        const Double square = distance[slot] * distance[slot];
        numerator = V::RoundToFloat(numerator + Half::Of(site_z[slot]) / square);
        denominator = denominator + one / square;
      }
      value = numerator / denominator;
      const std::uint32_t first_is_sure = V::Below(distance[0], distance[1]);
      on_site = first_is_sure & ~V::Below(V::Spread(0.0), distance[0]);
      certain = first_is_sure & V::Below(distance[1], distance[2]) &
                V::Below(distance[2], distance[3]) & V::Below(V::Spread(sure.above), distance[3]) &
                V::Below(distance[3], V::Spread(sure.below));
    }

    Double value;
    std::uint32_t on_site;
    std::uint32_t certain;
  };

  const SureDistances& sure_;
  Tile& tile_;
  TileSites& sites_;
};

}  // namespace
}  // namespace discoplan::lattice
