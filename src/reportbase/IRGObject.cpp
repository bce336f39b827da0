// SPDX-License-Identifier: MIT
#include <reportbase/IRGObject.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include <QDataStream>
#include <QDateTime>
#include <QDebug>
#include <QXmlStreamReader>

#include "SameText.h"

namespace REPORTGENERATOR {

namespace {

const QString noName;
constexpr ObjectClass noClass{noName, 0};

} // namespace

QDebug operator<<(QDebug debug, ObjectTypes type)
{
    const QDebugStateSaver saver(debug);
    debug.nospace() << "ObjectTypes";
    if (type == ObjectTypes::Undefined)
        return debug << "::Undefined";
    return debug << '(' << int(type) << ')';
}

IRGObject::IRGObject() : IRGObject(noClass) { }

IRGObject::IRGObject(ObjectTypes type) : IRGObject(noClass)
{
    changeOwn([=](Environment::Own &own) { own.type = type; });
}

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

// --- What the object was told ----------------------------------------------------------------------------------------

/// Gives the object an environment with a changed part of its own.
template <class Change>
void IRGObject::changeOwn(Change change) const
{
    const Environment &old = *m_environment;
    auto own = old.own ? std::make_unique<Environment::Own>(*old.own) : std::make_unique<Environment::Own>();
    change(*own);
    m_environment = EnvironmentPointer::make(old.validate, old.logger, std::move(own));
}

ObjectTypes IRGObject::GetObjectType()
{
    return m_environment->own ? m_environment->own->type : ObjectTypes::Undefined;
}

void IRGObject::SetObjectType(ObjectTypes type)
{
    changeOwn([=](Environment::Own &own) { own.type = type; });
}

const QString &IRGObject::GetObjectName() const
{
    const auto &own = m_environment->own;
    return own && own->name ? *own->name : m_class->name;
}

void IRGObject::SetObjectName(const QString &name)
{
    changeOwn([&](Environment::Own &own) { own.name = std::make_shared<const QString>(name); });
}

bool IRGObject::GetValidate() const
{
    return m_environment->validate;
}

std::shared_ptr<Logger> IRGObject::GetLogger() const
{
    return m_environment->logger;
}

void IRGObject::SetValidate(bool validate) const
{
    takeOther(validate, m_environment->logger, m_environment);
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the signature is that of the slot
void IRGObject::SetLogger(std::shared_ptr<Logger> logger) const
{
    takeOther(m_environment->validate, logger, m_environment);
}

void IRGObject::ResetLogger() const
{
    takeOther(m_environment->validate, nullptr, m_environment);
}

EnvironmentPointer IRGObject::environmentForCopy() const
{
    // The const_cast is for GetObjectType(), which is not const although it only reads.
    const ObjectTypes type = const_cast<IRGObject &>(*this).GetObjectType();
    if (type == ObjectTypes::Undefined)
        return EnvironmentPointer::plain(GetValidate());
    auto own = std::make_unique<Environment::Own>();
    own->type = type;
    return EnvironmentPointer::make(GetValidate(), nullptr, std::move(own));
}

void IRGObject::takeOtherEnvironment(const EnvironmentPointer &parents) const
{
    takeOther(parents->validate, parents->logger, parents);
}

void IRGObject::takeValidate(const EnvironmentPointer &parents) const
{
    takeOther(parents->validate, m_environment->logger, parents);
}

void IRGObject::takeLogger(const EnvironmentPointer &parents) const
{
    takeOther(m_environment->validate, parents->logger, parents);
}

void IRGObject::takeOther(bool validate, const std::shared_ptr<Logger> &logger, const EnvironmentPointer &parents) const
{
    const Environment &old = *m_environment;
    if (!old.own && !parents->own && parents->validate == validate && parents->logger == logger)
        m_environment = parents;
    else if (old.validate != validate || old.logger != logger)
        m_environment = EnvironmentPointer::make(
            validate, logger, old.own ? std::make_unique<const Environment::Own>(*old.own) : nullptr);
}

const QString &IRGObject::GetVersion() const
{
    static const QString none;
    return none;
}

QString IRGObject::GetErrorString() const
{
    return m_environment->own ? m_environment->own->error : QString();
}

void IRGObject::clearError() const
{
    if (m_environment->own && !m_environment->own->error.isNull())
        changeOwn([](Environment::Own &own) { own.error = QString(); });
}

void IRGObject::ProcessXml(QXmlStreamReader &reader)
{
    if (!reader.atEnd() && !reader.hasError())
        walkContent(reader, reader.name().toString());
}

void IRGObject::walkContent(QXmlStreamReader &reader, const QString &name)
{
    processContent(reader, name);
}

void IRGObject::processContent(QXmlStreamReader &reader, const QString &name)
{
    for (;;) {
        switch (reader.readNext()) {
        case QXmlStreamReader::StartElement:
            ProcessXmlStartElement(reader);
            break;
        case QXmlStreamReader::EndElement:
            if (isSameText(reader.name(), name))
                return;
            break; // left over from an element that was not read to its end
        case QXmlStreamReader::Invalid: // in error, even if a device claims to have more data
        case QXmlStreamReader::EndDocument:
            return;
        default:
            break;
        }
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
    // -1 without a readable device; if fewer bytes are left than requested, the stream's status reports it
    return std::max(stream.skipRawData(length), 0);
}

bool IRGObject::fail(const QString &text) const
{
    changeOwn([&](Environment::Own &own) { own.error = text; });
    if (const std::shared_ptr<Logger> logger = m_environment->logger)
        logger->Log(Logger::Severity::Error, text);
    return false;
}

} // namespace REPORTGENERATOR
