// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QVector>

namespace TunerDocuments {

/// A part of a text, and what it becomes.
struct Replacement
{
    int begin;
    int end; ///< equal to the beginning for an insertion
    QByteArray text;
    bool isText = false; ///< neither before nor after with tags or comments, and not empty before
};
using Replacements = QVector<Replacement>;

/// The part of a text from `begin` to `end` with the replacements in it. Insertions at the same place stay in their
/// order, before what begins there. Throws CannotEdit if replacements overlap.
QByteArray replaced(const QByteArray &text, int begin, int end, Replacements replacements);

} // namespace TunerDocuments
