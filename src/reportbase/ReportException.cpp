// SPDX-License-Identifier: MIT
#include <reportbase/ReportException.h>

#include <QByteArray>

struct ReportException::Message
{
    explicit Message(const QString &message) : text(message), utf8(message.toUtf8().replace('\0', "\\u0000")) { }

    QString text;
    QByteArray utf8; // kept, because what() returns a pointer into it; it would end at a U+0000
    REPORTGENERATOR::ErrorLocation location;
};

ReportException::ReportException(const QString &message) : m_message(std::make_shared<const Message>(message)) { }
ReportException::ReportException(const ReportException &) noexcept = default;
ReportException &ReportException::operator=(const ReportException &) noexcept = default;
ReportException::~ReportException() = default;

QString ReportException::GetMessageText() const
{
    return m_message->text;
}

const char *ReportException::what() const noexcept
{
    return m_message->utf8.constData();
}

REPORTGENERATOR::ErrorLocation ReportException::GetLocation() const
{
    return m_message->location;
}

void ReportException::SetLocation(const REPORTGENERATOR::ErrorLocation &location)
{
    const auto located = std::make_shared<Message>(*m_message);
    located->location = location;
    m_message = located;
}

// The destructors are defined in this file, so that all libraries that throw or catch one of these types share its type
// information.

RGException::RGException(const QString &message) : ReportException(message) { }
RGException::RGException(const RGException &) noexcept = default;
RGException &RGException::operator=(const RGException &) noexcept = default;
RGException::~RGException() = default;

OutOfRangeException::OutOfRangeException(const QString &message) : RGException(message) { }
OutOfRangeException::OutOfRangeException(const OutOfRangeException &) noexcept = default;
OutOfRangeException &OutOfRangeException::operator=(const OutOfRangeException &) noexcept = default;
OutOfRangeException::~OutOfRangeException() = default;

InvalidXmlException::InvalidXmlException(const QString &message) : RGException(message) { }
InvalidXmlException::InvalidXmlException(const InvalidXmlException &) noexcept = default;
InvalidXmlException &InvalidXmlException::operator=(const InvalidXmlException &) noexcept = default;
InvalidXmlException::~InvalidXmlException() = default;

BinaryParsingException::BinaryParsingException(const QString &message) : RGException(message) { }
BinaryParsingException::BinaryParsingException(const BinaryParsingException &) noexcept = default;
BinaryParsingException &BinaryParsingException::operator=(const BinaryParsingException &) noexcept = default;
BinaryParsingException::~BinaryParsingException() = default;

IncompleteDefinitionException::IncompleteDefinitionException(const QString &message) : RGException(message) { }
IncompleteDefinitionException::IncompleteDefinitionException(const IncompleteDefinitionException &) noexcept = default;
IncompleteDefinitionException &
IncompleteDefinitionException::operator=(const IncompleteDefinitionException &) noexcept = default;
IncompleteDefinitionException::~IncompleteDefinitionException() = default;
