#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Compares the schema of documents as JSON with what the tool writes and reads: test_json_schema.py TOOL

Needs the package jsonschema (Debian: python3-jsonschema).
"""

from __future__ import annotations

import copy
import json
import random
import re
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

from jsonschema import Draft7Validator

PROJECT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(PROJECT / "tests/interop"))

from random_documents import random_object  # noqa: E402
from tuner_formats import snapshot  # noqa: E402

TOOL = sys.argv.pop(1)
CLASSES = {cls["name"]: cls for cls in json.loads((PROJECT / "share/model.json").read_text(encoding="utf-8"))["classes"]}
SCHEMA = json.loads((PROJECT / "share/tuner-properties.schema.json").read_text(encoding="utf-8"))
VALIDATOR = Draft7Validator(SCHEMA)
DOCUMENT = "TunerProperties"
WRONG = {"text": 5, "boolean": "true", "int32": "5", "int64": "five", "uint64": "-1", "float": "1.5", "double": "nan",
         "enumeration": "receiver", "enumeration list": ["Skan"], "object": [], "object list": {}, "alternative": []}


def accepts(document: object) -> bool:
    return VALIDATOR.is_valid(document)


def is_read(text: str) -> bool:
    """Whether the tool reads it, whatever problems the document has."""
    done = subprocess.run([TOOL, "show", "--format", "json", "-"], input=text.encode(), capture_output=True, check=False)
    return done.returncode == 0


def holding(cls: str, members: object, unset: object = None) -> dict:
    """A document with an object of a class that has these members."""
    if unset is not None:
        members = {**members, "unset": unset}
    if cls == DOCUMENT:
        return {DOCUMENT: members}
    for name, holder in CLASSES.items():
        for row in holder["members"]:
            if row.get("class") == cls:
                return holding(name, {row["name"]: [members] if row["kind"] == "object list" else members})
    raise AssertionError(f"no member holds a {cls}")


def all_members() -> list[tuple[str, dict]]:
    return [(name, row) for name, cls in CLASSES.items() for row in cls["members"]]


def errors(document: object) -> str:
    return "\n".join(f"{list(error.absolute_path)}: {error.message}" for error in VALIDATOR.iter_errors(document))


class Written(unittest.TestCase):
    """What the tool writes is valid."""

    def converted(self, *files: Path, options: tuple[str, ...] = ()) -> list[dict]:
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        subprocess.run([TOOL, "convert", "--to", "json", "--out-dir", folder.name, "--quiet", *options, "--", *files],
                       capture_output=True, check=False)
        return [json.loads(file.read_text(encoding="utf-8")) for file in sorted(Path(folder.name).glob("*.json"))]

    def test_schema_is_valid(self) -> None:
        Draft7Validator.check_schema(SCHEMA)

    def test_examples_are_valid(self) -> None:
        documents = self.converted(*PROJECT.glob("examples/*.xml"))
        self.assertEqual(len(documents), 5)
        for document in documents:
            self.assertEqual(errors(document), "")

    def test_examples_of_the_page_are_valid(self) -> None:
        page = (PROJECT / "docs/json.md").read_text(encoding="utf-8")
        shown = [json.loads(block) for block in re.findall(r"^```json\n(.*?)^```$", page, re.MULTILINE | re.DOTALL)]
        documents = [block for block in shown if DOCUMENT in block] + [
            {DOCUMENT: block} for block in shown if "unset" in block]
        self.assertGreaterEqual(len(documents), 2)
        for document in documents:
            self.assertEqual(errors(document), "")
            self.assertTrue(accepts(document))

    def test_random_documents_in_every_state_are_valid(self) -> None:
        source = random.Random(1)
        with tempfile.TemporaryDirectory() as folder:
            for seed in range(150):
                content = bytearray(snapshot.write(random_object(DOCUMENT, seed, careless=seed % 2 == 1)))
                if seed % 3 > 0:  # the set flags are bits of the content; changes elsewhere may leave no document
                    end = 2 if seed % 3 == 1 else len(content)
                    content[source.randrange(end)] ^= 1 << source.randrange(8)
                (Path(folder) / f"{seed}.tps").write_bytes(content)
            documents = self.converted(*Path(folder).glob("*.tps"), options=("--no-validate",))
        self.assertGreaterEqual(len(documents), 75)
        for document in documents:
            self.assertEqual(errors(document), "")
        text = json.dumps(documents)
        for name in CLASSES.keys() | {"unset", "ChoiceValueItem", "NaN", "-Infinity"}:
            self.assertIn(f'"{name}"', text)


class Authored(unittest.TestCase):
    """What people write is accepted as the tool reads it."""

    def check(self, document: object, expected: bool) -> None:
        text = json.dumps(document, ensure_ascii=False)
        with self.subTest(text):
            self.assertEqual(accepts(document), expected, errors(document))
            self.assertEqual(is_read(text), expected, "the tool")

    def test_members_of_the_document_take_what_the_page_describes(self) -> None:
        for members in (
            {}, {"Version": "1.1"}, {"Version": "0.9"}, {"Version": ""}, {"name": ""}, {"name": None}, {"type": None},
            {"type": "FFP"}, {"type": 3}, {"type": 127}, {"type": -128}, {"quantity": -2147483648},
            {"MaxFFPDelay": 5000000000}, {"MaxFFPDelay": "5000000000"}, {"MaxFFPDelay": 2**64 - 1},
            {"MaxFFPDelay": "18446744073709551615"}, {"MaxFFPDelay": "0"}, {"hwProcessing": False},
            {"StartupModes": {}}, {"StartupModes": {"StartupMode": []}},
            {"StartupModes": {"StartupMode": ["DF", None, 3, 100, "DF"]}}, {"Component": []}, {"Component": [{}]},
            {"BandwidthSelection": [{"Name": "n", "MaxBandwidth": 1}]},
            {"BandwidthSelection": [{"MaxBandwidth": 1.7976931348623157e308}]},
            {"BandwidthSelection": [{"MaxBandwidth": "NaN"}, {"MaxBandwidth": "-Infinity"}, {"MaxBandwidth": "Infinity"}]},
            {"unset": {}}, {"quantity": 1, "unset": {"name": "", "Component": [{}], "StartupModes": {"unset": {}}}},
        ):
            self.check({DOCUMENT: members}, True)

    def test_members_of_the_document_refuse_everything_else(self) -> None:
        for members in (
            {"Version": 1.1}, {"Version": "\u0001"}, {"Version": None}, {"unset": []}, {"unset": {"unset": {}}},
            {"unset": {"nobody": 1}}, {"unset": {"Version": "1.1"}}, {"quantity": 1, "unset": {"quantity": 2}},
            {"type": "receiver"}, {"type": 128}, {"type": -129}, {"quantity": 2147483648}, {"quantity": 1.5},
            {"MaxFFPDelay": -1}, {"MaxFFPDelay": 2**64}, {"MaxFFPDelay": "18446744073709551616"}, {"MaxFFPDelay": "-1"},
            {"MaxFFPDelay": ""}, {"MaxFFPDelay": "05"}, {"MaxFFPDelay": " 5"}, {"MaxFFPDelay": "1e3"},
            {"hwProcessing": None}, {"hwProcessing": 1}, {"StartupModes": []}, {"StartupModes": {"StartupMode": "DF"}},
            {"StartupModes": {"StartupMode": ["df"]}}, {"Component": {}}, {"Component": [None]}, {"Component": None},
            {"BandwidthSelection": [{"MaxBandwidth": "1.5"}]}, {"BandwidthSelection": [{"MaxBandwidth": None}]},
        ):
            self.check({DOCUMENT: members}, False)

    def test_numbers_are_bounded_as_readers_bound_them(self) -> None:
        for cls, value, expected in (
            ("ValueInt", 2147483647, True), ("ValueInt", -2147483649, False),
            ("ValueInt64", -(2**63), True), ("ValueInt64", 2**63, False), ("ValueInt64", str(-(2**63)), True),
            ("ValueInt64", str(2**63 - 1), True), ("ValueInt64", str(2**63), False),
            ("ValueInt64", str(-(2**63) - 1), False),
            ("ValueInt64", "-0", True), ("ValueInt64", "00", False), ("ValueInt64", "9000000000000000000", True),
            ("ValueInt64", "10000000000000000000", False), ("ValueInt64", 1.5, False),
            ("ValueFloat", 3.4028235e38, True), ("ValueFloat", 3.4028235677973362e38, True),
            ("ValueFloat", 3.4028235677973366e38, False), ("ValueFloat", -3.5e38, False), ("ValueFloat", 1e-300, True),
            ("ValueFloat", "NaN", True), ("ValueFloat", "nan", False), ("ValueFloat", "inf", False),
            ("SelectionItem", 1e300, True),
        ):
            self.check(holding(cls, {"value": value}), expected)

    def test_items_take_a_choice_by_name_or_number(self) -> None:
        for item, expected in (
            ({"ChoiceValueItem": "ValueInt", "ValueInt": {"id": "i", "value": 1}}, True), ({"ValueInt": {}}, True),
            ({"ChoiceValueItem": None}, True), ({"ChoiceValueItem": 2, "ValueInt": {}}, True),
            ({"ChoiceValueItem": 255}, True),
            ({"ChoiceValueItem": "ValueInt", "ValueInt": {}, "ValueFloat": {}}, True),
            ({"ChoiceValueItem": "ValueInt", "unset": {"ValueInt": {"value": 3}}}, True),
            ({"ChoiceValueItem": 256}, False), ({"ChoiceValueItem": -1}, False),
            ({"ChoiceValueItem": "ValueDecimal"}, False),
            ({"ValueDecimal": {}}, False), ({"unset": {"ChoiceValueItem": "ValueInt"}}, False), ({"ValueInt": None}, False),
        ):
            self.check(holding("ValueItem", item), expected)

    def test_documents_that_are_not_one_object_are_refused(self) -> None:
        for document in ({}, {DOCUMENT: []}, {DOCUMENT: None}, {DOCUMENT: {}, "other": 1}, {"tunerproperties": {}}):
            self.check(document, False)

    def test_misspelt_members_are_refused(self) -> None:
        for cls, row in all_members():
            self.check(holding(cls, {row["name"] + "x": None}), False)

    def test_values_of_another_type_are_refused(self) -> None:
        for cls, row in all_members():
            self.check(holding(cls, {row["name"]: copy.deepcopy(WRONG[row["kind"]])}), False)
            self.check(holding(cls, {}, unset={row["name"]: copy.deepcopy(WRONG[row["kind"]])}), False)

    def test_members_are_not_both_unset_and_set(self) -> None:
        right = {"text": "t", "boolean": True, "int32": 5, "int64": 5, "uint64": 5, "float": 1.5, "double": 1.5,
                 "enumeration": "FFP", "enumeration list": ["Scan"], "object": {}, "object list": [], "alternative": {}}
        for cls, row in all_members():
            member = {row["name"]: right[row["kind"]]}
            self.check(holding(cls, member), True)
            self.check(holding(cls, {}, unset=member), True)
            self.check(holding(cls, member, unset=member), False)

    def test_a_document_may_name_its_schema(self) -> None:
        self.assertTrue(accepts({"$schema": "tuner-properties.schema.json", DOCUMENT: {}}))
        self.assertFalse(accepts({"$schema": 7, DOCUMENT: {}}))
        self.assertFalse(accepts({DOCUMENT: {"$schema": "tuner-properties.schema.json"}}))


if __name__ == "__main__":
    unittest.main()
