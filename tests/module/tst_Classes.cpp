// SPDX-License-Identifier: MIT
#include <QtTest>

#include "Model.h"

using namespace JobXml;

/// The list of the classes is complete.
class ClassesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyClassThatADocumentCanContainIsListedOnce();
    void theKindsAreTheAlternativesInTheirOrder();
    void noTwoClassesShareAnIdentifier();
};

void ClassesTest::everyClassThatADocumentCanContainIsListedOnce()
{
    QStringList names = Model::namesIn<Classes>();
    QCOMPARE(names.first(), QStringLiteral("TunerProperties"));
    names.sort();
    QCOMPARE(names, Model::classes());
}

void ClassesTest::theKindsAreTheAlternativesInTheirOrder()
{
    QCOMPARE(Model::namesIn<Kinds>(), Model::members(ValueItem()));
    QCOMPARE(Model::namesIn<Kinds>(), ValueItem::GetChoiceValueItems());
}

void ClassesTest::noTwoClassesShareAnIdentifier()
{
    QSet<qint64> identifiers;
    Classes::forEach([&](auto tag) { identifiers += decltype(tag)::Class::GetId(); });
    QCOMPARE(identifiers.size(), Classes::size);
}

TEST_SUITE(ClassesTest)
#include "tst_Classes.moc"
