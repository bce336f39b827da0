// SPDX-License-Identifier: MIT
#pragma once

#include <QVector>
#include <QXmlStreamReader>

namespace Damage {

/// The tokens of an XML text up to its end or to the first error, as a plain reader without the model finds them.
struct XmlTokens
{
    enum Type { Start, End, Text, Other };

    struct Token
    {
        Type type;
        QString name;
        QXmlStreamAttributes attributes;
        QString text;
        qint64 line;
        qint64 column;
    };

    QVector<Token> tokens;
    bool wellFormed = false;
    QString error; // line, column and reason, if it is not

    static XmlTokens of(QXmlStreamReader &reader);
    static XmlTokens ofBytes(const QByteArray &bytes)
    {
        QXmlStreamReader reader(bytes);
        return of(reader);
    }
    static XmlTokens ofText(const QString &text)
    {
        QXmlStreamReader reader(text);
        return of(reader);
    }
};

/// Line, column and reason in the library's form.
QString xmlErrorText(qint64 line, qint64 column, const QString &why);

} // namespace Damage
