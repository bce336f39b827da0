// SPDX-License-Identifier: MIT
#include <reportbase/XmlMarkup.h>

#include <tunerdocuments/Document.h>
#include <tunerdocuments/DocumentError.h>
#include <tunerdocuments/Format.h>

#include "Harness.h"
#include "documents/xml/EncodedText.h"

using namespace Fuzz;
using namespace TunerDocuments;

namespace {

const QString name = QStringLiteral("d");

/// The values of the document; empty if JSON cannot hold them.
QByteArray valuesOf(const QByteArray &bytes, Form form)
{
    const Document document = Document::fromBytes(bytes, name, LoadOptions().setForm(form));
    try {
        return document.toBytes(Form::Json, name);
    } catch (const DocumentError &) {
        return QByteArray();
    }
}

/// All comments in order, with the line ends that readers report.
QByteArray commentsOf(const QByteArray &xml)
{
    const REPORTGENERATOR::XmlMarkup markup(EncodedText(xml).utf8());
    QByteArray comments;
    for (const auto &comment : markup.comments())
        comments += QByteArray(markup.bytes(comment.whole).data(), comment.whole.size()) + '\n';
    return comments.replace("\r\n", "\n").replace('\r', '\n');
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const quint8 *data, std::size_t size)
{
    // A copy, since the readers of XML need a NUL after the text.
    const QByteArray bytes(reinterpret_cast<const char *>(data), int(size));
    const Form form = bytes.trimmed().startsWith('{') ? Form::Json : Form::Xml;
    QByteArray result;
    try {
        result = formatted(bytes, name, LoadOptions().setForm(form));
    } catch (const DocumentError &) {
        return 0; // not a document, or one without a layout
    }
    constexpr qint64 always = 4 << 20;
    require(result.size() <= always + 64 * qint64(size), "a result is not many times as large");
    require(formatted(result, name, LoadOptions().setForm(form)) == result, "a result is laid out already");
    require(valuesOf(result, form) == valuesOf(bytes, form), "values stay");
    if (form == Form::Xml)
        require(commentsOf(result) == commentsOf(bytes), "comments stay");
    return 0;
}
