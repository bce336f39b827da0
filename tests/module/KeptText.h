// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

/// A text that a function of the libraries returned, and a copy made while they were loaded.
struct KeptText
{
    QByteArray function; ///< `Class::function`, as in the headers
    QString text;
    QByteArray bytes; ///< if it returned bytes instead of a text
    QByteArray then; ///< a copy in memory of its own, UTF-8
};

using KeptTexts = QVector<KeptText>;
