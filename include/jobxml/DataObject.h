// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>

#include <QHash>
#include <QMetaType>
#include <QStringList>
#include <QVector>

#include <reportbase/IRGObject.h>

#include <jobxml/Export.h>

QT_FORWARD_DECLARE_CLASS(QDebug)

class QDataStream;
class QXmlStreamWriter;

/// The data model of a radio tuner resource in a measurement job.
namespace JobXml {

struct Block;
struct ClassInfo;

/// What qHash() takes as its seed and returns: `uint` in Qt 5, `size_t` in Qt 6.
using HashValue = decltype(qHash(0));

/// One step of a path: from an object to one of its children. No later version adds members.
struct Step
{
    QString member; ///< the member that contains the child; valid after the library was unloaded, too
    int index; ///< the child's index in the list, from 0; -1 if the member is not a list
};

/// The path from one object to another one below it. Both lists have an entry for each step. No later version adds
/// members.
struct ObjectPath
{
    QStringList path; ///< for people: the objects from the root's child down, for instance `Component "Preselector"`
    QVector<Step> steps; ///< for programs

    /// The path to a child of the object at the end of this path. `label` is what people call the child.
    ObjectPath below(const QString &label, const Step &step) const
    {
        ObjectPath child = *this;
        child.path.append(label);
        child.steps.append(step);
        return child;
    }
    ObjectPath below(std::nullptr_t, const Step &step) const = delete;
};

/// One reason why a reader or a writer would refuse a document, and the path to the object concerned. What later
/// versions know about a problem, functions of this class will return.
struct Problem : ObjectPath
{
    /// A problem without a path and a message.
    Problem() = default;
    /// A problem of the object at that path, or of a member of it.
    Problem(const ObjectPath &where, const QString &why, const QString &ofMember = {}, bool inXmlOnly = false)
        : ObjectPath(where), message(why), member(ofMember), xmlOnly(inXmlOnly)
    {
    }
    Problem(const ObjectPath &, std::nullptr_t, const QString & = {}, bool = false) = delete;

    QString message{}; ///< why: the whole text of the exception that the model would throw, or the library's own
    QString member{}; ///< the member of that object; null if it is not a single one
    /// True if only XML cannot represent the object: a text contains a character that XML cannot carry. XML is then
    /// refused whatever the validate flag is.
    bool xmlOnly = false;
    /// True if it made the document unreadable: it is the last problem, and nothing was read or looked for after it.
    /// GetErrorString() does not show all of these, since a record with wrong lengths is an exception otherwise.
    bool isUnreadable = false;

    /// \name Its place in the document that was read
    /// The start of the attribute, element or record that a validating reader refuses (in some XML documents the last
    /// character read, see ReportException::GetLocation()), or the place where a document that is not well-formed ends
    /// for its reader. Lines and columns, in UTF-16 units, count from 1 and are 0 if there is none; the offset in bytes
    /// counts from 0 and is -1 if there is none. Problems that GetProblems() finds have no place.
    /// @{
    int line = 0;
    int column = 0;
    qint64 offset = -1;
    /// @}

    /// What a validating reader refuses, as the document has it: the text of the member, or the name of the element
    /// that the object does not have. Null for an incomplete item, and for problems that GetProblems() finds.
    QString value{};

private:
    struct Additions;
    std::shared_ptr<Additions> m_additions{}; // what later versions add
};

/// What to accept when all problems of a document are collected while it is read:
///
///     object.LoadXml(path, problems, ReadOptions().setMaxBytes(1 << 20));
///
/// Copies share their content. Later versions may add options, with defaults that change nothing.
class JOBXML_EXPORT ReadOptions
{
public:
    ReadOptions() noexcept; ///< The defaults.

    /// The size of the file, of the text as UTF-8 or of the representation, and what a compressed representation may
    /// expand to. The default has no effect: the limits are those of the operations that throw.
    qint64 maxBytes() const noexcept;
    ReadOptions &setMaxBytes(qint64 bytes); ///< Sets that size.

    /// Whether the compressed form of a representation is accepted; true unless set.
    bool allowCompressed() const noexcept;
    ReadOptions &setAllowCompressed(bool allow); ///< Sets whether it is.

