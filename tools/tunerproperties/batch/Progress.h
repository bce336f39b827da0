// SPDX-License-Identifier: MIT
#pragma once

#include <QElapsedTimer>

/// A progress bar on the terminal, which appears after one second. There is none without a terminal.
class Progress
{
public:
    /// For `count` files.
    explicit Progress(int count);
    Progress(const Progress &) = delete;
    Progress &operator=(const Progress &) = delete;
    ~Progress(); ///< removes the bar

    void update(int done);

private:
    const int m_count;
    const bool m_canShow;
    QElapsedTimer m_sinceStart;
};

/// "[=====>    ]  50 of 100 files", in at most `width` characters: without the bar if there is no room for it, and
/// empty if there is not even room for the numbers.
QString progressText(int done, int count, int width);
