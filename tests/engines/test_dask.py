# SPDX-License-Identifier: MIT
"""Dask's distributed scheduler with two workers, one of which is killed."""

from pathlib import Path

import pandas as pd
import psutil
import pyarrow as pa
import pyarrow.parquet
import pytest

dd = pytest.importorskip("dask.dataframe", reason="dask isn't installed")
from conftest import BOTH, BY, GOLDEN, KEYED, PLOT, SITES, Gate, keyed_table, others, rows, text_rows, wait_for  # noqa: E402
from dask.distributed import Client, LocalCluster  # noqa: E402

import discoplan as dp  # noqa: E402
import discoplan.dask as dk  # noqa: E402


@pytest.fixture(scope="module")
def client(tmp_path_factory: pytest.TempPathFactory):
    folder = str(tmp_path_factory.mktemp("workers"))
    options = dict(host="127.0.0.1", dashboard_address=None, local_directory=folder)
    with LocalCluster(n_workers=2, threads_per_worker=1, **options) as cluster, Client(cluster) as made:
        yield made


@pytest.fixture(scope="module")
def folder(sites: pa.Table, tmp_path_factory: pytest.TempPathFactory) -> Path:
    """The sites in files of Parquet, cut without regard to wafers, and the wafers."""
    made = tmp_path_factory.mktemp("archive")
    (made / "sites").mkdir(), (made / "wafers").mkdir()
    wafers = dp.arrow.wafers(sites, **SITES)
    for name, table, files in (("sites", sites, 5), ("wafers", wafers, 6)):
        rows_each = -(-len(table) // files)
        for i in range(files):
            pa.parquet.write_table(table.slice(i * rows_each, rows_each), made / name / f"{i}.parquet")
    return made


def collected(found) -> list:
    return rows(pa.Table.from_pandas(found.compute(), preserve_index=False).to_pylist())


def opened(path: Path):
    return dd.read_parquet(path, dtype_backend="pyarrow")


def test_rows_and_bytes_are_those_of_one_process(client: Client, folder: Path, expected: dict) -> None:
    sites = opened(folder / "sites")
    for cut in (1, 3):
        assert collected(dk.plots(sites.repartition(npartitions=cut), **SITES, **PLOT)) == expected["plots"]
    found = dk.statistics(sites, **SITES, diameter=300, figures="all")
    assert collected(found) == expected["statistics"]
    assert collected(dk.differences(sites, GOLDEN, **SITES, diameter=300)) == expected["differences"]


def test_columns_are_known_and_bad_ones_refused_before(folder: Path) -> None:
    sites = opened(folder / "sites")
    found = dk.plots(sites, **SITES, format="svg")
    assert list(found.columns) == [*BY, "statistics", "svg", "status", "message"]
    with pytest.raises(ValueError, match="no column 'Z', but lot, slot, X, Y, THK, RS"):
        dk.statistics(sites, "lot", x="Z")
    with pytest.raises(ValueError, match="kind"):
        dk.plots(sites, **SITES, kind="4D")
    with pytest.raises(ValueError, match="needs `by`"):
        dk.statistics(sites, x="X", y="Y", value="THK")


def test_wafers_in_rows_are_not_shuffled(client: Client, folder: Path, expected: dict) -> None:
    found = dk.plots(opened(folder / "wafers"), **PLOT)
    assert not any("shuffle" in str(key) for key in found.optimize().__dask_graph__())
    assert collected(found) == expected["plots"]


def test_parameters_and_columns(client: Client, folder: Path, expected: dict) -> None:
    sites = opened(folder / "sites")
    assert collected(dk.plots(sites, BY, "X", "Y", BOTH, **PLOT)) == expected["parameters"]
    assert collected(dk.differences(sites, "RS", BY, "X", "Y", "THK", diameter=300)) == expected["columns"]


def test_differences_to_another_frame(client: Client, folder: Path, sites: pa.Table, expected: dict) -> None:
    frame, other = opened(folder / "sites"), others(sites)
    golden = dd.from_pandas(other.to_pandas(types_mapper=pd.ArrowDtype), npartitions=3, sort=False)
    assert collected(dk.differences(frame, golden, **SITES, name="lot")) == expected["tables"]
    golden = dp.arrow.wafers(other, **SITES).to_pandas(types_mapper=pd.ArrowDtype)
    golden = dd.from_pandas(golden, npartitions=4, sort=False)
    assert collected(dk.differences(opened(folder / "wafers"), golden, BY, name="lot")) == expected["tables"]
    with pytest.raises(ValueError, match="to: takes wafers where"):
        dk.differences(frame, golden.rename(columns={"x": "X", "y": "Y", "value": "THK"}), **SITES)


def test_keys_of_any_type(client: Client) -> None:
    table = keyed_table()
    alone = dp.arrow.figures(dp.arrow.wafers(table, **KEYED))
    frame = dd.from_pandas(table.to_pandas(types_mapper=pd.ArrowDtype), npartitions=4, sort=False)
    found = pa.Table.from_pandas(dk.statistics(frame, **KEYED).compute(), preserve_index=False)
    assert text_rows(found.to_pylist()) == text_rows(alone.to_pylist()) and len(alone) == 12


def fails(frame, gate: Gate):
    if len(frame):
        gate.mark("run")
        if len(gate.begun("run")) <= 2:
            raise OSError("the disk is gone")
    return frame


def test_a_batch_that_fails_twice_is_done_once(client: Client, folder: Path, expected: dict, gate: Gate) -> None:
    drawn = dk.plots(opened(folder / "wafers"), **PLOT).repartition(npartitions=1)
    job = client.compute(drawn.map_partitions(fails, gate, meta=drawn._meta), retries=3)
    found = pa.Table.from_pandas(job.result(timeout=600), preserve_index=False).to_pylist()
    assert len(gate.begun("run")) == 3 and rows(found) == expected["plots"]


def held_up(frame, gate: Gate):
    if len(frame):
        gate.mark(f"part {frame['lot'].iloc[0]} {frame['slot'].iloc[0]} ")
        if len(gate.begun("part")) > 2:  # when some are done
            gate.mark("held")
            gate.wait()
    return frame


def test_a_killed_worker_loses_nothing(client: Client, folder: Path, expected: dict, gate: Gate) -> None:
    drawn = dk.plots(opened(folder / "wafers"), **PLOT)
    job = client.compute(drawn.map_partitions(held_up, gate, meta=drawn._meta))
    try:
        wait_for(lambda: gate.begun("held"))
        psutil.Process(gate.begun("held")[0]).kill()
    finally:
        gate.open()
    found = pa.Table.from_pandas(job.result(timeout=600), preserve_index=False).to_pylist()
    assert rows(found) == expected["plots"]
    assert len(gate.begun("part")) > 6, "the worker had nothing to do"
