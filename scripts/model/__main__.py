# SPDX-License-Identifier: MIT
"""Generates every committed file, or part of one, that follows from the model: model [--check] [--top FOLDER] PROGRAM

PROGRAM is tunerproperties_model, a program of the build that writes the model as JSON. With --check nothing is written;
each file that is not up to date is reported, with the first line that differs.
"""

from __future__ import annotations

import argparse
import itertools
import subprocess
import sys
import tempfile
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parent))

import author_schema  # noqa: E402
import benchmark  # noqa: E402
import formats_page  # noqa: E402
import fuzzing  # noqa: E402
import json_schema  # noqa: E402
import lists  # noqa: E402
import schema  # noqa: E402
import texts  # noqa: E402
from model import GenerationError, Model  # noqa: E402

MODEL = "share/model.json"


def model_from(program: Path) -> str:
    with tempfile.TemporaryDirectory() as folder:
        file = Path(folder) / "model.json"
        subprocess.run([program, file], check=True)
        return file.read_text(encoding="utf-8")


class Committed:
    """Reads files of the project."""

    def __init__(self, top: Path) -> None:
        self._top = top

    def __call__(self, path: str) -> str:
        file = self._top / path
        return file.read_text(encoding="utf-8") if file.exists() else ""


def first_difference(path: str, is_now: str, should_be: str) -> str:
    for number, (now, expected) in enumerate(
        itertools.zip_longest(is_now.splitlines(), should_be.splitlines()), start=1
    ):
        if now != expected:
            return (f"{path}:{number}: does not match the model; run scripts/model.sh\n"
                    f"  is        {'the end of the file' if now is None else now}\n"
                    f"  should be {'the end of the file' if expected is None else expected}")
    return f"{path}: does not end with exactly one line feed"


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("program", type=Path)
    parser.add_argument("--check", action="store_true", help="write nothing, report what differs")
    parser.add_argument("--list", action="store_true", help="write nothing, list the files")
    parser.add_argument("--top", type=Path, default=Path(__file__).resolve().parents[2],
                        help="the top folder of the project")
    arguments = parser.parse_args()
    committed = Committed(arguments.top)

    text = model_from(arguments.program)
    model = Model(text)
    problems: list[str] = []
    made = {MODEL: text}
    for part in (author_schema, benchmark, formats_page, fuzzing, json_schema, lists, schema, texts):
        try:
            made |= part.make(model, committed, problems.append)
        except GenerationError as error:
            problems.append(str(error))

    if arguments.list:
        print("\n".join(made))
        return 0
    for path, should_be in made.items():
        is_now = committed(path)
        if is_now == should_be:
            continue
        if arguments.check:
            problems.append(first_difference(path, is_now, should_be))
        else:
            (arguments.top / path).write_text(should_be, encoding="utf-8")
            print(f"written: {path}")
    for problem in problems:
        print(problem, file=sys.stderr)
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
