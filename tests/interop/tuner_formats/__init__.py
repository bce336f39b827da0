# SPDX-License-Identifier: MIT
"""Reads and writes tuner descriptions in the encodings of docs/formats.md, without the library.

`classes` is the page's tables, `objects` what a document consists of; `xml`, `records` and `snapshot` are one encoding
each, with a function to read into an object and one to write it.
"""
