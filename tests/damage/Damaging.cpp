// SPDX-License-Identifier: MIT
#include "Damaging.h"

namespace Damage {

using JobXml::TunerProperties;

namespace {

QByteArray compact(Encoding encoding)
{
    return encoding == Encoding::Record ? recordOf(compactDocument()) : snapshotOf(compactDocument());
}

void readDamaged(Sweep &sweep, const QByteArray &damaged, Encoding encoding, bool validate, const QString &where)
{
    const bool isRecord = encoding == Encoding::Record;
    Expected state = expectedDocument(validate);
    const QString thrown = (isRecord ? readRecord(state, damaged) : readSnapshot(state, damaged)).thrown;
    TunerProperties document = emptyDocument(validate);
    const QString wrong = wrongAfterReading(document, state, thrown, encoding, damaged.size(), [&] {
        if (isRecord)
            readRecord(document, damaged);
        else
            readSnapshot(document, damaged);
    });
    sweep.add(thrown, wrong, where);
}

} // namespace

const ClassUnderTest &documents()
{
    static const ClassUnderTestOf<TunerProperties> type(
        [](TunerProperties &document) { document = compactDocument(); });
    return type;
}

const Aftermath &afterwards()
{
    static const Aftermath aftermath(documents(), compactDocument());
    return aftermath;
}

TunerProperties emptyDocument(bool validate)
{
    TunerProperties document;
    document.SetValidate(validate);
    return document;
}

Expected expectedDocument(bool validate)
{
    return Expected(QStringLiteral("TunerProperties"), validate);
}

QByteArray flipped(QByteArray bytes, int bit)
{
    bytes[bit / 8] = char(bytes.at(bit / 8) ^ (1 << (bit % 8)));
    return bytes;
}

QByteArray replaced(QByteArray bytes, int offset, qint32 word)
{
    QByteArray four;
    QDataStream(&four, QIODevice::WriteOnly) << word;
    return bytes.replace(offset, 4, four);
}

void Sweep::add(const QString &thrown, const QString &wrongHere, const QString &where)
{
    ++damaged;
    refused += thrown.isNull() ? 0 : 1;
    if (!wrongHere.isNull())
        wrong = where + QStringLiteral(": ") + wrongHere;
}

Sweep flipEveryBit(Encoding encoding, bool validate)
{
    const QByteArray whole = compact(encoding);
    Sweep sweep;
    for (int bit = 0; bit < 8 * whole.size() && sweep.wrong.isNull(); ++bit)
        readDamaged(sweep, flipped(whole, bit), encoding, validate,
                    QStringLiteral("byte %1, bit %2").arg(bit / 8).arg(bit % 8));
    return sweep;
}

Sweep cutEverywhere(Encoding encoding, bool validate, int first)
{
    const QByteArray whole = compact(encoding);
    Sweep sweep;
    for (int size = first; size < whole.size() && sweep.wrong.isNull(); ++size)
        readDamaged(sweep, whole.left(size), encoding, validate, QStringLiteral("cut to %1 bytes").arg(size));
    return sweep;
}

Sweep replaceEverywhere(Encoding encoding, bool validate, const QVector<qint32> &words)
{
    const QByteArray whole = compact(encoding);
    Sweep sweep;
    for (int offset = 0; offset + 4 <= whole.size(); ++offset) {
        for (const qint32 word : words) {
            readDamaged(sweep, replaced(whole, offset, word), encoding, validate,
                        QStringLiteral("%1 at byte %2").arg(word).arg(offset));
            if (!sweep.wrong.isNull())
                return sweep;
        }
    }
    return sweep;
}

} // namespace Damage
