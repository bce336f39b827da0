// SPDX-License-Identifier: MIT
#include <algorithm>
#include <memory>

#include <QRegularExpression>
#include <QtTest>

#include <jobxml/TunerProperties.h>

#include "Cases.h"
#include "Checker.h"
#include "Encodings.h"
#include "ExceptionText.h"
#include "Model.h"
#include "interop/Generator.h"

using namespace JobXml;

namespace {

/// Reads an object of a class from a document and writes it again, both while validating.
template <class Object>
QString rewritten(const QString &document)
{
    Object object;
    readXml(object, document);
    return xmlOf(object);
}

/// The delay is written as an unsigned number but read as a signed one, so the greater numbers need the setter.
template <>
QString rewritten<TunerProperties>(const QString &document)
{
    TunerProperties object;
    readXml(object, document);
    static const QRegularExpression delay(QStringLiteral("<MaxFFPDelay>([0-9]+)</MaxFFPDelay>"));
    const QRegularExpressionMatch match = delay.match(document);
    if (match.hasMatch())
        object.SetMaxFFPDelay(match.captured(1).toULongLong());
    return xmlOf(object);
}

using Object = std::unique_ptr<DataObject>;

template <class Class>
Object made()
{
    return std::make_unique<Class>();
}

struct ClassOfTheModel
{
    QString (*rewrite)(const QString &document) = nullptr;
    Object (*make)() = nullptr;
};

const QMap<QString, ClassOfTheModel> &everyClass()
{
    static const auto classes = [] {
        QMap<QString, ClassOfTheModel> found;
        Classes::forEach([&](auto tag) {
            using Class = typename decltype(tag)::Class;
            found.insert(Class::GetStaticObjectName(), {&rewritten<Class>, &made<Class>});
        });
        return found;
    }();
    return classes;
}

QString rootOf(const QString &document)
{
    static const QRegularExpression name(QStringLiteral("^<([A-Za-z0-9]+)"));
    return name.match(document).captured(1);
}

void addRows(const QVector<Case> &cases)
{
    QTest::addColumn<QString>("document");
    QTest::addColumn<QString>("complaint");
    for (const Case &each : cases)
        QTest::newRow(qPrintable(each.name)) << each.document << each.complaint;
}

} // namespace

/// The schema accepts what the library writes while validating, and nothing else.
class SchemaTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void whatTheLibraryWritesIsAccepted_data() { addRows(acceptedCases()); }
    void whatTheLibraryWritesIsAccepted();

    void whatBreaksARuleIsRefused_data() { addRows(refusedCases()); }
    void whatBreaksARuleIsRefused();

    void aNegativeNumberThatRoundsToZeroKeepsItsSign();
    void theLibrarysNamesAreTheSchemas();
    void indentedDocumentsAreAccepted();
    void randomObjectsOfEveryClassAreAccepted();

private:
    Checker m_checker{QStringLiteral(SCHEMA_FILE)};
};

void SchemaTest::initTestCase()
{
    QStringList documents;
    for (const Case &each : acceptedCases())
        documents.append(each.document);
    documents.removeDuplicates(); // some cases use the text of the good document
    for (const Case &each : refusedCases()) {
        QVERIFY2(!documents.contains(each.document), qPrintable(each.name));
        documents.append(each.document);
    }
    m_checker.check(documents);
}

void SchemaTest::whatTheLibraryWritesIsAccepted()
{
    QFETCH(QString, document);
    const Verdict verdict = m_checker.verdict(document);
    QCOMPARE(verdict.complaints, QStringList());
    QVERIFY(verdict.accepted);
    const QString written = everyClass().value(rootOf(document)).rewrite(document);
    QCOMPARE(written.split(QLatin1Char('<')), document.split(QLatin1Char('<'))); // shows where they differ
}

