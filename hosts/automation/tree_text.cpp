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
      {"left", ToJson(node.Box().left)},
      {"top", ToJson(node.Box().top)},
      {"width", ToJson(node.Box().width)},
      {"height", ToJson(node.Box().height)},
      {"visible", node.Visible() ? -1 : 0},
      {"back_color", node.BackColor()},
      {"children", json::array()},
  };
  if (HasCaption(node.kind)) tree["caption"] = node.Text();
  if (node.kind == NodeKind::Text) tree["text"] = node.Text();
  if (HasValue(node.kind)) tree["value"] = node.Value();
  if (node.kind == NodeKind::Options) tree["options"] = node.Options();
  for (const auto& child : node.children()) tree["children"].push_back(TreeToJson(*child));
  return tree;
}

json FieldsToJson(const Node& form) {
  json fields = json::object();
  if (form.kind == NodeKind::Text) fields[form.name] = form.Text();
  if (HasValue(form.kind)) fields[form.name] = form.Value();
  for (const auto& child : form.children()) fields.update(FieldsToJson(*child));
  return fields;
}

}  // namespace discoplan
