# SPDX-License-Identifier: MIT
"""Numbers against an independent computation by numpy."""

import numpy as np
import pytest
from hypothesis import given, settings
from hypothesis import strategies as st
from hypothesis.extra import numpy as hnp

import discoplan as dp

values = hnp.arrays(
    np.float32,
    st.integers(1, 300),
    elements=st.floats(-1000, 1000, width=32).map(lambda v: round(v, 2)),
)


def scattered(count: int, seed: int = 0) -> "tuple[np.ndarray, np.ndarray]":
    draw = np.random.default_rng(seed)
    radius, angle = 140 * np.sqrt(draw.random(count)), 2 * np.pi * draw.random(count)
    return (radius * np.cos(angle)).astype("f4"), (radius * np.sin(angle)).astype("f4")


@settings(max_examples=80, deadline=None)
@given(values)
def test_statistics_are_those_of_numpy(value: np.ndarray) -> None:
    x, y = scattered(len(value))
    figures = dp.Wafer(x, y, value, diameter=300).statistics()
    exact = np.round(value.astype("f8"), 2)
    close = dict(rel_tol=1e-9, abs_tol=1e-9)
    quartiles = np.quantile(exact, [0.25, 0.5, 0.75])
    expected = {
        "mean": exact.mean(),
        "minimum": exact.min(),
        "maximum": exact.max(),
        "range": np.ptp(exact),
        "quartile_1": quartiles[0],
        "median": quartiles[1],
        "quartile_3": quartiles[2],
        "mad": np.median(np.abs(exact - quartiles[1])),
    }
    if len(exact) > 1:
        expected["std_dev"] = exact.std(ddof=1)
    for key, number in expected.items():
        assert getattr(figures, key) == pytest.approx(number, rel=close["rel_tol"], abs=close["abs_tol"]), key


def test_two_numbers_of_any_kind_give_one() -> None:
    wafer = dp.Wafer([-10, 10, 0, 0], [0, 0, 10, -10], [1, 2, 4, 8])
    for number in (float, int, np.float32, np.float64, np.int16):
        assert wafer.interpolate(number(10), number(0)) == 2
    with pytest.raises(ValueError, match="0 dimensions"):
        wafer.interpolate(np.array(10.0), np.array(0.0))


@settings(max_examples=60, deadline=None)
@given(st.integers(4, 9), st.integers(0, 10**6))
def test_interpolation_is_the_mean_of_the_four_nearest(count: int, seed: int) -> None:
    """Below ten sites every one of them is looked at, so that the four nearest it must be."""
    x, y = scattered(count, seed)
    value = np.random.default_rng(seed).normal(10, 1, count).astype("f4")
    wafer = dp.Wafer(x, y, value, diameter=300, test_diameter=290)
    px, py = scattered(50, seed + 1)
    distance = np.hypot(px[:, None] - x.astype("f8"), py[:, None] - y.astype("f8"))
    near = np.argsort(distance, axis=1)[:, :4]
    rows = np.arange(50)[:, None]
    if np.partition(distance, 3, axis=1)[:, 3].max() > 140:
        return  # out of the search's reach
    weight = 1 / distance[rows, near] ** 2
    expected = (weight * value[near]).sum(axis=1) / weight.sum(axis=1)
    assert wafer.interpolate(px, py) == pytest.approx(expected, rel=1e-5)


@pytest.mark.parametrize("count", [4, 49, 1000])
def test_lattice_and_points_agree(count: int) -> None:
    x, y = scattered(count)
    wafer = dp.Wafer(x, y, x + 2 * y, diameter=300)
    n = 64
    lattice = wafer.lattice(n)
    at = (np.arange(n) + 0.5 - n / 2) * 300 / n
    px, py = np.meshgrid(at.astype("f4"), -at.astype("f4"))
    points = wafer.interpolate(px.ravel(), py.ravel()).reshape(n, n)
    assert lattice.dtype == np.float32
    assert np.array_equal(lattice, points, equal_nan=True)
    outside = np.hypot(px.astype("f8"), py.astype("f8")) > wafer.test_diameter / 2
    assert np.array_equal(np.isnan(lattice), outside)


def test_smooth_lattice_reproduces_a_plane() -> None:
    x, y = scattered(100)
    wafer = dp.Wafer(x, y, 50 + x / 10, diameter=300)
    lattice = wafer.lattice(40, interpolation="smooth")
    at = (np.arange(40) + 0.5 - 20) * 300 / 40
    inside = np.hypot(*np.meshgrid(at, at)) < 100
    assert np.abs(lattice - (50 + at / 10)[None, :])[inside].max() < 0.05


def test_differences_and_means() -> None:
    x, y = scattered(49)
    wafers = [dp.Wafer(x, y, np.full(49, float(i)), diameter=300) for i in (1, 2, 6)]
    assert dp.mean(wafers).value == pytest.approx(3)
    assert (wafers[2] - wafers[1]).value == pytest.approx(4)


def test_results_are_arrays_that_may_be_written() -> None:
    x, y = scattered(10)
    lattice = dp.Wafer(x, y, x, diameter=300).lattice(5)
    assert isinstance(lattice, np.ndarray) and lattice.flags.writeable and lattice.base is not None


def test_figures_that_are_asked_for_are_those_of_all() -> None:
    x, y = scattered(49)
    wafer = dp.Wafer(x, y, x + 2 * y, diameter=300)
    every = wafer.statistics().asdict()
    assert wafer.statistics(["tilt", "mean"]) == {key: every[key] for key in ("mean", "tilt")}
    assert list(wafer.statistics(["tilt", "mean"])) == ["mean", "tilt"]  # in the library's order
    assert wafer.statistics("iqr") == {"iqr": every["iqr"]}
    assert wafer.statistics(list(every)) == every
    for bad in (["mean", "men"], [], ""):
        with pytest.raises(ValueError, match="figures: .* is none of mean, std_dev"):
            wafer.statistics(bad)
