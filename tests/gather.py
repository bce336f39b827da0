#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Generates sources that include several suites of a test program, each in a namespace of its own, since all of them
define names such as `record`.

gather.py MOC FOLDER [--unit SOURCE...]... writes the suites of the n-th unit to FOLDER/suites_n.cpp, and the output of
moc for each to FOLDER/NAME.moc. Files that would not change are not written.
"""

import re
import subprocess
import sys
from pathlib import Path

INCLUDE = re.compile(r'^#include (?:<(?P<system>[^>]+)>|"(?P<own>[^"]+)")', re.MULTILINE)
# Code that is not allowed in a namespace, or ignores it.
OUTSIDE = re.compile(r'^(?:Q_DECLARE_METATYPE\(|template <>|extern "C"|namespace (?:JobXml|REPORTGENERATOR|QTest)\b).*',
                     re.MULTILINE)


def write(path, text):
    if not path.exists() or path.read_text(encoding="utf-8") != text:
        path.write_text(text, encoding="utf-8")


def run_moc(moc, source, folder):
    made = subprocess.run([moc, "-i", str(source)], stdout=subprocess.PIPE, text=True, check=False)
    if made.returncode:
        sys.exit(f"{source}: moc failed")
    write(folder / f"{source.stem}.moc", made.stdout)


def includes(source, text):
    """All includes except the output of moc. They precede all namespaces, so that those within have no effect."""
    for match in INCLUDE.finditer(text):
        own = match["own"]
        if not own:
            yield f"#include <{match['system']}>"
        elif not own.endswith(".moc"):
            beside = (source.parent / own).resolve()
            yield f'#include "{beside if beside.is_file() else own}"'


def unit(sources):
    texts = [source.read_text(encoding="utf-8") for source in sources]
    lines = ["// Made by gather.py."]
    if '#include "Suites.h"' not in texts[0]:
        lines.append('#include "Suites.h"')
    if len(sources) == 1:
        return "\n".join([*lines, f'#include "{sources[0]}"', ""])
    for source, text in zip(sources, texts):
        outside = OUTSIDE.search(text)
        if outside:
            sys.exit(f"{source}: '{outside[0]}' is not allowed in a namespace; use tp_add_test({source.stem} "
                     "ALONE)")
    for source, text in zip(sources, texts):
        lines += [line for line in includes(source, text) if line not in lines]
    for source in sources:
        lines += [f"namespace {source.stem} {{", f'#include "{source}"', "}"]
    return "\n".join([*lines, ""])


def main(moc, folder, *arguments):
    folder = Path(folder)
    folder.mkdir(parents=True, exist_ok=True)
    units = []
    for argument in arguments:
        if argument == "--unit":
            units.append([])
        else:
            units[-1].append(Path(argument))
    for number, sources in enumerate(units, start=1):
        for source in sources:
            run_moc(moc, source, folder)
        write(folder / f"suites_{number}.cpp", unit(sources))


main(*sys.argv[1:])
