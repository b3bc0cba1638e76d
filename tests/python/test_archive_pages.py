# SPDX-License-Identifier: MIT
"""What the pages about archives say is so."""

import importlib.util
import json
import math
import pathlib
import re

import notebooks
import pytest

SOURCE = pathlib.Path(__file__).parents[2]
PAGE = SOURCE / "docs" / "fab_archive_costs.md"


def test_notebook() -> None:
    """It finds the wafers that went wrong, which it asserts, and says what it said when it was kept."""
    kept = notebooks.texts(notebooks.read("fab_archive.ipynb"))
    notebook = notebooks.run("fab_archive.ipynb")
    assert notebooks.texts(notebook) == kept and len(kept) == 5
    assert notebooks.pictures(notebook) == 1


@pytest.fixture(scope="module")
def report():
    spec = importlib.util.spec_from_file_location("report", SOURCE / "bench" / "engine" / "report.py")
    module = importlib.util.module_from_spec(spec)
    spec.loader.exec_module(module)
    return module


@pytest.fixture(scope="module")
def results() -> dict:
    return json.loads((SOURCE / "bench" / "engine" / "results.json").read_text())


def test_the_page_quotes_the_kept_results(report, results: dict) -> None:
    page = PAGE.read_text()
    assert report.written(page, results) == page


def test_costs_are_those_of_the_results(results: dict) -> None:
    """Read from the page and worked out anew, by nothing that wrote it."""
    rows = re.findall(r"^\| (.+?) \| ([\d,.]+) \| ([\d,.]+) \|$", PAGE.read_text(), re.M)
    rates = {what: [float(text.replace(",", "")) for text in shown] for what, *shown in rows}
    for what, key in (("engine alone", "engine, us"), ("maps, 400 x 300 PNG", "maps, us")):
        for rate, sites in zip(rates[what], ("49", "5000")):
            assert math.isclose(rate * results[sites][key], 1e6, rel_tol=0.06), what
    ratio = results["49"]["statistics, us"] / results["49"]["engine, us"]
    assert f"{ratio:.2f}" in PAGE.read_text()


def test_the_arithmetic_of_the_year(results: dict) -> None:
    rows = re.findall(r"^\| ([A-Z]) \| (.+?) \| (.+?) \| ([\d,.e+-]+) \|$", PAGE.read_text(), re.M)
    assert [row[0] for row in rows] == [chr(ord("A") + i) for i in range(len(rows))] and len(rows) > 15
    values = {letter: float(text.replace(",", "")) for letter, _, _, text in rows}
    worked_out = 0
    for letter, what, how, _ in rows:
        if re.fullmatch(r"[A-Z0-9.e()*/+ -]+", how):
            worked_out += 1
            assert math.isclose(eval(how, {}, values), values[letter], rel_tol=0.02), (letter, what)
    assert worked_out >= 7
    measured = {"F": ("49", "statistics, us"), "J": ("5000", "maps, us"), "N": ("49", "parquet, bytes")}
    for letter, (sites, key) in measured.items():
        assert math.isclose(values[letter], results[sites][key], rel_tol=0.01)
