// SPDX-License-Identifier: MIT
#pragma once

#include <limits>
#include <memory>
#include <optional>

#include <QByteArray>
#include <QString>
#include <QVector>

#include <jobxml/TunerProperties.h>

#include <tunerdocuments/DocumentError.h>
#include <tunerdocuments/Export.h>
#include <tunerdocuments/Finding.h>
#include <tunerdocuments/Form.h>

class QFile;

namespace TunerDocuments {

/// A file contains JSON that is not a document. text() has a line for each of the problems that are listed.
class TUNERDOCUMENTS_EXPORT InvalidContent : public DocumentError
{
public:
    /// With the name of the document and its problems.
    InvalidContent(const QString &name, const Findings &problems);
    /// \cond
    InvalidContent(const InvalidContent &other);
    ~InvalidContent() override;
    /// \endcond

    const QString &name() const; ///< of the document
    const Findings &problems() const; ///< with line, column and path, in the order of the text

private:
    struct Private;
    std::shared_ptr<const Private> d;
};

/// How to load documents:
///
///     Document::load(path, LoadOptions().setForm(Form::Snapshot));
///
/// Copies share their content. Later versions may add options, with defaults that change nothing.
class TUNERDOCUMENTS_EXPORT LoadOptions
{
public:
    static constexpr int UsualExpansion = 50; ///< The default of maxExpansion().
    static constexpr int UsualProblems = 100; ///< The default of maxProblems().

    LoadOptions() noexcept; ///< The defaults.

    /// The form of the document. No value unless set: content and name determine it.
    std::optional<Form> form() const noexcept;
    LoadOptions &setForm(std::optional<Form> form); ///< Sets the form.

    /// How many times its own size a compressed document may expand to. A small file could otherwise make a program use
    /// memory and time for a large one. Real documents shrink to a third, very regular ones to a thirtieth; documents
    /// made to exhaust memory shrink to a thousandth. The library never accepts more than 1,100 times.
    int maxExpansion() const noexcept;
    LoadOptions &setMaxExpansion(int times); ///< Sets how many times.

    /// How many problems to list of JSON that is not a document; the others are counted.
    int maxProblems() const noexcept;
    LoadOptions &setMaxProblems(int most); ///< Sets how many.

private:
    struct Values;
    Q_DECL_HIDDEN const Values &values() const noexcept;
    Q_DECL_HIDDEN Values &change();

    std::shared_ptr<Values> m_values; // null: the defaults
};

/// Something that a document has and that is not written. What later versions know about it, functions of this class
/// will return.
struct TUNERDOCUMENTS_EXPORT Loss
{
    /// Nothing.
    Loss() = default;
    /// That content at the path, and what is written of it.
    Loss(const QString &ofPath, const QString &content, const QString &written, const QString &happens = {})
        : path(ofPath), before(content), after(written), what(happens)
    {
    }

    QString path{}; ///< of the member or item; empty for the document as a whole
    QString before{}; ///< its content; empty if `what` describes it
    QString after{}; ///< what is written instead
    QString what{}; ///< "is lost"; null if `before` and `after` show it

    /// On one line: "Node[id=gain]/...: 0.2567 becomes 0.26".
    QString text() const;

private:
    struct Additions;
    std::shared_ptr<Additions> m_additions{}; // what later versions add
};

/// A document in any form: the description of a tuner, and the form in which it was loaded.
///
/// Loading does not validate: `tuner` has everything that was read, and its validate flag is off. A visitor receives
/// every problem of the document, once: what a validating reader refuses, with its location, and what the check of the
/// description finds, with its path; see JobXml::DataObject::LoadXml() and VisitProblems(). Without a visitor, problems
/// are not looked for.
///
/// Loading throws DocumentError if there is no document that can be read: a file that cannot be opened or read, an
/// unknown form, malformed XML or JSON, records whose lengths do not add up, a document that expands too far. JSON that
/// is not a document throws InvalidContent.
class TUNERDOCUMENTS_EXPORT Document
{
public:
    /// An empty description, of which nothing is set.
    Document();
    /// A description that the program has made. Its validate flag stays.
    explicit Document(const JobXml::TunerProperties &description, Form asForm = Form::Xml);
    /// \name Copies
    /// They share the data of the description until one side is used, like copies of JobXml::TunerProperties.
    /// @{
    Document(const Document &other);
    Document(Document &&other) noexcept;
    Document &operator=(const Document &other);
    Document &operator=(Document &&other) noexcept;
    /// @}
    ~Document();

    /// Loads a file.
    static Document load(const QString &path, const LoadOptions &options = {},
                         const JobXml::ProblemVisitor &visitor = {});

    /// Loads an open file from its beginning, or a closed one, which is opened. It must be seekable. Messages call it
    /// by its QFile::fileName().
    static Document load(QFile &file, const LoadOptions &options = {}, const JobXml::ProblemVisitor &visitor = {});

    /// Reads a document in memory. Messages call it `name`, whose suffix may determine the form. The bytes may be raw
    /// data (QByteArray::fromRawData()); no reference to them is kept.
    static Document fromBytes(const QByteArray &bytes, const QString &name, const LoadOptions &options = {},
                              const JobXml::ProblemVisitor &visitor = {});

    /// The document in that form. While `tuner` validates, its problems throw as they do in its own operations
    /// (ReportException). Throws UnstorableContent, with `name` as the name of the document, if the form cannot hold
    /// it at all: an incomplete document has no snapshot that can be read back, XML no control characters, and JSON no
    /// unpaired surrogates.
    QByteArray toBytes(Form asForm, const QString &name) const;

    /// What `bytes`, which toBytes() returned for that form, do not have although the document has it: numbers that
    /// were rounded, texts that are null, members that have a value but are not set. Empty for JSON. At most `most` are
    /// listed; `count` receives the number of all unless it is null.
    QVector<Loss> lossesIn(const QByteArray &bytes, Form asForm, int most = std::numeric_limits<int>::max(),
                           qint64 *count = nullptr) const;

    /// Writes the document to a file, atomically: the file is complete or unchanged, see REPORTGENERATOR::SaveFile().
    /// Throws what toBytes() throws, and DocumentError if the file cannot be written.
    void save(const QString &path, Form asForm) const;

    JobXml::TunerProperties tuner; ///< the content
    Form form = Form::Xml; ///< that of the file or the bytes; for a document that the program has made, what it chose

private:
    struct Additions;
    std::shared_ptr<Additions> m_additions{}; // what later versions add
};

} // namespace TunerDocuments

Q_DECLARE_TYPEINFO(TunerDocuments::LoadOptions, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(TunerDocuments::Loss, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(TunerDocuments::Document, Q_MOVABLE_TYPE);
Q_DECLARE_METATYPE(TunerDocuments::Document)
