// SPDX-License-Identifier: MIT
// Classic plots on paper, beside the same on a picture of the screen.
#include "hosts/headless/classic_page.h"

#include <gmock/gmock.h>

#include <cmath>
#include <cstdlib>

#include "discoplan/figures/figure_paper.h"
#include "hosts/headless/classic_look.h"
#include "hosts/headless/figure_pdf.h"
#include "hosts/headless/headless_host.h"
#include "hosts/headless/save_figure.h"
#include "tests/apps/program_fixture.h"

namespace discoplan {
namespace {

using figures::Figure;
using figures::FigurePaper;

constexpr float kWidth = 9600;  // twips
constexpr float kHeight = 5760;
constexpr double kPixelsPerPoint = 150.0 / 72;
constexpr Screen kDevice{9.6F, 9.6F};

/// Red, green and blue of pixels in rows.
struct Image {
  int width = 0;
  int height = 0;
  std::string bytes;

  int At(int x, int y, int part) const {
    return static_cast<unsigned char>(bytes[static_cast<std::size_t>(3 * (y * width + x) + part)]);
  }
  int Light(int x, int y) const { return (At(x, y, 0) + At(x, y, 1) + At(x, y, 2)) / 3; }
  bool IsPlain(int x, int y) const {
    for (int dy = -3; dy <= 3; ++dy) {
      for (int dx = -3; dx <= 3; ++dx) {
        for (int part = 0; part < 3; ++part) {
          if (At(x + dx, y + dy, part) != At(x, y, part)) return false;
        }
      }
    }
    return true;
  }
  bool HasInkNear(int x, int y) const {
    for (int dy = -3; dy <= 3; ++dy) {
      for (int dx = -3; dx <= 3; ++dx) {
        if (Light(x + dx, y + dy) < 230) return true;
      }
    }
    return false;
  }
};

struct Alike {
  double plain = 0;  ///< Share of the first one's plain pixels that have the second one's colour.
  double ink = 0;    ///< Share of the first one's dark pixels that the second one has ink at.
};

Alike Compare(const Image& a, const Image& b) {
  constexpr int kRim = 4;
  double plain = 0, same = 0, dark = 0, met = 0;
  constexpr int kStep = 3;
  for (int y = kRim; y < a.height - kRim; y += kStep) {
    for (int x = kRim + y / kStep % kStep; x < a.width - kRim; x += kStep) {
      if (a.Light(x, y) < 128) {
        ++dark;
        met += b.HasInkNear(x, y);
      }
      if (!a.IsPlain(x, y)) continue;
      ++plain;
      bool equal = true;
      for (int part = 0; part < 3; ++part) {
        equal = equal && std::abs(a.At(x, y, part) - b.At(x, y, part)) < 24;
      }
      same += equal;
    }
  }
  return {same / plain, met / dark};
}

class ClassicPage : public ProgramFixture {
 protected:
  ClassicPage() {
    for (int i = 0; i < 49; ++i) {
      x_.push_back(static_cast<float>(i % 7 * 26 - 78));
      y_.push_back(static_cast<float>(i / 7 * 26 - 78));
      value_.push_back(100 + x_.back() / 10 + y_.back() * y_.back() / 800);
    }
  }

  std::unique_ptr<PlotControl> Loaded(const ControlClass& kind) {
    std::unique_ptr<PlotControl> control = kind.make(host_, nullptr);
    control->InitProperties();
    control->WaferDiameter(240);
    control->TestDiameter(234);
    FitLook(*control, value_);
    control->SetSize(6000, 4500);
    control->PlotCaption("Slot 7");
    EXPECT_EQ(control->SetWaferData(x_, y_, value_), LoadResult::Loaded);
    return control;
  }

  static void Print(PlotControl& control, const std::shared_ptr<Surface>& paper) {
    control.PrinterObj(paper);
    PrintLegendAt(control, 6150, 100);
    float left = 100, top = 100, width = 5900, height = 5000;
    EXPECT_EQ(control.PrintPlot(left, top, width, height), PrintResult::Done);
    control.PrinterObj(nullptr);
  }

  /// As a program shows it before it prints.
  Image Previewed(const ControlClass& kind) {
    const auto picture = std::make_shared<Picture>(
        Picture::Setting{.screen = kDevice, .resolution = kDevice, .text = host_.text()}, kWidth,
        kHeight);
    Print(*Loaded(kind), picture);
    return ImageOf(picture->canvas().Pixels(), picture->canvas().Width());
  }
  Figure Printed(const ControlClass& kind) {
    const auto paper = std::make_shared<FigurePaper>(FigurePaper::Setting{
        .width = kWidth, .height = kHeight, .screen = kDevice, .text = host_.text()});
    Print(*Loaded(kind), paper);
    return paper->Take();
  }

  static Image ImageOf(std::span<const Pixel> pixels, int width) {
    Image image{width, static_cast<int>(pixels.size()) / width, {}};
    for (const Pixel pixel : pixels) {
      for (const int shift : {16, 8, 0}) image.bytes += static_cast<char>(pixel >> shift & 0xFF);
    }
    return image;
  }
  Image Read(const std::string& file, const Image& like) {
    const std::string size = std::to_string(like.width) + "x" + std::to_string(like.height);
    EXPECT_EQ(Shell("convert " + file + " -background white -alpha remove -depth 8 -extent " +
                    size + " rgb:pixels")
                  .status,
              0);
    return {like.width, like.height, ProgramFixture::Read("pixels")};
  }
  void ExpectAlike(const Image& preview, const Image& page, const std::string& what) {
    ASSERT_EQ(preview.bytes.size(), page.bytes.size()) << what;
    const Alike there = Compare(preview, page);
    EXPECT_GE(there.plain, 0.99) << what;
    EXPECT_GE(there.ink, 0.98) << what;
    const Alike back = Compare(page, preview);
    EXPECT_GE(back.plain, 0.99) << what;
    EXPECT_GE(back.ink, 0.98) << what;
  }

