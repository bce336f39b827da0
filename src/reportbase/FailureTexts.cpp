// SPDX-License-Identifier: MIT
#include "FailureTexts.h"

#include "text/OwnText.h"

namespace REPORTGENERATOR::FailureTexts {

namespace {

QString hexWord(quint32 word)
{
    return ownText("0x") + ownText("%1").arg(word, 8, 16, QLatin1Char('0')).toUpper();
}

} // namespace

// Sources and reasons may contain "%1" themselves, so texts are concatenated instead of using arg().

QString at(const QString &source, const QString &why)
{
    return source + ownText(": ") + why;
}

QString at(const QString &source, qint64 line, qint64 column, const QString &why)
{
    return source + ownText(":%1:%2: ").arg(line).arg(column) + why;
}

QString xmlText()
{
    return ownText("XML text");
}

QString binaryData()
{
    return ownText("binary data");
}

QString unnamedFile()
{
    return ownText("unnamed file");
}

QString noFile()
{
    return ownText("the file pointer is null");
}

QString noFileName()
{
    return ownText("the file name is empty");
}

QString nulInFileName()
{
    return ownText("a file name cannot contain U+0000");
}

QString notAFile()
{
    return ownText("it exists and is not a regular file");
}

QString isAFolder()
{
    return ownText("Filename refers to a directory");
}

QString foreignLink()
{
    return QString(
        QLatin1String("a symbolic link on the path belongs to another user and is in a folder where other users "
                      "can place links"));
}

QString foreignFile()
{
    return QString(
        QLatin1String("the file belongs to another user and is in a folder where other users can place files"));
}

QString pathHasChanged()
{
    return QString(QLatin1String("the file at the end of the path was removed or renamed, or the path was changed"));
}

QString cannotKeepOwners(const QString &reason)
{
    return QLatin1String("owner and group of the old file cannot be kept: ") + reason;
}

QString cannotKeepAccessList(const QString &reason)
{
    return QLatin1String("the access control list of the old file cannot be kept: ") + reason;
}

QString cannotKeepAttributes(const QString &reason)
{
    return QLatin1String("the extended attributes of the old file cannot be kept: ") + reason;
}

QString cannotKeepAttribute(const QString &name, const QString &reason)
{
    return QLatin1String("the extended attribute '") + name + QLatin1String("' of the old file cannot be kept: ")
        + reason;
}

QString moreOpen()
{
    return QString(QLatin1String("the new file would be open to more users than the old one"));
}

QString notOpenForReading()
{
    return ownText("the file is open, but not for reading");
}

QString cannotOpen(const QString &reason)
{
    return ownText("cannot open: ") + reason;
}

QString cannotRead(const QString &reason)
{
    return ownText("cannot read: ") + reason;
}

QString cannotWrite(const QString &reason)
{
    return ownText("cannot write: ") + reason;
}

QString nothingToWrite()
{
    return ownText("the object has no data, so there is nothing to write");
}

QString characterNotForXml(qint64 line)
{
    return ownText("a text in or just above line %1 of the document contains a character that XML cannot carry "
                   "(a control character, U+FFFE, U+FFFF or half a surrogate pair)")
        .arg(line);
}

QString tooLargeToCompress(qint64 size, qint64 limit)
{
    return ownText("%1 bytes are to be compressed, but readers accept no more than %2").arg(size).arg(limit);
}

QString outOfMemory(qint64 bytesRead, qint64 longestText)
{
    return ownText("out of memory after %1 bytes, and no text may have more than %2 characters")
        .arg(bytesRead)
        .arg(longestText);
}

QString wrongRoot(const QString &found, const QString &expected)
{
    return ownText("the root element is '") + found + ownText("', not '") + expected + ownText("'");
}

QString xmlTooLong(qint64 length, qint64 limit)
{
    return ownText("the document has %1 characters, but no more than %2 can be read from a text, only from a file")
        .arg(length)
        .arg(limit);
}

QString documentTooLarge(qint64 limit)
{
    return ownText("the document has more than %1 bytes, the most that are accepted").arg(limit);
}

QString xmlDeclaration()
{
    return ownText("the XML declaration has to consist of version, encoding and standalone");
}

QString unknownEncoding(const QString &name, const QString &known)
{
    return ownText("the encoding '") + name + ownText("' is not supported, only ") + known;
}

QString otherEncoding(const QString &name)
{
    return ownText("the XML declaration names the encoding '") + name
        + ownText("', but the document begins in another one");
}

QString wrongBytes()
{
    return ownText("Encountered incorrectly encoded content.");
}

QString wrongCharacter()
{
    return ownText("Invalid XML character.");
}

QString nameTooLong(int limit)
{
    return ownText("a name has more than %1 characters").arg(limit);
}

QString documentTypePlace()
{
    return ownText("a document has one document type at most, before its root element");
}

QString tooManyAttributes(int limit)
{
    return ownText("an element has more than %1 attributes").arg(limit);
}

QString internalSubset()
{
    return ownText("the document type has an internal subset, by which a small document may become a large one");
}

QString undeclaredEntity(const QString &name)
{
    return ownText("Entity '%1' not declared.").arg(name);
}

QString unusableStream()
{
    return ownText("the stream has no device that can be read, or is in error");
}

QString headCutOff(qint64 available)
{
    return ownText("the leading word and the length take 8 bytes, but only %1 are there").arg(available);
}

QString wrongLeadingWord(quint32 found, quint32 expected, const QString &objectName)
{
    if (objectName.isNull())
        return ownText("the leading word is ") + hexWord(found) + ownText(", not ") + hexWord(expected);
    return ownText("the leading word is ") + hexWord(found) + ownText(", not ") + hexWord(expected) + ownText(" (")
        + objectName + ownText(")");
}

QString tooLarge(qint64 size, qint64 limit)
{
    return ownText("the representation takes %1 bytes, but no more than %2 are accepted").arg(size).arg(limit);
}

QString compressedNotAccepted()
{
    return ownText("the representation is compressed, but only uncompressed ones are accepted");
}

QString wrongLength(qint64 length, qint64 following)
{
    return ownText("the record's length is %1, but %2 bytes follow").arg(length).arg(following);
}

QString negativeLength(qint64 length)
{
    return ownText("the record's length is %1, which is less than 0").arg(length);
}

QString moreThanTheLength(qint64 length)
{
    return ownText("the record's length is %1, but more bytes than that follow").arg(length);
}

QString membersCutOff(qint64 length)
{
    return ownText("the record's length is %1, but its members continue after it").arg(length);
}

QString membersEndEarly(qint64 read, qint64 length)
{
    return ownText("the record's length is %1, but its members end after %2 bytes").arg(length).arg(read);
}

QString expandsTooFar(qint64 declared, qint64 compressed, qint64 limit)
{
    return ownText("%1 compressed bytes declare %2 bytes, but no more than %3 are accepted")
        .arg(compressed)
        .arg(declared)
        .arg(limit);
}

QString damagedCompression()
{
    return ownText("the compressed bytes are damaged");
}

} // namespace REPORTGENERATOR::FailureTexts

namespace REPORTGENERATOR {

Failure::Failure(const QString &source, const QString &why) : text(FailureTexts::at(source, why))
{
    location.source = source;
}

Failure::Failure(const QString &source, qint64 line, qint64 column, const QString &why)
    : text(FailureTexts::at(source, line, column, why))
{
    location.source = source;
    location.line = int(line);
    location.column = int(column);
}

} // namespace REPORTGENERATOR
