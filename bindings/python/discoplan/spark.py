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

from ._engine import Job, Plan, plan

Names = Union[str, Sequence[str]]
By = Optional[Names]


def _column(name: str) -> Any:
    return F.col("`" + name.replace("`", "``") + "`")


def _number(df: DataFrame, name: str) -> Any:
    """As floats that sort alike everywhere: no gaps, no negative zeros."""
    kind = "float" if isinstance(df.schema[name].dataType, T.FloatType) else "double"
    return F.coalesce(_column(name).cast(kind), F.lit(float("nan")).cast(kind)) + F.lit(0.0).cast(kind)


def _key(df: DataFrame, name: str) -> Any:
    """A key that is missing is null, and not a number is missing."""
    key = _column(name)
    if isinstance(df.schema[name].dataType, (T.FloatType, T.DoubleType)):
        key = F.when(~F.isnan(key), key)
    return key.alias(name)


def _sites(df: DataFrame, plan: Plan, name: str) -> DataFrame:
    """The keys and a struct of each site, whose first fields are those that sites are sorted by."""
    x, y, *values = plan.parts
    site = F.struct(*(_number(df, plan.parts[part]).alias(part) for part in (y, x, *values)))
    return df.select(*(_key(df, key) for key in plan.keys), site.alias(name))


def _wafers(df: DataFrame, plan: Plan, to: Optional[DataFrame]) -> DataFrame:
    """One row for each wafer, its sites sorted: sums of floats depend on their order."""
    sites, lists = _sites(df, plan, "sites"), {part: ("sites", part) for part in plan.parts}
    if to is not None:
        sites = sites.unionByName(_sites(to, plan, "to"), allowMissingColumns=True)
        lists.update({name: ("to", part) for part, name in plan.pairs.items()})
    gathered = [F.array_sort(F.collect_list(name)).alias(name) for name in sites.columns[len(plan.keys) :]]
    grouped = sites.groupBy(*map(_column, plan.keys)).agg(*gathered)
    if to is not None:
        grouped = grouped.where(F.size("sites") > 0).withColumn("to", F.when(F.size("to") > 0, F.col("to")))
    return grouped.select(
        *map(_column, plan.keys), *(F.col(of)[part].alias(name) for name, (of, part) in lists.items())
    )


def _pairs(df: DataFrame, plan: Plan, to: DataFrame) -> DataFrame:
    """Each row of wafers with the lists of the one in `to` that has the same keys."""
    rows = df.select(
        *(_key(df, key).alias(f"key {i}") for i, key in enumerate(plan.keys)),
        F.struct(*map(_column, [*plan.keys, *plan.parts])).alias("row"),
    )
    others = to.select(
        *(_key(to, key).alias(f"key {i}") for i, key in enumerate(plan.keys)),
        F.struct(*(_column(part).alias(name) for part, name in plan.pairs.items())).alias("to"),
    )
    both = rows.unionByName(others, allowMissingColumns=True).groupBy(*map(_column, rows.columns[:-1]))
    found = both.agg(F.collect_list("row").alias("rows"), F.collect_list("to").alias("to"))
    to_one = F.when(F.size("to") == 1, F.col("to")[0]).alias("to")
    return found.select(F.explode("rows").alias("row"), to_one).select("row.*", "to.*")


def _schema(keys: Sequence[T.StructField], job: Job) -> T.StructType:
    fields = list(keys) + [T.StructField(name, T.StringType()) for name in job.texts]
    fields += [T.StructField(name, T.ArrayType(T.FloatType())) for name in job.lists]
    figures = [T.StructField(key, T.DoubleType()) for key in job.figures]
    fields.append(T.StructField("statistics", T.StructType(figures)))
    if job.file is not None:
        fields.append(T.StructField(job.file, T.StringType() if job.file == "svg" else T.BinaryType()))
    return T.StructType(
        [*fields, T.StructField("status", T.IntegerType()), T.StructField("message", T.StringType())]
    )


def _are_lists(df: DataFrame) -> Any:
    return lambda name: isinstance(df.schema[name].dataType, T.ArrayType)


def _run(df: DataFrame, work: str, by: By, sites: Sequence[Any], options: Any, to: Any = None) -> DataFrame:
    made = plan(work, df.columns, _are_lists(df), by, sites, options, to)
    other = to if isinstance(to, DataFrame) else None
    # Not a number, which a column without nulls may hold, is null among the keys.
    fields = [T.StructField(name, df.schema[name].dataType) for name in made.keys]
    if other is not None:
        there = plan(work, other.columns, _are_lists(other), made.keys, sites, options, to)
        if there.is_sites != made.is_sites:
            raise ValueError("to: takes wafers where the DataFrame has wafers, and sites where it has sites")
    if made.is_sites:
        wafers = _wafers(df, made, other)
    elif other is not None:
        wafers = _pairs(df, made, other)
    else:
        wafers = df.select(*map(_column, [*made.keys, *made.parts]))
    job = made.job

    def run(batches: Any) -> Any:
        yield from job(batches)

    return wafers.mapInArrow(run, _schema(fields, job))


def statistics(
    df: DataFrame, by: By = None, x: str = "x", y: str = "y", value: Names = "value", **options: Any
) -> DataFrame:
    """The figures of merit of each wafer, a struct `statistics`.

    The keywords are those of `discoplan.arrow.figures`. Raises `ValueError` for bad ones and for
    columns that aren't there, before anything runs.
    """
    return _run(df, "figures", by, (x, y, value), options)


def plots(
    df: DataFrame, by: By = None, x: str = "x", y: str = "y", value: Names = "value", **options: Any
) -> DataFrame:
    """The same with pictures, by the keywords of `discoplan.arrow.plots`."""
    return _run(df, "plots", by, (x, y, value), options)


def differences(
    df: DataFrame,
    to: Any,
    by: By = None,
    x: str = "x",
    y: str = "y",
    value: Names = "value",
    **options: Any,
) -> DataFrame:
    """Each wafer minus another, as `discoplan.arrow.differences`: `to` is a `Wafer`, a column of
    values at the same sites, or a DataFrame with the same columns, of which each wafer takes that
    with the same keys. Such two are grouped together, by the one shuffle."""
    return _run(df, "differences", by, (x, y, value), options, to)
