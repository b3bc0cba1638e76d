// SPDX-License-Identifier: MIT
#include "hosts/headless/figure_pdf.h"

#include <hpdf.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <stdexcept>
#include <string>

#include "discoplan/figures/image_rows.h"

namespace discoplan {
namespace {

using figures::DotsShape;
using figures::Figure;
using figures::ImageShape;
using figures::PathShape;
using figures::PixelGrid;
using figures::Point;
using figures::Rgba;
using figures::Stroke;
using figures::TextShape;

HPDF_REAL Real(double value) { return static_cast<HPDF_REAL>(value); }

/// The library's own functions do nothing more after a failure, which is kept.
class Document {
 public:
  Document() : handle_(HPDF_New(KeepFailure, this)) {
    if (handle_ == nullptr) throw std::runtime_error("cannot make a PDF file: out of memory");
    HPDF_SetCompressionMode(handle_, HPDF_COMP_ALL);
    HPDF_UseUTFEncodings(handle_);
  }
  ~Document() { HPDF_Free(handle_); }
  Document(const Document&) = delete;
  Document& operator=(const Document&) = delete;

  HPDF_Doc Handle() const { return handle_; }
  void Check() const {
    if (failure_ == 0) return;
    throw std::runtime_error("cannot make a PDF file: the library says " +
                             std::to_string(failure_) +
                             "; another --font may do, or the ending .svg");
  }

  /// The font of that name, embedded once.
  HPDF_Font FontFor(const std::string& name, bool bold, const FreeTypeText& text) {
    const auto [known, added] = fonts_.try_emplace({name, bold}, nullptr);
    if (!added) return known->second;
    const auto [file, number] = text.FileOf({.name = name, .bold = bold});
    const bool collection = file.ends_with(".ttc") || file.ends_with(".TTC");
    const char* own = collection
                          ? HPDF_LoadTTFontFromFile2(handle_, file.c_str(),
                                                     static_cast<HPDF_UINT>(number), HPDF_TRUE)
                          : HPDF_LoadTTFontFromFile(handle_, file.c_str(), HPDF_TRUE);
    if (own != nullptr) known->second = HPDF_GetFont(handle_, own, "UTF-8");
    Check();
    return known->second;
  }

  HPDF_ExtGState Opacity(std::uint8_t alpha) {
    const auto [known, added] = opacities_.try_emplace(alpha, nullptr);
    if (added) {
      known->second = HPDF_CreateExtGState(handle_);
      HPDF_ExtGState_SetAlphaFill(known->second, Real(alpha / 255.0));
      HPDF_ExtGState_SetAlphaStroke(known->second, Real(alpha / 255.0));
    }
    return known->second;
  }

 private:
  static void KeepFailure(HPDF_STATUS failure, HPDF_STATUS, void* user) {
    HPDF_STATUS& first = static_cast<Document*>(user)->failure_;
    if (first == 0) first = failure;
  }

  HPDF_STATUS failure_ = 0;
  HPDF_Doc handle_;
  std::map<std::pair<std::string, bool>, HPDF_Font> fonts_;
  std::map<std::uint8_t, HPDF_ExtGState> opacities_;
};

class PdfDevice final : public figures::Device {
 public:
  PdfDevice(const Figure& figure, Document& document, double pixels_per_point,
            const FreeTypeText& text)
      : document_(document),
        page_(HPDF_AddPage(document.Handle())),
        height_(figure.height),
        pixels_per_point_(pixels_per_point),
        font_(figure.font),
        text_(text) {
    HPDF_Page_SetWidth(page_, Real(figure.width));
    HPDF_Page_SetHeight(page_, Real(figure.height));
    HPDF_Page_SetLineJoin(page_, HPDF_ROUND_JOIN);
    if (!figure.background) return;
    Draw(PathShape{.path = figures::Rectangle({0, 0, figure.width, figure.height}),
                   .fill = figure.background});
  }

  void Draw(const PathShape& shape) override {
    // A path of nothing can't be filled.
    if (std::all_of(shape.path.pieces.begin(), shape.path.pieces.end(),
                    [](const auto& piece) { return piece.points.empty(); })) {
      return;
    }
    const bool stroked = shape.stroke.width > 0;
    if (shape.fill) {
      SetFill(*shape.fill);
      Trace(shape.path);
      HPDF_Page_Fill(page_);
    }
    if (!stroked) return;
    SetStroke(shape.stroke);
    Trace(shape.path);
    HPDF_Page_Stroke(page_);
  }

  void Draw(const DotsShape& shape) override {
    const auto discs = [&](double radius, Rgba colour) {
      SetFill(colour);
      for (const Point p : shape.centres) {
        HPDF_Page_Circle(page_, Real(p.x), Real(height_ - p.y), Real(radius));
        HPDF_Page_Fill(page_);
      }
    };
    if (shape.stroke.width > 0) discs(shape.radius + shape.stroke.width / 2, shape.stroke.colour);
    discs(shape.radius, shape.fill);
  }

