// SPDX-License-Identifier: MIT
#pragma once

/// What is asked of the sheet of a lot, whichever format it is written in.

#include <functional>
#include <string>

#include "apps/discoplan/lot_page.h"
#include "apps/discoplan/picture_request.h"

namespace discoplan::app {

struct LotRequest {
  ReadRequest data;
  DeriveRequest derive;
  LotSheetOptions sheet;
  std::string kind = "2D";
  PlotRequest plot;  ///< settings, assignments and style of the small plots
  std::string output;
  PixelSize size{1684, 1191};  ///< of a page
  LookRequest look;
};

void AddLotOptions(CLI::App& command, LotRequest& request);

/// Raises `UsageError` if the file to write is one to read.
void RefuseOverwriting(const LotRequest& request);

/// The pages of a lot, ready to be drawn.
class LotPages {
 public:
  /// Reads the data. Raises as `Derive` does, and `UsageError` for what makes no sense.
  explicit LotPages(const LotRequest& request);

  std::size_t Count() const;
  const std::string& Title() const { return sheets_.front().title; }
  /// In twips; the width is `kSheetWidth`.
  float Height() const { return options_.height; }
  /// Draws all pages, each on the surface that `page_at` gives for its number from 0.
  void Draw(const std::function<Surface&(std::size_t page)>& page_at) const;

 private:
  HeadlessHost host_;
  LotPageOptions options_;
  std::vector<LotSheet> sheets_;
};

}  // namespace discoplan::app
