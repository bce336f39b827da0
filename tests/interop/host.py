# SPDX-License-Identifier: MIT
"""Both sides of the exchange: the library, in a process of its own, and the Python program answer the same requests."""

from __future__ import annotations

import struct
import subprocess
from dataclasses import dataclass, field
from typing import Iterable, NamedTuple

from tuner_formats import records, refusals, snapshot, xml
from tuner_formats.classes import COMPRESSED_WORD
from tuner_formats.objects import Object, new_object

FORMS = "xtcs"
"""XML, tagged records, the same compressed, snapshot, with the host's names."""

DONE, NOTHING, REFUSED, THROWN = "dnrt"


class Outcome(NamedTuple):
    kind: str
    content: bytes = b""

    @property
    def is_done(self) -> bool:
        return self.kind == DONE


@dataclass(frozen=True)
class Request:
    """Steps for one object of a class, and the forms in which it is written afterwards. See Host.cpp for the steps."""

    class_name: str
    validate: bool
    steps: tuple[tuple[str, bytes], ...]
    forms: str = FORMS


@dataclass(frozen=True)
class Answer:
    """The outcomes of the steps and of writing each form."""

    steps: Outcome
    written: dict[str, Outcome] = field(default_factory=dict)


class Library:
    """The library, in the host program."""

    def __init__(self, host: str) -> None:
        self._host = host

    def model(self) -> list[list[str]]:
        """Class, name, kind, default, mandatory ("yes" or "no") and children or names of each member of the model."""
        return [line.split("\t") for line in self._lines("--model")]

    def built_members(self) -> list[str]:
        """The members that the library's own documents set, as "Component.name"."""
        return self._lines("--built")

    def _lines(self, option: str) -> list[str]:
        return subprocess.run([self._host, option], capture_output=True, check=True, text=True).stdout.splitlines()

    def answer(self, requests: Iterable[Request]) -> list[Answer]:
        requests = list(requests)
        process = subprocess.run([self._host], input=b"".join(map(_encoded, requests)), capture_output=True)
        if process.returncode != 0 or process.stderr:
            raise AssertionError(f"the host ended with {process.returncode}: {process.stderr.decode(errors='replace')}")
        answers = _Answers(process.stdout)
        result = [answers.next(request.forms) for request in requests]
        if not answers.at_end():
            raise AssertionError("the host answered more than was requested")
        return result


def _counted(content: bytes) -> bytes:
    return struct.pack(">I", len(content)) + content


def _encoded(request: Request) -> bytes:
    parts = [bytes([request.validate]), _counted(request.class_name.encode()), bytes([len(request.steps)])]
    for kind, content in request.steps:
        parts += (kind.encode(), _counted(content))
    parts.append(_counted(request.forms.encode()))
    return b"".join(parts)


class _Answers:
    def __init__(self, content: bytes) -> None:
        self._content = content
        self._position = 0

    def next(self, forms: str) -> Answer:
        steps = self._outcome()
        return Answer(steps, {form: self._outcome() for form in forms})

    def at_end(self) -> bool:
        return self._position == len(self._content)

    def _outcome(self) -> Outcome:
        kind, size = struct.unpack_from(">cI", self._content, self._position)
        start = self._position + 5
        self._position = start + size
        return Outcome(kind.decode(), self._content[start : self._position])


class Python:
    """The program in Python. It builds no documents, and returns the compressed form expanded."""

    def answer(self, request: Request) -> Answer:
        obj = new_object(request.class_name)
        outcome = Outcome(DONE)
        for kind, content in request.steps:
            outcome = self._read(obj, kind, content, request.validate)
            if not outcome.is_done:
                break
        return Answer(outcome, self.write(obj, request.validate, request.forms))

    def write(self, obj: Object, validate: bool, forms: str = FORMS) -> dict[str, Outcome]:
        written: dict[str, Outcome] = {}
        for form in forms:
            written[form] = written["t"] if form == "c" and "t" in written else self._write(obj, form, validate)
        return written

    @staticmethod
    def _read(obj: Object, kind: str, content: bytes, validate: bool) -> Outcome:
        try:
            if kind in "xf":
                xml.read(obj, content, validate)
            elif kind in "tc":
                records.read(obj, content, validate)
            else:
                left = snapshot.read(obj, content, validate)
                return Outcome(DONE, b"ends early" if left is None else b"%d" % left)
        except refusals.Refusal as refusal:
            return _refused(refusal)
        return Outcome(DONE)

    @staticmethod
    def _write(obj: Object, form: str, validate: bool) -> Outcome:
        try:
            if form == "s":
                return Outcome(DONE, snapshot.write(obj))
            written = xml.write(obj, validate) if form == "x" else records.write(obj, validate)
        except refusals.Refusal as refusal:
            return _refused(refusal)
        return Outcome(NOTHING) if written is None else Outcome(DONE, written)


def _refused(refusal: refusals.Refusal) -> Outcome:
    text = refusal.text.encode("utf-8", "replace")
    if isinstance(refusal, refusals.WrongRepresentation):
        return Outcome(REFUSED, text)
    return Outcome(THROWN, type(refusal).__name__.encode() + b"Exception: " + text)


def compressed(plain: Outcome, level: int) -> Outcome:
    return Outcome(DONE, records.compress(plain.content, level)) if plain.is_done else plain


def expanded(compressed: Outcome) -> Outcome:
    """The expanded form of a compressed one with the expected header."""
    if not compressed.is_done:
        return compressed
    word, length = struct.unpack_from(">Ii", compressed.content)
    if word != COMPRESSED_WORD or length != len(compressed.content) - 8:
        raise AssertionError(f"wrong head of a compressed form: {compressed.content[:8].hex(' ')}")
    return Outcome(DONE, records.expand(compressed.content[8:]))
