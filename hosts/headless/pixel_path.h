// SPDX-License-Identifier: MIT
#pragma once

/// Pieces of straight lines in pixels, one behind the other in one place: quick to make again.

#include <span>
#include <vector>

#include "discoplan/figures/shapes.h"

namespace discoplan {

class PixelPath {
 public:
  struct Piece {
    std::span<const figures::Point> points;
    bool closed;
  };

  bool IsEmpty() const { return points_.empty(); }
  void Clear() {
    points_.clear();
    pieces_.clear();
  }

  void MoveTo(figures::Point point) {
    pieces_.push_back({points_.size(), false});
    points_.push_back(point);
  }
  void LineTo(figures::Point point) { points_.push_back(point); }
  /// Ends the piece; the next one begins by `MoveTo`.
  void Close() {
    if (!pieces_.empty()) pieces_.back().closed = true;
  }

  /// `take(piece)` for one after the other.
  template <class Take>
  void ForEachPiece(const Take& take) const {
    for (std::size_t i = 0; i < pieces_.size(); ++i) {
      const std::size_t start = pieces_[i].start;
      const std::size_t end = i + 1 < pieces_.size() ? pieces_[i + 1].start : points_.size();
      take(Piece{std::span(points_).subspan(start, end - start), pieces_[i].closed});
    }
  }

 private:
  struct Start {
    std::size_t start;
    bool closed;
  };
  std::vector<figures::Point> points_;
  std::vector<Start> pieces_;
};

}  // namespace discoplan
