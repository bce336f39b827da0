#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""words.py [FILE...] rejects phrases that make a reader read twice, and says what to write instead.

Without arguments it checks every text that git lists: comments, identifiers, messages, documents, scripts. A phrase is
also found if a line break or the end of a literal divides it, or if it is written as an identifier.
"""

from __future__ import annotations

import re
import subprocess
import sys
from collections.abc import Iterator, Sequence
from fnmatch import fnmatch
from pathlib import Path
from typing import NamedTuple

# Paths that are not checked yet. One that needs no exemption is an error.
EXEMPT: tuple[str, ...] = ()

# Files whose contents are data, or that name the phrases themselves.
DATA = (
    "LICENSE", "*.hex", "*.json", "*.svg", "*.png", "*.dict", "*.ts", "debian/*.symbols",
    "fuzz/corpus/*", "fuzz/regressions/*", "scripts/words.py", "tests/documentation/test_words.py",
)


class Rule(NamedTuple):
    phrase: str  # as a contributor would look for it
    pattern: re.Pattern[str]
    instead: str


def rule(phrase: str, pattern: str, instead: str) -> Rule:
    return Rule(phrase, re.compile(pattern, re.IGNORECASE), instead)


WORDS = r"(?:\s+[\w`'.()-]+){0,4}?\s+"  # what may be between the parts of a phrase

RULES = (
    rule("tells, is told", r"\b(?:tells?|telling|told)\b",
         "returns, reports, describes, documents; receives; see X"),
    rule("behind", r"\bbehind\b", "after; prefixed with; followed by"),
    rule("stands", r"\b(?:stands?|stood|standing)\b(?!-)", "is; is defined in; is stored in"),
    rule("hands over, hands down",
         r"\bhand(?:s|ed|ing)?\s+(?:over|down|out|on|back)\b|\bhand(?:s|ed|ing)" + WORDS + r"(?:over|down|out|on|back)\b",
         "propagates (to); passes; returns"),
    rule("takes over", r"\b(?:take[sn]?|taking|took)\s+(?:over|down)\b", "inherits; copies"),
    rule("gives back", r"\b(?:gives?|given|giving|gave)\s+back\b", "returns"),
    rule("giveText", r"\bgive text\b", "append text"),
    rule("takeOther", r"\btake other\b", "copy; detach"),
    rule("holdsTheInvalid", r"\bholds the invalid\b", "is invalid"),
    rule("gets", r"\bgets\b", "receives; becomes; returns"),
    rule("is given", r"\b(?:is|are|was|were|be|been|being)\s+(?:not\s+)?given\b", "passes; receives; is set"),
    rule("mends", r"\bmend(?:s|ed|ing)?\b", "fixes; repairs"),
    rule("the memory does not suffice", r"\bsuffic(?:e|es|ed|ing)\b", "out of memory; is enough"),
    rule("what is wrong with it", r"\bwhat(?:ever)?\s+(?:is|was|are)\s+wrong\b", "the error; the problem"),
    rule("holds against", r"\b(?:holds?|holding|held)\b" + WORDS + r"against\b", "compares with; checks against"),
    rule("asks", r"\bask(?:s|ed|ing)?\b", "checks whether; requires; requests; calls X()"),
    rule("breaks off", r"\b(?:breaks?|breaking|broken|broke)\s+off\b", "is truncated; ends prematurely"),
    rule("goes by", r"\b(?:go|goes|going|gone|went)\s+by\b(?!\s+(?:itself|themselves))", "follows; uses"),
    rule("by the letter of", r"\bby the letter\b", "exactly as"),
    rule("likewise, thereby, whereof", r"\b(?:likewise|(?:there|where)(?:by|from|in|of|to|upon|with))\b", "also; or nothing"),
    rule("for who needs", r"\bfor who\b", "if you need"),
    rule("X is no number", r"(?<!\bthere )\b(?:is|are|was|were) no (?!(?:longer|more|less|other|such|one)\b)[a-z]+",
         "is not a; unknown X"),
    rule("in front", r"\bin front\b", "before; prefixed with"),
    rule("all the same", r"\ball the same\b", "nevertheless; or nothing"),
    rule("passes over", r"\bpass(?:es|ed|ing)?\s+over\b", "skips; ignores"),
    rule("what becomes of it", r"\b(?:becomes?|became|comes?|came)\s+of\b", "the result; the outcome"),
    rule("what it makes of it", r"\bmak(?:e|es|ing)\s+of\s+(?:it|them|this|that)\b", "the result; how it reads it"),
    rule("whoever", r"\bwhoever\b", "name who does it"),
    rule("Not that", r"(?-i:(?:^|[.:;] )Not that\b)", "begin with the subject"),
    rule("that is another one", r"\b(?:that|which|who)\s+(?:is|are)\s+(?:another|other)\s+ones?\b", "a changed X; differs"),
)


class Allowed(NamedTuple):
    files: str  # a pattern of paths
    text: str  # the phrase, within the words around it
    reason: str


ALLOWED: tuple[Allowed, ...] = (
    Allowed("CONTRIBUTING.md", "docs/paths.md:11: 'behind'", "the example of what this script prints"),
)


class Finding(NamedTuple):
    path: str
    line: int
    found: str
    instead: str

    def __str__(self) -> str:
        return f"{self.path}:{self.line}: '{self.found}'; write instead: {self.instead}"


MARKERS = re.compile(r"^\s*(?:///?<?!?|#+|\*+|>|--|\.\.)?\s*")
INNER_CAPITAL = re.compile(r"(?<=[a-z0-9])(?=[A-Z])|(?<=[A-Z])(?=[A-Z][a-z])")


def words_of(line: str) -> str:
    """The line with the words of its identifiers apart."""
    return INNER_CAPITAL.sub(" ", line).replace("_", " ")


def running_text(content: str) -> tuple[str, list[int]]:
    """The content as one line, without what marks comments and divides literals, and the position of each line in it."""
    text = ""
    starts = []
    for line in content.splitlines():
        stripped = words_of(MARKERS.sub("", line, count=1)).strip()
        if stripped.startswith('"') and text.endswith('"'):
            text = text[:-1]
            stripped = stripped[1:]
        elif text and not text.endswith(" "):
            text += " "
        starts.append(len(text))
        text += stripped
    return text, starts


def line_at(starts: Sequence[int], position: int) -> int:
    return max((number for number, start in enumerate(starts, 1) if start <= position), default=1)


def is_allowed(text: str, start: int, end: int, fragments: Sequence[str]) -> bool:
    for fragment in fragments:
        at = text.find(fragment, max(0, end - len(fragment)))
        if 0 <= at <= start:
            return True
    return False


def findings(path: str, content: str, allowed: Sequence[Allowed] = ALLOWED) -> Iterator[Finding]:
    text, starts = running_text(content)
    fragments = [words_of(entry.text) for entry in allowed if fnmatch(path, entry.files)]
    for _, pattern, instead in RULES:
        for match in pattern.finditer(text):
            if not is_allowed(text, match.start(), match.end(), fragments):
                yield Finding(path, line_at(starts, match.start()), match.group(), instead)


def is_exempt(path: str) -> bool:
    return path.startswith(EXEMPT)


def listed_files() -> list[str]:
    listed = subprocess.run(["git", "ls-files", "-z"], check=True, capture_output=True, text=True).stdout
    return [path for path in listed.split("\0") if path and not any(fnmatch(path, data) for data in DATA)]


def content_of(path: str) -> str:
    """The text of a file; empty if it is not UTF-8, and so not a text."""
    try:
        return Path(path).read_text(encoding="utf-8")
    except UnicodeDecodeError:
        return ""


def outdated(contents: dict[str, str]) -> Iterator[str]:
    """The exemptions and the allowed texts that nothing needs."""
    for prefix in EXEMPT:
        if not any(True for path, text in contents.items() if path.startswith(prefix) for _ in findings(path, text)):
            yield f"scripts/words.py: '{prefix}' needs no exemption; remove it from EXEMPT"
    for entry in ALLOWED:
        within = (text for path, text in contents.items() if fnmatch(path, entry.files))
        if not any(words_of(entry.text) in running_text(text)[0] for text in within):
            yield f"scripts/words.py: no file contains '{entry.text}'; remove it from ALLOWED"


def main(arguments: Sequence[str]) -> int:
    paths = list(arguments) or [path for path in listed_files() if Path(path).is_file()]
    contents = {path: content_of(path) for path in paths}
    complaints = [str(finding) for path, content in contents.items() if arguments or not is_exempt(path)
                  for finding in sorted(findings(path, content), key=lambda finding: finding.line)]
    if not arguments:
        complaints += outdated(contents)
    for complaint in complaints:
        print(complaint, file=sys.stderr)
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
