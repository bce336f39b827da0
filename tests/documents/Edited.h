// SPDX-License-Identifier: MIT
#pragma once

#include <exception>

#include <QPair>
#include <QString>
#include <QVector>

#include <tunerdocuments/Editor.h>

/// The text of a document in XML or JSON after an operation with its editor, or why it was refused.
template <class Operation>
QByteArray edited(const QByteArray &text, const Operation &operation)
{
    const QString name = text.startsWith('{') ? QStringLiteral("d.json") : QStringLiteral("d.xml");
    try {
        TunerDocuments::Editor editor(TunerDocuments::Document::fromBytes(text, name), text, name);
        operation(editor);
        return editor.toBytes();
    } catch (const std::exception &exception) {
        return exception.what();
    }
}

/// The text after these members are set, or unset by a null value.
inline QByteArray edited(const QByteArray &text, const QVector<QPair<QString, QString>> &values)
{
    return edited(text, [&](TunerDocuments::Editor &editor) {
        for (const auto &[path, value] : values) {
            if (value.isNull())
                editor.unset(path);
            else
                editor.set(path, value);
        }
    });
}
