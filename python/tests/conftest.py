"""What the tests share."""

from __future__ import annotations

import os
from pathlib import Path
from typing import Any

import numpy as np
import numpy.typing as npt
import pytest

ROOT = Path(__file__).resolve().parents[2]
Prices = dict[str, npt.NDArray[np.float64]]


def make_prices(count: int, seed: int = 1) -> Prices:
    """Return a random walk in cents: the five price columns."""
    random = np.random.default_rng(seed)
    close = np.round(100 + random.normal(scale=0.5, size=count).cumsum().clip(-80), 2)
    open_ = np.round(close + random.normal(scale=0.3, size=count), 2)
    high = np.round(np.maximum(open_, close) + random.uniform(0.01, 1, count), 2)
    low = np.round(np.minimum(open_, close) - random.uniform(0.01, 1, count), 2)
    volume = random.integers(1_000, 100_000, count).astype(np.float64)
    return {"open": open_, "high": high, "low": low, "close": close, "volume": volume}


def make_call(function: Any, prices: Any) -> tuple[list[Any], dict[str, Any]]:
    """Return arguments for any function: the usual ones, on a frame or mapping."""
    from orvex import _call

    description = _call.description_of(function)
    args = [prices] if any(p["kind"] in ("prices", "column") for p in description["parameters"]) else []
    required = {p["name"]: 14 for p in description["parameters"] if p["kind"] == "whole" and p["usual"] is None}
    # A second column that has no usual one, or that the dates would make.
    for parameter in description["parameters"][1:]:
        if parameter["kind"] == "column" and (parameter["usual"] is None or parameter["session"]):
            required[parameter["name"]] = prices["open"]
    return args, required


def make_symbols(symbols: int, count: int) -> Any:
    """Return a pandas frame of several symbols, whose rows stand mixed."""
    import pandas as pd

    frames = [pd.DataFrame(make_prices(count, seed)).assign(symbol=f"S{seed:03}") for seed in range(symbols)]
    table = pd.concat(frames, ignore_index=True)
    # Every symbol's own rows keep their order.
    order = np.argsort(np.tile(np.arange(count), symbols), kind="stable")
    return table.iloc[order].set_index(np.arange(1000, 1000 + len(table)))


@pytest.fixture
def prices() -> Prices:
    """Return a series of 300 records."""
    return make_prices(300)


@pytest.fixture(scope="session")
def command_line() -> str:
    """Return the command line, to compare with."""
    program = os.environ.get("ORVEX_COMMAND_LINE")
    if not program:
        pytest.fail("ORVEX_COMMAND_LINE must name the command line; scripts/test python sets it")
    return program
