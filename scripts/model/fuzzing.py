# SPDX-License-Identifier: MIT
"""The fuzzer's dictionaries, and the tags that its mutator sets."""

from __future__ import annotations

from model import Model, between_marks, unique

TAGS = "fuzz/Tags.inc"
COMPRESSED_WORD = "0x52475A31"  # "RGZ1"


def tags(model: Model) -> list[str]:
    return unique([model.version_record[1], *(row["tag"] for _, row in model.members)])


def tags_file(model: Model) -> str:
    values = tags(model)
    lines = [", ".join(values[first : first + 9]) for first in range(0, len(values), 9)]
    return ("// SPDX-License-Identifier: MIT\n// Every tag of the model, made by scripts/model.sh.\n"
            + ",\n".join(lines) + "\n")


def as_bytes(word: str) -> str:
    return '"' + "".join(f"\\x{word[at : at + 2]}" for at in range(2, 10, 2)) + '"'


def values_by_name(model: Model) -> list[str]:
    """The names of all members that contain no objects."""
    names = {row["name"] for _, row in model.members if "class" not in row and row["kind"] != "enumeration list"}
    return sorted(names | {model.version_record[0]})


def markup(model: Model) -> list[str]:
    elements = unique([*model.class_names, *(row["name"] for _, row in model.members if row["xml"] == "element")])
    attributes = unique([model.version_record[0],
                         *(row["name"] for _, row in model.members if row["xml"] == "attribute")])
    return [
        *(f'"{form}"' for name in elements for form in (f"<{name}>", f"</{name}>", f"<{name}/>")),
        *(f'"{form}"' for name in attributes for form in (f' {name}=\\"\\"', f"<{name}>", f"</{name}>")),
    ]


def make(model: Model, read, _complain) -> dict[str, str]:
    enumerations = [f'"{name}"' for name in (*model.types_of_tuners, *model.modes)]
    words = [as_bytes(word) for word in (*tags(model), *(cls["identifier"] for cls in model.classes))]
    names = values_by_name(model)
    made = {TAGS: tags_file(model)}
    for dictionary, parts in {
        "records": {"The tags of the members and the leading words of the classes": words,
                    "The names of enumerations": enumerations},
        "xml": {"Names of elements and attributes": markup(model), "The names of enumerations": enumerations},
        "json": {"Names of members": [f'"\\"{name}\\":"' for name in names]},
        "paths": {"Names of members": [f'"{name}"' for name in names]},
    }.items():
        path = f"fuzz/dictionaries/{dictionary}.dict"
        text = read(path)
        for what, lines in parts.items():
            text = between_marks(path, text, "#", what, lines)
        made[path] = text
    return made
