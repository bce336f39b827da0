# SPDX-License-Identifier: MIT
"""What the public headers say about classes and members, in a sentence."""

from __future__ import annotations

import re


def _sentence(text: str) -> str:
    """The first one, up to the semicolon before defaults and refusals."""
    found = re.match(r"[^;.]*(?:\.\w[^;.]*)*", " ".join(text.split()))
    return f"{found[0].strip()}." if found and found[0].strip() else ""


def of_class(header: str, name: str) -> str:
    found = re.search(rf"((?:^///[^\n]*\n)+)class JOBXML_EXPORT {name}\b", header, re.MULTILINE)
    return _sentence(found[1].replace("///", "")) if found else ""


def of_member(header: str, name: str) -> str:
    found = re.search(rf"^ *///\s*\\name {name}\n((?: *///(?! *@)[^\n]*\n)*)", header, re.MULTILINE)
    return _sentence(found[1].replace("///", "")) if found else ""
