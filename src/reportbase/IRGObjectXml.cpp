// SPDX-License-Identifier: MIT
#include <reportbase/IRGObject.h>

#include <algorithm>
#include <new>

#include <QBuffer>
#include <QFile>
#include <QXmlStreamReader>

#include <reportbase/SaveFile.h>

#include "FailureTexts.h"
#include "FileAccess.h"
#include "LargeData.h"
#include "Utf8.h"
#include "WatchedDevice.h"
#include "XmlComposition.h"
#include "XmlDeclaration.h"
#include "text/Encoding.h"
#include "text/Size.h"

namespace REPORTGENERATOR {

namespace {

constexpr qint64 mostBytes = 3; // for a character of UTF-16

/// The reader converts a text to UTF-8 and reserves three bytes per character for that.
constexpr qint64 longestXmlText = ReadLimits::LargestPossible / mostBytes;

/// Larger files are read piece by piece, in less memory.
constexpr qint64 largestInMemory = qint64(256) << 20;
constexpr qint64 firstPiece = 1 << 14; // with fewer bytes at once, QFile reads into a buffer of its own

// Every read of a text needs it, even if it succeeds. Built when the library is loaded, so that a read does not
// allocate it.
const QString sourceOfText = FailureTexts::xmlText();

/// Whether a document in UTF-8 may begin like this.
bool mayBeUtf8Xml(const QByteArray &beginning)
{
    const int mark = beginning.startsWith("\xEF\xBB\xBF") ? 3 : 0;
    const char first = mark < beginning.size() ? beginning.at(mark) : '\0';
    return first == '<' || first == ' ' || first == '\t' || first == '\r' || first == '\n';
}

/// What is left of a file, if it can be read in memory; null for other devices than files, and for files that transform
/// what they contain. Less if reading fails, or if the file is certainly no document in UTF-8: then its first bytes are
/// enough to refuse it, however large it is.
QByteArray rest(QFile &file, qint64 largestSize)
{
    if (file.isSequential() || file.isTextModeEnabled() || file.isTransactionStarted())
        return QByteArray();
    const qint64 size = file.size() - file.pos();
    if (size <= 0 || size > std::min(largestInMemory, largestSize))
        return QByteArray();

    QByteArray bytes;
    bytes.reserve(Size(size));
    const auto readFurther = [&](qint64 most) {
        const Size had = bytes.size();
        bytes.resize(had + Size(most));
        bytes.truncate(had + Size(std::max(file.read(bytes.data() + had, most), qint64(0))));
    };
    readFurther(std::min(size, firstPiece));
    if (mayBeUtf8Xml(bytes))
        readFurther(size - bytes.size());
    bytes.squeeze();
    return bytes;
}

/// A failure at the position of the reader.
Failure atReader(const QXmlStreamReader &reader, const QString &source, const QString &why, int unread = 0)
{
    // The reader counts the characters that it has read from the line. So its number is the column, counted from 1, of
    // the last character read, at which it failed.
    return Failure(source, reader.lineNumber(), std::max(reader.columnNumber(), qint64(1)) + unread, why);
}

/// Reads up to the root element; false if there is none.
bool toRootElement(QXmlStreamReader &reader)
{
    while (!reader.atEnd() && !reader.hasError()) {
        if (reader.readNext() == QXmlStreamReader::StartElement)
            return true;
    }
    return false;
}

/// Refuses entities that an external document type may declare. The reader would omit them in texts, and leave them
/// unexpanded in attributes.
class NoEntities : public QXmlStreamEntityResolver
{
public:
    explicit NoEntities(QXmlStreamReader &reader) : m_reader(reader) { m_reader.setEntityResolver(this); }
    NoEntities(const NoEntities &) = delete;
    NoEntities &operator=(const NoEntities &) = delete;
    ~NoEntities() override { m_reader.setEntityResolver(nullptr); }

