// SPDX-License-Identifier: MIT
#include <tunerdocuments/Path.h>

#include <algorithm>

#include "documents/paths/Notation.h"
#include "documents/paths/Parser.h"
#include "documents/paths/Selection.h"
#include "text/Printable.h"

namespace TunerDocuments {

PathFailure::PathFailure(const QString &text) : std::runtime_error(Printable::withoutNull(text)) { }

PathFailure::PathFailure(const PathFailure &) = default;

PathFailure::~PathFailure() = default;

QString PathFailure::text() const
{
    return QString::fromUtf8(what());
}

Path::Path() = default;
Path::Path(const QVector<Step> &steps) : m_steps(steps) { }
Path::Path(const Path &) = default;
Path::Path(Path &&) noexcept = default;
Path &Path::operator=(const Path &) = default;
Path &Path::operator=(Path &&) noexcept = default;
Path::~Path() = default;

Path Path::parse(const QString &text)
{
    return Path(Paths::parsed(text));
}

QString Path::text() const
{
    QStringList parts;
    for (const Step &step : m_steps)
        parts.append(Paths::written(step));
    return parts.join(QLatin1Char('/'));
}

bool Path::isPattern() const
{
    return std::any_of(m_steps.begin(), m_steps.end(), Paths::hasAsterisk);
}

} // namespace TunerDocuments
