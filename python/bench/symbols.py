"""How many symbols a second: on threads, beside pandas' own way, and on the workers of a cluster.

Usage: python bench/symbols.py [--symbols N]

Each symbol has 2,520 rows, ten years of days. Prints the time of one indicator over all symbols beside that of
``groupby(...).transform`` with the same function, and the symbols a second that twenty indicators in one call make.
"""

from __future__ import annotations

import argparse
import importlib
import os
import statistics
import time
import warnings
from collections.abc import Callable, Iterator
from functools import partial
from itertools import count
from typing import Any

import numpy as np
import pandas as pd

import orvex as ox

ROWS = 2_520
TWENTY: dict[str, Callable[..., Any]] = {
    "sma": partial(ox.simple_moving_average, periods=20),
    "sma_slow": partial(ox.simple_moving_average, periods=100),
    "ema": partial(ox.exponential_moving_average, periods=20),
    "wma": partial(ox.weighted_moving_average, periods=20),
    "bands": ox.bollinger_bands,
    "keltner": ox.keltner,
    "macd": ox.macd,
    "rsi": ox.relative_strength_index,
    "stochastic": ox.stochastic_oscillator,
    "williams": ox.williams_pct_r,
    "cci": ox.commodity_channel_index,
    "cmo": ox.cmo,
    "roc": ox.price_roc,
    "trix": ox.trix,
    "atr": ox.average_true_range,
    "dms": ox.directional_movement_system,
    "aroon": ox.aroon,
    "obv": ox.on_balance_volume,
    "mfi": ox.money_flow_index,
    "sar": ox.parabolic_sar,
}


def make_part(number: int, symbols: int) -> pd.DataFrame:
    """Return the rows of some symbols, those of each together."""
    random = np.random.default_rng(number)
    rows = symbols * ROWS
    close = np.round(1000 + random.normal(scale=0.5, size=(symbols, ROWS)).cumsum(axis=1), 2).ravel()
    high = np.round(close + random.uniform(0.01, 1, rows), 2)
    low = np.round(close - random.uniform(0.01, 1, rows), 2)
    names = [f"S{number:03}{symbol:04}" for symbol in range(symbols)]
    return pd.DataFrame(
        {
            "symbol": pd.Categorical(np.repeat(names, ROWS)),
            "open": close,
            "high": high,
            "low": low,
            "close": close,
            "volume": random.integers(1_000, 100_000, rows).astype(float),
        }
    )


def best(call: Callable[[], Any], rounds: int = 5) -> float:
    """Return the median seconds of a call."""
    times = []
    for _ in range(rounds):
        start = time.perf_counter()
        call()
        times.append(time.perf_counter() - start)
    return statistics.median(times)


def threaded(threads: int, call: Callable[[], Any]) -> float:
    """Return the seconds of a call on so many threads."""
    os.environ["ORVEX_THREADS"] = str(threads)
    return best(call)


def main() -> None:
    """Measure and print."""
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--symbols", type=int, default=500)
    symbols = parser.parse_args().symbols
    warnings.simplefilter("error")
    table = make_part(0, symbols)
    mixed = table.iloc[np.random.default_rng(1).permutation(len(table))]
    rows = len(table)
    print(f"{symbols} symbols of {ROWS:,} rows; milliseconds, and ns a row")
    print(f"{'':34}{'transform':>12}{'1 thread':>18}{'2 threads':>18}{'gain':>7}{'gain of 2':>10}")
    for title, function, options in (
        ("simple average of 20", ox.simple_moving_average, {"periods": 20}),
        ("strength index", ox.relative_strength_index, {}),
        ("variable average", ox.variable_moving_average, {}),
        ("rainbow of 10", ox.rainbow_oscillator, {}),
    ):
        for order, frame in (("", table), (", rows mixed", mixed)):
            call = partial(function, frame, by="symbol", **options)
            one, two = threaded(1, call), threaded(2, call)
            line = f"{title + order:34}"
            if title.startswith("rainbow"):
                line += f"{'':12}"
                gain = ""
            else:
                grouped = frame.groupby("symbol", observed=True)["close"]
                os.environ["ORVEX_THREADS"] = "1"
                whole = best(partial(grouped.transform, partial(function, **options)), 3)
                line += f"{whole * 1e3:>12.1f}"
                gain = f"{whole / one:.1f}"
            line += f"{one * 1e3:>10.1f}{one / rows * 1e9:>8.1f}{two * 1e3:>10.1f}{two / rows * 1e9:>8.1f}"
            print(f"{line}{gain:>7}{one / two:>10.2f}", flush=True)

    print("\ntwenty indicators in one call: symbols a second")
    call = partial(ox.indicators, table, TWENTY, by="symbol")
    one, two = threaded(1, call), threaded(2, call)
    print(f"one thread   {symbols / one:>10.0f}   {one / rows * 1e9:.0f} ns a row")
    print(f"two threads  {symbols / two:>10.0f}   {one / two:.2f} times as many")
    measure_cluster(symbols)


def measure_cluster(symbols: int) -> None:
    """Measure two workers that are processes, over parts that they make themselves."""
    # Untyped: whatever they return is taken as it is.
    dd: Any = importlib.import_module("dask.dataframe")
    distributed: Any = importlib.import_module("distributed")

    parts = 8
    each = max(1, symbols // parts)
    with (
        distributed.LocalCluster(n_workers=2, threads_per_worker=1, processes=True, dashboard_address=None) as cluster,
        distributed.Client(cluster) as client,
    ):
        meta = make_part(0, 1).iloc[:0].astype({"symbol": "str"})
        make = partial(_make_plain, symbols=each)
        frame = dd.from_map(make, range(parts), meta=meta).persist()
        _ = len(frame)
        indexed = dd.from_map(
            partial(_make_indexed, symbols=each),
            range(parts),
            meta=meta.set_index("symbol"),
            divisions=[f"S{number:03}0000" for number in range(parts)] + [f"S{parts:03}"],
        ).persist()
        _ = len(indexed)
        for title, table in (("index with divisions", indexed), ("shuffled", frame)):
            lazy = ox.indicators(table, TWENTY, by="symbol")
            seconds = best(partial(_run, client, lazy, count()), 3)
            print(f"two workers  {parts * each / seconds:>10.0f}   {title}")


def _rows(part: pd.DataFrame, number: int) -> pd.Series[int]:
    return pd.Series([len(part), number])


def _run(client: Any, lazy: Any, numbers: Iterator[int]) -> None:
    """Compute on the workers, and what no call before has asked for: a cluster may still have that."""
    client.compute(lazy.map_partitions(_rows, next(numbers), meta=(None, int))).result()


def _make_plain(number: int, symbols: int) -> pd.DataFrame:
    return make_part(number, symbols).astype({"symbol": "str"})


def _make_indexed(number: int, symbols: int) -> pd.DataFrame:
    return _make_plain(number, symbols).set_index("symbol")


if __name__ == "__main__":
    main()
