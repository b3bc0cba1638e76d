// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "discoplan/controls/control_factory.h"
#include "discoplan/dialogs/property_page.h"
#include "tests/activex/alone.h"

namespace discoplan::activex {

/// The numbers of the child windows that stand for nodes: they count from 100 in the tree's order.
class NodeIds {
 public:
  explicit NodeIds(Node& root) {
    ForEachNode(root, [this](Node& node) {
      const bool has = node.kind == NodeKind::Button || node.kind == NodeKind::Text ||
                       node.kind == NodeKind::Check || node.kind == NodeKind::Options ||
                       node.kind == NodeKind::Spinner || node.kind == NodeKind::Label ||
                       (node.kind == NodeKind::Frame && node.Bordered());
      if (has) ids_.emplace(node.name, kFirst + static_cast<int>(ids_.size()));
    });
  }
  NodeIds() = default;

  int operator[](const std::string& name) const { return ids_.at(name); }
  /// Nothing for a window of no node.
  std::string NameOf(int id) const {
    for (const auto& [name, number] : ids_) {
      if (number == id) return name;
    }
    return {};
  }

 private:
  static constexpr int kFirst = 100;
  std::map<std::string, int> ids_;
};

/// Those of a control, of its option dialog, and of a page.
struct Numbering {
  static NodeIds OfControl(const std::string& plot) {
    Shower shower;
    return NodeIds(shower.New(plot)->root());
  }
  static NodeIds OfDialog(const std::string& plot) {
    Shower shower;
    shower.New(plot)->ShowPlotOption();
    return shower.shown;
  }
  static NodeIds OfPage(const std::string& page) {
    Shower shower;
    return NodeIds(NewPropertyPage(page, shower)->root());
  }

 private:
  class Shower final : public Alone {
   public:
    std::shared_ptr<PlotControl> New(const std::string& plot) {
      auto control = NewControl(plot, *this, nullptr);
      control->root().Move({0, 0, 6000, 4500});
      control->InitProperties();
      return control;
    }
    NodeIds shown;

   private:
    void ShowModal(const std::shared_ptr<discoplan::Form>& form,
                   const std::function<void()>& done) override {
      shown = NodeIds(form->root());
      form->Cancel();
      if (done) done();
    }
  };
};

}  // namespace discoplan::activex
