# SPDX-License-Identifier: MIT
"""Wafers of a Ray Dataset, on its own workers.

    >>> import discoplan.ray
    >>> wafers = ray.data.read_parquet("archive")
    >>> maps = discoplan.ray.plots(wafers, size=(400, 300))
    >>> maps.select_columns(["lot", "slot", "png"]).write_parquet("maps")

A Dataset of sites, with numbers in the columns `x`, `y` and `value`, is grouped by the columns `by`,
which is the one shuffle; one of wafers has lists there, goes batch by batch and isn't shuffled. All
is lazy. The same wafers give the same bytes in any blocks and in any order.
"""

from typing import Any, Optional, Sequence, Union

import pyarrow as pa

from ._engine import ROWS, Plan, plan
from ._sites import wafers

Names = Union[str, Sequence[str]]
By = Optional[Names]


def _are_lists(dataset: Any) -> Any:
    schema = dataset.schema()
    kinds = dict(zip(schema.names, schema.types))
    return lambda name: pa.types.is_nested(kinds[name]) and not pa.types.is_struct(kinds[name])


def _batch(table: Any, plan: Plan) -> Any:
    """The work on the rows that a task is given."""
    table = table.select([*plan.keys, *dict.fromkeys(plan.parts.values())])
    if plan.is_sites:
        columns = {part: table[name] for part, name in plan.parts.items()}
        x, y, *values = plan.parts
        table = wafers(pa.table({**{key: table[key] for key in plan.keys}, **columns}), plan.keys, x, y, values)
    return plan.job.on(table.combine_chunks())


def _run(dataset: Any, work: str, by: By, sites: Sequence[Any], options: Any, to: Any = None) -> Any:
    if hasattr(to, "map_batches"):
        raise TypeError("to: takes a Wafer or a column; join the datasets by their keys first")
    made = plan(work, dataset.columns(), _are_lists(dataset), by, sites, options, to)
    given = {"fn_args": [made], "batch_format": "pyarrow"}
    if made.is_sites:
        return dataset.groupby(made.keys).map_groups(_batch, **given)
    return dataset.map_batches(_batch, batch_size=ROWS, **given)


def statistics(
    dataset: Any, by: By = None, x: str = "x", y: str = "y", value: Names = "value", **options: Any
) -> Any:
    """The figures of merit of each wafer, a struct `statistics`.

    The keywords are those of `discoplan.arrow.figures`. Raises `ValueError` for bad ones and for
    columns that aren't there, before anything but the schema is asked for.
    """
    return _run(dataset, "figures", by, (x, y, value), options)


def plots(
    dataset: Any, by: By = None, x: str = "x", y: str = "y", value: Names = "value", **options: Any
) -> Any:
    """The same with pictures, by the keywords of `discoplan.arrow.plots`."""
    return _run(dataset, "plots", by, (x, y, value), options)


def differences(
    dataset: Any,
    to: Any,
    by: By = None,
    x: str = "x",
    y: str = "y",
    value: Names = "value",
    **options: Any,
) -> Any:
    """Each wafer minus another, as `discoplan.arrow.differences`: `to` is a `Wafer` or a column of
    values at the same sites."""
    return _run(dataset, "differences", by, (x, y, value), options, to)
