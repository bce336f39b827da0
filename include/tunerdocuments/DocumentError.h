// SPDX-License-Identifier: MIT
#pragma once

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
    QString text() const { return m_text; }

private:
    QString m_text;
};

} // namespace TunerDocuments
