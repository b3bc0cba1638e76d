# SPDX-License-Identifier: MIT
"""Writes the tables of docs/fab_archive_costs.md from kept results: report.py RESULTS PAGE"""

import json
import sys
from pathlib import Path
from typing import Any, Callable, Dict, List, NamedTuple, Tuple

SITES = ("49", "5000")
Found = Dict[str, Any]


class Goal(NamedTuple):
    what: str
    ratio: Callable[[Found], float]
    bound: float
    is_most: bool


GOALS = (
    Goal("statistics / engine alone", lambda r: r["statistics, us"] / r["engine, us"], 1.3, True),
    Goal("maps less engine alone / the library's own", lambda r: r["maps without engine, us"] / r["kernel, us"], 1.15, True),
    Goal("maps / scipy and matplotlib's", lambda r: r["matplotlib, us"] / r["maps, us"], 50, False),
    Goal("peak memory / that for a quarter", lambda r: r["peak, MB"] / r["peak of a quarter, MB"], 1.1, True),
    Goal("two workers / one", lambda r: r["second worker"], 1.8, False),
)
COSTS = {
    "engine": "engine alone",
    "columns": "engine alone, with as many columns as statistics",
    "statistics": "statistics, 18 figures",
    "all statistics": "statistics, all 19",
    "pandas": "9 of them and the plane by pandas, numpy and scipy",
    "maps": "maps, 400 x 300 PNG",
    "kernel": "maps, the library's own time in the workers",
    "matplotlib": "maps by scipy and matplotlib",
}


def is_met(goal: Goal, ratio: float) -> bool:
    return ratio <= goal.bound if goal.is_most else ratio >= goal.bound


def goal_lines(results: Found) -> List[str]:
    """The goals, a line each with what was reached."""
    lines = ["| | Goal | " + " | ".join(f"{int(sites):,} sites" for sites in SITES) + " |", "|---|---|---:|---:|"]
    for goal in GOALS:
        ratios = [goal.ratio(results[sites]) for sites in SITES]
        shown = [f"{ratio:.2f}{'' if is_met(goal, ratio) else ', missed'}" for ratio in ratios]
        lines.append(f"| {goal.what} | {'<=' if goal.is_most else '>='} {goal.bound:g} | {' | '.join(shown)} |")
    return lines


def cost_lines(results: Found) -> List[str]:
    """Wafers a second of one core's time."""
    lines = ["| Wafers a second and core | " + " | ".join(f"{int(sites):,} sites" for sites in SITES) + " |", "|---|---:|---:|"]
    for key, what in COSTS.items():
        if not all(f"{key}, us" in results[sites] for sites in SITES):
            continue  # kept before it was measured
        rates = [1e6 / results[sites][f"{key}, us"] for sites in SITES]
        lines.append(f"| {what} | " + " | ".join(f"{rate:,.0f}" if rate >= 10 else f"{rate:.1f}" for rate in rates) + " |")
    return lines


def shown(value: float) -> str:
    return f"{value:,.0f}" if value >= 100 else f"{value:.3g}"


def year_rows(results: Found) -> List[Tuple[str, str, str, float]]:
    """Letter, what it is, how it comes about, and what it is; each row takes from those above."""
    few, many = (results[sites] for sites in SITES)
    given = [
        ("A", "wafers measured a day", "assumed: the upper end of a large fab", 70000),
        ("B", "days a year", "assumed: it never stops", 365),
        ("C", "parameters of a wafer", "assumed", 3),
        ("D", "of them with 5,000 sites, the others with 49", "assumed", 0.01),
        ("E", "wafers and parameters a year", "A * B * C", None),
        ("F", "statistics of 49 sites, us", "measured", few["statistics, us"]),
        ("G", "statistics of 5,000 sites, us", "measured", many["statistics, us"]),
        ("H", "hours of a core for all statistics", "E * ((1 - D) * F + D * G) / 3.6e9", None),
        ("I", "map of 49 sites, us", "measured", few["maps, us"]),
        ("J", "map of 5,000 sites, us", "measured", many["maps, us"]),
        ("K", "hours of a core for a map of each", "E * ((1 - D) * I + D * J) / 3.6e9", None),
        ("L", "the same by scipy and matplotlib", "measured", None),
        ("M", "cores that draw a year's maps in a night of 8 hours", "K / 8", None),
        ("N", "bytes of a wafer in Parquet, 49 sites", "measured", few["parquet, bytes"]),
        ("O", "bytes of a wafer in Parquet, 5,000 sites", "measured", many["parquet, bytes"]),
        ("P", "GB of Parquet a year", "E * ((1 - D) * N + D * O) / 1e9", None),
        ("Q", "bytes of a PNG, 49 sites", "measured", few["png, bytes"]),
        ("R", "bytes of a PNG, 5,000 sites", "measured", many["png, bytes"]),
        ("S", "GB of PNG a year, if all are kept", "E * ((1 - D) * Q + D * R) / 1e9", None),
        ("T", "MB a second that storage must give to 64 cores for statistics", "P * 1000 / (H * 3600 / 64)", None),
    ]
    rows: List[Tuple[str, str, str, float]] = []
    names: Dict[str, float] = {}
    for letter, what, how, value in given:
        if letter == "L":
            how = f"E * ((1 - D) * {few['matplotlib, us']:.0f} + D * {many['matplotlib, us']:.0f}) / 3.6e9"
        if value is None:
            value = eval(how, {}, names)  # the table's own formulas
        names[letter] = float(value)
        rows.append((letter, what, how, float(value)))
    return rows


def year_lines(results: Found) -> List[str]:
    lines = ["| | | How | |", "|---|---|---|---:|"]
    return lines + [f"| {a} | {what} | {how} | {shown(value)} |" for a, what, how, value in year_rows(results)]


def place_lines(results: Found) -> List[str]:
    few, many = (results[sites] for sites in SITES)
    return [
        f"On {results['cores']} cores of \"{results['processor']}\", {few['wafers']:,} wafers of 49 sites and "
        f"{many['wafers']:,} of 5,000; maps of {few['maps']:,} and {many['maps']:,} of them; pandas with {few['tables']:,} "
        f"and {many['tables']:,}, matplotlib with {few['peers']} and {many['peers']}. Load when it began {results['load before']}, when it ended "
        f"{results['load after']}. Peak of a worker {few['peak, MB']:.0f} and {many['peak, MB']:.0f} MB, with batches of maps of "
        f"{few['batch, MB']:.1f} and {many['batch, MB']:.1f} MB."
    ]


BLOCKS = {"place": place_lines, "goals": goal_lines, "costs": cost_lines, "year": year_lines}


def written(page: str, results: Found) -> str:
    """The page with its blocks made anew."""
    for name, lines in BLOCKS.items():
        head, rest = page.split(f"<!-- {name} -->\n")
        page = f"{head}<!-- {name} -->\n" + "\n".join(lines(results)) + "\n<!-- end -->" + rest.split("<!-- end -->", 1)[1]
    return page


if __name__ == "__main__":
    kept, page = Path(sys.argv[1]), Path(sys.argv[2])
    page.write_text(written(page.read_text(), json.loads(kept.read_text())))
