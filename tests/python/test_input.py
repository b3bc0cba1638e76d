# SPDX-License-Identifier: MIT
"""What columns may be, and what becomes of bad ones."""

import array
import ctypes
import pathlib
import threading

import duckdb
import numpy as np
import pandas as pd
import polars as pl
import pyarrow as pa
import pytest

import discoplan as dp

N = 12
X = np.linspace(-100, 100, N)
Y = X[::-1] / 2
VALUE = np.arange(N) + 10.0
EXAMPLES = pathlib.Path(__file__).parents[2] / "examples"


def readonly(a: np.ndarray) -> np.ndarray:
    a = a.copy()
    a.flags.writeable = False
    return a


KINDS = {
    "float32": lambda a: a.astype("f4"),
    "float64": lambda a: a,
    "int": lambda a: a.astype("i4"),
    "list": list,
    "tuple": lambda a: tuple(a.tolist()),
    "generator": lambda a: (v for v in a.tolist()),
    "array": lambda a: array.array("f", a),
    "strided": lambda a: np.repeat(a, 3)[::3],
    "reversed": lambda a: a[::-1].copy()[::-1],
    "read-only": readonly,
    "field": lambda a: np.array([(v, 0) for v in a], dtype=[("v", "f4"), ("w", "i1")])["v"],
    "big-endian": lambda a: a.astype(">f8"),
    "memoryview": memoryview,
    "ctypes": lambda a: (ctypes.c_double * len(a))(*a),
    "pandas": pd.Series,
    "pandas nullable": lambda a: pd.Series(a).astype("Float64"),
    "pandas arrow": lambda a: pd.Series(a).astype("double[pyarrow]"),
    "polars": lambda a: pl.Series("v", a),
    "pyarrow": pa.array,
    "pyarrow chunks": lambda a: pa.chunked_array([a[:5], a[5:]]),
}


@pytest.mark.parametrize("kind", KINDS)
def test_any_column_will_do(kind: str) -> None:
    make = KINDS[kind]
    wafer = dp.Wafer(make(X), make(Y), make(VALUE))
    assert wafer.value == pytest.approx(VALUE)
    assert wafer.x == pytest.approx(X.astype("i4") if kind == "int" else X)


def missing() -> np.ndarray:
    value = VALUE.copy()
    value[3] = np.nan
    return value


GAPS = {
    "nan": missing,
    "masked": lambda: np.ma.masked_invalid(missing()),
    "pandas nullable": lambda: pd.Series(VALUE).astype("Float64").mask(VALUE == VALUE[3]),
    "pandas integers": lambda: pd.Series(VALUE).astype("Int64").mask(VALUE == VALUE[3]),
    "pyarrow null": lambda: pa.array([None if v == VALUE[3] else v for v in VALUE]),
    "polars null": lambda: pl.Series([None if v == VALUE[3] else v for v in VALUE]),
}


@pytest.mark.parametrize("kind", GAPS)
def test_gaps_are_refused_or_counted(kind: str) -> None:
    with pytest.raises(ValueError, match=r"value\[3\] is no number"):
        dp.Wafer(X, Y, GAPS[kind]())
    wafer = dp.Wafer(X, Y, GAPS[kind](), skip_invalid=True)
    assert len(wafer) == N - 1 and wafer.left_out == 1
    assert "11 of 12 sites; 1 empty value" in repr(wafer)


