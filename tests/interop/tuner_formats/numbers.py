# SPDX-License-Identifier: MIT
"""Numbers as texts, and from texts."""

from __future__ import annotations

import math
import re
import struct
from decimal import ROUND_HALF_UP, Context, Decimal

LARGEST_FLOAT = 340282346638528859811704183484516925440.0

_BLANKS = ("\t\n\v\f\r \u0085\u00A0\u1680\u2000\u2001\u2002\u2003\u2004\u2005\u2006\u2007\u2008\u2009\u200A"
           "\u2028\u2029\u202F\u205F\u3000")
_SIGN = "[+\\-\u2212]?"
_WHOLE = re.compile(_SIGN + "[0-9]+")
_REAL = re.compile(_SIGN + r"([0-9]+(?:\.[0-9]*)?|\.[0-9]+)(?:[eE]" + _SIGN + "[0-9]+)?")
_INFINITE = re.compile(_SIGN + "inf", re.IGNORECASE | re.ASCII)
_NOT_A_NUMBER = re.compile("nan", re.IGNORECASE | re.ASCII)

_HUNDREDTH = Decimal("0.01")
_ALL_DIGITS = Context(prec=400)  # the largest double has 309 before the point
_FLOAT = struct.Struct(">f")


def two_decimals(number: float) -> str:
    if math.isnan(number):
        return "nan"
    if math.isinf(number):
        return "inf" if number > 0 else "-inf"
    if number == 0:
        return "0.00"  # the negative one, too
    return format(Decimal(number).quantize(_HUNDREDTH, ROUND_HALF_UP, _ALL_DIGITS), "f")


def whole(text: str, bits: int) -> int:
    """The signed number that the text contains; 0 if it contains none or one that needs more bits."""
    text = text.strip(_BLANKS)
    if not _WHOLE.fullmatch(text):
        return 0
    digits = text.lstrip("+-\u2212").lstrip("0")
    if len(digits) > 20:
        return 0
    magnitude = int(digits or "0")
    number = magnitude if text[0] not in "-\u2212" else -magnitude
    return number if -(1 << bits - 1) <= number < 1 << bits - 1 else 0


def real(text: str) -> float:
    text = text.strip(_BLANKS)
    if match := _REAL.fullmatch(text):
        number = float(text.replace("\u2212", "-"))
        return 0.0 if number == 0 and match[1].strip("0.") else number
    if _INFINITE.fullmatch(text):
        return -math.inf if text[0] in "-\u2212" else math.inf
    return math.nan if _NOT_A_NUMBER.fullmatch(text) else 0.0


def real_of_single_precision(text: str) -> float:
    number = real(text)
    return math.copysign(math.inf, number) if abs(number) > LARGEST_FLOAT else to_single_precision(number)


def to_single_precision(number: float) -> float:
    """The nearest number that 32 bits can hold."""
    try:
        return _FLOAT.unpack(_FLOAT.pack(number))[0]
    except OverflowError:
        return math.copysign(math.inf, number)


def low_bits(number: int, bits: int) -> int:
    """The signed number in the low bits."""
    number &= (1 << bits) - 1
    return number - (1 << bits) if number >> bits - 1 else number
