// SPDX-License-Identifier: MIT
#pragma once

/// A window of its own: a tree of nodes with a caption, shown modally by the platform.
///
///     const auto options = std::make_shared<frmPlotOpt2d>(platform);
///     options->SetValues(lot_wafer, 5, false, kWhite);
///     platform.ShowModal(options, [options] {
///       if (options->Redraw()) Use(options->GetXRes());
///     });
///
/// A form belongs to one thread.

#include "discoplan/forms/node.h"
#include "discoplan/platform/platform.h"

namespace discoplan {

class DISCOPLAN_EXPORT Form {
 public:
  Form(Platform& platform, std::string name, const std::string& caption);
  Form(const Form&) = delete;
  Form& operator=(const Form&) = delete;
  virtual ~Form() = default;

  Node& root() { return root_; }
  const Node& root() const { return root_; }
  /// What Return and Escape press; may be nothing.
  Node* accept_button() { return accept_; }
  Node* cancel_button() { return cancel_; }

  void Show() { root_.Visible(true); }
  void Hide() { root_.Visible(false); }
  /// As the user's closing of the window.
  void Cancel();

 protected:
  Node& AddPicture(Node& parent, std::string name, const TwipsBox& place);

  Platform& platform_;
  Node root_;
  Node* accept_ = nullptr;
  Node* cancel_ = nullptr;
};

/// A white picture surface of the platform in a node of its own.
DISCOPLAN_EXPORT Node& AddPictureNode(Platform& platform, Node& parent, std::string name,
                                      const TwipsBox& place);

}  // namespace discoplan
