#!/usr/bin/env python3
"""check_layers.py TOP: no file includes what is above its folder or calls what it should not, and the manual's picture
of the tool is the same."""

import os
import re
import sys

from layers import AVOIDED, HEAVY, LAYERS, NAMES_NO_CLASS, TOOL

INCLUDE = re.compile(r'^\s*#\s*include\s*(?:"([^"]+)"|<([^>]+)>)')
SUFFIXES = (".h", ".cpp")


def files_of(top, folder):
    """The C++ files of the folder itself."""
    path = os.path.join(top, folder)
    return sorted(f"{folder}/{name}" for name in (os.listdir(path) if os.path.isdir(path) else [])
                  if name.endswith(SUFFIXES))


def folders(top):
    """All folders with C++ files of the libraries and the tool."""
    for root in ("include", "src", TOOL):
        for path, _, names in os.walk(os.path.join(top, root)):
            if any(name.endswith(SUFFIXES) for name in names):
                yield os.path.relpath(path, top)


def included(top, file, name):
    """The file of the project that the include means; None if it is one of another project, or generated."""
    for start in (os.path.dirname(file), "include", "src", TOOL):
        candidate = os.path.normpath(os.path.join(start, name))
        if os.path.isfile(os.path.join(top, candidate)):
            return candidate
    return None


def is_within(file, places):
    return any(file == place or os.path.dirname(file) == place for place in places)


def problem(top, layer, file, name):
    """Why the file may not include this, or None."""
    for start, users in HEAVY.items():
        if name.startswith(start) and file not in users:
            return f"only {', '.join(users)} may include it, since it takes seconds to compile"
    target = included(top, file, name)
    if target is None or is_within(target, [layer.folder] + layer.others):
        return None
    return f"{layer.folder} may include {', '.join(layer.others) or 'no other folder'}"


def wrong_includes(top, layers):
    for layer in layers:
        for file in files_of(top, layer.folder):
            with open(os.path.join(top, file), encoding="utf-8") as source:
                for number, line in enumerate(source, 1):
                    match = INCLUDE.match(line)
                    name = match and (match[1] or match[2])
                    why = match and problem(top, layer, file, name)
                    if why:
                        yield f"{file}:{number}: includes {name}: {why}"


def named_classes(top, folder):
    """Where the files of the folder name a class of the model."""
    with open(os.path.join(top, "src", "module", "Classes.def"), encoding="utf-8") as classes:
        names = re.findall(r"^JOBXML_(?:CLASS|KIND)\(\w+, (\w+)\)", classes.read(), re.MULTILINE)
    if not names:
        yield "src/module/Classes.def lists no class"
    name = re.compile(rf"\b(?:{'|'.join(names)})\b")
    for file in files_of(top, folder):
        with open(os.path.join(top, file), encoding="utf-8") as source:
            for number, line in enumerate(source, 1):
                if match := name.search(line):
                    yield f"{file}:{number}: names the class {match[0]}: {folder} knows no class of the model"


def avoided_calls(top, avoided):
    """Where files of the libraries and the tool call a function that another one replaces."""
    for folder in sorted(folders(top)):
        for file in files_of(top, folder):
            with open(os.path.join(top, file), encoding="utf-8") as source:
                for number, line in enumerate(source, 1):
                    for call, (users, instead) in avoided.items():
                        if file not in users and (match := re.search(call, line)):
                            yield f"{file}:{number}: calls {match[0]}: use {instead}"


def wrong_table(layers):
    """What keeps the table from being an order."""
    lower = set()
    for layer in layers:
        for place in layer.others:
            if place not in lower and os.path.dirname(place) not in lower:
                yield f"the table of layers lets {layer.folder} include {place}, which is not below it"
        lower.add(layer.folder)


def wrong_manual(top, layers):
    """Where the table of the tool's folders in ARCHITECTURE.md differs from that of the layers."""
    with open(os.path.join(top, "docs", "ARCHITECTURE.md"), encoding="utf-8") as page:
        rows = re.findall(r"^\| `(\w+)` \|[^|]*\|([^|]*)\|$", page.read().split("\nThe tool", 1)[-1], re.MULTILINE)
    listed = {folder: set(re.findall(r"`(\w+)`", cell)) for folder, cell in rows}
    for layer in layers:
        folder = layer.folder[len(TOOL) + 1:] if layer.folder.startswith(TOOL + "/") else None
        if folder is None:
            continue
        expected = {place[len(TOOL) + 1:] for place in layer.others if place.startswith(TOOL + "/")}
        if listed.get(folder) != expected:
            yield f"docs/ARCHITECTURE.md: the row of `{folder}` must say that it may use {sorted(expected)}"


def main(top):
    known = {layer.folder for layer in LAYERS}
    wrong = [f"{folder} has no place in the table of layers" for folder in sorted(folders(top)) if folder not in known]
    wrong += [f"the table of layers has {folder}, which holds no C++ file" for folder in sorted(known)
              if not files_of(top, folder)]
    wrong += wrong_table(LAYERS)
    wrong += wrong_includes(top, LAYERS)
    wrong += named_classes(top, NAMES_NO_CLASS)
    wrong += avoided_calls(top, AVOIDED)
    wrong += wrong_manual(top, LAYERS)
    print("\n".join(wrong) or f"The includes of {len(known)} folders follow the layers.")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
