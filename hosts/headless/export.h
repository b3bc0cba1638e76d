// SPDX-License-Identifier: MIT
#pragma once

#include "discoplan/export.h"

/// Marks the names that the host without a display gives out.
#if defined(DISCOPLAN_HEADLESS_BUILDING)
#define DISCOPLAN_HEADLESS_EXPORT DISCOPLAN_GIVEN_OUT
#else
#define DISCOPLAN_HEADLESS_EXPORT DISCOPLAN_TAKEN_IN
#endif
