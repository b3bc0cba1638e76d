// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>

#include "bindings/c/arguments.h"
#include "bindings/c/drawing.h"
#include "data/plain_text.h"
#include "discoplan/analysis/lot_summary.h"
#include "discoplan/base/file_name.h"
#include "hosts/headless/whole_file.h"

using namespace discoplan;
using namespace discoplan::c;

namespace {

/// Sheets have as many columns as rows, or one more; as few rows as will do.
struct SheetGrid {
  int columns;
  int rows;

  explicit SheetGrid(int count)
      : columns(static_cast<int>(std::ceil(std::sqrt(count)))),
        rows((count + columns - 1) / columns) {}
};

using Wafers = std::vector<std::shared_ptr<MeasuredWafer>>;

std::pair<float, float> CommonScale(const Wafers& wafers) {
  std::vector<analysis::LotWafer> all;
  for (const auto& wafer : wafers) all.push_back({wafer->Measured().name, wafer->Sites()});
  const analysis::RobustRange scale = analysis::SummaryOf(all).scale;
  return {static_cast<float>(scale.low), static_cast<float>(scale.high)};
}

/// The size of each plot of a sheet.
FigureSize CellSize(const FigureSize& whole, const SheetGrid& grid, double title) {
  return {whole.width / grid.columns, (whole.height - title) / grid.rows, whole.pixels_per_point};
}

constexpr double kTitleSize = 12;        // points
constexpr double kTitleRoom = 1.8;       // of its size
constexpr double kTitleBaseLine = 1.25;  // of its size, from the top

/// The title as far as it fits the sheet.
std::string Shortened(std::string title, double width, const FigureText& text) {
  if (text.Width(title, kTitleSize, true) <= width) return title;
  while (!title.empty() && text.Width(title + "…", kTitleSize, true) > width) {
    while (!title.empty() && (title.back() & 0xC0) == 0x80) title.pop_back();
    if (!title.empty()) title.pop_back();
  }
  return title.empty() ? title : title + "…";
}

void AddTitle(figures::Figure& sheet, const Drawing& drawing) {
  const FigureText& text = TextFor(drawing);
  const double margin = kTitleSize * 0.8;
  const std::string title = Shortened(drawing.title, sheet.width - 2 * margin, text);
  const double width = text.Width(title, kTitleSize, true);
  const double line = kTitleSize * kTitleBaseLine;
  const figures::Rgba ink =
      drawing.Has(DISCOPLAN_DARK) ? figures::Rgb(0xF0F0F0) : figures::Rgb(0x202020);
  sheet.shapes.push_back(
      figures::TextShape{.text = title,
                         .start = {margin, line},
                         .size = kTitleSize,
                         .bold = true,
                         .colour = ink,
                         .box = {margin, line - figures::kAscent * kTitleSize, margin + width,
                                 line + figures::kDescent * kTitleSize},
                         .width = width});
}

std::shared_ptr<HeldPicture> DrawSheet(Wafers wafers, Drawing drawing) {
  if (drawing.classic) Refuse("sheets are of the modern look");
  const SheetGrid grid(static_cast<int>(wafers.size()));
  const double title = drawing.title.empty() ? 0 : kTitleSize * kTitleRoom;
  if (!drawing.has_size) {
    const FigureSize cell = FigureSize::Pixels(400, 300);
    drawing.size = {cell.width * grid.columns, cell.height * grid.rows + title,
                    cell.pixels_per_point};
  }
  if (!drawing.limits) {
    const auto [low, high] = CommonScale(wafers);
    if (low < high) drawing.limits = {low, high};
  }
  const FigureSize whole = drawing.size;
  Drawing cell = drawing;
  cell.size = CellSize(whole, grid, title);
  cell.has_title = false;
  if (cell.size.width < 150 || cell.size.height < 110) {
    Refuse("the sheet is too small for " + std::to_string(wafers.size()) +
           " plots; give a larger size");
  }
  figures::Figure sheet;
  for (std::size_t i = 0; i < wafers.size(); ++i) {
    figures::Figure part = MakeFigure(*wafers[i], cell);
    if (i == 0) {
      sheet = {.width = whole.width,
               .height = whole.height,
               .background = part.background,
               .font = part.font,
               .title = drawing.title,
               .shapes = {}};
    }
    const int column = static_cast<int>(i) % grid.columns;
    const int row = static_cast<int>(i) / grid.columns;
    Place(std::move(part), {column * cell.size.width, title + row * cell.size.height}, sheet);
  }
  if (title > 0) AddTitle(sheet, drawing);
  return std::make_shared<HeldPicture>(std::move(sheet), std::move(drawing), std::move(wafers));
}

void CopyRgba(std::span<const Pixel> pixels, int width, std::uint8_t* to, std::int64_t stride) {
  std::uint8_t* at = to;
  int column = 0;
  for (const Pixel pixel : pixels) {
    *at++ = static_cast<std::uint8_t>(pixel >> 16);
    *at++ = static_cast<std::uint8_t>(pixel >> 8);
    *at++ = static_cast<std::uint8_t>(pixel);
    *at++ = static_cast<std::uint8_t>(pixel >> 24);
    if (++column < width) continue;
    column = 0;
    to += stride;
    at = to;
  }
}

/// By the file's ending, in any case of letters.
FigureFormat FormatFor(const std::filesystem::path& path) {
  std::string ending = Utf8Of(path.extension());
  std::transform(ending.begin(), ending.end(), ending.begin(), [](char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
  });
  if (ending == ".png") return FigureFormat::Png;
  if (ending == ".svg") return FigureFormat::Svg;
  if (ending == ".pdf") return FigureFormat::Pdf;
  Refuse("'" + Utf8Of(path.filename()) + "': its ending tells the format and is none of .png, " +
         ".svg, .pdf");
}

}  // namespace

