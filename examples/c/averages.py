"""Calls the C interface from Python without a binding: python3 averages.py LIBRARY PRICES (liborvex32.so.1, prices.csv)."""

import ctypes as c
import sys

prices_type = type("Prices", (c.Structure,), {"_fields_": [(n, c.c_void_p) for n in ("open", "high", "low", "close", "volume")]})
argument_type = type("Argument", (c.Structure,), {"_fields_": [("name", c.c_char_p), ("number", c.c_double), ("text", c.c_char_p)]})
column_type = type("Column", (c.Structure,), {"_fields_": [
    ("name", c.c_char_p), ("values", c.POINTER(c.c_double)), ("count", c.c_int32), ("first", c.c_int32), ("last", c.c_int32)]})

orvex = c.CDLL(sys.argv[1])
close = [float(line.split(",")[4]) for line in open(sys.argv[2])]
rows = (c.c_double * len(close))(*close)
series, result, column, error = c.c_void_p(), c.c_void_p(), column_type(), c.create_string_buffer(4096)
arguments = (argument_type * 2)((b"Periods", 20, None), (b"MA_Type", 0, b"Exponential"))
if orvex.orvex_open(c.byref(prices_type(close=c.addressof(rows))), len(close), c.byref(series), error) or orvex.orvex_call(
    series, b"BollingerBands", arguments, len(arguments), c.byref(result), error
):
    sys.exit(f"error {c.c_int32.from_buffer(error).value}")
columns = []
while orvex.orvex_get_column(result, len(columns), c.byref(column)) == 0:
    columns.append(column.values[: column.count])
for row in zip(*columns):
    print(",".join(f"{value:.17g}" for value in row))
orvex.orvex_release(result)
orvex.orvex_close(series)
