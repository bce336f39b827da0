// SPDX-License-Identifier: MIT
#include "Saving.h"

#include <csignal>

#include <sys/resource.h>
#include <sys/stat.h>

using JobXml::TunerProperties;

/// Folders, links and special files at the path of a saved document, long names, and limits of file sizes.
class SaveTargetsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data();
    void init();
    void cleanup();

    void targetThatCannotBeWrittenIsAnError_data();
    void targetThatCannotBeWrittenIsAnError();
    void specialFilesAreNotReplaced_data();
    void specialFilesAreNotReplaced();
    void descriptorOfAPipeIsAnError();
    void linkStaysAndItsTargetIsWritten_data();
    void linkStaysAndItsTargetIsWritten();
    void linkThatLeadsToNoFileIsAnError_data();
    void linkThatLeadsToNoFileIsAnError();
    void asManyLinksAreFollowedAsTheSystemFollows();
    void nameIsRelativeToTheCurrentFolder();
    void namesMayBeAsLongAsTheSystemAllows_data();
    void namesMayBeAsLongAsTheSystemAllows();
    void aSizeLimitIsAnError_data();
    void aSizeLimitIsAnError();
    void sizeLimitThatKillsKeepsTheOldFile_data();
    void sizeLimitThatKillsKeepsTheOldFile();

private:
    QString path(const QString &name) const { return m_folder->path(name); }
    void link(const char *from, const char *to) const { linkNames(QString::fromLatin1(from), QString::fromLatin1(to)); }
    void linkNames(const QString &from, const QString &to) const
    {
        QCOMPARE(symlink(QFile::encodeName(to).constData(), QFile::encodeName(path(from)).constData()), 0);
    }
    void checkThatItIsRefused(const QString &name, const QString &reason);
    void checkThatItIsSaved(const QString &name);
    QStringList tree() const;

    Way m_way = {};
    std::unique_ptr<Folder> m_folder;
    TunerProperties m_document = aSmallDocument("new");
};

void SaveTargetsTest::initTestCase_data()
{
    QTest::addColumn<Way>("way");
    for (const Way &way : waysToSave)
        QTest::newRow(way.name) << way;
}

void SaveTargetsTest::init()
{
    QFETCH_GLOBAL(Way, way);
    m_way = way;
    m_folder = std::make_unique<Folder>();
}

void SaveTargetsTest::cleanup()
{
    m_folder.reset();
}

/// The paths of everything below the folder, with links marked.
QStringList SaveTargetsTest::tree() const
{
    QStringList found;
    const QString root = m_folder->path() + QLatin1Char('/');
    QDirIterator items(m_folder->path(), QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                       QDirIterator::Subdirectories);
    while (items.hasNext()) {
        const QString item = items.next();
        found << item.mid(root.size()) + (QFileInfo(item).isSymLink() ? QStringLiteral(" ->") : QString());
    }
    found.sort();
    return found;
}

void SaveTargetsTest::checkThatItIsRefused(const QString &name, const QString &reason)
{
    const QStringList before = tree();
    QVERIFY(!m_way.save(m_document, path(name)));
    QCOMPARE(m_document.GetErrorString(), path(name) + QStringLiteral(": cannot write: ") + reason);
    QCOMPARE(tree(), before);
}

void SaveTargetsTest::checkThatItIsSaved(const QString &name)
{
    QVERIFY2(m_way.save(m_document, path(name)), qPrintable(m_document.GetErrorString()));
    QVERIFY(m_document.GetErrorString().isNull());
    QCOMPARE(m_folder->read(name), m_way.bytes(m_document));
}

void SaveTargetsTest::targetThatCannotBeWrittenIsAnError_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("reason");
    const auto row = [](const char *what, const QString &name, const char *reason) {
        QTest::newRow(what) << name << QString::fromLatin1(reason);
    };
    row("in a missing folder", QStringLiteral("no/document"), "No such file or directory");
    row("a missing folder", QStringLiteral("no/"), "No such file or directory");
    row("in a file", QStringLiteral("file/document"), "Not a directory");
    row("a file as a folder", QStringLiteral("file/"), "Not a directory");
    row("a folder", QStringLiteral("folder"), "Filename refers to a directory");
    row("a folder, with a slash", QStringLiteral("folder/"), "Filename refers to a directory");
    row("a folder with files", QStringLiteral("full"), "Filename refers to a directory");
    row("this folder", QStringLiteral("."), "Filename refers to a directory");
    row("too long a name", QString(256, QLatin1Char('n')), "File name too long");
}

void SaveTargetsTest::targetThatCannotBeWrittenIsAnError()
{
    QFETCH(QString, name);
    QFETCH(QString, reason);
    m_folder->write(QStringLiteral("file"), "old");
    QVERIFY(QDir(m_folder->path()).mkdir(QStringLiteral("folder")));
    QVERIFY(QDir(m_folder->path()).mkdir(QStringLiteral("full")));
    m_folder->write(QStringLiteral("full/file"), "old");
    checkThatItIsRefused(name, reason);
    QCOMPARE(m_folder->read(QStringLiteral("file")), QByteArray("old"));
}

