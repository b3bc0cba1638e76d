// SPDX-License-Identifier: MIT
// The same figure in every format.

#include <gmock/gmock.h>

#include <cmath>

#include "hosts/headless/png_file.h"
#include "hosts/headless/save_figure.h"
#include "tests/apps/program_fixture.h"

namespace discoplan {
namespace {

using figures::PlotKind;
using testing::HasSubstr;

class FigureFiles : public ProgramFixture {
 protected:
  FigureFiles() {
    for (int i = 0; i < 49; ++i) {
      const double r = 94 * std::sqrt((i + 0.5) / 49);
      const double angle = 2.399963 * i;
      x_.push_back(static_cast<float>(r * std::cos(angle)));
      y_.push_back(static_cast<float>(r * std::sin(angle)));
      value_.push_back(static_cast<float>(100 + r * r / 900 + x_.back() / 30));
    }
    plot_.sites = {x_, y_, value_};
    plot_.diameter = 200;
    plot_.title = "Lot 4711, slot 7 <&>";
    plot_.quantity = "Oxide thickness";
    plot_.unit = "nm";
  }

  std::string PathOf(const std::string& name) const { return (folder_ / name).string(); }
  /// The bytes of red, green and blue, row by row.
  std::string PixelsOf(const std::string& name) {
    EXPECT_EQ(
        Shell("convert " + name + " -background white -alpha remove -depth 8 rgb:pixels").status,
        0);
    return Read("pixels");
  }

