# SPDX-License-Identifier: MIT
"""Lots: wafers by their names, from files and from tables."""

import os
from collections import Counter
from typing import TYPE_CHECKING, Any, Dict, Iterable, Iterator, List, Optional, Sequence, Tuple, Union, overload

from . import _core
from ._input import refuse_twice
from ._options import plot_fields, wafer_fields
from ._picture import Picture
from ._wafer import Wafer, repeats

if TYPE_CHECKING:
    from ._figures import Statistics

Names = Union[str, Sequence[str]]
Choice = Union[str, int, Sequence[Union[str, int]]]


class Lot:
    """Wafers by their names, in the order of the data.

    Made from a table of sites: a pandas, polars or pyarrow table, a DuckDB relation, or anything
    else with the Arrow PyCapsule interface; a dictionary of columns will do, too.

    Args:
        table: One row for each site.
        by: The column or columns whose texts tell the wafers apart; a wafer's name is those texts
            with commas between them. A row without one is refused, or left out by `skip_invalid`.
        x, y, value: Names of the columns of positions in mm and of values.
        Others: As those of `Wafer`.

    Raises:
        ValueError: For a column that the table hasn't, for wafers whose sites mostly repeat, as those
            of several do, and as `Wafer` does.
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
        refuse_twice(keys, "by")
        refuse_twice([x, y], "x and y")
        (xs, ys, values), offsets, names, nameless = _grouped(table, [x, y, value], keys)
        if nameless and not skip_invalid:
            row, key = nameless[0]
            raise ValueError(
                f"{key}[{row}] is missing where a wafer's name is due; fill it in, or leave such rows out "
                "with skip_invalid"
            )
        self.notes = f"left out {len(nameless)} rows that name no wafer" if nameless else ""
        self._wafers: List[Wafer] = []
        self.keys = names
        fields = wafer_fields(
            diameter=diameter,
            unit=unit,
            quantity=value if quantity is None else quantity,
            edge_exclusion=edge_exclusion,
            test_diameter=test_diameter,
            orientation=orientation,
            notch=notch,
            skip_invalid=skip_invalid,
        )
        for i, texts in enumerate(names):
            rows = slice(offsets[i], offsets[i + 1])
            named = {**fields, "name": ", ".join(texts)}
            self._take(Wafer._of(_core.wafer(xs[rows], ys[rows], values[rows], named)))

    def _take(self, wafer: Wafer) -> None:
        """Rows of several wafers taken for one would give a false map; a few sites measured twice don't."""
        found, are_several = repeats(wafer)
        if are_several:
            raise ValueError(f"{found}; name the columns that tell the wafers apart with by")
        if found:
            self.notes += ("\n" if self.notes else "") + f"{found}; each is taken for a site of its own"
        self._wafers.append(wafer)

    @classmethod
    def _of(cls, wafers: List[Wafer], notes: str = "", keys: Optional[List[Tuple[str, ...]]] = None) -> "Lot":
        lot = cls.__new__(cls)
        lot._wafers = wafers
        lot.keys = [(wafer.name,) for wafer in wafers] if keys is None else keys
        lot.notes = notes
        return lot

    _by_name: Optional[Dict[str, int]] = None
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
        """Of the wafers, in their order, all different: where one name stands for several wafers,
        as for one measured in several quantities, it goes on with the quantity ("Slot07, THK")."""
        return list(self._numbers())

    def _numbers(self) -> Dict[str, int]:
        if self._by_name is None:
            counts: "Counter[Any]" = Counter(wafer.name for wafer in self._wafers)
            self._by_name = {}
            for i, wafer in enumerate(self._wafers):
                told = wafer.quantity and counts[wafer.name] > 1
                name = f"{wafer.name}, {wafer.quantity}" if told else wafer.name
                same = name
                while same in self._by_name:
                    counts[name, "same"] += 1
                    same = f"{name} ({counts[name, 'same'] + 1})"
                self._by_name[same] = i
        return self._by_name

    @property
    def quantities(self) -> List[str]:
        """What was measured, each once."""
        return list(dict.fromkeys(wafer.quantity for wafer in self._wafers))

    def of(self, quantity: str) -> "Lot":
        """The wafers as measured in one of several quantities; raises `ValueError` for another one."""
        if quantity not in self.quantities:
            raise ValueError(f"the lot has no quantity {quantity!r}, but {', '.join(self.quantities)}")
        return self._part(i for i, wafer in enumerate(self._wafers) if wafer.quantity == quantity)

    def _part(self, places: Iterable[int]) -> "Lot":
        places = list(places)
        return Lot._of([self._wafers[i] for i in places], self.notes, [self.keys[i] for i in places])

    def _places(self, which: object) -> List[int]:
        """Of a name or, if it is none, of what several wafers may have in common."""
        if isinstance(which, str) and which in self._numbers():
            return [self._numbers()[which]]
        return [
            i
            for i, (keys, wafer) in enumerate(zip(self.keys, self._wafers))
            if which in (keys, ", ".join(keys), wafer.name)
        ]

    @overload
    def __getitem__(self, which: Union[str, int, Tuple[str, ...]]) -> Wafer: ...
    @overload
    def __getitem__(self, which: "slice[Any, Any, Any]") -> "Lot": ...
    def __getitem__(self, which: Any) -> Any:
        """The wafer of that name, or its keys, or that place from 0; the lot of a slice of places."""
        if isinstance(which, slice):
            return self._part(range(len(self))[which])
        if hasattr(which, "__index__"):
            return self._wafers[which]
        places = self._places(which)
        if len(places) == 1:
            return self._wafers[places[0]]
        names = self.names
        names = [names[i] for i in places] or names
        fault = f"several wafers are {which!r}:" if places else f"the lot has no wafer {which!r}, but"
        raise KeyError(f"{fault} {', '.join(names[:30])}")

    def __contains__(self, which: object) -> bool:
        return bool(self._places(which))

    def statistics(self) -> "dict[str, Statistics]":
        """The figures of merit of each wafer, by its name in `names`."""
        return {name: wafer.statistics() for name, wafer in zip(self.names, self._wafers)}

    def mean(self) -> Wafer:
        """The mean wafer, at the sites of the first one.

        Raises `ValueError` for a lot of several quantities or units; `of` takes one.
        """
        return Wafer._of(_core.mean([wafer._handle for wafer in self._wafers])[0])

    def __sub__(self, other: "Union[Wafer, Lot]") -> "Lot":
        """Each wafer minus a wafer, or minus the one of the same name (and, if there are several, of
        the same quantity) of another lot."""
        if isinstance(other, Wafer):
            return Lot._of([wafer - other for wafer in self._wafers], keys=self.keys)
        if not isinstance(other, Lot):
            return NotImplemented
        found = [
            wafer - (other[name] if name in other._numbers() else other[keys])
            for name, keys, wafer in zip(self.names, self.keys, self._wafers)
        ]
        return Lot._of(found, keys=self.keys)

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

        All are of one quantity: `of` takes it from a lot of several. The scale spans `limits`, or else all values but the outlying ones (Tukey's fences). `size`
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

    def _repr_png_(self) -> Optional[bytes]:
        return self.sheet().png() if len(self.quantities) == 1 else None

    def __repr__(self) -> str:
        count = "1 wafer" if len(self) == 1 else f"{len(self)} wafers"
        return f"<Lot of {count}: {', '.join(self.names[:5])}{', ...' if len(self) > 5 else ''}>"


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


def _key(item: Any) -> str:
    """As people write it, and as columns of Arrow have it; "" for what is missing."""
    if isinstance(item, bool):
        return "true" if item else "false"
    if isinstance(item, float):
        return "" if item != item else str(int(item)) if item.is_integer() else str(item)
    return "" if item is None or str(item) in ("<NA>", "NaT") else str(item)


def _grouped_by_columns(table: Any, numbers: List[str], keys: List[str]) -> Any:
    from array import array

    from ._input import numbers as floats

    columns = [memoryview(floats(_column(table, name), name)) for name in numbers]
    texts = list(zip(*([_key(item) for item in _column(table, name)] for name in keys)))
    texts = texts if keys else [()] * len(columns[0])
    if any(len(column) != len(texts) for column in columns):
        raise ValueError("the table's columns aren't equally long")
    rows: "dict[Tuple[str, ...], List[int]]" = {}
    nameless = []
    for row, text in enumerate(texts):
        if "" in text:
            nameless.append((row, keys[text.index("")]))
        else:
            rows.setdefault(text, []).append(row)
    order = [row for group in rows.values() for row in group]
    offsets = [0]
    for group in rows.values():
        offsets.append(offsets[-1] + len(group))
    return [array("d", (column[row] for row in order)) for column in columns], offsets, list(rows), nameless


def _joined(names: Optional[Choice]) -> Optional[str]:
    if names is None or isinstance(names, str):
        return names
    texts = [str(names)] if isinstance(names, int) else [str(name) for name in names]
    return ",".join(f'"{text}"' if "," in text else text for text in texts)


def read(
    path: "Union[str, os.PathLike[str]]",
    *,
    by: Optional[Choice] = None,
    columns: Optional[Choice] = None,
    parameters: Optional[Choice] = None,
    wafers: Optional[Choice] = None,
    where: Optional[str] = None,
    unit: Optional[str] = None,
    corner: bool = False,
    pitch: Optional[Tuple[float, float]] = None,
    diameter: Optional[float] = None,
    test_diameter: Optional[float] = None,
    edge_exclusion: Optional[float] = None,
    skip_invalid: bool = False,
    thin: bool = False,
    value_unit: Optional[str] = None,
    drop_outliers: Optional[str] = None,
    sites: Optional[int] = None,
) -> Lot:
    """Reads measured wafers from a file: a table, a lot export, KLARF or a binary file.

    Args:
        path: Its content tells the kind of file, never its name.
        by: Columns that tell the wafers of a table apart.
        columns: "X", "Y" and values, by name or number from 1; found by their names otherwise.
        parameters: Values to read; "all" for every column of numbers.
        wafers: Names, slots or ranges of slots, as "3-7".
        where: A condition that rows must meet, as "MSE < 12 and Slot != 3".
        unit: Of positions where the file gives none: "mm", "cm", "um" or "in".
        corner: Positions count from the lower left corner.
        pitch: Width and height of dies in mm; positions are whole numbers of dies then.
        diameter, test_diameter, edge_exclusion: In mm, as those of `Wafer`.
        skip_invalid: Leave out rows that can't be read, and count them in `notes`.
        thin: Leave out sites of a wafer that has too many.
        value_unit: Of the values, in place of the file's.
        drop_outliers: Leave out values beyond the quartiles by a factor of their distance
            ("1.5iqr"), or beyond the median by a factor of the robust standard deviation ("3.5mad").
        sites: Their number in a binary file, if not from its size.

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
        value_unit=value_unit,
        drop_outliers=drop_outliers,
        sites=sites,
    )
    handles, notes = _core.read(os.fsdecode(path), fields)
    return Lot._of([Wafer._of(handle) for handle in handles], notes)
