// SPDX-License-Identifier: MIT
#pragma once

/// What becomes of a plot when one of its steps fails: a surface that doesn't offer what it was
/// asked for, or a number that doesn't fit.

#include <array>
#include <string_view>

namespace discoplan {

enum class OnFailure {
  FallBack,  ///< The rectangle falls back to 4.8 twips per pixel, and the next step runs.
  Drop,      ///< The next step runs.
  End,       ///< The plot ends with the `RunTimeError`.
};

struct FailureRule {
  std::string_view plot;
  OnFailure rule;
};

inline constexpr std::array kFailureRules = {
    FailureRule{"DrawMap", OnFailure::FallBack},
    FailureRule{"DrawValues", OnFailure::FallBack},
    FailureRule{"DrawSurface", OnFailure::FallBack},
    FailureRule{"DrawBars", OnFailure::FallBack},
    FailureRule{"DrawHistogram", OnFailure::Drop},
    FailureRule{"DrawContours", OnFailure::End},
    FailureRule{"DrawScan", OnFailure::End},
    FailureRule{"DrawScanGrid", OnFailure::End},
    FailureRule{"DrawOrientationMark", OnFailure::End},
    FailureRule{"DrawOpenOrientationMark", OnFailure::End},
};

}  // namespace discoplan
