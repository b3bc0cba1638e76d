// SPDX-License-Identifier: MIT
#pragma once

/// The nine controls: members by name, values of Python.

#include "bindings/python/src/python.h"

namespace discoplan::python {

Object NewControl(Arguments args);     ///< class, width, height
Object ControlResize(Arguments args);  ///< control, width, height
Object ControlGet(Arguments args);     ///< control, name
Object ControlSet(Arguments args);     ///< control, name, value
/// control, name, tuple of arguments. Gives the result, then all arguments as the method left them.
Object ControlCall(Arguments args);
Object ControlListen(Arguments args);   ///< control, callable or None
Object ControlMouse(Arguments args);    ///< control, child or None, event, button, shift, x, y
Object ControlPicture(Arguments args);  ///< control
Object ControlPrint(Arguments args);    ///< control, width and height in mm, or 0 and 0

}  // namespace discoplan::python
