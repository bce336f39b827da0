// SPDX-License-Identifier: MIT
#include <QtTest>

#include <jobxml/TunerProperties.h>
#include <jobxml/Visit.h>

#include <tunerdocuments/Schema.h>

using namespace TunerDocuments;

/// The schema documents everything in the model, since comments of new documents are generated from it.
class SchemaAnnotationsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyClassAndMemberHasDocumentation();
    void unknownClassesAndMembersHaveNoDocumentation();
};

namespace {

const Schema::Annotations &annotations()
{
    static const Schema::Annotations all;
    return all;
}

/// Members without documentation, in an object and everything that it can contain.
QStringList undocumented(JobXml::DataObject &object, int &documented)
{
    object.SetValidate(false);
    QStringList result;
    const QString className = object.GetObjectName();
    if (!annotations().ofClass(className).endsWith(QLatin1Char('.')))
        result.append(className);
    JobXml::visit(object, [&](JobXml::MemberEditor &member) {
        using Kind = JobXml::MemberKind;
        if (member.GetKind() == Kind::Choice)
            return; // is made by which element there is
        if (!annotations().ofMember(className, member.GetName()).text.endsWith(QLatin1Char('.')))
            result.append(className + QLatin1Char('/') + member.GetName());
        ++documented;
        if (member.GetKind() == Kind::ObjectList)
            result += undocumented(member.AppendChild(), documented);
        else if (member.GetKind() == Kind::Object || member.GetKind() == Kind::Alternative)
            result += undocumented(member.EditChild(), documented);
    });
    return result;
}

} // namespace

void SchemaAnnotationsTest::everyClassAndMemberHasDocumentation()
{
    JobXml::TunerProperties document;
    int documented = 0;
    QCOMPARE(undocumented(document, documented), QStringList());
    QVERIFY(documented >= 68);
    QVERIFY(annotations().ofMember(QStringLiteral("Component"), QStringLiteral("type")).isAttribute);
    QVERIFY(annotations().ofMember(QStringLiteral("ValueInt"), QStringLiteral("id")).isAttribute);
    QVERIFY(!annotations().ofMember(QStringLiteral("BandwidthSelection"), QStringLiteral("Name")).isAttribute);
    QCOMPARE(annotations().ofMember(QStringLiteral("ValueInt"), QStringLiteral("id")).text,
             QStringLiteral("The identifier of the value within its node."));
}

void SchemaAnnotationsTest::unknownClassesAndMembersHaveNoDocumentation()
{
    QCOMPARE(annotations().ofClass(QStringLiteral("Nonsense")), QString());
    QCOMPARE(annotations().ofMember(QStringLiteral("Component"), QStringLiteral("nonsense")).text, QString());
    QCOMPARE(annotations().ofMember(QStringLiteral("Nonsense"), QStringLiteral("name")).text, QString());
}

TEST_SUITE(SchemaAnnotationsTest)
#include "tst_SchemaAnnotations.moc"
