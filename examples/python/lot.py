# SPDX-License-Identifier: MIT
"""The wafers of a lot that stand out, each with its difference from the mean: lot.py LOT.csv FOLDER"""

import pathlib
import sys

import discoplan as dp


def main(source: str, folder: pathlib.Path) -> None:
    lot = dp.read(source)
    mean = lot.mean()
    sigmas = {name: figures.std_dev or 0.0 for name, figures in lot.statistics().items()}
    for name in sorted(sigmas, key=lambda name: -sigmas[name])[:3]:
        print(f"{name}: sigma {sigmas[name]:.4f}")
        lot[name].plot("2D", bands=10).save(folder / f"{name}.png")
        (lot[name] - mean).plot("2D", title=f"{name} minus mean").save(folder / f"{name}_minus_mean.svg")
    lot.sheet(title=pathlib.Path(source).stem).save(folder / "lot.pdf")


if __name__ == "__main__":
    main(sys.argv[1], pathlib.Path(sys.argv[2]))
