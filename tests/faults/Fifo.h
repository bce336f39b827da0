// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <thread>

#include <QByteArray>
#include <QFile>
#include <QString>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

/// A named pipe, and a thread that writes the content to it, piece by piece, as soon as it is opened for reading, and
/// then closes it. The process has to ignore SIGPIPE if the reader may close the pipe early.
class Fifo
{
public:
    Fifo(const QString &path, const QByteArray &content, int piece) : m_path(QFile::encodeName(path))
    {
        if (mkfifo(m_path.constData(), 0600) != 0)
            qFatal("the pipe cannot be made");
        m_writer = std::thread([path = m_path, content, piece] {
            const int pipe = open(path.constData(), O_WRONLY | O_CLOEXEC);
            for (int done = 0; done < content.size(); done += piece) {
                const auto size = size_t(std::min(piece, int(content.size()) - done));
                if (::write(pipe, content.constData() + done, size) != ssize_t(size))
                    break; // the reader has closed the pipe
            }
            close(pipe);
        });
    }
    ~Fifo()
    {
        close(open(m_path.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC)); // unblocks the writer if nobody has read
        m_writer.join();
    }
    Fifo(const Fifo &) = delete;
    Fifo &operator=(const Fifo &) = delete;

private:
    QByteArray m_path;
    std::thread m_writer;
};
