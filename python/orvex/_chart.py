"""Pages with a chart: the studio with prices and studies inside."""

from __future__ import annotations

import csv
import functools
import html
import io
import json
import math
import os
from collections.abc import Callable, Iterator, Mapping
from pathlib import Path
from typing import Any, TypeAlias

import numpy as np
import numpy.typing as npt

from orvex import _call, _columns, _native

Study: TypeAlias = Callable[..., Any] | tuple[Callable[..., Any], Mapping[str, Any]]

_STUDIO = Path(__file__).with_name("orvex-studio.html")
# Where the page takes its chart; the studio's own file says so.
_PLACE = '<script type="application/json" id="orvex-chart">'
_NOTHING = "null"


class Chart:
    """A page with a chart. A notebook shows it; `save` writes it to a file that any browser opens.

    Attributes
    ----------
    page
        The page itself: one HTML file with everything in it, that asks nobody for anything.
    height
        How high a notebook shows it, in pixels.
    """

    __module__ = "orvex"

    def __init__(self, page: str, height: int) -> None:
        self.page = page
        self.height = height

    def save(self, path: str | os.PathLike[str]) -> Path:
        """Write the page to a file, and return its path."""
        target = Path(path)
        target.write_text(self.page, encoding="utf-8")
        return target

    def _repr_html_(self) -> str:
        # The page runs by itself in a frame: it sees nothing of the notebook, and the notebook nothing of it.
        return (
            '<iframe title="Chart" sandbox="allow-scripts allow-downloads allow-modals" '
            f'style="width: 100%; height: {self.height}px; border: 0" srcdoc="{html.escape(self.page)}"></iframe>'
        )

    def __repr__(self) -> str:
        return f"<orvex.Chart of {len(self.page) / 1e6:.1f} MB; .save(path) writes it>"


def _studio() -> str:
    if not _STUDIO.exists():
        raise FileNotFoundError(
            f"this build of orvex has no studio. Where its sources are, scripts/site builds one as "
            f"build/web/{_STUDIO.name}; then install the package again, or put that file beside {Path(__file__)}"
        )
    return _STUDIO.read_text(encoding="utf-8")


def _times(column: Any) -> npt.NDArray[Any] | None:
    """Return a column of times as an array of them, in its own clock; None for any other column."""
    if getattr(getattr(column, "dtype", None), "tz", None) is not None:  # pandas
        column = (column if hasattr(column, "tz") else column.dt).tz_localize(None)
    if getattr(getattr(column, "dtype", None), "time_zone", None) is not None:  # polars
        column = column.dt.replace_time_zone(None)
    array = np.asarray(column)
    return array if array.dtype.kind == "M" else None


def _date_texts(times: npt.NDArray[Any]) -> Iterator[str]:
    days = times.astype("M8[D]")
    seconds = times.astype("M8[s]")
    unit = "D" if (days == times).all() else "s" if (seconds == times).all() else "us"
    for text in np.datetime_as_string(times, unit=unit):  # type: ignore[call-overload]
        yield "" if text == "NaT" else str(text).replace("T", " ")


def _number_text(number: float) -> str:
    return "" if math.isnan(number) else repr(number).removesuffix(".0")


def _texts(column: Any, name: str) -> list[str]:
    times = _times(column)
    if times is not None:
        return list(_date_texts(times))
    try:
        return [_number_text(number) for number in _columns.to_array(column, name).tolist()]
    except TypeError:
        return ["" if value is None else " ".join(str(value).split()) for value in column]


def _table(prices: Any) -> str:
    """Return prices as comma-separated values with a header line."""
    if _columns.is_dask(prices) or _columns.is_lazy(prices):
        raise TypeError("a chart takes prices that are in memory: compute or collect the frame first")
    columns: dict[str, list[str]] = {}
    is_frame = _columns.is_frame(prices)
    dated = is_frame and _columns.find_name(prices, "Date") is not None
    if not dated and _columns.is_a(prices, "pandas", "DataFrame", "Series") and prices.index.dtype.kind not in "iuf":
        columns["Date"] = _texts(prices.index, "the index")
    if is_frame:
        for name in _columns.column_names(prices):
            columns.setdefault(str(name), _texts(_columns.column_of(prices, name), str(name)))
    else:
        columns["Close"] = _texts(prices, "prices")
    lengths = {name: len(texts) for name, texts in columns.items()}
    if len(set(lengths.values())) > 1:
        told = ", ".join(f"{name} {length}" for name, length in lengths.items())
        raise ValueError(f"the columns differ in length: {told}")
    text = io.StringIO()
    writer = csv.writer(text, lineterminator="\n")
    writer.writerow(columns)
    writer.writerows(zip(*columns.values(), strict=True))
    return text.getvalue()


