// SPDX-License-Identifier: MIT
#include "WrittenXml.h"

#include <cxxabi.h>
#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <mutex>
#include <typeinfo>

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QXmlStreamWriter>

#include <jobxml/DataObject.h>

namespace {

/// The texts in memory. They are only written to the folder when the program ends, so that this does not affect tests
/// that count file operations or make them fail.
class Kept
{
public:
    Kept() : m_folder(qEnvironmentVariable(folderVariable))
    {
        qunsetenv(folderVariable); // programs that a test starts would clear the folder again
        QDir folder(m_folder);
        if (!isWanted() || !folder.exists())
            return;
        for (const QString &old : folder.entryList({QStringLiteral("*.xml")}, QDir::Files))
            folder.remove(old);
    }

    Kept(const Kept &) = delete;
    Kept &operator=(const Kept &) = delete;

    ~Kept()
    {
        if (m_texts.empty())
            return;
        bool written = QDir().mkpath(m_folder);
        for (const auto &[name, text] : m_texts) {
            QFile file(m_folder + QLatin1Char('/') + name);
            written = written && file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.flush();
        }
        if (!written)
            std::fprintf(stderr, "what this program wrote as XML could not be kept in %s\n", qPrintable(m_folder));
    }

    bool isWanted() const { return !m_folder.isEmpty(); }

    void add(const QString &className, const QByteArray &utf8)
    {
        if (!isWanted() || utf8.isEmpty())
            return;
        const QByteArray hash = QCryptographicHash::hash(utf8, QCryptographicHash::Sha1).toHex();
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_texts.emplace(className + QLatin1Char('.') + QString::fromLatin1(hash) + QStringLiteral(".xml"), utf8);
    }

private:
    static constexpr char folderVariable[] = "TUNERPROPERTIES_WRITTEN_XML";

    const QString m_folder;
    std::mutex m_mutex;
    std::map<QString, QByteArray> m_texts;
};

Kept kept;

/// The library's own function, which the one below replaces.
void getXmlOfTheLibrary(const JobXml::DataObject &object, QXmlStreamWriter &writer)
{
    using GetXml = void (*)(const JobXml::DataObject *, QXmlStreamWriter &);
    static const auto getXml =
        reinterpret_cast<GetXml>(dlsym(RTLD_NEXT, "_ZNK6JobXml10DataObject6GetXmlER16QXmlStreamWriter"));
    if (!getXml)
        qFatal("the library has no DataObject::GetXml");
    getXml(&object, writer);
}

/// Whether it is of one of the model's classes and named like it. Derived classes of tests may rename their elements or
/// omit the check, and no schema describes their documents.
bool isOfTheModel(const JobXml::DataObject &object)
{
    int status = 0;
    const std::unique_ptr<char, decltype(&std::free)> type(
        abi::__cxa_demangle(typeid(object).name(), nullptr, nullptr, &status), &std::free);
    return type && QStringLiteral("JobXml::") + object.GetObjectName() == QLatin1String(type.get());
}

} // namespace

void WrittenXml::keep(const QString &className, const QByteArray &utf8)
{
    kept.add(className, utf8);
}

// In the test programs these definitions replace the library's own, so that every XML text passes here, for an element,
// a whole document or a file.

bool JobXml::DataObject::composeXml(QByteArray &utf8) const
{
    using Compose = bool (*)(const JobXml::DataObject *, QByteArray &);
    static const auto compose =
        reinterpret_cast<Compose>(dlsym(RTLD_NEXT, "_ZNK6JobXml10DataObject10composeXmlER10QByteArray"));
    if (!compose)
        qFatal("the library has no DataObject::composeXml");
    const bool isComposed = compose(this, utf8);
    if (isComposed && kept.isWanted() && GetValidate() && isOfTheModel(*this))
        WrittenXml::keep(GetObjectName(), utf8);
    return isComposed;
}

void JobXml::DataObject::GetXml(QXmlStreamWriter &writer) const
{
    getXmlOfTheLibrary(*this, writer);
    if (!kept.isWanted() || !GetValidate() || !isOfTheModel(*this))
        return;

    QString xml;
    QXmlStreamWriter again(&xml);
    again.setAutoFormatting(writer.autoFormatting());
    again.setAutoFormattingIndent(writer.autoFormattingIndent());
    getXmlOfTheLibrary(*this, again);
    if (!again.hasError()) // otherwise a character that XML cannot represent was lost, and the text is rejected anyway
        WrittenXml::keep(GetObjectName(), xml.toUtf8());
}
