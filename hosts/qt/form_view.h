// SPDX-License-Identifier: MIT
#pragma once

/// A tree of nodes as real widgets: a frame is a group box, a text box a line edit, a spinner a
/// spin box. What the user does reaches the nodes' handlers; what the handlers change reaches the
/// widgets with the next `Sync`.

#include <QEvent>
#include <QFont>
#include <QWidget>
#include <functional>
#include <vector>

#include "discoplan/forms/node.h"

namespace discoplan::qt {

/// The application's font in the size that forms are laid out for.
DISCOPLAN_EXPORT QFont FormFont(const discoplan::Font& font);

struct MouseOnNode {
  QEvent::Type type;
  int button = 0;
  int shift = 0;
  float x = 0;
  float y = 0;
};

class DISCOPLAN_EXPORT FormView : public QWidget {
  Q_OBJECT

 public:
  /// The tree outlives the view.
  explicit FormView(Node& root, QWidget* parent = nullptr);

  /// Brings the widgets up to date with the nodes.
  void Sync();
  /// The widget of a node; nothing for one that isn't of this tree.
  QWidget* WidgetOf(const Node* node) const;
  /// Who hears of the mouse on nodes that pass it on.
  void OnMouse(std::function<void(Node&, const MouseOnNode&)> heard) { heard_ = std::move(heard); }
  /// Called around each handler of a node, so that its owner stays alive for it.
  void OnAct(std::function<void(const std::function<void()>&)> act) { act_ = std::move(act); }

 protected:
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  struct Entry {
    Node* node;
    QWidget* widget;
    QList<QWidget*> choices;  // of a group
  };

  void Build(Node& node, QWidget* parent);
  void BuildOptions(Node& node, Entry& entry);
  void SyncEntry(const Entry& entry);
  void SyncValue(const Entry& entry);
  void Act(const std::function<void()>& handler);
  bool HandleMouse(Node& node, QEvent* event);
  void SetTabOrder();

  std::vector<Entry> entries_;
  std::function<void(Node&, const MouseOnNode&)> heard_;
  std::function<void(const std::function<void()>&)> act_;
  bool syncing_ = false;
};

}  // namespace discoplan::qt
