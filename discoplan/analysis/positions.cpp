// SPDX-License-Identifier: MIT
#include "discoplan/analysis/positions.h"

#include <cmath>

namespace discoplan::analysis {

std::vector<Site> Turned(std::span<const Site> sites, double degrees) {
  // Both exact, and the rest is at most an eighth of a turn.
  const double within_turn = std::fmod(degrees, 360.0);
  const double quarters = std::nearbyint(within_turn / 90);
  const double rest = (within_turn - 90 * quarters) * (3.14159265358979323846 / 180);
  const double cosine = std::cos(rest);
  const double sine = std::sin(rest);
  std::vector<Site> turned(sites.begin(), sites.end());
  for (Site& site : turned) {
    if (rest != 0) {
      const double x = site.x;
      const double y = site.y;
      site.x = static_cast<float>(x * cosine - y * sine);
      site.y = static_cast<float>(x * sine + y * cosine);
    }
    for (int turn = (static_cast<int>(quarters) + 4) % 4; turn > 0; --turn) {
      site = {0 - site.y, site.x, site.z};
    }
  }
  return turned;
}

std::vector<Site> Mirrored(std::span<const Site> sites, MirrorAxis axis) {
  std::vector<Site> mirrored(sites.begin(), sites.end());
  float Site::*const coordinate = axis == MirrorAxis::X ? &Site::x : &Site::y;
  for (Site& site : mirrored) site.*coordinate = 0 - site.*coordinate;
  return mirrored;
}

}  // namespace discoplan::analysis
