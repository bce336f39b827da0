// SPDX-License-Identifier: MIT
#include <reportbase/IRGObject.h>

#include <algorithm>

#include <QFile>
#include <QXmlStreamReader>

#include <reportbase/SaveFile.h>

#include "AttributeWatch.h"
#include "FailureTexts.h"
#include "FileAccess.h"
#include "XmlComposition.h"

namespace REPORTGENERATOR {

namespace {

/// A failure where the reader stands.
QString atReader(const QXmlStreamReader &reader, const QString &source, const QString &why)
{
    // The reader counts the characters it has taken from the line. So its number is the place, counted from 1, of the
    // character that it took last, which is the one it stumbled on.
    return FailureTexts::at(source, reader.lineNumber(), std::max(reader.columnNumber(), qint64(1)), why);
}

/// Reads on to the root element; false if there is none.
bool toRootElement(QXmlStreamReader &reader)
{
    while (!reader.atEnd() && !reader.hasError()) {
        switch (reader.readNext()) {
        case QXmlStreamReader::StartElement:
            return true;
        case QXmlStreamReader::DTD:
            if (reader.text().contains(QLatin1Char('[')))
                reader.raiseError(FailureTexts::ownDeclarations());
            break;
        default:
            break;
        }
    }
    return false;
}

} // namespace

bool IRGObject::SetXmlString(const QString &xml, bool validate)
{
    m_errorString = QString();
    SetValidate(validate);
    AttributeWatch watch;
    QXmlStreamReader reader(xml.left(watch.readable(xml.constData(), xml.size())));
    QString failure = readDocument(reader, FailureTexts::xmlText());
    if (watch.isExceeded())
        failure = atReader(reader, FailureTexts::xmlText(), FailureTexts::tooManyAttributes(AttributeWatch::Limit));
    return failure.isNull() || fail(failure);
}

bool IRGObject::LoadXml(const QString &path)
{
    QFile file(path);
    return LoadXml(&file);
}

bool IRGObject::LoadXml(QFile *file)
{
    m_errorString = QString();
    const FileForReading access(file);
    if (!access.openFailure().isNull())
        return fail(access.openFailure());

    WatchedDevice document(*file);
    QXmlStreamReader reader(&document);
    QString failure = readDocument(reader, access.name());
    if (!access.readFailure().isNull())
        return fail(access.readFailure()); // the document seems cut off then, but is not at fault
    if (document.isExceeded())
        failure = atReader(reader, access.name(), FailureTexts::tooManyAttributes(AttributeWatch::Limit));
    return failure.isNull() || fail(failure);
}

QString IRGObject::readDocument(QXmlStreamReader &reader, const QString &source)
{
    if (toRootElement(reader)) {
        if (reader.name() != GetObjectName())
            return atReader(reader, source, FailureTexts::wrongRoot(reader.name().toString(), GetObjectName()));
        try {
            ProcessXml(reader);
        } catch (const ReportException &) {
            // What a document that breaks off left incomplete is not a failure of its content.
            if (!reader.hasError())
                throw;
        }
    }

    while (!reader.atEnd() && !reader.hasError())
        reader.readNext();
    return reader.hasError() ? atReader(reader, source, reader.errorString()) : QString();
}

QString IRGObject::GetXmlString()
{
    m_errorString = QString();
    const XmlComposition composition = composeXml(*this);
    if (composition.lineOfLostText != 0) {
        fail(FailureTexts::at(FailureTexts::xmlText(), FailureTexts::characterNotForXml(composition.lineOfLostText)));
        return QString();
    }
    return QString::fromUtf8(composition.utf8);
}

bool IRGObject::SaveXml(const QString &path) const
{
    m_errorString = QString();
    const XmlComposition composition = composeXml(*this);
    if (composition.lineOfLostText != 0)
        return fail(FailureTexts::at(path, FailureTexts::characterNotForXml(composition.lineOfLostText)));
    return save(path, composition.utf8);
}

bool IRGObject::save(const QString &path, const QByteArray &content) const
{
    if (content.isEmpty())
        return fail(FailureTexts::at(path, FailureTexts::nothingToWrite()));
    const QString failure = SaveFile(path, content);
    return failure.isNull() || fail(failure);
}

} // namespace REPORTGENERATOR
