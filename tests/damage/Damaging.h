// SPDX-License-Identifier: MIT
#pragma once

#include <QtTest>

#include "Aftermath.h"
#include "CompactDocument.h"
#include "ExceptionText.h"
#include "HeapPeak.h"

/// What the tests that damage the compact document do again and again.
namespace Damage {

const ClassUnderTest &documents();
/// For documents into which the compact one is read again.
const Aftermath &afterwards();

JobXml::TunerProperties emptyDocument(bool validate);
Expected expectedDocument(bool validate);

/// The bytes with one bit, of all their bits, the other way round.
QByteArray flipped(QByteArray bytes, int bit);
QByteArray replaced(QByteArray bytes, int offset, qint32 word);

/// Calls the function, which reads `inputSize` bytes into the document. It must throw as expected and leave what is
/// expected, within bounded memory; and whatever came of it, the document must be usable afterwards. Returns what is
/// wrong, or null.
template <class Read>
QString wrongAfterReading(JobXml::TunerProperties &document, const Expected &state, const QString &thrown,
                          Encoding encoding, int inputSize, Read &&read)
{
    const HeapPeak peak;
    const QString actuallyThrown = thrownBy(read);
    const long long used = peak.bytes();
    if (used > HeapPeak::bound(inputSize))
        return QStringLiteral("it took %1 bytes of memory").arg(used);
    if (actuallyThrown != thrown)
        return QStringLiteral("it threw '%1', not '%2'").arg(actuallyThrown, thrown);
    const QString wrong = difference(listing(document), state.listing());
    return wrong.isNull() ? afterwards().wrongWith(document, &state, encoding) : wrong;
}

/// What came of damaging something in all ways of one kind.
struct Sweep
{
    int damaged = 0;
    int refused = 0;
    QString wrong; ///< where and what, for the first that was wrong; the sweep ends there

    void add(const QString &thrown, const QString &wrongHere, const QString &where);
};

/// Each bit of the record or snapshot flipped; the document is read with SetBinary() or as a snapshot.
Sweep flipEveryBit(Encoding encoding, bool validate);

/// The record or snapshot cut at each byte from `first` on.
Sweep cutEverywhere(Encoding encoding, bool validate, int first);

/// Four bytes of the record or snapshot replaced, at each byte where there are four, by each of the words: whatever
/// they were, a length or a count among them.
Sweep replaceEverywhere(Encoding encoding, bool validate, const QVector<qint32> &words);

inline void validatingRows()
{
    QTest::addColumn<bool>("validate");
    QTest::newRow("validating") << true;
    QTest::newRow("not validating") << false;
}

} // namespace Damage