  void Draw(const TextShape& shape) override {
    const HPDF_Font font = document_.FontFor(font_, shape.bold, text_);
    const double angle = shape.angle * 3.14159265358979 / 180;
    const auto write = [&](HPDF_TextRenderingMode mode) {
      HPDF_Page_BeginText(page_);
      HPDF_Page_SetFontAndSize(page_, font, Real(shape.size));
      HPDF_Page_SetTextRenderingMode(page_, mode);
      HPDF_Page_SetTextMatrix(page_, Real(std::cos(angle)), Real(std::sin(angle)),
                              Real(-std::sin(angle)), Real(std::cos(angle)), Real(shape.start.x),
                              Real(height_ - shape.start.y));
      HPDF_Page_ShowText(page_, shape.text.c_str());
      HPDF_Page_EndText(page_);
    };
    if (shape.halo > 0) {
      SetStroke({2 * shape.halo, shape.halo_colour, 0});
      write(HPDF_STROKE);
    }
    SetFill(shape.colour);
    write(HPDF_FILL);
  }

  void Draw(const ImageShape& shape) override {
    const figures::Box& area = shape.area;
    figures::ImageRows rows(*shape.source, GridOver(shape, pixels_per_point_));
    const PixelGrid& grid = rows.Grid();
    std::vector<HPDF_BYTE> bytes;
    bytes.reserve(3 * static_cast<std::size_t>(grid.columns) * static_cast<std::size_t>(grid.rows));
    for (int row = 0; row < grid.rows; ++row) {
      for (const Rgba p : rows.At(row)) bytes.insert(bytes.end(), {p.red, p.green, p.blue});
    }
    const HPDF_Image image = HPDF_LoadRawImageFromMem(
        document_.Handle(), bytes.data(), static_cast<HPDF_UINT>(grid.columns),
        static_cast<HPDF_UINT>(grid.rows), HPDF_CS_DEVICE_RGB, 8);
    HPDF_Page_GSave(page_);
    Trace(shape.outline);
    HPDF_Page_Clip(page_);
    HPDF_Page_EndPath(page_);
    HPDF_Page_SetExtGState(page_, document_.Opacity(255));
    HPDF_Page_DrawImage(page_, image, Real(area.left),
                        Real(height_ - area.top - grid.rows * grid.pitch),
                        Real(grid.columns * grid.pitch), Real(grid.rows * grid.pitch));
    HPDF_Page_GRestore(page_);
  }

 private:
  void Trace(const figures::Path& path) {
    for (const auto& piece : path.pieces) {
      for (std::size_t i = 0; i < piece.points.size(); ++i) {
        const HPDF_REAL x = Real(piece.points[i].x);
        const HPDF_REAL y = Real(height_ - piece.points[i].y);
        i == 0 ? HPDF_Page_MoveTo(page_, x, y) : HPDF_Page_LineTo(page_, x, y);
      }
      if (piece.closed && !piece.points.empty()) HPDF_Page_ClosePath(page_);
    }
  }

  void SetFill(Rgba colour) {
    HPDF_Page_SetExtGState(page_, document_.Opacity(colour.alpha));
    HPDF_Page_SetRGBFill(page_, Real(colour.red / 255.0), Real(colour.green / 255.0),
                         Real(colour.blue / 255.0));
  }

  void SetStroke(const Stroke& stroke) {
    HPDF_Page_SetExtGState(page_, document_.Opacity(stroke.colour.alpha));
    HPDF_Page_SetRGBStroke(page_, Real(stroke.colour.red / 255.0),
                           Real(stroke.colour.green / 255.0), Real(stroke.colour.blue / 255.0));
    HPDF_Page_SetLineWidth(page_, Real(stroke.width));
    // Whole points are the finest that the library takes.
    const auto dash = static_cast<HPDF_UINT16>(std::max(1.0, std::round(stroke.dash)));
    HPDF_Page_SetDash(page_, &dash, stroke.dash > 0 ? 1 : 0, 0);
  }

  Document& document_;
  HPDF_Page page_;
  double height_;
  double pixels_per_point_;
  std::string font_;
  const FreeTypeText& text_;
};

}  // namespace

std::vector<std::uint8_t> ToPdf(std::span<const Figure> pages, double pixels_per_point,
                                const FreeTypeText& text) {
  Document document;
  HPDF_SetInfoAttr(document.Handle(), HPDF_INFO_CREATOR, "Discoplan");
  for (const Figure& figure : pages) {
    PdfDevice device(figure, document, pixels_per_point, text);
    figures::Draw(figure, device);
    document.Check();
  }
  HPDF_SaveToStream(document.Handle());
  document.Check();
  std::vector<std::uint8_t> bytes(HPDF_GetStreamSize(document.Handle()));
  auto size = static_cast<HPDF_UINT32>(bytes.size());
  HPDF_ReadFromStream(document.Handle(), bytes.data(), &size);
  bytes.resize(size);
  return bytes;
}

}  // namespace discoplan
