"""Functions, signatures, docstrings and types come from the catalogue."""

from __future__ import annotations

import inspect
import pickle
import pydoc
import subprocess
import sys
import textwrap
from pathlib import Path
from typing import Any

import numpy as np
import pytest
from conftest import Prices

import orvex as ox
from orvex import _native

FUNCTIONS = _native.FUNCTIONS


def test_the_catalogue_is_plain_data() -> None:
    entries = ox.catalogue()
    assert len(entries) == len(FUNCTIONS) > 70
    macd = next(entry for entry in entries if entry["name"] == "macd")
    assert [(p["name"], p["usual"]) for p in macd["parameters"][:4]] == [
        ("source", "Close"),
        ("short_cycle", 12),
        ("long_cycle", 26),
        ("signal_periods", 9),
    ]
    assert [column["attribute"] for column in macd["columns"]] == ["macd", "macd_signal", "macd_histogram"]
    names = [(entry["module"], entry["name"]) for entry in entries]
    assert len(set(names)) == len(names)


@pytest.mark.parametrize("function", FUNCTIONS, ids=lambda function: function.__name__)
def test_a_function_explains_itself(function: Any) -> None:
    entry = _native.describe(function.index)
    module = sys.modules[function.__module__]
    assert getattr(module, function.__name__) is function
    assert function.__name__ in module.__all__
    assert pickle.loads(pickle.dumps(function)) is function
    signature = inspect.signature(function)
    assert set(signature.parameters) == {parameter["name"] for parameter in entry["parameters"]}
    page = pydoc.render_doc(function, renderer=pydoc.plaintext)
    assert f"{function.__name__}(" in page
    for parameter in signature.parameters:
        assert parameter in page
    for column in entry["columns"]:
        assert column["attribute"].isidentifier()
        assert column["attribute"] in page
    assert max(map(len, function.__doc__.splitlines())) <= 120


def test_named_tuples(prices: Prices) -> None:
    result = ox.macd(prices["close"])
    assert type(result).__name__ == "MacdResult"
    assert result._fields == ("macd", "macd_signal", "macd_histogram")
    assert result.macd is result[0]
    other = pickle.loads(pickle.dumps(result))
    assert type(other) is type(result)
    np.testing.assert_array_equal(other.macd_signal, result.macd_signal)


TYPED = """
    from functools import partial

    import numpy as np
    import orvex as ox
    import pandas as pd
    import polars as pl

    close = np.ones(3)
    reveal_type(ox.simple_moving_average(close))
    reveal_type(ox.simple_moving_average([1.0, 2.0]))
    reveal_type(ox.simple_moving_average(pd.Series([1.0])))
    reveal_type(ox.simple_moving_average(pl.Series([1.0]), periods=5))
    reveal_type(ox.simple_moving_average(pl.col("close")))
    reveal_type(ox.macd(close))
    reveal_type(ox.macd(close).macd_signal)
    reveal_type(ox.macd([1.0, 2.0]).macd_signal)
    reveal_type(ox.macd(pd.DataFrame(), by="symbol"))
    reveal_type(ox.true_range(pl.DataFrame()))
    reveal_type(ox.true_range(high=close, low=close, close=close))
    reveal_type(ox.max_value(close, 1, 3).value)
    ox.indicators(pd.DataFrame(), {"rsi": ox.macd, "slow": partial(ox.simple_moving_average, periods=9)})
    ox.bollinger_bands(close, ma_type="simpel")
    ox.macd(close, periods=3)
"""
REVEALED = [
    "numpy.ndarray[tuple[Any, ...], numpy.dtype[numpy.float64]]",
    "list[float]",
    "pandas.Series[float]",
    "polars.series.series.Series",
    "polars.expr.expr.Expr",
    "orvex.MacdResult",
    "numpy.ndarray[tuple[Any, ...], numpy.dtype[numpy.float64]]",
    "list[float]",
    "pandas.DataFrame",
    "polars.series.series.Series",
    "numpy.ndarray[tuple[Any, ...], numpy.dtype[numpy.float64]]",
    "float",
]


def test_types_follow_the_kind_of_column(tmp_path: Path) -> None:
    """As a user's type checker sees it: the right types, and errors for the last two calls only."""
    program = tmp_path / "typed.py"
    program.write_text(textwrap.dedent(TYPED))
    command = [sys.executable, "-m", "mypy", "--strict", "--no-error-summary", str(program)]
    told = subprocess.run(command, capture_output=True, text=True, cwd=tmp_path, check=False).stdout
    revealed = [line.split('"')[1] for line in told.splitlines() if "Revealed type" in line]
    simplified = [text.replace("builtins.", "").replace("typing.", "") for text in revealed]
    for got, expected in zip(simplified, REVEALED, strict=True):
        assert expected in got or got.split(".")[-1] == expected.split(".")[-1]
    errors = [line for line in told.splitlines() if ": error:" in line]
    assert {line.split(":")[1] for line in errors} == {"23", "24"}, told
