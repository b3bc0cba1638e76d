# SPDX-License-Identifier: MIT
"""Sites in rows as wafers in rows, and wafers beside those of the same keys."""

from typing import Any, Dict, List, Sequence, Union

import pyarrow as pa
import pyarrow.compute as pc

from . import _batch
from ._input import refuse_twice

Names = Union[str, Sequence[str]]
NAN = float("nan")


def names_of(given: Names) -> List[str]:
    return [given] if isinstance(given, str) else list(given)


def parts_of(x: str, y: str, value: Names) -> Dict[str, str]:
    """What the columns of sites are called in rows of wafers, and in rows of sites: several values
    keep their names."""
    values = {"value": value} if isinstance(value, str) else {name: name for name in value}
    refuse_twice([x, y], "x and y")
    parts = {"x": x, "y": y, **values}
    if len(parts) != 2 + len(names_of(value)) or len(parts) == 2:
        raise ValueError("value: takes a column or several, each once and none called x or y")
    return parts


def refuse_keys(keys: Sequence[str], parts: Dict[str, str]) -> None:
    """Raises for keys that come twice or would be taken for sites."""
    refuse_twice(keys, "by")
    for part in parts:
        if part in keys:
            raise ValueError(f"the key '{part}' would be taken for sites; give it another name")


def _numbers(column: Any) -> Any:
    """As 32- or 64-bit floats that sort alike everywhere: no gaps, no negative zeros."""
    if column.type != pa.float32():
        column = column.cast(pa.float64())
    return pc.add(pc.fill_null(column, pa.scalar(NAN, column.type)), pa.scalar(0, column.type))


def _key(column: Any, name: str) -> Any:
    """A key whose equal values are the same: without dictionaries, not a number and negative zeros."""
    kind = column.type
    if pa.types.is_dictionary(kind):
        return _key(column.cast(kind.value_type), name)
    if pa.types.is_nested(kind) and not pa.types.is_struct(kind):
        raise TypeError(f"the key '{name}' is {kind}; make it texts, which can be told apart")
    if pa.types.is_floating(kind):
        wide = column.cast(pa.float32()) if kind == pa.float16() else column
        wide = pc.if_else(pc.is_nan(wide), None, pc.add(wide, pa.scalar(0, wide.type)))
        return wide.cast(kind)
    views = {pa.string_view(): pa.string(), pa.binary_view(): pa.binary()}
    return column.cast(views.get(kind, kind))


def _sortable(column: Any) -> List[Any]:
    """A key as columns that can be sorted and compared."""
    if pa.types.is_struct(column.type):
        fields = [column.type.field(i).name for i in range(column.type.num_fields)]
        parts = [part for i, name in enumerate(fields) for part in _sortable(_key(pc.struct_field(column, [i]), name))]
        return [pc.is_null(column), *parts]
    if pa.types.is_null(column.type):
        return []
    return [column.cast(pa.float32()) if column.type == pa.float16() else column]


def _sorted(keys: Sequence[Any], others: Sequence[Any], rows: int) -> Any:
    """The order of rows by keys and then by others, and whether each row of that order is another
    wafer than the one before."""
    parts = [part for key in keys for part in _sortable(key)]
    columns = {str(i): part for i, part in enumerate([*parts, *others])}
    if not columns:
        return pa.array(range(rows), pa.uint64()), pa.array([i == 0 for i in range(rows)], pa.bool_())
    order = pc.sort_indices(pa.table(columns), sort_keys=[(name, "ascending") for name in columns])
    new = pa.array([False] * max(rows - 1, 0), pa.bool_())
    for part in parts:
        part = part.take(order)
        one, next_one = part.slice(0, max(rows - 1, 0)), part.slice(1)
        differ = pc.coalesce(pc.not_equal(one, next_one), pc.xor(one.is_null(), next_one.is_null()))
        new = pc.or_(new, differ)
    chunks = new.chunks if isinstance(new, pa.ChunkedArray) else [new]
    return order, pa.concat_arrays([pa.array([True] * min(rows, 1), pa.bool_()), *chunks])


def wafers(table: Any, by: Names, x: str = "x", y: str = "y", value: Names = "value") -> "pa.Table":
    """A table of sites as one of wafers: the columns `by`, and lists `x`, `y` and `value`; several
    values are lists of their own names.

    Takes any table with the Arrow PyCapsule interface. Wafers are sorted by their keys and sites by
    `y`, `x` and values, so that any order of the rows gives the same table: sums of floats depend
    on their order. Keys are of any type but lists. Missing keys come last, and are one key.
    """
    table, keys, parts = pa.table(table), names_of(by), parts_of(x, y, value)
    refuse_keys(keys, parts)
    columns = {key: _key(_batch.column(table, key), key) for key in keys}
    for part, name in parts.items():
        columns[part] = _numbers(_batch.column(table, name))
    numbers = [columns[part] for part in ("y", "x", *list(parts)[2:])]
    order, new = _sorted([columns[key] for key in keys], numbers, len(table))
    first = pc.indices_nonzero(new)
    starts = pa.concat_arrays([first.cast(pa.int64()), pa.array([len(table)], pa.int64())])
    arrays = [columns[key].take(order.take(first)) for key in keys]
    for part in parts:
        items = columns[part].take(order).combine_chunks() if len(table) else columns[part]
        items = pa.array([], items.type) if len(table) == 0 else items
        arrays.append(pa.LargeListArray.from_arrays(starts, items))
    return pa.Table.from_arrays(arrays, names=[*keys, *parts])


def beside(batch: Any, to: Any, by: Sequence[str], lists: Dict[str, str]) -> Any:
    """The record batch with columns of the one wafer in the table `to` that has the same keys, null
    where there is none or more than one. `lists` are those columns: new names by those of `to`."""
    both = []
    for key in by:
        pair = [_key(_batch.column(one, key), key) for one in (batch, to)]
        joined = pa.concat_tables(
            [pa.table({"key": one}) for one in pair], promote_options="permissive"
        )
        both.append(joined["key"])
    order, new = _sorted(both, [], len(batch) + len(to))
    wafer = pc.cumulative_sum(new.cast(pa.int64())).take(pc.sort_indices(order))
    given, others = wafer.slice(0, len(batch)), wafer.slice(len(batch))
    counts = pc.value_counts(others)
    single = counts.field("values").filter(pc.equal(counts.field("counts"), 1))
    at = pc.if_else(pc.is_in(given, single), pc.index_in(given, others), None)
    for name, new_name in lists.items():
        if new_name in batch.schema.names:
            raise ValueError(f"the batch has a column '{new_name}' of its own; give it another name")
        column = _batch.column(to, name).take(at)
        chunks = column.chunks if isinstance(column, pa.ChunkedArray) else [column]
        column = pa.concat_arrays(chunks) if chunks else pa.array([], column.type)
        batch = batch.append_column(new_name, column)
    return batch
