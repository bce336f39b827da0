#!/usr/bin/env python3
"""doxygen_filter.py FILE prints a public header or a page as input for doxygen; the lines keep their numbers.

Headers: a group's text also becomes that of its first member, from which doxygen copies it to the others, so that each
function is documented. Members that classes of the model only share with each other are left out; what is protected for
derived classes is marked. The documentation of a class or function ends with its example, the part of a file in
snippets/ that is marked by its name; the headers do not refer to these files, which are not installed.

Pages: headings are named, so that links to them, which other viewers of Markdown understand unchanged, work. Links to
files of the sources, which are not part of the manual, become plain text.
"""

import html
import os
import re
import sys

TOP = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))


def examples():
    """The files in snippets/ by the names of their marked parts."""
    folder = os.path.join(TOP, "docs", "snippets")
    found = {}
    for name in sorted(os.listdir(folder)):
        if name.endswith(".cpp"):
            with open(os.path.join(folder, name), encoding="utf-8") as file:
                found.update({part: name for part in re.findall(r"//! \[(\w+)\]", file.read())})
    return found


def with_examples(lines):
    """Puts the example of each documented declaration outside of classes before it."""
    parts = examples()
    result = []
    for i, line in enumerate(lines):
        if (line[:1].isalpha() or line.startswith("[[")) and i > 0 and lines[i - 1].startswith("///"):
            declaration = re.split(r"[;{]", "".join(lines[i:]), maxsplit=1)[0]
            name = re.match(r"(?:class|struct)\s(?:[A-Z_]+\s)?(\w+)", declaration) or re.search(r"(\w+)\(", declaration)
            file = parts.pop(name[1], None) if name else None
            if file:
                line = f"/** \\snippet {file} {name[1]} */ {line}"
        result.append(line)
    return result


def without_forward_declarations(text):
    """doxygen lists those of templates as if they were classes to use."""
    return re.sub(r"^template <[^;{]*>\n(class|struct) \w+;$", "\n", text, flags=re.MULTILINE)


def header(path, lines):
    lines = with_examples(without_forward_declarations("".join(lines)).splitlines(keepends=True))
    if os.path.basename(os.path.dirname(path)) == "jobxml":
        lines = [re.sub(r"^protected:(?! // for derived classes)", "private:", line) for line in lines]
    result = []
    text = None  # of the group that is being opened; None outside of such a comment
    pending = None  # to be put before the group's first member
    for line in lines:
        comment = re.match(r"\s*///\s?(.*)", line)
        if comment and comment[1].startswith("\\name"):
            text = []
        elif comment and comment[1].startswith("@{"):
            pending = " ".join(text) if text else None
            text = None
        elif comment and text is not None:
            text.append(comment[1].strip())
        elif comment:
            pending = None  # the first member has a text of its own
        elif line.strip() and pending:
            line = re.sub(r"^(\s*)", lambda indent: f"{indent[1]}/** \\details {pending} */ ", line, count=1)
            pending = None
        result.append(line)
    return result


def slug(heading):
    """The name that viewers of Markdown give to a heading."""
    heading = re.sub(r"\[([^]]*)\]\([^)]*\)", r"\1", heading)
    return re.sub(r"[^\w\- ]", "", heading.lower()).strip().replace(" ", "-")


def pages():
    folders = [os.path.join(TOP, "docs", "pages"), os.path.join(TOP, "docs")]
    return {name for folder in folders for name in os.listdir(folder) if name in PAGES or folder.endswith("pages")}


PAGES = ["changes.md", "formats.md", "git.md", "json.md", "model.md", "page.md", "paths.md"]


def page(path, lines):
    known = pages()
    own = os.path.basename(path)

    def anchor(name, fragment):
        stem = os.path.splitext(name)[0]
        return f"{stem}-{fragment}" if fragment else f"page-{stem}"

    def link(match):
        text, target = match[1], match[2]
        if re.match(r"[a-z]+:", target):
            return match[0]
        file, _, fragment = target.partition("#")
        name = os.path.basename(file) or own
        return f"[{text}](#{anchor(name, fragment)})" if name in known else text

    def code(match):
        # doxygen would decode the first, and look for the ends of the others
        if not re.search(r"&#?\w+;|'", match[1]) and match[1].count('"') % 2 == 0:
            return match[0]
        text = re.sub(r"::|[\\@#%]", r"\\\g<0>", html.escape(match[1], quote=False))
        return "<code>" + text.replace('"', "&quot;").replace("'", "&apos;") + "</code>"

    def heading(match):
        level, title = match[1], match[2]
        return f"{level} {title} {{#{anchor(own, slug(title) if level != '#' else '')}}}"

    result = []
    for part in re.split(r"(^```.*?^```$)", "".join(lines), flags=re.MULTILINE | re.DOTALL):
        if not part.startswith("```"):
            part = re.sub(r"\[([^]]*)\]\(([^)\s]+)\)", link, part)
            part = re.sub(r"`([^`\n]+)`", code, part)
            part = re.sub(r"^(#+) (.*?)[ \t]*$", heading, part, flags=re.MULTILINE)
        result.append(part)
    return result


def main():
    path = sys.argv[1]
    with open(path, encoding="utf-8") as file:
        lines = file.readlines()
    sys.stdout.reconfigure(encoding="utf-8")
    sys.stdout.writelines((page if path.endswith(".md") else header)(path, lines))


if __name__ == "__main__":
    main()
