// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>

#include <QByteArray>
#include <QSharedDataPointer>
#include <QString>
#include <QUrl>

#include <tunerdocuments/Export.h>
#include <tunerdocuments/Finding.h>

namespace TunerDocuments {

/// The findings in any number of documents as one text in the Static Analysis Results Interchange Format (SARIF),
/// version 2.1.0, which tools for code review read:
///
///     Sarif::Writer writer("checker", "2.4", write);
///     for (...) {
///         Sarif::Part part(QFile::encodeName(path));
///         part.add(findings);
///         writer.add(part);
///     }
///     writer.finish();
///
/// The rules are those of lint(), and "invalid-document" for problems. A finding has its rule, level, message, file,
/// line and column, and Finding::place() as the name of its logical location.
namespace Sarif {

/// What the text says about one document. It is composed apart from the writer, so that several threads can compose at
/// once. Copies share their content; one that was moved from can only be assigned to or destroyed.
class TUNERDOCUMENTS_EXPORT Part
{
public:
    /// About the file of that name, which is bytes as the system knows it, see QFile::encodeName(). Readers find it
    /// relative to the folder where the program was started, unless the name is absolute.
    explicit Part(const QByteArray &fileName);
    /// \cond
    Part(const Part &other);
    Part(Part &&other) noexcept;
    Part &operator=(const Part &other);
    Part &operator=(Part &&other) noexcept;
    ~Part();
    /// \endcond

    /// About a document at another place than a file.
    static Part at(const QUrl &url);

    /// Adds a result: a problem or a warning.
    void add(const Finding &finding);

    /// Adds the problems and warnings that are kept. If there are more, a notification has the number of all, which
    /// ends with `hint`.
    void add(const Findings &findings, const QString &hint = {});

    /// Adds a notification that the document could not be read, and why.
    void addFailure(const QString &why);

    /// Bytes of the text.
    qint64 size() const;

private:
    friend class Writer;

    class Private;
    QSharedDataPointer<Private> d;
};

/// Writes the text piece by piece. Its results are written as they are added; only the notifications, which come last
/// in the format, are kept.
class TUNERDOCUMENTS_EXPORT Writer
{
public:
    /// Writes the beginning, with the name and version of the program that has found the findings, and the rules.
    Writer(const QString &program, const QString &version, const std::function<void(const QByteArray &)> &write);
    Writer(const Writer &) = delete;
    Writer &operator=(const Writer &) = delete;
    ~Writer(); ///< Writes nothing: the text is incomplete without finish().

    /// Writes the results of a document.
    void add(const Part &part);

    /// Writes the end: the notifications, and that the program was successful unless a document could not be read. Call
    /// it once, after the last document.
    void finish();

private:
    class Private;
    const std::unique_ptr<Private> d;
};

} // namespace Sarif

} // namespace TunerDocuments
