# SPDX-License-Identifier: MIT
"""Sites of several parameters, keys of any type, and wafers compared with those of the same keys."""

import datetime
import decimal

import numpy as np
import pyarrow as pa
import pytest

import discoplan as dp

X, Y = [0.0, 50, 0, -50, 0], [0.0, 0, 50, 0, -50]
ONE, DAY = datetime.timedelta(hours=1), datetime.datetime(2026, 3, 1)


def wafer_table(**columns: list) -> pa.Table:
    count = len(next(iter(columns.values())))
    return pa.table({"w": [f"W{i}" for i in range(count)], "x": [X] * count, "y": [Y] * count, **columns})


def test_figures_are_all_but_the_slow_one_unless_asked_for() -> None:
    wafers = wafer_table(value=[[1.0, 2, 3, 4, 6]])
    every = dp.arrow.figures(wafers, figures="all").to_pylist()[0]["statistics"]
    usual = dp.arrow.figures(wafers).to_pylist()[0]["statistics"]
    assert {**usual, "interpolation_error": every["interpolation_error"]} == every
    assert "interpolation_error" not in usual and every["mean"] == 3.2
    two = dp.arrow.plots(wafers, size=(100, 80), figures=["maximum", "mean"]).to_pylist()[0]
    assert two["statistics"] == {"mean": 3.2, "maximum": 6} and two["png"].startswith(b"\x89PNG")
    with pytest.raises(ValueError, match="figures: 'average' is none of mean, "):
        dp.arrow.figures(wafers, figures="average")


def test_each_parameter_has_its_row() -> None:
    wafers = wafer_table(
        thk=[[1.0, 2, 3, 4, 5], [2.0] * 5], rs=[[10.0, 10, 10, 10, 15], [1.0, 2, None, 4, 5]]
    )
    found = dp.arrow.plots(wafers, value=["thk", "rs"], size=(160, 120), name="w")
    assert found.schema.names == ["w", "parameter", "statistics", "png", "status", "message"]
    rows = found.to_pylist()
    assert [(row["w"], row["parameter"], row["status"]) for row in rows] == [
        ("W0", "thk", 0), ("W0", "rs", 0), ("W1", "thk", 0), ("W1", "rs", 3),
    ]
    assert [row["statistics"]["mean"] for row in rows] == [3, 11, 2, None]
    assert rows[3]["message"].startswith("wafer 'W1': value[2] is no number") and rows[3]["png"] is None
    alone = dp.Wafer(X, Y, [10.0, 10, 10, 10, 15], name="W0", quantity="rs")
    assert rows[1]["png"] == alone.plot(size=(160, 120)).png()
    cut = [dp.arrow.plots(wafers.slice(i, 1), value=["thk", "rs"], size=(160, 120), name="w") for i in (0, 1)]
    assert pa.concat_tables(cut).to_pylist() == rows
    assert len(dp.arrow.figures(wafers.slice(0, 0), value=["thk", "rs"])) == 0
    with pytest.raises(ValueError, match="each once"):
        dp.arrow.figures(wafers, value=["thk", "thk"])


def test_columns_of_one_name_are_refused() -> None:
    names = ["w", "x", "y", "value", "value"]
    sites = pa.table([pa.array(["a"] * 5), pa.array(X), pa.array(Y), pa.array([1.0, 2, 3, 4, 5]), pa.array(X)], names)
    lists = pa.table([pa.array([["a"]]), *(pa.array([column]) for column in (X, Y, X, Y))], names)
    for work in (
        lambda: dp.arrow.wafers(sites, by="w"),
        lambda: dp.Lot(sites, "w", "x", "y", "value"),
        lambda: dp.arrow.figures(lists),
    ):
        with pytest.raises(ValueError, match="has 2 columns 'value'; give them names of their own"):
            work()
    usable = sites.rename_columns([*names[:4], "other"])
    assert len(dp.arrow.wafers(usable, by="w")) == 1
    for make in (dp.arrow.wafers, dp.Lot):
        with pytest.raises(ValueError, match="by: 'w' is named twice"):
            make(usable, by=["w", "w"], x="x", y="y", value="value")
        with pytest.raises(ValueError, match="x and y: 'x' is named twice"):
            make(usable, by="w", x="x", y="x", value="value")


def test_sites_of_several_parameters_stay_together() -> None:
    draw = np.random.default_rng(6)
    n = 300
    table = pa.table({
        "w": draw.integers(0, 4, n), "X": draw.integers(-3, 3, n) * 20.0, "Y": draw.integers(-3, 3, n) * 20.0,
        "a": draw.integers(0, 3, n) * 1.0, "b": np.arange(n) * 1.0,
    })
    wanted = dict(by="w", x="X", y="Y", value=["a", "b"])
    whole = dp.arrow.wafers(table, **wanted)
    assert whole.schema.names == ["w", "x", "y", "a", "b"]
    given = {row["b"]: row for row in table.to_pylist()}
    for row in whole.to_pylist():
        sites = [given[b] for b in row["b"]]
        assert row["a"] == [site["a"] for site in sites] and row["x"] == [site["X"] for site in sites]
        assert all(site["w"] == row["w"] for site in sites)
        assert sites == sorted(sites, key=lambda site: (site["Y"], site["X"], site["a"], site["b"]))
    assert dp.arrow.wafers(table.take(draw.permutation(n)), **wanted) == whole


