# SPDX-License-Identifier: MIT
"""Wafers for the engines, what one process makes of them, and gates that hold tasks up."""

import datetime
import os
import time
from pathlib import Path

import numpy as np
import pyarrow as pa
import pytest

import discoplan as dp

BY = ["lot", "slot"]
SITES = {"by": BY, "x": "X", "y": "Y", "value": "THK"}
PLOT = {"size": (160, 120), "name": "lot", "wafer": {"diameter": 300}}
GOLDEN = dp.Wafer([0, 100, 0, -100, 0], [0, 0, 100, 0, -100], [10.0, 11, 12, 13, 14], diameter=300)


def site_table(wafers: int = 60) -> pa.Table:
    """Sites in no order; one wafer has a gap, one a site twice, one lies off."""
    draw = np.random.default_rng(5)
    counts = draw.integers(9, 60, wafers)
    number = np.repeat(np.arange(wafers), counts)
    n = len(number)
    value = draw.normal(10, 1, n)
    value[number == 7] = np.nan
    x, y = draw.uniform(-100, 100, (2, n)).astype("f4")
    x[np.flatnonzero(number == 9)[0]] = 400
    y[np.flatnonzero(number == 3)[:2]] = [0.0, -0.0]
    table = pa.table({
        "lot": pa.array([f"L{i // 25}" for i in number]),
        "slot": pa.array(number % 25 + 1, pa.int32()),
        "X": x, "Y": y,
        "THK": pa.array(value, mask=(np.arange(n) == np.flatnonzero(number == 8)[2])),
        "RS": pa.array(value * 2 + draw.normal(0, 0.1, n), pa.float32()),
    })
    table = pa.concat_tables([table, table.slice(5, 1)])
    return table.take(draw.permutation(n + 1))


def keyed_table() -> pa.Table:
    """Sites whose wafers are told apart by keys of many types, some of them missing."""
    day = datetime.datetime(2026, 3, 1, tzinfo=datetime.timezone.utc)
    wafer = np.random.default_rng(4).permutation(np.repeat(np.arange(12), 6))
    site = np.arange(72) * 1.0
    return pa.table({
        "lot": pa.array([[None, "A", "B"][i // 4] for i in wafer]),
        "slot": pa.array([i % 2 for i in wafer], pa.int8()),
        "day": pa.array([day.date() + datetime.timedelta(days=int(i) % 4 // 2) for i in wafer]),
        "time": pa.array([day + datetime.timedelta(hours=int(i) % 2) for i in wafer], pa.timestamp("us", "UTC")),
        "dose": pa.array([None if i % 4 == 0 else i / 2 for i in wafer], pa.float64()),
        "good": pa.array([bool(i % 3) for i in wafer]),
        "X": site % 9 * 10, "Y": site // 9 * 10, "THK": site,
    })


KEYED = {"by": ["lot", "slot", "day", "time", "dose", "good"], "x": "X", "y": "Y", "value": "THK"}


def wait_for(is_so, seconds: float = 600) -> None:
    end = time.monotonic() + seconds
    while not is_so():
        if time.monotonic() > end:
            raise TimeoutError("waited in vain")
        time.sleep(0.02)


class Gate:
    """Tasks that say in files that they have begun, and wait before it until it is opened."""

    def __init__(self, folder: Path) -> None:
        self.folder = str(folder)

    def mark(self, what: str) -> None:
        Path(self.folder, f"{what}-{os.getpid()}-{time.time_ns()}").touch()

    def wait(self) -> None:
        wait_for(Path(self.folder, "open").exists)

    def open(self) -> None:
        Path(self.folder, "open").touch()

    def begun(self, what: str = "") -> list:
        """The processes that have marked this, one entry for each time."""
        names = [path.name.rsplit("-", 2) for path in Path(self.folder).iterdir()]
        return [int(name[1]) for name in names if len(name) == 3 and name[0].startswith(what)]


@pytest.fixture
def gate(tmp_path: Path) -> Gate:
    return Gate(tmp_path)


def rows(found: list) -> list:
    """Rows in the order of the keys, comparable whatever made them."""
    return sorted(found, key=lambda row: (row["lot"], row["slot"], row.get("parameter", "")))


def text_rows(found: list) -> list:
    """Rows of keys that can't be compared."""
    return sorted(map(str, found))


@pytest.fixture(scope="session")
def sites() -> pa.Table:
    return site_table()


BOTH = ["THK", "RS"]


def others(sites: pa.Table) -> pa.Table:
    """What wafers are compared with: half of their sites, but none of every seventh wafer."""
    kept = [slot % 7 != 0 for slot in sites["slot"].to_pylist()]
    return sites.filter(pa.array(kept)).slice(0, len(sites) // 2)


@pytest.fixture(scope="session")
def expected(sites: pa.Table) -> dict:
    wafers = dp.arrow.wafers(sites, **SITES)
    both = dp.arrow.wafers(sites, BY, "X", "Y", BOTH)
    found = {
        "statistics": dp.arrow.figures(wafers, diameter=300, figures="all"),
        "plots": dp.arrow.plots(wafers, **PLOT),
        "differences": dp.arrow.differences(wafers, GOLDEN, diameter=300),
        "parameters": dp.arrow.plots(both, value=BOTH, **PLOT),
        "columns": dp.arrow.differences(both, "RS", value="THK", diameter=300),
        "tables": dp.arrow.differences(wafers, dp.arrow.wafers(others(sites), **SITES), by=BY, name="lot"),
    }
    found = {name: table.to_pylist() for name, table in found.items()}
    found = {name: rows(table) for name, table in found.items()}
    good = {name: sum(row["status"] == 0 for row in table) for name, table in found.items()}
    assert good["plots"] == 57 and len(found["plots"]) == 60 and good["parameters"] > 110
    assert good["columns"] == 57 and 30 < good["tables"] < 57
    return found
