#!/usr/bin/env python3
"""make_index.py FOLDER adds a search over all of their text to the HTML pages in the folder, which needs no server.

It writes searchindex.js, an entry for each section: page, section, address, text. search.js, which every page then
includes, looks in it.
"""

import json
import os
import re
import sys
from html.parser import HTMLParser

# What only lists things that have pages of their own.
LISTS = re.compile(r"(-members|_8h|_source)\.html$|^(annotated|classes|files|functions|globals|hierarchy|namespace"
                   r"(s|members)|pages|dir_)\w*\.html$")
SKIPPED = {"script", "style"}
WITHOUT_END = {"area", "br", "col", "hr", "img", "input", "link", "meta", "wbr"}


class Sections(HTMLParser):
    """The sections of a page: headings, and the titles of members."""

    def __init__(self, file):
        super().__init__()
        self.file = file
        self.title = ""
        self.sections = []  # title, anchor, text
        self.path = []  # elements that are open, with their classes
        self.anchor = ""
        with open(file, encoding="utf-8") as page:
            self.feed(page.read())

    def within(self, name):
        return any(name in classes for _, classes in self.path)

    def heading(self):
        return any(re.fullmatch(r"h[1-6]", tag) for tag, _ in self.path)

    def handle_starttag(self, tag, attributes):
        attributes = dict(attributes)
        classes = (attributes.get("class") or "").split()
        if tag == "a" and attributes.get("id"):
            self.anchor = attributes["id"]
            if self.sections and self.heading():
                self.sections[-1][1] = self.anchor
        if tag not in WITHOUT_END:
            self.path.append((tag, classes))
        if self.within("contents") and re.fullmatch(r"h[1-6]", tag) and "groupheader" not in classes:
            self.sections.append(["", self.anchor if "memtitle" in classes else "", ""])
        elif "contents" in classes and not self.sections:
            self.sections.append(["", "", ""])
        elif self.sections and tag in ("p", "div", "td", "th", "li", "dd", "dt", "br", "tr"):
            self.sections[-1][2] += " "

    def handle_endtag(self, tag):
        while self.path and tag not in WITHOUT_END:
            if self.path.pop()[0] == tag:
                break

    def handle_data(self, data):
        if any(tag in SKIPPED for tag, _ in self.path):
            return
        if self.within("headertitle"):
            self.title += data
        elif self.within("contents") and not self.within("memberdecls") and not self.within("permalink"):
            if self.heading() and not self.within("groupheader"):
                self.sections[-1][0] += data
            else:
                self.sections[-1][2] += data


def plain(text):
    return re.sub(r"\s+", " ", text).strip()


def entries(folder):
    for name in sorted(os.listdir(folder)):
        if name.endswith(".html") and not LISTS.search(name):
            page = Sections(os.path.join(folder, name))
            for title, anchor, text in page.sections:
                title = re.sub(r" ?\[\d+/\d+\]$", "", plain(title))
                if title or plain(text):
                    yield [plain(page.title), title, f"{name}#{anchor}" if anchor else name, plain(text)]


def main():
    folder = sys.argv[1]
    index = list(entries(folder))
    if not index:
        sys.exit(f"{folder} has no page with text")
    with open(os.path.join(folder, "searchindex.js"), "w", encoding="utf-8") as file:
        file.write("var searchIndex = " + json.dumps(index, ensure_ascii=False, separators=(",", ":")) + ";\n")
    for name in os.listdir(folder):
        if name.endswith(".html"):
            path = os.path.join(folder, name)
            with open(path, encoding="utf-8") as file:
                text = file.read()
            with open(path, "w", encoding="utf-8") as file:
                file.write(text.replace("</head>", '<script src="search.js" defer></script>\n</head>', 1))


main()