KEYS = {
    "date": (datetime.date(2026, 3, 1), datetime.date(2026, 3, 2)),
    "time": (DAY.replace(tzinfo=datetime.timezone.utc), DAY.replace(tzinfo=datetime.timezone.utc) + ONE),
    "duration": (ONE, 2 * ONE),
    "decimal": (decimal.Decimal("1.10"), decimal.Decimal("1.20")),
    "truth": (False, True),
    "bytes": (b"a", b"b"),
    "number": (-1.5, 2.5),
    "whole": (2**62, 2**62 + 1),
    "struct": ({"lot": "A", "slot": 1}, {"lot": "A", "slot": 2}),
    "view": ("a", "b"),
    "dictionary": ("a", "b"),
    "half": (0.5, 1.5),
}
TYPES = {"view": pa.string_view(), "dictionary": pa.dictionary(pa.int8(), pa.string()), "half": pa.float16()}


@pytest.mark.parametrize("kind", list(KEYS))
def test_keys_are_of_any_type(kind: str) -> None:
    one, two = KEYS[kind]
    keys = pa.array([two, one, None, one, two, None], TYPES.get(kind))
    table = pa.table({"k": keys, "none": pa.nulls(6), "x": [2.0, 1, 3, 1, 2, 3], "y": [0.0] * 6, "value": [1.0] * 6})
    wafers = dp.arrow.wafers(table, ["none", "k"])
    assert wafers["k"].to_pylist() == [one, two, None]
    assert wafers["x"].to_pylist() == [[1, 1], [2, 2], [3, 3]]
    found = dp.arrow.differences(wafers, wafers.take([2, 1, 0]), by="k").to_pylist()
    assert [row["status"] for row in found] == [0, 0, 0] and found[1]["value"] == [0, 0]


def test_equal_keys_are_one() -> None:
    keys = pa.array([0.0, -0.0, float("nan"), None], pa.float64())
    table = pa.table({"k": keys, "x": [1.0, 2, 3, 4], "y": [0.0] * 4, "value": [1.0] * 4})
    for order in ([0, 1, 2, 3], [3, 2, 1, 0]):
        wafers = dp.arrow.wafers(table.take(order), "k")
        assert str(wafers["k"].to_pylist()) == "[0.0, None]" and wafers["x"].to_pylist() == [[1, 2], [3, 4]]
    with pytest.raises(TypeError, match="the key 'k' is list<.*make it texts"):
        dp.arrow.wafers(pa.table({"k": [[1]], "x": [1.0], "y": [1.0], "value": [1.0]}), "k")


def test_differences_to_a_column() -> None:
    after, before = [[3.0, 4, 5, 6, 7], [1.0] * 5], [[1.0, 1, 1, 1, 2], [0.25] * 5]
    wafers = wafer_table(value=after, before=before)
    found = dp.arrow.differences(wafers, "before")
    assert found.schema.names == ["w", "x", "y", "value", "statistics", "status", "message"]
    assert found["value"].to_pylist() == [[2, 3, 4, 5, 5], [0.75] * 5]
    assert found.to_pylist()[0]["statistics"]["mean"] == 3.8
    both = dp.arrow.differences(wafers, ["before", "value"], value=["value", "before"])
    assert both["parameter"].to_pylist() == ["value", "before"] * 2
    assert both["value"].to_pylist() == [[2, 3, 4, 5, 5], [-2, -3, -4, -5, -5], [0.75] * 5, [-0.75] * 5]
    with pytest.raises(ValueError, match="as many columns as value, which are 1"):
        dp.arrow.differences(wafers, ["before", "value"])


def test_a_place_with_two_values_is_not_guessed() -> None:
    twice = pa.table({"x": [[1.0, 1, 2], [1.0, 1, 2]], "y": [[0.0] * 3] * 2, "value": [[5.0, 6, 7]] * 2,
                      "before": [[1.0, 2, 3], [1.0, 1, 3]]})
    found = dp.arrow.differences(twice, "before").to_pylist()
    assert found[0]["status"] == 3
    assert found[0]["message"] == "it was measured more than once at x 1, y 0; take the mean there first"
    assert found[1]["value"] == [4, 5, 4]


def test_differences_to_a_table() -> None:
    wafers = wafer_table(value=[[3.0, 4, 5, 6, 7], [1.0] * 5, [2.0] * 5, [9.0] * 5])
    golden = wafer_table(value=[[1.0] * 5, [2.0] * 5, [3.0] * 5]).take([2, 0, 1, 2])
    found = dp.arrow.differences(wafers, golden, name="w").to_pylist()
    assert [row["status"] for row in found] == [0, 0, 3, 3]  # W2 is there twice, W3 isn't
    assert [row["value"] for row in found] == [[2, 3, 4, 5, 6], [-1] * 5, None, None]
    assert found[3]["message"] == "wafer 'W3': there isn't one wafer of its keys to compare it with"
    batch = wafers.combine_chunks().to_batches()[0]
    assert dp.arrow.differences(batch, golden, name="w").to_pylist() == found
    assert dp.arrow.differences(batch.slice(1, 2), golden, by=["w"], name="w").to_pylist() == found[1:3]
    moved = golden.take([1]).set_column(1, "x", [[[1.0, 2]]]).set_column(2, "y", [[[0.0, 0]]])
    torn = dp.arrow.differences(wafers.slice(0, 1), moved).to_pylist()[0]
    assert torn["status"] == 3 and "x has 2 numbers" in torn["message"]
