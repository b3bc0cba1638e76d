# SPDX-License-Identifier: MIT
"""Many wafers at once, in the tables of Arrow: for data engines, which cut them into batches.

One row is one wafer, with list columns of its sites. Needs pyarrow. A wafer that can't be taken or
drawn has its status and message in its row and never fails a batch; a batch may be cut anywhere.

    >>> import discoplan.arrow
    >>> table = discoplan.arrow.wafers(sites, by=["lot", "wafer"], x="X", y="Y", value="THK")
    >>> maps = discoplan.arrow.plots(table.to_batches()[0], size=(400, 300))
"""

from typing import TYPE_CHECKING, Any, List, Optional, Sequence, Tuple, Union

from . import _core
from ._options import choice, plot_fields, wafer_fields

if TYPE_CHECKING:
    import pyarrow as pa

FORMATS = ("png", "svg", "pdf")


def _lists(column: Any, pa: Any) -> Any:
    """A list column as one with 32- or 64-bit offsets."""
    if isinstance(column, pa.ChunkedArray):
        column = column.combine_chunks()
    if isinstance(column, pa.ChunkedArray):  # of no chunks, or too long for one
        column = pa.concat_arrays(column.chunks) if column.num_chunks else pa.array([], column.type)
    if not (pa.types.is_list(column.type) or pa.types.is_large_list(column.type)):
        raise TypeError(f"a column of lists is due, not {column.type}")
    return column


def _offsets(lists: Any) -> memoryview:
    wide = str(lists.type).startswith("large_list")
    buffer = lists.buffers()[1]
    item = 8 if wide else 4
    view = memoryview(bytes(item))
    if buffer is not None and buffer.size > 0:
        first = lists.offset * item
        view = memoryview(buffer).cast("B")[first : first + (len(lists) + 1) * item]
    return view.cast("q") if wide else view.cast("i")


def _numbers(values: Any, pa: Any) -> Any:
    """The items of lists where they are, if they are floats without gaps."""
    if values.type not in (pa.float32(), pa.float64()) or values.null_count > 0 or len(values) == 0:
        return values
    plain = memoryview(values.buffers()[1]).cast("B")
    items = plain.cast("f") if values.type == pa.float32() else plain.cast("d")
    return items[values.offset : values.offset + len(values)]


def _run(
    batch: "pa.RecordBatch",
    columns: Sequence[str],
    name: Optional[str],
    wafer: "dict[str, Any]",
    plot: "Optional[dict[str, Any]]",
    format: int,
) -> Tuple[memoryview, ...]:
    import pyarrow as pa

    for column in columns:
        if column not in batch.schema.names:
            raise ValueError(f"the batch has no column '{column}', but {', '.join(batch.schema.names)}")
    x, y, value = (_lists(batch.column(column), pa) for column in columns)
    starts = _offsets(x)
    for other in (y, value):
        if _offsets(other).tolist() != starts.tolist():
            lengths = [c.value_lengths().to_pylist() for c in (x, y, value)]
            raise ValueError(f"the lists of {', '.join(columns)} differ: {lengths[0]}, {lengths[1]}, {lengths[2]}")
    names, name_offsets = b"", memoryview(b"").cast("i")
    if name is not None:
        texts = batch.column(name).cast(pa.string()).fill_null("")
        if isinstance(texts, pa.ChunkedArray):
            texts = texts.combine_chunks()
        names = texts.buffers()[2] or b""
        name_offsets = memoryview(texts.buffers()[1]).cast("B")[
            texts.offset * 4 : (texts.offset + len(texts) + 1) * 4
        ].cast("i")
    xs, ys, values = (_numbers(column.values, pa) for column in (x, y, value))
    return _core.batch(starts, xs, ys, values, names, name_offsets, wafer, plot, format)


def _keys(batch: "pa.RecordBatch", columns: Sequence[str]) -> Tuple[List[Any], List[Any]]:
    kept = [i for i, name in enumerate(batch.schema.names) if name not in columns]
    return [batch.column(i) for i in kept], [batch.schema.field(i) for i in kept]