void SchemaTest::whatBreaksARuleIsRefused()
{
    QFETCH(QString, document);
    QFETCH(QString, complaint);
    const Verdict verdict = m_checker.verdict(document);
    QVERIFY(verdict.refused);
    QCOMPARE(verdict.complaints.value(0).left(complaint.size()), complaint);

    // The library may read the document, but does not write it.
    QString written;
    if (const auto rewrite = everyClass().value(rootOf(document)).rewrite)
        thrownBy([&] { written = rewrite(document); });
    QVERIFY(written != document);
}

void SchemaTest::aNegativeNumberThatRoundsToZeroKeepsItsSign()
{
    ValueFloat single;
    single.Setid(QStringLiteral("i"));
    single.Setvalue(-0.001f);
    const QString expected = QStringLiteral("<ValueFloat id=\"i\" value=\"-0.00\"/>");
    QCOMPARE(xmlOf(single), expected);

    SelectionItem twice;
    twice.Setname(QStringLiteral("n"));
    twice.Setvalue(-0.001);
    const QString expectedTwice = QStringLiteral("<SelectionItem name=\"n\" value=\"-0.00\"/>");
    QCOMPARE(xmlOf(twice), expectedTwice);

    m_checker.check({expected, expectedTwice});
    QVERIFY(m_checker.verdict(expected).accepted);
    QVERIFY(m_checker.verdict(expectedTwice).accepted);
}

void SchemaTest::theLibrarysNamesAreTheSchemas()
{
    QFile file(QStringLiteral(SCHEMA_FILE));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QHash<QString, QStringList> names; // by simple type
    QString type;
    for (QXmlStreamReader reader(&file); !reader.atEnd(); reader.readNext()) {
        if (!reader.isStartElement())
            continue;
        if (reader.name() == QLatin1String("simpleType"))
            type = reader.attributes().value(QLatin1String("name")).toString();
        else if (reader.name() == QLatin1String("enumeration"))
            names[type].append(reader.attributes().value(QLatin1String("value")).toString());
    }
    QCOMPARE(names.value(QStringLiteral("TunerType")), TunerProperties::Gettypes());
    QCOMPARE(names.value(QStringLiteral("StartupModeName")), StartupModes::GetStartupModes());
    QCOMPARE(names.value(QStringLiteral("Version")), QStringList{TunerProperties().GetVersion()});
}

void SchemaTest::indentedDocumentsAreAccepted()
{
    const QVector<Case> cases = acceptedCases();
    const auto everything = std::find_if(cases.begin(), cases.end(), [](const Case &each) {
        return each.name == QLatin1String("TunerProperties with everything");
    });
    QVERIFY(everything != cases.end());
    TunerProperties object;
    readXml(object, everything->document);
    const QString document = object.GetXmlString();
    QVERIFY(document.contains(QLatin1String("\n  <StartupModes>\n    <StartupMode>FFM</StartupMode>\n")));
    m_checker.check({document});
    QVERIFY(m_checker.verdict(document).accepted);
}

void SchemaTest::randomObjectsOfEveryClassAreAccepted()
{
    constexpr int perClass = 100;
    QStringList documents;
    int notForXml = 0;
    for (const ClassOfTheModel &type : everyClass()) {
        for (int i = 0; i < perClass; ++i) {
            const Object object = type.make();
            build(*object, QByteArray::number(i));
            const QString document = object->GetXmlString();
            if (document.isNull())
                ++notForXml; // a text holds a character that XML cannot carry
            else
                documents.append(document);
        }
    }
    QVERIFY2(notForXml < documents.size() / 10, qPrintable(QString::number(notForXml)));
    m_checker.check(documents);
    for (const QString &document : documents) {
        const Verdict verdict = m_checker.verdict(document);
        QVERIFY2(verdict.accepted, qPrintable(document + verdict.complaints.join(QLatin1Char('\n'))));
    }
}

TEST_SUITE(SchemaTest)
#include "tst_Schema.moc"
