// SPDX-License-Identifier: MIT
#include "documents/format/SameContent.h"

#include <QCryptographicHash>

#include <tunerdocuments/Diff.h>

using JobXml::Problem;
using JobXml::Step;

namespace TunerDocuments {

namespace {

void addProblem(QCryptographicHash &digest, const Problem &problem)
{
    digest.addData(problem.message.toUtf8());
    for (const Step &step : problem.steps)
        digest.addData('/' + step.member.toUtf8() + QByteArray::number(step.index));
    digest.addData('/' + problem.member.toUtf8() + (problem.xmlOnly ? '1' : '0') + '\n');
}

bool isLayout(char character)
{
    return character == ' ' || character == '\t' || character == '\n' || character == '\r';
}

/// The next character that is not layout; 0 at the end.
char next(const char *&at, const char *end)
{
    while (at != end && isLayout(*at))
        ++at;
    return at == end ? '\0' : *at == '\'' ? '"' : *at;
}

} // namespace

ReadContent::ReadContent(const QByteArray &bytes, const QString &name, const LoadOptions &options)
{
    QCryptographicHash digest(QCryptographicHash::Sha256);
    m_document =
        Document::fromBytes(bytes, name, options, [&](const Problem &problem) { addProblem(digest, problem); });
    m_problems = digest.result();
}

QString ReadContent::differenceFrom(const ReadContent &other) const
{
    QString first;
    findDifferences(m_document.tuner, other.m_document.tuner, [&](const Difference &difference) {
        if (first.isNull())
            first = difference.text();
    });
    if (first.isNull() && m_problems != other.m_problems)
        first = QStringLiteral("other problems are found");
    return first;
}

bool isSameWithoutLayout(const QByteArray &left, const QByteArray &right)
{
    const char *ofLeft = left.constBegin();
    const char *ofRight = right.constBegin();
    for (;;) {
        const char character = next(ofLeft, left.constEnd());
        if (character != next(ofRight, right.constEnd()))
            return false;
        if (ofLeft == left.constEnd() || ofRight == right.constEnd())
            return ofLeft == left.constEnd() && ofRight == right.constEnd();
        ++ofLeft;
        ++ofRight;
    }
}

} // namespace TunerDocuments
