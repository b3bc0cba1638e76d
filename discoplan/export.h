// SPDX-License-Identifier: MIT
#pragma once

#if (defined(_MSVC_LANG) ? _MSVC_LANG : __cplusplus) < 202002L
#error "Discoplan's headers need C++20: compile with -std=c++20 or a newer standard"
#endif

// What the library was built with, where it is installed.
#if __has_include("discoplan/built_with.h")
#include "discoplan/built_with.h"
#endif

/// Marks the names that a shared library gives out; everything else stays inside. Each library has
/// a mark of its own, since on Windows its maker and its users must see it differently.
#if defined(DISCOPLAN_STATIC)
#define DISCOPLAN_GIVEN_OUT
#define DISCOPLAN_TAKEN_IN
#elif defined(_WIN32)
#define DISCOPLAN_GIVEN_OUT __declspec(dllexport)
#define DISCOPLAN_TAKEN_IN __declspec(dllimport)
#else
#define DISCOPLAN_GIVEN_OUT __attribute__((visibility("default")))
#define DISCOPLAN_TAKEN_IN DISCOPLAN_GIVEN_OUT
#endif

/// Marks the names that the library of the plots gives out.
#if defined(DISCOPLAN_BUILDING)
#define DISCOPLAN_EXPORT DISCOPLAN_GIVEN_OUT
#else
#define DISCOPLAN_EXPORT DISCOPLAN_TAKEN_IN
#endif
