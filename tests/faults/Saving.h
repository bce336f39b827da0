// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <sys/wait.h>
#include <unistd.h>

#include <Documents.h>

/// A way to save a document in a file, and the expected bytes.
struct Way
{
    const char *name;
    bool (*save)(const JobXml::TunerProperties &document, const QString &path);
    QByteArray (*bytes)(JobXml::TunerProperties &document);
};

inline const Way waysToSave[] = {
    {"SaveXml", [](const JobXml::TunerProperties &document, const QString &path) { return document.SaveXml(path); },
     [](JobXml::TunerProperties &document) { return document.GetXmlString().toUtf8(); }},
    {"SaveBinary",
     [](const JobXml::TunerProperties &document, const QString &path) { return document.SaveBinary(path); },
     [](JobXml::TunerProperties &document) { return document.GetBinaryRepresentationAsQByteArray(); }},
    {"SaveCompressedBinary",
     [](const JobXml::TunerProperties &document, const QString &path) {
         return document.SaveCompressedBinary(path, 6);
     },
     [](JobXml::TunerProperties &document) { return document.GetCompressedBinaryRepresentationAsQByteArray(6); }},
};
Q_DECLARE_METATYPE(Way)

/// A small document with this base resource.
inline JobXml::TunerProperties aSmallDocument(const char *baseResource)
{
    JobXml::TunerProperties document = aDocument(1);
    document.Setbaseresource(QString::fromLatin1(baseResource));
    return document;
}

/// A document of more than `size` bytes in every form, the compressed one included. Each seed makes a different one.
inline JobXml::TunerProperties aLargeDocument(quint32 seed, int size)
{
    QRandomGenerator random(seed);
    QString text(2 * size, Qt::Uninitialized); // compressed, a letter of 26 takes more than half a byte
    for (QChar &letter : text)
        letter = QLatin1Char(char('A' + random.bounded(26)));
    JobXml::TunerProperties document = aDocument(1);
    document.Setbaseresource(text);
    return document;
}

/// The temporary folder of a test.
class Folder
{
public:
    QString path(const QString &name) const { return m_folder.filePath(name); }
    QString path() const { return m_folder.path(); }

    void write(const QString &name, const QByteArray &content) const
    {
        QFile file(path(name));
        QVERIFY2(file.open(QIODevice::WriteOnly) && file.write(content) == content.size(), qPrintable(name));
    }

    /// A null array if there is no such file.
    QByteArray read(const QString &name) const
    {
        QFile file(path(name));
        if (!file.open(QIODevice::ReadOnly))
            return QByteArray();
        const QByteArray content = file.readAll();
        return content.isNull() ? QByteArrayLiteral("") : content;
    }

    QStringList names() const
    {
        return QDir(m_folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }

    void clear() const
    {
        for (const QString &name : names())
            QVERIFY2(QFile::remove(path(name)), qPrintable(name));
    }

private:
    QTemporaryDir m_folder;
};

/// Calls the function in a child process, which exits with the returned value. Returns the status that wait() reports.
inline int statusOfChild(const std::function<int()> &run)
{
    const pid_t child = fork();
    if (child == 0)
        _exit(run());
    int status = 0;
    return child > 0 && waitpid(child, &status, 0) == child ? status : -1;
}
