#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Runs a program, and checks where the loader finds the functions that allocate: malloc() and its relatives in the given
library, operator new and delete in the C++ library. The libraries given last must not depend on an allocator."""

from __future__ import annotations

import argparse
import os
import re
import subprocess
import sys
from pathlib import Path

MALLOC = {"malloc", "calloc", "realloc", "free", "posix_memalign"}
OPERATORS = {"_Znwm", "_Znam", "_ZdlPv", "_ZdlPvm", "_ZdaPv"}
CXX_LIBRARY = "libstdc++.so.6"
ALLOCATORS = ("libmimalloc", "libjemalloc", "libtcmalloc", "libhoard")
BINDING = re.compile(r"binding file (\S+) \[0\] to (\S+) \[0\]: normal symbol `(\w+)'")


def bindings(program: Path) -> list[tuple[str, str, str]]:
    """User, definer and name of each function, after the loader has resolved all of them."""
    run = subprocess.run([program], env={"LC_ALL": "C.UTF-8", "LD_BIND_NOW": "1", "LD_DEBUG": "bindings"},
                         capture_output=True, text=True, errors="replace")  # fmt: skip
    return [(Path(user).name, Path(definer).name, name) for user, definer, name in BINDING.findall(run.stderr)]


def misplaced(program: Path, allocator: str, qt: str) -> list[str]:
    found = bindings(program)
    expected = {name: allocator for name in MALLOC} | {name: CXX_LIBRARY for name in OPERATORS}
    complaints = [f"{user} finds {name} in {definer}, not in {expected[name]}"
                  for user, definer, name in found if name in expected and definer != expected[name]]  # fmt: skip
    for user in (qt, program.name, CXX_LIBRARY):
        if not any(name in expected for caller, _, name in found if caller.startswith(user)):
            complaints.append(f"the loader reports no function that allocates for {user}")
    return complaints


def needed(readelf: str, library: Path) -> list[str]:
    text = subprocess.run([readelf, "--dynamic", "--wide", library], env=dict(os.environ, LC_ALL="C"),
                          capture_output=True, text=True, check=True).stdout  # fmt: skip
    return re.findall(r"\(NEEDED\).*\[(.*)\]", text)


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--readelf", default="readelf")
    parser.add_argument("--allocator", required=True, help="the name of the library, such as libc.so.6")
    parser.add_argument("--qt", required=True, help="the name of Qt Core, such as libQt5Core.so.5")
    parser.add_argument("program", type=Path)
    parser.add_argument("libraries", nargs="+", type=Path)
    options = parser.parse_args()
    complaints = misplaced(options.program, options.allocator, options.qt)
    for library in options.libraries:
        names = needed(options.readelf, library)
        if not any(name.startswith("libc.so") for name in names):
            complaints.append(f"{library.name} depends on {names}, which is not what a library does")
        complaints += [f"{library.name} depends on {name}" for name in names if name.startswith(ALLOCATORS)]
    print("\n".join(complaints) or f"malloc() is that of {options.allocator}")
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main())
