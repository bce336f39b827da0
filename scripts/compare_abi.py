#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Compares the binary interface of a shared library with its record, a file that abidw writes:

    compare_abi.py [--record] --headers FOLDER LIBRARY RECORD

The library has to be built with debug information, and the folder has its public headers: only types of these headers
belong to the interface. The status is 1 for an incompatible change, and 0 for none and for additions, which are reported.
--record writes the record, unless the library has changed incompatibly and still has the same SONAME.
"""

from __future__ import annotations

import argparse
import re
import subprocess
import sys
import tempfile
from pathlib import Path

from abi_types import type_changes
from compact_abi import compact

# Bits of the status of abidiff.
ERROR = 1 | 2

# Paths would change the record with every machine. Types that no header declares cannot be used by a program.
STABLE = ["--no-corpus-path", "--no-comp-dir-path", "--drop-private-types", "--exported-interfaces-only",
          "--no-parameter-names", "--no-write-default-sizes", "--no-elf-needed", "--type-id-style", "hash"]

SUPPRESSIONS = Path(__file__).parent.parent / "abi" / "ignored.abignore"

SUMMARY = re.compile(r"^(?:Functions|Variables|(?:Function|Variable) symbols) changes summary: (.*)$", re.MULTILINE)
REMOVED_OR_CHANGED = re.compile(r"\b[1-9]\d* (?:removed|changed)\b", re.IGNORECASE)
SONAME = re.compile(r"^SONAME changed from '(.*)' to '(.*)'$", re.MULTILINE)


def run(*command: object) -> subprocess.CompletedProcess[str]:
    return subprocess.run([str(word) for word in command], capture_output=True, text=True, check=False)


def fail(message: str) -> None:
    sys.exit(f"compare_abi.py: {message}")


def describe(library: Path, headers: Path, description: Path) -> None:
    """Writes what abidw says of the library."""
    done = run("abidw", *STABLE, "--suppressions", SUPPRESSIONS, "--headers-dir", headers, "--out-file", description,
               library)
    if done.returncode != 0 or not description.exists():
        fail(f"abidw cannot read {library}:\n{done.stdout}{done.stderr}")
    compact(description, headers)


def changes(record: Path, description: Path, *options: str) -> str:
    """The report of abidiff, empty if nothing has changed."""
    done = run("abidiff", *options, record, description)
    if done.returncode & ERROR:
        fail(f"abidiff cannot compare with {record}:\n{done.stdout}{done.stderr}")
    return done.stdout if done.returncode != 0 or options else ""


def is_incompatible(report: str) -> bool:
    """Whether anything was removed or changed. The status of abidiff does not show it: a member that is added to a
    structure has the same one as a function that is added."""
    summaries = SUMMARY.findall(report)
    if not summaries:
        fail(f"abidiff reports in a form that is not known:\n{report}")
    return any(REMOVED_OR_CHANGED.search(summary) for summary in summaries)


def main() -> None:
    parser = argparse.ArgumentParser(description="Compares the binary interface of a library with its record.")
    parser.add_argument("--record", action="store_true", help="write the record")
    parser.add_argument("--headers", type=Path, required=True, help="the folder with the public headers")
    parser.add_argument("library", type=Path)
    parser.add_argument("recorded", type=Path)
    arguments = parser.parse_args()
    record: Path = arguments.recorded

    with tempfile.TemporaryDirectory() as folder:
        description = Path(folder) / record.name
        describe(arguments.library, arguments.headers, description)
        removed_or_changed: list[str] = []
        additions: list[str] = []
        report = ""
        if record.exists():
            report = changes(record, description)
            removed_or_changed, additions = type_changes(record, description)
        elif not arguments.record:
            fail(f"{record} is missing; run scripts/abi.sh --record")
        soname = SONAME.search(report)
        if not soname and (removed_or_changed or (report and is_incompatible(report))):
            print("\n".join([report, *removed_or_changed]).strip())
            fail(f"{arguments.library.name} has changed incompatibly, see above: programs that were built with it before "
                 "would fail. Revert the change and add to the interface instead, or raise the major version in "
                 "project() and with it the SONAME.")
        if arguments.record:
            record.parent.mkdir(parents=True, exist_ok=True)
            record.write_bytes(description.read_bytes())
            print(f"{record} is recorded.")
        elif soname:
            fail(f"the SONAME {soname[1]} is now {soname[2]}; run scripts/abi.sh --record")
        elif report or (report := changes(record, description, "--harmless")) or additions:
            print("\n".join([report, *additions]).strip())
            print(f"{arguments.library.name} has additions, see above, and is compatible. "
                  "Record them by scripts/abi.sh --record.")
        else:
            print(f"{arguments.library.name} is as recorded.")


if __name__ == "__main__":
    main()
