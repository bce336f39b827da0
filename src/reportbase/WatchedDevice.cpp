// SPDX-License-Identifier: MIT
#include "WatchedDevice.h"

#include <algorithm>

#include "XmlDeclaration.h"

namespace REPORTGENERATOR {

namespace {

constexpr Size pieceSize = 1 << 13;

} // namespace

WatchedDevice::WatchedDevice(QIODevice &device, const QByteArray &beginning, qint64 largestSize)
    : m_device(device), m_beginning(beginning), m_largestSize(largestSize)
{
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

bool WatchedDevice::atEnd() const
{
    if (!isConverted())
        return false;
    return m_watch.isRefused() || m_isAtEnd
        || (m_bytes.isEmpty() && m_head.isEmpty() && m_beginningRead == m_beginning.size() && m_device.atEnd());
}

qint64 WatchedDevice::readFromDevice(char *bytes, qint64 size)
{
    const Size known = std::min(Size(size), m_beginning.size() - m_beginningRead);
    if (known == 0)
        return m_device.read(bytes, size);
    std::copy_n(m_beginning.constData() + m_beginningRead, known, bytes);
    m_beginningRead += known;
    return known;
}

qint64 WatchedDevice::readData(char *bytes, qint64 size)
{
    // The reader determines the encoding when it reads first, and would mistake fewer bytes for the whole document.
    const Size least = m_isReturned ? 1 : Encodings::FirstBytes;
    while (m_converted.size() - m_returned < least && !m_isAtEnd && !m_watch.isRefused() && !isTooLarge())
        readFurther();
    const auto returned = Size(std::min(size, qint64(m_converted.size() - m_returned)));
    if (returned == 0)
        return size > 0 ? -1 : 0;
    std::copy_n(m_converted.constData() + m_returned, returned, bytes);
    m_returned += returned;
    m_isReturned = true;
    return returned;
}

void WatchedDevice::readFurther()
{
    if (isConverted()) {
        m_converted.resize(0);
        m_returned = 0;
    }
    const Size had = m_bytes.size();
    m_bytes.resize(had + pieceSize);
    const Size read = Size(std::max(readFromDevice(m_bytes.data() + had, pieceSize), qint64(0)));
    m_bytes.resize(had + read);
    m_bytesRead += read;
    m_isAtEnd = read == 0;
    convert();
}

/// Converts what has been read, up to an incomplete character.
void WatchedDevice::convert()
{
    if (!m_isBegun) {
        if (m_bytes.size() < Encodings::FirstBytes && !m_isAtEnd)
            return;
        m_isBegun = true;
        m_encodingOfFirstBytes = Encodings::ofFirstBytes(m_bytes.constData(), m_bytes.size());
        // Up to the end of the declaration, any bytes are accepted.
        m_encoding = m_encodingOfFirstBytes.value_or(Encoding::Latin1);
    }
    if (!m_watch.isHeadRead())
        convertHead();
    if (m_watch.isHeadRead() && !m_watch.isRefused())
        convertRest();
    if (m_isAtEnd && !m_bytes.isEmpty())
        m_watch.refuse(XmlWatch::Refused::CutOffBytes);
}

void WatchedDevice::convertHead()
{
    const Encodings::Decoded decoded = Encodings::decode(m_encoding, m_bytes.constData(), m_bytes.size());
    const QString head = decoded.text.left(m_watch.readableHead(decoded.text.constData(), decoded.text.size()));
    m_head += head;
    m_bytes.remove(0, Encodings::encode(m_encoding, head).size());
    if (decoded.isInvalid && !m_watch.isHeadRead())
        m_watch.refuse(XmlWatch::Refused::WrongBytes);
    if (m_watch.isHeadRead() || m_watch.isRefused() || m_isAtEnd)
        endHead();
}

void WatchedDevice::endHead()
{
    if (m_head.startsWith(QChar(QChar::ByteOrderMark)))
        m_head.remove(0, 1);
    const QString name = m_watch.declaredEncoding();
    if (!m_encodingOfFirstBytes) {
        m_encoding = Encoding::Utf8;
        std::replace_if(
            m_head.begin(), m_head.end(), [](QChar character) { return character.unicode() >= 0x80; },
            QChar(QChar::ReplacementCharacter));
    }
    if (!name.isNull()) {
        const auto declared = Encodings::declared(name, m_encodingOfFirstBytes);
        if (!declared && XmlDeclaration::isEncodingName(name))
            m_watch.refuse(Encodings::isKnown(name) ? XmlWatch::Refused::OtherEncoding
                                                    : XmlWatch::Refused::UnknownEncoding);
        m_encoding = declared.value_or(m_encoding);
    }
    m_converted += m_watch.readableDeclaration(m_head).toUtf8();
    m_head.clear();
}

void WatchedDevice::convertRest()
{
    const bool isUtf8 = m_encoding == Encoding::Utf8;
    const Encodings::Decoded decoded = isUtf8 ? Encodings::checkUtf8(m_bytes.constData(), m_bytes.size())
                                              : Encodings::decode(m_encoding, m_bytes.constData(), m_bytes.size());
    if (isUtf8) {
        m_converted.append(m_bytes.constData(), m_watch.readable(m_bytes.constData(), decoded.size));
    } else {
        const QString &text = decoded.text;
        m_converted += text.left(m_watch.readable(text.constData(), text.size())).toUtf8();
    }
    m_bytes.remove(0, decoded.size);
    if (decoded.isInvalid)
        m_watch.refuse(XmlWatch::Refused::WrongBytes);
}

qint64 WatchedDevice::writeData(const char *, qint64)
{
    return -1;
}

} // namespace REPORTGENERATOR
