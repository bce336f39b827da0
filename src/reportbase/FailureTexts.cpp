// SPDX-License-Identifier: MIT
#include "FailureTexts.h"

namespace REPORTGENERATOR::FailureTexts {

namespace {

QString hexWord(quint32 word)
{
    return QStringLiteral("0x") + QStringLiteral("%1").arg(word, 8, 16, QLatin1Char('0')).toUpper();
}

} // namespace

// Sources and reasons may hold a "%1" of their own; so they are put together, not filled in.

QString at(const QString &source, const QString &why)
{
    return source + QStringLiteral(": ") + why;
}

QString at(const QString &source, qint64 line, qint64 column, const QString &why)
{
    return source + QStringLiteral(":%1:%2: ").arg(line).arg(column) + why;
}

QString xmlText()
{
    return QStringLiteral("XML text");
}

QString binaryData()
{
    return QStringLiteral("binary data");
}

QString unnamedFile()
{
    return QStringLiteral("unnamed file");
}

QString noFileGiven()
{
    return QStringLiteral("no file was given");
}

QString noFileName()
{
    return QStringLiteral("no file name was given");
}

QString nulInFileName()
{
    return QStringLiteral("a file name cannot contain U+0000");
}

QString notAFile()
{
    return QStringLiteral("it exists and is not a regular file");
}

QString isAFolder()
{
    return QStringLiteral("Filename refers to a directory");
}

QString notOpenForReading()
{
    return QStringLiteral("the file is open, but not for reading");
}

QString cannotOpen(const QString &reason)
{
    return QStringLiteral("cannot open: ") + reason;
}

QString cannotRead(const QString &reason)
{
    return QStringLiteral("cannot read: ") + reason;
}

QString cannotWrite(const QString &reason)
{
    return QStringLiteral("cannot write: ") + reason;
}

QString nothingToWrite()
{
    return QStringLiteral("the object has no data, so there is nothing to write");
}

QString characterNotForXml(int line)
{
    return QStringLiteral("a text in or just above line %1 of the document holds a character that XML cannot carry "
                          "(a control character, U+FFFE, U+FFFF or half a surrogate pair)")
        .arg(line);
}

QString tooLargeToCompress(qint64 size, qint64 limit)
{
    return QStringLiteral("%1 bytes are to be compressed, but readers take no more than %2").arg(size).arg(limit);
}

QString wrongRoot(const QString &found, const QString &expected)
{
    return QStringLiteral("the root element is '") + found + QStringLiteral("', not '") + expected
        + QStringLiteral("'");
}

QString xmlDeclaration()
{
    return QStringLiteral("the XML declaration has to consist of version, encoding and standalone");
}

QString tooManyAttributes(int limit)
{
    return QStringLiteral("an element has more than %1 attributes").arg(limit);
}

QString internalSubset()
{
    return QStringLiteral("the document type has an internal subset, by which a small document may become a large one");
}

QString undeclaredEntity(const QString &name)
{
    return QStringLiteral("Entity '%1' not declared.").arg(name);
}

QString unusableStream()
{
    return QStringLiteral("the stream has no device that can be read, or is in error");
}

QString headCutOff(qint64 available)
{
    return QStringLiteral("the leading word and the length take 8 bytes, but only %1 are there").arg(available);
}

QString wrongLeadingWord(quint32 found, quint32 expected, const QString &objectName)
{
    return QStringLiteral("the leading word is ") + hexWord(found) + QStringLiteral(", not ") + hexWord(expected)
        + QStringLiteral(" (") + objectName + QStringLiteral(")");
}

QString wrongLength(qint64 length, qint64 following)
{
    return QStringLiteral("the record's length is %1, but %2 bytes follow").arg(length).arg(following);
}

QString negativeLength(qint64 length)
{
    return QStringLiteral("the record's length is %1, which is less than 0").arg(length);
}

QString moreThanTheLength(qint64 length)
{
    return QStringLiteral("the record's length is %1, but more bytes than that follow").arg(length);
}

QString membersCutOff(qint64 length)
{
    return QStringLiteral("the record's length is %1, but its members go on behind that").arg(length);
}

QString membersEndEarly(qint64 read, qint64 length)
{
    return QStringLiteral("the record's length is %1, but its members end after %2 bytes").arg(length).arg(read);
}

QString expandsTooFar(qint64 declared, qint64 compressed, qint64 limit)
{
    return QStringLiteral("%1 compressed bytes declare %2 bytes, but no more than %3 are taken")
        .arg(compressed)
        .arg(declared)
        .arg(limit);
}

QString damagedCompression()
{
    return QStringLiteral("the compressed bytes are damaged");
}

} // namespace REPORTGENERATOR::FailureTexts
