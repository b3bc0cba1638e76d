# SPDX-License-Identifier: MIT
"""Ray with workers as processes of their own, one of which is killed."""

import os
import threading

import psutil
import pyarrow as pa
import pytest

ray = pytest.importorskip("ray", reason="ray isn't installed")
from conftest import BOTH, BY, GOLDEN, PLOT, SITES, Gate, rows, wait_for  # noqa: E402

import discoplan as dp  # noqa: E402
import discoplan.ray as dr  # noqa: E402


@pytest.fixture(scope="module", autouse=True)
def cluster():
    path = os.pathsep.join([os.environ.get("PYTHONPATH", ""), os.path.dirname(__file__)])
    ray.init(
        address="local", num_cpus=2, include_dashboard=False, log_to_driver=False,
        _node_ip_address="127.0.0.1", object_store_memory=2**28,
        runtime_env={"env_vars": {"PYTHONPATH": path}},
    )
    ray.data.DataContext.get_current().enable_progress_bars = False
    yield
    ray.shutdown()


def collected(dataset) -> list:
    return rows([row for table in ray.get(dataset.to_arrow_refs()) for row in table.to_pylist()])


@pytest.fixture(scope="module")
def wafers(sites):
    table = dp.arrow.wafers(sites, BY, "X", "Y", BOTH)
    return ray.data.from_arrow([table.slice(i * 12, 12) for i in range(5)])


def test_rows_and_bytes_are_those_of_one_process(sites, wafers, expected) -> None:
    parted = ray.data.from_arrow([sites.slice(i * 700, 700) for i in range(4)])
    assert collected(dr.plots(parted, **SITES, **PLOT)) == expected["plots"]
    given = {"value": BOTH, "by": BY}
    assert collected(dr.plots(wafers.repartition(7), **given, **PLOT)) == expected["parameters"]
    found = dr.statistics(wafers, BY, value="THK", diameter=300, figures="all")
    assert collected(found) == expected["statistics"]
    assert collected(dr.differences(wafers, GOLDEN, BY, value="THK", diameter=300)) == expected["differences"]
    assert collected(dr.differences(wafers, "RS", value="THK", diameter=300)) == expected["columns"]


def test_bad_columns_are_refused_before(wafers) -> None:
    with pytest.raises(ValueError, match="no column 'Z', but lot, slot, x, y, THK, RS"):
        dr.statistics(wafers, value="Z")
    with pytest.raises(ValueError, match="kind"):
        dr.plots(wafers, value="THK", kind="4D")
    with pytest.raises(TypeError, match="takes a Wafer or a column"):
        dr.differences(wafers, wafers, value="THK")


def test_a_killed_worker_loses_nothing(wafers, expected, gate: Gate, monkeypatch) -> None:
    monkeypatch.setattr(dr, "ROWS", 12)

    def held_up(table: pa.Table) -> pa.Table:
        gate.mark(f"lot {table['slot'][0]}")
        gate.wait()
        return table

    drawn = dr.plots(wafers.select_columns([*BY, "x", "y", "THK"]), value="THK", **PLOT)
    killed = []

    def kill() -> None:
        try:
            wait_for(lambda: gate.begun())
            killed.append(gate.begun()[0])
            psutil.Process(killed[0]).kill()
        finally:
            gate.open()

    killer = threading.Thread(target=kill)
    killer.start()
    found = collected(drawn.map_batches(held_up, batch_format="pyarrow", batch_size=None))
    killer.join()
    assert len(killed) == 1 and killed[0] != os.getpid() and found == expected["plots"]
    assert len(gate.begun()) == 6, "five parts, one of them twice"
