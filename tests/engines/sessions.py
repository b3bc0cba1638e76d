# SPDX-License-Identifier: MIT
"""Sessions of Spark on this machine."""

import os
import shutil
import sys
from pathlib import Path
from typing import Any, Iterator

import pytest

pytest.importorskip("pyspark", reason="pyspark isn't installed")
if shutil.which("java") is None and "JAVA_HOME" not in os.environ:
    pytest.skip("no Java on this machine", allow_module_level=True)

from pyspark.sql import SparkSession  # noqa: E402

import discoplan.spark as ds  # noqa: E402

PACKAGES = os.pathsep.join([str(Path(ds.__file__).parent.parent), str(Path(__file__).parent)])


def session(master: str, folders: pytest.TempPathFactory, **more: str) -> Iterator[Any]:
    """Underscores in the names of further options stand for dots."""
    os.environ.update(PYSPARK_PYTHON=sys.executable, SPARK_LOCAL_IP="127.0.0.1", SPARK_SCALA_VERSION="2.13")
    os.environ["SPARK_WORKER_DIR"] = str(folders.mktemp("executors"))
    options = {
        "spark.ui.enabled": "false",
        "spark.driver.host": "127.0.0.1",
        "spark.executor.memory": "512m",
        "spark.executorEnv.PYTHONPATH": PACKAGES,
        "spark.sql.shuffle.partitions": "8",
        "spark.sql.adaptive.enabled": "false",
        "spark.sql.session.timeZone": "UTC",
        "spark.sql.warehouse.dir": str(folders.mktemp("warehouse")),
        **{name.replace("_", "."): value for name, value in more.items()},
    }
    builder = SparkSession.builder.master(master)
    for name, value in options.items():
        builder = builder.config(name, value)
    made = builder.getOrCreate()
    made.sparkContext.setLogLevel("ERROR")
    yield made
    made.stop()
