# SPDX-License-Identifier: MIT
"""Examples and docstrings do what they say."""

import doctest
import os
import pathlib
import subprocess
import sys

import notebooks

import discoplan

SOURCE = pathlib.Path(__file__).parents[2]


def test_example(tmp_path: pathlib.Path) -> None:
    script = SOURCE / "examples" / "python" / "lot.py"
    lot = SOURCE / "examples" / "native_oxide_lot.csv"
    said = subprocess.run([sys.executable, script, lot, tmp_path], capture_output=True, text=True, check=True)
    assert said.stdout.startswith("Slot25: sigma 0.2673\n")
    assert len(list(tmp_path.iterdir())) == 7


def test_docstrings(tmp_path: pathlib.Path, monkeypatch) -> None:
    monkeypatch.chdir(tmp_path)
    assert doctest.testmod(discoplan).failed == 0


def test_notebook() -> None:
    """Runs without an error; its own assertions hold, and its pictures are there."""
    assert notebooks.pictures(notebooks.run("wafers.ipynb")) == 5


def test_pictures_of_the_page() -> None:
    """docs/python.md shows what its code draws, if not to the pixel; with DISCOPLAN_PICTURES set its
    pictures are drawn anew."""
    import numpy as np
    from matplotlib.image import imread

    lot = discoplan.read(SOURCE / "examples" / "native_oxide_lot.csv")
    wafer = lot["Slot07"]
    drawn = {
        "python_map.png": wafer.plot("2D", limits=(9.5, 10.5)),
        "python_difference.png": (wafer - lot.mean()).plot(),
    }
    for name, picture in drawn.items():
        if "DISCOPLAN_PICTURES" in os.environ:
            picture.save(SOURCE / "docs" / name)
        shown = imread(SOURCE / "docs" / name)[..., :3]
        pixels = np.asarray(picture)[..., :3] / 255
        assert shown.shape == pixels.shape and np.abs(shown - pixels).mean() < 0.01, name