    /// Whether to find the problems of the content; true unless set. If not, only those are found that make the
    /// document unreadable.
    bool validate() const noexcept;
    ReadOptions &setValidate(bool validate); ///< Sets whether they are found.

private:
    struct Values;
    Q_DECL_HIDDEN const Values &values() const noexcept;
    Q_DECL_HIDDEN Values &change();

    std::shared_ptr<Values> m_values; // null: the defaults
};

/// Receives problems as they are found.
using ProblemVisitor = std::function<void(const Problem &)>;

/// Enables a function for visitors: everything that can be called with a `const Problem &`.
template <class Visitor>
using IfVisitor = std::enable_if_t<std::is_invocable_v<Visitor &, const Problem &>>;

/// Enables a function for functions, and lambdas that capture nothing, that are not visitors.
template <class Function>
using IfOtherFunction =
    std::enable_if_t<std::is_function_v<std::remove_pointer_t<
                         decltype(+std::declval<Function &>())>> && !std::is_invocable_v<Function &, const Problem &>>;

/// The operations that every class of the model has, each of them once.
///
/// **Members.** A member always has a value, its default until something is stored, and a set flag. For a member `X`
/// the classes offer `GetX`, `SetX`, `IsXSet`, `ResetX`, `GetDefaultX` and `IsValidX`, and `AppendX` for lists:
///  - `GetX()` returns the value and does not change the flag. The non-const getter of a child object, a list or an
///    alternative returns a reference to modify and sets the flag; `std::as_const(object).GetX()` reads without
///    marking. Do not assign the object to another one while you hold such a reference, see Sharing.
///  - `SetX(value)` stores the value and sets the flag. A null string is refused while validating: OutOfRangeException
///    ": Please set X properly (origin: Setter)." after the object's name, and nothing is stored. A list is stored
///    unchanged: its items are not checked, and keep their validate flags and loggers.
///  - `AppendX(item)` appends a copy, which has the item's validate flag and no logger, and sets the flag. An item
///    without data is refused while validating: IncompleteDefinitionException
///    ": Tried to append not completely defined or invalid item X.".
///  - `SetX(nullptr)` and `AppendX({})` do not compile: a null pointer is not a text, and a pair of braces would be an
///    empty item. Write QString() for the null text and name the class of an empty item.
///  - `IsXSet()` returns the flag; `ResetX()` clears it and restores the default.
///
/// **References.** A reference that a getter returned is valid until the object is next used after it was copied,
/// assigned or modified: such a use may detach the object's data. Reading into the object counts as modifying, even if
/// it fails. A copy of a list that a getter returned shares its items with the object until the object is next used, or
/// the list is modified; do so before you pass it to another thread.
///
/// **Text members** are absent when null; an empty text is a value.
///
/// **Sharing.** Assignment shares the data of both objects until one of them is next used; a copy constructed object
/// has its own at once. Two threads may therefore use two objects, one each; only one thread at a time may use an
/// object. A reference that a getter returned before the assignment refers to the shared data: writing through it
/// changes both objects. While you hold one, copy construct instead: `T b(a)` or `b = T(a)`.
///
/// **Validate flag and logger.** Check(), GetXml(), GetBinary(), SetBinary(), reading XML as soon as it meets a child
/// element, and the creation of an object's data propagate the object's own flag and logger to its whole tree. Setters,
/// assignment and moves do not. SetValidate() and SetLogger() reach the children that exist at that moment: a child
/// that is appended or assigned later keeps its own flag until the next of these operations, and a copy of a child
/// keeps the flag that the child has. In Qt 6, reserve(), squeeze() and prepend() of a list that a getter returned may
/// copy its items, which leaves them without a logger. A copy constructed object has the validate flag and the type of
/// the original, and no logger; assignment, moves into an existing object and swap() only affect the data.
///
/// **Equality.** A member is equal if it is set in both objects to equal values, or set in neither; for the lists of
/// ValueStringList, ValueSelection, Node and Component only the right side's flag counts: an unset list on the right
/// equals an empty one on the left. Numbers are compared exactly, so a NaN does not even equal itself.
///
/// **Hashing.** Classes whose equality is symmetric have a qHash(). Those whose lists are compared by the right side's
/// flag, and ValueItem and TunerProperties, which contain them, have none: `a == b` does not imply `b == a`, so no hash
/// can agree with it.
///
/// **Failures** are always exceptions, see reportbase/ReportException.h. Values stored before one are kept.
///
/// **New objects.** `fromXml(text)` and `fromBinary(bytes)` of every class return a new object that was read from a
/// whole XML document or a binary representation, or nothing; they only throw std::bad_alloc. The object validates
/// while it is read and afterwards. If reading fails, `error` receives the reason: the text of GetErrorString(), or
/// that of the exception of the model; otherwise it is null. Like every reader they do not report missing members: call
/// Check() or GetProblems(). To read without validation, call SetXmlString() of an object, or SetValidate(false) and
/// SetBinaryRepresentation(). A class derived from one of the model inherits them, and they return the model's class.
class JOBXML_EXPORT DataObject : public REPORTGENERATOR::IRGObject
{
public:
    ~DataObject() override;

