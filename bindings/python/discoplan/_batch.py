# SPDX-License-Identifier: MIT
"""Batches of Arrow as the library takes them, and what it gives as columns of Arrow."""

from typing import Any, Dict, List, NamedTuple, Optional, Sequence, Union

import pyarrow as pa
import pyarrow.compute as pc

from . import _core
from ._options import figure_keys, figure_mask

BAD_DATA = 3
Figures = Union[str, Sequence[str], None]
NAN = float("nan")
_SLOW = "interpolation_error"
_FLOATS = (pa.float32(), pa.float64())


class Found(NamedTuple):
    """What came of a batch, `DISCOPLAN_OK` being 0."""

    status: Any
    statistics: Any
    pictures: Any
    picture_offsets: Any
    messages: Any


def chosen(figures: Figures) -> List[str]:
    """The keys asked for; all but the slow one by default. Raises `ValueError` for others."""
    if figures is None:
        return [key for key in figure_keys(None) if key != _SLOW]
    return figure_keys(None if figures == "all" else figures)


def column(batch: Any, name: str) -> Any:
    """The column of that name; raises `ValueError` for one that the batch hasn't, or has twice."""
    found = batch.schema.names.count(name)
    if found == 0:
        raise ValueError(f"the batch has no column '{name}', but {', '.join(batch.schema.names)}")
    if found > 1:
        raise ValueError(f"the batch has {found} columns '{name}'; give them names of their own")
    return batch.column(name)


def _lists(batch: Any, name: str) -> Any:
    """A column of lists that have offsets, which other lists are given."""
    lists = column(batch, name)
    kinds = (pa.types.is_fixed_size_list, pa.types.is_list_view, pa.types.is_large_list_view)
    if any(is_kind(lists.type) for is_kind in kinds):
        lengths = pc.fill_null(pc.list_value_length(lists), 0).cast(pa.int64())
        starts = pa.concat_arrays([pa.array([0], pa.int64()), pc.cumulative_sum(lengths)])
        return pa.LargeListArray.from_arrays(starts, lists.flatten(), mask=lists.is_null())
    if pa.types.is_list(lists.type) or pa.types.is_large_list(lists.type):
        return lists
    raise TypeError(f"a column of lists is due, but '{name}' is {lists.type}")


def _offsets(lists: Any) -> Any:
    offsets = lists.offsets.cast(pa.int64())
    return pc.subtract(offsets, offsets[0])


def _are_alike(lists: Sequence[Any]) -> bool:
    """Whether the lists are equally long, row by row."""
    first = lists[0].offsets
    if all(first.equals(one.offsets) for one in lists[1:]):
        return True
    starts = [_offsets(one) for one in lists]
    return all(starts[0].equals(other) for other in starts[1:])


def _items(lists: Any) -> Any:
    """The numbers of all lists: where they lie if they are floats without gaps."""
    offsets = lists.offsets
    first, last = offsets[0].as_py(), offsets[len(lists)].as_py()
    values = lists.values.slice(first, last - first)
    if pa.types.is_decimal(values.type) or values.type == pa.float16():
        values = values.cast(pa.float64() if values.type != pa.float16() else pa.float32())
    if values.type not in _FLOATS or values.null_count > 0 or len(values) == 0:
        return values
    plain = memoryview(values.buffers()[1]).cast("B").cast("f" if values.type == pa.float32() else "d")
    return plain[values.offset : values.offset + len(values)]


def _torn(lists: Sequence[Any], columns: Sequence[str]) -> Dict[int, str]:
    """The rows whose lists make no sites, and why."""
    why = {}
    lengths = [pc.list_value_length(one).to_pylist() for one in lists]
    for i, row in enumerate(zip(*lengths)):
        missing = [name for name, length in zip(columns, row) if length is None]
        if missing:
            why[i] = f"has no {' and no '.join(missing)}"
        elif len(set(row)) > 1:
            sizes = ", ".join(f"{length} {name}" for length, name in zip(row, columns))
            why[i] = f"its lists differ: {sizes}"
    return why


