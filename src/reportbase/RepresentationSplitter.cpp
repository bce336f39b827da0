// SPDX-License-Identifier: MIT
#include <reportbase/RepresentationSplitter.h>

#include "FailureTexts.h"
#include "RepresentationFraming.h"

namespace REPORTGENERATOR {

namespace Framing = RepresentationFraming;

RepresentationSize SizeOfRepresentation(const QByteArray &firstBytes, qint64 classIdentifier)
{
    using State = RepresentationSize::State;
    if (firstBytes.size() < Framing::HeadSize)
        return {State::NeedsMoreBytes, 0};
    const Framing::Head head = Framing::readHead(firstBytes.constData(), Framing::OwnSettings);
    const bool isExpected = head.word == quint32(classIdentifier) || head.word == CompressedMark;
    if (!isExpected || head.length < 0)
        return {State::Invalid, 0};
    return {State::Known, head.size()};
}

class Q_DECL_HIDDEN RepresentationSplitter::Private
{
public:
    Private(qint64 classIdentifier, const ReadLimits &limits)
        : m_classIdentifier(quint32(classIdentifier)), m_limits(limits)
    {
    }

    void append(const QByteArray &bytes);
    std::optional<QByteArray> take();
    const QString &error() const { return m_error; }
    qint64 pendingSize() const { return m_bytes.size() - m_taken; }

private:
    std::optional<int> nextSize() const; // throws a Refusal
    void fail(const QString &why);
    void removeTaken();

    const quint32 m_classIdentifier;
    const ReadLimits m_limits;
    QByteArray m_bytes;
    int m_taken = 0; // bytes at the front of m_bytes that have been returned; removing them each time costs a copy
    QString m_error;
};

void RepresentationSplitter::Private::append(const QByteArray &bytes)
{
    if (!m_error.isNull())
        return;
    const qint64 waiting = pendingSize() + bytes.size();
    if (waiting > ReadLimits::LargestPossible) {
        fail(FailureTexts::tooLarge(waiting, ReadLimits::LargestPossible));
        return;
    }
    // Only when at least half is removed, so that each byte is moved a constant number of times on average, or when
    // there is no space otherwise.
    if (m_taken > m_bytes.size() / 2 || m_bytes.size() + qint64(bytes.size()) > ReadLimits::LargestPossible)
        removeTaken();
    m_bytes.append(bytes.constData(), bytes.size()); // a copy, because the caller may reuse its buffer
}

std::optional<QByteArray> RepresentationSplitter::Private::take()
{
    if (!m_error.isNull())
        return {};
    try {
        const std::optional<int> size = nextSize();
        if (!size || *size > pendingSize())
            return {};
        QByteArray representation = m_bytes.mid(m_taken, *size);
        m_taken += *size;
        if (m_taken == m_bytes.size())
            removeTaken();
        return representation;
    } catch (const Framing::Refusal &refusal) {
        fail(refusal.why);
        return {};
    }
}

std::optional<int> RepresentationSplitter::Private::nextSize() const
{
    const qint64 pending = pendingSize();
    const char *const begin = m_bytes.constData() + m_taken;
    if (pending < Framing::HeadSize)
        return {};
    const Framing::Head head = Framing::readHead(begin, Framing::OwnSettings);
    Framing::checkHead(head, m_classIdentifier, QString(), m_limits);
    if (head.word == CompressedMark && head.length >= Framing::SizeWord
        && pending >= Framing::HeadSize + Framing::SizeWord)
        Framing::checkExpansion(Framing::declaredSize(begin + Framing::HeadSize), head.length, m_limits);
    return int(head.size()); // within the limits, so it fits
}

void RepresentationSplitter::Private::fail(const QString &why)
{
    m_error = FailureTexts::at(FailureTexts::binaryData(), why);
    m_bytes.clear();
    m_taken = 0;
}

void RepresentationSplitter::Private::removeTaken()
{
    if (m_taken == m_bytes.size())
        m_bytes.clear(); // an idle connection uses no memory
    else
        m_bytes.remove(0, m_taken);
    m_taken = 0;
}

RepresentationSplitter::RepresentationSplitter(qint64 classIdentifier, const ReadLimits &limits)
    : d(std::make_unique<Private>(classIdentifier, limits))
{
}

RepresentationSplitter::~RepresentationSplitter() = default;

void RepresentationSplitter::Append(const QByteArray &bytes)
{
    d->append(bytes);
}

std::optional<QByteArray> RepresentationSplitter::Take()
{
    return d->take();
}

QString RepresentationSplitter::GetErrorString() const
{
    return d->error();
}

qint64 RepresentationSplitter::GetPendingSize() const
{
    return d->pendingSize();
}

} // namespace REPORTGENERATOR
