# SPDX-License-Identifier: MIT
"""Many wafers at once, in the tables of Arrow: for data engines, which cut them into batches.

One row is one wafer, with list columns of its sites. Needs pyarrow. A wafer that can't be taken or
drawn has its status and message in its row and never fails a batch; a batch may be cut anywhere.

    >>> import discoplan.arrow
    >>> table = discoplan.arrow.wafers(sites, by=["lot", "wafer"], x="X", y="Y", value="THK")
    >>> maps = discoplan.arrow.plots(table, size=(400, 300))

A table may stand wherever a record batch does, and gives a table. Lists of 32- and 64-bit floats
without missing items are read where they are; other numbers are converted first.
"""

from typing import Any, Callable, Dict, Optional, Sequence, Union

import pyarrow as pa
import pyarrow.compute as pc

from . import _batch, _core
from ._options import choice, plot_fields, wafer_fields
from ._wafer import Wafer

Batch = Union["pa.RecordBatch", "pa.Table"]

FORMATS = ("png", "svg", "pdf")


def _each(batch: Any, work: Callable[[Any], Any]) -> Any:
    """The work on a batch, or on each of those of a table."""
    if not isinstance(batch, pa.Table):
        return work(batch)
    pieces = batch.to_batches() or [pa.RecordBatch.from_pylist([], batch.schema)]
    return pa.Table.from_batches([work(piece) for piece in pieces])


def _results(
    batch: Any, columns: Sequence[str], found: _batch.Found, file: Optional[str], figures: _batch.Figures
) -> Any:
    statistics = _batch.statistics_of(found.statistics, len(found.status), figures)
    added: Dict[str, Any] = {"statistics": statistics}
    if file is not None:
        kind = pa.large_string() if file == "svg" else pa.large_binary()
        added[file] = _batch.pictures_of(found, kind)
    added["status"] = _batch.status_of(found.status)
    added["message"] = found.messages.cast(pa.string())
    return _batch.answer(batch, columns, added)


def figures(
    batch: Batch,
    *,
    x: str = "x",
    y: str = "y",
    value: str = "value",
    name: Optional[str] = None,
    figures: _batch.Figures = None,
    **wafer: Any,
) -> Batch:
    """The figures of merit of each wafer of a record batch: a struct column `statistics`.

    Args:
        batch: One row for each wafer; `x`, `y` and `value` name columns of lists of numbers.
        name: A column of texts that messages name wafers by.
        figures: Keys of those that are computed and given, as ["mean", "std_dev"]; all by default.
        wafer: Further keywords of `Wafer`, as `diameter` and `skip_invalid`.

    Gives all other columns, the struct, `status` (0 for success) and `message`. Raises `ValueError`
    and `TypeError` for what is wrong with the batch as a whole.
    """
    columns, fields = (x, y, value), wafer_fields(**wafer)

    def work(piece: Any) -> Any:
        found = _batch.run(piece, columns, name, fields, None, 0, figures)
        return _results(piece, columns, found, None, figures)

    return _each(batch, work)


