# SPDX-License-Identifier: MIT
"""What becomes of objects that aren't floats in memory."""

import math
from typing import Any, Optional, Sequence

from . import _core


def refuse_twice(names: Sequence[str], what: str) -> None:
    """Raises `ValueError` for a column that is named twice."""
    for name in names:
        if list(names).count(name) > 1:
            raise ValueError(f"{what}: '{name}' is named twice; name each column once")


def _by_arrow(column: Any, name: str) -> Optional[memoryview]:
    if hasattr(column, "__arrow_c_array__"):
        schema, array = column.__arrow_c_array__()
        return _core.arrow_column(schema, array, name)
    if hasattr(column, "__arrow_c_stream__"):
        try:
            return _core.arrow_stream(column.__arrow_c_stream__(), name)
        except ImportError:  # a pandas without pyarrow
            return None
    return None


def _by_numpy(column: Any, name: str) -> Any:
    import numpy as np

    if hasattr(column, "filled"):  # a masked array
        return column.astype(np.float64).filled(np.nan)
    if hasattr(column, "to_numpy"):
        return column.to_numpy(dtype=np.float64, na_value=np.nan)
    array = column.__array__()
    if array.dtype.kind not in "fiu":
        raise TypeError(f"{name} holds {array.dtype}; give numbers, as by astype(float)")
    return array.astype(np.float64)


def numbers(column: Any, name: str) -> Any:
    """The numbers of a column as floats in memory; not a number for what is missing."""
    if isinstance(column, (str, bytes, bytearray, dict, set, frozenset)):  # sets have no order
        raise TypeError(f"{name} is a {type(column).__name__}; give numbers")
    if getattr(getattr(column, "dtype", None), "kind", None) == "O":
        nullable = hasattr(column.dtype, "na_value")  # of pandas, over numbers of its own
        if not nullable:
            raise TypeError(f"{name} holds Python objects; give numbers, as by astype(float)")
    if not hasattr(column, "filled"):
        found = _by_arrow(column, name)
        if found is not None:
            return found
    if hasattr(column, "__array__"):
        return _by_numpy(column, name)
    from array import array

    try:
        items = list(column)
        return array("d", [math.nan if item is None else item for item in items])
    except TypeError as error:
        raise TypeError(f"{name}: {error}; give one-dimensional numbers") from None


def as_array(view: memoryview) -> Any:
    """A numpy array of the same memory, or the view itself where there is no numpy."""
    try:
        import numpy as np
    except ImportError:
        return view
    return np.asarray(view)
