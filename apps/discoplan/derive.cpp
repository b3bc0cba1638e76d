// SPDX-License-Identifier: MIT
#include "apps/discoplan/derive.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <span>
#include <vector>

#include "apps/discoplan/checks.h"
#include "apps/discoplan/figure_text.h"
#include "apps/discoplan/wafer_sites.h"
#include "data/fields.h"
#include "discoplan/analysis/difference.h"
#include "discoplan/analysis/surface_fit.h"
#include "discoplan/analysis/zones.h"

namespace discoplan::app {
namespace {

constexpr int kMostOrder = 20;

ResidualRequest ParseResidual(const std::string& text) {
  using Model = ResidualRequest::Model;
  if (text == "plane") return {Model::Plane, 1};
  if (text == "radial") return {Model::Rings, 0};
  constexpr std::string_view kZernike = "zernike:";
  if (text.starts_with(kZernike)) {
    int order = -1;
    const char* const last = text.data() + text.size();
    const auto [end, error] = std::from_chars(text.data() + kZernike.size(), last, order);
    if (error == std::errc() && end == last && order >= 0 && order <= kMostOrder) {
      return {Model::Zernike, order};
    }
  }
  throw UsageError("--residual takes plane, radial or zernike:N with N from 0 to " +
                   std::to_string(kMostOrder) + ", not " + Shown(text));
}

// Each of these steps gives the words for what it did.

std::vector<std::string> Place(Lot& lot, const DeriveRequest& request) {
  std::vector<std::string> steps;
  if (request.mirror) {
    steps.push_back(*request.mirror == analysis::MirrorAxis::X ? "mirrored in x" : "mirrored in y");
  }
  if (request.rotate != 0) steps.push_back("turned by " + NumberText(request.rotate, 7) + "°");
  if (steps.empty()) return steps;
  for (Wafer& wafer : lot.wafers) {
    std::vector<Site> sites = SitesOf(wafer);
    if (request.mirror) sites = analysis::Mirrored(sites, *request.mirror);
    TakeSites(wafer, analysis::Turned(sites, request.rotate));
  }
  return steps;
}

/// Says how many values come from between the sites.
void WarnOfInterpolated(const std::string& what, const analysis::Derived& derived) {
  if (derived.interpolated == 0) return;
  Warn(what + ": " + std::to_string(derived.interpolated) + " of " +
       Counted(derived.matched + derived.interpolated, "value") +
       " interpolated between other sites, up to " + NumberText(derived.farthest, 3) +
       " mm from the nearest");
}

/// One wafer alone needs no columns that tell it from others.
Lot ReadOther(ReadRequest reading) {
  try {
    return ReadReporting(reading);
  } catch (const data::DataError&) {
    if (reading.by.empty() || !reading.wafers.empty()) throw;
  }
  reading.by.clear();
  return ReadReporting(reading);
}

/// What is subtracted: for each wafer another one, which its name or its parameter tells.
class Subtrahend {
 public:
  Subtrahend(const Lot& lot, const ReadRequest& reading, const DeriveRequest& request)
      : file_(request.File()) {
    file_.empty() ? TakeMeans(lot, reading, request) : TakeFile(lot, reading, request);
  }

  std::string Name() const {
    return file_.empty() ? "mean" : std::filesystem::path(file_).stem().string();
  }

  std::span<const Site> For(const Wafer& wafer) const {
    std::vector<const Partner*> fitting;
    for (const Partner& partner : partners_) {
      if (partner.parameter == wafer.parameter) fitting.push_back(&partner);
    }
    if (fitting.size() == 1) return fitting.front()->sites;
    std::vector<std::string> names;
    for (const Partner* partner : fitting) {
      if (partner->name == wafer.name) return partner->sites;
      names.push_back(partner->name);
    }
    throw CommandError(file_ + ": has no wafer " + Shown(wafer.name) + " to subtract; it has " +
                       Listed(names) + "; --minus-wafer chooses one for all");
  }

 private:
  struct Partner {
    std::string name;
    std::size_t parameter;
    std::vector<Site> sites;
  };

  void TakeFile(const Lot& lot, ReadRequest reading, const DeriveRequest& request) {
    reading.path = file_;
    reading.wafers.clear();
    if (!request.minus_wafer.empty()) reading.wafers = {request.minus_wafer};
    if (!request.minus_parameter.empty()) {
      if (lot.parameters.size() > 1) {
        throw UsageError("--minus-parameter goes with one value of the data; give one --parameter");
      }
      reading.columns = PositionsOf(reading.columns);
      reading.parameters = {request.minus_parameter};
    }
    const Lot other = ReadOther(std::move(reading));
    for (std::size_t parameter = 0; parameter < lot.parameters.size(); ++parameter) {
      const std::size_t same = SameParameter(lot.parameters[parameter], other, request);
      for (const Wafer& wafer : other.Of(same)) {
        partners_.push_back({wafer.name, parameter, SitesOf(wafer)});
      }
    }
  }

