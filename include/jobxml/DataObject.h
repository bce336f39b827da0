// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <optional>

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

/// One step of a path: from an object to one of its children.
struct Step
{
    QString member; ///< the member that contains the child; valid after the library was unloaded, too
    int index; ///< the child's index in the list, from 0; -1 if the member is not a list
};

/// The path from one object to another one below it. Both lists have an entry for each step.
struct ObjectPath
{
    QStringList path; ///< for people: the objects from the root's child down, for instance `Component "Preselector"`
    QVector<Step> steps; ///< for programs

    /// The path to a child of the object at the end of this path. `label` is what people call the child.
    ObjectPath below(const QString &label, const Step &step) const
    {
        return {path + QStringList{label}, steps + QVector<Step>{step}};
    }
    ObjectPath below(std::nullptr_t, const Step &step) const = delete;
};

/// One reason why a writer would refuse a document, and the path to the object concerned.
struct Problem : ObjectPath
{
    QString message; ///< why: the whole text of the exception that the model would throw, or the library's own
    QString member{}; ///< the member of that object; null if it is not a single one
    bool xmlOnly = false; ///< whether only XML is refused, with or without validation: it cannot carry a character
};

/// What receives problems as they are found.
using ProblemVisitor = std::function<void(const Problem &)>;

/// The operations that every class of the model has, each of them once.
///
/// **Members.** A member always holds a value, its default until something is stored, and has a set flag. For a member
/// `X` the classes offer `GetX`, `SetX`, `IsXSet`, `ResetX`, `GetDefaultX` and `IsValidX`, and `AppendX` for lists:
///  - `GetX()` returns the value and leaves the flag alone. The non-const getter of a child object, a list or an
///    alternative returns a reference to modify and sets the flag; `std::as_const(object).GetX()` reads without
///    marking. Do not assign the object to another one while you hold such a reference, see Sharing.
///  - `SetX(value)` stores the value and sets the flag. A null string is refused while validating: OutOfRangeException
///    ": Please set X properly (origin: Setter)." after the object's name, and nothing is stored. A list is stored as
///    it is given: its items are not checked, and keep their validate flags and loggers.
///  - `AppendX(item)` appends a copy, which has the item's validate flag and no logger, and sets the flag. An item
///    without data is refused while validating: IncompleteDefinitionException
///    ": Tried to append not completely defined or invalid item X.".
///  - `SetX(nullptr)` and `AppendX({})` do not compile: a null pointer is not a text, and a pair of braces would be an
///    empty item. Write QString() for the null text and name the class of an empty item.
///  - `IsXSet()` is the flag; `ResetX()` clears it and puts the default back.
///
/// **References.** A reference that a getter returned holds until the object is next used after it was copied, assigned
/// or modified: such a use may give the object data of its own. Reading into the object counts as modifying, even if it
/// fails. A list that was copied from a getter shares its items
/// with the object until the object is next used, or the list is modified; do so before another thread gets it.
///
/// **Text members** are absent when null; an empty text is a value.
///
/// **Sharing.** Assignment shares the data of both objects until one of them is next used; a copy constructed object
/// has its own at once. Two objects may therefore be used by two threads, one each; one object by one thread at a time.
/// A reference that a getter returned before the assignment refers to the shared data: writing through it changes both
/// objects. While you hold one, copy construct instead: `T b(a)` or `b = T(a)`.
///
/// **Validate flag and logger.** Check(), GetXml(), GetBinary(), SetBinary(), reading XML as soon as it meets a child
/// element, and the creation of an object's data propagate the object's own flag and logger to its whole tree. Setters,
/// assignment and moves do not. SetValidate() and SetLogger() reach the children that exist at that moment: a child
/// that is appended or assigned later keeps its own flag until the next of these operations, and a copy of a child
/// keeps the flag that the child has.
///
/// **Equality.** A member is equal if it is set in both objects to equal values, or set in neither; the lists of
/// ValueStringList, ValueSelection, Node and Component go by the right side's flag alone: an unset one there equals an
/// empty one here. Numbers are compared exactly, so a NaN does not even equal itself.
///
/// **Hashing.** Classes whose equality is symmetric have a qHash(). Those whose lists go by the right side's flag, and
/// the ValueItem and the document that hold them, have none: `a == b` does not imply `b == a`, so no hash can agree
/// with it.
///
/// **Failures** are exceptions only, see reportbase/ReportException.h. Whatever was stored before one stays.
///
/// **New objects.** `fromXml(text)` and `fromBinary(bytes)` of every class return a new object that was read from a
/// whole XML document or a binary representation, or nothing; they throw nothing but std::bad_alloc. The object
/// validates while it is read and afterwards. Where reading fails, `error` receives the reason: the text of
/// GetErrorString(), or that of the exception of the model; it is null where reading succeeds. Like every reader they
/// do not report what is missing: call Check() or GetProblems(). To read without validation, call SetXmlString() of an
/// object, or SetValidate(false) and SetBinaryRepresentation(). A class derived from one of the model inherits them,
/// and they return the model's class.
class JOBXML_EXPORT DataObject : public REPORTGENERATOR::IRGObject
{
public:
    ~DataObject() override;

