#!/usr/bin/env python3
"""console_blocks.py README TOOL EXAMPLE SCRATCH: what the README shows of the tool on a terminal is what it prints.

The blocks are run in their order in a folder that holds the example, and the document with the two mistakes that the
text before the block describes.
"""

import os
import re
import shutil
import subprocess
import sys

readme, tool, example, scratch = map(os.path.abspath, sys.argv[1:])


def lines_that_differ(block, environment):
    for command, expected in re.findall(r"^\$ (.*)\n((?:(?!\$ ).*\n)*)", block, flags=re.MULTILINE):
        done = subprocess.run(["bash", "-c", command], env=environment, text=True, capture_output=True, check=False)
        shown = done.stdout + done.stderr
        if shown != expected:
            yield f"$ {command}\nprints\n{shown}and the README shows\n{expected}"


def main():
    shutil.rmtree(scratch, ignore_errors=True)
    os.makedirs(scratch)
    os.chdir(scratch)
    with open(example, encoding="utf-8") as file:
        whole = file.read()
    broken = whole.replace('optional="false"', 'optional=""', 1).replace("<name>agc</name>", "", 1)
    for name, text in (("scp.xml", whole), ("broken.xml", broken)):
        with open(name, "w", encoding="utf-8") as file:
            file.write(text)
    path = os.path.dirname(tool) + os.pathsep + os.environ["PATH"]
    with open(readme, encoding="utf-8") as file:
        blocks = re.findall(r"^```console\n(.*?)^```$", file.read(), flags=re.MULTILINE | re.DOTALL)
    wrong = [text for block in blocks for text in lines_that_differ(block, dict(os.environ, PATH=path))]
    print("\n".join(wrong) or f"{len(blocks)} blocks are as the tool prints them.")
    sys.exit(0 if blocks and not wrong else 1)


main()
