// SPDX-License-Identifier: MIT
#include "XmlDamage.h"

#include <QFile>
#include <QRegularExpression>

#include <sys/mman.h>
#include <unistd.h>

namespace Damage {

using JobXml::TunerProperties;

namespace {

/// A file in memory, open for reading.
class FileOfBytes
{
public:
    explicit FileOfBytes(const QByteArray &bytes)
    {
        const int descriptor = memfd_create("damaged", MFD_CLOEXEC);
        isGood = descriptor >= 0
            && ::write(descriptor, bytes.constData(), std::size_t(bytes.size())) == ssize_t(bytes.size())
            && lseek(descriptor, 0, SEEK_SET) == 0
            && file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle);
    }

    QFile file;
    bool isGood = false;
};

QString wrongOutcome(const TunerProperties &document, const QString &thrown, bool taken, const QString &source,
                     const XmlOutcome &outcome, const Expected &state)
{
    if (thrown != outcome.thrown)
        return QStringLiteral("it threw '%1', not '%2'").arg(thrown, outcome.thrown);
    if (thrown.isNull() && taken != outcome.taken)
        return taken ? QStringLiteral("it was taken") : QStringLiteral("not taken: ") + document.GetErrorString();
    const QString error = outcome.error.isNull() || !thrown.isNull() ? QString() : source + outcome.error;
    if (document.GetErrorString() != error)
        return QStringLiteral("the error is '%1', not '%2'").arg(document.GetErrorString(), error);
    static const QRegularExpression placed(QStringLiteral("^[^:]+:[1-9][0-9]*:[1-9][0-9]*: ."));
    if (!error.isNull() && !placed.match(document.GetErrorString()).hasMatch())
        return QStringLiteral("the error has no location: ") + error;
    return difference(listing(document), state.listing());
}

// Reads a good document into one that was read from a truncated text, without a reset. The good items are appended to
// those of the truncated text.
QString wrongReadingAfter(const TunerProperties &damaged)
{
    TunerProperties document(damaged);
    const TunerProperties good = compactDocument();
    if (!document.SetXmlString(QString::fromUtf8(compactXml()), damaged.GetValidate()))
        return QStringLiteral("reading again without reset: ") + document.GetErrorString();
    document.SetComponent({document.GetComponent().constLast()});
    document.SetBandwidthSelection({document.GetBandwidthSelection().constLast()});
    JobXml::StartupModes &modes = document.GetStartupModes();
    modes.SetStartupMode(modes.GetStartupMode().mid(modes.GetStartupMode().size() - 2));
    return document == good ? QString() : QStringLiteral("reading again without reset: the document differs");
}

QString readFile(const QByteArray &damaged, bool validate, XmlOutcome &outcome)
{
    FileOfBytes bytes(damaged);
    if (!bytes.isGood)
        return QStringLiteral("there is no file to read");
    Expected state = expectedDocument(validate);
    outcome = readXml(state, XmlTokens::ofBytes(damaged));
    TunerProperties document = emptyDocument(validate);
    bool taken = false;
    const HeapPeak peak;
    const QString thrown = thrownBy([&] { taken = document.LoadXml(&bytes.file); });
    if (peak.bytes() > HeapPeak::bound(damaged.size()))
        return QStringLiteral("it took %1 bytes of memory").arg(peak.bytes());
    QString wrong = wrongOutcome(document, thrown, taken, QStringLiteral("unnamed file:"), outcome, state);
    if (wrong.isNull() && outcome.truncated)
        wrong = wrongReadingAfter(document);
    if (wrong.isNull())
        wrong = afterwards().wrongWith(document, &state, Encoding::Xml);
    return wrong;
}

QString readText(const QString &damaged, bool validate, XmlOutcome &outcome)
{
    Expected state = expectedDocument(validate);
    outcome = readXml(state, XmlTokens::ofText(damaged));
    TunerProperties document;
    bool taken = false;
    const QString thrown = thrownBy([&] { taken = document.SetXmlString(damaged, validate); });
    return wrongOutcome(document, thrown, taken, QStringLiteral("XML text:"), outcome, state);
}

} // namespace

void readDamagedXml(XmlSweep &sweep, const QByteArray &damaged, XmlSource source, bool validate, const QString &where)
{
    const QString text = QString::fromUtf8(damaged);
    if (source == XmlSource::Text && text.toUtf8() != damaged) {
        ++sweep.noText;
        return;
    }
    XmlOutcome outcome;
    const QString wrong =
        source == XmlSource::File ? readFile(damaged, validate, outcome) : readText(text, validate, outcome);
    if (!outcome.thrown.isNull())
        ++sweep.thrown;
    else
        ++(outcome.taken ? sweep.taken : sweep.refused);
    if (!wrong.isNull())
        sweep.wrong = where + QStringLiteral(": ") + wrong;
}

XmlSweep flipEveryBitOfXml(XmlSource source, bool validate)
{
    const QByteArray whole = compactXml();
    XmlSweep sweep;
    for (int bit = 0; bit < 8 * whole.size() && sweep.wrong.isNull(); ++bit)
        readDamagedXml(sweep, flipped(whole, bit), source, validate,
                       QStringLiteral("byte %1, bit %2").arg(bit / 8).arg(bit % 8));
    return sweep;
}

XmlSweep cutXmlEverywhere(XmlSource source, bool validate)
{
    const QByteArray whole = compactXml();
    XmlSweep sweep;
    for (int size = 0; size < whole.size() && sweep.wrong.isNull(); ++size)
        readDamagedXml(sweep, whole.left(size), source, validate, QStringLiteral("cut to %1 bytes").arg(size));
    return sweep;
}

} // namespace Damage
