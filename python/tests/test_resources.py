"""Memory, threads, interpreters and the time that importing takes."""

from __future__ import annotations

import gc
import os
import subprocess
import sys
import textwrap
import threading
from typing import Any

import numpy as np
import pandas as pd
import polars as pl
import psutil
import pytest
from conftest import make_call, make_prices

import orvex as ox
from orvex import _native


@pytest.mark.measures
@pytest.mark.parametrize(
    ("call", "times"),
    [
        (lambda p: ox.simple_moving_average(p["close"]), 100_000),
        (lambda p: ox.macd(p["close"]), 100_000),
        (lambda p: ox.average_true_range(high=p["high"], low=p["low"], close=p["close"]), 100_000),
        (lambda p: ox.bollinger_bands(p["close"], ma_type="simple", warmup="zero"), 100_000),
        (lambda p: ox.max_value(p["close"], start_period=1, end_period=9), 100_000),
        (lambda p: pytest.raises(ox.OrvexError, ox.relative_strength_index, p["close"], periods=0), 3_000),
        (lambda p: pytest.raises(TypeError, ox.macd, p["close"], 1, 2, 3, 4, 5), 3_000),
        (lambda p: ox.macd(pl.Series(p["close"])), 3_000),
        (lambda p: ox.macd(pd.Series(p["close"])), 3_000),
    ],
    ids=["column", "columns", "prices", "choice", "note", "error", "misuse", "polars", "pandas"],
)
def test_many_calls_leave_nothing(call: Any, times: int) -> None:
    prices = make_prices(100)
    for _ in range(100):
        call(prices)
    gc.collect()
    objects = len(gc.get_objects())
    counts = [sys.getrefcount(values) for values in prices.values()]
    memory = psutil.Process().memory_info().rss
    for _ in range(times):
        call(prices)
    gc.collect()
    assert [sys.getrefcount(values) for values in prices.values()] == counts
    assert len(gc.get_objects()) <= objects + 50
    assert psutil.Process().memory_info().rss - memory < 4_000_000


@pytest.mark.measures
def test_calls_do_not_wait_for_memory() -> None:
    """Columns of a call go where those of the last one were: in a process that has not had large ones before."""
    program = """
        import resource
        import numpy as np
        import orvex as ox

        close = 100.0 + np.arange(32_766.0) % 7
        for _ in range(3):
            ox.macd(close)
        before = resource.getrusage(resource.RUSAGE_SELF).ru_minflt
        for _ in range(100):
            ox.macd(close)
        print((resource.getrusage(resource.RUSAGE_SELF).ru_minflt - before) / 100)
    """
    # Dask, where other tests have started it, has set what it wants for its workers.
    environment = {name: value for name, value in os.environ.items() if not name.startswith("MALLOC_")}
    run = subprocess.run(
        [sys.executable, "-c", textwrap.dedent(program)], capture_output=True, text=True, check=True, env=environment
    )
    assert float(run.stdout) < 1


def test_results_outlive_everything() -> None:
    """A view of a view of a result keeps its rows."""
    expected = ox.simple_moving_average(make_prices(5000)["close"]).copy()
    views = [
        ox.simple_moving_average(make_prices(5000)["close"])[::2],
        pl.Series(ox.simple_moving_average.columns(make_prices(5000)["close"])[0])[::2].to_numpy(),
        ox.simple_moving_average(pd.Series(make_prices(5000)["close"])).iloc[::2].to_numpy(),
    ]
    gc.collect()
    junk = [np.full(5000, 7.0) for _ in range(50)]
    for view in views:
        np.testing.assert_array_equal(view, expected[::2])
    assert len(junk) == 50


def test_eight_threads_on_one_frame() -> None:
    prices = make_prices(20_000)
    functions = [
        f for f in _native.FUNCTIONS if _native.describe(f.index)["columns"] and f.__name__ != "neural_indicator"
    ]

    def results() -> list[bytes]:
        told = []
        for function in functions:
            args, kwargs = make_call(function, prices)
            try:
                result = function(*args, **kwargs)
            except ox.OrvexError as error:
                told.append(str(error).encode())
                continue
            told += [column.tobytes() for column in (result if isinstance(result, tuple) else (result,))]
        return told

    expected = results()
    outcomes: list[list[bytes]] = []
    threads = [threading.Thread(target=lambda: outcomes.append(results())) for _ in range(8)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert len(outcomes) == 8
    assert all(outcome == expected for outcome in outcomes)


def run(program: str) -> str:
    ran = subprocess.run(
        [sys.executable, "-P", "-c", textwrap.dedent(program)], capture_output=True, text=True, check=False
    )
    assert ran.returncode == 0, ran.stderr
    return ran.stdout


def test_a_subinterpreter_is_refused() -> None:
    """With a clear error, from this package or, where it does not work there, from NumPy; never a crash."""
    told = run("""
        try:
            import _interpreters as interpreters
        except ImportError:
            import _xxsubinterpreters as interpreters
        import orvex._native
        program = '''
        try:
            import importlib.util, sys, orvex._native
        except ImportError as error:
            print("refused:", error, flush=True)
        '''
        import textwrap
        interpreter = interpreters.create()
        told = getattr(interpreters, "exec", None) or interpreters.run_string
        told(interpreter, textwrap.dedent(program))
    """)
    assert told.startswith("refused:")


@pytest.mark.measures
def test_importing_is_quick() -> None:
    """At most 60 ms beyond NumPy, the best of five; nothing but NumPy is imported."""
    best = min(
        float(
            run("""
                import time, numpy
                start = time.perf_counter()
                import orvex
                print(time.perf_counter() - start)
            """)
        )
        for _ in range(5)
    )
    assert best < 0.06
    told = run("""
        import sys, orvex
        print(*sorted({"pandas", "polars", "pyarrow", "dask", "tqdm"} & set(sys.modules)))
    """)
    assert told.strip() == ""
