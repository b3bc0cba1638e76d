# SPDX-License-Identifier: MIT
"""Many wafers at once, in the tables of Arrow: for data engines, which cut them into batches.

One row is one wafer, with list columns of its sites. Needs pyarrow. A wafer that can't be taken or
drawn has its status and message in its row and never fails a batch; a batch may be cut anywhere.

    >>> import discoplan.arrow
    >>> table = discoplan.arrow.wafers(sites, by=["lot", "wafer"], x="X", y="Y", value="THK")
    >>> maps = discoplan.arrow.plots(table, size=(400, 300))

A table may stand wherever a record batch does, and gives a table; so may what gives either by the
Arrow PyCapsule interface, as frames of polars and results of DuckDB do. Lists of 32- and 64-bit
floats without missing items are read where they are; other numbers are converted first.

Several parameters that were measured at the same sites are as many columns: `value` then takes
their names, and each wafer has as many rows, one after the other, which a column `parameter` tells
apart.
"""

from typing import Any, Callable, Dict, List, Optional, Sequence, Union

import pyarrow as pa

from . import _batch, _core
from ._options import choice, figure_mask, plot_fields, wafer_fields
from ._sites import Names, beside, names_of, parts_of, wafers
from ._wafer import Wafer

__all__ = ["FORMATS", "differences", "figures", "plots", "wafers"]

Batch = Union["pa.RecordBatch", "pa.Table"]

FORMATS = ("png", "svg", "pdf")


def _batch_of(given: Any) -> Batch:
    if isinstance(given, (pa.RecordBatch, pa.Table)):
        return given
    if hasattr(given, "__arrow_c_stream__"):
        return pa.table(given)
    if hasattr(given, "__arrow_c_array__"):
        return pa.record_batch(given)
    raise TypeError(f"a record batch or a table of Arrow is due, or what gives one, not {given!r}")


def _each(batch: Any, value: Names, work: Callable[[Any, str], Any]) -> Any:
    """The work on a batch, or on each of those of a table, for each of the values."""
    if isinstance(batch, pa.Table):
        pieces = batch.to_batches() or [pa.RecordBatch.from_pylist([], batch.schema)]
        return pa.Table.from_batches([_each(piece, value, work) for piece in pieces])
    if isinstance(value, str):
        return work(batch, value)
    found = [work(batch, one) for one in value]
    rows, count = len(batch), len(found)
    turns = pa.array([i + k * rows for i in range(rows) for k in range(count)], pa.int64())
    taken = pa.Table.from_batches(found).combine_chunks().take(turns).combine_chunks()
    return taken.to_batches()[0] if rows > 0 else found[0]


def _answer(batch: Any, taken: Sequence[str], value: Names, one: str, added: Dict[str, Any]) -> Any:
    if not isinstance(value, str):
        added = {"parameter": pa.array([one] * len(batch), pa.string()), **added}
    return _batch.answer(batch, taken, added)


def _run(
    given: Any,
    sites: Sequence[Any],
    name: Optional[str],
    figures: _batch.Figures,
    wafer: Dict[str, Any],
    plot: Optional[Dict[str, Any]],
    file: Optional[str],
) -> Any:
    batch, (x, y, value) = _batch_of(given), sites
    taken = list(parts_of(x, y, value).values())
    number = 0 if file is None else choice(FORMATS, file, "format")
    wanted = _batch.chosen(figures)

    def work(piece: Any, one: str) -> Any:
        fields = wafer if isinstance(value, str) else {"quantity": one, **wafer}
        found = _batch.run(piece, (x, y, one), name, fields, plot, number, wanted)
        statistics = _batch.statistics_of(found.statistics, len(found.status), wanted)
        added: Dict[str, Any] = {"statistics": statistics}
        if file is not None:
            kind = pa.large_string() if file == "svg" else pa.large_binary()
            added[file] = _batch.pictures_of(found, kind)
        added["status"] = _batch.status_of(found.status)
        added["message"] = found.messages.cast(pa.string())
        return _answer(piece, taken, value, one, added)

    return _each(batch, value, work)


def figures(
    batch: Any,
    *,
    x: str = "x",
    y: str = "y",
    value: Names = "value",
    name: Optional[str] = None,
    figures: _batch.Figures = None,
    **wafer: Any,
) -> Batch:
    """The figures of merit of each wafer of a record batch: a struct column `statistics`.

    Args:
        batch: One row for each wafer; `x`, `y` and `value` name columns of lists of numbers.
        name: A column of texts that messages name wafers by.
        figures: Keys of those that are computed and given, as ["mean", "std_dev"], or "all". By
            default all but "interpolation_error", which takes longer than the others together.
        wafer: Further keywords of `Wafer`, as `diameter` and `skip_invalid`.

    Gives all other columns, the struct, `status` (0 for success) and `message`. Raises `ValueError`
    and `TypeError` for what is wrong with the batch as a whole.
    """
    return _run(batch, (x, y, value), name, figures, wafer_fields(**wafer), None, None)


def plots(
    batch: Any,
    kind: str = "2D",
    *,
    x: str = "x",
    y: str = "y",
    value: Names = "value",
    name: Optional[str] = None,
    format: str = "png",
    figures: _batch.Figures = None,
    wafer: "Optional[dict[str, Any]]" = None,
    **plot: Any,
) -> Batch:
    """The same with a picture of each wafer: a column `png`, `svg` or `pdf` by the `format`.

    Args:
        kind: And further keywords: as those of `Wafer.plot`.
        name: A column of texts for the titles.
        wafer: Keywords of `Wafer`.
    """
    fields, drawing = wafer_fields(**(wafer or {})), plot_fields(kind=kind, **plot)
    return _run(batch, (x, y, value), name, figures, fields, drawing, format)


