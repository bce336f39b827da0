# SPDX-License-Identifier: MIT
"""The tables of docs/formats.md, and its tree of the objects."""

from __future__ import annotations

import itertools
import re

from model import Model, replaced

PATH = "docs/formats.md"
HEAD = ("| bit | member | type | default | mandatory | XML | tag | written | snapshot |\n"
        "|---|---|---|---|---|---|---|---|---|\n")
TABLE = r"(?:^\|[^\n]*\n)+"


def type_of(row: dict) -> str:
    match row["kind"]:
        case "enumeration":
            return "tuner type"
        case "enumeration list":
            return "modes"
        case "object list":
            return f"list of {row['class']}"
        case "object" | "alternative":
            return row["class"]
        case scalar:
            return scalar


def default_of(row: dict) -> str:
    match row["kind"], row["default"]:
        case "enumeration", None:
            return "-1"
        case ("enumeration list" | "object list"), _:
            return "empty"
        case ("object" | "alternative"), _:
            return "new"
        case _, None:
            return "null"
        case _, bool(default):
            return "true" if default else "false"
        case _, default:
            return str(default)


def table(cls: dict) -> str:
    return HEAD + "".join(
        f"| {row['bit']} | `{row['name']}` | {type_of(row)} | {default_of(row)} | {'yes' if row['mandatory'] else 'no'} "
        f"| {row['xml']} | `{row['tag']}` | {row['written']} | {row['snapshot']} |\n"
        for row in cls["members"]
    )


def names(model: Model) -> str:
    pairs = itertools.zip_longest(model.types_of_tuners, model.modes)
    return "| index | tuner type | start-up mode |\n|---|---|---|\n" + "".join(
        f"| {index} |{f' `{of_type}` ' if of_type else ' '}| {f'`{mode}` ' if mode else ''}|\n"
        for index, (of_type, mode) in enumerate(pairs)
    )


def picture(model: Model, name: str) -> list[str]:
    """The tree of classes below a class, with one line for each branch."""
    (cls,) = (cls for cls in model.classes if cls["name"] == name)
    lines: list[str] = []
    for row in cls["members"]:
        if "class" not in row:
            continue
        below = picture(model, row["class"])
        below[0] = below[0].replace(row["class"], row["class"] + ("*" if row["kind"] == "object list" else ""), 1)
        if row["kind"] == "object list":
            below[1:] = [f" {line}" for line in below[1:]]
        choice = "one of: " if row["kind"] == "alternative" else ""
        start = (f"{choice}" if not lines else " " * len(choice)) if choice else ""
        joint = " ── " if not choice or not lines else "    "
        for number, line in enumerate(below):
            lines.append((joint if number == 0 else "    ") + (start if number == 0 else " " * len(choice)) + line)
    if not lines:
        return [name]
    return [name + lines[0], *(" " * len(name) + line for line in lines[1:])]


def make(model: Model, read, _complain) -> dict[str, str]:
    text = read(PATH)
    text = replaced(PATH, text, r"(?P<before>^## Objects\n(?:(?!^## ).)*?^```\n).*?(?P<after>^```\n)",
                    "".join(f"{line}\n" for line in picture(model, "TunerProperties")))
    text = replaced(PATH, text, rf"(?P<before>^### Names\n(?:(?!^##).)*?){TABLE}", names(model))
    previous = None
    for cls in model.classes:
        if previous and not re.search(rf"^### {cls['name']}$", text, re.MULTILINE):
            chapter = f"### {cls['name']}\n\nIdentifier `{cls['identifier']}`.\n\n{table(cls)}\n"
            text = replaced(PATH, text, rf"(?P<before>^### {previous}\n(?:(?!^##).)*)", chapter)
        text = replaced(PATH, text, rf"(?P<before>^### {cls['name']}\n\nIdentifier `)0x[0-9A-F]+", cls["identifier"])
        text = replaced(PATH, text, rf"(?P<before>^### {cls['name']}\n(?:(?!^##).)*?){TABLE}", table(cls))
        previous = cls["name"]
    return {PATH: text}
