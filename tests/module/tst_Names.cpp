// SPDX-License-Identifier: MIT
#include <QtTest>

#include <jobxml/TunerProperties.h>
#include <jobxml/ValueItem.h>
#include <jobxml/Visit.h>
#include <tavikappstartup/TranslationCenter.h>

#include "Model.h"

using namespace JobXml;

namespace {

const QStringList types{QStringLiteral("MCP"), QStringLiteral("SCP"), QStringLiteral("FFP"), QStringLiteral("Receiver"),
                        QStringLiteral("DirectionFinder")};
const QStringList modes{QStringLiteral("Scan"),   QStringLiteral("FastScan"), QStringLiteral("MScan"),
                        QStringLiteral("FFM"),    QStringLiteral("WFFM"),     QStringLiteral("Step"),
                        QStringLiteral("DF"),     QStringLiteral("MSearch"),  QStringLiteral("Polar"),
                        QStringLiteral("Search"), QStringLiteral("Stop")};
const QStringList kinds{QStringLiteral("ValueBoolean"),      QStringLiteral("ValueFloat"),
                        QStringLiteral("ValueInt"),          QStringLiteral("ValueInt64"),
                        QStringLiteral("ValueNumericFloat"), QStringLiteral("ValueNumericInt"),
                        QStringLiteral("ValueNumericInt64"), QStringLiteral("ValueSelection"),
                        QStringLiteral("ValueString"),       QStringLiteral("ValueStringList")};

void speak(const QLocale &locale)
{
    QLocale::setDefault(locale);
    TranslationCenter::Instance().Register(QStringLiteral("TunerProperties"));
}

} // namespace

/// The names of enumerations, and their translations for users.
class NamesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { speak(QLocale::c()); }

    void theModuleIsRegisteredWhenTheLibraryIsLoaded()
    {
        QVERIFY(TranslationCenter::Instance().RegisteredModules().contains(QStringLiteral("TunerProperties")));
    }

    void namesAreInTheOrderOfTheirValues()
    {
        QCOMPARE(TunerProperties::Gettypes(), types);
        QCOMPARE(StartupModes::GetStartupModes(), modes);
        QCOMPARE(ValueItem::GetChoiceValueItems(), Model::withNewNames<Kinds>(kinds));
    }

    void withoutACatalogNamesAreNotTranslated()
    {
        speak(QLocale(QLocale::Finnish));
        QCOMPARE(TunerProperties::GetGUItypes(), types);
        QCOMPARE(StartupModes::GetGUIStartupModes(), modes);
        QCOMPARE(ValueItem::GetGUIChoiceValueItems(), Model::withNewNames<Kinds>(kinds));
    }

    void namesAreShownInTheLanguageThatIsInstalled()
    {
        TunerProperties document;
        speak(QLocale(QLocale::German, QLocale::Germany));
        QCOMPARE(TunerProperties::GetGUItypes().size(), 5);
        QCOMPARE(TunerProperties::GetGUItypes().at(3), QStringLiteral("Empfänger"));
        QCOMPARE(TunerProperties::GetGUItypes().at(4), QStringLiteral("Peiler"));
        QCOMPARE(StartupModes::GetGUIStartupModes().size(), 11);
        QVERIFY(StartupModes::GetGUIStartupModes() != modes);
        const QStringList germanKinds = ValueItem::GetGUIChoiceValueItems();
        QCOMPARE(germanKinds.size(), Kinds::size);
        for (int i = 0; i < germanKinds.size(); ++i)
            QVERIFY2(germanKinds.at(i) != ValueItem::GetChoiceValueItems().at(i), qPrintable(germanKinds.at(i)));

        speak(QLocale(QLocale::English));
        QCOMPARE(TunerProperties::GetGUItypes().at(4), QStringLiteral("Direction finder"));
        QVERIFY(ValueItem::GetGUIChoiceValueItems() != germanKinds);

        // the plain names never change
        speak(QLocale(QLocale::German, QLocale::Germany));
        QStringList visitedTypes;
        visit(std::as_const(document), [&](const MemberView &member) {
            if (member.GetName() == QLatin1String("type"))
                visitedTypes = member.GetNames();
        });
        QCOMPARE(visitedTypes, types);
        QCOMPARE(TunerProperties::Gettypes(), types);
        QCOMPARE(StartupModes::GetStartupModes(), modes);
        QCOMPARE(ValueItem::GetChoiceValueItems(), Model::withNewNames<Kinds>(kinds));
    }

    void unregisteringRemovesTheDisplayNames()
    {
        speak(QLocale(QLocale::German));
        TranslationCenter::Instance().Unregister(QStringLiteral("TunerProperties"));
        QCOMPARE(TunerProperties::GetGUItypes(), types);
    }

    void translationHelpersPassTheirArguments()
    {
        QCOMPARE(TunerProperties::tr("text", nullptr, -1), QStringLiteral("text"));
        QCOMPARE(StartupModes::trUtf8("gr\xC3\xBC\xC3\x9F", "greeting", 2), QStringLiteral("grüß"));
        ContextRecorder recorder;
        QVERIFY(QCoreApplication::installTranslator(&recorder));
        QCOMPARE(TunerProperties::tr("a", "b", 1), QStringLiteral("JobXml::TunerProperties a b 1"));
        QCOMPARE(TunerProperties::trUtf8("a", "b", 2), QStringLiteral("JobXml::TunerProperties a b 2"));
        QCOMPARE(StartupModes::tr("a", "b", 3), QStringLiteral("JobXml::StartupModes a b 3"));
        QCOMPARE(StartupModes::trUtf8("a", "b", 4), QStringLiteral("JobXml::StartupModes a b 4"));
        QCOMPARE(TunerProperties::GetGUItypes().at(0), QStringLiteral("QObject MCP  -1"));
    }

private:
    // Translates every text into its own arguments.
    class ContextRecorder : public QTranslator
    {
    public:
        QString translate(const char *context, const char *source, const char *disambiguation, int n) const override
        {
            return QStringLiteral("%1 %2 %3 %4")
                .arg(QString::fromUtf8(context), QString::fromUtf8(source), QString::fromUtf8(disambiguation))
                .arg(n);
        }
        bool isEmpty() const override { return false; }
    };
};

TEST_SUITE(NamesTest)
#include "tst_Names.moc"
