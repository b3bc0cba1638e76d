# SPDX-License-Identifier: MIT
"""Threads, memory and references."""

import gc
import resource
import sys
import threading
from concurrent.futures import ThreadPoolExecutor

import numpy as np

import discoplan as dp

RNG = np.random.default_rng(5)
X, Y = RNG.uniform(-90, 90, (2, 60)).astype("f4")
VALUE = RNG.normal(10, 1, 60).astype("f4")


def test_eight_threads_draw_what_one_draws() -> None:
    shared = dp.Wafer(X, Y, VALUE)
    kinds = ["2D", "3D", "2DC", "histo"]
    alone = {kind: shared.plot(kind, size=(200, 160)).png() for kind in kinds}
    lattice = shared.lattice(80)

    def work(number: int) -> bool:
        kind = kinds[number % 4]
        own = dp.Wafer(X, Y, VALUE)
        return (
            own.plot(kind, size=(200, 160)).png() == alone[kind]
            and shared.plot(kind, size=(200, 160)).png() == alone[kind]
            and np.array_equal(shared.lattice(80), lattice, equal_nan=True)
        )

    with ThreadPoolExecutor(8) as pool:
        assert all(pool.map(work, range(64)))


def test_others_run_while_it_draws() -> None:
    wafer = dp.Wafer(X, Y, VALUE)
    ticks, done = 0, threading.Event()

    def draw() -> None:
        wafer.plot(size=(3000, 3000)).png()
        done.set()

    thread = threading.Thread(target=draw)
    thread.start()
    while not done.wait(0.001):
        ticks += 1
    thread.join()
    assert ticks > 3


def test_eight_threads_may_ask_one_control() -> None:
    plot = dp.Plot2D()
    plot.WaferDiameter = 300
    heard = []
    plot.on("Click", lambda: heard.append(plot.SetWaferData(X, Y, VALUE)))

    def work(_: int) -> int:
        plot.mouse("Click")
        return plot.Plot()

    with ThreadPoolExecutor(8) as pool:
        assert set(pool.map(work, range(200))) == {0}
    assert heard == [0] * 200


def resident() -> int:
    with open("/proc/self/statm") as file:
        return int(file.read().split()[1]) * resource.getpagesize()


def test_memory_stays_the_same() -> None:
    lot = [dp.Wafer(X, Y, VALUE) for _ in range(3)]
    control = dp.Plot2D()

    def once() -> None:
        wafer = dp.Wafer(X, Y, VALUE)
        wafer.plot(size=(120, 110)).png()
        wafer.plot(look="classic", size=(120, 110)).rgba()
        wafer.lattice(20), wafer.statistics(), wafer - lot[0], dp.mean(lot)
        control.SetWaferData(X, Y, VALUE), control.GetWaferData(), control.PlotCaption
        try:
            wafer.plot("4D")
        except ValueError:
            pass

    for _ in range(40):
        once()
    gc.collect()
    before = resident()
    for _ in range(100):
        once()
    gc.collect()
    assert resident() - before < 1_500_000


def test_no_reference_is_lost_or_kept() -> None:
    text, options = "a title of its own", [X, Y, VALUE]
    wafer = dp.Wafer(*options, name=text)
    gc.collect()
    counted = [sys.getrefcount(each) for each in (None, X, Y, VALUE, text)]
    for _ in range(1000):
        dp.Wafer(*options, name=text).interpolate(X, Y)
        wafer.interpolate(1, 2), wafer.statistics(), wafer.name
        try:
            dp.Wafer(X, Y, VALUE[:4], name=text)
        except ValueError:
            pass
    gc.collect()
    for old, new in zip(counted, [sys.getrefcount(each) for each in (None, X, Y, VALUE, text)]):
        assert abs(new - old) < 50
