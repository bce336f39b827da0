// SPDX-License-Identifier: MIT
#include "console/StandardStreams.h"

#include <cerrno>
#include <clocale>
#include <cstdio>
#include <initializer_list>

#include <QtGlobal>

#ifdef Q_OS_WIN
#include <fcntl.h>
#include <io.h>
#else
#include <sys/ioctl.h>
#include <unistd.h>
#endif

namespace StandardStreams {

/// Documents are bytes, also where a text would have other line ends.
void prepare()
{
#ifdef Q_OS_WIN
    for (const int stream : {input, output, error})
        _setmode(stream, _O_BINARY);
#endif
}

void useLocale()
{
    std::setlocale(LC_CTYPE, "");
}

int write(int stream, const char *bytes, std::size_t size) noexcept
{
    FILE *const file = stream == output ? stdout : stderr;
    errno = 0;
    if (std::fwrite(bytes, 1, size, file) == size && std::fflush(file) == 0)
        return 0;
    const int reason = errno;
    std::clearerr(file);
    return reason != 0 ? reason : EIO;
}

bool isTerminal(int descriptor)
{
#ifdef Q_OS_WIN
    return _isatty(descriptor) != 0;
#else
    return isatty(descriptor) != 0;
#endif
}

int terminalWidth([[maybe_unused]] int stream)
{
#ifdef Q_OS_WIN
    return 0;
#else
    winsize size = {};
    return ioctl(stream, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
#endif
}

} // namespace StandardStreams
