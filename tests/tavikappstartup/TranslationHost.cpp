// SPDX-License-Identifier: MIT
// A program that behaves like one with a module: registered before main(), unregistered after it. translation_host
// LOCALE [TEXT...] prints the translation of each text, then the last folder searched.
#include <cstdio>

#include <QCoreApplication>
#include <QLocale>

#include <tavikappstartup/TranslationCenter.h>

namespace {

class Attachment
{
public:
    Attachment() { TranslationCenter::Instance().Register(QStringLiteral("TunerProperties")); }
    ~Attachment()
    {
        TranslationCenter::Instance().Unregister(QStringLiteral("TunerProperties"));
        std::printf("left: %d\n", int(TranslationCenter::Instance().RegisteredModules().size()));
    }
};

const Attachment attachment;

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    QLocale::setDefault(QLocale(arguments.value(1)));
    TranslationCenter::Instance().InstallPending();
    for (const QString &text : arguments.mid(2))
        std::printf("%s\n", qPrintable(QCoreApplication::translate("QObject", text.toUtf8().constData())));
    std::printf("%s\n", qPrintable(TranslationCenter::Instance().SearchPaths().last()));
    return 0;
}
