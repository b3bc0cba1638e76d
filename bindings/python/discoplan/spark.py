# SPDX-License-Identifier: MIT
"""Wafers of a Spark DataFrame, on its own executors.

    >>> import discoplan.spark
    >>> sites = spark.read.parquet("archive")
    >>> maps = discoplan.spark.plots(sites, by=["lot", "wafer"], x="X", y="Y", value="THK")
    >>> maps.where("status = 0").select("lot", "wafer", "png").write.parquet("maps")

A DataFrame of sites, with numbers in the columns `x`, `y` and `value`, is grouped by the columns
`by`, which is the one shuffle. In a DataFrame of wafers these columns are arrays, and no shuffle
occurs; `by` are the columns to keep there, all by default. All is lazy. The columns that come out
are known beforehand: the keys, what was asked for, `status` (0 for success) and `message`.

The same wafers give the same bytes in any number of partitions and in any order. The package and
pyarrow must be installed where executors run. `spark.sql.execution.arrow.maxRecordsPerBatch` says
how many wafers are held at once; take some hundreds for wafers of thousands of sites.
"""

from typing import Any, Optional, Sequence, Union

from pyspark.sql import DataFrame
from pyspark.sql import functions as F
from pyspark.sql import types as T

from . import _core
from ._engine import Job, job
from ._wafer import Wafer

By = Union[str, Sequence[str], None]


def _column(name: str) -> Any:
    return F.col("`" + name.replace("`", "``") + "`")


def _number(df: DataFrame, name: str) -> Any:
    """As floats that sort alike everywhere: no gaps, no negative zeros."""
    kind = "float" if isinstance(df.schema[name].dataType, T.FloatType) else "double"
    return F.coalesce(_column(name).cast(kind), F.lit(float("nan")).cast(kind)) + F.lit(0.0).cast(kind)


def _wafers(df: DataFrame, by: Sequence[str], sites: Sequence[str]) -> DataFrame:
    """One row for each wafer, its sites sorted: sums of floats depend on their order."""
    x, y, value = (_number(df, name).alias(part) for name, part in zip(sites, ("x", "y", "value")))
    grouped = df.groupBy(*map(_column, by)).agg(
        F.array_sort(F.collect_list(F.struct(y, x, value))).alias("sites")
    )
    parts = [F.col("sites")[part].alias(part) for part in ("x", "y", "value")]
    return grouped.select(*map(_column, by), *parts)


def _schema(keys: Sequence[T.StructField], job: Job) -> T.StructType:
    fields = list(keys)
    fields += [T.StructField(name, T.ArrayType(T.FloatType())) for name in job.lists]
    figures = [T.StructField(row[0], T.DoubleType()) for row in _core.figures()]
    fields.append(T.StructField("statistics", T.StructType(figures)))
    if job.file is not None:
        fields.append(T.StructField(job.file, T.StringType() if job.file == "svg" else T.BinaryType()))
    return T.StructType(
        [*fields, T.StructField("status", T.IntegerType()), T.StructField("message", T.StringType())]
    )


def _run(
    df: DataFrame, work: str, by: By, sites: Sequence[str], options: Any, to: Optional[Wafer] = None
) -> DataFrame:
    missing = [name for name in sites if name not in df.columns]
    if missing:
        raise ValueError(f"the DataFrame has no column '{missing[0]}', but {', '.join(df.columns)}")
    others = [name for name in df.columns if name not in sites]
    keys = others if by is None else [by] if isinstance(by, str) else list(by)
    if all(isinstance(df.schema[name].dataType, T.ArrayType) for name in sites):
        wafers, names = df.select(*map(_column, [*keys, *sites])), list(sites)
    elif by is None:
        raise ValueError("a DataFrame of sites needs `by`: the columns that tell wafers apart")
    elif any(part in keys for part in ("x", "y", "value")):
        raise ValueError("a key named x, y or value would be taken for sites; give it another name")
    else:
        wafers, names = _wafers(df, keys, sites), ["x", "y", "value"]
    made = job(work, {**options, **dict(zip(("x", "y", "value"), names))}, to)
    fields = [df.schema[name] for name in keys]

    def run(batches: Any) -> Any:
        yield from made(batches)

    return wafers.mapInArrow(run, _schema(fields, made))


def statistics(
    df: DataFrame, by: By = None, x: str = "x", y: str = "y", value: str = "value", **options: Any
) -> DataFrame:
    """The figures of merit of each wafer, a struct `statistics`.

    The keywords are those of `discoplan.arrow.figures`. Raises `ValueError` for bad ones and for
    columns that aren't there, before anything runs.
    """
    return _run(df, "figures", by, (x, y, value), options)


def plots(
    df: DataFrame, by: By = None, x: str = "x", y: str = "y", value: str = "value", **options: Any
) -> DataFrame:
    """The same with pictures, by the keywords of `discoplan.arrow.plots`."""
    return _run(df, "plots", by, (x, y, value), options)


def differences(
    df: DataFrame,
    to: Wafer,
    by: By = None,
    x: str = "x",
    y: str = "y",
    value: str = "value",
    **options: Any,
) -> DataFrame:
    """Each wafer minus the wafer `to`, as `discoplan.arrow.differences`."""
    return _run(df, "differences", by, (x, y, value), options, to)
