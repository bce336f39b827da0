#!/usr/bin/env python3
"""What check_layers.py says about small trees that follow the layers, and about those that do not."""

import os
import re
import tempfile
import unittest

import check_layers
from layers import AVOIDED, TOOL, Layer

LAYERS = [
    Layer("include/base"),
    Layer("src/base", ["include/base"]),
    Layer("src/model", ["include/base", "src/base"]),
    Layer(f"{TOOL}/text"),
    Layer(f"{TOOL}/commands", [f"{TOOL}/text"]),
]


def checked(files, layers=None):
    """The errors in the includes of a tree of files, with the lines of each file."""
    with tempfile.TemporaryDirectory() as top:
        for name, lines in files.items():
            path = os.path.join(top, name)
            os.makedirs(os.path.dirname(path), exist_ok=True)
            with open(path, "w", encoding="utf-8") as file:
                file.write("\n".join(lines) + "\n")
        return list(check_layers.wrong_includes(top, layers or LAYERS))


def classes_named_in(lines):
    """The errors in a file of a folder that names no class."""
    with tempfile.TemporaryDirectory() as top:
        for folder in ("src/module", "src/framework"):
            os.makedirs(os.path.join(top, folder))
        with open(os.path.join(top, "src/module/Classes.def"), "w", encoding="utf-8") as classes:
            classes.write("JOBXML_CLASS(tuner, Node)\nJOBXML_KIND(values, ValueInt)\n")
        with open(os.path.join(top, "src/framework/Rules.h"), "w", encoding="utf-8") as file:
            file.write("\n".join(lines) + "\n")
        return list(check_layers.named_classes(top, "src/framework"))


class NamedClasses(unittest.TestCase):
    def test_class_is_named_with_its_line_in_code_and_comments(self):
        why = "src/framework knows no class of the model"
        self.assertEqual(classes_named_in(["", "// as in a Node", 'tr("ValueInt");']),
                         [f"src/framework/Rules.h:2: names the class Node: {why}",
                          f"src/framework/Rules.h:3: names the class ValueInt: {why}"])

    def test_longer_words_pass(self):
        self.assertEqual(classes_named_in(["ValueInteger", "NodeList", "nodes"]), [])


class Includes(unittest.TestCase):
    def test_lower_folders_the_own_folder_and_other_projects_pass(self):
        self.assertEqual(checked({
            "include/base/Base.h": ["#pragma once"],
            "src/base/Private.h": ['#include <base/Base.h>', "#include <vector>"],
            "src/model/Model.cpp": ['#include "Model.h"', '#include "base/Private.h"', "#include <base/Base.h>"],
            "src/model/Model.h": ["#include <base/Base.h>", "#include <QString>"],
        }), [])

    def test_private_header_of_another_library_is_named(self):
        layers = LAYERS[:2] + [Layer("src/model", ["include/base"])]
        self.assertEqual(checked({
            "src/base/Private.h": [],
            "src/model/Model.h": ['#include "base/Private.h"'],
            "src/model/Model.cpp": ['#include "base/Private.h"'],
        }, layers), [f"src/model/Model.{suffix}:1: includes base/Private.h: src/model may include include/base"
                     for suffix in ("cpp", "h")])

    def test_include_of_a_higher_folder_is_named_with_its_line(self):
        self.assertEqual(checked({
            f"{TOOL}/text/Words.cpp": ["", '#include "commands/Command.h"'],
            f"{TOOL}/commands/Command.h": ['#include "text/Words.h"'],
            f"{TOOL}/text/Words.h": [],
        }), [f"{TOOL}/text/Words.cpp:2: includes commands/Command.h: {TOOL}/text may include no other folder"])

    def test_include_of_a_higher_folder_in_angle_brackets_is_named(self):
        self.assertEqual(checked({
            "src/base/Private.h": ["#  include <model/Model.h>"],
            "src/model/Model.h": [],
        }), ["src/base/Private.h:1: includes model/Model.h: src/base may include include/base"])

    def test_include_beside_the_path_of_the_file_is_named(self):
        self.assertEqual(checked({
            "src/base/Private.h": ['#include "../model/Model.h"'],
            "src/model/Model.h": [],
        }), ["src/base/Private.h:1: includes ../model/Model.h: src/base may include include/base"])

    def test_single_file_of_a_folder_can_be_allowed(self):
        layers = LAYERS[:1] + [Layer("src/model", ["include/base/Base.h"])]
        self.assertEqual(checked({
            "include/base/Base.h": [],
            "include/base/Other.h": [],
            "src/model/Model.h": ["#include <base/Base.h>", "#include <base/Other.h>"],
        }, layers), ["src/model/Model.h:2: includes base/Other.h: src/model may include include/base/Base.h"])

    def test_heavy_header_is_left_to_the_file_that_needs_it(self):
        self.assertEqual(checked({
            f"{TOOL}/commands/Command.cpp": ["#include <nlohmann/json.hpp>"],
        }), [f"{TOOL}/commands/Command.cpp:1: includes nlohmann/json.hpp: only src/json/JsonText.cpp may "
             "include it, since it takes seconds to compile"])

    def test_table_that_is_an_order_passes(self):
        self.assertEqual(list(check_layers.wrong_table(LAYERS)), [])

    def test_folder_that_may_include_a_higher_one_is_named(self):
        layers = [Layer("src/base", ["src/model"]), Layer("src/model", ["src/base"])]
        self.assertEqual(list(check_layers.wrong_table(layers)),
                         ["the table of layers lets src/base include src/model, which is not below it"])


