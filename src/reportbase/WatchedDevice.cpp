// SPDX-License-Identifier: MIT
#include "WatchedDevice.h"

#include <algorithm>
#include <limits>

namespace REPORTGENERATOR {

namespace {

constexpr qint64 leastToBegin = 4; // bytes, which tell the encoding
constexpr int utf8 = 106; // the number by which IANA knows it; see QTextCodec::mibEnum()

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
    qint64 read = 0;
    qint64 more = 0;
    do {
        more = m_device.read(bytes + read, size - read);
        read += std::max(more, qint64(0));
        // Of a document that comes slowly the reader would take the first bytes alone for the whole.
    } while (!m_codec && more > 0 && read < std::min(size, leastToBegin));
    return read > 0 ? readable(bytes, int(read)) : more;
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

    QTextCodec *const declared = QTextCodec::codecForName(declaredEncoding(m_head.left(end)).toLatin1());
    if (declared && declared != m_codec) { // the reader will tell if nobody knows it
        useCodec(declared);
        // The reader decodes this piece anew, and goes on at the place where it was.
        return readableText(size, m_decoder->toUnicode(bytes, size), end - before);
    }
    m_watch.readable(m_head.constData(), before);
    if (m_codec->mibEnum() != utf8)
        return readableText(size, text, 0);
    m_decoder.reset();
    return m_watch.readable(bytes, size);
}

/// The same for bytes that have been decoded, from this place of the text on.
int WatchedDevice::readableText(int size, const QString &text, int from)
{
    const QStringRef rest = text.midRef(from);
    const int taken = m_watch.readable(rest.unicode(), rest.size());
    if (taken == rest.size())
        return size;
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    return std::min(size, m_codec->fromUnicode(text.constData(), from + taken, &state).size());
}

void WatchedDevice::useCodec(QTextCodec *codec)
{
    m_codec = codec;
    m_decoder.reset(codec->makeDecoder());
}

qint64 WatchedDevice::writeData(const char *, qint64)
{
    return -1;
}

} // namespace REPORTGENERATOR
