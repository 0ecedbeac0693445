"""Stores the default values that widl cannot store in the type library that it makes.

Usage: store_defaults.py ORVEX.IDL MADE.TLB RESULT.TLB

For an argument that the interface definition marks OPTIONAL_STORED_LATER(value) widl has made the library with a default
of 0, in a form that no double and no text can have. Here the value gets its place among the library's larger values, and
the argument's default becomes the offset of that place.
"""

from __future__ import annotations

import re
import struct
import sys
from pathlib import Path

# The library begins with a header, where the offset of each type stands and then, for each kind of data, a segment's
# offset and length. Behind the segments lie the methods of each type. All numbers are little-endian, 32 bits wide.
HEADER_SIZE = 0x54
TYPE_COUNT = 0x20
TYPE_SIZE = 0x64
SEGMENT_COUNT, SEGMENT_SIZE = 15, 16
TYPES, NAMES, LARGE_VALUES = 0, 7, 11  # segments

# Of a type
METHODS_OFFSET, METHOD_COUNT, TYPE_NAME = 0x04, 0x18, 0x34
# Of a method, whose defaults and then arguments stand at its end, if it has defaults
METHOD_KIND, ARGUMENT_COUNT = 0x10, 0x14
HAS_DEFAULTS = 0x1000
ARGUMENT_SIZE = 12

VT_R8, VT_BSTR = 5, 8


def kept_default(kind: int) -> int:
    """What stands where widl has made the place of a default: the number 0 as one of that kind."""
    return 0x80000000 | kind << 26


def stored(text: str) -> tuple[int, bytes]:
    """The kind of a value and its form among the large values: kind, value, and bytes up to a multiple of four."""
    if text.startswith('"'):
        value = text[1:-1].replace('\\"', '"').replace("\\\\", "\\").encode("ascii")
        kind, data = VT_BSTR, struct.pack("<HI", VT_BSTR, len(value)) + value
    else:
        kind, data = VT_R8, struct.pack("<Hd", VT_R8, float(text))
    return kind, data + b"W" * (-len(data) % 4)


def defaults_in(definition: str) -> dict[str, list[list[str | None]]]:
    """For each interface the arguments of its methods: the default that is to be stored, or None."""
    interfaces: dict[str, list[list[str | None]]] = {}
    for name, body in re.findall(r"^interface (\w+) : IDispatch \{\n(.*?)^\}", definition, re.MULTILINE | re.DOTALL):
        methods = re.findall(r"HRESULT \w+\((.*?)\);\n", body, re.DOTALL)
        interfaces[name] = [
            [
                re.sub(r"^OPTIONAL_STORED_LATER\((.*)\)$", r"\1", attributes)
                if attributes.startswith("OPTIONAL_STORED_LATER(")
                else None
                for attributes in re.findall(r"\n\s+\[(.*?)\] ", method)
            ]
            for method in methods
        ]
    return interfaces


class Library:
    def __init__(self, data: bytes) -> None:
        self.data = bytearray(data)
        if self.data[:4] != b"MSFT":
            raise ValueError("this is no type library that widl makes")
        type_count = self.number(TYPE_COUNT)
        self.segments = HEADER_SIZE + 4 * type_count
        self.types = [self.segment(TYPES)[0] + TYPE_SIZE * i for i in range(type_count)]

    def number(self, offset: int) -> int:
        value: int = struct.unpack_from("<I", self.data, offset)[0]
        return value

    def set_number(self, offset: int, value: int) -> None:
        struct.pack_into("<I", self.data, offset, value)

    def segment(self, which: int) -> tuple[int, int]:
        entry = self.segments + SEGMENT_SIZE * which
        return self.number(entry), self.number(entry + 4)

    def name(self, type_offset: int) -> str:
        entry = self.segment(NAMES)[0] + self.number(type_offset + TYPE_NAME)
        length = self.data[entry + 8]
        return self.data[entry + 12 : entry + 12 + length].decode("ascii")

    def methods(self, type_offset: int) -> list[int]:
        """The offsets of a type's methods."""
        at = self.number(type_offset + METHODS_OFFSET) + 4
        offsets = []
        for _ in range(self.number(type_offset + METHOD_COUNT) & 0xFFFF):
            offsets.append(at)
            at += self.number(at) & 0xFFFF
        return offsets

    def default_places(self, method: int) -> list[int]:
        """Where the defaults of a method's arguments stand; empty for a method without any."""
        if not self.number(method + METHOD_KIND) & HAS_DEFAULTS:
            return []
        count = self.number(method + ARGUMENT_COUNT) & 0xFFFF
        first = method + (self.number(method) & 0xFFFF) - count * (ARGUMENT_SIZE + 4)
        return [first + 4 * i for i in range(count)]

    def add_large_values(self, values: bytes) -> None:
        """Adds them to their segment and moves everything that lies behind it."""
        start, length = self.segment(LARGE_VALUES)
        end = start + length
        moved = [self.segments + SEGMENT_SIZE * i for i in range(SEGMENT_COUNT)]
        moved += [one + METHODS_OFFSET for one in self.types]
        for place in moved:
            if end <= self.number(place) != 0xFFFFFFFF:
                self.set_number(place, self.number(place) + len(values))
        self.set_number(self.segments + SEGMENT_SIZE * LARGE_VALUES + 4, length + len(values))
        self.data[end:end] = values


def store(definition: str, made: bytes) -> bytes:
    library = Library(made)
    types = {library.name(one): one for one in library.types}
    values = b""
    offsets: dict[bytes, int] = {}
    for interface, methods in defaults_in(definition).items():
        for method, arguments in zip(library.methods(types[interface]), methods, strict=True):
            places = library.default_places(method)
            for i, text in enumerate(arguments):
                if text is None:
                    continue
                kind, data = stored(text)
                if not places or library.number(places[i]) != kept_default(kind):
                    raise ValueError(f"{interface}: widl has made no place for the default {text}")
                if data not in offsets:
                    offsets[data] = library.segment(LARGE_VALUES)[1] + len(values)
                    values += data
                library.set_number(places[i], offsets[data])
    library.add_large_values(values)
    return bytes(library.data)


if __name__ == "__main__":
    if len(sys.argv) != 4:
        sys.exit(__doc__)
    definition, made, result = map(Path, sys.argv[1:])
    result.write_bytes(store(definition.read_text("utf-8"), made.read_bytes()))
