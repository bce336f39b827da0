#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""check_syntax.py COMMANDS JOBS OTHERS runs every compiler call of the file, so many at a time, with -fsyntax-only: as
far as all warnings, but no object file is made. Headers compiled beforehand and resources are left out, and so are
sources that match the regular expression OTHERS. It prints what the compiler says, and fails if one of the calls does."""

import json
import re
import shlex
import subprocess
import sys
from concurrent.futures import ThreadPoolExecutor


def check(entry):
    words = shlex.split(entry["command"])
    at = words.index("-o")
    call = [*words[:at], "-fsyntax-only", *words[at + 2 :]]
    done = subprocess.run(call, cwd=entry["directory"], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                          check=False)  # fmt: skip
    if done.stdout:
        print(done.stdout, flush=True)
    return done.returncode == 0


def main(commands, jobs, others):
    with open(commands, encoding="utf-8") as file:
        left_out = re.compile(rf"/(cmake_pch\.hxx[^/]*|qrc_\w+\.cpp)$|{others}")
        entries = [e for e in json.load(file) if not left_out.search(e["file"])]
    with ThreadPoolExecutor(int(jobs)) as pool:
        passed = list(pool.map(check, entries))
    if not passed or not all(passed):
        sys.exit(f"{passed.count(False)} of {len(passed)} sources do not pass")
    print(f"{len(passed)} sources are free of warnings.")


main(*sys.argv[1:])
