"""Every function gives the bits that the command line gives."""

from __future__ import annotations

import csv
import io
import json
import subprocess
from collections.abc import Iterator
from pathlib import Path
from typing import Any

import numpy as np
import pytest
from conftest import ROOT, make_prices

import orvex as ox
from orvex import _native

Table = dict[str, Any]

FUNCTIONS = _native.FUNCTIONS
NAMES = [("Open", "open"), ("High", "high"), ("Low", "low"), ("Close", "close"), ("Volume", "volume")]


def write(path: Path, prices: Table) -> Path:
    # Three records a day.
    prices["date"] = np.datetime64("2001-01-01T00:00") + 480 * np.arange(len(prices["close"]))
    with path.open("w") as file:
        print("Date," + ",".join(title for title, _ in NAMES), file=file)
        for row in range(len(prices["close"])):
            print(
                f"{prices['date'][row]}," + ",".join(repr(float(prices[n][row])) for _, n in NAMES),
                file=file,
            )
    return path


@pytest.fixture(scope="module")
def files(tmp_path_factory: pytest.TempPathFactory) -> dict[str, tuple[Path, Table]]:
    folder = tmp_path_factory.mktemp("prices")
    example = np.genfromtxt(ROOT / "examples" / "prices.csv", delimiter=",", usecols=range(1, 6))
    series: dict[str, Table] = {
        "example": {name: example[:, place].copy() for place, (_, name) in enumerate(NAMES)},
        "long": dict(make_prices(3000, seed=7)),
        "short": dict(make_prices(20, seed=3)),
        "flat": {name: np.full(120, 50.0) for _, name in NAMES},
    }
    return {name: (write(folder / f"{name}.csv", prices), prices) for name, prices in series.items()}


def arguments(description: dict[str, Any], count: int) -> Iterator[tuple[dict[str, Any], str, Any]]:
    """For each argument that is given: its parameter, its text for the command line and its value for the function."""
    for parameter in description["parameters"]:
        usual = parameter.get("usual")
        match parameter["kind"]:
            case "column" if parameter["session"]:
                yield parameter, "Date", "date"
            case "column":
                column = (usual or "Open").lower()
                yield parameter, next(title for title, name in NAMES if name == column), column
            case "whole":
                value = 14 if usual is None else {"N": count}[usual] if isinstance(usual, str) else usual
                yield parameter, str(value), value
            case "real":
                yield parameter, repr(usual), usual


@pytest.mark.parametrize("file", ["example", "long", "short", "flat"])
@pytest.mark.parametrize("function", FUNCTIONS, ids=lambda function: function.__name__)
def test_same_bits(function: Any, file: str, files: dict[str, tuple[Path, Table]], command_line: str) -> None:
    path, prices = files[file]
    description = _native.describe(function.index)
    words = [command_line, "run", f"{description['class']}.{description['method']}", "--format", "json"]
    kwargs: dict[str, Any] = {}
    takes_file = False
    for parameter, text, value in arguments(description, len(prices["close"])):
        words.append(f"{parameter['argument']}={text}")
        kwargs[parameter["name"]] = prices[value] if parameter["kind"] == "column" else value
        takes_file = takes_file or parameter["kind"] == "column"
    if any(parameter["kind"] == "prices" for parameter in description["parameters"]):
        kwargs["prices"] = prices
        takes_file = True
    if description["columns"]:
        words[4:5] = ["csv", "--warmup", "blank"]
    ran = subprocess.run([*words, *([str(path)] if takes_file else [])], capture_output=True, text=True, check=False)
    try:
        result = function(**kwargs)
    except ox.OrvexError as error:
        assert ran.returncode != 0, f"the command line computes what fails here: {error}"
        assert f"{error.number}" in ran.stderr
        return
    assert ran.returncode == 0, ran.stderr
    if not description["columns"]:
        told = json.loads(ran.stdout)
        if isinstance(result, ox.Note):
            assert (result.period, result.value, result.note) == tuple(told["note"].values())
        else:
            assert result == told["value"]
        return
    rows = list(csv.reader(io.StringIO(ran.stdout)))
    first = rows[0].index(description["columns"][0]["name"])
    expected = np.array([[float(cell) if cell else np.nan for cell in row[first:]] for row in rows[1:]])
    columns = [result] if len(description["columns"]) == 1 else list(result)
    assert rows[0][first:] == [column["name"] for column in description["columns"]]
    np.testing.assert_array_equal(np.column_stack(columns).view(np.int64), expected.view(np.int64))
