# SPDX-License-Identifier: MIT
"""The XML document."""

from __future__ import annotations

import re
from typing import NamedTuple
from xml.parsers import expat

from . import refusals
from .classes import (
    BOOLEAN, DOUBLE, FLOAT, INT32, INT64, MODE_LIST, OWN_VERSION, TEXT, TUNER_TYPE, UINT64, UNLESS_EMPTY, WHEN_CHOSEN,
    WHEN_SET, Member, Value,
)
from .numbers import real, real_of_single_precision, two_decimals, whole
from .objects import Object, may_write, mode_name, mode_of, new_object, tuner_type_name, tuner_type_of
from .refusals import WrongRepresentation

# --- Writing ---------------------------------------------------------------------------------------------------------

_DECLARATION = '<?xml version="1.0" encoding="UTF-8"?>\n'
_IN_ELEMENTS = str.maketrans({"&": "&amp;", "<": "&lt;", ">": "&gt;", '"': "&quot;", "\r": "&#13;"})
_IN_ATTRIBUTES = {**_IN_ELEMENTS, ord("\n"): "&#10;", ord("\t"): "&#9;"}
_NOT_FOR_XML = re.compile("[^\t\n\r\u0020-\uD7FF\uE000-\uFFFD\U00010000-\U0010FFFF]")

_TEXTS = {
    TEXT: lambda text: text or "",
    BOOLEAN: lambda value: "true" if value else "false",
    INT32: str,
    INT64: str,
    UINT64: str,
    FLOAT: two_decimals,
    DOUBLE: two_decimals,
    TUNER_TYPE: lambda index: tuner_type_name(index) or "",
}


def write(obj: Object, validate: bool) -> bytes | None:
    """The document; None if there is nothing to write."""
    if not may_write(obj, validate):
        return None
    text = _DECLARATION + _element(obj, "\n", validate) + "\n"
    if lost := _NOT_FOR_XML.search(text):
        line = text.count("\n", 0, lost.start()) + 1
        raise WrongRepresentation(
            f"XML text: a text in or just above line {line} of the document contains a character that XML cannot carry"
            " (a control character, U+FFFE, U+FFFF or half a surrogate pair)")
    return text.encode("utf-8")


def _element(obj: Object, line: str, validate: bool) -> str:
    """The element of an object that may be written; `line` is a line end and the indentation of the element."""
    name = obj.cls.name
    start = f'<{name} Version="{OWN_VERSION}"' if obj.cls.has_version else f"<{name}"
    for member in obj.cls.attributes:
        if member.written != WHEN_SET or obj.is_set(member):
            start += f' {member.name}="{_text(member, obj.values[member.bit]).translate(_IN_ATTRIBUTES)}"'

    deeper = line + "  "
    content = [part for member in obj.cls.elements for part in _parts(obj, member, deeper, validate)]
    if not content:
        return start + "/>"
    return start + ">" + deeper + deeper.join(content) + line + f"</{name}>"


def _parts(obj: Object, member: Member, line: str, validate: bool) -> list[str]:
    """The elements of a member."""
    value = obj.values[member.bit]
    is_set = obj.is_set(member)
    if member.is_list:
        return _items(obj, member, line, validate)
    if member.type == MODE_LIST:
        return [f"<{member.name}>{mode_name(mode) or ''}</{member.name}>" for mode in value]
    if member.written == WHEN_CHOSEN:
        if obj.choice != member.bit or not is_set:
            return []
        alternative = obj.child(member)
        return [_element(alternative, line, validate)] if may_write(alternative, validate) else []
    if member.written == WHEN_SET and not is_set:
        return []
    if isinstance(value, Object):
        return [_element(value, line, validate)] if may_write(value, validate, checked=True) else []
    return [f"<{member.name}>{_text(member, value).translate(_IN_ELEMENTS)}</{member.name}>"]


def _items(obj: Object, member: Member, line: str, validate: bool) -> list[str]:
    is_set = obj.is_set(member)
    parts = []
    for item in obj.values[member.bit]:
        if validate and member.mandatory and not item.has_data():
            raise refusals.item_without_data(obj.cls.name, member.name)
        if (is_set or member.written == UNLESS_EMPTY) and may_write(item, validate, checked=is_set):
            parts.append(_element(item, line, validate))
    return parts


def _text(member: Member, value: Value) -> str:
    return _TEXTS[member.type](value)


# --- Reading ---------------------------------------------------------------------------------------------------------

MOST_ATTRIBUTES = 1024


def read(obj: Object, document: bytes, validate: bool) -> None:
    tokens = _Tokens(document)
    root = tokens.next()
    if root.name != obj.cls.name:
        raise _refused_at(root, f"the root element is '{root.name}', not '{obj.cls.name}'")
    _read_element(obj, root, tokens, validate)
    while tokens.next().kind != _Token.END_OF_DOCUMENT:
        pass


class _Token(NamedTuple):
    START, END, TEXT, END_OF_DOCUMENT, FAULT = range(5)

    kind: int
    line: int
    column: int
    name: str  # of a start or end tag, without its namespace
    attributes: dict[str, str]
    text: str  # of a text, or of an error


class _Tokens:
    """The tags and texts of a document, one by one. A document with an error has them up to the error."""

    def __init__(self, document: bytes) -> None:
        self._next = 0
        self._tokens = _Parser().tokens_of(document)

    def next(self) -> _Token:
        token = self._tokens[self._next]
        if token.kind == _Token.FAULT:
            raise _refused_at(token, token.text)
        if token.kind != _Token.END_OF_DOCUMENT:
            self._next += 1
        return token

    def text_of_element(self) -> str:
        """The text up to the end tag, without that of nested elements."""
        text = ""
        depth = 1
        while depth > 0:
            token = self.next()
            if token.kind == _Token.START:
                depth += 1
            elif token.kind == _Token.END:
                depth -= 1
            elif depth == 1:
                text += token.text
        return text

    def skip(self, name: str) -> None:
        while (token := self.next()).kind != _Token.END_OF_DOCUMENT and token.name != name:
            pass


