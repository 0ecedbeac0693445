"""Dask frames, lazily, on threads and on a cluster of processes."""

from __future__ import annotations

import os
import re
import signal
import time
from collections.abc import Iterator
from functools import partial
from pathlib import Path
from typing import Any

import dask
import dask.dataframe as dd
import numpy as np
import pandas as pd
import psutil
import pytest
from conftest import make_symbols
from distributed import Client, LocalCluster

import orvex as ox


@pytest.fixture(scope="module")
def table() -> pd.DataFrame:
    return make_symbols(8, 150)


@pytest.fixture(scope="module")
def cluster() -> Iterator[Client]:
    with (
        LocalCluster(n_workers=2, threads_per_worker=1, processes=True, dashboard_address=None) as workers,
        Client(workers) as client,
    ):
        yield client


def same(result: pd.DataFrame, expected: Any) -> None:
    columns = expected.to_frame() if isinstance(expected, pd.Series) else expected
    pd.testing.assert_frame_equal(result[list(columns)].sort_index(), columns.sort_index(), check_exact=True)


def test_the_call_stays_lazy_and_gives_the_same_bits(table: pd.DataFrame) -> None:
    frame = dd.from_pandas(table, npartitions=5, sort=False)
    lazy = ox.macd(frame, by="symbol")
    assert isinstance(lazy, dd.DataFrame)
    assert list(lazy.columns) == ["symbol", "MACD", "MACDSignal", "MACDHistogram"]
    result = lazy.compute(scheduler="threads")
    same(result, ox.macd(table, by="symbol"))
    assert (result["symbol"].sort_index() == table["symbol"].sort_index()).all()
    which = {"rsi": ox.relative_strength_index, "slow": partial(ox.simple_moving_average, periods=50)}
    same(
        ox.indicators(frame, which, by="symbol").compute(scheduler="threads"), ox.indicators(table, which, by="symbol")
    )


def test_divisions_spare_the_shuffle(table: pd.DataFrame) -> None:
    sorted_table = table.set_index("symbol").sort_index(kind="stable")
    known = dd.from_pandas(sorted_table, npartitions=4)
    lazy = ox.true_range(known, by="symbol")
    assert "shuffle" not in str(lazy.optimize().expr.tree_repr()).lower()
    expected = ox.true_range(sorted_table.reset_index(), by="symbol")
    np.testing.assert_array_equal(lazy.compute(scheduler="threads")["TR"].to_numpy(), expected.to_numpy())
    unknown = ox.true_range(known.clear_divisions(), by="symbol")
    assert "shuffle" in str(unknown.optimize().expr.tree_repr()).lower()
    result = unknown.compute(scheduler="threads")["TR"].sort_index(kind="stable")
    np.testing.assert_array_equal(result.to_numpy(), expected.to_numpy())


def test_a_frame_without_symbols_says_what_it_takes(table: pd.DataFrame) -> None:
    frame = dd.from_pandas(table, npartitions=2, sort=False)
    with pytest.raises(TypeError, match="takes by="):
        ox.macd(frame)
    with pytest.raises(TypeError, match="hand in a frame"):
        ox.macd(frame["close"])
    with pytest.raises(ValueError, match="no column 'ticker'"):
        ox.macd(frame, by="ticker")
    for other in (frame["close"] * 2, table["close"], table["close"].to_numpy()):
        with pytest.raises(TypeError, match="close is no column of the Dask frame"):
            ox.true_range(frame, close=other, by="symbol")


def test_columns_that_are_given_by_keyword(table: pd.DataFrame) -> None:
    frame = dd.from_pandas(table, npartitions=5, sort=False)
    doubled = frame.assign(double=frame["close"] * 2)
    result = ox.true_range(doubled, close=doubled["double"], by="symbol").compute(scheduler="threads")
    same(result, ox.true_range(table.assign(close=table["close"] * 2), by="symbol"))


