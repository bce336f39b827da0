// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <limits>
#include <memory>

#include <QByteArray>
#include <QString>

#include <reportbase/Environment.h>
#include <reportbase/Export.h>
#include <reportbase/Logger.h>
#include <reportbase/ObjectTypes.h>
#include <reportbase/ReadLimits.h>
#include <reportbase/ReportException.h>

class QDataStream;
class QDateTime;
class QFile;
class QXmlStreamReader;
class QXmlStreamWriter;
/// The base of data models: objects that can be loaded and saved.
namespace REPORTGENERATOR {

class FileForReading;
struct Failure;

/// What all objects of a class have in common. Has to outlive them.
struct ObjectClass
{
    const QString &name; ///< of the objects, unless they have one of their own, and of their XML elements
    qint64 identifier; ///< its low 32 bits lead the binary representation
};

/// The base class of every data model: generic services for objects that read and write themselves as XML and as tagged
/// binary records.
///
/// The order of the virtual operations is a binary contract: other libraries call through these slots, and derived
/// classes continue the table. No version with the same SONAME adds one, here or in JobXml::DataObject; virtualHook()
/// is the slot for what later versions need.
///
/// **Validate flag.** On in a new object. While it is on, setters, readers and writers enforce the model's rules and
/// throw. While it is off, setters take any value, incomplete objects are written as they are, and XML is read with any
/// content. Documents must still be well-formed, and binary data must be intact: records whose lengths do not add up
/// are always refused. SetValidate() is const because the flag is not part of the object's value.
///
/// **Errors.** An error in the content of an object is one of the exceptions in ReportException.h. For an error in the
/// document as such (a file that cannot be opened, XML that is not well-formed, another object's record) the load or
/// save operation returns false; GetErrorString() then returns what, where and why, and the logger, if there is one,
/// has received the same text. Running out of memory is std::bad_alloc, except while reading more than 1 GiB, which may
/// contain a text that no QString of Qt 5 can hold: then the operation returns false.
///
/// Only one thread at a time may use an object.
class REPORTBASE_EXPORT IRGObject
{
public:
    virtual ~IRGObject();

    /// Whether every mandatory member is present.
    virtual bool HasData() const = 0;

    /// Resets every member to its default.
    virtual void Reset() = 0;

    /// Throws for the first missing member. The argument is passed to child objects.
    virtual void Check(bool flag) const = 0;

    /// The same as Check(false).
    virtual void Check() const = 0;

    /// \name "No value"
    /// For each type one value means "no value": NaN for `float` and `double`, the lowest value for `int` and `long
    /// long`, the highest for `unsigned int`, the null string, an invalid QDateTime. IsValid() is false for exactly
    /// that value, and SetInvalid() stores it. Every `bool` is valid; there is no SetInvalid() for `bool` and
    /// QDateTime.
    /// @{
    virtual bool IsValid(float value) const;
    virtual bool IsValid(bool value) const;
    virtual bool IsValid(unsigned int value) const;
    virtual bool IsValid(long long value) const;
    virtual bool IsValid(const QDateTime &value) const;
    virtual bool IsValid(const QString &value) const;
    virtual bool IsValid(double value) const;
    virtual bool IsValid(int value) const;
    virtual void SetInvalid(float &value) const;
    virtual void SetInvalid(unsigned int &value) const;
    virtual void SetInvalid(long long &value) const;
    virtual void SetInvalid(QString &value) const;
    virtual void SetInvalid(double &value) const;
    virtual void SetInvalid(int &value) const;
    /// @}

    /// Writes the object as one XML element; nothing while validating and without data.
    virtual void GetXml(QXmlStreamWriter &writer) const = 0;

    /// Writes the object as one record: `tag` as leading word if `writeTag` is true, the record's length, its member
    /// records. Returns false if nothing was written because the object has no data while validating.
    [[nodiscard]] virtual bool GetBinary(QDataStream &stream, int tag, bool writeTag) const = 0;

    /// Reads the member records of one record whose leading word and length (`length`, in bytes) have been read.
    virtual void SetBinary(QDataStream &stream, int length) = 0;

    /// Sets the validate flag to `validate` and reads the object from a whole XML document.
    ///
    /// Nothing is reset first. Returns true if the root element is this object's and the document is well-formed to its
    /// end, else false with GetErrorString(). Exceptions of the model pass through, unless the document is not
    /// well-formed at that point: then that is the error, and false is returned. Two things are refused because with
    /// them a small document could keep a reader busy for hours or fill its memory: an element with more than 1,024
    /// attributes, and a document type with an internal subset. Entities of an external subset are not known.
    [[nodiscard]] virtual bool SetXmlString(const QString &xml, bool validate);

