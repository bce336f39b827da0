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

/// A stream without a device, for operations that take the settings of a stream.
class OwnForm final : public QDataStream
{
public:
    OwnForm() { Framing::OwnSettings.applyTo(*this); }
};

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
    QString failure;
    try {
        const auto members = Framing::membersOf(representation, Framing::OwnSettings, quint32(m_classIdentifier),
                                                GetObjectName(), limits);
        failure = located(FailureTexts::binaryData(),
                          [&] { return readMembersIn(OwnForm(), members.container, members.begin); });
    } catch (const Framing::Refusal &refusal) {
        failure = refusal.why;
    }
    return failure.isNull() || fail(Failure(FailureTexts::binaryData(), failure));
}

bool IRGObject::SetBinaryRepresentation(QDataStream &stream)
{
    return SetBinaryRepresentation(stream, ReadLimits());
}

bool IRGObject::SetBinaryRepresentation(QDataStream &stream, const ReadLimits &limits)
{
    clearError();
    const QString failure =
        located(FailureTexts::binaryData(), [&] { return readRepresentation(stream, false, limits); });
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
    const QString failure = located(access.name(), [&] { return readRepresentation(stream, true, limits); });
    if (!access.readFailure().isNull())
        return fail(access.readFailure()); // the data seem truncated then, but the device has failed
    return failure.isNull() || fail(Failure(access.name(), failure));
}

QString IRGObject::readRepresentation(QDataStream &stream, bool toTheEnd, const ReadLimits &limits)
{
    const auto afterRecord = toTheEnd ? Framing::AfterRecord::Nothing : Framing::AfterRecord::Anything;
    try {
        const auto members =
            Framing::takeMembers(stream, quint32(m_classIdentifier), GetObjectName(), afterRecord, limits);
        return readMembersIn(stream, members.container, members.begin);
    } catch (const Framing::Refusal &refusal) {
        return refusal.why;
    }
}

QString IRGObject::readMembersIn(const QDataStream &form, const QByteArray &container, qint64 begin)
{
    const int size = int(container.size() - begin); // which the length of a record can express
    try {
        const int read = readMembers(form, container.constData() + begin, size);
        if (read >= 0)
            return read == size ? QString() : FailureTexts::membersEndEarly(read, size);

        Framing::MemoryStream memory(begin == 0 ? container : container.mid(Size(begin)), Framing::Settings::of(form));
        QDataStream &stream = memory.stream();
        SetBinary(stream, size);
        // An object may not detect inconsistent lengths inside the record; damaged data must never be accepted as good
        // ones.
        if (stream.status() != QDataStream::Ok)
            return FailureTexts::membersCutOff(size);
        if (stream.device()->pos() != size)
            return FailureTexts::membersEndEarly(stream.device()->pos(), size);
        return QString();
    } catch (const std::bad_alloc &) {
        rethrowUnlessLarge(size);
        return FailureTexts::outOfMemory(size, LongestText);
    }
}

bool IRGObject::composeBinary(const QDataStream &, QByteArray &) const
{
    return false;
}

int IRGObject::readMembers(const QDataStream &, const char *, int)
{
    return -1;
}

void IRGObject::virtualHook(int, void *) { }

QByteArray IRGObject::composeRepresentation(const QDataStream &form) const
{
    QByteArray record;
    if (composeBinary(form, record))
        return record;
    Framing::MemoryStream memory(Framing::Settings::of(form));
    const bool isWritten = GetBinary(memory.stream(), int(quint32(m_classIdentifier)), true);
    if (memory.bytes().size() > ReadLimits::LargestPossible)
        throw std::bad_alloc(); // as with Qt 5: no reader takes more
    return isWritten ? memory.bytes() : QByteArray();
}

void IRGObject::GetBinaryRepresentation(QDataStream &stream) const
{
    clearError();
    const QByteArray plain = composeRepresentation(stream);
    stream.writeRawData(plain.constData(), int(plain.size()));
}

QByteArray IRGObject::GetBinaryRepresentationAsQByteArray()
{
    clearError();
    return composeRepresentation(OwnForm());
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
        const QByteArray bytes =
            Framing::compressed(composeRepresentation(stream), Framing::Settings::of(stream), level);
        stream.writeRawData(bytes.constData(), int(bytes.size()));
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
    return save(path, composeRepresentation(OwnForm()));
}

bool IRGObject::SaveCompressedBinary(const QString &path, int level) const
{
    clearError();
    try {
        return save(path, Framing::compressed(composeRepresentation(OwnForm()), Framing::OwnSettings, level));
    } catch (const Framing::Refusal &refusal) {
        return fail(Failure(path, refusal.why));
    }
}

} // namespace REPORTGENERATOR
