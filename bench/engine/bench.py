# SPDX-License-Identifier: MIT
"""Wafers by Spark on this machine's cores: the package beside the engine alone on the same batches,
beside the library called in one process, and beside pandas, scipy and matplotlib in the same engine.
Times are those of the wall, the least of some runs, for the engine waits for its own processes too."""

import argparse
import io
import os
import sys
import tempfile
import time
from pathlib import Path
from typing import Any, Callable, Iterator

import numpy as np
import pyarrow as pa
import pyarrow.parquet as pq

import discoplan as dp
import discoplan.spark as ds

MAP = {"size": (400, 300), "wafer": {"diameter": 300}}


def make(path: Path, wafers: int, sites: int, files: int = 8) -> None:
    """Wafers in rows, seeded, of one layout of sites; as many files as keep all cores busy."""
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


def nothing(batches: Iterator[Any]) -> Iterator[Any]:
    """What the engine costs by itself: every batch goes to Python, and a row for each comes back."""
    for batch in batches:
        yield pa.RecordBatch.from_arrays([batch.column(0), pa.nulls(len(batch), pa.float64())], ["lot", "found"])


def by_pandas(batches: Iterator[Any]) -> Iterator[Any]:
    for batch in batches:
        rows = [
            (np.mean(v), np.std(v, ddof=1), np.median(v), np.min(v), np.max(v), *np.quantile(v, [0.25, 0.75]))
            for v in batch.column("value").to_pandas()
        ]
        yield pa.RecordBatch.from_arrays([batch.column(0), pa.array([float(row[0]) for row in rows], pa.float64())], ["lot", "found"])


def by_matplotlib(batches: Iterator[Any]) -> Iterator[Any]:
    import matplotlib

    matplotlib.use("Agg")
    import matplotlib.pyplot as plt
    from scipy.interpolate import griddata

    at = np.linspace(-150, 150, 200)
    gx, gy = np.meshgrid(at, at)
    for batch in batches:
        files = []
        for row in batch.to_pandas().itertuples():
            figure, ax = plt.subplots(figsize=(4, 3), dpi=100)
            shown = ax.contourf(gx, gy, griddata((row.x, row.y), row.value, (gx, gy), "cubic"), levels=14)
            ax.plot(row.x, row.y, "k.", markersize=2)
            ax.set_aspect("equal")
            figure.colorbar(shown)
            file = io.BytesIO()
            figure.savefig(file, format="png")
            plt.close(figure)
            files.append(file.getvalue())
        yield pa.RecordBatch.from_arrays([batch.column(0), pa.array(files, pa.binary())], ["lot", "png"])


def least(work: Callable[[], Any], runs: int) -> float:
    times = []
    for _ in range(runs):
        start = time.perf_counter()
        work()
        times.append(time.perf_counter() - start)
    return min(times)


def run(df: Any) -> None:
    """All columns are made, and thrown away."""
    df.write.format("noop").mode("overwrite").save()


def show(what: str, ratio: float, goal: float, at_most: bool = True) -> None:
    met = ratio <= goal if at_most else ratio >= goal
    print(f"{what:68}{ratio:9.2f}   goal {'<=' if at_most else '>='} {goal:g}: {'met' if met else 'MISSED'}", flush=True)


def session(cores: int, batch: int) -> Any:
    from pyspark.sql import SparkSession

    os.environ.update(PYSPARK_PYTHON=sys.executable, SPARK_LOCAL_IP="127.0.0.1")
    made = SparkSession.builder.master(f"local[{cores}]").config("spark.ui.enabled", "false")
    made = made.config("spark.sql.execution.arrow.maxRecordsPerBatch", batch).getOrCreate()
    made.sparkContext.setLogLevel("ERROR")
    return made


def compare(folder: Path, wafers: int, sites: int, cores: int, runs: int, peers: int) -> None:
    path = folder / str(sites)
    make(path, wafers, sites)
    spark = session(cores, max(50000 // sites, 64) * 4)
    df = spark.read.parquet(str(path))
    few = df.limit(peers).localCheckpoint()
    run(ds.plots(few, **MAP))  # the engine's own first time
    print(f"{wafers} wafers of {sites} sites, {cores} cores", flush=True)

    def rate(seconds: float, count: int = wafers) -> str:
        return f"{count / seconds / cores:10.0f} wafers/s and core"

    bare = least(lambda: run(df.mapInArrow(nothing, "lot string, found double")), runs)
    ours = least(lambda: run(ds.statistics(df, diameter=300)), runs)
    theirs = least(lambda: run(df.mapInArrow(by_pandas, "lot string, found double")), 1)
    for name, seconds in (("engine alone", bare), ("statistics, 19", ours), ("statistics, 7 by numpy", theirs)):
        print(f"  {name:40}{rate(seconds)}", flush=True)
    show("  statistics / engine alone", ours / bare, 1.3)

    tables = [pq.read_table(file).to_batches() for file in sorted(path.iterdir())]
    batches = [batch.slice(0, max(peers // 4, 64)) for table in tables for batch in table][:8]
    kernel = least(lambda: [dp.arrow.plots(batch, **MAP) for batch in batches], runs)
    count = sum(map(len, batches))
    drawn = spark.createDataFrame(pa.Table.from_batches(batches)).repartition(cores * 2).localCheckpoint()
    one = least(lambda: run(ds.plots(drawn, **MAP)), runs)
    alone = least(lambda: run(drawn.mapInArrow(nothing, "lot string, found double")), runs)
    print(f"  {'maps, the library in one process':40}{count / kernel:10.0f} wafers/s and core")
    print(f"  {'maps':40}{rate(one, count)}", flush=True)
    show("  maps without the engine's own time / the library's", (one - alone) * cores / kernel, 1.15)
    python = least(lambda: run(few.mapInArrow(by_matplotlib, "lot string, png binary")), 1)
    print(f"  {'maps by scipy and matplotlib':40}{rate(python, peers)}", flush=True)
    show("  maps a second, over those of scipy and matplotlib", (count / one) / (peers / python), 50, False)
    spark.stop()


def main() -> None:
    parser = argparse.ArgumentParser()
    parser.add_argument("--short", action="store_true", help="a tenth of the wafers, once")
    given = parser.parse_args()
    part, runs = (10, 1) if given.short else (1, 3)
    cores = os.cpu_count() or 1
    print(f"load {os.getloadavg()[0]:.1f} on {cores} cores", flush=True)
    with tempfile.TemporaryDirectory() as folder:
        for wafers, sites in ((100000, 49), (2000, 5000)):
            compare(Path(folder), wafers // part, sites, cores, runs, 64 // (4 if given.short else 1))


main()
