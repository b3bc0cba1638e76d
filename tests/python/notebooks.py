# SPDX-License-Identifier: MIT
"""Notebooks of docs/."""

import os
import pathlib
from typing import Any, Dict, List

DOCS = pathlib.Path(__file__).parents[2] / "docs"


def read(name: str) -> Any:
    import nbformat

    return nbformat.read(DOCS / name, as_version=4)


def run(name: str) -> Any:
    """Executes all cells; with DISCOPLAN_PICTURES set a file that keeps what came of them is written."""
    import nbclient
    import nbformat

    notebook = read(name)
    is_kept = bool(shown(notebook)) and "DISCOPLAN_PICTURES" in os.environ
    resources = {"metadata": {"path": str(DOCS)}}
    nbclient.NotebookClient(notebook, timeout=300, kernel_name="python3", resources=resources).execute()
    if is_kept:
        for cell in notebook.cells:
            cell.metadata.clear()  # the times of day
        nbformat.write(notebook, DOCS / name)
    return notebook


def shown(notebook: Any) -> List[Dict[str, Any]]:
    """What cells show, by its kind."""
    outputs = [output for cell in notebook.cells for output in cell.get("outputs", [])]
    return [output["data"] for output in outputs if "data" in output]


def texts(notebook: Any) -> List[str]:
    return [data["text/plain"] for data in shown(notebook)]


def pictures(notebook: Any) -> int:
    return sum("image/png" in data for data in shown(notebook))
