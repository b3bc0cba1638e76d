# SPDX-License-Identifier: MIT
"""Wafers in the axes of matplotlib, in millimetres and with the library's colours."""

from typing import TYPE_CHECKING, Any, Optional, Tuple

from . import _core
from ._wafer import Wafer

if TYPE_CHECKING:
    from matplotlib.axes import Axes
    from matplotlib.colors import ListedColormap
    from matplotlib.image import AxesImage


def colormap(name: str, steps: int = 256) -> "ListedColormap":
    """A colour map of the library; raises `ValueError` for a name that is none."""
    import numpy as np
    from matplotlib.colors import ListedColormap

    return ListedColormap(np.asarray(_core.colours(name, steps)) / 255.0, name=name)


def draw(
    ax: "Axes",
    wafer: Wafer,
    *,
    n: int = 300,
    limits: Optional[Tuple[float, float]] = None,
    colours: str = "viridis",
    bands: Optional[int] = None,
    interpolation: str = "smooth",
    dots: bool = True,
    **image: Any,
) -> "AxesImage":
    """Draws the map of a wafer into axes, whose coordinates are mm from its centre.

    The image has n x n points and is cut at the test area; further keywords go to `imshow`. Gives
    the image, for `figure.colorbar`.
    """
    from matplotlib.patches import Circle

    values = wafer.lattice(n, interpolation=interpolation)
    low, high = limits if limits is not None else (wafer.value.min(), wafer.value.max())
    shown = ax.imshow(
        values,
        extent=wafer.extent,
        cmap=colormap(colours, bands or 256),
        vmin=low,
        vmax=high,
        interpolation="nearest",
        **image,
    )
    radius = wafer.diameter / 2
    shown.set_clip_path(Circle((0, 0), wafer.test_diameter / 2, transform=ax.transData))
    ax.add_patch(Circle((0, 0), radius, fill=False, edgecolor="0.3", linewidth=1))
    if dots:
        ax.plot(wafer.x, wafer.y, ".", color="black", markersize=2)
    margin = 0.04 * radius
    ax.set_xlim(-radius - margin, radius + margin)
    ax.set_ylim(-radius - margin, radius + margin)
    ax.set_aspect("equal")
    ax.set_xlabel("x in mm")
    ax.set_ylabel("y in mm")
    ax.set_title(wafer.name)
    return shown
