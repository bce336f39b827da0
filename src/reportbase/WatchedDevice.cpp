// SPDX-License-Identifier: MIT
#include "WatchedDevice.h"

#include <algorithm>
#include <limits>

namespace REPORTGENERATOR {

namespace {

constexpr qint64 leastToBegin = 4; // bytes, which tell the encoding
constexpr int utf8 = 106, latin1 = 4; // the numbers by which IANA knows them; see QTextCodec::mibEnum()

/// The encoding that the first bytes tell, as QXmlStreamReader sees it; UTF-8 if they tell none.
QTextCodec *codecByFirstBytes(const char *bytes, int size)
{
    constexpr int utf16 = 1015, utf16LittleEndian = 1014, utf16BigEndian = 1013;
    constexpr int utf32 = 1017, utf32LittleEndian = 1019, utf32BigEndian = 1018;
    static const struct
    {
        QByteArray begin;
        int mib;
    } beginnings[] = {
        {QByteArrayLiteral("\x00\x00\xFE\xFF"), utf32},
        {QByteArrayLiteral("\xFF\xFE\x00\x00"), utf32},
        {QByteArrayLiteral("<\x00\x00\x00"), utf32LittleEndian},
        {QByteArrayLiteral("\x00\x00\x00<"), utf32BigEndian},
        {QByteArrayLiteral("\xFE\xFF"), utf16},
        {QByteArrayLiteral("\xFF\xFE"), utf16},
        {QByteArrayLiteral("<\x00"), utf16LittleEndian},
        {QByteArrayLiteral("\x00<"), utf16BigEndian},
    };
    const auto head = QByteArray::fromRawData(bytes, size);
    for (const auto &beginning : beginnings) {
        if (head.startsWith(beginning.begin))
            return QTextCodec::codecForMib(beginning.mib);
    }
    return QTextCodec::codecForMib(utf8);
}

/// The place behind the XML declaration: 0 if the document begins without one, -1 if there is more of it to come. It
/// does not end in front of the place `from`.
int endOfDeclaration(const QString &head, int from)
{
    const QLatin1String begin("<?xml");
    if (head.size() <= begin.size())
        return QString(begin).startsWith(head) ? -1 : 0;
    if (!head.startsWith(begin) || !head[begin.size()].isSpace()) // "<?xml-stylesheet" says nothing about the encoding
        return 0;
    const int end = head.indexOf(QLatin1String("?>"), from);
    return end < 0 ? -1 : end + 2;
}

/// The encoding that an XML declaration names; empty if it names none.
QString declaredEncoding(const QString &declaration)
{
    const int name = declaration.indexOf(QLatin1String("encoding"));
    for (int open = name; open >= 0 && open < declaration.size(); ++open) {
        const QChar quote = declaration[open];
        if (quote == QLatin1Char('"') || quote == QLatin1Char('\''))
            return declaration.mid(open + 1, declaration.indexOf(quote, open + 1) - open - 1);
    }
    return QString();
}

bool isOfBytes(const QTextCodec &codec)
{
    return codec.mibEnum() == utf8 || codec.mibEnum() == latin1;
}

} // namespace

WatchedDevice::WatchedDevice(QIODevice &device) : m_device(device)
{
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

qint64 WatchedDevice::readData(char *bytes, qint64 size)
{
    if (m_watch.isRefused())
        return -1;
    size = std::min(size, qint64(std::numeric_limits<int>::max()));
    qint64 read = m_device.read(bytes, size);
    // Of a document that comes slowly the reader would take the first bytes alone for the whole.
    while (!m_codec && read > 0 && read < std::min(size, leastToBegin)) {
        const qint64 more = m_device.read(bytes + read, size - read);
        if (more <= 0)
            break;
        read += more;
    }
    return read <= 0 ? read : readable(bytes, int(read));
}

int WatchedDevice::readable(const char *bytes, int size)
{
    if (!m_codec)
        useCodec(codecByFirstBytes(bytes, size));
    if (m_isHead)
        return readableHead(bytes, size);
    return m_decoder ? readableText(size, m_decoder->toUnicode(bytes, size), 0) : m_watch.readable(bytes, size);
}

int WatchedDevice::readableHead(const char *bytes, int size)
{
    const QString text = m_decoder->toUnicode(bytes, size);
    const int before = m_head.size();
    m_head += text;
    const int end = endOfDeclaration(m_head, std::max(before - 1, 0));
    if (end < 0)
        return size; // nothing in a declaration keeps a reader busy
    m_isHead = false;

    QTextCodec *const other = otherCodec(declaredEncoding(m_head.left(end)));
    const bool wasOfBytes = isOfBytes(*m_codec);
    if (other)
        useCodec(other);
    if (other && !(wasOfBytes && isOfBytes(*other))) {
        // The reader decodes this piece anew, and goes on at the place where it was.
        return readableText(size, m_decoder->toUnicode(bytes, size), end - before);
    }
    m_watch.readable(m_head.constData(), before);
    if (!isOfBytes(*m_codec))
        return readableText(size, text, 0);
    m_decoder.reset();
    return m_watch.readable(bytes, size);
}

/// The same for bytes that have been decoded, from this place of the text on.
int WatchedDevice::readableText(int size, const QString &text, int from)
{
    const int length = std::max(text.size() - from, 0);
    const int taken = m_watch.readable(text.constData() + from, length);
    if (taken == length)
        return size;
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    return std::min(size, m_codec->fromUnicode(text.constData(), from + taken, &state).size());
}

void WatchedDevice::useCodec(QTextCodec *codec)
{
    m_codec = codec;
    m_decoder.reset(codec->makeDecoder());
}

/// The codec that the reader changes to; null if it stays with the one that it has.
QTextCodec *WatchedDevice::otherCodec(const QString &declared) const
{
    if (m_codec->mibEnum() == utf8 && declared == QLatin1String("UTF-8"))
        return nullptr;
    QTextCodec *const codec = QTextCodec::codecForName(declared.toLatin1());
    return codec == m_codec ? nullptr : codec; // null as well if nobody knows it, which the reader will tell
}

qint64 WatchedDevice::writeData(const char *, qint64)
{
    return -1;
}

} // namespace REPORTGENERATOR
