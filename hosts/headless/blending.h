// SPDX-License-Identifier: MIT
#pragma once

/// Colours over others, as pixels that are multiplied by their alpha.
///
///     const Parts ink(ColourOf({200, 0, 0, 128}));
///     Blend(pixel, ink * cover);

#include <cstdint>

#include "discoplan/figures/shapes.h"
#include "discoplan/raster/canvas.h"

namespace discoplan {

inline constexpr Pixel kOpaque = 0xFF000000;

/// The four parts of a pixel, 16 bits for each, so that one step is taken with all of them.
class Parts {
 public:
  explicit Parts(Pixel pixel) : all_((pixel | std::uint64_t{pixel} << 24) & kParts) {}

  Pixel Joined() const { return static_cast<Pixel>(all_ | all_ >> 24); }
  unsigned Alpha() const { return static_cast<unsigned>(all_ >> 48); }

  /// Each times a part of 255, rounded.
  Parts operator*(unsigned part) const {
    const std::uint64_t product = all_ * part + 0x0080008000800080;
    return Parts(((product >> 8 & kParts) + product) >> 8 & kParts, {});
  }
  Parts operator+(Parts other) const { return Parts(all_ + other.all_, {}); }
  Parts operator-(Parts other) const { return Parts(all_ - other.all_, {}); }

 private:
  static constexpr std::uint64_t kParts = 0x00FF00FF00FF00FF;
  struct AsTheyAre {};
  Parts(std::uint64_t all, AsTheyAre) : all_(all) {}

  std::uint64_t all_;
};

inline Pixel Times(Pixel pixel, unsigned part) { return (Parts(pixel) * part).Joined(); }

/// Multiplied by its alpha, as all pixels are until they are given away.
inline Pixel ColourOf(figures::Rgba colour) {
  const Pixel plain = kOpaque | static_cast<Pixel>(colour.red) << 16 |
                      static_cast<Pixel>(colour.green) << 8 | colour.blue;
  return Times(plain, colour.alpha);
}

inline void Blend(Pixel& below, Parts colour) {
  const Parts under(below);
  below = (under - under * colour.Alpha() + colour).Joined();
}

}  // namespace discoplan
