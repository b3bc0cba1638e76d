# SPDX-License-Identifier: MIT
"""The nine controls: every member by its name."""

import gc
import json
import os
import subprocess
import weakref

import numpy as np
import pytest

import discoplan as dp
from discoplan import controls

NAMES = ["Plot2D", "Plot2DS", "Plot2DC", "Plot2DN", "Plot3D", "Plot3DS", "Plot3DB", "Histo", "LineScan"]
DESCRIBED = json.loads(subprocess.run([os.environ["DISCOPLAN_PROGRAM"], "describe"], capture_output=True).stdout)


def test_the_version_is_the_librarys() -> None:
    said = subprocess.run([os.environ["DISCOPLAN_PROGRAM"], "--version"], capture_output=True, text=True)
    assert dp.__version__ in said.stdout.split()


@pytest.mark.parametrize("described", DESCRIBED["classes"], ids=lambda d: d["name"])
def test_every_member_is_there(described: dict) -> None:
    cls = getattr(dp, described["name"])
    plot = cls()
    for row in described["members"]:
        member = getattr(cls, row["name"])
        assert row["doc"].split()[0] in member.__doc__
        if row["kind"] == "property":
            value = getattr(plot, row["name"])
            if row["writable"] and row["type"] != "object":
                setattr(plot, row["name"], value)
                assert getattr(plot, row["name"]) == value
            if row["initial"] is not None:
                assert value == row["initial"]


@pytest.mark.parametrize("name", NAMES)
def test_each_takes_data_and_draws(name: str) -> None:
    plot = getattr(dp, name)(500, 400)
    plot.WaferDiameter, plot.TestDiameter = 300, 294
    angle = np.arange(60) * 2.4
    x, y = 18 * np.sqrt(np.arange(60)) * np.cos(angle), 18 * np.sqrt(np.arange(60)) * np.sin(angle)
    assert plot.SetWaferData(x, y, 5 + x / 50) == 0 and plot.Plot() == 0
    pixels = np.asarray(plot.picture())
    assert pixels.shape == (400, 500, 4) and len(np.unique(pixels.reshape(-1, 4), axis=0)) > 5
    count, xs, ys, zs = plot.GetWaferData()
    assert isinstance(xs, np.ndarray)
    assert count == 60 and np.asarray(zs) == pytest.approx(5 + x / 50)
    assert plot.Interpolation(0.0, 0.0) == pytest.approx(5, abs=0.5)


def test_enumerations_are_those_of_the_rows() -> None:
    for row in DESCRIBED["enumerations"]:
        enum = getattr(dp, row["name"])
        assert [member.value for member in enum] == [value["value"] for value in row["values"]]
    plot = dp.Plot2D()
    plot.WaferStyle = dp.WaferSt.Flat
    assert plot.WaferStyle is dp.WaferSt.Flat


def test_bad_values_are_refused_with_the_members_name() -> None:
    plot = dp.Plot2D()
    with pytest.raises(TypeError, match="TestDiameter: "):
        plot.TestDiameter = "wide"
    with pytest.raises(ValueError, match="MousePointer: "):
        plot.MousePointer = 100000
    with pytest.raises(AttributeError, match="no member 'TestDiametr'"):
        plot.TestDiametr = 3
    with pytest.raises(AttributeError):
        plot.mean = 3
    with pytest.raises(ValueError, match="1 to 10000"):
        dp.Plot2D(0, 10)
    assert plot.SetWaferData([1, 2], [1], [1, 2]) in (1, 2, 4)


def test_handlers_may_raise_and_call_the_control() -> None:
    plot = dp.Plot2D()
    seen = []

    @lambda handler: plot.on("Click", handler)
    def handler() -> None:
        seen.append(plot.WaferDiameter)
        if len(seen) > 1:
            raise RuntimeError("from a handler")

    plot.mouse("Click")
    with pytest.raises(RuntimeError, match="from a handler"):
        plot.mouse("Click")
    assert len(seen) == 2
    with pytest.raises(TypeError, match="takes a function, not int"):
        plot.on("Click", 3)
    with pytest.raises(AttributeError, match="no event 'KeyDown', but Click"):
        plot.on("KeyDown", print)
    with pytest.raises(AttributeError, match="no child 'nobody'"):
        plot.mouse("Click", child="nobody")


def test_a_control_that_hears_itself_is_collected() -> None:
    plot = dp.Plot2D()
    plot.on("Click", lambda: plot)
    gone = weakref.ref(plot)
    del plot
    gc.collect()
    assert gone() is None


def test_names_of_the_module_are_complete() -> None:
    assert set(NAMES) < set(controls.__all__)
    assert {"Plot2D", "Sites", "Wafer", "read", "arrow"} <= set(dir(dp)) and "Any" not in dir(dp)
    assert all(hasattr(dp, name) for name in dir(dp) if name not in ("arrow", "matplotlib"))
    with pytest.raises(AttributeError, match="no attribute 'Plot4D'"):
        dp.Plot4D
