// SPDX-License-Identifier: MIT
#include "Expected.h"

#include <cstring>

#include <QtEndian>

namespace Damage {

namespace {

// Thrown at the end of the bytes, where reading ends without an error; a truncated value is not stored.
struct EndOfSnapshot
{
};

class SnapshotInput
{
public:
    explicit SnapshotInput(const QByteArray &bytes) : m_bytes(bytes) { }

    int offset() const { return m_offset; }

    const char *take(qint64 count)
    {
        if (count > m_bytes.size() - m_offset)
            throw EndOfSnapshot();
        const char *first = m_bytes.constData() + m_offset;
        m_offset += int(count);
        return first;
    }

    quint8 byte() { return quint8(*take(1)); }
    quint32 word() { return qFromBigEndian<quint32>(take(4)); }
    qint64 wide() { return qFromBigEndian<qint64>(take(8)); }

    double number()
    {
        const qint64 bits = wide();
        double value = 0;
        std::memcpy(&value, &bits, sizeof value);
        return value;
    }

    QString text()
    {
        const quint32 size = word();
        if (size == 0xFFFFFFFF)
            return QString();
        if (size % 2 != 0)
            throw EndOfSnapshot(); // half a unit of 16 bits cannot be read
        const char *units = take(size);
        QString text = QStringLiteral("");
        for (quint32 i = 0; i < size; i += 2)
            text += QChar(qFromBigEndian<quint16>(units + i));
        return text;
    }

private:
    const QByteArray &m_bytes;
    int m_offset = 0;
};

QVariant readScalar(const MemberRule &member, SnapshotInput &in)
{
    switch (member.kind) {
    case Kind::Boolean:
        return in.byte() != 0;
    case Kind::Integer:
        return int(qint32(quint32(quint64(in.wide()) & 0xFFFFFFFF)));
    case Kind::Integer64:
        return qlonglong(in.wide());
    case Kind::Unsigned64:
        return qulonglong(in.wide());
    case Kind::Float:
        return float(in.number());
    case Kind::Double:
        return in.number();
    case Kind::TypeName:
        return shownType(qint8(in.byte()));
    default:
        return in.text();
    }
}

void readObject(Expected &object, SnapshotInput &in);

void readMember(Expected &object, const MemberRule &member, SnapshotInput &in)
{
    Expected::MemberState &state = object.of(member);
    if (member.has(SnapshotIfSet) && !state.set)
        return;
    switch (member.kind) {
    case Kind::List: {
        const auto count = qint32(in.word());
        if (!state.set && !member.has(SnapshotByCount))
            return;
        for (qint32 i = 0; i < count; ++i) {
            Expected item(QString::fromLatin1(member.object), object.validate);
            readObject(item, in);
            object.append(member, item);
        }
        break;
    }
    case Kind::Modes: {
        const auto count = qint32(in.word());
        for (qint32 i = 0; i < count; ++i)
            object.appendMode(member, qint8(in.byte()));
        break;
    }
    case Kind::Child:
        readObject(object.child(member), in);
        break;
    case Kind::Alternative:
        if (object.choice == member.bit) // its flag does not matter
            readObject(object.child(member), in);
        break;
    default:
        state.value = readScalar(member, in); // without the setter; the flag was read before
    }
}

void readObject(Expected &object, SnapshotInput &in)
{
    object.touched = true;
    const int flagBytes = object.rule->members.size() > 8 ? 2 : 1;
    const char *bytes = in.take(flagBytes);
    for (const MemberRule &member : object.rule->members)
        object.of(member).set = (quint8(bytes[member.bit / 8]) >> (member.bit % 8)) & 1;
    if (object.is("ValueItem"))
        object.choice = in.byte();
    if (object.is("TunerProperties"))
        object.setLoadedVersion(in.text());
    for (const MemberRule &member : object.rule->inBitOrder())
        readMember(object, member, in);
}

} // namespace

Outcome readSnapshot(Expected &object, const QByteArray &snapshot)
{
    SnapshotInput in(snapshot);
    try {
        readObject(object, in);
    } catch (const Refusal &refusal) {
        return {refusal.text, in.offset()};
    } catch (const EndOfSnapshot &) {
    }
    return {QString(), in.offset()};
}

} // namespace Damage
