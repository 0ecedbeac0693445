"""The errors of calls that cannot be computed."""

from __future__ import annotations

from typing import Any


class OrvexError(ValueError):
    """A call that cannot be computed.

    Attributes
    ----------
    number, source, description
        What the library reports: an error number, the place that reports it and a sentence. An error that comes out
        of a polars expression has its text as the description, 0 and nothing else: polars makes it anew from that text.
    record
        The record to blame, counted from 1, or None where it is not known. In ``by=`` calls it counts within the
        symbol.
    function
        The name of the function that was called.
    column
        The column to blame, or None.
    label
        The label of that record in the index of what was handed in, or None where it has no index.
    symbol
        The symbol that could not be computed, in ``by=`` calls.
    reason
        What went wrong in that record, or before any, where it is known.
    """

    __module__ = "orvex"

    def __init__(
        self,
        number: int | str,
        source: str = "",
        description: str = "",
        record: int | None = None,
        function: str | None = None,
        column: str | None = None,
        reason: str | None = None,
        label: Any = None,
        symbol: Any = None,
    ) -> None:
        # All of them, in this order, so that a copy or a pickle is made from them.
        super().__init__(number, source, description, record, function, column, reason, label, symbol)
        self.number = 0 if isinstance(number, str) else number
        self.source = source
        self.description = number if isinstance(number, str) else description
        self.record = record
        self.function = function
        self.column = column
        self.reason = reason
        self.label = label
        self.symbol = symbol

    def located(self, label: Any = None, symbol: Any = None) -> OrvexError:
        """Return the same error with the label of its record, or with its symbol."""
        return OrvexError(
            self.number,
            self.source,
            self.description,
            self.record,
            self.function,
            self.column,
            self.reason,
            label,
            symbol,
        )

    @property
    def row(self) -> int | None:
        """The place of the record in what was handed in, counted from 0."""
        return None if self.record is None else self.record - 1

    def __str__(self) -> str:
        text = f"{self.function}: " if self.function else ""
        if self.symbol is not None:
            text += f"symbol {self.symbol}: "
        text += self.description
        if self.number != 0:
            text += f" (error {self.number}, {self.source})"
        if self.record is None and self.reason is None:
            return text
        text += f": {self.reason}" if self.reason else ":"
        if self.record is not None:
            text += f" in row {self.row}"
            if self.label is not None:
                text += f", index {self.label}"
        return text


class SymbolWarning(UserWarning):
    """Symbols that could not be computed and are NaN in the result."""
