# SPDX-License-Identifier: MIT
"""Sessions of Spark on this machine."""

import os
import re
import shutil
import subprocess
import sys
from pathlib import Path
from typing import Any, Iterator, List

import pytest

pyspark = pytest.importorskip("pyspark", reason="pyspark isn't installed")
if shutil.which("java") is None and "JAVA_HOME" not in os.environ:
    pytest.skip("no Java on this machine", allow_module_level=True)

from conftest import wait_for  # noqa: E402
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


def cluster(folders: pytest.TempPathFactory) -> Iterator[str]:
    """A cluster of two hosts with a core each, for Spark runs no second copy of a task on the host
    of the first one. Gives its address."""
    home = Path(pyspark.__file__).parent
    environment = {**os.environ, "SPARK_HOME": str(home), "SPARK_SCALA_VERSION": "2.13", "SPARK_NO_DAEMONIZE": "1"}
    folder, started = folders.mktemp("cluster"), []

    def start(name: str, *arguments: str) -> Path:
        log = folder / f"{len(started)}.log"
        command = [str(home / "bin" / "spark-class"), f"org.apache.spark.deploy.{name}", *arguments]
        ports = ["--port", "0", "--webui-port", "0"]
        with log.open("w") as said:
            started.append(subprocess.Popen(command + ports, env=environment, stdout=said, stderr=said))
        return log

    def line_of(log: Path, pattern: str) -> str:
        found: List[str] = []

        def is_there() -> bool:
            found.extend(re.findall(pattern, log.read_text()))
            if not found and started[-1].poll() is not None:
                raise RuntimeError(log.read_text())
            return bool(found)

        wait_for(is_there)
        return found[0]

    try:
        address = line_of(start("master.Master", "--host", "127.0.0.1"), r"Starting Spark master at (spark://\S+)")
        for host in ("127.0.0.2", "127.0.0.3"):
            given = ["--host", host, "--cores", "1", "--memory", "1g", "--work-dir", str(folder / host), address]
            line_of(start("worker.Worker", *given), "Successfully registered with master")
        yield address
    finally:
        for process in started:
            process.terminate()
        for process in started:
            process.wait()
