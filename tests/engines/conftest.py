# SPDX-License-Identifier: MIT
"""Wafers for the engines, and what one process makes of them."""

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
    })
    table = pa.concat_tables([table, table.slice(5, 1)])
    return table.take(draw.permutation(n + 1))


def rows(found: list) -> list:
    """Rows in the order of the keys, comparable whatever made them."""
    return sorted(found, key=lambda row: (row["lot"], row["slot"]))


@pytest.fixture(scope="session")
def sites() -> pa.Table:
    return site_table()


@pytest.fixture(scope="session")
def expected(sites: pa.Table) -> dict:
    wafers = dp.arrow.wafers(sites, **SITES)
    found = {
        "statistics": dp.arrow.figures(wafers, diameter=300),
        "plots": dp.arrow.plots(wafers, **PLOT),
        "differences": dp.arrow.differences(wafers, GOLDEN, diameter=300),
    }
    found = {name: table.to_pylist() for name, table in found.items()}
    assert [row["status"] for row in found["plots"]].count(0) == 57 and len(found["plots"]) == 60
    return found
