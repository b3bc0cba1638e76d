// SPDX-License-Identifier: MIT
#include "bindings/c/drawing.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <list>

#include "bindings/c/arguments.h"
#include "bindings/c/of_thread.h"
#include "data/plain_text.h"
#include "discoplan/base/file_name.h"
#include "discoplan/figures/kinds.h"
#include "hosts/headless/figure_pdf.h"
#include "hosts/headless/png_file.h"

namespace discoplan::c {
namespace {

constexpr double kImagePixels = 300.0 / 72;  // per point, of images in PDF files

constexpr int kAllFlags = DISCOPLAN_DARK | DISCOPLAN_TRANSPARENT | DISCOPLAN_NO_LEGEND |
                          DISCOPLAN_VALUES | DISCOPLAN_NO_ISOLINES | DISCOPLAN_NO_DOTS |
                          DISCOPLAN_LIMITED | DISCOPLAN_CUT | DISCOPLAN_CONTROL_LIMITS;
/// What the classic look has no counterpart for.
constexpr int kModernFlags = DISCOPLAN_DARK | DISCOPLAN_TRANSPARENT | DISCOPLAN_VALUES |
                             DISCOPLAN_NO_ISOLINES | DISCOPLAN_NO_DOTS | DISCOPLAN_CUT |
                             DISCOPLAN_CONTROL_LIMITS;

void RequireRange(double value, double least, double most, const std::string& what) {
  if (value >= least && value <= most) return;
  Refuse(what + " takes " + std::to_string(static_cast<int>(least)) + " to " +
         std::to_string(static_cast<int>(most)));
}

const ControlClass* KindNamed(const std::string& name) {
  if (const ControlClass* kind = FindControlKind(name)) return kind;
  if (const ControlClass* kind = FindControlClass(name)) return kind;
  std::string names;
  for (const ControlClass* kind : ControlClasses()) {
    names += (names.empty() ? "" : ", ") + std::string(kind->kind);
  }
  Refuse("kind: " + data::Shown(name) + " is none of " + names);
}

void TakeSize(const discoplan_plot_options& options, Drawing& drawing) {
  drawing.has_size = options.width != 0 || options.height != 0 || options.width_mm != 0;
  if (options.width_mm != 0 || options.height_mm != 0) {
    const double dpi = options.dpi != 0 ? options.dpi : kPageDots;
    RequireRange(dpi, 30, 2400, "dpi");
    drawing.size = PageSize(options.width_mm, options.height_mm, dpi);
    drawing.width = static_cast<int>(std::lround(options.width_mm / 25.4 * dpi));
    drawing.height = static_cast<int>(std::lround(options.height_mm / 25.4 * dpi));
    RequireRange(std::max(drawing.width, drawing.height), 1, 10000, "a side in pixels");
    return;
  }
  drawing.width = drawing.has_size ? options.width : 800;
  drawing.height = drawing.has_size ? options.height : 600;
  RequireRange(drawing.width, 50, 10000, "a width in pixels");
  RequireRange(drawing.height, 50, 10000, "a height in pixels");
  drawing.size = FigureSize::Pixels(drawing.width, drawing.height);
}

void TakeColours(const discoplan_plot_options& options, Drawing& drawing) {
  drawing.colours = TextOr(options.colours);
  if (!drawing.colours.empty() && !figures::FindColourMap(drawing.colours)) {
    Refuse("colours: " + data::Shown(drawing.colours) + " is none of " + figures::ColourMapNames());
  }
  if (options.bands != 0) RequireRange(options.bands, 2, 64, "bands");
  drawing.bands = options.bands;
  if (!drawing.Has(DISCOPLAN_LIMITED)) return;
  const auto low = static_cast<float>(options.low);
  const auto high = static_cast<float>(options.high);
  if (!(low < high) || !std::isfinite(high - low) || !std::isfinite(high + low)) {
    Refuse("limits take two finite numbers with the lower one first");
  }
  drawing.limits = {low, high};
}

void TakeParticulars(const discoplan_plot_options& options, Drawing& drawing) {
  RequireRange(options.bins, 0, 1000, "bins");
  drawing.bins = options.bins;
  if (!(options.sigma_range >= 0)) Refuse("sigma_range takes standard deviations, 0 or more");
  drawing.sigma_range = options.sigma_range;
  if (drawing.Has(DISCOPLAN_CUT)) {
    const auto& cut = options.cut;
    if (!std::all_of(cut, cut + 4, [](double c) { return std::isfinite(c); })) {
      Refuse("cut takes four positions in mm");
    }
    drawing.cut = figures::Cut{{cut[0], cut[1]}, {cut[2], cut[3]}};
  }
  if (drawing.Has(DISCOPLAN_CONTROL_LIMITS)) {
    if (!(options.lower_control < options.upper_control)) {
      Refuse("control limits take two numbers with the lower one first");
    }
    drawing.control_limits = {options.lower_control, options.upper_control};
  }
}

/// That there is one is looked at once in a row.
void RequireFont(const std::string& path, const char* option) {
  struct Last {
    std::string path;
  };
  std::string& last = OfThread<Last>().path;
  if (path.empty() || path == last) return;
  const std::string place = std::string(option) + ": " + path;
  if (!std::filesystem::exists(PathOf(path))) {
    throw Error(DISCOPLAN_NOT_FOUND, place + ": no such file");
  }
  try {
    const FontFile file{.path = PathOf(path), .content = {}, .index = 0, .bold = false};
    FreeTypeText(std::make_shared<GivenFonts>(file)).Height({}, 1);
  } catch (const FontError&) {
    Refuse(place + ": this is no font whose letters scale");
  }
  last = path;
}

/// Differences are about 0.
figures::ColourMap ColoursOf(const MeasuredWafer& wafer, const Drawing& drawing) {
  const std::string_view own = wafer.Looks().is_difference ? "vik" : figures::kDefaultColours;
  return *figures::FindColourMap(drawing.colours.empty() ? own : std::string_view(drawing.colours));
}

/// The fonts given, and the machine's for letters that they may lack.
class GivenFirst final : public FontFinder {
 public:
  GivenFirst(const std::string& regular, const std::string& bold)
      : given_(File(regular, false), File(bold.empty() ? regular : bold, !bold.empty())) {}

