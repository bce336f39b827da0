# SPDX-License-Identifier: MIT
"""Texts about classes that are written elsewhere already: the table of docs/pages/index.md, and English display names."""

from __future__ import annotations

import re
from xml.sax.saxutils import escape, unescape

import headers
import schema
from model import Model, replaced

INDEX = "docs/pages/index.md"
ENGLISH = "translations/TunerProperties_en.ts"


def in_schema(text: str, name: str) -> str:
    """What the schema says about a class."""
    found = re.search(rf'<xs:complexType name="{name}Type">\s*<xs:annotation>\s*<xs:documentation>(.*?)</xs:documentation>',
                      text, re.DOTALL)
    return unescape(" ".join(found[1].split())) if found else ""


def table(model: Model, schema_text: str) -> str:
    return "| class | is |\n|---|---|\n" + "".join(
        f"| JobXml::{name} | {in_schema(schema_text, name)} |\n" for name in model.class_names)


def catalogue(model: Model, text: str, read) -> str:
    """Display names of kinds that have none yet: what the header says without its article, for a translator to improve."""
    for cls in model.classes:
        name = cls["name"]
        if name not in model.kinds or f"<source>{name}</source>" in text:
            continue
        brief = re.sub(r"^An? |\.$", "", headers.of_class(read(f"include/jobxml/{name}.h"), name))
        shown = brief[:1].upper() + brief[1:]
        message = f"    <message>\n        <source>{name}</source>\n        <translation>{escape(shown)}</translation>\n    </message>\n"
        text = replaced(ENGLISH, text, r"(?=^</context>)", message)
    return text


def make(model: Model, read, complain) -> dict[str, str]:
    schema_text = schema.make(model, read, lambda problem: None)[schema.PATH]
    index = replaced(INDEX, read(INDEX), r"(?P<before>^## The classes\n\n)(?:^\|[^\n]*\n)+", table(model, schema_text))
    return {INDEX: index, ENGLISH: catalogue(model, read(ENGLISH), read)}
