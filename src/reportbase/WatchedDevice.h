// SPDX-License-Identifier: MIT
#pragma once

#include <limits>
#include <optional>

#include <QIODevice>

#include "XmlWatch.h"
#include "text/Encoding.h"
#include "text/Size.h"

namespace REPORTGENERATOR {

/// A device with the XML document of another device in UTF-8, as far as an XmlWatch accepts it.
///
/// The encoding is determined by the first bytes, then by the declaration, in which it is replaced by UTF-8. The
/// document ends before the first byte that is wrong in its encoding, and contains no byte order mark.
class WatchedDevice : public QIODevice
{
public:
    /// `beginning` is what has been read from the device already. The document ends where it exceeds `largestSize`.
    explicit WatchedDevice(QIODevice &device, const QByteArray &beginning = QByteArray(),
                           qint64 largestSize = std::numeric_limits<qint64>::max());

    const XmlWatch &watch() const { return m_watch; }

    qint64 bytesRead() const { return m_bytesRead; }
    bool isTooLarge() const { return m_bytesRead > m_largestSize; }

    bool isSequential() const override { return true; }
    bool atEnd() const override;

protected:
    qint64 readData(char *bytes, qint64 size) override;
    qint64 writeData(const char *bytes, qint64 size) override;

private:
    qint64 readFromDevice(char *bytes, qint64 size);
    void readFurther();
    void convert();
    void convertHead();
    void endHead();
    void convertRest();
    bool isConverted() const { return m_returned == m_converted.size(); }

    QIODevice &m_device;
    QByteArray m_beginning; // is read before the device
    Size m_beginningRead = 0;
    const qint64 m_largestSize;
    qint64 m_bytesRead = 0;
    bool m_isAtEnd = false; // of the device
    std::optional<Encoding> m_encodingOfFirstBytes;
    bool m_isBegun = false; // whether the first bytes are known
    Encoding m_encoding = Encoding::Utf8;
    XmlWatch m_watch;
    QByteArray m_bytes; // are not converted yet
    QString m_head; // of the document; is not returned before its end is known
    QByteArray m_converted;
    Size m_returned = 0; // of the converted bytes
    bool m_isReturned = false; // whether any bytes were returned before
};

} // namespace REPORTGENERATOR
