// SPDX-License-Identifier: MIT
#include <tunerdocuments/DocumentError.h>

#include "text/Printable.h"

namespace TunerDocuments {

struct DocumentError::Private
{
    QString text;
};

// what() ends at the first NUL, which a document may contain; escaping twice changes nothing.
DocumentError::DocumentError(const QString &text)
    : std::runtime_error(Printable::onOneLine(text).toStdString()), d(std::make_shared<const Private>(Private{text}))
{
}

DocumentError::DocumentError(const DocumentError &) = default;

DocumentError::~DocumentError() = default;

QString DocumentError::text() const
{
    return d->text;
}

UnstorableContent::UnstorableContent(const QString &text) : DocumentError(text) { }

UnstorableContent::UnstorableContent(const UnstorableContent &) = default;

UnstorableContent::~UnstorableContent() = default;

} // namespace TunerDocuments
