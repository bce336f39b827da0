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


def catalog(model: Model, text: str, read) -> str:
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


JSON_PAGE = "docs/json.md"
JSON_ROWS = {
    "text": "text", "boolean": "boolean", "int32": "whole number of 32 bits",
    "int64": "whole number of 64 bits, signed or not", "uint64": "whole number of 64 bits, signed or not",
    "float": "floating-point number", "double": "floating-point number", "enumeration": "type of tuner",
    "enumeration list": "list of start-up modes", "object": "object", "alternative": "object",
    "object list": "list of objects",
}


def check_json_page(model: Model, text: str, complain) -> None:
    """The page says how a member of each kind is represented in JSON."""
    for kind in sorted({row["kind"] for _, row in model.members}):
        if kind not in JSON_ROWS:
            complain(f"scripts/model/texts.py: JSON_ROWS names no row of {JSON_PAGE} for members of the kind '{kind}'")
        elif f"\n| {JSON_ROWS[kind]} |" not in text:
            complain(f"{JSON_PAGE}: the table has no row for members of the kind '{kind}'")


def make(model: Model, read, complain) -> dict[str, str]:
    schema_text = schema.make(model, read, lambda problem: None)[schema.PATH]
    index = replaced(INDEX, read(INDEX), r"(?P<before>^## The classes\n\n)(?:^\|[^\n]*\n)+", table(model, schema_text))
    check_json_page(model, read(JSON_PAGE), complain)
    return {INDEX: index, ENGLISH: catalog(model, read(ENGLISH), read)}
