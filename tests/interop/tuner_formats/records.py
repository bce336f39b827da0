# SPDX-License-Identifier: MIT
"""Tagged records, and the representations that contain them."""

from __future__ import annotations

import codecs
import struct
import zlib
from typing import Callable

from . import refusals
from .classes import (
    BOOLEAN, COMPRESSED_WORD, DOUBLE, FLOAT, INT32, INT64, MODE_LIST, OWN_VERSION, TEXT, TUNER_TYPE, UINT64,
    UNLESS_EMPTY, VERSION_TAG, WHEN_CHOSEN, WHEN_SET, Member, Value,
)
from .numbers import low_bits, real, real_of_single_precision, two_decimals
from .objects import Object, may_write, mode_name, mode_of, new_object, tuner_type_name, tuner_type_of
from .refusals import WrongRepresentation

MOST_EXPANDED = 1 << 30
MOST_TIMES = 1100

_NULL = b"\xFF\xFF\xFF\xFF"
_WORD = struct.Struct(">I")
_LENGTH = struct.Struct(">i")
_HEAD = struct.Struct(">Ii")
_SIGNED = struct.Struct(">q")
_UNSIGNED = struct.Struct(">Q")

# --- Writing ---------------------------------------------------------------------------------------------------------


def write(obj: Object, validate: bool) -> bytes | None:
    """The plain representation; None if there is nothing to write."""
    return _record(obj.cls.identifier, _members(obj, validate)) if may_write(obj, validate) else None


def compress(representation: bytes, level: int = -1) -> bytes:
    if len(representation) > MOST_EXPANDED:
        raise WrongRepresentation(f"binary data: {len(representation)} bytes are to be compressed, but readers accept"
                                  f" no more than {MOST_EXPANDED}")
    return _record(COMPRESSED_WORD, _WORD.pack(len(representation)) + zlib.compress(representation, level))


def write_string(text: str | None) -> bytes:
    if text is None:
        return _NULL
    utf16 = text.encode("utf-16-be", "surrogatepass")
    return _LENGTH.pack(len(utf16)) + utf16


def _write_bytes(text: str | None) -> bytes:
    if text is None:
        return _NULL
    utf8 = text.encode("utf-8", "replace")  # half a surrogate pair as a question mark
    return _LENGTH.pack(len(utf8)) + utf8


_PAYLOADS: dict[str, Callable[[Value], bytes]] = {
    TEXT: _write_bytes,
    BOOLEAN: lambda value: b"\1" if value else b"\0",
    INT32: _SIGNED.pack,
    INT64: _SIGNED.pack,
    UINT64: _UNSIGNED.pack,
    FLOAT: lambda value: _write_bytes(two_decimals(value)),
    DOUBLE: lambda value: _write_bytes(two_decimals(value)),
    TUNER_TYPE: lambda index: _write_bytes(tuner_type_name(index)),
}


def _record(tag: int, payload: bytes) -> bytes:
    return _HEAD.pack(tag, len(payload)) + payload


def _with_length(content: bytes) -> bytes:
    return _LENGTH.pack(len(content)) + content


def _members(obj: Object, validate: bool) -> bytes:
    """The records of an object that may be written."""
    records = [_record(VERSION_TAG, write_string(OWN_VERSION))] if obj.cls.has_version else []
    for member in obj.cls.written_order:
        payload = _payload(obj, member, validate)
        if payload is not None:
            records.append(_record(member.tag, payload))
    return b"".join(records)


def _payload(obj: Object, member: Member, validate: bool) -> bytes | None:
    """None if no record is written for the member."""
    value = obj.values[member.bit]
    is_set = obj.is_set(member)
    if member.is_list:
        return _items(member, value, is_set, validate) if value or member.written != UNLESS_EMPTY else None
    if member.type == MODE_LIST:
        return _LENGTH.pack(len(value)) + b"".join(_with_length(_write_bytes(mode_name(mode))) for mode in value)
    if member.written == WHEN_CHOSEN:
        if obj.choice != member.bit or not is_set:
            return None
        alternative = obj.child(member)
        return _members(alternative, validate) if may_write(alternative, validate) else None
    if member.written == WHEN_SET and not is_set:
        return None
    if isinstance(value, Object):
        return _members(value, validate) if may_write(value, validate, checked=True) else None
    return _PAYLOADS[member.type](value)


def _items(member: Member, items: list[Object], is_set: bool, validate: bool) -> bytes:
    parts = [_LENGTH.pack(len(items))]
    if is_set or member.written == UNLESS_EMPTY:
        parts += (_with_length(_members(item, validate)) for item in items if may_write(item, validate, checked=is_set))
    return b"".join(parts)


# --- Reading ---------------------------------------------------------------------------------------------------------


def read(obj: Object, representation: bytes, validate: bool) -> None:
    """Reads a representation, plain or compressed."""
    word, payload = _take_apart(representation, obj, COMPRESSED_WORD)
    if word == COMPRESSED_WORD:
        _, payload = _take_apart(expand(payload), obj)

    reader = _Reader(payload, validate)
    reader.read_members(obj, len(payload))
    if reader.position != len(payload):
        raise WrongRepresentation(f"binary data: the record's length is {len(payload)}, but its members end after"
                                  f" {reader.position} bytes")


