// SPDX-License-Identifier: MIT
#include <reportbase/IRGObject.h>

#include <new>

#include <QDataStream>
#include <QFile>

#include "FailureTexts.h"
#include "FileAccess.h"
#include "LargeData.h"
#include "RepresentationFraming.h"

namespace REPORTGENERATOR {

namespace Framing = RepresentationFraming;

namespace {

/// The plain representation; empty if the object writes nothing.
QByteArray composePlain(const IRGObject &object, qint64 classIdentifier, const Framing::Settings &settings)
{
    Framing::MemoryStream memory(settings);
    const bool isWritten = object.GetBinary(memory.stream(), int(quint32(classIdentifier)), true);
    return isWritten ? memory.bytes() : QByteArray();
}

/// The compressed representation; empty if the object writes nothing. Throws a Refusal if it is too large.
QByteArray composeCompressed(const IRGObject &object, qint64 classIdentifier, const Framing::Settings &settings,
                             int level)
{
    const QByteArray plain = composePlain(object, classIdentifier, settings);
    return plain.isEmpty() ? QByteArray() : Framing::compressed(plain, settings, level);
}

} // namespace

bool IRGObject::SetBinaryRepresentation(QByteArray &representation)
{
    return SetBinaryRepresentation(representation, ReadLimits());
}

bool IRGObject::SetBinaryRepresentation(const QByteArray &representation)
{
    QByteArray shared = representation;
    return SetBinaryRepresentation(shared); // which a class may have overridden
}

bool IRGObject::SetBinaryRepresentation(const QByteArray &representation, const ReadLimits &limits)
{
    clearError();
    Framing::MemoryStream memory(representation, Framing::OwnSettings);
    const QString failure = readRepresentation(memory.stream(), true, limits);
    return failure.isNull() || fail(Failure(FailureTexts::binaryData(), failure));
}

bool IRGObject::SetBinaryRepresentation(QDataStream &stream)
{
    return SetBinaryRepresentation(stream, ReadLimits());
}

bool IRGObject::SetBinaryRepresentation(QDataStream &stream, const ReadLimits &limits)
{
    clearError();
    const QString failure = readRepresentation(stream, false, limits);
    return failure.isNull() || fail(Failure(FailureTexts::binaryData(), failure));
}

bool IRGObject::LoadBinary(const QString &path)
{
    QFile file(path);
    return LoadBinary(&file); // which a class may have overridden
}

bool IRGObject::LoadBinary(const QString &path, const ReadLimits &limits)
{
    QFile file(path);
    return LoadBinary(&file, limits);
}

bool IRGObject::LoadBinary(QFile *file)
{
    return LoadBinary(file, ReadLimits());
}

bool IRGObject::LoadBinary(QFile *file, const ReadLimits &limits)
{
    clearError();
    const FileForReading access(file);
    if (!access.openFailure().isNull())
        return fail(access.openFailure());

    QDataStream stream(file);
    Framing::OwnSettings.applyTo(stream);
    const QString failure = readRepresentation(stream, true, limits);
    if (!access.readFailure().isNull())
        return fail(access.readFailure()); // the data seem truncated then, but the device has failed
    return failure.isNull() || fail(Failure(access.name(), failure));
}

QString IRGObject::readRepresentation(QDataStream &stream, bool toTheEnd, const ReadLimits &limits)
{
    QByteArray members;
    try {
        members =
            Framing::takeMembers(stream, quint32(m_classIdentifier), GetObjectName(),
                                 toTheEnd ? Framing::AfterRecord::Nothing : Framing::AfterRecord::Anything, limits);
    } catch (const Framing::Refusal &refusal) {
        return refusal.why;
    }

    Framing::MemoryStream memory(members, Framing::Settings::of(stream));
    QDataStream &memberStream = memory.stream();
    try {
        SetBinary(memberStream, members.size());
    } catch (const std::bad_alloc &) {
        rethrowUnlessLarge(members.size());
        return FailureTexts::outOfMemory(members.size(), LongestText);
    }
    // An object may not detect inconsistent lengths inside the record; damaged data must never be accepted as good
    // ones.
    if (memberStream.status() != QDataStream::Ok)
        return FailureTexts::membersCutOff(members.size());
    if (memberStream.device()->pos() != members.size())
        return FailureTexts::membersEndEarly(memberStream.device()->pos(), members.size());
    return QString();
}

void IRGObject::GetBinaryRepresentation(QDataStream &stream) const
{
    clearError();
    const QByteArray plain = composePlain(*this, m_classIdentifier, Framing::Settings::of(stream));
    stream.writeRawData(plain.constData(), plain.size());
}

QByteArray IRGObject::GetBinaryRepresentationAsQByteArray()
{
    clearError();
    return composePlain(*this, m_classIdentifier, Framing::OwnSettings);
}

// These do not change the object, although they are not const in the contract. Classes may override them.
QByteArray IRGObject::GetBinaryRepresentationAsQByteArray() const
{
    return const_cast<IRGObject &>(*this).GetBinaryRepresentationAsQByteArray();
}

QByteArray IRGObject::GetCompressedBinaryRepresentationAsQByteArray(int level) const
{
    return const_cast<IRGObject &>(*this).GetCompressedBinaryRepresentationAsQByteArray(level);
}

void IRGObject::GetCompressedBinaryRepresentation(QDataStream &stream, int level) const
{
    clearError();
    try {
        const QByteArray compressed = composeCompressed(*this, m_classIdentifier, Framing::Settings::of(stream), level);
        stream.writeRawData(compressed.constData(), compressed.size());
    } catch (const Framing::Refusal &refusal) {
        fail(Failure(FailureTexts::binaryData(), refusal.why));
    }
}

QByteArray IRGObject::GetCompressedBinaryRepresentationAsQByteArray(int level)
{
    Framing::MemoryStream memory(Framing::OwnSettings);
    GetCompressedBinaryRepresentation(memory.stream(), level);
    return memory.bytes();
}

bool IRGObject::SaveBinary(const QString &path) const
{
    clearError();
    return save(path, composePlain(*this, m_classIdentifier, Framing::OwnSettings));
}

bool IRGObject::SaveCompressedBinary(const QString &path, int level) const
{
    clearError();
    try {
        return save(path, composeCompressed(*this, m_classIdentifier, Framing::OwnSettings, level));
    } catch (const Framing::Refusal &refusal) {
        return fail(Failure(path, refusal.why));
    }
}

} // namespace REPORTGENERATOR