BAD = [
    (ValueError, "x has 12 numbers, value has 3", lambda: dp.Wafer(X, Y, VALUE[:3])),
    (ValueError, "x has 2 dimensions", lambda: dp.Wafer(X.reshape(3, 4), Y, VALUE)),
    (TypeError, "value holds Python objects", lambda: dp.Wafer(X, Y, VALUE.astype(object))),
    (TypeError, "value holds Python objects", lambda: dp.Wafer(X, Y, pd.Series(VALUE, dtype=object))),
    (TypeError, "value", lambda: dp.Wafer(X, Y, VALUE.astype(complex))),
    (TypeError, "value", lambda: dp.Wafer(X, Y, VALUE.astype("i8").astype("M8[s]"))),
    (TypeError, "value is a str", lambda: dp.Wafer(X, Y, "abcdefghijkl")),
    (TypeError, "value: 'NoneType'", lambda: dp.Wafer(X, Y, None)),
    (TypeError, "must be real number", lambda: dp.Wafer(X, Y, ["a"] * N)),
    (TypeError, "column 'value' holds texts (Arrow type 'u'); cast it to numbers", lambda: dp.Wafer(X, Y, pa.array(["a"] * N))),
    (ValueError, "no finite 32-bit float", lambda: dp.Wafer(X, Y, VALUE * 1e40)),
    (ValueError, "no finite 32-bit float", lambda: dp.Wafer(X, Y, VALUE * np.inf)),
    (ValueError, "outside a wafer of 100 mm", lambda: dp.Wafer(X, Y, VALUE, diameter=100)),
    (ValueError, "sums of them don't fit", lambda: dp.Wafer(X, Y, VALUE * 1e37)),
    (ValueError, "positions are millimetres", lambda: dp.Wafer(X * 1e4, Y, VALUE)),
    (ValueError, "more than the 32767", lambda: dp.Wafer(*3 * (np.zeros(32768),))),
    (ValueError, "has no sites", lambda: dp.Wafer([], [], [])),
    (ValueError, "diameter", lambda: dp.Wafer(X, Y, VALUE, diameter=-1)),
    (ValueError, "diameter", lambda: dp.Wafer(X, Y, VALUE, diameter=np.nan)),
    (ValueError, "test_diameter", lambda: dp.Wafer(X, Y, VALUE, diameter=250, test_diameter=260)),
    (ValueError, "edge_exclusion", lambda: dp.Wafer(X, Y, VALUE, edge_exclusion=400)),
    (ValueError, "orientation: 'up' is none of notch", lambda: dp.Wafer(X, Y, VALUE, orientation="up")),
    (TypeError, "diameter takes a number, not str", lambda: dp.Wafer(X, Y, VALUE, diameter="wide")),
    (ValueError, "kind: '4D' is none of 2D", lambda: dp.Wafer(X, Y, VALUE).plot("4D")),
    (ValueError, "colours: 'jet' is none of viridis", lambda: dp.Wafer(X, Y, VALUE).plot(colours="jet")),
    (ValueError, "limits", lambda: dp.Wafer(X, Y, VALUE).plot(limits=(2, 1))),
    (ValueError, "limits takes two numbers", lambda: dp.Wafer(X, Y, VALUE).plot(limits=3)),
    (ValueError, "a width in pixels", lambda: dp.Wafer(X, Y, VALUE).plot(size=(10, 10))),
    (ValueError, "pixels alone", lambda: dp.Plot2D().picture().svg()),
    (ValueError, "nothing to print", lambda: dp.Plot2D().svg()),
    (ValueError, "a width in mm takes 20 to 2000", lambda: dp.Plot2D().page(mm=(1, 1))),
    (ValueError, "method, font, control limits", lambda: dp.Wafer(X, Y, VALUE).plot(look="classic", font="Courier")),
    (FileNotFoundError, "font_file: no.ttf: no such file", lambda: dp.Wafer(X, Y, VALUE).plot(font_file="no.ttf")),
    (ValueError, "this is no font", lambda: dp.Wafer(X, Y, VALUE).plot(font_file=__file__)),
    (TypeError, "name takes a text, not int", lambda: dp.Wafer(X, Y, VALUE, name=3)),
    (TypeError, "name takes a text, not bytes", lambda: dp.Wafer(X, Y, VALUE, name=b"W1")),
    (ValueError, "zero character", lambda: dp.Wafer(X, Y, VALUE, name="a\0b")),
    (TypeError, "not int", lambda: dp.read(3)),
    (ValueError, "none of .png", lambda: dp.Wafer(X, Y, VALUE).plot().save("map.bmp")),
    (OSError, "no/such", lambda: dp.Wafer(X, Y, VALUE).plot().save("no/such/map.png")),
    (ValueError, "y has 2", lambda: dp.Wafer(X, Y, VALUE).interpolate([1, 2, 3], [1, 2])),
    (ValueError, "1 to 20000", lambda: dp.Wafer(X, Y, VALUE).lattice(0)),
    (FileNotFoundError, "none.csv: no such file", lambda: dp.read("none.csv")),
    (
        ValueError,
        "drop_outliers: takes a factor and iqr or mad, as in 1.5iqr or 3.5mad, not '2sigma'",
        lambda: dp.read(EXAMPLES / "thick_film_lot.csv", drop_outliers="2sigma"),
    ),
    (ValueError, "sites: takes a number of sites", lambda: dp.read(EXAMPLES / "thick_film_lot.csv", sites=-1)),
    (ValueError, "NOPE", lambda: dp.read(EXAMPLES / "thick_film_lot.csv", columns="X,Y,NOPE")),
    (ValueError, "no column 'Z', but X, Y", lambda: dp.Lot(pa.table({"X": X, "Y": Y}), "X", "X", "Y", "Z")),
    (ValueError, "no column 'Z'", lambda: dp.Lot({"X": [1], "Y": [1]}, "X", "X", "Y", "Z")),
    (TypeError, "no table", lambda: dp.Lot([1, 2], "X", "X", "Y", "Z")),
    (TypeError, "column 'V' holds texts", lambda: dp.Lot(pa.table({"X": X, "Y": Y, "V": ["a"] * N}), "X", "X", "Y", "V")),
]


