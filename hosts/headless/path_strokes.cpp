// SPDX-License-Identifier: MIT
#include "hosts/headless/path_strokes.h"

#include <algorithm>

#include "hosts/headless/agg_headers.h"

namespace discoplan {
namespace {

/// Points that differ, each with its distance to the next.
using Corners = agg::vertex_sequence<agg::vertex_dist>;

/// Takes the pieces of two corners and more, one after the other: `take(corners, closed)`.
template <class Take>
void ForEachPiece(const PixelPath& path, const Take& take) {
  Corners corners;
  path.ForEachPiece([&](const PixelPath::Piece& piece) {
    for (const figures::Point p : piece.points) corners.add(agg::vertex_dist(p.x, p.y));
    corners.close(piece.closed);
    if (corners.size() > 1) take(corners, piece.closed && corners.size() > 2);
    corners.remove_all();
  });
}

/// Goes around a piece at half the width.
class Outliner {
 public:
  Outliner(const Corners& corners, double width) : corners_(corners) {
    pen_.width(width);
    pen_.line_join(agg::round_join);
    pen_.line_cap(agg::butt_cap);
  }

  void GoAround(bool closed, PixelPath& outline) {
    const unsigned count = corners_.size();
    if (!closed) Cap(0, 1, outline);
    for (unsigned i = closed ? 0 : 1; i < (closed ? count : count - 1); ++i) {
      Join((i + count - 1) % count, i, (i + 1) % count, outline);
    }
    closed ? outline.Close() : Cap(count - 1, count - 2, outline);
    begun_ = begun_ && !closed;
    for (unsigned i = closed ? count : count - 1; i-- > (closed ? 0 : 1);) {
      Join((i + 1) % count, i, (i + count - 1) % count, outline);
    }
    outline.Close();
  }

 private:
  void Cap(unsigned at, unsigned toward, PixelPath& outline) {
    pen_.calc_cap(points_, corners_[at], corners_[toward], Distance(at, toward));
    Append(outline);
  }
  void Join(unsigned from, unsigned at, unsigned to, PixelPath& outline) {
    pen_.calc_join(points_, corners_[from], corners_[at], corners_[to], Distance(from, at),
                   Distance(at, to));
    Append(outline);
  }
  /// Of neighbours in either direction.
  double Distance(unsigned a, unsigned b) const {
    const auto [first, second] = std::minmax(a, b);
    return corners_[second - first == 1 ? first : second].dist;
  }
  void Append(PixelPath& outline) {
    for (unsigned i = 0; i < points_.size(); ++i) {
      const figures::Point point = {points_[i].x, points_[i].y};
      begun_ ? outline.LineTo(point) : outline.MoveTo(point);
      begun_ = true;
    }
  }

  const Corners& corners_;
  agg::pod_bvector<agg::point_d> points_;
  agg::math_stroke<agg::pod_bvector<agg::point_d>> pen_;
  bool begun_ = false;
};

/// Takes the runs of sides that the pen brings into sight, with a side more at both ends: a join
/// depends on both of its sides.
template <class Take>
void ForEachRunInSight(const Corners& corners, bool closed, const LinePen& pen, const Take& take) {
  const unsigned count = corners.size();
  const unsigned sides = closed ? count : count - 1;
  const auto in_sight = [&](unsigned side) {
    const auto [high, low] = std::minmax(corners[side % count].y, corners[(side + 1) % count].y);
    return high - pen.width < pen.bottom && low + pen.width > pen.top;
  };
  unsigned hidden = 0;
  while (hidden < sides && in_sight(hidden)) ++hidden;
  if (hidden == sides) return take(corners, closed);
  // A closed piece is gone around from where it isn't seen.
  const unsigned first = closed ? hidden : 0;
  const unsigned last = closed ? first + count + 1 : count - 1;
  Corners run;
  const auto finish = [&] {
    run.close(false);
    if (run.size() > 1) take(run, false);
    run.remove_all();
  };
  unsigned next = first;  // corner
  for (unsigned side = first; side < first + sides; ++side) {
    if (!in_sight(side)) continue;
    const unsigned begin = side > first ? side - 1 : first;
    if (begin > next) finish();
    for (next = std::max(next, begin); next <= std::min(side + 2, last); ++next) {
      run.add(corners[next % count]);
    }
  }
  finish();
}

}  // namespace

PixelPath Outlined(const PixelPath& path, const LinePen& pen) {
  PixelPath outline;
  ForEachPiece(path, [&](const Corners& corners, bool closed) {
    ForEachRunInSight(corners, closed, pen, [&](const Corners& run, bool run_closed) {
      Outliner(run, pen.width).GoAround(run_closed, outline);
    });
  });
  return outline;
}

PixelPath Dashed(const PixelPath& path, double length) {
  PixelPath dashes;
  ForEachPiece(path, [&](const Corners& corners, bool closed) {
    bool down = true;
    double left = length;  // of this dash or gap
    dashes.MoveTo({corners[0].x, corners[0].y});
    const auto go_to = [&](double x, double y) {
      down ? dashes.LineTo({x, y}) : dashes.MoveTo({x, y});
    };
    for (unsigned i = 0; i + (closed ? 0 : 1) < corners.size(); ++i) {
      const agg::vertex_dist& from = corners[i];
      const agg::vertex_dist& to = corners[(i + 1) % corners.size()];
      double rest = from.dist;
      for (; rest > left; left = length, down = !down) {
        rest -= left;
        go_to(to.x - (to.x - from.x) * rest / from.dist, to.y - (to.y - from.y) * rest / from.dist);
      }
      left -= rest;
      go_to(to.x, to.y);
    }
  });
  return dashes;
}

}  // namespace discoplan