    /// Whether the object has a block of data at all. A new object and a moved-from one have none; `GetX`, `SetX`,
    /// `AppendX`, Check(), ResetToDefault() and every reader and writer create it. `IsXSet`, `ResetX`, `GetDefaultX`,
    /// `IsValidX`, HasData(), AnyData() and Reset() do not.
    bool IsInitialized() const noexcept;

    /// Whether every mandatory member is present: a text that is not null, a list with at least one item, any other
    /// member that is set.
    bool HasData() const override;

    /// If the object is initialized: clears every set flag and puts every member back to its default.
    void Reset() override;

    /// Throws OutOfRangeException ": Please set X properly." behind the object's name for the first member that is
    /// mandatory and not set, or set to something that it must not hold; a list is asked for first, then each of its
    /// items, then the other members in the order of the class. What a child throws passes through; a ValueItem throws
    /// IncompleteDefinitionException. `flag` is handed to the children unchanged; no class reads it. Hands validate
    /// flag and logger down. Leaves the object initialized.
    void Check(bool flag) const override;

    /// The same as Check(false).
    void Check() const override;

    /// Writes the object as one XML element. While validating, Check() comes first and an object without data writes
    /// nothing; an item of a list that passed its check but has no data throws IncompleteDefinitionException
    /// "Parameters for Node are not set properly in 'Component'." (the item's and the object's name), and what was
    /// written before stays. While not validating the object is written as it stands.
    void GetXml(QXmlStreamWriter &writer) const override;

    /// Writes the object as one tagged record in the stream's byte order and version, under the same rules as GetXml(),
    /// but for items without data: they are counted and leave nothing else, so the record cannot be read back.
    /// The record is written in one piece when it is complete, so a sequential device will do.
    [[nodiscard]] bool GetBinary(QDataStream &stream, int tag, bool writeTag) const override;

    /// Reads the member records of one record of `length` bytes. Members that the record does not hold stay as they
    /// are, items of lists join those present, unknown records are skipped.
    ///
    /// Throws BinaryParsingException "::SetBinary(...): Length error occurred during processing of binary
    /// representation" behind the object's name if the lengths do not add up to exactly `length`, if `length` is
    /// negative, or if the stream ends early.
    void SetBinary(QDataStream &stream, int length) override;

