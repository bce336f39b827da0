// SPDX-License-Identifier: MIT
#pragma once

#include <limits>
#include <memory>

#include <QIODevice>
#include <QTextCodec>

#include "XmlWatch.h"

namespace REPORTGENERATOR {

/// A device that passes on the XML document of another device, as far as an XmlWatch accepts it.
///
/// It determines the encoding like the reader: from the first bytes, then from the declaration.
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
    bool atEnd() const override
    {
        return m_watch.isRefused() || (m_beginningRead == m_beginning.size() && m_device.atEnd());
    }

protected:
    qint64 readData(char *bytes, qint64 size) override;
    qint64 writeData(const char *bytes, qint64 size) override;

private:
    qint64 readUnwatched(char *bytes, qint64 size);
    int readable(const char *bytes, int size);
    int readableHead(const char *bytes, int size);
    int readableText(int size, const QString &text, int from);
    int bytesOf(const QString &text, int length, int size) const;
    void useCodec(QTextCodec *codec);

    QIODevice &m_device;
    QByteArray m_beginning; // is read before the device
    int m_beginningRead = 0;
    const qint64 m_largestSize;
    qint64 m_bytesRead = 0;
    XmlWatch m_watch;
    QTextCodec *m_codec = nullptr;
    std::unique_ptr<QTextDecoder> m_decoder; // null after the head, if bytes can be checked without decoding
};

} // namespace REPORTGENERATOR
