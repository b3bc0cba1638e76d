# SPDX-License-Identifier: MIT
"""The package beside what Python people use for the same: the least processor time of several runs,
and the ratio; all of them work on one thread. A lattice is the interpolation of 200 x 200 points; cKDTree asks for four neighbours and
weighs them, its tree being made anew as for a new wafer."""

import io
import subprocess
import sys
import time
from typing import Callable

import matplotlib
import numpy as np
from scipy.interpolate import griddata
from scipy.spatial import cKDTree

import discoplan as dp

matplotlib.use("Agg")
import matplotlib.pyplot as plt  # noqa: E402

N = 200
AT = (np.arange(N) + 0.5 - N / 2) * 300 / N
GX, GY = np.meshgrid(AT, -AT)
INSIDE = np.hypot(GX, GY) <= 147
POINTS = np.column_stack([GX[INSIDE], GY[INSIDE]])


def sites(count: int) -> "tuple[np.ndarray, np.ndarray, np.ndarray]":
    draw = np.random.default_rng(count)
    radius, angle = 145 * np.sqrt(draw.random(count)), 2 * np.pi * draw.random(count)
    x, y = radius * np.cos(angle), radius * np.sin(angle)
    value = 10 + x / 300 + draw.normal(0, 0.1, count)
    return x.astype("f4"), y.astype("f4"), value.astype("f4")


def least(work: Callable[[], object], seconds: float = 0.4) -> float:
    work()
    best, end = float("inf"), time.process_time() + seconds
    while time.process_time() < end:
        start = time.process_time()
        work()
        best = min(best, time.process_time() - start)
    return best


def show(what: str, ours: float, theirs: float, other: str, goal: "float | None" = None) -> None:
    judged = "" if goal is None else f"   goal {goal:g}: {'met' if ours / theirs <= goal else 'MISSED'}"
    print(f"{what:34}{ours * 1e3:10.3f} ms{theirs * 1e3:12.3f} ms  {other:28}{ours / theirs:8.4f}{judged}")


def by_tree(x: np.ndarray, y: np.ndarray, value: np.ndarray) -> np.ndarray:
    distance, near = cKDTree(np.column_stack([x, y])).query(POINTS, k=4)
    weight = 1 / np.maximum(distance, 1e-12) ** 2
    return (weight * value[near]).sum(axis=1) / weight.sum(axis=1)


def lattices() -> None:
    for count in (9, 49, 121, 441, 2000, 10000, 30000):
        x, y, value = sites(count)
        wafer = dp.Wafer(x, y, value, diameter=300)
        ours = least(lambda: wafer.lattice(N))
        fresh = least(lambda: dp.Wafer(x, y, value, diameter=300).lattice(N))
        show(f"lattice, {count} sites", ours, least(lambda: by_tree(x, y, value)), "cKDTree, k=4", 0.10)
        show("  with a new wafer", fresh, least(lambda: by_tree(x, y, value)), "cKDTree, k=4", 0.10)
        if count in (49, 2000):
            points = np.column_stack([x, y])
            show("", ours, least(lambda: griddata(points, value, POINTS), 1), "griddata, linear")


NUMPYS = ["mean", "std_dev", "minimum", "maximum", "quartile_1", "median", "quartile_3", "mad"]


def by_numpy(value: np.ndarray) -> tuple:
    quartiles = np.quantile(value, [0.25, 0.5, 0.75])
    return value.mean(), value.std(ddof=1), value.min(), value.max(), quartiles, np.median(np.abs(value - quartiles[1]))


def by_scipy(x: np.ndarray, y: np.ndarray, value: np.ndarray) -> tuple:
    """With the best plane, and the error of the mean of four neighbours, each site being left out."""
    plane = np.linalg.lstsq(np.column_stack([np.ones_like(x), x, y]), value, rcond=None)[0]
    points = np.column_stack([x, y])
    distance, near = cKDTree(points).query(points, k=5)
    weight = 1 / np.maximum(distance[:, 1:], 1e-12) ** 2
    foretold = (weight * value[near[:, 1:]]).sum(axis=1) / weight.sum(axis=1)
    return by_numpy(value), plane, np.sqrt(np.mean((value - foretold) ** 2))


