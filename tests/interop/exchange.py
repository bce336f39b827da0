# SPDX-License-Identifier: MIT
"""The base of the tests of the exchange: compares the answers of both programs, and counts them."""

from __future__ import annotations

import argparse
import re
import sys
import unittest
from collections import Counter
from dataclasses import dataclass, field
from typing import Iterable

from host import DONE, FORMS, REFUSED, Answer, Library, Outcome, Python, Request, expanded
from tuner_formats import snapshot
from tuner_formats.objects import Object

_PLACE = re.compile(rb"^(XML text|/[^:]*):\d+:\d+: ")
_OWN_WORDS = (b"the root element is ", b"the document type has ", b"an element has more than ")
_LINE = re.compile(rb"in or just above line \d+ ")


def comparable(outcome: Outcome) -> Outcome:
    """An outcome without the parts that may differ: locations, and the messages of the XML parsers."""
    if outcome.kind != REFUSED:
        return outcome
    text = _LINE.sub(b"in or just above line N ", outcome.content)
    if place := _PLACE.match(text):
        words = text[place.end() :]
        text = b"XML text: " + (words if words.startswith(_OWN_WORDS) else b"not well-formed")
    return Outcome(REFUSED, text)


@dataclass
class Exchange:
    """Compares answers and counts them."""

    documents: int = 0
    transfers: int = 0  # of one document in one form, written by one side and read and written again by both
    bytes: int = 0
    outcomes: Counter[str] = field(default_factory=Counter)

    def compare(self, what: str, library: Answer, python: Answer) -> None:
        """Fails unless both sides have the same answer."""
        self.compare_outcomes(f"{what}: reading", library.steps, python.steps)
        if library.written.keys() != python.written.keys():
            raise AssertionError(f"{what}: not the same forms")
        for form in library.written:
            of_library = expanded(library.written[form]) if form == "c" else library.written[form]
            self.compare_outcomes(f"{what}, then written as '{form}'", of_library, python.written[form])
        self.transfers += 1

    def compare_outcomes(self, what: str, library: Outcome, python: Outcome) -> None:
        expected, found = comparable(library), comparable(python)
        if expected != found:
            raise AssertionError(f"{what}\n  library {_shown(expected, found)}\n  Python  {_shown(found, expected)}")
        self.bytes += len(expected.content)
        self.outcomes[expected.kind] += 1

    def __str__(self) -> str:
        kinds = ", ".join(f"{number} {name}" for kind, name in
                          (("d", "done"), ("n", "nothing to write"), ("r", "refused"), ("t", "thrown"))
                          if (number := self.outcomes[kind]))
        return (f"{self.documents} documents, {self.transfers} transfers, {self.bytes} bytes the same on both sides"
                f" (outcomes: {kinds})")


def _shown(outcome: Outcome, other: Outcome) -> str:
    """The part of an outcome that differs from another one."""
    place = next((i for i, (left, right) in enumerate(zip(outcome.content, other.content)) if left != right),
                 min(len(outcome.content), len(other.content)))
    start = max(place - 60, 0)
    return (f"'{outcome.kind}', {len(outcome.content)} bytes, from {start} on:"
            f" {outcome.content[start : place + 60]!r} = {outcome.content[start : place + 60].hex(' ')}")


class MemoizingPython(Python):
    """Writes objects with equal snapshots only once: a snapshot contains everything that is written of a new object."""

    def __init__(self) -> None:
        self._known: dict[tuple[str, bytes, bool, str], dict[str, Outcome]] = {}

    def write(self, obj: Object, validate: bool, forms: str = FORMS) -> dict[str, Outcome]:
        state = snapshot.write(obj)
        key = (obj.cls.name, state, validate, forms)
        if key not in self._known:
            written = super().write(obj, validate, forms.replace("s", ""))
            self._known[key] = {**written, "s": Outcome(DONE, state)} if "s" in forms else written
        return self._known[key]


def arguments(description: str | None) -> argparse.ArgumentParser:
    parser = argparse.ArgumentParser(description=description, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--host", required=True, help="the program interop_host")
    return parser


class ExchangeTest(unittest.TestCase):
    """Tests that send both sides the same requests."""

    library: Library
    exchange: Exchange

    @classmethod
    def run_all(cls, description: str | None, least_documents: int) -> None:
        """Runs every test of the program. Fails if they exchanged fewer documents."""
        options, others = arguments(description).parse_known_args()
        cls.library = Library(options.host)
        cls.exchange = Exchange()
        program = unittest.main(argv=[sys.argv[0], *others], exit=False)
        print(f"Exchanged: {cls.exchange}")
        if not program.result.wasSuccessful() or program.result.testsRun == 0:
            raise SystemExit(1)
        if not others and cls.exchange.documents < least_documents:
            raise SystemExit(f"only {cls.exchange.documents} documents were exchanged, not {least_documents}")

    def run_both(self, requests: Iterable[Request]) -> list[Answer]:
        """Sends the requests to both sides. Returns the answers, which must be the same."""
        requests = list(requests)
        answers = []
        for request, answer in zip(requests, self.library.answer(requests), strict=True):
            own = Python().answer(request)
            steps = ", then ".join(f"{kind} {content[:300]!r}" for kind, content in request.steps)
            self.exchange.compare(f"{request.class_name}, validate={request.validate}: {steps}", answer, own)
            self.exchange.documents += 1
            answers.append(own)
        return answers
