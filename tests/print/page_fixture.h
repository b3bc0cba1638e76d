// SPDX-License-Identifier: MIT
#pragma once

#include "discoplan/print/print_wafer.h"
#include "tests/render/plot_fixture.h"

namespace discoplan {

/// A printer of 10 by 20 twips a pixel: a character is 60 twips wide, a line 260 high.
class PageFixture : public PlotFixture {
 protected:
  PageFixture() { print_.PrinterObj(paper_.get()); }

  nlohmann::json Trace() { return paper_->TakeTrace(); }
  /// [X, Y, TEXT] of each text.
  static std::vector<nlohmann::json> Texts(const nlohmann::json& trace) {
    std::vector<nlohmann::json> texts;
    nlohmann::json x, y;
    for (const auto& call : trace) {
      if (call[0] == "CurrentX") x = call[1];
      if (call[0] == "CurrentY") y = call[1];
      if (call[0] == "Print") texts.push_back({x, y, call[1]});
    }
    return texts;
  }

  std::unique_ptr<Recording<Paper>> paper_ = NewPaper(10, 20);
  PrintWafer print_;
};

inline const nlohmann::json& ResetCalls() {
  static const auto calls = nlohmann::json::parse(R"([
      ["Font.Name", "Arial"], ["Font.Size", 8], ["FontTransparent", -1], ["ScaleMode", 1],
      ["DrawWidth", 1], ["DrawStyle", 0], ["FillStyle", 0], ["FillColor", 16777215],
      ["ForeColor", 0]])");
  return calls;
}

/// The trace with each reset in one word.
inline nlohmann::json Abridged(const nlohmann::json& trace) {
  const nlohmann::json& reset = ResetCalls();
  nlohmann::json result = nlohmann::json::array();
  for (std::size_t i = 0; i < trace.size(); ++i) {
    bool is_reset = i + reset.size() <= trace.size();
    for (std::size_t k = 0; is_reset && k < reset.size(); ++k) is_reset = trace[i + k] == reset[k];
    result.push_back(is_reset ? nlohmann::json("reset") : trace[i]);
    if (is_reset) i += reset.size() - 1;
  }
  return result;
}

}  // namespace discoplan
