// SPDX-License-Identifier: MIT
#include "batch/Progress.h"

#include <algorithm>

#include "console/Console.h"

namespace {

constexpr int quickWork = 1000; // milliseconds; for shorter work a bar would only flicker
constexpr int longestBar = 60;
constexpr int shortestBar = 10;

} // namespace

Progress::Progress(int count) : m_count(count), m_canShow(count > 1 && Console::canShowBar())
{
    m_sinceStart.start();
}

Progress::~Progress()
{
    if (m_canShow)
        Console::showBar({});
}

void Progress::update(int done)
{
    // A terminal may wrap after the last column, and then the line could not be erased.
    if (m_canShow && m_sinceStart.hasExpired(quickWork))
        Console::showBar(progressText(done, m_count, Console::terminalWidth() - 1));
}

QString progressText(int done, int count, int width)
{
    const QString all = QString::number(count);
    QString numbers = QStringLiteral("%1 of %2 files").arg(done, int(all.size())).arg(all);
    if (numbers.size() > width)
        return QString();
    const int length = std::min(width - int(numbers.size()) - 3, longestBar); // brackets and a blank
    if (length < shortestBar)
        return numbers;
    const int filled = int(qint64(length) * done / count);
    const QString bar = filled == length
        ? QString(length, QLatin1Char('='))
        : QString(filled, QLatin1Char('=')) + QLatin1Char('>') + QString(length - filled - 1, QLatin1Char(' '));
    return QLatin1Char('[') + bar + QStringLiteral("] ") + numbers;
}
