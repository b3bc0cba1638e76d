// SPDX-License-Identifier: MIT
#pragma once

#include "discoplan/controls/map_control.h"
#include "discoplan/print/print_wafer.h"
#include "discoplan/render/number_text.h"

namespace discoplan {

/// What makes a map of type `Base` a sigma-range plot: the range, its three colours and a legend
/// of three rows. `Plot` always draws, whatever the picture's state, and does no layout.
template <class Base>
class SigmaControl : public Base {
 public:
  /// Half width of the band around the mean, in standard deviations; 0 or less becomes 0.5.
  float SigmaRange() const { return sigma_range_; }
  void SigmaRange(float range) {
    sigma_range_ = range <= 0 ? kDefaultRange : range;
    this->Changed("SigmaRange");
  }
  /// 0 above the band, 1 within it, 2 below it.
  Colour IntervalColor(std::size_t range) const {
    return this->TableColour(this->IntervalSlot(range, true));
  }
  void IntervalColor(std::size_t range, Colour colour) {
    this->TableColour(this->IntervalSlot(range, true), colour);
  }
  /// Leaves the place in the printer's pixels in the caller's variables.
  PrintResult PrintLegend_No_Frame(float& left, float& top) {
    return this->PrintBlock([&](PrintWafer& print) {
      print.DrawSigmaLegend_No_Frame(this->wafer_, left, top, sigma_range_);
    });
  }

 protected:
  static constexpr std::size_t kRanges = 3;

  float sigma_range_ = 0;

  SigmaControl(Platform& platform, Container* container, const ControlClass& own_class)
      : Base(platform, container, own_class, MapControl::Legend::Sigma) {
    ShowSigma(*this->unit_);
    for (std::size_t row = 0; row < kRanges; ++row) {
      const TwipsBox& beside = this->row_nodes_[2 * row]->Box();
      signs_[row] = &this->AddLabel(*this->legende_, IndexedName("sigma", row),
                                    {beside.left, beside.top, 150, beside.height});
      ShowSigma(*signs_[row]);
    }
  }

  void FillDefaults() override {
    Base::FillDefaults();
    if (sigma_range_ == 0) SigmaRange(kDefaultRange);
  }
  void PresentPlot() override { this->RedrawPlot(); }
  void PrintLegendOn(PrintWafer& print, float left, float top) override {
    print.DrawSigmaLegend(this->wafer_, left, top, sigma_range_);
  }
  void ShowLegend() override {
    this->wafer_.scale_sigma(this->chips_, this->rows_, sigma_range_);
    this->lbldist_->caption(PlainNumber(sigma_range_));
    for (std::size_t row = 0; row < kRanges; ++row) {
      TwipsBox place = signs_[row]->Box();
      place.left = this->row_nodes_[2 * row]->Right() + kGapToSign;
      signs_[row]->Move(place);
    }
  }

 private:
  static constexpr float kDefaultRange = 0.5F;
  static constexpr float kGapToSign = 60;  // twips

  static void ShowSigma(Node& label) {
    label.Font({.name = "Symbol"});
    label.Text("s");
  }

  std::array<Node*, kRanges> signs_{};
};

}  // namespace discoplan