def expand(payload: bytes) -> bytes:
    """The plain representation after a compressed one's leading word and length."""
    if len(payload) < _WORD.size:
        raise _damaged()
    (size,) = _WORD.unpack_from(payload)
    most = min(MOST_EXPANDED, MOST_TIMES * len(payload))
    if size > most:
        raise WrongRepresentation(f"binary data: {len(payload)} compressed bytes declare {size} bytes, but no more than"
                                  f" {most} are accepted")
    stream = zlib.decompressobj()
    try:
        plain = stream.decompress(payload[_WORD.size:], size + 1)
    except zlib.error:
        raise _damaged() from None
    if len(plain) != size or not stream.eof or stream.unused_data:
        raise _damaged()
    return plain


def _damaged() -> WrongRepresentation:
    return WrongRepresentation("binary data: the compressed bytes are damaged")


def _take_apart(representation: bytes, obj: Object, other_word: int | None = None) -> tuple[int, bytes]:
    """Leading word and payload."""
    if len(representation) < _HEAD.size:
        raise WrongRepresentation("binary data: the leading word and the length take 8 bytes, but only"
                                  f" {len(representation)} are there")
    word, length = _HEAD.unpack_from(representation)
    if word not in (obj.cls.identifier, other_word):
        raise WrongRepresentation(f"binary data: the leading word is 0x{word:08X}, not 0x{obj.cls.identifier:08X}"
                                  f" ({obj.cls.name})")
    payload = representation[_HEAD.size:]
    if length != len(payload):
        raise WrongRepresentation(f"binary data: the record's length is {length}, but {len(payload)} bytes follow")
    return word, payload


# Each byte that is not part of a well-formed sequence becomes a replacement character of its own.
codecs.register_error("replace each byte", lambda error: ("\uFFFD", error.start + 1))


class _Reader:
    def __init__(self, content: bytes, validate: bool) -> None:
        self._content = content
        self._validate = validate
        self.position = 0

    def read_members(self, obj: Object, length: int) -> None:
        remainder = length
        while remainder > 0 and self.position < len(self._content):
            tag = self._unpack(obj, _WORD)
            record_length = self._unpack(obj, _LENGTH)
            remainder -= 8 + record_length
            self._read_payload(obj, tag, record_length)
        if remainder != 0:
            raise refusals.wrong_length(obj.cls.name)

    def _read_payload(self, obj: Object, tag: int, length: int) -> None:
        member = obj.cls.by_tag.get(tag)
        if member is not None:
            self._read_member(obj, member, length)
        elif tag == VERSION_TAG and obj.cls.has_version:
            obj.take_version(self._string(obj))
        else:
            self._take(obj, max(length, 0))

    def _read_member(self, obj: Object, member: Member, length: int) -> None:
        if member.is_list:
            for _ in range(self._unpack(obj, _LENGTH)):
                item_length = self._unpack(obj, _LENGTH)
                item = new_object(member.item_class)
                self.read_members(item, item_length)
                obj.append(member, item, self._validate)
        elif member.type == MODE_LIST:
            for _ in range(self._unpack(obj, _LENGTH)):
                self._unpack(obj, _LENGTH)
                obj.append(member, mode_of(self._text(obj)), self._validate)
        elif member.written == WHEN_CHOSEN:
            obj.choice = member.bit
            self.read_members(obj.child(member), length)
            obj.mark(member)
        elif member.item_class:
            self.read_members(obj.values[member.bit], length)
            obj.mark(member)
        elif member.type == TUNER_TYPE:
            obj.store_type(member, tuner_type_of(self._text(obj)), self._validate)
        else:
            obj.store(member, self._VALUES[member.type](self, obj))

    # How a value is read by its type.
    _VALUES: dict[str, Callable[[_Reader, Object], Value]] = {
        TEXT: lambda self, obj: self._text(obj),
        BOOLEAN: lambda self, obj: self._take(obj, 1) != b"\0",
        INT32: lambda self, obj: low_bits(self._unpack(obj, _SIGNED), 32),
        INT64: lambda self, obj: self._unpack(obj, _SIGNED),
        UINT64: lambda self, obj: self._unpack(obj, _UNSIGNED),
        FLOAT: lambda self, obj: real_of_single_precision(self._text(obj)),
        DOUBLE: lambda self, obj: real(self._text(obj)),
    }

    def _take(self, obj: Object, size: int) -> bytes:
        if size > len(self._content) - self.position:
            raise refusals.wrong_length(obj.cls.name)
        self.position += size
        return self._content[self.position - size : self.position]

    def _unpack(self, obj: Object, form: struct.Struct) -> int:
        return form.unpack(self._take(obj, form.size))[0]

    def _text(self, obj: Object) -> str:
        length = self._take(obj, 4)
        if length == _NULL:
            return ""
        return self._take(obj, _WORD.unpack(length)[0]).decode("utf-8", "replace each byte")

    def _string(self, obj: Object) -> str | None:
        length = self._take(obj, 4)
        if length == _NULL:
            return None
        size = _WORD.unpack(length)[0]
        if size % 2 != 0:
            raise refusals.wrong_length(obj.cls.name)
        return self._take(obj, size).decode("utf-16-be", "surrogatepass")
