// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <tunerdocuments/Document.h>

namespace TunerDocuments {

/// A document as it is read from a text: its values and all its problems, for comparison with another layout of it.
class ReadContent
{
public:
    /// Throws what Document::fromBytes() throws.
    ReadContent(const QByteArray &bytes, const QString &name, const LoadOptions &options);

    Form form() const { return m_document.form; }

    /// Null if the same is read from the other text; otherwise the first difference. Lines and columns of problems may
    /// differ.
    QString differenceFrom(const ReadContent &other) const;

private:
    QByteArray m_problems; // a digest, since a document may have a problem for every few bytes
    Document m_document;
};

/// Whether the texts consist of the same characters in the same order, apart from blanks and line ends, and with either
/// kind of quotes: so nothing is lost that readers skip.
bool isSameWithoutLayout(const QByteArray &left, const QByteArray &right);

} // namespace TunerDocuments