    /// Whether the object has allocated its data. A new object and a moved-from one have none; `GetX`, `SetX`,
    /// `AppendX`, Check(), ResetToDefault() and every reader and writer create it. `IsXSet`, `ResetX`, `GetDefaultX`,
    /// `IsValidX`, HasData(), AnyData() and Reset() do not.
    bool IsInitialized() const noexcept;

    /// Whether every mandatory member is present: a text that is not null, a list with at least one item, any other
    /// member that is set.
    bool HasData() const override;

    /// If the object is initialized: clears every set flag and resets every member to its default.
    void Reset() override;

    /// Throws OutOfRangeException ": Please set X properly." after the object's name for the first member that is
    /// mandatory and not set, or that is set to an invalid value; a list is checked first, then each of its items, then
    /// the other members in the order of the class. Exceptions of children pass through; a ValueItem throws
    /// IncompleteDefinitionException. `flag` is passed to the children unchanged; no class reads it. Propagates
    /// validate flag and logger. Leaves the object initialized.
    void Check(bool flag) const override;

    /// The same as Check(false).
    void Check() const override;

    /// Writes the object as one XML element. While validating, Check() comes first and an object without data writes
    /// nothing; an item of a list that passed its check but has no data throws IncompleteDefinitionException
    /// "Parameters for Node are not set properly in 'Component'." (the item's and the object's name), and the output
    /// written before remains. While not validating the object is written unchecked.
    void GetXml(QXmlStreamWriter &writer) const override;

    /// Writes the object as one tagged record in the stream's byte order and version, under the same rules as GetXml(),
    /// except for items without data: they are only counted, so the record cannot be read back. The record is written
    /// in one piece when it is complete, so the device may be sequential.
    [[nodiscard]] bool GetBinary(QDataStream &stream, int tag, bool writeTag) const override;

    /// Reads the member records of one record of `length` bytes. Members that the record does not contain stay
    /// unchanged, items of lists are appended, unknown records are skipped.
    ///
    /// Throws BinaryParsingException "::SetBinary(...): Length error occurred during processing of binary
    /// representation" after the object's name if the lengths do not add up to exactly `length`, if `length` is
    /// negative, or if the stream ends early.
    void SetBinary(QDataStream &stream, int length) override;

    /// Reads the object from the XML element at whose start the reader is. Nothing is reset first: members that the
    /// element does not contain stay unchanged, items of lists are appended. Attributes are read before child elements,
    /// so a child element overrides an attribute of the same name. Unknown attributes and elements are skipped, except
    /// in the document (see TunerProperties). An empty text for a boolean throws InvalidXmlException "Please set a
    /// value or a default for the boolean 'X' in 'Y'." (the member's and the object's name) while validating, and is
    /// false otherwise. Names count without their prefixes, which need not be declared inside the element: the reader
    /// does not process namespaces there.
    void ProcessXml(QXmlStreamReader &reader) override;

