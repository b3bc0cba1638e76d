// SPDX-License-Identifier: MIT
#pragma once

/// The retained tree of child surfaces that controls, dialogs and pages are made of.
///
/// Logic keeps handles to its nodes and changes them through setters; each change is noted. A host
/// shows the tree with its own widgets, follows the notes, and passes on what the user does. A
/// tree belongs to one thread. Positions are twips within the parent.
///
///     Node root(NodeKind::Control, "Plot2D", {0, 0, 6000, 4500});
///     Node& button = root.Add(NodeKind::Button, "Command1", {105, 2850, 1935, 300});
///     button.Text("Plot- Options");
///     button.on_click = [&] { ShowPlotOption(); };
///
/// and in a host
///
///     root.Watch([&](Node& node, Aspect aspect) { stale[&node] |= MaskOf(aspect); });
///     ...
///     button.Click();  // the user

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

  bool operator==(const TwipsBox&) const = default;
};

/// Which events of the mouse a node passes on to the host, as a mask.
enum ForwardedEvents : unsigned {
  kForwardsNothing = 0,
  kForwardsClick = 1,
  kForwardsDblClick = 2,
  kForwardsMouse = 4,  ///< MouseDown, MouseMove and MouseUp.
  kForwardsAll = 7,
};

enum class Alignment { Left, Centre, Right };

/// What of a node has changed.
enum class Aspect {
  Place,
  Visible,
  Text,
  Value,
  Look,      ///< Colours, font, alignment, border, captions of a group.
  Image,     ///< What an image node shows.
  Pixels,    ///< A picture was drawn on; told once, and again after `Picture::MarkShown`.
  Refresh,   ///< A picture that grows wants to be seen now.
  Children,  ///< A child was added to the node.
};

/// A set of aspects in bits.
constexpr unsigned MaskOf(Aspect aspect) { return 1U << static_cast<unsigned>(aspect); }

inline constexpr Colour kButtonFace = 0x8000000F;

class DISCOPLAN_EXPORT Node final : public discoplan::Label {
 public:
  Node(NodeKind node_kind, std::string node_name, const TwipsBox& place);
  Node(const Node&) = delete;
  Node& operator=(const Node&) = delete;
  ~Node() override { Picture(nullptr); }

  const NodeKind kind;
  const std::string name;  ///< A member of a control array is named like "scalCol(1)".

  // State: each value is read, and written with a note if it becomes another one.

  const TwipsBox& Box() const { return box_; }
  float Right() const { return box_.left + box_.width; }
  /// Takes a new place; a picture in it takes the new size, and comes first: one that can't have
  /// it leaves all as it was.
  void Move(const TwipsBox& place);
  void Width(float width) { Move({box_.left, box_.top, width, box_.height}); }
  bool Visible() const { return visible_; }
  void Visible(bool visible) override { Write(visible_, visible, Aspect::Visible); }
  /// Visible, and so are all around it.
  bool IsShown() const;
  /// Caption, or the text of a text box.
  const std::string& Text() const { return text_; }
  void Text(const std::string& text);
  void caption(const std::string& text) override { Text(text); }
  /// Of a spinner; 0 or 1 of a box; the choice of a group.
  std::int32_t Value() const { return value_; }
  void Value(std::int32_t value) { Write(value_, value, Aspect::Value); }
  /// Captions of a group.
  const std::vector<std::string>& Options() const { return options_; }
  void Options(std::vector<std::string> options) { Write(options_, options, Aspect::Look); }
  Colour BackColor() const { return back_color_; }
  void BackColor(Colour colour) override;
  Colour ForeColor() const { return fore_color_; }
  void ForeColor(Colour colour) { Write(fore_color_, colour, Aspect::Look); }
  const discoplan::Font& Font() const { return font_; }
  void Font(const discoplan::Font& font) { Write(font_, font, Aspect::Look); }
  discoplan::Alignment Alignment() const { return alignment_; }
  void Alignment(discoplan::Alignment alignment) { Write(alignment_, alignment, Aspect::Look); }
  /// A label's text goes on in a second line from here.
  const std::string& BreakBefore() const { return break_before_; }
  void BreakBefore(const std::string& start) { Write(break_before_, start, Aspect::Look); }
  /// A frame with a line around it and its caption in the line.
  bool Bordered() const { return bordered_; }
  void Bordered(bool bordered) { Write(bordered_, bordered, Aspect::Look); }
  unsigned Forwards() const { return forwards_; }
  void Forwards(unsigned mask) { Write(forwards_, mask, Aspect::Look); }
  /// What an image node stretches over itself.
  const std::shared_ptr<const Canvas>& Image() const { return image_; }
  void Image(const std::shared_ptr<const Canvas>& image) { Write(image_, image, Aspect::Image); }
  /// The surface of a picture node, or nothing. Who counts references may keep it.
  const std::shared_ptr<discoplan::Picture>& Picture() const { return picture_; }
  void Picture(std::shared_ptr<discoplan::Picture> picture);
  /// A label that is as wide as `measure` tells of it, in twips, from its next text on.
  void SizeByText(std::function<float(const Node&)> measure) { measure_ = std::move(measure); }

