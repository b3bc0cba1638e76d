# SPDX-License-Identifier: MIT
"""What must work with nothing but Python: run it by pytest or alone."""

import math
import pathlib
import subprocess
import sys
import tempfile

import discoplan as dp

X, Y, VALUE = [0.0, 10.0, 0.0, -10.0], [0.0, 0.0, 10.0, 0.0], [1.0, 2.0, 3.0, 6.0]


def test_statistics() -> None:
    figures = dp.Wafer(X, Y, VALUE).statistics()
    assert figures.mean == 3 and figures.median == 2.5
    assert math.isclose(figures.std_dev or 0, math.sqrt(14 / 3))
    assert figures.asdict()["range"] == 5
    assert dp.Wafer([0], [0], [1]).statistics().std_dev is None


def test_interpolation() -> None:
    wafer = dp.Wafer(X, Y, VALUE)
    assert wafer.interpolate(10, 0) == 2
    assert math.isnan(wafer.interpolate(1000, 0))
    found = memoryview(wafer.interpolate(X, Y))
    assert found.format == "f" and found.tolist() == VALUE
    assert memoryview(wafer.lattice(7)).shape == (7, 7)


def test_pictures() -> None:
    wafer = dp.Wafer(X, Y, VALUE, name="W1", unit="nm")
    picture = wafer.plot("2D", limits=(0, 10), size=(320, 240))
    assert picture.png().startswith(b"\x89PNG") and picture.size == (320, 240)
    assert picture.svg().lstrip().startswith("<") and picture.pdf().startswith(b"%PDF-")
    assert picture.rgba().shape == (240, 320, 4)
    with tempfile.TemporaryDirectory() as folder:
        path = pathlib.Path(folder) / "map.png"
        picture.save(path)
        assert path.read_bytes() == picture.png()


def test_controls() -> None:
    plot = dp.Plot2D()
    plot.WaferDiameter = 200
    assert plot.SetWaferData(X, Y, VALUE) == 0 and plot.Plot() == 0
    heard = []
    plot.on("MouseDown", lambda *event: heard.append(event))
    plot.mouse("MouseDown", 3, 4, button=1)
    assert heard == [(1, 0, 3.0, 4.0)] and plot.Maximum == 6
    assert plot.WaferStyle is dp.WaferSt.Notch


def test_lots_of_columns() -> None:
    lot = dp.Lot({"w": list("abab"), "x": [1, 1, 3, 3], "y": [0] * 4, "v": [5, 6, 7, 8]}, "w", "x", "y", "v")
    assert lot.names == ["a", "b"] and list(memoryview(lot["b"].value)) == [6, 8]
    assert (lot["b"] - lot["a"]).statistics().mean == 1


def test_import_is_light() -> None:
    code = (
        "import sys, discoplan; "
        "sys.exit(any(m in sys.modules for m in ('numpy', 'pandas', 'matplotlib', 'pyarrow', 'dataclasses')))"
    )
    assert subprocess.run([sys.executable, "-c", code]).returncode == 0


def test_the_archives_command_says_what_it_needs() -> None:
    code = "import sys; sys.modules['pyarrow'] = None; from discoplan.archive import main; sys.exit(main(sys.argv[1:]))"

    def run(*arguments: str) -> "subprocess.CompletedProcess[str]":
        return subprocess.run([sys.executable, "-c", code, "lot", *arguments], capture_output=True, text=True)

    helped = run("--help")
    assert helped.returncode == 0 and "--parquet" in helped.stdout
    failed = run("--parquet", "archive", "-o", "out.parquet")
    assert failed.returncode == 1 and failed.stderr.count("\n") == 1
    assert failed.stderr.startswith("discoplan: ") and failed.stderr.endswith("install discoplan[arrow]\n")


if __name__ == "__main__":
    for name, test in list(globals().items()):
        if name.startswith("test_"):
            test()
    print(f"discoplan {dp.__version__} works in Python {sys.version.split()[0]} by itself.")
