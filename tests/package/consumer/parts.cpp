// SPDX-License-Identifier: MIT
//
// A program of another project, with what nothing but the libraries themselves calls or reads: the registration of the
// module, and the files that a library contains. parts SCP.xml [FOLDER_OF_CATALOGS]

#include <cstdio>

#include <QCoreApplication>
#include <QLocale>

#include <tavikappstartup/TranslationCenter.h>
#include <tunerdocuments/Document.h>
#include <tunerdocuments/Html.h>
#include <tunerdocuments/Schema.h>

using namespace TunerDocuments;

namespace {

const char *whether(bool there)
{
    return there ? "yes" : "no";
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc < 2)
        return 2;
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    const QCoreApplication application(argc, argv);
    TranslationCenter &center = TranslationCenter::Instance();
    std::printf("registered: %s\n", qPrintable(center.RegisteredModules().join(QLatin1Char(','))));
    if (argc > 2) {
        center.AddSearchPath(QString::fromLocal8Bit(argv[2]));
        center.Register(QStringLiteral("TunerProperties")); // again, so that its catalog is searched for there
    }
    std::printf("shown as: %s\n", JobXml::TunerProperties::GetGUItypes().constLast().toUtf8().constData());

    const Document document = Document::load(QString::fromLocal8Bit(argv[1]));
    QByteArray page;
    html(document.tuner, QStringLiteral("scp.xml"), [&page](const QByteArray &piece) { page += piece; });
    std::printf("the page has its script: %s\n", whether(page.contains("addEventListener")));
    std::printf("the schema is there: %s\n", whether(Schema::text().endsWith("schema>\n")));
    return 0;
}
