// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QStringList>
#include <QVariant>

#include "Rules.h"
#include "XmlTokens.h"

namespace JobXml {
class DataObject;
}

namespace Damage {

/// A length or count word of a record, and the class that reads it.
struct Word
{
    enum What { RecordLength, ItemLength, ObjectLength, MemberLength, TextLength, Count };

    What what;
    int offset;
    qint32 value;
    QString owner; ///< the class whose record holds the word
    QString member; ///< the member it belongs to; null for the record's own length
    Kind kind; ///< of that member
};

/// Builds a listing, in one text, since there are hundreds of thousands of listings.
class Lines
{
public:
    void value(QLatin1String name, const QVariant &value, bool set);
    void list(QLatin1String name, int size, bool set);
    /// Adds a line for an object. The lines that follow belong to the object, until leave().
    void enter(QLatin1String name, int index = -1, bool set = true);
    void leave();

    QString text;

private:
    void end(bool set);

    QString m_where;
    QVector<int> m_outer; // the earlier lengths of m_where
};

/// The expected state of an object. It follows from the formats and the list of the model, without the library's
/// readers.
class Expected
{
public:
    explicit Expected(const QString &className, bool validate = true);

    struct MemberState
    {
        QVariant value; // as visit() shows it
        bool set = false;
        QVector<Expected> objects; // items, the child, the alternative
        QVariantList modes;
    };

    const ClassRule *rule;
    bool validate;
    bool touched = false; // visit() shows no members of an object that nothing has been read into
    int choice = 255;
    QString versionLoaded;
    QVector<MemberState> members; // by bit

    MemberState &of(const MemberRule &member) { return members[member.bit]; }
    const MemberState &of(const MemberRule &member) const { return members.at(member.bit); }
    Expected &child(const MemberRule &member); // made if there is none yet
    bool is(const char *className) const { return QLatin1String(rule->name) == QLatin1String(className); }

    bool hasData() const;
    void reset();
    bool isOlder() const;
    void setLoadedVersion(const QString &version);

    // Follow the rules of the setters, and throw a Refusal.
    void set(const MemberRule &member, const QVariant &value);
    void append(const MemberRule &member, const Expected &item);
    void appendMode(const MemberRule &member, int mode);

    /// The expected state, a line for each member, item, child and alternative.
    QString listing() const;

private:
    void list(Lines &lines) const;
};

/// The exception that the library must throw, as thrownBy() returns it.
struct Refusal
{
    QString text;
};

QString lengthErrorOf(const QString &className);

/// The actual state of an object, in the same lines.
QString listing(const JobXml::DataObject &object);

/// The first line in which two listings differ; null if they are the same.
QString difference(const QString &found, const QString &wanted);

struct Outcome
{
    QString thrown; ///< as thrownBy() returns it; null if nothing
    int read = 0; ///< the number of bytes read
};

/// Reads a record without leading word. Appends its length and count words to `words` if there is such a list.
Outcome readRecord(Expected &object, const QByteArray &record, QVector<Word> *words = nullptr);

Outcome readSnapshot(Expected &object, const QByteArray &snapshot);

struct XmlOutcome
{
    QString thrown;
    bool taken = false; ///< the return value of the reader, if nothing is thrown
    QString error; ///< the error string, without the source
    bool truncated = false; ///< the text is not well formed, and was read up to the error
};

XmlOutcome readXml(Expected &object, const XmlTokens &tokens);

} // namespace Damage
