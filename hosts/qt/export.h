// SPDX-License-Identifier: MIT
#pragma once

#include "discoplan/export.h"

/// Marks the names that the Qt host gives out.
#if defined(DISCOPLAN_QT_BUILDING)
#define DISCOPLAN_QT_EXPORT DISCOPLAN_GIVEN_OUT
#else
#define DISCOPLAN_QT_EXPORT DISCOPLAN_TAKEN_IN
#endif