  // What the user does, as a host passes it on. What changes nothing is ignored.

  void Click();
  void Type(const std::string& text);
  void Tick(bool ticked);
  /// Of a group; a number that no option has is ignored.
  void Choose(std::int32_t option);
  /// So many steps upward.
  void Spin(int steps);
  void Key(int code);
  /// False keeps the focus here.
  bool Leave();

  // Who answers. A handler that is missing ignores it.

  std::function<void()> on_click;
  std::function<void()> on_change;   ///< The text, the tick or the choice is another one.
  std::function<bool()> on_leave;    ///< False keeps the focus here.
  std::function<void(int)> on_key;   ///< The code of the key.
  std::function<void(int)> on_spin;  ///< So many steps upward.

  // The tree.

  Node& Add(NodeKind child_kind, std::string child_name, const TwipsBox& place);
  const std::vector<std::unique_ptr<Node>>& children() const { return children_; }
  const Node* parent() const { return parent_; }
  /// This node or the one of that name below it, or nothing: for hosts that are given names.
  Node* Find(std::string_view wanted);
  /// Who is told of changes of this node and all below it; nobody for none. It is called in the
  /// midst of the change and had better only take note.
  using Watcher = std::function<void(Node&, Aspect)>;
  void Watch(Watcher watcher);

 private:
  template <class T>
  void Write(T& field, const T& value, Aspect aspect) {
    if (field == value) return;
    field = value;
    Note(aspect);
  }
  void Note(Aspect aspect);

  Node* parent_ = nullptr;
  std::vector<std::unique_ptr<Node>> children_;
  std::shared_ptr<const Watcher> watcher_;
  std::function<float(const Node&)> measure_;

  TwipsBox box_;
  bool visible_ = true;
  bool bordered_ = false;
  discoplan::Alignment alignment_ = discoplan::Alignment::Left;
  unsigned forwards_ = kForwardsNothing;
  std::int32_t value_ = 0;
  Colour back_color_ = kButtonFace;
  Colour fore_color_ = kBlack;
  std::string text_;
  std::string break_before_;
  std::vector<std::string> options_;
  discoplan::Font font_;
  std::shared_ptr<discoplan::Picture> picture_;
  std::shared_ptr<const Canvas> image_;
};

/// The name of a member of a control array: "scalCol(1)".
DISCOPLAN_EXPORT std::string IndexedName(std::string_view array, std::size_t index);

/// Calls `visit` with the node and all below it, outer ones first.
template <class Visit>
void ForEachNode(Node& node, const Visit& visit) {
  visit(node);
  for (const auto& child : node.children()) ForEachNode(*child, visit);
}

}  // namespace discoplan
