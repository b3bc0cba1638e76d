# SPDX-License-Identifier: MIT
"""Spark with threads, and with executors as processes of their own, one of which is killed."""

import os
import shutil
import sys
import threading
import time
from pathlib import Path

import psutil
import pyarrow as pa
import pytest

pyspark = pytest.importorskip("pyspark", reason="pyspark isn't installed")
if shutil.which("java") is None and "JAVA_HOME" not in os.environ:
    pytest.skip("no Java on this machine", allow_module_level=True)

from conftest import GOLDEN, PLOT, SITES, rows  # noqa: E402
from pyspark.sql import SparkSession  # noqa: E402

import discoplan.spark as ds  # noqa: E402

PACKAGES = os.pathsep.join([str(Path(ds.__file__).parent.parent), str(Path(__file__).parent)])


@pytest.fixture(scope="module", params=["local[2,4]", "local-cluster[2,1,1024]"])
def spark(request: pytest.FixtureRequest, tmp_path_factory: pytest.TempPathFactory):
    os.environ.update(PYSPARK_PYTHON=sys.executable, SPARK_LOCAL_IP="127.0.0.1", SPARK_SCALA_VERSION="2.13")
    os.environ["SPARK_WORKER_DIR"] = str(tmp_path_factory.mktemp("executors"))
    options = {
        "spark.ui.enabled": "false",
        "spark.driver.host": "127.0.0.1",
        "spark.executor.memory": "512m",
        "spark.executorEnv.PYTHONPATH": PACKAGES,
        "spark.sql.shuffle.partitions": "8",
        "spark.sql.adaptive.enabled": "false",
        "spark.sql.warehouse.dir": str(tmp_path_factory.mktemp("warehouse")),
    }
    session = SparkSession.builder.master(request.param)
    for name, value in options.items():
        session = session.config(name, value)
    made = session.getOrCreate()
    made.sparkContext.setLogLevel("ERROR")
    yield made
    made.stop()


def collected(df) -> list:
    return rows(row.asDict(recursive=True) for row in df.collect())


@pytest.fixture(scope="module")
def frame(spark, sites: pa.Table):
    return spark.createDataFrame(sites)


def test_rows_and_bytes_are_those_of_one_process(frame, expected) -> None:
    for cut in (1, 7):
        df = frame.repartition(cut)
        assert collected(ds.plots(df, **SITES, **PLOT)) == expected["plots"]
    assert collected(ds.statistics(frame, **SITES, diameter=300)) == expected["statistics"]
    found = collected(ds.differences(frame, GOLDEN, **SITES, diameter=300))
    assert found == expected["differences"]


def test_wafers_in_rows_are_not_shuffled(spark, frame, sites, expected) -> None:
    import discoplan as dp

    wafers = spark.createDataFrame(dp.arrow.wafers(sites, **SITES).to_pandas()).repartition(5)
    wafers = wafers.localCheckpoint()
    found = ds.plots(wafers, **PLOT)
    plans = [df._jdf.queryExecution().executedPlan().toString() for df in (found, ds.plots(frame, **SITES, **PLOT))]
    assert [plan.count("Exchange ") for plan in plans] == [0, 1]
    assert collected(found) == [dict(row, slot=row["slot"]) for row in expected["plots"]]


def test_nothing_runs_before_it_is_asked_for(spark, frame) -> None:
    def refuse(batches):
        raise RuntimeError("ran")
        yield

    untouched = frame.mapInArrow(refuse, frame.schema)
    found = ds.plots(untouched, **SITES, format="svg")
    assert found.schema["svg"].dataType.simpleString() == "string"
    assert found.columns == ["lot", "slot", "statistics", "svg", "status", "message"]
    with pytest.raises(ValueError, match="no column 'Z', but lot, slot, X, Y, THK"):
        ds.statistics(untouched, "lot", x="Z")
    with pytest.raises(ValueError, match="kind"):
        ds.plots(untouched, **SITES, kind="4D")
    with pytest.raises(ValueError, match="needs `by`"):
        ds.statistics(untouched, x="X", y="Y", value="THK")


def test_a_batch_that_fails_twice_is_done_once(frame, expected) -> None:
    def fails(batches):
        from pyspark import TaskContext

        task = TaskContext.get()
        yield from batches
        if task.partitionId() == 1 and task.attemptNumber() < 2:
            raise OSError("the disk is gone")

    assert collected(ds.plots(frame, **SITES, **PLOT).mapInArrow(fails, ds.plots(frame, **SITES, **PLOT).schema)) == (
        expected["plots"]
    )


def test_a_killed_executor_loses_nothing(spark, frame, expected, tmp_path: Path) -> None:
    if not spark.sparkContext.master.startswith("local-cluster"):
        pytest.skip("its executor is this process")
    folder = str(tmp_path)

    def slowly(batches):
        from pyspark import TaskContext

        task = TaskContext.get()
        for batch in batches:
            Path(folder, f"{task.partitionId()}-{task.taskAttemptId()}-{os.getpid()}").touch()
            time.sleep(1)
            yield batch

    killed = []

    def kill() -> None:
        end = time.monotonic() + 60
        while len(list(tmp_path.iterdir())) < 3 and time.monotonic() < end:
            time.sleep(0.02)
        latest = max(tmp_path.iterdir(), key=lambda path: path.stat().st_mtime_ns)
        for process in psutil.Process(int(latest.name.split("-")[2])).parents():
            if "CoarseGrainedExecutorBackend" in " ".join(process.cmdline()):
                process.kill()
                killed.append(process.pid)
                return

    killer = threading.Thread(target=kill)
    killer.start()
    drawn = ds.plots(frame, **SITES, **PLOT)
    found = collected(drawn.mapInArrow(slowly, drawn.schema))
    killer.join()
    assert len(killed) == 1 and found == expected["plots"]
    partitions = [path.name.split("-")[0] for path in tmp_path.iterdir()]
    assert len(partitions) > len(set(partitions)), "the executor had nothing to do"
