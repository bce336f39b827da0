#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Compares what two builds make of the same damaged documents, as exchange_damaged writes it."""

import argparse
import collections
import sys

COLUMNS = ["form", "number", "way", "outcome", "place", "state", "problems", "document", "message"]
SHOWN = 20


def rows(path):
    with open(path, encoding="utf-8", newline="\n") as file:
        return [line.rstrip("\n").split("\t") for line in file]


def difference(left, right):
    """The names of the columns that differ."""
    return [name for name, one, other in zip(COLUMNS, left, right) if one != other]


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("left")
    parser.add_argument("right")
    parser.add_argument("--documents", type=int, required=True, help="how many there must be")
    arguments = parser.parse_args()
    left, right = rows(arguments.left), rows(arguments.right)

    documents = {row[1] for row in left}
    if len(documents) != arguments.documents or len(left) != len(right):
        sys.exit(f"{len(documents)} documents in {len(left)} and {len(right)} rows, not {arguments.documents}")
    if any(len(row) != len(COLUMNS) for row in left + right):
        sys.exit("a row has other columns")

    outcomes = collections.Counter(row[3] for row in left)
    differing = [(one, other) for one, other in zip(left, right) if difference(one, other)]
    print(f"{len(documents)} documents, {len(left)} times read: "
          + ", ".join(f"{number} {outcome}" for outcome, number in sorted(outcomes.items())))
    for one, other in differing[:SHOWN]:
        print(f"{' '.join(one[:3])}: different {', '.join(difference(one, other))}\n  {one[3:]}\n  {other[3:]}")
    if differing:
        sys.exit(f"{len(differing)} differences")
    if not outcomes["read"]:
        sys.exit("no document was read")
    refused = "thrown" if left[0][0] == "json" else "refused"  # the library for documents refuses by exceptions alone
    if not outcomes[refused]:
        sys.exit("no document was refused")


if __name__ == "__main__":
    main()