void SaveTargetsTest::specialFilesAreNotReplaced_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("a pipe") << QStringLiteral("pipe");
    QTest::newRow("a link to a pipe") << QStringLiteral("link");
}

void SaveTargetsTest::specialFilesAreNotReplaced()
{
    QFETCH(QString, name);
    QCOMPARE(mkfifo(QFile::encodeName(path(QStringLiteral("pipe"))).constData(), 0600), 0);
    link("link", "pipe");
    checkThatItIsRefused(name, QStringLiteral("it exists and is not a regular file"));
    struct stat status = {};
    QCOMPARE(stat(QFile::encodeName(path(name)).constData(), &status), 0);
    QVERIFY(S_ISFIFO(status.st_mode));
}

void SaveTargetsTest::descriptorOfAPipeIsAnError()
{
    int ends[2];
    QCOMPARE(pipe(ends), 0);
    const QString name = QStringLiteral("/proc/self/fd/%1").arg(ends[1]); // a link, but its text leads to no file
    QVERIFY(!m_way.save(m_document, name));
    QCOMPARE(m_document.GetErrorString(), name + QStringLiteral(": cannot write: it exists and is not a regular file"));
    close(ends[0]);
    close(ends[1]);
}

void SaveTargetsTest::linkStaysAndItsTargetIsWritten_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("file");
    const auto row = [](const char *what, const char *name, const char *file) {
        QTest::newRow(what) << QString::fromLatin1(name) << QString::fromLatin1(file);
    };
    row("to a file beside it", "beside", "file");
    row("to a file elsewhere", "elsewhere", "a/deep/file");
    row("to a link to a link", "third", "file");
    row("in a folder that is a link", "folder/file", "a/deep/file");
    row("up from a folder that is a link", "folder/up", "a/file");
    row("up within the path", "folder/../file", "a/file");
    row("to a file that is not there", "new", "a/new");
    row("up to a file that is not there", "folder/upnew", "a/upnew");
    row("to a link to a file that is not there", "newer", "a/new");
}

/// The document is saved in the file that a reader of the link opens.
void SaveTargetsTest::linkStaysAndItsTargetIsWritten()
{
    QFETCH(QString, name);
    QFETCH(QString, file);
    QVERIFY(QDir(m_folder->path()).mkpath(QStringLiteral("a/deep")));
    for (const char *old : {"file", "a/file", "a/deep/file"})
        m_folder->write(QString::fromLatin1(old), "old");
    link("beside", "file");
    linkNames(QStringLiteral("elsewhere"), path(QStringLiteral("a/deep/file")));
    link("second", "beside");
    linkNames(QStringLiteral("third"), path(QStringLiteral("second")));
    link("folder", "a/deep");
    link("a/deep/up", "../file");
    link("a/deep/upnew", "../upnew");
    link("new", "a/deep/../new");
    link("newer", "folder/../../new");
    QStringList after = tree();
    if (!after.contains(file)) {
        after.append(file);
        after.sort();
    }

    checkThatItIsSaved(name);
    QCOMPARE(m_folder->read(file), m_way.bytes(m_document));
    QCOMPARE(tree(), after); // links are still links, and no file was added
    for (const char *other : {"file", "a/file", "a/deep/file"}) {
        if (file != QLatin1String(other))
            QCOMPARE(m_folder->read(QString::fromLatin1(other)), QByteArray("old"));
    }
}

void SaveTargetsTest::linkThatLeadsToNoFileIsAnError_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("reason");
    const auto row = [](const char *what, const char *name, const char *reason) {
        QTest::newRow(what) << QString::fromLatin1(name) << QString::fromLatin1(reason);
    };
    row("into a missing folder", "missing", "No such file or directory");
    row("to a folder", "folder", "Filename refers to a directory");
    row("to itself", "self", "Too many levels of symbolic links");
    row("round in a circle", "round", "Too many levels of symbolic links");
    row("into a circle", "into", "Too many levels of symbolic links");
    row("a circle in the path", "self/document", "Too many levels of symbolic links");
}

void SaveTargetsTest::linkThatLeadsToNoFileIsAnError()
{
    QFETCH(QString, name);
    QFETCH(QString, reason);
    QVERIFY(QDir(m_folder->path()).mkdir(QStringLiteral("a")));
    link("missing", "no/file");
    link("folder", "a");
    link("self", "self");
    link("round", "about");
    link("about", "round");
    link("into", "round");
    checkThatItIsRefused(name, reason);
}

