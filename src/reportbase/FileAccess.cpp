// SPDX-License-Identifier: MIT
#include "FileAccess.h"

#include <QFile>

#include "FailureTexts.h"

namespace REPORTGENERATOR {

FileForReading::FileForReading(QFile *file) : m_file(file)
{
    if (!m_file) {
        m_openFailure = Failure(FailureTexts::noFile());
    } else if (m_file->isOpen()) {
        m_file->unsetError(); // an earlier error does not concern this read
        if (!m_file->isReadable())
            m_openFailure = Failure(name(), FailureTexts::notOpenForReading());
    } else if (m_file->fileName().isEmpty()) {
        m_openFailure = Failure(FailureTexts::noFileName()); // checked before QFile does, which would print a warning
    } else if (m_file->fileName().contains(QChar::Null)) {
        // QFile would open the file with the part of the name before it.
        m_openFailure = Failure(name(), FailureTexts::cannotOpen(FailureTexts::nulInFileName()));
    } else {
        m_opened = m_file->open(QIODevice::ReadOnly);
        if (!m_opened)
            m_openFailure = Failure(name(), FailureTexts::cannotOpen(m_file->errorString()));
    }
}

FileForReading::~FileForReading()
{
    if (m_opened)
        m_file->close();
}

Failure FileForReading::readFailure() const
{
    if (m_file->error() == QFileDevice::NoError)
        return Failure();
    return Failure(name(), FailureTexts::cannotRead(m_file->errorString()));
}

QString FileForReading::name() const
{
    const QString fileName = m_file->fileName();
    return fileName.isEmpty() ? FailureTexts::unnamedFile() : fileName;
}

} // namespace REPORTGENERATOR