class _Parser:
    """Splits a document into tags and texts."""

    _SEPARATOR = " "  # between a namespace and a name

    def __init__(self) -> None:
        self._tokens: list[_Token] = []
        self._namespaces = 0  # declared in the tag that comes next
        self._parser = expat.ParserCreate(namespace_separator=self._SEPARATOR)
        self._parser.buffer_text = True
        self._parser.XmlDeclHandler = self._declaration
        self._parser.StartDoctypeDeclHandler = self._document_type
        self._parser.SkippedEntityHandler = self._entity  # which an external subset might have declared
        self._parser.StartNamespaceDeclHandler = self._namespace
        self._parser.StartElementHandler = self._start
        self._parser.EndElementHandler = lambda name: self._add(_Token.END, self._local(name))
        self._parser.CharacterDataHandler = lambda text: self._add(_Token.TEXT, text=text)

    def tokens_of(self, document: bytes) -> list[_Token]:
        try:
            self._parser.Parse(document, True)
            self._add(_Token.END_OF_DOCUMENT)
        except expat.ExpatError as error:
            self._add(_Token.FAULT, text=expat.errors.messages[error.code])
        except _Fault as fault:
            self._add(_Token.FAULT, text=str(fault))
        return self._tokens

    def _add(self, kind: int, name: str = "", attributes: dict[str, str] | None = None, text: str = "") -> None:
        self._tokens.append(_Token(kind, self._parser.CurrentLineNumber, self._parser.CurrentColumnNumber + 1, name,
                                   attributes or {}, text))

    def _local(self, name: str) -> str:
        return name.rpartition(self._SEPARATOR)[2]

    def _declaration(self, version: str, _encoding: str | None, _standalone: int) -> None:
        if version != "1.0":
            raise _Fault("only XML 1.0 is read")

    def _document_type(self, _name: str, _system: str | None, _public: str | None, has_internal_subset: int) -> None:
        if has_internal_subset:
            raise _Fault("the document type has an internal subset, by which a small document may become a large one")

    def _entity(self, name: str, _is_parameter: bool) -> None:
        raise _Fault(f"Entity '{name}' not declared.")

    def _namespace(self, _prefix: str | None, _uri: str) -> None:
        self._namespaces += 1

    def _start(self, name: str, attributes: dict[str, str]) -> None:
        if len(attributes) + self._namespaces > MOST_ATTRIBUTES:
            raise _Fault(f"an element has more than {MOST_ATTRIBUTES} attributes")
        self._namespaces = 0
        self._add(_Token.START, self._local(name), attributes)


class _Fault(Exception):
    """Documents that are rejected even if they are well-formed."""


def _refused_at(token: _Token, why: str) -> WrongRepresentation:
    return WrongRepresentation(f"XML text:{token.line}:{token.column}: {why}")


def _read_element(obj: Object, start: _Token, tokens: _Tokens, validate: bool) -> None:
    if obj.cls.has_version:
        obj.take_version(start.attributes.get("Version", ""))
    for member in obj.cls.attributes:
        if member.name in start.attributes:
            _store(obj, member, start.attributes[member.name], validate)

    while True:
        token = tokens.next()
        if token.kind == _Token.START:
            _read_child(obj, token, tokens, validate)
        elif token.kind == _Token.END_OF_DOCUMENT or token.kind == _Token.END and token.name == start.name:
            return


def _read_child(obj: Object, start: _Token, tokens: _Tokens, validate: bool) -> None:
    member = obj.cls.by_name.get(start.name)
    if member is None:
        _read_unknown(obj, start, tokens, validate)
    elif member.is_list or member.written == WHEN_CHOSEN:
        child = new_object(member.item_class)
        _read_element(child, start, tokens, validate)
        if member.is_list:
            obj.append(member, child, validate)
        else:
            obj.store(member, child)
            obj.choice = member.bit
    elif member.item_class:
        _read_element(obj.values[member.bit], start, tokens, validate)
        obj.mark(member)
    elif member.type == MODE_LIST:
        obj.append(member, mode_of(tokens.text_of_element()), validate)
    else:
        _store(obj, member, tokens.text_of_element(), validate)


def _read_unknown(obj: Object, start: _Token, tokens: _Tokens, validate: bool) -> None:
    if not obj.cls.has_version or obj.is_older():
        tokens.skip(start.name)
    elif validate:
        raise refusals.unknown_element(obj.cls.name, start.name)
    # otherwise the content of the element is read as content of the document itself


def _store(obj: Object, member: Member, text: str, validate: bool) -> None:
    kind = member.type
    if kind == TUNER_TYPE:
        obj.store_type(member, tuner_type_of(text), validate)
    elif kind == BOOLEAN:
        if validate and not text:
            raise refusals.empty_boolean(obj.cls.name, member.name)
        obj.store(member, text.lower() not in ("", "0", "false"))
    else:
        obj.store(member, _VALUES[kind](text))


_VALUES = {
    TEXT: str,
    INT32: lambda text: whole(text, 32),
    INT64: lambda text: whole(text, 64),
    UINT64: lambda text: whole(text, 64) & 0xFFFF_FFFF_FFFF_FFFF,
    FLOAT: real_of_single_precision,
    DOUBLE: real,
}
