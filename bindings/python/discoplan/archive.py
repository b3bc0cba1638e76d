# SPDX-License-Identifier: MIT
"""An archive in Parquet on one machine: `discoplan lot --parquet`, which engines do on many.

    discoplan lot --parquet archive -o figures.parquet --by lot,slot --columns X,Y,THK
    discoplan lot --parquet archive -o maps.parquet --by lot,slot --columns X,Y,THK --make plots

The tables are those of `discoplan.arrow`: what goes in has a row for each site or, with lists, for
each wafer. Wafers in rows are read and written by the batch; sites are held at once, for any of them
may be any wafer's. Needs pyarrow.
"""

import argparse
import os
import sys
import tempfile
from typing import TYPE_CHECKING, Any, Dict, Iterator, List, Optional, Sequence

if TYPE_CHECKING:
    from ._engine import Plan

WORKS = ("statistics", "plots", "differences", "wafers")


def _names(text: str) -> List[str]:
    return [name.strip() for name in text.split(",")]


def _size(text: str) -> Any:
    try:
        width, height = text.split("x")
        return int(width), int(height)
    except ValueError:
        raise argparse.ArgumentTypeError(f"takes WIDTHxHEIGHT in pixels, not {text!r}") from None


def _parser() -> argparse.ArgumentParser:
    parser = argparse.ArgumentParser(prog="discoplan lot", description="Make a table of an archive in Parquet.")
    parser.add_argument("command", choices=["lot"], help=argparse.SUPPRESS)
    parser.add_argument("--parquet", required=True, metavar="ARCHIVE", help="a file, or a folder of them")
    parser.add_argument("-o", "--output", required=True, metavar="FILE", help="the file of Parquet to write")
    parser.add_argument("--make", choices=WORKS, default="statistics", help="of each wafer")
    parser.add_argument("--by", type=_names, metavar="KEYS", help="columns that tell wafers apart; sites need them")
    parser.add_argument(
        "--columns", type=_names, metavar="X,Y,VALUE", default=["x", "y", "value"], help="several values are as many rows"
    )
    parser.add_argument("--to", metavar="ARCHIVE", help="what differences are to: the wafers of the same keys there")
    parser.add_argument("--to-column", metavar="NAME", help="or a column of values at the same sites")
    parser.add_argument("--figures", type=_names, metavar="NAMES", help="that are computed, or all")
    parser.add_argument("--name", metavar="KEY", help="column of texts for titles and messages")
    parser.add_argument("--kind", help="of the plots, as 2D")
    parser.add_argument("--format", choices=("png", "svg", "pdf"), help="of the plots")
    parser.add_argument("--size", type=_size, metavar="WIDTHxHEIGHT", help="of the plots in pixels")
    parser.add_argument("--look", choices=("modern", "classic"), help="of the plots")
    for name in ("diameter", "test-diameter", "edge-exclusion"):
        parser.add_argument(f"--{name}", type=float, metavar="MM")
    parser.add_argument("--skip-invalid", action="store_true", default=None, help="leave out sites without numbers")
    parser.add_argument("--batch", type=int, default=256, metavar="WAFERS", help="that are held at once (256)")
    return parser


def _given(arguments: Any, names: Sequence[str]) -> Dict[str, Any]:
    found = {name: getattr(arguments, name) for name in names}
    return {name: value for name, value in found.items() if value is not None}


def _options(arguments: Any) -> Dict[str, Any]:
    """The keywords of `discoplan.arrow`; raises `ValueError` for those that make no sense here."""
    wafer = _given(arguments, ["diameter", "test_diameter", "edge_exclusion", "skip_invalid"])
    plot = _given(arguments, ["kind", "format", "size", "look"])
    options = _given(arguments, ["figures", "name"])
    if options.get("figures") == ["all"]:
        options["figures"] = "all"
    if plot and arguments.make != "plots":
        raise ValueError(f"--{next(iter(plot))} is for --make plots")
    if (arguments.to or arguments.to_column) and arguments.make != "differences":
        raise ValueError("--to and --to-column are for --make differences")
    return {**options, **plot, "wafer": wafer} if arguments.make == "plots" else {**options, **wafer}


