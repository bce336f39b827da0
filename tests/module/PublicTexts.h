// SPDX-License-Identifier: MIT
#pragma once

#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <QVector>

/// Finds the declarations in a header that give callers a text: functions that return one or assign one to a reference,
/// and data members that are not private. Splits the text into statements at braces and semicolons.
class PublicTexts
{
public:
    /// `Class::name` for each, or `name` outside of classes.
    static QSet<QByteArray> in(const QString &folder)
    {
        PublicTexts texts;
        QDirIterator headers(folder, {QStringLiteral("*.h")}, QDir::Files, QDirIterator::Subdirectories);
        while (headers.hasNext()) {
            QFile file(headers.next());
            if (file.open(QIODevice::ReadOnly))
                texts.readHeader(QString::fromUtf8(file.readAll()));
        }
        return texts.m_names;
    }

private:
    struct Scope
    {
        enum Kind { Namespace, Class, Other };

        Kind kind = Namespace;
        QString name;
        bool isPrivate = false;
    };

    void readHeader(QString text)
    {
        text.remove(QRegularExpression(QStringLiteral("//[^\n]*|^ *#[^\n]*|^QT?_\\w+\\(.*\\);?$"),
                                       QRegularExpression::MultilineOption));
        m_scopes = {Scope()};
        QString statement;
        for (const QChar character : qAsConst(text)) {
            if (character == QLatin1Char('{')) {
                open(statement.simplified());
                statement.clear();
            } else if (character == QLatin1Char('}')) {
                m_scopes.removeLast();
                statement.clear();
            } else if (character == QLatin1Char(';')) {
                read(statement.simplified());
                statement.clear();
            } else {
                statement += character;
                readAccess(statement);
            }
        }
    }

    void readAccess(QString &statement)
    {
        static const QRegularExpression access(QStringLiteral("^\\s*(public|protected|private):"));
        const auto match = access.match(statement);
        if (!match.hasMatch())
            return;
        m_scopes.last().isPrivate = match.captured(1) == QStringLiteral("private");
        statement.clear();
    }

    void open(const QString &statement)
    {
        static const QRegularExpression type(
            QStringLiteral("^(?:template ?<.*> ?)?(class|struct) (?:[A-Z_]+ )?(\\w+)(?: final)?(?: :.*)?$"));
        const auto match = type.match(statement);
        if (match.hasMatch()) {
            m_scopes.append({Scope::Class, match.captured(2), match.captured(1) == QStringLiteral("class")});
        } else if (statement.startsWith(QStringLiteral("namespace"))
                   || statement.startsWith(QStringLiteral("extern"))) {
            m_scopes.append(Scope());
        } else {
            read(statement);
            m_scopes.append({Scope::Other, QString(), true});
        }
    }

    void read(const QString &statement)
    {
        const Scope &scope = m_scopes.last();
        if (scope.kind == Scope::Other || scope.isPrivate)
            return;
        static const QString type =
            QStringLiteral("(?:QString|QStringList|QStringView|QStringRef|QLatin1String|QByteArray|QVariant|"
                           "QVariantList|QVariantMap|ObjectPath|Problem|QDebug|char ?\\*)");
        static const QRegularExpression function(
            QStringLiteral("^(?<result>[^()=]*?[ *&])(?<name>operator ?[^ (]+|\\w+) ?\\((?<parameters>.*)$"));
        static const QRegularExpression data(QStringLiteral("^(?<type>[^()=]*[ *&>])(?<name>\\w+)(?: =.*)?$"));
        static const QRegularExpression text(QStringLiteral("\\b") + type);
        static const QRegularExpression filledIn(QStringLiteral("(?:^|, )(?:QVector<)?\\b") + type
                                                 + QStringLiteral(">? ?[&*]"));
        static const QRegularExpression noDeclaration(QStringLiteral("^(using|typedef|friend|enum|class|struct|Q_)"));
        if (noDeclaration.match(statement).hasMatch())
            return;
        const auto asFunction = function.match(statement);
        const auto asData = data.match(statement);
        QString name;
        if (asFunction.hasMatch()) {
            const bool returns = text.match(asFunction.captured(QStringLiteral("result"))).hasMatch();
            const bool fills = filledIn.match(asFunction.captured(QStringLiteral("parameters"))).hasMatch();
            if (returns || fills)
                name = asFunction.captured(QStringLiteral("name"));
        } else if (asData.hasMatch() && text.match(asData.captured(QStringLiteral("type"))).hasMatch()) {
            name = asData.captured(QStringLiteral("name"));
        }
        if (!name.isEmpty())
            m_names.insert((scope.name.isEmpty() ? name : scope.name + QStringLiteral("::") + name).toLatin1());
    }

    QVector<Scope> m_scopes;
    QSet<QByteArray> m_names;
};
