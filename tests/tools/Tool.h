// SPDX-License-Identifier: MIT
#pragma once

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>
#include <QTest>

#include "WrittenXml.h"

/// The result of one run of the tool.
struct Run
{
    int status = -1;
    QString out;
    QString err;
    QByteArray bytes; // the bytes of `out`, undecoded

    /// The status on a line of its own, the output and the errors.
    QString all() const { return QStringLiteral("%1\n").arg(status) + out + err; }
};

/// A temporary folder in which the tool runs, so that files and messages have short names.
class Workshop
{
public:
    Run run(const QStringList &arguments, const QByteArray &input = {})
    {
        QProcess process;
        prepare(process, arguments);
        process.start();
        process.write(input);
        process.closeWriteChannel();
        const Run run = finish(process);
        keepXml(arguments, run);
        return run;
    }

    /// Runs the tool with standard output redirected to a file.
    Run runInto(const QString &outputFile, const QStringList &arguments)
    {
        QProcess process;
        prepare(process, arguments);
        process.setStandardOutputFile(outputFile);
        process.start();
        return finish(process);
    }

    /// Kills the tool after that many milliseconds, unless it has ended.
    void runAndKill(const QStringList &arguments, int milliseconds)
    {
        QProcess process;
        prepare(process, arguments);
        process.start();
        process.closeWriteChannel();
        QVERIFY(process.waitForStarted(-1));
        process.waitForFinished(milliseconds);
        process.kill();
        process.waitForFinished(-1);
    }

    /// Runs a shell command; "$tool" is the program.
    Run shell(const QString &line)
    {
        QProcess process;
        prepare(process, {});
        process.setProgram(QStringLiteral("/bin/sh"));
        process.setArguments({QStringLiteral("-c"), line});
        process.start();
        process.closeWriteChannel();
        return finish(process);
    }

    void setEnvironment(const QString &name, const QString &value) { m_environment.insert(name, value); }

    void write(const QString &name, const QByteArray &content)
    {
        QFile file(path(name));
        QVERIFY2(file.open(QIODevice::WriteOnly), qPrintable(name));
        QCOMPARE(file.write(content), qint64(content.size()));
    }

    QByteArray read(const QString &name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArrayLiteral("(no such file)");
    }

    QStringList files() const
    {
        return QDir(m_folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }

    QString path(const QString &name) const { return m_folder.filePath(name); }

private:
    void prepare(QProcess &process, const QStringList &arguments)
    {
        QProcessEnvironment environment = m_environment;
        environment.insert(QStringLiteral("tool"), QStringLiteral(TOOL_PROGRAM));
        process.setProcessEnvironment(environment);
        process.setWorkingDirectory(m_folder.path());
        process.setProgram(QStringLiteral(TOOL_PROGRAM));
        process.setArguments(arguments);
    }

    static Run finish(QProcess &process)
    {
        Run run;
        if (!process.waitForFinished() || process.exitStatus() != QProcess::NormalExit)
            return run;
        run.status = process.exitCode();
        run.bytes = process.readAllStandardOutput();
        run.out = QString::fromUtf8(run.bytes);
        run.err = QString::fromUtf8(process.readAllStandardError());
        return run;
    }

    // XML that the tool has written while validating is checked against the schema, like the XML of the tests
    // themselves.
    void keepXml(const QStringList &arguments, const Run &run) const
    {
        const QString noValidate = QStringLiteral("--no-validate");
        if (run.status != 0 || arguments.value(0) != QLatin1String("convert") || arguments.contains(noValidate))
            return;
        QStringList files;
        for (int i = 1; i < arguments.size(); ++i) {
            const QString &argument = arguments.at(i);
            if (!argument.startsWith(QLatin1String("--")))
                files.append(argument);
            else if (!argument.contains(QLatin1Char('=')))
                ++i; // the option's value
        }
        const QString outputFile = files.value(1);
        const bool isFile = QFileInfo(path(outputFile)).isFile();
        const QByteArray written = isFile ? read(outputFile) : run.bytes;
        if (written.startsWith("<?xml"))
            WrittenXml::keep(QStringLiteral("TunerProperties"), written);
    }

    QTemporaryDir m_folder;
    QProcessEnvironment m_environment = QProcessEnvironment::systemEnvironment();
};

/// Arguments as they are typed; none contains a blank.
inline QStringList line(const char *arguments)
{
    return QString::fromUtf8(arguments).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

inline QStringList exampleNames()
{
    return {QStringLiteral("directionfinder"), QStringLiteral("ffp"), QStringLiteral("mcp"), QStringLiteral("receiver"),
            QStringLiteral("scp")};
}

inline QString examplePath(const QString &name)
{
    return QStringLiteral(EXAMPLES_DIR "/%1.xml").arg(name);
}

/// A small document, exactly as the tool writes it.
constexpr char smallXml[] = R"(<?xml version="1.0" encoding="UTF-8"?>
<TunerProperties Version="1.1" type="SCP" baseresource="b">
  <Component type="t" name="c" optional="true">
    <Node id="n">
      <ValueItem>
        <ValueInt id="i" value="7"/>
      </ValueItem>
    </Node>
  </Component>
</TunerProperties>
)";

/// The same as a tagged record.
constexpr char smallTaggedHex[] = "C10CBB5F 000000B3"
                                  "CCFEDFA1 0000000A 00000006 0031002E0031" // version "1.1"
                                  "A1F0EE2D 00000007 00000003 534350" // type "SCP"
                                  "E0CFAE8E 00000005 00000001 62" // baseresource "b"
                                  "66BA8E61 0000007D 00000001" // one Component
                                  "00000075 0BAD2053 00000005 00000001 74" // type "t"
                                  "CB4CF645 00000005 00000001 63" // name "c"
                                  "44E09811 00000001 01" // optional
                                  "C5E53936 0000004A 00000001" // one Node
                                  "00000042 2B262DC9 00000005 00000001 6E" // id "n"
                                  "4F71131F 0000002D 00000001" // one ValueItem
                                  "00000025 4ACA6514 0000001D" // a ValueInt
                                  "2B262DC9 00000005 00000001 69" // id "i"
                                  "0BA44238 00000008 0000000000000007"; // value 7

/// The same as a snapshot.
constexpr char smallSnapshotHex[] = "D000 00000006 0031002E0031" // Component, type, baseresource; "1.1"
                                    "00000001 17 00000001 03 00000001" // one Component, one Node, one ValueItem
                                    "0400 02 03 00000002 0069" // a ValueInt "i"
                                    "0000000000000007" // value 7
                                    "00000002 006E" // id of the Node
                                    "00000002 0074 00000002 0063 01" // type, name, optional of the Component
                                    "01 00000002 0062"; // type SCP, baseresource
