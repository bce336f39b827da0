// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <exception>
#include <memory>

#include <QString>
#include <QStringList>

#include <reportbase/Export.h>

namespace REPORTGENERATOR {

/// Where in a document an error is, as far as that is known. What later versions know about it, functions of this class
/// will return.
struct ErrorLocation
{
    /// The path of the file, the name of a document in memory, `XML text` or `binary data`; null if the caller read the
    /// document.
    QString source;
    int line = 0; ///< of an XML document, counted from 1; 0 if there is none
    int column = 0; ///< in that line, counted from 1 in UTF-16 units; 0 if there is none
    qint64 offset = -1; ///< in bytes from the beginning of the XML document or the representation; -1 if there is none
    QStringList path; ///< to the object that refused the content, from the root's child down: `Component "Preselector"`

private:
    struct Additions;
    std::shared_ptr<Additions> m_additions{}; // what later versions add
};

} // namespace REPORTGENERATOR

/// The root of every exception that report objects throw. Thrown by value, caught by reference.
class REPORTBASE_EXPORT ReportException : public std::exception
{
public:
    /// \name Construction, copies and comparison
    /// An exception with this message. Copies share the message, so copying cannot throw.
    /// @{
    explicit ReportException(const QString &message);
    explicit ReportException(std::nullptr_t) = delete;
    ReportException(const ReportException &other) noexcept;
    ReportException &operator=(const ReportException &other) noexcept;
    ~ReportException() override;
    /// @}

    /// The message that was passed to the constructor.
    QString GetMessageText() const;

    /// Where in the document the content is that an object refused while it was read: the start of the element, of the
    /// attribute or of the record. In XML documents that the library does not read in memory itself, line and column
    /// are those of the last character read, and there is no offset. Empty for exceptions of other operations. The
    /// manual's page "Reading documents" has the details.
    REPORTGENERATOR::ErrorLocation GetLocation() const;
    /// Adds the location, for the code that reads.
    void SetLocation(const REPORTGENERATOR::ErrorLocation &location);

    /// The message as UTF-8, with U+0000 escaped; valid as long as this exception or a copy of it lives.
    const char *what() const noexcept override;

private:
    struct Message;
    std::shared_ptr<const Message> m_message; // shared, so that copying cannot throw
};

/// The base class of the four exceptions below, which the objects of a data model throw.
class REPORTBASE_EXPORT RGException : public ReportException
{
public:
    /// \name Construction, copies and comparison
    /// An exception with this message. Copies share the message, so copying cannot throw.
    /// @{
    explicit RGException(const QString &message);
    explicit RGException(std::nullptr_t) = delete;
    RGException(const RGException &other) noexcept;
    RGException &operator=(const RGException &other) noexcept;
    ~RGException() override;
    /// @}
};

/// A mandatory member is missing, or a value is not valid for its member.
class REPORTBASE_EXPORT OutOfRangeException : public RGException
{
public:
    /// \name Construction, copies and comparison
    /// An exception with this message. Copies share the message, so copying cannot throw.
    /// @{
    explicit OutOfRangeException(const QString &message);
    explicit OutOfRangeException(std::nullptr_t) = delete;
    OutOfRangeException(const OutOfRangeException &other) noexcept;
    OutOfRangeException &operator=(const OutOfRangeException &other) noexcept;
    ~OutOfRangeException() override;
    /// @}
};

/// An XML document has content that a validating reader refuses.
class REPORTBASE_EXPORT InvalidXmlException : public RGException
{
public:
    /// \name Construction, copies and comparison
    /// An exception with this message. Copies share the message, so copying cannot throw.
    /// @{
    explicit InvalidXmlException(const QString &message);
    explicit InvalidXmlException(std::nullptr_t) = delete;
    InvalidXmlException(const InvalidXmlException &other) noexcept;
    InvalidXmlException &operator=(const InvalidXmlException &other) noexcept;
    ~InvalidXmlException() override;
    /// @}
};

/// The lengths inside a binary record do not add up.
class REPORTBASE_EXPORT BinaryParsingException : public RGException
{
public:
    /// \name Construction, copies and comparison
    /// An exception with this message. Copies share the message, so copying cannot throw.
    /// @{
    explicit BinaryParsingException(const QString &message);
    explicit BinaryParsingException(std::nullptr_t) = delete;
    BinaryParsingException(const BinaryParsingException &other) noexcept;
    BinaryParsingException &operator=(const BinaryParsingException &other) noexcept;
    ~BinaryParsingException() override;
    /// @}
};

/// An item or a choice is not complete enough for the requested operation.
class REPORTBASE_EXPORT IncompleteDefinitionException : public RGException
{
public:
    /// \name Construction, copies and comparison
    /// An exception with this message. Copies share the message, so copying cannot throw.
    /// @{
    explicit IncompleteDefinitionException(const QString &message);
    explicit IncompleteDefinitionException(std::nullptr_t) = delete;
    IncompleteDefinitionException(const IncompleteDefinitionException &other) noexcept;
    IncompleteDefinitionException &operator=(const IncompleteDefinitionException &other) noexcept;
    ~IncompleteDefinitionException() override;
    /// @}
};

Q_DECLARE_TYPEINFO(REPORTGENERATOR::ErrorLocation, Q_MOVABLE_TYPE);
