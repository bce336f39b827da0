// SPDX-License-Identifier: MIT
#include "files/DocumentFile.h"

#include <QFile>

#include <tunerdocuments/DocumentError.h>
#include <tunerdocuments/Format.h>

#include "console/Console.h"

using TunerDocuments::Document;
using TunerDocuments::Form;
using TunerDocuments::LoadOptions;
namespace Forms = TunerDocuments::Forms;

namespace {

constexpr int headSize = 4096; // a document may begin with blank lines

QString usualFormOption()
{
    return QStringLiteral("--from");
}

Form formOf(Input &input, const LoadOptions &options, const QString &formOption)
{
    if (options.form())
        return *options.form();
    if (const auto form = Forms::byContent(input.head(headSize)))
        return *form;
    if (const auto form = Forms::bySuffix(QString::fromLatin1(input.name().bytes())))
        return *form; // its reader reports the error
    throw FileFailure(input.shownName()
                      + QStringLiteral(": unknown form: neither XML, JSON nor binary; for a snapshot, use the suffix "
                                       ".tps or %1 snapshot")
                            .arg(formOption));
}

void checkExpansion(Input &input, Form form, int times)
{
    if (form != Form::Tagged && form != Form::Compressed)
        return;
    constexpr int leadingWords = 12;
    constexpr int sizeAt = 8;
    const QByteArray head = input.head(leadingWords);
    const qint64 size = input.file().size();
    if (Forms::expansionOf(head, size) > times)
        throw FileFailure(
            input.shownName()
            + QStringLiteral(": expands from %1 to %2 bytes, more than %3 times its size; use --max-expansion "
                             "to allow it")
                  .arg(size)
                  .arg(head.mid(sizeAt).toHex().toUInt(nullptr, 16))
                  .arg(times));
}

} // namespace

namespace {

/// The result of `load`, if the file has not changed meanwhile.
template <class Load>
auto checked(Input &input, LoadOptions options, const Load &load, const QString &formOption = usualFormOption())
{
    options.setForm(formOf(input, options, formOption));
    checkExpansion(input, *options.form(), options.maxExpansion());
    try {
        auto result = load(options);
        input.check();
        return result;
    } catch (const TunerDocuments::DocumentError &) {
        input.check(); // a document that has changed meanwhile has errors of its own
        throw;
    }
}

} // namespace

Document loadDocument(Input &input, const LoadOptions &options, const JobXml::ProblemVisitor &visitor)
{
    return checked(input, options,
                   [&](const LoadOptions &known) { return Document::load(input.file(), known, visitor); });
}

Document loadDocumentWithText(Input &input, const LoadOptions &options, const JobXml::ProblemVisitor &visitor,
                              QByteArray &text)
{
    // Larger files, and what certainly has another form, are read piece by piece up to the first error.
    constexpr qint64 largestAtOnce = qint64(256) << 20;
    return checked(input, options, [&](const LoadOptions &known) {
        if (known.form() != Form::Xml && known.form() != Form::Json)
            return Document::load(input.file(), known, visitor);
        if (input.file().size() <= largestAtOnce && Forms::byContent(input.head(headSize)) == known.form()) {
            text = input.bytes();
            return Document::fromBytes(text, input.shownName(), known, visitor);
        }
        Document document = Document::load(input.file(), known, visitor);
        text = input.bytes();
        return document;
    });
}

Document loadDocumentWithBytes(Input &input, const LoadOptions &options, QByteArray &bytes, const QString &formOption)
{
    const auto load = [&](const LoadOptions &known) {
        bytes = input.bytes();
        return Document::fromBytes(bytes, input.shownName(), known);
    };
    return checked(input, options, load, formOption);
}

FormattedDocument formatDocument(Input &input, const LoadOptions &options)
{
    return checked(input, options, [&](const LoadOptions &known) {
        const QByteArray bytes = input.bytes();
        return FormattedDocument{*known.form(), bytes, TunerDocuments::formatted(bytes, input.shownName(), known)};
    });
}

DocumentFile::DocumentFile(const FileName &name, const LoadOptions &options, const JobXml::ProblemVisitor &visitor,
                           FileKinds kinds)
    : input(name, kinds), document(loadDocument(input, options, visitor))
{
}
