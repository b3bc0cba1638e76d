# SPDX-License-Identifier: MIT
"""Spark that runs a second copy of a task beside one that takes long, on another host: both deliver
their rows, and one of them counts."""

import pyarrow.parquet as pq
import pytest
from conftest import PLOT, SITES, Gate, rows, wait_for
from sessions import cluster, session

import discoplan.spark as ds


@pytest.fixture(scope="module")
def spark(tmp_path_factory: pytest.TempPathFactory):
    options = {"spark_speculation": "true", "spark_speculation_quantile": "0.1", "spark_task_maxFailures": "1"}
    for address in cluster(tmp_path_factory):
        yield from session(address, tmp_path_factory, **options)


def test_what_is_delivered_twice_is_there_once(spark, sites, expected, gate: Gate, tmp_path_factory) -> None:
    def held_up(batches):
        from pyspark import TaskContext

        task = TaskContext.get()
        for batch in batches:
            if task.partitionId() == 7:
                gate.mark(f"copy {task.attemptNumber()}")
                wait_for(lambda: gate.begun("copy 0") and gate.begun("copy 1"))
            yield batch

    drawn = ds.plots(spark.createDataFrame(sites), **SITES, **PLOT)
    folder = tmp_path_factory.mktemp("maps")
    drawn.mapInArrow(held_up, drawn.schema).write.mode("overwrite").parquet(str(folder))
    assert len(set(gate.begun("copy"))) == 2, "there was no second copy"
    written = [row for file in folder.glob("*.parquet") for row in pq.read_table(file).to_pylist()]
    assert rows(written) == expected["plots"]