def test_on_a_cluster_with_warnings(table: pd.DataFrame, cluster: Client) -> None:
    damaged = table.copy()
    damaged.loc[damaged.index[damaged["symbol"] == "S001"][7], "close"] = np.nan
    frame = dd.from_pandas(damaged, npartitions=5, sort=False)
    with pytest.warns(ox.SymbolWarning, match="S001"):
        result = ox.relative_strength_index(frame, by="symbol").compute()
        time.sleep(0.5)  # it comes by way of the scheduler
    with pytest.warns(ox.SymbolWarning):
        same(result, ox.relative_strength_index(damaged, by="symbol"))


LARGE_ROWS = 600_000


def make_large_part(number: int) -> pd.DataFrame:
    """Return a partition of 30 symbols, in little more memory than it takes."""
    index = np.arange(LARGE_ROWS)
    close = 1000.0 + index * 7 % 11 - index * 5 % 13
    names = np.repeat(pd.array([f"S{number:02}{symbol:02}" for symbol in range(30)], dtype="str"), LARGE_ROWS // 30)
    prices = {name: close.copy() for name in ("open", "high", "low", "close", "volume")}
    return pd.DataFrame(prices, index=pd.Index(names, name="symbol"), copy=False)


def forget_peak() -> int:
    """Return the bytes that this process holds; from now on its peak is counted anew."""
    Path("/proc/self/clear_refs").write_text("5")
    return psutil.Process().memory_info().rss


def peak() -> int:
    """Return the most bytes that this process has held."""
    status = Path("/proc/self/status").read_text()
    return 1024 * int(re.findall(r"VmHWM:\s*(\d+) kB", status)[0])


@pytest.mark.measures
def test_a_worker_needs_three_times_its_largest_partition(cluster: Client) -> None:
    """Where nothing is shuffled."""
    parts = 6
    divisions = [f"S{number:02}00" for number in range(parts)] + [f"S{parts:02}"]
    part = make_large_part(0)
    frame = dd.from_map(make_large_part, range(parts), meta=part.iloc[:0], divisions=divisions)
    rows = ox.macd(frame, by="symbol").map_partitions(len, meta=("rows", int))
    size = int(part.memory_usage(deep=True).sum())
    before = cluster.run(forget_peak)
    assert cluster.compute(rows).result(timeout=300).sum() == parts * LARGE_ROWS
    after = cluster.run(peak)
    assert len(after) == 2
    for worker, most in after.items():
        assert most - before[worker] < 3 * size, (most - before[worker]) / size


def make_part(number: int, seconds: float = 0.3) -> pd.DataFrame:
    """Return two symbols' rows, slowly, so that a worker can be killed in the middle."""
    time.sleep(seconds)
    part = make_symbols(2, 200)
    return part.assign(symbol=part["symbol"] + f"/{number}", close=part["close"] + number)


def test_a_worker_is_killed_in_the_middle(cluster: Client) -> None:
    with dask.config.set({"distributed.scheduler.allowed-failures": 10}):
        frame = dd.from_map(make_part, range(12), meta=make_part(0, 0))
        future = cluster.compute(ox.bollinger_bands(frame, by="symbol"))
        time.sleep(1.0)
        assert not future.done()
        os.kill(next(iter(cluster.run(os.getpid).values())), signal.SIGKILL)
        result = future.result(timeout=120)
    whole = pd.concat([make_part(number, 0) for number in range(12)], ignore_index=True)
    expected = ox.bollinger_bands(whole, by="symbol").assign(symbol=whole["symbol"])
    columns = ["symbol", *(name for name in expected if name != "symbol")]
    result, expected = (table.astype({"symbol": object}) for table in (result, expected))
    pd.testing.assert_frame_equal(
        result[columns].sort_values(columns).reset_index(drop=True),
        expected[columns].sort_values(columns).reset_index(drop=True),
        check_exact=True,
    )
