"""polars expressions and lazy frames: a call that polars makes when it has the columns."""

from __future__ import annotations

from collections.abc import Sequence
from dataclasses import replace
from typing import Any

import polars as pl

from orvex import _call, _columns, _groups


def _expression(call: _call.Call) -> pl.Expr:
    names = list(call.columns)
    titles = call.titles
    by = [] if call.by is None else [call.by] if isinstance(call.by, str | pl.Expr) else list(call.by)
    keys = [key if isinstance(key, pl.Expr) else pl.col(key) for key in by]

    def run(series: Sequence[pl.Series]) -> pl.Series:
        given = replace(call, columns=dict(zip(names, series, strict=False)), inputs=list(series[: len(names)]))
        if keys:
            # By names of their own, since two expressions may bear one.
            table = pl.DataFrame({str(place): key for place, key in enumerate(series[len(names) :])})
            result = _groups.compute(replace(given, inputs=[table], by=table.columns))
        else:
            result = _call.compute(given)
        return result if isinstance(result, pl.Series) else result.to_struct(titles[0])

    dtype: Any = pl.Float64() if len(titles) == 1 else pl.Struct(dict.fromkeys(titles, pl.Float64()))
    return pl.map_batches([*call.columns.values(), *keys], run, return_dtype=dtype).alias(titles[0])


def compute(call: _call.Call) -> Any:
    """Return the expression of a call on expressions, or the lazy frame of a call on one."""
    name = call.function.__name__
    if not call.titles:
        raise TypeError(f"{name}: what is no column cannot be an expression; hand in a column")
    lazy = next((value for value in call.inputs if _columns.is_lazy(value)), None)
    for parameter, column in call.columns.items():
        if not _columns.is_expression(column):
            raise TypeError(f"{name}: {parameter} is no expression, as others are")
    if lazy is None and call.by is not None:
        raise TypeError(f"{name}: expressions take .over(symbol) in place of by=")
    expression = _expression(call)
    if lazy is None:
        return expression
    if len(call.titles) == 1:
        return lazy.select(expression)
    return lazy.select(expression.struct.unnest())
