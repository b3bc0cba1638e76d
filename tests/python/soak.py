# SPDX-License-Identifier: MIT
"""Makes very many small plots of every kind and both looks, and fails if the process grows.

soak.py [COUNT]: a million by default, which takes long; `chrt -i 0` leaves the machine to others.
"""

import gc
import itertools
import resource
import sys

import discoplan as dp

KINDS = ("2D", "2DS", "2DC", "2DN", "3D", "3DS", "3DB", "histo", "linescan")
X, Y = [0.0, 40, 0, -40, 0, 28, -28], [0.0, 0, 40, 0, -40, 28, -28]
GROWTH = 1_000_000


def resident() -> int:
    """Bytes of memory that the process has now."""
    with open("/proc/self/statm") as file:
        return int(file.read().split()[1]) * resource.getpagesize()


def plots(first: int, count: int) -> None:
    """Wafers whose values differ, so that no plot is like the last one."""
    asked = itertools.cycle((kind, look) for look in ("modern", "classic") for kind in KINDS)
    for number, (kind, look) in zip(range(first, first + count), asked):
        value = [10.0 + (number * prime) % 101 / 10 for prime in (2, 3, 5, 7, 11, 13, 17)]
        wafer = dp.Wafer(X, Y, value, name=f"W{number}")
        assert wafer.plot(kind, look=look, size=(60, 50)).png().startswith(b"\x89PNG")


def main(count: int) -> None:
    """Plots a tenth, which warms up fonts and the heap, and then the rest."""
    parts = 10
    plots(0, count // parts)
    gc.collect()
    before = resident()
    print(f"{count // parts} plots: {before / 1e6:.2f} MB", flush=True)
    for part in range(1, parts):
        plots(part * count // parts, count // parts)
        gc.collect()
        grown = resident() - before
        print(f"{(part + 1) * count // parts} plots: {(before + grown) / 1e6:.2f} MB", flush=True)
        if grown > GROWTH:
            sys.exit(f"the process has grown by {grown} bytes")


if __name__ == "__main__":
    main(int(sys.argv[1]) if len(sys.argv) > 1 else 1_000_000)
