// SPDX-License-Identifier: MIT
#include "Encodings.h"
#include "ExceptionText.h"
#include "Suite.h"

using REPORTGENERATOR::Logger;
using REPORTGENERATOR::ObjectTypes;

/// Construction, copies, moves, resets, presence and equality, the same for every class.
class EveryClassStateTest : public Suite
{
    Q_OBJECT

private Q_SLOTS:
    void nameAndIdentifierAreThoseOfTheClass()
    {
        const auto object = type().make();
        QCOMPARE(type().staticName(), text("name"));
        QCOMPARE(object->GetObjectName(), type().staticName());
        QCOMPARE(type().id(), *static_cast<qint64 *>(QTest::qGlobalData("id", QMetaType::LongLong)));
    }

    void newObjectHasNoData()
    {
        const auto object = type().make();
        QVERIFY(!object->IsInitialized());
        QVERIFY(!object->HasData());
        QVERIFY(!object->AnyData());
        QVERIFY(object->GetValidate());
        QVERIFY(!object->GetLogger());
        object->Reset();
        QVERIFY(!object->IsInitialized());
    }

    void fullObjectHasAllData()
    {
        const auto object = type().full();
        QVERIFY(object->IsInitialized());
        QVERIFY(object->HasData());
        QVERIFY(object->AnyData());
        object->Check();
        object->Check(true);
        QVERIFY(object->GetProblems().isEmpty());
    }

    void checkNamesTheFirstMissingMemberAndLeavesABlock()
    {
        for (const bool flag : {false, true}) {
            const auto object = type().make();
            QCOMPARE(thrownBy([&] { object->Check(flag); }), text("firstMissing"));
            QVERIFY(object->IsInitialized());
        }
        const auto object = type().make();
        QCOMPARE(thrownBy([&] { object->Check(); }), text("firstMissing"));
    }

    void settingTheObjectTypeDoesNothing()
    {
        const auto object = type().make();
        object->SetObjectType(static_cast<ObjectTypes>(7));
        QCOMPARE(int(object->GetObjectType()), int(ObjectTypes::Undefined));
        QCOMPARE(int(type().copied(*object)->GetObjectType()), int(ObjectTypes::Undefined));
    }

    void aCopyIsEqualAndItsOwn()
    {
        const auto original = type().full();
        const auto copy = type().copied(*original);
        QVERIFY(type().equal(*copy, *original));
        QCOMPARE(copy->GetObjectName(), type().staticName());
        copy->Reset();
        QVERIFY(!copy->HasData());
        QVERIFY(original->HasData());
        QVERIFY(type().different(*copy, *original));
    }

    void aCopyIsInitializedWhenItsSourceIs()
    {
        const auto object = type().make();
        QVERIFY(!type().copied(*object)->IsInitialized());
        object->ResetToDefault();
        QVERIFY(type().copied(*object)->IsInitialized());
    }

    void copyHasTheFlagButNotTheLogger()
    {
        const auto original = type().full();
        original->SetLogger(std::make_shared<Logger>());
        for (const bool validate : {true, false}) {
            original->SetValidate(validate);
            const auto copy = type().copied(*original);
            QCOMPARE(copy->GetValidate(), validate);
            QVERIFY(!copy->GetLogger());
        }
    }

    void assignmentCopiesOnlyTheData()
    {
        const auto original = type().full();
        original->SetLogger(std::make_shared<Logger>());
        const auto logger = std::make_shared<Logger>();
        const auto target = type().make();
        target->SetValidate(false);
        target->SetLogger(logger);
        type().assign(*target, *original);
        QVERIFY(type().equal(*target, *original));
        QCOMPARE(target->GetValidate(), false);
        QCOMPARE(target->GetLogger(), logger);

        original->Reset();
        QVERIFY(target->HasData());
        type().assign(*target, *type().make());
        QVERIFY(!target->IsInitialized());
    }

    void assignmentToItselfChangesNothing()
    {
        const auto object = type().full();
        type().assign(*object, *object);
        type().moveAssign(*object, *object);
        QVERIFY(type().equal(*object, *type().full()));
    }

    void movedFromObjectHasNoData()
    {
        const auto original = type().full();
        original->SetValidate(false);
        original->SetLogger(std::make_shared<Logger>());
        const auto moved = type().moved(*original);
        QVERIFY(!original->IsInitialized());
        QVERIFY(!original->HasData());
        QVERIFY(type().equal(*moved, *type().full()));
        QCOMPARE(moved->GetValidate(), false);
        QVERIFY(!moved->GetLogger());
        QCOMPARE(moved->GetObjectName(), type().staticName());

        type().assign(*original, *moved); // a moved-from object can be used again
        QVERIFY(original->HasData());
    }

    void moveAssignmentKeepsFlagAndLoggerOfItsTarget()
    {
        const auto original = type().full();
        const auto target = type().full();
        const auto logger = std::make_shared<Logger>();
        target->SetValidate(false);
        target->SetLogger(logger);
        type().moveAssign(*target, *original);
        QVERIFY(!original->IsInitialized());
        QVERIFY(type().equal(*target, *type().full()));
        QCOMPARE(target->GetValidate(), false);
        QCOMPARE(target->GetLogger(), logger);
    }

    void swappingExchangesOnlyTheData()
    {
        const auto full = type().full();
        const auto empty = type().make();
        empty->SetValidate(false);
        type().swap(*full, *empty);
        QVERIFY(!full->IsInitialized());
        QVERIFY(empty->HasData());
        QVERIFY(full->GetValidate());
        QVERIFY(!empty->GetValidate());
    }

    void movesAndSwapsDoNotThrowAndContainersMayMove()
    {
        QVERIFY(type().movesWithoutThrowing());
        QVERIFY(type().isMovableInContainers());
    }

    void objectsWithoutAnythingSetAreEqualWithAndWithoutABlock()
    {
        const auto bare = type().make();
        const auto initialized = type().full();
        initialized->Reset();
        QVERIFY(initialized->IsInitialized());
        QVERIFY(type().equal(*bare, *type().make()));
        QVERIFY(type().equal(*bare, *initialized));
        QVERIFY(type().equal(*initialized, *type().make()));
        QVERIFY(!type().different(*bare, *type().make()));
    }

    void fullAndEmptyDiffer()
    {
        const auto full = type().full();
        QVERIFY(type().different(*full, *type().make()));
        QVERIFY(type().different(*type().make(), *full));
        QVERIFY(!type().equal(*full, *type().make()));
    }

    void resettingClearsEverything()
    {
        const auto object = type().full();
        object->Reset();
        QVERIFY(object->IsInitialized());
        QVERIFY(!object->HasData());
        QVERIFY(!object->AnyData());
        QCOMPARE(thrownBy([&] { object->Check(); }), text("firstMissing"));
    }

    void resettingToDefaultLeavesABlock()
    {
        for (const bool full : {false, true}) {
            const auto object = full ? type().full() : type().make();
            object->ResetToDefault();
            QVERIFY(object->IsInitialized());
            QVERIFY(!object->HasData());
            QCOMPARE(object->AnyData(), isDocument()); // whose quantity counts as set then
        }
    }

    void mergingIntoANewObjectCopiesEverything()
    {
        const auto object = type().make();
        QVERIFY(object->MergeRGObject(*type().full()));
        QVERIFY(type().equal(*object, *type().full()));
    }
};

TEST_SUITE(EveryClassStateTest)
#include "tst_EveryClassState.moc"
