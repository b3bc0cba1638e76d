// SPDX-License-Identifier: MIT
#include <algorithm>

#include "bindings/c/arguments.h"
#include "bindings/c/drawing.h"
#include "data/plain_text.h"
#include "discoplan/analysis/figures_of_merit.h"
#include "discoplan/analysis/lot_summary.h"
#include "discoplan/base/file_name.h"
#include "discoplan/figures/lot_figure.h"
#include "discoplan/figures/ticks.h"
#include "hosts/headless/whole_file.h"

using namespace discoplan;
using namespace discoplan::c;

namespace {

using Wafers = std::vector<std::shared_ptr<MeasuredWafer>>;

/// A4 across, as a page of paper and on a screen.
constexpr FigureSize kPage = {.width = 842, .height = 595, .pixels_per_point = 2};

figures::LotTable::Row RowOf(const std::string& name, const analysis::Sample& sample) {
  constexpr int kDigits = 4;
  figures::LotTable::Row row{.texts = {name}};
  for (const char* key : {"mean", "std_dev", "std_dev_percent", "range"}) {
    const std::optional<double> value = analysis::FindFigure(key)->compute(sample);
    row.texts.push_back(value ? figures::NumberText(*value, kDigits) : "n/a");
  }
  return row;
}

figures::LotTable TableOf(const analysis::LotSummary& summary) {
  figures::LotTable table{.titles = {"Wafer", "Mean", "Std. Dev", "Std. Dev %", "Range"}};
  for (const analysis::WaferSummary& wafer : summary.wafers) {
    table.rows.push_back(RowOf(wafer.name, wafer.sample));
    table.rows.back().flagged = wafer.outlying != analysis::Outlying::No;
  }
  table.rows.push_back(RowOf("All sites", summary.all));
  table.rows.back().total = true;
  return table;
}

figures::LotPlot LotOf(const Wafers& wafers, const Drawing& drawing) {
  figures::LotPlot lot;
  lot.title = drawing.title;
  std::vector<analysis::LotWafer> all;
  for (std::size_t i = 0; i < wafers.size(); ++i) {
    lot.wafers.push_back(PlotOf(*wafers[i], drawing));
    lot.wafers.back().title = wafers[i]->Measured().name;
    const auto slot = wafers[i]->Measured().slot;
    lot.labels.push_back(std::to_string(slot.value_or(static_cast<int>(i) + 1)));
    all.push_back({lot.wafers.back().title, wafers[i]->Sites()});
  }
  const analysis::LotSummary summary = analysis::SummaryOf(all);
  lot.facts = {data::Counted(wafers.size(), "wafer"), data::Counted(summary.all.Count(), "site")};
  lot.low = drawing.limits ? drawing.limits->first : summary.scale.low;
  lot.high = drawing.limits ? drawing.limits->second : summary.scale.high;
  lot.table = TableOf(summary);
  return lot;
}

std::shared_ptr<HeldPicture> DrawSheet(Wafers wafers, Drawing drawing) {
  if (drawing.classic) Refuse("sheets are of the modern look");
  if (!drawing.has_size) drawing.size = kPage;
  if (drawing.size.width < 300 || drawing.size.height < 200) {
    Refuse("the sheet is too small for the plots of a lot; give a larger size");
  }
  for (const auto& wafer : wafers) RequireOneQuantity(*wafers.front(), *wafer);
  const figures::LotPlot lot = LotOf(wafers, drawing);
  std::vector<figures::Figure> pages;
  for (std::size_t first = 0; first < wafers.size(); first += figures::kWafersOnPage) {
    pages.push_back(MakeLotSheet(FigureKindOf(drawing.kind), lot, first,
                                 StyleOf(*wafers.front(), drawing), TextFor(drawing)));
  }
  return std::make_shared<HeldPicture>(std::move(pages), std::move(drawing), std::move(wafers));
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