@pytest.mark.parametrize("error, text, call", BAD, ids=[str(i) for i in range(len(BAD))])
def test_bad_input_is_refused_in_words(error: type, text: str, call: object) -> None:
    with pytest.raises(error) as raised:
        call()
    assert text in str(raised.value) and "--" not in str(raised.value)


FRAME = pd.DataFrame(
    {
        "lot": ["A"] * 4 + ["B"] * 4 + ["A"] * 4,
        "wafer": pd.Categorical(["1"] * 4 + ["1"] * 4 + ["2"] * 4),
        "X": X,
        "Y": Y,
        "THK": VALUE,
    }
)
TABLES = {
    "pandas": lambda: FRAME,
    "polars": lambda: pl.from_pandas(FRAME),
    "pyarrow": lambda: pa.Table.from_pandas(FRAME),
    "pyarrow chunks": lambda: pa.concat_tables([pa.Table.from_pandas(FRAME[:5]), pa.Table.from_pandas(FRAME[5:])]),
    "duckdb": lambda: duckdb.sql("select * from FRAME"),
    "dictionary": lambda: FRAME.to_dict("list"),
}


@pytest.mark.parametrize("kind", TABLES)
def test_any_table_will_do(kind: str) -> None:
    lot = dp.Lot(TABLES[kind](), by=["lot", "wafer"], x="X", y="Y", value="THK", diameter=300, unit="nm")
    assert lot.names == ["A, 1", "B, 1", "A, 2"]
    assert lot["B", "1"].value.tolist() == VALUE[4:8].tolist()
    assert lot["A, 2"].unit == "nm" and lot["A, 2"].quantity == "THK"
    with pytest.raises(KeyError, match="no wafer 'C'"):
        lot["C"]


def test_tables_in_any_order_keep_each_wafers_rows() -> None:
    shuffled = FRAME.sample(frac=1, random_state=1)
    lot = dp.Lot(shuffled, by=["lot", "wafer"], x="X", y="Y", value="THK")
    for keys, rows in shuffled.groupby(["lot", "wafer"], observed=True):
        assert lot[", ".join(keys)].value.tolist() == rows["THK"].tolist()


def test_an_array_that_another_thread_writes_does_no_harm() -> None:
    value = np.ones(30000, "f4")
    x = np.linspace(-90, 90, 30000, dtype="f4")
    y = x / 2
    stop = threading.Event()

    def write() -> None:
        while not stop.is_set():
            value[:] = 1
            value[:] = 2

    writer = threading.Thread(target=write)
    writer.start()
    try:
        for _ in range(20):
            found = dp.Wafer(x, y, value).value
            assert set(np.unique(found)) <= {1.0, 2.0}
    finally:
        stop.set()
        writer.join()


def test_a_buffer_in_use_is_not_resized() -> None:
    numbers = array.array("f", range(8))
    wafer = dp.Wafer(numbers, numbers, numbers)
    numbers.append(2.0)  # given back by now
    assert len(wafer) == 8
