# SPDX-License-Identifier: MIT
"""One measured wafer."""

import warnings
from typing import TYPE_CHECKING, Any, Dict, Optional, Sequence, Tuple, Union, overload

from . import _core
from ._input import as_array
from ._options import figure_keys, figure_mask, plot_fields, wafer_fields
from ._picture import Picture

if TYPE_CHECKING:
    import numpy as np
    import numpy.typing as npt

    from ._figures import Statistics

    Floats = npt.NDArray[np.float32]

_METHODS = {"idw4": 0, "smooth": 1}


def repeats(wafer: "Wafer") -> Tuple[str, bool]:
    """What repeats a position, "" for nothing, and whether the wafer may be several."""
    repeated, may_be_several = _core.repeated(wafer._handle)
    if repeated == 0:
        return "", False
    of = f" of wafer {wafer.name!r}" if wafer.name else ""
    found = f"{repeated} of {len(wafer)} sites{of} repeat{'s' * (repeated == 1)} a position"
    return found, may_be_several == 1


class Wafer:
    """The sites of one wafer with their values. It never changes, and can be pickled.

    Args:
        x, y: Positions in mm from the wafer's centre, Y up; one-dimensional, equally long, 1 to
            32767 of them. Any buffer, Arrow column, array, series or sequence of numbers; floats in
            memory are read where they are, with any stride. They are read once and not kept.
        value: The measured values, in their own unit.
        diameter: Of the wafer in mm; by default the smallest standard one that holds all sites.
        unit, quantity: Of the values, such as "nm" and "Thickness", for plots.
        name: The title of plots.
        edge_exclusion: Width in mm of the ring at the rim that isn't looked at: sites in it are left
            out. By default 3, unless a site lies there.
        test_diameter: Of the measured area in mm, in place of `edge_exclusion`.
        orientation: "notch", "flat" or "none", at the side `notch`: "bottom", "left", "top" or
            "right".
        skip_invalid: Leave out sites with a number that is missing or infinite, and say so on plots,
            rather than refuse them.

    Raises:
        ValueError: For columns of other lengths or dimensions, bad numbers, sites off the wafer.
        TypeError: For what holds no numbers, such as texts or objects.

    Warns of positions half of which repeat, as those of several wafers do; plots say so, too.
    """

    __slots__ = ("_handle",)
    _handle: _core.Handle

    def __init__(
        self,
        x: Any,
        y: Any,
        value: Any,
        *,
        diameter: Optional[float] = None,
        unit: Optional[str] = None,
        name: Optional[str] = None,
        quantity: Optional[str] = None,
        edge_exclusion: Optional[float] = None,
        test_diameter: Optional[float] = None,
        orientation: str = "notch",
        notch: str = "bottom",
        skip_invalid: bool = False,
    ) -> None:
        fields = wafer_fields(
            diameter=diameter,
            unit=unit,
            name=name,
            quantity=quantity,
            edge_exclusion=edge_exclusion,
            test_diameter=test_diameter,
            orientation=orientation,
            notch=notch,
            skip_invalid=skip_invalid,
        )
        self._handle = _core.wafer(x, y, value, fields)
        found, are_several = repeats(self)
        if are_several:
            warnings.warn(f"{found}, as those of several wafers do; Lot(table, by) tells them apart", stacklevel=2)

    @classmethod
    def _of(cls, handle: _core.Handle) -> "Wafer":
        wafer = cls.__new__(cls)
        wafer._handle = handle
        return wafer

    def __len__(self) -> int:
        """How many sites there are."""
        return _core.wafer_info(self._handle)[0]

    @property
    def left_out(self) -> int:
        """How many of the measured sites aren't here."""
        return _core.wafer_info(self._handle)[1]

    @property
    def diameter(self) -> float:
        """In mm."""
        return _core.wafer_info(self._handle)[2]

    @property
    def test_diameter(self) -> float:
        """Of the measured area, in mm."""
        return _core.wafer_info(self._handle)[3]

    @property
    def name(self) -> str:
        """The title of plots; "" for none."""
        return _core.wafer_info(self._handle)[4]

    @property
    def quantity(self) -> str:
        """What was measured, as "Thickness"; "" if nobody said."""
        return _core.wafer_info(self._handle)[5]

    @property
    def unit(self) -> str:
        """Of the values, as "nm"; "" if nobody said."""
        return _core.wafer_info(self._handle)[6]

    @property
    def extent(self) -> Tuple[float, float, float, float]:
        """Left, right, bottom and top of the wafer's square in mm, as `imshow` takes it."""
        radius = self.diameter / 2
        return -radius, radius, -radius, radius

    @property
    def x(self) -> "Floats":
        """Positions of the sites in mm; float32, a copy."""
        numbers: "Floats" = as_array(_core.wafer_sites(self._handle)[0])
        return numbers

    @property
    def y(self) -> "Floats":
        """Positions of the sites in mm; float32, a copy."""
        numbers: "Floats" = as_array(_core.wafer_sites(self._handle)[1])
        return numbers

    @property
    def value(self) -> "Floats":
        """Values at the sites; float32, a copy."""
        numbers: "Floats" = as_array(_core.wafer_sites(self._handle)[2])
        return numbers

    @overload
    def statistics(self) -> "Statistics": ...
    @overload
    def statistics(self, figures: Union[str, Sequence[str]]) -> Dict[str, Optional[float]]: ...
    def statistics(self, figures: Union[str, Sequence[str], None] = None) -> Any:
        """Every figure of merit as a dataclass; None for one that has no meaning here.

        Keys, such as ["mean", "std_dev"], give a dictionary of these alone, and no others are
        computed: "interpolation_error" takes longer than all others. Raises `ValueError` for a key
        that is none.
        """
        if figures is not None:
            wanted = figure_mask(figures)
            found = zip(figure_keys(None), _core.statistics(self._handle, wanted))
            return {key: value for i, (key, value) in enumerate(found) if wanted >> i & 1}
        from ._figures import Statistics

        return Statistics(*_core.statistics(self._handle, 0))

    def interpolate(self, x: Any, y: Any) -> Any:
        """The inverse-distance-squared mean of the four nearest sites, at points in mm.

        Two numbers give a float; two columns of n numbers give n of float32. Not a number outside
        the test area, and for a wafer of fewer than four sites. Raises `ValueError` for columns of
        different lengths.
        """
        found = _core.interpolate(self._handle, x, y)
        return found if type(found) is float else as_array(found)

    def lattice(self, n: int, *, interpolation: str = "idw4") -> "Floats":
        """The values at the middles of n x n cells over the wafer's square, as float32.

        Row 0 is at the top, so that `imshow(wafer.lattice(200), extent=wafer.extent)` shows the
        wafer. Not a number outside the test area. `interpolation` is "idw4", as `interpolate`, or
        "smooth", the thin-plate spline of modern maps (Duchon 1977).
        """
        if interpolation not in _METHODS:
            raise ValueError(f"interpolation: {interpolation!r} is neither smooth nor idw4")
        method = _METHODS[interpolation]
        values: "Floats" = as_array(_core.lattice(self._handle, n, n, method, 0.0, 0.0, 0.0))
        return values

    def plot(
        self,
        kind: str = "2D",
        *,
        look: str = "modern",
        size: Optional[Tuple[int, int]] = None,
        mm: Optional[Tuple[float, float]] = None,
        dpi: Optional[float] = None,
        limits: Optional[Tuple[float, float]] = None,
        colours: Optional[str] = None,
        bands: Optional[int] = None,
        interpolation: Optional[str] = None,
        title: Optional[str] = None,
        font: Optional[str] = None,
        font_file: Optional[str] = None,
        dark: bool = False,
        transparent: bool = False,
        no_legend: bool = False,
        values: bool = False,
        no_isolines: bool = False,
        no_dots: bool = False,
        sigma_range: Optional[float] = None,
        cut: Optional[Tuple[float, float, float, float]] = None,
        bins: Optional[int] = None,
        control_limits: Optional[Tuple[float, float]] = None,
    ) -> Picture:
        """Draws the wafer.

        Args:
            kind: "2D" a map, "2DS" sigma ranges, "2DC" contours, "2DN" the values, "3D" a surface,
                "3DS" its sigma ranges, "3DB" bars, "histo" a histogram, "linescan" a cut.
            look: "modern", or "classic" as the controls draw it.
            size: Width and height in pixels, 50 to 10000; 800 x 600.
            mm: Width and height on paper instead, 20 to 2000 mm, at `dpi` (300).
            limits: Of the colour scale, instead of the values' own.
            colours: A colour map's name, see `colour_names`; "viridis".
            bands: Steps of the colour scale, 2 to 64; continuous.
            interpolation: "smooth" (thin-plate spline) or "idw4" (mean of the four nearest).
            title: In place of the wafer's name.
            font: Of all texts; the machine's, where Liberation Sans stands in for Arial. The controls
                of the classic look have fonts of their own.
            font_file: A font to use in place of the machine's Arial.
            dark, transparent, no_legend, values, no_isolines, no_dots: Of the page; `values` writes
                them beside the sites of a map.
            sigma_range: Half width of the band of sigma plots in standard deviations; 1.
            cut: Of a line scan, from x, y to x, y in mm; along X through the centre.
            bins, control_limits: Of a histogram.

        Raises:
            ValueError: For an option out of its range or unknown to the look.
        """
        fields = plot_fields(
            kind=kind,
            look=look,
            size=size,
            mm=mm,
            dpi=dpi,
            limits=limits,
            colours=colours,
            bands=bands,
            interpolation=interpolation,
            title=title,
            font=font,
            font_file=font_file,
            dark=dark,
            transparent=transparent,
            no_legend=no_legend,
            values=values,
            no_isolines=no_isolines,
            no_dots=no_dots,
            sigma_range=sigma_range,
            cut=cut,
            bins=bins,
            control_limits=control_limits,
        )
        return Picture(_core.plot(self._handle, fields))

    def _repr_png_(self) -> bytes:
        return self.plot().png()

    def __sub__(self, other: "Wafer") -> "Wafer":
        """This wafer minus another one at this one's sites.

        A site takes its partner within 0.1 mm, and an interpolated value where there is none.
        """
        if not isinstance(other, Wafer):
            return NotImplemented
        return Wafer._of(_core.minus(self._handle, other._handle)[0])

    def __reduce__(self) -> Tuple[Any, ...]:
        return _unpacked, (_core.pack_wafer(self._handle),)

    def __repr__(self) -> str:
        info = _core.wafer_info(self._handle)
        return f"<Wafer {info[4]!r}: {info[7]}, {info[2]:g} mm>"


def _unpacked(packed: bytes) -> Wafer:
    return Wafer._of(_core.unpack_wafer(packed))
