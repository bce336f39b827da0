// SPDX-License-Identifier: MIT
#include <link.h>

#include <algorithm>

#include <QtTest>

#include "module/KeptText.h"
#include "module/LoadedLibrary.h"
#include "module/PublicTexts.h"

namespace {

/// The memory of the loaded libraries and the plug-in.
class LoadedMemory
{
public:
    LoadedMemory()
    {
        dl_iterate_phdr(
            [](dl_phdr_info *object, std::size_t, void *memory) {
                static_cast<LoadedMemory *>(memory)->add(*object);
                return 0;
            },
            this);
    }

    int libraries() const { return m_libraries; }

    bool holds(const void *address) const
    {
        const auto place = reinterpret_cast<quintptr>(address);
        return std::any_of(m_segments.begin(), m_segments.end(),
                           [place](const Segment &segment) { return place >= segment.begin && place < segment.end; });
    }

private:
    struct Segment
    {
        quintptr begin;
        quintptr end;
    };

    void add(const dl_phdr_info &object)
    {
        const auto isFile = [&](const char *path) {
            return QFileInfo(QFile::decodeName(object.dlpi_name)).canonicalFilePath()
                == QFileInfo(QFile::decodeName(path)).canonicalFilePath();
        };
        if (!isFile(LIBRARY) && !isFile(REPORTBASE) && !isFile(TAVIKAPPSTARTUP) && !isFile(KEPT_TEXTS_MODULE))
            return;
        ++m_libraries;
        for (int i = 0; i < object.dlpi_phnum; ++i) {
            const auto &header = object.dlpi_phdr[i];
            if (header.p_type == PT_LOAD)
                m_segments.append(
                    {object.dlpi_addr + header.p_vaddr, object.dlpi_addr + header.p_vaddr + header.p_memsz});
        }
    }

    int m_libraries = 0;
    QVector<Segment> m_segments;
};

QByteArray listed(const QSet<QByteArray> &names)
{
    QList<QByteArray> sorted = names.values();
    std::sort(sorted.begin(), sorted.end());
    return sorted.join("\n");
}

} // namespace

/// A host may keep every text that the libraries return after it has unloaded them.
class TextsAfterUnloadingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void everyFunctionThatReturnsATextIsCalled();
    void everyFailureOfTheModelIsThrown();
    void noTextRefersToTheMemoryOfALibrary();
    void everyTextReadsTheSameAfterwards();

private:
    KeptTexts m_texts;
    QSet<QByteArray> m_called;
    QSet<QByteArray> m_inLibraries;
};

void TextsAfterUnloadingTest::initTestCase()
{
    {
        LoadedLibrary plugin(QStringLiteral(KEPT_TEXTS_MODULE), LoadedLibrary::By::Dlopen);
        QVERIFY2(plugin.isLoaded(), qPrintable(plugin.error()));
        plugin.function<void (*)(KeptTexts *)>("keepTexts")(&m_texts);
        const LoadedMemory memory;
        QCOMPARE(memory.libraries(), 4);
        for (const KeptText &kept : qAsConst(m_texts)) {
            m_called.insert(kept.function);
            if (memory.holds(kept.text.constData()) || memory.holds(kept.bytes.constData()))
                m_inLibraries.insert(kept.function + " '" + kept.then + "'");
        }
    }
    for (const char *file : {KEPT_TEXTS_MODULE, LIBRARY, REPORTBASE, TAVIKAPPSTARTUP})
        QVERIFY2(!isLoaded(file), file);
}

void TextsAfterUnloadingTest::everyFunctionThatReturnsATextIsCalled()
{
    // The library for documents is never unloaded.
    QSet<QByteArray> declared;
    for (const char *library : {"jobxml", "reportbase", "tavikappstartup"}) {
        for (const char *folder : {HEADERS, MADE_HEADERS})
            declared += PublicTexts::in(QLatin1String(folder) + QLatin1Char('/') + QLatin1String(library));
    }
    QVERIFY(declared.size() > 100); // the headers have been found and understood
    const QSet<QByteArray> exceptions{
        "MemberView::GetName", // documented as a view of the library's own characters
        "testText",
        "toString", // inline, for Qt Test, on the heap of the test that deletes it
        "IRGObject::SetBinaryRepresentation", // reads its argument
        "XmlMarkup::bytes", // documented as views of the document
        "XmlMarkup::document", // the argument of the constructor
        "XmlMarkup::localName",
    };
    QVERIFY2(declared.contains(exceptions), listed(exceptions - declared).constData());
    const QSet<QByteArray> missing = declared - m_called - exceptions;
    QVERIFY2(missing.isEmpty(), ("not called in KeptTexts.cpp:\n" + listed(missing)).constData());
    QSet<QByteArray> unknown = m_called - declared;
    for (auto it = unknown.begin(); it != unknown.end();)
        it = it->startsWith("Errors::") ? unknown.erase(it) : std::next(it);
    QVERIFY2(unknown.isEmpty(),
             ("called in KeptTexts.cpp, but not found in the headers:\n" + listed(unknown)).constData());
}

void TextsAfterUnloadingTest::everyFailureOfTheModelIsThrown()
{
    QFile header(QStringLiteral(ERRORS_HEADER));
    QVERIFY(header.open(QIODevice::ReadOnly));
    QSet<QByteArray> failures;
    auto match = QRegularExpression(QStringLiteral("\\[\\[noreturn\\]\\] void (\\w+)\\("))
                     .globalMatch(QString::fromUtf8(header.readAll()));
    while (match.hasNext())
        failures.insert("Errors::" + match.next().captured(1).toLatin1());
    QVERIFY(failures.size() >= 12);
    const QSet<QByteArray> missing = failures - m_called;
    QVERIFY2(missing.isEmpty(), ("not thrown in KeptTexts.cpp:\n" + listed(missing)).constData());
}

void TextsAfterUnloadingTest::noTextRefersToTheMemoryOfALibrary()
{
    QVERIFY2(m_inLibraries.isEmpty(), listed(m_inLibraries).constData());
}

void TextsAfterUnloadingTest::everyTextReadsTheSameAfterwards()
{
    QVERIFY2(m_inLibraries.isEmpty(), "reading these texts would crash");
    for (const KeptText &kept : qAsConst(m_texts)) {
        QString printed;
        QDebug(&printed).noquote().nospace() << kept.function << ": " << kept.text << kept.bytes.toHex();
        QVERIFY(printed.startsWith(QString::fromLatin1(kept.function)));
        QCOMPARE(kept.text.isNull() ? kept.bytes : kept.text.toUtf8(), kept.then);
    }
}

TEST_SUITE_WITHOUT_APPLICATION(TextsAfterUnloadingTest)
#include "tst_TextsAfterUnloading.moc"
