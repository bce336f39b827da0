# SPDX-License-Identifier: MIT
"""Random documents. The same seed generates the same document."""

from __future__ import annotations

import math
import random
import struct

from tuner_formats.classes import (
    BOOLEAN, CLASSES, DOUBLE, FLOAT, INT32, INT64, MODE_LIST, MODES, TEXT, TUNER_TYPE, TUNER_TYPES, UINT64,
    Class, Member, Value,
)
from tuner_formats.numbers import LARGEST_FLOAT, to_single_precision
from tuner_formats.objects import Object

_PIECES = (
    "RX", "tuner", "12.5 kHz", "a;b", "0", " ", "  ", "<", ">", "&", '"', "'", "&amp;", "&#10;", "]]>", "<!--", "%1",
    "\t", "\n", "\r", "\r\n", "\u00E9", "\u03A9", "\u2153", "\u6F22\u5B57", "\u007F", "\u0085", "\u00A0", "\u2028",
    "\u200B", "\uFEFF", "\uFFFD", "\u0301", "\uE000", "\U00010000", "\U0001F600", "\U0010FFFF",
)
_NOT_FOR_XML = ("\0", "\1", "\v", "\u001F", "\uFFFE", "\uFFFF", "\uD800", "\uDBFF", "\uDC00", "\uDFFF")

_SMALLEST_DOUBLE = 5e-324
_SMALLEST_FLOAT = 2.0 ** -149
_REALS = (
    0.0, -0.0, 1.0, -1.0, math.inf, -math.inf, math.nan, 0.004, 0.005, -0.001, 0.125, -0.375, 0.625, 1.005, 999.995,
    16777217.0, 1e6, 1e15, 2.0 ** 53, -1e22,
)
_DOUBLES = _REALS + (1.7976931348623157e308, -1e300, 2.2250738585072014e-308, _SMALLEST_DOUBLE)
_FLOATS = _REALS + (LARGEST_FLOAT, -LARGEST_FLOAT, 2.0 ** -126, _SMALLEST_FLOAT)


def random_object(class_name: str, seed: int, careless: bool) -> Object:
    """A complete object; a careless one lacks some members, or has null or invalid ones."""
    return _Generator(random.Random(seed), careless).object(CLASSES[class_name])


class _Generator:
    def __init__(self, source: random.Random, careless: bool) -> None:
        self._source = source
        self._careless = careless

    def object(self, cls: Class) -> Object:
        obj = Object(cls)
        if cls.is_choice:
            self._choose(obj)
        else:
            for member in cls.members:
                if self._has_value(member):
                    obj.store(member, self._value(member))
        return obj

    def _choose(self, item: Object) -> None:
        chosen = self._source.choice(item.cls.members)
        if self._slips():
            return
        item.store(chosen, self.object(CLASSES[chosen.item_class]))
        item.choice = chosen.bit
        if self._slips():
            item.flags = 0
        if self._slips():
            item.mark(self._source.choice(item.cls.members))

    def _has_value(self, member: Member) -> bool:
        return self._chance(0.5) if not member.mandatory else not self._slips()

    def _chance(self, probability: float) -> bool:
        return self._source.random() < probability

    def _slips(self) -> bool:
        return self._careless and self._chance(0.06)

    def _few(self, most: int) -> int:
        """Mostly one, sometimes more."""
        return 1 if self._chance(0.6) else 1 + int(self._source.random() * most)

    def _value(self, member: Member) -> Value:
        kind = member.type
        if member.is_list:
            if self._slips() or not member.mandatory and self._chance(0.1):
                return []
            return [self.object(CLASSES[member.item_class]) for _ in range(self._few(3))]
        if member.item_class:
            return self.object(CLASSES[member.item_class])
        return self._VALUES[kind](self)

    def _text(self) -> str | None:
        if self._slips():
            return None
        text = "".join(self._source.choices(_PIECES, k=0 if self._chance(0.1) else self._few(6)))
        if self._chance(0.005):
            place = self._source.randint(0, len(text))
            text = text[:place] + self._source.choice(_NOT_FOR_XML) + text[place:]
        return text

    def _integer(self, bits: int, signed: bool) -> int:
        least, most = (-(1 << bits - 1), (1 << bits - 1) - 1) if signed else (0, (1 << bits) - 1)
        if self._chance(0.3):
            return self._source.choice((least, most, least + 1, most - 1, 0, 1))
        number = self._source.getrandbits(bits) >> int(self._source.random() * bits)
        return number + least if signed and self._chance(0.5) else min(number, most)

    def _real(self, choices: tuple[float, ...], form: str) -> float:
        kind = self._source.random()
        if kind < 0.3:
            return self._source.choice(choices)
        if kind < 0.8:
            return round(self._source.uniform(-1e4, 1e7), self._source.randint(0, 4))
        number = struct.unpack(form, self._source.randbytes(struct.calcsize(form)))[0]
        return math.nan if math.isnan(number) else number

    def _type(self) -> int:
        return self._source.randint(-128, 127) if self._slips() else self._source.randrange(len(TUNER_TYPES))

    def _modes(self) -> list[int]:
        modes = self._source.choices(range(len(MODES)), k=self._source.randint(0, 3))
        return modes + [self._source.randint(-128, 127)] if self._slips() else modes

    _VALUES = {
        TEXT: _text,
        BOOLEAN: lambda self: self._chance(0.5),
        INT32: lambda self: self._integer(32, signed=True),
        INT64: lambda self: self._integer(64, signed=True),
        UINT64: lambda self: self._integer(64, signed=False),
        FLOAT: lambda self: to_single_precision(self._real(_FLOATS, ">f")),
        DOUBLE: lambda self: self._real(_DOUBLES, ">d"),
        TUNER_TYPE: _type,
        MODE_LIST: _modes,
    }
