# SPDX-License-Identifier: MIT
"""Dask's distributed scheduler with two workers, one of which is killed."""

import os
import time
from pathlib import Path

import psutil
import pyarrow as pa
import pyarrow.parquet
import pytest

dd = pytest.importorskip("dask.dataframe", reason="dask isn't installed")
from conftest import BY, GOLDEN, PLOT, SITES, rows  # noqa: E402
from dask.distributed import Client, LocalCluster, wait  # noqa: E402

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
    assert collected(dk.statistics(sites, **SITES, diameter=300)) == expected["statistics"]
    assert collected(dk.differences(sites, GOLDEN, **SITES, diameter=300)) == expected["differences"]


def test_columns_are_known_and_bad_ones_refused_before(folder: Path) -> None:
    sites = opened(folder / "sites")
    found = dk.plots(sites, **SITES, format="svg")
    assert list(found.columns) == [*BY, "statistics", "svg", "status", "message"]
    with pytest.raises(ValueError, match="no column 'Z', but lot, slot, X, Y, THK"):
        dk.statistics(sites, "lot", x="Z")
    with pytest.raises(ValueError, match="kind"):
        dk.plots(sites, **SITES, kind="4D")
    with pytest.raises(ValueError, match="needs `by`"):
        dk.statistics(sites, x="X", y="Y", value="THK")


def test_wafers_in_rows_are_not_shuffled(client: Client, folder: Path, expected: dict) -> None:
    found = dk.plots(opened(folder / "wafers"), **PLOT)
    assert not any("shuffle" in str(key) for key in found.optimize().__dask_graph__())
    assert collected(found) == expected["plots"]


def slowly(frame, folder: str):
    if len(frame):
        Path(folder, f"{os.getpid()}-{frame['lot'].iloc[0]}-{frame['slot'].iloc[0]}").touch()
        time.sleep(1)
    return frame


def test_a_killed_worker_loses_nothing(client: Client, folder: Path, expected: dict, tmp_path: Path) -> None:
    drawn = dk.plots(opened(folder / "wafers"), **PLOT)
    job = client.compute(drawn.map_partitions(slowly, str(tmp_path), meta=drawn._meta))
    end = time.monotonic() + 30
    while len(list(tmp_path.iterdir())) < 3 and time.monotonic() < end:
        time.sleep(0.02)
    latest = max(tmp_path.iterdir(), key=lambda path: path.stat().st_mtime_ns)
    psutil.Process(int(latest.name.split("-")[0])).kill()
    wait(job, timeout=60)
    found = pa.Table.from_pandas(job.result(), preserve_index=False).to_pylist()
    assert rows(found) == expected["plots"]
    parts = [path.name.split("-", 1)[1] for path in tmp_path.iterdir()]
    assert len(parts) > len(set(parts)), "the worker had nothing to do"
