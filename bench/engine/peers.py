# SPDX-License-Identifier: MIT
"""What the package is compared with: nothing at all, and what people write with pandas, scipy and
matplotlib for the same figures and the same picture."""

import io
from typing import Any, Callable, Iterator, Sequence

import numpy as np
import pyarrow as pa

FOUND = "lot string, found double"
DRAWN = "lot string, png binary"


def nothing(batches: Iterator[Any]) -> Iterator[Any]:
    """What the engine costs by itself: every batch goes to Python, and a row for each comes back."""
    for batch in batches:
        yield pa.RecordBatch.from_arrays([batch.column(0), pa.nulls(len(batch), pa.float64())], ["lot", "found"])


def columns_of_statistics(keys: Sequence[str], figures: Sequence[str]) -> Callable[[Any], Any]:
    """The same, with all columns that statistics have, in which nothing is."""

    def zeros(batches: Iterator[Any]) -> Iterator[Any]:
        for batch in batches:
            n = len(batch)
            statistics = pa.StructArray.from_arrays([pa.repeat(0.0, n)] * len(figures), list(figures))
            status, message = pa.repeat(pa.scalar(0, pa.int32()), n), pa.repeat("", n)
            added = {"statistics": statistics, "status": status, "message": message}
            kept = [batch.column(batch.schema.get_field_index(key)) for key in keys]
            yield pa.RecordBatch.from_arrays([*kept, *added.values()], [*keys, *added])

    return zeros


def by_pandas(batches: Iterator[Any]) -> Iterator[Any]:
    """The figures that the package gives by default, those that numpy and scipy have, by wafer."""
    from scipy import stats

    for batch in batches:
        means = []
        for row in batch.to_pandas().itertuples():
            z = row.value.astype("f8")
            low, middle, high = np.quantile(z, [0.25, 0.5, 0.75])
            plane = np.linalg.lstsq(np.column_stack([np.ones(len(z)), row.x, row.y]), z, rcond=None)[0]
            mad = stats.median_abs_deviation(z)
            figures = (z.mean(), z.std(ddof=1), z.min(), z.max(), np.ptp(z), low, middle, high, mad)
            means.append(float(figures[0]) + 0 * float(np.hypot(plane[1], plane[2])))
        yield pa.RecordBatch.from_arrays([batch.column(0), pa.array(means, pa.float64())], ["lot", "found"])


def by_matplotlib(batches: Iterator[Any]) -> Iterator[Any]:
    """A filled map with isolines, sites, the wafer's edge, a title, figures and a scale."""
    import matplotlib

    matplotlib.use("Agg")
    import matplotlib.pyplot as plt
    from scipy.interpolate import griddata

    at = np.linspace(-150, 150, 200)
    gx, gy = np.meshgrid(at, at)
    for batch in batches:
        files = []
        for row in batch.to_pandas().itertuples():
            figure, ax = plt.subplots(figsize=(4, 3), dpi=100)
            z = griddata((row.x, row.y), row.value, (gx, gy), "cubic")
            shown = ax.contourf(gx, gy, z, levels=64)
            ax.contour(gx, gy, z, levels=8, colors="k", linewidths=0.5)
            ax.plot(row.x, row.y, "k.", markersize=2)
            ax.add_patch(plt.Circle((0, 0), 150, fill=False))
            ax.set_aspect("equal")
            ax.set_title(f"{row.lot} {row.slot}")
            ax.set_xlabel(f"mean {row.value.mean():.4g}, sigma {row.value.std(ddof=1):.3g}, n {len(row.value)}")
            figure.colorbar(shown)
            file = io.BytesIO()
            figure.savefig(file, format="png")
            plt.close(figure)
            files.append(file.getvalue())
        yield pa.RecordBatch.from_arrays([batch.column(0), pa.array(files, pa.binary())], ["lot", "png"])
