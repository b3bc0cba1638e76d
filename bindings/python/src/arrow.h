// SPDX-License-Identifier: MIT
#pragma once

/// Tables and columns by the Arrow PyCapsule interface, of whichever library made them.

#include "bindings/python/src/python.h"

namespace discoplan::python {

/// A `memoryview` of doubles from the capsule of a stream of one column; not a number for nulls.
Object ColumnFromStream(PyObject* capsule, const char* name);
/// The same from the two capsules of an array.
Object ColumnFromArray(PyObject* schema, PyObject* array, const char* name);

/// The rows of a table, sorted by wafer: `numbers` are names of columns, `keys` those that tell
/// the wafers apart. Gives a list of `memoryview`s of doubles, offsets of the wafers in them as a
/// `memoryview`, and a list of the keys' texts for each wafer, in the order of the table.
Object GroupedTable(PyObject* capsule, PyObject* numbers, PyObject* keys);

}  // namespace discoplan::python
