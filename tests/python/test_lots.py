# SPDX-License-Identifier: MIT
"""What a lot is asked for, and wafers that go from process to process."""

import copy
import decimal
import multiprocessing
import pathlib
import pickle

import numpy as np
import pandas as pd
import polars as pl
import pyarrow as pa
import pytest

import discoplan as dp

EXAMPLES = pathlib.Path(__file__).parents[2] / "examples"
X = [0.0, 90.0, -90.0, 0.0, 0.0]
Y = [0.0, 0.0, 0.0, 90.0, -90.0]


def wafer(name: str, quantity: str, offset: float, unit: str = "nm") -> dp.Wafer:
    return dp.Wafer(X, Y, np.arange(5) + offset, name=name, quantity=quantity, unit=unit)


def table(key: object) -> dict[str, object]:
    return {"w": key, "X": X * 2, "Y": Y * 2, "V": np.arange(10.0)}


def sites(key: object) -> dict[str, object]:
    return {**table(key), "X": np.arange(10.0)}


def lot_of(made: object, **options: object) -> dp.Lot:
    return dp.Lot(made, by="w", x="X", y="Y", value="V", **options)


TWO = "X,Y,W,THK (nm),n\n" + "".join(f"{x},{y},{w},{i + 10 * w},{i + 1}\n" for w in (1, 2) for i, (x, y) in enumerate(zip(X, Y)))


def test_wafers_of_one_name_are_told_apart(tmp_path: pathlib.Path) -> None:
    path = tmp_path / "two.csv"
    path.write_text(TWO)
    lot = dp.read(path, by="W", parameters="all")
    assert lot.names == ["1, THK", "2, THK", "1, n", "2, n"]
    assert [found.mean for found in lot.statistics().values()] == [12, 22, 3, 3]
    assert lot["2, n"].statistics().mean == 3 and "2" in lot and "3" not in lot
    with pytest.raises(KeyError, match="several wafers are '2': 2, THK, 2, n"):
        lot["2"]
    with pytest.raises(ValueError, match="the wafers' values are in|the wafers' values are 'THK' and 'n'"):
        lot.mean()
    with pytest.raises(ValueError, match="take wafers of one kind"):
        lot.sheet()
    assert lot._repr_png_() is None
    assert lot.quantities == ["THK", "n"] and lot.of("THK").names == ["1", "2"]
    assert lot.of("THK").mean().statistics().mean == 17 and lot.of("n")["2"].quantity == "n"
    with pytest.raises(ValueError, match="no quantity 'k', but THK, n"):
        lot.of("k")
    assert [each.statistics().range for each in lot - lot] == [0, 0, 0, 0]


def test_wafers_that_nothing_tells_apart_are_numbered() -> None:
    lot = dp.Lot._of([wafer("a", "", i) for i in range(3)])
    assert lot.names == ["a", "a (2)", "a (3)"] and len(lot.statistics()) == 3
    assert lot["a (3)"].statistics().mean == 4


def test_files_are_read_as_they_are_by_the_program(tmp_path: pathlib.Path) -> None:
    path = tmp_path / "sites.csv"
    path.write_text("X (mm),Y (mm),V (A)\n-50,0,1\n50,0,2\n0,50,3\n0,-50,4\n0,0,9\n")
    lot = dp.read(path, drop_outliers="1.5iqr", value_unit="nm")
    assert lot[0].unit == "nm" and dp.read(path)[0].unit == "A"
    assert lot[0].value.tolist() == [1, 2, 3, 4] and "4 of 5 sites; 1 outlier" in repr(lot[0])
    binary = tmp_path / "sites.dat"
    binary.write_bytes(np.array([0.0, 10, 0, 0, 10, 1, 1, 2, 3, 4, 5, 6]).tobytes())
    assert len(dp.read(binary)[0]) == 4 and len(dp.read(binary, sites=3)[0]) == 3


def test_slices_are_lots() -> None:
    lot = dp.read(EXAMPLES / "native_oxide_lot.csv")
    part = lot[2:10:3]
    assert isinstance(part, dp.Lot) and part.names == ["Slot03", "Slot06", "Slot09"]
    assert part["Slot06"] is lot[5] and lot[-1:].names == ["Slot25"] and len(lot[:0]) == 0
    assert repr(part) == "<Lot of 3 wafers: Slot03, Slot06, Slot09>" and repr(lot[-1:]) == "<Lot of 1 wafer: Slot25>"
    assert lot[np.int64(3)].name == "Slot04" and part.mean().name == "mean"


