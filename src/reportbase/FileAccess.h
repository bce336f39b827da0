// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

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

    /// Why the file cannot be read, as a whole text; null if it can.
    QString openFailure() const { return m_openFailure; }

    /// Why reading stopped before the file's end; null if it did not.
    QString readFailure() const;

    /// The name of the file in messages.
    QString name() const;

private:
    QFile *m_file;
    bool m_opened = false;
    QString m_openFailure;
};

} // namespace REPORTGENERATOR
