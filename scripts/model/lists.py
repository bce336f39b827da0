# SPDX-License-Identifier: MIT
"""Lists of classes that cannot be written over that of the library."""

from __future__ import annotations

from model import Model, between_marks

QT_TEST = "include/jobxml/QtTest.h"


def make(model: Model, read, _complain) -> dict[str, str]:
    lines = [f"template <> inline char *toString(const JobXml::{name} &object) {{ return JobXml::testText(object); }}"
             for name in model.class_names]
    return {QT_TEST: between_marks(QT_TEST, read(QT_TEST), "//", "A text for each class", lines)}
