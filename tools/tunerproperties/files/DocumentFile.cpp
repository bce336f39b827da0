// SPDX-License-Identifier: MIT
#include "files/DocumentFile.h"

#include <tunerdocuments/DocumentError.h>

#include "console/Console.h"

using TunerDocuments::Document;
using TunerDocuments::Form;
using TunerDocuments::LoadOptions;
namespace Forms = TunerDocuments::Forms;

namespace {

Form formOf(Input &input, const LoadOptions &options)
{
    if (options.form)
        return *options.form;
    constexpr int headSize = 4096; // a document may begin with blank lines
    if (const auto form = Forms::byContent(input.head(headSize)))
        return *form;
    if (const auto form = Forms::bySuffix(QString::fromLatin1(input.name().bytes())))
        return *form; // its reader reports the error
    throw FileFailure(
        input.shownName()
        + QStringLiteral(
            ": unknown form: neither XML, JSON nor binary; for a snapshot, use the suffix .tps or --from snapshot"));
}

void checkExpansion(Input &input, Form form, int times)
{
    if (form != Form::Tagged && form != Form::Compressed)
        return;
    constexpr int headSize = 12;
    constexpr int sizeAt = 8;
    const QByteArray head = input.head(headSize);
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

Document loadDocument(Input &input, LoadOptions options, const JobXml::ProblemVisitor &visitor)
{
    options.form = formOf(input, options);
    checkExpansion(input, *options.form, options.maxExpansion);
    try {
        Document document = Document::load(input.file(), options, visitor);
        input.check();
        return document;
    } catch (const TunerDocuments::DocumentError &) {
        input.check(); // a document that has changed meanwhile has errors of its own
        throw;
    }
}

DocumentFile::DocumentFile(const FileName &name, const LoadOptions &options, const JobXml::ProblemVisitor &visitor,
                           FileKinds kinds)
    : input(name, kinds), document(loadDocument(input, options, visitor))
{
}
