// SPDX-License-Identifier: MIT
//
// make_seeds EXAMPLES CORPUS writes the seeds of every target into CORPUS/TARGET: the example documents, and a small
// object of each class with every member.
#include <cstdio>
#include <cstdlib>

#include <QDataStream>
#include <QDir>
#include <QFile>

#include "../tests/damage/CompactDocument.h"
#include "Classes.h"

using namespace Fuzz;

namespace {

constexpr qint64 LargestSeed = 6000; // the fuzzer tries far more inputs if they are short

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
        add("xml_sources", name, QByteArray(2, char(number)) + xml);
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
    for (int number = 0; number < NumberOfClasses; ++number) {
        const Class::Pointer object = classNumber(number).make();
        object->SetValidate(false);
        Damage::Filler filler;
        filler.fill(*object);
        if (!object->HasData()) { // it chooses one of its members
            JobXml::visit(*object, [&](JobXml::MemberEditor &member) {
                if (member.GetKind() == JobXml::MemberKind::Alternative)
                    filler.fill(member.EditChild());
            });
        }
        corpus.addObject(number, object->GetObjectName(), xmlOf(*object).toUtf8());
    }

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
