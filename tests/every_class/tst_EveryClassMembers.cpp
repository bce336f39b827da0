// SPDX-License-Identifier: MIT
#include "Accessors.h"
#include "Model.h"
#include "Suite.h"

/// The accessors of a member work on that member and on no other.
class EveryClassMembersTest : public Suite
{
    Q_OBJECT

private Q_SLOTS:
    void rowsAreTheClassesOfTheModel()
    {
        QStringList rows = everyClassName();
        for (const QString &name : Model::classes())
            QVERIFY2(rows.contains(name), qPrintable(QStringLiteral("EveryClass.cpp has no sample of ") + name));
        rows.sort();
        QCOMPARE(rows, Model::classes());
    }

    // Otherwise this and the other suites would silently skip a class that is not listed.
    void theAccessorsOfEveryMemberAreListedOnce()
    {
        const auto full = type().full();
        QStringList listed;
        for (int member = 0; member < accessors().count(); ++member) {
            const auto object = type().make();
            accessors().copyOne(*full, *object, member);
            const QStringList set = membersSetIn(*object);
            QCOMPARE(set.size(), 1);
            listed += set;
        }
        listed.sort();
        QStringList members = Model::members(*full);
        members.sort();
        QCOMPARE(listed, members);
    }

    void aFullObjectHasEveryMemberSet()
    {
        JobXml::visit(*type().full(), [](const JobXml::MemberView &member) {
            QVERIFY2(member.IsSet() || !member.IsChosen(), member.GetName().data());
        });
    }

    void settingAMemberSetsNoOther()
    {
        const auto full = type().full();
        const auto fresh = type().make();
        for (int set = 0; set < accessors().count(); ++set) {
            const auto object = type().make();
            accessors().copyOne(*full, *object, set);
            for (int member = 0; member < accessors().count(); ++member) {
                const QString unset = accessors().readOne(member == set ? *full : *fresh, member);
                QCOMPARE(accessors().readOne(*object, member), member == set ? marked(unset) : unset);
            }
        }
    }

    void resettingAMemberResetsNoOther()
    {
        const auto full = type().full();
        const auto fresh = type().make();
        for (int reset = 0; reset < accessors().count(); ++reset) {
            const auto object = type().full();
            accessors().resetOne(*object, reset);
            for (int member = 0; member < accessors().count(); ++member)
                QCOMPARE(accessors().readOne(*object, member),
                         accessors().readOne(member == reset ? *fresh : *full, member));
        }
    }

private:
    static QStringList membersSetIn(const JobXml::DataObject &object)
    {
        QStringList names;
        JobXml::visit(object, [&](const JobXml::MemberView &member) {
            if (member.GetKind() != JobXml::MemberKind::Choice && member.IsSet())
                names += member.GetName();
        });
        return names;
    }

    static const Accessors &accessors() { return accessorsOf(type().staticName()); }

    // As Accessors::read() prints a set member; of a full choice only one alternative is set.
    static QString marked(QString text) { return text.replace(QStringLiteral("? "), QStringLiteral("! ")); }
};

TEST_SUITE(EveryClassMembersTest)
#include "tst_EveryClassMembers.moc"
