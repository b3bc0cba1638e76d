# SPDX-License-Identifier: MIT
"""Work on batches that an engine sends to other processes."""

from array import array
from typing import Any, Dict, Iterator, List, NamedTuple, Optional

import pyarrow as pa

from . import _core, arrow
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
    """A function of `discoplan.arrow` with its keywords."""

    work: str
    options: Dict[str, Any]
    to: Optional[Reference] = None

    @property
    def file(self) -> Optional[str]:
        """The name of the column of pictures."""
        return self.options.get("format", "png") if self.work == "plots" else None

    @property
    def lists(self) -> List[str]:
        """The columns of lists that come out."""
        return ["x", "y", "value"] if self.work == "differences" else []

    def on(self, batch: Any) -> Any:
        """The work on a record batch, in types that every engine knows."""
        given = [] if self.to is None else [self.to.wafer()]
        done = getattr(arrow, self.work)(batch, *given, **self.options)
        narrow = {pa.large_binary(): pa.binary(), pa.large_string(): pa.string()}
        added = len(done.schema.names) - done.schema.names.index("statistics")
        fields = list(done.schema)
        for i in range(len(fields) - added, len(fields)):
            fields[i] = fields[i].with_type(narrow.get(fields[i].type, fields[i].type))
        return done.cast(pa.schema(fields))

    def __call__(self, batches: Any) -> Iterator[Any]:
        for batch in batches:
            rows = ROWS if self.work == "plots" else max(len(batch), 1)
            for start in range(0, len(batch), rows):
                yield self.on(batch.slice(start, rows))


def job(work: str, options: Dict[str, Any], to: Optional[Wafer] = None) -> Job:
    """Raises what the work raises for bad options, before anything is sent."""
    made = Job(work, options, None if to is None else Reference.of(to))
    names = [options.get(part, part) for part in ("x", "y", "value")]
    name = options.get("name")
    fields = [(one, pa.list_(pa.float64())) for one in names]
    made.on(pa.RecordBatch.from_pylist([], pa.schema(fields + ([(name, pa.string())] if name else []))))
    return made
