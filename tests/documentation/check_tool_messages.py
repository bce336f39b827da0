#!/usr/bin/env python3
"""check_tool_messages.py TOP: the manual has every message that the tool and the library for documents give up with, and no
others."""

import glob
import os
import re
import sys

from cpp_messages import HOLE, STRING, alternatives, arguments, calls, unescaped, without_characters, without_comments

TOP = sys.argv[1]
GIVES_UP = r"\b(?:throw (?:\w+::)*(?!std)\w+|fail|failed|printError|wrongUsage)\("


def read(path):
    with open(path, encoding="utf-8") as file:
        return file.read()


def given_up_with(source):
    for match, text in calls(source, GIVES_UP):
        if match[0].startswith("throw ") and re.match(r"\s*const\b", text) or "const QString &" in text:
            continue  # a declaration
        parts = arguments(text)
        yield from alternatives(parts[-1] if "JsonFailure" in match[0] else parts[0])
    for _, text in calls(source, r"(?<!void )\breport\("):
        # A function that returns the message when it is needed.
        for message in re.findall(r'\breturn\s+((?:"(?:[^"\\]|\\.)*"|[^;"])*);', text):
            yield from alternatives(message)
    for _, text in calls(source, r"(?<!void )\brefuse\("):
        what = STRING.search(text)
        if what:  # otherwise it passes on the words of its caller
            yield f"{HOLE} {unescaped(what[1])}"


paths = [path for folder in ("tools/tunerproperties", "src/documents", "src/json", "src/text")
         for path in glob.glob(os.path.join(TOP, folder, "**", "*.cpp"), recursive=True)]
sources = [without_comments(read(path)) for path in paths]
expected = {text for source in sources for text in given_up_with(source) if re.search(r"[a-z'] ", text)}
expected.discard("try '<> --help'")  # follows every message about wrong usage
literals = "\n".join(re.sub(r"%\d+", HOLE, unescaped(text[1])) for source in sources
                     for text in STRING.finditer(re.sub(r'"\s+"', "", without_characters(source))))

page = read(os.path.join(TOP, "docs", "pages", "tool-messages.md"))
listed = [re.sub(r"<[^<>]+>", HOLE, text) for text in re.findall(r"^\| `([^`]+)` \|", page, re.MULTILINE)]
# The library begins the text with the name of the document where it fails.
expected = {text if text in listed or f"{HOLE}: {text}" not in listed else f"{HOLE}: {text}" for text in expected}

wrong = [f"the tool has '{text}', the manual does not" for text in sorted(expected - set(listed))]
wrong += [f"the manual has '{text}' twice" for text in set(listed) if listed.count(text) > 1]
# Some are put together in several places: each part of them has to be somewhere.
wrong += [f"the manual has '{text}', the tool has no '{part}'" for text in listed if text not in expected
          for part in text.split(HOLE) if len(part.strip(" ':")) > 1 and part.strip(" ':;") not in literals]

print("\n".join(wrong) or f"The manual has the {len(expected)} messages of the tool and {len(listed) - len(expected)} more.")
sys.exit(1 if wrong or not expected else 0)
