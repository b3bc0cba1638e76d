# SPDX-License-Identifier: MIT
"""An archive of wafers in files of Parquet, made by a seed."""

from pathlib import Path

import numpy as np
import pyarrow as pa
import pyarrow.parquet as pq


def make(path: Path, wafers: int, sites: int, files: int = 8) -> None:
    """Wafers in rows, of one layout of sites; as many files as keep all cores busy."""
    draw = np.random.default_rng(sites)
    radius, angle = 145 * np.sqrt(draw.random(sites)), 2 * np.pi * draw.random(sites)
    x, y = (radius * f(angle) for f in (np.cos, np.sin))
    path.mkdir()
    for i, part in enumerate(np.array_split(np.arange(wafers), files)):
        n = len(part)
        value = 10 + x / 300 * draw.normal(1, 0.3, (n, 1)) + draw.normal(0, 0.1, (n, sites))
        starts = pa.array(np.arange(n + 1) * sites, pa.int32())
        flat = (np.tile(x, n), np.tile(y, n), value.ravel())
        lists = [pa.ListArray.from_arrays(starts, pa.array(numbers.astype("f4"))) for numbers in flat]
        names = [pa.array([f"L{w // 25}" for w in part]), pa.array(part % 25 + 1, pa.int32())]
        pq.write_table(pa.table([*names, *lists], ["lot", "slot", "x", "y", "value"]), path / f"{i}.parquet")
