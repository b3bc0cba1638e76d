# SPDX-License-Identifier: MIT
"""Wafers by Spark on this machine's cores: the package beside the engine alone on the same batches,
beside the library called in one process, and beside pandas, scipy and matplotlib in the same engine.

Costs are processor time of all of the engine's processes, the least of some runs that take turns,
which other work on the machine hardly changes; only the gain by a second worker is one of the clock.
"""

import argparse
import json
import os
import platform
import sys
import tempfile
import time
from pathlib import Path
from typing import Any, Callable, Dict

import psutil
import pyarrow as pa
import pyarrow.parquet as pq
from archive import make
from peers import DRAWN, FOUND, by_matplotlib, by_pandas, columns_of_statistics, nothing
from report import goal_lines

import discoplan as dp
import discoplan.spark as ds

WAFER = {"diameter": 300}
MAP = {"size": (400, 300), "wafer": WAFER}
SIZES = {
    # Wafers for statistics, for maps, for pandas and for matplotlib; wafers of a batch of
    # maps, one of statistics having twenty times as many
    49: {"wafers": 100000, "maps": 6000, "tables": 4000, "peers": 48, "batch": 200},
    5000: {"wafers": 2000, "maps": 1200, "tables": 400, "peers": 24, "batch": 25},
}


def session(cores: int) -> Any:
    from pyspark.sql import SparkSession

    os.environ.update(PYSPARK_PYTHON=sys.executable, SPARK_LOCAL_IP="127.0.0.1")
    os.environ["PYTHONPATH"] = os.pathsep.join([os.environ.get("PYTHONPATH", ""), str(Path(__file__).parent)])
    options = {"spark.ui.enabled": "false", "spark.ui.showConsoleProgress": "false", "spark.driver.memory": "2g"}
    made = SparkSession.builder.master(f"local[{cores}]")
    for name, value in options.items():
        made = made.config(name, value)
    found = made.getOrCreate()
    found.sparkContext.setLogLevel("ERROR")
    return found


def run(df: Any) -> None:
    """All columns are made, and thrown away."""
    df.write.format("noop").mode("overwrite").save()


def processor_time() -> float:
    """Seconds that the engine's processes have used so far, those that are gone included."""
    used = 0.0
    for process in psutil.Process().children(recursive=True):
        try:
            used += sum(process.cpu_times()[:4])
        except psutil.NoSuchProcess:
            continue
    return used


def costs(jobs: Dict[str, Callable[[], Any]], runs: int, clock: Callable[[], float]) -> Dict[str, float]:
    least = {name: float("inf") for name in jobs}
    for _ in range(runs):
        for name, job in jobs.items():
            start = clock()
            job()
            least[name] = min(least[name], clock() - start)
    return least


def peak_of_workers() -> float:
    """The most memory in MB that a worker of Python has held so far."""
    peaks = []
    for process in psutil.Process().children(recursive=True):
        try:
            if "python" in process.name():
                lines = Path(f"/proc/{process.pid}/status").read_text().splitlines()
                peaks += [int(line.split()[1]) / 1024 for line in lines if line.startswith("VmHWM")]
        except (psutil.NoSuchProcess, OSError):
            continue
    return max(peaks)


def by_library(folder: Path) -> Callable[[Any], Any]:
    """The library called by hand, which notes the time that it takes in the worker itself."""

    def draw(batches: Any) -> Any:
        spent = 0.0
        for batch in batches:
            for start in range(0, len(batch), 256):
                began = time.process_time()
                found = dp.arrow.plots(batch.slice(start, 256), **MAP)
                spent += time.process_time() - began
                yield pa.RecordBatch.from_arrays([found["lot"], found["png"].cast(pa.binary())], ["lot", "png"])
        (folder / f"{os.getpid()}-{time.time_ns()}").write_text(str(spent))

    return draw


def total_of(folder: Path) -> float:
    return sum(float(file.read_text()) for file in folder.iterdir())


def bytes_each(folder: Path, wafers: int) -> float:
    return sum(file.stat().st_size for file in folder.iterdir()) / wafers


