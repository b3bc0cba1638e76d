// SPDX-License-Identifier: MIT
#include "hosts/automation/tree_text.h"

#include "hosts/recording/trace.h"

namespace discoplan {
namespace {

using nlohmann::json;

bool HasCaption(NodeKind kind) {
  return kind == NodeKind::Form || kind == NodeKind::Frame || kind == NodeKind::Label ||
         kind == NodeKind::Button || kind == NodeKind::Check || kind == NodeKind::Options;
}

bool HasValue(NodeKind kind) {
  return kind == NodeKind::Check || kind == NodeKind::Options || kind == NodeKind::Spinner;
}

}  // namespace

json TreeToJson(const Node& node) {
  json tree = {
      {"name", node.name},
      {"kind", NameOf(node.kind)},
      {"left", ToJson(node.box.left)},
      {"top", ToJson(node.box.top)},
      {"width", ToJson(node.box.width)},
      {"height", ToJson(node.box.height)},
      {"visible", node.visible ? -1 : 0},
      {"back_color", node.back_color},
      {"children", json::array()},
  };
  if (HasCaption(node.kind)) tree["caption"] = node.text;
  if (node.kind == NodeKind::Text) tree["text"] = node.text;
  if (HasValue(node.kind)) tree["value"] = node.value;
  if (node.kind == NodeKind::Options) tree["options"] = node.options;
  for (const auto& child : node.children()) tree["children"].push_back(TreeToJson(*child));
  return tree;
}

json FieldsToJson(const Node& form) {
  json fields = json::object();
  if (form.kind == NodeKind::Text) fields[form.name] = form.text;
  if (HasValue(form.kind)) fields[form.name] = form.value;
  for (const auto& child : form.children()) fields.update(FieldsToJson(*child));
  return fields;
}

}  // namespace discoplan
