// SPDX-License-Identifier: MIT
#include "discoplan/render/plots/plot_frame.h"

namespace discoplan {
namespace {

constexpr double kFallBackTwipsPerPixel = 4.8;

}  // namespace

PlotFrame::PlotFrame(Surface& surface, const PlotArea& area, Rounding rounding)
    : surface_(surface), area_(area), rounding_(rounding) {}

void PlotFrame::Open() {
  if (area_.IsPartOfPage()) return;
  (*this)([&] { surface_.Cls(); });
  Refresh();
}

float PlotFrame::Side(double pixels, bool rounded) const {
  const float side = ToFloat(pixels);
  return rounded ? static_cast<float>(ToInt16(side)) : side;
}

void PlotFrame::MeasureRectangle() {
  const bool all = rounding_ == Rounding::All;
  const bool rounds_height = rounding_ != Rounding::None;
  const bool printer = surface_.IsPrinter();
  const auto across = [&](float twips) {
    return Divide(twips, printer ? surface_.TwipsPerPixelX() : surface_.ScreenTwipsPerPixelX());
  };
  const auto down = [&](float twips) {
    return Divide(twips, printer ? surface_.TwipsPerPixelY() : surface_.ScreenTwipsPerPixelY());
  };
  if (printer || area_.IsPartOfPage()) {
    (*this)([&] { left = Side(across(area_.left), all); });
    (*this)([&] { width = Side(across(area_.width), all); });
    (*this)([&] { top = Side(down(area_.top), all); });
    (*this)([&] { height = Side(down(area_.height), rounds_height); });
  } else {
    (*this)([&] { left = Side(surface_.ScaleLeft(), all); });
    (*this)([&] { width = Side(surface_.ScaleWidth(), all); });
    (*this)([&] { top = Side(surface_.ScaleTop(), all); });
    (*this)([&] { height = Side(surface_.ScaleHeight(), rounds_height); });
  }
}

void PlotFrame::FallBack() {
  ++dropped_;
  const bool all = rounding_ == Rounding::All;
  const auto pixels = [](float twips) { return twips / kFallBackTwipsPerPixel; };
  Attempt([&] { left = Side(pixels(area_.left), all); });
  Attempt([&] { width = Side(pixels(area_.width), all); });
  Attempt([&] { top = Side(pixels(area_.top), all); });
  Attempt([&] { height = Side(pixels(area_.height), rounding_ != Rounding::None); });
}

}  // namespace discoplan
