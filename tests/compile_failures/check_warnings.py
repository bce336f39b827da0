#!/usr/bin/env python3
"""check_warnings.py SOURCE WORDS COMPILER...: the compiler warns with WORDS in exactly those lines of the source that
end with "// warned", and refuses none."""

import re
import subprocess
import sys

source, words, compiler = sys.argv[1], sys.argv[2], sys.argv[3:]
with open(source, encoding="utf-8") as file:
    lines = file.read().splitlines()
expected = {number for number, line in enumerate(lines, 1) if line.endswith("// warned")}

result = subprocess.run([*compiler, source], capture_output=True, text=True)
found = {int(match[1]) for match in re.finditer(rf"{re.escape(source)}:(\d+):\d+: warning: {words}", result.stderr)}

wrong = [f"no warning in line {number}: {lines[number - 1].strip()}" for number in sorted(expected - found)]
wrong += [f"a warning in line {number}: {lines[number - 1].strip()}" for number in sorted(found - expected)]
if result.returncode != 0 or not expected:
    wrong += ["the file does not compile, or expects no warning", result.stderr]
print("\n".join(wrong) or f"{len(found)} ignored results are warned of.")
sys.exit(1 if wrong else 0)
