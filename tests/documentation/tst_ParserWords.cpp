// SPDX-License-Identifier: MIT
#include <QFile>
#include <QRegularExpression>
#include <QtTest>

#include <jobxml/TunerProperties.h>

/// The manual's list of messages of Qt's XML parser: each is provoked, and no others are listed.
class ParserWordsTest : public QObject
{
    Q_OBJECT

private:
    /// The texts of the table in this chapter of the manual.
    static QStringList listed()
    {
        QFile file(QStringLiteral(MESSAGES_PAGE));
        if (!file.open(QIODevice::ReadOnly))
            return {};
        const QString page = QString::fromUtf8(file.readAll());
        const QString chapter =
            page.section(QStringLiteral("\n### Words of the XML parser\n"), 1, 1).section(QStringLiteral("\n##"), 0, 0);
        const QRegularExpression row(QStringLiteral("^\\| `([^`]+)` \\|"), QRegularExpression::MultilineOption);
        QStringList texts;
        for (auto match = row.globalMatch(chapter); match.hasNext();)
            texts.append(match.next().captured(1));
        return texts;
    }

    QStringList m_provoked;

private Q_SLOTS:
    void parserMessagesAreThoseOfTheManual_data()
    {
        QTest::addColumn<QByteArray>("document");
        QTest::addColumn<QString>("words"); // as the manual has them, <...> for what differs
        QTest::addColumn<QString>("filledIn");

        const auto row = [](const char *name, const char *document, const char *words, const char *filledIn = nullptr) {
            QTest::newRow(name) << QByteArray(document) << QString::fromLatin1(words)
                                << QString::fromLatin1(filledIn ? filledIn : words);
        };
        row("cut off", "<TunerProperties><Component>", "Premature end of document.");
        row("no element", "Receiver", "Start tag expected.");
        row("wrong end", "<TunerProperties></Component>", "Opening and ending tag mismatch.");
        row("two roots", "<TunerProperties/><TunerProperties/>", "Extra content at end of document.");
        row("attribute twice", "<TunerProperties name='a' name='b'/>", "Attribute '<name>' redefined.",
            "Attribute 'name' redefined.");
        row("entity", "<TunerProperties name='&ouml;'/>", "Entity '<name>' not declared.",
            "Entity 'ouml' not declared.");
        row("prefix", "<t:TunerProperties/>", "Namespace prefix '<prefix>' not declared",
            "Namespace prefix 't' not declared");
        row("version", "<?xml version='2.0'?><TunerProperties/>", "Unsupported XML version.");
        row("reference", "<TunerProperties name='&#0;'/>", "Invalid character reference.");
        row("section end", "<TunerProperties>]]></TunerProperties>", "Sequence ']]>' not allowed in content.");
        row("no quotes", "<TunerProperties name=a/>", "Expected <what is allowed>, but got '<what was found>'.",
            "Expected ''' or '\"', but got '[a-zA-Z]'.");
    }

    void parserMessagesAreThoseOfTheManual()
    {
        QFETCH(QByteArray, document);
        QFETCH(QString, words);
        QFETCH(QString, filledIn);
        m_provoked.append(words);

        QTemporaryFile file;
        QVERIFY(file.open());
        QCOMPARE(file.write(document), qint64(document.size()));
        file.close();
        JobXml::TunerProperties tuner;
        QVERIFY(!tuner.LoadXml(file.fileName()));
        QCOMPARE(tuner.GetErrorString().section(QStringLiteral(": "), 1), filledIn);
    }

    void theManualListsNoOthers() { QCOMPARE(listed(), m_provoked); }
};

TEST_SUITE(ParserWordsTest)
#include "tst_ParserWords.moc"
