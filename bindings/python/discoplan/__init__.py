# SPDX-License-Identifier: MIT
"""Plots and statistics of measured semiconductor wafers.

    >>> import discoplan as dp
    >>> wafer = dp.Wafer([0, 10, 0, -10], [0, 0, 10, 0], [1.0, 2.0, 3.0, 4.0], unit="nm")
    >>> round(wafer.statistics().mean, 3)
    2.5
    >>> wafer.plot("2D").save("map.png")

Positions are millimetres from the wafer's centre, Y up; values are numbers in their own unit. What
is bad raises `ValueError`, `TypeError` or `FileNotFoundError` with the library's own text. Neither
numpy nor any other package is imported unless it is used; where numpy is installed, arrays come
out as its own, else as `memoryview`.

Any number of threads may use a wafer, a lot or a picture; drawing, reading and interpolating let
other threads run meanwhile. Arrays are read once, while the call runs, and aren't kept: an array
that another thread writes to at that time gives some of its old and some of its new numbers.
"""

from typing import TYPE_CHECKING, Any

from . import _core
from ._lot import Lot, read
from ._picture import Picture
from ._wafer import Wafer

if TYPE_CHECKING:
    from . import arrow as arrow
    from . import matplotlib as matplotlib
    from ._figures import Statistics as Statistics
    from .controls import DrawColEnum as DrawColEnum
    from .controls import ExconEnum as ExconEnum
    from .controls import Histo as Histo
    from .controls import LineScan as LineScan
    from .controls import Plot2D as Plot2D
    from .controls import Plot2DC as Plot2DC
    from .controls import Plot2DN as Plot2DN
    from .controls import Plot2DS as Plot2DS
    from .controls import Plot3D as Plot3D
    from .controls import Plot3DB as Plot3DB
    from .controls import Plot3DS as Plot3DS
    from .controls import PlotTyEnum as PlotTyEnum
    from .controls import PlotTypeEnum as PlotTypeEnum
    from .controls import PlotTypeEnumLineScan as PlotTypeEnumLineScan
    from .controls import ResoEnum as ResoEnum
    from .controls import Sites as Sites
    from .controls import WaferSt as WaferSt

__version__: str = _core.version()
__all__ = ["Lot", "Picture", "Wafer", "colour_names", "mean", "read"]


def mean(wafers: "list[Wafer]") -> Wafer:
    """The mean wafer of several, at the sites of the first one.

    A site takes its partner in another wafer within 0.1 mm, and an interpolated value where there
    is none. Raises `ValueError` for no wafers.
    """
    return Wafer._of(_core.mean([wafer._handle for wafer in wafers])[0])


def colour_names() -> list[str]:
    """Names for `colours`; with "_r" behind one the map is reversed."""
    return _core.colour_names().split(", ")


def __dir__() -> list[str]:
    from . import controls

    return sorted([*__all__, *controls.__all__, "Statistics", "__version__", "arrow", "controls", "matplotlib"])


def __getattr__(name: str) -> Any:
    import importlib

    if name in ("arrow", "matplotlib", "controls"):
        return importlib.import_module(f"{__name__}.{name}")
    if name == "Statistics":
        return importlib.import_module(f"{__name__}._figures").Statistics
    if not name.startswith("_"):
        controls = importlib.import_module(f"{__name__}.controls")
        if name in controls.__all__:
            return getattr(controls, name)
    raise AttributeError(f"module 'discoplan' has no attribute '{name}'")
