// SPDX-License-Identifier: MIT
#pragma once

/// A PDF or SVG file in the making.
///
///     VectorFile file("plot.pdf", {.width = 9000, .height = 6000});
///     Draw(*file.paper());
///     file.Save();

#include <QBuffer>
#include <QPaintDevice>
#include <QPainter>
#include <memory>
#include <string>

#include "discoplan/platform/object.h"
#include "hosts/qt/qt_paper.h"

namespace discoplan::app {

/// In twips.
struct PageSize {
  float width = 0;
  float height = 0;
};

class VectorFile {
 public:
  /// The name tells the format; PDF unless it's SVG.
  VectorFile(std::string path, const PageSize& size, const std::string& title);
  ~VectorFile();
  VectorFile(const VectorFile&) = delete;
  VectorFile& operator=(const VectorFile&) = delete;

  /// What the page is drawn on; shared, as a control's printer.
  std::shared_ptr<qt::QtPaper> paper() const { return paper_; }
  /// Begins another page; PDF only.
  void NewPage();
  /// Writes the file whole or not at all. Raises as `WriteOutput` does.
  void Save();

 private:
  void End();

  const std::string path_;
  const Screen screen_;
  QByteArray bytes_;
  QBuffer buffer_;
  std::unique_ptr<QPaintDevice> device_;
  QPainter painter_;
  std::shared_ptr<qt::QtPaper> paper_;
};

}  // namespace discoplan::app