def statistics() -> None:
    for count in (49, 2000, 30000):
        x, y, value = sites(count)
        wafer = dp.Wafer(x, y, value, diameter=300)
        show(f"8 figures of {count} sites", least(lambda: wafer.statistics(NUMPYS)), least(lambda: by_numpy(value)), "numpy")
        show(f"all 19 of {count} sites", least(wafer.statistics), least(lambda: by_scipy(x, y, value)), "numpy and cKDTree")


def contourf(count: int, kind: str) -> bytes:
    x, y, value = sites(count)
    figure, ax = plt.subplots(figsize=(8, 6), dpi=100)
    shown = ax.tricontourf(x, y, value, levels=14)
    ax.plot(x, y, "k.", markersize=2)
    ax.add_patch(plt.Circle((0, 0), 150, fill=False))
    ax.set_aspect("equal")
    figure.colorbar(shown)
    file = io.BytesIO()
    figure.savefig(file, format=kind)
    plt.close(figure)
    return file.getvalue()


def pictures() -> None:
    for count in (49, 441):
        x, y, value = sites(count)
        wafer = dp.Wafer(x, y, value, diameter=300, name="W1", unit="nm")
        theirs = least(lambda: contourf(count, "png"), 2)
        show(f"map of {count} sites, modern PNG", least(lambda: wafer.plot().png()), theirs, "tricontourf", 0.03)
        show(f"map of {count} sites, idw4", least(lambda: wafer.plot(interpolation="idw4").png()), theirs, "tricontourf", 0.03)
        show(f"map of {count} sites, classic PNG", least(lambda: wafer.plot(look="classic").png()), theirs, "tricontourf", 0.03)
        show(f"map of {count} sites, SVG", least(lambda: wafer.plot().svg()), least(lambda: contourf(count, "svg"), 2), "tricontourf")


def sheets() -> None:
    wafers = [dp.Wafer(*sites(49 + i), diameter=300, name=f"W{i}") for i in range(25)]
    lot = dp.Lot._of(wafers)

    def grid() -> None:
        figure, axes = plt.subplots(5, 5, figsize=(16.84, 11.9), dpi=100)
        for i, ax in enumerate(axes.flat):
            shown = ax.tricontourf(*sites(49 + i), levels=14, vmin=9, vmax=11)
            ax.set_aspect("equal")
            ax.set_title(f"W{i}")
        figure.colorbar(shown, ax=axes)
        figure.savefig(io.BytesIO())
        plt.close(figure)

    show("sheet of 25 wafers, PNG", least(lambda: lot.sheet(title="Lot").png(), 1), least(grid, 4), "5 x 5 tricontourf")


def overheads() -> None:
    x, y, value = sites(49)
    wafer = dp.Wafer(x, y, value, diameter=300)
    plot = dp.Plot2D()
    calls = {
        "wafer.interpolate(1.0, 2.0)": lambda: wafer.interpolate(1.0, 2.0),
        "wafer.diameter": lambda: wafer.diameter,
        "plot.WaferDiameter": lambda: plot.WaferDiameter,
        "plot.TestDiameter = 200.0": lambda: setattr(plot, "TestDiameter", 200.0),
    }
    for name, call in calls.items():
        start = time.process_time()
        for _ in range(100000):
            call()
        each = (time.process_time() - start) / 100000
        print(f"{name:34}{each * 1e6:10.3f} us   goal 2: {'met' if each < 2e-6 else 'MISSED'}")


def imports() -> None:
    code = "import time; t = time.process_time(); import discoplan; print(time.process_time() - t)"
    best = min(float(subprocess.check_output([sys.executable, "-c", code])) for _ in range(7))
    print(f"{'import discoplan':34}{best * 1e3:10.3f} ms   goal 30: {'met' if best < 0.030 else 'MISSED'}")


for part in (lattices, statistics, pictures, sheets, overheads, imports):
    part()
