// SPDX-License-Identifier: MIT
#include <cmath>
#include <functional>

#include "discoplan/figures/contour_lines.h"
#include "discoplan/figures/kinds.h"

namespace discoplan::figures {
namespace {

/// Lightness as the eye weighs it, 0 to 1.
double Luminance(Rgba colour) {
  return (0.299 * colour.red + 0.587 * colour.green + 0.114 * colour.blue) / 255;
}

/// Dark letters on light colours, and the other way round.
Rgba LettersOn(Rgba colour) { return Luminance(colour) > 0.5 ? Rgb(0x14171C) : Rgb(0xFFFFFF); }

/// Of lines on coloured areas, as faint as they can be seen.
Rgba LineOn(Rgba colour) {
  Rgba line = LettersOn(colour);
  line.alpha = 165;
  return line;
}

/// On a wide page map and colour bar, or key, stand together in the middle.
void GatherOn(Page& page, double beside) {
  Box& free = page.Free();
  if (!page.Look().legend) return;
  const double spare = (free.Width() - free.Height() - beside) / 2;
  if (spare <= 0) return;
  free.left += spare;
  free.right -= spare;
}
/// About what the two need, in letters.
constexpr double kBarRoom = 8;
constexpr double kKeyRoom = 17;

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

struct Label {
  Point at;
  std::string text;
};

/// Tries the places around each dot, with letters of one size; those that find none.
std::vector<const Label*> PutBesideDots(Page& page, const std::vector<Label>& labels, double dot,
                                        const std::function<Words(const Label&)>& words) {
  const double em = page.Em();
  std::vector<const Label*> left;
  for (const Label& label : labels) {
    const Words w = words(label);
    const Point p = label.at;
    const double down = 0.5 * w.size + dot + 0.2 * em;
    const double aside = dot + 0.3 * em;
    const bool put = page.Put(w, {p.x, p.y + down}, Align::Middle) ||
                     page.Put(w, {p.x, p.y - down}, Align::Middle) ||
                     page.Put(w, {p.x + aside, p.y}, Align::Start) ||
                     page.Put(w, {p.x - aside, p.y}, Align::End) ||
                     page.Put(w, {p.x + aside, p.y + 0.6 * w.size}, Align::Start) ||
                     page.Put(w, {p.x - aside, p.y - 0.6 * w.size}, Align::End);
    if (!put) left.push_back(&label);
  }
  return left;
}

/// Farther off, with a line to the dot.
bool PutWithLeader(Page& page, const Label& label, double dot, const Words& words) {
  const double em = page.Em();
  for (int ring = 2; ring <= 4; ++ring) {
    for (int k = 0; k < 16; ++k) {
      const double angle = 6.283185307179586 * k / 16;
      const Point off = {std::cos(angle), std::sin(angle)};
      const Point to = label.at + off * (ring * em);
      const Align align = off.x >= 0 ? Align::Start : Align::End;
      // A line that left the plot would cross the words around it.
      if (!page.Free().Holds(page.BoxOf(words, to, align)) || !page.Put(words, to, align)) continue;
      page.Line(label.at + off * dot, to, page.Ink().soft, 0.7 * page.Hair());
      return true;
    }
  }
  return false;
}

/// Labels around their points, all of the largest size in which they find room; in the smallest one
/// some stand farther off with a line to their dot. None where only a few of many would be written,
/// which those would be is chance. The number of those that found no room.
std::size_t PutLabels(Page& page, const std::vector<Label>& labels, double dot) {
  const double em = page.Em();
  for (const Label& label : labels) {
    page.Reserve({label.at.x - dot, label.at.y - dot, label.at.x + dot, label.at.y + dot});
  }
  const Inks& ink = page.Ink();
  double size = 0;
  const std::function<Words(const Label&)> words = [&](const Label& label) {
    return Words{.text = label.text,
                 .size = size,
                 .colour = ink.text,
                 .halo = 0.14 * em,
                 .halo_colour = page.Look().transparent ? Rgba{255, 255, 255, 200} : ink.paper};
  };
  const Page::State before = page.Keep();
  std::vector<const Label*> left;
  for (const double part : {0.9, 0.78, 0.66}) {
    page.Restore(before);
    size = part * em;
    left = PutBesideDots(page, labels, dot, words);
    if (left.empty()) return 0;
  }
  std::size_t lost = left.size();
  // Leaders help where a few are crowded; among thousands they would be a thicket.
  if (left.size() <= 60) {
    for (const Label* label : left) {
      if (PutWithLeader(page, *label, dot, words(*label))) --lost;
    }
  }
  if (lost <= labels.size() / 2) return lost;
  page.Restore(before);
  return labels.size();
}

std::vector<Label> ValueLabels(const Sketch& sketch, const MapFrame& frame) {
  std::vector<Label> labels;
  const SiteView& sites = sketch.plot.sites;
  for (std::size_t i = 0; i < sites.Size(); ++i) {
    labels.push_back({frame.At(sites.x[i], sites.y[i]), ValueText(sites.value[i], sketch.summary)});
  }
  return labels;
}

std::string LostNote(std::size_t lost) {
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
  GatherOn(page, kBarRoom * page.Em());
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
                 .labels = !style.small,
                 .dots = &dots});
  }
  DrawEdge(page, frame, plot);
  DrawRim(page, frame, plot);
  if (style.site_dots || style.site_values) DrawDots(page, frame, plot);
  if (style.site_values) PutLabels(page, ValueLabels(sketch, frame), 0.17 * page.Em());
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

