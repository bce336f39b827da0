// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include "FailureTexts.h"

class QFile;

namespace REPORTGENERATOR {

/// A caller's file during one read: opened if it was closed, and closed again, also after an exception.
class FileForReading
{
public:
    explicit FileForReading(QFile *file);
    FileForReading(const FileForReading &) = delete;
    FileForReading &operator=(const FileForReading &) = delete;
    ~FileForReading();

    /// Why the file cannot be read; null if it can.
    const Failure &openFailure() const { return m_openFailure; }

    /// Why reading stopped before the file's end; null if it did not.
    Failure readFailure() const;

    /// The name of the file in messages.
    QString name() const;

private:
    QFile *m_file;
    bool m_opened = false;
    Failure m_openFailure;
};

} // namespace REPORTGENERATOR
