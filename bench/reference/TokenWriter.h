// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QVector>

namespace Bench {

/// One call of the stream writer, with its arguments ready-made.
struct Token
{
    enum class Type : qint8 {
        Start, ///< of the element `name`
        Attribute, ///< `name` with the value `text`
        Characters, ///< `text`
        End,
    };
    Type type = Type::End;
    QString name;
    QString text;
};

/// The tokens of a document, blanks between elements left out.
QVector<Token> tokensOf(const QByteArray &xml);

/// Writes ready-made tokens through Qt's stream writer: what XML costs without a model. No declaration, like GetXml().
QString writeTokens(const QVector<Token> &tokens);

/// The same with declaration and indentation by two blanks, as a whole document.
QString writeTokensFormatted(const QVector<Token> &tokens);

} // namespace Bench

Q_DECLARE_TYPEINFO(Bench::Token, Q_MOVABLE_TYPE);
