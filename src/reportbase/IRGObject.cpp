// SPDX-License-Identifier: MIT
#include <reportbase/IRGObject.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include <QDataStream>
#include <QDateTime>
#include <QXmlStreamReader>

namespace REPORTGENERATOR {

IRGObject::IRGObject() = default;
IRGObject::IRGObject(ObjectTypes type) : m_objectType(type) { }
IRGObject::~IRGObject() = default;

bool IRGObject::IsValid(float value) const
{
    return !std::isnan(value);
}

bool IRGObject::IsValid(bool) const
{
    return true;
}

bool IRGObject::IsValid(unsigned int value) const
{
    return value != std::numeric_limits<unsigned int>::max();
}

bool IRGObject::IsValid(long long value) const
{
    return value != std::numeric_limits<long long>::lowest();
}

bool IRGObject::IsValid(const QDateTime &value) const
{
    return value.isValid();
}

bool IRGObject::IsValid(const QString &value) const
{
    return !value.isNull();
}

bool IRGObject::IsValid(double value) const
{
    return !std::isnan(value);
}

bool IRGObject::IsValid(int value) const
{
    return value != std::numeric_limits<int>::lowest();
}

void IRGObject::SetInvalid(float &value) const
{
    value = std::numeric_limits<float>::quiet_NaN();
}

void IRGObject::SetInvalid(unsigned int &value) const
{
    value = std::numeric_limits<unsigned int>::max();
}

void IRGObject::SetInvalid(long long &value) const
{
    value = std::numeric_limits<long long>::lowest();
}

void IRGObject::SetInvalid(QString &value) const
{
    value = QString();
}

void IRGObject::SetInvalid(double &value) const
{
    value = std::numeric_limits<double>::quiet_NaN();
}

void IRGObject::SetInvalid(int &value) const
{
    value = std::numeric_limits<int>::lowest();
}

bool IRGObject::MergeRGObject(const IRGObject &)
{
    return false;
}

ObjectTypes IRGObject::GetObjectType()
{
    return m_objectType;
}

void IRGObject::SetObjectType(ObjectTypes type)
{
    m_objectType = type;
}

const QString &IRGObject::GetObjectName() const
{
    return m_objectName;
}

void IRGObject::SetObjectName(const QString &name)
{
    m_objectName = name;
}

void IRGObject::SetValidate(bool validate) const
{
    m_validate = validate;
}

bool IRGObject::GetValidate() const
{
    return m_validate;
}

void IRGObject::SetLogger(std::shared_ptr<Logger> logger) const
{
    m_logger = std::move(logger);
}

void IRGObject::ResetLogger() const
{
    m_logger.reset();
}

std::shared_ptr<Logger> IRGObject::GetLogger() const
{
    return m_logger;
}

const QString &IRGObject::GetVersion() const
{
    static const QString none;
    return none;
}

QString IRGObject::GetErrorString() const
{
    return m_errorString;
}

void IRGObject::ProcessXml(QXmlStreamReader &reader)
{
    const QString ownName = reader.name().toString();
    // A reader in error is not at its end as long as its device claims to have more.
    while (!reader.atEnd() && !reader.hasError()) {
        const QXmlStreamReader::TokenType token = reader.readNext();
        if (token == QXmlStreamReader::StartElement)
            ProcessXmlStartElement(reader);
        else if (token == QXmlStreamReader::EndElement && reader.name() == ownName)
            return; // other ends are left over from elements that were not read to their ends
    }
}

QString IRGObject::GetTextValue(QXmlStreamReader &reader)
{
    return reader.readElementText(QXmlStreamReader::SkipChildElements);
}

int IRGObject::skipCurrentElement(QDataStream &stream, int length, int) const
{
    if (length <= 0)
        return 0;
    // -1 without a device that can be read; where less is left than asked for, the stream's status says so afterwards
    return std::max(stream.skipRawData(length), 0);
}

bool IRGObject::fail(const QString &text) const
{
    m_errorString = text;
    if (const std::shared_ptr<Logger> logger = m_logger)
        logger->Log(Logger::Severity::Error, text);
    return false;
}

} // namespace REPORTGENERATOR
