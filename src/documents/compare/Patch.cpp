// SPDX-License-Identifier: MIT
#include <tunerdocuments/Patch.h>

#include <vector>

#include <tunerdocuments/Diff.h>
#include <tunerdocuments/DocumentError.h>

#include "documents/compare/ChangeLine.h"
#include "documents/compare/EditBinder.h"
#include "documents/compare/Edits.h"
#include "documents/values/DocumentSize.h"
#include "text/Printable.h"
#include "json/JsonText.h"

using namespace JobXml;

namespace TunerDocuments {

namespace {

QString failureText(const QString &path, const QString &reason)
{
    return path.isEmpty() ? reason : path + QStringLiteral(": ") + reason;
}

} // namespace

struct PatchFailure::Private
{
    QString path;
    QString text;
};

PatchFailure::PatchFailure(const QString &path, const QString &reason)
    : std::runtime_error(Printable::onOneLine(failureText(path, reason)).toStdString()),
      d(std::make_shared<const Private>(Private{path, failureText(path, reason)}))
{
}

PatchFailure::PatchFailure(const PatchFailure &) = default;

PatchFailure::~PatchFailure() = default;

QString PatchFailure::path() const
{
    return d->path;
}

QString PatchFailure::text() const
{
    return d->text;
}

/// Either lines, or differences of two documents, to which they refer.
struct Patch::Changes
{
    TunerProperties first;
    TunerProperties second;
    QVector<Difference> differences;
    std::vector<Json> lines;
};

Patch::Patch() : m_changes(std::make_shared<Changes>()) { }
Patch::Patch(const Patch &) = default;
Patch::Patch(Patch &&) noexcept = default;
Patch &Patch::operator=(const Patch &) = default;
Patch &Patch::operator=(Patch &&) noexcept = default;
Patch::~Patch() = default;

Patch Patch::between(const TunerProperties &first, const TunerProperties &second)
{
    const auto changes = std::make_shared<Changes>();
    changes->first = TunerProperties(first); // assigning would share the data with a document that may be in use
    changes->second = TunerProperties(second);
    const auto &documents = std::as_const(*changes);
    changes->differences = findDifferences(documents.first, documents.second);
    Patch patch;
    patch.m_changes = changes;
    return patch;
}

Patch Patch::fromJson(const QByteArray &lines, const QString &name)
{
    checkSize(lines, name);
    const auto changes = std::make_shared<Changes>();
    int number = 0;
    for (int begin = 0; begin < lines.size();) {
        const int feed = int(lines.indexOf('\n', begin));
        const int end = feed < 0 ? int(lines.size()) : feed;
        const QByteArray text = lines.mid(begin, end - begin);
        begin = end + 1;
        ++number;
        if (text.trimmed().isEmpty())
            continue;
        try {
            Json json = JsonText::parse(text);
            ChangeLine::check(json);
            changes->lines.push_back(std::move(json));
        } catch (const JsonFailure &failure) {
            // An error in the text has its place in the line.
            const QString place = failure.line() > 0
                ? QStringLiteral("%1:%2:%3: ").arg(name).arg(number).arg(failure.column()) + failure.message()
                : failure.text(QStringLiteral("%1: line %2").arg(name).arg(number));
            throw DocumentError(place);
        }
    }
    Patch patch;
    patch.m_changes = changes;
    return patch;
}

bool Patch::isEmpty() const
{
    return m_changes->differences.isEmpty() && m_changes->lines.empty();
}

void Patch::apply(TunerProperties &document, Direction direction) const
{
    const TunerProperties original = document; // visited only, so all places stay where they are
    EditBinder binder(original);
    for (const Difference &difference : m_changes->differences)
        binder.add(*changeOf(difference, direction));
    for (const Json &line : m_changes->lines)
        binder.add(*changeOf(line, direction));
    TunerDocuments::apply(binder.edits(), document);
}

} // namespace TunerDocuments
