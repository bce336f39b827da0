// SPDX-License-Identifier: MIT
#include <reportbase/IRGObject.h>

#include <algorithm>

#include <QFile>
#include <QXmlStreamReader>

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

} // namespace

bool IRGObject::SetXmlString(const QString &xml, bool validate)
{
    m_errorString = QString();
    SetValidate(validate);
    QXmlStreamReader reader(xml);
    const QString failure = readDocument(reader, FailureTexts::xmlText());
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

    QXmlStreamReader reader(file);
    const QString failure = readDocument(reader, access.name());
    if (!access.readFailure().isNull())
        return fail(access.readFailure()); // the document seems cut off then, but is not at fault
    return failure.isNull() || fail(failure);
}

QString IRGObject::readDocument(QXmlStreamReader &reader, const QString &source)
{
    if (reader.readNextStartElement()) {
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
    const QString failure = saveAtomically(path, content);
    return failure.isNull() || fail(failure);
}

} // namespace REPORTGENERATOR
