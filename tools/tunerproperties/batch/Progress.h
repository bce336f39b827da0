// SPDX-License-Identifier: MIT
#pragma once

#include <QElapsedTimer>

/// A bar on the terminal that shows how far the work on many files is, once it has taken a second. Without a terminal
/// there is none.
class Progress
{
public:
    /// For that many files.
    explicit Progress(int count);
    Progress(const Progress &) = delete;
    Progress &operator=(const Progress &) = delete;
    ~Progress(); ///< takes the bar away

    void update(int done);

private:
    const int m_count;
    const bool m_canShow;
    QElapsedTimer m_sinceStart;
};

/// "[=====>    ]  50 of 100 files", in at most that many characters: without the bar if that is too few for it, and
/// empty if it is too few at all.
QString progressText(int done, int count, int width);
