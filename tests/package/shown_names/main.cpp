// SPDX-License-Identifier: MIT
//
// Shows the kinds of tuners in German.

#include <cstdio>

#include <QCoreApplication>
#include <QLocale>

#include <jobxml/TunerProperties.h>
#include <tavikappstartup/TranslationCenter.h>

int main(int argc, char *argv[])
{
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    const QCoreApplication application(argc, argv);
    TranslationCenter::Instance().InstallPending(); // the library was loaded before the application was created
    const QStringList names = JobXml::TunerProperties::GetGUItypes();
    for (const QString &name : names)
        std::printf("%s\n", name.toUtf8().constData());
    return 0;
}
