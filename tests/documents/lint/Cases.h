// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QStringList>
#include <QVector>

/// A rule, a document in which it finds something, and a similar one in which it finds nothing.
struct LintCase
{
    const char *rule;
    QByteArray found; ///< XML
    QStringList expected; ///< the findings, as the tool writes them
    QByteArray silent; ///< XML
};

/// Each rule, once or several times.
QVector<LintCase> lintCases();

/// A document with this in it from the beginning of its second line.
QByteArray inDocument(const QByteArray &xml);

/// The same for the only value of its only node, from the beginning of the fourth line.
QByteArray inValue(const QByteArray &xml);
