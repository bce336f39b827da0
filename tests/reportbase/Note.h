// SPDX-License-Identifier: MIT
#pragma once

#include <QBuffer>
#include <QDataStream>
#include <QFile>
#include <QStringList>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <reportbase/IRGObject.h>

/// The smallest object to test the base's services: one text, which must not be null while validating.
///
/// XML:     <Note title="..."><text>...</text></Note>, with "title" only if it is set; "bad" as a child element throws
/// binary:  members of 1 tag byte, here always 'T', and the text as a QByteArray
class Note : public REPORTGENERATOR::IRGObject
{
public:
    explicit Note(const QString &noteText = QString()) : text(noteText)
    {
        SetObjectName(QStringLiteral("Note"));
        m_classIdentifier = 0x1A2B3C4D9E8F7061; // more than the 32 bits that lead a representation
    }
    explicit Note(REPORTGENERATOR::ObjectTypes type) : IRGObject(type) { }

    QString text;
    QString title;
    QStringList metElements; ///< every element the base's loop reported
    bool readsChildren = true;
    bool readsPastItsRecord = false;
    bool leavesItsText = false;
    bool writesOnlyTheTitle = false;
    int readCalls = 0;

    bool HasData() const override { return !text.isNull(); }
    void Reset() override { text = title = QString(); }
    void Check(bool) const override
    {
        if (text == QLatin1String("half"))
            throw IncompleteDefinitionException(QStringLiteral("Note: half a note"));
    }
    void Check() const override { Check(false); }

    void GetXml(QXmlStreamWriter &writer) const override
    {
        if (GetValidate() && !HasData())
            return;
        writer.writeStartElement(GetObjectName());
        if (!title.isNull())
            writer.writeAttribute(QStringLiteral("title"), title);
        if (!writesOnlyTheTitle)
            writer.writeTextElement(QStringLiteral("text"), text);
        Check(); // late on purpose: data written before must be discarded
        writer.writeEndElement();
    }

    bool GetBinary(QDataStream &stream, int tag, bool writeTag) const override
    {
        if (GetValidate() && !HasData())
            return false;
        const QByteArray utf8 = text.toUtf8();
        if (writeTag)
            stream << qint32(tag);
        stream << qint32(0);
        const qint64 begin = stream.device()->pos();
        stream << quint8('T') << utf8;
        Check();
        const qint64 end = stream.device()->pos();
        stream.device()->seek(begin - 4);
        stream << qint32(end - begin);
        stream.device()->seek(end);
        return true;
    }

    void SetBinary(QDataStream &stream, int length) override
    {
        ++readCalls;
        if (length == 0)
            return;
        quint8 tag = 0;
        QByteArray utf8;
        stream >> tag;
        if (tag != 'T')
            throw BinaryParsingException(QStringLiteral("Note: an unknown member"));
        if (!leavesItsText)
            stream >> utf8;
        if (readsPastItsRecord)
            stream >> tag;
        text = QString::fromUtf8(utf8);
    }

    void ProcessXml(QXmlStreamReader &reader) override
    {
        ++readCalls;
        const QXmlStreamAttributes attributes = reader.attributes();
        if (attributes.hasAttribute(QLatin1String("title")))
            title = attributes.value(QLatin1String("title")).toString();
        IRGObject::ProcessXml(reader);
    }

    using IRGObject::GetTextValue;
    using IRGObject::SetObjectName;

protected:
    void ProcessXmlStartElement(QXmlStreamReader &reader) override
    {
        const QString name = reader.name().toString();
        metElements << name;
        if (!readsChildren)
            return;
        if (name == QLatin1String("bad"))
            throw InvalidXmlException(QStringLiteral("Note: a bad child"));
        if (name == QLatin1String("whole")) {
            if (GetTextValue(reader) != QLatin1String("all of it"))
                throw InvalidXmlException(QStringLiteral("Note: half a whole"));
        } else if (name == QLatin1String("text")) {
            text = GetTextValue(reader);
        } else {
            reader.skipCurrentElement();
        }
    }
};

/// Stores the messages.
class RecordingLogger : public REPORTGENERATOR::Logger
{
public:
    void Log(Severity severity, const QString &message) override
    {
        static const char *const names[] = {"error: ", "warning: ", "information: "};
        lines << QLatin1String(names[int(severity)]) + message;
    }

    QStringList lines;
};

inline QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArrayLiteral("(cannot be read)");
}

inline void write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write %s", qPrintable(path));
}