def _results(
    batch: "pa.RecordBatch", columns: Sequence[str], found: Tuple[memoryview, ...], file: Optional[str]
) -> "pa.RecordBatch":
    import pyarrow as pa

    status, statistics, pictures, picture_offsets, messages, message_offsets = found
    n = len(status)
    arrays, fields = _keys(batch, columns)
    parts, names = [], []
    for i, row in enumerate(_core.figures()):
        part = pa.Array.from_buffers(pa.float64(), n, [None, pa.py_buffer(statistics[i * n : (i + 1) * n])])
        parts.append(pa.compute.if_else(part.is_nan(), None, part) if n else part)
        names.append(row[0])
    arrays.append(pa.StructArray.from_arrays(parts, names))
    fields.append(pa.field("statistics", arrays[-1].type))
    if file is not None:
        kind = pa.large_string() if file == "svg" else pa.large_binary()
        files = pa.Array.from_buffers(
            kind, n, [None, pa.py_buffer(picture_offsets), pa.py_buffer(pictures)]
        )
        arrays.append(pa.compute.if_else(pa.array([code == 0 for code in status]), files, None) if n else files)
        fields.append(pa.field(file, kind))
    arrays.append(pa.Array.from_buffers(pa.int32(), n, [None, pa.py_buffer(status)]))
    fields.append(pa.field("status", pa.int32()))
    texts = pa.Array.from_buffers(
        pa.large_string(), n, [None, pa.py_buffer(message_offsets), pa.py_buffer(messages)]
    )
    arrays.append(texts.cast(pa.string()))
    fields.append(pa.field("message", pa.string()))
    return pa.RecordBatch.from_arrays(arrays, schema=pa.schema(fields))


def figures(
    batch: "pa.RecordBatch",
    *,
    x: str = "x",
    y: str = "y",
    value: str = "value",
    name: Optional[str] = None,
    **wafer: Any,
) -> "pa.RecordBatch":
    """The figures of merit of each wafer of a record batch: a struct column `statistics`.

    Args:
        batch: One row for each wafer; `x`, `y` and `value` name columns of lists of numbers.
        name: A column of texts that messages name wafers by.
        wafer: Further keywords of `Wafer`, as `diameter` and `skip_invalid`.

    Gives all other columns, the struct, `status` (0 for success) and `message`. Raises `ValueError`
    and `TypeError` for what is wrong with the batch as a whole.
    """
    import pyarrow.compute  # noqa: F401

    columns = (x, y, value)
    found = _run(batch, columns, name, wafer_fields(**wafer), None, 0)
    return _results(batch, columns, found, None)


def plots(
    batch: "pa.RecordBatch",
    kind: str = "2D",
    *,
    x: str = "x",
    y: str = "y",
    value: str = "value",
    name: Optional[str] = None,
    format: str = "png",
    wafer: "Optional[dict[str, Any]]" = None,
    **plot: Any,
) -> "pa.RecordBatch":
    """The same with a picture of each wafer: a column `png`, `svg` or `pdf` by the `format`.

    Args:
        kind: And further keywords: as those of `Wafer.plot`.
        name: A column of texts for the titles.
        wafer: Keywords of `Wafer`.
    """
    import pyarrow.compute  # noqa: F401

    columns = (x, y, value)
    number = choice(FORMATS, format, "format")
    fields = plot_fields(kind=kind, **plot)
    found = _run(batch, columns, name, wafer_fields(**(wafer or {})), fields, number)
    return _results(batch, columns, found, format)


def wafers(
    table: Any, by: Union[str, Sequence[str]], x: str = "x", y: str = "y", value: str = "value"
) -> "pa.Table":
    """A table of sites as one of wafers: columns of the keys' texts and of lists `x`, `y`, `value`.

    Wafers and sites are in the order of the table, any table with the Arrow PyCapsule interface.
    """
    import pyarrow as pa

    keys = [by] if isinstance(by, str) else list(by)
    columns, offsets, names = _core.arrow_table(table.__arrow_c_stream__(), [x, y, value], keys)
    starts = pa.Array.from_buffers(pa.int64(), len(offsets), [None, pa.py_buffer(offsets)])
    arrays = [pa.array([row[i] for row in names], pa.string()) for i in range(len(keys))]
    for column in columns:
        values = pa.Array.from_buffers(pa.float64(), len(column), [None, pa.py_buffer(column)])
        arrays.append(pa.LargeListArray.from_arrays(starts, values))
    return pa.Table.from_arrays(arrays, names=[*keys, "x", "y", "value"])
