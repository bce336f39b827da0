// SPDX-License-Identifier: MIT
//
// The examples of the page on reading documents: the manual shows the marked parts, and the tests check their results.

#include <utility>

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <jobxml/TunerProperties.h>

namespace {

//! [strict]
/// Reads a document into `result`. Returns a null string, or the first error and its place.
QString firstError(const QString &path, JobXml::TunerProperties &result)
{
    JobXml::TunerProperties read; // not `result`: values read before an error stay in the object
    try {
        if (!read.LoadXml(path))
            return read.GetErrorString(); // the file, or the form of the document
    } catch (const ReportException &e) { // the content
        const REPORTGENERATOR::ErrorLocation where = e.GetLocation();
        const QString place = QStringLiteral(":%1:%2: ").arg(where.line).arg(where.column);
        return where.source + place + (where.path + QStringList{e.GetMessageText()}).join(QStringLiteral(" / "));
    }
    result = read;
    return QString();
}
//! [strict]

//! [problems]
/// All problems of a document, one per line, with their places and paths.
QStringList problemsIn(const QString &path)
{
    JobXml::TunerProperties document;
    QVector<JobXml::Problem> problems;
    if (document.LoadXml(path, problems))
        return {};
    QStringList lines;
    for (const JobXml::Problem &problem : std::as_const(problems)) {
        const QString place =
            problem.line > 0 ? QStringLiteral("%1:%2: ").arg(problem.line).arg(problem.column) : QString();
        lines.append(place + (problem.path + QStringList{problem.message}).join(QStringLiteral(" / ")));
    }
    return lines;
}
//! [problems]

//! [ReadOptions]
/// Whether bytes from a connection are a complete, valid document. Reports only the first problem.
bool readReceived(const QByteArray &bytes, JobXml::TunerProperties &result, QString &why)
{
    JobXml::ReadOptions options;
    options.setMaxBytes(1024 * 1024); // both as received and expanded
    options.setAllowCompressed(false);

    why = QString();
    const auto keepFirst = [&why](const JobXml::Problem &problem) {
        if (why.isNull())
            why = problem.message;
    };
    JobXml::TunerProperties read;
    if (!read.SetBinaryRepresentation(bytes, keepFirst, options))
        return false;
    result = read;
    return true;
}
//! [ReadOptions]

QString exampleFile(const char *name)
{
    return QStringLiteral(EXAMPLES_DIR "/") + QLatin1String(name);
}

class Document
{
public:
    explicit Document(const QByteArray &content)
    {
        QFile file(path());
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("%s", qPrintable(file.errorString()));
    }

    QString path() const { return m_folder.filePath(QStringLiteral("document.xml")); }

private:
    const QTemporaryDir m_folder;
};

/// The boolean of the component is empty, and the node has no id.
const QByteArray twoProblems = "<TunerProperties Version=\"1.1\" type=\"SCP\" baseresource=\"b\">\n"
                               "  <Component type=\"t\" name=\"agc\" optional=\"\">\n"
                               "    <Node><ValueItem><ValueBoolean id=\"v\" value=\"true\"/></ValueItem></Node>\n"
                               "  </Component>\n"
                               "</TunerProperties>\n";

} // namespace

class Reading : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theFirstErrorHasItsPlace();
    void allProblemsHaveTheirPlaces();
    void receivedBytesAreLimited();
};

void Reading::theFirstErrorHasItsPlace()
{
    JobXml::TunerProperties result;
    QVERIFY(firstError(exampleFile("receiver.xml"), result).isNull());
    QCOMPARE(result.Gettype(), JobXml::TunerProperties::type::Receiver);

    const Document malformed("<TunerProperties Version=\"1.1\">\n  <Component></Node>");
    QCOMPARE(firstError(malformed.path(), result),
             malformed.path() + QStringLiteral(":2:20: Opening and ending tag mismatch."));

    const Document refused(twoProblems);
    QCOMPARE(firstError(refused.path(), result),
             refused.path()
                 + QStringLiteral(":2:34: Component \"agc\" / Please set a value or a default for the boolean "
                                  "'optional' in 'Component'."));
    QCOMPARE(result.Gettype(), JobXml::TunerProperties::type::Receiver); // unchanged
}

void Reading::allProblemsHaveTheirPlaces()
{
    QCOMPARE(problemsIn(exampleFile("receiver.xml")), QStringList());
    QCOMPARE(
        problemsIn(Document(twoProblems).path()),
        (QStringList{
            QStringLiteral("2:34: Component \"agc\" / Please set a value or a default for the boolean 'optional' in "
                           "'Component'."),
            QStringLiteral("3:5: Component \"agc\" / Component: Tried to append not completely defined or invalid item "
                           "Node."),
            QStringLiteral("Component \"agc\" / Node 1 / Node: Please set id properly."),
        }));
}

void Reading::receivedBytesAreLimited()
{
    JobXml::TunerProperties tuner;
    QVERIFY(tuner.LoadXml(exampleFile("receiver.xml")));
    JobXml::TunerProperties result;
    QString why;
    QVERIFY(readReceived(tuner.GetBinaryRepresentationAsQByteArray(), result, why));
    QVERIFY(why.isNull());
    QVERIFY(result == tuner);
    const JobXml::TunerProperties received(result);

    QVERIFY(!readReceived(tuner.GetCompressedBinaryRepresentationAsQByteArray(9), result, why));
    QCOMPARE(why, QStringLiteral("the representation is compressed, but only uncompressed ones are accepted"));

    tuner.Setname(QString(1024 * 1024, QLatin1Char('n')));
    QVERIFY(!readReceived(tuner.GetBinaryRepresentationAsQByteArray(), result, why));
    QVERIFY(why.endsWith(QStringLiteral("bytes, but no more than 1048576 are accepted")));

    JobXml::TunerProperties incomplete;
    incomplete.SetValidate(false);
    QVERIFY(!readReceived(incomplete.GetBinaryRepresentationAsQByteArray(), result, why));
    QCOMPARE(why, QStringLiteral("enum is not valid (classname=TunerProperties,membername=m_type)"));
    QVERIFY(result == received);
}

TEST_SUITE(Reading)
#include "tst_Reading.moc"
