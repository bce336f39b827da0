// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include <QByteArray>
#include <QString>
#include <QVector>

#include <tunerdocuments/Document.h>
#include <tunerdocuments/Export.h>

namespace TunerDocuments {

/// Changes a document that was loaded, and keeps everything else of it.
///
/// XML and JSON are edited in place: only the bytes of the values concerned change. Comments, layout, order, encoding,
/// line ends, numbers with more decimals than the library writes, and everything that the model does not have stay,
/// byte for byte. What was edited is read again and compared with the description.
///
/// The other forms are written anew. losses() lists what would then change besides.
///
/// An operation that throws PathFailure, TypedValue::Mismatch or ReportException changes nothing. DocumentError means
/// that the text has no place for the change; the editor is of no further use then.
class TUNERDOCUMENTS_EXPORT Editor
{
public:
    /// `bytes` is what `document` was read from, and `name` what messages call it.
    Editor(Document document, const QByteArray &bytes, const QString &name);
    Editor(const Editor &) = delete;
    Editor &operator=(const Editor &) = delete;
    ~Editor();

    /// The document with all changes so far.
    const Document &document() const;

    /// Stores a value, written as TypedValue::parse() reads it, through the setter of the model and its checks.
    ///
    /// Throws PathFailure if there is no such member, TypedValue::Mismatch if the text is not a value of the member,
    /// and ReportException if the model refuses it. To choose another kind of value, set the member `ChoiceValueItem`:
    /// the item then has an empty value of that kind, and the one before is removed.
    void set(const QString &path, const QString &value);

    /// Unsets a member, which then has its default value. Throws PathFailure, and TypedValue::Mismatch for an item of a
    /// list.
    void unset(const QString &path);

    /// Whether anything has changed.
    bool isChanged() const;

    /// Whether the document is edited in place.
    bool isInPlace() const;
    /// Why it is not although it is XML; null otherwise. toBytes() then throws unless rewrite() is called.
    QString reasonAgainst() const;

    /// Has the document written anew instead of being edited in place. To be called before it is changed.
    void rewrite();

    /// What toBytes() would not write although the document has it, apart from what was changed.
    QVector<Loss> losses() const;

    /// The changed document in its form. Throws DocumentError if the form cannot hold it, or if its text cannot be
    /// edited so that it reads as the description.
    QByteArray toBytes() const;

private:
    class Private;
    const std::unique_ptr<Private> d;
};

} // namespace TunerDocuments
