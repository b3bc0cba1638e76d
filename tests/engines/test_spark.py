# SPDX-License-Identifier: MIT
"""Spark with threads, and with executors as processes of their own, one of which is killed."""

import threading

import psutil
import pyarrow as pa
import pytest
from conftest import BOTH, BY, GOLDEN, KEYED, PLOT, SITES, Gate, keyed_table, others, rows, text_rows, wait_for
from pyspark.sql import functions as F
from sessions import session

import discoplan as dp
import discoplan.spark as ds

@pytest.fixture(scope="module", params=["local[2,4]", "local-cluster[2,1,1024]"])
def spark(request: pytest.FixtureRequest, tmp_path_factory: pytest.TempPathFactory):
    yield from session(request.param, tmp_path_factory)


def collected(df) -> list:
    return rows(row.asDict(recursive=True) for row in df.collect())


@pytest.fixture(scope="module")
def frame(spark, sites: pa.Table):
    return spark.createDataFrame(sites)


def test_rows_and_bytes_are_those_of_one_process(frame, expected) -> None:
    for cut in (1, 7):
        df = frame.repartition(cut)
        assert collected(ds.plots(df, **SITES, **PLOT)) == expected["plots"]
    found = ds.statistics(frame, **SITES, diameter=300, figures="all")
    assert collected(found) == expected["statistics"]
    found = collected(ds.differences(frame, GOLDEN, **SITES, diameter=300))
    assert found == expected["differences"]


def test_parameters_and_columns(frame, expected) -> None:
    found = ds.plots(frame, BY, "X", "Y", BOTH, **PLOT)
    assert collected(found) == expected["parameters"]
    found = ds.differences(frame, "RS", BY, "X", "Y", "THK", diameter=300)
    assert collected(found) == expected["columns"]
    few = ds.statistics(frame, **SITES, figures=["maximum", "mean"])
    assert few.schema["statistics"].dataType.fieldNames() == ["mean", "maximum"]


def exchanges(df) -> int:
    return df._jdf.queryExecution().executedPlan().toString().count("Exchange ")


def test_differences_to_another_frame(spark, frame, sites, expected) -> None:
    golden = spark.createDataFrame(others(sites)).repartition(3)
    found = ds.differences(frame, golden, **SITES, name="lot")
    assert exchanges(found) - exchanges(golden) == 1
    assert collected(found) == expected["tables"]
    wafers, golden = (spark.createDataFrame(dp.arrow.wafers(one, **SITES).to_pandas()).localCheckpoint() for one in (sites, others(sites)))
    found = ds.differences(wafers, golden, BY, name="lot")
    assert exchanges(found) == 1
    assert collected(found) == expected["tables"]
    with pytest.raises(ValueError, match="to: takes wafers where"):
        ds.differences(wafers, golden.selectExpr("lot", "slot", "1.0 as x", "1.0 as y", "1.0 as value"), BY)


def test_keys_of_any_type(spark) -> None:
    table = keyed_table()
    alone = dp.arrow.figures(dp.arrow.wafers(table, **KEYED))
    found = ds.statistics(spark.createDataFrame(table).repartition(4), **KEYED).toArrow()
    assert text_rows(found.to_pylist()) == text_rows(alone.to_pylist()) and len(alone) == 12
    nested = spark.createDataFrame(table).selectExpr("struct(lot, array(slot), dose) as k", "day", "X", "Y", "THK")
    found = ds.statistics(nested, ["k", "day"], "X", "Y", "THK").collect()
    assert len(found) == 12 and {row["status"] for row in found} == {0}


def test_a_key_that_is_never_a_number(spark) -> None:
    rows = [(float(i), -float(i % 3), 10.0 + i) for i in range(5)]
    sites = spark.createDataFrame(rows, "x double, y double, value double").withColumn("lot", F.lit(float("nan")))
    found = ds.statistics(sites, by="lot").collect()
    assert [(row.lot, row.status, row.statistics.mean) for row in found] == [(None, 0, 12.0)]


def test_wafers_in_rows_are_not_shuffled(spark, frame, sites, expected) -> None:
    wafers = spark.createDataFrame(dp.arrow.wafers(sites, **SITES).to_pandas()).repartition(5)
    wafers = wafers.localCheckpoint()
    found = ds.plots(wafers, **PLOT)
    assert [exchanges(df) for df in (found, ds.plots(frame, **SITES, **PLOT))] == [0, 1]
    assert collected(found) == expected["plots"]


def test_nothing_runs_before_it_is_asked_for(spark, frame) -> None:
    def refuse(batches):
        raise RuntimeError("ran")
        yield

    untouched = frame.mapInArrow(refuse, frame.schema)
    found = ds.plots(untouched, **SITES, format="svg")
    assert found.schema["svg"].dataType.simpleString() == "string"
    assert found.columns == ["lot", "slot", "statistics", "svg", "status", "message"]
    with pytest.raises(ValueError, match="no column 'Z', but lot, slot, X, Y, THK, RS"):
        ds.statistics(untouched, "lot", x="Z")
    with pytest.raises(ValueError, match="kind"):
        ds.plots(untouched, **SITES, kind="4D")
    with pytest.raises(ValueError, match="needs `by`"):
        ds.statistics(untouched, x="X", y="Y", value="THK")
    with pytest.raises(ValueError, match="a column 'status' of its own"):
        ds.statistics(untouched.withColumnRenamed("slot", "status"), ["lot", "status"], "X", "Y", "THK")


def test_a_batch_that_fails_twice_is_done_once(frame, expected) -> None:
    def fails(batches):
        from pyspark import TaskContext

        task = TaskContext.get()
        yield from batches
        if task.partitionId() == 1 and task.attemptNumber() < 2:
            raise OSError("the disk is gone")

    drawn = ds.plots(frame, **SITES, **PLOT)
    assert collected(drawn.mapInArrow(fails, drawn.schema)) == expected["plots"]


def test_a_killed_executor_loses_nothing(spark, frame, expected, gate: Gate) -> None:
    if not spark.sparkContext.master.startswith("local-cluster"):
        pytest.skip("its executor is this process")

    def held_up(batches):
        from pyspark import TaskContext

        part = TaskContext.get().partitionId()
        for batch in batches:
            gate.mark(f"part {part}")
            if part >= 3:  # when some are done
                gate.mark("held")
                gate.wait()
            yield batch

    killed = []

    def kill() -> None:
        try:
            wait_for(lambda: gate.begun("held"))
            for process in psutil.Process(gate.begun("held")[0]).parents():
                if "CoarseGrainedExecutorBackend" in " ".join(process.cmdline()):
                    process.kill()
                    killed.append(process.pid)
                    return
        finally:
            gate.open()

    killer = threading.Thread(target=kill)
    killer.start()
    drawn = ds.plots(frame, **SITES, **PLOT)
    found = collected(drawn.mapInArrow(held_up, drawn.schema))
    killer.join()
    assert len(killed) == 1 and found == expected["plots"]
    assert max(len(gate.begun(f"part {part}")) for part in range(3, 8)) > 1, "the executor had nothing to do"
