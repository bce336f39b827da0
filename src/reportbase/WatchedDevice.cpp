// SPDX-License-Identifier: MIT
#include "WatchedDevice.h"

#include <algorithm>
#include <limits>
#include <string_view>

namespace REPORTGENERATOR {

namespace {

constexpr qint64 leastToBegin = 4; // bytes, which determine the encoding
constexpr int utf8 = 106; // the number by which IANA knows it; see QTextCodec::mibEnum()

/// The encoding that QXmlStreamReader derives from the first bytes; UTF-8 by default.
QTextCodec *codecByFirstBytes(const char *bytes, int size)
{
    using namespace std::string_view_literals;
    constexpr int utf16 = 1015, utf16LittleEndian = 1014, utf16BigEndian = 1013;
    constexpr int utf32 = 1017, utf32LittleEndian = 1019, utf32BigEndian = 1018;
    static constexpr struct
    {
        std::string_view begin;
        int mib;
    } beginnings[] = {
        {"\x00\x00\xFE\xFF"sv, utf32},       {"\xFF\xFE\x00\x00"sv, utf32}, {"<\x00\x00\x00"sv, utf32LittleEndian},
        {"\x00\x00\x00<"sv, utf32BigEndian}, {"\xFE\xFF"sv, utf16},         {"\xFF\xFE"sv, utf16},
        {"<\x00"sv, utf16LittleEndian},      {"\x00<"sv, utf16BigEndian},
    };
    const std::string_view head(bytes, std::size_t(size));
    for (const auto &beginning : beginnings) {
        if (head.substr(0, beginning.begin.size()) == beginning.begin)
            return QTextCodec::codecForMib(beginning.mib);
    }
    return QTextCodec::codecForMib(utf8);
}

} // namespace

WatchedDevice::WatchedDevice(QIODevice &device, const QByteArray &beginning, qint64 largestSize)
    : m_device(device), m_beginning(beginning), m_largestSize(largestSize)
{
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

qint64 WatchedDevice::readUnwatched(char *bytes, qint64 size)
{
    const int known = int(std::min(size, qint64(m_beginning.size() - m_beginningRead)));
    if (known == 0)
        return m_device.read(bytes, size);
    std::copy_n(m_beginning.constData() + m_beginningRead, known, bytes);
    m_beginningRead += known;
    return known;
}

qint64 WatchedDevice::readData(char *bytes, qint64 size)
{
    if (m_watch.isRefused() || isTooLarge())
        return -1;
    size = std::min(size, qint64(std::numeric_limits<int>::max()));
    qint64 read = 0;
    qint64 more = 0;
    do {
        more = readUnwatched(bytes + read, size - read);
        read += std::max(more, qint64(0));
        // If a document arrives slowly, the reader would mistake the first bytes for the whole.
    } while (!m_codec && more > 0 && read < std::min(size, leastToBegin));
    m_bytesRead += read;
    return read > 0 ? readable(bytes, int(read)) : more;
}

int WatchedDevice::readable(const char *bytes, int size)
{
    if (!m_codec)
        useCodec(codecByFirstBytes(bytes, size));
    if (!m_watch.isHeadRead())
        return readableHead(bytes, size);
    return m_decoder ? readableText(size, m_decoder->toUnicode(bytes, size), 0) : m_watch.readable(bytes, size);
}

int WatchedDevice::readableHead(const char *bytes, int size)
{
    const QString text = m_decoder->toUnicode(bytes, size);
    const int head = m_watch.readableHead(text.constData(), text.size());
    if (m_watch.isRefused())
        return bytesOf(text, head, size);
    if (!m_watch.isHeadRead())
        return size;

    QTextCodec *const declared = QTextCodec::codecForName(m_watch.declaredEncoding().toLatin1());
    if (declared && declared != m_codec) { // the reader will report an unknown one
        useCodec(declared);
        // The reader decodes this piece again, and continues at its position.
        return readableText(size, m_decoder->toUnicode(bytes, size), head);
    }
    if (m_codec->mibEnum() == utf8)
        m_decoder.reset();
    return readableText(size, text, head);
}

/// The same for decoded bytes, from this position of the text on.
int WatchedDevice::readableText(int size, const QString &text, int from)
{
    const QStringRef rest = text.midRef(from);
    const int taken = m_watch.readable(rest.unicode(), rest.size());
    return m_watch.isRefused() ? bytesOf(text, from + taken, size) : size;
}

/// How many of the bytes encode the first `length` characters of their text.
int WatchedDevice::bytesOf(const QString &text, int length, int size) const
{
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    return std::min(size, m_codec->fromUnicode(text.constData(), length, &state).size());
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
