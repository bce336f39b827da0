#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Checks that all places that have the version and its date agree: check_release.py FOLDER"""

import datetime
import re
import sys
from pathlib import Path

top = Path(sys.argv[1])
errors = []


def found(name: str, pattern: str) -> str:
    """What the pattern finds first in the file."""
    match = re.search(pattern, (top / name).read_text(encoding="utf-8"), re.MULTILINE)
    if not match:
        sys.exit(f"{name}: nothing fits {pattern}")
    return match[1]


def expect(name: str, pattern: str, expected: str) -> None:
    if found(name, pattern) != expected:
        errors.append(f"{name}: expected {expected}, not {found(name, pattern)}")


version = found("CMakeLists.txt", r"^project\(TunerProperties VERSION (\S+)")
date = found("CMakeLists.txt", r"^set\(TunerProperties_DATE (\S+)\)")
expect("CHANGELOG.md", r"^## (.*)$", f"[{version}] - {date}")
expect("debian/changelog", r"^tunerproperties \(([^-)]+)", version)
day = datetime.date.fromisoformat(date)
expect("debian/changelog", r"^ -- .*>  (.*) \d\d:", f"{day:%a, %d %b %Y}")

if errors:
    sys.exit("\n".join(errors))
