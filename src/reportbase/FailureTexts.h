// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <reportbase/ReportException.h>

/// All texts that load and save operations return as reasons for a failure.
namespace REPORTGENERATOR::FailureTexts {

/// \name Where
/// `SOURCE: why` and `SOURCE:LINE:COLUMN: why`, the two forms that programs parse. Lines and columns count from 1.
/// @{
QString at(const QString &source, const QString &why);
QString at(const QString &source, qint64 line, qint64 column, const QString &why);
/// @}

/// \name Sources without a path
/// @{
QString xmlText();
QString binaryData();
QString unnamedFile();
/// @}

/// \name Files
/// @{
QString noFile();
QString noFileName();
QString nulInFileName();
QString notAFile();
QString isAFolder();
QString foreignLink();
QString foreignFile();
QString pathHasChanged();
QString cannotKeepOwners(const QString &reason);
QString cannotKeepAccessList(const QString &reason);
QString cannotKeepAttributes(const QString &reason);
QString cannotKeepAttribute(const QString &name, const QString &reason);
QString moreOpen();
QString notOpenForReading();
QString cannotOpen(const QString &reason);
QString cannotRead(const QString &reason);
QString cannotWrite(const QString &reason);
/// @}

/// \name Writing
/// @{
QString nothingToWrite();
QString characterNotForXml(qint64 line);
QString tooLargeToCompress(qint64 size, qint64 limit);
/// @}

/// \name Reading
/// @{
QString outOfMemory(qint64 bytesRead, qint64 longestText);
/// @}

/// \name Reading XML
/// @{
QString wrongRoot(const QString &found, const QString &expected);
QString xmlTooLong(qint64 length, qint64 limit);
QString documentTooLarge(qint64 limit);
QString xmlDeclaration();
QString unknownEncoding(const QString &name, const QString &known);
QString otherEncoding(const QString &name);
QString wrongBytes(); // in the words of QXmlStreamReader
QString wrongCharacter(); // in the words of QXmlStreamReader
QString tooManyAttributes(int limit);
QString nameTooLong(int limit);
QString documentTypePlace();
QString internalSubset();
QString undeclaredEntity(const QString &name); // in the words of QXmlStreamReader
/// @}

/// \name Reading a binary representation
/// @{
QString unusableStream();
QString headCutOff(qint64 available);
QString wrongLeadingWord(quint32 found, quint32 expected, const QString &objectName); // whose name may be null
QString tooLarge(qint64 size, qint64 limit);
QString compressedNotAccepted();
QString wrongLength(qint64 length, qint64 following);
QString negativeLength(qint64 length);
QString moreThanTheLength(qint64 length);
QString membersCutOff(qint64 length);
QString membersEndEarly(qint64 read, qint64 length);
QString expandsTooFar(qint64 declared, qint64 compressed, qint64 limit);
QString damagedCompression();
/// @}

} // namespace REPORTGENERATOR::FailureTexts

namespace REPORTGENERATOR {

/// Why a document cannot be read, and where; null if it can.
struct Failure
{
    Failure() = default;
    /// Without a source.
    explicit Failure(const QString &why) : text(why) { }
    Failure(const QString &source, const QString &why);
    Failure(const QString &source, qint64 line, qint64 column, const QString &why);

    bool isNull() const { return text.isNull(); }

    QString text; ///< as GetErrorString() returns it
    ErrorLocation location;
};

/// Calls the function. An exception of the object receives the name of the source.
template <class Read>
auto located(const QString &source, Read &&read)
{
    try {
        return read();
    } catch (ReportException &exception) {
        ErrorLocation location = exception.GetLocation();
        if (location.source.isNull()) { // otherwise it is of another document, which was read meanwhile
            location.source = source;
            exception.SetLocation(location);
        }
        throw;
    }
}

} // namespace REPORTGENERATOR