class _Archive:
    """The columns of an archive that are asked for."""

    def __init__(self, path: str) -> None:
        from pyarrow import dataset

        if not os.path.exists(path):
            raise FileNotFoundError(f"there is no {path}")
        self.data = dataset.dataset(path, format="parquet")
        self.names: List[str] = self.data.schema.names

    def is_lists(self, name: str) -> bool:
        import pyarrow as pa

        kind = self.data.schema.field(name).type
        return bool(pa.types.is_nested(kind) and not pa.types.is_struct(kind))

    def wafers(self, made: "Plan", size: int) -> Iterator[Any]:
        """In batches of that many."""
        columns = list(dict.fromkeys([*made.keys, *made.parts.values()]))
        if not made.is_sites:
            yield from self.data.to_batches(columns=columns, batch_size=size)
            return
        table = self.data.to_table(columns=columns)
        renamed = {**{key: table[key] for key in made.keys}, **{part: table[name] for part, name in made.parts.items()}}
        x, y, *values = made.parts
        from ._sites import wafers

        yield from wafers(renamed, made.keys, x, y, values).to_batches(max_chunksize=size)


def _tables(arguments: Any) -> Iterator[Any]:
    """What is to be written, batch by batch."""
    from ._engine import plan
    from ._sites import beside

    options = _options(arguments)
    if len(arguments.columns) < 3:
        raise ValueError(f"--columns takes x, y and values, not {','.join(arguments.columns)}")
    x, y, *values = arguments.columns
    sites = (x, y, values[0] if len(values) == 1 else values)
    archive = _Archive(arguments.parquet)
    to = _Archive(arguments.to) if arguments.to else arguments.to_column
    if arguments.make == "differences" and to is None:
        raise ValueError("--make differences needs --to or --to-column")
    work = {"statistics": "figures", "wafers": "figures"}.get(arguments.make, arguments.make)
    made = plan(work, archive.names, archive.is_lists, arguments.by, sites, options, to)
    other = None
    if isinstance(to, _Archive):
        there = plan(work, to.names, to.is_lists, made.keys, sites, options, to)
        other = _joined(list(to.wafers(there, arguments.batch)))
        if there.is_sites != made.is_sites:
            raise ValueError("--to takes wafers where the archive has wafers, and sites where it has sites")
    for batch in archive.wafers(made, arguments.batch):
        if other is not None:
            batch = beside(batch, other, made.keys, made.pairs)
        yield batch if arguments.make == "wafers" else made.job.on(batch)


def _joined(batches: Sequence[Any]) -> Any:
    import pyarrow as pa

    if not batches:
        raise ValueError("--to has no wafers")
    return pa.Table.from_batches(batches)


def _write(batches: Iterator[Any], path: str) -> Dict[str, int]:
    """Counts of wafers. The file is there when it is whole."""
    import pyarrow as pa
    import pyarrow.compute as pc
    import pyarrow.parquet as pq

    counts, writer = {"rows": 0, "failed": 0}, None
    folder = os.path.dirname(os.path.abspath(path))
    handle, part = tempfile.mkstemp(prefix=".discoplan-", dir=folder)
    os.close(handle)
    try:
        for batch in batches:
            table = pa.Table.from_batches([batch])
            if writer is None:
                writer = pq.ParquetWriter(part, table.schema)
            writer.write_table(table)
            counts["rows"] += len(table)
            if "status" in table.schema.names:
                counts["failed"] += len(table) - (pc.sum(pc.equal(table["status"], 0)).as_py() or 0)
        if writer is None:
            raise ValueError("the archive has no wafers")
        writer.close()
        os.chmod(part, 0o666 & ~_umask())
        os.replace(part, path)
    finally:
        if os.path.exists(part):
            os.unlink(part)
    return counts


def _umask() -> int:
    mask = os.umask(0)
    os.umask(mask)
    return mask


def main(arguments: Optional[Sequence[str]] = None) -> int:
    """Gives 0, 1 for what can't be done, and 2 for a wrong use."""
    given = _parser().parse_args(arguments)
    try:
        import pyarrow

        paths = [os.path.realpath(path) for path in (given.parquet, given.to) if path]
        if os.path.realpath(given.output) in paths:
            raise ValueError("-o would overwrite what is read; give another file")
        counts = _write(_tables(given), given.output)
    except ImportError as error:
        print(f"discoplan: {error}; install discoplan[arrow]", file=sys.stderr)
        return 1
    except (ValueError, TypeError, OSError, pyarrow.ArrowException) as error:
        print(f"discoplan: {error}", file=sys.stderr)
        return 1
    failed = f", {counts['failed']} of them without a result; their messages tell why" if counts["failed"] else ""
    print(f"discoplan: {counts['rows']} rows{failed}", file=sys.stderr)
    return 0


if __name__ == "__main__":
    sys.exit(main())