    QString resolveUndeclaredEntity(const QString &name) override
    {
        m_reader.raiseError(FailureTexts::undeclaredEntity(name));
        return QString();
    }

private:
    QXmlStreamReader &m_reader;
};

/// The same for what the watch has refused. A reader leaves the first bytes unread if there are fewer than four.
Failure atEndOf(const XmlWatch &watch, const QXmlStreamReader &reader, const QString &source)
{
    const int beginning = watch.sizeOfBeginning();
    const qint64 offset = reader.characterOffset();
    const int unread = offset == 0 ? beginning : watch.isWrong() && offset == beginning ? 1 : 0;
    return atReader(reader, source, watch.refusal(), unread);
}

/// The failure, or that of the watch if the document seems truncated or complete because the watch has ended it.
Failure watched(const XmlWatch &watch, const QXmlStreamReader &reader, const QString &source, const Failure &failure)
{
    const bool isTruncated = !watch.isCutOff() && reader.error() == QXmlStreamReader::PrematureEndOfDocumentError;
    const bool isEndedByWatch = watch.isRefused() && (failure.isNull() || isTruncated);
    return isEndedByWatch ? atEndOf(watch, reader, source) : failure;
}

/// The size of the text before the first U+0000, which ends a text for some versions of Qt, or half of a surrogate
/// pair, of which some drop the last one.
Size sizeForReader(const QString &text)
{
    const Size size = text.size();
    for (Size i = 0; i < size; ++i) {
        if (text[i].isNull())
            return i;
        if (!text[i].isSurrogate())
            continue;
        if (text[i].isLowSurrogate() || i + 1 == size || !text[i + 1].isLowSurrogate())
            return i;
        ++i;
    }
    return size;
}

/// What the reader may read of a text, whatever encoding it declares.
QString readable(const QString &xml, XmlWatch &watch)
{
    const Size size = sizeForReader(xml);
    const Size head = watch.readableHead(xml.constData(), size);
    const QString name = watch.declaredEncoding();
    if (XmlDeclaration::isEncodingName(name) && !Encodings::isKnown(name))
        watch.refuse(XmlWatch::Refused::UnknownEncoding);
    const Size rest = watch.isRefused() ? 0 : watch.readable(xml.constData() + head, size - head);
    if (size < xml.size())
        watch.refuse(XmlWatch::Refused::Character);
    return watch.readableDeclaration(xml.left(head)) + xml.mid(head, rest);
}

} // namespace

bool IRGObject::SetXmlString(const QString &xml, bool validate)
{
    SetValidate(validate);
    return readXmlText(xml);
}

bool IRGObject::readXmlText(const QString &xml, qint64 largestSize)
{
    clearError();
    if (xml.size() > longestXmlText)
        return fail(Failure(sourceOfText, FailureTexts::xmlTooLong(xml.size(), longestXmlText)));
    if (largestSize < mostBytes * qint64(xml.size()) && sizeAsUtf8(xml) > largestSize)
        return fail(Failure(sourceOfText, FailureTexts::documentTooLarge(largestSize)));
    return located(sourceOfText, [&] {
        if (readXml([&] { return toUtf8(xml); }))
            return true;
        XmlWatch watch;
        QXmlStreamReader reader(readable(xml, watch));
        const Failure failure = watched(watch, reader, sourceOfText, readDocument(reader, sourceOfText));
        return failure.isNull() || fail(failure);
    });
}

bool IRGObject::LoadXml(const QString &path)
{
    QFile file(path);
    return LoadXml(&file);
}

bool IRGObject::LoadXml(QFile *file)
{
    return readXmlFile(file);
}

bool IRGObject::readXmlFile(QFile *file, qint64 largestSize)
{
    clearError();
    const FileForReading access(file);
    if (!access.openFailure().isNull())
        return fail(access.openFailure());
    if (!file->isSequential() && file->size() - file->pos() > largestSize)
        return fail(Failure(access.name(), FailureTexts::documentTooLarge(largestSize)));
    return located(access.name(), [&] { return readXmlFile(*file, access, largestSize); });
}

bool IRGObject::readXmlFile(QFile &file, const FileForReading &access, qint64 largestSize)
{
    QByteArray beginning;
    const auto wholeDocument = [&] {
        beginning = rest(file, largestSize);
        return file.atEnd() ? beginning : QByteArray();
    };
    if (readXml(wholeDocument))
        return true;

    WatchedDevice document(file, beginning, largestSize);
    QXmlStreamReader reader(&document);
    Failure failure;
    try {
        failure = readDocument(reader, access.name());
    } catch (const std::bad_alloc &) {
        rethrowUnlessLarge(document.bytesRead());
        return fail(Failure(access.name(), FailureTexts::outOfMemory(document.bytesRead(), LongestText)));
    }
    if (!access.readFailure().isNull())
        return fail(access.readFailure()); // the document seems truncated then, but the device has failed
    if (document.isTooLarge())
        return fail(Failure(access.name(), FailureTexts::documentTooLarge(largestSize)));
    failure = watched(document.watch(), reader, access.name(), failure);
    return failure.isNull() || fail(failure);
}

bool IRGObject::readXmlBytes(const QByteArray &document, const QString &source, qint64 largestSize)
{
    clearError();
    if (document.size() > largestSize)
        return fail(Failure(source, FailureTexts::documentTooLarge(largestSize)));
    return located(source, [&] {
        if (readXml([&] { return document; }))
            return true;
        QBuffer buffer;
        buffer.setData(document);
        buffer.open(QIODevice::ReadOnly);
        WatchedDevice watchedDocument(buffer);
        QXmlStreamReader reader(&watchedDocument);
        const Failure failure = watched(watchedDocument.watch(), reader, source, readDocument(reader, source));
        return failure.isNull() || fail(failure);
    });
}

bool IRGObject::readXml(const std::function<QByteArray()> &)
{
    return false;
}

Failure IRGObject::readDocument(QXmlStreamReader &reader, const QString &source)
{
    const NoEntities refused(reader);
    if (toRootElement(reader)) {
        if (reader.name() != GetObjectName())
            return atReader(reader, source, FailureTexts::wrongRoot(reader.name().toString(), GetObjectName()));
        try {
            ProcessXml(reader);
        } catch (const ReportException &) {
            // If a document is truncated, incomplete content is not an error of the content.
            if (!reader.hasError())
                throw;
        }
    }

    // The rest does not matter; an object may have ended at the end tag of another element.
    reader.setNamespaceProcessing(false);
    while (!reader.atEnd() && !reader.hasError())
        reader.readNext();
    return reader.hasError() ? atReader(reader, source, reader.errorString()) : Failure();
}

bool IRGObject::composeXml(QByteArray &) const
{
    return false;
}

QString IRGObject::GetXmlString()
{
    clearError();
    XmlComposition composition;
    if (!composeXml(composition.utf8))
        composition = composeXmlByWriter(*this);
    if (composition.lineOfLostText != 0) {
        fail(Failure(FailureTexts::xmlText(), FailureTexts::characterNotForXml(composition.lineOfLostText)));
        return QString();
    }
    return QString::fromUtf8(composition.utf8);
}

// This does not change the object, although it is not const in the contract. Classes may override it.
QString IRGObject::GetXmlString() const
{
    return const_cast<IRGObject &>(*this).GetXmlString();
}

bool IRGObject::SaveXml(const QString &path) const
{
    clearError();
    XmlComposition composition;
    if (!composeXml(composition.utf8))
        composition = composeXmlByWriter(*this);
    if (composition.lineOfLostText != 0)
        return fail(Failure(path, FailureTexts::characterNotForXml(composition.lineOfLostText)));
    return save(path, composition.utf8);
}

bool IRGObject::save(const QString &path, const QByteArray &content) const
{
    if (content.isEmpty())
        return fail(Failure(path, FailureTexts::nothingToWrite()));
    Failure failure(SaveFile(path, content));
    failure.location.source = path;
    return failure.isNull() || fail(failure);
}

} // namespace REPORTGENERATOR
