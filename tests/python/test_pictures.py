# SPDX-License-Identifier: MIT
"""Pictures of wafers, lots and controls."""

import os
import pathlib
import subprocess

import matplotlib
import numpy as np
import pytest

import discoplan as dp

matplotlib.use("Agg")
EXAMPLES = pathlib.Path(__file__).parents[2] / "examples"
LOT = EXAMPLES / "native_oxide_lot.csv"
KINDS = ["2D", "2DS", "2DC", "2DN", "3D", "3DS", "3DB", "histo", "linescan"]


@pytest.fixture(scope="module")
def lot() -> dp.Lot:
    return dp.read(LOT)


def program(*arguments: object) -> None:
    subprocess.run([os.environ["DISCOPLAN_PROGRAM"], *map(str, arguments)], check=True)


@pytest.mark.parametrize("look", ["modern", "classic"])
@pytest.mark.parametrize("kind", KINDS)
def test_pictures_are_those_of_the_command_line(lot: dp.Lot, tmp_path: pathlib.Path, kind: str, look: str) -> None:
    file = tmp_path / "map.png"
    program("plot", LOT, "--wafer", 7, "--kind", kind, "--look", look, "--limits", 9.5, 10.5, "-o", file)
    assert lot["Slot07"].plot(kind, look=look, limits=(9.5, 10.5)).png() == file.read_bytes()


def test_options_are_those_of_the_command_line(lot: dp.Lot, tmp_path: pathlib.Path) -> None:
    file = tmp_path / "map.svg"
    program("plot", LOT, "--wafer", 3, "--colours", "cividis_r", "--bands", 8, "--dark", "--values",
            "--no-isolines", "--interpolation", "idw4", "--size", "120x90mm", "-o", file)  # fmt: skip
    picture = lot[2].plot(colours="cividis_r", bands=8, dark=True, values=True, no_isolines=True,
                          interpolation="idw4", mm=(120, 90))  # fmt: skip
    assert picture.svg() == file.read_text()


def test_pixels_are_those_of_the_file(lot: dp.Lot, tmp_path: pathlib.Path) -> None:
    from matplotlib.image import imread

    for options in ({}, {"transparent": True}, {"look": "classic"}):
        picture = lot[0].plot(size=(300, 250), **options)
        picture.save(tmp_path / "map.png")
        file = (imread(tmp_path / "map.png") * 255).round().astype("u1")
        pixels = np.asarray(picture)
        assert pixels.shape == (250, 300, 4)
        assert np.array_equal(pixels[..., : file.shape[2]], file)


@pytest.mark.parametrize("kind", KINDS)
def test_the_classic_look_is_vectors_too(lot: dp.Lot, kind: str, tmp_path: pathlib.Path) -> None:
    picture = lot["Slot07"].plot(kind, look="classic", mm=(160, 120))
    svg, pdf = picture.svg(), picture.pdf()
    assert 'width="453.54pt" height="340.16pt"' in svg and ">Slot07</text>" in svg and "<image" not in svg
    assert pdf.startswith(b"%PDF-")
    picture.save(tmp_path / "map.svg")
    assert (tmp_path / "map.svg").read_text() == svg


@pytest.mark.parametrize("name", ["Plot2D", "Plot2DS", "Plot2DC", "Plot2DN", "Plot3D", "Plot3DS", "Plot3DB", "Histo", "LineScan"])
def test_controls_print_themselves(lot: dp.Lot, name: str, tmp_path: pathlib.Path) -> None:
    wafer = lot["Slot07"]
    control = getattr(dp, name)()
    control.WaferDiameter = wafer.diameter
    control.PlotCaption = "Slot & 7"
    control.SetWaferData(wafer.x, wafer.y, wafer.value)
    assert control.Plot() == 0
    assert ">Slot &amp; 7</text>" in control.svg() and control.pdf().startswith(b"%PDF-")
    assert control.page(mm=(100, 80)).png() != control.png()
    for ending in ("png", "SVG", "pdf"):
        control.save(tmp_path / f"a.{ending}")
    assert (tmp_path / "a.SVG").read_text() == control.svg()
    assert (tmp_path / "a.png").read_bytes() == control.png()