void AddSigmaKey(Page& page, const WaferPlot& plot, const SigmaClasses& classes) {
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
  const std::string upper = WithUnit(NumberText(classes.upper, 5), plot);
  const std::string lower = WithUnit(NumberText(classes.lower, 5), plot);
  AddKey(page, plot.quantity.empty() ? "Sigma ranges" : plot.quantity,
         {{bands[2], "above mean + " + range + "\u03C3", "> " + upper + "; " + sites(above)},
          {bands[1], "within", sites(within)},
          {bands[0], "below mean \u2212 " + range + "\u03C3", "< " + lower + "; " + sites(below)}});
}

void DrawSigmaMap(Sketch sketch) {
  auto& [page, plot, summary, style, plan] = sketch;
  const SigmaClasses classes = ClassesOf(plot, summary, style);
  const auto field = FieldOf(sketch);
  const auto coverage = sketch.plan.CoverageOf(plot);
  std::vector<std::string> notes = {MethodNote(*field, plot)};
  if (coverage->HasFar()) notes.insert(notes.begin(), coverage->Note("hatched"));
  AddWords(page, plot, summary, notes);
  GatherOn(page, kKeyRoom * page.Em());
  if (style.legend) AddSigmaKey(page, plot, classes);
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
  DrawRim(page, frame, plot);
  if (style.site_dots) DrawDots(page, frame, plot);
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
  GatherOn(page, kBarRoom * page.Em());
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
  DrawRim(page, frame, plot);
  if (style.site_dots) DrawDots(page, frame, plot, 0.8);
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
  GatherOn(page, kBarRoom * page.Em());
  if (style.legend) AddColourBar(page, scale, plot);
  const MapFrame frame = FrameOn(page, plot);
  DrawEdge(page, frame, plot);
  DrawRim(page, frame, plot);
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
  const std::size_t lost = PutLabels(page, ValueLabels(sketch, frame), dot);
  if (lost == 0) return;
  const double size = 0.92 * page.Em();
  page.Put({.text = page.Shortened(LostNote(lost), note.Width(), size),
            .size = size,
            .colour = page.Ink().soft},
           {note.left, note.Centre().y}, Align::Start);
}

}  // namespace discoplan::figures
