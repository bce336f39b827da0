#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Compares docs/formats.md with the program that was written from it, and its examples with both programs."""

from __future__ import annotations

import re
from pathlib import Path

import mutations
from exchange import ExchangeTest
from host import Request
from tuner_formats import refusals
from tuner_formats.classes import CLASSES, COMPRESSED_WORD, MODES, TUNER_TYPES, Member

PAGE = (Path(__file__).parents[2] / "docs" / "formats.md").read_text(encoding="utf-8")


def chapter(title: str) -> str:
    """The text under a heading, to the next one of the same level."""
    marks = re.search(f"^(#+) {re.escape(title)}$", PAGE, re.MULTILINE)
    assert marks, f"the page has no chapter {title}"
    return re.split(f"^{marks[1]} ", PAGE[marks.end() :], maxsplit=1, flags=re.MULTILINE)[0]


def rows(text: str) -> list[list[str]]:
    """The rows of the first table, without its header."""
    table = re.search(r"^\|.*\n\|[-| ]+\n((?:\|.*\n)+)", text, re.MULTILINE)
    assert table, "there is no table"
    return [[cell.strip().strip("`") for cell in line.strip("|").split("|")] for line in table[1].splitlines()]


def documented_row(member: Member) -> list[str]:
    """The cells of a member's row in the page."""
    if member.is_list or member.type == "modes":
        default = "empty"
    elif member.item_class:
        default = "new"
    elif member.default is None:
        default = "null"
    else:
        default = "false" if member.default is False else f"{member.default:g}"
    return [str(member.bit), member.name, member.type, default, "yes" if member.mandatory else "no", member.xml,
            f"0x{member.tag:08X}", member.written, member.snapshot]


def blocks(text: str, language: str) -> list[str]:
    return re.findall(rf"^```{language}\n(.*?)^```$", text, re.MULTILINE | re.DOTALL)


def bytes_of(block: str) -> bytes:
    """The bytes at the start of each line; two blanks and a description follow."""
    return bytes.fromhex(" ".join(line.split("  ")[0] for line in block.splitlines()))


def _pattern(row: str) -> re.Pattern[str]:
    """The texts that match a row of the refusals."""
    text = re.escape(row.replace("` and the parser's words", "WORDS"))
    for placeholder, replacement in {
        "SOURCE": "(?:XML text|binary data)", "WORDS": "[^']*", r"\b(?:LINE|COLUMN|N|M|LENGTH|SIZE|LIMIT)\b": r"\d+",
        "FOUND|EXPECTED": "[0-9A-F]{8}", r"\b(?:X|CLASS)\b": r"\w+",
    }.items():
        text = re.sub(placeholder, lambda _: replacement, text)
    return re.compile(text)


class Page(ExchangeTest):
    def test_the_tables_are_those_of_the_program(self) -> None:
        for cls in CLASSES.values():
            with self.subTest(cls.name):
                text = chapter(cls.name)
                self.assertEqual(rows(text), [documented_row(member) for member in cls.members])
                self.assertIn(f"Identifier `0x{cls.identifier:08X}`", text)
        self.assertEqual(re.findall(r"^### (\w+)$", chapter("Classes"), re.MULTILINE), list(CLASSES))

    def test_the_names_are_those_of_the_program(self) -> None:
        names = rows(chapter("Names"))
        self.assertEqual(tuple(row[2] for row in names), MODES)
        self.assertEqual(tuple(row[1] for row in names if row[1]), TUNER_TYPES)

    def test_every_refusal_is_documented(self) -> None:
        documented = chapter("Refusals")
        for refusal in (
            refusals.not_set("CLASS", "MEMBER"), refusals.no_tuner_type(), refusals.incomplete_item("CLASS", "ITEM"),
            refusals.item_without_data("CLASS", "ITEM"), refusals.empty_boolean("CLASS", "MEMBER"),
            refusals.unknown_element("TunerProperties", "X"), refusals.wrong_length("CLASS"),
        ):
            self.assertIn(f"| `{refusal.text}` |", documented)
            self.assertIn(f"| `{type(refusal).__name__}Exception` |", documented)
        for refusal in (refusals.nothing_chosen(), refusals.chosen_not_set("ValueInt"),
                        refusals.chosen_without_data("ValueInt")):
            self.assertIn(f"| `{refusal.text}` |", chapter("Validating"))

    def test_every_refusal_of_a_document_is_documented(self) -> None:
        value = mutations.record(0x89537E94, b"\1")
        too_long = mutations.record(0xC8FC2661, mutations.record(0x89537E94, b"\1abcd"))
        many = b"".join(b' a%d=""' % number for number in range(1025))
        documents = (
            ("t", b"1234567"), ("t", mutations.record(0xC8FC2662, value)), ("t", b"\xC8\xFC\x26\x61\0\0\0\1"),
            ("t", too_long), ("c", mutations.record(COMPRESSED_WORD, b"\xFF\0\0\0abcd")),
            ("c", mutations.record(COMPRESSED_WORD, b"\0\0\0\1abcd")), ("x", b"<ValueInt/>"),
            ("x", b"<!DOCTYPE a []><ValueBoolean/>"), ("x", b"<ValueBoolean" + many + b"/>"),
            ("x", b"<ValueBoolean"),
        )
        answers = [self.run_both([Request("ValueBoolean", False, (step,), forms="")])[0].steps for step in documents]
        (unwritable,) = self.run_both([Request("StringItem", False, (("s", b"\1\0\0\0\2\0\1"),), forms="x")])
        texts = [answer.content.decode() for answer in (*answers, unwritable.written["x"])]

        documented = {row[0]: _pattern(row[0]) for row in rows(chapter("Refusals")) if row[2] == "*false*"}
        missing = [text for text in texts
                   if not any(pattern.fullmatch(text) for pattern in documented.values())]
        self.assertEqual(missing, [])
        not_seen = [row for row, pattern in documented.items() if not any(map(pattern.fullmatch, texts))]
        # Those of pipes, of saving and of a gigabyte do not apply to documents in memory; those of declarations, encodings,
        # document types and long names only to the library's parser.
        self.assertEqual(len(not_seen), 10, not_seen)

    def test_both_sides_write_the_examples_byte_for_byte(self) -> None:
        examples = chapter("Examples").split("\n### ")[1:]
        self.assertGreaterEqual(len(examples), 3)
        for example in examples:
            with self.subTest(example.splitlines()[0]):
                (xml,) = blocks(example, "xml")
                representation, snapshot = map(bytes_of, blocks(example, "hex"))
                class_name = re.findall(r"<(\w+)", xml)[0]
                for form, content in {"x": xml.encode(), "t": representation, "s": snapshot}.items():
                    (answer,) = self.run_both([Request(class_name, True, ((form, content),))])
                    self.assertTrue(answer.steps.is_done, answer.steps)
                    self.assertEqual(answer.written["x"].content, xml.encode())
                    self.assertEqual(answer.written["t"].content.hex(" "), representation.hex(" "))
                    self.assertEqual(answer.written["s"].content.hex(" "), snapshot.hex(" "))

    def test_the_document_shown_is_written_as_shown(self) -> None:
        (xml,) = blocks(chapter("The document"), "xml")
        (answer,) = self.run_both([Request("TunerProperties", False, (("x", xml.encode()),))])
        self.assertEqual(answer.written["x"].content.decode(), xml)


if __name__ == "__main__":
    Page.run_all(__doc__, least_documents=10)