def _split(study: Any) -> tuple[_native.Function, dict[str, Any]]:
    function: Any
    options: Any
    function, options = study if isinstance(study, tuple) and len(study) == 2 else (study, {})
    if isinstance(function, functools.partial) and not function.args:
        function, options = function.func, {**function.keywords, **options}
    if not isinstance(function, _native.Function) or not isinstance(options, Mapping):
        raise TypeError(f"a study is a function of orvex, or (function, {{argument: value}}), not {study!r}")
    return function, dict(options)


class _Page:
    """The columns that there are so far, and the studies that were computed from them."""

    def __init__(self, text: str) -> None:
        options = dict.fromkeys(("delimiter", "decimal", "missing", "first", "last", "tail"))
        _, table, _ = _native.read_prices(text.encode(), {**options, "delimiter": ",", "order": "keep", "columns": {}})
        self.own = {name: values for name, values in table if isinstance(values, np.ndarray)}
        self.columns: dict[str, npt.NDArray[np.float64]] = {}
        self.studies: list[dict[str, Any]] = []

    def column(self, name: str) -> npt.NDArray[np.float64]:
        """Return a column of the prices, or the latest of that name that a study made."""
        for columns in (self.own, self.columns):
            spelling = _columns.find_name(columns, name)
            if spelling is not None:
                return columns[spelling]
        names = ", ".join(map(repr, [*self.own, *self.columns]))
        raise ValueError(f"there is no column {name!r}; there are {names}")

    def add(self, function: _native.Function, options: dict[str, Any]) -> None:
        """Compute a study, so that an error is raised here and not met in the page, and remember it."""
        description = _call.description_of(function)
        parameters = {each["name"]: each for each in description["parameters"] if "argument" in each}
        unknown = [name for name in options if name not in parameters or parameters[name]["kind"] == "prices"]
        if unknown:
            known = ", ".join(name for name, each in parameters.items() if each["kind"] != "prices")
            raise TypeError(f"{function.__name__} in a chart has no argument {unknown[0]!r}; it has {known}")
        given: dict[str, Any] = {}
        arguments: dict[str, Any] = {}
        for name, parameter in parameters.items():
            if parameter["kind"] == "prices":
                given[name] = self.own
            elif parameter["kind"] == "column":
                source = options.get(name, parameter["usual"] or parameter["name"])
                if not isinstance(source, str):
                    raise TypeError(f"{function.__name__}: {name} is the name of a column in a chart, not {source!r}")
                given[name] = self.column(source)
            elif name in options:
                given[name] = options[name]
            if name in options:
                arguments[parameter["argument"]] = options[name]
        call = _call.bind(function, (), given)
        arguments |= {parameters[name]["argument"]: value for name, value in call.plain.items() if name in options}
        results = _call.columns_of(call, _columns.NumpyKind())
        if description["columns"]:
            self.columns |= {title: column.numpy() for title, column in zip(call.titles, results, strict=True)}
        self.studies.append({"method": f"{description['class']}.{description['method']}", "arguments": arguments})


def chart(prices: Any, *studies: Study, name: str = "prices", height: int = 640) -> Chart:
    """Make a page with a chart of prices and of studies computed from them.

    The page is the studio: indicators can be changed, added and read about in it. It is one file with everything
    inside, and nothing that is in it leaves it. A notebook shows it.

    Parameters
    ----------
    prices : frame or column
        A frame or a mapping of columns, in memory; of a column alone, closing prices. Dates are those of an index of
        dates, or of a column called Date.
    *studies : function, or tuple of function and mapping
        What is drawn: a function of this package with its usual arguments, or with those that a mapping gives by name.
        Where an argument is a column, that is its name: one of the frame, or of a study before it.
    name : str
        What the page calls the prices.
    height : int
        How high a notebook shows it, in pixels.

    Returns
    -------
    Chart
        With a method `save`.

    Raises
    ------
    OrvexError
        For prices that the page could not read, or a study that cannot be computed from them.
    FileNotFoundError
        Where the package was built without the studio.

    Examples
    --------
    >>> ox.chart(prices, ox.macd, (ox.simple_moving_average, {"periods": 50})).save("chart.html")
    """
    studio = _studio()
    text = _table(prices)
    made = _Page(text)
    for study in studies:
        made.add(*_split(study))
    data = {"name": name, "prices": text, "studies": made.studies}
    # No "<" in it, so that nothing of it ends the element that holds it and becomes part of the page.
    inside = json.dumps(data, ensure_ascii=False, allow_nan=False).replace("<", "\\u003c")
    return Chart(studio.replace(_PLACE + _NOTHING, _PLACE + inside, 1), height)
