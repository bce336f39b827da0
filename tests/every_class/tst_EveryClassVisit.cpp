// SPDX-License-Identifier: MIT
#include <jobxml/Visit.h>

#include "Encodings.h"
#include "Suite.h"

using namespace JobXml;

namespace {

/// Makes one object like another, member by member, flags and choices included.
void restore(DataObject &object, const DataObject &original)
{
    QVector<MemberView> members;
    visit(original, [&](const MemberView &member) { members.append(member); });
    int next = 0;
    const auto fill = [&](MemberEditor &member) {
        const MemberView &from = members.at(next++);
        if (from.GetKind() == MemberKind::ObjectList) {
            for (int i = 0; i < from.GetSize(); ++i)
                restore(member.AppendChild(), from.GetChild(i));
        } else if (from.GetSize() == 1 && from.GetChild().IsInitialized()) {
            restore(member.EditChild(), from.GetChild());
        } else {
            QCOMPARE(member.SetValue(from.GetValue()), from.GetValue().isValid());
        }
        member.SetFlag(from.IsSet());
    };
    visit(object, fill);
    visit(object, [&](MemberEditor &member) { // what has been filled in since has chosen an alternative
        if (member.GetKind() == MemberKind::Choice)
            QVERIFY(member.SetValue(members.first().GetValue()));
    });
}

/// Everything that a visitor receives.
QString allOf(const DataObject &object)
{
    QString text;
    visit(object, [&](const MemberView &member) {
        QDebug(&text) << member.GetName() << int(member.GetKind()) << member.IsSet() << member.IsMandatory()
                      << member.IsIdentifying() << member.IsChosen() << member.GetNames() << member.GetValue()
                      << member.GetDefaultValue() << member.GetSize();
        for (int i = 0; i < member.GetSize(); ++i)
            text += allOf(member.GetChild(i));
    });
    return text;
}

} // namespace

/// visit() for every class.
class EveryClassVisitTest : public Suite
{
    Q_OBJECT

private Q_SLOTS:
    void visitingANewObjectLeavesItWithoutData()
    {
        const auto object = type().make();
        QVERIFY(!allOf(*object).isEmpty());
        QString debug;
        QDebug(&debug) << *object;
        QVERIFY(debug.startsWith(type().staticName()));
        QVERIFY(!object->IsInitialized());
    }

    void aNewObjectShowsItsDefaultsUnset()
    {
        const auto object = type().make();
        visit(*object, [](const MemberView &member) {
            QVERIFY(!member.IsSet());
            QCOMPARE(member.GetValue(), member.GetDefaultValue());
            QCOMPARE(member.GetSize(), 0);
        });
    }

    void visitingChangesNothing()
    {
        const auto object = type().full();
        const auto sharing = type().make();
        type().assign(*sharing, *object);
        const QString before = allOf(*object);
        QCOMPARE(allOf(*sharing), before);
        QDebug(&m_text) << *object;
        QCOMPARE(childrenOf(*sharing), childrenOf(*object)); // the very same: still shared
        QCOMPARE(hex(snapshotOf(*sharing)), hex(snapshotOf(*type().full())));
        QCOMPARE(xmlOf(*object), xmlOf(*type().full()));
    }

    void valuesHaveTheTypeOfTheirKind()
    {
        visit(*type().full(), [](const MemberView &member) {
            static const int types[] = {QMetaType::QString,    QMetaType::Bool,        QMetaType::Int,
                                        QMetaType::LongLong,   QMetaType::ULongLong,   QMetaType::Float,
                                        QMetaType::Double,     QMetaType::QString,     QMetaType::QVariantList,
                                        QMetaType::QString,    QMetaType::UnknownType, QMetaType::UnknownType,
                                        QMetaType::UnknownType};
            QCOMPARE(member.GetValue().userType(), types[int(member.GetKind())]);
        });
    }

    void objectIsRebuiltMemberByMember()
    {
        const auto original = type().full();
        const auto object = type().make();
        object->SetValidate(false);
        restore(*object, *original);
        QVERIFY(type().equal(*object, *original));
        QCOMPARE(hex(snapshotOf(*object)), hex(snapshotOf(*original)));
        QCOMPARE(allOf(*object), allOf(*original));
    }

    void resettingEveryMemberResetsTheObject()
    {
        const auto object = type().full();
        visit(*object, [](MemberEditor &member) { member.Reset(); });
        const auto reset = type().full();
        reset->Reset();
        QCOMPARE(hex(snapshotOf(*object)), hex(snapshotOf(*reset)));
        QVERIFY(!object->AnyData());
    }

private:
    static QVector<const DataObject *> childrenOf(const DataObject &object)
    {
        QVector<const DataObject *> children;
        visit(object, [&](const MemberView &member) {
            for (int i = 0; i < member.GetSize(); ++i)
                children.append(&member.GetChild(i));
        });
        return children;
    }

    QString m_text;
};

TEST_SUITE_WITHOUT_APPLICATION(EveryClassVisitTest)
#include "tst_EveryClassVisit.moc"