Partners = Dict[str, Any]
"""For each value a `Wafer`, or the three columns of lists in the same row that hold another one."""


def _partners(to: Any, x: str, y: str, value: Names) -> Partners:
    values = names_of(value)
    if isinstance(to, dict):
        return to
    if isinstance(to, Wafer):
        if len(values) > 1:
            raise ValueError("a Wafer has one value; compare several with columns or a table")
        return {values[0]: to}
    columns = names_of(to)
    if len(columns) != len(values):
        raise ValueError(f"to: takes as many columns as value, which are {len(values)}")
    return {one: (x, y, other) for one, other in zip(values, columns)}


def is_table(to: Any) -> bool:
    """Whether what wafers are compared with is neither a wafer nor columns beside them."""
    return not isinstance(to, (Wafer, str, list, tuple, dict))


def _refuse_repeated(x: List[Any], y: List[Any], value: List[Any]) -> None:
    """Raises for a place with several values, of which none is known to be a site's own."""
    if len(set(zip(x, y))) == len(x):
        return
    places: Dict[Any, Any] = {}
    for place, number in zip(zip(x, y), value):
        if places.setdefault(place, number) != number:
            at = f"x {place[0]:g}, y {place[1]:g}"
            raise ValueError(f"it was measured more than once at {at}; take the mean there first")


def _partner(lists: Sequence[Any], i: int, is_beside: bool, fields: Dict[str, Any]) -> Any:
    """The wafer in those columns of a row; raises `ValueError` where there is none, or a bad one."""
    x, y, value = (one[i].values for one in lists)
    if x is None or y is None or value is None:
        raise ValueError("there isn't one wafer of its keys to compare it with")
    if is_beside:
        _refuse_repeated(x.to_pylist(), y.to_pylist(), value.to_pylist())
    return _core.wafer(x, y, value, fields)


def differences(
    batch: Any,
    to: Any,
    *,
    by: Optional[Names] = None,
    x: str = "x",
    y: str = "y",
    value: Names = "value",
    name: Optional[str] = None,
    figures: _batch.Figures = None,
    **wafer: Any,
) -> Batch:
    """Each wafer minus another, at the wafer's own sites: lists `x`, `y`, `value` of 32-bit floats,
    and the `statistics` of those values.

    Args:
        to: A `Wafer`; or a column of values at the same sites, as many as `value` has names; or a
            table of wafers, of which each takes the one with the same keys.
        by: The keys, where `to` is a table; all columns by default that it has but those of sites.

    A site takes its partner within 0.1 mm, and an interpolated value where there is none. The other
    keywords are those of `figures`.
    """
    batch, taken = _batch_of(batch), list(parts_of(x, y, value).values())
    if is_table(to):
        other, lists = pa.table(to), {one: f"to_{one}" for one in taken}
        shared = [one for one in batch.schema.names if one in other.schema.names and one not in taken]
        batch = beside(batch, other, shared if by is None else names_of(by), lists)
        to = {one: (f"to_{x}", f"to_{y}", f"to_{one}") for one in names_of(value)}
    partners, fields, wanted = _partners(to, x, y, value), wafer_fields(**wafer), _batch.chosen(figures)
    mask = figure_mask(wanted)
    columns = [one for found in partners.values() if not isinstance(found, Wafer) for one in found]

    def work(piece: Any, one: str) -> Any:
        names, partner = (x, y, one), partners[one]
        found = _batch.run(piece, names, name, fields, None, 0, "mean")
        status, messages = list(found.status), found.messages.to_pylist()
        rows: Dict[str, Any] = {part: [None] * len(piece) for part in ("x", "y", "value")}
        wide = [_batch.NAN] * (len(piece) * len(_core.figures()))
        lists = [_batch.column(piece, each) for each in names]
        others = [] if isinstance(partner, Wafer) else [_batch.column(piece, each) for each in partner]
        for i in (i for i, code in enumerate(status) if code == 0):
            try:
                given = [each[i].values for each in lists]
                measured = _core.wafer(given[0], given[1], given[2], fields)
                is_beside = not isinstance(partner, Wafer) and partner[0] == x
                handle = partner._handle if not others else _partner(others, i, is_beside, fields)
                made = _core.minus(measured, handle)[0]
            except ValueError as error:
                called = "" if name is None else f"wafer '{piece.column(name)[i].as_py()}': "
                status[i], messages[i] = _batch.BAD_DATA, called + str(error)
                continue
            for part, numbers in zip(rows.values(), _core.wafer_sites(made)):
                part[i] = numbers.tolist()
            for j, figure in enumerate(_core.statistics(made, mask)):
                wide[j * len(piece) + i] = _batch.NAN if figure is None else figure
        floats, buffer = pa.list_(pa.float32()), pa.array(wide, pa.float64()).buffers()[1]
        added: Dict[str, Any] = {part: pa.array(given, floats) for part, given in rows.items()}
        added["statistics"] = _batch.statistics_of(buffer, len(piece), wanted)
        added["status"] = pa.array(status, pa.int32())
        added["message"] = pa.array(messages, pa.string())
        return _answer(piece, [*taken, *columns], value, one, added)

    return _each(batch, value, work)
