// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <stdexcept>

#include <QString>

#include <tunerdocuments/Export.h>

namespace TunerDocuments {

/// A document that cannot be read or written. The text begins with its name: "receiver.xml: cannot open: ...".
class TUNERDOCUMENTS_EXPORT DocumentError : public std::runtime_error
{
public:
    /// what() has the text as UTF-8 on one line: characters that are not printable are escaped.
    explicit DocumentError(const QString &text);
    DocumentError(const DocumentError &other); ///< for throwing
    ~DocumentError() override;

    /// The text with all its characters.
    QString text() const;

private:
    struct Private;
    std::shared_ptr<const Private> d; // shared, so that copying cannot throw
};

/// Content that cannot be stored as required, although the file could be read: the form cannot hold it, or the text of
/// the document has no place for it. "receiver.xml: cannot edit the document in place: ...".
class TUNERDOCUMENTS_EXPORT UnstorableContent : public DocumentError
{
public:
    explicit UnstorableContent(const QString &text); ///< the whole text, as for DocumentError
    /// \cond
    UnstorableContent(const UnstorableContent &other);
    ~UnstorableContent() override;
    /// \endcond
};

} // namespace TunerDocuments
