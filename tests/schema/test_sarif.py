#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Compares what the tool writes in SARIF with a schema of those parts of the format that it uses: test_sarif.py TOOL

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
from collections.abc import Iterator
from pathlib import Path

from jsonschema import Draft7Validator

PROJECT = Path(__file__).resolve().parents[2]
TOOL = sys.argv.pop(1)
VALIDATOR = Draft7Validator(json.loads(Path(__file__).with_name("sarif.schema.json").read_text(encoding="utf-8")))
EXAMPLES = sorted((PROJECT / "examples").glob("*.xml"))
OPTIONAL = {"region", "logicalLocations"}


def sarif(folder: str, *arguments: str | bytes) -> dict:
    done = subprocess.run([TOOL, "lint", "--format", "sarif", *arguments], cwd=folder, capture_output=True, check=False)
    return json.loads(done.stdout)


def damaged(xml: str, chance: random.Random) -> str:
    """The document with some attributes removed, misspelt, or with another value."""

    def change(attribute: re.Match) -> str:
        name, value = attribute.groups()
        return chance.choice(["", f' x{name}="{value}"', f' {name}=""', f' {name}="\u200d{value}"', f' {name}="1.2345"'])

    return re.sub(r' (\w+)="([^"]*)"', lambda found: change(found) if chance.random() < 0.1 else found[0], xml)


def objects_in(value: object) -> Iterator[dict]:
    if isinstance(value, dict):
        yield value
    for part in value.values() if isinstance(value, dict) else value if isinstance(value, list) else []:
        yield from objects_in(part)


def of_another_type(value: object) -> object:
    return 7 if isinstance(value, (str, bool)) else "7" if isinstance(value, int) else {} if isinstance(value, list) else []


class Sarif(unittest.TestCase):
    def setUp(self) -> None:
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.folder = scratch.name

    def write(self, name: str | bytes, content: str) -> None:
        folder = self.folder.encode() if isinstance(name, bytes) else self.folder
        slash = b"/" if isinstance(name, bytes) else "/"
        with open(folder + slash + name, "w", encoding="utf-8") as file:
            file.write(content)

    def check(self, document: dict) -> list:
        """Whether the document is what the schema describes, and names the rules of its results."""
        errors = [f"{list(error.absolute_path)}: {error.message}" for error in VALIDATOR.iter_errors(document)]
        self.assertEqual(errors, [])
        run = document["runs"][0]
        rules = [rule["id"] for rule in run["tool"]["driver"]["rules"]]
        self.assertEqual(len(set(rules)), len(rules))
        for result in run["results"]:
            self.assertEqual(rules[result["ruleIndex"]], result["ruleId"])
        return run["results"]

    def sample(self) -> dict:
        """A document that has everything: results with and without location, and notifications of both levels."""
        self.write("bad.xml", '<TunerProperties Version="1.1" a="" b="" hwProcessing=""><Component/></TunerProperties>')
        subprocess.run([TOOL, "convert", "--no-validate", "bad.xml", "bad.tpb"], cwd=self.folder, check=True)
        document = sarif(self.folder, "--max-problems", "1", "bad.xml", "bad.tpb", "none.xml")
        notifications = document["runs"][0]["invocations"][0]["toolExecutionNotifications"]
        self.assertEqual({each["level"] for each in notifications}, {"error", "warning"})
        return document

    def test_examples_are_reported_as_the_format_demands(self) -> None:
        self.assertGreater(len(self.check(sarif(self.folder, *map(str, EXAMPLES)))), 0)

    def test_damaged_documents_are_reported_as_the_format_demands(self) -> None:
        chance = random.Random(7)
        names = [f"{number}.xml" for number in range(40)]
        for name in names:
            self.write(name, damaged(chance.choice(EXAMPLES).read_text(encoding="utf-8"), chance))
        results = self.check(sarif(self.folder, *names))
        self.assertGreater(len({result["ruleId"] for result in results}), 5)
        self.check(sarif(self.folder, "--error", "unknown-attribute", "--max-problems", "2", *names))

    def test_documents_of_every_form_are_reported_as_the_format_demands(self) -> None:
        xml = (PROJECT / "examples/ffp.xml").read_text(encoding="utf-8").replace('optional="true"', "", 1)
        self.write("a.xml", xml.replace('value="', 'value="1e9', 1))
        names = ["a.tpb", "a.tpz", "a.json"]
        for name in names:
            subprocess.run([TOOL, "convert", "--no-validate", "a.xml", name], cwd=self.folder, check=True)
        results = self.check(sarif(self.folder, *names))
        for name in names:
            self.assertIn(name, [each["locations"][0]["physicalLocation"]["artifactLocation"]["uri"] for each in results])

    def test_names_of_files_are_references(self) -> None:
        for name in ("a b.xml", "a:b?c#d.xml", "\u00e4%20.xml", b"\xff.xml"):
            self.write(name, "<TunerProperties")
            self.check(sarif(self.folder, "--", name))
        self.write("c.xml", "<TunerProperties")
        self.check(sarif(self.folder, f"{self.folder}/c.xml"))

    def test_schema_demands_every_member(self) -> None:
        sample = self.sample()
        self.check(sample)
        count = 0
        for number, members in enumerate(list(objects_in(sample))):
            for key in members:
                for change in ("without", "of another type"):
                    if change == "without" and key in OPTIONAL:
                        continue
                    changed = copy.deepcopy(sample)
                    target = list(objects_in(changed))[number]
                    if change == "without":
                        del target[key]
                    else:
                        target[key] = of_another_type(target[key])
                    self.assertFalse(VALIDATOR.is_valid(changed), f"{key}: {change}")
                    count += 1
        self.assertGreater(count, 200)

    def test_schema_refuses_every_other_member(self) -> None:
        sample = self.sample()
        for number in range(len(list(objects_in(sample)))):
            changed = copy.deepcopy(sample)
            list(objects_in(changed))[number]["other"] = 1
            self.assertFalse(VALIDATOR.is_valid(changed))

    def test_schema_refuses_other_values(self) -> None:
        text = json.dumps(self.sample())
        for before, after in (('"utf16CodeUnits"', '"bytes"'), ('"2.1.0"', '"2.0.0"'), ('"warning"', '"severe"'),
                              ('"startLine": 1', '"startLine": 0'), ('"bad.xml"', '"b d.xml"'), ('"bad.xml"', '"b%zz"'),
                              ('"kind": "member"', '"kind": "class"')):
            self.assertIn(before, text)
            self.assertFalse(VALIDATOR.is_valid(json.loads(text.replace(before, after))), after)


if __name__ == "__main__":
    unittest.main()