class AvoidedCalls(unittest.TestCase):
    AVOIDED = {r"\.old\(": (["src/base/New.h"], "fresh()")}

    def checked(self, files):
        with tempfile.TemporaryDirectory() as top:
            for name, line in files.items():
                path = os.path.join(top, name)
                os.makedirs(os.path.dirname(path), exist_ok=True)
                with open(path, "w", encoding="utf-8") as file:
                    file.write(f"\n{line}\n")
            return list(check_layers.avoided_calls(top, self.AVOIDED))

    def test_call_is_named_with_its_line_and_what_to_call(self):
        self.assertEqual(self.checked({"src/base/Text.h": "x = y.old();", f"{TOOL}/main.cpp": "a.old(b)"}),
                         ["src/base/Text.h:2: calls .old(: use fresh()",
                          f"{TOOL}/main.cpp:2: calls .old(: use fresh()"])

    def test_file_that_replaces_the_function_may_call_it(self):
        self.assertEqual(self.checked({"src/base/New.h": "return y.old();"}), [])

    def test_other_functions_pass(self):
        self.assertEqual(self.checked({"src/base/Text.h": "y.older(); old();"}), [])


class AvoidedInQt(unittest.TestCase):
    """The table names what it should."""

    def assert_avoided(self, line, count):
        self.assertEqual(sum(1 for call in AVOIDED if re.search(call, line)), count, line)

    def test_calls_that_differ_between_versions_match(self):
        for line in ("text.utf16()", "text->utf16()", "text.toInt(&isNumber)", "text.toUShort(&isNumber, 16)",
                     "text.toLongLong(&isRead)"):
            self.assert_avoided(line, 1)

    def test_conversions_of_other_values_pass(self):
        for line in ("value.toInt()", "value.toLongLong()", "Utf16::units(text)", "QString::fromUtf16(units)",
                     "text.toDouble(&isNumber)"):
            self.assert_avoided(line, 0)


class Manual(unittest.TestCase):
    PAGE = """# Architecture

| `src/model` | holds | nothing |

The tool:

| folder | holds | may use |
|---|---|---|
| `text` | words | |
| `commands` | the commands | %s |
"""

    def checked(self, used):
        with tempfile.TemporaryDirectory() as top:
            os.mkdir(os.path.join(top, "docs"))
            with open(os.path.join(top, "docs", "ARCHITECTURE.md"), "w", encoding="utf-8") as page:
                page.write(self.PAGE % used)
            return list(check_layers.wrong_manual(top, LAYERS))

    def test_page_that_has_the_same_table_passes(self):
        self.assertEqual(self.checked("`text`"), [])

    def test_row_that_differs_is_named(self):
        self.assertEqual(self.checked("`text`, `pages`"),
                         ["docs/ARCHITECTURE.md: the row of `commands` must say that it may use ['text']"])


if __name__ == "__main__":
    unittest.main()
