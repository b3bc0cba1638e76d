// SPDX-License-Identifier: MIT
#include "apps/report/vector_file.h"

#include <QPageSize>
#include <QPdfWriter>
#include <QSvgGenerator>

#include "apps/discoplan/output.h"
#include "discoplan/version.h"

namespace discoplan::app {
namespace {

constexpr int kDotsPerInch = 600;

int Dots(float twips) { return qRound(twips / kTwipsPerInch * kDotsPerInch); }

std::unique_ptr<QPaintDevice> NewPdf(QBuffer& buffer, const PageSize& size, const QString& title) {
  auto writer = std::make_unique<QPdfWriter>(&buffer);
  writer->setResolution(kDotsPerInch);
  writer->setTitle(title);
  writer->setCreator(QStringLiteral("Discoplan ") + QString::fromStdString(LibraryVersion()));
  const QSizeF points(size.width / kTwipsPerPoint, size.height / kTwipsPerPoint);
  writer->setPageSize(QPageSize(points, QPageSize::Point, {}, QPageSize::ExactMatch));
  writer->setPageMargins({});
  return writer;
}

std::unique_ptr<QPaintDevice> NewSvg(QBuffer& buffer, const PageSize& size, const QString& title) {
  auto generator = std::make_unique<QSvgGenerator>();
  generator->setOutputDevice(&buffer);
  generator->setResolution(kDotsPerInch);
  generator->setTitle(title);
  generator->setSize({Dots(size.width), Dots(size.height)});
  generator->setViewBox(QRect(0, 0, Dots(size.width), Dots(size.height)));
  return generator;
}

}  // namespace

VectorFile::VectorFile(std::string path, const PageSize& size, const std::string& title)
    : path_(std::move(path)), buffer_(&bytes_) {
  const bool svg = FormatOf(path_) == FileFormat::Svg;
  device_ = (svg ? NewSvg : NewPdf)(buffer_, size, QString::fromStdString(title));
  if (!svg) buffer_.open(QIODevice::WriteOnly);
  painter_.begin(device_.get());
  paper_ = std::make_shared<qt::QtPaper>(painter_, screen_);
}

VectorFile::~VectorFile() { End(); }

void VectorFile::End() {
  paper_->Finish();
  if (painter_.isActive()) painter_.end();
}

void VectorFile::NewPage() {
  paper_->Finish();
  dynamic_cast<QPdfWriter&>(*device_).newPage();
}

void VectorFile::Save() {
  End();
  const auto* data = reinterpret_cast<const std::uint8_t*>(bytes_.constData());
  WriteOutput(path_, {data, static_cast<std::size_t>(bytes_.size())});
}

}  // namespace discoplan::app
