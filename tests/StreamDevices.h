// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <limits>

#include <QBuffer>

/// A buffer except for its exact type. Since it could change its bytes, each of them has to be read from it.
class OtherBuffer : public QBuffer
{
public:
    using QBuffer::QBuffer;
};

/// A buffer that changes its bytes: it returns each one with all bits inverted.
class InvertingBuffer : public QBuffer
{
protected:
    qint64 readData(char *data, qint64 maxSize) override
    {
        const qint64 size = QBuffer::readData(data, maxSize);
        for (qint64 i = 0; i < size; ++i)
            data[i] = char(~data[i]);
        return size;
    }
};

/// A device to read from that cannot go back and whose bytes arrive in pieces of 1 to 7.
class SlowPipe : public QIODevice
{
public:
    enum Reads {
        Complete, ///< a read waits for all requested bytes
        Short ///< a read returns what has arrived
    };

    explicit SlowPipe(const QByteArray &content, Reads reads = Complete) : m_content(content), m_reads(reads)
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }

    bool isSequential() const override { return true; }
    qint64 bytesAvailable() const override { return piece() + QIODevice::bytesAvailable(); }

protected:
    qint64 readData(char *data, qint64 maxSize) override
    {
        qint64 size = 0;
        do {
            const qint64 now = std::min(maxSize - size, piece());
            std::copy_n(m_content.constData() + m_at, now, data + size);
            m_at += now;
            size += now;
            ++m_piece;
        } while (m_reads == Complete && size < maxSize && m_at < m_content.size());
        return size;
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    qint64 piece() const { return std::min<qint64>(m_content.size() - m_at, 1 + m_piece % 7); }

    const QByteArray m_content;
    const Reads m_reads;
    qint64 m_at = 0;
    int m_piece = 0;
};

/// A device to write to that cannot go back, and that may be full after some bytes.
class Drain : public QIODevice
{
public:
    explicit Drain(qint64 room = std::numeric_limits<int>::max()) : m_room(room)
    {
        open(QIODevice::WriteOnly | QIODevice::Unbuffered);
    }

    bool isSequential() const override { return true; }

    QByteArray taken;
    int writes = 0;

protected:
    qint64 readData(char *, qint64) override { return -1; }
    qint64 writeData(const char *data, qint64 size) override
    {
        ++writes;
        const int now = int(std::min(size, m_room - taken.size()));
        taken.append(data, now);
        return now;
    }

private:
    const qint64 m_room;
};