    /// Copies what is set in `other`, an object of the same class: its members replace those of this object, items of
    /// its lists are appended, child objects are merged, a ValueItem copies the selected alternative; all of this under
    /// the rules of the setters. Members that are not set in `other` stay unchanged. Returns false, and changes
    /// nothing, if `other` has another class identifier; merging an object with itself changes nothing.
    [[nodiscard]] bool MergeRGObject(const REPORTGENERATOR::IRGObject &other) override;

    void SetValidate(bool validate) const override;
    void SetLogger(std::shared_ptr<REPORTGENERATOR::Logger> logger) const override;

    /// Does nothing: the type is set at construction.
    void SetObjectType(REPORTGENERATOR::ObjectTypes type) override;

    /// Resets the object as Reset() does and leaves it initialized.
    virtual void ResetToDefault();

    /// Whether at least one member is present, in the sense of HasData().
    virtual bool AnyData() const;

    /// Writes the untagged snapshot: the set flags, then the values in the stream's own forms. Checks nothing, throws
    /// nothing of its own and does not propagate validate flag and logger. Written in one piece, so the device may be
    /// sequential.
    virtual void GetVersionSpecificBinaryWithoutValidation(QDataStream &stream) const;

    /// Reads the untagged snapshot. Values are stored without their setters; items of lists follow the rules of
    /// `AppendX`. Stops at the first read that the stream cannot serve, and keeps the values read before.
    virtual void SetVersionSpecificBinaryWithoutValidation(QDataStream &stream);

    /// Returns every reason why Check() or a validating writer (GetXml(), GetXmlString(), SaveXml(), GetBinary(),
    /// SaveBinary(), the compressed forms and the others) would refuse this object, whatever its validate flag is;
    /// empty if there is none. The steps of a problem lead to the object that has to be changed.
    ///
    /// Besides what Check() throws, these are: a mandatory list that is set but empty, for which nothing is written,
    /// and characters that XML cannot carry (Problem::xmlOnly). Snapshots are never refused. Sizes are not considered:
    /// documents and records are limited to 2 GiB, beyond which writing throws std::bad_alloc, and compressed ones to 1
    /// GiB of records. For an object of a derived class, Check() and HasData() are called once nothing else is found,
    /// and GetXml() then shows whether XML can carry what the class writes. For an item whose
    /// mandatory list is set but empty, only the XML writer throws; tagged records are written but cannot be read back,
    /// so Problem::xmlOnly is false.
    ///
    /// Like Check(), leaves the tree initialized.
    [[nodiscard]] QVector<Problem> GetProblems() const;

    /// Calls `visitor` with each problem that GetProblems() would return, in the same order, without storing them: for
    /// untrusted documents, which may have a problem for every few bytes. Exceptions of the visitor pass through. The
    /// visitor must not change the document.
    void VisitProblems(const ProblemVisitor &visitor) const;

