// SPDX-License-Identifier: MIT
#pragma once

/// The server's entries in the registry: for the whole machine, or for one user without rights.

#include "hosts/activex/com.h"

namespace discoplan::activex {

enum class Registry { Machine, User };

/// Enters all classes and the type library. What fails half-way leaves no entry behind.
HRESULT Register(Registry registry);
/// Takes out all entries; those that aren't there are no failure.
HRESULT Unregister(Registry registry);

}  // namespace discoplan::activex
