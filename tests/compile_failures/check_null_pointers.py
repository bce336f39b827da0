#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""check_null_pointers.py FOLDER...: each public function in the headers of the folders that takes a text refuses a null
pointer for it by a deleted overload, and each AppendX() that takes an object an empty pair of braces."""

import re
import sys
from pathlib import Path

# There a null pointer is a QFile, which is reported as null.
TAKE_FILES_TOO = {"LoadXml", "LoadBinary"}

FUNCTION = re.compile(r"(\w+) ?\(([^()]*(?:\(\)[^()]*)*)\)")
ITEM = re.compile(r"const \w+ ?& ?\w+")
TEXT = re.compile(r"(?:^|, ?)(?:const QString ?&|QString) ?\w+")


def public_statements(header: str):
    """The declarations of a header outside of private and protected sections, without comments."""
    header = re.sub(r"//[^\n]*|^ *#[^\n]*", "", header, flags=re.MULTILINE)
    scopes = [True]
    statement = ""
    for character in header:
        statement += character
        if match := re.fullmatch(r"\s*(public|protected|private):", statement):
            scopes[-1] = match[1] == "public"
            statement = ""
        elif character == "{" and "= {" not in statement[-3:]:
            if scopes[-1]:
                yield " ".join(statement.split())
            scopes.append(scopes[-1] and not re.search(r"\bclass \w", statement))
            statement = ""
        elif character in "};" and statement.count("(") == statement.count(")"):
            if character == "}" and "= {" not in statement:
                scopes.pop()
            elif scopes[-1]:
                yield " ".join(statement.split())
            statement = "" if character == ";" or "= {" not in statement else statement


taking, appending, refusing = set(), set(), set()
for path in sorted(path for folder in sys.argv[1:] for path in Path(folder).rglob("*.h")):
    for declaration in public_statements(path.read_text(encoding="utf-8")):
        if function := FUNCTION.search(declaration):
            name, parameters = function.groups()
            if "nullptr_t" in parameters and "= delete" in declaration:
                refusing.add((path.name, name))
            elif TEXT.search(parameters) and name not in TAKE_FILES_TOO:
                taking.add((path.name, name))
            elif re.match("Append[A-Z]", name) and ITEM.fullmatch(parameters):
                appending.add((path.name, name))

missing = sorted(taking - refusing)
for header, name in missing:
    print(f"{header}: {name}() takes a null pointer for a text")
for header, name in sorted(appending - refusing):
    print(f"{header}: {name}() takes an empty pair of braces for an item")
if len(appending) < 5:
    sys.exit(f"only {len(appending)} functions that append objects were found")
if len(taking) < 50:
    sys.exit(f"only {len(taking)} functions that take texts were found")
print(f"{len(taking) - len(missing)} of {len(taking)} functions refuse a null pointer for a text.")
print(f"{len(appending & refusing)} of {len(appending)} functions refuse an empty pair of braces for an item.")
sys.exit(0 if taking | appending <= refusing else 1)
