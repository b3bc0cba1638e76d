// SPDX-License-Identifier: MIT
#include <cmath>

#include "discoplan/figures/contour_lines.h"
#include "discoplan/figures/kinds.h"
#include "discoplan/figures/value_labels.h"

namespace discoplan::figures {
namespace {

/// Dark letters on light colours, and the other way round.
Rgba LettersOn(Rgba colour) { return Luminance(colour) > 0.5 ? Rgb(0x14171C) : Rgb(0xFFFFFF); }

/// Of lines on coloured areas, as faint as they can be seen.
Rgba LineOn(Rgba colour) {
  Rgba line = LettersOn(colour);
  line.alpha = 165;
  return line;
}

/// Map and colour bar stand together in the middle, one as high as the other.
void GatherWithBar(Page& page, const Scale& scale) {
  if (!page.Look().legend) return;
  const Box free = page.Free();
  const double bar = ColourBarRoom(page, scale);
  page.Narrow(free.Height() + bar, free.Width() - bar);
}

/// Room for the wafer, a little off what stands around it.
MapFrame FrameOn(Page& page, const WaferPlot& plot) {
  const MapFrame frame = FrameIn(page.Free().Grown(-0.3 * page.Em()), plot);
  page.ShowsWafer({frame.centre, frame.scale});
  return frame;
}

std::vector<std::string> MapNotes(const Sketch& sketch, const ValueField& field,
                                  const Coverage& coverage, const Scale& scale) {
  std::vector<std::string> notes = {MethodNote(field, sketch.plot)};
  if (const std::string beyond = BeyondNote(sketch.plot, scale); !beyond.empty()) {
    notes.insert(notes.begin(), beyond);
  }
  if (coverage.HasFar()) notes.insert(notes.begin(), coverage.Note("hatched"));
  return notes;
}

/// Where labels of lines would be crossed out by the dots of sites; empty for dots that leave no
/// room for labels between them.
BoxField DotBoxes(const Page& page, const MapFrame& frame, const WaferPlot& plot) {
  BoxField dots(4 * page.Em());
  const double spacing =
      frame.Length(frame.radius) * std::sqrt(3.14 / static_cast<double>(plot.sites.Size()));
  if (!page.Look().site_dots || spacing < 1.5 * page.Em()) return dots;
  for (std::size_t i = 0; i < plot.sites.Size(); ++i) {
    const Point at = frame.At(plot.sites.x[i], plot.sites.y[i]);
    dots.Take(Box{at.x, at.y, at.x, at.y}.Grown(0.2 * page.Em()));
  }
  return dots;
}

int MostTicks(const Page& page) {
  // Isolines of small plots bear no labels that would want room.
  const int least = page.Look().small ? 6 : 3;
  return std::clamp(static_cast<int>(page.Look().height / (4.5 * page.Em())), least, 9);
}

std::string LostNote(std::size_t lost, bool brief) {
  if (brief) return std::to_string(lost) + " not written";
  return std::to_string(lost) + (lost == 1 ? " value" : " values") +
         " not written for lack of room";
}

}  // namespace

void DrawMap(Sketch sketch) {
  auto& [page, plot, summary, style, plan] = sketch;
  const Scale scale = MakeScale(plot, summary, style, MostTicks(page));
  const auto field = FieldOf(sketch);
  const auto coverage = sketch.plan.CoverageOf(plot);
  AddWords(page, plot, summary, MapNotes(sketch, *field, *coverage, scale));
  GatherWithBar(page, scale);
  if (style.legend) AddColourBar(page, scale, plot);
  const MapFrame frame = FrameOn(page, plot);
  AddValueImage(page, frame, plot, scale, field, coverage);
  if (style.isolines) {
    const BoxField dots = DotBoxes(page, frame, plot);
    const auto on = [&](double level) { return LineOn(scale.Colour(level)); };
    const auto letters = [&](double level) { return LettersOn(scale.Colour(level)); };
    AddContours(page, frame, plot, *field, *coverage, scale.ticks,
                {.colour = on,
                 .label = letters,
                 .width = 0.8 * page.Hair(),
                 .square = 0.22,  // for lines that the colours already tell of
                 .labels = !style.small,
                 .dots = &dots});
  }
  DrawEdge(page, frame, plot);
  if (style.site_dots || style.site_values) DrawDots(page, frame, plot);
  DrawRim(page, frame, plot);
  if (style.site_values) PutValues(sketch, frame, 0.17 * page.Em());
}

SigmaClasses ClassesOf(const WaferPlot& plot, const Summary& summary, const Style& style) {
  SigmaClasses classes;
  const double half = plot.sigma_range * (summary.sigma > 0 ? summary.sigma : 1);
  classes.lower = summary.mean - half;
  classes.upper = summary.mean + half;
  classes.scale = {
      .low = summary.mean - 3 * half, .high = summary.mean + 3 * half, .colours = &style.colours};
  const ColourMap colours = style.colours.IsDiverging() ? style.colours : *FindColourMap("vik");
  classes.scale.bands = {colours.At(0.22), Mix(colours.At(0.5), Rgb(0xD9DEE4), 0.5),
                         colours.At(0.78)};
  return classes;
}

void AddSigmaKey(Page& page, const WaferPlot& plot, const Summary& summary,
                 const SigmaClasses& classes) {
  std::size_t below = 0;
  std::size_t above = 0;
  for (const float value : plot.sites.value) {
    below += value < classes.lower;
    above += value > classes.upper;
  }
  const std::size_t within = plot.sites.Size() - below - above;
  const auto sites = [](std::size_t count) {
    return std::to_string(count) + (count == 1 ? " site" : " sites");
  };
  const std::string range = plot.sigma_range == 1 ? "" : NumberText(plot.sigma_range, 2) + " ";
  const auto& bands = classes.scale.bands;
  const auto row = [&](Rgba colour, const std::string& text, const std::string& sign, double limit,
                       std::size_t count) {
    const std::string number = sign + " " + ValueText(limit, summary);
    const std::string behind = "; " + sites(count);
    return KeyRow{colour, text, WithUnit(number, plot) + behind, number + behind};
  };
  const double half = plot.sigma_range * summary.sigma;
  AddKey(page, plot.quantity.empty() ? "Sigma ranges" : plot.quantity,
         {row(bands[2], "above mean + " + range + "\u03C3", ">", summary.mean + half, above),
          {bands[1], "within", sites(within)},
          row(bands[0], "below mean \u2212 " + range + "\u03C3", "<", summary.mean - half, below)});
}

void DrawSigmaMap(Sketch sketch) {
  auto& [page, plot, summary, style, plan] = sketch;
  const SigmaClasses classes = ClassesOf(plot, summary, style);
  const auto field = FieldOf(sketch);
  const auto coverage = sketch.plan.CoverageOf(plot);
  std::vector<std::string> notes = {MethodNote(*field, plot)};
  if (coverage->HasFar()) notes.insert(notes.begin(), coverage->Note("hatched"));
  AddWords(page, plot, summary, notes);
  if (style.legend) {
    // About what the key needs.
    page.Narrow(page.Free().Height() + 17 * page.Em(), page.Free().Height());
    AddSigmaKey(page, plot, summary, classes);
  }
  const MapFrame frame = FrameOn(page, plot);
  AddValueImage(page, frame, plot, classes.scale, field, coverage);
  const Rgba line = page.Ink().rim;
  const auto colour = [&](double) { return line; };
  const BoxField dots = DotBoxes(page, frame, plot);
  Ticks limits{.values = {classes.lower, classes.upper},
               .step = classes.upper - classes.lower,
               .decimals = DecimalsFor(summary)};
  AddContours(page, frame, plot, *field, *coverage, limits,
              {.colour = colour,
               .label = [](double) { return Rgb(0x14171C); },
               .width = page.Hair(),
               .labels = !style.small,
               .halo = 0.2 * page.Em(),
               .halo_colour = classes.scale.bands[1],
               .dots = &dots});
  DrawEdge(page, frame, plot);
  if (style.site_dots) DrawDots(page, frame, plot);
  DrawRim(page, frame, plot);
}

void DrawContours(Sketch sketch) {
  auto& [page, plot, summary, style, plan] = sketch;
  // A band between each two lines, tinted, so that hills are told from hollows.
  Style tinted = style;
  if (tinted.bands == 0) tinted.bands = std::max(8, MostTicks(page) + 4);
  Scale scale = MakeScale(plot, summary, tinted, tinted.bands + 1);
  const std::vector<Rgba> full = scale.bands;
  const Rgba ground = style.transparent ? InksFor(false).paper : page.Ink().paper;
  for (Rgba& band : scale.bands) band = Mix(ground, band, 0.45);
  const auto field = FieldOf(sketch);
  const auto coverage = sketch.plan.CoverageOf(plot);
  AddWords(page, plot, summary, MapNotes(sketch, *field, *coverage, scale));
  GatherWithBar(page, scale);
  if (style.legend) AddColourBar(page, scale, plot);
  const MapFrame frame = FrameOn(page, plot);
  AddValueImage(page, frame, plot, scale, field, coverage);
  Ticks levels;
  const auto count = static_cast<double>(full.size());
  levels.step = (scale.high - scale.low) / count;
  levels.decimals = scale.ticks.decimals;
  for (std::size_t i = 1; i < full.size(); ++i) {
    levels.values.push_back(scale.low + static_cast<double>(i) * levels.step);
  }
  Scale lines = scale;
  lines.bands = full;
  const Rgba ink = page.Ink().text;
  const BoxField dots = DotBoxes(page, frame, plot);
  AddContours(page, frame, plot, *field, *coverage, levels,
              {.colour = [&](double level) { return Mix(lines.Colour(level), ink, 0.3); },
               .label = [&](double) { return ink; },
               .width = 1.4 * page.Hair(),
               .labels = !style.small,
               .dots = &dots});
  DrawEdge(page, frame, plot);
  if (style.site_dots) DrawDots(page, frame, plot, 0.8);
  DrawRim(page, frame, plot);
}

void DrawValues(Sketch sketch) {
  auto& [page, plot, summary, style, plan] = sketch;
  const Scale scale = MakeScale(plot, summary, style, MostTicks(page));
  std::vector<std::string> notes;
  if (const std::string beyond = BeyondNote(plot, scale); !beyond.empty()) notes.push_back(beyond);
  AddWords(page, plot, summary, notes);
  // Room for the one thing that is known only afterwards.
  Box& free = page.Free();
  const double note_height = 1.3 * page.Em();
  const Box note = {free.left, free.bottom - note_height, free.right, free.bottom};
  free.bottom -= note_height;
  GatherWithBar(page, scale);
  if (style.legend) AddColourBar(page, scale, plot);
  const MapFrame frame = FrameOn(page, plot);
  DrawEdge(page, frame, plot);
  const double spacing =
      frame.Length(frame.radius) * std::sqrt(3.14 / static_cast<double>(summary.count));
  const double dot = std::min(0.32 * page.Em(), 0.4 * spacing);
  // One list of dots for each shade.
  constexpr int kShades = 64;
  std::vector<DotsShape> shades(kShades);
  for (std::size_t i = 0; i < plot.sites.Size(); ++i) {
    const double part = std::clamp(scale.Part(plot.sites.value[i]), 0.0, 1.0);
    DotsShape& dots = shades[static_cast<std::size_t>(std::min(part * kShades, kShades - 1.0))];
    dots.fill = scale.Colour(plot.sites.value[i]);
    dots.centres.push_back(frame.At(plot.sites.x[i], plot.sites.y[i]));
  }
  for (DotsShape& dots : shades) {
    if (dots.centres.empty()) continue;
    dots.radius = dot;
    dots.stroke = {std::min(0.6 * page.Hair(), 0.3 * dot), page.Ink().soft, 0};
    page.Add(std::move(dots));
  }
  DrawRim(page, frame, plot);
  const std::size_t lost = PutValues(sketch, frame, dot);
  if (lost == 0) return;
  const double size = 0.92 * page.Em();
  page.Put({.text = page.Shortened(LostNote(lost, style.small), note.Width(), size),
            .size = size,
            .colour = page.Ink().soft},
           {note.left, note.Centre().y}, Align::Start);
}

}  // namespace discoplan::figures
