// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <stdexcept>

#include <QByteArray>
#include <QString>

#include <jobxml/TunerProperties.h>

#include <tunerdocuments/Export.h>

namespace TunerDocuments {

/// Changes that do not fit a document. The text has the path and the reason: "quantity: expected 1, but it is 3";
/// what() has it as UTF-8 on one line.
class TUNERDOCUMENTS_EXPORT PatchFailure : public std::runtime_error
{
public:
    /// A failure at that path, which may be empty.
    PatchFailure(const QString &path, const QString &reason);
    /// A copy.
    PatchFailure(const PatchFailure &other);
    ~PatchFailure() override;

    /// The path of the change; in the second document if changes are undone.
    QString path() const;
    /// The path and the reason.
    QString text() const;

private:
    struct Private;
    std::shared_ptr<const Private> d; // shared, so that copying cannot throw
};

/// The changes that make one document from another:
///
///     const Patch patch = Patch::between(before, after);
///     patch.apply(document);
///
/// Changes fit a document if their paths exist in it and the values, flags and items that they change are the same as
/// in the first document. Everything else may differ.
class TUNERDOCUMENTS_EXPORT Patch
{
public:
    /// What the changes make.
    enum class Direction {
        Forward, ///< the second document from the first one
        Backward, ///< undoes the changes: makes the first document from the second one
    };

    /// No changes.
    Patch();
    /// \name Copies and moves
    /// Copies share the changes. A patch that was moved from can only be assigned to or destroyed.
    /// @{
    Patch(const Patch &other);
    Patch(Patch &&other) noexcept;
    Patch &operator=(const Patch &other);
    Patch &operator=(Patch &&other) noexcept;
    /// @}
    ~Patch();

    /// All differences of two documents; keeps copies of both. Afterwards, applying it to the first document makes it
    /// equal to the second one as JSON, without exceptions: flags, values of members that are not set and alternatives
    /// that are not chosen included.
    static Patch between(const JobXml::TunerProperties &first, const JobXml::TunerProperties &second);

    /// Reads the lines that toJson() writes for the differences, one JSON object on each; empty lines are skipped.
    /// Throws DocumentError for anything else; its message begins with `name` and the line.
    static Patch fromJson(const QByteArray &lines, const QString &name);

    /// Whether there are no changes.
    bool isEmpty() const;

    /// Makes the changes, all or none. Nothing is validated, whatever the document's flag is; the flag stays, and
    /// everything below the document has it afterwards. Throws PatchFailure for changes that do not fit.
    void apply(JobXml::TunerProperties &document, Direction direction = Direction::Forward) const;

private:
    struct Changes;

    std::shared_ptr<const Changes> m_changes;
};

} // namespace TunerDocuments

Q_DECLARE_TYPEINFO(TunerDocuments::Patch, Q_MOVABLE_TYPE);
Q_DECLARE_METATYPE(TunerDocuments::Patch)
