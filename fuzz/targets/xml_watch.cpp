// SPDX-License-Identifier: MIT
#include <algorithm>

#include <QTextCodec>
#include <QXmlStreamReader>

#include "reportbase/WatchedDevice.h"

#include "Harness.h"

using namespace Fuzz;
using REPORTGENERATOR::WatchedDevice;
using REPORTGENERATOR::XmlWatch;

namespace {

/// Every encoding that Qt offers, in an order that does not depend on the machine.
const QVector<QTextCodec *> &codecs()
{
    static const QVector<QTextCodec *> all = [] {
        QList<int> mibs = QTextCodec::availableMibs();
        std::sort(mibs.begin(), mibs.end());
        QVector<QTextCodec *> found;
        for (const int mib : qAsConst(mibs)) {
            if (QTextCodec *codec = QTextCodec::codecForMib(mib))
                found += codec;
        }
        require(found.size() >= 30, "Qt offers its codecs");
        return found;
    }();
    return all;
}

/// Returns the bytes in pieces, of which none but the last has less than four.
class Pieces : public QIODevice
{
public:
    Pieces(const QByteArray &bytes, int size) : m_bytes(bytes), m_size(size)
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }
    bool isSequential() const override { return true; }
    bool atEnd() const override { return m_at == m_bytes.size(); }

protected:
    qint64 readData(char *to, qint64 size) override
    {
        const int piece = int(std::min({size, qint64(m_bytes.size() - m_at), qint64(m_size)}));
        std::copy_n(m_bytes.constData() + m_at, piece, to);
        m_at += piece;
        return piece;
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    QByteArray m_bytes;
    int m_size;
    int m_at = 0;
};

/// What a reader sees of a document.
struct Seen
{
    QStringList tokens;
    QString error;
    int mostAttributes = 0;
    bool hasSubset = false;
};

/// Whether a document type holds declarations: a '[' that is not in quotes.
bool hasSubset(QStringView documentType)
{
    QChar quote;
    for (const QChar character : documentType) {
        if (quote.isNull() && character == QLatin1Char('['))
            return true;
        if (quote.isNull() && (character == QLatin1Char('"') || character == QLatin1Char('\'')))
            quote = character;
        else if (character == quote)
            quote = QChar();
    }
    return false;
}

Seen seenIn(QIODevice &device)
{
    Seen seen;
    QXmlStreamReader reader(&device);
    reader.setNamespaceProcessing(false);
    while (!reader.atEnd()) {
        const auto token = reader.readNext();
        if (token == QXmlStreamReader::Invalid)
            break;
        QString text = reader.tokenString() + QLatin1Char(' ') + reader.qualifiedName() + QLatin1Char(' ')
            + reader.text() + reader.processingInstructionTarget() + reader.processingInstructionData();
        const auto attributes = reader.attributes();
        for (const QXmlStreamAttribute &attribute : attributes)
            text += QLatin1Char(' ') + attribute.qualifiedName() + QLatin1Char('=') + attribute.value();
        seen.mostAttributes = std::max(seen.mostAttributes, attributes.size());
        if (token == QXmlStreamReader::DTD)
            seen.hasSubset = seen.hasSubset || hasSubset(reader.text());
        seen.tokens += text;
    }
    seen.error = reader.errorString();
    return seen;
}

/// The characters 1 and 2, which no document has, are replaced by the allowed number of attributes and by one more.
QString expanded(const QString &text)
{
    static const QStringList runs = [] {
        QString run;
        QStringList both;
        for (int i = 0; i <= XmlWatch::MostAttributes; ++i) {
            if (i == XmlWatch::MostAttributes)
                both += run;
            run += QStringLiteral(" a%1='%1'").arg(i);
        }
        return both << run;
    }();
    QString result = text.left(4000);
    for (int i = 0; i < 2; ++i) {
        const int at = result.indexOf(QChar(i + 1));
        if (at >= 0)
            result.replace(at, 1, runs.at(i));
    }
    return result;
}

QByteArray encoded(QTextCodec *codec, const QString &text)
{
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    return codec->fromUnicode(text.constData(), text.size(), &state);
}

} // namespace

/// Reads a document with and without the watch. The first byte chooses the codec. The second one chooses whether a byte
/// order mark and a declaration precede the document, whether it is text or bytes, and the size of the pieces that are
/// read.
extern "C" int LLVMFuzzerTestOneInput(const quint8 *data, std::size_t size)
{
    if (size < 3)
        return 0;
    QTextCodec *const codec = codecs().at(data[0] % codecs().size());
    const int form = data[1];
    const auto rest = QByteArray::fromRawData(reinterpret_cast<const char *>(data) + 2, int(size) - 2);
    QByteArray document = rest;
    if ((form & 1) == 0) {
        QString text = expanded(QString::fromUtf8(rest));
        if (form & 2)
            text.prepend(QStringLiteral("<?xml version=\"1.0\" encoding=\"%1\"?>").arg(QLatin1String(codec->name())));
        if (form & 4)
            text.prepend(QChar(QChar::ByteOrderMark));
        document = encoded(codec, text);
    }
    const int pieces[] = {1 << 20, 4096, 61, 4};
    const int piece = pieces[(form >> 3) % 4];

    Pieces plainDevice(document, piece);
    const Seen plain = seenIn(plainDevice);
    Pieces device(document, piece);
    WatchedDevice watchedDevice(device);
    const Seen watched = seenIn(watchedDevice);

    const bool isRefused = watchedDevice.watch().isRefused();
    if (!isRefused) {
        require(watched.tokens == plain.tokens && watched.error == plain.error,
                "the watch changes nothing that it lets pass");
        require(plain.mostAttributes <= XmlWatch::MostAttributes, "an element with too many attributes is refused");
        require(!plain.hasSubset, "a document type with declarations of its own is refused");
    } else {
        // A reader that detects an error may drop the texts, or the whole piece of the document, before it.
        const bool isFaulty = !plain.error.isEmpty();
        const int common =
            isFaulty ? std::clamp(watched.tokens.size() - 1, 0, plain.tokens.size()) : watched.tokens.size();
        require(watched.tokens.mid(0, common) == plain.tokens.mid(0, common),
                "everything before a refusal is read unchanged");
        // The reader accepts malformed declarations, and does not show them.
        const bool isDeclaration = watchedDevice.watch().refusal().contains(QStringLiteral("XML declaration"));
        require(isDeclaration || !plain.error.isEmpty() || plain.hasSubset
                    || plain.mostAttributes > XmlWatch::MostAttributes,
                "nothing is refused without a reason");
    }
    return 0;
}
