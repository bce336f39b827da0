// SPDX-License-Identifier: MIT
#include "Expected.h"

#include <algorithm>

#include <QtEndian>

namespace Damage {

namespace {

// Reads exactly as the format defines, from bytes and offsets, without a stream.
class RecordInput
{
public:
    RecordInput(const QByteArray &bytes, QVector<Word> *words) : m_bytes(bytes), m_words(words) { }

    int offset() const { return m_offset; }
    bool atEnd() const { return m_offset == m_bytes.size(); }

    /// Returns the next bytes; if there are fewer, throws the error of the object that reads them.
    const char *take(const Expected &reading, qint64 count)
    {
        if (count > m_bytes.size() - m_offset) {
            m_offset = m_bytes.size();
            throw Refusal{lengthErrorOf(QString::fromLatin1(reading.rule->name))};
        }
        const char *first = m_bytes.constData() + m_offset;
        m_offset += int(count);
        return first;
    }

    quint32 word(const Expected &reading) { return qFromBigEndian<quint32>(take(reading, 4)); }
    qint64 wide(const Expected &reading) { return qFromBigEndian<qint64>(take(reading, 8)); }

    qint32 length(const Expected &reading, Word::What what, const MemberRule *member)
    {
        const int offset = m_offset;
        const auto value = qint32(word(reading));
        if (m_words && (member || what == Word::RecordLength))
            m_words->append({what, offset, value, QString::fromLatin1(reading.rule->name),
                             member ? QString::fromLatin1(member->name) : QString(),
                             member ? member->kind : Kind::Child});
        return value;
    }

    /// A length and that many bytes of UTF-8; the length -1 is a null text, which is read as an empty one.
    QString text(const Expected &reading, const MemberRule &member)
    {
        const auto size = quint32(length(reading, Word::TextLength, &member));
        if (size == 0xFFFFFFFF || size == 0)
            return QStringLiteral("");
        return QString::fromUtf8(take(reading, size), int(size));
    }

    /// A text of 16-bit units. In records, only the version has this form. Half a unit is an error.
    QString version(const Expected &reading)
    {
        const auto size = quint32(length(reading, Word::TextLength, &versionMember()));
        if (size == 0xFFFFFFFF)
            return QString();
        if (size % 2 != 0)
            throw Refusal{lengthErrorOf(QString::fromLatin1(reading.rule->name))};
        const char *units = take(reading, size);
        QString text = QStringLiteral("");
        for (quint32 i = 0; i < size; i += 2)
            text += QChar(qFromBigEndian<quint16>(units + i));
        return text;
    }

private:
    const QByteArray &m_bytes;
    QVector<Word> *m_words;
    int m_offset = 0;
};

void readMembers(Expected &object, RecordInput &in, qint32 length);

QVariant readScalar(const Expected &object, const MemberRule &member, RecordInput &in)
{
    switch (member.kind) {
    case Kind::Boolean:
        return *in.take(object, 1) != 0;
    case Kind::Integer:
        return int(qint32(quint32(quint64(in.wide(object)) & 0xFFFFFFFF)));
    case Kind::Integer64:
        return qlonglong(in.wide(object));
    case Kind::Unsigned64:
        return qulonglong(in.wide(object));
    case Kind::Float:
        return in.text(object, member).toFloat();
    case Kind::Double:
        return in.text(object, member).toDouble();
    case Kind::TypeName:
        return shownType(typeByName(in.text(object, member)));
    default:
        return in.text(object, member);
    }
}

void readMember(Expected &object, const MemberRule &member, RecordInput &in, qint32 length)
{
    switch (member.kind) {
    case Kind::List: {
        const qint32 count = in.length(object, Word::Count, &member);
        for (qint32 i = 0; i < count; ++i) {
            const qint32 itemLength = in.length(object, Word::ItemLength, &member);
            Expected item(QString::fromLatin1(member.object), object.validate);
            readMembers(item, in, itemLength);
            object.append(member, item);
        }
        break;
    }
    case Kind::Modes: {
        const qint32 count = in.length(object, Word::Count, &member);
        for (qint32 i = 0; i < count; ++i) {
            in.length(object, Word::ItemLength, &member); // ignored: the text has a length of its own
            object.appendMode(member, modeByName(in.text(object, member)));
        }
        break;
    }
    case Kind::Alternative:
        object.choice = member.bit;
        Q_FALLTHROUGH();
    case Kind::Child:
        readMembers(object.child(member), in, length);
        object.of(member).set = true;
        break;
    default:
        object.set(member, readScalar(object, member, in));
    }
}

void readMembers(Expected &object, RecordInput &in, qint32 length)
{
    object.touched = true;
    qint64 left = length;
    while (left > 0 && !in.atEnd()) {
        const quint32 tag = in.word(object);
        const bool isVersion = object.is("TunerProperties") && tag == versionMember().tag;
        const MemberRule *member = isVersion ? &versionMember() : object.rule->byTag(tag);
        const bool holdsObject = member && (member->kind == Kind::Child || member->kind == Kind::Alternative);
        const qint32 memberLength = in.length(object, holdsObject ? Word::ObjectLength : Word::MemberLength, member);
        left -= 8 + qint64(memberLength);
        if (isVersion)
            object.setLoadedVersion(in.version(object));
        else if (member)
            readMember(object, *member, in, memberLength);
        else
            in.take(object, std::max(memberLength, 0)); // a negative length skips nothing
    }
    if (left != 0)
        throw Refusal{lengthErrorOf(QString::fromLatin1(object.rule->name))};
}

} // namespace

Outcome readRecord(Expected &object, const QByteArray &record, QVector<Word> *words)
{
    RecordInput in(record, words);
    try {
        // The caller reads the length word; a missing one reads as 0.
        readMembers(object, in, record.size() < 4 ? 0 : in.length(object, Word::RecordLength, nullptr));
    } catch (const Refusal &refusal) {
        return {refusal.text, in.offset()};
    }
    return {QString(), in.offset()};
}

} // namespace Damage
