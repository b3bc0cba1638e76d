# SPDX-License-Identifier: MIT
"""Batches of wafers."""

import numpy as np
import polars as pl
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
    found = dp.arrow.figures(wafers, name="wafer", figures="all", diameter=300)
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


class Capsules:
    """A record batch or a table of a library that isn't pyarrow."""

    def __init__(self, whole) -> None:
        if isinstance(whole, pa.Table):
            self.__arrow_c_stream__ = whole.__arrow_c_stream__
        else:
            self.__arrow_c_array__ = whole.__arrow_c_array__


def test_whatever_gives_arrow_will_do() -> None:
    wafers = batch()
    table = pa.Table.from_batches([wafers])
    found, kept = dp.arrow.figures(wafers, diameter=300), dp.arrow.differences(wafers, wafers, by="wafer")
    assert dp.arrow.figures(Capsules(wafers), diameter=300) == found
    assert dp.arrow.figures(Capsules(table), diameter=300) == pa.Table.from_batches([found])
    frame = pl.from_arrow(table)
    assert dp.arrow.figures(frame, diameter=300)["statistics"].to_pylist() == found["statistics"].to_pylist()
    assert dp.arrow.differences(Capsules(table), frame, by="wafer")["value"].to_pylist() == kept["value"].to_pylist()
    with pytest.raises(TypeError, match="a record batch or a table of Arrow is due, or what gives one, not 'lot'"):
        dp.arrow.plots("lot")


def test_bad_batches_are_refused() -> None:
    wafers = batch().slice(0, 2)
    with pytest.raises(ValueError, match="no column 'z'"):
        dp.arrow.figures(wafers, value="z")
    with pytest.raises(TypeError, match="column of lists"):
        dp.arrow.figures(wafers, value="wafer")
    with pytest.raises(ValueError, match="kind"):
        dp.arrow.plots(wafers, "4D")


def test_sites_become_wafers() -> None:
    table = pa.table({"w": ["a", "b", "a", "b"], "X": [1, 2, 3, 4], "Y": [0.0] * 4, "V": [5, 6, 7, None]})
    wafers = dp.arrow.wafers(table, "w", "X", "Y", "V")
    assert wafers["w"].to_pylist() == ["a", "b"] and wafers["x"].to_pylist() == [[1, 3], [2, 4]]
    found = dp.arrow.figures(wafers.to_batches()[0], skip_invalid=True).to_pylist()
    assert [row["statistics"]["mean"] for row in found] == [6, 6]


SITES = {"lot": pa.string(), "slot": pa.int64(), "X": pa.float32(), "Y": pa.float32(), "THK": pa.float64()}


def test_many_wafers_keep_their_sites() -> None:
    number = np.random.default_rng(2).permutation(np.repeat(np.arange(1500), 3))
    keys = {"lot": [f"L{i // 25}" for i in number], "slot": number % 25}
    table = pa.table({**keys, "x": number * 1.0, "y": number * 2.0, "value": number * 3.0})
    found = dp.arrow.wafers(table, ["lot", "slot"]).to_pylist()
    assert [(row["lot"], row["slot"]) for row in found] == sorted({(f"L{i // 25}", i % 25) for i in range(1500)})
    for row in found:
        i = float(int(row["lot"][1:]) * 25 + row["slot"])
        assert row["x"] == [i] * 3 and row["y"] == [2 * i] * 3 and row["value"] == [3 * i] * 3


def sites(count: int = 400) -> pa.Table:
    draw = np.random.default_rng(8)
    columns = [draw.choice(["A", "B"], count), draw.integers(1, 4, count)]
    columns += [draw.uniform(-90, 90, count), draw.uniform(-90, 90, count), draw.normal(10, 1, count)]
    return pa.table({name: pa.array(c).cast(t) for c, (name, t) in zip(columns, SITES.items())})


def test_sites_in_any_order_and_cut_give_the_same_wafers() -> None:
    table = sites()
    table = pa.concat_tables([table, table.slice(3, 1)])  # delivered twice
    wanted = dict(by=["lot", "slot"], x="X", y="Y", value="THK")
    whole = dp.arrow.wafers(table, **wanted)
    assert whole["lot"].to_pylist() == ["A", "A", "A", "B", "B", "B"]
    assert whole["slot"].to_pylist() == [1, 2, 3] * 2
    assert whole["x"].type.value_type == pa.float32() and whole["value"].type.value_type == pa.float64()
    found = dp.arrow.plots(whole, size=(120, 100), wafer={"diameter": 300})
    assert sum(len(row) for row in whole["x"].to_pylist()) == 401
    for seed in range(3):
        order = np.random.default_rng(seed).permutation(401)
        pieces = [table.take(part) for part in np.array_split(order, seed + 2)]
        other = dp.arrow.wafers(pa.concat_tables(pieces), **wanted)
        assert other == whole
        assert dp.arrow.plots(other, size=(120, 100), wafer={"diameter": 300}) == found


