// SPDX-License-Identifier: MIT
#include "XmlDamage.h"

#include <algorithm>
#include <optional>

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

const QString wrongBytes = QStringLiteral("Encountered incorrectly encoded content.");

/// All of the bytes; without their number, Qt 5 converts them up to the first U+0000.
QString textOf(const QByteArray &utf8)
{
    return QString::fromUtf8(utf8.constData(), std::max(0, int(utf8.size())));
}

/// Whether these are the first bytes of a character.
bool isCutOff(const QByteArray &bytes)
{
    for (const char further : {'\x80', '\x90', '\xA0'}) { // no byte may follow every first one
        for (int missing = 1; missing <= 3; ++missing) {
            const QByteArray whole = bytes + QByteArray(missing, further);
            if (!textOf(whole).contains(QChar(QChar::ReplacementCharacter)))
                return true;
        }
    }
    return false;
}

/// The tokens before the first bytes that encode no character, and the error there. A plain reader refuses such bytes
/// as soon as it converts them, which is some thousand bytes before it comes to them; the library always refuses them
/// in their place.
XmlTokens tokensUpToWrongBytes(const QByteArray &damaged)
{
    const QString text = textOf(damaged);
    const auto wrong = text.indexOf(QChar(QChar::ReplacementCharacter)); // of which the document has none itself
    const auto endOfDeclaration = text.indexOf(QLatin1String("?>"));
    if (wrong < 0 || endOfDeclaration < 0 || wrong < endOfDeclaration + 2)
        return XmlTokens::ofBytes(damaged);
    const QString good = text.left(wrong);
    const QByteArray beginning = good.toUtf8();
    if (isCutOff(damaged.mid(beginning.size())))
        return XmlTokens::ofBytes(damaged);
    XmlTokens tokens = XmlTokens::ofBytes(beginning);
    if (tokens.wellFormed) {
        tokens.wellFormed = false;
        tokens.error = xmlErrorText(good.count(QLatin1Char('\n')) + 1,
                                    good.size() - good.lastIndexOf(QLatin1Char('\n')) - 1, wrongBytes);
    }
    tokens.error.replace(QStringLiteral("Premature end of document."), wrongBytes);
    return tokens;
}

/// The tokens before the first U+0000, which the plain reader of Qt 6 does not refuse everywhere, and the error there.
XmlTokens tokensUpToNull(const QString &damaged)
{
    const auto null = damaged.indexOf(QChar(QChar::Null));
    XmlTokens tokens = XmlTokens::ofText(null < 0 ? damaged : damaged.left(null));
    if (null >= 0)
        tokens.error.replace(QStringLiteral("Premature end of document."), QStringLiteral("Invalid XML character."));
    return tokens;
}

/// The library refuses encodings that it does not have, in texts as well, where they do not matter.
std::optional<XmlOutcome> refusalOfEncoding(const QString &document)
{
    static const QRegularExpression declaration(
        QStringLiteral("^<\\?xml version=\"1\\.0\" encoding=\"([A-Za-z][A-Za-z0-9._-]*)\"\\?>"));
    const QRegularExpressionMatch match = declaration.match(document);
    const QString name = match.captured(1);
    if (!match.hasMatch()
        || QString(name).remove(QLatin1Char('-')).remove(QLatin1Char('_')).toLower() == QLatin1String("utf8"))
        return std::nullopt;
    XmlOutcome outcome;
    outcome.error =
        xmlErrorText(1, match.capturedLength() - 1,
                     QStringLiteral("the encoding '%1' is not supported, only UTF-8, UTF-16, UTF-32, US-ASCII, "
                                    "ISO-8859-1, ISO-8859-15 and windows-1252")
                         .arg(name));
    return outcome;
}

QString readFile(const QByteArray &damaged, bool validate, XmlOutcome &outcome)
{
    FileOfBytes bytes(damaged);
    if (!bytes.isGood)
        return QStringLiteral("there is no file to read");
    Expected state = expectedDocument(validate);
    const auto refusal = refusalOfEncoding(QString::fromLatin1(damaged));
    outcome = refusal ? *refusal : readXml(state, tokensUpToWrongBytes(damaged));
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
    const auto refusal = refusalOfEncoding(damaged);
    outcome = refusal ? *refusal : readXml(state, tokensUpToNull(damaged));
    TunerProperties document;
    bool taken = false;
    const QString thrown = thrownBy([&] { taken = document.SetXmlString(damaged, validate); });
    return wrongOutcome(document, thrown, taken, QStringLiteral("XML text:"), outcome, state);
}

} // namespace

void readDamagedXml(XmlSweep &sweep, const QByteArray &damaged, XmlSource source, bool validate, const QString &where)
{
    const QString text = textOf(damaged);
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