    /// Reads the object from a binary representation, plain or compressed, big-endian as
    /// GetBinaryRepresentationAsQByteArray() writes it. Refuses, with false and GetErrorString(), another object's
    /// leading word, a length that is negative or exceeds the data, data after the record, and representations that
    /// exceed the default ReadLimits: for instance a compressed form that declares more than 1 GiB or more than 1,100
    /// times its own size. Exceptions of the model pass through.
    [[nodiscard]] virtual bool SetBinaryRepresentation(QByteArray &representation);

    /// The same from a stream, in the stream's own byte order and version. Stops immediately after the record and does
    /// not read what follows. On a sequential device a length that exceeds the data is only detected when the data end.
    [[nodiscard]] virtual bool SetBinaryRepresentation(QDataStream &stream);

    /// Copies what is set in `other`, an object of the same class. The base implementation copies nothing and returns
    /// false.
    [[nodiscard]] virtual bool MergeRGObject(const IRGObject &other);

    /// The type of the object, set at construction or by SetObjectType().
    virtual ObjectTypes GetObjectType();

    /// The name of the object: that of its class and of its XML element.
    virtual const QString &GetObjectName() const;

    /// Reads the object from the XML element at whose start the reader is, and leaves the reader at its end.
    ///
    /// The base implementation walks the content: it calls ProcessXmlStartElement() for every start element and ends at
    /// the end element with the element's own name, or at the end or an error of the document. Text, comments and
    /// processing instructions in between are skipped.
    virtual void ProcessXml(QXmlStreamReader &reader);

    /// The object as an XML document: declaration, two-space indentation, a final newline. Null if the object writes
    /// nothing, and null with GetErrorString() if a text contains a character that XML cannot carry.
    [[nodiscard]] virtual QString GetXmlString();

    /// Writes the binary representation: the low 32 bits of the class identifier as leading word, the length, the
    /// member records. In the stream's own byte order and version; nothing if the object writes nothing or throws. The
    /// stream's device need not be random access.
    virtual void GetBinaryRepresentation(QDataStream &stream) const;

    /// The binary representation in big-endian byte order and the format of Qt 5.15; empty if the object writes
    /// nothing.
    [[nodiscard]] virtual QByteArray GetBinaryRepresentationAsQByteArray();

    /// Writes the compressed representation: a leading word of its own, the length, and the plain representation
    /// through qCompress() at `level` (0 to 9; -1 and every other value is zlib's default). Writes nothing, with
    /// GetErrorString(), if the plain representation exceeds the 1 GiB that readers accept.
    virtual void GetCompressedBinaryRepresentation(QDataStream &stream, int level) const;

    /// The same as bytes, with the plain representation as in GetBinaryRepresentationAsQByteArray().
    [[nodiscard]] virtual QByteArray GetCompressedBinaryRepresentationAsQByteArray(int level);

    /// Reads the object from an XML file, like SetXmlString() but without changing the validate flag.
    [[nodiscard]] virtual bool LoadXml(const QString &path);

    /// The same from a file object. A closed file is opened and closed again; an open one is read from its present
    /// position and stays open.
    [[nodiscard]] virtual bool LoadXml(QFile *file);

    /// Reads the object from a file with a binary representation; see SetBinaryRepresentation(QByteArray &) for what is
    /// refused and LoadXml(QFile *) for how the file is opened.
    [[nodiscard]] virtual bool LoadBinary(QFile *file);

    /// Writes exactly the UTF-8 of GetXmlString() to a file, atomically: either the whole new document is there or the
    /// old file is unchanged; for links and targets that are not files, see SaveFile(). Returns false with
    /// GetErrorString() if the file cannot be written, if the object writes nothing, or if it contains a character that
    /// XML cannot carry.
    [[nodiscard]] virtual bool SaveXml(const QString &path) const;

    /// Whether the object enforces the rules of its model; on in a new object. Classes with child objects propagate it
    /// to them.
    virtual void SetValidate(bool validate) const;
    /// The flag that SetValidate() set last.
    virtual bool GetValidate() const;
    /// The logger that receives the texts of failed load and save operations; none in a new object. Classes with child
    /// objects propagate it to them.
    virtual void SetLogger(std::shared_ptr<Logger> logger) const;
    /// Removes the logger only from this object.
    virtual void ResetLogger() const;

    /// The version of the documents that this object writes; the base implementation has none and returns a null
    /// string.
    virtual const QString &GetVersion() const;

    /// Sets the type of the object; a class may ignore the call.
    virtual void SetObjectType(ObjectTypes type);

    /// The logger that SetLogger() has set; null if there is none.
    std::shared_ptr<Logger> GetLogger() const;

