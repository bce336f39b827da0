// SPDX-License-Identifier: MIT
//
// make_seeds EXAMPLES CORPUS writes the seeds of every target into CORPUS/TARGET: the example documents, and a small
// object of each class.
#include <cstdio>
#include <cstdlib>

#include <QDataStream>
#include <QDir>
#include <QFile>

#include "Classes.h"

using namespace Fuzz;

namespace {

constexpr qint64 LargestSeed = 6000; // the fuzzer tries far more inputs if they are short

// In the order of the classes' numbers.
const char *const smallObjects[NumberOfClasses] = {
    R"(<TunerProperties Version="1.1" name="n" type="SCP" baseresource="b" connectableResources="c" quantity="2" )"
    R"(parentBaseResource="p" hwProcessing="true"><StartupModes><StartupMode>DF</StartupMode></StartupModes>)"
    R"(<BandwidthSelection><Name>w</Name><MaxBandwidth>12.50</MaxBandwidth></BandwidthSelection>)"
    R"(<MaxFFPDelay>7</MaxFFPDelay><HRPANSupported>false</HRPANSupported><Component type="t" name="c" displayName="d" optional="true"><Node id="n">)"
    R"(<ValueItem><ValueInt id="i" value="3"/></ValueItem></Node></Component></TunerProperties>)",
    R"(<StartupModes><StartupMode>Scan</StartupMode><StartupMode>Stop</StartupMode></StartupModes>)",
    R"(<BandwidthSelection><Name>w</Name><MaxBandwidth>12.50</MaxBandwidth></BandwidthSelection>)",
    R"(<Component type="t" name="c" displayName="d" optional="true"><Node id="n"><ValueItem><ValueInt id="i" value="3"/></ValueItem></Node></Component>)",
    R"(<Node id="n"><ValueItem><ValueBoolean id="i" value="true"/></ValueItem><ValueItem><ValueString id="s" )"
    R"(value="t"/></ValueItem></Node>)",
    R"(<ValueItem><ValueSelection id="i" value="1.50" text="t" index="1"><SelectionItem name="n" value="1.50"/>)"
    R"(</ValueSelection></ValueItem>)",
    R"(<ValueBoolean id="i" value="true"/>)",
    R"(<ValueFloat id="i" value="2.50"/>)",
    R"(<ValueInt id="i" value="-3"/>)",
    R"(<ValueInt64 id="i" value="9223372036854775807"/>)",
    R"(<ValueNumericFloat id="i" value="2.50" min="-1.00" max="10.00" step="0.50"/>)",
    R"(<ValueNumericInt id="i" value="2" min="-1" max="10" step="1"/>)",
    R"(<ValueNumericInt64 id="i" value="2" min="-1" max="10" step="1"/>)",
    R"(<ValueSelection id="i" value="1.50" text="t" index="1"><SelectionItem name="n" value="1.50"/></ValueSelection>)",
    R"(<SelectionItem name="n" value="1.50"/>)",
    "<ValueString id=\"i\" value=\"&#228;&#x1F4E1;\"/>",
    R"(<ValueStringList id="i" value="a"><StringItem value="a"/><StringItem value="b"/></ValueStringList>)",
    R"(<StringItem value="a"/>)",
};

class Corpus
{
public:
    explicit Corpus(const QString &folder) : m_folder(folder) { }

    void add(const char *target, const QString &name, const QByteArray &bytes) const
    {
        const QString folder = m_folder + QLatin1Char('/') + QLatin1String(target);
        QDir().mkpath(folder);
        QFile file(folder + QLatin1Char('/') + name);
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
            std::fprintf(stderr, "%s: %s\n", qPrintable(file.fileName()), qPrintable(file.errorString()));
            std::exit(EXIT_FAILURE);
        }
    }

    void addObject(int number, const QString &name, const QByteArray &xml) const
    {
        const Class::Pointer object = classNumber(number).make();
        if (!object->SetXmlString(QString::fromUtf8(xml), true)) {
            std::fprintf(stderr, "%s: %s\n", qPrintable(name), qPrintable(object->GetErrorString()));
            std::exit(EXIT_FAILURE);
        }
        const QByteArray choice(1, char(number));
        const QByteArray tagged = object->GetBinaryRepresentationAsQByteArray();
        const QByteArray compressed = object->GetCompressedBinaryRepresentationAsQByteArray(9);
        QByteArray snapshot;
        QDataStream stream(&snapshot, QIODevice::WriteOnly);
        object->GetVersionSpecificBinaryWithoutValidation(stream);

        add("xml_text", name, choice + xml);
        add("xml_file", name, choice + xml);
        add("record", name, choice + tagged.mid(4)); // without the leading word
        add("representation", name, choice + tagged);
        add("compressed", name, choice + compressed);
        add("snapshot", name, choice + snapshot);
        const QByteArray encoded[] = {xml, tagged, compressed, snapshot};
        for (char encoding = 0; encoding < 4; ++encoding)
            add("differential", name + QLatin1Char('-') + QString::number(encoding),
                choice + QByteArray(1, encoding) + encoded[int(encoding)]);
    }

private:
    QString m_folder;
};

} // namespace

int main(int argc, char **argv)
{
    if (argc != 3) {
        std::fputs("usage: make_seeds EXAMPLES CORPUS\n", stderr);
        return EXIT_FAILURE;
    }
    const Corpus corpus(QString::fromLocal8Bit(argv[2]));
    for (int number = 0; number < NumberOfClasses; ++number)
        corpus.addObject(number, classNumber(number).make()->GetObjectName(), smallObjects[number]);

    const QDir examples(QString::fromLocal8Bit(argv[1]));
    const QFileInfoList documents = examples.entryInfoList({QStringLiteral("*.xml")}, QDir::Files, QDir::Name);
    for (const QFileInfo &document : documents) {
        if (document.size() > LargestSeed)
            continue;
        QFile file(document.filePath());
        file.open(QIODevice::ReadOnly);
        corpus.addObject(0, document.completeBaseName(), file.readAll());
    }
    return EXIT_SUCCESS;
}
