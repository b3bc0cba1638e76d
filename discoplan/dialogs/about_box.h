// SPDX-License-Identifier: MIT
#pragma once

#include "discoplan/forms/form.h"
#include "discoplan/platform/object.h"

namespace discoplan {

/// The about box. No control opens it; hosts may.
class DISCOPLAN_EXPORT frmAbout final : public Object, public Form {
 public:
  explicit frmAbout(Platform& platform);

  /// Names the plot of that number, 1 to 9; any other leaves the title without a name.
  void SetTitle(std::int16_t number);

  const MemberTable& Members() const override;

 private:
  Node& icon_;
  Node& title_;
};

}  // namespace discoplan
