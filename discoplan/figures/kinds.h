// SPDX-License-Identifier: MIT
#pragma once

/// One maker for each kind of figure.

#include <memory>

#include "discoplan/figures/field_kinds.h"
#include "discoplan/figures/map_frame.h"
#include "discoplan/figures/page.h"

namespace discoplan::figures {

/// What follows from the places of the sites alone, kept from wafer to wafer of a lot.
class DISCOPLAN_EXPORT SitePlan {
 public:
  PlacePlan& Places() { return places_; }
  std::shared_ptr<const Coverage> CoverageOf(const WaferPlot& plot);

 private:
  PlacePlan places_;
  std::vector<float> x_;
  std::vector<float> y_;
  double diameter_ = 0;
  double edge_exclusion_ = 0;
  std::shared_ptr<const Coverage> coverage_;
};

/// What every maker gets; the page has its words already, but for those that the kind adds.
struct Sketch {
  Page& page;
  const WaferPlot& plot;
  const Summary& summary;
  const Style& style;
  SitePlan& plan;
};

/// One of many figures.
DISCOPLAN_EXPORT Figure MakeFigure(PlotKind kind, const WaferPlot& plot, const Style& style,
                                   const TextMeasure& text, SitePlan& plan);

void DrawMap(Sketch sketch);
void DrawSigmaMap(Sketch sketch);
void DrawContours(Sketch sketch);
void DrawValues(Sketch sketch);
void DrawSurface(Sketch sketch);
void DrawSigmaSurface(Sketch sketch);
void DrawBars(Sketch sketch);
void DrawHistogram(Sketch sketch);
void DrawLineScan(Sketch sketch);

/// The field that the style asks for.
std::shared_ptr<const ValueField> FieldOf(const Sketch& sketch);
/// "smooth: thin-plate spline, leave-one-out error 0.3 nm"
std::string MethodNote(const ValueField& field, const WaferPlot& plot);
/// Says how many sites lie beyond the limits of the scale; empty for none.
std::string BeyondNote(const WaferPlot& plot, const Scale& scale);
/// Digits behind the point that tell values apart.
int DecimalsFor(const Summary& summary);
/// With these, or with an exponent where plain digits would be many or none.
std::string ValueText(double value, const Summary& summary);

/// Classes of sigma maps: below, within and above the band around the mean.
struct SigmaClasses {
  Scale scale;  ///< Three bands.
  double lower = 0;
  double upper = 0;
};
SigmaClasses ClassesOf(const WaferPlot& plot, const Summary& summary, const Style& style);
void AddSigmaKey(Page& page, const WaferPlot& plot, const Summary& summary,
                 const SigmaClasses& classes);

}  // namespace discoplan::figures
