// SPDX-License-Identifier: MIT
#include <console/Console.h>
#include <files/DocumentFile.h>

#include <ctime>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using TunerDocuments::Form;
using TunerDocuments::LoadOptions;

/// All readers of one document see the same, complete bytes, or reading fails.
class InputTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void everyByteIsRead_data();
    void everyByteIsRead();
    void sizesUpToTheLimitAreRead();
    void aPipeIsReadUpToTheLimit();
    void changedFileIsAnError_data();
    void changedFileIsAnError();
    void validationNeverSeesAnotherDocument_data();
    void validationNeverSeesAnotherDocument();
    void aReplacedFileIsReadAsItWasOpened();

private:
    QByteArray name() const { return QFile::encodeName(m_folder->filePath(QStringLiteral("doc"))); }
    void write(const QByteArray &content, int flags = O_TRUNC) const
    {
        const int file = open(name().constData(), O_WRONLY | O_CREAT | O_CLOEXEC | flags, 0600);
        QVERIFY(file >= 0);
        QCOMPARE(::write(file, content.constData(), size_t(content.size())), ssize_t(content.size()));
        close(file);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

namespace {

template <class Action>
QString refusal(Action action)
{
    try {
        action();
    } catch (const FileFailure &failure) {
        return failure.text();
    }
    return QStringLiteral("(none)");
}

} // namespace

void InputTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
}

void InputTest::everyByteIsRead_data()
{
    QTest::addColumn<int>("size");
    for (const int size : {0, 1, 65535, 65536, 65537, 200000})
        QTest::addRow("%d", size) << size;
}

void InputTest::everyByteIsRead()
{
    QFETCH(int, size);
    QByteArray content(size, '\0');
    for (int i = 0; i < size; ++i)
        content[i] = char(i % 251);
    write(content);
    Input input((FileName(name())));
    QCOMPARE(input.bytes(), content);
    QCOMPARE(input.head(10), content.left(10));
    QCOMPARE(input.bytes(), content);
}

void InputTest::sizesUpToTheLimitAreRead()
{
    write("12345");
    QCOMPARE(Input(FileName(name()), FileKinds::All, 5).bytes(), QByteArray("12345"));
    QCOMPARE(refusal([&] { Input(FileName(name()), FileKinds::All, 4); }),
             QString::fromUtf8(name()) + QStringLiteral(": too large: 5 bytes; the limit is 4 bytes"));
    QCOMPARE(Input::largest, qint64(1'000'000'000));
}

void InputTest::aPipeIsReadUpToTheLimit()
{
    QCOMPARE(mkfifo(name().constData(), 0600), 0);
    const int keptOpen = open(name().constData(), O_RDWR | O_CLOEXEC);
    QVERIFY(keptOpen >= 0);
    QCOMPARE(::write(keptOpen, "12345", 5), ssize_t(5));
    QCOMPARE(refusal([&] { Input(FileName(name()), FileKinds::All, 4); }),
             QString::fromUtf8(name()) + QStringLiteral(": too large: more than 4 bytes; the limit is 4 bytes"));
    close(keptOpen);
}

void InputTest::changedFileIsAnError_data()
{
    QTest::addColumn<QString>("change");
    QTest::newRow("it grows") << QStringLiteral("grow");
    QTest::newRow("it shrinks") << QStringLiteral("shrink");
    QTest::newRow("it is emptied") << QStringLiteral("empty");
    QTest::newRow("other bytes of the same size") << QStringLiteral("rewrite");
}

void InputTest::changedFileIsAnError()
{
    QFETCH(QString, change);
    write("<TunerProperties Version=\"1.1\"/>");
    const timespec past[2] = {{1'000'000'000, 0}, {1'000'000'000, 0}};
    QCOMPARE(utimensat(AT_FDCWD, name().constData(), past, 0), 0);
    Input input((FileName(name())));
    QCOMPARE(input.bytes().size(), 32);
    if (change == QLatin1String("grow"))
        write("\n", O_APPEND);
    else if (change == QLatin1String("rewrite"))
        write("<TunerProperties Version=\"1.0\"/>");
    else
        QCOMPARE(truncate(name().constData(), change == QLatin1String("empty") ? 0 : 20), 0);
    const QString expected = QString::fromUtf8(name()) + QStringLiteral(": changed while it was being read");
    QCOMPARE(refusal([&] { input.bytes(); }), expected);
    QCOMPARE(refusal([&] { input.head(4); }), expected);
    QCOMPARE(refusal([&] { input.check(); }), expected);
    for (const Form form : {Form::Xml, Form::Tagged, Form::Compressed, Form::Snapshot, Form::Json}) {
        const QString loading = refusal([&] { loadDocument(input, LoadOptions().setForm(form)); });
        QVERIFY2(loading.startsWith(QString::fromUtf8(name()) + QStringLiteral(": ")), qPrintable(loading));
    }
}

void InputTest::validationNeverSeesAnotherDocument_data()
{
    QTest::addColumn<QByteArray>("later");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("the beginning alone") << QByteArray("<TunerProperties Version=\"1.1\">");
    QTest::newRow("a valid document") << QByteArray(
        "<TunerProperties Version=\"1.1\" type=\"SCP\" baseresource=\"b\"/>");
}

// Not even if it changes while the problems are found.
void InputTest::validationNeverSeesAnotherDocument()
{
    QFETCH(QByteArray, later);
    write("<TunerProperties Version=\"1.1\" type=\"SCP\" baseresource=\"b\" hwProcessing=\"\"/>");
    Input input((FileName(name())));
    QCOMPARE(refusal([&] {
                 loadDocument(input, LoadOptions().setForm(Form::Xml), [&](const JobXml::Problem &) { write(later); });
             }),
             QString::fromUtf8(name()) + QStringLiteral(": changed while it was being read"));
}

// As programs save that write a new file and rename it.
void InputTest::aReplacedFileIsReadAsItWasOpened()
{
    write("old");
    Input input((FileName(name())));
    QCOMPARE(::rename(name().constData(), (name() + "~").constData()), 0);
    write("a new one");
    QCOMPARE(input.bytes(), QByteArray("old"));
}

TEST_SUITE(InputTest)
#include "tst_Input.moc"
