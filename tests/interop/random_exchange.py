#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Exchanges random documents with the library, in all encodings, and checks that both sides write the same bytes.

Documents made here are written here in each encoding; both sides read that and write it in each encoding. Documents
made by the library are written there and read by both sides.
"""

from __future__ import annotations

from exchange import Exchange, MemoizingPython, arguments, comparable
from host import Answer, Library, Outcome, Python, Request, compressed, expanded
from random_documents import random_object
from tuner_formats.classes import CLASSES

BATCH = 250  # documents for each run of the host


class Document:
    """The number of a document determines its class, its completeness and its seed."""

    def __init__(self, number: int) -> None:
        self.number = number
        others = [name for name in CLASSES if name != "TunerProperties"]
        self.class_name = "TunerProperties" if number % 3 < 2 else others[number // 3 % len(others)]
        self.is_whole = number % 10 < 6
        self.readers_validate = self.is_whole or number % 10 < 8  # careless documents are then rejected

    def __str__(self) -> str:
        return f"document {self.number} ({self.class_name}, {'whole' if self.is_whole else 'careless'})"


def made_by_python(documents: list[Document]) -> list[dict[str, Outcome]]:
    made = []
    for document in documents:
        obj = random_object(document.class_name, document.number, not document.is_whole)
        forms = Python().write(obj, document.is_whole)
        made.append({**forms, "c": compressed(forms["c"], level=document.number % 11 - 1)})
    return made


def made_by_library(documents: list[Document], library: Library) -> list[dict[str, Outcome]]:
    answers = library.answer(Request(document.class_name, document.is_whole, (("g", b"%d" % document.number),))
                             for document in documents)
    return [answer.written for answer in answers]


def exchange_written(documents: list[Document], made: list[dict[str, Outcome]], library: Library,
                     exchange: Exchange) -> None:
    """Lets both sides read a document that one of them wrote, and compares the documents that they write."""
    transfers = [(document, forms, form, Request(document.class_name, document.readers_validate,
                                                 ((form, outcome.content),)))
                 for document, forms in zip(documents, made, strict=True)
                 for form, outcome in forms.items() if outcome.is_done]
    answers = library.answer(request for *_, request in transfers)
    python = MemoizingPython()
    for (document, forms, form, request), answer in zip(transfers, answers, strict=True):
        own = python.answer(request)
        exchange.compare(f"{document}, read from '{form}'", answer, own)
        if document.is_whole and form == "s":
            same(document, own, forms)


def same(document: Document, answer: Answer, original: dict[str, Outcome]) -> None:
    """A snapshot of a whole document loses nothing."""
    for form, outcome in answer.written.items():
        before = expanded(original[form]) if form == "c" else original[form]
        if comparable(outcome) != comparable(before):
            raise AssertionError(f"{document} does not survive a snapshot, as '{form}' shows")


def main() -> None:
    parser = arguments(__doc__)
    parser.add_argument("--made-by", choices=("python", "library"), required=True)
    parser.add_argument("--first", type=int, default=0, help="the number of the first document")
    parser.add_argument("--count", type=int, default=BATCH)
    options = parser.parse_args()

    exchange = Exchange()
    library = Library(options.host)
    numbers = range(options.first, options.first + options.count)
    for start in numbers[::BATCH]:
        documents = [Document(number) for number in range(start, min(start + BATCH, numbers.stop))]
        made = made_by_python(documents) if options.made_by == "python" else made_by_library(documents, library)
        exchange_written(documents, made, library, exchange)
        exchange.documents += len(documents)
    print(f"Made by {options.made_by}: {exchange}")

    # Nearly all can be written in all four forms; only some careless ones cannot.
    fewest = 3.9 * options.count if options.count >= BATCH else 1
    if exchange.documents != options.count or exchange.transfers < fewest:
        raise SystemExit("fewer documents were exchanged than there should be")


if __name__ == "__main__":
    main()