def compare(spark: Any, folder: Path, sites: int, part: int, runs: int) -> Dict[str, float]:
    size = {name: max(count // part, 16) for name, count in SIZES[sites].items() if name != "batch"}
    rows = "spark.sql.execution.arrow.maxRecordsPerBatch"
    spark.conf.set(rows, 20 * SIZES[sites]["batch"])
    made = {}
    for name, count in {**size, "fewer": max(size["maps"] // 4, 16)}.items():
        make(folder / f"{name}{sites}", count, sites)
        made[name] = spark.read.parquet(str(folder / f"{name}{sites}"))
    every, maps, few, tables = made["wafers"], made["maps"], made["peers"], made["tables"]
    for first in (ds.plots(few, **MAP), few.mapInArrow(by_pandas, FOUND), few.mapInArrow(by_matplotlib, DRAWN)):
        run(first)  # loads what it needs

    statistics = ds.statistics(every, **WAFER)
    keys, figures = statistics.columns[:-3], statistics.schema["statistics"].dataType.names
    zeros = columns_of_statistics(keys, figures)
    alone = costs({
        "engine": lambda: run(every.mapInArrow(nothing, FOUND)),
        "columns": lambda: run(every.mapInArrow(zeros, statistics.schema)),
        "statistics": lambda: run(statistics),
        "all statistics": lambda: run(ds.statistics(every, **WAFER, figures="all")),
    }, runs + 5, processor_time)
    found = {name: seconds / size["wafers"] for name, seconds in alone.items()}

    spark.conf.set(rows, SIZES[sites]["batch"])
    run(ds.plots(made["fewer"], **MAP))
    memory = {"fewer": peak_of_workers()}
    spent = folder / f"spent{sites}"
    spent.mkdir()
    drawn = costs({
        "engine": lambda: run(maps.mapInArrow(nothing, FOUND)),
        "maps": lambda: run(ds.plots(maps, **MAP)),
    }, runs, processor_time)
    memory["more"] = peak_of_workers()
    clocked = costs({"clocked": lambda: run(maps.mapInArrow(by_library(spent), DRAWN))}, runs, lambda: total_of(spent))
    found["maps"] = drawn["maps"] / size["maps"]
    found["kernel"] = clocked["clocked"] / size["maps"]
    found["maps without engine"] = (drawn["maps"] - drawn["engine"]) / size["maps"]

    found["pandas"] = costs({"": lambda: run(tables.mapInArrow(by_pandas, FOUND))}, runs, processor_time)[""] / size["tables"]
    theirs = costs({"": lambda: run(few.mapInArrow(by_matplotlib, DRAWN))}, runs, processor_time)
    found["matplotlib"] = theirs[""] / size["peers"]

    one, two = maps.coalesce(1).localCheckpoint(), maps.repartition(2).localCheckpoint()
    turns = costs({"one": lambda: run(ds.plots(one, **MAP)), "two": lambda: run(ds.plots(two, **MAP))}, runs, time.perf_counter)
    first = pq.read_table(folder / f"maps{sites}" / "0.parquet").slice(0, 32)
    png = dp.arrow.plots(first, **MAP)["png"]
    return {
        **{f"{name}, us": round(seconds * 1e6, 2) for name, seconds in found.items()},
        "second worker": round(turns["one"] / turns["two"], 3),
        "peak, MB": round(memory["more"], 1),
        "peak of a quarter, MB": round(memory["fewer"], 1),
        "batch, MB": round(SIZES[sites]["batch"] * (12 * sites + 8) / 2**20, 2),
        "parquet, bytes": round(bytes_each(folder / f"wafers{sites}", size["wafers"])),
        "png, bytes": round(sum(map(len, png.to_pylist())) / len(png)),
        **size,
    }


def processor() -> str:
    lines = Path("/proc/cpuinfo").read_text().splitlines()
    names = [line.split(":")[1].strip() for line in lines if line.startswith("model name")]
    return names[0] if names else platform.machine()


def main() -> None:
    parser = argparse.ArgumentParser()
    parser.add_argument("--short", action="store_true", help="a tenth of the wafers, once")
    parser.add_argument("--results", type=Path, help="a file to keep the results in")
    given = parser.parse_args()
    part, runs = (10, 1) if given.short else (1, 2)
    cores = os.cpu_count() or 1
    results: Dict[str, Any] = {"processor": processor(), "cores": cores, "load before": round(os.getloadavg()[0], 1)}
    spark = session(cores)
    with tempfile.TemporaryDirectory() as folder:
        for sites in SIZES:
            results[str(sites)] = compare(spark, Path(folder), sites, part, runs)
            print(json.dumps({sites: results[str(sites)]}, indent=1), flush=True)
    results["load after"] = round(os.getloadavg()[0], 1)
    spark.stop()
    print("\n".join(goal_lines(results)))
    if given.results is not None:
        given.results.write_text(json.dumps(results, indent=1) + "\n")


main()
