// SPDX-License-Identifier: MIT
#pragma once

/// What the type library and the registry know the server and its parts by. None ever changes.

#include <string>

#include "discoplan/controls/control_class.h"

namespace discoplan::activex {

inline constexpr const char* kLibraryId = "08963C29-141B-4094-BD27-5759BBF5B882";
inline constexpr int kMajorVersion = 1;
inline constexpr int kMinorVersion = 0;

/// Of a class's members, and of its events: next to the class's own id.
std::string MembersId(const ControlClass& row);
std::string EventsId(const ControlClass& row);

/// The resource that shows the class in a designer's toolbox.
int ToolboxPicture(const ControlClass& row);

/// Property pages by their names; empty for one that there isn't.
std::string_view PageId(std::string_view page);

}  // namespace discoplan::activex