    /// Reads the object from the XML element on whose start the reader stands. Nothing is reset first: what the
    /// element does not mention stays, items of lists join those present. Attributes are read before child elements, so
    /// a child element wins over an attribute of the same name. What nobody knows is passed over, except in the
    /// document (see TunerProperties). An empty text for a boolean throws InvalidXmlException "Please set a value or a
    /// default for the boolean 'X' in 'Y'." (the member's and the object's name) while validating, and is false
    /// otherwise. Names count without their prefixes, which need not be declared inside the element: the reader does
    /// not process namespaces there.
    void ProcessXml(QXmlStreamReader &reader) override;

    /// Takes over what is set in `other`, an object of the same class: its members replace those here, items of its
    /// lists are appended, child objects are merged, a ValueItem takes the selected alternative; all of this under the
    /// rules of the setters. What is not set in `other` stays as it is. Returns false, and changes nothing, if `other`
    /// has another class identifier; merging an object with itself changes nothing.
    [[nodiscard]] bool MergeRGObject(const REPORTGENERATOR::IRGObject &other) override;

    void SetValidate(bool validate) const override;
    void SetLogger(std::shared_ptr<REPORTGENERATOR::Logger> logger) const override;

    /// Does nothing: the type is given at construction.
    void SetObjectType(REPORTGENERATOR::ObjectTypes type) override;

    /// Resets the object as Reset() does and leaves it initialized.
    virtual void ResetToDefault();

    /// Whether at least one member is present, in the sense of HasData().
    virtual bool AnyData() const;

    /// Writes the untagged snapshot: the set flags, then the values in the stream's own forms. Checks nothing, throws
    /// nothing of its own and hands nothing down. Written in one piece, so a sequential device will do.
    virtual void GetVersionSpecificBinaryWithoutValidation(QDataStream &stream) const;

    /// Reads the untagged snapshot. Values are stored without their setters; items of lists pass the append rule. Stops
    /// at the first read that the stream cannot serve, and keeps what was read until then.
    virtual void SetVersionSpecificBinaryWithoutValidation(QDataStream &stream);

    /// Returns every reason why Check() or a validating writer (GetXml(), GetXmlString(), SaveXml(), GetBinary(),
    /// SaveBinary(), the compressed forms and the others) would refuse this object, whatever its validate flag is;
    /// empty if there is none. The steps of a problem lead to the object that has to be changed.
    ///
    /// Besides what Check() throws, these are: a mandatory list that is set but empty, for which nothing is written,
    /// and characters that XML cannot carry (Problem::xmlOnly). Snapshots are never refused. Sizes are not considered:
    /// documents and records are limited to 2 GiB, beyond which writing throws std::bad_alloc, and compressed ones to
    /// 1 GiB of records. For an object of a derived class, Check() and HasData() are called once nothing else is found,
    /// and GetXml() then shows whether XML can carry what the class writes.
    /// An item with an empty list is refused by XML alone, but no problem of XML alone: tagged records count it and do
    /// not hold it, so they cannot be read back.
    ///
    /// Like Check(), leaves the tree initialized.
    [[nodiscard]] QVector<Problem> GetProblems() const;

    /// Calls `visitor` with each problem that GetProblems() would return, in the same order, and keeps none: for
    /// documents from elsewhere, which may have a problem for every few bytes. Exceptions of the visitor pass through.
    /// The visitor must not change the document.
    void VisitProblems(const ProblemVisitor &visitor) const;

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

    /// Calls `visitor` with the problems of the object at `path` and of everything below it. Call the base's first.
    virtual void collectProblems(const ObjectPath &path, const ProblemVisitor &visitor) const;
    /// @}

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

private:
    friend class ObjectAccess;

    mutable Block *m_block = nullptr;
};

/// Writes an object and all below it as a tree, a member a line, unset ones with "(not set)". Changes nothing, no
/// object gets data of its own by it.
JOBXML_EXPORT QDebug operator<<(QDebug debug, const DataObject &object);

/// Writes a problem with its path: `Problem(Component "IF" / Node 2: Node: Please set id properly.)`.
JOBXML_EXPORT QDebug operator<<(QDebug debug, const Problem &problem);

} // namespace JobXml
