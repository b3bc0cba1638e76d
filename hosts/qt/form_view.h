// SPDX-License-Identifier: MIT
#pragma once

/// A tree of nodes as real widgets: a frame is a group box, a text box a line edit, a spinner a
/// spin box. What the user does reaches the nodes; what changes in the nodes is noted, and reaches
/// their widgets before the event loop goes on, or with the next `Sync`. One view to a tree; the
/// thread of both is that of the user interface.

#include <QEvent>
#include <QFont>
#include <QWidget>
#include <functional>
#include <unordered_map>
#include <vector>

#include "discoplan/forms/node.h"
#include "hosts/qt/export.h"

namespace discoplan::qt {

/// The application's font in the size that forms are laid out for.
DISCOPLAN_QT_EXPORT QFont FormFont(const discoplan::Font& font);

struct MouseOnNode {
  QEvent::Type type;
  int button = 0;
  int shift = 0;
  float x = 0;
  float y = 0;
};

class DISCOPLAN_QT_EXPORT FormView : public QWidget {
  Q_OBJECT

 public:
  /// The tree outlives the view.
  explicit FormView(Node& root, QWidget* parent = nullptr);
  ~FormView() override;

  /// Brings the widgets up to date with what changed in the nodes.
  void Sync();
  /// The widget of a node; nothing for one that isn't of this tree.
  QWidget* WidgetOf(const Node* node) const;
  /// Who hears of the mouse on nodes that pass it on.
  void OnMouse(std::function<void(Node&, const MouseOnNode&)> heard) { heard_ = std::move(heard); }
  /// Called around each handler of a node, so that its owner stays alive for it.
  void OnAct(std::function<void(const std::function<void()>&)> act) { act_ = std::move(act); }
  /// Who hears that a picture that grows wants to be seen; nobody needs to.
  void OnGrowth(std::function<void(QWidget&)> grown) { grown_ = std::move(grown); }

 protected:
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  struct Entry {
    Node* node;
    QWidget* widget;
    QList<QWidget*> choices;  // of a group
    unsigned stale = ~0U;     // which aspects, as a mask
  };

  void Build(Node& node, QWidget* parent);
  void BuildOptions(Node& node, Entry& entry);
  void Note(Node& node, Aspect aspect);
  void SyncEntry(Entry& entry);
  void SyncPlace(const Entry& entry);
  void SyncText(const Entry& entry);
  void SyncValue(const Entry& entry);
  void Act(const std::function<void()>& act);
  bool HandleMouse(Node& node, QEvent* event);
  void SetTabOrder();

  Node& root_;
  std::vector<Entry> entries_;  // outer ones first
  std::unordered_map<const Node*, std::size_t> places_;
  std::unordered_map<const QObject*, std::size_t> widgets_;
  std::function<void(Node&, const MouseOnNode&)> heard_;
  std::function<void(const std::function<void()>&)> act_;
  std::function<void(QWidget&)> grown_;
  bool has_stale_ = true;
  bool is_due_ = false;
  bool syncing_ = false;
};

}  // namespace discoplan::qt
