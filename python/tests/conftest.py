"""The program and the samples, as the stage gives them."""

import json
import os
import pathlib
import subprocess

import pytest


@pytest.fixture(scope="session")
def samples():
    """Every sample's path with what the program prints of it."""
    lines = subprocess.run(
        [os.environ["TYPESCOUT_PROGRAM"], "-r", "--jsonl", os.environ["TYPESCOUT_SAMPLES"]],
        check=True, capture_output=True, text=True,
    ).stdout.splitlines()
    records = {pathlib.Path(record["path"]): record for record in map(json.loads, lines)}
    assert len(records) > 900
    return records