    /// \name Reading with all problems
    /// These operations read like those of the same names without a list of problems, but never throw for content: they
    /// read on, as a reader does that does not validate, and return every problem. These are, in the order in which
    /// they are found:
    ///  - everything for which a validating reader throws, with the text of the exception and with its place;
    ///  - what makes the document unreadable: the text of GetErrorString() without the place, which is in the members
    ///    of the problem, or the length error of a record. Nothing is read after it, and no further problems are looked
    ///    for;
    ///  - what GetProblems() returns for the object that was read.
    ///
    /// Returns whether there are no problems. `problems` is replaced. The validate flag has no effect and is the same
    /// afterwards, and that of everything below the object; whether the problems of the content are found depends on
    /// the options alone. The object keeps what was read, with all values that a validating reader refuses: it is the
    /// object that results from reading without validation, except that an item in which an unreadable document ends is
    /// not appended. GetErrorString() is that of the operation without a list of problems, and null if only the content
    /// has problems. Throws std::bad_alloc, and what the visitor throws.
    ///
    /// The forms with a visitor, any function or object that can be called with a `const Problem &`, call it with each
    /// problem instead, as VisitProblems() does: an untrusted document may have a problem for every few bytes. Limit
    /// its size with ReadOptions::setMaxBytes(). The visitor must not use the object, not even to read or copy it: it
    /// is called in the middle of reading.
    ///
    /// For an object of a derived class, a ReportException of an operation that the class overrides is one more
    /// problem; after that of ProcessXml(), SetBinary() or readOwnRecord() nothing more is read. Overridden LoadXml(),
    /// SetXmlString(), LoadBinary() and SetBinaryRepresentation() are not called.
    /// @{
    bool LoadXml(const QString &path, QVector<Problem> &problems, const ReadOptions &options = {});
    bool LoadXml(QFile *file, QVector<Problem> &problems, const ReadOptions &options = {});
    bool SetXmlString(const QString &xml, QVector<Problem> &problems, const ReadOptions &options = {});
    bool SetXmlString(std::nullptr_t, QVector<Problem> &, const ReadOptions & = {}) = delete;
    /// Reads a document in memory, in any encoding, as LoadXml() reads one in a file. `source` is its name in
    /// GetErrorString(). There is no operation of this name without problems. A document that is raw data
    /// (QByteArray::fromRawData()), which need not end with a NUL, is copied while it is read.
    bool SetXmlDocument(const QByteArray &document, const QString &source, QVector<Problem> &problems,
                        const ReadOptions &options = {});
    bool SetXmlDocument(const QByteArray &, std::nullptr_t, QVector<Problem> &, const ReadOptions & = {}) = delete;
    bool SetBinaryRepresentation(const QByteArray &representation, QVector<Problem> &problems,
                                 const ReadOptions &options = {});
    bool LoadBinary(const QString &path, QVector<Problem> &problems, const ReadOptions &options = {});
    bool LoadBinary(QFile *file, QVector<Problem> &problems, const ReadOptions &options = {});

    template <class Visitor, class = IfVisitor<Visitor>>
    bool LoadXml(const QString &path, Visitor &&visitor, const ReadOptions &options = {})
    {
        return visitLoadXml(path, std::ref(visitor), options);
    }
    template <class Visitor, class = IfVisitor<Visitor>>
    bool LoadXml(QFile *file, Visitor &&visitor, const ReadOptions &options = {})
    {
        return visitLoadXml(file, std::ref(visitor), options);
    }
    template <class Visitor, class = IfVisitor<Visitor>>
    bool SetXmlString(const QString &xml, Visitor &&visitor, const ReadOptions &options = {})
    {
        return visitSetXmlString(xml, std::ref(visitor), options);
    }
    template <class Visitor, class = IfVisitor<Visitor>>
    bool SetXmlString(std::nullptr_t, Visitor &&visitor, const ReadOptions & = {}) = delete;
    /// A function that is not a visitor would count as the flag of IRGObject::SetXmlString().
    template <class Function, class = IfOtherFunction<Function>>
    bool SetXmlString(const QString &xml, Function &&function) = delete;
    template <class Visitor, class = IfVisitor<Visitor>>
    bool SetXmlDocument(const QByteArray &document, const QString &source, Visitor &&visitor,
                        const ReadOptions &options = {})
    {
        return visitSetXmlDocument(document, source, std::ref(visitor), options);
    }
    template <class Visitor, class = IfVisitor<Visitor>>
    bool SetXmlDocument(const QByteArray &, std::nullptr_t, Visitor &&visitor, const ReadOptions & = {}) = delete;
    template <class Visitor, class = IfVisitor<Visitor>>
    bool SetBinaryRepresentation(const QByteArray &representation, Visitor &&visitor, const ReadOptions &options = {})
    {
        return visitSetBinaryRepresentation(representation, std::ref(visitor), options);
    }
    template <class Visitor, class = IfVisitor<Visitor>>
    bool LoadBinary(const QString &path, Visitor &&visitor, const ReadOptions &options = {})
    {
        return visitLoadBinary(path, std::ref(visitor), options);
    }
    template <class Visitor, class = IfVisitor<Visitor>>
    bool LoadBinary(QFile *file, Visitor &&visitor, const ReadOptions &options = {})
    {
        return visitLoadBinary(file, std::ref(visitor), options);
    }
    using IRGObject::LoadBinary;
    using IRGObject::LoadXml;
    using IRGObject::SetBinaryRepresentation;
    using IRGObject::SetXmlString;
    /// @}

protected: // for derived classes
    /// \name What a derived class writes and reads besides its base
    /// For a class that derives from one of the model's classes, usually from TunerProperties: lists hold objects of
    /// the model's classes only, and copy just their part. These functions do nothing by default and are called for
    /// objects of derived classes alone. They neither check nor propagate anything. The manual's page "Derived classes"
    /// lists what else such a class overrides, with an example.
    /// @{

