# SPDX-License-Identifier: MIT
"""Lots: wafers by their names, from files and from tables."""

import os
from typing import TYPE_CHECKING, Any, Iterator, List, Optional, Sequence, Tuple, Union

from . import _core
from ._options import plot_fields, wafer_fields
from ._picture import Picture
from ._wafer import Wafer

if TYPE_CHECKING:
    from ._figures import Statistics

Names = Union[str, Sequence[str]]


class Lot:
    """Wafers by their names, in the order of the data.

    Made from a table of sites: a pandas, polars or pyarrow table, a DuckDB relation, or anything
    else with the Arrow PyCapsule interface; a dictionary of columns will do, too.

    Args:
        table: One row for each site.
        by: The column or columns whose texts tell the wafers apart; a wafer's name is those texts
            with commas between them.
        x, y, value: Names of the columns of positions in mm and of values.
        Others: As those of `Wafer`.

    Raises:
        ValueError: For a column that the table hasn't, and as `Wafer` does.
        TypeError: For what is no table, and for columns without numbers.
    """

    def __init__(
        self,
        table: Any,
        by: Names,
        x: str,
        y: str,
        value: str,
        *,
        diameter: Optional[float] = None,
        unit: Optional[str] = None,
        quantity: Optional[str] = None,
        edge_exclusion: Optional[float] = None,
        test_diameter: Optional[float] = None,
        orientation: str = "notch",
        notch: str = "bottom",
        skip_invalid: bool = False,
    ) -> None:
        keys = [by] if isinstance(by, str) else list(by)
        (xs, ys, values), offsets, names = _grouped(table, [x, y, value], keys)
        self.notes = ""
        self._wafers: List[Wafer] = []
        self.keys = names
        for i, texts in enumerate(names):
            rows = slice(offsets[i], offsets[i + 1])
            self._wafers.append(
                Wafer(
                    xs[rows],
                    ys[rows],
                    values[rows],
                    name=", ".join(texts),
                    diameter=diameter,
                    unit=unit,
                    quantity=value if quantity is None else quantity,
                    edge_exclusion=edge_exclusion,
                    test_diameter=test_diameter,
                    orientation=orientation,
                    notch=notch,
                    skip_invalid=skip_invalid,
                )
            )

    @classmethod
    def _of(cls, wafers: List[Wafer], notes: str = "") -> "Lot":
        lot = cls.__new__(cls)
        lot._wafers = wafers
        lot.keys = [(wafer.name,) for wafer in wafers]
        lot.notes = notes
        return lot

    notes: str
    """What was left out of a file and what may be wrong with it, a line each."""
    keys: List[Tuple[str, ...]]
    """The texts that tell the wafers apart."""

    def __len__(self) -> int:
        return len(self._wafers)

    def __iter__(self) -> Iterator[Wafer]:
        return iter(self._wafers)

    @property
    def names(self) -> List[str]:
        """Of the wafers, in their order."""
        return [wafer.name for wafer in self._wafers]

    def __getitem__(self, which: Union[str, int, Tuple[str, ...]]) -> Wafer:
        """The wafer of that name, or its keys, or that place from 0."""
        if isinstance(which, int):
            return self._wafers[which]
        for keys, wafer in zip(self.keys, self._wafers):
            if wafer.name == which or keys == which:
                return wafer
        raise KeyError(f"the lot has no wafer {which!r}, but {', '.join(self.names[:30])}")

    def __contains__(self, which: object) -> bool:
        return any(wafer.name == which for wafer in self._wafers)

    def statistics(self) -> "dict[str, Statistics]":
        """The figures of merit of each wafer, by its name."""
        return {wafer.name: wafer.statistics() for wafer in self._wafers}

    def mean(self) -> Wafer:
        """The mean wafer, at the sites of the first one."""
        return Wafer._of(_core.mean([wafer._handle for wafer in self._wafers])[0])

    def __sub__(self, other: "Union[Wafer, Lot]") -> "Lot":
        """Each wafer minus a wafer, or minus the wafer of the same name of another lot."""
        if isinstance(other, Wafer):
            return Lot._of([wafer - other for wafer in self._wafers])
        if isinstance(other, Lot):
            return Lot._of([wafer - other[wafer.name] for wafer in self._wafers])
        return NotImplemented

    def sheet(
        self,
        kind: str = "2D",
        *,
        title: Optional[str] = None,
        size: Optional[Tuple[int, int]] = None,
        mm: Optional[Tuple[float, float]] = None,
        dpi: Optional[float] = None,
        limits: Optional[Tuple[float, float]] = None,
        colours: Optional[str] = None,
        bands: Optional[int] = None,
        interpolation: Optional[str] = None,
        dark: bool = False,
        no_legend: bool = False,
        no_isolines: bool = False,
        no_dots: bool = False,
    ) -> Picture:
        """The lot in small plots of one colour scale, 25 on a page, with charts of its wafers.

        The scale spans `limits`, or else all values but the outlying ones (Tukey's fences). `size`
        and `mm` are those of a page, A4 across by default; a PDF file has page after page, other
        pictures have them below each other. Else as `Wafer.plot`.
        """
        fields = plot_fields(
            kind=kind,
            title=title,
            size=size,
            mm=mm,
            dpi=dpi,
            limits=limits,
            colours=colours,
            bands=bands,
            interpolation=interpolation,
            dark=dark,
            no_legend=no_legend,
            no_isolines=no_isolines,
            no_dots=no_dots,
        )
        return Picture(_core.sheet([wafer._handle for wafer in self._wafers], fields))

    def _repr_png_(self) -> bytes:
        return self.sheet().png()

    def __repr__(self) -> str:
        return f"<Lot of {len(self)} wafers: {', '.join(self.names[:5])}{', ...' if len(self) > 5 else ''}>"