    /// \name No null pointers
    /// A null pointer is not a text; QString() is the null text.
    /// @{
    bool IsValid(std::nullptr_t) const = delete;
    bool SetXmlString(std::nullptr_t, bool) = delete;
    bool SaveXml(std::nullptr_t) const = delete;
    bool SaveBinary(std::nullptr_t) const = delete;
    bool SaveCompressedBinary(std::nullptr_t, int) const = delete;
    /// @}

    /// The error of the last load or save operation of this object; null after one that succeeded or threw an exception
    /// of the model. The form is `SOURCE:LINE:COLUMN: why` for the content of an XML document and `SOURCE: why` for
    /// everything else. SOURCE is the path of the file as the caller passed it, or `XML text` or `binary data`. Lines
    /// and columns count from 1; the column is that of the last character read when the error was detected.
    QString GetErrorString() const;

    /// The place of that error: the source, and for the content of an XML document line and column. It has neither an
    /// offset nor a path. For the place of an exception see ReportException::GetLocation().
    ErrorLocation GetErrorLocation() const;

    /// Writes the binary representation to a file, atomically like SaveXml().
    [[nodiscard]] bool SaveBinary(const QString &path) const;
    /// The same with the compressed one; `level` as in GetCompressedBinaryRepresentation().
    [[nodiscard]] bool SaveCompressedBinary(const QString &path, int level) const;

    /// \name Conveniences
    /// The same operations with other arguments. Those without limits call the virtual operation of the same name,
    /// which a class may override; those with limits do not. A class that overrides one of the virtual operations hides
    /// these; `using IRGObject::SetBinaryRepresentation;` makes them visible again.
    /// @{
    [[nodiscard]] bool SetBinaryRepresentation(const QByteArray &representation);
    [[nodiscard]] bool SetBinaryRepresentation(const QByteArray &representation, const ReadLimits &limits);
    [[nodiscard]] bool SetBinaryRepresentation(QDataStream &stream, const ReadLimits &limits);
    bool SetBinaryRepresentation(const char *) = delete; // a C string ends at the first zero byte
    [[nodiscard]] bool LoadBinary(const QString &path);
    [[nodiscard]] bool LoadBinary(const QString &path, const ReadLimits &limits);
    [[nodiscard]] bool LoadBinary(QFile *file, const ReadLimits &limits);
    [[nodiscard]] QString GetXmlString() const;
    [[nodiscard]] QByteArray GetBinaryRepresentationAsQByteArray() const;
    [[nodiscard]] QByteArray GetCompressedBinaryRepresentationAsQByteArray(int level) const;
    /// @}

    /// Skips the payload of an unknown record: exactly `length` bytes, or the remaining ones if there are fewer;
    /// nothing for a negative length. Returns the number of skipped bytes. `tag` is not used.
    int skipCurrentElement(QDataStream &stream, int length, int tag) const;

protected:
    /// Sets the name of the object, which replaces that of its class. A copy of the object has the name of its class.
    virtual void SetObjectName(const QString &name);

    /// Reads one child element, whose start tag the reader has just read.
    virtual void ProcessXmlStartElement(QXmlStreamReader &reader) = 0;

    /// Composes the document that GetXmlString() and SaveXml() write, faster than by GetXml(). Its slot is after those
    /// of the binary contract.
    ///
    /// Composes the same bytes, null if nothing is written, and throws the same exceptions. Returns false if only
    /// GetXml() can write the document; the base implementation always does.
    virtual bool composeXml(QByteArray &utf8) const;

    /// Reads the content of the element `name`, whose start tag the reader has just read, for IRGObject::ProcessXml().
    /// Follows composeXml(). Classes that prepare their objects for reading do it here, because derived classes may
    /// call IRGObject::ProcessXml() from a ProcessXml() of their own.
    virtual void walkContent(QXmlStreamReader &reader, const QString &name);

    /// Reads the object from a document in memory, faster than by ProcessXml(), for SetXmlString() and LoadXml().
    /// Follows walkContent(). `document` returns the document as UTF-8, null if it has none.
    ///
    /// Returns false, before anything is changed, if the document can only be read by ProcessXml(), or has to be
    /// refused; the base implementation always does, without calling `document`. Throws what ProcessXml() throws.
    virtual bool readXml(const std::function<QByteArray()> &document);

    /// Composes the plain representation, faster than by GetBinary(), in the byte order and version of `form`, which is
    /// not written to.
    ///
    /// Composes the same bytes, null if nothing is written, and throws the same exceptions. Returns false if only
    /// GetBinary() can write the record; the base implementation always does.
    virtual bool composeBinary(const QDataStream &form, QByteArray &record) const;

    /// Reads the member records of a representation, `size` bytes in the byte order and version of `form`, faster than
    /// by SetBinary().
    ///
    /// Leaves the object in the same state, and throws the same exceptions. Returns how many bytes it has read. Returns
    /// -1 and reads nothing if only SetBinary() can read them; the base implementation always does.
    virtual int readMembers(const QDataStream &form, const char *members, int size);

