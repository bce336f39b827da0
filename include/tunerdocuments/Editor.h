// SPDX-License-Identifier: MIT
#pragma once

#include <limits>
#include <memory>

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

#include <tunerdocuments/Document.h>
#include <tunerdocuments/Export.h>
#include <tunerdocuments/Finding.h>

namespace TunerDocuments {

/// Changes a document that was loaded, and keeps everything else of it.
///
/// XML and JSON are edited in place: only the bytes of the values concerned change. Comments, layout, order, encoding,
/// line ends, numbers with more decimals than the library writes, and everything that the model does not have stay,
/// byte for byte. New items are laid out as their neighbors; items that are moved keep their text. What was edited is
/// read again and compared with the description.
///
/// The other forms are written anew. losses() lists what would then change besides.
///
/// An operation that throws PathFailure, TypedValue::Mismatch or ReportException changes nothing. UnstorableContent
/// means that the text has no place for the change; the editor is of no further use then. The text of JSON follows all
/// values that were set at once, when it is required: toBytes(), losses() and operations on items throw that then.
class TUNERDOCUMENTS_EXPORT Editor
{
public:
    /// `bytes` is what `document` was read from, and `name` what messages call it. The editor shares the bytes: raw
    /// data (QByteArray::fromRawData()) must exist as long as the editor, and what toBytes() returns while nothing is
    /// changed.
    Editor(Document document, const QByteArray &bytes, const QString &name);
    Editor(const Editor &) = delete;
    Editor &operator=(const Editor &) = delete;
    ~Editor();

    /// The document with all changes so far.
    const Document &document() const;

    /// Stores a value, written as TypedValue::parse() reads it, through the setter of the model and its checks.
    ///
    /// Throws PathFailure if there is no such member, TypedValue::Mismatch if the text is not a value of the member,
    /// and ReportException if the model refuses it. A member of an alternative that is not chosen is stored, and the
    /// choice stays. To choose another kind of value, set the member `ChoiceValueItem`:
    /// the item then has the value of that kind which the document has, or else an empty one, and the one before is
    /// removed.
    ///
    /// A text that denotes exactly this value stays as it is: "0.50" for 0.5. One that only reads as it does not: "abc"
    /// reads as 0.
    void set(const QString &path, const QString &value);

    /// Unsets a member, which then has its default value. An item that had chosen it chooses the only other alternative
    /// that has data, if there is one. Throws PathFailure, and TypedValue::Mismatch for an item of a list.
    void unset(const QString &path);

    /// Adds what the path leads to afterwards:
    ///
    ///     editor.add("Component[type=Filter,name=Pre]/Node[id=gain]");
    ///
    /// adds a node to that component, with the id of the path and otherwise the members that `content` has: the JSON of
    /// the object, or its element in XML. Values in the path take the place of those in the content. A new item is the
    /// last one of its list; a position in the path is the one that it has afterwards, among the items that fit the
    /// rest of the path. Everything on the way is set afterwards.
    ///
    /// A path to a member that is an object sets that; to a list of names, it adds the names of the content.
    ///
    /// Nothing is validated. Throws PathFailure if there is no such place, it is taken, or a text of the path or a name
    /// is not a value of its member, and DocumentError, whose message begins with `contentName`, if the content cannot
    /// be read completely.
    void add(const QString &path, const QByteArray &content = QByteArray(), const QString &contentName = QString());

    /// Removes items, or unsets members, whose content is lost. If what an item has chosen is removed, the item chooses
    /// the only alternative that is left; several are removed with it. All paths refer to the document before; patterns
    /// remove everything that fits them. Throws PathFailure if a path leads nowhere, or nothing fits a pattern.
    void remove(const QStringList &paths);

    /// Moves an item within its list, to the position that it has afterwards, counted from 1. Throws PathFailure if
    /// there is no such item or position.
    void move(const QString &path, int position);

    /// Makes the document equal to another one, by the changes that findDifferences() finds: for the result of
    /// Patch::apply() or merge().
    void become(const JobXml::TunerProperties &changed);

    /// Whether anything has changed.
    bool isChanged() const;

    /// Whether the changes may have caused problems that the document did not have, see
    /// JobXml::DataObject::VisitProblems(). Not if only values were set, of objects that were set: set() checks these.
    bool mayCauseProblems() const;

    /// The problems that the changes have caused, see newProblems(), with their paths. At most `most` are kept; the
    /// others are counted. If mayCauseProblems() is false, there are none, and nothing is looked for.
    Findings newProblems(int most = std::numeric_limits<int>::max()) const;

    /// The document without the changes, read again from its bytes: for findDifferences(), which lists what the changes
    /// are.
    Document original() const;

    /// Whether the document is edited in place.
    bool isInPlace() const;
    /// Why it is not although it is XML; null otherwise. toBytes() then throws unless rewrite() is called.
    QString reasonAgainst() const;

    /// Has the document written anew instead of being edited in place. To be called before it is changed.
    void rewrite();

    /// What toBytes() would not write although the document has it. For set() and unset(), apart from what was changed.
    /// Throws UnstorableContent if the text of JSON cannot follow what was set.
    QVector<Loss> losses() const;

    /// The changed document in its form. Throws UnstorableContent if the form cannot hold it, or if its text cannot be
    /// edited so that it reads as the description.
    QByteArray toBytes() const;

private:
    class Private;
    const std::unique_ptr<Private> d;
};

} // namespace TunerDocuments