def test_differences_keep_the_keys() -> None:
    lot = lot_of(pa.table(table(["a"] * 5 + ["b"] * 5)))
    rest = lot - lot.mean()
    assert rest.names == ["a, minus mean", "b, minus mean"]
    assert rest["b"] is rest[1] and rest["b",].name == "b, minus mean" and "a" in rest
    assert rest.keys == lot.keys
    assert (rest - rest)["a"].statistics().range == 0


MISSING = {
    "pyarrow": lambda: pa.table(sites([None] * 2 + ["a"] * 8)),
    "empty": lambda: pa.table(sites([""] * 2 + ["a"] * 8)),
    "nothing but nulls": lambda: pa.table(sites(pa.nulls(10))),
    "polars": lambda: pl.DataFrame(sites([None] * 2 + ["a"] * 8)),
    "pandas": lambda: pd.DataFrame(sites([np.nan] * 2 + [7] * 8)),
    "pandas nullable": lambda: pd.DataFrame(sites(pd.array([None] * 2 + [7] * 8, dtype="Int64"))),
    "dictionary": lambda: sites([None, np.nan] + ["a"] * 8),
    "dictionary of pandas": lambda: sites(pd.array([None] * 2 + [7] * 8, dtype="Int64")),
}


@pytest.mark.parametrize("kind", MISSING)
def test_rows_that_name_no_wafer_are_refused_or_counted(kind: str) -> None:
    with pytest.raises(ValueError, match=r"w\[0\] is missing where a wafer's name is due"):
        lot_of(MISSING[kind]())
    lot = lot_of(MISSING[kind](), skip_invalid=True)
    if kind == "nothing but nulls":
        assert len(lot) == 0
    else:
        assert [len(each) for each in lot] == [8] and lot.names in (["a"], ["7"])
        assert lot[0].value.tolist() == list(range(2, 10))
        assert lot.notes == "left out 2 rows that name no wafer"


def test_wafers_taken_for_one_are_refused() -> None:
    both = [table(["a"] * 10), pa.table(table(["a"] * 10)), pd.DataFrame(table(["a"] * 10))]
    for made in both:
        with pytest.raises(ValueError, match="5 of 10 sites of wafer 'a' repeat a position; name the columns"):
            lot_of(made)
    once = {**table(["a"] * 9 + ["b"]), "X": [*X, 10.0, 20.0, 30.0, 0.0, 0.0]}
    assert lot_of(once).notes == "1 of 9 sites of wafer 'a' repeats a position; each is taken for a site of its own"


def test_wafers_that_may_be_several_are_told_of() -> None:
    said = "5 of 10 sites of wafer 'a' repeat a position, as those of several wafers do"
    with pytest.warns(UserWarning, match=said) as told:
        both = dp.Wafer(X * 2, Y * 2, range(10), name="a")
    assert told[0].filename == __file__
    assert "10 sites; 5 repeat a position" in repr(both)
    for look in ("modern", "classic"):
        assert "5 repeat a position" in both.plot(look=look).svg().replace("\u00a0", " ")
    row = {"w": ["a", "b"], "x": [X * 2, X], "y": [Y * 2, Y], "value": [list(range(10)), list(range(5))]}
    for work in (dp.arrow.figures, dp.arrow.plots):
        one, other = work(pa.table(row), name="w").to_pylist()
        assert one["status"] == 0 and one["message"] == "wafer 'a': 5 of 10 sites repeat a position, as those of several wafers do"
        assert one["statistics"]["mean"] == 4.5 and (other["status"], other["message"]) == (0, "")


def test_keys_are_texts_as_people_write_them() -> None:
    large = 2**53
    for kind in (pa.int64(), pa.uint64()):
        assert lot_of(pa.table(sites(pa.array([large] * 5 + [large + 1] * 5, kind)))).names == [str(large), str(large + 1)]
    assert lot_of(pa.table(sites(pa.array([0.1] * 10, pa.float32())))).names == ["0.1"]
    for made in (pa.table, dict):
        assert lot_of(made(sites([1.0] * 5 + [2.5] * 5))).names == ["1", "2.5"]
        assert lot_of(made(sites([True] * 5 + [False] * 5))).names == ["true", "false"]