    /// Writes attributes into the start tag of the object's element, after those of the base.
    virtual void writeOwnAttributes(QXmlStreamWriter &writer) const;
    /// Writes child elements at the end of the object's element.
    virtual void writeOwnElements(QXmlStreamWriter &writer) const;
    /// Writes whole member records, each of them tag, length and payload, after those of the base. The stream has the
    /// byte order, version and precision of the one that is being written.
    virtual void writeOwnRecords(QDataStream &stream) const;
    /// Reads the payload of a record whose tag the base does not know. Returns true after reading exactly `length`
    /// bytes, and false without reading anything if it does not know the tag either; then the record is skipped.
    virtual bool readOwnRecord(QDataStream &stream, quint32 tag, qint32 length);
    /// @}

    /// Calls `visitor` with the problems of the object at `path` and of everything below it. A class that has problems
    /// of its own calls the base's function first. The manual's page "Derived classes" has the details.
    virtual void collectProblems(const ObjectPath &path, const ProblemVisitor &visitor) const;

protected:
    Q_DECL_HIDDEN explicit DataObject(const ClassInfo &info); // for the classes of the model
    DataObject(const DataObject &other);
    DataObject(DataObject &&other) noexcept;
    DataObject &operator=(const DataObject &other) noexcept;
    DataObject &operator=(DataObject &&other) noexcept;

    /// Reads a child element into the member of its name. Validate flag and logger are propagated first: once while
    /// ProcessXml() walks the content, but at every call otherwise, and that visits all children read so far. A class
    /// that walks the content itself therefore takes quadratic time; call IRGObject::ProcessXml() for the walk.
    void ProcessXmlStartElement(QXmlStreamReader &reader) override;
    bool composeXml(QByteArray &utf8) const override;
    void walkContent(QXmlStreamReader &reader, const QString &name) override;
    bool readXml(const std::function<QByteArray()> &document) override;
    bool composeBinary(const QDataStream &form, QByteArray &record) const override;
    int readMembers(const QDataStream &form, const char *members, int size) override;

private:
    friend class ObjectAccess;

    bool visitLoadXml(const QString &path, const ProblemVisitor &visitor, const ReadOptions &options);
    bool visitLoadXml(QFile *file, const ProblemVisitor &visitor, const ReadOptions &options);
    bool visitSetXmlString(const QString &xml, const ProblemVisitor &visitor, const ReadOptions &options);
    bool visitSetXmlDocument(const QByteArray &document, const QString &source, const ProblemVisitor &visitor,
                             const ReadOptions &options);
    bool visitSetBinaryRepresentation(const QByteArray &representation, const ProblemVisitor &visitor,
                                      const ReadOptions &options);
    bool visitLoadBinary(const QString &path, const ProblemVisitor &visitor, const ReadOptions &options);
    bool visitLoadBinary(QFile *file, const ProblemVisitor &visitor, const ReadOptions &options);

    mutable Block *m_block = nullptr;
};

/// Writes an object and everything below it as a tree, one member per line, unset ones with "(not set)". Changes
/// nothing, and detaches or allocates no data.
JOBXML_EXPORT QDebug operator<<(QDebug debug, const DataObject &object);

/// Writes a problem with its path: `Problem(Component "IF" / Node 2: Node: Please set id properly.)`. Line and column,
/// or else the offset, come first if there are any: `Problem(12:8: ...)`, `Problem(offset 120: ...)`.
JOBXML_EXPORT QDebug operator<<(QDebug debug, const Problem &problem);

} // namespace JobXml

Q_DECLARE_TYPEINFO(JobXml::Step, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(JobXml::ObjectPath, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(JobXml::Problem, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(JobXml::ReadOptions, Q_MOVABLE_TYPE);
Q_DECLARE_METATYPE(JobXml::Problem)