def test_a_key_may_be_missing_and_a_zero_negative() -> None:
    table = pa.table({"w": ["a", None, "a", None], "x": [0.0, 1, -0.0, 2], "y": [0.0] * 4, "value": [1.0] * 4})
    wafers = dp.arrow.wafers(table, "w")
    assert wafers["w"].to_pylist() == ["a", None] and wafers["x"].to_pylist() == [[0, 0], [1, 2]]
    assert str(wafers["x"].to_pylist()[0]) == "[0.0, 0.0]"
    with pytest.raises(ValueError, match="no column 'THK', but w, x, y, value"):
        dp.arrow.wafers(table, "w", value="THK")


def test_a_bad_row_has_its_message_and_leaves_others_alone() -> None:
    good = ([0.0, 10, 0, -10], [0.0, 0, 10, 0], [1.0, 2, 3, 4])
    rows = {"w": ["ok", "short", "none", "gap", "text"], "x": [good[0]] * 5, "y": [good[1]] * 5, "value": [good[2]] * 5}
    rows["y"][1], rows["value"][2], rows["value"][3] = [1.0, 2], None, [1.0, None, 3, 4]
    lists = [pa.array(rows[n], pa.list_(pa.float64())) for n in ("x", "y", "value")]
    wafers = pa.RecordBatch.from_arrays([pa.array(rows["w"]), *lists], names=["w", "x", "y", "value"])
    for part in (wafers, wafers.slice(1, 4)):
        found = {row["w"]: row for row in dp.arrow.plots(part, name="w", size=(100, 100)).to_pylist()}
        assert found["text"]["status"] == 0 and found["text"]["message"] == ""
        assert found["short"]["message"] == "wafer 'short': its lists differ: 4 x, 2 y, 4 value"
        assert found["none"]["message"] == "wafer 'none': has no value"
        assert found["gap"]["message"].startswith("wafer 'gap': value[1] is no number")
        for name in ("short", "none", "gap"):
            assert found[name]["status"] == 3 and found[name]["png"] is None
            assert found[name]["statistics"]["mean"] is None
    skipped = dp.arrow.figures(wafers, skip_invalid=True).to_pylist()
    assert [row["status"] for row in skipped] == [0, 3, 3, 0, 0]


@pytest.mark.parametrize("kind", ["list", "large", "fixed", "view", "half", "whole", "sliced apart"])
def test_lists_of_any_kind_will_do(kind: str) -> None:
    numbers = [[0.0, 10, 0, -10], [0.0, 0, 20, 0], [5.0, 6, 7, 8]]
    types = {
        "large": pa.large_list(pa.float32()),
        "fixed": pa.list_(pa.float64(), 4),
        "view": pa.list_view(pa.float64()),
        "half": pa.list_(pa.float16()),
        "whole": pa.large_list(pa.int16()),
    }
    lists = [pa.array([n] * 3, pa.list_(pa.float64())) for n in numbers]
    if kind == "view":
        lists = [pa.array([n] * 3, types[kind]) for n in numbers]
    elif kind in types:
        lists = [one.cast(types[kind]) for one in lists]
    if kind == "sliced apart":
        first = pa.array([[1.0], *[numbers[1]] * 3], pa.list_(pa.float64()))
        lists[1] = first.slice(1)
    batch = pa.RecordBatch.from_arrays(lists, names=["x", "y", "value"])
    wafer = dp.Wafer(*numbers)
    for row in dp.arrow.figures(batch.slice(1), figures="all").to_pylist():
        assert row["statistics"] == wafer.statistics().asdict()


def test_differences_are_those_of_wafers() -> None:
    wafers = batch()
    golden = dp.Wafer([0, 50, 0, -50, 0], [0, 0, 50, 0, -50], [10.0, 11, 12, 13, 14], diameter=300)
    found = dp.arrow.differences(wafers, golden, name="wafer", figures="all", diameter=300)
    for row, given in zip(found.to_pylist(), wafers.to_pylist()):
        if row["wafer"] in ("W4", "W7"):
            assert row["status"] == 3 and row["message"].startswith(f"wafer '{row['wafer']}': ") and row["value"] is None
            continue
        difference = dp.Wafer(given["x"], given["y"], given["value"], diameter=300) - golden
        assert row["value"] == difference.value.tolist() and row["x"] == given["x"]
        assert row["statistics"] == difference.statistics().asdict()


def test_no_sites_are_no_wafers() -> None:
    wafers = dp.arrow.wafers(sites(0), ["lot", "slot"], "X", "Y", "THK")
    assert len(wafers) == 0 and wafers.schema.names == ["lot", "slot", "x", "y", "value"]
    found = dp.arrow.plots(wafers)
    assert len(found) == 0 and "png" in found.schema.names


def test_figures_that_are_asked_for_are_those_of_all() -> None:
    wafers = batch()
    every = dp.arrow.figures(wafers, diameter=300)["statistics"].to_pylist()
    for make in (dp.arrow.figures, lambda b, figures, **w: dp.arrow.plots(b, size=(60, 50), figures=figures, wafer=w)):
        some = make(wafers, figures=["range", "mean"], diameter=300)["statistics"]
        assert [field.name for field in some.type] == ["mean", "range"]
        assert some.to_pylist() == [{key: row[key] for key in ("mean", "range")} for row in every]
    with pytest.raises(ValueError, match="'men' is none of mean"):
        dp.arrow.figures(wafers, figures="men")
