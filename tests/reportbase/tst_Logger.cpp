// SPDX-License-Identifier: MIT
#include <QtTest>

#include <type_traits>

#include "Note.h"

using REPORTGENERATOR::Logger;

namespace {

QStringList received; // a message handler is a plain function

void receive(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    const QString level = type == QtCriticalMsg ? QStringLiteral("critical")
        : type == QtWarningMsg                  ? QStringLiteral("warning")
        : type == QtInfoMsg                     ? QStringLiteral("information")
                                                : QStringLiteral("something else");
    received << level + QStringLiteral(" [") + QLatin1String(context.category) + QStringLiteral("] ") + message;
}

} // namespace

class LoggerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theStockLoggerForwardsToTheLoggingCategory();
    void loggerIsStoredAndReturnedByPointer();
    void aFailedLoadIsLoggedOnceWithTheErrorString();
    void aFailedSaveIsLoggedOnceWithTheErrorString();
    void successIsNotLogged();
    void anObjectWithoutLoggerFailsSilently();
};

void LoggerTest::theStockLoggerForwardsToTheLoggingCategory()
{
    received.clear();
    const QtMessageHandler before = qInstallMessageHandler(receive);
    Logger logger;
    logger.Log(Logger::Severity::Error, QStringLiteral("an \"error\""));
    logger.Log(Logger::Severity::Warning, QStringLiteral("a warning %1"));
    logger.Log(Logger::Severity::Information, QStringLiteral("Größe"));
    qInstallMessageHandler(before);

    const QStringList expected{
        QStringLiteral("critical [reportbase] an \"error\""),
        QStringLiteral("warning [reportbase] a warning %1"),
        QStringLiteral("information [reportbase] Größe"),
    };
    QCOMPARE(received, expected);
}

void LoggerTest::loggerIsStoredAndReturnedByPointer()
{
    static_assert(!std::is_copy_constructible_v<Logger> && !std::is_copy_assignable_v<Logger>);
    static_assert(std::has_virtual_destructor_v<Logger>);

    const Note note;
    QVERIFY(!note.GetLogger());
    const auto logger = std::make_shared<RecordingLogger>();
    note.SetLogger(logger);
    QCOMPARE(note.GetLogger().get(), logger.get());
    QCOMPARE(logger.use_count(), 2L);
    note.ResetLogger();
    QVERIFY(!note.GetLogger());
    QCOMPARE(logger.use_count(), 1L);
}

void LoggerTest::aFailedLoadIsLoggedOnceWithTheErrorString()
{
    Note note;
    const auto logger = std::make_shared<RecordingLogger>();
    note.SetLogger(logger);

    QVERIFY(!note.SetXmlString(QStringLiteral("<Note>"), true));
    QVERIFY(!note.LoadXml(QStringLiteral("/no/such/file")));
    QByteArray nothing;
    QVERIFY(!note.SetBinaryRepresentation(nothing));
    QVERIFY(!note.LoadBinary(nullptr));
    const QStringList expected{
        QStringLiteral("error: XML text:1:6: Premature end of document."),
        QStringLiteral("error: /no/such/file: cannot open: No such file or directory"),
        QStringLiteral("error: binary data: the leading word and the length take 8 bytes, but only 0 are there"),
        QStringLiteral("error: the file pointer is null"),
    };
    QCOMPARE(logger->lines, expected);
    QCOMPARE(QStringLiteral("error: ") + note.GetErrorString(), expected.last());
}

void LoggerTest::aFailedSaveIsLoggedOnceWithTheErrorString()
{
    const Note note;
    const auto logger = std::make_shared<RecordingLogger>();
    note.SetLogger(logger);
    QVERIFY(!note.SaveXml(QStringLiteral("x")));
    QVERIFY(!note.SaveBinary(QStringLiteral("y")));
    QVERIFY(!note.SaveCompressedBinary(QStringLiteral("z"), 9));
    const QStringList expected{
        QStringLiteral("error: x: the object has no data, so there is nothing to write"),
        QStringLiteral("error: y: the object has no data, so there is nothing to write"),
        QStringLiteral("error: z: the object has no data, so there is nothing to write"),
    };
    QCOMPARE(logger->lines, expected);
    QCOMPARE(QStringLiteral("error: ") + note.GetErrorString(), expected.last());
}

void LoggerTest::successIsNotLogged()
{
    Note note(QStringLiteral("fine"));
    const auto logger = std::make_shared<RecordingLogger>();
    note.SetLogger(logger);
    QByteArray bytes = note.GetBinaryRepresentationAsQByteArray();
    QVERIFY(note.SetBinaryRepresentation(bytes));
    QVERIFY(note.SetXmlString(note.GetXmlString(), true));
    QCOMPARE(logger->lines, QStringList());
}

void LoggerTest::anObjectWithoutLoggerFailsSilently()
{
    received.clear();
    const QtMessageHandler before = qInstallMessageHandler(receive);
    Note note;
    const bool loaded = note.SetXmlString(QStringLiteral("<Note>"), true);
    qInstallMessageHandler(before);
    QVERIFY(!loaded);
    QCOMPARE(note.GetErrorString(), QStringLiteral("XML text:1:6: Premature end of document."));
    QCOMPARE(received, QStringList());
}

TEST_SUITE(LoggerTest)
#include "tst_Logger.moc"