  HeadlessHost host_;
  std::vector<float> x_, y_, value_;
};

// At 150 dots to the inch 99 of 100 plain pixels have one colour, and 98 of 100 dark ones have ink
// within three pixels in the other picture. What may differ is the width of lines, which is the
// printer's own.
TEST_F(ClassicPage, LooksAsItsPreviewInEveryFile) {
  const bool has_pdf = Shell("which pdftoppm").status == 0;
  const bool has_svg = Shell("which rsvg-convert").status == 0;
  const FigureText text("Arial");
  for (const ControlClass* kind : ControlClasses()) {
    const std::string name(kind->kind);
    const Image preview = Previewed(*kind);
    const Figure page = Printed(*kind);
    const FigurePicture painted = PaintFigure(page, kPixelsPerPoint, text.Letters());
    ExpectAlike(preview, ImageOf(painted.pixels, painted.width), name);
    if (has_pdf) {
      WriteWholeFile(folder_ / "a.pdf", EncodeFigure(page, FigureFormat::Pdf, 4, text));
      ASSERT_EQ(Shell("pdftoppm -r 150 -png -singlefile a.pdf pdf 2>/dev/null").status, 0);
      ExpectAlike(preview, Read("pdf.png", preview), name + ", PDF");
    }
    if (has_svg) {
      WriteWholeFile(folder_ / "a.svg", EncodeFigure(page, FigureFormat::Svg, 4, text));
      ASSERT_EQ(Shell("rsvg-convert -w 1000 a.svg -o svg.png").status, 0);
      ExpectAlike(preview, Read("svg.png", preview), name + ", SVG");
    }
  }
}

TEST_F(ClassicPage, HoldsTextsAsTextAndMapsAsFewShapes) {
  const FigureText text("Arial");
  for (const ControlClass* kind : ControlClasses()) {
    Figure page;
    const PageSetting setting{.width = 450, .height = 340, .text = text.Letters()};
    ASSERT_EQ(PrintPage(*Loaded(*kind), setting, page), PrintResult::Done);
    const auto bytes = EncodeFigure(page, FigureFormat::Svg, 4, text);
    const std::string svg(bytes.begin(), bytes.end());
    EXPECT_THAT(svg, testing::HasSubstr(">Slot 7</text>")) << kind->kind;
    EXPECT_EQ(svg.find("<image"), svg.npos) << kind->kind;
    // 200 x 200 cells, of which those of one colour are one path.
    const bool has_cells = kind->kind == "2D" || kind->kind == "2DS";
    EXPECT_TRUE(!has_cells || page.shapes.size() < 60) << kind->kind;
  }
}

// On any page, texts and frames keep away from each other: smaller letters on a small one.
TEST_F(ClassicPage, FitsAnyPage) {
  const FigureText text("Arial");
  for (const ControlClass* kind : ControlClasses()) {
    std::size_t most = 0;  // shapes
    for (const auto& [width, height] : {std::pair{60.0, 60.0},
                                        {200.0, 400.0},
                                        {450.0, 340.0},
                                        {5600.0, 4000.0},
                                        {57.0, 2270.0},
                                        {2270.0, 57.0}}) {
      Figure page;
      const std::unique_ptr<PlotControl> control = Loaded(*kind);
      const PageSetting setting{.width = width, .height = height, .text = text.Letters()};
      ASSERT_EQ(PrintPage(*control, setting, page), PrintResult::Done)
          << kind->kind << ' ' << width;
      EXPECT_EQ(control->PrinterObj(), nullptr);
      most = std::max(most, page.shapes.size());
      EXPECT_GT(page.shapes.size(), most / 2) << kind->kind << ' ' << width;
      int legend = 0;
      for (const figures::Shape& shape : page.shapes) {
        const auto* letters = std::get_if<figures::TextShape>(&shape);
        if (letters == nullptr) continue;
        EXPECT_TRUE((figures::Box{0, 0, width, height}.Holds(letters->box)))
            << kind->kind << ' ' << width << ": " << letters->text;
        legend += letters->text.find("Legend") != std::string::npos;
      }
      const bool has_legend = control->Members().Find("PrintLegend") != nullptr;
      EXPECT_EQ(legend > 0, has_legend) << kind->kind << ' ' << width;
    }
  }
}

TEST_F(ClassicPage, NeedsDataAndRoomForTheControl) {
  const FigureText text("Arial");
  const PageSetting setting{.width = 450, .height = 340, .text = text.Letters()};
  Figure page;
  const ControlClass& kind = *FindControlKind("3D");
  std::unique_ptr<PlotControl> control = kind.make(host_, nullptr);
  control->InitProperties();
  control->SetSize(6000, 4500);
  EXPECT_EQ(PrintPage(*control, setting, page), PrintResult::NothingToPrint);
  control = Loaded(kind);
  control->HideLegend(true);
  control->SetSize(2000, 2000);
  EXPECT_EQ(PrintPage(*control, setting, page), PrintResult::Failed);
}

}  // namespace
}  // namespace discoplan
