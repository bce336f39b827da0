// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstring>

#include <QIODevice>

/// A device for reading that, like a pipe, cannot seek and has no known size.
class Pipe : public QIODevice
{
public:
    explicit Pipe(const QByteArray &content) : m_content(content) { open(QIODevice::ReadOnly); }

    bool isSequential() const override { return true; }
    qint64 bytesAvailable() const override { return m_content.size() + QIODevice::bytesAvailable(); }

protected:
    qint64 readData(char *data, qint64 maxSize) override
    {
        const int size = int(std::min<qint64>(maxSize, m_content.size()));
        std::memcpy(data, m_content.constData(), std::size_t(size));
        m_content.remove(0, size);
        return size;
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    QByteArray m_content;
};
