# SPDX-License-Identifier: MIT
"""The objects of a document, whose members have a value and a flag."""

from __future__ import annotations

from . import refusals
from .classes import (
    CLASSES, MODES, MODE_LIST, NO_CHOICE, OWN_VERSION, TEXT, TUNER_TYPE, TUNER_TYPES, WHEN_CHOSEN, Class, Member, Value,
)
from .numbers import real_of_single_precision

_OWN_VERSION_NUMBER = real_of_single_precision(OWN_VERSION)
_QUANTITY = CLASSES["TunerProperties"].by_name["quantity"]


class Object:
    """An object of any class.

    `values` and the bits of `flags` are those of the members, by bit. An alternative that nobody used is None.
    `choice` is the bit of a ValueItem's chosen alternative, `version` what a TunerProperties read last.
    """

    __slots__ = ("cls", "values", "flags", "choice", "version")

    def __init__(self, cls: Class) -> None:
        self.cls = cls
        self.values: list[Value] = [_default(member) for member in cls.members]
        self.flags = 0
        self.choice = NO_CHOICE
        self.version: str | None = None

    def is_set(self, member: Member) -> bool:
        return self.flags >> member.bit & 1 == 1

    def mark(self, member: Member) -> None:
        self.flags |= 1 << member.bit

    def store(self, member: Member, value: Value) -> None:
        self.values[member.bit] = value
        self.flags |= 1 << member.bit

    def chosen(self) -> Member | None:
        """The row of the chosen alternative."""
        return self.cls.members[self.choice] if self.choice < len(self.cls.members) else None

    def child(self, member: Member) -> Object:
        """The child object of the member."""
        value = self.values[member.bit]
        if value is None:
            value = self.values[member.bit] = new_object(member.item_class)
        return value

    def is_present(self, member: Member) -> bool:
        if member.type == TEXT:
            return self.values[member.bit] is not None
        if member.is_list or member.type == MODE_LIST:
            return bool(self.values[member.bit])
        return self.is_set(member)

    def has_data(self) -> bool:
        if self.cls.is_choice:
            chosen = self.chosen()
            return chosen is not None and self.child(chosen).has_data()
        for member in self.cls.mandatory:
            if not self.is_present(member):
                return False
        return True

    def is_older(self) -> bool:
        """Whether the version read last is older than that of this page."""
        return _OWN_VERSION_NUMBER > real_of_single_precision(self.version or "")

    def take_version(self, version: str | None) -> None:
        self.version = version
        if self.is_older():
            self.values = [_default(member) for member in self.cls.members]
            self.flags = 1 << _QUANTITY.bit

    def append(self, member: Member, item: Object | int, validate: bool) -> None:
        if validate and not (item.has_data() if isinstance(item, Object) else is_mode(item)):
            raise refusals.incomplete_item(self.cls.name, member.name)
        self.values[member.bit].append(item)
        self.flags |= 1 << member.bit

    def store_type(self, member: Member, value: int, validate: bool) -> None:
        if validate and not is_tuner_type(value):
            raise refusals.no_tuner_type()
        self.store(member, value)


def new_object(class_name: str) -> Object:
    return Object(CLASSES[class_name])


def _default(member: Member) -> Value:
    if member.is_list or member.type == MODE_LIST:
        return []
    if member.item_class and member.written != WHEN_CHOSEN:
        return new_object(member.item_class)
    return member.default


def is_mode(index: int) -> bool:
    return 0 <= index < len(MODES)


def is_tuner_type(index: int) -> bool:
    return 0 <= index < len(TUNER_TYPES)


def mode_name(index: int) -> str | None:
    return MODES[index] if is_mode(index) else None


def tuner_type_name(index: int) -> str | None:
    return TUNER_TYPES[index] if is_tuner_type(index) else None


def mode_of(name: str) -> int:
    return MODES.index(name) if name in MODES else -1


def tuner_type_of(name: str) -> int:
    return TUNER_TYPES.index(name) if name in TUNER_TYPES else -1


def check(obj: Object) -> None:
    """Raises an error for the first member in the tree that is missing or invalid."""
    if obj.cls.is_choice:
        _check_choice(obj)
        return
    for member in obj.cls.members:
        is_set = obj.is_set(member)
        if not (_is_valid(member, obj.values[member.bit]) if is_set else not member.mandatory):
            raise refusals.not_set(obj.cls.name, member.name)
        if is_set:
            for child in children(obj, member):
                check(child)


def children(obj: Object, member: Member) -> list[Object]:
    if member.is_list:
        return obj.values[member.bit]
    return [obj.values[member.bit]] if member.item_class else []


def _is_valid(member: Member, value: Value) -> bool:
    if member.type == TEXT:
        return value is not None
    if member.type == TUNER_TYPE:
        return is_tuner_type(value)
    return all(map(is_mode, value)) if member.type == MODE_LIST else True


def _check_choice(item: Object) -> None:
    chosen = item.chosen()
    if chosen is None:
        raise refusals.nothing_chosen()
    if not item.is_set(chosen):
        raise refusals.chosen_not_set(chosen.name)
    if not item.child(chosen).has_data():
        raise refusals.chosen_without_data(chosen.name)


def may_write(obj: Object, validate: bool, checked: bool = False) -> bool:
    """Whether to write the object; `checked` means that a check of its parent included it."""
    if not validate:
        return True
    if not checked:
        check(obj)
    return obj.has_data()