def test_differences_have_colours_about_zero(lot: dp.Lot) -> None:
    difference = lot["Slot07"] - lot.mean()
    assert difference.plot().png() == difference.plot(colours="vik").png()
    assert difference.plot().png() != difference.plot(colours="viridis").png()
    assert lot["Slot07"].plot().png() == lot["Slot07"].plot(colours="viridis").png()


def test_sheets_have_one_scale(lot: dp.Lot, tmp_path: pathlib.Path) -> None:
    sheet = lot.sheet(title="Lot", limits=(9, 11))
    assert sheet.size == (1684, 1190)
    pixels = np.asarray(sheet)
    assert len(np.unique(pixels.reshape(-1, 4), axis=0)) > 300
    sheet.save(tmp_path / "lot.pdf")
    assert (tmp_path / "lot.pdf").read_bytes().startswith(b"%PDF-")
    with pytest.raises(ValueError, match="too small"):
        lot.sheet(size=(300, 300))


def test_a_notebook_shows_what_there_is(lot: dp.Lot) -> None:
    plot = dp.Histo()
    for shown in (lot, lot[0], lot[0].plot("3D"), plot):
        assert shown._repr_png_().startswith(b"\x89PNG")


def test_axes_have_the_same_map(lot: dp.Lot) -> None:
    import matplotlib.pyplot as plt

    wafer = lot["Slot07"]
    figure, ax = plt.subplots(figsize=(4, 4), dpi=100)
    image = dp.matplotlib.draw(ax, wafer, limits=(9.5, 10.5), colours="cividis")
    assert tuple(image.get_extent()) == wafer.extent and ax.get_xlabel() == "x in mm"
    figure.canvas.draw()
    at = ax.transData.transform((30, -40)).round().astype(int)
    drawn = np.asarray(figure.canvas.buffer_rgba())[-at[1], at[0], :3].astype(int)
    value = wafer.lattice(300, interpolation="smooth")[190, 180]
    part = round((float(value) - 9.5) / (10.5 - 9.5) * 255)
    wanted = np.asarray(dp._core.colours("cividis", 256))[part, :3].astype(int)
    assert np.abs(drawn - wanted).max() <= 12
    plt.close(figure)
    with pytest.raises(ValueError, match="none of viridis"):
        dp.matplotlib.colormap("jet")


def test_colour_names_are_colours() -> None:
    for name in dp.colour_names():
        assert np.asarray(dp._core.colours(name, 3)).shape == (3, 4)


def test_files_say_what_they_left_out(tmp_path: pathlib.Path) -> None:
    file = tmp_path / "sites.csv"
    file.write_text("X,Y,THK\n0,0,1\n10,0,x\n0,10,3\n-10,0,4\n0,-10,5\n")
    with pytest.raises(ValueError, match=r"sites.csv:3:3: 'x' is no number; mend the value or use skip_invalid"):
        dp.read(file)
    lot = dp.read(file, skip_invalid=True)
    assert "left out 1 row" in lot.notes and "4 of 5 sites" in repr(lot[0])


@pytest.mark.parametrize("count", [49, 1001])
def test_a_wafer_that_was_drawn_before_is_drawn_alike(count: int) -> None:
    """What a wafer keeps between its pictures is the same as what a new one finds."""
    x, y = np.random.default_rng(count).uniform(-100, 100, (2, count))
    old = dp.Wafer(x, y, x * y, diameter=300)
    asked = [{"kind": "3D"}, {"interpolation": "idw4"}, {"kind": "linescan"}, {"interpolation": "idw4"}, {}, {}]
    for options in asked:
        new = dp.Wafer(x, y, x * y, diameter=300)
        assert old.plot(size=(200, 150), **options).png() == new.plot(size=(200, 150), **options).png()
    smooth = dp.Wafer(x, y, x * y, diameter=300).lattice(30, interpolation="smooth")
    assert np.array_equal(old.lattice(30, interpolation="smooth"), smooth, equal_nan=True)
