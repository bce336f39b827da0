# SPDX-License-Identifier: MIT
"""Snapshots."""

from __future__ import annotations

import struct
from typing import Callable

from .classes import (
    ALWAYS, BOOLEAN, CHOSEN, DOUBLE, FLOAT, INT32, INT64, ITEMS_SET_ALWAYS, ITEMS_WHEN_SET, MODE_LIST, OWN_VERSION,
    TEXT, TUNER_TYPE, UINT64, WHEN_SET, Class, Member, Value,
)
from .numbers import low_bits, to_single_precision
from .objects import Object, new_object
from .records import write_string

_COUNT = struct.Struct(">i")
_SIZE = struct.Struct(">I")
_SIGNED = struct.Struct(">q")
_UNSIGNED = struct.Struct(">Q")
_DOUBLE = struct.Struct(">d")
_SMALL = struct.Struct(">b")

_NULL_SIZE = 0xFFFFFFFF


def _flag_bytes(cls: Class) -> int:
    return 1 if len(cls.members) <= 8 else 2


# --- Writing ---------------------------------------------------------------------------------------------------------


def write(obj: Object) -> bytes:
    parts = [obj.flags.to_bytes(_flag_bytes(obj.cls), "little")]
    if obj.cls.has_version:
        parts.append(write_string(OWN_VERSION))
    if obj.cls.is_choice:
        parts.append(bytes([obj.choice]))
    for member in obj.cls.members:
        if _is_written(obj, member):
            parts.append(_write_member(obj, member))
    return b"".join(parts)


def _is_written(obj: Object, member: Member) -> bool:
    if member.snapshot in (ALWAYS, ITEMS_WHEN_SET, ITEMS_SET_ALWAYS):
        return True
    return obj.is_set(member) and (member.snapshot != CHOSEN or obj.choice == member.bit)


def _write_member(obj: Object, member: Member) -> bytes:
    value = obj.values[member.bit]
    if member.is_list:
        items = value if obj.is_set(member) else []
        return _COUNT.pack(len(value)) + b"".join(map(write, items))
    if member.type == MODE_LIST:
        return _COUNT.pack(len(value)) + b"".join(map(_SMALL.pack, value))
    if member.item_class:
        return write(obj.child(member))
    return _WRITERS[member.type](value)


_WRITERS: dict[str, Callable[[Value], bytes]] = {
    TEXT: write_string,
    BOOLEAN: lambda value: b"\1" if value else b"\0",
    INT32: _SIGNED.pack,
    INT64: _SIGNED.pack,
    UINT64: _UNSIGNED.pack,
    FLOAT: _DOUBLE.pack,
    DOUBLE: _DOUBLE.pack,
    TUNER_TYPE: _SMALL.pack,
}

# --- Reading ---------------------------------------------------------------------------------------------------------


def read(obj: Object, snapshot: bytes, validate: bool) -> int | None:
    """Returns the number of bytes left; None if the snapshot ends prematurely."""
    reader = _Reader(snapshot, validate)
    try:
        reader.read(obj)
    except _EndsEarly:
        return None
    return len(snapshot) - reader.position


class _EndsEarly(Exception):
    pass


class _Reader:
    def __init__(self, content: bytes, validate: bool) -> None:
        self._content = content
        self._validate = validate
        self.position = 0

    def read(self, obj: Object) -> None:
        flags = int.from_bytes(self._take(_flag_bytes(obj.cls)), "little")
        obj.flags = flags & ((1 << len(obj.cls.members)) - 1)
        if obj.cls.has_version:
            obj.take_version(self._string())
        if obj.cls.is_choice:
            obj.choice = self._take(1)[0]
        for member in obj.cls.members:
            if self._is_read(obj, member):
                self._read_member(obj, member)

    @staticmethod
    def _is_read(obj: Object, member: Member) -> bool:
        if member.snapshot == WHEN_SET:
            return obj.is_set(member)
        return member.snapshot != CHOSEN or obj.choice == member.bit

    def _read_member(self, obj: Object, member: Member) -> None:
        if member.is_list:
            count = self._unpack(_COUNT)
            if obj.is_set(member) or member.snapshot == ITEMS_SET_ALWAYS:
                for _ in range(count):
                    item = new_object(member.item_class)
                    self.read(item)
                    obj.append(member, item, self._validate)
        elif member.type == MODE_LIST:
            for _ in range(self._unpack(_COUNT)):
                obj.append(member, self._unpack(_SMALL), self._validate)
        elif member.item_class:
            self.read(obj.child(member))
        else:
            obj.values[member.bit] = self._VALUES[member.type](self)

    # How a value is read by its type.
    _VALUES: dict[str, Callable[[_Reader], Value]] = {
        TEXT: lambda self: self._string(),
        BOOLEAN: lambda self: self._take(1) != b"\0",
        INT32: lambda self: low_bits(self._unpack(_SIGNED), 32),
        INT64: lambda self: self._unpack(_SIGNED),
        UINT64: lambda self: self._unpack(_UNSIGNED),
        FLOAT: lambda self: to_single_precision(self._unpack(_DOUBLE)),
        DOUBLE: lambda self: self._unpack(_DOUBLE),
        TUNER_TYPE: lambda self: self._unpack(_SMALL),
    }

    def _take(self, size: int) -> bytes:
        if size > len(self._content) - self.position:
            raise _EndsEarly
        self.position += size
        return self._content[self.position - size : self.position]

    def _unpack(self, form: struct.Struct) -> int | float:
        return form.unpack(self._take(form.size))[0]

    def _string(self) -> str | None:
        size = self._unpack(_SIZE)
        if size == _NULL_SIZE:
            return None
        if size % 2 != 0:
            raise _EndsEarly
        return self._take(size).decode("utf-16-be", "surrogatepass")
