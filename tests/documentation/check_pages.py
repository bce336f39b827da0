#!/usr/bin/env python3
"""check_pages.py TOP: no link of the pages is broken, and every example that is named exists, is built and shown.

Headers are read as doxygen sees them, by the filter that adds their examples. As installed they refer to none.
"""

import glob
import os
import re
import sys

TOP = sys.argv[1]
sys.path.insert(0, os.path.join(TOP, "docs"))
from doxygen_filter import header, slug  # noqa: E402

WITHOUT_EXAMPLE = {"ObjectTypes.h", "QtTest.h"}  # a bare enumeration, and what QCOMPARE() uses by itself
wrong = []


def read(path):
    with open(path, encoding="utf-8") as file:
        return file.read()


def short(path):
    return os.path.relpath(path, TOP)


def without_code(text):
    return re.sub(r"^```.*?^```$|`[^`\n]+`", "", text, flags=re.MULTILINE | re.DOTALL)


def anchors(path):
    headings = re.findall(r"^#+ (.*)$", re.sub(r"^```.*?^```$", "", read(path), flags=re.MULTILINE | re.DOTALL), re.MULTILINE)
    return {slug(heading) for heading in headings}


def check_links(page):
    for target in re.findall(r"\]\(([^)\s]+)\)", without_code(read(page))):
        if re.match(r"[a-z]+:", target):
            continue
        file, _, fragment = target.partition("#")
        path = os.path.normpath(os.path.join(os.path.dirname(page), file)) if file else page
        if not os.path.exists(path):
            wrong.append(f"{short(page)}: there is no {file}")
        elif fragment and fragment not in anchors(path):
            wrong.append(f"{short(page)}: {short(path)} has no heading for #{fragment}")


def as_doxygen_sees(path):
    if not path.endswith(".h"):
        return read(path)
    text = read(path)
    if "\\snippet" in text:
        wrong.append(f"{short(path)}: refers to an example that is not installed with it")
    return "".join(header(path, text.splitlines(keepends=True)))


def check_snippets(path):
    """Returns those that the file shows."""
    shown = set(re.findall(r"\\snippet (\S+) (\S+)", as_doxygen_sees(path)))
    for file, marker in shown:
        source = os.path.join(TOP, "docs", "snippets", file)
        if not os.path.exists(source):
            wrong.append(f"{short(path)}: there is no {short(source)}")
        elif len(re.findall(rf"^ *//! \[{re.escape(marker)}\]$", read(source), re.MULTILINE)) != 2:
            wrong.append(f"{short(path)}: {short(source)} has no part '{marker}'")
    return shown


pages = sorted(glob.glob(os.path.join(TOP, "docs", "pages", "*.md")))
pages += [os.path.join(TOP, "docs", name) for name in ("changes.md", "formats.md", "git.md", "json.md", "lint.md",
                                                      "model.md", "page.md", "paths.md")]
headers = sorted(glob.glob(os.path.join(TOP, "include", "*", "*.h")))
settings = read(os.path.join(TOP, "docs", "Doxyfile.in"))
for page in ("SECURITY.md", os.path.join("docs", "RELIABILITY.md")):  # not in the manual
    check_links(os.path.join(TOP, page))
for page in pages:
    check_links(page)
    if f"/{short(page)}\"" not in settings:
        wrong.append(f"{short(page)} is not part of the manual, see docs/Doxyfile.in")

shown = set()
for path in pages + headers:
    here = check_snippets(path)
    shown |= here
    if path.endswith(".h") and bool(here) == (os.path.basename(path) in WITHOUT_EXAMPLE):
        wrong.append(f"{short(path)} has {'an' if here else 'no'} example")

for source in glob.glob(os.path.join(TOP, "docs", "snippets", "**", "*.cpp"), recursive=True):
    file = os.path.relpath(source, os.path.join(TOP, "docs", "snippets"))
    for marker in re.findall(r"^ *//! \[(\S+)\]$", read(source), re.MULTILINE):
        if (file, marker) not in shown:
            wrong.append(f"{short(source)}: no page shows the part '{marker}'")

recipes = re.split(r"^## ", read(os.path.join(TOP, "docs", "pages", "cookbook.md")), flags=re.MULTILINE)[1:]
if len(recipes) < 10:
    wrong.append(f"the cookbook has {len(recipes)} recipes")
wrong += [f"cookbook: '{recipe.splitlines()[0]}' has no code" for recipe in recipes if "\\snippet" not in recipe]

print("\n".join(wrong) or f"{len(pages)} pages, {len(headers)} headers, {len(shown)} examples and {len(recipes)} recipes.")
sys.exit(1 if wrong else 0)
