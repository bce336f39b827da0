// SPDX-License-Identifier: MIT
#pragma once

#include <QtTest>

#include "Aftermath.h"
#include "CompactDocument.h"
#include "ExceptionText.h"
#include "HeapPeak.h"

/// Helpers of the tests that damage the compact document.
namespace Damage {

const ClassUnderTest &documents();
/// Checks documents by reading the compact one into them again.
const Aftermath &afterwards();

JobXml::TunerProperties emptyDocument(bool validate);
Expected expectedDocument(bool validate);

/// The bytes with one bit inverted; `bit` counts from the first byte's least significant bit.
QByteArray flipped(QByteArray bytes, int bit);
QByteArray replaced(QByteArray bytes, int offset, qint32 word);

/// Calls the function, which reads `inputSize` bytes into the document. It must throw the expected exception, leave the
/// expected state and use bounded memory, and the document must be usable afterwards. Returns the first error, or null.
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

/// The results of damaging data in every way of one kind.
struct Sweep
{
    int damaged = 0;
    int refused = 0;
    QString wrong; ///< location and description of the first error, which ends the sweep

    void add(const QString &thrown, const QString &wrongHere, const QString &where);
};

/// Flips each bit of the record or snapshot; the document is read with SetBinary() or as a snapshot.
Sweep flipEveryBit(Encoding encoding, bool validate);

/// Truncates the record or snapshot at each byte from `first` on.
Sweep cutEverywhere(Encoding encoding, bool validate, int first);

/// Replaces four bytes of the record or snapshot, at every offset, by each of the words.
Sweep replaceEverywhere(Encoding encoding, bool validate, const QVector<qint32> &words);

inline void validatingRows()
{
    QTest::addColumn<bool>("validate");
    QTest::newRow("validating") << true;
    QTest::newRow("not validating") << false;
}

} // namespace Damage
