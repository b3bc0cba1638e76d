// SPDX-License-Identifier: MIT
#pragma once

/// The option dialog of the line scan: where the cut lies, on a small picture of the wafer.

#include <array>

#include "discoplan/dialogs/option_dialog.h"

namespace discoplan {

/// How a cut is given, with all that either way needs. Lengths in mm, the angle in degrees.
struct ScanSettings {
  std::int16_t type = 1;  ///< 1 through the third point at an angle, 2 through the first two.
  std::int16_t angle = 0;
  std::array<float, 3> x{};  ///< Of start, end and rotation point.
  std::array<float, 3> y{};
};

class DISCOPLAN_EXPORT frmPlotOpt1D final : public OptionDialog {
 public:
  explicit frmPlotOpt1D(Platform& platform);

  void SetValues(const wafer& source, const ScanSettings& settings);
  ScanSettings GetResult() const;

 private:
  static constexpr std::size_t kPoints = 3;

  struct PointFields {
    std::array<Node*, 2> labels;
    Node* x;
    Node* y;
    Node* marker;
  };

  void AddPoint(std::size_t i);
  Node& AddField(std::string name, float top);
  bool LeavePoint(std::size_t i, Node& field);
  bool Refuse(Node& field, const char* text);
  void MovePoint(std::size_t i);
  void ShowMode();
  void ShowLine();
  bool ByLine() const { return line_group_.value() == 2; }
  /// A place in mm on the picture of the wafer, in twips of the frame.
  SurfacePoint OnPicture(float x, float y) const;

  OptionGroup& line_group_;
  Node& side_;
  Node& picture_;
  Node& line_;
  std::array<PointFields, kPoints> points_{};
  Node& angle_label_;
  AngleEntry angle_;
  bool running_ = false;
};

}  // namespace discoplan
