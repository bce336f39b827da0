// SPDX-License-Identifier: MIT
#include <QtTest>

#include "tavikappstartup/RegistryTest.h"

/// The folders that are searched if the folder of the library cannot be found.
class ProgramFolderTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theFoldersAreThoseOfTheProgram()
    {
        center().AddSearchPath(first);
        const Application application;
        const QString folder = QFileInfo(QCoreApplication::applicationFilePath()).path();
        const QStringList paths = center().SearchPaths();
        QCOMPARE(paths.size(), 4);
        QCOMPARE(paths.mid(0, 3), (QStringList{first, folder, folder + QStringLiteral("/translations")}));
        QCOMPARE(paths.at(3),
                 QFileInfo(folder).path() + QStringLiteral("/" INSTALL_DATADIR "/tunerproperties-1/translations"));
    }

    void withoutAnApplicationOnlyAddedFoldersAreSearched()
    {
        center().AddSearchPath(first);
        QCOMPARE(center().SearchPaths(), QStringList{first});
    }
};

TEST_SUITE(ProgramFolderTest)
#include "tst_ProgramFolder.moc"
