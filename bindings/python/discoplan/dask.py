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

from . import arrow
from ._engine import Job, job
from ._wafer import Wafer

By = Union[str, Sequence[str], None]


def _part(frame: Any, job: Job, by: Optional[Sequence[str]], sites: Sequence[str]) -> Any:
    """The work on one partition."""
    table = pa.Table.from_pandas(frame, preserve_index=False)
    if by is not None:
        table = arrow.wafers(table, by, *sites)
    batches = table.combine_chunks().to_batches() or [pa.RecordBatch.from_pylist([], table.schema)]
    done = [piece for batch in batches for piece in job([batch])] or [job.on(batches[0])]
    return pa.Table.from_batches(done).to_pandas(types_mapper=pd.ArrowDtype)


def _is_lists(dtype: Any) -> bool:
    kind = getattr(dtype, "pyarrow_dtype", None)
    return kind is not None and not pa.types.is_primitive(kind) and not pa.types.is_string(kind)


def _run(
    df: Any, work: str, by: By, sites: Sequence[str], options: Any, to: Optional[Wafer] = None
) -> Any:
    missing = [name for name in sites if name not in df.columns]
    if missing:
        raise ValueError(f"the DataFrame has no column '{missing[0]}', but {', '.join(df.columns)}")
    others = [name for name in df.columns if name not in sites]
    keys = others if by is None else [by] if isinstance(by, str) else list(by)
    df, names, group = df[[*keys, *sites]], list(sites), None
    if not all(_is_lists(df.dtypes[name]) for name in sites):
        if by is None:
            raise ValueError("a DataFrame of sites needs `by`: the columns that tell wafers apart")
        df, names, group = df.shuffle(on=keys), ["x", "y", "value"], keys
    made = job(work, {**options, **dict(zip(("x", "y", "value"), names))}, to)
    meta = _part(df._meta, made, group, sites)
    return df.map_partitions(_part, made, group, sites, meta=meta)


def statistics(
    df: Any, by: By = None, x: str = "x", y: str = "y", value: str = "value", **options: Any
) -> Any:
    """The figures of merit of each wafer, a struct `statistics`.

    The keywords are those of `discoplan.arrow.figures`. Raises `ValueError` for bad ones and for
    columns that aren't there, before anything runs.
    """
    return _run(df, "figures", by, (x, y, value), options)


def plots(
    df: Any, by: By = None, x: str = "x", y: str = "y", value: str = "value", **options: Any
) -> Any:
    """The same with pictures, by the keywords of `discoplan.arrow.plots`."""
    return _run(df, "plots", by, (x, y, value), options)


def differences(
    df: Any,
    to: Wafer,
    by: By = None,
    x: str = "x",
    y: str = "y",
    value: str = "value",
    **options: Any,
) -> Any:
    """Each wafer minus the wafer `to`, as `discoplan.arrow.differences`."""
    return _run(df, "differences", by, (x, y, value), options, to)
