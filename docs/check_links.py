#!/usr/bin/env python3
"""check_links.py FOLDER: every link of the HTML pages in the folder leads to a page, and a place in it, that is there."""

import os
import sys
from html.parser import HTMLParser
from urllib.parse import unquote, urlsplit


class Page(HTMLParser):
    def __init__(self, path):
        super().__init__()
        self.links = []
        self.places = set()
        with open(path, encoding="utf-8") as file:
            self.feed(file.read())

    def handle_starttag(self, tag, attributes):
        for name, value in attributes:
            if name in ("href", "src"):
                self.links.append(value)
            elif name == "id" or (name == "name" and tag == "a"):
                self.places.add(value)


def main():
    folder = sys.argv[1]
    pages = {name: Page(os.path.join(folder, name)) for name in os.listdir(folder) if name.endswith(".html")}
    dead = set()
    count = 0
    for name, page in pages.items():
        for link in page.links:
            parts = urlsplit(link)
            if parts.scheme in ("http", "https", "javascript"):
                continue
            count += 1
            target = unquote(parts.path) or name
            if parts.scheme or not os.path.exists(os.path.join(folder, target)):
                dead.add(f"{name}: {link}: there is no such file")
            elif parts.fragment and target in pages and unquote(parts.fragment) not in pages[target].places:
                dead.add(f"{name}: {link}: there is no such place in the page")
    if not count:
        sys.exit(f"{folder} holds no page with a link")
    print("\n".join(sorted(dead)) or f"{len(pages)} pages, and none of their {count} links is dead.")
    sys.exit(1 if dead else 0)


main()
