// SPDX-License-Identifier: MIT
#include "files/Input.h"

#include <algorithm>
#include <cerrno>

#include <QDateTime>
#include <QFileInfo>
#include <QTemporaryFile>

#include <reportbase/SaveFile.h>

#include "console/Console.h"
#include "console/StandardStreams.h"
#include "files/InputParts.h"

using namespace InputParts;

/// The state that shows whether a file has been written to.
struct Input::State
{
    qint64 size = 0;
    QDateTime modified;

    bool operator==(const State &other) const { return size == other.size && modified == other.modified; }
};

namespace {

/// A temporary file that messages name as what was copied into it.
class Copy : public QTemporaryFile
{
public:
    explicit Copy(const FileName &name) : m_shownName(name.shown()) { }
    QString fileName() const override { return m_shownName; }

private:
    QString m_shownName;
};

/// Copies the rest of a file into a temporary one. QFile waits until it has read all bytes that are requested.
std::unique_ptr<QFile> copied(QFile &source, const FileName &name, qint64 limit)
{
    auto copy = std::make_unique<Copy>(name);
    if (!copy->open())
        cannotCopy(name, copy->errorString());
    QByteArray piece(pieceSize, Qt::Uninitialized);
    for (qint64 done = 0;;) {
        const qint64 size = source.read(piece.data(), std::min(qint64(piece.size()), limit + 1 - done));
        if (size < 0 || (size == 0 && source.error() != QFileDevice::NoError))
            cannotRead(name, source.errorString());
        if (size == 0)
            return copy;
        done += size;
        if (done > limit)
            tooLarge(name, QStringLiteral("more than %1").arg(limit), limit);
        const QString reason = REPORTGENERATOR::WriteAll(*copy, QByteArray::fromRawData(piece.constData(), int(size)));
        if (!reason.isNull())
            cannotCopy(name, reason);
    }
}

void checkKind(const FileName &name, const QFileInfo &found, FileKinds kinds)
{
    if (found.isDir())
        cannotOpen(name, EISDIR);
    if (found.exists() && !found.isFile())
        refuseUnless(kinds, name);
}

} // namespace

Input::Input(const FileName &name, FileKinds kinds, qint64 limit)
    : m_name(name), m_limit(limit), m_state(std::make_unique<State>())
{
    if (name.isStandardStream()) {
        QFile source;
        if (!source.open(StandardStreams::input, QIODevice::ReadOnly | QIODevice::Unbuffered))
            cannotRead(name, source.errorString());
        if (!source.isSequential() && source.size() - source.pos() > limit)
            tooLarge(name, QString::number(source.size() - source.pos()), limit);
        m_isCopy = true;
        m_file = copied(source, name, limit);
    } else {
        const QString path = QFile::decodeName(name.bytes());
        checkKind(name, QFileInfo(path), kinds);
        m_file = std::make_unique<NamedFile>(path, name);
        const bool isFile = QFileInfo(path).isFile();
        if (!m_file->open(isFile ? QIODevice::ReadOnly : QIODevice::ReadOnly | QIODevice::Unbuffered))
            throw FileFailure(name.shown() + QStringLiteral(": cannot open: ") + m_file->errorString());
        m_isCopy = m_file->isSequential();
        if (m_isCopy)
            m_file = copied(*m_file, name, limit);
    }
    *m_state = {m_file->size(), m_file->fileTime(QFileDevice::FileModificationTime)};
    if (m_state->size > limit)
        tooLarge(name, QString::number(m_state->size), limit);
}

Input::~Input() = default;

void Input::check() const
{
    if (m_file->error() != QFileDevice::NoError)
        cannotRead(m_name, m_file->errorString());
    if (!(*m_state == State{m_file->size(), m_file->fileTime(QFileDevice::FileModificationTime)}))
        hasChanged(m_name);
}