  /// "X,Y" of "X,Y,VALUE".
  static std::string PositionsOf(const std::string& columns) {
    std::vector<std::string_view> entries;
    data::SplitFields(columns, {','}, entries);
    if (entries.size() < 3) return columns;
    const std::size_t quote = columns.find(
        ',', static_cast<std::size_t>(entries[1].data() + entries[1].size() - columns.data()));
    return columns.substr(0, quote);
  }

  /// The value of the other file that is subtracted from one of the data, in the same unit.
  std::size_t SameParameter(const data::Parameter& wanted, const Lot& other,
                            const DeriveRequest& request) const {
    const auto& all = other.parameters;
    const auto is_same = [&](const data::Parameter& each) {
      return data::SameName(each.name, wanted.name);
    };
    const auto named = std::find_if(all.begin(), all.end(), is_same);
    if (named == all.end() && all.size() > 1) {
      std::vector<std::string> names;
      for (const data::Parameter& each : all) names.push_back(Shown(each.name));
      throw CommandError(file_ + ": has no value " + Shown(wanted.name) + " to subtract; it has " +
                         Listed(names));
    }
    const auto& same = named == all.end() ? all.front() : *named;
    if (named == all.end() && request.minus_parameter.empty()) {
      Warn(file_ + ": its value " + Shown(same.name) + " is subtracted from " + Shown(wanted.name) +
           "; --minus-parameter chooses another");
    }
    if (!same.unit.empty() && !wanted.unit.empty() && same.unit != wanted.unit) {
      throw CommandError(file_ + ": " + Shown(same.name) + " is in " + Shown(same.unit) + " and " +
                         Shown(wanted.name) + " in " + Shown(wanted.unit) +
                         "; scale one of them, or give both one --value-unit if they are the same");
    }
    return static_cast<std::size_t>(&same - all.data());
  }

  /// Of all wafers of the data, whichever of them are shown.
  void TakeMeans(const Lot& shown, ReadRequest reading, const DeriveRequest& request) {
    Lot all = shown;
    if (!reading.wafers.empty()) {
      reading.wafers.clear();
      all = data::Read(reading);
      Place(all, request);
    }
    for (std::size_t parameter = 0; parameter < all.parameters.size(); ++parameter) {
      std::vector<std::vector<Site>> wafers;
      for (const Wafer& wafer : all.Of(parameter)) wafers.push_back(SitesOf(wafer));
      if (wafers.size() < 2) {
        throw CommandError(reading.path.string() +
                           ": has one wafer, which is its own mean; leave out --minus mean");
      }
      const std::vector<std::span<const Site>> spans(wafers.begin(), wafers.end());
      analysis::Derived mean = analysis::MeanWafer(spans);
      WarnOfInterpolated(reading.path.string() + ": mean wafer", mean);
      partners_.push_back({"mean", parameter, std::move(mean.sites)});
    }
  }

