#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Compares what an editor offers with the model: names, values and documentation in the schemas for authors."""

from __future__ import annotations

import json
import re
import unittest
import xml.etree.ElementTree as ElementTree
from pathlib import Path

PROJECT = Path(__file__).resolve().parents[2]
XS = "{http://www.w3.org/2001/XMLSchema}"


def source(path: str) -> str:
    return (PROJECT / path).read_text(encoding="utf-8")


CLASSES = {cls["name"]: cls for cls in json.loads(source("share/model.json"))["classes"]}
MODES = CLASSES["StartupModes"]["members"][0]["names"]
TUNER_TYPES = next(row["names"] for row in CLASSES["TunerProperties"]["members"] if row["name"] == "type")


class InXml(unittest.TestCase):
    """share/tuner-properties-author.xsd"""

    @classmethod
    def setUpClass(cls) -> None:
        cls.schema = ElementTree.fromstring(source("share/tuner-properties-author.xsd"))
        cls.groups = {group.get("name"): group for group in cls.schema.findall(f"{XS}group")}
        cls.types = {declared.get("name"): declared for declared in cls.schema
                     if declared.tag in (f"{XS}complexType", f"{XS}simpleType")}

    def offered(self, name: str, tag: str) -> dict[str, str]:
        """The names that the element of a class offers, with their types; null for the elements of classes."""
        declared = self.types[f"{name}Type"]
        parts = [declared, *(self.groups[use.get("ref")] for use in declared.iter(f"{XS}group"))]
        return {each.get("name") or each.get("ref"): each.get("type") for part in parts for each in part.iter(f"{XS}{tag}")}

    def values_of(self, type_name: str) -> dict[str, str]:
        return {value.get("value"): value.findtext(f"{XS}annotation/{XS}documentation")
                for value in self.types[type_name].iter(f"{XS}enumeration")}

    def test_every_element_offers_its_members_in_the_forms_that_readers_accept(self) -> None:
        self.assertEqual([element.get("name") for element in self.schema.findall(f"{XS}element")], list(CLASSES))
        for name, cls in CLASSES.items():
            with self.subTest(name):
                members = [row["name"] for row in cls["members"]]
                attributes = [row["name"] for row in cls["members"] if row["xml"] == "attribute"]
                self.assertEqual(sorted(self.offered(name, "element")), sorted(members))
                version = [cls["version"]["attribute"]] if "version" in cls else []
                self.assertEqual(list(self.offered(name, "attribute")), version + attributes)

    def test_every_value_has_the_type_of_its_kind(self) -> None:
        types = {"text": "Text", "boolean": "Boolean", "int32": "Int", "int64": "Int64", "uint64": "UnsignedInt64",
                 "float": "Float", "double": "Double", "enumeration": "TunerType", "enumeration list": "StartupModeName"}
        for name, cls in CLASSES.items():
            for row in cls["members"]:
                with self.subTest(f"{name}.{row['name']}"):
                    expected = types.get(row["kind"])  # the type of an object is that of its element
                    self.assertEqual(self.offered(name, "element")[row["name"]], expected)
                    self.assertEqual(self.offered(name, "attribute").get(row["name"], expected), expected)

    def test_values_that_have_names_are_offered(self) -> None:
        for type_name, names in {"TunerType": TUNER_TYPES, "StartupModeName": MODES, "Boolean": ["true", "false"],
                                 "Version": ["1.1"]}.items():
            self.assertEqual(list(self.values_of(type_name)), names)
        self.assertEqual(self.offered("TunerProperties", "attribute")["Version"], "Version")

    def test_everything_that_is_offered_is_documented(self) -> None:
        count = 0
        for tag in ("element", "attribute", "enumeration", "complexType", "simpleType"):
            for declared in self.schema.iter(f"{XS}{tag}"):
                if tag == "simpleType" and not declared.get("name"):
                    continue  # a part of a union
                said = declared.findtext(f"{XS}annotation/{XS}documentation") or ""
                self.assertRegex(" ".join(said.split()), r"^\w.+[.]$", ElementTree.tostring(declared, encoding="unicode"))
                count += 1
        self.assertGreaterEqual(count, 180)

    def test_documentation_is_that_of_the_headers(self) -> None:
        bandwidth = self.types["BandwidthSelectionType"]
        self.assertEqual([said.text for said in bandwidth.iter(f"{XS}documentation")][:3], [
            "One bandwidth that a tuner can select: a name and a maximum bandwidth.",
            "The name of the bandwidth. Mandatory. Only as an element.",
            "The greatest bandwidth, in the unit that the producer of the document uses. Mandatory. Only as an element.",
        ])
        document = self.types["TunerPropertiesType"]
        said = {attribute.get("name"): attribute.findtext(f"{XS}annotation/{XS}documentation")
                for attribute in document.iter(f"{XS}attribute")}
        self.assertEqual(said["quantity"], "How many instances of the tuner there are. Optional; 1 if absent.")
        self.assertEqual(self.values_of("StartupModeName")["FFM"], "Measuring at a fixed frequency.")


class InJson(unittest.TestCase):
    """share/tuner-properties.schema.json"""

    @classmethod
    def setUpClass(cls) -> None:
        cls.definitions = json.loads(source("share/tuner-properties.schema.json"))["definitions"]

    def test_every_object_offers_its_members(self) -> None:
        for name, cls in CLASSES.items():
            with self.subTest(name):
                members = [row["name"] for row in cls["members"]]
                version = ["Version"] if "version" in cls else []
                choice = ["ChoiceValueItem"] if name == "ValueItem" else []
                definition = self.definitions[name]
                self.assertEqual(list(definition["properties"]), version + choice + members + ["unset"])
                self.assertEqual(list(definition["properties"]["unset"]["properties"]), members)
                self.assertIs(definition["additionalProperties"], False)
                self.assertIs(definition["properties"]["unset"]["additionalProperties"], False)

    def test_everything_that_is_offered_is_documented(self) -> None:
        for name in CLASSES:
            for member, schema in self.definitions[name]["properties"].items():
                with self.subTest(f"{name}.{member}"):
                    self.assertRegex(schema["description"], r"^\w.+[.]$")

    def test_values_that_have_names_are_offered(self) -> None:
        alternatives = [row["name"] for row in CLASSES["ValueItem"]["members"]]
        choice = self.definitions["ValueItem"]["properties"]["ChoiceValueItem"]
        for schema, names in ((self.definitions["TunerType"], TUNER_TYPES),
                              (self.definitions["StartupModeName"], MODES), (choice, alternatives)):
            offered = {value["const"]: value["description"] for value in schema["anyOf"] if "const" in value}
            self.assertEqual(list(offered), names)
            for said in offered.values():
                self.assertRegex(said, r"^\w.+[.]$")

    def test_every_reference_leads_to_a_definition(self) -> None:
        text = source("share/tuner-properties.schema.json")
        used = set(re.findall(r'"\$ref": "#/definitions/(\w+)"', text))
        self.assertEqual(used, set(self.definitions))


if __name__ == "__main__":
    unittest.main()
