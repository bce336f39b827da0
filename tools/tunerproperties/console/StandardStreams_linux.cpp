// SPDX-License-Identifier: MIT
#include "console/StandardStreams.h"

#include <cerrno>
#include <clocale>
#include <initializer_list>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace StandardStreams {

/// Opens /dev/null in place of standard streams that are closed. The next file to be opened would otherwise receive
/// the descriptor of a stream, and its output. Reading or writing it fails as for a closed stream.
void prepare()
{
    for (const int stream : {input, output, error}) {
        if (fcntl(stream, F_GETFD) == -1)
            open("/dev/null", stream == input ? O_WRONLY : O_RDONLY); // uses the lowest free number
    }
}

void useLocale()
{
    std::setlocale(LC_CTYPE, "");
    std::setlocale(LC_MESSAGES, "");
}

// A single call may write only a part, to a pipe or a full disk.
int write(int stream, const char *bytes, std::size_t size) noexcept
{
    for (std::size_t done = 0; done < size;) {
        const ssize_t written = ::write(stream, bytes + done, size - done);
        if (written < 0 && errno != EINTR)
            return errno;
        done += written > 0 ? std::size_t(written) : 0;
    }
    return 0;
}

bool isTerminal(int descriptor)
{
    return isatty(descriptor) != 0;
}

int terminalWidth(int stream)
{
    winsize size = {};
    return ioctl(stream, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

} // namespace StandardStreams