def _grouped(table: Any, numbers: List[str], keys: List[str]) -> Any:
    if hasattr(table, "__arrow_c_stream__"):
        try:
            return _core.arrow_table(table.__arrow_c_stream__(), numbers, keys)
        except ImportError:  # a pandas without pyarrow
            pass
    if not hasattr(table, "__getitem__") or not hasattr(table, "keys"):
        raise TypeError(f"a {type(table).__name__} is no table: it has no __arrow_c_stream__")
    return _grouped_by_columns(table, numbers, keys)


def _column(table: Any, name: str) -> Any:
    if name not in table.keys():
        raise ValueError(f"the table has no column '{name}', but {', '.join(map(str, table.keys()))}")
    return table[name]


def _grouped_by_columns(table: Any, numbers: List[str], keys: List[str]) -> Any:
    from array import array

    from ._input import numbers as floats

    columns = [memoryview(floats(_column(table, name), name)) for name in numbers]
    texts = list(zip(*([str(item) for item in _column(table, name)] for name in keys)))
    if any(len(column) != len(texts) for column in columns):
        raise ValueError("the table's columns aren't equally long")
    rows: "dict[Tuple[str, ...], List[int]]" = {}
    for row, text in enumerate(texts):
        rows.setdefault(text, []).append(row)
    order = [row for group in rows.values() for row in group]
    offsets = [0]
    for group in rows.values():
        offsets.append(offsets[-1] + len(group))
    return [array("d", (column[row] for row in order)) for column in columns], offsets, list(rows)


def _joined(names: Optional[Names]) -> Optional[str]:
    if names is None or isinstance(names, str):
        return names
    return ",".join(f'"{name}"' if "," in name else name for name in names)


def read(
    path: "Union[str, os.PathLike[str]]",
    *,
    by: Optional[Names] = None,
    columns: Optional[Names] = None,
    parameters: Optional[Names] = None,
    wafers: Optional[Names] = None,
    where: Optional[str] = None,
    unit: Optional[str] = None,
    corner: bool = False,
    pitch: Optional[Tuple[float, float]] = None,
    diameter: Optional[float] = None,
    test_diameter: Optional[float] = None,
    edge_exclusion: Optional[float] = None,
    skip_invalid: bool = False,
    thin: bool = False,
) -> Lot:
    """Reads measured wafers from a file: a table, a lot export, KLARF or a binary file.

    Args:
        path: Its content tells the kind of file, never its name.
        by: Columns that tell the wafers of a table apart.
        columns: "X", "Y" and values, by name or number from 1; found by their names otherwise.
        parameters: Values to read; "all" for every column of numbers.
        wafers: Names, slots or ranges of slots, as "3-7".
        where: A condition that rows must meet, as "MSE < 12 and Slot != 3".
        unit: Of positions where the file gives none: "mm", "cm", "um" or "inch".
        corner: Positions count from the lower left corner.
        pitch: Width and height of dies in mm; positions are whole numbers of dies then.
        diameter, test_diameter, edge_exclusion: In mm, as those of `Wafer`.
        skip_invalid: Leave out rows that can't be read, and count them in `notes`.
        thin: Leave out sites of a wafer that has too many.

    Raises:
        FileNotFoundError: There is no such file.
        ValueError: For bad data; the text tells where and what to do.
    """
    width, height = pitch if pitch is not None else (None, None)
    fields = wafer_fields(
        by=_joined(by),
        columns=_joined(columns),
        parameters=_joined(parameters),
        wafers=_joined(wafers),
        where=where,
        unit=unit,
        corner=corner,
        pitch_width=width,
        pitch_height=height,
        diameter=diameter,
        test_diameter=test_diameter,
        edge_exclusion=edge_exclusion,
        skip_invalid=skip_invalid,
        thin=thin,
    )
    handles, notes = _core.read(os.fsdecode(path), fields)
    return Lot._of([Wafer._of(handle) for handle in handles], notes)
