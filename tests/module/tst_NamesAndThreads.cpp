// SPDX-License-Identifier: MIT
#include <atomic>

#include <QtTest>

#include <jobxml/TunerProperties.h>
#include <tavikappstartup/TranslationCenter.h>

#include "../src/module/Classes.h"
#include "Threads.h"

using namespace JobXml;

namespace {

constexpr int rounds = 300;

/// The names of all three lists, concatenated.
QStringList plainNames()
{
    return TunerProperties::Gettypes() + StartupModes::GetStartupModes() + ValueItem::GetChoiceValueItems();
}

QStringList shownNames()
{
    return TunerProperties::GetGUItypes() + StartupModes::GetGUIStartupModes() + ValueItem::GetGUIChoiceValueItems();
}

bool isEitherOr(const QStringList &names, const QStringList &one, const QStringList &other)
{
    bool good = names.size() == one.size();
    for (int i = 0; good && i < names.size(); ++i)
        good = names.at(i) == one.at(i) || names.at(i) == other.at(i);
    return good;
}

void speak(const QLocale &locale)
{
    QLocale::setDefault(locale);
    TranslationCenter::Instance().Register(QStringLiteral("TunerProperties"));
}

} // namespace

/// Several threads use the names that all objects share, and their translations. Meaningful with a thread sanitizer.
class NamesAndThreadsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { speak(QLocale::c()); }

    void namesAreLookedUpByAllThreads();
    void namesAreShownWhileTheirTranslationIsInstalledAndRemoved();
};

void NamesAndThreadsTest::namesAreLookedUpByAllThreads()
{
    const QStringList names = plainNames();
    QCOMPARE(names.size(), 5 + 11 + Kinds::size);
    QCOMPARE(names.at(3), QStringLiteral("Receiver"));
    QCOMPARE(names.at(11), QStringLiteral("DF"));
    QCOMPARE(names.at(25), QStringLiteral("ValueStringList"));
    int good[3] = {};
    const auto use = [&](int i) {
        const TunerProperties document;
        const StartupModes modes;
        const ValueItem item;
        for (int round = 0; round < rounds; ++round) {
            QStringList own = plainNames();
            bool same = own == names && shownNames() == names;
            own[round % names.size()] += QLatin1Char('!'); // changes only the caller's list
            for (int value = 0; value < 5; ++value)
                same = same && int(document.NameTotype(document.typeToName(TunerProperties::type(value)))) == value;
            for (int value = 0; value < 11; ++value)
                same = same
                    && int(modes.NameToStartupMode(modes.StartupModeToName(StartupModes::StartupMode(value)))) == value;
            for (int value = 0; value < 10; ++value)
                same = same
                    && int(item.NameToChoiceValueItem(item.ChoiceValueItemToName(ValueItem::ChoiceValueItem(value))))
                        == value;
            same = same && TunerProperties::GetId() == 0xC10CBB5F && item.GetObjectName() == QStringLiteral("ValueItem")
                && StartupModes::tr("text", nullptr, -1) == QStringLiteral("text");
            good[i] += same;
        }
    };
    atOnce([&] { use(0); }, [&] { use(1); }, [&] { use(2); });
    for (const int count : good)
        QCOMPARE(count, rounds);
}

void NamesAndThreadsTest::namesAreShownWhileTheirTranslationIsInstalledAndRemoved()
{
    TranslationCenter &center = TranslationCenter::Instance();
    const QString module = QStringLiteral("TunerProperties");
    const QStringList names = plainNames();
    speak(QLocale(QLocale::German));
    const QStringList german = shownNames();
    QCOMPARE(german.at(3), QStringLiteral("Empfänger"));

    std::atomic<bool> done{false};
    int wrong[2] = {};
    const auto use = [&](int i) {
        do {
            wrong[i] += !isEitherOr(shownNames(), names, german) || plainNames() != names;
        } while (!done);
    };
    int wrongInBetween = 0;
    atOnce([&] { use(0); }, [&] { use(1); },
           [&] {
               for (int round = 0; round < rounds; ++round) {
                   center.Unregister(module);
                   wrongInBetween += shownNames() != names;
                   center.Register(module);
                   wrongInBetween += shownNames() != german;
               }
               done = true;
           });
    QCOMPARE(wrong[0], 0);
    QCOMPARE(wrong[1], 0);
    QCOMPARE(wrongInBetween, 0);
}

TEST_SUITE(NamesAndThreadsTest)
#include "tst_NamesAndThreads.moc"
