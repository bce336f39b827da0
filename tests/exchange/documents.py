#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Exchanges documents between two builds of the library, in all forms: both must write the same bytes of the same
document, and the same bytes again of what the other one has written.

The documents are the examples, some of every class, and random descriptions of tuners, whole and careless ones.
"""

from __future__ import annotations

import argparse
import pathlib
import sys
from collections import Counter

sys.path.insert(0, str(pathlib.Path(__file__).parent.parent / "interop"))

from host import Answer, Library, Request  # noqa: E402
from tuner_formats.classes import CLASSES  # noqa: E402

ROOT = "TunerProperties"
BATCH = 500
OF_EACH_CLASS = 100


def forms_of(class_name: str) -> str:
    return "xtcsj" if class_name == ROOT else "xtcs"


class Document:
    """How a document is made: from an example, or by the library from a seed."""

    def __init__(self, name: str, class_name: str, is_whole: bool, step: tuple[str, bytes]) -> None:
        self.name = name
        self.class_name = class_name
        self.is_whole = is_whole
        self.step = step

    def request(self, step: tuple[str, bytes], validates: bool) -> Request:
        return Request(self.class_name, validates, (step,), forms_of(self.class_name))


def documents(examples: list[pathlib.Path], count: int) -> list[Document]:
    result = [Document(path.name, ROOT, False, ("x", path.read_bytes())) for path in examples]
    for class_name in CLASSES:
        for seed in range(OF_EACH_CLASS):
            is_whole = seed % 2 == 0
            result.append(Document(f"{class_name} {seed}", class_name, is_whole, ("g", b"class %d" % seed)))
    result += [Document(f"random {seed}", ROOT, seed % 10 < 7, ("g", b"%d" % seed)) for seed in range(count)]
    return result


class Exchange:
    def __init__(self, builds: list[Library]) -> None:
        self._builds = builds
        self.differences: list[str] = []
        self.written: Counter[str] = Counter()
        self.read_again: Counter[str] = Counter()
        self.unchanged: Counter[str] = Counter()

    def run(self, batch: list[Document]) -> None:
        made = [build.answer(document.request(document.step, document.is_whole) for document in batch)
                for build in self._builds]
        self._compare(batch, "written", made[0], made[1])
        for answer in made[0]:
            self.written.update(form for form, outcome in answer.written.items() if outcome.is_done)
        self._swap(batch, made)

    def _swap(self, batch: list[Document], made: list[list[Answer]]) -> None:
        """Each build reads what the other one has written."""
        parcels = [(index, form) for index, answer in enumerate(made[0])
                   for form, outcome in answer.written.items()
                   if outcome.is_done and made[1][index].written[form].is_done]
        answers = []
        for build, others in zip(self._builds, reversed(made), strict=True):
            answers.append(build.answer(
                batch[index].request((form, others[index].written[form].content), batch[index].is_whole)
                for index, form in parcels))
        readers = [batch[index] for index, _ in parcels]
        self._compare(readers, "read and written again", answers[0], answers[1])
        # Not every class reads all that it writes, but both builds must read and write the same.
        for (index, form), answer in zip(parcels, answers[1], strict=True):
            is_same = answer.written[form] == made[0][index].written[form]
            self.read_again[form] += answer.steps.is_done
            self.unchanged[form] += answer.steps.is_done and is_same

    def _compare(self, batch: list[Document], what: str, one: list[Answer], other: list[Answer]) -> None:
        for document, left, right in zip(batch, one, other, strict=True):
            if left.steps != right.steps:
                self.differences.append(f"{document.name}, {what}: {left.steps} and {right.steps}")
            for form, outcome in left.written.items():
                if outcome != right.written[form]:
                    self.differences.append(f"{document.name}, {what}: '{form}' differs")


def main() -> None:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("hosts", nargs=2, help="the host programs of the two builds")
    parser.add_argument("--examples", type=pathlib.Path, required=True, help="the folder of the examples")
    parser.add_argument("--count", type=int, default=10_000, help="how many random documents")
    options = parser.parse_args()

    examples = sorted(options.examples.glob("*.xml"))
    if not examples:
        sys.exit(f"there are no examples in {options.examples}")
    exchange = Exchange([Library(host) for host in options.hosts])
    everything = documents(examples, options.count)
    for start in range(0, len(everything), BATCH):
        exchange.run(everything[start : start + BATCH])

    def listed(numbers: Counter[str]) -> str:
        return ", ".join(f"{number} '{form}'" for form, number in sorted(numbers.items()))
    print(f"{len(everything)} documents, {len(examples)} of them examples\nwritten: {listed(exchange.written)}\n"
          f"read by the other build: {listed(exchange.read_again)}\n"
          f"and written again as before: {listed(exchange.unchanged)}")
    for difference in exchange.differences[:20]:
        print(difference)
    if exchange.differences:
        sys.exit(f"{len(exchange.differences)} differences")
    # Only careless documents cannot be written in a form, or are refused by the reader.
    whole = sum(document.is_whole for document in everything)
    fewest = {form: sum(document.is_whole for document in everything if form in forms_of(document.class_name))
              for form in "xtcsj"}
    for form, number in fewest.items():
        if min(exchange.written[form], exchange.read_again[form]) < number:
            sys.exit(f"of {whole} whole documents, too few were exchanged as '{form}'")
        # JSON has all that it reads; not every class reads all that it writes in another form.
        least = exchange.read_again[form] if form == "j" else exchange.read_again[form] / 2
        if exchange.unchanged[form] < least:
            sys.exit(f"too few documents were written again as before as '{form}'")


if __name__ == "__main__":
    main()
