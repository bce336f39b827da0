#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Compares every list of classes and members that must be complete with the library's own model."""

from __future__ import annotations

import re
import xml.etree.ElementTree as ElementTree
from pathlib import Path

from exchange import ExchangeTest
from tuner_formats.classes import ATTRIBUTE, CLASSES, COMPRESSED_WORD, MODES, TUNER_TYPES, VERSION_TAG, Member

PROJECT = Path(__file__).parents[2]
XS = "{http://www.w3.org/2001/XMLSchema}"


def source(path: str) -> str:
    return (PROJECT / path).read_text(encoding="utf-8")


def kind(member: Member) -> str:
    if member.is_list:
        return "list"
    if member.item_class:
        return "alternative" if member.written == "when chosen and set" else "object"
    return member.type


def default(member: Member) -> str:
    if member.type == "tuner type" or member.default is None:
        return ""
    return str(member.default).lower() if isinstance(member.default, bool) else f"{member.default:g}"


class Lists(ExchangeTest):
    def test_the_tables_are_the_model(self) -> None:
        shown: dict[str, list[list[str]]] = {}
        for class_name, *columns in self.library.model():
            shown.setdefault(class_name, []).append(columns)
        self.assertEqual(sorted(shown), sorted(CLASSES))
        for cls in CLASSES.values():
            with self.subTest(cls.name):
                names = {"tuner type": " ".join(TUNER_TYPES), "modes": " ".join(MODES)}
                self.assertEqual(shown[cls.name], [
                    [member.name, kind(member), default(member), "yes" if member.mandatory else "no",
                     member.item_class or names.get(member.type, "")]
                    for member in cls.written_order
                ])

    def test_the_documents_that_the_library_makes_set_every_member(self) -> None:
        members = [f"{cls.name}.{member.name}" for cls in CLASSES.values() for member in cls.members]
        self.assertEqual(sorted(self.library.built_members()), sorted(members))

    def test_the_schema_declares_every_member(self) -> None:
        schema = ElementTree.fromstring(source("share/tuner-properties.xsd"))
        self.assertEqual({element.get("name") for element in schema.findall(f"{XS}element")}, set(CLASSES))
        groups = {group.get("name"): group for group in schema.findall(f"{XS}attributeGroup")}
        types = {declared.get("name"): declared for declared in schema.findall(f"{XS}complexType")}
        for cls in CLASSES.values():
            with self.subTest(cls.name):
                declared = types[f"{cls.name}Type"]
                parts = [*(groups[use.get("ref")] for use in declared.iter(f"{XS}attributeGroup")), declared]
                attributes = [attribute.get("name") for part in parts for attribute in part.iter(f"{XS}attribute")]
                version = ["Version"] if cls.has_version else []
                self.assertEqual(attributes, version + [member.name for member in cls.attributes])
                elements = [element.get("name") or element.get("ref") for element in declared.iter(f"{XS}element")]
                self.assertEqual(elements, [member.name for member in cls.elements])

    def test_the_fuzzer_knows_every_tag(self) -> None:
        tags = {member.tag for cls in CLASSES.values() for member in cls.members} | {VERSION_TAG}
        self.assertEqual({int(tag, 16) for tag in re.findall("0x([0-9A-F]{8})", source("fuzz/Tags.inc"))}, tags)

        words = tags | {cls.identifier for cls in CLASSES.values()} | {COMPRESSED_WORD}
        entries = re.findall(r'^"((?:\\x[0-9A-F]{2}){4})"$', source("fuzz/dictionaries/records.dict"), re.MULTILINE)
        self.assertLessEqual(words, {int(entry.replace("\\x", ""), 16) for entry in entries})

    def test_the_fuzzer_knows_every_name(self) -> None:
        entries = set(source("fuzz/dictionaries/xml.dict").splitlines())
        for cls in CLASSES.values():
            self.assertLessEqual({f'"<{cls.name}>"', f'"</{cls.name}>"', f'"<{cls.name}/>"'}, entries)
            for member in cls.members:
                expected = rf'" {member.name}=\"\""' if member.xml == ATTRIBUTE else f'"<{member.name}>"'
                self.assertIn(expected, entries)
        for name in (*TUNER_TYPES, *MODES):
            self.assertIn(f'"{name}"', entries)

    def test_every_class_has_a_text_for_tests(self) -> None:
        header = source("include/jobxml/QtTest.h")
        self.assertEqual(set(re.findall(r"char \*toString\(const JobXml::(\w+) &", header)), set(CLASSES))

    def test_every_name_has_a_translation(self) -> None:
        names = {*TUNER_TYPES, *MODES, *(member.name for member in CLASSES["ValueItem"].members)}
        for language in ("de", "en"):
            catalog = ElementTree.fromstring(source(f"translations/TunerProperties_{language}.ts"))
            translated = {message.findtext("source") for message in catalog.iter("message")
                          if message.findtext("translation")}  # fmt: skip
            self.assertEqual(translated, names, f"translations/TunerProperties_{language}.ts")


if __name__ == "__main__":
    Lists.run_all(__doc__, least_documents=0)
