// SPDX-License-Identifier: MIT
#include "Aftermath.h"

#include <algorithm>

#include "Encodings.h"
#include "ExceptionText.h"

namespace Damage {

using JobXml::DataObject;

namespace {

QByteArray written(const DataObject &object, Encoding encoding)
{
    switch (encoding) {
    case Encoding::Record:
        return recordOf(object);
    case Encoding::Snapshot:
        return snapshotOf(object);
    default:
        return xmlOf(object).toUtf8();
    }
}

void read(DataObject &object, const QByteArray &bytes, Encoding encoding)
{
    switch (encoding) {
    case Encoding::Record:
        readRecord(object, bytes);
        break;
    case Encoding::Snapshot:
        readSnapshot(object, bytes);
        break;
    default:
        readXml(object, QString::fromUtf8(bytes));
    }
}

// The exception that reading must throw; null if none.
QString read(Expected &object, const QByteArray &bytes, Encoding encoding)
{
    switch (encoding) {
    case Encoding::Record:
        return readRecord(object, bytes).thrown;
    case Encoding::Snapshot:
        return readSnapshot(object, bytes).thrown;
    default:
        return readXml(object, XmlTokens::ofText(QString::fromUtf8(bytes))).thrown;
    }
}

// A NaN does not equal itself, so an object with one does not equal its copy.
bool holdsNaN(const QString &lines)
{
    return lines.contains(QLatin1String(" = nan"));
}

// Whether writing without validation loses something. An empty list of the object itself is read back.
bool isIncomplete(const DataObject &object)
{
    const QVector<JobXml::Problem> problems = object.GetProblems();
    return std::any_of(problems.begin(), problems.end(), [](const JobXml::Problem &problem) {
        return !problem.xmlOnly && !problem.message.contains(QLatin1String(" is set but empty"));
    });
}

} // namespace

Aftermath::Aftermath(const ClassUnderTest &type, const DataObject &good)
    : m_type(type), m_good(type.copied(good)), m_record(written(good, Encoding::Record)),
      m_snapshot(written(good, Encoding::Snapshot)), m_xml(written(good, Encoding::Xml)),
      m_tokens(XmlTokens::ofBytes(m_xml))
{
}

const QByteArray &Aftermath::good(Encoding encoding) const
{
    switch (encoding) {
    case Encoding::Record:
        return m_record;
    case Encoding::Snapshot:
        return m_snapshot;
    default:
        return m_xml;
    }
}

void Aftermath::readGood(Expected &object, Encoding encoding) const
{
    if (encoding == Encoding::Xml)
        readXml(object, m_tokens);
    else
        read(object, good(encoding), encoding);
}

QString Aftermath::wrongWith(DataObject &object, const Expected *state, Encoding encoding) const
{
    QString wrong = wrongCopies(object);
    if (wrong.isNull())
        wrong = wrongWriting(object, encoding);
    if (wrong.isNull())
        wrong = wrongRewriting(object, encoding);
    if (wrong.isNull())
        wrong = wrongReading(object, state, encoding);
    return wrong;
}

QString Aftermath::wrongCopies(const DataObject &object) const
{
    const QString lines = listing(object);
    const auto copy = m_type.copied(object);
    const auto assigned = m_type.copied(*m_good);
    m_type.assign(*assigned, object);
    if (listing(*assigned) != lines)
        return QStringLiteral("an object that it is assigned to differs");
    assigned->Reset();
    if (listing(object) != lines)
        return QStringLiteral("resetting an object that it was assigned to changed it");
    if (holdsNaN(lines) ? listing(*copy) != lines : !m_type.equal(*copy, object))
        return QStringLiteral("a copy differs");

    m_type.assign(*copy, *m_good);
    return m_type.equal(*copy, *m_good) ? QString() : QStringLiteral("it cannot be assigned to");
}

// A validating writer refuses an object with a problem, and the exception names it.
QString Aftermath::wrongWriting(const DataObject &object, Encoding encoding) const
{
    if (encoding == Encoding::Snapshot)
        return QString(); // written without checks
    QStringList problems;
    for (const JobXml::Problem &problem : object.GetProblems()) {
        if (!problem.xmlOnly) // a QXmlStreamWriter drops such a character, and throws nothing
            problems += problem.message;
    }
    QByteArray bytes;
    const QString thrown = thrownBy([&] { bytes = written(object, encoding); });
    if (!object.GetValidate())
        return thrown.isNull() ? QString() : QStringLiteral("it is not written, while not validating: ") + thrown;
    if (!thrown.isNull() && !problems.contains(thrown.section(QStringLiteral("Exception: "), 1)))
        return QStringLiteral("it is not written for a reason that is not among the problems: ") + thrown;
    if (thrown.isNull() && !problems.isEmpty() && encoding == Encoding::Xml && !bytes.isEmpty())
        return QStringLiteral("it is written although: ") + problems.first();
    return QString();
}

QString Aftermath::wrongRewriting(const DataObject &object, Encoding encoding) const
{
    const auto original = m_type.copied(object);
    original->SetValidate(false);
    const QByteArray bytes = written(*original, encoding);

    const auto reread = m_type.make();
    reread->SetValidate(false);
    const QString thrown = thrownBy([&] { read(*reread, bytes, encoding); });
    Expected wanted(m_type.staticName(), false);
    if (!thrown.isNull() || !read(wanted, bytes, encoding).isNull())
        return QStringLiteral("what it writes is refused: ") + thrown;
    const QString lines = listing(*reread);
    if (lines != wanted.listing())
        return QStringLiteral("what it writes is read wrong: ") + difference(lines, wanted.listing());
    // Only a complete object is read back unchanged. In an incomplete one, unset numbers are written, null texts are
    // read back empty, and so on.
    if (isIncomplete(object) || holdsNaN(lines))
        return QString();
    if (!m_type.equal(*reread, object))
        return QStringLiteral("what it writes is not equal: ") + difference(lines, listing(object));
    return written(*reread, encoding) == bytes ? QString()
                                               : QStringLiteral("what it writes changes when written again");
}

QString Aftermath::wrongReading(DataObject &object, const Expected *state, Encoding encoding) const
{
    if (state) {
        const auto joined = m_type.copied(object);
        const QString thrown = thrownBy([&] { read(*joined, good(encoding), encoding); });
        if (!thrown.isNull())
            return QStringLiteral("reading again without reset throws ") + thrown;
        Expected wanted(*state);
        readGood(wanted, encoding);
        const QString wrong = difference(listing(*joined), wanted.listing());
        if (!wrong.isNull())
            return QStringLiteral("reading again without reset: ") + wrong;
    }

    object.Reset();
    if (object.AnyData())
        return QStringLiteral("it has data after Reset()");
    const QString thrown = thrownBy([&] { read(object, good(encoding), encoding); });
    if (!thrown.isNull())
        return QStringLiteral("reading again after Reset() throws ") + thrown;
    if (!m_type.equal(object, *m_good)) // m_good has every member set, so all are compared
        return QStringLiteral("reading again after Reset(): ") + difference(listing(object), listing(*m_good));
    return written(object, encoding) == good(encoding)
        ? QString()
        : QStringLiteral("written after all that, it is not what was read");
}

} // namespace Damage