def _texts(names: Any) -> Any:
    return pc.fill_null(names.cast(pa.large_string()), "")


def run(
    batch: Any,
    columns: Sequence[str],
    name: Optional[str],
    wafer: Dict[str, Any],
    plot: Optional[Dict[str, Any]],
    format: int,
    figures: Figures = None,
) -> Found:
    """Statistics and pictures of the wafers of a record batch."""
    lists = [_lists(batch, one) for one in columns]
    torn: Dict[int, str] = {}
    if any(one.null_count > 0 for one in lists) or not _are_alike(lists):
        torn = _torn(lists, columns)
        whole = pa.array([i not in torn for i in range(len(batch))])
        lists = [pc.if_else(whole, one, pa.scalar([], one.type)) for one in lists]
    names, name_offsets, texts = b"", memoryview(b"").cast("i"), None
    if name is not None and len(batch) > 0:
        texts = _texts(column(batch, name))
        names = texts.buffers()[2] or b""
        name_offsets = memoryview(texts.buffers()[1]).cast("B").cast("q")
        name_offsets = name_offsets[texts.offset : texts.offset + len(texts) + 1]
    starts = _offsets(lists[0])
    offsets = memoryview(starts.buffers()[1]).cast("B").cast("q")[: len(batch) + 1]
    x, y, value = (_items(one) for one in lists)
    found = _core.batch(offsets, x, y, value, names, name_offsets, wafer, plot, format, figure_mask(figures))
    status, statistics, pictures, picture_offsets, messages, message_offsets = found
    said = pa.Array.from_buffers(
        pa.large_string(), len(batch), [None, pa.py_buffer(message_offsets), pa.py_buffer(messages)]
    )
    if torn:
        lines = said.to_pylist()
        for i, why in torn.items():
            status[i] = BAD_DATA
            called = texts[i].as_py() if texts is not None else ""
            lines[i] = f"wafer '{called}': {why}" if called else why
        said = pa.array(lines, pa.large_string())
    return Found(status, statistics, pictures, picture_offsets, said)


def statistics_of(numbers: Any, count: int, figures: Figures = None) -> Any:
    """A struct of figures from all, one after the other; null for not a number."""
    rows, names = _core.figures(), figure_keys(figures)
    every = pa.Array.from_buffers(pa.float64(), len(rows) * count, [None, pa.py_buffer(numbers)])
    gaps, parts = pc.is_nan(every), []
    for i, row in enumerate(rows):
        if row[0] not in names:
            continue
        part, missing = every.slice(i * count, count), gaps.slice(i * count, count)
        parts.append(pc.if_else(missing, None, part) if missing.true_count > 0 else part)
    return pa.StructArray.from_arrays(parts, names)


def pictures_of(found: Found, kind: Any) -> Any:
    """The files of wafers, null for those without."""
    buffers = [None, pa.py_buffer(found.picture_offsets), pa.py_buffer(found.pictures)]
    files = pa.Array.from_buffers(kind, len(found.status), buffers)
    drawn = pc.equal(status_of(found.status), 0)
    return files if pc.all(drawn).as_py() in (True, None) else pc.if_else(drawn, files, None)


def status_of(status: Any) -> Any:
    return pa.Array.from_buffers(pa.int32(), len(status), [None, pa.py_buffer(status)])


def answer(batch: Any, taken: Sequence[str], added: Dict[str, Any]) -> Any:
    """The columns of a batch but those taken, and those added behind them."""
    kept = [i for i, name in enumerate(batch.schema.names) if name not in taken]
    twice = [batch.schema.names[i] for i in kept if batch.schema.names[i] in added]
    if twice:
        raise ValueError(f"the batch has a column '{twice[0]}' of its own; give it another name")
    fields: List[Any] = [batch.schema.field(i) for i in kept]
    fields += [pa.field(name, values.type) for name, values in added.items()]
    arrays = [batch.column(i) for i in kept] + list(added.values())
    return pa.RecordBatch.from_arrays(arrays, schema=pa.schema(fields))
