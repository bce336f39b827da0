// SPDX-License-Identifier: MIT
#include "Console.h"

#include <cstdio>

#include <QFile>

#include <reportbase/SaveFile.h>

FileFailure::FileFailure(const QString &text) : std::runtime_error(text.toStdString()) { }

namespace Console {

namespace {

QString escaped(const QString &text, bool quotes)
{
    QString result;
    result.reserve(text.size());
    for (const QChar character : text) {
        const ushort code = character.unicode();
        if (quotes && (character == QLatin1Char('"') || character == QLatin1Char('\\')))
            result += QLatin1Char('\\') + QString(character);
        else if (character == QLatin1Char('\n'))
            result += QLatin1String("\\n");
        else if (character == QLatin1Char('\r'))
            result += QLatin1String("\\r");
        else if (character == QLatin1Char('\t'))
            result += QLatin1String("\\t");
        else if (character.category() == QChar::Other_Control || code == 0x2028 || code == 0x2029)
            result += QStringLiteral("\\u%1").arg(code, 4, 16, QLatin1Char('0'));
        else
            result += character;
    }
    return result;
}

} // namespace

QString streamName()
{
    return QStringLiteral("-");
}

void write(const QByteArray &bytes)
{
    QFile output;
    const QString reason = output.open(fileno(stdout), QIODevice::WriteOnly | QIODevice::Unbuffered)
        ? REPORTGENERATOR::WriteAll(output, bytes)
        : output.errorString();
    if (!reason.isNull())
        throw FileFailure(streamName() + QStringLiteral(": cannot write: ") + reason);
}

void complain(const QString &text)
{
    QFile error;
    if (error.open(fileno(stderr), QIODevice::WriteOnly | QIODevice::Unbuffered))
        error.write("tunerproperties: " + onOneLine(text).toUtf8() + '\n');
}

QString onOneLine(const QString &text)
{
    return escaped(text, false);
}

QString quoted(const QString &text)
{
    return QLatin1Char('"') + escaped(text, true) + QLatin1Char('"');
}

} // namespace Console
