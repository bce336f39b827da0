// SPDX-License-Identifier: MIT
#include <QTest>

#include "module/LoadedLibrary.h"

/// The library for documents stays when the plug-in that needed it has gone, so that its texts can be kept.
class TextsOfDocumentsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textsAreTheSameAfterTheirPlugInIsUnloaded();
};

void TextsOfDocumentsTest::textsAreTheSameAfterTheirPlugInIsUnloaded()
{
    QStringList texts;
    {
        LoadedLibrary plugin(QStringLiteral(DOCUMENTS_MODULE), LoadedLibrary::By::Dlopen);
        QVERIFY2(plugin.isLoaded(), qPrintable(plugin.error()));
        plugin.function<void (*)(QStringList *)>("textsOfDocuments")(&texts);
    }
    QVERIFY(!isLoaded(DOCUMENTS_MODULE));
    QVERIFY(isLoaded(TUNERDOCUMENTS));
    QCOMPARE(texts, (QStringList{QStringLiteral("(not set)"), QStringLiteral("compressed"), QStringLiteral("0.25")}));
}

TEST_SUITE(TextsOfDocumentsTest)
#include "tst_TextsOfDocuments.moc"
