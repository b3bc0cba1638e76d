# SPDX-License-Identifier: MIT
"""Batches of wafers."""

import numpy as np
import pyarrow as pa
import pytest

import discoplan as dp

RNG = np.random.default_rng(3)


def batch(count: int = 12) -> pa.RecordBatch:
    rows = {"wafer": [], "x": [], "y": [], "value": []}
    for i in range(count):
        sites = RNG.uniform(-90, 90, (2, 20 + i))
        rows["wafer"].append(f"W{i}")
        rows["x"].append(sites[0]), rows["y"].append(sites[1])
        rows["value"].append(RNG.normal(10, 1, 20 + i))
    rows["value"][4][3] = np.nan
    rows["x"][7] = rows["y"][7] = rows["value"][7] = []
    types = {"wafer": pa.string(), **dict.fromkeys(("x", "y", "value"), pa.list_(pa.float32()))}
    return pa.RecordBatch.from_arrays([pa.array(rows[n], t) for n, t in types.items()], names=list(types))


def test_figures_are_those_of_each_wafer() -> None:
    wafers = batch()
    found = dp.arrow.figures(wafers, name="wafer", diameter=300)
    assert found.schema.names == ["wafer", "statistics", "status", "message"]
    for row, given in zip(found.to_pylist(), wafers.to_pylist()):
        if row["wafer"] in ("W4", "W7"):
            assert row["status"] != 0 and row["message"].startswith(f"wafer '{row['wafer']}': ")
            assert row["statistics"]["mean"] is None
            continue
        wafer = dp.Wafer(given["x"], given["y"], given["value"], diameter=300)
        assert row["statistics"] == wafer.statistics().asdict() and row["status"] == 0


def test_any_cut_gives_the_same_bytes() -> None:
    wafers = batch()
    options = dict(name="wafer", size=(160, 120), wafer={"diameter": 300})
    whole = dp.arrow.plots(wafers, **options).to_pylist()
    assert whole[0]["png"].startswith(b"\x89PNG") and whole[4]["png"] is None
    for cut in (1, 5):
        pieces = [wafers.slice(i, cut) for i in range(0, len(wafers), cut)]
        assert [row for piece in pieces for row in dp.arrow.plots(piece, **options).to_pylist()] == whole
    assert len(dp.arrow.plots(wafers.slice(3, 0), **options)) == 0
    given = wafers.to_pylist()[2]
    alone = dp.Wafer(given["x"], given["y"], given["value"], diameter=300, name="W2")
    assert alone.plot(size=(160, 120)).png() == whole[2]["png"]


def test_vectors_and_wide_lists_will_do() -> None:
    wafers = batch()
    wide = pa.RecordBatch.from_arrays(
        [wafers.column(0)] + [wafers.column(i).cast(pa.large_list(pa.float64())) for i in (1, 2, 3)],
        names=wafers.schema.names,
    )
    assert dp.arrow.figures(wide, diameter=300) == dp.arrow.figures(wafers, diameter=300)
    svg = dp.arrow.plots(wafers.slice(0, 1), "histo", format="svg", wafer={"diameter": 300}).column("svg")
    assert svg[0].as_py().lstrip().startswith("<")


def test_bad_batches_are_refused() -> None:
    wafers = batch().slice(0, 2)
    with pytest.raises(ValueError, match="no column 'z'"):
        dp.arrow.figures(wafers, value="z")
    with pytest.raises(TypeError, match="column of lists"):
        dp.arrow.figures(wafers, value="wafer")
    longer = wafers.set_column(3, "value", pa.array([[1.0], [2.0]], pa.list_(pa.float32())))
    with pytest.raises(ValueError, match="differ"):
        dp.arrow.figures(longer)
    with pytest.raises(ValueError, match="kind"):
        dp.arrow.plots(wafers, "4D")


def test_sites_become_wafers() -> None:
    table = pa.table({"w": ["a", "b", "a", "b"], "X": [1, 2, 3, 4], "Y": [0.0] * 4, "V": [5, 6, 7, None]})
    wafers = dp.arrow.wafers(table, "w", "X", "Y", "V")
    assert wafers["w"].to_pylist() == ["a", "b"] and wafers["x"].to_pylist() == [[1, 3], [2, 4]]
    found = dp.arrow.figures(wafers.to_batches()[0], skip_invalid=True).to_pylist()
    assert [row["statistics"]["mean"] for row in found] == [6, 6]
