# SPDX-License-Identifier: MIT
"""Work on batches that an engine sends to other processes."""

from array import array
from typing import Any, Dict, Iterator, List, NamedTuple, Optional, Sequence

import pyarrow as pa

from . import _batch, _core, arrow
from ._sites import Names, names_of, parts_of, refuse_keys
from ._wafer import Wafer

ROWS = 256
"""Wafers that are drawn before their pictures are handed on, so that few of them are held."""


class Reference(NamedTuple):
    """A wafer that others are compared with, as it is sent along."""

    x: Any
    y: Any
    value: Any
    diameter: float
    test_diameter: float

    @classmethod
    def of(cls, wafer: Wafer) -> "Reference":
        x, y, value = (array("f", numbers) for numbers in _core.wafer_sites(wafer._handle))
        return cls(x, y, value, wafer.diameter, wafer.test_diameter)

    def wafer(self) -> Wafer:
        return Wafer(
            self.x, self.y, self.value, diameter=self.diameter, test_diameter=self.test_diameter
        )


class Job(NamedTuple):
    """A function of `discoplan.arrow` with its keywords. `to` is what differences are to: a
    `Reference`, or what `discoplan.arrow.differences` takes."""

    work: str
    options: Dict[str, Any]
    to: Any = None

    @property
    def file(self) -> Optional[str]:
        """The name of the column of pictures."""
        return self.options.get("format", "png") if self.work == "plots" else None

    @property
    def texts(self) -> List[str]:
        """The columns of texts that come out between the keys and the rest."""
        return [] if isinstance(self.options["value"], str) else ["parameter"]

    @property
    def lists(self) -> List[str]:
        """The columns of lists that come out."""
        return ["x", "y", "value"] if self.work == "differences" else []

    @property
    def figures(self) -> List[str]:
        return _batch.chosen(self.options.get("figures"))

    def on(self, batch: Any) -> Any:
        """The work on a record batch, in types that every engine knows."""
        to = self.to.wafer() if isinstance(self.to, Reference) else self.to
        given = [] if to is None else [to]
        done = getattr(arrow, self.work)(batch, *given, **self.options)
        narrow = {pa.large_binary(): pa.binary(), pa.large_string(): pa.string()}
        added = len(done.schema.names) - done.schema.names.index("statistics")
        fields = list(done.schema)
        for i in range(len(fields) - added, len(fields)):
            fields[i] = fields[i].with_type(narrow.get(fields[i].type, fields[i].type))
        wanted = pa.schema(fields)
        return done if done.schema.equals(wanted) else done.cast(wanted)

    def __call__(self, batches: Any) -> Iterator[Any]:
        for batch in batches:
            rows = ROWS if self.work == "plots" else max(len(batch), 1)
            for start in range(0, len(batch), rows):
                yield self.on(batch.slice(start, rows))


class Plan(NamedTuple):
    """What is to be done with a DataFrame of sites or of wafers."""

    job: Job
    keys: List[str]
    parts: Dict[str, str]
    """The columns of sites in the DataFrame, by what the job calls their lists."""
    is_sites: bool

    @property
    def pairs(self) -> Dict[str, str]:
        """What the job calls the lists of the wafers that others are compared with, by what it
        calls those of the others."""
        x, y, value = (self.job.options[part] for part in ("x", "y", "value"))
        return {x: "to_x", y: "to_y", **{one: f"to_{one}" for one in names_of(value)}}


def plan(
    work: str,
    names: Sequence[str],
    are_lists: Any,
    by: Optional[Names],
    sites: Sequence[Any],
    options: Dict[str, Any],
    to: Any = None,
) -> Plan:
    """Raises what the work raises for bad options and columns, before anything is sent.

    `names` are the columns of the DataFrame, and `are_lists` tells whether one has lists.
    """
    x, y, value = sites
    parts = parts_of(x, y, value)
    beside = names_of(to) if isinstance(to, (str, list, tuple)) else []
    columns = [*parts.values(), *beside]
    keys = [one for one in names if one not in columns] if by is None else names_of(by)
    for one in (*columns, *keys):
        if one not in names:
            raise ValueError(f"the DataFrame has no column '{one}', but {', '.join(names)}")
    is_sites = not all(are_lists(one) for one in columns)
    if is_sites and by is None:
        raise ValueError("a DataFrame of sites needs `by`: the columns that tell wafers apart")
    parts.update({one: one for one in beside})
    if is_sites:
        refuse_keys(keys, parts)
        x, y, value = "x", "y", "value" if isinstance(value, str) else value
    else:
        parts = {one: one for one in columns}
    if isinstance(to, Wafer):
        to = Reference.of(to)
    elif arrow.is_table(to) and to is not None:
        to = {one: ("to_x", "to_y", f"to_{one}") for one in names_of(value)}
    job = Job(work, {**options, "x": x, "y": y, "value": value}, to)
    lists = {*parts, *(one for found in (to if isinstance(to, dict) else {}).values() for one in found)}
    fields = {one: pa.list_(pa.float64()) for one in lists}
    if options.get("name"):
        fields[options["name"]] = pa.string()
    for one in keys:
        fields.setdefault(one, pa.null())
    job.on(pa.RecordBatch.from_pylist([], pa.schema(fields.items())))
    return Plan(job, keys, parts, is_sites)
