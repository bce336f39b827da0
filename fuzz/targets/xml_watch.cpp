// SPDX-License-Identifier: MIT
#include <algorithm>

#include <QXmlStreamReader>

#include "reportbase/WatchedDevice.h"
#include "text/Encoding.h"

#include "Harness.h"

using namespace Fuzz;
using REPORTGENERATOR::WatchedDevice;
using REPORTGENERATOR::XmlWatch;

namespace {

constexpr Encoding encodings[] = {Encoding::Utf8,           Encoding::Utf16LittleEndian,
                                  Encoding::Utf16BigEndian, Encoding::Utf32LittleEndian,
                                  Encoding::Utf32BigEndian, Encoding::Ascii,
                                  Encoding::Latin1,         Encoding::Latin9,
                                  Encoding::Windows1252};

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

Seen seenBy(QXmlStreamReader &reader)
{
    Seen seen;
    reader.setNamespaceProcessing(false);
    while (!reader.atEnd()) {
        const auto token = reader.readNext();
        if (token == QXmlStreamReader::Invalid)
            break;
        QString text = QStringLiteral("%1 %2 %3%4%5")
                           .arg(reader.tokenString(), reader.qualifiedName(), reader.text(),
                                reader.processingInstructionTarget(), reader.processingInstructionData());
        const auto attributes = reader.attributes();
        for (const QXmlStreamAttribute &attribute : attributes)
            text += QStringLiteral(" %1=%2").arg(attribute.qualifiedName(), attribute.value());
        seen.mostAttributes = std::max(seen.mostAttributes, int(attributes.size()));
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
        const auto at = result.indexOf(QChar(i + 1));
        if (at >= 0)
            result.replace(at, 1, runs.at(i));
    }
    return result;
}

QString decoded(Encoding encoding, const QByteArray &bytes)
{
    return Encodings::decode(encoding, bytes.constData(), bytes.size()).text;
}

/// Whether the watch has a reason of its own, of which a reader without it knows nothing.
bool isOwnRule(const QString &refusal)
{
    const char *const rules[] = {"the XML declaration",       "the encoding",           "a name has",
                                 "one document type at most", "Invalid XML character.", "incorrectly encoded"};
    return std::any_of(std::begin(rules), std::end(rules),
                       [&](const char *rule) { return refusal.contains(QLatin1String(rule)); });
}

} // namespace

/// Reads a document with and without the watch. The first byte chooses the encoding. The second one chooses whether a
/// byte order mark and a declaration precede the document, whether it is text or bytes, and the size of the pieces that
/// are read. Without the watch, a text is not encoded.
extern "C" int LLVMFuzzerTestOneInput(const quint8 *data, std::size_t size)
{
    if (size < 3)
        return 0;
    const Encoding encoding = encodings[data[0] % std::size(encodings)];
    const int form = data[1];
    const auto rest = QByteArray::fromRawData(reinterpret_cast<const char *>(data) + 2, int(size) - 2);
    const bool hasSingleBytes = encoding >= Encoding::Ascii;
    // Without a declaration, bytes are UTF-8.
    const bool isText = (form & 1) == 0 && (!hasSingleBytes || (form & 2) != 0);
    QByteArray document = rest;
    if (isText) {
        QString text = expanded(QString::fromUtf8(rest));
        if (form & 2)
            text.prepend(QStringLiteral("<?xml version=\"1.0\" encoding=\"%1\"?>").arg(Encodings::name(encoding)));
        const bool needsMark = !text.startsWith(QLatin1Char('<'));
        if (!hasSingleBytes && ((form & 4) || needsMark))
            text.prepend(QChar(QChar::ByteOrderMark));
        document = Encodings::encode(encoding, text);
    }
    const int pieces[] = {1 << 20, 4096, 61, 4};
    const int piece = pieces[(form >> 3) % 4];

    Pieces plainDevice(document, piece);
    QXmlStreamReader plainReader;
    if (isText)
        plainReader.addData(decoded(encoding, document));
    else
        plainReader.setDevice(&plainDevice);
    const Seen plain = seenBy(plainReader);
    Pieces device(document, piece);
    WatchedDevice watchedDevice(device);
    QXmlStreamReader watchedReader(&watchedDevice);
    const Seen watched = seenBy(watchedReader);

    const bool isRefused = watchedDevice.watch().isRefused();
    // Other versions of Qt decode other encodings than the watch, and wrong bytes in another way. For fewer than four
    // bytes a reader waits, unless they are passed as a text.
    const bool isShort = decoded(encoding, document).size() <= Encodings::FirstBytes;
    const bool isComparable = isText ? !isShort : plain.error.isEmpty();
    if (!isRefused && isComparable) {
        require(watched.tokens == plain.tokens && watched.error == plain.error,
                "the watch changes nothing that it lets pass");
    }
    if (!isRefused) {
        require(watched.mostAttributes <= XmlWatch::MostAttributes, "an element with too many attributes is refused");
        require(!watched.hasSubset, "a document type with declarations of its own is refused");
    } else if (isComparable) {
        // A reader that detects an error may drop the texts, or the whole piece of the document, before it.
        const auto common = plain.error.isEmpty()
            ? watched.tokens.size()
            : std::clamp(int(watched.tokens.size()) - 1, 0, int(plain.tokens.size()));
        require(watched.tokens.mid(0, common) == plain.tokens.mid(0, common),
                "everything before a refusal is read unchanged");
        require(isOwnRule(watchedDevice.watch().refusal()) || !plain.error.isEmpty() || plain.hasSubset
                    || plain.mostAttributes > XmlWatch::MostAttributes,
                "nothing is refused without a reason");
    }
    return 0;
}
