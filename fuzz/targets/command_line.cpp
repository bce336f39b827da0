// SPDX-License-Identifier: MIT
#include <csignal>
#include <cstdio>
#include <cstdlib>

#include <fcntl.h>
#include <unistd.h>

#include <QByteArrayList>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QMap>

#include "commands/CommandLine.h"

#include "Harness.h"

using namespace Fuzz;

namespace {

const QByteArray document =
    R"(<TunerProperties Version="1.1" type="SCP" baseresource="b"><Component type="t" name="c" optional="true"><Node id="n">)"
    R"(<ValueItem><ValueInt id="i" value="3"/></ValueItem></Node></Component></TunerProperties>)";

/// A folder of this run's own, two levels below another one: without a slash no argument leaves these two levels.
class Playground
{
public:
    Playground()
    {
        char upper[] = "/dev/shm/fuzz_command_line_XXXXXX";
        require(mkdtemp(upper) != nullptr && QDir(QString::fromLatin1(upper)).mkpath(QStringLiteral("inner/work"))
                    && chdir(upper) == 0 && chdir("inner/work") == 0,
                "a folder can be made");
        m_work = QDir::currentPath();
        m_upper = QString::fromLatin1(upper);
        fill();
    }

    ~Playground() { QDir(m_upper).removeRecursively(); }

    void enter() const { require(QDir::setCurrent(m_work), "the folder is still there"); }

    static QMap<QString, QByteArray> content()
    {
        QMap<QString, QByteArray> files;
        const auto entries = QDir().entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
        for (const QString &name : entries) {
            QFile file(name);
            files.insert(name,
                         QFileInfo(name).isFile() && file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray());
        }
        return files;
    }

    /// Restores it, if a command has changed it.
    void restore()
    {
        if (content() == m_filled)
            return;
        QDir inner(m_upper + QStringLiteral("/inner"));
        const auto entries = inner.entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
        for (const QFileInfo &entry : entries) {
            if (entry.fileName() != QLatin1String("work"))
                entry.isDir() ? void(QDir(entry.filePath()).removeRecursively())
                              : void(QFile::remove(entry.filePath()));
        }
        const auto files = content();
        for (auto file = files.begin(); file != files.end(); ++file)
            QFileInfo(file.key()).isDir() && !QFileInfo(file.key()).isSymLink()
                ? void(QDir(file.key()).removeRecursively())
                : void(QFile::remove(file.key()));
        fill();
    }

private:
    void fill()
    {
        QFile file(QStringLiteral("a.xml"));
        require(file.open(QIODevice::WriteOnly) && file.write(document) == document.size(), "a file can be written");
        file.close();
        m_filled = content();
    }

    QString m_upper;
    QString m_work;
    QMap<QString, QByteArray> m_filled;
};

} // namespace

/// Runs the command lines; arguments are separated by line feeds. The tool's output is discarded.
extern "C" int LLVMFuzzerTestOneInput(const quint8 *data, std::size_t size)
{
    static int argc = 1;
    static char program[] = "tunerproperties";
    static char *argv[] = {program, nullptr};
    static const QCoreApplication application(argc, argv);
    static const int ownFolder = open(".", O_PATH | O_DIRECTORY); // by which libFuzzer finds its files
    static Playground playground;
    static const int nowhere = open("/dev/null", O_RDWR);

    const auto line = QByteArray::fromRawData(reinterpret_cast<const char *>(data), int(size));
    if (line.contains('/') || line.contains('\0') || line.count('\n') > 16)
        return 0;
    QByteArrayList arguments; // without the program's name, as main() passes them
    for (const QByteArray &argument : line.split('\n'))
        arguments += argument;

    playground.enter();
    // libFuzzer itself reports on the standard streams.
    const int streams[] = {dup(0), dup(1), dup(2)};
    for (int stream = 0; stream < 3; ++stream)
        dup2(nowhere, stream);
    const auto before = Playground::content();
    int status = 0;
    try {
        status = int(runCommandLine(arguments));
    } catch (const FileFailure &) {
        status = int(ExitStatus::FileFailure); // as main() ends then
    }
    std::fflush(stdout);
    for (int stream = 0; stream < 3; ++stream) {
        dup2(streams[stream], stream);
        close(streams[stream]);
    }

    require(status >= 0 && status <= 3, "the exit status is one of those documented");
    require(status != int(ExitStatus::WrongUsage) || Playground::content() == before,
            "a command line that is refused changes nothing");
    playground.restore();
    require(fchdir(ownFolder) == 0, "the way back exists");
    return 0;
}