  std::string file_;
  std::vector<Partner> partners_;
};

void RefuseInfinite(const std::string& source, const std::vector<Site>& sites) {
  if (std::all_of(sites.begin(), sites.end(), [](const Site& s) { return std::isfinite(s.z); })) {
    return;
  }
  throw CommandError(source + ": a difference of values doesn't fit a 32-bit float; scale the " +
                     "values down");
}

std::string NameOfSubtrahend(const Subtrahend& subtrahend, const DeriveRequest& request) {
  std::string name = subtrahend.Name();
  for (const std::string& part : {request.minus_wafer, request.minus_parameter}) {
    if (!part.empty()) name += ' ' + Printable(part);
  }
  return name;
}

std::string Subtract(Lot& lot, const ReadRequest& reading, const DeriveRequest& request) {
  const Subtrahend subtrahend(lot, reading, request);
  const std::string file = reading.path.string();
  analysis::Derived total;
  for (Wafer& wafer : lot.wafers) {
    const analysis::Derived change = analysis::DifferenceOf(SitesOf(wafer), subtrahend.For(wafer));
    if (change.missing > 0) {
      throw CommandError(file + ": " + Shown(wafer.name) + " has " +
                         Counted(change.missing, "site") + " that " + subtrahend.Name() +
                         " has not, and too few others to interpolate from");
    }
    RefuseInfinite(file, change.sites);
    TakeSites(wafer, change.sites);
    total.matched += change.matched;
    total.interpolated += change.interpolated;
    total.farthest = std::max(total.farthest, change.farthest);
  }
  const std::string step = "minus " + NameOfSubtrahend(subtrahend, request);
  WarnOfInterpolated(file + ": " + step, total);
  return total.interpolated > 0 ? step + " (interpolated)" : step;
}

/// Says where the sites don't tell the terms apart; fails where that leaves nothing to see.
void CheckRank(const std::string& source, std::size_t rank, std::size_t terms, std::size_t sites) {
  if (rank == terms && rank < sites) return;
  const std::string rule = source + ": " + Counted(sites, "site") + " for the " +
                           Counted(terms, "term") + " of the surface";
  if (rank >= sites) throw CommandError(rule + ", so that nothing is left; give a lower order");
  Warn(rule + ", which lie so that they tell only " + std::to_string(rank) + " of them apart");
}

std::vector<Site> Residual(const std::string& source, const std::vector<Site>& sites,
                           const ResidualRequest& request) {
  using Model = ResidualRequest::Model;
  if (request.model == Model::Rings) {
    return analysis::ResidualsOf(sites, analysis::ProfileOf(sites));
  }
  if (request.model == Model::Plane) {
    const analysis::PlaneFit plane = analysis::FitPlane(sites);
    CheckRank(source, plane.rank, analysis::PlaneFit::kTerms, sites.size());
    return analysis::ResidualsOf(sites, plane);
  }
  const analysis::ZernikeFit fit = analysis::FitZernike(sites, request.order);
  CheckRank(source, fit.rank, fit.coefficients.size(), sites.size());
  return analysis::ResidualsOf(sites, fit);
}

std::string NameOf(const ResidualRequest& request) {
  switch (request.model) {
    case ResidualRequest::Model::Plane:
      return "plane";
    case ResidualRequest::Model::Rings:
      return "ring means";
    case ResidualRequest::Model::Zernike:
      break;
  }
  return "Zernike order " + std::to_string(request.order);
}

std::string Flatten(Lot& lot, const ReadRequest& reading, const ResidualRequest& request) {
  for (Wafer& wafer : lot.wafers) {
    const std::string source = reading.path.string() + ": " + wafer.name;
    const std::vector<Site> rest = Residual(source, SitesOf(wafer), request);
    RefuseInfinite(source, rest);
    TakeSites(wafer, rest);
  }
  return "residual of " + NameOf(request);
}

}  // namespace

void AddDeriveOptions(CLI::App& command, DeriveRequest& request) {
  command
      .add_option_function<std::string>(
          "--mirror",
          [&request](const std::string& axis) {
            request.mirror = axis == "x" ? analysis::MirrorAxis::X : analysis::MirrorAxis::Y;
          },
          "Swap left and right (x) or top and bottom (y) of the sites, before all else")
      ->check(CLI::IsMember({"x", "y"}))
      ->type_name("AXIS");
  command
      .add_option("--rotate", request.rotate,
                  "Turn the sites counter-clockwise around the wafer's centre, then")
      ->check(FiniteNumber())
      ->type_name("DEGREES");
  command
      .add_option("--minus", request.minus,
                  "Subtract a wafer, or the wafer of the same name, of another file, or the 'mean' "
                  "wafer of the data: site by site within 0.1 mm, else interpolated")
      ->type_name("FILE|mean")
      ->transform(InputFile());
  command
      .add_option("--minus-wafer", request.minus_wafer,
                  "The wafer of that file to subtract from every wafer, by name or slot; the one "
                  "of the same name otherwise")
      ->type_name("NAME|SLOT");
  command
      .add_option("--minus-parameter", request.minus_parameter,
                  "The value of that file to subtract, by name or number; the one of the same name "
                  "otherwise")
      ->type_name("NAME");
  command
      .add_option_function<std::string>(
          "--residual",
          [&request](const std::string& text) { request.residual = ParseResidual(text); },
          "Subtract, last, what a surface explains: plane, radial (the means of rings) or "
          "zernike:N "
          "(least squares of all terms up to order N)")
      ->type_name("SURFACE");
}

Lot ReadDerived(const ReadRequest& reading, const DeriveRequest& request) {
  const bool chooses = !(request.minus_wafer + request.minus_parameter).empty();
  if (chooses && request.File().empty()) {
    throw UsageError("--minus-wafer and --minus-parameter choose from a FILE; give it by --minus");
  }
  const bool reads_twice = request.minus == "mean" && !reading.wafers.empty();
  if (reads_twice && reading.path == "/dev/stdin") {
    throw UsageError("--minus mean with --wafer reads the data twice; give a file for DATA");
  }
  Lot lot = ReadReporting(reading);
  std::vector<std::string> steps = Place(lot, request);
  if (!request.minus.empty()) steps.push_back(Subtract(lot, reading, request));
  if (request.residual) steps.push_back(Flatten(lot, reading, *request.residual));
  for (Wafer& wafer : lot.wafers) {
    for (const std::string& step : steps) {
      wafer.derived += (wafer.derived.empty() ? "" : ", ") + step;
    }
  }
  return lot;
}

}  // namespace discoplan::app
