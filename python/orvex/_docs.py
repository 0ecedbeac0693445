"""Signatures and docstrings of the functions, from their descriptions in the catalogue.

The build makes the type stubs with it, so it imports nothing of the package.
"""

from __future__ import annotations

import inspect
import textwrap
from collections.abc import Iterable, Mapping, Sequence
from typing import Any

Description = Mapping[str, Any]

_WIDTH = 88

_OPTIONS = {
    "by": (
        "str, list of str or column, optional",
        "The column of the frame that names each row's symbol. Each symbol is computed by itself, in its own order of "
        "rows, on all cores.",
    ),
    "warmup": (
        '{"nan", "zero"}',
        "What stands in rows that are not computed: NaN (null in polars and Arrow), or what the library itself has "
        "there.",
    ),
    "errors": (
        '{"warn", "raise"}',
        "With `by`: whether a symbol that cannot be computed is left NaN, with one warning for all, or is an error.",
    ),
}


def default_of(parameter: Description) -> Any:
    """Return what stands for a parameter that is left out; ``inspect.Parameter.empty`` where it must be given."""
    match parameter["kind"]:
        case "prices" | "price" | "by":
            return None
        case "warmup":
            return "nan"
        case "errors":
            return "warn"
        case "alias":
            return None
        case "column":
            return inspect.Parameter.empty
    usual = parameter["usual"]
    if usual is None:
        return inspect.Parameter.empty
    if isinstance(usual, str):
        return None
    for name, code in parameter["choices"].items():
        if code == usual:
            return name
    return usual


def signature(description: Description) -> inspect.Signature:
    """Return the signature of a function."""
    parameters = []
    seen_default = False
    for index, parameter in enumerate(description["parameters"]):
        default = default_of(parameter)
        if parameter["kind"] == "column" and index > 0:
            default = None  # taken from the frame
        keyword_only = parameter["keyword_only"] or (seen_default and default is inspect.Parameter.empty)
        seen_default = seen_default or default is not inspect.Parameter.empty
        kind = inspect.Parameter.KEYWORD_ONLY if keyword_only else inspect.Parameter.POSITIONAL_OR_KEYWORD
        parameters.append(inspect.Parameter(parameter["name"], kind, default=default))
    # A parameter that must be given and stands behind one that need not becomes one by keyword; those come last.
    parameters.sort(key=lambda one: one.kind)
    return inspect.Signature(parameters)


def _wrap(text: str, indent: str = "") -> list[str]:
    lines: list[str] = []
    for paragraph in text.split("\n"):
        lines += textwrap.wrap(paragraph, _WIDTH, initial_indent=indent, subsequent_indent=indent) or [""]
    return lines


def _section(title: str, entries: Iterable[tuple[str, str]]) -> list[str]:
    lines = ["", title, "-" * len(title)]
    for head, text in entries:
        lines.append(head)
        lines += _wrap(text, "    ") if text else []
    return lines


def _parameter(parameter: Description) -> tuple[str, str]:
    name, kind = parameter["name"], parameter["kind"]
    if kind in _OPTIONS:
        return f"{name} : {_OPTIONS[kind][0]}", _OPTIONS[kind][1]
    if kind == "price":
        return f"{name} : column, optional", ""
    if kind == "column":
        text = parameter["help"]
        if parameter["session"]:
            text += " Dates begin one with each day. Of a frame, its Session or Date, or the dates of its rows."
        elif parameter["usual"] is not None:
            text += f" Of a frame, its {parameter['usual']}."
        return f"{name} : column or frame", text
    type_name = {"whole": "int", "real": "float", "alias": "str"}[kind]
    if parameter["choices"]:
        type_name = "str or int"
    default = default_of(parameter)
    shown = repr(default)
    text = parameter["help"]
    if parameter["choices"]:
        text += " One of " + ", ".join(f'"{choice}"' for choice in parameter["choices"]) + "."
    if isinstance(parameter["usual"], str):
        shown = f"{parameter['usual']}"
        if kind != "alias":
            shown += ", N being the number of records"
    head = f"{name} : {type_name}"
    return (head if default is inspect.Parameter.empty else f"{head}, default {shown}"), text


def _parameters(parameters: Sequence[Description]) -> list[tuple[str, str]]:
    prices = [parameter["name"] for parameter in parameters if parameter["kind"] == "price"]
    entries = []
    for parameter in parameters:
        if parameter["kind"] == "prices":
            text = f"Columns of these names, in capitals or not: {', '.join(prices)}."
            entries.append(("prices : frame or mapping", text))
        elif parameter["kind"] != "price":
            entries.append(_parameter(parameter))
        elif parameter["name"] == prices[0]:
            entries.append((f"{', '.join(prices)} : column, optional", "The same one by one, in place of `prices`."))
    return entries


def _column(column: Description) -> tuple[str, str]:
    parts = [column["help"].rstrip(".")] if column["help"] else []
    if column["unit"]:
        parts.append(f"in {column['unit']}")
    low, high = column["low"], column["high"]
    if low is not None and high is not None:
        parts.append(f"from {low:g} to {high:g}")
    elif low is not None:
        parts.append(f"not below {low:g}")
    elif high is not None:
        parts.append(f"not above {high:g}")
    rows = f"Computed rows: {column['first_row']} to {column['last_row']}."
    return column["attribute"], (", ".join(parts) + ". " if parts else "") + rows


def docstring(description: Description) -> str:
    """Return the docstring of a function."""
    lines = _wrap(description["help"])
    if description["formula"]:
        lines += ["", *_wrap(description["formula"], "    ")]
    if description["reading"]:
        lines += ["", *_wrap(description["reading"])]
    lines += _section("Parameters", _parameters(description["parameters"]))
    if description["columns"]:
        lines += _section("Returns", [_column(column) for column in description["columns"]])
        lines += _wrap(
            "Rows count from 1, N is their number. A column comes back as the kind that was handed in; several are a "
            "frame, of NumPy arrays a named tuple, of polars expressions a struct."
            if len(description["columns"]) > 1
            else "Rows count from 1, N is their number. The column comes back as the kind that was handed in."
        )
    else:
        returned = {
            "Note": "Note : period (a record, from 1), value and note",
            "Boolean": "bool",
            "Double": "float",
            "Integer": "int",
            "Long": "int",
        }
        lines += _section("Returns", [(returned[description["returns"]], "")])
    raised = [f"{error['number']} {error['description']}." for error in description["errors"]]
    fails = [f"Fails {description['fails'].rstrip('.')}."] if description["fails"] else []
    lines += _section("Raises", [("OrvexError", " ".join(dict.fromkeys(raised + fails)))])
    notes = [description[key] for key in ("origin", "difference") if description[key]]
    if description["abbreviations"]:
        notes.append("Also known as " + ", ".join(description["abbreviations"]) + ".")
    others = (("talib", "TA-Lib"), ("tulip", "Tulip Indicators"))
    notes += [f"{title} calls it {description[key]}." for key, title in others if description[key]]
    if description["house"]:
        notes.append(f"{description['house']} of the library's reference is the house's own definition.")
    notes.append(f"It is {description['class']}.{description['method']} of the library's reference.")
    lines += ["", "Notes", "-----"]
    for note in notes:
        lines += _wrap(note)
    return "\n".join(lines)
