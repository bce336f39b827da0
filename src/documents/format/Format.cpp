// SPDX-License-Identifier: MIT
#include <tunerdocuments/Format.h>

#include <tunerdocuments/DocumentError.h>

#include "documents/format/SameContent.h"
#include "documents/format/XmlLayout.h"
#include "documents/values/CannotEdit.h"
#include "documents/xml/EncodedText.h"
#include "json/JsonText.h"

namespace TunerDocuments {

namespace {

QByteArray laidOutXml(const QByteArray &bytes)
{
    const EncodedText text(bytes);
    if (!text.isExact())
        throw CannotEdit{
            QStringLiteral("its bytes are not the usual ones for its text in the encoding %1").arg(text.encoding())};
    const QByteArray utf8 = XmlLayout::laidOut(text.utf8());
    if (!isSameWithoutLayout(text.utf8(), utf8))
        throw CannotEdit{QStringLiteral("its text would change")};
    return text.encode(utf8);
}

QByteArray laidOutJson(const QByteArray &bytes)
{
    QByteArray result = JsonText::prettyAsSpelled(JsonText::parse(bytes), bytes);
    if (!isSameWithoutLayout(bytes, result))
        throw CannotEdit{QStringLiteral("its text would change")};
    return result;
}

/// Throws CannotEdit if the result would not be read as the same document.
void checkResult(const ReadContent &before, const QByteArray &result, const QString &name, const LoadOptions &options)
{
    try {
        const QString difference = before.differenceFrom(ReadContent(result, name, options));
        if (!difference.isNull())
            throw CannotEdit{QStringLiteral("its content would change: ") + difference};
    } catch (const DocumentError &error) {
        throw CannotEdit{QStringLiteral("it could not be read any more: ") + error.text()};
    }
}

} // namespace

bool hasLayout(Form form)
{
    return form == Form::Xml || form == Form::Json;
}

QByteArray formatted(const QByteArray &bytes, const QString &name, const LoadOptions &options)
{
    const ReadContent before(bytes, name, options);
    if (!hasLayout(before.form()))
        return bytes;
    try {
        QByteArray result = before.form() == Form::Xml ? laidOutXml(bytes) : laidOutJson(bytes);
        if (result == bytes)
            return bytes;
        LoadOptions asBefore = options;
        asBefore.setForm(before.form());
        checkResult(before, result, name, asBefore);
        return result;
    } catch (const CannotEdit &reason) {
        throw UnstorableContent(name + QStringLiteral(": cannot format the document: ") + reason.why);
    }
}

} // namespace TunerDocuments
