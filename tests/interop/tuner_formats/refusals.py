# SPDX-License-Identifier: MIT
"""The errors of readers and writers, with the texts of docs/formats.md."""

from __future__ import annotations


class Refusal(Exception):
    """A document that is not read or not written; `text` is the reason."""

    def __init__(self, text: str) -> None:
        super().__init__(text)
        self.text = text


class WrongRepresentation(Refusal):
    """A damaged document, or one of another class, for which the library returns false."""


class OutOfRange(Refusal):
    pass


class InvalidXml(Refusal):
    pass


class BinaryParsing(Refusal):
    pass


class IncompleteDefinition(Refusal):
    pass


def not_set(class_name: str, member: str) -> OutOfRange:
    return OutOfRange(f"{class_name}: Please set {member} properly.")


def no_tuner_type() -> OutOfRange:
    return OutOfRange("enum is not valid (classname=TunerProperties,membername=m_type)")


def incomplete_item(class_name: str, item: str) -> IncompleteDefinition:
    return IncompleteDefinition(f"{class_name}: Tried to append not completely defined or invalid item {item}.")


def item_without_data(class_name: str, item: str) -> IncompleteDefinition:
    return IncompleteDefinition(f"Parameters for {item} are not set properly in '{class_name}'.")


def nothing_chosen() -> IncompleteDefinition:
    return IncompleteDefinition(
        "ValueItem:Check failed. The mandatory choice ChoiceValueItem is not initialized")


def chosen_not_set(alternative: str) -> IncompleteDefinition:
    return IncompleteDefinition("ValueItem:Check failed. The mandatory member (choice element)"
                                f" m_{_lower_first(alternative)} is not set.")


def chosen_without_data(alternative: str) -> IncompleteDefinition:
    return IncompleteDefinition("ValueItem:Check failed. Mandatory data of the member (choice element)"
                                f" m_{_lower_first(alternative)} is not set.")


def empty_boolean(class_name: str, member: str) -> InvalidXml:
    return InvalidXml(f"Please set a value or a default for the boolean '{member}' in '{class_name}'.")


def unknown_element(class_name: str, element: str) -> InvalidXml:
    return InvalidXml(f"Unknown Tag '{element}' in '{class_name}'.")


def wrong_length(class_name: str) -> BinaryParsing:
    return BinaryParsing(f"{class_name}::SetBinary(...): Length error occurred during processing of binary"
                         " representation")


def _lower_first(name: str) -> str:
    return name[0].lower() + name[1:]
