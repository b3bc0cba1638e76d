// SPDX-License-Identifier: MIT
#pragma once

/// A PDF or SVG file in the making, of classic plots.
///
///     VectorFile file("plot.pdf", {.width = 9000, .height = 6000}, "Slot 7");
///     Draw(*file.paper());
///     file.Save();

#include <memory>
#include <string>
#include <vector>

#include "discoplan/figures/figure_paper.h"
#include "hosts/headless/figure_picture.h"

namespace discoplan::app {

/// In twips.
struct PageSize {
  float width = 0;
  float height = 0;
};

class VectorFile {
 public:
  /// The name tells the format; PDF unless it's SVG.
  VectorFile(std::string path, const PageSize& size, std::string title);
  VectorFile(const VectorFile&) = delete;
  VectorFile& operator=(const VectorFile&) = delete;

  /// What the page is drawn on; shared, as a control's printer.
  std::shared_ptr<VectorPaper> paper() const { return paper_; }
  /// Begins another page; PDF only.
  void NewPage();
  /// Writes the file whole or not at all. Raises as `WriteOutput` and `ToPdf` do.
  void Save();

 private:
  const std::string path_;
  const std::string title_;
  const Screen screen_;
  const FigureText text_;
  const std::shared_ptr<figures::FigurePaper> paper_;
  std::vector<figures::Figure> pages_;  // that are done
};

}  // namespace discoplan::app
