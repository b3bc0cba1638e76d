# SPDX-License-Identifier: MIT
"""An archive in Parquet on one machine, by the command line."""

import os
import pathlib
import subprocess
import sys

import numpy as np
import pyarrow as pa
import pyarrow.parquet as pq
import pytest

import discoplan as dp

BY = ["lot", "slot"]
SITES = ["--by", "lot,slot", "--columns", "X,Y,THK"]


@pytest.fixture
def sites(tmp_path: pathlib.Path) -> pa.Table:
    draw = np.random.default_rng(9)
    wafer = draw.permutation(np.repeat(np.arange(40), 13))
    table = pa.table({
        "lot": [f"L{i // 25}" for i in wafer], "slot": wafer % 25, "unused": wafer * 1.0,
        "X": draw.uniform(-90, 90, 520).astype("f4"), "Y": draw.uniform(-90, 90, 520).astype("f4"),
        "THK": np.where(wafer == 7, np.nan, draw.normal(10, 1, 520)), "RS": draw.normal(5, 1, 520),
    })
    (tmp_path / "archive").mkdir()
    for i in range(4):
        pq.write_table(table.slice(i * 130, 130), tmp_path / "archive" / f"{i}.parquet")
    return table


@pytest.fixture
def program(tmp_path: pathlib.Path):
    """The program in C++, which finds the package's script among the programs."""
    folder = tmp_path / "bin"
    folder.mkdir()
    script = folder / "discoplan-archive"
    script.write_text(f'#!/bin/sh\nexec "{sys.executable}" -m discoplan.archive "$@"\n')
    script.chmod(0o755)

    def run(*arguments: str, path: str = f"{folder}:{os.environ['PATH']}") -> subprocess.CompletedProcess:
        command = [os.environ["DISCOPLAN_PROGRAM"], "lot", "--parquet", *arguments]
        return subprocess.run(command, cwd=tmp_path, env={**os.environ, "PATH": path}, capture_output=True, text=True)

    return run


def test_the_tables_are_those_of_batches(sites: pa.Table, program, tmp_path: pathlib.Path) -> None:
    wafers = dp.arrow.wafers(sites, BY, "X", "Y", "THK")
    said = program("archive", "-o", "found.parquet", *SITES, "--diameter", "300")
    assert said.returncode == 0, said.stderr
    assert said.stderr == "discoplan: 40 rows, 1 of them without a result; their messages tell why\n"
    found = pq.read_table(tmp_path / "found.parquet")
    assert found.to_pylist() == dp.arrow.figures(wafers, diameter=300).to_pylist()

    assert program("archive", "-o", "wafers.parquet", *SITES, "--make", "wafers").returncode == 0
    assert pq.read_table(tmp_path / "wafers.parquet").equals(wafers) or str(wafers.to_pylist()) == str(
        pq.read_table(tmp_path / "wafers.parquet").to_pylist()
    )
    drawn = ["--make", "plots", "--size", "160x120", "--kind", "histo", "--name", "lot", "--by", "lot,slot"]
    assert program("wafers.parquet", "-o", "maps.parquet", *drawn, "--batch", "7").returncode == 0
    maps = pq.read_table(tmp_path / "maps.parquet").to_pylist()
    assert maps == dp.arrow.plots(wafers, "histo", size=(160, 120), name="lot").to_pylist()
    assert maps[0]["png"].startswith(b"\x89PNG")

    several = ["--by", "lot,slot", "--columns", "X,Y,THK,RS", "--figures", "mean,median"]
    assert program("archive", "-o", "several.parquet", *several).returncode == 0
    rows = pq.read_table(tmp_path / "several.parquet").to_pylist()
    assert len(rows) == 80 and list(rows[0]["statistics"]) == ["mean", "median"] and rows[1]["parameter"] == "RS"


def test_differences(sites: pa.Table, program, tmp_path: pathlib.Path) -> None:
    wafers = dp.arrow.wafers(sites, BY, "X", "Y", "THK")
    pq.write_table(sites.filter(pa.array([slot % 2 == 0 for slot in sites["slot"].to_pylist()])), tmp_path / "golden")
    assert program("archive", "-o", "d.parquet", *SITES, "--make", "differences", "--to", "golden").returncode == 0
    found = pq.read_table(tmp_path / "d.parquet").to_pylist()
    assert [row["status"] for row in found] == [0 if row["slot"] % 2 == 0 else 3 for row in found]
    assert all(value == 0 for row in found if row["status"] == 0 for value in row["value"])
    given = [*SITES, "--make", "differences", "--to-column", "RS"]
    assert program("archive", "-o", "c.parquet", *given).returncode == 0
    both = dp.arrow.wafers(sites, BY, "X", "Y", ["THK", "RS"])
    assert pq.read_table(tmp_path / "c.parquet").to_pylist() == (
        dp.arrow.differences(both, "RS", value="THK").to_pylist()
    )
    assert len(wafers) == len(found) == 40


@pytest.mark.parametrize(
    "arguments, status, text",
    [
        (["archive", "-o", "o", "--columns", "X,Y,THK"], 1, "discoplan: a DataFrame of sites needs `by`"),
        (["archive", "-o", "o", *SITES, "--figures", "average"], 1, "figures: 'average' is none of mean, "),
        (["nowhere", "-o", "o", *SITES], 1, "discoplan: there is no nowhere"),
        (["archive/0.parquet", "-o", "archive/0.parquet", *SITES], 1, "-o would overwrite what is read"),
        (["archive", "-o", "no/folder", *SITES], 1, "No such file"),
        (["archive", "-o", "o", *SITES, "--size", "9x9"], 1, "--size is for --make plots"),
        (["archive", *SITES], 2, "-o/--output"),
    ],
)
def test_what_is_wrong_is_told(arguments, status, text, sites: pa.Table, program, tmp_path: pathlib.Path) -> None:
    said = program(*arguments)
    assert said.returncode == status and text in said.stderr and "Traceback" not in said.stderr
    assert not (tmp_path / "o").exists() and len(list((tmp_path / "archive").iterdir())) == 4


def test_without_the_package_it_is_told(program) -> None:
    said = program("archive", "-o", "found.parquet", path="/nowhere")
    assert said.returncode == 1
    assert said.stderr == (
        "discoplan: discoplan-archive is missing; install the Python package with what archives need, discoplan[arrow]\n"
    )
