"""Compare every indicator that both libraries have with TA-Lib, called as their users call them.

Usage: python bench/peers.py [--standard] [--rounds N]

NumPy arrays in and out, both in one process, calls of the two taking turns, medians. Prints, for each indicator and
number of rows, the time of a call and its ratio to the peer's; below 1 is faster. The house's own definitions differ
from the peer's in places (how averages begin, population or sample); what is compared is the work. Those of the class
Standard, which --standard takes, are the peer's.
"""

from __future__ import annotations

import argparse
import math
import statistics
import sys
import time
from collections.abc import Callable
from functools import partial
from typing import Any

import numpy as np
import talib
from talib import abstract

import orvex as ox

SIZES = (100, 2_520, 32_766, 1_000_000)
# A call of the shortest size takes about a microsecond, so that it is timed in batches.
ROWS_A_BATCH = 20_000


def make_prices(count: int) -> dict[str, Any]:
    """Return a random walk in cents."""
    random = np.random.default_rng(1)
    close = np.round(1000 + random.normal(scale=0.5, size=count).cumsum(), 2)
    open_ = np.round(close + random.normal(scale=0.3, size=count), 2)
    high = np.round(np.maximum(open_, close) + random.uniform(0.01, 1, count), 2)
    low = np.round(np.minimum(open_, close) - random.uniform(0.01, 1, count), 2)
    volume = random.integers(1_000, 100_000, count).astype(np.float64)
    return {"open": open_, "high": high, "low": low, "close": close, "volume": volume}


def pairs(p: dict[str, Any]) -> dict[str, tuple[Callable[[], Any], Callable[[], Any]]]:
    """Return the calls that do the same work: ours and the peer's."""
    stoch: Any = talib.STOCH
    h, l, c, v = (p[name] for name in ("high", "low", "close", "volume"))  # noqa: E741
    return {
        "SMA 20": (lambda: ox.simple_moving_average(c, 20), lambda: talib.SMA(c, 20)),
        "EMA 20": (lambda: ox.exponential_moving_average(c, 20), lambda: talib.EMA(c, 20)),
        "WMA 20": (lambda: ox.weighted_moving_average(c, 20), lambda: talib.WMA(c, 20)),
        "TRIMA 20": (lambda: ox.triangular_moving_average(c, 20), lambda: talib.TRIMA(c, 20)),
        "RSI 14": (lambda: ox.relative_strength_index(c, 14), lambda: talib.RSI(c, 14)),
        "CMO 14": (lambda: ox.cmo(c, 14), lambda: talib.CMO(c, 14)),
        "ROC 10": (lambda: ox.price_roc(c, 10), lambda: talib.ROC(c, 10)),
        "MOM 10": (lambda: ox.momentum(c, 10), lambda: talib.ROCR100(c, 10)),
        "TRIX 18": (lambda: ox.trix(c, 18), lambda: talib.TRIX(c, 18)),
        "STDDEV 20": (
            lambda: ox.standard_deviation(c, 20, standard_deviations=1),
            lambda: talib.STDDEV(c, 20, 1),
        ),
        "TSF 14": (lambda: ox.time_series_forecast(c, 14), lambda: talib.TSF(c, 14)),
        "HHV 20": (lambda: ox.hhv(high=h, periods=20), lambda: talib.MAX(h, 20)),
        "LLV 20": (lambda: ox.llv(low=l, periods=20), lambda: talib.MIN(l, 20)),
        "MEDPRICE": (lambda: ox.median_price(high=h, low=l), lambda: talib.MEDPRICE(h, l)),
        "TYPPRICE": (lambda: ox.typical_price(high=h, low=l, close=c), lambda: talib.TYPPRICE(h, l, c)),
        "WCLPRICE": (lambda: ox.weighted_close(high=h, low=l, close=c), lambda: talib.WCLPRICE(h, l, c)),
        "TRANGE": (lambda: ox.true_range(high=h, low=l, close=c), lambda: talib.TRANGE(h, l, c)),
        "ATR 14": (lambda: ox.average_true_range(high=h, low=l, close=c), lambda: talib.ATR(h, l, c, 14)),
        "CCI 20": (
            lambda: ox.commodity_channel_index(high=h, low=l, close=c, periods=20),
            lambda: talib.CCI(h, l, c, 20),
        ),
        "WILLR 14": (lambda: ox.williams_pct_r(high=h, low=l, close=c, periods=14), lambda: talib.WILLR(h, l, c, 14)),
        "ULTOSC": (lambda: ox.ultimate_oscillator(high=h, low=l, close=c), lambda: talib.ULTOSC(h, l, c)),
        "MFI 14": (
            lambda: ox.money_flow_index(high=h, low=l, close=c, volume=v, periods=14),
            lambda: talib.MFI(h, l, c, v, 14),
        ),
        "OBV": (lambda: ox.on_balance_volume(c, v), lambda: talib.OBV(c, v)),
        "SAR": (lambda: ox.parabolic_sar(h, l), lambda: talib.SAR(h, l, 0.02, 0.2)),
        "MACD": (lambda: ox.macd(c), lambda: talib.MACD(c)),
        "BBANDS 20": (lambda: ox.bollinger_bands(c, 20, 2), lambda: talib.BBANDS(c, 20, 2.0, 2.0)),
        "STOCH 14 3 3": (
            lambda: ox.stochastic_oscillator(high=h, low=l, close=c, k_periods=14, k_slowing_periods=3, d_periods=3),
            lambda: stoch(h, l, c, 14, 3, 0, 3, 0),
        ),
        "AROON 14": (
            lambda: ox.aroon(high=h, low=l, periods=14),
            lambda: (talib.AROON(h, l, 14), talib.AROONOSC(h, l, 14)),
        ),
        "DMS 14": (
            lambda: ox.directional_movement_system(high=h, low=l, close=c, periods=14),
            lambda: (
                talib.ADX(h, l, c, 14),
                talib.ADXR(h, l, c, 14),
                talib.DX(h, l, c, 14),
                talib.PLUS_DI(h, l, c, 14),
                talib.MINUS_DI(h, l, c, 14),
            ),
        ),
    }