  std::optional<FontFile> Find(const WantedFont& wanted) override {
    if (wanted.character == 0) return given_.Find(wanted);
    if (!machine_) machine_ = MachineFonts();
    const auto found = machine_->Find(wanted);
    return found ? found : given_.Find(wanted);
  }

 private:
  static FontFile File(const std::string& path, bool bold) {
    return {.path = PathOf(path), .content = {}, .index = 0, .bold = bold};
  }

  GivenFonts given_;
  std::unique_ptr<FontFinder> machine_;
};

struct ThreadText {
  std::string font, file, bold_file;
  std::unique_ptr<FigureText> text;
};

struct ThreadTexts {
  std::list<ThreadText> all;
};

int WholePixels(double points, const Drawing& drawing) {
  return std::max(1, static_cast<int>(std::lround(points * drawing.size.pixels_per_point)));
}

}  // namespace

FigureSize PageSize(double width_mm, double height_mm, double dpi) {
  RequireRange(width_mm, 20, 2000, "a width in mm");
  RequireRange(height_mm, 20, 2000, "a height in mm");
  return FigureSize::Millimetres(width_mm, height_mm, dpi);
}

figures::WaferPlot PlotOf(const MeasuredWafer& wafer, const Drawing& drawing) {
  const data::Wafer& measured = wafer.Measured();
  const MeasuredWafer::Look& look = wafer.Looks();
  figures::WaferPlot plot;
  plot.sites = {measured.x, measured.y, measured.value};
  plot.diameter = measured.diameter;
  plot.edge_exclusion = (plot.diameter - measured.test_diameter) / 2;
  plot.orientation = look.orientation;
  plot.notch = look.notch;
  plot.title = drawing.has_title ? drawing.title : measured.name;
  plot.quantity = look.parameter.name;
  plot.unit = look.parameter.unit;
  if (wafer.IsRemarkable()) plot.left_out = wafer.SitesText();
  if (drawing.limits) {
    plot.low = drawing.limits->first;
    plot.high = drawing.limits->second;
  }
  if (drawing.sigma_range > 0) plot.sigma_range = drawing.sigma_range;
  plot.cut = drawing.cut;
  if (drawing.control_limits) {
    plot.lower_control = drawing.control_limits->first;
    plot.upper_control = drawing.control_limits->second;
  }
  plot.bins = drawing.bins;
  return plot;
}

figures::Style StyleOf(const MeasuredWafer& wafer, const Drawing& drawing) {
  figures::Style style{.width = drawing.size.width,
                       .height = drawing.size.height,
                       .font = drawing.font,
                       .colours = ColoursOf(wafer, drawing)};
  style.difference = wafer.Looks().is_difference;
  style.bands = drawing.bands;
  if (drawing.idw4) style.interpolation = figures::Interpolation::Idw4;
  style.dark = drawing.Has(DISCOPLAN_DARK);
  style.transparent = drawing.Has(DISCOPLAN_TRANSPARENT);
  style.legend = !drawing.Has(DISCOPLAN_NO_LEGEND);
  style.site_values = drawing.Has(DISCOPLAN_VALUES);
  style.isolines = !drawing.Has(DISCOPLAN_NO_ISOLINES);
  style.site_dots = !drawing.Has(DISCOPLAN_NO_DOTS);
  return style;
}

/// Both lists have the nine kinds in one order.
figures::PlotKind FigureKindOf(const ControlClass* kind) {
  const auto kinds = ControlClasses();
  return static_cast<figures::PlotKind>(std::find(kinds.begin(), kinds.end(), kind) -
                                        kinds.begin());
}

Drawing DrawingOf(const discoplan_plot_options& options) {
  Drawing drawing;
  drawing.kind = KindNamed(TextOr(options.kind, "2D"));
  if (options.look != DISCOPLAN_MODERN && options.look != DISCOPLAN_CLASSIC) {
    Refuse("look is neither DISCOPLAN_MODERN nor DISCOPLAN_CLASSIC");
  }
  drawing.classic = options.look == DISCOPLAN_CLASSIC;
  drawing.flags = options.flags;
  if ((options.flags & ~kAllFlags) != 0) Refuse("flags: some of them are none");
  const bool has_modern = (options.flags & kModernFlags) != 0 || options.bands != 0 ||
                          options.bins != 0 || options.method != 0 || options.font != nullptr;
  if (drawing.classic && has_modern) {
    Refuse(
        "the classic look knows no bands, bins, cut, method, font, control limits and flags of the "
        "modern one; set members of a control instead");
  }
  TakeSize(options, drawing);
  TakeColours(options, drawing);
  TakeParticulars(options, drawing);
  RequireRange(options.method, -1, 1, "method");
  drawing.idw4 = options.method == -1;
  drawing.has_title = options.title != nullptr;
  drawing.title = TextOr(options.title);
  drawing.font = TextOr(options.font, "Arial");
  drawing.font_file = TextOr(options.font_file);
  drawing.bold_font_file = TextOr(options.bold_font_file);
  RequireFont(drawing.font_file, "font_file");
  RequireFont(drawing.bold_font_file, "bold_font_file");
  return drawing;
}

std::shared_ptr<FontFinder> FontsFor(const Drawing& drawing) {
  if (drawing.font_file.empty() || drawing.font != "Arial") return MachineFonts();
  return std::make_shared<GivenFirst>(drawing.font_file, drawing.bold_font_file);
}

const FigureText& TextFor(const Drawing& drawing) {
  constexpr std::size_t kMost = 4;
  std::list<ThreadText>& texts = OfThread<ThreadTexts>().all;
  const auto found = std::find_if(texts.begin(), texts.end(), [&](const ThreadText& each) {
    return each.font == drawing.font && each.file == drawing.font_file &&
           each.bold_file == drawing.bold_font_file;
  });
  if (found != texts.end()) return *found->text;
  if (texts.size() == kMost) texts.pop_back();
  texts.push_front({drawing.font, drawing.font_file, drawing.bold_font_file,
                    std::make_unique<FigureText>(drawing.font, FontsFor(drawing))});
  return *texts.front().text;
}

figures::Figure MakeFigure(const MeasuredWafer& wafer, const Drawing& drawing) {
  figures::WaferPlot plot = PlotOf(wafer, drawing);
  plot.field = [&wafer](figures::Interpolation interpolation) {
    return wafer.Field(interpolation);
  };
  return figures::MakeFigure(FigureKindOf(drawing.kind), plot, StyleOf(wafer, drawing),
                             TextFor(drawing), OfThread<figures::SitePlan>());
}

HeldPicture::HeldPicture(std::vector<figures::Figure> pages, Drawing drawing,
                         std::vector<std::shared_ptr<MeasuredWafer>> wafers)
    : Held(kKind),
      wafers_(std::move(wafers)),
      pages_(std::move(pages)),
      drawing_(std::move(drawing)),
      width_(WholePixels(pages_.front().width, drawing_)),
      height_(WholePixels(pages_.front().height * static_cast<double>(pages_.size()), drawing_)) {}

HeldPicture::HeldPicture(Canvas canvas, Drawing drawing, std::shared_ptr<MeasuredWafer> wafer)
    : Held(kKind),
      wafers_{std::move(wafer)},
      drawing_(std::move(drawing)),
      width_(canvas.Width()),
      height_(canvas.Height()),
      canvas_(std::move(canvas)) {}

HeldPicture::HeldPicture(Canvas canvas)
    : Held(kKind), width_(canvas.Width()), height_(canvas.Height()), canvas_(std::move(canvas)) {}

figures::Figure HeldPicture::Stacked() const {
  figures::Figure all = pages_.front();
  for (std::size_t i = 1; i < pages_.size(); ++i) {
    Place(pages_[i], {0, all.height}, all);
    all.height += pages_[i].height;
  }
  return all;
}

void HeldPicture::Paint() {
  if (!pixels_.empty()) return;
  FigurePicture picture =
      PaintFigure(Stacked(), drawing_.size.pixels_per_point, TextFor(drawing_).Letters());
  has_alpha_ = picture.has_alpha;
  pixels_ = std::move(picture.pixels);
}

std::span<const Pixel> HeldPicture::Pixels() {
  if (canvas_) return canvas_->Pixels();
  const std::lock_guard lock(mutex_);
  Paint();
  return pixels_;
}

std::vector<std::uint8_t> HeldPicture::Encode(FigureFormat format) {
  if (canvas_ && format == FigureFormat::Png) {
    return EncodePng(PngPicture{.pixels = canvas_->Pixels(), .width = width_, .height = height_});
  }
  if (pages_.empty()) {
    if (wafers_.empty()) Refuse("a control's picture has pixels alone; print the control instead");
    pages_.push_back(PrintClassic(*wafers_.front(), drawing_));
  }
  const FigureText& text = TextFor(drawing_);
  if (format == FigureFormat::Pdf) return ToPdf(pages_, kImagePixels, text.Letters());
  if (format == FigureFormat::Png) {
    const double pixels_per_point = drawing_.size.pixels_per_point;
    auto& encoder = OfThread<FigureEncoder>();
    return pages_.size() == 1 ? encoder.Encode(pages_.front(), pixels_per_point, text.Letters())
                              : encoder.Encode(Stacked(), pixels_per_point, text.Letters());
  }
  return EncodeFigure(Stacked(), format, drawing_.size.pixels_per_point, text);
}

const std::vector<std::uint8_t>& HeldPicture::File(FigureFormat format) {
  const std::lock_guard lock(mutex_);
  const auto found = files_.find(format);
  return found != files_.end() ? found->second : files_[format] = Encode(format);
}

FigureFormat FormatOf(std::int32_t format) {
  static constexpr FigureFormat kFormats[] = {FigureFormat::Png, FigureFormat::Svg,
                                              FigureFormat::Pdf};
  if (format < 0 || format > 2) Refuse("format: none of PNG, SVG, PDF");
  return kFormats[format];
}

std::shared_ptr<HeldPicture> Draw(const std::shared_ptr<MeasuredWafer>& wafer,
                                  const Drawing& drawing) {
  if (drawing.classic) {
    return std::make_shared<HeldPicture>(PaintClassic(*wafer, drawing), drawing, wafer);
  }
  std::vector<figures::Figure> pages;
  pages.push_back(MakeFigure(*wafer, drawing));
  return std::make_shared<HeldPicture>(std::move(pages), drawing, std::vector{wafer});
}

std::vector<std::uint8_t> DrawnFile(const std::shared_ptr<MeasuredWafer>& wafer,
                                    const Drawing& drawing, FigureFormat format) {
  if (!drawing.classic || format == FigureFormat::Png) return Draw(wafer, drawing)->File(format);
  return HeldPicture({PrintClassic(*wafer, drawing)}, drawing, {wafer}).File(format);
}

}  // namespace discoplan::c