discoplan_status discoplan_plot(discoplan_wafer* wafer, const discoplan_plot_options* options,
                                discoplan_picture** picture) {
  return HandedOut<HeldPicture>(picture, [&] {
    return Draw(Get<MeasuredWafer>(wafer), DrawingOf(Taken(options, "discoplan_plot_options")));
  });
}

discoplan_status discoplan_sheet(discoplan_wafer* const* wafers, int64_t count,
                                 const discoplan_plot_options* options,
                                 discoplan_picture** picture) {
  return HandedOut<HeldPicture>(picture, [&] {
    if (count < 1 || count > 1000) Refuse("a sheet takes 1 to 1000 wafers");
    Needed(wafers, "wafers");
    Wafers all;
    for (std::int64_t i = 0; i < count; ++i) all.push_back(Get<MeasuredWafer>(wafers[i]));
    return DrawSheet(std::move(all), DrawingOf(Taken(options, "discoplan_plot_options")));
  });
}

discoplan_status discoplan_picture_size(discoplan_picture* picture, int32_t* width,
                                        int32_t* height) {
  return Guarded([&] {
    const auto held = Get<HeldPicture>(picture);
    Needed(width, "width");
    Needed(height, "height") = held->Height();
    *width = held->Width();
  });
}

discoplan_status discoplan_picture_rgba(discoplan_picture* picture, uint8_t* pixels,
                                        int64_t capacity, int64_t stride) {
  return Guarded([&] {
    const auto held = Get<HeldPicture>(picture);
    Needed(pixels, "pixels");
    const std::int64_t row = std::int64_t{4} * held->Width();
    if (stride == 0) stride = row;
    if (stride < row) Refuse("stride: rows of " + std::to_string(row) + " bytes overlap");
    const std::int64_t needed = stride * (held->Height() - 1) + row;
    if (capacity < needed) {
      Refuse("there is room for " + std::to_string(capacity) + " bytes, and there are " +
             std::to_string(needed));
    }
    CopyRgba(held->Pixels(), held->Width(), pixels, stride);
  });
}

discoplan_status discoplan_picture_encode(discoplan_picture* picture, int32_t format,
                                          const uint8_t** bytes, int64_t* count) {
  return Guarded([&] {
    Needed(bytes, "bytes") = nullptr;
    const auto held = Get<HeldPicture>(picture);
    Needed(count, "count");
    const std::vector<std::uint8_t>& file = held->File(FormatOf(format));
    *bytes = file.data();
    *count = static_cast<std::int64_t>(file.size());
  });
}

discoplan_status discoplan_picture_save(discoplan_picture* picture, const char* path) {
  return Guarded([&] {
    const auto held = Get<HeldPicture>(picture);
    const std::filesystem::path file = PathOf(&Needed(path, "path"));
    WriteWholeFile(file, held->File(FormatFor(file)));
  });
}

discoplan_status discoplan_colours(const char* name, int64_t count, uint8_t* rgba) {
  return Guarded([&] {
    const std::string wanted = &Needed(name, "name");
    const auto colours = figures::FindColourMap(wanted);
    if (!colours) {
      Refuse("colours: " + data::Shown(wanted) + " is none of " + figures::ColourMapNames());
    }
    if (count < 1) Refuse("count: takes 1 or more");
    Needed(rgba, "rgba");
    for (std::int64_t i = 0; i < count; ++i) {
      const double part = count > 1 ? static_cast<double>(i) / static_cast<double>(count - 1) : 0.5;
      const figures::Rgba colour = colours->At(part);
      for (const std::uint8_t byte : {colour.red, colour.green, colour.blue, colour.alpha}) {
        *rgba++ = byte;
      }
    }
  });
}

discoplan_status discoplan_colour_names(const char** names) {
  return Guarded([&] {
    static const auto& text = *new std::string(figures::ColourMapNames());
    Needed(names, "names") = text.c_str();
  });
}
