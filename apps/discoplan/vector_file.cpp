// SPDX-License-Identifier: MIT
#include "apps/discoplan/vector_file.h"

#include <utility>

#include "apps/discoplan/output.h"
#include "hosts/headless/figure_pdf.h"
#include "hosts/headless/save_figure.h"

namespace discoplan::app {
namespace {

constexpr const char* kFont = "Arial";

}  // namespace

VectorFile::VectorFile(std::string path, const PageSize& size, std::string title)
    : path_(std::move(path)),
      title_(std::move(title)),
      text_(kFont),
      paper_(std::make_shared<figures::FigurePaper>(
          figures::FigurePaper::Setting{.width = size.width,
                                        .height = size.height,
                                        .screen = screen_,
                                        .text = text_.Letters(),
                                        .font = kFont})) {}

void VectorFile::NewPage() {
  pages_.push_back(paper_->Take());
  pages_.back().title = title_;
}

void VectorFile::Save() {
  NewPage();
  const std::vector<std::uint8_t> bytes =
      FormatOf(path_) == FileFormat::Svg
          ? EncodeFigure(pages_.back(), FigureFormat::Svg, kPagePixels, text_)
          : ToPdf(pages_, kPagePixels, text_.Letters());
  WriteOutput(path_, bytes);
}

}  // namespace discoplan::app