    /// For virtual operations of later versions, which the number `operation` selects; `data` has their arguments and
    /// results. No operation exists yet. An override passes the numbers that it does not know to its base class.
    virtual void virtualHook(int operation, void *data);

    /// \name LoadXml() and SetXmlString()
    /// The same for documents of up to `largestSize` bytes (of the text as UTF-8), without changing the validate flag.
    /// They do not call the virtual operations of these names. They are for base classes that offer other forms of
    /// reading; a class that overrides LoadXml() or SetXmlString() calls those of its base.
    /// @{
    bool readXmlFile(QFile *file, qint64 largestSize = std::numeric_limits<qint64>::max());
    bool readXmlText(const QString &xml, qint64 largestSize = std::numeric_limits<qint64>::max());
    /// Reads a document in memory, in any encoding, as readXmlFile() reads one in a file. `source` is its name in
    /// GetErrorString().
    bool readXmlBytes(const QByteArray &document, const QString &source,
                      qint64 largestSize = std::numeric_limits<qint64>::max());
    /// @}

protected:
    /// An object without name and identifier.
    IRGObject();
    /// An object of this type, without name and identifier.
    explicit IRGObject(ObjectTypes type);
    /// An object of a class; it validates and has no logger.
    explicit IRGObject(const ObjectClass &objectClass) noexcept
        : m_classIdentifier(objectClass.identifier), m_class(&objectClass),
          m_environment(EnvironmentPointer::plain(true))
    {
    }
    /// An object of a class with this environment.
    IRGObject(const ObjectClass &objectClass, EnvironmentPointer &&environment) noexcept
        : m_classIdentifier(objectClass.identifier), m_class(&objectClass), m_environment(std::move(environment))
    {
    }
    IRGObject(const IRGObject &) = delete; // the derived class decides what a copy contains
    IRGObject &operator=(const IRGObject &) = delete;

    /// Calls ProcessXmlStartElement() for each start element, up to the end of the element `name`.
    void processContent(QXmlStreamReader &reader, const QString &name);

    /// Returns the text of the element whose start tag the reader has just read, without the text of nested elements.
    /// Reads the end tag of the element.
    QString GetTextValue(QXmlStreamReader &reader);

    /// The numeric identifier of the object's class, with which copies start. Its low 32 bits lead a representation.
    qint64 m_classIdentifier;

    /// The class for which the object was created.
    const ObjectClass &objectClass() const noexcept { return *m_class; }

    /// \name Validate flag and logger
    /// The stored flag and logger, even if a derived class overrides GetValidate(). For classes that propagate
    /// both to child objects in one walk; all others call SetValidate() and SetLogger() of the children.
    /// @{
    const EnvironmentPointer &environment() const noexcept { return m_environment; }
    /// The environment of a copy of the object, which has its type and its validate flag, but neither its logger nor a
    /// name of its own.
    EnvironmentPointer environmentForCopy() const;
    /// Stores the flag and the logger of another object. Shares the environment unless the object has a type, a name of
    /// its own or an error to keep.
    void setEnvironment(const EnvironmentPointer &environment) const
    {
        if (m_environment != environment)
            replaceEnvironment(environment);
    }
    /// Stores a flag and a logger, sharing `shared` if it has both.
    void changeEnvironment(bool validate, const std::shared_ptr<Logger> &logger,
                           const EnvironmentPointer &shared) const;
    /// @}

private:
    void replaceEnvironment(const EnvironmentPointer &environment) const;
    template <class Change>
    void changeState(Change change) const;
    Q_DECL_HIDDEN void clearError() const;
    Q_DECL_HIDDEN bool fail(const Failure &failure) const; // keeps and logs the text; always false
    Q_DECL_HIDDEN bool save(const QString &path, const QByteArray &content) const;
    Q_DECL_HIDDEN bool readXmlFile(QFile &file, const FileForReading &access, qint64 largestSize);
    Q_DECL_HIDDEN Failure readDocument(QXmlStreamReader &reader, const QString &source);
    Q_DECL_HIDDEN QString readRepresentation(QDataStream &stream, bool toTheEndOfTheData,
                                             const ReadLimits &limits); // why it failed, or null
    Q_DECL_HIDDEN QString readMembersIn(const QDataStream &form, const QByteArray &container,
                                        qint64 begin); // the same, for the bytes from there on
    Q_DECL_HIDDEN QByteArray composeRepresentation(const QDataStream &form) const; // empty if nothing is written

    const ObjectClass *m_class;
    mutable EnvironmentPointer m_environment;
};

} // namespace REPORTGENERATOR