def plots(
    batch: Batch,
    kind: str = "2D",
    *,
    x: str = "x",
    y: str = "y",
    value: str = "value",
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
        figures: As those of `figures`.
        wafer: Keywords of `Wafer`.
    """
    columns, number = (x, y, value), choice(FORMATS, format, "format")
    fields, drawing = wafer_fields(**(wafer or {})), plot_fields(kind=kind, **plot)

    def work(piece: Any) -> Any:
        found = _batch.run(piece, columns, name, fields, drawing, number, figures)
        return _results(piece, columns, found, format, figures)

    return _each(batch, work)


def differences(
    batch: Batch,
    to: Wafer,
    *,
    x: str = "x",
    y: str = "y",
    value: str = "value",
    name: Optional[str] = None,
    **wafer: Any,
) -> Batch:
    """Each wafer minus the wafer `to`, at the wafer's own sites: lists `x`, `y`, `value` of 32-bit
    floats, and the `statistics` of those values.

    A site takes its partner in `to` within 0.1 mm, and an interpolated value where there is none.
    The keywords are those of `figures`.
    """
    columns, fields = (x, y, value), wafer_fields(**wafer)

    def work(piece: Any) -> Any:
        found = _batch.run(piece, columns, name, fields, None, 0)
        status, messages = list(found.status), found.messages.to_pylist()
        rows: Dict[str, Any] = {part: [None] * len(piece) for part in ("x", "y", "value")}
        wide = [float("nan")] * (len(piece) * len(_core.figures()))
        lists = [_batch.column(piece, one) for one in columns]
        for i, code in enumerate(status):
            if code != 0:
                continue
            sites = [one[i].values for one in lists]
            try:
                measured = _core.wafer(sites[0], sites[1], sites[2], fields)
                made = Wafer._of(_core.minus(measured, to._handle)[0])
            except ValueError as error:
                status[i], messages[i] = _batch.BAD_DATA, str(error)
                continue
            for part, numbers in zip(rows.values(), _core.wafer_sites(made._handle)):
                part[i] = numbers.tolist()
            for j, figure in enumerate(_core.statistics(made._handle, 0)):
                wide[j * len(piece) + i] = float("nan") if figure is None else figure
        floats = pa.list_(pa.float32())
        added: Dict[str, Any] = {part: pa.array(given, floats) for part, given in rows.items()}
        added["statistics"] = _batch.statistics_of(pa.array(wide, pa.float64()).buffers()[1], len(piece))
        added["status"] = pa.array(status, pa.int32())
        added["message"] = pa.array(messages, pa.string())
        return _batch.answer(piece, columns, added)

    return _each(batch, work)


def _numbers(column: Any) -> Any:
    """As 32- or 64-bit floats without negative zeros, which sorting takes for zeros."""
    if column.type != pa.float32():
        column = column.cast(pa.float64())
    return pc.add(column, pa.scalar(0, column.type))


def _key(column: Any) -> Any:
    if pa.types.is_dictionary(column.type):
        column = column.cast(column.type.value_type)
    if pa.types.is_floating(column.type):
        column = pc.if_else(pc.is_nan(column), None, column)
    return column.cast(pa.string()) if column.type == pa.string_view() else column


def _beginnings(sites: Any, keys: Sequence[str]) -> Any:
    """Where wafers begin in sites that are sorted by them."""
    new = pa.array([False] * max(len(sites) - 1, 0), pa.bool_())
    for key in keys:
        one, next_one = sites[key].slice(0, max(len(sites) - 1, 0)), sites[key].slice(1)
        differ = pc.coalesce(pc.not_equal(one, next_one), pc.xor(one.is_null(), next_one.is_null()))
        new = pc.or_(new, differ)
    heads = pc.indices_nonzero(new).cast(pa.int64())
    return pa.concat_arrays([pa.array([0] if len(sites) else [], pa.int64()), pc.add(heads, 1)])


def wafers(
    table: Any, by: Union[str, Sequence[str]], x: str = "x", y: str = "y", value: str = "value"
) -> "pa.Table":
    """A table of sites as one of wafers: the columns `by`, and lists `x`, `y` and `value`.

    Takes any table with the Arrow PyCapsule interface. Wafers are sorted by their keys and sites by
    `y`, `x` and `value`, so that any order of the rows gives the same table: sums of floats depend
    on their order. Missing keys come last, and are one key.
    """
    table = pa.table(table)
    keys = [by] if isinstance(by, str) else list(by)
    columns = {key: _key(_batch.column(table, key)) for key in keys}
    for part, name in (("x", x), ("y", y), ("value", value)):
        if part in columns:
            raise ValueError(f"the key '{part}' would be taken for sites; give it another name")
        columns[part] = _numbers(_batch.column(table, name))
    sites = pa.table(columns)
    order = [(name, "ascending") for name in (*keys, "y", "x", "value")]
    sites = sites.take(pc.sort_indices(sites, sort_keys=order)).combine_chunks()
    first = _beginnings(sites, keys)
    starts = pa.concat_arrays([first, pa.array([len(sites)], pa.int64())])
    arrays = [sites[key].take(first) for key in keys]
    for part in ("x", "y", "value"):
        items = sites[part].combine_chunks() if len(sites) else pa.array([], sites[part].type)
        arrays.append(pa.LargeListArray.from_arrays(starts, items))
    return pa.Table.from_arrays(arrays, names=[*keys, "x", "y", "value"])