def test_numbers_of_any_type_are_values() -> None:
    def read(values: object, **options: object) -> list[float]:
        n = len(values)
        return lot_of(pa.table({"w": ["a"] * n, "X": np.arange(n) / 10, "Y": np.zeros(n), "V": values}), **options)[0].value.tolist()

    draw = np.random.default_rng(11)
    exact = [decimal.Decimal(int(n)).scaleb(-int(s)) for n, s in zip(draw.integers(-(2**62), 2**62, 400), draw.integers(3, 19, 400))]
    assert read(pa.array(exact, pa.decimal128(38, 18))) == [np.float32(float(one)) for one in exact]
    wide = [one.scaleb(-30) for one in exact]
    assert read(pa.array(wide, pa.decimal256(76, 50))) == [np.float32(float(one)) for one in wide]
    halves = np.array([1.5, -0.25, 6e-8, 65504.0, 6.1e-5, 0.0, -2.0], "f2")
    assert read(pa.array(halves)) == halves.tolist()
    assert read(pa.array([2.5, 7.0, None, 7.0]).dictionary_encode(), skip_invalid=True) == [2.5, 7, 7]
    assert lot_of(pa.table(sites(pa.array([decimal.Decimal("7.10")] * 10, pa.decimal128(5, 2))))).names == ["7.1"]


def test_units_that_differ_are_refused() -> None:
    nm, angstrom = wafer("a", "THK", 0), wafer("b", "THK", 0, "Å")
    for mixed in (lambda: nm - angstrom, lambda: dp.mean([nm, angstrom])):
        with pytest.raises(ValueError, match="the wafers' values are in 'nm' and 'Å'"):
            mixed()
    assert (nm - wafer("c", "", 1, "")).statistics().mean == -1


def test_interpolated_differences_say_so() -> None:
    moved = dp.Wafer(np.array(X) + 1, Y, range(5), name="b")
    assert (wafer("a", "THK", 0) - moved).name == "a, minus b (interpolated)"
    assert dp.mean([wafer("a", "THK", 0), moved]).name == "mean (interpolated)"


def test_missing_items_of_a_list_are_missing_numbers() -> None:
    with pytest.raises(ValueError, match=r"value\[1\] is no number"):
        dp.Wafer([0, 1, 2], [0, 0, 0], [1, None, 3])
    assert dp.Wafer([0, 1, 2], [0, 0, 0], [1, None, 3], skip_invalid=True).left_out == 1
    with pytest.raises(TypeError, match="x is a set; give numbers"):
        dp.Wafer({0, 1, 2}, [0, 0, 0], [1, 2, 3])


def test_files_are_read_by_numbers_too() -> None:
    lot = dp.read(EXAMPLES / "thick_film_lot.csv", columns=[1, 2, 5])
    assert lot[0].quantity == "slot3"
    assert dp.read(EXAMPLES / "native_oxide_lot.csv", wafers=[7, "9-10"]).names == ["Slot07", "Slot09", "Slot10"]
    assert dp.read(EXAMPLES / "native_oxide_lot.csv", wafers=7).names == ["Slot07"]


def test_notes_name_the_options_of_python(tmp_path: pathlib.Path) -> None:
    path = tmp_path / "corner.csv"
    path.write_text("X,Y,V\n3,150,9\n297,150,2\n150.5,3,3\n150,297,4\n150,150,7\n")
    assert "--" not in dp.read(path).notes and dp.read(path).notes.endswith("from a corner, use corner")
    inches = tmp_path / "inches.csv"
    inches.write_text("X,Y,V\n1,0,9\n-1,0,8\n")
    assert dp.read(inches, unit="in")[0].x.tolist() == dp.read(inches, unit="inch")[0].x.tolist() == [np.float32(25.4), np.float32(-25.4)]


def means(lot: dp.Lot) -> list[float]:
    return [each.statistics().mean for each in lot]


def test_wafers_go_to_other_processes() -> None:
    value = [1.0, np.nan, 3.0, 4.0, 5.0]
    options = {"skip_invalid": True, "diameter": 200, "name": "Löt, 3", "unit": "µm", "orientation": "flat", "notch": "left"}
    one = dp.Wafer(X, Y, value, quantity="THK", **options)
    for made in (pickle.loads(pickle.dumps(one)), copy.copy(one), copy.deepcopy(one)):
        assert repr(made) == repr(one) and "4 of 5 sites; 1 empty value" in repr(made)
        assert (made.unit, made.quantity, made.extent) == ("µm", "THK", one.extent)
        assert made.plot(size=(200, 160)).png() == one.plot(size=(200, 160)).png()
    difference = pickle.loads(pickle.dumps(one - one))
    assert difference.plot(size=(200, 160)).png() == (one - one).plot(size=(200, 160)).png()
    lot = dp.read(EXAMPLES / "native_oxide_lot.csv")
    with multiprocessing.get_context("spawn").Pool(1) as pool:
        assert pool.apply(means, (lot,)) == means(lot)
    for other in (one.plot(), dp.Plot2D()):
        with pytest.raises(TypeError, match="can't be pickled; hand on"):
            pickle.dumps(other)