  std::vector<float> x_, y_, value_;
  figures::WaferPlot plot_;
};

struct Difference {
  double mean = 0;   ///< Of the parts of colours, of 255.
  double share = 0;  ///< Of parts that differ by more than half of 255.
};

Difference DifferenceOf(const std::string& a, const std::string& b) {
  Difference difference;
  EXPECT_EQ(a.size(), b.size());
  if (a.size() != b.size() || a.empty()) return difference;
  for (std::size_t i = 0; i < a.size(); ++i) {
    const int off = std::abs(static_cast<unsigned char>(a[i]) - static_cast<unsigned char>(b[i]));
    difference.mean += off;
    difference.share += off > 127;
  }
  difference.mean /= static_cast<double>(a.size());
  difference.share /= static_cast<double>(a.size());
  return difference;
}

// Renderers place the edges of letters and lines a little differently: of 255, 3 on the mean, and
// one part in 200 by more than half. A text a letter's width off is more.
TEST_F(FigureFiles, AgreeOnAllDevices) {
  const bool has_svg = Shell("which rsvg-convert").status == 0;
  for (int kind = 0; kind < 9; ++kind) {
    for (const char* name : {"a.png", "a.pdf", "a.svg"}) {
      SaveFigure(PathOf(name), static_cast<PlotKind>(kind), plot_, {},
                 FigureSize::Pixels(640, 480));
    }
    const std::string png = PixelsOf("a.png");
    ASSERT_EQ(Shell("pdftoppm -png -scale-to-x 640 -scale-to-y 480 -singlefile a.pdf pdf").status,
              0);
    const Difference pdf = DifferenceOf(png, PixelsOf("pdf.png"));
    EXPECT_LT(pdf.mean, 3) << kind;
    EXPECT_LT(pdf.share, 0.005) << kind;
    if (!has_svg) continue;
    ASSERT_EQ(Shell("rsvg-convert -w 640 -h 480 a.svg -o svg.png").status, 0);
    const Difference svg = DifferenceOf(png, PixelsOf("svg.png"));
    EXPECT_LT(svg.mean, 1.5) << kind;
    EXPECT_LT(svg.share, 0.001) << kind;
  }
}

TEST_F(FigureFiles, HoldTextsAsText) {
  SaveFigure(PathOf("a.svg"), PlotKind::Map, plot_);
  const std::string svg = Read("a.svg");
  EXPECT_THAT(svg, HasSubstr(">Lot 4711, slot 7 &lt;&amp;&gt;</text>"));
  EXPECT_THAT(svg, HasSubstr(">Oxide thickness (nm)</text>"));
  EXPECT_EQ(Shell("xmllint --noout a.svg 2>/dev/null || python3 -c 'import xml.dom.minidom as x; "
                  "x.parse(\"a.svg\")'")
                .status,
            0);
  SaveFigure(PathOf("a.pdf"), PlotKind::Map, plot_);
  const std::string text = Shell("pdftotext a.pdf - 2>/dev/null").output;
  EXPECT_THAT(text, HasSubstr("Lot 4711, slot 7 <&>"));
  EXPECT_THAT(text, HasSubstr("Oxide thickness (nm)"));
}

TEST_F(FigureFiles, HaveTheSizeThatIsAskedFor) {
  SaveFigure(PathOf("a.png"), PlotKind::Bars, plot_, {}, FigureSize::Pixels(313, 217));
  EXPECT_EQ(Shell("identify -format %wx%h a.png").output, "313x217");
  SaveFigure(PathOf("a.pdf"), PlotKind::Bars, plot_, {}, FigureSize::Millimetres(160, 120, 300));
  EXPECT_THAT(Shell("pdfinfo a.pdf 2>/dev/null").output, HasSubstr("453.543 x 340.157"));
  SaveFigure(PathOf("b.png"), PlotKind::Bars, plot_, {}, FigureSize::Millimetres(160, 120, 300));
  EXPECT_EQ(Shell("identify -format %wx%h b.png").output, "1890x1417");
}

// The recipe of the figures' own page.
TEST_F(FigureFiles, AreMadeStepByStepToo) {
  const std::vector<float>&x = x_, &y = y_, &thickness = value_;
  const FigureText text("Arial");
  using namespace figures;
  WaferPlot plot;
  plot.sites = {x, y, thickness};
  plot.diameter = 300;
  plot.title = "Lot 4711, slot 7";
  plot.quantity = "Oxide thickness";
  plot.unit = "nm";
  const Figure figure = MakeFigure(PlotKind::Map, plot, {.width = 360, .height = 270}, text);
  const auto png = EncodeFigure(figure, FigureFormat::Png, 2, text);
  Write("a.png", {png.begin(), png.end()});
  EXPECT_EQ(Shell("identify -format %wx%h a.png").output, "720x540");
}

// A file's picture is painted some rows at a time.
TEST_F(FigureFiles, HaveThePixelsOfThePictureAsAWhole) {
  const FigureText text("Arial");
  const double pixels_per_point = 2.3;
  for (const bool transparent : {false, true}) {
    for (int kind = 0; kind < 9; ++kind) {
      const figures::Figure figure = MakeFigure(static_cast<PlotKind>(kind), plot_,
                                                {.width = 390,
                                                 .height = 420,
                                                 .bands = kind % 2 * 7,
                                                 .transparent = transparent,
                                                 .site_values = true},
                                                text);
      const FigurePicture whole = PaintFigure(figure, pixels_per_point, text.Letters());
      const int per_metre = static_cast<int>(std::lround(pixels_per_point * 72 / 0.0254));
      EXPECT_EQ(EncodeFigurePicture(figure, pixels_per_point, text.Letters()),
                EncodePng(PngPicture{.pixels = whole.pixels,
                                     .width = whole.width,
                                     .height = whole.height,
                                     .pixels_per_metre = per_metre,
                                     .has_alpha = whole.has_alpha}))
          << kind;
    }
  }
}

TEST_F(FigureFiles, AreTheSameInMemoryOfOthersBefore) {
  const FigureText text("Arial");
  FigureEncoder encoder;
  for (const double pixels_per_point : {2.3, 0.7, 3.1, 1.0}) {
    for (const PlotKind kind : {PlotKind::Map, PlotKind::Histogram, PlotKind::Contours}) {
      const figures::Figure figure = MakeFigure(kind, plot_, {.width = 390, .height = 320}, text);
      EXPECT_EQ(encoder.Encode(figure, pixels_per_point, text.Letters()),
                EncodeFigurePicture(figure, pixels_per_point, text.Letters()))
          << pixels_per_point;
    }
  }
}

TEST_F(FigureFiles, AreTransparentWhereNothingIs) {
  SaveFigure(PathOf("a.png"), PlotKind::Map, plot_, {.transparent = true});
  EXPECT_EQ(Shell("convert a.png -format '%[fx:p{2,2}.a]' info:").output, "0");
  EXPECT_EQ(Shell("convert a.png -format '%[fx:p{w*0.4,h*0.55}.a]' info:").output, "1");
}

TEST_F(FigureFiles, AppearWholeOrNotAtAll) {
  EXPECT_THROW(SaveFigure(PathOf("none/a.png"), PlotKind::Map, plot_), FileError);
  EXPECT_FALSE(Exists("none"));
}

}  // namespace
}  // namespace discoplan
