# SPDX-License-Identifier: MIT
"""Keywords of Python as the fields of the C interface."""

from functools import lru_cache
from typing import Any, List, Optional, Sequence, Tuple, Union

from . import _core

FLAGS = {
    "dark": 1,
    "transparent": 2,
    "no_legend": 4,
    "values": 8,
    "no_isolines": 16,
    "no_dots": 32,
}
_LIMITED, _CUT, _CONTROL_LIMITS = 64, 128, 256
ORIENTATIONS = ("notch", "flat", "none")
SIDES = ("bottom", "left", "top", "right")
LOOKS = ("modern", "classic")
_METHODS = {"smooth": 0, "idw4": -1}


def choice(names: Sequence[str], given: str, what: str) -> int:
    """The number of a name; raises `ValueError` for one that is none."""
    if given in names:
        return list(names).index(given)
    raise ValueError(f"{what}: {given!r} is none of {', '.join(names)}")


@lru_cache(maxsize=None)
def _every_figure() -> List[str]:
    return [row[0] for row in _core.figures()]


def figure_keys(wanted: Union[str, Sequence[str], None]) -> List[str]:
    """The keys of the figures asked for, in the library's order; None asks for all.

    Raises `ValueError` for a key that is none, and for no keys.
    """
    known = _every_figure()
    if wanted is None:
        return list(known)
    keys = [wanted] if isinstance(wanted, str) else list(wanted)
    for key in keys or [""]:
        if key not in known:
            choice(known, key, "figures")
    return [key for key in known if key in keys]


def figure_mask(wanted: Union[str, Sequence[str], None]) -> int:
    """The same as bits, where 0 asks for all."""
    if wanted is None:
        return 0
    keys = figure_keys(wanted)
    return sum(1 << i for i, key in enumerate(_every_figure()) if key in keys)


def _pair(given: Any, what: str) -> Tuple[float, float]:
    try:
        low, high = given
        return float(low), float(high)
    except (TypeError, ValueError):
        raise ValueError(f"{what} takes two numbers, not {given!r}") from None


def plot_fields(
    *,
    look: str = "modern",
    size: Any = None,
    limits: Optional[Tuple[float, float]] = None,
    control_limits: Optional[Tuple[float, float]] = None,
    interpolation: Optional[str] = None,
    mm: Optional[Tuple[float, float]] = None,
    **given: Any,
) -> dict[str, Any]:
    """The fields of `discoplan_plot_options`."""
    fields: dict[str, Any] = {}
    flags = 0
    if look != "modern":
        fields["look"] = choice(LOOKS, look, "look")
    if size is not None:
        width, height = _pair(size, "size")
        fields["width"], fields["height"] = int(width), int(height)
    if mm is not None:
        fields["width_mm"], fields["height_mm"] = _pair(mm, "mm")
    if limits is not None:
        fields["low"], fields["high"] = _pair(limits, "limits")
        flags |= _LIMITED
    if control_limits is not None:
        fields["lower_control"], fields["upper_control"] = _pair(control_limits, "control_limits")
        flags |= _CONTROL_LIMITS
    if interpolation is not None:
        if interpolation not in _METHODS:
            raise ValueError(f"interpolation: {interpolation!r} is neither smooth nor idw4")
        fields["method"] = _METHODS[interpolation]
    for name, value in given.items():
        if name in FLAGS:
            flags |= FLAGS[name] if value else 0
        elif value is not None:
            fields[name] = value
    if "cut" in fields:
        flags |= _CUT
    fields["flags"] = flags
    return fields


def wafer_fields(
    *,
    orientation: str = "notch",
    notch: str = "bottom",
    edge_exclusion: Optional[float] = None,
    **given: Any,
) -> dict[str, Any]:
    """The fields of `discoplan_wafer_options`, or those of a reader that it shares."""
    fields = {name: value for name, value in given.items() if value is not None}
    if orientation != "notch":
        fields["orientation"] = choice(ORIENTATIONS, orientation, "orientation")
    if notch != "bottom":
        fields["notch_side"] = choice(SIDES, notch, "notch")
    if edge_exclusion is not None:
        fields["edge_given"], fields["edge_exclusion"] = 1, edge_exclusion
    return fields
