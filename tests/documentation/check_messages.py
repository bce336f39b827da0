#!/usr/bin/env python3
"""check_messages.py TOP: the manual's tables of messages have exactly those that the sources of the libraries have."""

import os
import re
import sys

from cpp_messages import HOLE, STRING, calls, composed, unescaped, without_characters, without_comments

TOP = sys.argv[1]
EXCEPTIONS = "OutOfRangeException|InvalidXmlException|BinaryParsingException|IncompleteDefinitionException"

# Parts of documents and of their display.
SHOWN = {r'<?xml version=\"1.0\" encoding=\"UTF-8\"?>', " (not set)"}


def read(*path):
    with open(os.path.join(TOP, *path), encoding="utf-8") as file:
        return file.read()


def chapter(page, title):
    """The text below a heading, up to the next one."""
    parts = re.split(rf"^#+ {re.escape(title)}\n", page, flags=re.MULTILINE)
    if len(parts) != 2:
        sys.exit(f"the page has {len(parts) - 1} chapters '{title}'")
    return re.split(r"^#+ ", parts[1], flags=re.MULTILINE)[0]


def rows(text):
    """The first two cells of each row, the first one with <> for what differs."""
    for line in text.splitlines():
        match = re.match(r"\| `([^`]+)` \| ([^|]+) \|", line)
        if match:
            yield re.sub(r"<[^<>]+>", HOLE, match[1]), match[2].strip()


def compare(what, expected, found):
    """Both are sets."""
    wrong = [f"{what}: the sources have {text}, the manual does not" for text in sorted(map(str, expected - found))]
    wrong += [f"{what}: the manual has {text}, the sources do not" for text in sorted(map(str, found - expected))]
    return wrong


def thrown(source):
    """(text, type) of what the model throws; the type is "none" for the one that is not."""
    unchosen = {unescaped(text[1]) for text in STRING.finditer(source.split("auto unchosenTexts =")[1].split("}();")[0])}
    if len(unchosen) != 1:
        sys.exit(f"the texts of access to what is not chosen differ: {unchosen}")
    result = {(composed(text), match[1]) for match, text in calls(source, rf"throw ({EXCEPTIONS})\(")}
    kept = re.search(r"QString Errors::accessToUnchosen\(.*?return (.*?);", source, re.DOTALL)
    result.add((composed(kept[1], {"unchosenTexts": unchosen.pop()}), "none"))
    return result


def reported(source):
    """The texts of problems for which nothing is thrown."""
    functions = re.findall(r"^QString Errors::(\w+)\(.*?^}", source, re.DOTALL | re.MULTILINE)
    bodies = re.findall(r"^QString Errors::\w+\(.*?^}", source, re.DOTALL | re.MULTILINE)
    found = set()
    for name, body in zip(functions, bodies):
        if name != "accessToUnchosen":
            found |= {composed(match[1]) for match in re.finditer(r"\breturn (withName.*?);\n", body, re.DOTALL)}
    return found


def reasons(source):
    """The texts of failed load and save operations; the unnamed namespace only contains helpers."""
    public = without_comments(source.split("} // namespace\n")[1])
    return {composed(match[1]) for match in re.finditer(r"\breturn (.*?);", public, re.DOTALL)}


def mistakes():
    """Errors of a program."""
    found = set()
    for folder, _, names in os.walk(os.path.join(TOP, "src")):
        for name in names:
            for _, text in calls(without_comments(read(folder, name)), r"\bstd::logic_error\("):
                found.add(composed(text))
    return found


def strays():
    """Messages in unexpected places of the libraries. src/model is a program of the build; check_tool_messages.py has the
    messages of the library for documents and of what it shares with the tool."""
    found = []
    others = tuple(os.path.join(TOP, "src", name, "") for name in ("model", "documents", "json"))
    for folder, _, names in os.walk(os.path.join(TOP, "src")):
        for name in names:
            path = os.path.join(folder, name)
            is_other = path.startswith(others) or (os.path.basename(folder) == "text" and name.endswith(".cpp"))
            if is_other or not name.endswith((".cpp", ".h")) or name in ("Errors.cpp", "FailureTexts.cpp"):
                continue
            source = without_characters(without_comments(read(path)))
            for call in ("static_assert", "std::logic_error"):
                for _, text in list(calls(source, rf"\b{call}\(")):
                    source = source.replace(text, "")
            found += [f"{path} holds the message '{text[1]}'" for text in STRING.finditer(source)
                      if re.search(r"[A-Za-z]{2,} [A-Za-z]{2,}", text[1]) and text[1] not in SHOWN]
            found += [f"{path} throws by itself" for _ in re.finditer(rf"throw (?:{EXCEPTIONS})\b", source)]
    return found


def main():
    page = read("docs", "pages", "messages.md")
    errors = without_comments(read("src", "framework", "Errors.cpp"))
    texts = read("src", "reportbase", "FailureTexts.cpp")

    in_manual = set(rows(chapter(page, "Exceptions of the model")))
    wrong = compare("exceptions", thrown(errors), in_manual)

    in_manual = {text for text, _ in rows(chapter(page, "What GetProblems() adds"))}
    wrong += compare("problems", reported(errors), in_manual)

    in_manual = set()
    for title in ("What GetErrorString() returns", "Files", "XML documents", "Binary representations"):
        in_manual |= {text for text, _ in rows(chapter(page, title))}
    wrong += compare("reasons", reasons(texts), in_manual)

    in_manual = {text for text, _ in rows(chapter(page, "Mistakes of a program"))}
    wrong += compare("mistakes", mistakes(), in_manual)
    wrong += strays()
    print("\n".join(wrong) or f"{len(thrown(errors))} exceptions and {len(reasons(texts))} reasons are in the manual.")
    sys.exit(1 if wrong else 0)


main()
