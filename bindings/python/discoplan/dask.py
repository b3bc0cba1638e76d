# SPDX-License-Identifier: MIT
"""Wafers of a Dask DataFrame, on its own workers.

    >>> import discoplan.dask
    >>> sites = dask.dataframe.read_parquet("archive")
    >>> maps = discoplan.dask.plots(sites, by=["lot", "wafer"], x="X", y="Y", value="THK")
    >>> maps[["lot", "wafer", "png"]].to_parquet("maps")

A DataFrame of sites, with numbers in the columns `x`, `y` and `value`, is shuffled once by the
columns `by`. In a DataFrame of wafers these columns are lists of Arrow (those of `read_parquet`
with `dtype_backend="pyarrow"`), and nothing is shuffled. All is lazy, and comes out with Arrow's
types. The same wafers give the same bytes in any number of partitions and in any order. A partition
is held at once.
"""

from typing import Any, Optional, Sequence, Union

import pandas as pd
import pyarrow as pa

from ._engine import Plan, plan
from ._sites import beside, wafers

Names = Union[str, Sequence[str]]
By = Optional[Names]


def _table(frame: Any, plan: Plan) -> Any:
    """A partition as one of wafers."""
    table = pa.Table.from_pandas(frame, preserve_index=False)
    if plan.is_sites:
        columns = {part: table[name] for part, name in plan.parts.items()}
        sites = pa.table({**{key: table[key] for key in plan.keys}, **columns})
        x, y, *values = plan.parts
        table = wafers(sites, plan.keys, x, y, values)
    return table.combine_chunks()


def _part(frame: Any, *others: Any, plan: Plan) -> Any:
    """The work on one partition, and that of the wafers to compare with."""
    table = _table(frame, plan)
    batches = table.to_batches() or [pa.RecordBatch.from_pylist([], table.schema)]
    for other in others:
        other = _table(other, plan)
        batches = [beside(batch, other, plan.keys, plan.pairs) for batch in batches]
    done = [piece for batch in batches for piece in plan.job([batch])] or [plan.job.on(batches[0])]
    return pa.Table.from_batches(done).to_pandas(types_mapper=pd.ArrowDtype)


def _are_lists(df: Any) -> Any:
    def is_lists(name: str) -> bool:
        kind = getattr(df.dtypes[name], "pyarrow_dtype", None)
        return kind is not None and pa.types.is_nested(kind) and not pa.types.is_struct(kind)

    return is_lists


def _shuffled(df: Any, plan: Plan, npartitions: int) -> Any:
    how = None if plan.is_sites else "tasks"  # which takes columns of lists, too
    return df.shuffle(on=plan.keys, npartitions=npartitions, shuffle_method=how)


def _run(df: Any, work: str, by: By, sites: Sequence[Any], options: Any, to: Any = None) -> Any:
    made = plan(work, list(df.columns), _are_lists(df), by, sites, options, to)
    columns = [*made.keys, *made.parts.values()]
    df, others = df[columns], []
    if hasattr(to, "map_partitions"):
        there = plan(work, list(to.columns), _are_lists(to), made.keys, sites, options, to)
        if there.is_sites != made.is_sites:
            raise ValueError("to: takes wafers where the DataFrame has wafers, and sites where it has sites")
        # Equal keys go to the same partition if they are of one type.
        to = to[columns].astype({key: df.dtypes[key] for key in made.keys})
        others = [_shuffled(to, made, df.npartitions)]
    if made.is_sites or others:
        df = _shuffled(df, made, df.npartitions)
    meta = _part(df._meta, *(other._meta for other in others), plan=made)
    return df.map_partitions(_part, *others, plan=made, meta=meta, align_dataframes=False)


def statistics(
    df: Any, by: By = None, x: str = "x", y: str = "y", value: Names = "value", **options: Any
) -> Any:
    """The figures of merit of each wafer, a struct `statistics`.

    The keywords are those of `discoplan.arrow.figures`. Raises `ValueError` for bad ones and for
    columns that aren't there, before anything runs.
    """
    return _run(df, "figures", by, (x, y, value), options)


def plots(
    df: Any, by: By = None, x: str = "x", y: str = "y", value: Names = "value", **options: Any
) -> Any:
    """The same with pictures, by the keywords of `discoplan.arrow.plots`."""
    return _run(df, "plots", by, (x, y, value), options)


def differences(
    df: Any,
    to: Any,
    by: By = None,
    x: str = "x",
    y: str = "y",
    value: Names = "value",
    **options: Any,
) -> Any:
    """Each wafer minus another, as `discoplan.arrow.differences`: `to` is a `Wafer`, a column of
    values at the same sites, or a DataFrame with the same columns, of which each wafer takes that
    with the same keys. Each of such two is shuffled once."""
    return _run(df, "differences", by, (x, y, value), options, to)
