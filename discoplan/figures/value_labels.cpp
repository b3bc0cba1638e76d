// SPDX-License-Identifier: MIT
#include "discoplan/figures/value_labels.h"

#include <array>
#include <cmath>
#include <functional>

#include "discoplan/figures/clip.h"

namespace discoplan::figures {
namespace {

struct Label {
  Point at;
  std::string text;
};

/// Rim and edge, on which values are hard to read.
BoxField LineBoxes(const Page& page, const MapFrame& frame, const WaferPlot& plot) {
  BoxField lines(4 * page.Em());
  const double radius = frame.Length(frame.radius);
  for (const std::vector<Point>& points : {RimPoints(plot, radius), TestAreaPoints(plot, radius)}) {
    for (std::size_t i = 0; i < points.size(); ++i) {
      const Point& next = points[(i + 1) % points.size()];
      lines.Take(BoxAround({frame.At(points[i].x, points[i].y), frame.At(next.x, next.y)}));
    }
  }
  return lines;
}

/// Where values are put.
struct Labels {
  std::vector<Label> all;
  double dot;  ///< Radius.
  BoxField lines;
};

/// Tries the places around a dot, all or those off the wafer's lines.
bool PutBesideDot(Page& page, const Labels& labels, const Label& label, const Words& words,
                  bool off_lines) {
  const Point p = label.at;
  const double down = 0.5 * words.size + labels.dot + 0.2 * page.Em();
  const double aside = labels.dot + 0.3 * page.Em();
  const double oblique = 0.6 * words.size;
  const std::array<std::pair<Point, Align>, 8> places = {
      {{{p.x, p.y + down}, Align::Middle},
       {{p.x, p.y - down}, Align::Middle},
       {{p.x + aside, p.y}, Align::Start},
       {{p.x - aside, p.y}, Align::End},
       {{p.x + aside, p.y + oblique}, Align::Start},
       {{p.x - aside, p.y - oblique}, Align::End},
       {{p.x - aside, p.y + oblique}, Align::End},
       {{p.x + aside, p.y - oblique}, Align::Start}}};
  return std::any_of(places.begin(), places.end(), [&](const auto& place) {
    const Box box = page.BoxOf(words, place.first, place.second);
    // What is above and below the plot has its own words.
    if (box.top < page.Free().top || box.bottom > page.Free().bottom) return false;
    return (!off_lines || labels.lines.IsFree(box)) && page.Put(words, place.first, place.second);
  });
}

/// In letters of one size; those that find no place. On a line stands what finds no other.
std::vector<const Label*> PutBesideDots(Page& page, const Labels& labels,
                                        const std::function<Words(const Label&)>& words) {
  std::vector<const Label*> left;
  for (const Label& label : labels.all) left.push_back(&label);
  for (const bool off_lines : {true, false}) {
    std::erase_if(left, [&](const Label* label) {
      return PutBesideDot(page, labels, *label, words(*label), off_lines);
    });
  }
  return left;
}

/// Farther off, with a line to the dot that meets neither another dot nor a word.
bool PutWithLeader(Page& page, const Label& label, double dot, const Words& words) {
  const double em = page.Em();
  for (int ring = 2; ring <= 5; ++ring) {
    for (int k = 0; k < 16; ++k) {
      const double angle = 6.283185307179586 * k / 16;
      const Point off = {std::cos(angle), std::sin(angle)};
      const Point to = label.at + off * (ring * em);
      const Align align = off.x >= 0 ? Align::Start : Align::End;
      // A line that left the plot would cross the words around it.
      if (!page.Free().Holds(page.BoxOf(words, to, align))) continue;
      std::vector<Box> line;
      for (double part = 1.5 * dot + 0.1 * em; part < ring * em; part += 0.2 * em) {
        const Point at = label.at + off * part;
        line.push_back(Box{at.x, at.y, at.x, at.y}.Grown(0.1 * em));
      }
      const auto is_free = [&](const Box& box) { return page.IsFree(box); };
      if (!std::all_of(line.begin(), line.end(), is_free) || !page.Put(words, to, align)) continue;
      for (const Box& box : line) page.Reserve(box);
      page.Line(label.at + off * dot, to, page.Ink().soft, 0.7 * page.Hair());
      return true;
    }
  }
  return false;
}

/// Whether half of them would fill more than the page.
bool AreTooMany(const Page& page, const Labels& labels, const Words& least) {
  double smallest = page.Look().width;
  for (const Label& label : labels.all) {
    smallest = std::min(smallest, page.Width(label.text, least.size) + 2 * least.halo);
  }
  const double area = smallest * ((kAscent + kDescent) * least.size + 2 * least.halo);
  return area * static_cast<double>(labels.all.size()) / 2 > page.Look().width * page.Look().height;
}

std::size_t PutLabels(Page& page, const Labels& labels) {
  const double em = page.Em();
  const double dot = labels.dot;
  const Inks& ink = page.Ink();
  Words plain{.colour = ink.text,
              .halo = 0.14 * em,
              .halo_colour = page.Look().transparent ? Rgba{255, 255, 255, 200} : ink.paper};
  const std::function<Words(const Label&)> words = [&](const Label& label) {
    Words one = plain;
    one.text = label.text;
    return one;
  };
  constexpr std::array kSizes = {0.9, 0.78, 0.66};
  plain.size = kSizes.back() * em;
  if (AreTooMany(page, labels, plain)) return labels.all.size();
  for (const Label& label : labels.all) {
    page.Reserve({label.at.x - dot, label.at.y - dot, label.at.x + dot, label.at.y + dot});
  }
  const Page::State before = page.Keep();
  std::vector<const Label*> left;
  for (const double part : kSizes) {
    page.Restore(before);
    plain.size = part * em;
    left = PutBesideDots(page, labels, words);
    if (left.empty()) return 0;
  }
  std::size_t lost = left.size();
  // Leaders help where a few are crowded; among thousands they would be a thicket.
  if (left.size() <= 60) {
    for (const Label* label : left) {
      if (PutWithLeader(page, *label, dot, words(*label))) --lost;
    }
  }
  if (lost <= labels.all.size() / 2) return lost;
  page.Restore(before);
  return labels.all.size();
}

std::vector<Label> ValueLabels(const Sketch& sketch, const MapFrame& frame) {
  std::vector<Label> labels;
  const SiteView& sites = sketch.plot.sites;
  for (std::size_t i = 0; i < sites.Size(); ++i) {
    labels.push_back({frame.At(sites.x[i], sites.y[i]), ValueText(sites.value[i], sketch.summary)});
  }
  return labels;
}

}  // namespace

std::size_t PutValues(Sketch sketch, const MapFrame& frame, double dot) {
  return PutLabels(sketch.page,
                   {ValueLabels(sketch, frame), dot, LineBoxes(sketch.page, frame, sketch.plot)});
}

}  // namespace discoplan::figures
