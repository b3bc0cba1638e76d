// SPDX-License-Identifier: MIT
#pragma once

/// The retained tree of child surfaces that controls, dialogs and pages are made of.
///
/// A node is plain data: logic reads and writes it, a host shows the tree with its own widgets and
/// calls the handlers when the user acts. Positions are twips within the parent.
///
///     Node root(NodeKind::Control, "Plot2D", {0, 0, 6000, 4500});
///     Node& button = root.Add(NodeKind::Button, "Command1", {105, 2850, 1935, 300});
///     button.text = "Plot- Options";
///     button.on_click = [&] { ShowPlotOption(); };

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "discoplan/export.h"
#include "discoplan/raster/picture.h"
#include "discoplan/render/label.h"
#include "discoplan/render/surface.h"

namespace discoplan {

enum class NodeKind {
  Control,
  Form,
  Frame,
  Panel,
  Label,
  Picture,
  Image,
  Button,
  Text,
  Check,
  Options,
  Spinner,
  Line,
};

/// The kind's name in a tree that is shown as text.
DISCOPLAN_EXPORT std::string_view NameOf(NodeKind kind);

struct TwipsBox {
  float left = 0;
  float top = 0;
  float width = 0;
  float height = 0;
};

/// Which events of the mouse a node passes on to the host.
enum ForwardedEvents : unsigned {
  kForwardsNothing = 0,
  kForwardsClick = 1,
  kForwardsDblClick = 2,
  kForwardsMouse = 4,  ///< MouseDown, MouseMove and MouseUp.
  kForwardsAll = 7,
};

enum class Alignment { Left, Centre, Right };

inline constexpr Colour kButtonFace = 0x8000000F;

class DISCOPLAN_EXPORT Node final : public discoplan::Label {
 public:
  Node(NodeKind node_kind, std::string node_name, const TwipsBox& place);
  Node(const Node&) = delete;
  Node& operator=(const Node&) = delete;

  const NodeKind kind;
  const std::string name;  ///< A member of a control array is named like "scalCol(1)".
  TwipsBox box;
  bool visible = true;
  bool auto_size = false;  ///< A label as wide as its text.
  Alignment alignment = Alignment::Left;
  std::string break_before;          ///< A label's text goes on in a second line from here.
  bool bordered = false;             ///< A frame with a line around it and its caption in the line.
  std::string text;                  ///< Caption, or the text of a text box.
  std::int32_t value = 0;            ///< Of a spinner; 0 or 1 of a box; the choice of a group.
  std::vector<std::string> options;  ///< Captions of a group.
  Colour back_color = kButtonFace;
  Colour fore_color = kBlack;
  Font font;
  unsigned forwards = kForwardsNothing;
  std::unique_ptr<discoplan::Picture> picture;  ///< Of a picture node.
  std::shared_ptr<const Canvas> image;          ///< What an image node stretches over itself.

  // What the user does. A handler that is missing ignores it.
  std::function<void()> on_click;
  std::function<void()> on_change;   ///< The text, the tick or the choice is another one.
  std::function<bool()> on_leave;    ///< False keeps the focus here.
  std::function<void(int)> on_key;   ///< The code of the key.
  std::function<void(int)> on_spin;  ///< So many steps upward.
  /// Measures the width of a text in twips, for labels that size themselves.
  std::function<float(const Node&)> measure;

  Node& Add(NodeKind child_kind, std::string child_name, const TwipsBox& place);
  const std::vector<std::unique_ptr<Node>>& children() const { return children_; }
  /// This node or the one of that name below it, or nothing.
  Node* Find(std::string_view wanted);
  const Node* parent() const { return parent_; }
  /// Visible, and so are all around it.
  bool IsShown() const;

  /// Takes a new place; a picture in it takes the new size.
  void Move(const TwipsBox& place);
  void Width(float width) { Move({box.left, box.top, width, box.height}); }
  float Right() const { return box.left + box.width; }

  void caption(const std::string& new_text) override;
  void Visible(bool new_visible) override { visible = new_visible; }
  void BackColor(Colour colour) override;

 private:
  Node* parent_ = nullptr;
  std::vector<std::unique_ptr<Node>> children_;
};

}  // namespace discoplan