void SaveTargetsTest::asManyLinksAreFollowedAsTheSystemFollows()
{
    m_folder->write(QStringLiteral("0"), "old");
    for (int i = 1; i <= 41; ++i)
        linkNames(QString::number(i), QString::number(i - 1));
    checkThatItIsSaved(QStringLiteral("40"));
    QVERIFY(m_folder->read(QStringLiteral("41")).isNull());
    checkThatItIsRefused(QStringLiteral("41"), QStringLiteral("Too many levels of symbolic links"));
    QCOMPARE(m_folder->read(QStringLiteral("0")), m_way.bytes(m_document));
}

void SaveTargetsTest::nameIsRelativeToTheCurrentFolder()
{
    const QString current = QDir::currentPath();
    QVERIFY(QDir::setCurrent(m_folder->path()));
    const bool saved = m_way.save(m_document, QStringLiteral("document"));
    const bool refused = !m_way.save(m_document, QStringLiteral("no/document"));
    QVERIFY(QDir::setCurrent(current));
    QVERIFY(saved && refused);
    QCOMPARE(m_document.GetErrorString(), QStringLiteral("no/document: cannot write: No such file or directory"));
    QCOMPARE(m_folder->read(QStringLiteral("document")), m_way.bytes(m_document));
}

void SaveTargetsTest::namesMayBeAsLongAsTheSystemAllows_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("255 bytes") << QString(255, QLatin1Char('n'));
    QTest::newRow("249 bytes") << QString(249, QLatin1Char('n'));
    QTest::newRow("characters of three bytes") << QString(85, QChar(0x20AC));
}

/// The temporary name would be longer than the limit.
void SaveTargetsTest::namesMayBeAsLongAsTheSystemAllows()
{
    QFETCH(QString, name);
    checkThatItIsSaved(name);
    m_folder->write(name, "old");
    checkThatItIsSaved(name);
    QCOMPARE(m_folder->names(), QStringList(name));
}

namespace {

/// Limits the size of this process's files during its lifetime.
class SizeLimit
{
public:
    explicit SizeLimit(qint64 size)
    {
        getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit = {rlim_t(size), m_before.rlim_max};
        m_isSet = setrlimit(RLIMIT_FSIZE, &limit) == 0;
    }
    ~SizeLimit() { setrlimit(RLIMIT_FSIZE, &m_before); }
    SizeLimit(const SizeLimit &) = delete;
    SizeLimit &operator=(const SizeLimit &) = delete;

    bool isSet() const { return m_isSet; }

private:
    rlimit m_before = {};
    bool m_isSet = false;
};

} // namespace

void SaveTargetsTest::aSizeLimitIsAnError_data()
{
    QTest::addColumn<bool>("large");
    QTest::newRow("a small document") << false;
    QTest::newRow("a large document") << true;
}

void SaveTargetsTest::aSizeLimitIsAnError()
{
    QFETCH(bool, large);
    TunerProperties document = large ? aLargeDocument(1, 20000) : m_document;
    const QByteArray whole = m_way.bytes(document);
    m_folder->write(QStringLiteral("document"), "old");
    const auto previous = signal(SIGXFSZ, SIG_IGN);
    for (const int size : {0, 1, int(whole.size()) / 2, int(whole.size()) - 1, int(whole.size())}) {
        bool saved = false;
        {
            const SizeLimit limit(size);
            QVERIFY(limit.isSet());
            saved = m_way.save(document, path(QStringLiteral("document")));
        }
        QCOMPARE(saved, size == whole.size());
        QVERIFY(m_folder->read(QStringLiteral("document")) == (saved ? whole : QByteArray("old")));
        QCOMPARE(document.GetErrorString(),
                 saved ? QString()
                       : path(QStringLiteral("document")) + QStringLiteral(": cannot write: File too large"));
        QCOMPARE(m_folder->names(), QStringList(QStringLiteral("document")));
    }
    signal(SIGXFSZ, previous);
}

void SaveTargetsTest::sizeLimitThatKillsKeepsTheOldFile_data()
{
    aSizeLimitIsAnError_data();
}

void SaveTargetsTest::sizeLimitThatKillsKeepsTheOldFile()
{
    QFETCH(bool, large);
    TunerProperties document = large ? aLargeDocument(1, 20000) : m_document;
    m_folder->write(QStringLiteral("document"), "old");
    for (const int size : {0, 100}) { // what fits is written; the next byte raises the signal
        const int status = statusOfChild([&] {
            const rlimit noCoreDump = {0, 0};
            setrlimit(RLIMIT_CORE, &noCoreDump);
            signal(SIGXFSZ, SIG_DFL);
            const SizeLimit limit(size);
            return limit.isSet() && m_way.save(document, path(QStringLiteral("document"))) ? 0 : 1;
        });
        QVERIFY2(WIFSIGNALED(status) && WTERMSIG(status) == SIGXFSZ, qPrintable(QString::number(status)));
        QCOMPARE(m_folder->read(QStringLiteral("document")), QByteArray("old"));
    }
    checkThatItIsSaved(QStringLiteral("document"));
}

TEST_SUITE(SaveTargetsTest)
#include "tst_SaveTargets.moc"
