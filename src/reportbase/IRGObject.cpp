// SPDX-License-Identifier: MIT
#include <reportbase/IRGObject.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include <QDataStream>
#include <QDateTime>
#include <QDebug>
#include <QXmlStreamReader>

#include "reportbase/FailureTexts.h"
#include "reportbase/ObjectState.h"
#include "text/LongestText.h"
#include "text/SameText.h"

namespace REPORTGENERATOR {

namespace {

const QString noName;
constexpr ObjectClass noClass{noName, 0};

ObjectState::Members stateOfType(ObjectTypes type)
{
    ObjectState::Members members;
    members.type = type;
    return members;
}

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

IRGObject::IRGObject(ObjectTypes type) : IRGObject(noClass, ObjectState::make(true, nullptr, stateOfType(type))) { }

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

// --- Name, type, validate flag, logger -------------------------------------------------------------------------------

template <class Change>
void IRGObject::changeState(Change change) const
{
    const ObjectState::Members *const old = ObjectState::find(m_environment);
    ObjectState::Members members = old ? *old : ObjectState::Members();
    change(members);
    m_environment = ObjectState::make(m_environment->validate, m_environment->logger, std::move(members));
}

ObjectTypes IRGObject::GetObjectType()
{
    const auto *const state = ObjectState::find(m_environment);
    return state ? state->type : ObjectTypes::Undefined;
}

void IRGObject::SetObjectType(ObjectTypes type)
{
    changeState([=](ObjectState::Members &state) { state.type = type; });
}

const QString &IRGObject::GetObjectName() const
{
    const auto *const state = ObjectState::find(m_environment);
    return state && state->name ? *state->name : m_class->name;
}

void IRGObject::SetObjectName(const QString &name)
{
    changeState([&](ObjectState::Members &state) { state.name = std::make_shared<const QString>(name); });
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
    changeEnvironment(validate, m_environment->logger, m_environment);
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the signature is that of the slot
void IRGObject::SetLogger(std::shared_ptr<Logger> logger) const
{
    changeEnvironment(m_environment->validate, logger, m_environment);
}

void IRGObject::ResetLogger() const
{
    changeEnvironment(m_environment->validate, nullptr, m_environment);
}

EnvironmentPointer IRGObject::environmentForCopy() const
{
    // The const_cast is for GetObjectType(), which only reads although it is not const.
    return ObjectState::make(GetValidate(), nullptr, stateOfType(const_cast<IRGObject &>(*this).GetObjectType()));
}

void IRGObject::replaceEnvironment(const EnvironmentPointer &environment) const
{
    changeEnvironment(environment->validate, environment->logger, environment);
}

void IRGObject::changeEnvironment(bool validate, const std::shared_ptr<Logger> &logger,
                                  const EnvironmentPointer &shared) const
{
    const Environment &old = *m_environment;
    const ObjectState::Members *const state = ObjectState::find(m_environment);
    if (!state && !ObjectState::find(shared) && shared->validate == validate && shared->logger == logger)
        m_environment = shared;
    else if (old.validate != validate || old.logger != logger)
        m_environment = ObjectState::make(validate, logger, state ? *state : ObjectState::Members());
}

const QString &IRGObject::GetVersion() const
{
    static const QString none;
    return none;
}

QString IRGObject::GetErrorString() const
{
    const auto *const state = ObjectState::find(m_environment);
    return state ? state->error : QString();
}

void IRGObject::clearError() const
{
    const auto *const state = ObjectState::find(m_environment);
    if (state && !state->error.isNull())
        changeState([](ObjectState::Members &members) {
            members.error = QString();
            members.errorLocation = {};
        });
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
    QString text = reader.readElementText(QXmlStreamReader::SkipChildElements);
    lengthOfText(text.size());
    return text;
}

int IRGObject::skipCurrentElement(QDataStream &stream, int length, int) const
{
    if (length <= 0)
        return 0;
    // -1 without a readable device; if fewer bytes are left than requested, the stream's status reports it
    return std::max(stream.skipRawData(length), 0);
}

ErrorLocation IRGObject::GetErrorLocation() const
{
    const auto *const state = ObjectState::find(m_environment);
    return state ? state->errorLocation : ErrorLocation();
}

bool IRGObject::fail(const Failure &failure) const
{
    changeState([&](ObjectState::Members &state) {
        state.error = failure.text;
        state.errorLocation = failure.location;
    });
    if (const std::shared_ptr<Logger> logger = m_environment->logger)
        logger->Log(Logger::Severity::Error, failure.text);
    return false;
}

} // namespace REPORTGENERATOR
