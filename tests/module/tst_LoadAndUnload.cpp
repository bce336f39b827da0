// SPDX-License-Identifier: MIT
#include <link.h>

#include <QProcess>
#include <QtTest>

#include "Model.h"

/// Loading and unloading of the library, observed by a small host and a recording registry.
class LoadAndUnloadTest : public QObject
{
    Q_OBJECT

private:
    static QString transcript(const QString &mode)
    {
        QProcess host;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("LD_LIBRARY_PATH"),
                           QStringLiteral(RECORDING_REGISTRY_DIR ":" LIBRARY_DIR)); // of ReportBase
        environment.insert(QStringLiteral("MALLOC_PERTURB_"),
                           QStringLiteral("165")); // overwrites freed memory, so that no names remain there
        host.setProcessEnvironment(environment);
        host.start(QStringLiteral(HOST), {QStringLiteral(LIBRARY), mode});
        host.waitForFinished();
        return QString::fromUtf8(host.readAllStandardOutput())
            + QStringLiteral("status %1\n").arg(host.exitStatus() == QProcess::NormalExit ? host.exitCode() : -1)
            + QString::fromUtf8(host.readAllStandardError());
    }

private Q_SLOTS:
    void theModuleIsRegisteredAfterItsStaticsAndUnregisteredBeforeThemWhenUnloaded()
    {
        const QString once = QStringLiteral("loading\n"
                                            "Register(TunerProperties) with MCP SCP FFP Receiver DirectionFinder\n"
                                            "loaded\n"
                                            "unloading\n"
                                            "Unregister(TunerProperties) with MCP SCP FFP Receiver DirectionFinder\n"
                                            "gone\n");
        QCOMPARE(transcript(QStringLiteral("unload")), once + once + QStringLiteral("status 0\n"));
    }

    void moduleIsUnregisteredBeforeItsStaticsAreDestroyedWhenTheProcessExits()
    {
        QCOMPARE(transcript(QStringLiteral("exit")),
                 QStringLiteral("loading\n"
                                "Register(TunerProperties) with MCP SCP FFP Receiver DirectionFinder\n"
                                "loaded\n"
                                "exiting\n"
                                "Unregister(TunerProperties) with MCP SCP FFP Receiver DirectionFinder\n"
                                "status 0\n"));
    }

    void theClassUnitsAreBuiltInTheirOrderAndTheRegistrationLast()
    {
        const QStringList expected = Model::withNewNames<JobXml::Classes>({
            QStringLiteral("TunerProperties"),
            QStringLiteral("StartupModes"),
            QStringLiteral("BandwidthSelection"),
            QStringLiteral("Component"),
            QStringLiteral("Node"),
            QStringLiteral("ValueItem"),
            QStringLiteral("ValueBoolean"),
            QStringLiteral("ValueFloat"),
            QStringLiteral("ValueInt"),
            QStringLiteral("ValueInt64"),
            QStringLiteral("ValueNumericFloat"),
            QStringLiteral("ValueNumericInt"),
            QStringLiteral("ValueNumericInt64"),
            QStringLiteral("ValueSelection"),
            QStringLiteral("SelectionItem"),
            QStringLiteral("ValueString"),
            QStringLiteral("ValueStringList"),
            QStringLiteral("StringItem"),
        });
        QStringList built;
        for (const QString &function : startUpFunctions()) {
            for (const QString &name : expected) {
                // "_GLOBAL__sub_I_Node.cpp", or named after the unit's first function
                // "_GLOBAL__sub_I__ZN6JobXml4Node..."
                const bool mangled = function.contains(QStringLiteral("6JobXml%1%2").arg(name.size()).arg(name));
                if (mangled || function.endsWith(QStringLiteral("_I_%1.cpp").arg(name)))
                    built.append(name);
            }
        }
        QCOMPARE(built, expected);
        QVERIFY2(startUpFunctions().constLast().contains(QStringLiteral("LibraryEntry")),
                 qPrintable(startUpFunctions().join(QLatin1Char(' '))));
    }

private:
    // The functions that the loader calls for the library, in order: their addresses from memory, their names from nm.
    static QStringList startUpFunctions()
    {
        QProcess nm;
        nm.start(QStringLiteral(NM), {QStringLiteral(LIBRARY)});
        nm.waitForFinished();
        QHash<quintptr, QString> names;
        const QStringList lines = QString::fromLatin1(nm.readAllStandardOutput()).split(QLatin1Char('\n'));
        for (const QString &line : lines) {
            const QStringList parts = line.split(QLatin1Char(' '));
            if (parts.size() == 3)
                names.insert(quintptr(parts.at(0).toULongLong(nullptr, 16)), parts.at(2));
        }

        JobXml::TunerProperties::GetId(); // keeps the library linked
        QStringList functions;
        for (const link_map *map = _r_debug.r_map; map; map = map->l_next) {
            if (!QString::fromLocal8Bit(map->l_name).contains(QStringLiteral("/" LIBRARY_NAME)))
                continue;
            const ElfW(Addr) *array = nullptr;
            std::size_t size = 0;
            for (const ElfW(Dyn) *entry = map->l_ld; entry->d_tag != DT_NULL; ++entry) {
                if (entry->d_tag == DT_INIT_ARRAY)
                    array = reinterpret_cast<const ElfW(Addr) *>(map->l_addr + entry->d_un.d_ptr);
                else if (entry->d_tag == DT_INIT_ARRAYSZ)
                    size = entry->d_un.d_val / sizeof(ElfW(Addr));
            }
            for (std::size_t i = 0; i < size; ++i)
                functions.append(names.value(array[i] - map->l_addr));
        }
        return functions;
    }
};

TEST_SUITE(LoadAndUnloadTest)
#include "tst_LoadAndUnload.moc"
