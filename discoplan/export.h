// SPDX-License-Identifier: MIT
#pragma once

/// Marks the names that the shared library gives out; everything else stays inside.
#if defined(DISCOPLAN_STATIC)
#define DISCOPLAN_EXPORT
#elif defined(_WIN32)
#if defined(DISCOPLAN_BUILDING)
#define DISCOPLAN_EXPORT __declspec(dllexport)
#else
#define DISCOPLAN_EXPORT __declspec(dllimport)
#endif
#else
#define DISCOPLAN_EXPORT __attribute__((visibility("default")))
#endif
