# SPDX-License-Identifier: MIT
"""Pictures as pixels and as files."""

import os
from typing import TYPE_CHECKING, Any, Tuple, Union

from . import _core

if TYPE_CHECKING:
    import numpy as np

_FORMATS = {"png": 0, "svg": 1, "pdf": 2}


class Picture:
    """A drawn picture. A notebook shows it by itself; `numpy.asarray` gives its pixels.

    Files are made when they are asked for. In the classic look `svg` and `pdf` are a page as the
    control prints it. The picture of a control has pixels alone, so that they raise `ValueError`.
    """

    __slots__ = ("_handle",)

    def __init__(self, handle: _core.Handle) -> None:
        self._handle = handle

    @property
    def size(self) -> Tuple[int, int]:
        """Width and height in pixels."""
        return _core.picture_size(self._handle)

    def png(self) -> bytes:
        """The bytes of a PNG file."""
        return _core.picture_file(self._handle, 0)

    def svg(self) -> str:
        """The text of an SVG file."""
        return _core.picture_file(self._handle, 1).decode()

    def pdf(self) -> bytes:
        """The bytes of a PDF file of one page."""
        return _core.picture_file(self._handle, 2)

    def save(self, path: "Union[str, os.PathLike[str]]") -> None:
        """Writes a file; its ending tells the format: .png, .svg or .pdf.

        The file appears whole or not at all. Raises `OSError` if it can't be written and
        `ValueError` for another ending.
        """
        _core.picture_save(self._handle, os.fsdecode(path))

    def rgba(self) -> memoryview:
        """The pixels: height x width x 4 bytes, red, green, blue, alpha."""
        return _core.picture_rgba(self._handle)

    def __array__(self, dtype: Any = None, copy: Any = None) -> "np.ndarray[Any, Any]":
        import numpy as np

        pixels = np.asarray(self.rgba())
        return pixels if dtype is None else pixels.astype(dtype)

    def _repr_png_(self) -> bytes:
        return self.png()

    def __reduce__(self) -> Tuple[Any, ...]:
        raise TypeError("a picture can't be pickled; hand on its png(), svg() or pdf(), or the wafer")

    def __repr__(self) -> str:
        width, height = self.size
        return f"<Picture of {width} x {height} pixels>"
