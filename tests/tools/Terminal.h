// SPDX-License-Identifier: MIT
#pragma once

#include <cstdlib>

#include <poll.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QElapsedTimer>
#include <QFile>
#include <QStringList>

/// A shell command that runs on a terminal of its own.
class Terminal
{
public:
    Terminal(const QString &folder, const QString &command, int columns, const char *kind = "xterm")
    {
        const QByteArray path = QFile::encodeName(folder);
        const QByteArray line = command.toUtf8();
        winsize size = {};
        size.ws_row = 24;
        size.ws_col = static_cast<unsigned short>(columns);
        m_process = forkpty(&m_terminal, nullptr, nullptr, &size);
        if (m_process == 0) {
            setenv("TERM", kind, 1);
            setenv("tool", TOOL_PROGRAM, 1);
            if (chdir(path.constData()) == 0)
                execl("/bin/sh", "sh", "-c", line.constData(), static_cast<char *>(nullptr));
            _exit(127);
        }
    }
    Terminal(const Terminal &) = delete;
    Terminal &operator=(const Terminal &) = delete;
    ~Terminal()
    {
        close(m_terminal); // processes that still use it get an error
        waitpid(m_process, nullptr, 0);
    }

    void type(const QByteArray &keys)
    {
        for (int done = 0; done < keys.size();) {
            const ssize_t size = write(m_terminal, keys.constData() + done, size_t(keys.size() - done));
            if (size <= 0)
                return; // the other end is closed
            done += int(size);
        }
    }

    /// Reads until the text has been written, the output has ended, or half a minute has passed.
    bool await(const QByteArray &bytes)
    {
        return awaitThat([&] { return m_written.contains(bytes); });
    }
    /// Reads until the condition is true, or as before.
    template <class Condition>
    bool awaitThat(Condition condition)
    {
        QElapsedTimer timer;
        timer.start();
        while (!condition() && !timer.hasExpired(30000)) {
            pollfd output = {m_terminal, POLLIN, 0};
            if (poll(&output, 1, 100) == 0)
                continue;
            char piece[4096];
            const ssize_t size = read(m_terminal, piece, sizeof(piece));
            if (size <= 0)
                break; // the other end is closed
            m_written.append(piece, int(size));
        }
        return condition();
    }
    /// Reads until the text is on the screen, see below.
    bool awaitScreen(const QString &expected)
    {
        return awaitThat([&] { return screen() == expected; });
    }
    void readAll() { await("\xFF that never comes"); }

    const QByteArray &written() const { return m_written; }

    /// The text that is on the screen.
    QString screen() const
    {
        QStringList lines = {QString()};
        int column = 0;
        for (int i = 0; i < m_written.size(); ++i) {
            if (m_written.mid(i, 3) == "\x1b[K") {
                lines.last().truncate(column);
                i += 2;
            } else if (m_written[i] == '\r') {
                column = 0;
            } else if (m_written[i] == '\n') {
                lines.append(QString());
            } else {
                lines.last().replace(column++, 1, QChar::fromLatin1(m_written[i]));
            }
        }
        return lines.join(QLatin1Char('\n'));
    }

private:
    int m_terminal = -1;
    pid_t m_process = -1;
    QByteArray m_written;
};
