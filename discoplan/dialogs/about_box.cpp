// SPDX-License-Identifier: MIT
#include "discoplan/dialogs/about_box.h"

#include <array>

#include "discoplan/core/wafer.h"
#include "discoplan/dialogs/previews.h"
#include "discoplan/platform/member_list.h"
#include "discoplan/version.h"

namespace discoplan {
namespace {

constexpr const char* kTitle = "Discoplan.OCX Type: ";
constexpr std::array<const char*, 10> kPlotNames = {
    "",
    "2D Plot",
    "3D Plot",
    "2D Sigma Range Plot",
    "3D Sigma Range Plot",
    "2D Contour Plot ",
    "Line Scan",
    "Histogram",
    "2D Value Plot",
    "3D Bar Plot",
};

constexpr std::array kMembers = {
    Method<&frmAbout::SetTitle>({.name = "SetTitle", .parameters = {"number"}}),
};
constexpr MemberTable kTable(kMembers);

Node& AddLine(Node& root, const char* name, float top, const std::string& text) {
  Node& label = root.Add(NodeKind::Label, name, {1500, top, 4200, 285});
  label.Text(text);
  return label;
}

}  // namespace

frmAbout::frmAbout(Platform& platform)
    : Form(platform, "frmAbout", "Discoplan.OCX ActiveX Control"),
      icon_(AddPicture(root_, "picIcon", {240, 240, 1020, 1020})),
      title_(AddLine(root_, "lblTitle", 240, kTitle)) {
  wafer outline;
  outline.FlatRatio = 1;
  ShowWaferPreview(outline, *icon_.Picture(), 0);
  AddLine(root_, "lblVersion", 600, "Version " + LibraryVersion());
  AddLine(root_, "lblDescription", 960, "Plots of semiconductor wafers");
  accept_ = cancel_ = &root_.Add(NodeKind::Button, "cmdOK", {4500, 1440, 1200, 375});
  accept_->Text("OK");
  accept_->on_click = [this] { Hide(); };
  root_.Move({0, 0, 5940, 1995});
}

void frmAbout::SetTitle(std::int16_t number) {
  const bool known = number >= 1 && static_cast<std::size_t>(number) < kPlotNames.size();
  title_.caption(std::string(kTitle) + (known ? kPlotNames[static_cast<std::size_t>(number)] : ""));
}

const MemberTable& frmAbout::Members() const { return kTable; }

}  // namespace discoplan