def standard_pairs(p: dict[str, Any]) -> dict[str, tuple[Callable[[], Any], Callable[[], Any]]]:
    """Return the same for the class Standard: every function that both have, with the usual arguments."""
    calls: dict[str, tuple[Callable[[], Any], Callable[[], Any]]] = {}
    peers: Any = abstract
    for entry in ox.catalogue():
        name: Any = entry["talib"]
        if not name:
            continue
        parameters: Any = entry["parameters"]
        ours = {one["name"]: p[one["name"]] for one in parameters if one["kind"] == "price"}
        ours |= {one["name"]: p[one["usual"].lower()] for one in parameters if one["kind"] == "column"}
        inputs = peers.Function(name).input_names.values()
        theirs = [p[one] for names in inputs for one in ([names] if isinstance(names, str) else names)]
        function = getattr(ox.standard, str(entry["name"]))
        peer = getattr(talib, name)
        calls[name] = (partial(function, **ours), partial(peer, *theirs))
    return calls


def measure(ours: Callable[[], Any], peers: Callable[[], Any], batch: int, rounds: int) -> tuple[float, float]:
    """Return the median seconds of a call of each."""
    times: tuple[list[float], list[float]] = ([], [])
    for _ in range(rounds):
        for call, into in zip((ours, peers), times, strict=True):
            start = time.perf_counter()
            for _ in range(batch):
                call()
            into.append((time.perf_counter() - start) / batch)
    return statistics.median(times[0]), statistics.median(times[1])


def main() -> None:
    """Measure and print."""
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--standard", action="store_true", help="the definitions of the class Standard")
    parser.add_argument("--rounds", type=int, default=15)
    given = parser.parse_args()
    rounds = given.rounds
    make = standard_pairs if given.standard else pairs
    print(f"TA-Lib {talib.__version__}, NumPy {np.__version__}, Python {sys.version.split()[0]}")
    print("microseconds a call, ours / peer = ratio\n")
    titles = "".join(f"{f'{size:,} rows':>28}" for size in SIZES)
    print(f"{'':14}{titles}")
    ratios: dict[int, list[float]] = {size: [] for size in SIZES}
    one_column: list[float] = []
    tables = {size: make(make_prices(size)) for size in SIZES}
    for name in tables[SIZES[0]]:
        line = f"{name:14}"
        for size in SIZES:
            ours, peers = tables[size][name]
            a, b = measure(ours, peers, max(1, ROWS_A_BATCH // size), rounds)
            ratios[size].append(a / b)
            if size == SIZES[0] and not isinstance(ours(), tuple):
                one_column.append(a / b)
            line += f"{a * 1e6:>12.2f}{b * 1e6:>10.2f}{a / b:>6.2f}"
        print(line, flush=True)
    means = "".join(f"{math.exp(statistics.fmean(map(math.log, ratios[size]))):>28.2f}" for size in SIZES)
    print(f"{'geometric mean':14}{means}")
    print(f"one-column indicators at {SIZES[0]} rows: at most {max(one_column):.2f} times the peer's call")


if __name__ == "__main__":
    main()
